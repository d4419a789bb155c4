#pragma once

#include <cstdint>
#include <string>

#include "files/TransferChannel.h"

namespace vagent::files {

// The sending side of a streamed transfer: file frames with their contents,
// directory frames, and the end frame. A failure leaves its status in the
// error code it was given.
class FileSender {
public:
    FileSender(TransferChannel& channel, std::uint32_t& errorCode);

    bool SendTree(const std::string& source, const std::string& destination, bool recursive);
    bool SendFile(const std::string& source, const std::string& destination);
    bool SendEndFrame(std::uint32_t status);
    // Sends what the channel has gathered, also after a send that failed, so
    // that nothing produced before a failure is lost; the result is the whole
    // operation's.
    bool Finish(bool sent);

private:
    bool SendFrame(std::uint32_t size, std::uint32_t attributes, std::uint32_t blockSize,
                   const std::string& name);
    bool SendContents(std::FILE* file, std::uint32_t size, std::uint32_t blockSize);
    bool SendPieces(std::FILE* file, std::uint32_t size, std::uint32_t blockSize);
    bool SendInBulk(std::FILE* file, std::uint32_t size);
    bool SendDirectoryEntries(const std::string& source, const std::string& destination,
                              bool recursive);
    bool Fail(std::uint32_t status);

    TransferChannel& channel_;
    std::uint32_t& errorCode_;
};

}  // namespace vagent::files
