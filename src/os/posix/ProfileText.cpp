#include "os/posix/ProfileText.h"

#include <cctype>

namespace vagent::os {
namespace {

std::string Trimmed(const std::string& text) {
    const char* blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) {
        return std::string();
    }
    const std::size_t last = text.find_last_not_of(blanks);
    return text.substr(first, last - first + 1);
}

bool SameName(const std::string& left, const std::string& right) {
    if (left.size() != right.size()) {
        return false;
    }
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(left[i])) !=
            std::tolower(static_cast<unsigned char>(right[i]))) {
            return false;
        }
    }
    return true;
}

bool IsSectionHeader(const std::string& line) {
    const std::string text = Trimmed(line);
    return !text.empty() && text[0] == '[';
}

// The name inside the brackets; a header without its closing bracket runs to
// the end of the line.
std::string SectionName(const std::string& line) {
    const std::string text = Trimmed(line);
    const std::size_t close = text.find(']');
    return Trimmed(text.substr(1, close == std::string::npos ? std::string::npos : close - 1));
}

bool SplitKeyLine(const std::string& line, std::string& key, std::string& value) {
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) {
        return false;
    }
    key = Trimmed(line.substr(0, equals));
    value = Trimmed(line.substr(equals + 1));
    return true;
}

std::string WithoutQuotes(const std::string& value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
        return value.substr(1, value.size() - 2);
    }
    return value;
}

}  // namespace

ProfileText::ProfileText(const std::string& contents) {
    std::size_t start = 0;
    while (start < contents.size()) {
        std::size_t end = contents.find('\n', start);
        if (end == std::string::npos) {
            end = contents.size();
        }
        std::string line = contents.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines_.push_back(line);
        start = end + 1;
    }
}

std::size_t ProfileText::SectionLine(const std::string& section) const {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (IsSectionHeader(lines_[i]) && SameName(SectionName(lines_[i]), Trimmed(section))) {
            return i;
        }
    }
    return lines_.size();
}

std::size_t ProfileText::KeyLine(std::size_t header, const std::string& key, bool& found) const {
    found = false;
    std::size_t end = header + 1;
    std::size_t lastContent = header;
    for (; end < lines_.size() && !IsSectionHeader(lines_[end]); ++end) {
        std::string name;
        std::string value;
        if (SplitKeyLine(lines_[end], name, value) && SameName(name, Trimmed(key))) {
            found = true;
            return end;
        }
        if (!Trimmed(lines_[end]).empty()) {
            lastContent = end;
        }
    }
    return lastContent + 1;
}

bool ProfileText::Find(const std::string& section, const std::string& key,
                       std::string& value) const {
    const std::size_t header = SectionLine(section);
    if (header == lines_.size()) {
        return false;
    }
    bool found = false;
    const std::size_t line = KeyLine(header, key, found);
    if (!found) {
        return false;
    }
    std::string name;
    SplitKeyLine(lines_[line], name, value);
    value = WithoutQuotes(value);
    return true;
}

void ProfileText::Set(const std::string& section, const std::string& key,
                      const std::string& value) {
    const std::string entry = Trimmed(key) + "=" + value;
    const std::size_t header = SectionLine(section);
    if (header == lines_.size()) {
        lines_.push_back("[" + Trimmed(section) + "]");
        lines_.push_back(entry);
        return;
    }
    bool found = false;
    const std::size_t line = KeyLine(header, key, found);
    if (found) {
        lines_[line] = entry;
    } else {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(line), entry);
    }
}

std::string ProfileText::Contents() const {
    std::string contents;
    for (const std::string& line : lines_) {
        contents += line;
        contents += "\r\n";
    }
    return contents;
}

}  // namespace vagent::os
