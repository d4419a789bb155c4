#include "sessions/RegistryNumber.h"

namespace vagent {
namespace {

os::Registry& TheRegistry() {
    return os::Installed<os::Registry>();
}

}  // namespace

int ReadRegistryNumber(os::RegistryKey root, const std::string& path, const std::string& name,
                       std::int32_t& value) {
    os::RegistryKey key = 0;
    bool succeeded = TheRegistry().OpenKey(root, path, os::kKeyRead, key) == 0;
    if (succeeded) {
        std::uint32_t number = 0;
        succeeded = TheRegistry().QueryValue(key, name, number) == 0;
        if (succeeded) {
            value = static_cast<std::int32_t>(number);
        }
        TheRegistry().CloseKey(key);
    }
    TheRegistry().CloseKey(root);
    return succeeded ? 1 : 0;
}

int WriteRegistryNumber(os::RegistryKey root, const std::string& path, const std::string& name,
                        std::int32_t value) {
    os::RegistryKey key = 0;
    bool succeeded = TheRegistry().OpenKey(root, path, os::kKeyRead | os::kKeyWrite, key) == 0;
    if (succeeded) {
        succeeded = TheRegistry().SetNumberValue(key, name, static_cast<std::uint32_t>(value)) == 0;
        TheRegistry().CloseKey(key);
    }
    TheRegistry().CloseKey(root);
    return succeeded ? 1 : 0;
}

}  // namespace vagent
