#include "fakes/FakeComputerNames.h"

#include <cstring>

#include "os/Status.h"

namespace vagent::test {

std::uint32_t FakeComputerNames::ComputerNameEx(std::uint32_t format, char* buffer,
                                                std::uint32_t& size) {
    calls.push_back(Call{format, buffer != nullptr, size});
    if (failure != 0) {
        return failure;
    }
    const auto name = names.find(format);
    if (name == names.end()) {
        return os::kInvalidParameter;
    }
    const auto needed = static_cast<std::uint32_t>(name->second.size() + 1);
    if (buffer == nullptr || size < needed) {
        size = needed;
        return os::kMoreData;
    }
    std::memcpy(buffer, name->second.c_str(), needed);
    size = needed - 1;
    return 0;
}

}  // namespace vagent::test
