// The agent service against the plainest server that could stand in for it,
// side by side in one run so that the ratios can be read at the end:
//  - one remote call (task 34 through VTaskClient: construct, SetServer,
//    SetTask, SendRequest, GetTaskResult, destroy) against the in-process
//    Server, next to a plain connect, 20-byte send, 12-byte reply and close
//    against a minimal accept-and-answer server;
//  - calls per second from 64 concurrent clients against each;
//  - an upload (task 45) of a 256 MiB tree through the Server, next to a
//    plain socket copy of the same file bytes.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "BenchSockets.h"
#include "BenchTree.h"
#include "PlainSocketCopy.h"
#include "RatioReporter.h"
#include "Server.h"
#include "vagent/VAgent.h"
#include "vagent/VFileTask.h"
#include "vagent/VTaskClient.h"

namespace {

using vagent::bench::BenchTree;
using vagent::bench::ConnectTo;
using vagent::bench::kTreeBytes;
using vagent::bench::LibraryPath;
using vagent::bench::RatioReporter;
using vagent::bench::ReceiveAll;
using vagent::bench::SendAll;
using vagent::bench::Sockets;

using vagent::os::kInvalidSocket;
using vagent::os::SocketHandle;

constexpr std::uint32_t kGetHostName = 34;
constexpr std::uint32_t kUploadFiles = 45;
constexpr std::size_t kPlainRequestBytes = 20;
constexpr std::size_t kPlainReplyBytes = 12;
constexpr int kConcurrentClients = 64;
constexpr int kCallsPerClient = 25;

// The in-process agent service on loopback, with its default workers, made
// once for the whole run.
class BenchService {
public:
    BenchService() : server_(Options()) { started_ = server_.Start() == 0; }
    ~BenchService() { server_.Stop(); }
    bool Started() const { return started_; }
    std::string Port() const { return std::to_string(server_.Port()); }

private:
    static vagent::service::ServerOptions Options() {
        vagent::service::ServerOptions options;
        options.listenAddress = "127.0.0.1";
        options.listenPort = 0;
        return options;
    }
    vagent::service::Server server_;
    bool started_ = false;
};

BenchService& Service() {
    static BenchService service;
    return service;
}

// The least a server can do for one call: one thread that accepts a
// connection, reads 20 bytes, answers 12 and closes it, then takes the next.
class MinimalServer {
public:
    MinimalServer() {
        Sockets().OpenStream(listener_);
        Sockets().Bind(listener_, "127.0.0.1", 0);
        Sockets().Listen(listener_, 1024);
        Sockets().LocalPort(listener_, port_);
        thread_ = std::thread([this] { Serve(); });
    }
    ~MinimalServer() {
        stopping_ = true;
        // A connection of its own wakes the thread from its accept.
        const SocketHandle wake = ConnectTo(port_);
        if (wake != kInvalidSocket) {
            Sockets().Close(wake);
        }
        thread_.join();
        Sockets().Close(listener_);
    }
    std::uint16_t Port() const { return port_; }

private:
    void Serve() {
        char request[kPlainRequestBytes];
        const char reply[kPlainReplyBytes] = {};
        while (!stopping_) {
            SocketHandle connection = kInvalidSocket;
            if (Sockets().Accept(listener_, connection) != 0) {
                continue;
            }
            if (ReceiveAll(connection, request, sizeof request)) {
                SendAll(connection, reply, sizeof reply);
            }
            Sockets().Close(connection);
        }
    }

    SocketHandle listener_ = kInvalidSocket;
    std::uint16_t port_ = 0;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

MinimalServer& Minimal() {
    static MinimalServer server;
    return server;
}

bool RemoteHostNameCall(const std::string& port) {
    VTaskClient client;
    std::string name;
    return client.SetServer("127.0.0.1", port.c_str()) == 1 && client.SetTask(kGetHostName) == 1 &&
           client.SendRequest(0, "", kInvalidSocket, nullptr) == 1 &&
           client.GetTaskResult(&name, nullptr) == 0 && !name.empty();
}

bool PlainExchange(std::uint16_t port) {
    const SocketHandle socket = ConnectTo(port);
    if (socket == kInvalidSocket) {
        return false;
    }
    const char request[kPlainRequestBytes] = {};
    char reply[kPlainReplyBytes];
    const bool answered =
        SendAll(socket, request, sizeof request) && ReceiveAll(socket, reply, sizeof reply);
    Sockets().Close(socket);
    return answered;
}

void BM_RemoteHostNameCall(benchmark::State& state) {
    if (!Service().Started()) {
        state.SkipWithError("the service did not start");
        return;
    }
    const std::string port = Service().Port();
    for (auto _ : state) {
        if (!RemoteHostNameCall(port)) {
            state.SkipWithError("call failed");
            break;
        }
    }
}

// The same call as an administration program makes it, through the facade.
void BM_AgentGetHostName(benchmark::State& state) {
    if (!Service().Started()) {
        state.SkipWithError("the service did not start");
        return;
    }
    VAgent agent(0, "127.0.0.1", Service().Port());
    std::string name;
    for (auto _ : state) {
        if (agent.GetHostName(name) != 1) {
            state.SkipWithError("call failed");
            break;
        }
    }
}

void BM_PlainExchange(benchmark::State& state) {
    const std::uint16_t port = Minimal().Port();
    for (auto _ : state) {
        if (!PlainExchange(port)) {
            state.SkipWithError("exchange failed");
            break;
        }
    }
}

// 64 clients, each making its calls one after the other; the calls of one
// iteration all overlap.
template <class Call>
void ConcurrentCalls(benchmark::State& state, Call call) {
    for (auto _ : state) {
        std::atomic<int> failures{0};
        std::vector<std::thread> clients;
        for (int client = 0; client < kConcurrentClients; ++client) {
            clients.emplace_back([&] {
                for (int i = 0; i < kCallsPerClient; ++i) {
                    if (!call()) {
                        ++failures;
                    }
                }
            });
        }
        for (std::thread& client : clients) {
            client.join();
        }
        if (failures != 0) {
            state.SkipWithError("calls failed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * kConcurrentClients * kCallsPerClient);
}

void BM_Concurrent64RemoteCalls(benchmark::State& state) {
    if (!Service().Started()) {
        state.SkipWithError("the service did not start");
        return;
    }
    const std::string port = Service().Port();
    ConcurrentCalls(state, [&] { return RemoteHostNameCall(port); });
}

void BM_Concurrent64PlainExchanges(benchmark::State& state) {
    const std::uint16_t port = Minimal().Port();
    ConcurrentCalls(state, [&] { return PlainExchange(port); });
}

BenchTree& Tree() {
    static BenchTree tree("vagent-service-bench");
    return tree;
}

bool UploadThroughService(const std::string& port, const BenchTree& tree) {
    VTaskClient client;
    const std::uint8_t block[] = {0, 0, 0, 5, 0, 0, 0, 1, '0'};
    if (client.SetServer("127.0.0.1", port.c_str()) != 1 || client.SetTask(kUploadFiles) != 1 ||
        client.AddRequest(block, sizeof block) != 1 ||
        client.SendRequest(0, "", kInvalidSocket, nullptr) != 1) {
        return false;
    }
    auto& task = *static_cast<VFileTask*>(client.GetTask());
    const std::uintptr_t connection = client.GetConnection();
    FileFrameHeader answer;
    return task.SendTree(connection, LibraryPath(tree.Source()), LibraryPath(tree.Target()), 1,
                         nullptr) == 1 &&
           task.SendEndFrame(connection, 0, nullptr) == 1 &&
           task.ReceiveFrame(connection, answer, nullptr) == 2;
}

void BM_UploadThroughService(benchmark::State& state) {
    if (!Service().Started()) {
        state.SkipWithError("the service did not start");
        return;
    }
    BenchTree& tree = Tree();
    const std::string port = Service().Port();
    for (auto _ : state) {
        if (!UploadThroughService(port, tree)) {
            state.SkipWithError("upload failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * kTreeBytes);
}

// The same file bytes without the upload's protocol or service.
void BM_PlainSocketCopy(benchmark::State& state) {
    vagent::bench::RunPlainSocketCopy(state, Tree());
}

BENCHMARK(BM_RemoteHostNameCall)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_AgentGetHostName)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_PlainExchange)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_Concurrent64RemoteCalls)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Concurrent64PlainExchanges)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_UploadThroughService)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(BM_PlainSocketCopy)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void PrintPair(const RatioReporter& reporter, const char* what, const char* numerator,
               const char* denominator) {
    const double top = reporter.SecondsOf(numerator);
    const double bottom = reporter.SecondsOf(denominator);
    if (top > 0 && bottom > 0) {
        std::printf("%s: %.2f\n", what, top / bottom);
    }
}

void PrintRatios(const RatioReporter& reporter) {
    PrintPair(reporter, "one remote call, time ratio to the plain exchange (goal at most 1.5)",
              "BM_RemoteHostNameCall", "BM_PlainExchange");
    PrintPair(reporter, "the same call through VAgent, time ratio to the plain exchange",
              "BM_AgentGetHostName", "BM_PlainExchange");
    PrintPair(reporter, "64 clients, calls/s ratio to the minimal server (goal at least 0.8)",
              "BM_Concurrent64PlainExchanges", "BM_Concurrent64RemoteCalls");
    PrintPair(reporter, "upload, throughput ratio to the plain copy (goal at least 0.7)",
              "BM_PlainSocketCopy", "BM_UploadThroughService");
}

}  // namespace

int main(int argc, char** argv) {
    return vagent::bench::RunBenchmarks(argc, argv, PrintRatios);
}
