#include "CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

#include "AllowList.h"
#include "Ipv4Text.h"
#include "Version.h"

namespace vagent::service {
namespace {

constexpr unsigned kMaxWorkers = 1024;
constexpr unsigned kMaxConnectionsLimit = 1000000;
constexpr std::uint32_t kMinBlockLimit = 4;
constexpr std::uint32_t kMaxBlockLimit = 1u << 30;
constexpr std::uint64_t kMinHeldLimit = 4096;
constexpr std::uint64_t kMaxHeldLimit = std::uint64_t{1} << 40;
constexpr int kMaxPort = 65535;

// "ADDR:PORT": a dotted IPv4 address and a decimal port.
bool ParseListen(const std::string& text, std::string& address, std::uint16_t& port) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos) {
        return false;
    }
    const std::string portText = text.substr(colon + 1);
    std::uint32_t parsed = 0;
    if (!ParseIpv4(text.substr(0, colon), parsed) || portText.empty() || portText.size() > 5 ||
        !std::all_of(portText.begin(), portText.end(),
                     [](char c) { return c >= '0' && c <= '9'; })) {
        return false;
    }
    const int number = std::stoi(portText);
    if (number > kMaxPort) {
        return false;
    }
    address = text.substr(0, colon);
    port = static_cast<std::uint16_t>(number);
    return true;
}

std::string CheckListen(const std::string& text) {
    std::string address;
    std::uint16_t port = 0;
    return ParseListen(text, address, port) ? std::string()
                                            : "expects ADDR:PORT (IPv4 address, port 0-65535)";
}

std::string CheckNetwork(const std::string& text) {
    AllowList list;
    std::string error;
    return list.Parse({text}, error) ? std::string() : error;
}

// What the serving subcommands share, bound to one set of values.
struct ServingValues {
    std::string listen;
    std::vector<std::string> allow;
    unsigned workers = ServerOptions{}.workers;
    unsigned maxConnections = ServerOptions{}.maxConnections;
    std::uint32_t maxBlock = ServerOptions{}.maxBlock;
    std::uint64_t maxHeldBytes = ServerOptions{}.maxHeldBytes;
};

void AddServingOptions(CLI::App& command, ServingValues& values) {
    command.add_option("--listen", values.listen, "address and port to listen on")
        ->type_name("ADDR:PORT")
        ->default_str("0.0.0.0:1234")
        ->check(CLI::Validator(CheckListen, "ADDR:PORT"));
    command.add_option("--allow", values.allow, "client network served (repeatable)")
        ->type_name("CIDR")
        ->default_str("127.0.0.0/8")
        ->check(CLI::Validator(CheckNetwork, "CIDR"));
    command.add_option("--workers", values.workers, "tasks run at once")
        ->check(CLI::Range(1u, kMaxWorkers))
        ->capture_default_str();
    command.add_option("--max-connections", values.maxConnections, "open connections at once")
        ->check(CLI::Range(1u, kMaxConnectionsLimit))
        ->capture_default_str();
    command.add_option("--max-block", values.maxBlock, "largest request block accepted")
        ->type_name("BYTES")
        ->check(CLI::Range(kMinBlockLimit, kMaxBlockLimit))
        ->capture_default_str();
    command
        .add_option("--max-held-bytes", values.maxHeldBytes,
                    "request bytes held in memory at once, across connections (never less "
                    "than one largest request)")
        ->type_name("BYTES")
        ->check(CLI::Range(kMinHeldLimit, kMaxHeldLimit))
        ->capture_default_str();
}

ServerOptions OptionsOf(const ServingValues& values) {
    ServerOptions options;
    if (!values.listen.empty()) {
        ParseListen(values.listen, options.listenAddress, options.listenPort);
    }
    if (!values.allow.empty()) {
        options.allow = values.allow;
    }
    options.workers = values.workers;
    options.maxConnections = values.maxConnections;
    options.maxBlock = values.maxBlock;
    options.maxHeldBytes = values.maxHeldBytes;
    return options;
}

// The arguments that follow the subcommand's name.
std::vector<std::string> ArgumentsAfter(const std::vector<std::string>& arguments,
                                        const std::string& name) {
    const auto at = std::find(arguments.begin(), arguments.end(), name);
    return at == arguments.end() ? std::vector<std::string>{}
                                 : std::vector<std::string>(at + 1, arguments.end());
}

Command Finished(Action action, std::string text) {
    Command command;
    command.action = action;
    command.text = std::move(text);
    return command;
}

}  // namespace

Command ParseCommandLine(const std::vector<std::string>& arguments) {
    CLI::App app("vagentd: the agent service", "vagentd");
    app.set_version_flag("--version", std::string("vagentd ") + VagentdVersion());
    app.require_subcommand(1);
    ServingValues values;
    CLI::App* run = app.add_subcommand("run", "serve in the foreground until Ctrl-C or SIGTERM");
    CLI::App* install = app.add_subcommand("install", "register as a Windows service");
    CLI::App* service = app.add_subcommand("service", "serve under the Windows service manager");
    CLI::App* uninstall = app.add_subcommand("uninstall", "remove the Windows service");
    service->group("");
    for (CLI::App* serving : {run, install, service}) {
        AddServingOptions(*serving, values);
    }
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        return Finished(Action::Help, app.help());
    } catch (const CLI::CallForVersion& version) {
        return Finished(Action::Version, version.what());
    } catch (const CLI::ParseError& error) {
        return Finished(Action::UsageError, std::string("vagentd: ") + error.what() +
                                                "\nRun 'vagentd --help' for usage.");
    }
    Command command;
    command.options = OptionsOf(values);
    if (*uninstall) {
        command.action = Action::Uninstall;
        return command;
    }
    const CLI::App* chosen = *run ? run : *install ? install : service;
    command.action = *run ? Action::Run : *install ? Action::Install : Action::Service;
    command.serverArguments = ArgumentsAfter(arguments, chosen->get_name());
    return command;
}

}  // namespace vagent::service
