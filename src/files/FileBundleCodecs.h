#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vagent::files {

// Packs files into one result block: for each file that exists and is not
// empty, the name under which the receiver stores it, then its whole
// contents. Missing, unreadable and empty files are skipped. The block is
// allocated with new[] for the caller to delete[].
int Files2Result(const std::vector<std::string>& files, const std::vector<std::string>& names,
                 std::uint8_t*& block, std::uint32_t& blockSize);

// Writes every file of such a block's payload under its name.
int Result2Files(const std::uint8_t* payload, std::uint32_t length);

}  // namespace vagent::files
