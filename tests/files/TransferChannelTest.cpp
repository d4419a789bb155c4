#include "files/TransferChannel.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "files/Loopback.h"
#include "files/TransferWire.h"
#include "helpers/FailingAllocation.h"

using vagent::files::TransferChannel;
using vagent::test::Bytes;
using vagent::test::LoopbackPair;
using vagent::test::ReadUntilClosed;
using vagent::test::ScopedAllocationFailure;
using vagent::test::SendRaw;

TEST(TransferChannel, ReceivingAloneSetsNoGatheringBufferAside) {
    LoopbackPair pair;
    SendRaw(pair.Client(), Bytes{1, 2, 3, 4});
    const ScopedAllocationFailure refuse(0, 1000);
    TransferChannel channel(pair.Server(), nullptr);
    std::uint8_t received[4] = {};
    EXPECT_TRUE(channel.ReceiveExactly(received, 4));
    EXPECT_EQ(Bytes(received, received + 4), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(refuse.Refused(), 0);
}

TEST(TransferChannel, GatheredSendsLeaveAtTheFlush) {
    LoopbackPair pair;
    {
        TransferChannel channel(pair.Client(), nullptr);
        const std::uint8_t body[] = {'a', 'b'};
        ASSERT_TRUE(channel.SendFrame(body, 2));
        ASSERT_TRUE(channel.SendContent(body, 1));
        ASSERT_TRUE(channel.Flush());
    }
    pair.CloseClient();
    EXPECT_EQ(ReadUntilClosed(pair.Server()), (Bytes{2, 0, 0, 0, 'a', 'b', 'a'}));
}

TEST(TransferChannel, WithoutMemoryToGatherEverySendLeavesAtOnceAndTheBufferIsAskedForOnce) {
    LoopbackPair pair;
    {
        const ScopedAllocationFailure refuse(0, 1000);
        TransferChannel channel(pair.Client(), nullptr);
        const std::uint8_t body[] = {'a', 'b'};
        ASSERT_TRUE(channel.SendFrame(body, 2));
        ASSERT_TRUE(channel.SendContent(body, 2));
        EXPECT_EQ(refuse.Refused(), 1);
    }
    pair.CloseClient();
    EXPECT_EQ(ReadUntilClosed(pair.Server()), (Bytes{2, 0, 0, 0, 'a', 'b', 'a', 'b'}));
}
