#include "files/TransferFrame.h"

namespace vagent::files {

bool BuildFrame(VByteStream& frame, std::uint32_t size, std::uint32_t attributes,
                std::uint32_t blockSize, const std::string& name) {
    return frame.PutDword(size) != 0 && frame.PutDword(attributes) != 0 &&
           frame.PutDword(blockSize) != 0 && frame.PutString(name) != 0;
}

bool ParseFrame(VByteStream& frame, FileFrameHeader& header, std::uint32_t& blockField) {
    std::uint32_t size = 0;
    std::uint32_t attributes = 0;
    std::string name;
    if (frame.GetDword(size) == 0 || frame.GetDword(attributes) == 0 ||
        frame.GetDword(blockField) == 0 || frame.GetString(name) == 0) {
        return false;
    }
    header.size = size;
    header.attributes = attributes;
    header.blockSize = static_cast<std::uint16_t>(blockField);
    header.name = name;
    return true;
}

}  // namespace vagent::files
