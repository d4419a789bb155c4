#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vagent::test {

using Bytes = std::vector<std::uint8_t>;

// The wire formats written out by hand, byte by byte, so that a test builds
// what it sends and what it expects without the library's own encoders.

Bytes BigEndianBytes(std::uint32_t value);
Bytes LittleEndianBytes(std::uint32_t value);
Bytes TextBytes(const std::string& text);
void Append(Bytes& to, const Bytes& more);

// A result block: payload length, then each item as its length and bytes,
// all lengths big-endian.
Bytes ItemBlockBytes(const std::vector<Bytes>& items);
Bytes TextBlockBytes(const std::vector<std::string>& items);
// The acknowledgement block: length 4 and the value, both big-endian.
Bytes AckBlockBytes(std::uint32_t value);

// The request frame: task id, work environment, root-site length and text,
// block length and block; every integer big-endian.
Bytes RequestFrameBytes(std::uint32_t taskId, std::int32_t workEnv, const std::string& rootSite,
                        const Bytes& block);
// The service's answer: the status word little-endian, then the block as the
// task made it.
Bytes ReplyBytes(std::uint32_t status, const Bytes& block);

// A streamed transfer frame, every integer little-endian: frame length, size,
// attributes, block size, name length with its zero, the name and a zero.
Bytes TransferFrameBytes(std::uint32_t size, std::uint32_t attributes, std::uint32_t blockSize,
                         const std::string& name);
Bytes EndFrameBytes(std::uint32_t status);
// A file frame followed by its contents in pieces of at most 1,024 bytes.
Bytes FileTransferBytes(const std::string& name, std::uint32_t attributes,
                        const std::string& contents);

// One frame of a received transfer stream, with the contents that followed
// it; the end frame has size 0xFFFFFFFF and its status in blockSize.
struct ParsedFrame {
    std::uint32_t size = 0;
    std::uint32_t attributes = 0;
    std::uint32_t blockSize = 0;
    std::string name;
    std::string contents;
};

// Splits a whole transfer stream into its frames, the end frame last. False
// when a frame is cut short, a name lacks its zero, or bytes follow the end
// frame.
bool ParseTransferStream(const Bytes& stream, std::vector<ParsedFrame>& frames);

}  // namespace vagent::test
