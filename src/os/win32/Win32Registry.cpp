#include "os/Registry.h"
#include "os/win32/WindowsHeaders.h"

namespace vagent::os {
namespace {

// The predefined root is a sign-extended constant in a 64-bit process, so it
// is mapped rather than cast.
HKEY HandleOf(RegistryKey key) {
    return key == kLocalMachine ? HKEY_LOCAL_MACHINE : reinterpret_cast<HKEY>(key);
}

RegistryKey KeyOf(HKEY handle) {
    return reinterpret_cast<RegistryKey>(handle);
}

class Win32Registry final : public Registry {
public:
    std::uint32_t OpenKey(RegistryKey root, const std::string& path, std::uint32_t access,
                          RegistryKey& key) override {
        HKEY opened = nullptr;
        const LONG status = RegOpenKeyExA(HandleOf(root), path.c_str(), 0, access, &opened);
        key = status == ERROR_SUCCESS ? KeyOf(opened) : 0;
        return static_cast<std::uint32_t>(status);
    }

    std::uint32_t QueryValue(RegistryKey key, const std::string& name,
                             std::uint32_t& value) override {
        DWORD number = 0;
        DWORD size = sizeof number;
        const LONG status = RegQueryValueExA(HandleOf(key), name.c_str(), nullptr, nullptr,
                                             reinterpret_cast<BYTE*>(&number), &size);
        if (status == ERROR_SUCCESS) {
            value = number;
        }
        return static_cast<std::uint32_t>(status);
    }

    std::uint32_t SetNumberValue(RegistryKey key, const std::string& name,
                                 std::uint32_t value) override {
        const DWORD number = value;
        return static_cast<std::uint32_t>(RegSetValueExA(HandleOf(key), name.c_str(), 0, REG_DWORD,
                                                         reinterpret_cast<const BYTE*>(&number),
                                                         sizeof number));
    }

    std::uint32_t CloseKey(RegistryKey key) override {
        return static_cast<std::uint32_t>(RegCloseKey(HandleOf(key)));
    }

    std::uint32_t CreateKey(RegistryKey root, const std::string& path, RegistryKey& key) override {
        HKEY created = nullptr;
        const LONG status =
            RegCreateKeyExA(HandleOf(root), path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                            KEY_READ | KEY_WRITE, nullptr, &created, nullptr);
        key = status == ERROR_SUCCESS ? KeyOf(created) : 0;
        return static_cast<std::uint32_t>(status);
    }

    std::uint32_t DeleteKey(RegistryKey root, const std::string& path) override {
        return static_cast<std::uint32_t>(RegDeleteKeyA(HandleOf(root), path.c_str()));
    }
    std::uint32_t DeleteValue(RegistryKey key, const std::string& name) override {
        return static_cast<std::uint32_t>(RegDeleteValueA(HandleOf(key), name.c_str()));
    }
};

}  // namespace

template <>
Registry& RealFacility<Registry>() {
    static Win32Registry real;
    return real;
}

}  // namespace vagent::os
