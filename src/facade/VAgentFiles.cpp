#include "vagent/VAgent.h"

// Listing, existence, icons and host facts: with a host they go to the agent
// service as tasks 28 to 31, 34, 35, 38, 39, 46 and 47, without one the file
// family's operations run here.

#include "facade/LocalTask.h"
#include "facade/RemoteCall.h"
#include "facade/Shield.h"
#include "files/IconExtraction.h"
#include "task/TaskIds.h"
#include "vagent/VFileTask.h"

using namespace vagent::task;

using vagent::facade::CallerConnection;
using vagent::facade::CodeZeroCall;
using vagent::facade::RequestBlock;
using vagent::facade::Shielded;

namespace {

using LocalFileTask = vagent::facade::LocalTask<VFileTask>;

// The icons are extracted to the temporary directory, as the service does,
// and then put where the caller asked for them.
int CreateIconsHere(int workEnv, const std::vector<std::string>& exeFiles,
                    const std::vector<std::string>& iconFiles) {
    LocalFileTask task(workEnv);
    std::vector<std::string> temporaryFiles;
    std::uint32_t errorCode = 0;
    if (!vagent::files::CreateIcons(exeFiles, iconFiles, temporaryFiles, errorCode)) {
        return 0;
    }
    for (std::size_t i = 0; i < temporaryFiles.size() && i < iconFiles.size(); ++i) {
        if (temporaryFiles[i] != iconFiles[i] &&
            task.CopyLocally(temporaryFiles[i], iconFiles[i], 0) == 0) {
            return 0;
        }
    }
    return 1;
}

}  // namespace

int VAgent::DirList(const std::string& path, std::vector<FileAttrA>& entries) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalFileTask(workEnv_).DirList(path, entries);
        }
        return CodeZeroCall(Target(), errorCode_, kDirList, RequestBlock::List({path}), &entries);
    });
}

int VAgent::IsFileExist(std::vector<std::string>& paths, std::vector<ExistAttr>& answers,
                        unsigned int connection, HTTP_FUN* callbacks) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalFileTask(workEnv_).IsFileExist(paths, answers);
        }
        return CodeZeroCall(Target(), errorCode_, kIsFileExist, RequestBlock::List(paths), &answers,
                            CallerConnection(connection, callbacks));
    });
}

// Remotely the service sends the icon files back and they are written at
// the icon paths here.
int VAgent::CreateIcons(std::vector<std::string>& exeFiles, std::vector<std::string>& iconFiles) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return CreateIconsHere(workEnv_, exeFiles, iconFiles);
        }
        int written = 0;
        return CodeZeroCall(Target(), errorCode_, kCreateIcons,
                            RequestBlock::Pairs(exeFiles, iconFiles), &written);
    });
}

int VAgent::GetImageDirectory(std::string& directory) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalFileTask(workEnv_).GetImageDirectory(directory);
        }
        return CodeZeroCall(Target(), errorCode_, kGetImageDirectory, RequestBlock::None(),
                            &directory);
    });
}

int VAgent::GetHostName(std::string& name) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalFileTask(workEnv_).GetHostName(name);
        }
        return CodeZeroCall(Target(), errorCode_, kGetHostName, RequestBlock::None(), &name);
    });
}

// Locally the answer is 0 even when the version was read: callers have
// always looked at the version alone.
int VAgent::GetHostVersion(int& version) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            LocalFileTask(workEnv_).GetHostVersion(version);
            return 0;
        }
        return CodeZeroCall(Target(), errorCode_, kGetHostVersion, RequestBlock::None(), &version);
    });
}

// No check of another process's image is made on this machine either: the
// answer is 0 with result untouched, as the service answers.
int VAgent::IsProcess32(std::string& name, int& result) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return 0;
        }
        return CodeZeroCall(Target(), errorCode_, kIsProcess32, RequestBlock::List({name}),
                            &result);
    });
}

int VAgent::IsLDAPObjectExist(const std::string& path, int flag) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalFileTask(workEnv_).IsLDAPObjectExist(path, flag);
        }
        int exists = 0;
        return CodeZeroCall(Target(), errorCode_, kIsLdapObjectExist,
                            RequestBlock::List({path, vagent::facade::FlagText(flag)}), &exists);
    });
}

int VAgent::GetServiceUserName(std::string& service, std::string& user) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalFileTask(workEnv_).GetServiceUserName(service, user);
        }
        return CodeZeroCall(Target(), errorCode_, kGetServiceUserName,
                            RequestBlock::List({service}), &user);
    });
}

// Remotely the answer is whether a well-formed acknowledgement arrived.
int VAgent::ChangeServiceUserPasswd(std::string& service, std::string& account,
                                    std::string& password) {
    return Shielded(0, RemoteErrorCode(), [&] {
        if (!IsRemote()) {
            return LocalFileTask(workEnv_).ChangeServiceUserPasswd(service, account, password);
        }
        int acknowledged = 0;
        const int answered =
            CodeZeroCall(Target(), errorCode_, kChangeServiceUserPasswd,
                         RequestBlock::List({service, account, password}), &acknowledged);
        return answered != 0 ? acknowledged : 0;
    });
}
