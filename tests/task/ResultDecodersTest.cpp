#include "vagent/ResultDecoders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "vagent/ResultEncoders.h"
#include "vagent/VPrivilege.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Bytes = std::vector<std::uint8_t>;
using Strings = std::vector<std::string>;

// A payload made of the given items, each a big-endian length and its bytes.
Bytes PayloadOf(const Strings& items) {
    Bytes payload;
    for (const std::string& item : items) {
        const auto length = static_cast<std::uint32_t>(item.size());
        payload.push_back(static_cast<std::uint8_t>(length >> 24));
        payload.push_back(static_cast<std::uint8_t>(length >> 16));
        payload.push_back(static_cast<std::uint8_t>(length >> 8));
        payload.push_back(static_cast<std::uint8_t>(length));
        payload.insert(payload.end(), item.begin(), item.end());
    }
    return payload;
}

// The given items, then one whose length claims 9 bytes of which 1 is there.
Bytes OverrunningPayloadAfter(const Strings& items) {
    Bytes payload = PayloadOf(items);
    const Bytes bad = {0x00, 0x00, 0x00, 0x09, 'x'};
    payload.insert(payload.end(), bad.begin(), bad.end());
    return payload;
}

std::uint32_t SizeOf(const Bytes& payload) {
    return static_cast<std::uint32_t>(payload.size());
}

// The payload of a block an encoder made: the block without its prefix.
template <typename EncodeCall>
Bytes EncodedPayload(EncodeCall encode) {
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(encode(data, size), 1);
    Bytes payload(data + 4, data + size);
    delete[] data;
    return payload;
}

// Owns what Result2Privilege appends.
struct PrivilegeList {
    std::vector<VPrivilege*> pointers;
    ~PrivilegeList() {
        for (VPrivilege* privilege : pointers) {
            delete privilege;
        }
    }
};

const char* const kCursorError = "GetNextDataItem : Data Format Error!";

}  // namespace

TEST(Data2VecTString, DecodesEveryItemInOrder) {
    const Bytes payload = {0x00, 0x00, 0x00, 0x02, 0x61, 0x62, 0x00, 0x00,
                           0x00, 0x00, 0x00, 0x00, 0x00, 0x01, 0x63};
    Strings vec;
    EXPECT_EQ(Data2VecTString(payload.data(), SizeOf(payload), vec), 1);
    EXPECT_THAT(vec, ElementsAre("ab", "", "c"));
}

TEST(Data2VecTString, RoundTripsVecTStringToResult) {
    const Strings original = {"alpha", "", "beta gamma", std::string(300, 'q')};
    const Bytes payload = EncodedPayload([&original](std::uint8_t*& data, std::uint32_t& size) {
        return VecTStringToResult(original, data, size);
    });
    Strings decoded;
    EXPECT_EQ(Data2VecTString(payload.data(), SizeOf(payload), decoded), 1);
    EXPECT_EQ(decoded, original);
}

TEST(Data2VecTString, ClearsTheVectorFirst) {
    const Bytes payload = PayloadOf({"new"});
    Strings vec = {"old1", "old2"};
    EXPECT_EQ(Data2VecTString(payload.data(), SizeOf(payload), vec), 1);
    EXPECT_THAT(vec, ElementsAre("new"));
}

TEST(Data2VecTString, EmbeddedZeroByteCutsTheItem) {
    const Bytes payload = {0x00, 0x00, 0x00, 0x03, 'a', 0x00, 'b', 0x00, 0x00, 0x00, 0x01, 'c'};
    Strings vec;
    EXPECT_EQ(Data2VecTString(payload.data(), SizeOf(payload), vec), 1);
    EXPECT_THAT(vec, ElementsAre("a", "c"));
}

TEST(Data2VecTString, OverrunningItemKeepsItemsDecodedBefore) {
    vagent::test::LogCapture capture;
    const Bytes payload = OverrunningPayloadAfter({"one", "two"});
    Strings vec;
    EXPECT_EQ(Data2VecTString(payload.data(), SizeOf(payload), vec), 0);
    EXPECT_THAT(vec, ElementsAre("one", "two"));
    EXPECT_THAT(capture.Texts(), ElementsAre(kCursorError, "Data2VecTString : Data Format Error"));
}

TEST(Data2VecTString, EmptyPayloadIsFormatError) {
    vagent::test::LogCapture capture;
    const std::uint8_t byte = 0;
    Strings vec = {"old"};
    EXPECT_EQ(Data2VecTString(&byte, 0, vec), 0);
    EXPECT_THAT(vec, IsEmpty());
    EXPECT_THAT(capture.Texts(), ElementsAre(kCursorError, "Data2VecTString : Data Format Error"));
}

TEST(Data2VecTString, AllocationFailureLeavesVectorAsItWas) {
    vagent::test::LogCapture capture;
    const Bytes payload = PayloadOf({"new"});
    Strings vec = {"old"};
    {
        vagent::test::ScopedAllocationFailure failure;
        EXPECT_EQ(Data2VecTString(payload.data(), SizeOf(payload), vec), 0);
        EXPECT_EQ(failure.Refused(), 1);
    }
    EXPECT_THAT(vec, ElementsAre("old"));
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(Data2VecTString2, ThreeItemsYieldOnePairAndNoError) {
    vagent::test::LogCapture capture;
    const Bytes payload = PayloadOf({"a", "1", "b"});
    Strings vec1;
    Strings vec2;
    EXPECT_EQ(Data2VecTString2(payload.data(), SizeOf(payload), vec1, vec2), 1);
    EXPECT_THAT(vec1, ElementsAre("a"));
    EXPECT_THAT(vec2, ElementsAre("1"));
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(Data2VecTString2, RoundTripsVecTString2ToResult) {
    const Strings first = {"u1", "u2", ""};
    const Strings second = {"p1", "", "p3"};
    const Bytes payload =
        EncodedPayload([&first, &second](std::uint8_t*& data, std::uint32_t& size) {
            return VecTString2ToResult(first, second, data, size);
        });
    Strings vec1 = {"old"};
    Strings vec2 = {"old"};
    EXPECT_EQ(Data2VecTString2(payload.data(), SizeOf(payload), vec1, vec2), 1);
    EXPECT_EQ(vec1, first);
    EXPECT_EQ(vec2, second);
}

TEST(Data2VecTString2, OverrunningItemKeepsPairsDecodedBefore) {
    vagent::test::LogCapture capture;
    const Bytes payload = OverrunningPayloadAfter({"a", "1", "b"});
    Strings vec1;
    Strings vec2;
    EXPECT_EQ(Data2VecTString2(payload.data(), SizeOf(payload), vec1, vec2), 0);
    EXPECT_THAT(vec1, ElementsAre("a"));
    EXPECT_THAT(vec2, ElementsAre("1"));
    EXPECT_THAT(capture.Texts(), ElementsAre(kCursorError, "Data2VecTString2 : Data Format Error"));
}

TEST(Data2VecTString2, AllocationFailureLeavesVectorsAsTheyWere) {
    const Bytes payload = PayloadOf({"a", "1"});
    Strings vec1 = {"old1"};
    Strings vec2 = {"old2"};
    vagent::test::ScopedAllocationFailure failure;
    EXPECT_EQ(Data2VecTString2(payload.data(), SizeOf(payload), vec1, vec2), 0);
    EXPECT_THAT(vec1, ElementsAre("old1"));
    EXPECT_THAT(vec2, ElementsAre("old2"));
}

TEST(Data2VecTString3, RoundTripsVecTString3ToResult) {
    const Strings first = {"a", "b"};
    const Strings second = {"1", ""};
    const Strings third = {"x", "y"};
    const Bytes payload =
        EncodedPayload([&first, &second, &third](std::uint8_t*& data, std::uint32_t& size) {
            return VecTString3ToResult(first, second, third, data, size);
        });
    Strings vec1;
    Strings vec2;
    Strings vec3;
    EXPECT_EQ(Data2VecTString3(payload.data(), SizeOf(payload), vec1, vec2, vec3), 1);
    EXPECT_EQ(vec1, first);
    EXPECT_EQ(vec2, second);
    EXPECT_EQ(vec3, third);
}

TEST(Data2VecTString3, IncompleteTripleIsDroppedSilently) {
    vagent::test::LogCapture capture;
    const Bytes payload = PayloadOf({"a", "1", "x", "b", "2"});
    Strings vec1;
    Strings vec2;
    Strings vec3;
    EXPECT_EQ(Data2VecTString3(payload.data(), SizeOf(payload), vec1, vec2, vec3), 1);
    EXPECT_THAT(vec1, ElementsAre("a"));
    EXPECT_THAT(vec2, ElementsAre("1"));
    EXPECT_THAT(vec3, ElementsAre("x"));
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(Data2VecTString3, OverrunningItemKeepsTriplesDecodedBefore) {
    vagent::test::LogCapture capture;
    const Bytes payload = OverrunningPayloadAfter({"a", "1", "x", "b"});
    Strings vec1;
    Strings vec2;
    Strings vec3;
    EXPECT_EQ(Data2VecTString3(payload.data(), SizeOf(payload), vec1, vec2, vec3), 0);
    EXPECT_THAT(vec1, ElementsAre("a"));
    EXPECT_THAT(vec2, ElementsAre("1"));
    EXPECT_THAT(vec3, ElementsAre("x"));
    EXPECT_THAT(capture.Texts(), ElementsAre(kCursorError, "Data2VecTString3 : Data Format Error"));
}

TEST(Data2VecTString3, AllocationFailureReturnsVectorsEmpty) {
    const Bytes payload = PayloadOf({"a", "1", "x"});
    Strings vec1 = {"old"};
    Strings vec2 = {"old"};
    Strings vec3 = {"old"};
    vagent::test::ScopedAllocationFailure failure;
    EXPECT_EQ(Data2VecTString3(payload.data(), SizeOf(payload), vec1, vec2, vec3), 0);
    EXPECT_THAT(vec1, IsEmpty());
    EXPECT_THAT(vec2, IsEmpty());
    EXPECT_THAT(vec3, IsEmpty());
}

TEST(Data2VecUser, RoundTripsVecUser2Result) {
    const std::vector<_VXUserInfoA> original = {{"alice", "Finance"}, {"bob", ""}};
    const Bytes payload = EncodedPayload([&original](std::uint8_t*& data, std::uint32_t& size) {
        return VecUser2Result(original, data, size);
    });
    std::vector<_VXUserInfoA> users = {{"old", "old"}};
    EXPECT_EQ(Data2VecUser(payload.data(), SizeOf(payload), users), 1);
    ASSERT_EQ(users.size(), 2u);
    EXPECT_EQ(users[0].name, "alice");
    EXPECT_EQ(users[0].comment, "Finance");
    EXPECT_EQ(users[1].name, "bob");
    EXPECT_EQ(users[1].comment, "");
}

TEST(Data2VecUser, OddItemCountDropsTheLastName) {
    const Bytes payload = PayloadOf({"alice", "x", "bob"});
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(Data2VecUser(payload.data(), SizeOf(payload), users), 1);
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users[0].name, "alice");
}

TEST(Data2VecUser, OverrunningItemKeepsRecordsDecodedBefore) {
    vagent::test::LogCapture capture;
    const Bytes payload = OverrunningPayloadAfter({"alice", "x"});
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(Data2VecUser(payload.data(), SizeOf(payload), users), 0);
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users[0].comment, "x");
    EXPECT_THAT(capture.Texts(), ElementsAre(kCursorError, "Data2VecUser : Data Format Error"));
}

TEST(Data2VecUser, ItemOf1027BytesFitsTheScratchBuffer) {
    const std::string longest(1027, 'n');
    const Bytes payload = PayloadOf({longest, "c"});
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(Data2VecUser(payload.data(), SizeOf(payload), users), 1);
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users[0].name, longest);
}

TEST(Data2VecUser, ItemLongerThan1027BytesIsFormatError) {
    vagent::test::LogCapture capture;
    const Bytes payload = PayloadOf({"alice", "x", std::string(1028, 'n'), "c"});
    std::vector<_VXUserInfoA> users;
    EXPECT_EQ(Data2VecUser(payload.data(), SizeOf(payload), users), 0);
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users[0].name, "alice");
    EXPECT_THAT(capture.Texts(), ElementsAre("Data2VecUser : Data Format Error"));
}

TEST(Data2VecUser, NeedsNoScratchAllocation) {
    const Bytes payload = PayloadOf({"alice", "x"});
    std::vector<_VXUserInfoA> users;
    vagent::test::ScopedAllocationFailure failure;
    EXPECT_EQ(Data2VecUser(payload.data(), SizeOf(payload), users), 1);
    EXPECT_EQ(failure.Refused(), 0);
    EXPECT_EQ(users.size(), 1u);
}

TEST(Data2VecUserGroup, RoundTripsVecUserGroup2Result) {
    const std::vector<_VXUserGroupA> original = {{"Users"}, {""}, {"Remote Desktop Users"}};
    const Bytes payload = EncodedPayload([&original](std::uint8_t*& data, std::uint32_t& size) {
        return VecUserGroup2Result(original, data, size);
    });
    std::vector<_VXUserGroupA> groups = {{"old"}};
    EXPECT_EQ(Data2VecUserGroup(payload.data(), SizeOf(payload), groups), 1);
    ASSERT_EQ(groups.size(), 3u);
    EXPECT_EQ(groups[0].name, "Users");
    EXPECT_EQ(groups[1].name, "");
    EXPECT_EQ(groups[2].name, "Remote Desktop Users");
}

TEST(Data2VecUserGroup, OverrunningItemKeepsGroupsDecodedBefore) {
    vagent::test::LogCapture capture;
    const Bytes payload = OverrunningPayloadAfter({"Users"});
    std::vector<_VXUserGroupA> groups;
    EXPECT_EQ(Data2VecUserGroup(payload.data(), SizeOf(payload), groups), 0);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].name, "Users");
    EXPECT_THAT(capture.Texts(),
                ElementsAre(kCursorError, "Data2VecUserGroup : Data Format Error"));
}

TEST(Data2VecUserGroup, AllocationFailureReturnsVectorEmpty) {
    const Bytes payload = PayloadOf({"Users"});
    std::vector<_VXUserGroupA> groups = {{"old"}};
    vagent::test::ScopedAllocationFailure failure;
    EXPECT_EQ(Data2VecUserGroup(payload.data(), SizeOf(payload), groups), 0);
    EXPECT_THAT(groups, IsEmpty());
}

TEST(Data2GroupUser, FirstItemIsTheGroupAndLaterOnesTheUsers) {
    const Bytes payload = EncodedPayload([](std::uint8_t*& data, std::uint32_t& size) {
        return StrVecToResult("Staff", {"alice", "bob"}, data, size);
    });
    std::string group;
    Strings users = {"old"};
    EXPECT_EQ(Data2GroupUser(payload.data(), SizeOf(payload), group, users), 1);
    EXPECT_EQ(group, "Staff");
    EXPECT_THAT(users, ElementsAre("alice", "bob"));
}

TEST(Data2GroupUser, OverrunningItemKeepsUsersDecodedBefore) {
    vagent::test::LogCapture capture;
    const Bytes payload = OverrunningPayloadAfter({"Staff", "alice"});
    std::string group;
    Strings users;
    EXPECT_EQ(Data2GroupUser(payload.data(), SizeOf(payload), group, users), 0);
    EXPECT_EQ(group, "Staff");
    EXPECT_THAT(users, ElementsAre("alice"));
    EXPECT_THAT(capture.Texts(), ElementsAre(kCursorError, "Data2GroupUser : Data Format Error"));
}

TEST(Data2GroupUser, AllocationFailureReturnsUsersEmpty) {
    const Bytes payload = PayloadOf({"Staff", "alice"});
    std::string group = "kept";
    Strings users = {"old"};
    vagent::test::ScopedAllocationFailure failure;
    EXPECT_EQ(Data2GroupUser(payload.data(), SizeOf(payload), group, users), 0);
    EXPECT_THAT(users, IsEmpty());
    EXPECT_EQ(group, "kept");
}

TEST(Data2Privilege, FirstItemIsTheHeadAndLaterOnesTheNames) {
    const Bytes payload = PayloadOf({"head", "SeDebug", "SeBackup"});
    std::string head;
    VPrivilege privilege;
    privilege.names = {"old"};
    EXPECT_EQ(Data2Privilege(payload.data(), SizeOf(payload), head, privilege), 1);
    EXPECT_EQ(head, "head");
    EXPECT_THAT(privilege.names, ElementsAre("SeDebug", "SeBackup"));
}

TEST(Data2Privilege, OverrunningItemKeepsNamesDecodedBefore) {
    vagent::test::LogCapture capture;
    const Bytes payload = OverrunningPayloadAfter({"head", "SeDebug"});
    std::string head;
    VPrivilege privilege;
    EXPECT_EQ(Data2Privilege(payload.data(), SizeOf(payload), head, privilege), 0);
    EXPECT_THAT(privilege.names, ElementsAre("SeDebug"));
    EXPECT_THAT(capture.Texts(), ElementsAre(kCursorError, "Data2Privilege : Data Format Error"));
}

TEST(Data2Privilege, AllocationFailureReturnsNamesEmpty) {
    const Bytes payload = PayloadOf({"head", "SeDebug"});
    std::string head;
    VPrivilege privilege;
    privilege.names = {"old"};
    vagent::test::ScopedAllocationFailure failure;
    EXPECT_EQ(Data2Privilege(payload.data(), SizeOf(payload), head, privilege), 0);
    EXPECT_THAT(privilege.names, IsEmpty());
}

TEST(Result2Privilege, OneNameBlockFromPrivilege2ResultYieldsEmptyPrivilege) {
    VPrivilege source;
    source.names = {"SeDebug"};
    const std::vector<VPrivilege*> sources = {&source};
    const Bytes payload = EncodedPayload([&sources](std::uint8_t*& data, std::uint32_t& size) {
        return Privilege2Result(sources, data, size);
    });
    PrivilegeList list;
    EXPECT_EQ(Result2Privilege(payload.data(), SizeOf(payload), list.pointers), 1);
    ASSERT_EQ(list.pointers.size(), 1u);
    EXPECT_THAT(list.pointers[0]->names, IsEmpty());
}

TEST(Result2Privilege, AppendsAPrivilegeHoldingTheItemsAfterTheFirst) {
    const Bytes payload = PayloadOf({"dropped", "SeDebug", "SeBackup"});
    PrivilegeList list;
    list.pointers.push_back(new VPrivilege);
    EXPECT_EQ(Result2Privilege(payload.data(), SizeOf(payload), list.pointers), 1);
    ASSERT_EQ(list.pointers.size(), 2u);
    EXPECT_THAT(list.pointers[1]->names, ElementsAre("SeDebug", "SeBackup"));
}

TEST(Result2Privilege, DecodingFailureLeavesVectorUnchanged) {
    vagent::test::LogCapture capture;
    const Bytes payload = OverrunningPayloadAfter({"dropped", "SeDebug"});
    PrivilegeList list;
    EXPECT_EQ(Result2Privilege(payload.data(), SizeOf(payload), list.pointers), 0);
    EXPECT_THAT(list.pointers, IsEmpty());
    EXPECT_THAT(capture.Texts(), ElementsAre(kCursorError, "Data2Privilege : Data Format Error"));
}

TEST(Result2Privilege, PrivilegeAllocationFailureIsLogged) {
    vagent::test::LogCapture capture;
    const Bytes payload = PayloadOf({"dropped", "SeDebug"});
    PrivilegeList list;
    {
        vagent::test::ScopedAllocationFailure failure;
        EXPECT_EQ(Result2Privilege(payload.data(), SizeOf(payload), list.pointers), 0);
    }
    EXPECT_THAT(list.pointers, IsEmpty());
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2Privilege : new VPrivilege falied"));
}

TEST(Result2Privilege, ScratchAllocationFailureLeavesVectorUnchanged) {
    vagent::test::LogCapture capture;
    const Bytes payload = PayloadOf({"dropped", "SeDebug"});
    PrivilegeList list;
    {
        vagent::test::ScopedAllocationFailure failure(1);
        EXPECT_EQ(Result2Privilege(payload.data(), SizeOf(payload), list.pointers), 0);
        EXPECT_EQ(failure.Refused(), 1);
    }
    EXPECT_THAT(list.pointers, IsEmpty());
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(Result2Ack, ReadsTheValueInNetworkOrder) {
    const Bytes payload = {0x00, 0x00, 0x00, 0x2A};
    std::uint32_t value = 0;
    EXPECT_EQ(Result2Ack(payload.data(), SizeOf(payload), value), 1);
    EXPECT_EQ(value, 42u);
}

TEST(Result2Ack, ReadsAllFourBytes) {
    const Bytes payload = {0xDE, 0xAD, 0xBE, 0xEF};
    std::uint32_t value = 0;
    EXPECT_EQ(Result2Ack(payload.data(), SizeOf(payload), value), 1);
    EXPECT_EQ(value, 0xDEADBEEFu);
}

TEST(Result2Ack, FiveBytePayloadIsRefused) {
    vagent::test::LogCapture capture;
    const Bytes payload = {0x00, 0x00, 0x00, 0x2A, 0x00};
    std::uint32_t value = 7;
    EXPECT_EQ(Result2Ack(payload.data(), SizeOf(payload), value), 0);
    EXPECT_EQ(value, 7u);
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2Ack : dwData != sizeof DWORD "));
}

TEST(Result2Ack, ThreeBytePayloadIsRefused) {
    vagent::test::LogCapture capture;
    const Bytes payload = {0x00, 0x00, 0x2A};
    std::uint32_t value = 7;
    EXPECT_EQ(Result2Ack(payload.data(), SizeOf(payload), value), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2Ack : dwData != sizeof DWORD "));
}

TEST(Result2Ack, RoundTripsAck2Result) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    ASSERT_EQ(Ack2Result(0x80000001u, block, size), 1);
    const std::unique_ptr<std::uint8_t[]> owned(block);
    std::uint32_t value = 0;
    EXPECT_EQ(Result2Ack(block + 4, size - 4, value), 1);
    EXPECT_EQ(value, 0x80000001u);
}
