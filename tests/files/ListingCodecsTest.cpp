#include "files/ListingCodecs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"

using ::testing::ElementsAre;
using vagent::files::ExistAttr2Result;
using vagent::files::Result2ExistAttr;
using vagent::files::Result2FileAttr;
using vagent::files::VecFileAttr2Result;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Adopt(std::uint8_t* block, std::uint32_t size) {
    Bytes bytes(block, block + size);
    delete[] block;
    return bytes;
}

}  // namespace

TEST(VecFileAttr2Result, WritesNameThenBigEndianAttributeForEachEntry) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    ASSERT_EQ(VecFileAttr2Result({FileAttrA{"ab", 1}, FileAttrA{"c", 0}}, block, size), 1);
    EXPECT_EQ(Adopt(block, size), (Bytes{0, 0, 0, 27, 0, 0, 0,   2, 'a', 'b', 0, 0, 0, 4, 0, 0,
                                         0, 1, 0, 0,  0, 1, 'c', 0, 0,   0,   4, 0, 0, 0, 0}));
}

TEST(VecFileAttr2Result, EmptyListIsRefusedWithItsMessage) {
    vagent::test::LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(VecFileAttr2Result({}, block, size), 0);
    EXPECT_EQ(block, nullptr);
    EXPECT_THAT(capture.Texts(), ElementsAre("VecFileAttr2Result : Parameter Error, dwSize = 0"));
}

TEST(VecFileAttr2Result, AllocationFailureNamesTheWholeBlockSize) {
    vagent::test::LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(VecFileAttr2Result({FileAttrA{"ab", 1}}, block, size), 0);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("VecFileAttr2Result : new [18] bytes failed"));
}

TEST(ExistAttr2Result, WritesTwoFourByteItemsPerAnswer) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    ASSERT_EQ(ExistAttr2Result({ExistAttr{1, 0}}, block, size), 1);
    EXPECT_EQ(Adopt(block, size),
              (Bytes{0, 0, 0, 16, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 0}));
}

TEST(ExistAttr2Result, EmptyListIsRefusedWithItsMessage) {
    vagent::test::LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    EXPECT_EQ(ExistAttr2Result({}, block, size), 0);
    EXPECT_THAT(capture.Texts(), ElementsAre("ExistAttr2Result : dwSize = 0"));
}

TEST(ExistAttr2Result, AllocationFailureNamesTheWholeBlockSize) {
    vagent::test::LogCapture capture;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    {
        vagent::test::ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(ExistAttr2Result({ExistAttr{1, 1}, ExistAttr{0, 0}}, block, size), 0);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("ExistAttr2Result : new [36] bytes failed"));
}

TEST(Result2FileAttr, DecodesWhatTheEncoderWrote) {
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
    ASSERT_EQ(VecFileAttr2Result({FileAttrA{"dir", 1}, FileAttrA{"file.txt", 0}}, block, size), 1);
    const Bytes bytes = Adopt(block, size);
    std::vector<FileAttrA> entries;
    EXPECT_EQ(Result2FileAttr(bytes.data() + 4, size - 4, entries), 1);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].name, "dir");
    EXPECT_EQ(entries[0].attribute, 1);
    EXPECT_EQ(entries[1].name, "file.txt");
    EXPECT_EQ(entries[1].attribute, 0);
}

TEST(Result2FileAttr, NameWithoutAttributeItemDecodesToNothing) {
    const Bytes payload{0, 0, 0, 2, 'a', 'b'};
    std::vector<FileAttrA> entries{FileAttrA{"stale", 0}};
    EXPECT_EQ(Result2FileAttr(payload.data(), 6, entries), 1);
    EXPECT_TRUE(entries.empty());
}

TEST(Result2FileAttr, AttributeIsTheFirstFourBytesWhateverTheItemLength) {
    const Bytes payload{0, 0, 0, 1, 'x', 0, 0, 0, 6, 0, 0, 0, 1, 0xAA, 0xBB};
    std::vector<FileAttrA> entries;
    EXPECT_EQ(Result2FileAttr(payload.data(), static_cast<std::uint32_t>(payload.size()), entries),
              1);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].attribute, 1);
}

TEST(Result2FileAttr, OverrunLogsParameterErrorAndKeepsEarlierEntries) {
    vagent::test::LogCapture capture;
    const Bytes payload{0, 0, 0, 1, 'x', 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0, 9, 'y'};
    std::vector<FileAttrA> entries;
    EXPECT_EQ(Result2FileAttr(payload.data(), static_cast<std::uint32_t>(payload.size()), entries),
              0);
    EXPECT_EQ(entries.size(), 1u);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!",
                                             "Result2FileAttr : Parameter Error"));
}

TEST(Result2FileAttr, ShortAttributeItemIsAFormatErrorNotAnOverread) {
    vagent::test::LogCapture capture;
    const Bytes payload{0, 0, 0, 1, 'x', 0, 0, 0, 2, 0, 1};
    std::vector<FileAttrA> entries;
    EXPECT_EQ(Result2FileAttr(payload.data(), static_cast<std::uint32_t>(payload.size()), entries),
              0);
    EXPECT_TRUE(entries.empty());
    EXPECT_THAT(capture.Texts(), ElementsAre("Result2FileAttr : Parameter Error"));
}

TEST(Result2FileAttr, NameLongerThanItsBufferIsRefused) {
    Bytes payload{0, 0, 0x04, 0x04};
    payload.resize(4 + 1028, 'n');
    std::vector<FileAttrA> entries;
    EXPECT_EQ(Result2FileAttr(payload.data(), static_cast<std::uint32_t>(payload.size()), entries),
              0);
}

TEST(Result2ExistAttr, DecodesPairsAndDropsAnIncompleteOne) {
    const Bytes payload{0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 0};
    std::vector<ExistAttr> answers{ExistAttr{5, 5}};
    EXPECT_EQ(Result2ExistAttr(payload.data(), static_cast<std::uint32_t>(payload.size()), answers),
              1);
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].exists, 1);
    EXPECT_EQ(answers[0].directory, 1);
}

TEST(Result2ExistAttr, OverrunLogsParameterError) {
    vagent::test::LogCapture capture;
    const Bytes payload{0, 0, 0, 8, 0, 0};
    std::vector<ExistAttr> answers;
    EXPECT_EQ(Result2ExistAttr(payload.data(), static_cast<std::uint32_t>(payload.size()), answers),
              0);
    EXPECT_THAT(capture.Texts(), ElementsAre("GetNextDataItem : Data Format Error!",
                                             "Result2ExistAttr : Parameter Error"));
}
