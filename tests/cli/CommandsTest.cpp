#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/CliHarness.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using vagent::test::CliAgainstService;
using vagent::test::CliRun;
using vagent::test::FakeLocalAccounts;
using Json = nlohmann::json;

// Each command against an agent service in this process: the text it
// prints, the JSON object it prints with --json, and what reached the fake
// host behind the service.

namespace {

const char kWinStationKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Terminal Server\\WinStations\\VXP";

class CliCommands : public ::testing::Test, public CliAgainstService {
protected:
    void ExpectText(const std::vector<std::string>& arguments, const std::string& printed) {
        const CliRun run = Remote(arguments);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.out, printed);
        EXPECT_EQ(run.err, "");
    }
    void ExpectJson(const std::vector<std::string>& arguments, const Json& result) {
        const Json line = RemoteJson(arguments);
        EXPECT_EQ(line, (Json{{"host", HostArgument()}, {"ok", true}, {"result", result}}));
    }
    void AddUsers() {
        host.accounts.users[L"ann"] = FakeLocalAccounts::User{L"pw", L"Accounts"};
        host.accounts.users[L"bob"] = FakeLocalAccounts::User{L"pw", L""};
    }
};

}  // namespace

TEST_F(CliCommands, HostNameIsTheServicesDnsHostName) {
    host.names.names[vagent::os::kComputerNameDnsHostname] = "agent-host";
    ExpectText({"host", "name"}, "agent-host\n");
    ExpectJson({"host", "name"}, "agent-host");
}

TEST_F(CliCommands, HostVersionIsTheVersionCode) {
    const Json line = RemoteJson({"host", "version"});
    ASSERT_TRUE(line["ok"].get<bool>()) << line;
    EXPECT_TRUE(line["result"].is_number_integer());
    const CliRun run = Remote({"host", "version"});
    EXPECT_EQ(run.out, line["result"].dump() + "\n");
}

TEST_F(CliCommands, HostImageDirectoryIsOneLine) {
    const Json line = RemoteJson({"host", "imagedir"});
    ASSERT_TRUE(line["ok"].get<bool>()) << line;
    EXPECT_EQ(Remote({"host", "imagedir"}).out, line["result"].get<std::string>() + "\n");
}

// The service makes no check of another process's image: the flag stays
// clear.
TEST_F(CliCommands, HostIs32ShowsTheServicesAnswer) {
    ExpectJson({"host", "is32", "explorer.exe"}, false);
    ExpectText({"host", "is32", "explorer.exe"}, "false\n");
}

TEST_F(CliCommands, UserShowListsAccountsAsATable) {
    AddUsers();
    ExpectText({"user", "show", ""},
               "NAME  COMMENT\n"
               "ann   Accounts\n"
               "bob\n");
    ExpectJson({"user", "show", ""}, Json::array({{{"name", "ann"}, {"comment", "Accounts"}},
                                                  {{"name", "bob"}, {"comment", ""}}}));
}

TEST_F(CliCommands, UserAddCreatesEveryAccountOfStandardInput) {
    const CliRun run = Remote({"user", "add"}, "ann:Secret1\nbob:Pass:word2\n");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "added: ann, bob\n");
    ASSERT_EQ(host.accounts.users.count(L"bob"), 1u);
    EXPECT_EQ(host.accounts.users[L"ann"].password, L"Secret1");
    EXPECT_EQ(host.accounts.users[L"bob"].password, L"Pass:word2");
    ExpectJson({"user", "delete", "ann"}, {{"deleted", {"ann"}}});
    EXPECT_EQ(host.accounts.users.count(L"ann"), 0u);
}

TEST_F(CliCommands, UserAddRefusesALineWithoutPasswordBeforeSending) {
    const CliRun run = Remote({"user", "add"}, "ann:Secret1\nbob\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("name:password"));
    EXPECT_THAT(run.err, ::testing::Not(HasSubstr("Secret1")));
    EXPECT_TRUE(host.accounts.users.empty());
}

TEST_F(CliCommands, UserDeleteText) {
    AddUsers();
    ExpectText({"user", "delete", "ann", "bob"}, "deleted: ann, bob\n");
    EXPECT_TRUE(host.accounts.users.empty());
}

TEST_F(CliCommands, UserPasswdChangesFromStandardInput) {
    AddUsers();
    const CliRun run = Remote({"user", "passwd"}, "ann:pw:New1\n");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "changed: ann\n");
    EXPECT_EQ(host.accounts.users[L"ann"].password, L"New1");
    const Json line = RemoteJson({"user", "passwd"}, "bob:pw:Two2\n");
    EXPECT_EQ(line["result"], (Json{{"changed", {"bob"}}}));
    EXPECT_EQ(Remote({"user", "passwd"}, "").status, 2);
    EXPECT_EQ(Remote({"user", "passwd"}, "ann:only-one\n").status, 2);
}

TEST_F(CliCommands, UserGroupsAndGroupChanges) {
    AddUsers();
    ExpectJson({"group", "add", "Staff", "Ops"}, {{"added", {"Staff", "Ops"}}});
    ExpectJson({"user", "add-groups", "ann", "Staff", "Ops"},
               {{"user", "ann"}, {"groups", {"Staff", "Ops"}}});
    EXPECT_THAT(host.accounts.localGroups[L"Staff"].members, ElementsAre(L"ann"));
    ExpectText({"user", "remove-groups", "ann", "Ops"}, "user: ann\ngroups: Ops\n");
    EXPECT_TRUE(host.accounts.localGroups[L"Ops"].members.empty());
    ExpectText({"group", "members", "Staff"}, "ann\n");
    ExpectJson({"group", "members", "Staff"}, {"ann"});
    ExpectJson({"group", "members", "Staff", "--info"},
               Json::array({{{"name", "ann"}, {"comment", "Accounts"}}}));
    ExpectText({"group", "add-users", "Ops", "bob"}, "group: Ops\nusers: bob\n");
    // Members leave a local group through the global-group call, which knows
    // no local group "Ops" and leaves no code behind: the failure names the
    // operation.
    const Json removed = RemoteJson({"group", "remove-users", "Ops", "bob"});
    EXPECT_FALSE(removed["ok"].get<bool>());
    EXPECT_EQ(removed["error"], (Json{{"code", 0}, {"text", "RemoveGroupUsers failed"}}));
    ExpectText({"group", "delete", "Ops"}, "deleted: Ops\n");
    EXPECT_EQ(host.accounts.localGroups.count(L"Ops"), 0u);
}

TEST_F(CliCommands, UserGroupsListsTheGlobalGroups) {
    AddUsers();
    host.accounts.globalGroups[L"Domain Users"].members = {L"ann"};
    const Json line = RemoteJson({"user", "groups", "ann"});
    ASSERT_TRUE(line["ok"].get<bool>()) << line;
    EXPECT_TRUE(line["result"].is_array());
}

TEST_F(CliCommands, BuiltinGroupChangesReachTheService) {
    AddUsers();
    host.accounts.localGroups[L"Administrators"];
    const Json added = RemoteJson({"user", "builtin-add", "ann", "Administrators"});
    EXPECT_EQ(added["result"], (Json{{"user", "ann"}, {"groups", {"Administrators"}}})) << added;
    EXPECT_THAT(host.accounts.localGroups[L"Administrators"].members,
                ElementsAre(L"corp.example.com\\ann"));
    const Json removed = RemoteJson({"user", "builtin-remove", "ann", "Administrators"});
    EXPECT_TRUE(removed["ok"].get<bool>()) << removed;
    EXPECT_TRUE(host.accounts.localGroups[L"Administrators"].members.empty());
}

TEST_F(CliCommands, GroupShowListsTheLocalGroups) {
    host.accounts.localGroups[L"Staff"].comment = L"All staff";
    ExpectText({"group", "show"}, "NAME   COMMENT\nStaff\n");
    ExpectJson({"group", "show"}, Json::array({{{"name", "Staff"}, {"comment", ""}}}));
}

TEST_F(CliCommands, SessionCountsAndList) {
    host.sessions.AddSession(1, "VXP#1", vagent::os::kSessionActive);
    host.sessions.AddSession(2, "Console", vagent::os::kSessionActive);
    ExpectText({"session", "count"}, "1\n");
    ExpectJson({"session", "count", "--all"}, 2);
    const Json line = RemoteJson({"session", "list"});
    ASSERT_TRUE(line["ok"].get<bool>()) << line;
    EXPECT_TRUE(line["result"].is_array());
}

TEST_F(CliCommands, SessionLogoffDisconnectAndMessage) {
    host.sessions.AddSession(3, "VXP#3", vagent::os::kSessionActive);
    ExpectJson({"session", "logoff", "3"}, {{"session", 3}});
    ASSERT_EQ(host.sessions.logoffs.size(), 1u);
    EXPECT_EQ(host.sessions.logoffs[0].sessionId, 3u);
    ExpectText({"session", "disconnect", "3"}, "session: 3\n");
    EXPECT_EQ(host.sessions.disconnects.size(), 1u);
    ExpectJson({"session", "message", "Notice", "Back at six"},
               {{"title", "Notice"}, {"text", "Back at six"}});
    ASSERT_EQ(host.sessions.messages.size(), 1u);
    EXPECT_EQ(host.sessions.messages[0].message, "Back at six");
}

TEST_F(CliCommands, SettingGetAndSet) {
    host.registry.SetNumber(kWinStationKey, "PortNumber", 3389);
    ExpectText({"setting", "get", "1"}, "key: 1\nvalue: 3389\n");
    ExpectJson({"setting", "set", "1", "3390"}, {{"key", 1}, {"value", 3390}});
    std::uint32_t stored = 0;
    ASSERT_TRUE(host.registry.Number(kWinStationKey, "PortNumber", stored));
    EXPECT_EQ(stored, 3390u);
    ExpectJson({"setting", "get", "1"}, {{"key", 1}, {"value", 3390}});
}

TEST_F(CliCommands, SettingOfAMissingKeyIsAFailedTask) {
    const CliRun run = Remote({"setting", "get", "1"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("vagentctl: " + HostArgument() + ": "));
    const Json line = RemoteJson({"setting", "get", "1"});
    EXPECT_EQ(line["ok"], false);
    EXPECT_TRUE(line["error"]["code"].is_number());
    EXPECT_TRUE(line["error"]["text"].is_string());
}

// The service's switches live beside its executable, which on the fake host
// is a Windows path that cannot be written here: a failed task that keeps no
// code names the operation.
TEST_F(CliCommands, SingleSignOnSwitchesThatCannotBeWrittenFail) {
    const Json line = RemoteJson({"sso", "enable"});
    EXPECT_EQ(line, (Json{{"host", HostArgument()},
                          {"ok", false},
                          {"error", {{"code", 0}, {"text", "EnableSSO failed"}}}}));
    const CliRun run = Remote({"sso", "disable", "--z9"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "vagentctl: " + HostArgument() + ": EnableZ9SSO failed (error 0)\n");
}

TEST_F(CliCommands, PrinterListIsATableOfSessionsAndPrinters) {
    host.spooler.printers = {"Laser (from client) in session 4"};
    const Json line = RemoteJson({"printer", "list"});
    ASSERT_TRUE(line["ok"].get<bool>()) << line;
    ASSERT_EQ(line["result"].size(), 1u);
    EXPECT_EQ(line["result"][0]["printer"], "Laser (from client) in session 4");
    EXPECT_THAT(Remote({"printer", "list"}).out, HasSubstr("SESSION  PRINTER\n"));
}

TEST_F(CliCommands, ServiceAccountAndItsChange) {
    host.services.services["vagentd"].config.startName = ".\\svc";
    host.services.services["vagentd"].config.hasStartName = true;
    ExpectText({"service", "account", "vagentd"}, ".\\svc\n");
    const CliRun run = Remote({"service", "set-account", "vagentd", ".\\ops"}, "Secret9\n");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "service: vagentd\naccount: .\\ops\n");
    EXPECT_EQ(host.services.services["vagentd"].password, "Secret9");
    const Json line = RemoteJson({"service", "set-account", "vagentd", ".\\ops"}, "Other1\n");
    EXPECT_EQ(line["result"], (Json{{"service", "vagentd"}, {"account", ".\\ops"}}));
}

TEST_F(CliCommands, ServiceSetAccountWantsExactlyOnePasswordLine) {
    EXPECT_EQ(Remote({"service", "set-account", "vagentd", "x"}, "").status, 2);
    EXPECT_EQ(Remote({"service", "set-account", "vagentd", "x"}, "a\nb\n").status, 2);
}

TEST_F(CliCommands, LdapExistsAndLoginNameReachTheDirectory) {
    const Json exists = RemoteJson({"ldap", "exists", "CN=nobody", "--group"});
    EXPECT_EQ(exists["result"]["path"], "CN=nobody") << exists;
    const Json login = RemoteJson({"user", "login-name", "nobody"});
    EXPECT_EQ(login["host"], HostArgument());
    EXPECT_TRUE(login.contains("ok"));
}

TEST_F(CliCommands, FileIconsWantsPairs) {
    EXPECT_EQ(Remote({"file", "icons", "a.exe"}).status, 2);
    const Json line = RemoteJson({"file", "icons", "C:\\missing.exe", "C:\\a.ico"});
    EXPECT_EQ(line["ok"], false);
}

TEST_F(CliCommands, ThisMachineOnlyCommandsRefuseAHost) {
    for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
             {"dc", "name"}, {"host", "is-dc"}, {"host", "is-computer"}}) {
        const CliRun run = Remote(command);
        EXPECT_EQ(run.status, 2) << command[0];
        EXPECT_THAT(run.err, HasSubstr("this machine only"));
    }
}
