#pragma once

#include <cstdint>

namespace vagent::task {

// The task numbers of the wire, one per operation: the client sends one,
// and the service builds the family that owns it. Ids without a facade
// method (renames, privileges) are kept by their families all the same.
enum TaskId : std::uint32_t {
    kGetUser = 1,
    kAddUser = 2,
    kDeleteUser = 3,
    kRenameUser = 4,
    kChangePasswd = 5,
    kGetUserGroup = 6,
    kAddUserToGroups = 7,
    kAddUserToBuiltinGroups = 8,
    kRemoveUserFromBuiltinGroups = 9,
    kRemoveUserFromGroups = 10,
    kAddUserPrivilege = 11,
    kRemoveUserPrivilege = 12,
    kShowUserPrivilege = 13,
    kGetGroup = 14,
    kAddGroup = 15,
    kRemoveGroup = 16,
    kRenameGroup = 17,
    kAddGroupUsers = 18,
    kRemoveGroupUsers = 19,
    kShowGroupUsers = 20,
    kAddGroupPrivilege = 21,
    kRemoveGroupPrivilege = 22,
    kShowGroupPrivilege = 23,
    kGetSessionCounts = 24,
    kGetSessionCountsAll = 25,
    kGetSessionInfo = 26,
    kGetPrinterInfo = 27,
    kDirList = 28,
    kIsFileExist = 29,
    kCreateIcons = 30,
    kGetImageDirectory = 31,
    kGetSysSetting = 32,
    kSetSysSetting = 33,
    kGetHostName = 34,
    kGetHostVersion = 35,
    kSessionLogoff = 36,
    kGetUserLoginName = 37,
    kIsProcess32 = 38,
    kIsLdapObjectExist = 39,
    kEnableSSO = 40,
    kEnableZ9SSO = 41,
    kGetGroupUsersInfo = 42,
    kBroadcastMessage = 43,
    kFilesCopy = 44,
    kUploadFiles = 45,
    kGetServiceUserName = 46,
    kChangeServiceUserPasswd = 47,
};

}  // namespace vagent::task
