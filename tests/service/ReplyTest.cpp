#include "Reply.h"

#include <gtest/gtest.h>

#include "vagent/ErrorCodes.h"

namespace vagent::service {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Reply, ABlockGoesOutAfterStatusZeroAsItStands) {
    const Bytes block = {0, 0, 0, 6, 0, 0, 0, 2, 'v', 'm'};
    TaskOutcome outcome;
    outcome.truth = 1;
    outcome.block = block.data();
    outcome.blockSize = static_cast<std::uint32_t>(block.size());
    EXPECT_EQ(ReplyForOutcome(outcome), (Bytes{0, 0, 0, 0, 0, 0, 0, 6, 0, 0, 0, 2, 'v', 'm'}));
}

TEST(Reply, ABlockIsSentEvenWhenTheTaskFailed) {
    const Bytes ack = {0, 0, 0, 4, 0, 0, 0, 0};
    TaskOutcome outcome;
    outcome.truth = 0;
    outcome.errorCode = 5;
    outcome.block = ack.data();
    outcome.blockSize = static_cast<std::uint32_t>(ack.size());
    EXPECT_EQ(ReplyForOutcome(outcome), (Bytes{0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0}));
}

TEST(Reply, NoBlockAndAFailureCodeSendsTheCodeLittleEndianAlone) {
    TaskOutcome outcome;
    outcome.truth = 0;
    outcome.errorCode = 0x00000005u;
    EXPECT_EQ(ReplyForOutcome(outcome), (Bytes{0x05, 0, 0, 0}));
    outcome.errorCode = 0xE6000002u;
    EXPECT_EQ(ReplyForOutcome(outcome), (Bytes{0x02, 0x00, 0x00, 0xE6}));
}

TEST(Reply, NoBlockAndSuccessSendsAnAcknowledgementOfOne) {
    TaskOutcome outcome;
    outcome.truth = 1;
    EXPECT_EQ(ReplyForOutcome(outcome), (Bytes{0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 1}));
}

TEST(Reply, NoBlockAndFailureWithoutCodeSendsAnAcknowledgementOfZero) {
    TaskOutcome outcome;
    outcome.truth = 0;
    outcome.errorCode = 0;
    EXPECT_EQ(ReplyForOutcome(outcome), (Bytes{0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0}));
}

TEST(Reply, AnErrorCodeOfASucceedingTaskIsNotSent) {
    TaskOutcome outcome;
    outcome.truth = 1;
    outcome.errorCode = 87;
    EXPECT_EQ(ReplyForOutcome(outcome), (Bytes{0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 1}));
}

TEST(Reply, UnknownTaskIdIsStatusE6000001) {
    EXPECT_EQ(StatusReply(kErrorInvalidParameter), (Bytes{0x01, 0x00, 0x00, 0xE6}));
}

}  // namespace
}  // namespace vagent::service
