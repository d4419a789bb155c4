#include <gtest/gtest.h>

#include "os/Environment.h"
#include "os/ModuleResources.h"
#include "os/Status.h"
#include "os/VersionInfo.h"
#include "os/WindowMessages.h"

using vagent::os::Installed;

// These facilities exist only on Windows; elsewhere each answers "not
// supported".

TEST(Environment, TempIsSetOrNotSupported) {
    std::string value;
    const std::uint32_t status = Installed<vagent::os::Environment>().Value("TEMP", value);
    if (status == vagent::os::kNotSupported) {
        return;
    }
    EXPECT_EQ(status, 0u);
    EXPECT_FALSE(value.empty());
}

TEST(Environment, MissingVariableIsNotFound) {
    std::string value = "kept";
    const std::uint32_t status =
        Installed<vagent::os::Environment>().Value("VAGENT_NO_SUCH_VARIABLE", value);
    EXPECT_NE(status, 0u);
    EXPECT_EQ(value, "kept");
}

TEST(VersionInfo, WindowsReportsPlatformTwo) {
    vagent::os::VersionRecord record;
    const std::uint32_t status = Installed<vagent::os::VersionInfo>().Version(record);
    if (status == vagent::os::kNotSupported) {
        return;
    }
    EXPECT_EQ(status, 0u);
    EXPECT_EQ(record.platformId, 2u);
    EXPECT_GE(record.majorVersion, 5u);
}

TEST(WindowMessages, InvalidWindowIsRefused) {
    const std::uint32_t status =
        Installed<vagent::os::WindowMessages>().Post(0x7FFF1234u, 273, 0x800F, 0);
    if (status == vagent::os::kNotSupported) {
        return;
    }
    EXPECT_EQ(status, 1400u);
}

TEST(ModuleResources, MissingExecutableDoesNotLoad) {
    vagent::os::ModuleHandle module = 1;
    EXPECT_NE(Installed<vagent::os::ModuleResources>().LoadAsDataFile("C:\\no\\such\\program.exe",
                                                                      module),
              0u);
    EXPECT_EQ(module, 0u);
}
