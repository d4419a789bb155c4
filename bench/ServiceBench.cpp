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

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Server.h"
#include "BenchTree.h"
#include "os/Sockets.h"
#include "vagent/VAgent.h"
#include "vagent/VFileTask.h"
#include "vagent/VTaskClient.h"

namespace {

namespace fs = std::filesystem;
using vagent::bench::BenchTree;
using vagent::bench::kFileSize;
using vagent::bench::kTreeBytes;

using vagent::os::kInvalidSocket;
using vagent::os::SocketHandle;

constexpr std::uint32_t kGetHostName = 34;
constexpr std::uint32_t kUploadFiles = 45;
constexpr std::size_t kPlainRequestBytes = 20;
constexpr std::size_t kPlainReplyBytes = 12;
constexpr int kConcurrentClients = 64;
constexpr int kCallsPerClient = 25;
constexpr std::size_t kCopyChunk = 256 * 1024;

vagent::os::Sockets& Sockets() {
    return vagent::os::Installed<vagent::os::Sockets>();
}

std::string LibraryPath(const fs::path& path) {
    std::string text = path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

bool SendAll(SocketHandle socket, const char* data, std::size_t count) {
    while (count > 0) {
        int sent = 0;
        if (Sockets().Send(socket, data, static_cast<int>(count), 0, sent) != 0 || sent <= 0) {
            return false;
        }
        data += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

bool ReceiveAll(SocketHandle socket, char* buffer, std::size_t count) {
    while (count > 0) {
        int got = 0;
        if (Sockets().Receive(socket, buffer, static_cast<int>(count), 0, got) != 0 || got <= 0) {
            return false;
        }
        buffer += got;
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

SocketHandle ConnectTo(std::uint16_t port) {
    SocketHandle socket = kInvalidSocket;
    if (Sockets().OpenStream(socket) != 0) {
        return kInvalidSocket;
    }
    if (Sockets().Connect(socket, "127.0.0.1", port) != 0) {
        Sockets().Close(socket);
        return kInvalidSocket;
    }
    return socket;
}

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

// A listener on loopback and the one connection it accepted.
struct AcceptedPair {
    AcceptedPair() {
        SocketHandle listener = kInvalidSocket;
        std::uint16_t port = 0;
        Sockets().OpenStream(listener);
        Sockets().Bind(listener, "127.0.0.1", 0);
        Sockets().Listen(listener, 1);
        Sockets().LocalPort(listener, port);
        sender = ConnectTo(port);
        Sockets().Accept(listener, receiver);
        Sockets().Close(listener);
    }
    ~AcceptedPair() {
        Sockets().Close(sender);
        Sockets().Close(receiver);
    }
    SocketHandle sender = kInvalidSocket;
    SocketHandle receiver = kInvalidSocket;
};

void SendFiles(SocketHandle socket, const BenchTree& tree) {
    std::vector<char> chunk(kCopyChunk);
    for (const fs::path& file : tree.Files()) {
        std::FILE* in = std::fopen(file.string().c_str(), "rb");
        std::size_t got = 0;
        while ((got = std::fread(chunk.data(), 1, chunk.size(), in)) > 0) {
            SendAll(socket, chunk.data(), got);
        }
        std::fclose(in);
    }
}

bool ReceiveFiles(SocketHandle socket, const BenchTree& tree) {
    std::vector<char> chunk(kCopyChunk);
    bool received = true;
    for (const fs::path& file : tree.Files()) {
        const fs::path target = tree.Target() / fs::relative(file, tree.Source());
        fs::create_directories(target.parent_path());
        std::FILE* out = std::fopen(target.string().c_str(), "wb");
        for (std::size_t left = kFileSize; left > 0 && received;) {
            const std::size_t part = std::min(left, chunk.size());
            received = ReceiveAll(socket, chunk.data(), part);
            std::fwrite(chunk.data(), 1, part, out);
            left -= part;
        }
        std::fclose(out);
    }
    return received;
}

// The same file bytes read in large chunks, sent bare, received and written
// to files of the same names: the upload without its protocol or service.
void BM_PlainSocketCopy(benchmark::State& state) {
    BenchTree& tree = Tree();
    for (auto _ : state) {
        AcceptedPair pair;
        std::thread sender([&] { SendFiles(pair.sender, tree); });
        const bool received = ReceiveFiles(pair.receiver, tree);
        sender.join();
        if (!received) {
            state.SkipWithError("copy failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * kTreeBytes);
}

BENCHMARK(BM_RemoteHostNameCall)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_AgentGetHostName)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_PlainExchange)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_Concurrent64RemoteCalls)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Concurrent64PlainExchanges)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_UploadThroughService)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(BM_PlainSocketCopy)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

// Keeps each benchmark's real time per iteration to print the ratios of the
// pairs at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && run.iterations > 0 && !run.error_occurred) {
                seconds_[run.run_name.function_name] =
                    run.real_accumulated_time / static_cast<double>(run.iterations);
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    void PrintRatios() const {
        PrintPair("one remote call, time ratio to the plain exchange (goal at most 1.5)",
                  "BM_RemoteHostNameCall", "BM_PlainExchange");
        PrintPair("the same call through VAgent, time ratio to the plain exchange",
                  "BM_AgentGetHostName", "BM_PlainExchange");
        PrintPair("64 clients, calls/s ratio to the minimal server (goal at least 0.8)",
                  "BM_Concurrent64PlainExchanges", "BM_Concurrent64RemoteCalls");
        PrintPair("upload, throughput ratio to the plain copy (goal at least 0.7)",
                  "BM_PlainSocketCopy", "BM_UploadThroughService");
    }

private:
    void PrintPair(const char* what, const char* numerator, const char* denominator) const {
        const auto top = seconds_.find(numerator);
        const auto bottom = seconds_.find(denominator);
        if (top != seconds_.end() && bottom != seconds_.end() && bottom->second > 0) {
            std::printf("%s: %.2f\n", what, top->second / bottom->second);
        }
    }

    std::map<std::string, double> seconds_;
};

}  // namespace

int main(int argc, char** argv) {
    Sockets().Startup();
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios();
    benchmark::Shutdown();
    Sockets().Cleanup();
    return 0;
}
