#include "vagent/VByteStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "helpers/FailingAllocation.h"
#include "vagent/VStreamException.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Contents(const VByteStream& stream) {
    return Bytes(stream.Data(), stream.Data() + stream.Used());
}

void PutRaw(VByteStream& stream, const Bytes& bytes) {
    ASSERT_EQ(stream.PutBytes(bytes.data(), static_cast<std::uint32_t>(bytes.size())), 1);
}

}  // namespace

TEST(VByteStream, SizesBelowTenAreRaisedToTen) {
    VByteStream stream(0, 0);
    EXPECT_EQ(stream.Capacity(), 10u);
    EXPECT_EQ(stream.GrowthStep(), 10u);
    EXPECT_EQ(stream.Used(), 0u);
    EXPECT_EQ(stream.ReadOffset(), 0u);
    EXPECT_EQ(stream.WriteOffset(), 0u);
}

TEST(VByteStream, SizesOfTenOrMoreAreKept) {
    VByteStream stream(64, 16);
    EXPECT_EQ(stream.Capacity(), 64u);
    EXPECT_EQ(stream.GrowthStep(), 16u);
}

TEST(VByteStream, GrowsByWholeStepsPastCapacity) {
    VByteStream stream(0, 0);
    PutRaw(stream, Bytes(11, 0x5A));
    EXPECT_EQ(stream.Capacity(), 20u);
    EXPECT_EQ(stream.Used(), 11u);
    EXPECT_EQ(Contents(stream), Bytes(11, 0x5A));
}

TEST(VByteStream, GrowthAddsOneStepMoreThanTheShortfallNeeds) {
    VByteStream stream(10, 12);
    PutRaw(stream, Bytes(10, 1));
    EXPECT_EQ(stream.Capacity(), 10u);
    // 12 bytes short: one whole step for them and one more.
    PutRaw(stream, Bytes(12, 2));
    EXPECT_EQ(stream.Capacity(), 34u);
    // 1 byte short: (1 / 12 + 1) steps.
    PutRaw(stream, Bytes(13, 3));
    EXPECT_EQ(stream.Capacity(), 46u);
    EXPECT_EQ(stream.Used(), 35u);
}

TEST(VByteStream, ReserveWithinCapacityChangesNothing) {
    VByteStream stream(16, 10);
    PutRaw(stream, {1, 2, 3});
    EXPECT_EQ(stream.Reserve(13), 1);
    EXPECT_EQ(stream.Capacity(), 16u);
    EXPECT_EQ(stream.Used(), 3u);
    EXPECT_EQ(stream.WriteOffset(), 3u);
}

TEST(VByteStream, ReserveGrowsWithoutChangingUsed) {
    VByteStream stream(10, 10);
    PutRaw(stream, {1, 2, 3});
    EXPECT_EQ(stream.Reserve(20), 1);
    EXPECT_EQ(stream.Capacity(), 30u);
    EXPECT_EQ(stream.Used(), 3u);
    EXPECT_EQ(Contents(stream), (Bytes{1, 2, 3}));
}

TEST(VByteStream, ReserveBeyondFourGigabytesFails) {
    VByteStream stream(10, 10);
    EXPECT_EQ(stream.Reserve(0xFFFFFFFFu), 0);
    EXPECT_EQ(stream.Capacity(), 10u);
}

TEST(VByteStream, ConstructorThrowsNewFailedWhenBufferCannotBeAllocated) {
    vagent::test::ScopedAllocationFailure failure;
    try {
        VByteStream stream(10, 10);
        ADD_FAILURE() << "the constructor did not throw";
    } catch (const VStreamException& exception) {
        EXPECT_EQ(exception.GetMessage(), "new failed!");
    }
    EXPECT_EQ(failure.Refused(), 1);
}

TEST(VByteStream, FailedGrowthLeavesStreamUnchanged) {
    VByteStream stream(10, 10);
    PutRaw(stream, Bytes(10, 7));
    std::uint32_t first = 0;
    ASSERT_EQ(stream.GetDword(first), 1);
    const std::uint8_t more = 9;
    {
        vagent::test::ScopedAllocationFailure failure(0, 3);
        EXPECT_EQ(stream.PutBytes(&more, 1), 0);
        EXPECT_EQ(stream.PutDword(1), 0);
        EXPECT_EQ(stream.PutString("x"), 0);
        EXPECT_EQ(failure.Refused(), 3);
    }
    EXPECT_EQ(stream.Capacity(), 10u);
    EXPECT_EQ(stream.Used(), 10u);
    EXPECT_EQ(stream.WriteOffset(), 10u);
    EXPECT_EQ(stream.ReadOffset(), 4u);
    EXPECT_EQ(Contents(stream), Bytes(10, 7));
}

TEST(VByteStream, PutDwordWritesLittleEndian) {
    VByteStream stream(10, 10);
    EXPECT_EQ(stream.PutDword(0x12345678u), 1);
    EXPECT_EQ(Contents(stream), (Bytes{0x78, 0x56, 0x34, 0x12}));
    EXPECT_EQ(stream.WriteOffset(), 4u);
}

TEST(VByteStream, PutStringWritesLengthWithTerminatorThenText) {
    VByteStream stream(10, 10);
    EXPECT_EQ(stream.PutString("ab"), 1);
    EXPECT_EQ(Contents(stream), (Bytes{0x03, 0x00, 0x00, 0x00, 0x61, 0x62, 0x00}));
}

TEST(VByteStream, PutEmptyStringWritesOnlyTheTerminator) {
    VByteStream stream(10, 10);
    EXPECT_EQ(stream.PutString(""), 1);
    EXPECT_EQ(Contents(stream), (Bytes{0x01, 0x00, 0x00, 0x00, 0x00}));
}

TEST(VByteStream, PutStringGrowsOnceForLengthAndText) {
    VByteStream stream(10, 10);
    PutRaw(stream, Bytes(8, 0));
    EXPECT_EQ(stream.PutString("abcdef"), 1);
    // 8 used, 11 more needed: (9 / 10 + 1) steps.
    EXPECT_EQ(stream.Capacity(), 20u);
    EXPECT_EQ(stream.Used(), 19u);
}

TEST(VByteStream, PutBytesAppendsRawBytesWithoutLength) {
    VByteStream stream(10, 10);
    PutRaw(stream, {0xAA, 0xBB});
    PutRaw(stream, {0xCC});
    EXPECT_EQ(stream.PutBytes(nullptr, 0), 1);
    EXPECT_EQ(Contents(stream), (Bytes{0xAA, 0xBB, 0xCC}));
}

TEST(VByteStream, GetDwordReadsBackLittleEndian) {
    VByteStream stream(10, 10);
    PutRaw(stream, {0x78, 0x56, 0x34, 0x12, 0x01, 0x00, 0x00, 0x00});
    std::uint32_t value = 0;
    EXPECT_EQ(stream.GetDword(value), 1);
    EXPECT_EQ(value, 0x12345678u);
    EXPECT_EQ(stream.GetDword(value), 1);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(stream.ReadOffset(), 8u);
}

TEST(VByteStream, GetDwordPastUsedFailsAndKeepsPosition) {
    VByteStream stream(10, 10);
    PutRaw(stream, {1, 2, 3});
    std::uint32_t value = 77;
    EXPECT_EQ(stream.GetDword(value), 0);
    EXPECT_EQ(value, 77u);
    EXPECT_EQ(stream.ReadOffset(), 0u);
}

TEST(VByteStream, ReadsStopAtUsedNotAtCapacity) {
    VByteStream stream(64, 10);
    std::uint32_t value = 0;
    EXPECT_EQ(stream.GetDword(value), 0);
    std::string text;
    EXPECT_EQ(stream.GetString(text), 0);
}

TEST(VByteStream, GetStringReadsBackWhatPutStringWrote) {
    VByteStream stream(10, 10);
    ASSERT_EQ(stream.PutString("first"), 1);
    ASSERT_EQ(stream.PutDword(5), 1);
    ASSERT_EQ(stream.PutString(""), 1);
    std::string text;
    std::uint32_t value = 0;
    EXPECT_EQ(stream.GetString(text), 1);
    EXPECT_EQ(text, "first");
    EXPECT_EQ(stream.GetDword(value), 1);
    EXPECT_EQ(value, 5u);
    EXPECT_EQ(stream.GetString(text), 1);
    EXPECT_EQ(text, "");
    EXPECT_EQ(stream.ReadOffset(), stream.Used());
}

TEST(VByteStream, GetStringWithoutTerminatorFailsAndKeepsPosition) {
    VByteStream stream(10, 10);
    PutRaw(stream, {0x02, 0x00, 0x00, 0x00, 'a', 'b'});
    std::string text = "unchanged";
    EXPECT_EQ(stream.GetString(text), 0);
    EXPECT_EQ(text, "unchanged");
    EXPECT_EQ(stream.ReadOffset(), 0u);
}

TEST(VByteStream, GetStringLengthPastUsedFailsAndKeepsPosition) {
    VByteStream stream(32, 10);
    PutRaw(stream, {0x04, 0x00, 0x00, 0x00, 'a', 'b', 0x00});
    std::string text;
    EXPECT_EQ(stream.GetString(text), 0);
    EXPECT_EQ(stream.ReadOffset(), 0u);
}

TEST(VByteStream, GetStringWithTruncatedLengthFails) {
    VByteStream stream(10, 10);
    PutRaw(stream, {0x01, 0x00, 0x00});
    std::string text;
    EXPECT_EQ(stream.GetString(text), 0);
    EXPECT_EQ(stream.ReadOffset(), 0u);
}

TEST(VByteStream, GetStringOfLengthZeroFails) {
    VByteStream stream(10, 10);
    PutRaw(stream, {0x00, 0x00, 0x00, 0x00, 0x00});
    std::string text;
    EXPECT_EQ(stream.GetString(text), 0);
    EXPECT_EQ(stream.ReadOffset(), 0u);
}

TEST(VByteStream, GetStringWithHugeLengthFails) {
    VByteStream stream(10, 10);
    PutRaw(stream, {0xFF, 0xFF, 0xFF, 0xFF, 0x00});
    std::string text;
    EXPECT_EQ(stream.GetString(text), 0);
    EXPECT_EQ(stream.ReadOffset(), 0u);
}

TEST(VByteStream, GetStringStopsTextAtFirstZeroButSkipsWholeElement) {
    VByteStream stream(16, 10);
    PutRaw(stream, {0x04, 0x00, 0x00, 0x00, 'a', 0x00, 'b', 0x00, 0x09, 0x00, 0x00, 0x00});
    std::string text;
    EXPECT_EQ(stream.GetString(text), 1);
    EXPECT_EQ(text, "a");
    EXPECT_EQ(stream.ReadOffset(), 8u);
    std::uint32_t value = 0;
    EXPECT_EQ(stream.GetDword(value), 1);
    EXPECT_EQ(value, 9u);
}

TEST(VByteStream, GrowthKeepsReadPosition) {
    VByteStream stream(10, 10);
    ASSERT_EQ(stream.PutDword(1), 1);
    ASSERT_EQ(stream.PutDword(2), 1);
    std::uint32_t value = 0;
    ASSERT_EQ(stream.GetDword(value), 1);
    ASSERT_EQ(stream.PutString("grown"), 1);
    EXPECT_GT(stream.Capacity(), 10u);
    EXPECT_EQ(stream.ReadOffset(), 4u);
    EXPECT_EQ(stream.GetDword(value), 1);
    EXPECT_EQ(value, 2u);
    std::string text;
    EXPECT_EQ(stream.GetString(text), 1);
    EXPECT_EQ(text, "grown");
}
