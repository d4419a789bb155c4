#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "FrameLimits.h"
#include "RequestFrame.h"

namespace vagent::service {

// What the reader makes of the bytes seen so far.
enum class FrameState {
    Incomplete,          // more bytes are needed
    Complete,            // the frame is whole; Frame() holds it
    RootSiteTooLong,     // L is above the root-site limit
    BlockTooLong,        // N is above the block limit
    BlockTooShort,       // N is 1, 2 or 3: no room for the block's own prefix
    BlockPrefixMismatch  // the block's own prefix is not N - 4
};

// Decodes one request frame from bytes as they arrive, in any chunking:
// task id, work environment, root-site length L and text, block length N and
// block, every integer big-endian. Each length is checked against its limit
// before memory is set aside for it, and memory grows only with the bytes
// actually received, so a large claim costs nothing until its bytes come.
class RequestFrameReader {
public:
    explicit RequestFrameReader(FrameLimits limits);

    // Takes bytes from data up to the end of the frame and returns the state
    // reached; consumed receives how many were taken. Bytes past the frame's
    // end are left alone (a transfer may follow the frame on its connection).
    // Once the state is no longer Incomplete, Feed takes nothing more.
    FrameState Feed(const std::uint8_t* data, std::size_t count, std::size_t& consumed);

    FrameState State() const { return state_; }
    // How many more bytes the frame needs for certain: reading no more than
    // this never takes a byte beyond the frame. 0 once the state is final.
    std::size_t BytesWanted() const;
    // The length field that broke a limit, for the log.
    std::uint32_t OffendingLength() const { return offendingLength_; }
    // The decoded frame, once Complete; TakeFrame hands it over.
    const RequestFrame& Frame() const { return frame_; }
    RequestFrame TakeFrame();

private:
    enum class Field { Header, RootSite, BlockLength, Block, Done };

    std::size_t TakeHeader(const std::uint8_t* data, std::size_t count);
    std::size_t TakeRootSite(const std::uint8_t* data, std::size_t count);
    std::size_t TakeBlockLength(const std::uint8_t* data, std::size_t count);
    std::size_t TakeBlock(const std::uint8_t* data, std::size_t count);
    std::size_t FillScratch(const std::uint8_t* data, std::size_t count, std::size_t wanted);
    void StartRootSite(std::uint32_t length);
    void StartBlock(std::uint32_t length);
    void CheckBlockPrefix();
    void Refuse(FrameState state, std::uint32_t length);
    void Finish();

    FrameLimits limits_;
    FrameState state_ = FrameState::Incomplete;
    Field field_ = Field::Header;
    std::array<std::uint8_t, 12> scratch_{};
    std::size_t scratchFill_ = 0;
    std::uint32_t rootSiteLength_ = 0;
    std::uint32_t blockLength_ = 0;
    std::uint32_t offendingLength_ = 0;
    RequestFrame frame_;
};

}  // namespace vagent::service
