#pragma once

#include <string>

// One account or group: its name and its descriptive comment.
struct _VXUserInfoA {
    std::string name;
    std::string comment;
};

struct _VXUserInfoW {
    std::wstring name;
    std::wstring comment;
};

// One group to which a user belongs.
struct _VXUserGroupA {
    std::string name;
};

struct _VXUserGroupW {
    std::wstring name;
};
