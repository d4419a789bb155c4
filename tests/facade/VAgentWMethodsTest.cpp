#include "vagent/VAgentW.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Server.h"
#include "facade/VAgentWTestHost.h"
#include "fakes/FakeHostFacts.h"
#include "helpers/TempDir.h"
#include "os/HostFacts.h"
#include "vagent/VAgent.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using vagent::test::ActiveCodePage;

namespace {

enum class Road { Local, Remote };

const std::wstring kJuergen = L"J\u00FCrgen";
const std::wstring kZofie = L"\u017Dofie";
const std::wstring kEarly = L"Fr\u00FCh";
// The same names as file names, whatever the test program's own narrow
// encoding is.
const std::filesystem::path kJuergenFile = std::filesystem::u8path("J\xC3\xBCrgen");
const std::filesystem::path kZofieFile = std::filesystem::u8path("\xC5\xBDofie");

std::wstring Wide(const std::string& narrow) {
    std::wstring wide;
    VAgentW::string2wstring(narrow, wide);
    return wide;
}

std::string Narrow(const std::wstring& wide) {
    std::string narrow;
    VAgentW::wstring2string(wide, narrow);
    return narrow;
}

std::vector<std::wstring> Names(const std::vector<_VXUserInfoW>& records) {
    std::vector<std::wstring> names;
    for (const _VXUserInfoW& record : records) {
        names.push_back(record.name + L"|" + record.comment);
    }
    return names;
}

std::vector<std::wstring> Names(const std::vector<_VXUserInfoA>& records) {
    std::vector<std::wstring> names;
    for (const _VXUserInfoA& record : records) {
        names.push_back(Wide(record.name) + L"|" + Wide(record.comment));
    }
    return names;
}

// Every wide method, once in this process and once through the agent
// service in this process, against the same fake host. A narrow twin with
// the same settings shows what the wide answer must be, converted.
class VAgentWMethods : public ::testing::TestWithParam<Road> {
protected:
    void SetUp() override {
        if (GetParam() == Road::Local) {
            return;
        }
        vagent::service::ServerOptions options;
        options.listenAddress = "127.0.0.1";
        options.listenPort = 0;
        options.workers = 2;
        server_ = std::make_unique<vagent::service::Server>(options);
        ASSERT_EQ(server_->Start(), 0u);
        agent_.SetAgentSite(L"127.0.0.1", std::to_wstring(server_->Port()));
    }

    void TearDown() override {
        if (server_ != nullptr) {
            server_->Stop();
        }
    }

    VAgent NarrowTwin() {
        if (server_ == nullptr) {
            return VAgent();
        }
        return VAgent(0, "127.0.0.1", std::to_string(server_->Port()));
    }

    void AddLocalUser(const std::wstring& name, const std::wstring& comment) {
        host_.accounts.users[name] = {L"Alt-1", comment};
    }

    vagent::test::VAgentWTestHost host_;
    std::unique_ptr<vagent::service::Server> server_;
    VAgentW agent_;
};

std::string RoadName(const ::testing::TestParamInfo<Road>& road) {
    return road.param == Road::Local ? "Local" : "Remote";
}

INSTANTIATE_TEST_SUITE_P(BothRoads, VAgentWMethods, ::testing::Values(Road::Local, Road::Remote),
                         RoadName);

}  // namespace

TEST_P(VAgentWMethods, AddUserCreatesNonAsciiAccounts) {
    std::vector<std::wstring> names = {kJuergen, kZofie};
    std::vector<std::wstring> passwords = {L"Gr\u00FC\u00DFe-1", L"Heslo-2"};
    EXPECT_EQ(agent_.AddUser(names, passwords), 1);
    EXPECT_EQ(agent_.GetErrorCode(), 0u);
    ASSERT_EQ(host_.accounts.users.count(kJuergen), 1u);
    ASSERT_EQ(host_.accounts.users.count(kZofie), 1u);
    EXPECT_EQ(host_.accounts.users[kJuergen].password, L"Gr\u00FC\u00DFe-1");
    EXPECT_EQ(host_.accounts.users[kZofie].password, L"Heslo-2");
}

TEST_P(VAgentWMethods, DeleteUserRemovesTheNamedAccount) {
    AddLocalUser(kJuergen, L"");
    AddLocalUser(L"Ann", L"");
    std::vector<std::wstring> names = {kJuergen};
    EXPECT_EQ(agent_.DeleteUser(names), 1);
    EXPECT_EQ(host_.accounts.users.count(kJuergen), 0u);
    EXPECT_EQ(host_.accounts.users.count(L"Ann"), 1u);
}

TEST_P(VAgentWMethods, ChangePasswdSetsTheNewPassword) {
    AddLocalUser(kJuergen, L"");
    std::vector<std::wstring> names = {kJuergen};
    std::vector<std::wstring> oldPasswords = {L"Alt-1"};
    std::vector<std::wstring> newPasswords = {L"Neu-\u00E4"};
    EXPECT_EQ(agent_.ChangePasswd(names, oldPasswords, newPasswords), 1);
    EXPECT_EQ(host_.accounts.users[kJuergen].password, L"Neu-\u00E4");
}

TEST_P(VAgentWMethods, GetUserGivesWideRecordsInPlaceOfTheCallersList) {
    AddLocalUser(kJuergen, L"B\u00FCro");
    AddLocalUser(kZofie, L"");
    std::wstring base;
    std::vector<_VXUserInfoW> users = {_VXUserInfoW{L"stale", L""}};
    const int result = agent_.GetUser(base, users, 0);
    std::string narrowBase;
    std::vector<_VXUserInfoA> narrowUsers;
    VAgent twin = NarrowTwin();
    EXPECT_EQ(result, twin.GetUser(narrowBase, narrowUsers, 0));
    EXPECT_EQ(result, 1);
    EXPECT_EQ(Names(users), Names(narrowUsers));
    EXPECT_THAT(Names(users), Contains(kJuergen + L"|B\u00FCro"));
    EXPECT_THAT(Names(users), Contains(kZofie + L"|"));
}

TEST_P(VAgentWMethods, GetUserGroupGivesTheGroupsInWideForm) {
    AddLocalUser(kJuergen, L"");
    host_.accounts.globalGroups[kEarly] = {L"", {kJuergen}};
    std::vector<_VXUserGroupW> groups = {_VXUserGroupW{L"stale"}};
    EXPECT_EQ(agent_.GetUserGroup(kJuergen, groups), 1);
    std::vector<std::wstring> names;
    for (const _VXUserGroupW& group : groups) {
        names.push_back(group.name);
    }
    EXPECT_THAT(names, ElementsAre(kEarly));
}

TEST_P(VAgentWMethods, AddUserToGroupsAndRemoveUserFromGroupsChangeMembership) {
    AddLocalUser(kJuergen, L"");
    host_.accounts.localGroups[kEarly] = {L"", {}};
    std::vector<std::wstring> groups = {kEarly};
    EXPECT_EQ(agent_.AddUserToGroups(kJuergen, groups), 1);
    ASSERT_EQ(host_.accounts.localGroups[kEarly].members.size(), 1u);
    const std::wstring member = host_.accounts.localGroups[kEarly].members[0];
    EXPECT_EQ(member.substr(member.size() - kJuergen.size()), kJuergen);
    EXPECT_EQ(agent_.RemoveUserFromGroups(kJuergen, groups), 1);
    EXPECT_TRUE(host_.accounts.localGroups[kEarly].members.empty());
}

TEST_P(VAgentWMethods, BuiltinGroupMembershipGoesTheNarrowAgentsWay) {
    AddLocalUser(kJuergen, L"");
    host_.accounts.localGroups[L"Benutzer"] = {L"", {}};
    std::vector<std::wstring> groups = {L"Benutzer"};
    std::vector<std::string> narrowGroups = {"Benutzer"};
    VAgent twin = NarrowTwin();
    const int added = agent_.AddUserToBuiltinGroups(kJuergen, groups);
    const std::vector<std::wstring> membersAfterWide =
        host_.accounts.localGroups[L"Benutzer"].members;
    EXPECT_EQ(agent_.RemoveUserFromBuiltinGroups(kJuergen, groups), added);
    EXPECT_EQ(twin.AddUserToBuiltinGroups(Narrow(kJuergen), narrowGroups), added);
    EXPECT_EQ(host_.accounts.localGroups[L"Benutzer"].members, membersAfterWide);
    EXPECT_EQ(twin.RemoveUserFromBuiltinGroups(Narrow(kJuergen), narrowGroups), added);
}

TEST_P(VAgentWMethods, AddGroupAndRemoveGroupTakeWideNames) {
    std::vector<std::wstring> groups = {kEarly};
    EXPECT_EQ(agent_.AddGroup(groups), 1);
    EXPECT_EQ(host_.accounts.localGroups.count(kEarly), 1u);
    EXPECT_EQ(agent_.RemoveGroup(groups), 1);
    EXPECT_EQ(host_.accounts.localGroups.count(kEarly), 0u);
}

TEST_P(VAgentWMethods, GroupMembersAreAddedShownAndRemovedInWideForm) {
    AddLocalUser(kJuergen, L"Leiter");
    AddLocalUser(kZofie, L"");
    host_.accounts.localGroups[kEarly] = {L"", {}};
    std::vector<std::wstring> users = {kJuergen, kZofie};
    EXPECT_EQ(agent_.AddGroupUsers(kEarly, users), 1);
    EXPECT_EQ(host_.accounts.localGroups[kEarly].members.size(), 2u);

    std::vector<std::wstring> shown = {L"stale"};
    EXPECT_EQ(agent_.ShowGroupUsers(kEarly, shown), 1);
    std::vector<std::string> narrowShown;
    VAgent twin = NarrowTwin();
    twin.ShowGroupUsers(Narrow(kEarly), narrowShown);
    std::vector<std::wstring> expected;
    for (const std::string& name : narrowShown) {
        expected.push_back(Wide(name));
    }
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(shown.size(), 2u);

    std::vector<_VXUserInfoW> info = {_VXUserInfoW{L"stale", L""}};
    std::vector<_VXUserInfoA> narrowInfo;
    EXPECT_EQ(agent_.GetGroupUsersInfo(kEarly, info),
              twin.GetGroupUsersInfo(Narrow(kEarly), narrowInfo));
    EXPECT_EQ(Names(info), Names(narrowInfo));
}

// Members leave through the global groups' call, as the narrow agent does it.
TEST_P(VAgentWMethods, RemoveGroupUsersTakesWideNames) {
    host_.accounts.globalGroups[kEarly] = {L"", {kJuergen, kZofie}};
    std::vector<std::wstring> leaving = {kZofie};
    EXPECT_EQ(agent_.RemoveGroupUsers(kEarly, leaving), 1);
    EXPECT_THAT(host_.accounts.globalGroups[kEarly].members, ElementsAre(kJuergen));
}

TEST_P(VAgentWMethods, GetGroupGivesWideRecords) {
    host_.accounts.localGroups[kEarly] = {L"", {}};
    std::wstring base;
    std::vector<_VXUserInfoW> groups = {_VXUserInfoW{L"stale", L""}};
    std::string narrowBase;
    std::vector<_VXUserInfoA> narrowGroups;
    VAgent twin = NarrowTwin();
    EXPECT_EQ(agent_.GetGroup(base, groups, 0), twin.GetGroup(narrowBase, narrowGroups, 0));
    EXPECT_EQ(Names(groups), Names(narrowGroups));
    EXPECT_THAT(Names(groups), Contains(kEarly + L"|"));
}

TEST_P(VAgentWMethods, BroadcastMessageSendsTheTextsInTheActiveCodePage) {
    host_.sessions.AddSession(1, "VXP#1", 0);
    std::wstring title = L"Gr\u00FC\u00DFe";
    std::wstring message = L"Wartung f\u00FCr " + kJuergen;
    EXPECT_EQ(agent_.BroadcastMessage(title, message), 1);
    ASSERT_FALSE(host_.sessions.messages.empty());
    EXPECT_EQ(host_.sessions.messages[0].title, ActiveCodePage("Gr\xC3\xBC\xC3\x9F"
                                                               "e",
                                                               "Gr\xFC\xDF"
                                                               "e"));
    EXPECT_EQ(host_.sessions.messages[0].message, Narrow(message));
}

TEST_P(VAgentWMethods, SessionCountsAndLogoffGoTheNarrowAgentsWay) {
    host_.sessions.AddSession(1, "RDP-Tcp#1", 0);
    host_.sessions.AddSession(2, "RDP-Tcp#2", 0);
    VAgent twin = NarrowTwin();
    EXPECT_EQ(agent_.GetSessionCounts(), twin.GetSessionCounts());
    EXPECT_EQ(agent_.GetSessionCountsAll(), twin.GetSessionCountsAll());
    EXPECT_EQ(agent_.SessionLogoff(2, 1), 1);
    ASSERT_EQ(host_.sessions.logoffs.size(), 1u);
    EXPECT_EQ(host_.sessions.logoffs[0].sessionId, 2u);
    EXPECT_EQ(agent_.SessionLogoff(1, 0), 1);
    ASSERT_EQ(host_.sessions.disconnects.size(), 1u);
    EXPECT_EQ(host_.sessions.disconnects[0].sessionId, 1u);
}

TEST_P(VAgentWMethods, SessionInfoGivesWideRecords) {
    std::vector<_VXSessionW> sessions = {_VXSessionW{}};
    std::vector<_VXSessionA> narrowSessions;
    VAgent twin = NarrowTwin();
    EXPECT_EQ(agent_.GetSessionInfo(sessions), twin.GetSessionInfo(narrowSessions));
    ASSERT_EQ(sessions.size(), narrowSessions.size());
    for (std::size_t i = 0; i < sessions.size(); ++i) {
        EXPECT_EQ(sessions[i].sessionId, narrowSessions[i].sessionId);
        EXPECT_EQ(sessions[i].macAddress, Wide(narrowSessions[i].macAddress));
    }
}

TEST_P(VAgentWMethods, PrinterInfoGivesWideNames) {
    host_.spooler.printers = {Narrow(L"Drucker f\u00FCr " + kJuergen)};
    std::vector<_VXPrinterW> printers = {_VXPrinterW{}, _VXPrinterW{}};
    std::vector<_VXPrinterA> narrowPrinters;
    VAgent twin = NarrowTwin();
    EXPECT_EQ(agent_.GetPrinterInfo(printers), twin.GetPrinterInfo(narrowPrinters));
    ASSERT_EQ(printers.size(), narrowPrinters.size());
    ASSERT_EQ(printers.size(), 1u);
    EXPECT_EQ(printers[0].printerName, L"Drucker f\u00FCr " + kJuergen);
    EXPECT_EQ(printers[0].sessionId, narrowPrinters[0].sessionId);
}

TEST_P(VAgentWMethods, DirListGivesWideEntriesOfANonAsciiDirectory) {
    vagent::test::TempDir directory;
    vagent::test::WriteWholeFile(directory.Path() / std::filesystem::u8path("J\xC3\xBCrgen.txt"),
                                 "x");
    const std::wstring path = Wide(directory.LibraryPath()) + L"\\*";
    std::vector<FileAttrW> entries = {FileAttrW{}};
    EXPECT_EQ(agent_.DirList(path, entries), 1);
    std::vector<std::wstring> names;
    for (const FileAttrW& entry : entries) {
        names.push_back(entry.name);
    }
    EXPECT_THAT(names, Contains(kJuergen + L".txt"));
}

TEST_P(VAgentWMethods, IsFileExistAnswersForWidePaths) {
    vagent::test::TempDir directory;
    vagent::test::WriteWholeFile(directory.Path() / kZofieFile, "x");
    std::vector<std::wstring> paths = {Wide(directory.LibraryPath()) + L"\\" + kZofie,
                                       Wide(directory.LibraryPath()) + L"\\missing"};
    std::vector<ExistAttr> answers;
    EXPECT_EQ(agent_.IsFileExist(paths, answers, ~0u, nullptr), 1);
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[0].exists, 1);
    EXPECT_EQ(answers[0].directory, 0);
    EXPECT_EQ(answers[1].exists, 0);
}

TEST_P(VAgentWMethods, HostFactsGoTheNarrowAgentsWay) {
    VAgent twin = NarrowTwin();
    std::wstring name = L"stale";
    std::string narrowName;
    EXPECT_EQ(agent_.GetHostName(name), twin.GetHostName(narrowName));
    EXPECT_EQ(name, Wide(narrowName));
    std::wstring directory = L"stale";
    std::string narrowDirectory;
    EXPECT_EQ(agent_.GetImageDirectory(directory), twin.GetImageDirectory(narrowDirectory));
    EXPECT_EQ(directory, Wide(narrowDirectory));
    int version = -1;
    int narrowVersion = -2;
    EXPECT_EQ(agent_.GetHostVersion(version), twin.GetHostVersion(narrowVersion));
    EXPECT_EQ(version, narrowVersion);
}

TEST_P(VAgentWMethods, ServiceAccountIsReadAndChangedWithWideTexts) {
    host_.services.services["Dienst"].config.startName = Narrow(L".\\" + kJuergen);
    host_.services.services["Dienst"].config.hasStartName = true;
    std::wstring service = L"Dienst";
    std::wstring user = L"stale";
    EXPECT_EQ(agent_.GetServiceUserName(service, user), 1);
    EXPECT_EQ(user, L".\\" + kJuergen);
    std::wstring account = L".\\" + kZofie;
    std::wstring password = L"Heslo-\u00E1";
    EXPECT_EQ(agent_.ChangeServiceUserPasswd(service, account, password), 1);
    EXPECT_EQ(host_.services.services["Dienst"].config.startName, Narrow(account));
    EXPECT_EQ(host_.services.services["Dienst"].password, Narrow(password));
}

TEST_P(VAgentWMethods, FilesCopyBetweenTwoNonAsciiPathsOfTheTarget) {
    vagent::test::TempDir directory;
    std::filesystem::create_directory(directory.Path() / kJuergenFile);
    vagent::test::WriteWholeFile(directory.Path() / kJuergenFile / "a.txt", "inhalt");
    std::wstring source = Wide(directory.LibraryPath()) + L"\\" + kJuergen;
    std::wstring target = Wide(directory.LibraryPath()) + L"\\" + kZofie;
    EXPECT_EQ(agent_.FilesCopy(source, target, 1, 1, ~0u, nullptr), 1);
    EXPECT_EQ(agent_.GetErrorCode(), 0u);
    EXPECT_EQ(vagent::test::ReadWholeFile(directory.Path() / kZofieFile / "a.txt"), "inhalt");
}

TEST_P(VAgentWMethods, SingleSignOnSwitchesAreWrittenBesideTheExecutable) {
    vagent::test::TempDir directory;
    vagent::test::FakeHostFacts facts;
    facts.executablePath = directory.LibraryPath() + "\\vagentd.exe";
    vagent::os::ScopedFacility<vagent::os::HostFacts> factsScope(facts);
    EXPECT_EQ(agent_.EnableSSO(1), 1);
    EXPECT_EQ(agent_.EnableZ9SSO(0), 1);
    const std::string config = vagent::test::ReadTextFile(directory / "Config.ini");
    EXPECT_NE(config.find("SSOEnabled=1"), std::string::npos);
    EXPECT_NE(config.find("Z9SSOEnabled=0"), std::string::npos);
}
