#include "AllowList.h"

#include <gtest/gtest.h>

#include "Ipv4Text.h"

namespace vagent::service {
namespace {

std::uint32_t Address(const std::string& text) {
    std::uint32_t address = 0;
    EXPECT_TRUE(ParseIpv4(text, address)) << text;
    return address;
}

AllowList Parsed(const std::vector<std::string>& texts) {
    AllowList list;
    std::string error;
    EXPECT_TRUE(list.Parse(texts, error)) << error;
    return list;
}

TEST(Ipv4Text, ParsesDottedTextInHostOrder) {
    EXPECT_EQ(Address("127.0.0.1"), 0x7F000001u);
    EXPECT_EQ(Address("0.0.0.0"), 0u);
    EXPECT_EQ(Address("255.255.255.255"), 0xFFFFFFFFu);
    EXPECT_EQ(Address("10.1.2.3"), 0x0A010203u);
}

TEST(Ipv4Text, RefusesAnythingButFourDecimalParts) {
    for (const char* text :
         {"", "1.2.3", "1.2.3.4.5", "256.0.0.1", "1.2.3.-4", "01.2.3.4", "1..2.3", "a.b.c.d",
          "1.2.3.4 ", " 1.2.3.4", "localhost", "1.2.3.4/8", "1234.1.1.1", "0x7f.0.0.1"}) {
        std::uint32_t address = 7;
        EXPECT_FALSE(ParseIpv4(text, address)) << text;
        EXPECT_EQ(address, 7u) << text;
    }
}

TEST(Ipv4Text, FormatsDottedText) {
    EXPECT_EQ(FormatIpv4(0x7F000001u), "127.0.0.1");
    EXPECT_EQ(FormatIpv4(0xC0A8FF0Au), "192.168.255.10");
}

TEST(AllowList, SingleHostAllowsOnlyThatAddress) {
    const AllowList list = Parsed({"127.0.0.1/32"});
    EXPECT_TRUE(list.Allows(Address("127.0.0.1")));
    EXPECT_FALSE(list.Allows(Address("127.0.0.2")));
    EXPECT_FALSE(list.Allows(Address("10.0.0.1")));
}

TEST(AllowList, BareAddressMeansOneHost) {
    const AllowList list = Parsed({"10.1.2.3"});
    EXPECT_TRUE(list.Allows(Address("10.1.2.3")));
    EXPECT_FALSE(list.Allows(Address("10.1.2.4")));
}

TEST(AllowList, LoopbackNetworkAllowsAllOf127) {
    const AllowList list = Parsed({"127.0.0.0/8"});
    EXPECT_TRUE(list.Allows(Address("127.0.0.1")));
    EXPECT_TRUE(list.Allows(Address("127.255.255.254")));
    EXPECT_FALSE(list.Allows(Address("128.0.0.1")));
    EXPECT_FALSE(list.Allows(Address("126.255.255.255")));
}

TEST(AllowList, HostBitsOfTheNetworkAreIgnored) {
    const AllowList list = Parsed({"192.168.1.77/24"});
    EXPECT_TRUE(list.Allows(Address("192.168.1.1")));
    EXPECT_FALSE(list.Allows(Address("192.168.2.1")));
}

TEST(AllowList, ZeroBitsAllowsEveryAddress) {
    const AllowList list = Parsed({"0.0.0.0/0"});
    EXPECT_TRUE(list.Allows(Address("0.0.0.0")));
    EXPECT_TRUE(list.Allows(Address("8.8.8.8")));
    EXPECT_TRUE(list.Allows(Address("255.255.255.255")));
}

TEST(AllowList, AnyOfSeveralNetworksAllows) {
    const AllowList list = Parsed({"127.0.0.0/8", "10.0.0.0/16"});
    EXPECT_TRUE(list.Allows(Address("10.0.200.1")));
    EXPECT_TRUE(list.Allows(Address("127.0.0.1")));
    EXPECT_FALSE(list.Allows(Address("10.1.0.1")));
    EXPECT_EQ(list.Describe(), "127.0.0.0/8,10.0.0.0/16");
}

TEST(AllowList, EmptyListAllowsNothing) {
    const AllowList list = Parsed({});
    EXPECT_FALSE(list.Allows(Address("127.0.0.1")));
}

TEST(AllowList, RefusesBadTextsAndKeepsTheListItHad) {
    for (const char* text :
         {"127.0.0.0/33", "127.0.0.0/", "127.0.0.0/-1", "127.0.0/8", "/8", "127.0.0.0/8/8",
          "127.0.0.0/08", "127.0.0.0/x", "any", "", "::1/128"}) {
        AllowList list = Parsed({"127.0.0.0/8"});
        std::string error;
        EXPECT_FALSE(list.Parse({"10.0.0.0/8", text}, error)) << text;
        EXPECT_NE(error.find(std::string("\"") + text + "\""), std::string::npos) << error;
        EXPECT_TRUE(list.Allows(Address("127.0.0.1"))) << text;
        EXPECT_FALSE(list.Allows(Address("10.0.0.1"))) << text;
    }
}

}  // namespace
}  // namespace vagent::service
