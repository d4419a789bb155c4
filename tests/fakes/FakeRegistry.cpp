#include "fakes/FakeRegistry.h"

#include <gtest/gtest.h>

#include <cctype>

#include "os/Status.h"

namespace vagent::test {
namespace {

constexpr std::uint32_t kInvalidHandle = 6;

std::string Folded(const std::string& name) {
    std::string folded = name;
    for (char& c : folded) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return folded;
}

bool CheckRoot(os::RegistryKey root) {
    if (root != os::kLocalMachine) {
        ADD_FAILURE() << "the fake registry holds HKEY_LOCAL_MACHINE only";
        return false;
    }
    return true;
}

}  // namespace

const FakeRegistry::HandleState* FakeRegistry::Handle(os::RegistryKey key) const {
    const auto found = handles_.find(key);
    if (found == handles_.end()) {
        ADD_FAILURE() << "registry call on a key that is not open: " << key;
        return nullptr;
    }
    return &found->second;
}

std::uint32_t FakeRegistry::OpenKey(os::RegistryKey root, const std::string& path,
                                    std::uint32_t access, os::RegistryKey& key) {
    opens.push_back(Open{path, access});
    key = 0;
    if (!CheckRoot(root)) {
        return kInvalidHandle;
    }
    if (!HasKey(path)) {
        return os::kFileNotFound;
    }
    key = nextHandle_++;
    handles_[key] = HandleState{Folded(path), access};
    return 0;
}

std::uint32_t FakeRegistry::QueryValue(os::RegistryKey key, const std::string& name,
                                       std::uint32_t& value) {
    const HandleState* handle = Handle(key);
    if (handle == nullptr) {
        return kInvalidHandle;
    }
    if ((handle->access & os::kKeyRead) != os::kKeyRead) {
        return os::kAccessDenied;
    }
    const Values& values = keys_.at(handle->path);
    const auto found = values.find(Folded(name));
    if (found == values.end()) {
        return os::kFileNotFound;
    }
    value = found->second;
    return 0;
}

std::uint32_t FakeRegistry::SetNumberValue(os::RegistryKey key, const std::string& name,
                                           std::uint32_t value) {
    const HandleState* handle = Handle(key);
    if (handle == nullptr) {
        return kInvalidHandle;
    }
    if ((handle->access & os::kKeyWrite) != os::kKeyWrite) {
        return os::kAccessDenied;
    }
    keys_[handle->path][Folded(name)] = value;
    return 0;
}

std::uint32_t FakeRegistry::DeleteValue(os::RegistryKey key, const std::string& name) {
    const HandleState* handle = Handle(key);
    if (handle == nullptr) {
        return kInvalidHandle;
    }
    if ((handle->access & os::kKeyWrite) != os::kKeyWrite) {
        return os::kAccessDenied;
    }
    return keys_[handle->path].erase(Folded(name)) != 0 ? 0u : std::uint32_t{os::kFileNotFound};
}

std::uint32_t FakeRegistry::CloseKey(os::RegistryKey key) {
    if (key == os::kLocalMachine) {
        ++rootCloses;
        return 0;
    }
    if (Handle(key) == nullptr) {
        return kInvalidHandle;
    }
    handles_.erase(key);
    return 0;
}

std::uint32_t FakeRegistry::CreateKey(os::RegistryKey root, const std::string& path,
                                      os::RegistryKey& key) {
    key = 0;
    if (!CheckRoot(root)) {
        return kInvalidHandle;
    }
    AddKey(path);
    key = nextHandle_++;
    handles_[key] = HandleState{Folded(path), os::kKeyRead | os::kKeyWrite};
    return 0;
}

std::uint32_t FakeRegistry::DeleteKey(os::RegistryKey root, const std::string& path) {
    if (!CheckRoot(root)) {
        return kInvalidHandle;
    }
    const std::string folded = Folded(path);
    if (keys_.erase(folded) == 0) {
        return os::kFileNotFound;
    }
    return 0;
}

void FakeRegistry::AddKey(const std::string& path) {
    // The parents exist too, as in the real registry.
    const std::string folded = Folded(path);
    for (std::size_t slash = folded.find('\\'); slash != std::string::npos;
         slash = folded.find('\\', slash + 1)) {
        keys_[folded.substr(0, slash)];
    }
    keys_[folded];
}

bool FakeRegistry::HasKey(const std::string& path) const {
    return keys_.count(Folded(path)) != 0;
}

void FakeRegistry::SetNumber(const std::string& path, const std::string& name,
                             std::uint32_t value) {
    AddKey(path);
    keys_[Folded(path)][Folded(name)] = value;
}

bool FakeRegistry::Number(const std::string& path, const std::string& name,
                          std::uint32_t& value) const {
    const auto key = keys_.find(Folded(path));
    if (key == keys_.end()) {
        return false;
    }
    const auto found = key->second.find(Folded(name));
    if (found == key->second.end()) {
        return false;
    }
    value = found->second;
    return true;
}

}  // namespace vagent::test
