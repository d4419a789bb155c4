#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/Export.h"
#include "vagent/FileRecords.h"
#include "vagent/HttpFun.h"
#include "vagent/VTask.h"

// What the receiver keeps of a transfer frame.
struct FileFrameHeader {
    std::uint32_t size = 0;
    std::uint32_t attributes = 0;
    std::uint16_t blockSize = 0;
    std::string name;
};

// The file and host task family: listing and existence (ids 28, 29), icons
// (30), host facts (31, 34, 35, 38), the directory-object test (39), the
// streamed transfers (44, 45) and the service account (46, 47). Its
// operations are public so that the facade's local path and the client side
// of a transfer run the same code as the service. A failing system call
// leaves its status in the task's error code.
class VAGENT_API VFileTask : public VTask {
public:
    explicit VFileTask(std::uint32_t taskId);

    int Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) override;
    int DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) override;

    int DirList(const std::string& path, std::vector<FileAttrA>& entries);
    int IsFileExist(const std::vector<std::string>& paths, std::vector<ExistAttr>& answers);

    int SendTree(std::uintptr_t socket, const std::string& source, const std::string& destination,
                 int recursive, HTTP_FUN* callbacks);
    int SendFile(std::uintptr_t socket, const std::string& source, const std::string& destination,
                 HTTP_FUN* callbacks);
    int SendEndFrame(std::uintptr_t socket, std::uint32_t status, HTTP_FUN* callbacks);
    // 0 failure, 1 a file or directory frame, 2 an end frame with status 0.
    int ReceiveFrame(std::uintptr_t socket, FileFrameHeader& header, HTTP_FUN* callbacks);
    int ReceiveFileContents(std::uintptr_t socket, const FileFrameHeader& header,
                            HTTP_FUN* callbacks);
    int ReceiveTree(std::uintptr_t socket, HTTP_FUN* callbacks);
    // ReceiveTree for a caller that named where the files are to go: a frame
    // whose name does not lie under destinationRoot (resolved, compared
    // without regard to case) fails the transfer with 0xE6000001 before
    // anything of it is written.
    int ReceiveTreeUnder(std::uintptr_t socket, const std::string& destinationRoot,
                         HTTP_FUN* callbacks);
    int CopyLocally(const std::string& source, const std::string& destination, int recursive);

    int CreateIcons(const std::vector<std::string>& exeFiles,
                    const std::vector<std::string>& iconFiles);
    int GetImageDirectory(std::string& directory);
    int GetHostName(std::string& name);
    int GetHostVersion(int& version);
    int GetServiceUserName(const std::string& service, std::string& user);
    int ChangeServiceUserPasswd(const std::string& service, const std::string& account,
                                const std::string& password);
    int IsLDAPObjectExist(const std::string& path, int kind);
};
