#include "Server.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

#include "FrameCollector.h"
#include "HeldBytes.h"
#include "Ipv4Text.h"
#include "RequestRunner.h"
#include "Version.h"
#include "WorkerPool.h"
#include "platform/ServiceSockets.h"
#include "vagent/DllLog.h"
#include "vagent/ErrorCodes.h"

namespace vagent::service {
namespace {

constexpr int kListenBacklog = 512;
// The receive limit of a connection once a worker owns it: what the task
// client uses, and what a streamed transfer waits for its peer.
constexpr std::uint32_t kReceiveLimitMilliseconds = 5000;
// How long a worker waits for a client to take its answer before giving up
// on it, so that a client that never reads cannot hold a worker forever.
constexpr std::uint32_t kSendLimitMilliseconds = 30000;
// A frame's header and block-length fields, besides its root site and block.
constexpr std::uint64_t kFrameFieldBytes = 16;

os::Sockets& Net() {
    return os::Installed<os::Sockets>();
}

bool SendAll(os::SocketHandle socket, const std::vector<std::uint8_t>& bytes) {
    std::size_t offset = 0;
    while (offset < bytes.size()) {
        const std::size_t left = bytes.size() - offset;
        const int count = left > 0x40000000u ? 0x40000000 : static_cast<int>(left);
        int sent = 0;
        if (Net().Send(socket, bytes.data() + offset, count, 0, sent) != 0 || sent <= 0) {
            return false;
        }
        offset += static_cast<std::size_t>(sent);
    }
    return true;
}

}  // namespace

struct Server::State {
    explicit State(ServerOptions serverOptions) : options(std::move(serverOptions)) {}

    std::uint32_t CheckOptions();
    std::uint32_t OpenListener();
    void StartServing();
    void Serve(AcceptedConnection connection, RequestFrame frame);
    void CloseListener();
    void StopSockets();

    ServerOptions options;
    CollectorSettings settings;
    os::SocketHandle listener = os::kInvalidSocket;
    std::uint16_t port = 0;
    bool started = false;
    bool socketsStarted = false;
    std::atomic<bool> stopping{false};
    std::atomic<unsigned> openConnections{0};
    std::unique_ptr<HeldBytes> held;
    RequestRunner runner;
    std::unique_ptr<WorkerPool> workers;
    std::unique_ptr<FrameCollector> collector;
    std::thread reader;
};

std::uint32_t Server::State::CheckOptions() {
    std::uint32_t address = 0;
    std::string error;
    if (!ParseIpv4(options.listenAddress, address) || !settings.allow.Parse(options.allow, error) ||
        options.workers == 0 || options.maxConnections == 0) {
        return kErrorInvalidParameter;
    }
    settings.limits.maxBlock = options.maxBlock;
    settings.maxConnections = options.maxConnections;
    const std::uint64_t largestFrame =
        std::uint64_t{settings.limits.maxRootSite} + settings.limits.maxBlock + kFrameFieldBytes;
    held = std::make_unique<HeldBytes>(std::max(options.maxHeldBytes, largestFrame));
    return 0;
}

std::uint32_t Server::State::OpenListener() {
    std::uint32_t status = Net().Startup();
    if (status != 0) {
        return status;
    }
    socketsStarted = true;
    status = Net().OpenStream(listener);
    if (status == 0) {
        status = platform::AllowAddressReuse(listener);
    }
    if (status == 0) {
        status = Net().Bind(listener, options.listenAddress, options.listenPort);
    }
    if (status == 0) {
        status = Net().Listen(listener, kListenBacklog);
    }
    if (status == 0) {
        status = platform::SetNonBlocking(listener, true);
    }
    if (status == 0) {
        status = Net().LocalPort(listener, port);
    }
    return status;
}

void Server::State::StartServing() {
    workers = std::make_unique<WorkerPool>(options.workers);
    collector = std::make_unique<FrameCollector>(
        listener, settings, openConnections, *held,
        [this](AcceptedConnection connection, RequestFrame frame) {
            auto job = std::make_shared<std::pair<AcceptedConnection, RequestFrame>>(
                std::move(connection), std::move(frame));
            workers->Submit([this, job] { Serve(std::move(job->first), std::move(job->second)); });
        });
    reader = std::thread([this] { collector->Run(stopping); });
}

// The worker owns the connection from here: blocking again, with the
// receive limit a streamed transfer relies on.
void Server::State::Serve(AcceptedConnection connection, RequestFrame frame) {
    const os::SocketHandle socket = connection.socket;
    platform::SetNonBlocking(socket, false);
    Net().SetReceiveTimeout(socket, kReceiveLimitMilliseconds);
    platform::SetSendTimeout(socket, kSendLimitMilliseconds);
    const std::vector<std::uint8_t> answer = runner.Run(frame, socket, connection.peer);
    if (!answer.empty() && !SendAll(socket, answer)) {
        DllLogPrintf("vagentd : answer to %s for task %u not delivered", connection.peer.c_str(),
                     frame.taskId);
    }
    Net().Shutdown(socket);
    Net().Close(socket);
    held->Give(connection.heldBytes);
    --openConnections;
}

void Server::State::CloseListener() {
    if (listener != os::kInvalidSocket) {
        Net().Close(listener);
        listener = os::kInvalidSocket;
    }
}

void Server::State::StopSockets() {
    if (socketsStarted) {
        Net().Cleanup();
        socketsStarted = false;
    }
}

Server::Server(ServerOptions options) : state_(std::make_unique<State>(std::move(options))) {}

Server::~Server() {
    Stop();
}

std::uint32_t Server::Start() {
    if (state_->started) {
        return 0;
    }
    std::uint32_t status = state_->CheckOptions();
    if (status != 0) {
        return status;
    }
    platform::RaiseOpenFileLimit();
    status = state_->OpenListener();
    if (status != 0) {
        state_->CloseListener();
        state_->StopSockets();
        return status;
    }
    state_->stopping = false;
    state_->StartServing();
    state_->started = true;
    DllLogPrintf("vagentd : started, version %s, listening on %s:%u, allowing %s", VagentdVersion(),
                 state_->options.listenAddress.c_str(), static_cast<unsigned>(state_->port),
                 state_->settings.allow.Describe().c_str());
    return 0;
}

std::uint16_t Server::Port() const {
    return state_->port;
}

void Server::Stop() {
    if (!state_->started) {
        return;
    }
    state_->stopping = true;
    state_->reader.join();
    state_->CloseListener();
    state_->workers->Shutdown();
    state_->collector.reset();
    state_->workers.reset();
    state_->StopSockets();
    state_->started = false;
    DllLogPrintf("vagentd : stopped");
}

}  // namespace vagent::service
