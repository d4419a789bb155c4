#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <vector>

#include "BenchSockets.h"
#include "BenchTree.h"
#include "LoopbackPair.h"

// The baseline of the transfer benchmarks: the tree's file bytes read in
// large chunks, sent bare over loopback, received and written to files of
// the same names; a transfer without its frames, protocol or service.

namespace vagent::bench {

constexpr std::size_t kCopyChunk = 256 * 1024;

inline void SendFilesBare(os::SocketHandle socket, const BenchTree& tree) {
    std::vector<char> chunk(kCopyChunk);
    for (const std::filesystem::path& file : tree.Files()) {
        std::FILE* in = std::fopen(file.string().c_str(), "rb");
        std::size_t got = 0;
        while ((got = std::fread(chunk.data(), 1, chunk.size(), in)) > 0) {
            SendAll(socket, chunk.data(), got);
        }
        std::fclose(in);
    }
}

inline bool ReceiveFilesBare(os::SocketHandle socket, const BenchTree& tree) {
    std::vector<char> chunk(kCopyChunk);
    bool received = true;
    for (const std::filesystem::path& file : tree.Files()) {
        const std::filesystem::path target =
            tree.Target() / std::filesystem::relative(file, tree.Source());
        std::filesystem::create_directories(target.parent_path());
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

inline void RunPlainSocketCopy(benchmark::State& state, const BenchTree& tree) {
    for (auto _ : state) {
        LoopbackPair pair;
        std::thread sender([&] { SendFilesBare(pair.Sender(), tree); });
        const bool received = ReceiveFilesBare(pair.Receiver(), tree);
        sender.join();
        if (!received) {
            state.SkipWithError("copy failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * kTreeBytes);
}

}  // namespace vagent::bench
