#include <memory>
#include <string>
#include <vector>

#include "CommandKit.h"
#include "JsonRecords.h"

// Terminal sessions: counting and listing them, ending one, and a message to
// all of them.

namespace vagentctl {
namespace {

struct Message {
    std::string title;
    std::string text;
};

// A count is -1 when the service reported an error, and 0 with the send's
// error code kept when nothing reached it.
void AddCount(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "count", "the number of sessions");
    auto all = std::make_shared<bool>(false);
    command->add_flag("--all", *all, "every session, not only the agent's own");
    OnChosen(command, context, [all] {
        return [all](AgentDriver& driver) {
            const int count = *all ? driver.GetSessionCountsAll() : driver.GetSessionCounts();
            const bool succeeded = count >= 0 && !(count == 0 && driver.ErrorCode() != 0);
            return CallOutcome(driver, succeeded, *all ? "GetSessionCountsAll" : "GetSessionCounts",
                               count);
        };
    });
}

void AddList(CLI::App& noun, CommandContext& context) {
    OnChosen(AddCommand(noun, "list", "the sessions with their clients"), context, [] {
        return [](AgentDriver& driver) {
            std::vector<SessionEntry> sessions;
            const bool succeeded = driver.GetSessionInfo(sessions) == 1;
            return CallOutcome(driver, succeeded, "GetSessionInfo", ToJson(sessions));
        };
    });
}

// The facade's flag: non-zero logs the session off, 0 disconnects it.
void AddEnd(CLI::App& noun, CommandContext& context, const std::string& name,
            const std::string& description, int flag) {
    CLI::App* command = AddCommand(noun, name, description);
    auto id = std::make_shared<int>(0);
    command->add_option("ID", *id, "session id")->required();
    OnChosen(command, context, [id, flag] {
        return [id, flag](AgentDriver& driver) {
            const bool succeeded = driver.SessionLogoff(*id, flag) == 1;
            return CallOutcome(driver, succeeded, "SessionLogoff", {{"session", *id}});
        };
    });
}

void AddMessage(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "message", "send a message to every session");
    auto message = std::make_shared<Message>();
    command->add_option("TITLE", message->title, "the message's title")->required();
    command->add_option("TEXT", message->text, "the message")->required();
    OnChosen(command, context, [message] {
        return [message](AgentDriver& driver) {
            const bool succeeded = driver.BroadcastMessage(message->title, message->text) == 1;
            return CallOutcome(driver, succeeded, "BroadcastMessage",
                               {{"title", message->title}, {"text", message->text}});
        };
    });
}

}  // namespace

void AddSessionCommands(CLI::App& app, CommandContext& context) {
    CLI::App* noun = AddNoun(app, "session", "terminal sessions");
    AddCount(*noun, context);
    AddList(*noun, context);
    AddEnd(*noun, context, "logoff", "log a session off", 1);
    AddEnd(*noun, context, "disconnect", "disconnect a session", 0);
    AddMessage(*noun, context);
}

}  // namespace vagentctl
