// Feeds any bytes to the request-frame reader twice, once whole and once in
// chunks whose sizes the first input byte chooses, with small limits, and
// checks that both readings agree and that the reader never takes a byte
// past the frame or more than it was given.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "RequestFrameReader.h"
#include "task/ByteOrder.h"

namespace {

using vagent::service::FrameLimits;
using vagent::service::FrameState;
using vagent::service::RequestFrameReader;

void Check(bool condition) {
    if (!condition) {
        std::abort();
    }
}

FrameLimits SmallLimits() {
    FrameLimits limits;
    limits.maxRootSite = 64;
    limits.maxBlock = 256;
    return limits;
}

std::size_t ReadWhole(RequestFrameReader& reader, const std::uint8_t* data, std::size_t size) {
    std::size_t consumed = 0;
    reader.Feed(data, size, consumed);
    Check(consumed <= size);
    return consumed;
}

// A linear congruential step, wrapping modulo 2^32 on purpose; taken in 64
// bits so the wrap is explicit.
std::uint32_t NextState(std::uint32_t state) {
    return static_cast<std::uint32_t>((std::uint64_t{state} * 1103515245u + 12345u) & 0xFFFFFFFFu);
}

// Chunk sizes from a small generator seeded by the input, each at most the
// bytes the reader says it still wants, so that the reading stops exactly at
// the frame's end as the service's socket reads do.
std::size_t ReadInChunks(RequestFrameReader& reader, std::uint8_t seed, const std::uint8_t* data,
                         std::size_t size) {
    std::uint32_t state = seed | 0x100u;
    std::size_t offset = 0;
    while (offset < size && reader.State() == FrameState::Incomplete) {
        state = NextState(state);
        const std::size_t wanted = reader.BytesWanted();
        Check(wanted > 0);
        std::size_t chunk = 1 + (state >> 16) % 17;
        chunk = chunk < wanted ? chunk : wanted;
        chunk = chunk < size - offset ? chunk : size - offset;
        std::size_t consumed = 0;
        reader.Feed(data + offset, chunk, consumed);
        Check(consumed == chunk || reader.State() != FrameState::Incomplete);
        Check(consumed <= chunk);
        offset += consumed;
    }
    return offset;
}

void CheckComplete(const RequestFrameReader& reader, const FrameLimits& limits) {
    const auto& frame = reader.Frame();
    Check(frame.rootSite.size() <= limits.maxRootSite);
    Check(frame.block.size() <= limits.maxBlock);
    Check(frame.block.empty() || frame.block.size() >= 4);
    if (!frame.block.empty()) {
        Check(vagent::ReadBigEndian32(frame.block.data()) == frame.block.size() - 4);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const FrameLimits limits = SmallLimits();
    const std::uint8_t seed = data[0];
    ++data;
    --size;

    RequestFrameReader whole(limits);
    const std::size_t wholeConsumed = ReadWhole(whole, data, size);
    RequestFrameReader chunked(limits);
    const std::size_t chunkedConsumed = ReadInChunks(chunked, seed, data, size);

    Check(whole.State() == chunked.State());
    Check(wholeConsumed == chunkedConsumed);
    if (whole.State() == FrameState::Complete) {
        CheckComplete(whole, limits);
        Check(whole.Frame().taskId == chunked.Frame().taskId);
        Check(whole.Frame().workEnv == chunked.Frame().workEnv);
        Check(whole.Frame().rootSite == chunked.Frame().rootSite);
        Check(whole.Frame().block == chunked.Frame().block);
    } else if (whole.State() != FrameState::Incomplete) {
        Check(whole.OffendingLength() == chunked.OffendingLength());
    }
    if (whole.State() != FrameState::Incomplete) {
        Check(whole.BytesWanted() == 0);
        std::size_t after = 1;
        whole.Feed(data, size, after);
        Check(after == 0);
    }
    return 0;
}
