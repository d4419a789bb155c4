#include "HostJob.h"

#include <exception>

#include "TextNotRepresentable.h"
#include "platform/AgentDrivers.h"
#include "platform/NameResolver.h"

namespace vagentctl {
namespace {

// The facade's own code for a bad argument: the client refuses such input
// before anything is sent.
constexpr std::uint32_t kInvalidParameter = 0xE6000001u;

AgentTarget TargetOf(const std::string& address, const HostSpec& host,
                     const GlobalOptions& options) {
    AgentTarget target;
    target.address = address;
    target.port = address.empty() ? std::string() : host.port;
    target.workEnv = options.workEnv;
    target.hasRootSite = !options.rootSite.empty();
    target.rootSite = options.rootSite;
    target.codePage = options.codePage;
    return target;
}

}  // namespace

HostOutcome RunOnHost(const HostSpec& host, const GlobalOptions& options,
                      const HostOperation& operation) {
    std::string address;
    std::string problem;
    if (!host.name.empty() && !platform::ResolveIpv4(host.name, address, problem)) {
        return Failed(kInvalidParameter, "cannot resolve " + host.name + ": " + problem);
    }
    try {
        const auto driver = platform::MakeAgentDriver(TargetOf(address, host, options));
        return operation(*driver);
    } catch (const TextNotRepresentable& refused) {
        return Failed(kInvalidParameter, refused.what());
    } catch (const std::exception& failure) {
        return Failed(kInvalidParameter, failure.what());
    }
}

}  // namespace vagentctl
