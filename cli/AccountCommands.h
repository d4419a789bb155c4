#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

#include "AgentDriver.h"
#include "CommandContext.h"

// The command shapes that the user and group nouns share.

namespace vagentctl {

using AccountListing = int (AgentDriver::*)(const std::string&, int, std::vector<Account>&);
using MembershipChange = int (AgentDriver::*)(const std::string&, const Names&);

// "show [NAME] [--all]": the accounts or groups under a base.
void AddAccountListing(CLI::App& noun, CommandContext& context, const std::string& description,
                       AccountListing listing, const std::string& operation);

// One positional argument and a list of names after it, as one change:
// an account and its groups, or a group and its accounts.
struct MembershipArgument {
    std::string name;
    std::string help;
    std::string jsonKey;
};
struct MembershipCommand {
    std::string name;
    std::string description;
    MembershipArgument one;
    MembershipArgument many;
    MembershipChange change;
    std::string operation;
};
void AddMembershipChange(CLI::App& noun, CommandContext& context, const MembershipCommand& spec);

}  // namespace vagentctl
