#include "service/TestClientFrames.h"

#include <algorithm>

namespace vagent::test {
namespace {

constexpr std::uint32_t kLargestPiece = 1024;
constexpr std::uint32_t kEndOfTransfer = 0xFFFFFFFFu;

// Reads little-endian words and runs of bytes from a stream, refusing to pass
// its end.
class StreamReader {
public:
    explicit StreamReader(const Bytes& bytes) : bytes_(bytes) {}

    bool AtEnd() const { return position_ == bytes_.size(); }
    bool Word(std::uint32_t& value) {
        if (bytes_.size() - position_ < 4) {
            return false;
        }
        const std::uint8_t* at = bytes_.data() + position_;
        value = static_cast<std::uint32_t>(at[0]) | static_cast<std::uint32_t>(at[1]) << 8 |
                static_cast<std::uint32_t>(at[2]) << 16 | static_cast<std::uint32_t>(at[3]) << 24;
        position_ += 4;
        return true;
    }
    bool Run(std::size_t count, std::string& into) {
        if (bytes_.size() - position_ < count) {
            return false;
        }
        into.assign(bytes_.begin() + static_cast<std::ptrdiff_t>(position_),
                    bytes_.begin() + static_cast<std::ptrdiff_t>(position_ + count));
        position_ += count;
        return true;
    }

private:
    const Bytes& bytes_;
    std::size_t position_ = 0;
};

bool ReadFrameHeader(StreamReader& reader, ParsedFrame& frame) {
    std::uint32_t length = 0;
    std::uint32_t nameLength = 0;
    if (!reader.Word(length) || !reader.Word(frame.size) || !reader.Word(frame.attributes) ||
        !reader.Word(frame.blockSize) || !reader.Word(nameLength) || nameLength == 0 ||
        length != 16 + nameLength || !reader.Run(nameLength, frame.name) ||
        frame.name.back() != '\0') {
        return false;
    }
    frame.name.pop_back();
    return true;
}

}  // namespace

Bytes BigEndianBytes(std::uint32_t value) {
    return Bytes{static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
                 static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

Bytes LittleEndianBytes(std::uint32_t value) {
    return Bytes{static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
                 static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 24)};
}

Bytes TextBytes(const std::string& text) {
    return Bytes(text.begin(), text.end());
}

void Append(Bytes& to, const Bytes& more) {
    to.insert(to.end(), more.begin(), more.end());
}

Bytes ItemBlockBytes(const std::vector<Bytes>& items) {
    Bytes payload;
    for (const Bytes& item : items) {
        Append(payload, BigEndianBytes(static_cast<std::uint32_t>(item.size())));
        Append(payload, item);
    }
    Bytes block = BigEndianBytes(static_cast<std::uint32_t>(payload.size()));
    Append(block, payload);
    return block;
}

Bytes TextBlockBytes(const std::vector<std::string>& items) {
    std::vector<Bytes> raw;
    for (const std::string& item : items) {
        raw.push_back(TextBytes(item));
    }
    return ItemBlockBytes(raw);
}

Bytes AckBlockBytes(std::uint32_t value) {
    Bytes block = BigEndianBytes(4);
    Append(block, BigEndianBytes(value));
    return block;
}

Bytes RequestFrameBytes(std::uint32_t taskId, std::int32_t workEnv, const std::string& rootSite,
                        const Bytes& block) {
    Bytes frame = BigEndianBytes(taskId);
    Append(frame, BigEndianBytes(static_cast<std::uint32_t>(workEnv)));
    Append(frame, BigEndianBytes(static_cast<std::uint32_t>(rootSite.size())));
    Append(frame, TextBytes(rootSite));
    Append(frame, BigEndianBytes(static_cast<std::uint32_t>(block.size())));
    Append(frame, block);
    return frame;
}

Bytes ReplyBytes(std::uint32_t status, const Bytes& block) {
    Bytes reply = LittleEndianBytes(status);
    Append(reply, block);
    return reply;
}

Bytes TransferFrameBytes(std::uint32_t size, std::uint32_t attributes, std::uint32_t blockSize,
                         const std::string& name) {
    Bytes body = LittleEndianBytes(size);
    Append(body, LittleEndianBytes(attributes));
    Append(body, LittleEndianBytes(blockSize));
    Append(body, LittleEndianBytes(static_cast<std::uint32_t>(name.size() + 1)));
    Append(body, TextBytes(name));
    body.push_back(0);
    Bytes frame = LittleEndianBytes(static_cast<std::uint32_t>(body.size()));
    Append(frame, body);
    return frame;
}

Bytes EndFrameBytes(std::uint32_t status) {
    return TransferFrameBytes(kEndOfTransfer, 0, status, "");
}

Bytes FileTransferBytes(const std::string& name, std::uint32_t attributes,
                        const std::string& contents) {
    const auto size = static_cast<std::uint32_t>(contents.size());
    Bytes bytes = TransferFrameBytes(size, attributes, std::min(size, kLargestPiece), name);
    Append(bytes, TextBytes(contents));
    return bytes;
}

bool ParseTransferStream(const Bytes& stream, std::vector<ParsedFrame>& frames) {
    StreamReader reader(stream);
    frames.clear();
    while (!reader.AtEnd()) {
        ParsedFrame frame;
        if (!ReadFrameHeader(reader, frame)) {
            return false;
        }
        const bool end = frame.size == kEndOfTransfer;
        if (!end && frame.blockSize != 0 && !reader.Run(frame.size, frame.contents)) {
            return false;
        }
        frames.push_back(frame);
        if (end) {
            return reader.AtEnd();
        }
    }
    return false;
}

}  // namespace vagent::test
