#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "facade/VAgentWConnectionCounter.h"
#include "facade/VAgentWTestHost.h"
#include "helpers/FailingAllocation.h"
#include "vagent/ErrorCodes.h"
#include "vagent/VAgentW.h"

using vagent::test::ConnectionCounter;
using vagent::test::ScopedAllocationFailure;
using vagent::test::VAgentWTestHost;

// Every wide operation runs on a temporary narrow agent. When that cannot
// be had the call ends in the facade's guard: no exception reaches the
// caller, the error code becomes 8, nothing is sent, and the method answers
// its own failure value (-1 for the two counts, 0 for every truth value).

namespace {

constexpr int kTruthFailure = 0;
constexpr int kCountFailure = -1;
constexpr unsigned long kEarlierCode = 5;

struct WideCall {
    const char* name;
    int failure;
    std::function<int(VAgentW&)> run;
};

void PrintTo(const WideCall& call, std::ostream* out) {
    *out << call.name;
}

std::vector<WideCall> EveryWideCall() {
    static std::wstring text = L"J\u00FCrgen";
    static std::vector<std::wstring> list = {L"J\u00FCrgen"};
    static std::vector<_VXUserInfoW> users;
    static std::vector<_VXUserGroupW> groups;
    static std::vector<_VXSessionW> sessions;
    static std::vector<_VXPrinterW> printers;
    static std::vector<FileAttrW> entries;
    static std::vector<ExistAttr> answers;
    static std::wstring output;
    static std::wstring second;
    static int number = 0;
    static long value = 0;
    return {
        {"GetUser", kTruthFailure, [](VAgentW& a) { return a.GetUser(text, users, 0); }},
        {"AddUser", kTruthFailure, [](VAgentW& a) { return a.AddUser(list, list); }},
        {"DeleteUser", kTruthFailure, [](VAgentW& a) { return a.DeleteUser(list); }},
        {"ChangePasswd", kTruthFailure,
         [](VAgentW& a) { return a.ChangePasswd(list, list, list); }},
        {"GetUserGroup", kTruthFailure, [](VAgentW& a) { return a.GetUserGroup(text, groups); }},
        {"AddUserToGroups", kTruthFailure,
         [](VAgentW& a) { return a.AddUserToGroups(text, list); }},
        {"AddUserToBuiltinGroups", kTruthFailure,
         [](VAgentW& a) { return a.AddUserToBuiltinGroups(text, list); }},
        {"RemoveUserFromBuiltinGroups", kTruthFailure,
         [](VAgentW& a) { return a.RemoveUserFromBuiltinGroups(text, list); }},
        {"RemoveUserFromGroups", kTruthFailure,
         [](VAgentW& a) { return a.RemoveUserFromGroups(text, list); }},
        {"GetUserLoginName", kTruthFailure,
         [](VAgentW& a) { return a.GetUserLoginName(text, output, second); }},
        {"GetGroup", kTruthFailure, [](VAgentW& a) { return a.GetGroup(text, users, 0); }},
        {"AddGroup", kTruthFailure, [](VAgentW& a) { return a.AddGroup(list); }},
        {"RemoveGroup", kTruthFailure, [](VAgentW& a) { return a.RemoveGroup(list); }},
        {"AddGroupUsers", kTruthFailure, [](VAgentW& a) { return a.AddGroupUsers(text, list); }},
        {"RemoveGroupUsers", kTruthFailure,
         [](VAgentW& a) { return a.RemoveGroupUsers(text, list); }},
        {"ShowGroupUsers", kTruthFailure, [](VAgentW& a) { return a.ShowGroupUsers(text, list); }},
        {"GetGroupUsersInfo", kTruthFailure,
         [](VAgentW& a) { return a.GetGroupUsersInfo(text, users); }},
        {"GetSessionCounts", kCountFailure, [](VAgentW& a) { return a.GetSessionCounts(); }},
        {"GetSessionCountsAll", kCountFailure, [](VAgentW& a) { return a.GetSessionCountsAll(); }},
        {"GetSessionInfo", kTruthFailure, [](VAgentW& a) { return a.GetSessionInfo(sessions); }},
        {"GetSysSetting", kTruthFailure, [](VAgentW& a) { return a.GetSysSetting(1, &value); }},
        {"SetSysSetting", kTruthFailure, [](VAgentW& a) { return a.SetSysSetting(1, 3390); }},
        {"SessionLogoff", kTruthFailure, [](VAgentW& a) { return a.SessionLogoff(1, 1); }},
        {"EnableSSO", kTruthFailure, [](VAgentW& a) { return a.EnableSSO(1); }},
        {"EnableZ9SSO", kTruthFailure, [](VAgentW& a) { return a.EnableZ9SSO(1); }},
        {"BroadcastMessage", kTruthFailure,
         [](VAgentW& a) { return a.BroadcastMessage(text, text); }},
        {"GetPrinterInfo", kTruthFailure, [](VAgentW& a) { return a.GetPrinterInfo(printers); }},
        {"DirList", kTruthFailure, [](VAgentW& a) { return a.DirList(text, entries); }},
        {"IsFileExist", kTruthFailure,
         [](VAgentW& a) { return a.IsFileExist(list, answers, ~0u, nullptr); }},
        {"CreateIcons", kTruthFailure, [](VAgentW& a) { return a.CreateIcons(list, list); }},
        {"GetImageDirectory", kTruthFailure,
         [](VAgentW& a) { return a.GetImageDirectory(output); }},
        {"GetHostName", kTruthFailure, [](VAgentW& a) { return a.GetHostName(output); }},
        {"GetHostVersion", kTruthFailure, [](VAgentW& a) { return a.GetHostVersion(number); }},
        {"IsProcess32", kTruthFailure, [](VAgentW& a) { return a.IsProcess32(text, number); }},
        {"IsLDAPObjectExist", kTruthFailure,
         [](VAgentW& a) { return a.IsLDAPObjectExist(text, 0); }},
        {"FilesCopy", kTruthFailure,
         [](VAgentW& a) { return a.FilesCopy(text, text, 1, 0, ~0u, nullptr); }},
        {"UploadFiles", kTruthFailure,
         [](VAgentW& a) { return a.UploadFiles(text, text, 0, ~0u, nullptr, nullptr); }},
        {"GetServiceUserName", kTruthFailure,
         [](VAgentW& a) { return a.GetServiceUserName(text, output); }},
        {"ChangeServiceUserPasswd", kTruthFailure,
         [](VAgentW& a) { return a.ChangeServiceUserPasswd(text, text, text); }},
    };
}

class VAgentWCall : public ::testing::TestWithParam<WideCall> {
protected:
    // Addressed to a listener that counts connections, so that a call that
    // went on to the service would show.
    VAgentW AgentOfTheCounter() {
        VAgentW agent(0, L"127.0.0.1", std::to_wstring(counter_.Port()));
        agent.SetErrorCode(kEarlierCode);
        return agent;
    }

    VAgentWTestHost host_;
    ConnectionCounter counter_;
};

std::string CallName(const ::testing::TestParamInfo<WideCall>& call) {
    return call.param.name;
}

INSTANTIATE_TEST_SUITE_P(EveryMethod, VAgentWCall, ::testing::ValuesIn(EveryWideCall()), CallName);

}  // namespace

TEST_P(VAgentWCall, RefusedTemporaryAgentAnswersTheFailureValueWithCodeEight) {
    VAgentW agent = AgentOfTheCounter();
    int result = 1;
    {
        ScopedAllocationFailure failure(0, 1);
        EXPECT_NO_THROW(result = GetParam().run(agent));
        EXPECT_EQ(failure.Refused(), 1);
    }
    EXPECT_EQ(result, GetParam().failure);
    EXPECT_EQ(agent.GetErrorCode(), vagent::kErrorNotEnoughMemory);
    EXPECT_EQ(counter_.Count(), 0);
}

TEST(VAgentWOutOfMemory, RefusedCallLeavesTheCallersOutputsAsTheyWere) {
    VAgentWTestHost host;
    host.accounts.users[L"Ann"] = {L"pw", L""};
    VAgentW agent;
    std::wstring base;
    std::vector<_VXUserInfoW> users = {_VXUserInfoW{L"kept", L"as it was"}};
    long value = 42;
    {
        ScopedAllocationFailure failure(0, 2);
        EXPECT_EQ(agent.GetUser(base, users, 0), 0);
        EXPECT_EQ(agent.GetSysSetting(1, &value), 0);
    }
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users[0].name, L"kept");
    EXPECT_EQ(users[0].comment, L"as it was");
    EXPECT_EQ(value, 42);
}

TEST(VAgentWOutOfMemory, NextCallRunsAsUsualAndClearsTheCode) {
    VAgentWTestHost host;
    host.sessions.AddSession(1, "VXP#1", vagent::os::kSessionActive);
    host.sessions.AddSession(2, "VXP#2", vagent::os::kSessionActive);
    VAgentW agent;
    {
        ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(agent.GetSessionCounts(), -1);
    }
    EXPECT_EQ(agent.GetErrorCode(), vagent::kErrorNotEnoughMemory);
    EXPECT_TRUE(host.sessions.enumerations.empty());
    EXPECT_EQ(agent.GetSessionCounts(), 2);
    EXPECT_EQ(agent.GetErrorCode(), 0u);
}

// Past the temporary, every buffer refused: the conversions go on with
// empty texts, the narrow agent fails before it sends, and still no
// exception reaches the caller.
TEST(VAgentWOutOfMemory, EveryBufferRefusedFailsWithoutSendingOrThrowing) {
    VAgentWTestHost host;
    ConnectionCounter counter;
    VAgentW agent(0, L"127.0.0.1", std::to_wstring(counter.Port()));
    std::vector<std::wstring> names = {L"J\u00FCrgen"};
    int result = 1;
    {
        ScopedAllocationFailure failure(1, 1000);
        EXPECT_NO_THROW(result = agent.DeleteUser(names));
        EXPECT_GT(failure.Refused(), 1);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(counter.Count(), 0);
}
