#include "CommandKit.h"

#include <utility>

namespace vagentctl {

CLI::App* AddNoun(CLI::App& app, const std::string& name, const std::string& description) {
    CLI::App* noun = AddCommand(app, name, description);
    noun->require_subcommand(1);
    return noun;
}

CLI::App* AddCommand(CLI::App& parent, const std::string& name, const std::string& description) {
    CLI::App* command = parent.add_subcommand(name, description);
    command->fallthrough();
    return command;
}

void OnChosen(CLI::App* command, CommandContext& context, std::function<HostOperation()> choose) {
    command->callback([&context, choose = std::move(choose)] { context.operation = choose(); });
}

}  // namespace vagentctl
