// Reads any bytes as a configuration file beside a fake executable, looks up
// every entry that was read, and copies the result.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "os/Facilities.h"
#include "os/FileSystem.h"
#include "os/HostFacts.h"
#include "vagent/VConfig.h"

namespace {

// A host whose executable lies in a scratch directory of this process, which
// ends with the host. Parallel fuzzing processes each get their own.
class ScratchHost final : public vagent::os::HostFacts {
public:
    ScratchHost() : directory_(MakeDirectory()) {}
    ~ScratchHost() override {
        std::error_code ignored;
        std::filesystem::remove_all(directory_, ignored);
    }
    ScratchHost(const ScratchHost&) = delete;
    ScratchHost& operator=(const ScratchHost&) = delete;

    std::uint32_t ModuleFileName(vagent::os::Module, std::string& path) override {
        path = LibraryDirectory() + "host.exe";
        return 0;
    }
    vagent::os::LocalTime CurrentLocalTime() override {
        return vagent::os::RealFacility<vagent::os::HostFacts>().CurrentLocalTime();
    }
    std::uint32_t AdapterIPv4Addresses(std::vector<std::string>& addresses) override {
        return vagent::os::RealFacility<vagent::os::HostFacts>().AdapterIPv4Addresses(addresses);
    }

    // The directory as the library writes paths, with its trailing backslash.
    std::string LibraryDirectory() const {
        std::string path = directory_.string();
        for (char& letter : path) {
            if (letter == '/') {
                letter = '\\';
            }
        }
        return path + "\\";
    }

private:
    static std::filesystem::path MakeDirectory() {
        std::random_device seed;
        for (;;) {
            const std::filesystem::path candidate =
                std::filesystem::temp_directory_path() /
                ("vagent-fuzz-config-" + std::to_string(seed()));
            if (std::filesystem::create_directory(candidate)) {
                return candidate;
            }
        }
    }

    std::filesystem::path directory_;
};

void Check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void WriteInput(const std::string& path, const std::uint8_t* data, std::size_t size) {
    std::FILE* file = vagent::os::Files().Open(path, "wb");
    Check(file != nullptr);
    Check(size == 0 || std::fwrite(data, 1, size, file) == size);
    std::fclose(file);
}

// What the parser promises of every entry it keeps.
void CheckEntry(const CONF_T& entry) {
    Check(entry.key[0] != '\0' && entry.key[0] != ' ');
    Check(entry.value[0] != ' ');
    for (const char* text : {entry.section, entry.key, entry.value}) {
        Check(std::strchr(text, '\n') == nullptr && std::strchr(text, ';') == nullptr &&
              std::strstr(text, "//") == nullptr);
    }
}

// Every entry is found by its own section and key.
void CheckLookups(VConfig& config) {
    for (const CONF_T* entry = config.Entries(); entry != nullptr; entry = entry->next) {
        CheckEntry(*entry);
        std::string value;
        Check(config.ReadKeyValue(entry->section, entry->key, value) == 1);
    }
}

void CheckCopy(const VConfig& config) {
    const VConfig copy(config);
    const CONF_T* theirs = config.Entries();
    for (const CONF_T* mine = copy.Entries(); mine != nullptr; mine = mine->next) {
        Check(theirs != nullptr && mine != theirs);
        Check(std::strcmp(mine->section, theirs->section) == 0 &&
              std::strcmp(mine->key, theirs->key) == 0 &&
              std::strcmp(mine->value, theirs->value) == 0);
        theirs = theirs->next;
    }
    Check(theirs == nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ScratchHost host;
    vagent::os::ScopedFacility<vagent::os::HostFacts> scope(host);

    WriteInput(host.LibraryDirectory() + "Config.ini", data, size);
    VConfig config;
    std::string value;
    const int found = config.ReadKeyValue("", "", value);
    Check(found == (config.Entries() != nullptr ? 1 : 0));
    Check(config.IsLoaded() == (found == 1));
    CheckLookups(config);
    CheckCopy(config);
    return 0;
}
