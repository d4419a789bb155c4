#include "RequestRunner.h"

#include <gtest/gtest.h>

#include "fakes/FakeServiceManager.h"
#include "helpers/LogCapture.h"
#include "service/TestClientFrames.h"
#include "task/ByteOrder.h"
#include "vagent/LdapRootSite.h"

namespace vagent::service {
namespace {

using vagent::test::Bytes;
using vagent::test::LogCapture;
using vagent::test::TextBlockBytes;

constexpr const char* kPeer = "127.0.0.1:4321";

RequestFrame Frame(std::uint32_t taskId, const std::string& rootSite, const Bytes& block) {
    RequestFrame frame;
    frame.taskId = taskId;
    frame.rootSite = rootSite;
    frame.block = block;
    return frame;
}

// Puts the process-wide root site back when a test has changed it.
class RootSiteRestorer {
public:
    RootSiteRestorer() : saved_(GetLDAPRootSite()) {}
    ~RootSiteRestorer() { SetLDAPRootSite(saved_); }

private:
    std::string saved_;
};

TEST(RequestRunner, UnknownTaskIdIsAnsweredE6000001AndLogged) {
    LogCapture capture;
    RequestRunner runner;
    for (std::uint32_t id : {0u, 48u, 0xFFFFFFFFu}) {
        RequestFrame frame = Frame(id, "", {});
        EXPECT_EQ(runner.Run(frame, os::kInvalidSocket, kPeer), (Bytes{0x01, 0x00, 0x00, 0xE6}));
    }
    EXPECT_EQ(capture.Texts(), (std::vector<std::string>{
                                   "vagentd : unknown task id 0 from 127.0.0.1:4321",
                                   "vagentd : unknown task id 48 from 127.0.0.1:4321",
                                   "vagentd : unknown task id 4294967295 from 127.0.0.1:4321"}));
}

TEST(RequestRunner, AnswersTheHostNameTaskWithItsResultBlock) {
    LogCapture capture;
    RequestRunner runner;
    RequestFrame frame = Frame(34, "", {});
    const Bytes reply = runner.Run(frame, os::kInvalidSocket, kPeer);
    ASSERT_GE(reply.size(), 12u);
    EXPECT_EQ(ReadLittleEndian32(reply.data()), 0u);
    EXPECT_EQ(ReadBigEndian32(reply.data() + 4), reply.size() - 8);
    EXPECT_EQ(ReadBigEndian32(reply.data() + 8), reply.size() - 12);
    EXPECT_TRUE(capture.Texts().empty());
}

TEST(RequestRunner, ADirectoryTaskInstallsTheRootSiteItsRequestBrought) {
    const RootSiteRestorer restorer;
    RequestRunner runner;
    RequestFrame frame = Frame(39, "OU=Agents", TextBlockBytes({"CN=x"}));
    runner.Run(frame, os::kInvalidSocket, kPeer);
    EXPECT_EQ(GetLDAPRootSite(), "OU=Agents");
    RequestFrame empty = Frame(2, "", {});
    runner.Run(empty, os::kInvalidSocket, kPeer);
    EXPECT_EQ(GetLDAPRootSite(), "");
}

TEST(RequestRunner, OtherTasksLeaveTheRootSiteAlone) {
    const RootSiteRestorer restorer;
    std::string before = "OU=Before";
    SetLDAPRootSite(before);
    RequestRunner runner;
    RequestFrame frame = Frame(34, "OU=Agents", {});
    runner.Run(frame, os::kInvalidSocket, kPeer);
    EXPECT_EQ(GetLDAPRootSite(), "OU=Before");
}

TEST(RequestRunner, AFailedTaskWithoutCodeIsAcknowledgedWithZeroAndLogged) {
    LogCapture capture;
    RequestRunner runner;
    RequestFrame frame = Frame(38, "", TextBlockBytes({}));
    EXPECT_EQ(runner.Run(frame, os::kInvalidSocket, kPeer),
              (Bytes{0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0}));
    EXPECT_EQ(capture.Texts(), std::vector<std::string>{
                                   "vagentd : task 38 from 127.0.0.1:4321 failed, error code 0"});
}

TEST(RequestRunner, AFailedTaskWithACodeAndNoBlockSendsTheCodeAlone) {
    LogCapture capture;
    vagent::test::FakeServiceManager services;
    services.managerStatus = 5;
    const os::ScopedFacility<os::ServiceManager> scope(services);
    RequestRunner runner;
    RequestFrame frame = Frame(46, "", TextBlockBytes({"Spooler"}));
    EXPECT_EQ(runner.Run(frame, os::kInvalidSocket, kPeer), (Bytes{0x05, 0, 0, 0}));
    EXPECT_EQ(capture.Texts().back(), "vagentd : task 46 from 127.0.0.1:4321 failed, error code 5");
}

TEST(RequestRunner, AUserTaskWithoutBlockIsAcknowledgedWithZero) {
    LogCapture capture;
    RequestRunner runner;
    RequestFrame frame = Frame(2, "", {});
    const Bytes reply = runner.Run(frame, os::kInvalidSocket, kPeer);
    ASSERT_GE(reply.size(), 4u);
    if (reply.size() == 4) {
        EXPECT_NE(ReadLittleEndian32(reply.data()), 0u);
    } else {
        EXPECT_EQ(reply, (Bytes{0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0}));
    }
    EXPECT_EQ(capture.Texts().back().rfind("vagentd : task 2 from 127.0.0.1:4321 failed", 0), 0u);
}

TEST(RequestRunner, DirectoryTasksAreTheOnesThatReadTheRootSite) {
    for (std::uint32_t id = 1; id <= 23; ++id) {
        EXPECT_TRUE(RequestRunner::ReadsRootSite(id)) << id;
    }
    for (std::uint32_t id : {37u, 39u, 42u}) {
        EXPECT_TRUE(RequestRunner::ReadsRootSite(id)) << id;
    }
    for (std::uint32_t id : {0u, 24u, 27u, 28u, 34u, 38u, 40u, 43u, 44u, 47u, 48u}) {
        EXPECT_FALSE(RequestRunner::ReadsRootSite(id)) << id;
    }
}

TEST(RequestRunner, OnlyTheTransfersStreamTheirAnswer) {
    for (std::uint32_t id = 0; id <= 48; ++id) {
        EXPECT_EQ(RequestRunner::Streams(id), id == 44 || id == 45) << id;
    }
}

}  // namespace
}  // namespace vagent::service
