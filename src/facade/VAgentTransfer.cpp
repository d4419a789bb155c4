#include "vagent/VAgent.h"

// The streamed copies: FilesCopy (task 44) brings a tree from the service's
// host, or has the service copy between two of its own paths; UploadFiles
// (task 45) sends a tree from here. After the request, the transfer frames
// run on the same connection, and the service's end frame decides the
// outcome.

#include "facade/LocalTask.h"
#include "facade/RemoteCall.h"
#include "facade/Shield.h"
#include "os/WindowMessages.h"
#include "support/TextCompare.h"
#include "task/TaskIds.h"
#include "vagent/VFileTask.h"

using vagent::facade::CallerConnection;
using vagent::facade::DecimalText;
using vagent::facade::FlagText;
using vagent::facade::RemoteCall;
using vagent::facade::RequestBlock;
using vagent::facade::Shielded;

namespace {

// The window hears of an upload as the service tells its own window.
constexpr std::uint32_t kCommandMessage = 273;
constexpr std::uintptr_t kUploadDoneCommand = 0x800F;
constexpr int kWholeTree = 1;

void TellWindow(HWND window) {
    if (window != nullptr) {
        vagent::os::Installed<vagent::os::WindowMessages>().Post(
            reinterpret_cast<std::uintptr_t>(window), kCommandMessage, kUploadDoneCommand, 0);
    }
}

// Waits for the service's end frame; its status becomes the code.
bool ReceiveEndFrame(VFileTask& task, std::uintptr_t connection, HTTP_FUN* callbacks,
                     std::uint32_t& code) {
    FileFrameHeader header;
    const int kind = task.ReceiveFrame(connection, header, callbacks);
    code = kind == 2 ? 0 : task.GetErrorCode();
    if (kind == 1 || (kind == 0 && code == 0)) {
        code = vagent::kErrorNetReceiveData;
    }
    return kind == 2;
}

}  // namespace

int VAgent::FilesCopy(std::string& source, std::string& target, int recursive, int local,
                      unsigned int connection, HTTP_FUN* callbacks) {
    return Shielded(0, &errorCode_, [&] {
        if (!IsRemote()) {
            vagent::facade::LocalTask<VFileTask> task(workEnv_);
            const int copied = task.CopyLocally(source, target, recursive);
            errorCode_ = task.GetErrorCode();
            return copied;
        }
        const std::string relay =
            vagent::EqualsIgnoringCase(filesCopySite_, HostText()) ? std::string() : filesCopySite_;
        RemoteCall call(Target(), errorCode_);
        const RequestBlock request =
            RequestBlock::List({relay, DecimalText(filesCopyNumber_), source, target,
                                FlagText(recursive), FlagText(local)});
        if (!call.Send(vagent::task::kFilesCopy, request,
                       CallerConnection(connection, callbacks))) {
            return 0;
        }
        VFileTask task(0);
        const int received = task.ReceiveTreeUnder(call.Connection(), target, callbacks);
        errorCode_ = task.GetErrorCode();
        return received;
    });
}

int VAgent::UploadFiles(std::string& source, std::string& destination, int remoteWindow,
                        unsigned int connection, HWND window, HTTP_FUN* callbacks) {
    const int uploaded = Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            vagent::facade::LocalTask<VFileTask> task(workEnv_);
            return task.CopyLocally(source, destination, kWholeTree);
        }
        RemoteCall call(Target(), errorCode_);
        if (!call.Send(vagent::task::kUploadFiles, RequestBlock::List({DecimalText(remoteWindow)}),
                       CallerConnection(connection, callbacks))) {
            return 0;
        }
        VFileTask task(0);
        const std::uintptr_t stream = call.Connection();
        task.SendTree(stream, source, destination, kWholeTree, callbacks);
        task.SendEndFrame(stream, task.GetErrorCode(), callbacks);
        return ReceiveEndFrame(task, stream, callbacks, errorCode_) ? 1 : 0;
    });
    TellWindow(window);
    return uploaded;
}
