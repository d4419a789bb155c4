#include <memory>
#include <string>

#include "CommandKit.h"

// The directory: whether an object exists, and this machine's domain
// controller.

namespace vagentctl {
namespace {

struct ObjectQuery {
    std::string path;
    bool group = false;
};

// Through a service the answer only tells that the test ran; here it is the
// test's own truth value.
void AddExists(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "exists", "whether a directory object exists");
    auto query = std::make_shared<ObjectQuery>();
    command->add_option("PATH", query->path, "object name or path")->required();
    command->add_flag("--group", query->group, "the object is a group");
    OnChosen(command, context, [query] {
        return [query](AgentDriver& driver) {
            const int result = driver.IsLDAPObjectExist(query->path, query->group ? 1 : 0);
            if (result == 0 && driver.ErrorCode() == 0) {
                return Succeeded({{"path", query->path}, {"exists", false}});
            }
            return CallOutcome(driver, result == 1, "IsLDAPObjectExist",
                               {{"path", query->path}, {"exists", true}});
        };
    });
}

void AddControllerName(CLI::App& noun, CommandContext& context) {
    OnChosen(AddCommand(noun, "name", "this machine's domain controller"), context, [&context] {
        context.thisMachineOnly = true;
        return [](AgentDriver& driver) {
            std::string name;
            const bool succeeded = driver.GetDnCtrl(name) == 1;
            return CallOutcome(driver, succeeded, "GetDnCtrl", name);
        };
    });
}

}  // namespace

void AddDirectoryCommands(CLI::App& app, CommandContext& context) {
    AddExists(*AddNoun(app, "ldap", "directory objects"), context);
    AddControllerName(*AddNoun(app, "dc", "domain controller"), context);
}

}  // namespace vagentctl
