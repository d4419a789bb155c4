#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "vagent/SessionRecords.h"

namespace vagent {

// Session records by session id, as the host program supplies them. The
// process has one (Process()); every operation holds the table's own lock,
// which the holding thread may enter again.
class SessionTable {
public:
    using Records = std::map<int, _VXSessionA>;

    static SessionTable& Process();

    // Replaces the records by a copy of in (unless in is the table's own
    // map). The first call notes the time; every call more than 60 seconds
    // after it prunes and then copies the records into out (when given and
    // not the table's own map).
    void Set(const Records* in, Records* out);
    // The first record, by ascending id, whose MAC address begins with mac
    // without regard to case.
    bool IdByMac(const std::string& mac, int& id) const;
    // A copy of the record of the session id.
    bool LookUp(int sessionId, _VXSessionA& record) const;

private:
    // Keeps only the records of sessions that the server still lists in a
    // listable state; leaves the table as it is when the server cannot be
    // asked.
    void Prune();

    mutable std::recursive_mutex lock_;
    Records records_;
    bool called_ = false;
    std::int64_t firstCall_ = 0;
};

}  // namespace vagent
