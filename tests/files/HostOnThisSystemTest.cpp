#include <gtest/gtest.h>

#include "files/FileTaskHarness.h"
#include "os/FileSystem.h"
#include "os/ServiceManager.h"
#include "os/Status.h"
#include "vagent/VFileTask.h"

using vagent::os::Installed;
using vagent::os::ServiceHandle;
using vagent::os::ServiceManager;
using vagent::test::DecodeResult;
using vagent::test::ListBlock;
using vagent::test::RunFileTask;
using vagent::test::TaskAnswer;

// The host tasks against this system's own implementation.

namespace {

constexpr char kTaskTestService[] = "VagentFileTaskTest";

// A service made with the service manager for one test and deleted when it
// ends; Status() is 50 where there is no service manager.
class CreatedService {
public:
    CreatedService() {
        ServiceManager& services = Installed<ServiceManager>();
        status_ = services.OpenManager(vagent::os::kScManagerCreateService, manager_);
        if (status_ != 0) {
            return;
        }
        ServiceHandle stale = 0;
        if (services.OpenNamed(manager_, kTaskTestService, vagent::os::kServiceAllAccess, stale) ==
            0) {
            services.Delete(stale);
            services.Close(stale);
        }
        status_ = services.CreateOwnProcess(manager_, kTaskTestService, "Vagent File Task Test",
                                            "C:\\windows\\system32\\cmd.exe", service_);
    }
    ~CreatedService() {
        ServiceManager& services = Installed<ServiceManager>();
        if (service_ != 0) {
            services.Delete(service_);
            services.Close(service_);
        }
        if (manager_ != 0) {
            services.Close(manager_);
        }
    }
    CreatedService(const CreatedService&) = delete;
    CreatedService& operator=(const CreatedService&) = delete;

    std::uint32_t Status() const { return status_; }

private:
    ServiceHandle manager_ = 0;
    ServiceHandle service_ = 0;
    std::uint32_t status_ = 0;
};

std::string ServiceAccount(std::uint32_t& errorCode) {
    VFileTask task(46);
    const TaskAnswer result = RunFileTask(task, ListBlock({kTaskTestService}));
    errorCode = task.GetErrorCode();
    std::string account;
    if (result.truth == 1) {
        EXPECT_EQ(DecodeResult(46, result, &account), 1);
    }
    return account;
}

}  // namespace

TEST(HostOnThisSystem, ImageDirectoryIsTheDirectoryOfThisProgram) {
    VFileTask task(31);
    const TaskAnswer result = RunFileTask(task, {0, 0, 0, 0});
    ASSERT_EQ(result.truth, 1);
    std::string directory;
    ASSERT_EQ(DecodeResult(31, result, &directory), 1);
    ASSERT_FALSE(directory.empty());
    EXPECT_EQ(directory.back(), '\\');
    std::uint32_t attributes = 0;
    ASSERT_EQ(vagent::os::Files().Attributes(directory.substr(0, directory.size() - 1), attributes),
              0u);
    EXPECT_NE(attributes & vagent::os::kFileAttributeDirectory, 0u);
}

TEST(HostOnThisSystem, HostNameIsNotEmpty) {
    VFileTask task(34);
    const TaskAnswer result = RunFileTask(task, {0, 0, 0, 0});
    ASSERT_EQ(result.truth, 1) << task.GetErrorCode();
    std::string name;
    ASSERT_EQ(DecodeResult(34, result, &name), 1);
    EXPECT_FALSE(name.empty());
}

TEST(HostOnThisSystem, ServiceAccountIsQueriedAndChangedThroughTheTasks) {
    CreatedService created;
    std::uint32_t errorCode = 0;
    if (created.Status() == vagent::os::kNotSupported) {
        EXPECT_EQ(ServiceAccount(errorCode), "");
        EXPECT_EQ(errorCode, vagent::os::kNotSupported);
        return;
    }
    ASSERT_EQ(created.Status(), 0u);
    EXPECT_EQ(ServiceAccount(errorCode), "LocalSystem");
    EXPECT_EQ(errorCode, 0u);
    VFileTask change(47);
    const TaskAnswer changed =
        RunFileTask(change, ListBlock({kTaskTestService, ".\\vagentsvc", "Secret1"}));
    EXPECT_EQ(changed.truth, 1) << change.GetErrorCode();
    EXPECT_EQ(changed.block, (std::vector<std::uint8_t>{0, 0, 0, 4, 0, 0, 0, 1}));
    EXPECT_EQ(ServiceAccount(errorCode), ".\\vagentsvc");
}

TEST(HostOnThisSystem, MissingServiceLeavesTheOpenError) {
    std::uint32_t errorCode = 0;
    VFileTask task(46);
    const TaskAnswer result = RunFileTask(task, ListBlock({"NoSuchVagentService"}));
    EXPECT_EQ(result.truth, 0);
    EXPECT_TRUE(result.block.empty());
    errorCode = task.GetErrorCode();
    EXPECT_TRUE(errorCode == vagent::os::kServiceDoesNotExist ||
                errorCode == vagent::os::kNotSupported)
        << errorCode;
}
