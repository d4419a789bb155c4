#pragma once

#include <string>

namespace vagent::files {

// Compares as _stricmp does: byte by byte after folding ASCII capitals to
// small letters; negative, zero or positive.
int CompareIgnoringCase(const std::string& left, const std::string& right);

// Whether text begins with prefix, letters compared without regard to case.
bool StartsWithIgnoringCase(const std::string& text, const std::string& prefix);

}  // namespace vagent::files
