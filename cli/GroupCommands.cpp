#include <memory>
#include <string>
#include <vector>

#include "CommandKit.h"
#include "JsonRecords.h"

// Groups: listing, creating and deleting them, and their members.

namespace vagentctl {
namespace {

using NamesChange = int (AgentDriver::*)(const Names&);
using MembersChange = int (AgentDriver::*)(const std::string&, const Names&);

struct GroupAndUsers {
    std::string group;
    Names users;
};

void AddShow(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "show", "list the groups under a base");
    auto base = std::make_shared<std::string>();
    auto all = std::make_shared<bool>(false);
    command->add_option("NAME", *base, "the base to list under (the directory's)");
    command->add_flag("--all", *all, "the whole subtree under the base");
    OnChosen(command, context, [base, all] {
        return [base, all](AgentDriver& driver) {
            std::vector<Account> groups;
            const bool succeeded = driver.GetGroup(*base, *all ? 1 : 0, groups) == 1;
            return CallOutcome(driver, succeeded, "GetGroup", ToJson(groups));
        };
    });
}

void AddMembers(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "members", "the members of a group");
    auto group = std::make_shared<std::string>();
    auto info = std::make_shared<bool>(false);
    command->add_option("GROUP", *group, "group name")->required();
    command->add_flag("--info", *info, "with each member's comment");
    OnChosen(command, context, [group, info] {
        return [group, info](AgentDriver& driver) {
            if (*info) {
                std::vector<Account> users;
                const bool succeeded = driver.GetGroupUsersInfo(*group, users) == 1;
                return CallOutcome(driver, succeeded, "GetGroupUsersInfo", ToJson(users));
            }
            Names users;
            const bool succeeded = driver.ShowGroupUsers(*group, users) == 1;
            return CallOutcome(driver, succeeded, "ShowGroupUsers", users);
        };
    });
}

void AddNamesChange(CLI::App& noun, CommandContext& context, const std::string& name,
                    const std::string& description, NamesChange change,
                    const std::string& operation, const std::string& key) {
    CLI::App* command = AddCommand(noun, name, description);
    auto names = std::make_shared<Names>();
    command->add_option("NAME", *names, "group names")->required();
    OnChosen(command, context, [names, change, operation, key] {
        return [names, change, operation, key](AgentDriver& driver) {
            const bool succeeded = (driver.*change)(*names) == 1;
            return CallOutcome(driver, succeeded, operation, {{key, *names}});
        };
    });
}

void AddMembersChange(CLI::App& noun, CommandContext& context, const std::string& name,
                      const std::string& description, MembersChange change,
                      const std::string& operation) {
    CLI::App* command = AddCommand(noun, name, description);
    auto request = std::make_shared<GroupAndUsers>();
    command->add_option("GROUP", request->group, "group name")->required();
    command->add_option("USER", request->users, "account names")->required();
    OnChosen(command, context, [request, change, operation] {
        return [request, change, operation](AgentDriver& driver) {
            const bool succeeded = (driver.*change)(request->group, request->users) == 1;
            return CallOutcome(driver, succeeded, operation,
                               {{"group", request->group}, {"users", request->users}});
        };
    });
}

}  // namespace

void AddGroupCommands(CLI::App& app, CommandContext& context) {
    CLI::App* noun = AddNoun(app, "group", "groups");
    AddShow(*noun, context);
    AddMembers(*noun, context);
    AddNamesChange(*noun, context, "add", "create groups", &AgentDriver::AddGroup, "AddGroup",
                   "added");
    AddNamesChange(*noun, context, "delete", "delete groups", &AgentDriver::RemoveGroup,
                   "RemoveGroup", "deleted");
    AddMembersChange(*noun, context, "add-users", "add accounts to a group",
                     &AgentDriver::AddGroupUsers, "AddGroupUsers");
    AddMembersChange(*noun, context, "remove-users", "remove accounts from a group",
                     &AgentDriver::RemoveGroupUsers, "RemoveGroupUsers");
}

}  // namespace vagentctl
