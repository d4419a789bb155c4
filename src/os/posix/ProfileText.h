#pragma once

#include <string>
#include <vector>

namespace vagent::os {

// The text of a private-profile file, line by line, with the look-up and
// update rules of the Windows profile functions: section and key names are
// compared without regard to case and without surrounding blanks; the first
// matching section and key win.
class ProfileText {
public:
    explicit ProfileText(const std::string& contents);

    // The key's value without surrounding blanks or one pair of matching
    // quotes; false when the section or the key is missing.
    bool Find(const std::string& section, const std::string& key, std::string& value) const;
    // Replaces the key's line, or adds it after the section's last line, or
    // adds the section at the end of the file.
    void Set(const std::string& section, const std::string& key, const std::string& value);
    // The file's text, each line ended by a carriage return and a line feed.
    std::string Contents() const;

private:
    // The index of the section's header line, or the number of lines.
    std::size_t SectionLine(const std::string& section) const;
    // The index of the key's line in the section that starts after header,
    // or the index where the section ends.
    std::size_t KeyLine(std::size_t header, const std::string& key, bool& found) const;

    std::vector<std::string> lines_;
};

}  // namespace vagent::os
