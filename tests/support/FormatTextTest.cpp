#include "support/FormatText.h"

#include <gtest/gtest.h>

using vagent::ExpandWithoutArguments;

TEST(ExpandWithoutArguments, PlainTextStaysAsItIs) {
    EXPECT_EQ(ExpandWithoutArguments("AddObject => pCont->Create failed"),
              "AddObject => pCont->Create failed");
}

TEST(ExpandWithoutArguments, DoublePercentBecomesOne) {
    EXPECT_EQ(ExpandWithoutArguments("100%% done, %%d"), "100% done, %d");
}

TEST(ExpandWithoutArguments, ConversionsNeedingArgumentsAreKept) {
    EXPECT_EQ(ExpandWithoutArguments("[%s] [%-08.3ld] [%p] [%n]"), "[%s] [%-08.3ld] [%p] [%n]");
}

TEST(ExpandWithoutArguments, TrailingPercentIsKept) {
    EXPECT_EQ(ExpandWithoutArguments("50%"), "50%");
    EXPECT_EQ(ExpandWithoutArguments("50%-0"), "50%-0");
}

namespace {

bool Format(std::unique_ptr<char[]>& text, const char* pattern, ...) VAGENT_PRINTF_FORMAT(2, 3);

bool Format(std::unique_ptr<char[]>& text, const char* pattern, ...) {
    va_list arguments;
    va_start(arguments, pattern);
    const bool done = vagent::FormatInto(text, pattern, arguments);
    va_end(arguments);
    return done;
}

}  // namespace

TEST(FormatInto, FormatsIntoABufferOfTheExactSize) {
    std::unique_ptr<char[]> text;
    ASSERT_TRUE(Format(text, "%s=%d", "count", 12));
    EXPECT_STREQ(text.get(), "count=12");
}
