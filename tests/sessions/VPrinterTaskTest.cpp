#include "vagent/VPrinterTask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "helpers/LogCapture.h"
#include "sessions/TaskHarness.h"

using ::testing::ElementsAre;
using vagent::test::DecodeAnswer;
using vagent::test::FakeSessionHost;
using vagent::test::GiveRequest;
using vagent::test::ListBlock;
using vagent::test::LogCapture;
using vagent::test::RunDoTask;
using vagent::test::TaskAnswer;

TEST(VPrinterTask, RoundTripOfTask27ListsPrintersWithTheirSessions) {
    FakeSessionHost host;
    host.spooler.printers = {"Office", "\xBB\xE1\xBB\xB0 3 HP", "session"};
    VPrinterTask service(27);
    const TaskAnswer answer = RunDoTask(service);
    EXPECT_EQ(answer.truth, 1);
    VPrinterTask client(27);
    std::vector<_VXPrinterA> printers;
    ASSERT_EQ(DecodeAnswer(client, answer, &printers), 1);
    ASSERT_EQ(printers.size(), 3u);
    EXPECT_EQ(printers[0].sessionId, 0);
    EXPECT_EQ(printers[0].printerName, "Office");
    EXPECT_EQ(printers[1].sessionId, 3);
    EXPECT_EQ(printers[1].printerName, "\xBB\xE1\xBB\xB0 3 HP");
    EXPECT_EQ(printers[2].sessionId, 0);
    EXPECT_EQ(printers[2].printerName, "session");
}

TEST(VPrinterTask, WithNoPrintersAnswersZeroWithNoBlock) {
    LogCapture capture;
    FakeSessionHost host;
    VPrinterTask service(27);
    const TaskAnswer answer = RunDoTask(service);
    EXPECT_EQ(answer.truth, 0);
    EXPECT_TRUE(answer.block.empty());
    EXPECT_THAT(capture.Texts(), ElementsAre("PrintInfo2Result : dwSize = [0]"));
}

TEST(VPrinterTask, FailedEnumerationAnswersZeroWithNoBlockAsAnEmptyList) {
    LogCapture capture;
    FakeSessionHost host;
    host.spooler.failure = 5;
    VPrinterTask service(27);
    const TaskAnswer answer = RunDoTask(service);
    EXPECT_EQ(answer.truth, 0);
    EXPECT_TRUE(answer.block.empty());
    EXPECT_THAT(capture.Texts(), ElementsAre("PrintInfo2Result : dwSize = [0]"));
}

TEST(VPrinterTask, DoTaskRefusesNullOutputs) {
    LogCapture capture;
    VPrinterTask task(27);
    std::uint8_t* data = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(task.DoTask(nullptr, &size), 0);
    EXPECT_EQ(task.DoTask(&data, nullptr), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("DoTask : Parameter Error", "DoTask : Parameter Error"));
}

TEST(VPrinterTask, OtherIdsAnswerZeroWithoutAskingTheSpooler) {
    FakeSessionHost host;
    host.spooler.printers = {"Office"};
    for (std::uint32_t id : {0u, 26u, 28u}) {
        VPrinterTask service(id);
        const TaskAnswer answer = RunDoTask(service);
        EXPECT_EQ(answer.truth, 0);
        EXPECT_TRUE(answer.block.empty());
        VPrinterTask client(id);
        const std::uint8_t payload[] = {0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 1, 'p'};
        std::vector<_VXPrinterA> printers;
        EXPECT_EQ(client.Result2Struct(payload, sizeof payload, &printers), 0);
    }
    EXPECT_TRUE(host.spooler.calls.empty());
}

TEST(VPrinterTask, Result2StructRefusesMissingArguments) {
    LogCapture capture;
    VPrinterTask client(27);
    const std::uint8_t payload[] = {0, 0, 0, 4, 0, 0, 0, 1};
    std::vector<_VXPrinterA> printers;
    EXPECT_EQ(client.Result2Struct(nullptr, 8, &printers), 0);
    EXPECT_EQ(client.Result2Struct(payload, 0, &printers), 0);
    EXPECT_EQ(client.Result2Struct(payload, 8, nullptr), 0);
    EXPECT_THAT(capture.Texts(),
                ElementsAre("Result2Struct : Parameter Error", "Result2Struct : Parameter Error",
                            "Result2Struct : Parameter Error"));
}

TEST(VPrinterTask, RequestDataIsNotReadSoAnyRequestIsServed) {
    FakeSessionHost host;
    host.spooler.printers = {"Office"};
    std::vector<std::uint8_t> block = {0xFF, 0xFF, 0xFF, 0xFF, 1};
    VPrinterTask service(27);
    GiveRequest(service, block);
    EXPECT_EQ(RunDoTask(service).truth, 1);
}

TEST(VPrinterTask, MalformedResultsAreRefusedWithinTheirBounds) {
    const std::vector<std::vector<std::uint8_t>> malformed = {
        {0},
        {0, 0, 0},
        {0, 0, 0, 9, 'a'},
        {0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3},
        {0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 2, 'a'}};
    for (const std::vector<std::uint8_t>& payload : malformed) {
        std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[payload.size()]);
        std::copy(payload.begin(), payload.end(), bytes.get());
        VPrinterTask client(27);
        std::vector<_VXPrinterA> printers;
        EXPECT_EQ(client.Result2Struct(bytes.get(), static_cast<std::uint32_t>(payload.size()),
                                       &printers),
                  0);
    }
}
