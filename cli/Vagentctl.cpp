#include "Vagentctl.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

#include "CommandKit.h"
#include "FanOut.h"
#include "HostJob.h"
#include "ProgressBar.h"
#include "TransferMeter.h"

#ifndef VAGENTCTL_VERSION
#define VAGENTCTL_VERSION "0.0.0"
#endif

namespace vagentctl {
namespace {

constexpr int kAllSucceeded = 0;
constexpr int kSomeFailed = 1;
constexpr int kUsageError = 2;
constexpr unsigned kMostWorkers = 1024;
// The label of the one "host" when the command runs in this process.
const char kThisMachine[] = "local";

void AddGlobalOptions(CLI::App& app, GlobalOptions& options) {
    app.add_option("-H,--host", options.hosts, "HOST[:PORT][,HOST...]: the agent services")
        ->delimiter(',');
    app.add_option("--hosts", options.hostsFile, "a file of hosts, one per line")
        ->check(CLI::ExistingFile);
    app.add_option("-p,--port", options.port, "the services' port (default 1234)")
        ->check(CLI::Range(1, 65535));
    app.add_option("--env", options.workEnv, "work environment: 0 local accounts, else domain");
    app.add_option("--root-site", options.rootSite, "directory root (a DN)");
    app.add_flag("--json", options.json, "one JSON object per host and line");
    app.add_option("--parallel", options.parallel, "hosts served at once (default 32)")
        ->check(CLI::Range(1u, kMostWorkers));
    app.add_option("--codepage", options.codePage, "the targets' ANSI code page (default 1252)")
        ->check(CLI::Range(1u, 65535u));
    app.add_flag("-q,--quiet", options.quiet, "no progress display");
}

void AddNouns(CLI::App& app, CommandContext& context) {
    AddHostCommands(app, context);
    AddUserCommands(app, context);
    AddGroupCommands(app, context);
    AddSessionCommands(app, context);
    AddSettingCommands(app, context);
    AddPrinterCommands(app, context);
    AddFileCommands(app, context);
    AddServiceCommands(app, context);
    AddDirectoryCommands(app, context);
}

// What the chosen command needs of the hosts, checked before any is reached.
std::vector<HostSpec> Hosts(const GlobalOptions& options, const CommandContext& context) {
    std::vector<HostSpec> hosts = CollectHosts(options.hosts, options.hostsFile, options.port);
    if (hosts.empty() && context.needsHost) {
        throw CLI::ValidationError("--host", "this command needs a host");
    }
    if (!hosts.empty() && context.thisMachineOnly) {
        throw CLI::ValidationError("--host", "this command runs on this machine only");
    }
    if (hosts.empty()) {
        hosts.push_back(HostSpec{kThisMachine, "", ""});
    }
    return hosts;
}

int Run(const std::vector<HostSpec>& hosts, const GlobalOptions& options,
        const CommandContext& context) {
    ResultPrinter printer(context.console.out, context.console.err, options.json, hosts.size() > 1);
    TransferMeter::Reset();
    std::unique_ptr<ProgressBar> progress;
    if (context.transfers && context.console.errorIsTerminal && !options.quiet) {
        progress = std::make_unique<ProgressBar>(context.console.err, context.expectedBytes,
                                                 context.expectedFiles);
    }
    const FanOut::Job job = [&](const HostSpec& host) {
        return RunOnHost(host, options, context.operation);
    };
    const std::size_t failures = FanOut(options.parallel).Run(hosts, job, printer);
    progress.reset();
    return failures == 0 ? kAllSucceeded : kSomeFailed;
}

}  // namespace

int RunVagentctl(const std::vector<std::string>& arguments, ConsoleStreams& console) {
    GlobalOptions options;
    CommandContext context(console, options);
    CLI::App app("vagentctl: administer terminal servers through their agent services",
                 "vagentctl");
    app.set_version_flag("--version", std::string("vagentctl ") + VAGENTCTL_VERSION);
    app.require_subcommand(1);
    AddGlobalOptions(app, options);
    AddNouns(app, context);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        app.parse(reversed);
        return Run(Hosts(options, context), options, context);
    } catch (const CLI::ParseError& error) {
        return app.exit(error, console.out, console.err) == 0 ? kAllSucceeded : kUsageError;
    }
}

}  // namespace vagentctl
