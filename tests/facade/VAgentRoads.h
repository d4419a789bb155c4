#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "service/EndToEndHost.h"
#include "service/EndToEndService.h"
#include "vagent/VAgent.h"

namespace vagent::test {

// The two roads every operation of the agent can take: run in this process,
// or be sent to an agent service (here one serving in this process).
enum class Road { kLocal, kRemote };

std::string RoadName(const ::testing::TestParamInfo<Road>& road);

// One operation on either road against the same in-memory Windows host: the
// fakes serve this process and the in-process service alike, so a test reads
// the effect of a call from the fakes whichever road it took. The
// process-wide root site is put back at the end.
class VAgentRoads : public ::testing::TestWithParam<Road> {
protected:
    void SetUp() override;
    void TearDown() override;

    bool Remote() const { return GetParam() == Road::kRemote; }
    // An agent with the work environment; on the remote road it is addressed
    // to the in-process service.
    VAgent Agent(int workEnv);
    // An agent of the domain whose own root site is CN=Staff. On the remote
    // road the process-wide root site is then set elsewhere, so that only a
    // request frame that carries the agent's site can reach the Staff
    // container; on the local road the process-wide site is the one used.
    VAgent StaffAgent();

    EndToEndHost host_;
    std::unique_ptr<EndToEndService> service_;

private:
    std::string savedRootSite_;
};

constexpr int kLocalAccounts = 0;
constexpr int kDomain = 1;
extern const wchar_t kStaffContainer[];
extern const wchar_t kUsersContainer[];

}  // namespace vagent::test
