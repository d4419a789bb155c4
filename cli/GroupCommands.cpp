#include <memory>
#include <string>
#include <vector>

#include "AccountCommands.h"
#include "CommandKit.h"
#include "JsonRecords.h"

// Groups: listing, creating and deleting them, and their members.

namespace vagentctl {
namespace {

using NamesChange = int (AgentDriver::*)(const Names&);

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

MembershipCommand GroupAndAccounts(const std::string& name, const std::string& description,
                                   MembershipChange change, const std::string& operation) {
    const MembershipArgument group{"GROUP", "group name", "group"};
    const MembershipArgument accounts{"USER", "account names", "users"};
    return {name, description, group, accounts, change, operation};
}

}  // namespace

void AddGroupCommands(CLI::App& app, CommandContext& context) {
    CLI::App* noun = AddNoun(app, "group", "groups");
    AddAccountListing(*noun, context, "list the groups under a base", &AgentDriver::GetGroup,
                      "GetGroup");
    AddMembers(*noun, context);
    AddNamesChange(*noun, context, "add", "create groups", &AgentDriver::AddGroup, "AddGroup",
                   "added");
    AddNamesChange(*noun, context, "delete", "delete groups", &AgentDriver::RemoveGroup,
                   "RemoveGroup", "deleted");
    AddMembershipChange(*noun, context,
                        GroupAndAccounts("add-users", "add accounts to a group",
                                         &AgentDriver::AddGroupUsers, "AddGroupUsers"));
    AddMembershipChange(*noun, context,
                        GroupAndAccounts("remove-users", "remove accounts from a group",
                                         &AgentDriver::RemoveGroupUsers, "RemoveGroupUsers"));
}

}  // namespace vagentctl
