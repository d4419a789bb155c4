#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "vagent/Export.h"

// One key line of a configuration file. Each text is its own heap array of
// exactly its length + 1 bytes, zero-terminated.
struct CONF_T {
    CONF_T* next = nullptr;
    char* section = nullptr;  // "" for lines before the first section header
    char* key = nullptr;
    char* value = nullptr;
};

// Reads an INI-style file that lies beside the executable, by default
// "Config.ini", and answers look-ups of a key within a section. The file is
// read at the first look-up and kept; it is never written.
//
// Host programs share this class's layout: the loaded flag, the directory and
// the file name as fixed 256-character arrays, then the head of the entries.
// A name of 256 characters fills its array without a terminating zero.
class VAGENT_API VConfig {
public:
    static constexpr std::size_t kTextCapacity = 256;

    // Takes the executable's directory; does not read the file.
    VConfig();
    // Copies get a list of their own, so that no two objects free one list.
    // A copy whose list cannot be allocated starts unloaded and reads the
    // file itself at its first look-up.
    VConfig(const VConfig& other);
    VConfig& operator=(const VConfig& other);
    ~VConfig();

    // Names the file, relative to the executable's directory, and hands back
    // the previous name when `previous` is given. A different name drops the
    // entries read so far; the same name (compared case-sensitively) keeps
    // them. Always returns 1.
    int SetConfigFile(const std::string& name, std::string* previous = nullptr);
    // Returns 1 and sets `value` when some entry's key starts with `key`
    // (ignoring ASCII case): the latest such line of `section` wins, and
    // without one the earliest such line of any section. Returns 0 and
    // leaves `value` alone otherwise, or when the file yields no entry.
    int ReadKeyValue(const std::string& section, const std::string& key, std::string& value);
    // Replaces the entries by those of the text, read as the file's contents
    // are read; 1 when it yielded at least one entry. Reading the file comes
    // down to this.
    int ParseConfigText(const std::string& text);

    std::string GetDirectory() const;
    std::string GetFileName() const;
    bool IsLoaded() const { return loaded_ != 0; }
    // The head of the entries, the last line of the file first.
    const CONF_T* Entries() const { return entries_; }

private:
    // Reads the file into the list; 1 when it yielded at least one entry.
    // Only called while the list is empty.
    int ReadConfig();
    void ReadLine(const char* piece, std::string& section);
    void AddEntry(const std::string& section, const std::string& key, const std::string& value);
    void FreeConf();

    std::int32_t loaded_ = 0;
    char directory_[kTextCapacity] = {};
    char fileName_[kTextCapacity] = {};
    CONF_T* entries_ = nullptr;
};
