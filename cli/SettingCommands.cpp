#include <memory>
#include <string>

#include "CommandKit.h"

// The terminal server's settings by number, and the single sign-on switches.

namespace vagentctl {
namespace {

constexpr long kHighestSetting = 8;

struct Setting {
    long key = 0;
    long value = 0;
};

void AddKey(CLI::App& command, Setting& setting) {
    command.add_option("KEY", setting.key, "setting number, 0 to 8")
        ->required()
        ->check(CLI::Range(0L, kHighestSetting));
}

void AddGet(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "get", "read a setting");
    auto setting = std::make_shared<Setting>();
    AddKey(*command, *setting);
    OnChosen(command, context, [setting] {
        return [setting](AgentDriver& driver) {
            long value = 0;
            const bool succeeded = driver.GetSysSetting(setting->key, value) != 0;
            return CallOutcome(driver, succeeded, "GetSysSetting",
                               {{"key", setting->key}, {"value", value}});
        };
    });
}

void AddSet(CLI::App& noun, CommandContext& context) {
    CLI::App* command = AddCommand(noun, "set", "change a setting");
    auto setting = std::make_shared<Setting>();
    AddKey(*command, *setting);
    command->add_option("VALUE", setting->value, "the new value")->required();
    OnChosen(command, context, [setting] {
        return [setting](AgentDriver& driver) {
            const bool succeeded = driver.SetSysSetting(setting->key, setting->value) != 0;
            return CallOutcome(driver, succeeded, "SetSysSetting",
                               {{"key", setting->key}, {"value", setting->value}});
        };
    });
}

void AddSwitch(CLI::App& noun, CommandContext& context, const std::string& name, int enable) {
    CLI::App* command = AddCommand(noun, name, name + " single sign-on");
    auto z9 = std::make_shared<bool>(false);
    command->add_flag("--z9", *z9, "the second switch (Z9)");
    OnChosen(command, context, [z9, enable] {
        return [z9, enable](AgentDriver& driver) {
            const int result = *z9 ? driver.EnableZ9SSO(enable) : driver.EnableSSO(enable);
            return CallOutcome(
                driver, result == 1, *z9 ? "EnableZ9SSO" : "EnableSSO",
                {{"switch", *z9 ? "Z9SSOEnabled" : "SSOEnabled"}, {"enabled", enable != 0}});
        };
    });
}

}  // namespace

void AddSettingCommands(CLI::App& app, CommandContext& context) {
    CLI::App* setting = AddNoun(app, "setting", "terminal-server settings");
    AddGet(*setting, context);
    AddSet(*setting, context);
    CLI::App* sso = AddNoun(app, "sso", "single sign-on switches");
    AddSwitch(*sso, context, "enable", 1);
    AddSwitch(*sso, context, "disable", 0);
}

}  // namespace vagentctl
