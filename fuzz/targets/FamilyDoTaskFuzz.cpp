// Feeds arbitrary request blocks to DoTask of every task family, as the agent
// service would after reading a request frame: the first byte picks the task
// id (1 to 47) and the work environment, the rest is the request block. Every
// facility of the operating system is a fake for the whole run: the file
// system, the profile files and the sockets refuse every call, so no input
// can reach the real disk, registry or network.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "fakes/FakeClock.h"
#include "fakes/FakeCom.h"
#include "fakes/FakeComputerNames.h"
#include "fakes/FakeDirectory.h"
#include "fakes/FakeEnvironment.h"
#include "fakes/FakeHostFacts.h"
#include "fakes/FakeLocalAccounts.h"
#include "fakes/FakeModuleResources.h"
#include "fakes/FakeRegistry.h"
#include "fakes/FakeServiceManager.h"
#include "fakes/FakeSpooler.h"
#include "fakes/FakeSystemMessages.h"
#include "fakes/FakeTerminalServices.h"
#include "fakes/FakeVersionInfo.h"
#include "fakes/FakeWindowMessages.h"
#include "fakes/RefusingFileSystem.h"
#include "fakes/RefusingProfileFiles.h"
#include "fakes/RefusingSockets.h"
#include "os/Facilities.h"
#include "vagent/TaskRequest.h"
#include "vagent/TaskFactory.h"
#include "vagent/VTask.h"

namespace {

using vagent::os::ScopedFacility;
namespace test = vagent::test;
namespace os = vagent::os;

constexpr std::uint32_t kTaskIds = 47;

// A fresh fake host for each input, so that no input sees what an earlier
// one left behind and the fakes' call records stay small.
struct FakeHost {
    test::FakeClock clock;
    test::FakeCom com;
    test::FakeComputerNames names;
    test::FakeDirectory directory;
    test::FakeEnvironment environment;
    test::RefusingFileSystem files;
    test::FakeHostFacts host;
    test::FakeModuleResources resources;
    test::FakeLocalAccounts net;
    test::RefusingProfileFiles profiles;
    test::FakeRegistry registry;
    test::FakeServiceManager services;
    test::RefusingSockets sockets;
    test::FakeSpooler spooler;
    test::FakeSystemMessages messages;
    test::FakeTerminalServices terminal;
    test::FakeVersionInfo version;
    test::FakeWindowMessages windows;

    ScopedFacility<os::Clock> clockScope{clock};
    ScopedFacility<os::Com> comScope{com};
    ScopedFacility<os::ComputerNames> namesScope{names};
    ScopedFacility<os::Directory> directoryScope{directory};
    ScopedFacility<os::Environment> environmentScope{environment};
    ScopedFacility<os::FileSystem> filesScope{files};
    ScopedFacility<os::HostFacts> hostScope{host};
    ScopedFacility<os::ModuleResources> resourcesScope{resources};
    ScopedFacility<os::NetApi> netScope{net};
    ScopedFacility<os::ProfileFiles> profilesScope{profiles};
    ScopedFacility<os::Registry> registryScope{registry};
    ScopedFacility<os::ServiceManager> servicesScope{services};
    ScopedFacility<os::Sockets> socketsScope{sockets};
    ScopedFacility<os::Spooler> spoolerScope{spooler};
    ScopedFacility<os::SystemMessages> messagesScope{messages};
    ScopedFacility<os::TerminalServices> terminalScope{terminal};
    ScopedFacility<os::VersionInfo> versionScope{version};
    ScopedFacility<os::WindowMessages> windowsScope{windows};
};

void Check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// What every DoTask promises: an answer of 0 or 1, and a handed-out block
// whose prefix counts exactly the bytes after it.
void CheckAnswer(int truth, const std::uint8_t* data, std::uint32_t length) {
    Check(truth == 0 || truth == 1);
    Check((data == nullptr) == (length == 0));
    if (data != nullptr) {
        Check(length >= 4);
        const std::uint32_t prefix = (std::uint32_t{data[0]} << 24) |
                                     (std::uint32_t{data[1]} << 16) |
                                     (std::uint32_t{data[2]} << 8) | std::uint32_t{data[3]};
        Check(prefix == length - 4);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::uint32_t id = 1 + data[0] % kTaskIds;
    const int workEnv = (data[0] / kTaskIds) % 2;
    FakeHost host;
    const std::unique_ptr<VTask> task(CreateVTask(id));
    std::vector<std::uint8_t> block(data + 1, data + size);
    TaskRequest request;
    request.length = static_cast<std::uint32_t>(block.size());
    request.data = block.empty() ? nullptr : block.data();
    request.connection = os::kInvalidSocket;
    task->SetWorkEnv(workEnv, nullptr);
    Check(task->SetRequest(request) == 1);
    std::uint8_t* result = nullptr;
    std::uint32_t length = 0;
    const int truth = task->DoTask(&result, &length);
    CheckAnswer(truth, result, length);
    delete[] result;
    return 0;
}
