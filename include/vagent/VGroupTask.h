#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vagent/Export.h"
#include "vagent/UserRecords.h"
#include "vagent/VTask.h"

// The group operations, task ids 14 to 23 and 42. Each worker acts on the
// local account database when the work environment is 0 and on the domain
// directory otherwise; it returns 1 or 0 and leaves a failure's code in the
// task's error code where one is known.
class VAGENT_API VGroupTask : public VTask {
public:
    explicit VGroupTask(std::uint32_t taskId);

    int Result2Struct(const std::uint8_t* payload, std::uint32_t length, void* output) override;
    int DoTask(std::uint8_t** resultData, std::uint32_t* resultLength) override;

    int GetGroup(const std::string& base, std::vector<_VXUserInfoA>& out, int subtree);
    int AddGroup(std::vector<std::string>& groups);
    // Returns 1 whatever the deletion did; only an allocation failure gives 0.
    int RemoveGroup(std::vector<std::string>& groups);
    int AddGroupUsers(const std::string& group, std::vector<std::string>& users);
    int RemoveGroupUsers(const std::string& group, std::vector<std::string>& users);
    int ShowGroupUsers(const std::string& group, std::vector<std::string>& users);
    int GetGroupUsersInfo(const std::string& group, std::vector<_VXUserInfoA>& out);

private:
    int RunTask(const std::uint8_t* payload, std::uint32_t length, std::uint8_t*& data,
                std::uint32_t& size);
    int ChangeDirectoryGroupUsers(const std::string& group, const std::vector<std::string>& users,
                                  bool add);
    int ShowDirectoryGroupUsers(const std::string& group, std::vector<std::string>& users);
    int GetDirectoryGroupUsersInfo(const std::string& group, std::vector<_VXUserInfoA>& out);
};
