#include <memory>
#include <string>
#include <vector>

#include "CommandKit.h"
#include "JsonRecords.h"
#include "SecretLines.h"

// Accounts: listing, creating, deleting and re-passwording them, and their
// group memberships. Passwords come from standard input only.

namespace vagentctl {
namespace {

using GroupChange = int (AgentDriver::*)(const std::string&, const Names&);

struct UserAndGroups {
    std::string user;
    Names groups;
};

void AddShow(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "show", "list the accounts under a base");
    auto base = std::make_shared<std::string>();
    auto all = std::make_shared<bool>(false);
    command->add_option("NAME", *base, "the base to list under (the directory's)");
    command->add_flag("--all", *all, "the whole subtree under the base");
    OnChosen(command, context, [base, all] {
        return [base, all](AgentDriver& driver) {
            std::vector<Account> users;
            const bool succeeded = driver.GetUser(*base, *all ? 1 : 0, users) == 1;
            return CallOutcome(driver, succeeded, "GetUser", ToJson(users));
        };
    });
}

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

void AddGroupChange(CLI::App& noun, CommandContext& context, const std::string& name,
                    const std::string& description, GroupChange change,
                    const std::string& operation) {
    CLI::App* command = AddCommand(noun, name, description);
    auto request = std::make_shared<UserAndGroups>();
    command->add_option("USER", request->user, "account name")->required();
    command->add_option("GROUP", request->groups, "group names")->required();
    OnChosen(command, context, [request, change, operation] {
        return [request, change, operation](AgentDriver& driver) {
            const bool succeeded = (driver.*change)(request->user, request->groups) == 1;
            return CallOutcome(driver, succeeded, operation,
                               {{"user", request->user}, {"groups", request->groups}});
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

}  // namespace

void AddUserCommands(CLI::App& app, CommandContext& context) {
    CLI::App* noun = AddNoun(app, "user", "accounts");
    AddShow(*noun, context);
    AddAdd(*noun, context);
    AddDelete(*noun, context);
    AddPasswd(*noun, context);
    AddGroupsOf(*noun, context);
    AddGroupChange(*noun, context, "add-groups", "add an account to groups",
                   &AgentDriver::AddUserToGroups, "AddUserToGroups");
    AddGroupChange(*noun, context, "remove-groups", "remove an account from groups",
                   &AgentDriver::RemoveUserFromGroups, "RemoveUserFromGroups");
    AddGroupChange(*noun, context, "builtin-add", "add an account to built-in groups",
                   &AgentDriver::AddUserToBuiltinGroups, "AddUserToBuiltinGroups");
    AddGroupChange(*noun, context, "builtin-remove", "remove an account from built-in groups",
                   &AgentDriver::RemoveUserFromBuiltinGroups, "RemoveUserFromBuiltinGroups");
    AddLoginName(*noun, context);
}

}  // namespace vagentctl
