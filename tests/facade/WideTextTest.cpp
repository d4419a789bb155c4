#include "facade/WideText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;

TEST(WideText, ListIsConvertedElementByElementInOrder) {
    EXPECT_THAT(NarrowList({L"Ann", L"", L"Bob"}), ElementsAre("Ann", "", "Bob"));
}

TEST(WideText, UserRecordKeepsNameAndComment) {
    const _VXUserInfoW wide = Widened(_VXUserInfoA{"Ann", "Accounts"});
    EXPECT_EQ(wide.name, L"Ann");
    EXPECT_EQ(wide.comment, L"Accounts");
}

TEST(WideText, UserGroupRecordKeepsItsName) {
    EXPECT_EQ(Widened(_VXUserGroupA{"Staff"}).name, L"Staff");
}

TEST(WideText, SessionRecordKeepsItsIdAndEveryText) {
    _VXSessionA narrow;
    narrow.sessionId = 7;
    narrow.info1 = "one";
    narrow.macAddress = "00-11-22-33-44-55";
    narrow.info3 = "three";
    narrow.clientAddress = "10.0.0.9";
    const _VXSessionW wide = Widened(narrow);
    EXPECT_EQ(wide.sessionId, 7);
    EXPECT_EQ(wide.info1, L"one");
    EXPECT_EQ(wide.macAddress, L"00-11-22-33-44-55");
    EXPECT_EQ(wide.info3, L"three");
    EXPECT_EQ(wide.clientAddress, L"10.0.0.9");
}

TEST(WideText, PrinterRecordKeepsItsSessionAndName) {
    _VXPrinterA narrow;
    narrow.sessionId = 3;
    narrow.printerName = "Laser (from ts01) in session 3";
    const _VXPrinterW wide = Widened(narrow);
    EXPECT_EQ(wide.sessionId, 3);
    EXPECT_EQ(wide.printerName, L"Laser (from ts01) in session 3");
}

TEST(WideText, FileRecordKeepsItsNameAndAttribute) {
    FileAttrA narrow;
    narrow.name = "C:\\";
    narrow.attribute = 1;
    const FileAttrW wide = Widened(narrow);
    EXPECT_EQ(wide.name, L"C:\\");
    EXPECT_EQ(wide.attribute, 1);
}

TEST(WideText, RecordsReplaceWhatTheCallersListHeld) {
    std::vector<_VXUserGroupW> groups = {_VXUserGroupW{L"stale"}};
    ReplaceWithWidened(std::vector<_VXUserGroupA>{{"A"}, {"B"}}, groups);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].name, L"A");
    EXPECT_EQ(groups[1].name, L"B");
}
