#pragma once

#include <string>
#include <vector>

#include "vagent/FileRecords.h"

namespace vagent::files {

// Lists what a search pattern (a directory and a wild-card name) matches,
// without "." and "..", sorted by name without regard to case. An empty
// pattern lists the machine's drives instead. Returns 0 with an empty output
// when the pattern matches nothing.
int DirList(const std::string& pattern, std::vector<FileAttrA>& entries);

// Answers, for every path in order, whether it exists and whether it is a
// directory. Always returns 1.
int IsFileExist(const std::vector<std::string>& paths, std::vector<ExistAttr>& answers);

}  // namespace vagent::files
