// Parses any bytes as the text of a configuration file, looks up every entry
// that was read, and copies the result. The text comes from memory: the host
// facts are a fake and the file system refuses every call, so no input is
// written to or read from the disk.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fakes/FakeHostFacts.h"
#include "fakes/RefusingFileSystem.h"
#include "os/Facilities.h"
#include "os/FileSystem.h"
#include "os/HostFacts.h"
#include "vagent/VConfig.h"

namespace {

void Check(bool holds) {
    if (!holds) {
        std::abort();
    }
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

// Every entry keeps the parser's promises, and the latest entries are found
// by their own section and key. Each look-up walks the whole list, so only
// the latest few are looked up, to keep one input's cost linear. Returns the
// number of entries.
int CheckLookups(VConfig& config) {
    constexpr int kLookedUp = 16;
    int looked = 0;
    for (const CONF_T* entry = config.Entries(); entry != nullptr; entry = entry->next) {
        CheckEntry(*entry);
        if (looked++ < kLookedUp) {
            std::string value;
            Check(config.ReadKeyValue(entry->section, entry->key, value) == 1);
        }
    }
    return looked;
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
    // The fakes keep nothing between inputs but the count of refused calls,
    // which must stay 0: they are made once.
    static vagent::test::FakeHostFacts host;
    static vagent::test::RefusingFileSystem files;
    vagent::os::ScopedFacility<vagent::os::HostFacts> hostScope(host);
    vagent::os::ScopedFacility<vagent::os::FileSystem> filesScope(files);

    // A line longer than one piece (1023 bytes) reaches every path of the
    // parser; longer texts only add entries, and cost.
    constexpr std::size_t kLongestText = 1100;
    const std::size_t used = size < kLongestText ? size : kLongestText;
    VConfig config;
    const int parsed =
        config.ParseConfigText(std::string(reinterpret_cast<const char*>(data), used));
    Check(parsed == (config.Entries() != nullptr ? 1 : 0));
    Check(config.IsLoaded() == (parsed == 1));
    if (parsed == 1) {
        std::string value;
        Check(config.ReadKeyValue("", "", value) == 1);
    }
    const int entries = CheckLookups(config);
    // Copying is linear and the same for every list; short lists show it.
    if (entries <= 8) {
        CheckCopy(config);
    }
    Check(files.refused == 0);
    return 0;
}
