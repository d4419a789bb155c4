#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vagent::test {

// Remembers keys and number values under HKEY_LOCAL_MACHINE before a test
// changes them, and puts back exactly that when it ends: a value that existed
// gets its number back, a value that did not is deleted, and a key that did
// not exist is deleted, innermost first. A key that existed is never deleted,
// so a test that uses it is safe to run on a real terminal server.
class RegistrySnapshot {
public:
    using ValueName = std::pair<std::string, std::string>;

    // `keys` from the outermost to the innermost; `values` as key path and
    // value name.
    RegistrySnapshot(std::vector<std::string> keys, const std::vector<ValueName>& values);
    ~RegistrySnapshot();
    RegistrySnapshot(const RegistrySnapshot&) = delete;
    RegistrySnapshot& operator=(const RegistrySnapshot&) = delete;

    // False when some value could not be read as a number, so that it could
    // not be put back: a test must not change it then.
    bool Complete() const { return complete_; }
    bool Existed(const std::string& key) const;

private:
    struct SavedValue {
        std::string key;
        std::string name;
        bool existed = false;
        std::uint32_t number = 0;
    };

    void RestoreValue(const SavedValue& value) const;

    std::vector<std::string> keys_;
    std::vector<bool> existed_;
    std::vector<SavedValue> values_;
    bool complete_ = true;
};

}  // namespace vagent::test
