#include "files/FileSender.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>

#include "files/FileStatus.h"
#include "files/TransferFrame.h"
#include "os/FileSystem.h"
#include "os/ScopedFindHandle.h"
#include "support/TextCompare.h"
#include "vagent/ErrorCodes.h"

namespace vagent::files {
namespace {

// How much of a file is read at once when no hook has to see each piece.
constexpr std::uint32_t kBulkRead = 256 * 1024;

bool IsDotEntry(const std::string& name) {
    return CompareIgnoringCase(name, ".") == 0 || CompareIgnoringCase(name, "..") == 0;
}

std::uint32_t PieceCount(std::uint32_t size, std::uint32_t blockSize) {
    return blockSize == 0 ? 0 : size / blockSize + (size % blockSize != 0 ? 1 : 0);
}

}  // namespace

FileSender::FileSender(TransferChannel& channel, std::uint32_t& errorCode)
    : channel_(channel), errorCode_(errorCode) {}

bool FileSender::Fail(std::uint32_t status) {
    errorCode_ = status;
    return false;
}

bool FileSender::SendFrame(std::uint32_t size, std::uint32_t attributes, std::uint32_t blockSize,
                           const std::string& name) {
    try {
        VByteStream frame(kFrameStreamStep, kFrameStreamStep);
        if (!BuildFrame(frame, size, attributes, blockSize, name)) {
            return Fail(kErrorNotEnoughMemory);
        }
        return channel_.SendFrame(frame.Data(), frame.Used()) || Fail(channel_.Status());
    } catch (...) {
        return Fail(kErrorNotEnoughMemory);
    }
}

// What was produced before a failure goes out all the same, so that the
// receiver gets every whole file sent before it and then the end frame.
bool FileSender::Finish(bool sent) {
    const bool flushed = channel_.Flush();
    return sent && (flushed || Fail(channel_.Status()));
}

bool FileSender::SendEndFrame(std::uint32_t status) {
    return SendFrame(kEndFrameSize, 0, status, std::string());
}

// The source is opened before its frame goes out, so that a file that cannot
// be read never leaves a frame without its contents on the connection.
bool FileSender::SendFile(const std::string& source, const std::string& destination) {
    os::FileSystem& files = os::Files();
    os::FileAttributeData data;
    const std::uint32_t status = files.AttributesEx(source, data);
    if (status != 0) {
        return Fail(status);
    }
    if ((data.attributes & os::kFileAttributeDirectory) != 0) {
        return Fail(kErrorInvalidParameter);
    }
    const auto size = static_cast<std::uint32_t>(data.size);
    const std::uint32_t blockSize = std::min(size, kLargestPiece);
    std::FILE* file = files.Open(source, "rb");
    if (file == nullptr) {
        return Fail(StatusOfErrno(errno));
    }
    const bool sent = SendFrame(size, data.attributes, blockSize, destination) &&
                      SendContents(file, size, blockSize);
    std::fclose(file);
    return sent;
}

bool FileSender::SendContents(std::FILE* file, std::uint32_t size, std::uint32_t blockSize) {
    return channel_.Hooked() ? SendPieces(file, size, blockSize) : SendInBulk(file, size);
}

bool FileSender::SendPieces(std::FILE* file, std::uint32_t size, std::uint32_t blockSize) {
    std::uint8_t piece[kLargestPiece];
    std::uint32_t remaining = size;
    for (std::uint32_t index = PieceCount(size, blockSize); index > 0; --index) {
        const std::uint32_t wanted = std::min(remaining, blockSize);
        if (std::fread(piece, 1, wanted, file) != wanted) {
            return Fail(StatusOfShortRead(file, errno));
        }
        if (!channel_.MaySend(wanted)) {
            errorCode_ = os::Files().LastError();
        }
        if (!channel_.SendContent(piece, wanted)) {
            return Fail(channel_.Status());
        }
        remaining -= wanted;
    }
    return true;
}

bool FileSender::SendInBulk(std::FILE* file, std::uint32_t size) {
    const std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow)
                                                     std::uint8_t[std::min(size, kBulkRead)]);
    if (!buffer && size != 0) {
        return Fail(kErrorNotEnoughMemory);
    }
    for (std::uint32_t remaining = size; remaining > 0;) {
        const std::uint32_t wanted = std::min(remaining, kBulkRead);
        if (std::fread(buffer.get(), 1, wanted, file) != wanted) {
            return Fail(StatusOfShortRead(file, errno));
        }
        if (!channel_.SendContent(buffer.get(), wanted)) {
            return Fail(channel_.Status());
        }
        remaining -= wanted;
    }
    return true;
}

bool FileSender::SendTree(const std::string& source, const std::string& destination,
                          bool recursive) {
    std::uint32_t attributes = 0;
    const std::uint32_t status = os::Files().Attributes(source, attributes);
    if (status != 0) {
        return Fail(status);
    }
    if ((attributes & os::kFileAttributeDirectory) == 0) {
        return SendFile(source, destination);
    }
    return SendFrame(0, attributes, 0, destination) &&
           SendDirectoryEntries(source, destination, recursive);
}

bool FileSender::SendDirectoryEntries(const std::string& source, const std::string& destination,
                                      bool recursive) {
    os::ScopedFindHandle search(os::Files());
    os::FindEntry entry;
    const std::uint32_t status = search.First(source + "\\*.*", entry);
    if (status != 0) {
        return Fail(status);
    }
    bool succeeded = true;
    do {
        if (IsDotEntry(entry.name)) {
            continue;
        }
        const std::string from = source + "\\" + entry.name;
        const std::string to = destination + "\\" + entry.name;
        if ((entry.attributes & os::kFileAttributeDirectory) == 0) {
            succeeded = SendFile(from, to);
        } else if (recursive) {
            succeeded = SendTree(from, to, recursive);
        }
    } while (succeeded && search.Next(entry) == 0);
    return succeeded;
}

}  // namespace vagent::files
