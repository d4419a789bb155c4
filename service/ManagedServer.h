#pragma once

#include "Server.h"
#include "platform/ServiceRegistration.h"

namespace vagent::service {

// The server as the service manager starts and stops it.
class ManagedServer final : public platform::ServiceBody {
public:
    explicit ManagedServer(ServerOptions options) : server_(std::move(options)) {}
    std::uint32_t Start() override { return server_.Start(); }
    void Stop() override { server_.Stop(); }

private:
    Server server_;
};

}  // namespace vagent::service
