// Streamed transfer of a 256 MiB tree over loopback (frames, 1,024-byte
// pieces on the wire, files read and written at both ends) next to a plain
// socket copy of the same file bytes, read, sent, received and written the
// same way but without frames; and the transfer with pass-through hooks,
// which sends and receives every frame and piece on its own. All run in the
// same program; the ratios of their times are printed at the end.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "BenchTree.h"
#include "os/Sockets.h"
#include "vagent/VFileTask.h"

namespace {

namespace fs = std::filesystem;
using vagent::bench::BenchTree;
using vagent::bench::kFileSize;
using vagent::bench::kTreeBytes;

constexpr std::size_t kCopyChunk = 256 * 1024;
constexpr std::uint32_t kFilesCopyTask = 44;

vagent::os::Sockets& Sockets() {
    return vagent::os::Installed<vagent::os::Sockets>();
}

std::string LibraryPath(const fs::path& path) {
    std::string text = path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

BenchTree& Tree() {
    static BenchTree tree("vagent-transfer-bench");
    return tree;
}

// A connected pair over 127.0.0.1.
struct LoopbackPair {
    LoopbackPair() {
        vagent::os::SocketHandle listener = vagent::os::kInvalidSocket;
        std::uint16_t port = 0;
        Sockets().OpenStream(listener);
        Sockets().Bind(listener, "127.0.0.1", 0);
        Sockets().Listen(listener, 1);
        Sockets().LocalPort(listener, port);
        Sockets().OpenStream(sender);
        Sockets().Connect(sender, "127.0.0.1", port);
        Sockets().Accept(listener, receiver);
        Sockets().Close(listener);
    }
    ~LoopbackPair() {
        Sockets().Close(sender);
        Sockets().Close(receiver);
    }
    vagent::os::SocketHandle sender = vagent::os::kInvalidSocket;
    vagent::os::SocketHandle receiver = vagent::os::kInvalidSocket;
};

int LetSendThrough(std::uintptr_t, int) {
    return 1;
}

int LetReceiveThrough(std::uintptr_t, int*) {
    return 1;
}

int IgnoreProgress(int) {
    return 0;
}

// Hooks that change nothing, so that every frame and piece is sent and
// received on its own: what the transfer costs without gathering.
HTTP_FUN passThrough{LetSendThrough, LetReceiveThrough, IgnoreProgress};

void TransferTree(benchmark::State& state, HTTP_FUN* hooks) {
    BenchTree& tree = Tree();
    for (auto _ : state) {
        LoopbackPair pair;
        int sent = 0;
        std::thread sender([&] {
            VFileTask task(kFilesCopyTask);
            sent = task.SendTree(pair.sender, LibraryPath(tree.Source()),
                                 LibraryPath(tree.Target()), 1, hooks) &&
                   task.SendEndFrame(pair.sender, 0, hooks);
        });
        VFileTask receiver(kFilesCopyTask);
        const int received = receiver.ReceiveTree(pair.receiver, hooks);
        sender.join();
        if (sent == 0 || received == 0) {
            state.SkipWithError("transfer failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * kTreeBytes);
}

void BM_TransferTree(benchmark::State& state) {
    TransferTree(state, nullptr);
}

void BM_TransferTreePieceByPiece(benchmark::State& state) {
    TransferTree(state, &passThrough);
}

void SendAll(vagent::os::SocketHandle socket, const char* data, std::size_t count) {
    while (count > 0) {
        int sent = 0;
        if (Sockets().Send(socket, data, static_cast<int>(count), 0, sent) != 0 || sent <= 0) {
            return;
        }
        data += sent;
        count -= static_cast<std::size_t>(sent);
    }
}

bool ReceiveAll(vagent::os::SocketHandle socket, char* buffer, std::size_t count) {
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

// The same files read in large chunks, sent as bare bytes, received and
// written to files of the same names: what the transfer costs without its
// protocol.
void BM_PlainSocketCopy(benchmark::State& state) {
    BenchTree& tree = Tree();
    for (auto _ : state) {
        LoopbackPair pair;
        std::thread sender([&] {
            std::vector<char> chunk(kCopyChunk);
            for (const fs::path& file : tree.Files()) {
                std::FILE* in = std::fopen(file.string().c_str(), "rb");
                std::size_t got = 0;
                while ((got = std::fread(chunk.data(), 1, chunk.size(), in)) > 0) {
                    SendAll(pair.sender, chunk.data(), got);
                }
                std::fclose(in);
            }
        });
        std::vector<char> chunk(kCopyChunk);
        bool received = true;
        for (const fs::path& file : tree.Files()) {
            const fs::path target = tree.Target() / fs::relative(file, tree.Source());
            fs::create_directories(target.parent_path());
            std::FILE* out = std::fopen(target.string().c_str(), "wb");
            for (std::size_t left = kFileSize; left > 0 && received;) {
                const std::size_t part = std::min(left, chunk.size());
                received = ReceiveAll(pair.receiver, chunk.data(), part);
                std::fwrite(chunk.data(), 1, part, out);
                left -= part;
            }
            std::fclose(out);
        }
        sender.join();
        if (!received) {
            state.SkipWithError("copy failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * kTreeBytes);
}

BENCHMARK(BM_TransferTree)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_TransferTreePieceByPiece)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_PlainSocketCopy)->Unit(benchmark::kMillisecond)->UseRealTime();

// Keeps each benchmark's real time per iteration to compare them at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && run.iterations > 0) {
                seconds_[run.run_name.function_name] =
                    run.real_accumulated_time / static_cast<double>(run.iterations);
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    void PrintRatios() const {
        const auto plain = seconds_.find("BM_PlainSocketCopy");
        if (plain == seconds_.end() || plain->second <= 0) {
            return;
        }
        const double mebibytes = static_cast<double>(kTreeBytes) / (1024.0 * 1024.0);
        std::printf("plain socket copy %.0f MiB/s\n", mebibytes / plain->second);
        for (const char* name : {"BM_TransferTree", "BM_TransferTreePieceByPiece"}) {
            const auto transfer = seconds_.find(name);
            if (transfer != seconds_.end()) {
                std::printf("%s %.0f MiB/s, time ratio to the plain copy %.2f\n", name,
                            mebibytes / transfer->second, transfer->second / plain->second);
            }
        }
    }

private:
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
