#include "sessions/SessionTable.h"

#include <new>
#include <vector>

#include "os/Clock.h"
#include "os/TerminalServices.h"
#include "sessions/SessionNames.h"
#include "vagent/SessionTable.h"
#include "support/TextCompare.h"

namespace vagent {
namespace {

// Records are kept untouched for this long after the first call.
constexpr std::int64_t kGraceSeconds = 60;

}  // namespace

SessionTable& SessionTable::Process() {
    static SessionTable table;
    return table;
}

void SessionTable::Set(const Records* in, Records* out) {
    std::lock_guard<std::recursive_mutex> hold(lock_);
    if (in != nullptr && in != &records_) {
        // Copied aside first, so that running out of memory leaves the table
        // whole.
        Records copy(*in);
        records_.swap(copy);
    }
    const std::int64_t now = os::Installed<os::Clock>().SecondsSinceEpoch();
    if (!called_) {
        called_ = true;
        firstCall_ = now;
    }
    if (now - firstCall_ > kGraceSeconds) {
        Prune();
        if (out != nullptr && out != &records_) {
            *out = records_;
        }
    }
}

void SessionTable::Prune() {
    std::lock_guard<std::recursive_mutex> hold(lock_);
    std::vector<os::SessionEntry> sessions;
    if (os::Installed<os::TerminalServices>().EnumerateSessions(0, 1, sessions) != 0) {
        return;
    }
    Records kept;
    for (const os::SessionEntry& session : sessions) {
        const auto record = records_.find(static_cast<int>(session.sessionId));
        if (record != records_.end() && IsListedSession(session)) {
            kept.insert(*record);
        }
    }
    records_.swap(kept);
}

bool SessionTable::IdByMac(const std::string& mac, int& id) const {
    std::lock_guard<std::recursive_mutex> hold(lock_);
    for (const auto& entry : records_) {
        if (vagent::StartsWithIgnoringCase(entry.second.macAddress, mac)) {
            id = entry.second.sessionId;
            return true;
        }
    }
    return false;
}

bool SessionTable::LookUp(int sessionId, _VXSessionA& record) const {
    std::lock_guard<std::recursive_mutex> hold(lock_);
    const auto found = records_.find(sessionId);
    if (found == records_.end()) {
        return false;
    }
    record = found->second;
    return true;
}

}  // namespace vagent

void SetSessionInfo(std::map<int, _VXSessionA>* in, std::map<int, _VXSessionA>* out) {
    try {
        vagent::SessionTable::Process().Set(in, out);
    } catch (const std::bad_alloc&) {
        // Out of memory: the table keeps its records and out is left as it
        // was or partly filled; nothing is thrown to the host.
    }
}

int GetSessionIdByMac(const std::string& mac, int& id) {
    return vagent::SessionTable::Process().IdByMac(mac, id) ? 1 : 0;
}
