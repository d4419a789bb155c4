#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vagent::service {

// What `vagentd run` takes on its command line.
struct ServerOptions {
    std::string listenAddress = "0.0.0.0";             // dotted IPv4 text
    std::uint16_t listenPort = 1234;                   // 0 lets the system choose
    std::vector<std::string> allow = {"127.0.0.0/8"};  // client addresses served, as CIDR
    unsigned workers = 16;                             // tasks run at once
    unsigned maxConnections = 512;                     // open connections at once
    std::uint32_t maxBlock = 64u << 20;                // largest request block accepted
    // Request bytes held in memory at once across connections; never less
    // than one frame of the largest root site and block.
    std::uint64_t maxHeldBytes = 256u << 20;
};

// The agent service: accepts connections from allowed addresses, reads one
// request frame from each, rebuilds its task, runs it and answers. Serving
// happens on threads of its own between Start and Stop.
class Server {
public:
    explicit Server(ServerOptions options);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Binds, listens and starts serving. 0, or the failure status: a socket
    // error, or 0xE6000001 for options that cannot be served.
    std::uint32_t Start();
    // The port the listener is bound to, once started.
    std::uint16_t Port() const;
    // Closes the listener, lets the requests in flight finish and joins every
    // thread. Safe to call twice; the destructor calls it.
    void Stop();

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace vagent::service
