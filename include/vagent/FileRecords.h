#pragma once

#include <cstdint>
#include <string>

// One entry of a directory listing: its name without the directory (for a
// drive, its root such as "C:\"), and 1 for a directory or drive, 0 for a
// file.
struct FileAttrA {
    std::string name;
    std::int32_t attribute = 0;
};

struct FileAttrW {
    std::wstring name;
    std::int32_t attribute = 0;
};

// One existence answer: whether the path exists and whether it is a
// directory.
struct ExistAttr {
    std::int32_t exists = 0;
    std::int32_t directory = 0;
};
