#pragma once

#include <string>

namespace vagent {

// Letters are folded as ASCII capitals to small letters, whatever the C
// runtime's locale, so that names compare the same on every host.

// Compares as _stricmp does: negative, zero or positive.
int CompareIgnoringCase(const std::string& left, const std::string& right);

bool EqualsIgnoringCase(const std::string& left, const std::string& right);

// Whether text begins with prefix.
bool StartsWithIgnoringCase(const std::string& text, const std::string& prefix);

}  // namespace vagent
