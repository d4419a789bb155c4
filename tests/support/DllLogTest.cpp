#include "vagent/DllLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "vagent/VLog.h"

using ::testing::ElementsAre;
using vagent::test::LogCapture;

TEST(DllLogPrintf, WithoutAnInstalledLogPrintsNothingAndReturnsZero) {
    SetDllLog(nullptr);
    testing::internal::CaptureStdout();
    EXPECT_EQ(DllLogPrintf("nobody listens %d", 1), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(DllLogPrintf, WritesAtLevelTwoTypeTwo) {
    LogCapture capture;
    EXPECT_EQ(DllLogPrintf("AddGroup : new [%ld] bytes failed", 24L), 1);
    const auto lines = capture.Lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].level, 2);
    EXPECT_EQ(lines[0].type, 2);
    EXPECT_EQ(lines[0].text, "AddGroup : new [24] bytes failed");
}

TEST(DllLogPrintf, RestoresTheLogsLevelAndType) {
    LogCapture capture;
    capture.Log().SetMsgLevel(5);
    capture.Log().SetMsgType(9);
    DllLogPrintf("x");
    EXPECT_EQ(capture.Log().GetMsgLevel(), 5);
    EXPECT_EQ(capture.Log().GetMsgType(), 9);
}

TEST(DllLogPrintf, PrintsTheTextTwiceTheSecondTimeWithALineEnd) {
    LogCapture capture;
    testing::internal::CaptureStdout();
    DllLogPrintf("GetNextDataItem : Data Format Error!");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "GetNextDataItem : Data Format Error!GetNextDataItem : Data Format Error!\n");
}

TEST(DllLogPrintf, FormatsTheTextASecondTime) {
    LogCapture capture;
    testing::internal::CaptureStdout();
    DllLogPrintf("%s", "load 50%% of 100%%");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "load 50%% of 100%%load 50% of 100%\n");
    EXPECT_THAT(capture.Texts(), ElementsAre("load 50% of 100%"));
}

TEST(DllLogPrintf, ConversionWithoutArgumentIsKeptAsWritten) {
    LogCapture capture;
    DllLogPrintf("%s", "user %s and %d%% and %");
    EXPECT_THAT(capture.Texts(), ElementsAre("user %s and %d% and %"));
}

TEST(DllLogPrintf, LogLevelBelowTwoSilencesProgramWideMessages) {
    LogCapture capture;
    capture.Log().SetLogLevel(1);
    EXPECT_EQ(DllLogPrintf("silenced"), 1);
    capture.Log().SetLogLevel(2);
    EXPECT_EQ(DllLogPrintf("heard"), 1);
    EXPECT_THAT(capture.Texts(), ElementsAre("heard"));
}

TEST(DllLogPrintf, SetDllLogWithNullUninstalls) {
    LogCapture capture;
    DllLogPrintf("before");
    SetDllLog(nullptr);
    EXPECT_EQ(DllLogPrintf("after"), 0);
    SetDllLog(&capture.Log());
    EXPECT_THAT(capture.Texts(), ElementsAre("before"));
}

TEST(DllLogPrintf, ReturnsZeroAndWritesNothingWhenItsBufferCannotBeAllocated) {
    LogCapture capture;
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(DllLogPrintf("lost %d", 1), 0);
        EXPECT_EQ(failure.Refused(), 1);
    }
    DllLogPrintf("kept");
    EXPECT_THAT(capture.Texts(), ElementsAre("kept"));
}

TEST(DllLogPrintf, LinesFromSeveralThreadsDoNotInterleave) {
    LogCapture capture;
    constexpr int kThreads = 4;
    constexpr int kLines = 50;
    testing::internal::CaptureStdout();
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < kLines; ++i) {
                DllLogPrintf("thread %d line %d %s", t, i, std::string(100, 'a' + t).c_str());
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    testing::internal::GetCapturedStdout();
    const auto lines = capture.Lines();
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(kThreads * kLines));
    for (const auto& line : lines) {
        EXPECT_EQ(line.level, 2);
        EXPECT_EQ(line.type, 2);
        const char letter = line.text.back();
        EXPECT_EQ(line.text.substr(line.text.size() - 100), std::string(100, letter));
    }
}
