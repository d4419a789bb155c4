#include "os/ModuleResources.h"

#include <cstring>

#include "os/win32/WindowsHeaders.h"

namespace vagent::os {
namespace {

HMODULE AsModule(ModuleHandle module) {
    return reinterpret_cast<HMODULE>(module);
}

BOOL CALLBACK CollectName(HMODULE, LPCSTR, LPSTR name, LONG_PTR collected) {
    ResourceName found;
    if (IS_INTRESOURCE(name)) {
        found.numeric = true;
        found.id = static_cast<std::uint16_t>(reinterpret_cast<ULONG_PTR>(name));
    } else {
        found.numeric = false;
        found.text = name;
    }
    reinterpret_cast<std::vector<ResourceName>*>(collected)->push_back(found);
    return TRUE;
}

class Win32ModuleResources final : public ModuleResources {
public:
    std::uint32_t LoadAsDataFile(const std::string& path, ModuleHandle& module) override {
        const HMODULE loaded = LoadLibraryExA(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        module = reinterpret_cast<ModuleHandle>(loaded);
        return loaded != nullptr ? 0 : GetLastError();
    }

    std::uint32_t ResourceNames(ModuleHandle module, std::uint16_t type,
                                std::vector<ResourceName>& names) override {
        if (!EnumResourceNamesA(AsModule(module), MAKEINTRESOURCEA(type), CollectName,
                                reinterpret_cast<LONG_PTR>(&names))) {
            return GetLastError();
        }
        return 0;
    }

    std::uint32_t ResourceBytes(ModuleHandle module, const ResourceName& name, std::uint16_t type,
                                std::vector<std::uint8_t>& bytes) override {
        const LPCSTR resourceName = name.numeric ? MAKEINTRESOURCEA(name.id) : name.text.c_str();
        const HRSRC found = FindResourceA(AsModule(module), resourceName, MAKEINTRESOURCEA(type));
        if (found == nullptr) {
            return GetLastError();
        }
        const HGLOBAL loaded = LoadResource(AsModule(module), found);
        const DWORD size = SizeofResource(AsModule(module), found);
        const void* data = loaded != nullptr ? LockResource(loaded) : nullptr;
        if (data == nullptr) {
            return GetLastError();
        }
        const auto* first = static_cast<const std::uint8_t*>(data);
        bytes.assign(first, first + size);
        return 0;
    }

    void Free(ModuleHandle module) override { FreeLibrary(AsModule(module)); }
};

}  // namespace

template <>
ModuleResources& RealFacility<ModuleResources>() {
    static Win32ModuleResources real;
    return real;
}

}  // namespace vagent::os
