#pragma once

#include <cstdint>
#include <string>

namespace vagent::files {

// Copies a file, or a directory's files (and, when recursive, its
// subdirectories), to another path of this host, overwriting read-only
// targets. A failure leaves its status in errorCode.
bool CopyLocally(const std::string& source, const std::string& destination, bool recursive,
                 std::uint32_t& errorCode);

}  // namespace vagent::files
