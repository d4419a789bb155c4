#include "helpers/RegistrySnapshot.h"

#include "os/Facilities.h"
#include "os/Registry.h"
#include "os/Status.h"

namespace vagent::test {
namespace {

os::Registry& TheRegistry() {
    return os::Installed<os::Registry>();
}

bool KeyExists(const std::string& path) {
    os::RegistryKey key = 0;
    if (TheRegistry().OpenKey(os::kLocalMachine, path, os::kKeyRead, key) != 0) {
        return false;
    }
    TheRegistry().CloseKey(key);
    return true;
}

}  // namespace

RegistrySnapshot::RegistrySnapshot(std::vector<std::string> keys,
                                   const std::vector<ValueName>& values)
    : keys_(std::move(keys)) {
    for (const std::string& key : keys_) {
        existed_.push_back(KeyExists(key));
    }
    for (const ValueName& value : values) {
        SavedValue saved{value.first, value.second, false, 0};
        os::RegistryKey key = 0;
        if (TheRegistry().OpenKey(os::kLocalMachine, value.first, os::kKeyRead, key) == 0) {
            const std::uint32_t status = TheRegistry().QueryValue(key, value.second, saved.number);
            saved.existed = status == 0;
            complete_ = complete_ && (status == 0 || status == os::kFileNotFound);
            TheRegistry().CloseKey(key);
        }
        values_.push_back(saved);
    }
}

RegistrySnapshot::~RegistrySnapshot() {
    for (const SavedValue& value : values_) {
        RestoreValue(value);
    }
    for (std::size_t i = keys_.size(); i-- > 0;) {
        if (!existed_[i]) {
            TheRegistry().DeleteKey(os::kLocalMachine, keys_[i]);
        }
    }
}

bool RegistrySnapshot::Existed(const std::string& key) const {
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        if (keys_[i] == key) {
            return existed_[i];
        }
    }
    return false;
}

void RegistrySnapshot::RestoreValue(const SavedValue& value) const {
    os::RegistryKey key = 0;
    if (TheRegistry().OpenKey(os::kLocalMachine, value.key, os::kKeyRead | os::kKeyWrite, key) !=
        0) {
        return;
    }
    if (value.existed) {
        TheRegistry().SetNumberValue(key, value.name, value.number);
    } else {
        TheRegistry().DeleteValue(key, value.name);
    }
    TheRegistry().CloseKey(key);
}

}  // namespace vagent::test
