#include "fakes/FakeHostFacts.h"

namespace vagent::test {

std::uint32_t FakeHostFacts::ModuleFileName(os::Module module, std::string& path) {
    path.clear();
    if (moduleStatus != 0) {
        return moduleStatus;
    }
    path = module == os::Module::Executable ? executablePath : libraryPath;
    return 0;
}

os::LocalTime FakeHostFacts::CurrentLocalTime() {
    return now;
}

std::uint32_t FakeHostFacts::AdapterIPv4Addresses(std::vector<std::string>& addresses) {
    ++adapterQueries;
    addresses.clear();
    if (adapterStatus != 0) {
        return adapterStatus;
    }
    addresses = adapters;
    return 0;
}

}  // namespace vagent::test
