#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "files/FileBundleCodecs.h"
#include "files/IconExtraction.h"
#include "files/ListingCodecs.h"
#include "files/RelayConnection.h"
#include "os/WindowMessages.h"
#include "vagent/ErrorCodes.h"
#include "vagent/ResultDecoders.h"
#include "vagent/ResultEncoders.h"
#include "vagent/VFileTask.h"

// The service side of the file family: each id's request decoded, its work
// done and its result block made.

namespace {

enum FileTaskId : std::uint32_t {
    kDirList = 28,
    kIsFileExist = 29,
    kCreateIcons = 30,
    kGetImageDirectory = 31,
    kGetHostName = 34,
    kGetHostVersion = 35,
    kIsProcess32 = 38,
    kIsLdapObjectExist = 39,
    kFilesCopy = 44,
    kUploadFiles = 45,
    kGetServiceUserName = 46,
    kChangeServiceUserPasswd = 47,
};

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

// Streams the files from a second agent service and writes them here.
int RelayFiles(VFileTask& task, std::uint32_t& errorCode, const std::vector<std::string>& items) {
    vagent::files::RelayConnection relay;
    const std::uint32_t status =
        relay.SendRequest(items[0], items[1], kFilesCopy, task.GetWorkEnv(),
                          {"", "0", items[2], items[3], Flag(items[4]) ? "1" : "0", "0"});
    if (status != 0) {
        errorCode = status;
        return 0;
    }
    return task.ReceiveTree(relay.Socket(), nullptr);
}

// A request that cannot be read still ends the exchange with an end frame,
// so that the requester is not left waiting for frames.
Outcome CopyFiles(VFileTask& task, std::uint32_t& errorCode, std::uintptr_t connection,
                  bool decoded, const std::vector<std::string>& items) {
    Outcome outcome;
    if (!decoded || items.size() < kFilesCopyItems) {
        errorCode = vagent::kErrorInvalidParameter;
    } else if (!items[0].empty()) {
        outcome.truth = RelayFiles(task, errorCode, items);
    } else if (Flag(items[5])) {
        outcome.truth = task.CopyLocally(items[2], items[3], Flag(items[4]) ? 1 : 0);
    } else {
        outcome.truth =
            task.SendTree(connection, items[2], items[3], Flag(items[4]) ? 1 : 0, nullptr);
    }
    const int ended = task.SendEndFrame(connection, errorCode, nullptr);
    outcome.truth = outcome.truth != 0 && ended != 0 ? 1 : 0;
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
    outcome.truth = task.ReceiveTree(connection, nullptr);
    task.SendEndFrame(connection, errorCode, nullptr);
    const auto window =
        static_cast<std::uintptr_t>(items.empty() ? 0L : std::atol(items.front().c_str()));
    if (window != 0) {
        vagent::os::Installed<vagent::os::WindowMessages>().Post(window, kCommandMessage,
                                                                 kUploadDoneCommand, 0);
    }
    return outcome;
}

}  // namespace

int VFileTask::DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) {
    if (!PrepareResultOutputs(resultData, resultLength, "DoTask : Paramter Error")) {
        return 0;
    }
    if (taskId_ < kFirstFamilyId || taskId_ > kLastFamilyId) {
        return 0;
    }
    const std::uint8_t* payload = nullptr;
    std::uint32_t length = 0;
    const bool hasPayload = RequestPayload(payload, length);
    const std::uintptr_t connection = request_ != nullptr ? request_->connection : 0;
    std::vector<std::string> items;
    std::vector<std::string> second;
    const auto strings = [&] { return DecodeStrings(hasPayload, payload, length, items); };
    Outcome outcome;
    switch (taskId_) {
        case kDirList:
            outcome = ListDirectory(*this, strings(), items);
            break;
        case kIsFileExist:
            outcome = TestExistence(*this, strings(), items);
            break;
        case kCreateIcons:
            outcome = ExtractIcons(
                errorCode_, DecodePairs(hasPayload, payload, length, items, second), items, second);
            break;
        case kGetImageDirectory: {
            std::string directory;
            outcome = StringOutcome(GetImageDirectory(directory), directory);
            break;
        }
        case kGetHostName: {
            std::string name;
            outcome = StringOutcome(GetHostName(name), name);
            break;
        }
        case kGetHostVersion:
            outcome = ReportVersion(*this);
            break;
        case kIsProcess32:
            strings();
            break;
        case kIsLdapObjectExist:
            outcome = TestLdapObject(*this, strings(), items);
            break;
        case kFilesCopy:
            outcome = CopyFiles(*this, errorCode_, connection, strings(), items);
            break;
        case kUploadFiles:
            outcome = UploadFiles(*this, errorCode_, connection, strings(), items);
            break;
        case kGetServiceUserName:
            outcome = ReportServiceAccount(*this, strings(), items);
            break;
        case kChangeServiceUserPasswd:
            outcome = ChangeServiceAccount(*this, strings(), items);
            break;
        default:
            break;
    }
    *resultData = outcome.block;
    *resultLength = outcome.size;
    return outcome.truth;
}
