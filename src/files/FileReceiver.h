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

    FrameKind ReceiveFrame(FileFrameHeader& header);
    bool ReceiveFileContents(const FileFrameHeader& header);
    bool ReceiveTree();

private:
    bool ReceiveFrameBody(std::uint32_t length, FileFrameHeader& header, std::uint32_t& blockField);
    void PrepareTarget(const std::string& name);
    bool ReceivePieces(std::FILE* file, const FileFrameHeader& header);
    bool ReceiveInBulk(std::FILE* file, std::uint32_t size);
    bool ApplyFrame(const FileFrameHeader& header);
    bool Fail(std::uint32_t status);

    TransferChannel& channel_;
    std::uint32_t& errorCode_;
};

}  // namespace vagent::files
