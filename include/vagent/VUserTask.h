#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/Export.h"
#include "vagent/UserRecords.h"
#include "vagent/VTask.h"

// The user operations, task ids 1 to 13 and 37. Each worker acts on the
// local account database when the work environment is 0 and on the domain
// directory otherwise; it returns 1 or 0 and leaves a failure's code in the
// task's error code where one is known.
class VAGENT_API VUserTask : public VTask {
public:
    explicit VUserTask(std::uint32_t taskId);

    int Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) override;
    int DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) override;

    int GetUser(const std::string& base, std::vector<_VXUserInfoA>& out, int subtree);
    int AddUser(std::vector<std::string>& users, std::vector<std::string>& passwords);
    int DeleteUser(std::vector<std::string>& users);
    int ChangePasswd(std::vector<std::string>& users, std::vector<std::string>& oldPasswords,
                     std::vector<std::string>& newPasswords);
    int GetUserGroup(const std::string& user, std::vector<_VXUserGroupA>& out);
    int AddUserToGroupsEx(const std::string& user, const std::string& container,
                          std::vector<std::string>& groups);
    int RemoveUserFromGroupsEx(const std::string& user, const std::string& container,
                               std::vector<std::string>& groups);
    // Ids 8 and 9: the builtin groups, always in the local database, with the
    // user qualified by the DNS domain on a machine that is no domain
    // controller.
    int AddUserToBuiltinGroups(const std::string& user, std::vector<std::string>& groups);
    int RemoveUserFromBuiltinGroups(const std::string& user, std::vector<std::string>& groups);
    // Always reads the directory, whatever the work environment.
    int GetUserLoginName(const std::string& user, std::string& accountName,
                         std::string& principalName);

private:
    int RunTask(const std::uint8_t* payload, std::uint32_t length, std::uint8_t*& data,
                std::uint32_t& size);
    bool QualifyForBuiltinGroups(const std::string& user, std::string& qualified);
    int ChangeDirectoryPasswords(const std::vector<std::string>& users,
                                 const std::vector<std::string>& newPasswords);
    int ChangeDirectoryMembership(const std::string& user, const std::vector<std::string>& groups,
                                  bool add);
    int GetDirectoryUserGroup(const std::string& user, std::vector<_VXUserGroupA>& out);
};
