#include "files/FileReceiver.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <vector>

#include "files/DirectoryCreation.h"
#include "files/FileStatus.h"
#include "files/PathContainment.h"
#include "files/TransferFrame.h"
#include "os/FileSystem.h"
#include "task/ByteOrder.h"
#include "vagent/ErrorCodes.h"

namespace vagent::files {
namespace {

constexpr std::uint32_t kLengthFieldSize = 4;
// How much content is taken from the connection at once when no hook has to
// see each piece.
constexpr std::uint32_t kBulkReceive = 256 * 1024;

}  // namespace

FileReceiver::FileReceiver(TransferChannel& channel, std::uint32_t& errorCode)
    : channel_(channel), errorCode_(errorCode) {}

void FileReceiver::KeepUnder(const std::string& destinationRoot) {
    rooted_ = true;
    root_ = destinationRoot;
}

bool FileReceiver::Admits(const std::string& name) const {
    return !rooted_ || LiesUnder(root_, name);
}

bool FileReceiver::Fail(std::uint32_t status) {
    errorCode_ = status;
    return false;
}

FileReceiver::FrameKind FileReceiver::ReceiveFrame(FileFrameHeader& header) {
    std::uint8_t prefix[kLengthFieldSize];
    if (!channel_.ReceiveExactly(prefix, kLengthFieldSize)) {
        Fail(channel_.Status());
        return kFailed;
    }
    const std::uint32_t length = ReadLittleEndian32(prefix);
    std::uint32_t blockField = 0;
    if (!ReceiveFrameBody(length, header, blockField)) {
        return kFailed;
    }
    if (header.size != kEndFrameSize) {
        return kFileOrDirectory;
    }
    errorCode_ = blockField;
    return blockField == 0 ? kEnd : kFailed;
}

// A length beyond any frame's is not believed: nothing is allocated for it.
bool FileReceiver::ReceiveFrameBody(std::uint32_t length, FileFrameHeader& header,
                                    std::uint32_t& blockField) {
    if (length > kLargestFrame) {
        return Fail(kErrorNetReceiveDataLength);
    }
    const std::unique_ptr<std::uint8_t[]> body(new (std::nothrow) std::uint8_t[length]);
    if (!body) {
        return Fail(kErrorNotEnoughMemory);
    }
    if (!channel_.ReceiveExactly(body.get(), length)) {
        return Fail(channel_.Status());
    }
    try {
        VByteStream frame(length, kFrameStreamStep);
        if (frame.PutBytes(body.get(), length) == 0 || !ParseFrame(frame, header, blockField)) {
            return Fail(kErrorNetReceiveData);
        }
        return true;
    } catch (...) {
        return Fail(kErrorNotEnoughMemory);
    }
}

void FileReceiver::PrepareTarget(const std::string& name) {
    os::FileSystem& files = os::Files();
    const std::size_t cut = name.rfind('\\');
    if (cut != std::string::npos) {
        const std::string parent = name.substr(0, cut);
        std::uint32_t attributes = 0;
        if (files.Attributes(parent, attributes) != 0) {
            files.CreateDirectoryTree(parent);
        }
    }
    if (files.Exists(name)) {
        files.SetAttributes(name, 0);
    }
}

bool FileReceiver::ReceiveFileContents(const FileFrameHeader& header) {
    if (header.name.empty()) {
        return Fail(kErrorInvalidParameter);
    }
    PrepareTarget(header.name);
    os::FileSystem& files = os::Files();
    std::FILE* file = files.Open(header.name, "wb");
    if (file == nullptr) {
        return Fail(StatusOfErrno(errno));
    }
    bool succeeded = true;
    if (header.blockSize != 0) {
        succeeded =
            channel_.Hooked() ? ReceivePieces(file, header) : ReceiveInBulk(file, header.size);
    }
    if (std::fclose(file) != 0 && succeeded) {
        succeeded = Fail(StatusOfErrno(errno));
    }
    if (succeeded) {
        files.SetAttributes(header.name, header.attributes);
    }
    return succeeded;
}

// A block size beyond a piece's is refused: the pieces are received into a
// buffer of one piece. A failed piece fails the file, and the pieces after it
// are still taken from the connection while it can still deliver them; a
// size read from the network never keeps the loop going on a dead one.
bool FileReceiver::ReceivePieces(std::FILE* file, const FileFrameHeader& header) {
    if (header.blockSize > kLargestPiece) {
        return Fail(kErrorNetReceiveData);
    }
    std::uint8_t piece[kLargestPiece];
    bool succeeded = true;
    for (std::uint32_t remaining = header.size; remaining > 0;) {
        const std::uint32_t wanted = std::min<std::uint32_t>(remaining, header.blockSize);
        if (!channel_.ReceiveExactly(piece, wanted)) {
            succeeded = Fail(channel_.Status());
            if (!channel_.CanStillDeliver()) {
                return false;
            }
        } else if (std::fwrite(piece, 1, wanted, file) != wanted) {
            succeeded = Fail(StatusOfErrno(errno));
        }
        remaining -= wanted;
    }
    return succeeded;
}

// Without hooks the pieces are taken in large receives. A receive that fails
// ends the file at once: the connection has nothing more to give.
bool FileReceiver::ReceiveInBulk(std::FILE* file, std::uint32_t size) {
    const std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow)
                                                     std::uint8_t[std::min(size, kBulkReceive)]);
    if (!buffer && size != 0) {
        return Fail(kErrorNotEnoughMemory);
    }
    for (std::uint32_t remaining = size; remaining > 0;) {
        const std::uint32_t wanted = std::min(remaining, kBulkReceive);
        if (!channel_.ReceiveExactly(buffer.get(), wanted)) {
            return Fail(channel_.Status());
        }
        if (std::fwrite(buffer.get(), 1, wanted, file) != wanted) {
            return Fail(StatusOfErrno(errno));
        }
        remaining -= wanted;
    }
    return true;
}

bool FileReceiver::ApplyFrame(const FileFrameHeader& header) {
    if (!Admits(header.name)) {
        return Fail(kErrorInvalidParameter);
    }
    if ((header.attributes & os::kFileAttributeDirectory) == 0) {
        return ReceiveFileContents(header);
    }
    const std::uint32_t status = CreateDirectoryAccepted(header.name);
    return status == 0 || Fail(status);
}

bool FileReceiver::ReceiveTree() {
    for (;;) {
        FileFrameHeader header;
        const FrameKind kind = ReceiveFrame(header);
        if (kind == kEnd) {
            return true;
        }
        if (kind == kFailed || !ApplyFrame(header)) {
            break;
        }
    }
    if (errorCode_ == 0) {
        errorCode_ = kErrorNetReceiveData;
    }
    return false;
}

}  // namespace vagent::files
