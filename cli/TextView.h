#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace vagentctl {

// A result as a person reads it: a value on its own line, a list one entry
// per line, records as a table with a header, an object as "key: value"
// lines.
std::vector<std::string> TextLines(const nlohmann::ordered_json& result);

}  // namespace vagentctl
