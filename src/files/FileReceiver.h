#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "files/TransferChannel.h"
#include "vagent/VFileTask.h"

namespace vagent::files {

// The receiving side of a streamed transfer: frames, file contents and whole
// trees, written where each frame's name says. A failure leaves its status in
// the error code it was given.
class FileReceiver {
public:
    enum FrameKind { kFailed = 0, kFileOrDirectory = 1, kEnd = 2 };

    FileReceiver(TransferChannel& channel, std::uint32_t& errorCode);

    // From now on every frame's name must lie under the root (see
    // LiesUnder); another name fails the transfer with 0xE6000001 before
    // anything of it is written.
    void KeepUnder(const std::string& destinationRoot);

    FrameKind ReceiveFrame(FileFrameHeader& header);
    bool ReceiveFileContents(const FileFrameHeader& header);
    bool ReceiveTree();

private:
    bool ReceiveFrameBody(std::uint32_t length, FileFrameHeader& header, std::uint32_t& blockField);
    void PrepareTarget(const std::string& name);
    bool ReceivePieces(std::FILE* file, const FileFrameHeader& header);
    bool ReceiveInBulk(std::FILE* file, std::uint32_t size);
    bool ApplyFrame(const FileFrameHeader& header);
    bool Admits(const std::string& name) const;
    bool Fail(std::uint32_t status);

    TransferChannel& channel_;
    std::uint32_t& errorCode_;
    bool rooted_ = false;
    std::string root_;
};

}  // namespace vagent::files
