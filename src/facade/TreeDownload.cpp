#include "facade/TreeDownload.h"

#include <utility>

#include "facade/ReceivedPath.h"
#include "files/DirectoryCreation.h"
#include "vagent/ErrorCodes.h"

namespace vagent::facade {
namespace {

constexpr std::uint32_t kDirectoryAttribute = 0x10;
enum FrameKind { kFailed = 0, kFileOrDirectory = 1, kEnd = 2 };

}  // namespace

TreeDownload::TreeDownload(std::uintptr_t connection, HTTP_FUN* callbacks, std::string destination)
    : task_(0),
      connection_(connection),
      callbacks_(callbacks),
      destination_(std::move(destination)) {}

// A failure that left no status of its own is a broken stream.
std::uint32_t TreeDownload::TaskCode() const {
    return task_.GetErrorCode() != 0 ? task_.GetErrorCode() : kErrorNetReceiveData;
}

bool TreeDownload::Run(std::uint32_t& code) {
    for (;;) {
        FileFrameHeader header;
        const int kind = task_.ReceiveFrame(connection_, header, callbacks_);
        if (kind == kEnd) {
            code = 0;
            return true;
        }
        if (kind == kFailed) {
            code = TaskCode();
            return false;
        }
        if (!ApplyFrame(header, code)) {
            return false;
        }
    }
}

bool TreeDownload::ApplyFrame(const FileFrameHeader& header, std::uint32_t& code) {
    if (!LiesUnder(header.name, destination_)) {
        code = kErrorInvalidParameter;
        return false;
    }
    if ((header.attributes & kDirectoryAttribute) != 0) {
        code = files::CreateDirectoryAccepted(header.name);
        return code == 0;
    }
    if (task_.ReceiveFileContents(connection_, header, callbacks_) == 0) {
        code = TaskCode();
        return false;
    }
    return true;
}

}  // namespace vagent::facade
