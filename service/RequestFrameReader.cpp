#include "RequestFrameReader.h"

#include <algorithm>
#include <utility>

#include "task/ByteOrder.h"

namespace vagent::service {
namespace {

constexpr std::size_t kHeaderSize = 12;  // task id, work environment, L
constexpr std::size_t kLengthSize = 4;
constexpr std::uint32_t kBlockPrefixSize = 4;

// Room for count more bytes in a buffer that will never hold more than
// limit: doubling keeps appends cheap, the limit keeps a claim from costing
// more than it delivers.
template <class Buffer>
void MakeRoom(Buffer& buffer, std::size_t count, std::size_t limit) {
    const std::size_t needed = buffer.size() + count;
    if (needed > buffer.capacity()) {
        buffer.reserve(std::min(limit, std::max(needed, buffer.capacity() * 2)));
    }
}

}  // namespace

RequestFrameReader::RequestFrameReader(FrameLimits limits) : limits_(limits) {}

FrameState RequestFrameReader::Feed(const std::uint8_t* data, std::size_t count,
                                    std::size_t& consumed) {
    consumed = 0;
    while (state_ == FrameState::Incomplete && consumed < count) {
        const std::uint8_t* at = data + consumed;
        const std::size_t left = count - consumed;
        switch (field_) {
            case Field::Header:
                consumed += TakeHeader(at, left);
                break;
            case Field::RootSite:
                consumed += TakeRootSite(at, left);
                break;
            case Field::BlockLength:
                consumed += TakeBlockLength(at, left);
                break;
            case Field::Block:
                consumed += TakeBlock(at, left);
                break;
            case Field::Done:
                return state_;
        }
    }
    return state_;
}

std::size_t RequestFrameReader::BytesWanted() const {
    switch (field_) {
        case Field::Header:
            return kHeaderSize - scratchFill_;
        case Field::RootSite:
            return rootSiteLength_ - frame_.rootSite.size() + kLengthSize;
        case Field::BlockLength:
            return kLengthSize - scratchFill_;
        case Field::Block:
            return blockLength_ - frame_.block.size();
        case Field::Done:
            break;
    }
    return 0;
}

RequestFrame RequestFrameReader::TakeFrame() {
    return std::move(frame_);
}

std::size_t RequestFrameReader::FillScratch(const std::uint8_t* data, std::size_t count,
                                            std::size_t wanted) {
    const std::size_t take = std::min(count, wanted - scratchFill_);
    std::copy(data, data + take, scratch_.begin() + static_cast<std::ptrdiff_t>(scratchFill_));
    scratchFill_ += take;
    return take;
}

std::size_t RequestFrameReader::TakeHeader(const std::uint8_t* data, std::size_t count) {
    const std::size_t taken = FillScratch(data, count, kHeaderSize);
    if (scratchFill_ == kHeaderSize) {
        frame_.taskId = ReadBigEndian32(scratch_.data());
        frame_.workEnv = static_cast<std::int32_t>(ReadBigEndian32(scratch_.data() + 4));
        scratchFill_ = 0;
        StartRootSite(ReadBigEndian32(scratch_.data() + 8));
    }
    return taken;
}

void RequestFrameReader::StartRootSite(std::uint32_t length) {
    if (length > limits_.maxRootSite) {
        Refuse(FrameState::RootSiteTooLong, length);
        return;
    }
    rootSiteLength_ = length;
    field_ = length == 0 ? Field::BlockLength : Field::RootSite;
}

std::size_t RequestFrameReader::TakeRootSite(const std::uint8_t* data, std::size_t count) {
    std::string& site = frame_.rootSite;
    const std::size_t take = std::min<std::size_t>(count, rootSiteLength_ - site.size());
    MakeRoom(site, take, rootSiteLength_);
    site.append(reinterpret_cast<const char*>(data), take);
    if (site.size() == rootSiteLength_) {
        field_ = Field::BlockLength;
    }
    return take;
}

std::size_t RequestFrameReader::TakeBlockLength(const std::uint8_t* data, std::size_t count) {
    const std::size_t taken = FillScratch(data, count, kLengthSize);
    if (scratchFill_ == kLengthSize) {
        scratchFill_ = 0;
        StartBlock(ReadBigEndian32(scratch_.data()));
    }
    return taken;
}

void RequestFrameReader::StartBlock(std::uint32_t length) {
    if (length > limits_.maxBlock) {
        Refuse(FrameState::BlockTooLong, length);
    } else if (length != 0 && length < kBlockPrefixSize) {
        Refuse(FrameState::BlockTooShort, length);
    } else if (length == 0) {
        Finish();
    } else {
        blockLength_ = length;
        field_ = Field::Block;
    }
}

std::size_t RequestFrameReader::TakeBlock(const std::uint8_t* data, std::size_t count) {
    std::vector<std::uint8_t>& block = frame_.block;
    const std::size_t before = block.size();
    // The prefix is taken on its own, so that a block it condemns costs no
    // more bytes than the prefix itself.
    const std::size_t upTo = before < kBlockPrefixSize ? kBlockPrefixSize : blockLength_;
    const std::size_t take = std::min<std::size_t>(count, upTo - before);
    MakeRoom(block, take, blockLength_);
    block.insert(block.end(), data, data + take);
    if (block.size() == kBlockPrefixSize && before < kBlockPrefixSize) {
        CheckBlockPrefix();
    }
    if (state_ == FrameState::Incomplete && block.size() == blockLength_) {
        Finish();
    }
    return take;
}

// A block whose own prefix disagrees with N would be decoded by the task
// against a length the frame never delivered; it is refused as soon as the
// prefix is in.
void RequestFrameReader::CheckBlockPrefix() {
    const std::uint32_t prefix = ReadBigEndian32(frame_.block.data());
    if (prefix != blockLength_ - kBlockPrefixSize) {
        Refuse(FrameState::BlockPrefixMismatch, prefix);
    }
}

void RequestFrameReader::Refuse(FrameState state, std::uint32_t length) {
    state_ = state;
    offendingLength_ = length;
    field_ = Field::Done;
}

void RequestFrameReader::Finish() {
    state_ = FrameState::Complete;
    field_ = Field::Done;
}

}  // namespace vagent::service
