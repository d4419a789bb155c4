#include <vector>

#include "CommandKit.h"
#include "JsonRecords.h"

// The printers of the terminal sessions.

namespace vagentctl {

void AddPrinterCommands(CLI::App& app, CommandContext& context) {
    CLI::App* noun = AddNoun(app, "printer", "session printers");
    OnChosen(AddCommand(*noun, "list", "the printers and their sessions"), context, [] {
        return [](AgentDriver& driver) {
            std::vector<PrinterEntry> printers;
            const bool succeeded = driver.GetPrinterInfo(printers) == 1;
            return CallOutcome(driver, succeeded, "GetPrinterInfo", ToJson(printers));
        };
    });
}

}  // namespace vagentctl
