#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

#include "CommandContext.h"

namespace vagentctl {

// A noun of the command line ("user", "group"): it needs one command of its
// own, and the global options may follow it.
CLI::App* AddNoun(CLI::App& app, const std::string& name, const std::string& description);
CLI::App* AddCommand(CLI::App& parent, const std::string& name, const std::string& description);
// Once the command's arguments are parsed, `choose` says what it does on
// each host; it may read standard input or refuse the arguments
// (CLI::ValidationError) first.
void OnChosen(CLI::App* command, CommandContext& context, std::function<HostOperation()> choose);

// The nouns, one file each.
void AddHostCommands(CLI::App& app, CommandContext& context);
void AddUserCommands(CLI::App& app, CommandContext& context);
void AddGroupCommands(CLI::App& app, CommandContext& context);
void AddSessionCommands(CLI::App& app, CommandContext& context);
void AddSettingCommands(CLI::App& app, CommandContext& context);
void AddPrinterCommands(CLI::App& app, CommandContext& context);
void AddFileCommands(CLI::App& app, CommandContext& context);
void AddServiceCommands(CLI::App& app, CommandContext& context);
void AddDirectoryCommands(CLI::App& app, CommandContext& context);

}  // namespace vagentctl
