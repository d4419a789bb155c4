#include <memory>
#include <string>

#include "CommandKit.h"

// Facts about the host: its name, version code, image directory, and what
// this machine knows of its own role in a domain.

namespace vagentctl {
namespace {

// No version code is below 0, so an untouched value tells that none came.
constexpr int kNoVersion = -1;

void AddName(CLI::App& noun, CommandContext& context) {
    OnChosen(AddCommand(noun, "name", "the host's DNS name"), context, [] {
        return [](AgentDriver& driver) {
            std::string name;
            const bool succeeded = driver.GetHostName(name) == 1;
            return CallOutcome(driver, succeeded, "GetHostName", name);
        };
    });
}

// Run here, the facade reads the version and still answers 0, so the value
// itself tells whether it was read.
void AddVersion(CLI::App& noun, CommandContext& context) {
    OnChosen(AddCommand(noun, "version", "the host's operating-system version code"), context, [] {
        return [](AgentDriver& driver) {
            int version = kNoVersion;
            const int result = driver.GetHostVersion(version);
            return CallOutcome(driver, result == 1 || version != kNoVersion, "GetHostVersion",
                               version);
        };
    });
}

void AddImageDirectory(CLI::App& noun, CommandContext& context) {
    OnChosen(AddCommand(noun, "imagedir", "the directory of the agent's program image"), context,
             [] {
                 return [](AgentDriver& driver) {
                     std::string directory;
                     const bool succeeded = driver.GetImageDirectory(directory) == 1;
                     return CallOutcome(driver, succeeded, "GetImageDirectory", directory);
                 };
             });
}

void AddIs32(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "is32", "whether a process runs as a 32-bit image");
    auto name = std::make_shared<std::string>();
    command->add_option("NAME", *name, "process name")->required();
    OnChosen(command, context, [name] {
        return [name](AgentDriver& driver) {
            int is32 = 0;
            const bool succeeded = driver.IsProcess32(*name, is32) == 1;
            return CallOutcome(driver, succeeded, "IsProcess32", is32 != 0);
        };
    });
}

// The role tests always look at this machine, whatever the target.
void AddRole(CLI::App& noun, CommandContext& context, const std::string& name,
             const std::string& description, int (AgentDriver::*test)(int&),
             const std::string& operation) {
    OnChosen(AddCommand(noun, name, description), context, [&context, test, operation] {
        context.thisMachineOnly = true;
        return [test, operation](AgentDriver& driver) {
            int answer = 0;
            const int result = (driver.*test)(answer);
            return CallOutcome(driver, result == 1, operation, answer != 0);
        };
    });
}

}  // namespace

void AddHostCommands(CLI::App& app, CommandContext& context) {
    CLI::App* noun = AddNoun(app, "host", "facts about the host");
    AddName(*noun, context);
    AddVersion(*noun, context);
    AddImageDirectory(*noun, context);
    AddIs32(*noun, context);
    AddRole(*noun, context, "is-dc", "whether this machine is a domain controller",
            &AgentDriver::IsDnCtrl, "IsDnCtrl");
    AddRole(*noun, context, "is-computer", "whether this machine is a member computer",
            &AgentDriver::IsComputer, "IsComputer");
}

}  // namespace vagentctl
