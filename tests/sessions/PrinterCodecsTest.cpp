#include "sessions/PrinterCodecs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::LogCapture;

TEST(PrinterBlock, HoldsTheNumberItemAndTheNameOfEachPrinter) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    const std::vector<_VXPrinterA> printers = {{3, "ab"}, {-2, ""}};
    ASSERT_EQ(vagent::PrintInfo2Result(printers, block, size), 1);
    const std::vector<std::uint8_t> bytes(block, block + size);
    delete[] block;
    EXPECT_EQ(bytes, (std::vector<std::uint8_t>{0, 0, 0, 26,                          //
                                                0, 0, 0, 4,  0,    0,    0,    3,     //
                                                0, 0, 0, 2,  'a',  'b',               //
                                                0, 0, 0, 4,  0xFF, 0xFF, 0xFF, 0xFE,  //
                                                0, 0, 0, 0}));
}

TEST(PrinterBlock, EmptyVectorIsRefusedWithItsSizeLogged) {
    LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(vagent::PrintInfo2Result({}, block, size), 0);
    EXPECT_EQ(block, nullptr);
    EXPECT_THAT(capture.Texts(), ElementsAre("PrintInfo2Result : dwSize = [0]"));
}

TEST(PrinterBlock, AllocationFailureIsLoggedWithThePayloadSize) {
    LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    vagent::test::ScopedAllocationFailure failure(0, 1);
    EXPECT_EQ(vagent::PrintInfo2Result({{1, "abc"}}, block, size), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("PrintInfo2Result : new [15] bytes failed"));
}

TEST(PrinterDecoder, NumberItemWithoutItsNameDecodesToAnEmptyVectorAndOne) {
    const std::uint8_t payload[] = {0, 0, 0, 4, 0, 0, 0, 7};
    std::vector<_VXPrinterA> printers;
    EXPECT_EQ(vagent::Result2PrintInfo(payload, sizeof payload, printers), 1);
    EXPECT_THAT(printers, IsEmpty());
}

TEST(PrinterDecoder, OverrunIsADataFormatErrorKeepingEarlierRecords) {
    LogCapture capture;
    const std::uint8_t payload[] = {0, 0, 0, 4, 0, 0, 0, 7, 0, 0, 0, 1, 'p',
                                    0, 0, 0, 4, 0, 0, 0, 8, 0, 0, 0, 5, 'q'};
    std::vector<_VXPrinterA> printers;
    EXPECT_EQ(vagent::Result2PrintInfo(payload, sizeof payload, printers), 0);
    ASSERT_EQ(printers.size(), 1u);
    EXPECT_EQ(printers[0].sessionId, 7);
    EXPECT_EQ(printers[0].printerName, "p");
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!",
                                             "Result2PrintInfo : Data Format Error"));
}

TEST(PrinterDecoder, NumberItemOfAnotherSizeThanFourIsADataFormatError) {
    LogCapture capture;
    const std::uint8_t payload[] = {0, 0, 0, 1, 7, 0, 0, 0, 1, 'p'};
    std::vector<_VXPrinterA> printers;
    EXPECT_EQ(vagent::Result2PrintInfo(payload, sizeof payload, printers), 0);
    EXPECT_THAT(printers, IsEmpty());
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2PrintInfo : Data Format Error"));
}

TEST(PrinterDecoder, AppendsToWhatTheCallersVectorHolds) {
    const std::uint8_t payload[] = {0, 0, 0, 4, 0, 0, 0, 7, 0, 0, 0, 1, 'p'};
    std::vector<_VXPrinterA> printers = {_VXPrinterA{3, "kept"}};
    EXPECT_EQ(vagent::Result2PrintInfo(payload, sizeof payload, printers), 1);
    ASSERT_EQ(printers.size(), 2u);
    EXPECT_EQ(printers[0].printerName, "kept");
    EXPECT_EQ(printers[1].sessionId, 7);
    EXPECT_EQ(printers[1].printerName, "p");
}
