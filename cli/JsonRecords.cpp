#include "JsonRecords.h"

namespace vagentctl {

using nlohmann::ordered_json;

ordered_json ToJson(const std::vector<Account>& accounts) {
    ordered_json records = ordered_json::array();
    for (const Account& account : accounts) {
        records.push_back({{"name", account.name}, {"comment", account.comment}});
    }
    return records;
}

ordered_json ToJson(const std::vector<SessionEntry>& sessions) {
    ordered_json records = ordered_json::array();
    for (const SessionEntry& session : sessions) {
        records.push_back({{"id", session.id},
                           {"info1", session.info1},
                           {"mac", session.macAddress},
                           {"info3", session.info3},
                           {"address", session.clientAddress}});
    }
    return records;
}

ordered_json ToJson(const std::vector<PrinterEntry>& printers) {
    ordered_json records = ordered_json::array();
    for (const PrinterEntry& printer : printers) {
        records.push_back({{"session", printer.sessionId}, {"printer", printer.name}});
    }
    return records;
}

ordered_json ToJson(const std::vector<DirectoryEntry>& entries) {
    ordered_json records = ordered_json::array();
    for (const DirectoryEntry& entry : entries) {
        records.push_back({{"name", entry.name}, {"type", entry.directory ? "dir" : "file"}});
    }
    return records;
}

// The service answers in the order it was asked; answers beyond the paths
// asked for are not shown.
ordered_json ToJson(const Names& paths, const std::vector<Existence>& answers) {
    ordered_json records = ordered_json::array();
    for (std::size_t i = 0; i < paths.size() && i < answers.size(); ++i) {
        records.push_back({{"path", paths[i]},
                           {"exists", answers[i].exists},
                           {"directory", answers[i].directory}});
    }
    return records;
}

}  // namespace vagentctl
