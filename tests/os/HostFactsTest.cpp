#include "os/HostFacts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "os/Facilities.h"

using vagent::os::Host;
using vagent::os::Module;

TEST(HostFacts, ExecutablePathNamesThisTestProgramWithBackslashes) {
    std::string path;
    ASSERT_EQ(Host().ModuleFileName(Module::Executable, path), 0u);
    EXPECT_EQ(path.find('/'), std::string::npos);
    EXPECT_NE(path.find("vagent_os_tests"), std::string::npos) << path;
}

TEST(HostFacts, LibraryPathNamesTheModuleThatHoldsTheLibrary) {
    // The suites link the library statically, so its module is the program.
    std::string library;
    std::string executable;
    ASSERT_EQ(Host().ModuleFileName(Module::Library, library), 0u);
    ASSERT_EQ(Host().ModuleFileName(Module::Executable, executable), 0u);
    EXPECT_EQ(library, executable);
}

TEST(HostFacts, LocalTimeIsAPlausibleCalendarTime) {
    const vagent::os::LocalTime now = Host().CurrentLocalTime();
    EXPECT_GE(now.year, 2024);
    EXPECT_GE(now.month, 1);
    EXPECT_LE(now.month, 12);
    EXPECT_GE(now.day, 1);
    EXPECT_LE(now.day, 31);
    EXPECT_LE(now.hour, 23);
    EXPECT_LE(now.minute, 59);
    EXPECT_LE(now.second, 60);
    EXPECT_GE(now.milliseconds, 0);
    EXPECT_LE(now.milliseconds, 999);
}

TEST(HostFacts, AdapterAddressesAreDottedQuads) {
    std::vector<std::string> addresses;
    ASSERT_EQ(Host().AdapterIPv4Addresses(addresses), 0u);
    for (const std::string& address : addresses) {
        int dots = 0;
        for (char c : address) {
            dots += c == '.' ? 1 : 0;
            EXPECT_TRUE(c == '.' || (c >= '0' && c <= '9')) << address;
        }
        EXPECT_EQ(dots, 3) << address;
    }
}
