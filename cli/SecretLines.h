#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ConsoleStreams.h"

namespace vagentctl {

// Secrets never come from the command line, where other users of the
// machine could read them: they are read from standard input, typed without
// echo after a prompt on standard error when it is a terminal (an empty line
// ends the list), or to its end otherwise. Empty lines are skipped.
std::vector<std::string> ReadSecretLines(ConsoleStreams& console, const std::string& prompt);

// Splits "a:b:c" at its first count - 1 colons, so that the last field may
// hold colons; a line with fewer fields is a usage error naming `shape`.
std::vector<std::string> SplitFields(const std::string& line, std::size_t count,
                                     const std::string& shape);

}  // namespace vagentctl
