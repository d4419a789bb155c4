#include "os/ComputerNames.h"

#include <gtest/gtest.h>

#include <vector>

#include "os/Status.h"

using vagent::os::ComputerNames;
using vagent::os::Installed;

TEST(ComputerNames, SizeQueryWithoutBufferGivesTheSizeWithTheZero) {
    std::uint32_t size = 0;
    EXPECT_EQ(
        Installed<ComputerNames>().ComputerNameEx(vagent::os::kComputerNameNetBIOS, nullptr, size),
        vagent::os::kMoreData);
    EXPECT_GE(size, 2u);
    std::vector<char> name(size, 'x');
    std::uint32_t capacity = size;
    ASSERT_EQ(Installed<ComputerNames>().ComputerNameEx(vagent::os::kComputerNameNetBIOS,
                                                        name.data(), capacity),
              0u);
    EXPECT_EQ(capacity, size - 1);
    EXPECT_EQ(name[size - 1], '\0');
}

TEST(ComputerNames, NameThatFitsIsCopiedWithItsLength) {
    char name[256] = "stale";
    std::uint32_t size = sizeof name;
    ASSERT_EQ(
        Installed<ComputerNames>().ComputerNameEx(vagent::os::kComputerNameDnsDomain, name, size),
        0u);
    EXPECT_EQ(size, std::string(name).size());
}
