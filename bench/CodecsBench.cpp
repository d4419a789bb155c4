// Throughput of the result block codecs on large lists, each reported in
// bytes per second next to a plain memcpy of the same block size.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "vagent/ResultDecoders.h"
#include "vagent/ResultEncoders.h"

namespace {

constexpr std::size_t kStringCount = 1000000;
constexpr std::size_t kUserCount = 100000;
constexpr std::size_t kLengthFieldSize = 4;

// Short account-like names: "user" and a decimal number.
const std::vector<std::string>& ShortStrings() {
    static const std::vector<std::string> strings = [] {
        std::vector<std::string> made;
        made.reserve(kStringCount);
        for (std::size_t i = 0; i < kStringCount; ++i) {
            made.push_back("user" + std::to_string(i));
        }
        return made;
    }();
    return strings;
}

const std::vector<_VXUserInfoA>& Users() {
    static const std::vector<_VXUserInfoA> users = [] {
        std::vector<_VXUserInfoA> made;
        made.reserve(kUserCount);
        for (std::size_t i = 0; i < kUserCount; ++i) {
            made.push_back(
                {"user" + std::to_string(i), "Terminal user number " + std::to_string(i)});
        }
        return made;
    }();
    return users;
}

// An encoded block that the encoder benchmarks release after each pass.
struct Block {
    std::unique_ptr<std::uint8_t[]> data;
    std::uint32_t size = 0;
};

Block EncodeStrings() {
    std::uint8_t* data = nullptr;
    Block block;
    VecTStringToResult(ShortStrings(), data, block.size);
    block.data.reset(data);
    return block;
}

Block EncodeUsers() {
    std::uint8_t* data = nullptr;
    Block block;
    VecUser2Result(Users(), data, block.size);
    block.data.reset(data);
    return block;
}

const Block& EncodedStrings() {
    static const Block block = EncodeStrings();
    return block;
}

const Block& EncodedUsers() {
    static const Block block = EncodeUsers();
    return block;
}

void SetBytes(benchmark::State& state, std::uint32_t bytesPerPass) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * bytesPerPass);
}

void CopyBytes(benchmark::State& state, std::uint32_t size) {
    std::vector<std::uint8_t> source(size, 0x5A);
    std::vector<std::uint8_t> target(size);
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), size);
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    SetBytes(state, size);
}

void BM_VecTStringToResult(benchmark::State& state) {
    ShortStrings();
    std::uint32_t size = 0;
    for (auto _ : state) {
        const Block block = EncodeStrings();
        benchmark::DoNotOptimize(block.data.get());
        size = block.size;
    }
    SetBytes(state, size);
}

void BM_Data2VecTString(benchmark::State& state) {
    const Block& block = EncodedStrings();
    const std::uint32_t payloadSize = block.size - kLengthFieldSize;
    for (auto _ : state) {
        std::vector<std::string> decoded;
        Data2VecTString(block.data.get() + kLengthFieldSize, payloadSize, decoded);
        benchmark::DoNotOptimize(decoded.data());
    }
    SetBytes(state, payloadSize);
}

void BM_MemcpyStringBlock(benchmark::State& state) {
    CopyBytes(state, EncodedStrings().size);
}

void BM_VecUser2Result(benchmark::State& state) {
    Users();
    std::uint32_t size = 0;
    for (auto _ : state) {
        const Block block = EncodeUsers();
        benchmark::DoNotOptimize(block.data.get());
        size = block.size;
    }
    SetBytes(state, size);
}

void BM_Data2VecUser(benchmark::State& state) {
    const Block& block = EncodedUsers();
    const std::uint32_t payloadSize = block.size - kLengthFieldSize;
    for (auto _ : state) {
        std::vector<_VXUserInfoA> decoded;
        Data2VecUser(block.data.get() + kLengthFieldSize, payloadSize, decoded);
        benchmark::DoNotOptimize(decoded.data());
    }
    SetBytes(state, payloadSize);
}

void BM_MemcpyUserBlock(benchmark::State& state) {
    CopyBytes(state, EncodedUsers().size);
}

}  // namespace

BENCHMARK(BM_VecTStringToResult)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Data2VecTString)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MemcpyStringBlock)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_VecUser2Result)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Data2VecUser)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MemcpyUserBlock)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
