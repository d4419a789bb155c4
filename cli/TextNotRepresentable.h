#pragma once

#include <stdexcept>
#include <string>

namespace vagentctl {

// A text that the target's code page has no place for: refused before
// anything is sent.
class TextNotRepresentable : public std::runtime_error {
public:
    TextNotRepresentable(const std::string& text, unsigned codePage)
        : std::runtime_error("\"" + text + "\" cannot be written in code page " +
                             std::to_string(codePage)) {}
};

}  // namespace vagentctl
