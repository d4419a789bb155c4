#include "cli/CliHarness.h"

#include <sstream>

#include "Vagentctl.h"

namespace vagent::test {

std::vector<nlohmann::json> CliRun::JsonLines() const {
    std::vector<nlohmann::json> lines;
    std::istringstream text(out);
    std::string line;
    while (std::getline(text, line)) {
        lines.push_back(nlohmann::json::parse(line));
    }
    return lines;
}

CliRun RunCli(const std::vector<std::string>& arguments, const std::string& input) {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    vagentctl::ConsoleStreams console{in, out, err, false, false};
    CliRun run;
    run.status = vagentctl::RunVagentctl(arguments, console);
    run.out = out.str();
    run.err = err.str();
    return run;
}

CliAgainstService::CliAgainstService() : service(std::make_unique<EndToEndService>()) {}

std::string CliAgainstService::HostArgument() const {
    return "127.0.0.1:" + std::to_string(service->Port());
}

CliRun CliAgainstService::Remote(std::vector<std::string> arguments,
                                 const std::string& input) const {
    arguments.insert(arguments.begin(), {"-H", HostArgument()});
    return RunCli(arguments, input);
}

nlohmann::json CliAgainstService::RemoteJson(std::vector<std::string> arguments,
                                             const std::string& input) const {
    arguments.push_back("--json");
    const CliRun run = Remote(arguments, input);
    const std::vector<nlohmann::json> lines = run.JsonLines();
    return lines.size() == 1 ? lines.front() : nlohmann::json();
}

std::string RefusedPort() {
    EndToEndService closed;
    const std::string port = std::to_string(closed.Port());
    closed.Stop();
    return port;
}

}  // namespace vagent::test
