#include "vagent/VFileTask.h"

// The family's operations, shared by the service side, the client side of a
// transfer and the facade's local path.

#include <string>
#include <vector>

#include "files/DirectoryListing.h"
#include "files/FileReceiver.h"
#include "files/FileSender.h"
#include "files/HostInformation.h"
#include "files/IconExtraction.h"
#include "files/LdapObjectTest.h"
#include "files/LocalCopy.h"
#include "files/ServiceAccount.h"
#include "files/TransferChannel.h"
#include "files/VersionCode.h"
#include "os/VersionInfo.h"

VFileTask::VFileTask(std::uint32_t taskId) : VTask(taskId) {}

int VFileTask::DirList(const std::string& path, std::vector<FileAttrA>& entries) {
    return vagent::files::DirList(path, entries);
}

int VFileTask::IsFileExist(const std::vector<std::string>& paths, std::vector<ExistAttr>& answers) {
    return vagent::files::IsFileExist(paths, answers);
}

int VFileTask::SendTree(std::uintptr_t socket, const std::string& source,
                        const std::string& destination, int recursive, HTTP_FUN* callbacks) {
    vagent::files::TransferChannel channel(socket, callbacks);
    vagent::files::FileSender sender(channel, errorCode_);
    return sender.Finish(sender.SendTree(source, destination, recursive != 0)) ? 1 : 0;
}

int VFileTask::SendFile(std::uintptr_t socket, const std::string& source,
                        const std::string& destination, HTTP_FUN* callbacks) {
    vagent::files::TransferChannel channel(socket, callbacks);
    vagent::files::FileSender sender(channel, errorCode_);
    return sender.Finish(sender.SendFile(source, destination)) ? 1 : 0;
}

int VFileTask::SendEndFrame(std::uintptr_t socket, std::uint32_t status, HTTP_FUN* callbacks) {
    vagent::files::TransferChannel channel(socket, callbacks);
    vagent::files::FileSender sender(channel, errorCode_);
    return sender.Finish(sender.SendEndFrame(status)) ? 1 : 0;
}

int VFileTask::ReceiveFrame(std::uintptr_t socket, FileFrameHeader& header, HTTP_FUN* callbacks) {
    vagent::files::TransferChannel channel(socket, callbacks);
    vagent::files::FileReceiver receiver(channel, errorCode_);
    return receiver.ReceiveFrame(header);
}

int VFileTask::ReceiveFileContents(std::uintptr_t socket, const FileFrameHeader& header,
                                   HTTP_FUN* callbacks) {
    vagent::files::TransferChannel channel(socket, callbacks);
    vagent::files::FileReceiver receiver(channel, errorCode_);
    return receiver.ReceiveFileContents(header) ? 1 : 0;
}

int VFileTask::ReceiveTree(std::uintptr_t socket, HTTP_FUN* callbacks) {
    vagent::files::TransferChannel channel(socket, callbacks);
    vagent::files::FileReceiver receiver(channel, errorCode_);
    return receiver.ReceiveTree() ? 1 : 0;
}

int VFileTask::ReceiveTreeUnder(std::uintptr_t socket, const std::string& destinationRoot,
                                HTTP_FUN* callbacks) {
    vagent::files::TransferChannel channel(socket, callbacks);
    vagent::files::FileReceiver receiver(channel, errorCode_);
    receiver.KeepUnder(destinationRoot);
    return receiver.ReceiveTree() ? 1 : 0;
}

int VFileTask::CopyLocally(const std::string& source, const std::string& destination,
                           int recursive) {
    return vagent::files::CopyLocally(source, destination, recursive != 0, errorCode_) ? 1 : 0;
}

int VFileTask::CreateIcons(const std::vector<std::string>& exeFiles,
                           const std::vector<std::string>& iconFiles) {
    std::vector<std::string> temporaryFiles;
    return vagent::files::CreateIcons(exeFiles, iconFiles, temporaryFiles, errorCode_) ? 1 : 0;
}

int VFileTask::GetImageDirectory(std::string& directory) {
    directory = vagent::files::ImageDirectory();
    return 1;
}

int VFileTask::GetHostName(std::string& name) {
    errorCode_ = vagent::files::HostName(name);
    return errorCode_ == 0 ? 1 : 0;
}

int VFileTask::GetHostVersion(int& version) {
    vagent::os::VersionRecord record;
    errorCode_ = vagent::os::Installed<vagent::os::VersionInfo>().Version(record);
    if (errorCode_ != 0) {
        return 0;
    }
    version = vagent::files::VersionCode(record);
    return 1;
}

int VFileTask::GetServiceUserName(const std::string& service, std::string& user) {
    bool hasAccount = false;
    const bool queried = vagent::files::QueryServiceAccount(service, user, hasAccount, errorCode_);
    return queried && hasAccount ? 1 : 0;
}

int VFileTask::ChangeServiceUserPasswd(const std::string& service, const std::string& account,
                                       const std::string& password) {
    return vagent::files::ChangeServiceAccount(service, account, password, errorCode_) ? 1 : 0;
}

int VFileTask::IsLDAPObjectExist(const std::string& path, int kind) {
    return vagent::files::IsLdapObjectPresent(path, kind, errorCode_) ? 1 : 0;
}
