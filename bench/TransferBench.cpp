// Streamed transfer of a 256 MiB tree over loopback (frames, 1,024-byte
// pieces on the wire, files read and written at both ends) next to a plain
// socket copy of the same file bytes, read, sent, received and written the
// same way but without frames; and the transfer with pass-through hooks,
// which sends and receives every frame and piece on its own. All run in the
// same program; the ratios of their times are printed at the end.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>

#include "BenchTree.h"
#include "LoopbackPair.h"
#include "PlainSocketCopy.h"
#include "RatioReporter.h"
#include "vagent/VFileTask.h"

namespace {

using vagent::bench::BenchTree;
using vagent::bench::kTreeBytes;
using vagent::bench::LibraryPath;
using vagent::bench::LoopbackPair;
using vagent::bench::RatioReporter;

constexpr std::uint32_t kFilesCopyTask = 44;

BenchTree& Tree() {
    static BenchTree tree("vagent-transfer-bench");
    return tree;
}

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
            sent = task.SendTree(pair.Sender(), LibraryPath(tree.Source()),
                                 LibraryPath(tree.Target()), 1, hooks) &&
                   task.SendEndFrame(pair.Sender(), 0, hooks);
        });
        VFileTask receiver(kFilesCopyTask);
        const int received = receiver.ReceiveTree(pair.Receiver(), hooks);
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

// What the transfer costs without its protocol.
void BM_PlainSocketCopy(benchmark::State& state) {
    vagent::bench::RunPlainSocketCopy(state, Tree());
}

BENCHMARK(BM_TransferTree)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_TransferTreePieceByPiece)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_PlainSocketCopy)->Unit(benchmark::kMillisecond)->UseRealTime();

void PrintRatios(const RatioReporter& reporter) {
    const double plain = reporter.SecondsOf("BM_PlainSocketCopy");
    if (plain <= 0) {
        return;
    }
    const double mebibytes = static_cast<double>(kTreeBytes) / (1024.0 * 1024.0);
    std::printf("plain socket copy %.0f MiB/s\n", mebibytes / plain);
    for (const char* name : {"BM_TransferTree", "BM_TransferTreePieceByPiece"}) {
        const double transfer = reporter.SecondsOf(name);
        if (transfer > 0) {
            std::printf("%s %.0f MiB/s, time ratio to the plain copy %.2f\n", name,
                        mebibytes / transfer, transfer / plain);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    return vagent::bench::RunBenchmarks(argc, argv, PrintRatios);
}
