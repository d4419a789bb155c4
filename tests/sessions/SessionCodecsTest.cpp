#include "sessions/SessionCodecs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::LogCapture;

namespace {

std::vector<std::uint8_t> Taken(std::uint8_t* block, std::uint32_t size) {
    std::vector<std::uint8_t> bytes(block, block + size);
    delete[] block;
    return bytes;
}

_VXSessionA Session(int id, std::string info1, std::string mac, std::string info3,
                    std::string address) {
    _VXSessionA session;
    session.sessionId = id;
    session.info1 = std::move(info1);
    session.macAddress = std::move(mac);
    session.info3 = std::move(info3);
    session.clientAddress = std::move(address);
    return session;
}

}  // namespace

TEST(SessionCountBlock, IsFourThenTheCountBigEndian) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    ASSERT_EQ(vagent::SessionCount2Result(0x01020304, block, size), 1);
    EXPECT_EQ(Taken(block, size), (std::vector<std::uint8_t>{0, 0, 0, 4, 1, 2, 3, 4}));
}

TEST(SessionCountBlock, CarriesMinusOneForAFailedCount) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    ASSERT_EQ(vagent::SessionCount2Result(-1, block, size), 1);
    EXPECT_EQ(Taken(block, size), (std::vector<std::uint8_t>{0, 0, 0, 4, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(SessionCountBlock, AllocationFailureIsLoggedWithEightBytes) {
    LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    vagent::test::ScopedAllocationFailure failure(0, 1);
    EXPECT_EQ(vagent::SessionCount2Result(2, block, size), 0);
    EXPECT_EQ(block, nullptr);
    EXPECT_THAT(capture.Texts(), ElementsAre("SessionCount2Result : new [8] bytes failed"));
}

TEST(SessionCountDecoder, StoresTheCountAndTellsWhetherItIsNotNegative) {
    const std::uint8_t three[4] = {0, 0, 0, 3};
    const std::uint8_t minusOne[4] = {0xFF, 0xFF, 0xFF, 0xFF};
    int count = 0;
    EXPECT_EQ(vagent::Result2SessionCount(three, 4, count), 1);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(vagent::Result2SessionCount(minusOne, 4, count), 0);
    EXPECT_EQ(count, -1);
}

TEST(SessionCountDecoder, RefusesAFiveByteBlock) {
    LogCapture capture;
    const std::uint8_t five[5] = {0, 0, 0, 3, 0};
    int count = 42;
    EXPECT_EQ(vagent::Result2SessionCount(five, 5, count), 0);
    EXPECT_EQ(count, 42);
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2SessionCount : Parameter Error"));
}

TEST(SessionInfoBlock, HoldsFiveItemsPerRecordInVectorOrder) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    const std::vector<_VXSessionA> sessions = {Session(2, "a", "bc", "", "1.2.3.4"),
                                               Session(258, "", "", "d", "")};
    ASSERT_EQ(vagent::SessionInfo2Result(sessions, block, size), 1);
    const std::vector<std::uint8_t> expected = {
        0, 0, 0, 59,                                     // what follows
        0, 0, 0, 4,  0,   0,   0,   2,                   // sessionId
        0, 0, 0, 1,  'a',                                // info1
        0, 0, 0, 2,  'b', 'c',                           // macAddress
        0, 0, 0, 0,                                      // info3
        0, 0, 0, 7,  '1', '.', '2', '.', '3', '.', '4',  // clientAddress
        0, 0, 0, 4,  0,   0,   1,   2,                   // sessionId
        0, 0, 0, 0,  0,   0,   0,   0,   0,   0,   0,   1, 'd', 0, 0, 0, 0};
    EXPECT_EQ(Taken(block, size), expected);
}

TEST(SessionInfoBlock, EmptyVectorIsRefusedWithItsSizeLogged) {
    LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(vagent::SessionInfo2Result({}, block, size), 0);
    EXPECT_EQ(block, nullptr);
    EXPECT_THAT(capture.Texts(), ElementsAre("SessionInfo2Result : dwSize = [0]"));
}

TEST(SessionInfoBlock, AllocationFailureIsLoggedWithThePayloadSize) {
    LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    vagent::test::ScopedAllocationFailure failure(0, 1);
    EXPECT_EQ(vagent::SessionInfo2Result({Session(1, "ab", "", "", "")}, block, size), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("SessionInfo2Result : new [26] bytes failed"));
}

TEST(SessionInfoDecoder, RebuildsTheRecords) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    const std::vector<_VXSessionA> sessions = {Session(-3, "x", "00-1A", "y", "10.1.1.1"),
                                               Session(7, "", "", "", "")};
    ASSERT_EQ(vagent::SessionInfo2Result(sessions, block, size), 1);
    const std::vector<std::uint8_t> bytes = Taken(block, size);
    std::vector<_VXSessionA> decoded;
    ASSERT_EQ(vagent::Result2SessionInfo(bytes.data() + 4, size - 4, decoded), 1);
    ASSERT_EQ(decoded.size(), 2u);
    EXPECT_EQ(decoded[0].sessionId, -3);
    EXPECT_EQ(decoded[0].info1, "x");
    EXPECT_EQ(decoded[0].macAddress, "00-1A");
    EXPECT_EQ(decoded[0].info3, "y");
    EXPECT_EQ(decoded[0].clientAddress, "10.1.1.1");
    EXPECT_EQ(decoded[1].sessionId, 7);
}

TEST(SessionInfoDecoder, DropsATrailingIncompleteRecord) {
    const std::uint8_t payload[] = {0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 1, 'a', 0, 0, 0, 0};
    std::vector<_VXSessionA> decoded;
    EXPECT_EQ(vagent::Result2SessionInfo(payload, sizeof payload, decoded), 1);
    EXPECT_THAT(decoded, IsEmpty());
}

TEST(SessionInfoDecoder, OverrunIsAParameterErrorKeepingEarlierRecords) {
    LogCapture capture;
    const std::uint8_t payload[] = {0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  0,
                                    0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 2, 0, 0, 0, 9, 'a'};
    std::vector<_VXSessionA> decoded;
    EXPECT_EQ(vagent::Result2SessionInfo(payload, sizeof payload, decoded), 0);
    ASSERT_EQ(decoded.size(), 1u);
    EXPECT_EQ(decoded[0].sessionId, 1);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!",
                                             "Result2SessionInfo : Parameter Error"));
}

TEST(SessionInfoDecoder, IdItemOfAnotherSizeThanFourIsAParameterError) {
    LogCapture capture;
    const std::uint8_t payload[] = {0, 0, 0, 2, 0, 1};
    std::vector<_VXSessionA> decoded;
    EXPECT_EQ(vagent::Result2SessionInfo(payload, sizeof payload, decoded), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2SessionInfo : Parameter Error"));
}

TEST(SessionInfoDecoder, AppendsToWhatTheCallersVectorHolds) {
    const std::uint8_t payload[] = {0, 0, 0, 4, 0, 0, 0, 5, 0, 0, 0, 1, 'a',
                                    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    std::vector<_VXSessionA> decoded = {Session(2, "kept", "", "", "")};
    EXPECT_EQ(vagent::Result2SessionInfo(payload, sizeof payload, decoded), 1);
    ASSERT_EQ(decoded.size(), 2u);
    EXPECT_EQ(decoded[0].info1, "kept");
    EXPECT_EQ(decoded[1].sessionId, 5);
    EXPECT_EQ(decoded[1].info1, "a");
}
