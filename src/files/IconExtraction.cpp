#include "files/IconExtraction.h"

#include <cerrno>
#include <cstdio>
#include <new>

#include "files/FileStatus.h"
#include "files/IconFile.h"
#include "os/Environment.h"
#include "os/FileSystem.h"
#include "os/ModuleResources.h"
#include "os/Status.h"
#include "vagent/DllLog.h"
#include "vagent/ErrorCodes.h"

namespace vagent::files {
namespace {

// The executable loaded as data, freed when the scope ends.
class LoadedModule {
public:
    LoadedModule(os::ModuleResources& resources, const std::string& path)
        : resources_(resources), status_(resources.LoadAsDataFile(path, module_)) {}
    ~LoadedModule() {
        if (status_ == 0) {
            resources_.Free(module_);
        }
    }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    std::uint32_t Status() const { return status_; }
    os::ModuleHandle Handle() const { return module_; }

private:
    os::ModuleResources& resources_;
    os::ModuleHandle module_ = 0;
    std::uint32_t status_;
};

std::uint32_t FirstIconGroup(os::ModuleResources& resources, os::ModuleHandle module,
                             std::vector<std::uint8_t>& group) {
    std::vector<os::ResourceName> names;
    const std::uint32_t status = resources.ResourceNames(module, os::kResourceGroupIcon, names);
    if (status != 0) {
        return status;
    }
    if (names.empty()) {
        return os::kFileNotFound;
    }
    return resources.ResourceBytes(module, names.front(), os::kResourceGroupIcon, group);
}

std::uint32_t WriteWholeFile(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    std::FILE* file = os::Files().Open(path, "wb");
    if (file == nullptr) {
        return StatusOfErrno(errno);
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const bool closed = std::fclose(file) == 0;
    return written && closed ? 0 : StatusOfErrno(errno);
}

std::uint32_t ExtractIcon(const std::string& exeFile, const std::string& iconFile) {
    os::ModuleResources& resources = os::Installed<os::ModuleResources>();
    LoadedModule module(resources, exeFile);
    if (module.Status() != 0) {
        return module.Status();
    }
    std::vector<std::uint8_t> group;
    std::uint32_t status = FirstIconGroup(resources, module.Handle(), group);
    std::vector<std::uint8_t> icon;
    if (status == 0) {
        status = BuildIconFile(resources, module.Handle(), group, icon);
    }
    return status == 0 ? WriteWholeFile(iconFile, icon) : status;
}

}  // namespace

std::string TemporaryIconPath(const std::string& temporaryDirectory, const std::string& iconPath) {
    std::size_t cut = iconPath.find_last_of("\\/");
    if (cut == std::string::npos) {
        cut = iconPath.rfind(':');
    }
    const std::string name = cut == std::string::npos ? iconPath : iconPath.substr(cut + 1);
    if (name.find_first_not_of(". ") == std::string::npos) {
        return std::string();
    }
    return temporaryDirectory + "\\" + name;
}

bool CreateIcons(const std::vector<std::string>& exeFiles,
                 const std::vector<std::string>& iconFiles,
                 std::vector<std::string>& temporaryFiles, std::uint32_t& errorCode) {
    if (exeFiles.size() != iconFiles.size()) {
        DllLogPrintf("CreateIcons : vecExeFile.size != vecIconFile");
        return false;
    }
    if (exeFiles.empty()) {
        return true;
    }
    try {
        std::string temporaryDirectory;
        errorCode = os::Installed<os::Environment>().Value("TEMP", temporaryDirectory);
        for (std::size_t index = 0; errorCode == 0 && index < exeFiles.size(); ++index) {
            temporaryFiles.push_back(TemporaryIconPath(temporaryDirectory, iconFiles[index]));
            errorCode = temporaryFiles.back().empty()
                            ? kErrorInvalidParameter
                            : ExtractIcon(exeFiles[index], temporaryFiles.back());
        }
    } catch (const std::bad_alloc&) {
        errorCode = os::kNotEnoughMemory;
    }
    return errorCode == 0;
}

}  // namespace vagent::files
