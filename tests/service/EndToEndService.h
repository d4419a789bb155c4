#pragma once

#include <cstdint>
#include <memory>

#include "Server.h"

namespace vagent::test {

// The agent service serving on 127.0.0.1 at a port the system chose, from
// construction to destruction; Started() tells whether it came up.
class EndToEndService {
public:
    EndToEndService();
    explicit EndToEndService(service::ServerOptions options);
    ~EndToEndService();
    EndToEndService(const EndToEndService&) = delete;
    EndToEndService& operator=(const EndToEndService&) = delete;

    bool Started() const { return startStatus_ == 0; }
    std::uint32_t StartStatus() const { return startStatus_; }
    std::uint16_t Port() const { return server_->Port(); }
    void Stop() { server_->Stop(); }

    // Options for loopback with a system-chosen port, otherwise the defaults.
    static service::ServerOptions LoopbackOptions();

private:
    std::unique_ptr<service::Server> server_;
    std::uint32_t startStatus_ = 0;
};

}  // namespace vagent::test
