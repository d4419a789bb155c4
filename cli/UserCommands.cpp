#include <memory>
#include <string>
#include <vector>

#include "AccountCommands.h"
#include "CommandKit.h"
#include "JsonRecords.h"
#include "SecretLines.h"

// Accounts: listing, creating, deleting and re-passwording them, and their
// group memberships. Passwords come from standard input only.

namespace vagentctl {
namespace {

// Two lists of equal length, one request: the facade pairs them by place.
void AddAdd(CLI::App& noun, CommandContext& context) {
    CLI::App* command =
        AddCommand(noun, "add", "create accounts from name:password lines on standard input");
    OnChosen(command, context, [&context] {
        auto names = std::make_shared<Names>();
        auto passwords = std::make_shared<Names>();
        for (const std::string& line : ReadSecretLines(context.console, "name:password")) {
            const std::vector<std::string> fields = SplitFields(line, 2, "name:password");
            names->push_back(fields[0]);
            passwords->push_back(fields[1]);
        }
        if (names->empty()) {
            throw CLI::ValidationError("standard input", "no name:password lines");
        }
        return [names, passwords](AgentDriver& driver) {
            const bool succeeded = driver.AddUser(*names, *passwords) == 1;
            return CallOutcome(driver, succeeded, "AddUser", {{"added", *names}});
        };
    });
}

void AddDelete(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "delete", "delete accounts");
    auto names = std::make_shared<Names>();
    command->add_option("NAME", *names, "account names")->required();
    OnChosen(command, context, [names] {
        return [names](AgentDriver& driver) {
            const bool succeeded = driver.DeleteUser(*names) == 1;
            return CallOutcome(driver, succeeded, "DeleteUser", {{"deleted", *names}});
        };
    });
}

void AddPasswd(CLI::App& noun, CommandContext& context) {
    CLI::App* command =
        AddCommand(noun, "passwd", "change passwords from name:old:new lines on standard input");
    OnChosen(command, context, [&context] {
        auto names = std::make_shared<Names>();
        auto oldPasswords = std::make_shared<Names>();
        auto newPasswords = std::make_shared<Names>();
        for (const std::string& line : ReadSecretLines(context.console, "name:old:new")) {
            const std::vector<std::string> fields = SplitFields(line, 3, "name:old:new");
            names->push_back(fields[0]);
            oldPasswords->push_back(fields[1]);
            newPasswords->push_back(fields[2]);
        }
        if (names->empty()) {
            throw CLI::ValidationError("standard input", "no name:old:new lines");
        }
        return [names, oldPasswords, newPasswords](AgentDriver& driver) {
            const bool succeeded = driver.ChangePasswd(*names, *oldPasswords, *newPasswords) == 1;
            return CallOutcome(driver, succeeded, "ChangePasswd", {{"changed", *names}});
        };
    });
}

void AddGroupsOf(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "groups", "the groups an account belongs to");
    auto name = std::make_shared<std::string>();
    command->add_option("NAME", *name, "account name")->required();
    OnChosen(command, context, [name] {
        return [name](AgentDriver& driver) {
            Names groups;
            const bool succeeded = driver.GetUserGroup(*name, groups) == 1;
            return CallOutcome(driver, succeeded, "GetUserGroup", groups);
        };
    });
}

void AddLoginName(CLI::App& noun, CommandContext& context) {
    CLI::App* command =
        AddCommand(noun, "login-name", "an account's logon name and principal name");
    auto name = std::make_shared<std::string>();
    command->add_option("NAME", *name, "account name")->required();
    OnChosen(command, context, [name] {
        return [name](AgentDriver& driver) {
            std::string account;
            std::string principal;
            const bool succeeded = driver.GetUserLoginName(*name, account, principal) == 1;
            return CallOutcome(driver, succeeded, "GetUserLoginName",
                               {{"account", account}, {"principal", principal}});
        };
    });
}

MembershipCommand AccountAndGroups(const std::string& name, const std::string& description,
                                   MembershipChange change, const std::string& operation) {
    const MembershipArgument account{"USER", "account name", "user"};
    const MembershipArgument groups{"GROUP", "group names", "groups"};
    return {name, description, account, groups, change, operation};
}

}  // namespace

void AddUserCommands(CLI::App& app, CommandContext& context) {
    CLI::App* noun = AddNoun(app, "user", "accounts");
    AddAccountListing(*noun, context, "list the accounts under a base", &AgentDriver::GetUser,
                      "GetUser");
    AddAdd(*noun, context);
    AddDelete(*noun, context);
    AddPasswd(*noun, context);
    AddGroupsOf(*noun, context);
    AddMembershipChange(*noun, context,
                        AccountAndGroups("add-groups", "add an account to groups",
                                         &AgentDriver::AddUserToGroups, "AddUserToGroups"));
    AddMembershipChange(
        *noun, context,
        AccountAndGroups("remove-groups", "remove an account from groups",
                         &AgentDriver::RemoveUserFromGroups, "RemoveUserFromGroups"));
    AddMembershipChange(
        *noun, context,
        AccountAndGroups("builtin-add", "add an account to built-in groups",
                         &AgentDriver::AddUserToBuiltinGroups, "AddUserToBuiltinGroups"));
    AddMembershipChange(
        *noun, context,
        AccountAndGroups("builtin-remove", "remove an account from built-in groups",
                         &AgentDriver::RemoveUserFromBuiltinGroups, "RemoveUserFromBuiltinGroups"));
    AddLoginName(*noun, context);
}

}  // namespace vagentctl
