#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "CommandKit.h"
#include "HostList.h"
#include "JsonRecords.h"
#include "TransferMeter.h"
#include "platform/NameResolver.h"

// Files on the host: listing, existence, icons, and the streamed copies up
// to it, down from it, and between its own paths or from another host.

namespace vagentctl {
namespace {

constexpr std::uint32_t kInvalidParameter = 0xE6000001u;

struct Transfer {
    std::string source;
    std::string target;
    bool noRecurse = false;
    int window = 0;
    std::string from;
};

void AddDirList(CLI::App& app, CommandContext& context) {
    CLI::App* command =
        AddCommand(*AddNoun(app, "dir", "directories"), "list", "the entries of a directory");
    auto path = std::make_shared<std::string>();
    command->add_option("PATH", *path, "directory path")->required();
    OnChosen(command, context, [path] {
        return [path](AgentDriver& driver) {
            std::vector<DirectoryEntry> entries;
            const bool succeeded = driver.DirList(*path, entries) == 1;
            return CallOutcome(driver, succeeded, "DirList", ToJson(entries));
        };
    });
}

void AddExists(CLI::App& app, CommandContext& context) {
    CLI::App* command = AddCommand(app, "exists", "whether paths exist");
    auto paths = std::make_shared<Names>();
    command->add_option("PATH", *paths, "paths")->required();
    OnChosen(command, context, [paths] {
        return [paths](AgentDriver& driver) {
            std::vector<Existence> answers;
            const bool succeeded = driver.IsFileExist(*paths, answers) == 1;
            return CallOutcome(driver, succeeded, "IsFileExist", ToJson(*paths, answers));
        };
    });
}

void AddIcons(CLI::App& app, CommandContext& context) {
    CLI::App* command =
        AddCommand(*AddNoun(app, "file", "files"), "icons", "make icon files from programs' icons");
    auto pairs = std::make_shared<Names>();
    command->add_option("EXE ICON", *pairs, "program and icon file, in pairs")->required();
    OnChosen(command, context, [pairs] {
        if (pairs->size() % 2 != 0) {
            throw CLI::ValidationError("EXE ICON", "programs and icon files go in pairs");
        }
        return [pairs](AgentDriver& driver) {
            Names exes;
            Names icons;
            for (std::size_t i = 0; i < pairs->size(); i += 2) {
                exes.push_back((*pairs)[i]);
                icons.push_back((*pairs)[i + 1]);
            }
            const bool succeeded = driver.CreateIcons(exes, icons) == 1;
            return CallOutcome(driver, succeeded, "CreateIcons", {{"icons", icons}});
        };
    });
}

// What a transfer says it moved.
nlohmann::ordered_json TransferResult(const Transfer& transfer) {
    return {{"source", transfer.source}, {"target", transfer.target}};
}

// The size of an upload is known before it starts.
void MeasureTree(const std::string& path, CommandContext& context) {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) {
        context.expectedFiles = 1;
        context.expectedBytes = std::filesystem::file_size(path, error);
        return;
    }
    for (std::filesystem::recursive_directory_iterator it(path, error), end; !error && it != end;
         it.increment(error)) {
        if (it->is_regular_file(error)) {
            ++context.expectedFiles;
            context.expectedBytes += it->file_size(error);
        }
    }
}

void AddUpload(CLI::App& app, CommandContext& context) {
    CLI::App* command = AddCommand(app, "upload", "copy a file or tree from here to the host");
    auto transfer = std::make_shared<Transfer>();
    command->add_option("LOCAL", transfer->source, "file or directory here")->required();
    command->add_option("REMOTE", transfer->target, "path on the host")->required();
    command->add_option("--window", transfer->window, "window on the host told of the upload");
    OnChosen(command, context, [&context, transfer] {
        context.transfers = true;
        MeasureTree(transfer->source, context);
        return [transfer](AgentDriver& driver) {
            const bool succeeded =
                driver.UploadFiles(transfer->source, transfer->target, transfer->window,
                                   TransferMeter::Hooks()) == 1;
            return CallOutcome(driver, succeeded, "UploadFiles", TransferResult(*transfer));
        };
    });
}

void AddDownload(CLI::App& app, CommandContext& context) {
    CLI::App* command = AddCommand(app, "download", "copy a file or tree from the host to here");
    auto transfer = std::make_shared<Transfer>();
    command->add_option("REMOTE", transfer->source, "path on the host")->required();
    command->add_option("LOCAL", transfer->target, "path here")->required();
    command->add_flag("--no-recurse", transfer->noRecurse, "leave subdirectories out");
    OnChosen(command, context, [&context, transfer] {
        context.transfers = true;
        context.needsHost = true;
        return [transfer](AgentDriver& driver) {
            const bool succeeded =
                driver.FilesCopy(transfer->source, transfer->target, transfer->noRecurse ? 0 : 1, 0,
                                 TransferMeter::Hooks()) == 1;
            return CallOutcome(driver, succeeded, "FilesCopy", TransferResult(*transfer));
        };
    });
}

// The relay host is resolved on each worker, like the targets themselves.
HostOutcome RelayedCopy(AgentDriver& driver, const Transfer& transfer, const HostSpec& relay) {
    std::string address;
    std::string problem;
    if (!platform::ResolveIpv4(relay.name, address, problem)) {
        return Failed(kInvalidParameter, "cannot resolve " + relay.name + ": " + problem);
    }
    driver.SetFilesCopySite(address, std::stoi(relay.port));
    const bool succeeded =
        driver.FilesCopy(transfer.source, transfer.target, transfer.noRecurse ? 0 : 1, 1,
                         TransferMeter::Hooks()) == 1;
    nlohmann::ordered_json result = TransferResult(transfer);
    result["from"] = relay.label;
    return CallOutcome(driver, succeeded, "FilesCopy", result);
}

void AddCopy(CLI::App& app, CommandContext& context) {
    CLI::App* command =
        AddCommand(app, "copy", "copy between paths of the host, or from another host to it");
    auto transfer = std::make_shared<Transfer>();
    command->add_option("SOURCE", transfer->source, "path on the host (or on --from)")->required();
    command->add_option("TARGET", transfer->target, "path on the host")->required();
    command->add_flag("--no-recurse", transfer->noRecurse, "leave subdirectories out");
    command->add_option("--from", transfer->from, "HOST[:PORT] that the files come from");
    OnChosen(command, context, [&context, transfer] {
        context.transfers = true;
        if (transfer->from.empty()) {
            return HostOperation([transfer](AgentDriver& driver) {
                const bool succeeded =
                    driver.FilesCopy(transfer->source, transfer->target,
                                     transfer->noRecurse ? 0 : 1, 1, TransferMeter::Hooks()) == 1;
                return CallOutcome(driver, succeeded, "FilesCopy", TransferResult(*transfer));
            });
        }
        context.needsHost = true;
        const HostSpec relay = ParseHostSpec(transfer->from, context.options.port);
        return HostOperation([transfer, relay](AgentDriver& driver) {
            return RelayedCopy(driver, *transfer, relay);
        });
    });
}

}  // namespace

void AddFileCommands(CLI::App& app, CommandContext& context) {
    AddDirList(app, context);
    AddExists(app, context);
    AddIcons(app, context);
    AddUpload(app, context);
    AddDownload(app, context);
    AddCopy(app, context);
}

}  // namespace vagentctl
