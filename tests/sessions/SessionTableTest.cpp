#include "sessions/SessionTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

#include "sessions/SessionOperations.h"
#include "sessions/TaskHarness.h"
#include "vagent/SessionTable.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::SessionTable;
using vagent::test::FakeSessionHost;

namespace {

_VXSessionA Record(int id, const std::string& mac) {
    _VXSessionA record;
    record.sessionId = id;
    record.info1 = "first";
    record.macAddress = mac;
    record.info3 = "third";
    record.clientAddress = "192.168.0." + std::to_string(id);
    return record;
}

std::vector<int> KeysOf(const SessionTable::Records& records) {
    std::vector<int> keys;
    for (const auto& entry : records) {
        keys.push_back(entry.first);
    }
    return keys;
}

}  // namespace

TEST(SessionTable, IsEmptyBeforeAnyCall) {
    FakeSessionHost host;
    host.server.AddSession(1, "VXP#1", vagent::os::kSessionActive);
    SessionTable table;
    std::vector<_VXSessionA> sessions;
    EXPECT_EQ(vagent::GetSessionInfo(table, sessions), 1);
    EXPECT_THAT(sessions, IsEmpty());
    int id = 77;
    EXPECT_FALSE(table.IdByMac("", id));
    EXPECT_EQ(id, 77);
}

TEST(SessionTable, SecondCallWithinSixtySecondsReplacesTheTableButLeavesOutUnchanged) {
    FakeSessionHost host;
    SessionTable table;
    const SessionTable::Records first = {{1, Record(1, "aa")}, {2, Record(2, "bb")}};
    table.Set(&first, nullptr);
    host.clock.Advance(30);
    const SessionTable::Records second = {{3, Record(3, "cc")}};
    SessionTable::Records out = {{9, Record(9, "zz")}};
    table.Set(&second, &out);
    EXPECT_THAT(KeysOf(out), ElementsAre(9));
    _VXSessionA record;
    EXPECT_FALSE(table.LookUp(1, record));
    EXPECT_TRUE(table.LookUp(3, record));
    EXPECT_THAT(host.server.enumerations, IsEmpty());
}

TEST(SessionTable, CallSixtyOneSecondsAfterTheFirstPrunesAndFillsOut) {
    FakeSessionHost host;
    host.server.AddSession(1, "VXP#1", vagent::os::kSessionActive);
    host.server.AddSession(2, "Console", vagent::os::kSessionActive);
    SessionTable table;
    const SessionTable::Records records = {{1, Record(1, "aa")}, {2, Record(2, "bb")}};
    table.Set(&records, nullptr);
    host.clock.Advance(61);
    SessionTable::Records out = {{9, Record(9, "zz")}};
    table.Set(&records, &out);
    EXPECT_THAT(KeysOf(out), ElementsAre(1));
    EXPECT_EQ(out[1].macAddress, "aa");
    EXPECT_EQ(host.server.enumerations.size(), 1u);
}

TEST(SessionTable, ExactlySixtySecondsLaterNeitherPrunesNorFillsOut) {
    FakeSessionHost host;
    SessionTable table;
    const SessionTable::Records records = {{1, Record(1, "aa")}};
    table.Set(&records, nullptr);
    host.clock.Advance(60);
    SessionTable::Records out;
    table.Set(&records, &out);
    EXPECT_THAT(out, IsEmpty());
    EXPECT_THAT(host.server.enumerations, IsEmpty());
}

TEST(SessionTable, FirstCallTimeIsNeverRefreshed) {
    FakeSessionHost host;
    host.server.AddSession(1, "VXP#1", vagent::os::kSessionActive);
    SessionTable table;
    const SessionTable::Records records = {{1, Record(1, "aa")}};
    table.Set(&records, nullptr);
    host.clock.Advance(61);
    table.Set(&records, nullptr);
    host.clock.Advance(1);
    SessionTable::Records out;
    table.Set(&records, &out);
    EXPECT_THAT(KeysOf(out), ElementsAre(1));
    EXPECT_EQ(host.server.enumerations.size(), 2u);
}

TEST(SessionTable, RecordOfASessionThatLoggedOffIsGoneAfterTheNextPruning) {
    FakeSessionHost host;
    host.server.AddSession(1, "VXP#1", vagent::os::kSessionActive);
    host.server.AddSession(2, "VXP#2", vagent::os::kSessionActive);
    SessionTable table;
    const SessionTable::Records records = {{1, Record(1, "aa")}, {2, Record(2, "bb")}};
    table.Set(&records, nullptr);
    host.server.sessions.erase(host.server.sessions.begin());
    host.clock.Advance(90);
    SessionTable::Records out;
    table.Set(&records, &out);
    EXPECT_THAT(KeysOf(out), ElementsAre(2));
    _VXSessionA record;
    EXPECT_FALSE(table.LookUp(1, record));
}

TEST(SessionTable, PruningKeepsDisconnectedSessionsAndDropsOtherStatesAndLowerCaseNames) {
    FakeSessionHost host;
    host.server.AddSession(1, "Console", vagent::os::kSessionDisconnected);
    host.server.AddSession(2, "vxp#2", vagent::os::kSessionActive);
    host.server.AddSession(3, "VXP#3", vagent::os::kSessionIdle);
    host.server.AddSession(4, "VXP#4", vagent::os::kSessionActive);
    SessionTable table;
    const SessionTable::Records records = {
        {1, Record(1, "a")}, {2, Record(2, "b")}, {3, Record(3, "c")}, {4, Record(4, "d")}};
    table.Set(&records, nullptr);
    host.clock.Advance(61);
    SessionTable::Records out;
    table.Set(&records, &out);
    EXPECT_THAT(KeysOf(out), ElementsAre(1, 4));
}

TEST(SessionTable, FailedEnumerationLeavesTheTableUnchanged) {
    FakeSessionHost host;
    host.server.enumerateStatus = 5;
    SessionTable table;
    const SessionTable::Records records = {{1, Record(1, "a")}, {2, Record(2, "b")}};
    table.Set(&records, nullptr);
    host.clock.Advance(61);
    SessionTable::Records out;
    table.Set(&records, &out);
    EXPECT_THAT(KeysOf(out), ElementsAre(1, 2));
}

TEST(SessionTable, MacMatchesWithoutRegardToCaseOverItsOwnLength) {
    FakeSessionHost host;
    SessionTable table;
    const SessionTable::Records records = {{4, Record(4, "00-1A-2B-3C-4D-5E")}};
    table.Set(&records, nullptr);
    int id = 0;
    EXPECT_TRUE(table.IdByMac("00-1a", id));
    EXPECT_EQ(id, 4);
    id = 0;
    EXPECT_TRUE(table.IdByMac("00-1A", id));
    EXPECT_EQ(id, 4);
    id = 0;
    EXPECT_TRUE(table.IdByMac("00-1a-2b-3c-4d-5e", id));
    EXPECT_EQ(id, 4);
}

TEST(SessionTable, MacLongerThanTheStoredAddressOrDifferentDoesNotMatch) {
    FakeSessionHost host;
    SessionTable table;
    const SessionTable::Records records = {{4, Record(4, "00-1A")}};
    table.Set(&records, nullptr);
    int id = 31;
    EXPECT_FALSE(table.IdByMac("00-1A-2B", id));
    EXPECT_FALSE(table.IdByMac("00-1B", id));
    EXPECT_EQ(id, 31);
}

TEST(SessionTable, EmptyMacMatchesTheFirstRecordInIdOrder) {
    FakeSessionHost host;
    SessionTable table;
    const SessionTable::Records records = {{9, Record(9, "ff")}, {3, Record(3, "ee")}};
    table.Set(&records, nullptr);
    int id = 0;
    EXPECT_TRUE(table.IdByMac("", id));
    EXPECT_EQ(id, 3);
}

TEST(SessionTable, MacLookUpGivesTheRecordsOwnSessionId) {
    FakeSessionHost host;
    SessionTable table;
    _VXSessionA record = Record(12, "aa-bb");
    const SessionTable::Records records = {{5, record}};
    table.Set(&records, nullptr);
    int id = 0;
    EXPECT_TRUE(table.IdByMac("AA-BB", id));
    EXPECT_EQ(id, 12);
}

TEST(SessionTable, NullInputKeepsTheRecords) {
    FakeSessionHost host;
    SessionTable table;
    const SessionTable::Records records = {{1, Record(1, "a")}};
    table.Set(&records, nullptr);
    table.Set(nullptr, nullptr);
    _VXSessionA record;
    EXPECT_TRUE(table.LookUp(1, record));
}

namespace {

// One of two tables that disagree on every record: each record's MAC and
// info1 name the table it belongs to, so a reader that sees parts of both
// tables, or a record half replaced, notices.
SessionTable::Records TableNamed(const std::string& name, int size) {
    SessionTable::Records records;
    for (int id = 1; id <= size; ++id) {
        _VXSessionA record = Record(id, name + "-" + std::to_string(id));
        record.info1 = name;
        records[id] = record;
    }
    return records;
}

// A record is whole when its MAC and info1 come from the same table.
bool IsWhole(const _VXSessionA& record, int id) {
    return record.sessionId == id && record.macAddress == record.info1 + "-" + std::to_string(id);
}

}  // namespace

TEST(SessionTable, ConcurrentCallersSeeWholeTables) {
    FakeSessionHost host;
    SessionTable table;
    const SessionTable::Records first = TableNamed("aa", 48);
    const SessionTable::Records second = TableNamed("bb", 64);
    table.Set(&first, nullptr);
    std::atomic<bool> started{false};
    std::atomic<bool> done{false};
    std::atomic<bool> torn{false};
    std::thread writer([&] {
        while (!started) {
            std::this_thread::yield();
        }
        for (int i = 0; i < 4000; ++i) {
            table.Set(i % 2 == 0 ? &second : &first, nullptr);
        }
        done = true;
    });
    started = true;
    // Reads for as long as the writer writes, and at most a bounded count.
    for (int round = 0; round < 200000 && !done; ++round) {
        const int id = 1 + round % 64;
        _VXSessionA record;
        if (table.LookUp(id, record) && !IsWhole(record, id)) {
            torn = true;
        }
        int found = 0;
        // The first record of either table matches its own name only.
        if ((table.IdByMac("aa", found) && found != 1) ||
            (table.IdByMac("bb-6", found) && found != 6)) {
            torn = true;
        }
    }
    writer.join();
    EXPECT_FALSE(torn);
}

TEST(ExportedSessionTable, SetSessionInfoFeedsGetSessionIdByMacAndTheSessionList) {
    FakeSessionHost host;
    host.server.AddSession(6, "VXP#6", vagent::os::kSessionActive);
    std::map<int, _VXSessionA> records = {{6, Record(6, "0A-0B-0C-0D-0E-0F")}};
    SetSessionInfo(&records, nullptr);
    int id = 0;
    EXPECT_EQ(GetSessionIdByMac("0a-0b", id), 1);
    EXPECT_EQ(id, 6);
    EXPECT_EQ(GetSessionIdByMac("11-22", id), 0);
    std::vector<_VXSessionA> sessions;
    EXPECT_EQ(vagent::GetSessionInfo(sessions), 1);
    ASSERT_EQ(sessions.size(), 1u);
    EXPECT_EQ(sessions[0].macAddress, "0A-0B-0C-0D-0E-0F");
}

// The process-wide table is empty until the host first fills it. Other tests
// of this program fill it, so the check runs in a fresh process of its own.
TEST(ExportedSessionTableDeathTest, ProcessTableIsEmptyBeforeTheFirstSetSessionInfo) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            FakeSessionHost host;
            host.server.AddSession(6, "VXP#6", vagent::os::kSessionActive);
            int id = 7;
            const bool unmatched = GetSessionIdByMac("", id) == 0 && id == 7;
            std::vector<_VXSessionA> sessions;
            const bool unlisted = vagent::GetSessionInfo(sessions) == 1 && sessions.empty();
            std::exit(unmatched && unlisted ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}
