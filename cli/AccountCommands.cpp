#include "AccountCommands.h"

#include <memory>

#include "CommandKit.h"
#include "JsonRecords.h"

namespace vagentctl {
namespace {

struct OneAndMany {
    std::string one;
    Names many;
};

}  // namespace

void AddAccountListing(CLI::App& noun, CommandContext& context, const std::string& description,
                       AccountListing listing, const std::string& operation) {
    CLI::App* command = AddCommand(noun, "show", description);
    auto base = std::make_shared<std::string>();
    auto all = std::make_shared<bool>(false);
    command->add_option("NAME", *base, "the base to list under (the directory's)");
    command->add_flag("--all", *all, "the whole subtree under the base");
    OnChosen(command, context, [base, all, listing, operation] {
        return [base, all, listing, operation](AgentDriver& driver) {
            std::vector<Account> accounts;
            const bool succeeded = (driver.*listing)(*base, *all ? 1 : 0, accounts) == 1;
            return CallOutcome(driver, succeeded, operation, ToJson(accounts));
        };
    });
}

void AddMembershipChange(CLI::App& noun, CommandContext& context, const MembershipCommand& spec) {
    CLI::App* command = AddCommand(noun, spec.name, spec.description);
    auto request = std::make_shared<OneAndMany>();
    command->add_option(spec.one.name, request->one, spec.one.help)->required();
    command->add_option(spec.many.name, request->many, spec.many.help)->required();
    OnChosen(command, context, [request, spec] {
        return [request, spec](AgentDriver& driver) {
            const bool succeeded = (driver.*spec.change)(request->one, request->many) == 1;
            return CallOutcome(
                driver, succeeded, spec.operation,
                {{spec.one.jsonKey, request->one}, {spec.many.jsonKey, request->many}});
        };
    });
}

}  // namespace vagentctl
