#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "files/FileBundleCodecs.h"
#include "files/FileSender.h"
#include "files/IconExtraction.h"
#include "files/ListingCodecs.h"
#include "files/RelayConnection.h"
#include "files/TransferChannel.h"
#include "os/WindowMessages.h"
#include "task/TaskIds.h"
#include "vagent/ErrorCodes.h"
#include "vagent/ResultDecoders.h"
#include "vagent/ResultEncoders.h"
#include "vagent/VFileTask.h"

using namespace vagent::task;

// The service side of the file family: each id's request decoded, its work
// done and its result block made.

namespace {

constexpr std::uint32_t kFirstFamilyId = 28;
constexpr std::uint32_t kLastFamilyId = 47;
constexpr std::size_t kFilesCopyItems = 6;
// What an upload posts to the window that asked for it: WM_COMMAND with the
// upload's command number.
constexpr std::uint32_t kCommandMessage = 273;
constexpr std::uintptr_t kUploadDoneCommand = 0x800F;

// A result: the work's truth value and the block it made, if any.
struct Outcome {
    int truth = 0;
    std::uint8_t* block = nullptr;
    std::uint32_t size = 0;
};

Outcome StringOutcome(int truth, const std::string& text) {
    Outcome outcome;
    outcome.truth = truth;
    if (truth != 0) {
        outcome.truth = VecTStringToResult({text}, outcome.block, outcome.size);
    }
    return outcome;
}

// The acknowledgement block is made whatever the truth value.
Outcome AckOutcome(int truth) {
    Outcome outcome;
    outcome.truth = truth;
    Ack2Result(static_cast<std::uint32_t>(truth), outcome.block, outcome.size);
    return outcome;
}

// The request's strings. An empty payload holds no strings; a missing
// request or a malformed payload fails.
bool DecodeStrings(bool hasPayload, const std::uint8_t* payload, std::uint32_t length,
                   std::vector<std::string>& items) {
    items.clear();
    if (!hasPayload) {
        return false;
    }
    return length == 0 || Data2VecTString(payload, length, items) != 0;
}

bool DecodePairs(bool hasPayload, const std::uint8_t* payload, std::uint32_t length,
                 std::vector<std::string>& first, std::vector<std::string>& second) {
    if (!hasPayload) {
        return false;
    }
    return length == 0 || Data2VecTString2(payload, length, first, second) != 0;
}

Outcome ListDirectory(VFileTask& task, bool decoded, const std::vector<std::string>& items) {
    Outcome outcome;
    std::vector<FileAttrA> entries;
    if (!decoded) {
        return outcome;
    }
    outcome.truth = task.DirList(items.empty() ? std::string() : items.front(), entries);
    if (outcome.truth != 0) {
        vagent::files::VecFileAttr2Result(entries, outcome.block, outcome.size);
    }
    return outcome;
}

Outcome TestExistence(VFileTask& task, bool decoded, const std::vector<std::string>& items) {
    Outcome outcome;
    std::vector<ExistAttr> answers;
    if (!decoded) {
        return outcome;
    }
    outcome.truth = task.IsFileExist(items, answers);
    vagent::files::ExistAttr2Result(answers, outcome.block, outcome.size);
    return outcome;
}

Outcome ExtractIcons(std::uint32_t& errorCode, bool decoded,
                     const std::vector<std::string>& exeFiles,
                     const std::vector<std::string>& iconFiles) {
    Outcome outcome;
    std::vector<std::string> temporaryFiles;
    if (!decoded || !vagent::files::CreateIcons(exeFiles, iconFiles, temporaryFiles, errorCode)) {
        return outcome;
    }
    outcome.truth =
        vagent::files::Files2Result(temporaryFiles, iconFiles, outcome.block, outcome.size);
    return outcome;
}

Outcome ReportVersion(VFileTask& task) {
    int version = 0;
    if (task.GetHostVersion(version) == 0) {
        return Outcome();
    }
    char text[16];
    std::snprintf(text, sizeof text, "%d", version);
    return StringOutcome(1, text);
}

Outcome TestLdapObject(VFileTask& task, bool decoded, const std::vector<std::string>& items) {
    if (!decoded || items.size() < 2) {
        return AckOutcome(0);
    }
    return AckOutcome(task.IsLDAPObjectExist(items[0], std::atoi(items[1].c_str())));
}

Outcome ReportServiceAccount(VFileTask& task, bool decoded, const std::vector<std::string>& items) {
    std::string account;
    if (!decoded || items.empty()) {
        return Outcome();
    }
    return StringOutcome(task.GetServiceUserName(items.front(), account), account);
}

Outcome ChangeServiceAccount(VFileTask& task, bool decoded, const std::vector<std::string>& items) {
    if (!decoded || items.size() < 3) {
        return AckOutcome(0);
    }
    return AckOutcome(task.ChangeServiceUserPasswd(items[0], items[1], items[2]));
}

bool Flag(const std::string& text) {
    return std::atoi(text.c_str()) != 0;
}

// Streams the files from a second agent service and writes them here, each
// under the destination that the request named.
int RelayFiles(VFileTask& task, std::uint32_t& errorCode, const std::vector<std::string>& items) {
    vagent::files::RelayConnection relay;
    const std::uint32_t status =
        relay.SendRequest(items[0], items[1], kFilesCopy, task.GetWorkEnv(),
                          {"", "0", items[2], items[3], Flag(items[4]) ? "1" : "0", "0"});
    if (status != 0) {
        errorCode = status;
        return 0;
    }
    return task.ReceiveTreeUnder(relay.Socket(), items[3], nullptr);
}

// An exhausted allocation fails the work with 8 instead of leaving it.
template <class Work>
int GuardAllocation(std::uint32_t& errorCode, Work work) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        errorCode = vagent::kErrorNotEnoughMemory;
        return 0;
    }
}

int CopyWork(VFileTask& task, std::uint32_t& errorCode, vagent::files::FileSender& sender,
             const std::vector<std::string>& items) {
    if (!items[0].empty()) {
        return RelayFiles(task, errorCode, items);
    }
    if (Flag(items[5])) {
        return task.CopyLocally(items[2], items[3], Flag(items[4]) ? 1 : 0);
    }
    return sender.SendTree(items[2], items[3], Flag(items[4])) ? 1 : 0;
}

// The end frame follows what the walk produced on the same channel, so that
// the requester gets every whole file sent before a failure, then its
// status. Its own failure is not the work's: the requester is gone.
void EndExchange(vagent::files::TransferChannel& channel, std::uint32_t status) {
    std::uint32_t endStatus = 0;
    vagent::files::FileSender ender(channel, endStatus);
    ender.Finish(ender.SendEndFrame(status));
}

// A request that cannot be read still ends the exchange with an end frame,
// so that the requester is not left waiting for frames. The result is the
// work's.
Outcome CopyFiles(VFileTask& task, std::uint32_t& errorCode, std::uintptr_t connection,
                  bool decoded, const std::vector<std::string>& items) {
    Outcome outcome;
    vagent::files::TransferChannel channel(connection, nullptr);
    vagent::files::FileSender sender(channel, errorCode);
    if (!decoded || items.size() < kFilesCopyItems) {
        errorCode = vagent::kErrorInvalidParameter;
    } else {
        outcome.truth =
            GuardAllocation(errorCode, [&] { return CopyWork(task, errorCode, sender, items); });
    }
    EndExchange(channel, errorCode);
    return outcome;
}

Outcome UploadFiles(VFileTask& task, std::uint32_t& errorCode, std::uintptr_t connection,
                    bool decoded, const std::vector<std::string>& items) {
    Outcome outcome;
    if (!decoded) {
        errorCode = vagent::kErrorInvalidParameter;
        task.SendEndFrame(connection, errorCode, nullptr);
        return outcome;
    }
    outcome.truth =
        GuardAllocation(errorCode, [&] { return task.ReceiveTree(connection, nullptr); });
    task.SendEndFrame(connection, errorCode, nullptr);
    const auto window =
        static_cast<std::uintptr_t>(items.empty() ? 0L : std::atol(items.front().c_str()));
    if (window != 0) {
        vagent::os::Installed<vagent::os::WindowMessages>().Post(window, kCommandMessage,
                                                                 kUploadDoneCommand, 0);
    }
    return outcome;
}

// What DoTask hands to the work: the request as it arrived.
struct Request {
    std::uint32_t taskId = 0;
    bool hasPayload = false;
    const std::uint8_t* payload = nullptr;
    std::uint32_t length = 0;
    std::uintptr_t connection = 0;
};

Outcome Dispatch(VFileTask& task, std::uint32_t& errorCode, const Request& request) {
    std::vector<std::string> items;
    std::vector<std::string> second;
    const auto strings = [&] {
        return DecodeStrings(request.hasPayload, request.payload, request.length, items);
    };
    switch (request.taskId) {
        case kDirList:
            return ListDirectory(task, strings(), items);
        case kIsFileExist:
            return TestExistence(task, strings(), items);
        case kCreateIcons:
            return ExtractIcons(
                errorCode,
                DecodePairs(request.hasPayload, request.payload, request.length, items, second),
                items, second);
        case kGetImageDirectory: {
            std::string directory;
            return StringOutcome(task.GetImageDirectory(directory), directory);
        }
        case kGetHostName: {
            std::string name;
            return StringOutcome(task.GetHostName(name), name);
        }
        case kGetHostVersion:
            return ReportVersion(task);
        case kIsProcess32:
            strings();
            return Outcome();
        case kIsLdapObjectExist:
            return TestLdapObject(task, strings(), items);
        case kFilesCopy:
            return CopyFiles(task, errorCode, request.connection, strings(), items);
        case kUploadFiles:
            return UploadFiles(task, errorCode, request.connection, strings(), items);
        case kGetServiceUserName:
            return ReportServiceAccount(task, strings(), items);
        case kChangeServiceUserPasswd:
            return ChangeServiceAccount(task, strings(), items);
        default:
            return Outcome();
    }
}

}  // namespace

// An exhausted allocation anywhere in the work fails the task with 8 and no
// block; the work's own scopes release what they held.
int VFileTask::DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    if (!PrepareResultOutputs(resultData, resultLength, "DoTask : Paramter Error")) {
        return 0;
    }
    if (taskId_ < kFirstFamilyId || taskId_ > kLastFamilyId) {
        return 0;
    }
    Request request;
    request.taskId = taskId_;
    request.hasPayload = RequestPayload(request.payload, request.length);
    request.connection = request_ != nullptr ? request_->connection : 0;
    Outcome outcome;
    try {
        outcome = Dispatch(*this, errorCode_, request);
    } catch (const std::bad_alloc&) {
        errorCode_ = vagent::kErrorNotEnoughMemory;
    }
    *resultData = outcome.block;
    *resultLength = outcome.size;
    return outcome.truth;
}
