#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "facade/VAgentWTestHost.h"
#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "os/TextCodec.h"
#include "vagent/VAgentW.h"

using ::testing::ElementsAre;
using vagent::test::ActiveCodePage;
using vagent::test::LogCapture;
using vagent::test::ScopedAllocationFailure;

namespace {

// A code page that converts nothing, as the system answers for text it
// cannot take (no translation).
class RefusingTextCodec final : public vagent::os::TextCodec {
public:
    std::uint32_t NarrowToWide(const std::string&, std::wstring&) override { return 1113; }
    std::uint32_t WideToNarrow(const std::wstring&, std::string&) override { return 1113; }
};

const std::wstring kJuergen = L"J\u00FCrgen";
const std::wstring kZofie = L"\u017Dofie";

}  // namespace

TEST(VAgentWConversion, WideToNarrowGivesTheByteCountWithTheTerminator) {
    std::string narrow = "stale";
    EXPECT_EQ(VAgentW::wstring2string(L"CN=Ann", narrow), 7);
    EXPECT_EQ(narrow, "CN=Ann");
}

TEST(VAgentWConversion, NarrowToWideGivesTheCharacterCountWithTheTerminator) {
    std::wstring wide = L"stale";
    EXPECT_EQ(VAgentW::string2wstring("Sales", wide), 6);
    EXPECT_EQ(wide, L"Sales");
}

TEST(VAgentWConversion, EmptyTextGivesCountOneAndAnEmptyOutput) {
    std::string narrow = "stale";
    std::wstring wide = L"stale";
    EXPECT_EQ(VAgentW::wstring2string(L"", narrow), 1);
    EXPECT_EQ(VAgentW::string2wstring("", wide), 1);
    EXPECT_EQ(narrow, "");
    EXPECT_EQ(wide, L"");
}

TEST(VAgentWConversion, UmlautTakesTheActiveCodePagesBytes) {
    const std::string expected =
        ActiveCodePage("\x4A\xC3\xBC\x72\x67\x65\x6E", "\x4A\xFC\x72\x67\x65\x6E");
    std::string narrow;
    EXPECT_EQ(VAgentW::wstring2string(kJuergen, narrow), static_cast<int>(expected.size()) + 1);
    EXPECT_EQ(narrow, expected);
    std::wstring back;
    EXPECT_EQ(VAgentW::string2wstring(narrow, back), 7);
    EXPECT_EQ(back, kJuergen);
}

TEST(VAgentWConversion, CaronZTakesTheActiveCodePagesBytes) {
    const std::string expected = ActiveCodePage("\xC5\xBD\x6F\x66\x69\x65", "\x8E\x6F\x66\x69\x65");
    std::string narrow;
    EXPECT_EQ(VAgentW::wstring2string(kZofie, narrow), static_cast<int>(expected.size()) + 1);
    EXPECT_EQ(narrow, expected);
    std::wstring back;
    VAgentW::string2wstring(narrow, back);
    EXPECT_EQ(back, kZofie);
}

// Neither system refuses text it cannot represent: without a default
// character of the caller's, it becomes the code page's own one, or on
// Windows the letter's best fit where the code page has one.
TEST(VAgentWConversion, LoneSurrogateBecomesTheDefaultCharacter) {
    std::wstring wide(1, static_cast<wchar_t>(0xD800));
    wide += L"x";
    std::string narrow;
    EXPECT_EQ(VAgentW::wstring2string(wide, narrow), 3);
    EXPECT_EQ(narrow, "?x");
}

TEST(VAgentWConversion, LetterOutsideTheCodePageTakesItsBestFitNotAFailure) {
    std::string narrow;
    const std::string expected = ActiveCodePage("\xC5\x81ukasz", "Lukasz");
    EXPECT_EQ(VAgentW::wstring2string(L"\u0141ukasz", narrow),
              static_cast<int>(expected.size()) + 1);
    EXPECT_EQ(narrow, expected);
}

TEST(VAgentWConversion, TextIsTakenUpToItsFirstZero) {
    std::string narrow;
    EXPECT_EQ(VAgentW::wstring2string(std::wstring(L"ab\0cd", 5), narrow), 3);
    EXPECT_EQ(narrow, "ab");
}

TEST(VAgentWConversion, WideToNarrowRefusedBufferLogsTheByteCountAndKeepsTheOutput) {
    LogCapture capture;
    std::string narrow = "kept";
    {
        ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(VAgentW::wstring2string(L"abcd", narrow), 0);
        EXPECT_EQ(failure.Refused(), 1);
    }
    EXPECT_EQ(narrow, "kept");
    EXPECT_THAT(capture.Texts(), ElementsAre("wstring2string : new [5] bytes"));
}

TEST(VAgentWConversion, NarrowToWideRefusedBufferLogsTheCharacterCountUnderTheSameText) {
    LogCapture capture;
    std::wstring wide = L"kept";
    {
        ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(VAgentW::string2wstring("abc", wide), 0);
        EXPECT_EQ(failure.Refused(), 1);
    }
    EXPECT_EQ(wide, L"kept");
    EXPECT_THAT(capture.Texts(), ElementsAre("wstring2string : new [4] bytes"));
}

TEST(VAgentWConversion, TextThatDoesNotConvertGivesZeroAndAnEmptyOutput) {
    LogCapture capture;
    RefusingTextCodec codec;
    vagent::os::ScopedFacility<vagent::os::TextCodec> scope(codec);
    std::string narrow = "stale";
    std::wstring wide = L"stale";
    EXPECT_EQ(VAgentW::wstring2string(L"abc", narrow), 0);
    EXPECT_EQ(VAgentW::string2wstring("abc", wide), 0);
    EXPECT_EQ(narrow, "");
    EXPECT_EQ(wide, L"");
    EXPECT_TRUE(capture.Texts().empty());
}

// Inside the methods the process-wide conversions run, with texts of their
// own.
TEST(VAgentWConversion, MethodsLogTheProcessWideTextWhenANarrowBufferIsRefused) {
    vagent::test::VAgentWTestHost host;
    VAgentW agent;
    std::wstring site = L"OU=Staff";
    {
        ScopedAllocationFailure failure(0, 1);
        agent.SetLDAPRootSite(site);
    }
    EXPECT_THAT(host.log.Texts(), ElementsAre("wstring2string : new [9] bytes failed!"));
}

TEST(VAgentWConversion, MethodsLogTheProcessWideTextWhenAWideBufferIsRefused) {
    vagent::test::VAgentWTestHost host;
    VAgentW agent(0, L"127.0.0.1", L"1234");
    std::wstring address = L"kept";
    std::wstring port;
    {
        ScopedAllocationFailure failure(0, 1);
        agent.GetAgentSite(address, port);
    }
    EXPECT_EQ(address, L"kept");
    EXPECT_EQ(port, L"1234");
    EXPECT_THAT(host.log.Texts(), ElementsAre("string2wstring : new [10] bytes failed!"));
}

TEST(VAgentWConversion, CopySiteIsConvertedByTheExportedConversion) {
    LogCapture capture;
    VAgentW agent;
    std::wstring site = L"10.0.0.7";
    {
        ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(agent.SetFilesCopySite(site, 3), 1);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("wstring2string : new [9] bytes"));
}
