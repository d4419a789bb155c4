#include "vagent/VAgentW.h"

#include "accounts/TextConversion.h"
#include "facade/VAgentWCall.h"
#include "facade/WideText.h"

int VAgentW::DirList(const std::wstring& path, std::vector<FileAttrW>& entries) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<FileAttrA> found;
        const int result = agent.DirList(Narrow(path), found);
        ReplaceWithWidened(found, entries);
        return result;
    });
}

// The answers carry no text, so the caller's list is handed on as it is.
int VAgentW::IsFileExist(std::vector<std::wstring>& paths, std::vector<ExistAttr>& answers,
                         unsigned int connection, HTTP_FUN* callbacks) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowPaths = NarrowList(paths);
        return agent.IsFileExist(narrowPaths, answers, connection, callbacks);
    });
}

int VAgentW::CreateIcons(std::vector<std::wstring>& exeFiles,
                         std::vector<std::wstring>& iconFiles) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::vector<std::string> narrowExeFiles = NarrowList(exeFiles);
        std::vector<std::string> narrowIconFiles = NarrowList(iconFiles);
        return agent.CreateIcons(narrowExeFiles, narrowIconFiles);
    });
}

int VAgentW::GetImageDirectory(std::wstring& directory) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrow;
        const int result = agent.GetImageDirectory(narrow);
        ::string2wstring(narrow, directory);
        return result;
    });
}

int VAgentW::GetHostName(std::wstring& name) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrow;
        const int result = agent.GetHostName(narrow);
        ::string2wstring(narrow, name);
        return result;
    });
}

int VAgentW::GetHostVersion(int& version) {
    return ThroughNarrowAgent([&](VAgent& agent) { return agent.GetHostVersion(version); });
}

int VAgentW::IsProcess32(std::wstring& name, int& result) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrowName = Narrow(name);
        return agent.IsProcess32(narrowName, result);
    });
}

int VAgentW::IsLDAPObjectExist(const std::wstring& path, int flag) {
    return ThroughNarrowAgent(
        [&](VAgent& agent) { return agent.IsLDAPObjectExist(Narrow(path), flag); });
}

// The temporary agent carries the target, work environment and root site
// only: no copy site travels with a wide copy.
int VAgentW::FilesCopy(std::wstring& source, std::wstring& target, int recursive, int local,
                       unsigned int connection, HTTP_FUN* callbacks) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrowSource = Narrow(source);
        std::string narrowTarget = Narrow(target);
        return agent.FilesCopy(narrowSource, narrowTarget, recursive, local, connection, callbacks);
    });
}

int VAgentW::UploadFiles(std::wstring& source, std::wstring& destination, int remoteWindow,
                         unsigned int connection, HWND window, HTTP_FUN* callbacks) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrowSource = Narrow(source);
        std::string narrowDestination = Narrow(destination);
        return agent.UploadFiles(narrowSource, narrowDestination, remoteWindow, connection, window,
                                 callbacks);
    });
}

int VAgentW::GetServiceUserName(std::wstring& service, std::wstring& user) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrowService = Narrow(service);
        std::string narrowUser;
        const int result = agent.GetServiceUserName(narrowService, narrowUser);
        ::string2wstring(narrowUser, user);
        return result;
    });
}

int VAgentW::ChangeServiceUserPasswd(std::wstring& service, std::wstring& account,
                                     std::wstring& password) {
    return ThroughNarrowAgent([&](VAgent& agent) {
        std::string narrowService = Narrow(service);
        std::string narrowAccount = Narrow(account);
        std::string narrowPassword = Narrow(password);
        return agent.ChangeServiceUserPasswd(narrowService, narrowAccount, narrowPassword);
    });
}
