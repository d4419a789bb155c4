#include "vagent/DataItemCursor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "helpers/LogCapture.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Bytes = std::vector<std::uint8_t>;

std::string TextOf(const std::uint8_t* item, std::uint32_t length) {
    return std::string(reinterpret_cast<const char*>(item), length);
}

std::uint32_t SizeOf(const Bytes& payload) {
    return static_cast<std::uint32_t>(payload.size());
}

}  // namespace

TEST(DataItemCursor, ReturnsEachItemInOrder) {
    const Bytes payload = {0x00, 0x00, 0x00, 0x02, 'a', 'b', 0x00, 0x00, 0x00, 0x01, 'c'};
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 99;
    const std::uint8_t* first = cursor.GetNextDataItem(length);
    EXPECT_EQ(first, payload.data() + 4);
    EXPECT_EQ(TextOf(first, length), "ab");
    const std::uint8_t* second = cursor.GetNextDataItem(length);
    EXPECT_EQ(second, payload.data() + 10);
    EXPECT_EQ(TextOf(second, length), "c");
}

TEST(DataItemCursor, EndOfPayloadIsNullWithLengthZero) {
    vagent::test::LogCapture capture;
    const Bytes payload = {0x00, 0x00, 0x00, 0x01, 'x'};
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 99;
    ASSERT_NE(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, 0u);
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(DataItemCursor, EmptyItemIsAnItemNotTheEnd) {
    const Bytes payload = {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 99;
    EXPECT_EQ(cursor.GetNextDataItem(length), payload.data() + 4);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(cursor.GetNextDataItem(length), payload.data() + 8);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, 0u);
}

TEST(DataItemCursor, ReadsLengthInNetworkOrder) {
    Bytes payload = {0x00, 0x00, 0x01, 0x03};
    payload.resize(4 + 0x0103, 'z');
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 0;
    EXPECT_EQ(cursor.GetNextDataItem(length), payload.data() + 4);
    EXPECT_EQ(length, 0x0103u);
}

TEST(DataItemCursor, ItemOverrunningPayloadIsFormatError) {
    vagent::test::LogCapture capture;
    const Bytes payload = {0x00, 0x00, 0x00, 0x01, 'a', 0x00, 0x00, 0x00, 0x03, 'b', 'c'};
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 0;
    ASSERT_NE(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, 0xFFFFFFFFu);
    EXPECT_EQ(length, DataItemCursor::kFormatError);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!"));
}

TEST(DataItemCursor, OverrunLeavesPositionPastTheBadLengthField) {
    // The bad length field is followed by 4 bytes that read as another bad
    // length, and then by a well-formed empty item.
    const Bytes payload = {0x00, 0x00, 0x00, 0x09, 0x61, 0x62, 0x63, 0x64, 0x00, 0x00, 0x00, 0x00};
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 0;
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, DataItemCursor::kFormatError);
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, DataItemCursor::kFormatError);
    EXPECT_EQ(cursor.GetNextDataItem(length), payload.data() + 12);
    EXPECT_EQ(length, 0u);
}

TEST(DataItemCursor, ItemEndingExactlyAtPayloadEndIsAccepted) {
    const Bytes payload = {0x00, 0x00, 0x00, 0x03, 'a', 'b', 'c'};
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 0;
    const std::uint8_t* item = cursor.GetNextDataItem(length);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(TextOf(item, length), "abc");
}

TEST(DataItemCursor, EmptyPayloadAtFirstCallIsFormatError) {
    vagent::test::LogCapture capture;
    const std::uint8_t byte = 0;
    DataItemCursor cursor(&byte, 0);
    std::uint32_t length = 0;
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, DataItemCursor::kFormatError);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!"));
}

TEST(DataItemCursor, TruncatedLengthFieldIsFormatErrorAndKeepsPosition) {
    vagent::test::LogCapture capture;
    const Bytes payload = {0x00, 0x00, 0x00, 0x01, 'x', 0x00, 0x00, 0x00};
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 0;
    ASSERT_NE(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, DataItemCursor::kFormatError);
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, DataItemCursor::kFormatError);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!",
                                             "GetNextDataItem : Data Format Error!"));
}

TEST(DataItemCursor, ShortPayloadAtFirstCallIsFormatError) {
    vagent::test::LogCapture capture;
    const Bytes payload = {0x00, 0x00, 0x00};
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 0;
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, DataItemCursor::kFormatError);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!"));
}

TEST(DataItemCursor, LengthNearFourGigabytesDoesNotWrapAround) {
    const Bytes payload = {0xFF, 0xFF, 0xFF, 0xFC, 'a', 'b', 'c', 'd'};
    DataItemCursor cursor(payload.data(), SizeOf(payload));
    std::uint32_t length = 0;
    EXPECT_EQ(cursor.GetNextDataItem(length), nullptr);
    EXPECT_EQ(length, DataItemCursor::kFormatError);
}
