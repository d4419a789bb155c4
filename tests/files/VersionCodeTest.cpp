#include "files/VersionCode.h"

#include <gtest/gtest.h>

using vagent::files::VersionCode;
using vagent::os::VersionRecord;

namespace {

int CodeOf(std::uint32_t major, std::uint32_t minor, std::uint32_t platform) {
    return VersionCode(VersionRecord{major, minor, 0, platform});
}

}  // namespace

TEST(VersionCode, PlatformZeroIsOneWhateverTheVersion) {
    EXPECT_EQ(CodeOf(4, 10, 0), 1);
    EXPECT_EQ(CodeOf(6, 1, 0), 1);
}

TEST(VersionCode, FourZeroDependsOnThePlatform) {
    EXPECT_EQ(CodeOf(4, 0, 1), 2);
    EXPECT_EQ(CodeOf(4, 0, 2), 6);
    EXPECT_EQ(CodeOf(4, 0, 3), 0);
}

TEST(VersionCode, FourTenIsThreeOnEveryPlatformButZero) {
    EXPECT_EQ(CodeOf(4, 10, 1), 3);
    EXPECT_EQ(CodeOf(4, 10, 2), 3);
}

TEST(VersionCode, OlderVersionsHaveTheirOwnCodes) {
    EXPECT_EQ(CodeOf(4, 90, 1), 4);
    EXPECT_EQ(CodeOf(3, 51, 2), 5);
    EXPECT_EQ(CodeOf(5, 0, 2), 7);
    EXPECT_EQ(CodeOf(5, 1, 2), 8);
}

TEST(VersionCode, FiveTwoAndEverySixAreNine) {
    EXPECT_EQ(CodeOf(5, 2, 2), 9);
    EXPECT_EQ(CodeOf(5, 7, 2), 9);
    EXPECT_EQ(CodeOf(6, 0, 2), 9);
    EXPECT_EQ(CodeOf(6, 1, 2), 9);
    EXPECT_EQ(CodeOf(10, 0, 2), 9);
}

TEST(VersionCode, OtherCombinationsAreZero) {
    EXPECT_EQ(CodeOf(4, 5, 2), 0);
    EXPECT_EQ(CodeOf(3, 10, 2), 0);
    EXPECT_EQ(CodeOf(2, 0, 2), 0);
}
