#pragma once

#include <nlohmann/json.hpp>

#include <vector>

#include "AgentDriver.h"

namespace vagentctl {

// Records as the results show them: one object each, in the facade's order.
nlohmann::ordered_json ToJson(const std::vector<Account>& accounts);
nlohmann::ordered_json ToJson(const std::vector<SessionEntry>& sessions);
nlohmann::ordered_json ToJson(const std::vector<PrinterEntry>& printers);
nlohmann::ordered_json ToJson(const std::vector<DirectoryEntry>& entries);
nlohmann::ordered_json ToJson(const Names& paths, const std::vector<Existence>& answers);

}  // namespace vagentctl
