#include "RequestFrameReader.h"

#include <gtest/gtest.h>

#include "service/TestClientFrames.h"

namespace vagent::service {
namespace {

using vagent::test::Append;
using vagent::test::BigEndianBytes;
using vagent::test::Bytes;
using vagent::test::RequestFrameBytes;

void AppendBigEndian32(Bytes& bytes, std::uint32_t value) {
    Append(bytes, BigEndianBytes(value));
}

// A request block: its own payload length, then the payload.
Bytes RequestBlock(const Bytes& payload) {
    Bytes block = BigEndianBytes(static_cast<std::uint32_t>(payload.size()));
    Append(block, payload);
    return block;
}

FrameLimits SmallLimits() {
    FrameLimits limits;
    limits.maxRootSite = 16;
    limits.maxBlock = 64;
    return limits;
}

FrameState FeedAll(RequestFrameReader& reader, const std::vector<std::uint8_t>& bytes,
                   std::size_t& consumed) {
    return reader.Feed(bytes.data(), bytes.size(), consumed);
}

TEST(RequestFrameReader, DecodesAWholeFrameAtOnce) {
    const std::vector<std::uint8_t> block = RequestBlock({0, 0, 0, 2, 'h', 'i'});
    const auto bytes = RequestFrameBytes(2, -3, "CN=Users", block);
    RequestFrameReader reader(FrameLimits{});
    std::size_t consumed = 0;
    ASSERT_EQ(FeedAll(reader, bytes, consumed), FrameState::Complete);
    EXPECT_EQ(consumed, bytes.size());
    EXPECT_EQ(reader.Frame().taskId, 2u);
    EXPECT_EQ(reader.Frame().workEnv, -3);
    EXPECT_EQ(reader.Frame().rootSite, "CN=Users");
    EXPECT_EQ(reader.Frame().block, block);
    EXPECT_EQ(reader.BytesWanted(), 0u);
}

TEST(RequestFrameReader, DecodesAFrameFedOneByteAtATime) {
    const std::vector<std::uint8_t> block = RequestBlock({1, 2, 3, 4, 5, 6, 7});
    const auto bytes = RequestFrameBytes(44, 1, "OU=x", block);
    RequestFrameReader reader(FrameLimits{});
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
        std::size_t consumed = 0;
        ASSERT_EQ(reader.Feed(&bytes[i], 1, consumed), FrameState::Incomplete) << i;
        ASSERT_EQ(consumed, 1u);
    }
    std::size_t consumed = 0;
    ASSERT_EQ(reader.Feed(&bytes.back(), 1, consumed), FrameState::Complete);
    EXPECT_EQ(reader.Frame().taskId, 44u);
    EXPECT_EQ(reader.Frame().rootSite, "OU=x");
    EXPECT_EQ(reader.Frame().block, block);
}

TEST(RequestFrameReader, AFrameWithoutRootSiteOrBlockIsSixteenBytes) {
    const auto bytes = RequestFrameBytes(34, 0, "", {});
    ASSERT_EQ(bytes.size(), 16u);
    RequestFrameReader reader(FrameLimits{});
    std::size_t consumed = 0;
    ASSERT_EQ(FeedAll(reader, bytes, consumed), FrameState::Complete);
    EXPECT_EQ(reader.Frame().taskId, 34u);
    EXPECT_TRUE(reader.Frame().rootSite.empty());
    EXPECT_TRUE(reader.Frame().block.empty());
}

TEST(RequestFrameReader, LeavesBytesAfterTheFrameUnread) {
    auto bytes = RequestFrameBytes(45, 0, "", RequestBlock({}));
    const std::size_t frameSize = bytes.size();
    bytes.insert(bytes.end(), {9, 9, 9});
    RequestFrameReader reader(FrameLimits{});
    std::size_t consumed = 0;
    ASSERT_EQ(FeedAll(reader, bytes, consumed), FrameState::Complete);
    EXPECT_EQ(consumed, frameSize);
    EXPECT_EQ(reader.Feed(bytes.data() + consumed, 3, consumed), FrameState::Complete);
    EXPECT_EQ(consumed, 0u);
}

TEST(RequestFrameReader, BytesWantedNeverReachesPastTheFrame) {
    const auto bytes = RequestFrameBytes(1, 0, "CN=a", RequestBlock({1, 2}));
    RequestFrameReader reader(FrameLimits{});
    std::size_t offset = 0;
    EXPECT_EQ(reader.BytesWanted(), 12u);
    while (reader.State() == FrameState::Incomplete) {
        const std::size_t wanted = reader.BytesWanted();
        ASSERT_GT(wanted, 0u);
        ASSERT_LE(offset + wanted, bytes.size());
        std::size_t consumed = 0;
        reader.Feed(bytes.data() + offset, wanted, consumed);
        ASSERT_EQ(consumed, wanted);
        offset += consumed;
    }
    EXPECT_EQ(reader.State(), FrameState::Complete);
    EXPECT_EQ(offset, bytes.size());
}

TEST(RequestFrameReader, TakesARootSiteAtTheLimit) {
    const auto bytes = RequestFrameBytes(1, 0, std::string(16, 'a'), {});
    RequestFrameReader reader(SmallLimits());
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::Complete);
}

TEST(RequestFrameReader, RefusesARootSiteOverTheLimitBeforeItsText) {
    std::vector<std::uint8_t> bytes;
    AppendBigEndian32(bytes, 1);
    AppendBigEndian32(bytes, 0);
    AppendBigEndian32(bytes, 17);
    RequestFrameReader reader(SmallLimits());
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::RootSiteTooLong);
    EXPECT_EQ(reader.OffendingLength(), 17u);
    EXPECT_EQ(reader.BytesWanted(), 0u);
}

TEST(RequestFrameReader, RefusesA4GiBRootSiteClaim) {
    std::vector<std::uint8_t> bytes;
    AppendBigEndian32(bytes, 1);
    AppendBigEndian32(bytes, 0);
    AppendBigEndian32(bytes, 0xFFFFFFFFu);
    RequestFrameReader reader(FrameLimits{});
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::RootSiteTooLong);
    EXPECT_EQ(reader.OffendingLength(), 0xFFFFFFFFu);
}

TEST(RequestFrameReader, DefaultRootSiteLimitIs64KiB) {
    const auto atLimit = RequestFrameBytes(1, 0, std::string(65536, 'a'), {});
    RequestFrameReader accepting(FrameLimits{});
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(accepting, atLimit, consumed), FrameState::Complete);

    const auto over = RequestFrameBytes(1, 0, std::string(65537, 'a'), {});
    RequestFrameReader refusing(FrameLimits{});
    EXPECT_EQ(FeedAll(refusing, over, consumed), FrameState::RootSiteTooLong);
    EXPECT_EQ(consumed, 12u);
}

TEST(RequestFrameReader, TakesABlockAtTheLimit) {
    const auto bytes = RequestFrameBytes(1, 0, "", RequestBlock(std::vector<std::uint8_t>(60, 7)));
    RequestFrameReader reader(SmallLimits());
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::Complete);
    EXPECT_EQ(reader.Frame().block.size(), 64u);
}

TEST(RequestFrameReader, RefusesABlockOverTheLimitBeforeItsBytes) {
    const auto bytes = RequestFrameBytes(1, 0, "", RequestBlock(std::vector<std::uint8_t>(61, 7)));
    RequestFrameReader reader(SmallLimits());
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::BlockTooLong);
    EXPECT_EQ(consumed, 16u);
    EXPECT_EQ(reader.OffendingLength(), 65u);
}

TEST(RequestFrameReader, RefusesA4GiBBlockClaimWithoutAllocating) {
    std::vector<std::uint8_t> bytes = RequestFrameBytes(1, 0, "", {});
    bytes.resize(12);
    AppendBigEndian32(bytes, 0xFFFFFFFFu);
    RequestFrameReader reader(FrameLimits{});
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::BlockTooLong);
    EXPECT_EQ(reader.Frame().block.capacity(), 0u);
}

TEST(RequestFrameReader, ABlockClaimCostsOnlyTheBytesThatArrived) {
    std::vector<std::uint8_t> bytes = RequestFrameBytes(1, 0, "", {});
    bytes.resize(12);
    const std::uint32_t claimed = 64u << 20;
    AppendBigEndian32(bytes, claimed);
    AppendBigEndian32(bytes, claimed - 4);
    bytes.insert(bytes.end(), 100, 1);
    RequestFrameReader reader(FrameLimits{});
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::Incomplete);
    EXPECT_LT(reader.Frame().block.capacity(), 4096u);
    EXPECT_EQ(reader.BytesWanted(), claimed - 104u);
}

TEST(RequestFrameReader, RefusesABlockTooShortForItsOwnPrefix) {
    for (std::uint32_t length = 1; length < 4; ++length) {
        std::vector<std::uint8_t> bytes = RequestFrameBytes(1, 0, "", {});
        bytes.resize(12);
        AppendBigEndian32(bytes, length);
        bytes.insert(bytes.end(), length, 0);
        RequestFrameReader reader(FrameLimits{});
        std::size_t consumed = 0;
        EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::BlockTooShort) << length;
        EXPECT_EQ(reader.OffendingLength(), length);
    }
}

TEST(RequestFrameReader, RefusesABlockWhosePrefixDisagreesWithItsLength) {
    std::vector<std::uint8_t> bytes = RequestFrameBytes(1, 0, "", {});
    bytes.resize(12);
    AppendBigEndian32(bytes, 10);
    AppendBigEndian32(bytes, 7);
    bytes.insert(bytes.end(), {1, 2, 3, 4, 5, 6});
    RequestFrameReader reader(FrameLimits{});
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::BlockPrefixMismatch);
    EXPECT_EQ(consumed, 20u);
    EXPECT_EQ(reader.OffendingLength(), 7u);
}

TEST(RequestFrameReader, AcceptsAnEmptyBlockOfJustItsPrefix) {
    const auto bytes = RequestFrameBytes(34, 0, "", RequestBlock({}));
    RequestFrameReader reader(FrameLimits{});
    std::size_t consumed = 0;
    EXPECT_EQ(FeedAll(reader, bytes, consumed), FrameState::Complete);
    EXPECT_EQ(reader.Frame().block, (std::vector<std::uint8_t>{0, 0, 0, 0}));
}

TEST(RequestFrameReader, StaysIncompleteWhenTheFrameIsCutShort) {
    const auto bytes = RequestFrameBytes(2, 0, "CN=Users", RequestBlock({1, 2, 3}));
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        RequestFrameReader reader(FrameLimits{});
        std::size_t consumed = 0;
        EXPECT_EQ(reader.Feed(bytes.data(), cut, consumed), FrameState::Incomplete) << cut;
        EXPECT_EQ(consumed, cut);
        EXPECT_GT(reader.BytesWanted(), 0u);
    }
}

TEST(RequestFrameReader, TakeFrameHandsTheFrameOver) {
    const auto bytes = RequestFrameBytes(24, 5, "x", RequestBlock({4}));
    RequestFrameReader reader(FrameLimits{});
    std::size_t consumed = 0;
    ASSERT_EQ(FeedAll(reader, bytes, consumed), FrameState::Complete);
    const RequestFrame frame = reader.TakeFrame();
    EXPECT_EQ(frame.taskId, 24u);
    EXPECT_EQ(frame.workEnv, 5);
    EXPECT_EQ(frame.rootSite, "x");
    EXPECT_EQ(frame.block, RequestBlock({4}));
}

}  // namespace
}  // namespace vagent::service
