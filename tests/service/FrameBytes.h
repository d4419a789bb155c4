#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vagent::test {

// The bytes of a request frame as a client sends them: id, work
// environment, root-site length and text, block length and block, every
// integer big-endian.
std::vector<std::uint8_t> RequestFrameBytes(std::uint32_t taskId, std::int32_t workEnv,
                                            const std::string& rootSite,
                                            const std::vector<std::uint8_t>& block);
// A request block: its 4-byte big-endian payload length, then the payload.
std::vector<std::uint8_t> RequestBlock(const std::vector<std::uint8_t>& payload);
void AppendBigEndian32(std::vector<std::uint8_t>& bytes, std::uint32_t value);

}  // namespace vagent::test
