#include "sessions/PrinterEnumeration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "sessions/TaskHarness.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::PrinterSessionNumber;
using vagent::test::FakeSessionHost;
using vagent::test::LogCapture;

namespace {

// "session" in code page 936.
const std::string kGbkSession = "\xBB\xE1\xBB\xB0";

}  // namespace

TEST(PrinterSessionNumber, PrinterNamedSessionInAnyCaseIsASessionPrinterWithoutNumber) {
    FakeSessionHost host;
    host.spooler.printers = {"session", "SESSION", "Session"};
    std::vector<_VXPrinterA> printers;
    ASSERT_EQ(vagent::EnumeratePrinter(printers), 1);
    ASSERT_EQ(printers.size(), 3u);
    for (const _VXPrinterA& printer : printers) {
        EXPECT_EQ(printer.sessionId, 0) << printer.printerName;
    }
}

TEST(PrinterSessionNumber, OnlyTheWholeNameSessionOrTheGbkWordMakeASessionPrinter) {
    EXPECT_TRUE(vagent::IsSessionPrinter("session"));
    EXPECT_TRUE(vagent::IsSessionPrinter("SeSsIoN"));
    EXPECT_TRUE(vagent::IsSessionPrinter(kGbkSession + " 3 "));
    EXPECT_FALSE(vagent::IsSessionPrinter("Session 2 printer"));
    EXPECT_FALSE(vagent::IsSessionPrinter("sessio"));
    EXPECT_FALSE(vagent::IsSessionPrinter("Office"));
}

TEST(PrinterSessionNumber, SessionTwoPrinterIsNotASessionPrinter) {
    EXPECT_EQ(PrinterSessionNumber("Session 2 printer"), 0);
    EXPECT_EQ(PrinterSessionNumber("sessions 4"), 0);
    EXPECT_EQ(PrinterSessionNumber("HP LaserJet 5"), 0);
}

TEST(PrinterSessionNumber, GbkWordFollowedBySpaceThreeSpaceGivesThree) {
    EXPECT_EQ(PrinterSessionNumber(kGbkSession + " 3 " + "\xB5\xC4 HP"), 3);
}

TEST(PrinterSessionNumber, ReadsTheFirstRunOfDigitsOnly) {
    EXPECT_EQ(PrinterSessionNumber(kGbkSession + "12 (from PC7)"), 12);
    EXPECT_EQ(PrinterSessionNumber(kGbkSession + " 007"), 7);
}

TEST(PrinterSessionNumber, GbkNameWithoutDigitsGivesZero) {
    EXPECT_EQ(PrinterSessionNumber(kGbkSession), 0);
    EXPECT_EQ(PrinterSessionNumber(kGbkSession + " printer"), 0);
}

TEST(PrinterSessionNumber, NamesShorterThanTheWordsAreNotSessionPrinters) {
    EXPECT_EQ(PrinterSessionNumber(""), 0);
    EXPECT_EQ(PrinterSessionNumber("\xBB\xE1\xBB"), 0);
    EXPECT_EQ(PrinterSessionNumber("sess"), 0);
}

TEST(PrinterSessionNumber, HugeNumberIsClamped) {
    EXPECT_EQ(PrinterSessionNumber(kGbkSession + " 99999999999"), 2147483647);
}

TEST(EnumeratePrinter, ListsLocalAndConnectedPrintersAtLevelTwoInSpoolerOrder) {
    FakeSessionHost host;
    host.spooler.printers = {"Office", kGbkSession + " 5 Canon", "session"};
    std::vector<_VXPrinterA> printers = {_VXPrinterA{9, "stale"}};
    ASSERT_EQ(vagent::EnumeratePrinter(printers), 1);
    ASSERT_EQ(printers.size(), 3u);
    EXPECT_EQ(printers[0].printerName, "Office");
    EXPECT_EQ(printers[0].sessionId, 0);
    EXPECT_EQ(printers[1].printerName, kGbkSession + " 5 Canon");
    EXPECT_EQ(printers[1].sessionId, 5);
    EXPECT_EQ(printers[2].printerName, "session");
    ASSERT_EQ(host.spooler.calls.size(), 2u);
    EXPECT_EQ(host.spooler.calls[0].flags, 6u);
    EXPECT_EQ(host.spooler.calls[0].level, 2u);
    EXPECT_FALSE(host.spooler.calls[0].withBuffer);
    EXPECT_EQ(host.spooler.calls[0].capacity, 0u);
    EXPECT_TRUE(host.spooler.calls[1].withBuffer);
    EXPECT_EQ(host.spooler.calls[1].capacity, host.spooler.Needed());
}

TEST(EnumeratePrinter, WithNoPrintersGivesOneAndAnEmptyList) {
    FakeSessionHost host;
    std::vector<_VXPrinterA> printers = {_VXPrinterA{9, "stale"}};
    EXPECT_EQ(vagent::EnumeratePrinter(printers), 1);
    EXPECT_THAT(printers, IsEmpty());
}

TEST(EnumeratePrinter, AllocationFailureIsLoggedWithTheSize) {
    LogCapture capture;
    FakeSessionHost host;
    host.spooler.printers = {"abc"};
    std::vector<_VXPrinterA> printers;
    vagent::test::ScopedAllocationFailure failure(0, 1);
    EXPECT_EQ(vagent::EnumeratePrinter(printers), 0);
    EXPECT_THAT(printers, IsEmpty());
    EXPECT_THAT(capture.Texts(), ElementsAre("EnumeratePrinter : new [92] bytes failed"));
}

TEST(EnumeratePrinter, FailedEnumerationGivesOneAndAnEmptyList) {
    FakeSessionHost host;
    host.spooler.failure = 1722;
    std::vector<_VXPrinterA> printers = {_VXPrinterA{9, "stale"}};
    EXPECT_EQ(vagent::EnumeratePrinter(printers), 1);
    EXPECT_THAT(printers, IsEmpty());
}

TEST(EnumeratePrinter, SecondSpoolerCallFailingGivesOneAndAnEmptyList) {
    FakeSessionHost host;
    host.spooler.printers = {"Office", "session"};
    host.spooler.fillFailure = 1722;
    std::vector<_VXPrinterA> printers = {_VXPrinterA{9, "stale"}};
    EXPECT_EQ(vagent::EnumeratePrinter(printers), 1);
    EXPECT_THAT(printers, IsEmpty());
    ASSERT_EQ(host.spooler.calls.size(), 2u);
    EXPECT_TRUE(host.spooler.calls[1].withBuffer);
}
