#include "files/TransferFrame.h"

#include <gtest/gtest.h>

using vagent::files::BuildFrame;
using vagent::files::ParseFrame;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Contents(const VByteStream& stream) {
    return Bytes(stream.Data(), stream.Data() + stream.Used());
}

}  // namespace

TEST(TransferFrame, FieldsAreLittleEndianAndTheNameCarriesItsZero) {
    VByteStream frame(1024, 1024);
    ASSERT_TRUE(BuildFrame(frame, 2500, 0x20, 1024, "C:\\a"));
    EXPECT_EQ(Contents(frame), (Bytes{0xC4, 0x09, 0, 0, 0x20, 0,   0,   0,    0x00, 0x04, 0,
                                      0,    5,    0, 0, 0,    'C', ':', '\\', 'a',  0}));
}

TEST(TransferFrame, EndFrameCarriesItsStatusInTheBlockSizeField) {
    VByteStream frame(1024, 1024);
    ASSERT_TRUE(BuildFrame(frame, 0xFFFFFFFFu, 0, 5, ""));
    EXPECT_EQ(Contents(frame),
              (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 5, 0, 0, 0, 1, 0, 0, 0, 0}));
}

TEST(TransferFrame, ParseReadsBackWhatBuildWrote) {
    VByteStream frame(1024, 1024);
    ASSERT_TRUE(BuildFrame(frame, 7, 0x11, 0x12345, "x\\y"));
    FileFrameHeader header;
    std::uint32_t blockField = 0;
    ASSERT_TRUE(ParseFrame(frame, header, blockField));
    EXPECT_EQ(header.size, 7u);
    EXPECT_EQ(header.attributes, 0x11u);
    EXPECT_EQ(blockField, 0x12345u);
    EXPECT_EQ(header.blockSize, 0x2345u);
    EXPECT_EQ(header.name, "x\\y");
}

TEST(TransferFrame, NameWithoutItsZeroIsRefused) {
    VByteStream frame(1024, 1024);
    const Bytes body{1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 'a', 'b'};
    ASSERT_EQ(frame.PutBytes(body.data(), static_cast<std::uint32_t>(body.size())), 1);
    FileFrameHeader header;
    std::uint32_t blockField = 0;
    EXPECT_FALSE(ParseFrame(frame, header, blockField));
}

TEST(TransferFrame, NameLengthBeyondTheFrameIsRefused) {
    VByteStream frame(1024, 1024);
    const Bytes body{1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0xFF, 0, 0, 0, 'a', 0};
    ASSERT_EQ(frame.PutBytes(body.data(), static_cast<std::uint32_t>(body.size())), 1);
    FileFrameHeader header;
    std::uint32_t blockField = 0;
    EXPECT_FALSE(ParseFrame(frame, header, blockField));
}

TEST(TransferFrame, FrameMissingFieldsIsRefused) {
    VByteStream frame(1024, 1024);
    const Bytes body{1, 0, 0, 0, 0, 0};
    ASSERT_EQ(frame.PutBytes(body.data(), static_cast<std::uint32_t>(body.size())), 1);
    FileFrameHeader header;
    std::uint32_t blockField = 0;
    EXPECT_FALSE(ParseFrame(frame, header, blockField));
}
