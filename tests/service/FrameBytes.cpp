#include "FrameBytes.h"

namespace vagent::test {

void AppendBigEndian32(std::vector<std::uint8_t>& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

std::vector<std::uint8_t> RequestBlock(const std::vector<std::uint8_t>& payload) {
    std::vector<std::uint8_t> block;
    AppendBigEndian32(block, static_cast<std::uint32_t>(payload.size()));
    block.insert(block.end(), payload.begin(), payload.end());
    return block;
}

std::vector<std::uint8_t> RequestFrameBytes(std::uint32_t taskId, std::int32_t workEnv,
                                            const std::string& rootSite,
                                            const std::vector<std::uint8_t>& block) {
    std::vector<std::uint8_t> frame;
    AppendBigEndian32(frame, taskId);
    AppendBigEndian32(frame, static_cast<std::uint32_t>(workEnv));
    AppendBigEndian32(frame, static_cast<std::uint32_t>(rootSite.size()));
    frame.insert(frame.end(), rootSite.begin(), rootSite.end());
    AppendBigEndian32(frame, static_cast<std::uint32_t>(block.size()));
    frame.insert(frame.end(), block.begin(), block.end());
    return frame;
}

}  // namespace vagent::test
