#pragma once

#include <string>
#include <vector>

#include "vagent/Export.h"

// A privilege: the list of its names. Lists of privileges travel as vectors of
// pointers that the receiver owns and deletes.
class VAGENT_API VPrivilege {
public:
    std::vector<std::string> names;
};
