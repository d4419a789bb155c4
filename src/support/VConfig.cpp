#include "vagent/VConfig.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "os/Facilities.h"
#include "os/FileSystem.h"
#include "os/HostFacts.h"
#include "support/ModuleDirectory.h"
#include "vagent/DllLog.h"

namespace {

constexpr const char* kDefaultFileName = "Config.ini";
// Longer physical lines are read in pieces of at most one byte less.
constexpr std::size_t kLineBufferSize = 1024;

void CutAt(std::string& line, const char* marker) {
    const std::size_t at = line.find(marker);
    if (at != std::string::npos) {
        line.resize(at);
    }
}

void CutLineEnd(std::string& line) {
    if (line.find("\r\n") != std::string::npos) {
        CutAt(line, "\r\n");
    } else {
        CutAt(line, "\n");
    }
}

// Only the space counts as a blank: tabs stay part of the text.
void TrimLeadingBlanks(std::string& text) {
    text.erase(0, text.find_first_not_of(' '));
}

void TrimTrailingBlanks(std::string& text) {
    const std::size_t last = text.find_last_not_of(' ');
    text.resize(last == std::string::npos ? 0 : last + 1);
}

void TrimBlanks(std::string& text) {
    TrimLeadingBlanks(text);
    TrimTrailingBlanks(text);
}

bool IsSectionHeader(const std::string& line) {
    return line.front() == '[' && line.back() == ']';
}

// Splits "key = value"; false when the line has no "=" or begins with it.
bool SplitKeyValue(const std::string& line, std::string& key, std::string& value) {
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos || equals == 0) {
        return false;
    }
    key = line.substr(0, equals);
    TrimTrailingBlanks(key);
    value = line.substr(equals + 1);
    TrimLeadingBlanks(value);
    return true;
}

char* Duplicate(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    char* copy = new (std::nothrow) char[size];
    if (copy != nullptr) {
        std::memcpy(copy, text, size);
    }
    return copy;
}

bool DuplicateLogged(char*& target, const std::string& text) {
    target = Duplicate(text.c_str());
    if (target == nullptr) {
        DllLogPrintf("ReadConfig : new [%d] bytes failed", static_cast<int>(text.size() + 1));
        return false;
    }
    return true;
}

void FreeEntry(CONF_T* entry) {
    delete[] entry->section;
    delete[] entry->key;
    delete[] entry->value;
    delete entry;
}

void FreeList(CONF_T* head) {
    while (head != nullptr) {
        CONF_T* next = head->next;
        FreeEntry(head);
        head = next;
    }
}

CONF_T* CopyEntry(const CONF_T& entry) {
    CONF_T* copy = new (std::nothrow) CONF_T();
    if (copy == nullptr) {
        return nullptr;
    }
    copy->section = Duplicate(entry.section);
    copy->key = Duplicate(entry.key);
    copy->value = Duplicate(entry.value);
    if (copy->section == nullptr || copy->key == nullptr || copy->value == nullptr) {
        FreeEntry(copy);
        return nullptr;
    }
    return copy;
}

// The list copied in the same order; null when any allocation fails.
CONF_T* CopyList(const CONF_T* head) {
    CONF_T* copy = nullptr;
    CONF_T** tail = &copy;
    for (const CONF_T* entry = head; entry != nullptr; entry = entry->next) {
        CONF_T* twin = CopyEntry(*entry);
        if (twin == nullptr) {
            FreeList(copy);
            return nullptr;
        }
        *tail = twin;
        tail = &twin->next;
    }
    return copy;
}

// Compares like _strnicmp: at most `length` bytes, ignoring ASCII case, and
// no further than the end of either text.
bool SameIgnoringCase(const char* requested, const char* stored, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        const unsigned char wanted = static_cast<unsigned char>(requested[i]);
        const unsigned char have = static_cast<unsigned char>(stored[i]);
        const int lowerWanted = wanted >= 'A' && wanted <= 'Z' ? wanted + ('a' - 'A') : wanted;
        const int lowerHave = have >= 'A' && have <= 'Z' ? have + ('a' - 'A') : have;
        if (lowerWanted != lowerHave) {
            return false;
        }
        if (wanted == '\0') {
            return true;
        }
    }
    return true;
}

bool Matches(const std::string& requested, const char* stored) {
    return SameIgnoringCase(requested.c_str(), stored, requested.size());
}

// The text of a fixed array, which a name of its full capacity fills without
// a terminating zero.
std::string ArrayText(const char (&array)[VConfig::kTextCapacity]) {
    std::size_t length = 0;
    while (length < VConfig::kTextCapacity && array[length] != '\0') {
        ++length;
    }
    return std::string(array, length);
}

// Copies at most the array's capacity and zero-fills the rest, as strncpy
// does: a text of the full capacity is left without a terminating zero.
void CopyBounded(char (&array)[VConfig::kTextCapacity], const char* text) {
    std::size_t length = 0;
    while (length < VConfig::kTextCapacity && text[length] != '\0') {
        array[length] = text[length];
        ++length;
    }
    std::fill(array + length, array + VConfig::kTextCapacity, '\0');
}

// The next piece of the text as a line reader with a buffer of
// kLineBufferSize bytes hands it out: through the next line break, or
// kLineBufferSize - 1 bytes when the line is longer.
std::string NextPiece(const std::string& text, std::size_t& at) {
    const std::size_t longest = kLineBufferSize - 1;
    const std::size_t lineBreak = text.find('\n', at);
    std::size_t end = lineBreak == std::string::npos ? text.size() : lineBreak + 1;
    if (end - at > longest) {
        end = at + longest;
    }
    std::string piece = text.substr(at, end - at);
    at = end;
    return piece;
}

// The whole contents of a stream opened in text mode, so that line ends are
// translated as the system's text mode does.
std::string ReadAll(std::FILE* file) {
    std::string text;
    char chunk[4096];
    std::size_t got = 0;
    while ((got = std::fread(chunk, 1, sizeof chunk, file)) != 0) {
        text.append(chunk, got);
    }
    return text;
}

}  // namespace

VConfig::VConfig() {
    CopyBounded(directory_, vagent::ModuleDirectory(vagent::os::Module::Executable).c_str());
    CopyBounded(fileName_, kDefaultFileName);
}

VConfig::VConfig(const VConfig& other) : entries_(CopyList(other.entries_)) {
    std::memcpy(directory_, other.directory_, kTextCapacity);
    std::memcpy(fileName_, other.fileName_, kTextCapacity);
    loaded_ = entries_ != nullptr ? 1 : 0;
}

VConfig& VConfig::operator=(const VConfig& other) {
    if (this != &other) {
        CONF_T* copy = CopyList(other.entries_);
        FreeConf();
        std::memcpy(directory_, other.directory_, kTextCapacity);
        std::memcpy(fileName_, other.fileName_, kTextCapacity);
        entries_ = copy;
        loaded_ = entries_ != nullptr ? 1 : 0;
    }
    return *this;
}

std::string VConfig::GetDirectory() const {
    return ArrayText(directory_);
}

std::string VConfig::GetFileName() const {
    return ArrayText(fileName_);
}

VConfig::~VConfig() {
    FreeConf();
}

int VConfig::SetConfigFile(const std::string& name, std::string* previous) {
    // Taken first: `previous` may be the very string that holds the new name.
    const std::string wanted(name.c_str());
    const std::string current = GetFileName();
    if (previous != nullptr) {
        *previous = current;
    }
    if (current != wanted) {
        FreeConf();
        CopyBounded(fileName_, wanted.c_str());
    }
    return 1;
}

int VConfig::ReadKeyValue(const std::string& section, const std::string& key, std::string& value) {
    if (loaded_ == 0 && ReadConfig() == 0) {
        return 0;
    }
    int found = 0;
    for (const CONF_T* entry = entries_; entry != nullptr; entry = entry->next) {
        if (!Matches(key, entry->key)) {
            continue;
        }
        found = 1;
        value = entry->value;
        if (Matches(section, entry->section)) {
            break;
        }
    }
    return found;
}

int VConfig::ReadConfig() {
    const std::string path = GetDirectory() + GetFileName();
    vagent::os::FileSystem& files = vagent::os::Files();
    if (!files.Exists(path)) {
        DllLogPrintf("File [%s] Not Exit", path.c_str());
        return 0;
    }
    std::FILE* file = files.Open(path, "rt");
    if (file == nullptr) {
        DllLogPrintf("fopen [%s] failed", path.c_str());
        return 0;
    }
    const std::string text = ReadAll(file);
    std::fclose(file);
    return ParseConfigText(text);
}

int VConfig::ParseConfigText(const std::string& text) {
    FreeConf();
    std::string section;
    std::size_t at = 0;
    while (at < text.size()) {
        ReadLine(NextPiece(text, at).c_str(), section);
    }
    loaded_ = entries_ != nullptr ? 1 : 0;
    return loaded_;
}

// A zero byte ends the line's text, as it ends the C string the piece is read
// into.
void VConfig::ReadLine(const char* piece, std::string& section) {
    std::string line(piece);
    CutLineEnd(line);
    CutAt(line, "//");
    CutAt(line, ";");
    TrimBlanks(line);
    if (line.size() <= 1) {
        return;
    }
    if (IsSectionHeader(line)) {
        std::string name = line.substr(1, line.size() - 2);
        TrimBlanks(name);
        // One-letter section names are never accepted: such a header is
        // skipped and its lines stay in the section before it.
        if (name.size() == 1) {
            return;
        }
        section = name;
        line = name;
    }
    std::string key;
    std::string value;
    if (SplitKeyValue(line, key, value)) {
        AddEntry(section, key, value);
    }
}

void VConfig::AddEntry(const std::string& section, const std::string& key,
                       const std::string& value) {
    CONF_T* entry = new (std::nothrow) CONF_T();
    if (entry == nullptr) {
        DllLogPrintf("ReadConfig : new CONF_T bytes failed");
        return;
    }
    if (!DuplicateLogged(entry->section, section) || !DuplicateLogged(entry->key, key) ||
        !DuplicateLogged(entry->value, value)) {
        FreeEntry(entry);
        return;
    }
    entry->next = entries_;
    entries_ = entry;
}

void VConfig::FreeConf() {
    FreeList(entries_);
    entries_ = nullptr;
    loaded_ = 0;
}
