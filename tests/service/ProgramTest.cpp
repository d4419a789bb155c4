#include "Program.h"

#include <gtest/gtest.h>

namespace vagent::service {
namespace {

TEST(Program, HelpAndVersionExitZero) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(RunProgram({"--version"}), 0);
    EXPECT_EQ(RunProgram({"--help"}), 0);
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_NE(printed.find("vagentd "), std::string::npos);
    EXPECT_NE(printed.find("Usage:"), std::string::npos);
}

TEST(Program, BadCommandLinesExitTwoWithAMessage) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"serve"},
                                               {"run", "--workers", "0"},
                                               {"run", "--listen", "127.0.0.1"},
                                               {"run", "--allow", "127.0.0.0/99"},
                                               {"install", "--max-block", "1"}}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(RunProgram(arguments), 2);
        const std::string printed = testing::internal::GetCapturedStderr();
        EXPECT_EQ(printed.rfind("vagentd: ", 0), 0u) << printed;
    }
}

}  // namespace
}  // namespace vagent::service
