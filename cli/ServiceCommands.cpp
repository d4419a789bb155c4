#include <memory>
#include <string>
#include <vector>

#include "CommandKit.h"
#include "SecretLines.h"

// The account a service runs under, and changing it. The password comes from
// standard input only.

namespace vagentctl {
namespace {

struct AccountChange {
    std::string service;
    std::string account;
};

void AddAccount(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "account", "the account a service runs under");
    auto name = std::make_shared<std::string>();
    command->add_option("NAME", *name, "service name")->required();
    OnChosen(command, context, [name] {
        return [name](AgentDriver& driver) {
            std::string user;
            const bool succeeded = driver.GetServiceUserName(*name, user) == 1;
            return CallOutcome(driver, succeeded, "GetServiceUserName", user);
        };
    });
}

void AddSetAccount(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "set-account",
                                   "run a service under an account (password on standard input)");
    auto change = std::make_shared<AccountChange>();
    command->add_option("NAME", change->service, "service name")->required();
    command->add_option("ACCOUNT", change->account, "account name")->required();
    OnChosen(command, context, [&context, change] {
        const std::vector<std::string> lines =
            ReadSecretLines(context.console, "password for " + change->account);
        if (lines.size() != 1) {
            throw CLI::ValidationError("standard input", "expected one password line");
        }
        auto password = std::make_shared<std::string>(lines.front());
        return [change, password](AgentDriver& driver) {
            const bool succeeded =
                driver.ChangeServiceUserPasswd(change->service, change->account, *password) == 1;
            return CallOutcome(driver, succeeded, "ChangeServiceUserPasswd",
                               {{"service", change->service}, {"account", change->account}});
        };
    });
}

}  // namespace

void AddServiceCommands(CLI::App& app, CommandContext& context) {
    CLI::App* noun = AddNoun(app, "service", "service accounts");
    AddAccount(*noun, context);
    AddSetAccount(*noun, context);
}

}  // namespace vagentctl
