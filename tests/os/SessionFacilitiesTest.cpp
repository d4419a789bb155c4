#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "os/Clock.h"
#include "os/Facilities.h"
#include "os/Spooler.h"
#include "os/Status.h"
#include "os/SystemMessages.h"
#include "os/TerminalServices.h"

using vagent::os::Installed;

// What the real terminal server, spooler, message table and clock answer on
// this host: on Windows the calls succeed or fail with a system status; a
// POSIX host has none of the first three and answers "not supported".

TEST(TerminalServicesFacility, EnumerationAnswersWithAListOrAStatus) {
    std::vector<vagent::os::SessionEntry> sessions;
    const std::uint32_t status =
        Installed<vagent::os::TerminalServices>().EnumerateSessions(0, 1, sessions);
    if (status != 0) {
        EXPECT_TRUE(sessions.empty());
    }
    for (const vagent::os::SessionEntry& session : sessions) {
        EXPECT_LE(session.state, 9u);
    }
}

TEST(SpoolerFacility, SizeQueryAnswersTheSizeOrAStatus) {
    std::uint32_t needed = 12345;
    std::vector<std::string> names;
    const std::uint32_t status = Installed<vagent::os::Spooler>().EnumeratePrinters(
        vagent::os::kPrinterEnumLocal | vagent::os::kPrinterEnumConnections,
        vagent::os::kPrinterInfoLevel2, nullptr, 0, needed, names);
    if (status == 0) {
        EXPECT_EQ(needed, 0u);
        EXPECT_TRUE(names.empty());
    } else if (status == vagent::os::kInsufficientBuffer) {
        EXPECT_GT(needed, 0u);
    } else {
        EXPECT_EQ(status, vagent::os::kNotSupported);
    }
}

TEST(SystemMessagesFacility, KnowsTheTextOfAccessDeniedOrIsNotSupported) {
    std::string text;
    const std::uint32_t status =
        Installed<vagent::os::SystemMessages>().MessageText(vagent::os::kAccessDenied, text);
    if (status == vagent::os::kNotSupported) {
        EXPECT_TRUE(text.empty());
        return;
    }
    EXPECT_EQ(status, 0u);
    EXPECT_FALSE(text.empty());
}

TEST(SystemMessagesFacility, HasNoTextForTheLibrarysOwnCodes) {
    std::string text = "unchanged";
    EXPECT_NE(Installed<vagent::os::SystemMessages>().MessageText(0xE6000001u, text), 0u);
    EXPECT_EQ(text, "unchanged");
}

TEST(ClockFacility, CountsSecondsSinceTheEpoch) {
    const std::int64_t now = Installed<vagent::os::Clock>().SecondsSinceEpoch();
    // Later than 2024-01-01 and earlier than 2100-01-01.
    EXPECT_GT(now, 1704067200);
    EXPECT_LT(now, 4102444800);
}
