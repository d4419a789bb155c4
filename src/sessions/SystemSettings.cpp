#include "sessions/SystemSettings.h"

#include <string>

#include "os/ProfileFiles.h"
#include "sessions/ConfigFiles.h"
#include "sessions/RegistryNumber.h"
#include "vagent/DllLog.h"

namespace vagent {
namespace {

constexpr unsigned long kLastType = 8;
constexpr long kReconnectionType = 6;
constexpr long kConnectionsAllowedType = 7;
constexpr long kPrinterManagementType = 8;

constexpr char kTerminalServerKey[] = "SYSTEM\\CurrentControlSet\\Control\\Terminal Server";
constexpr char kWinStationKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Terminal Server\\WinStations\\VXP";

struct RegistrySetting {
    const char* key;
    const char* valueName;
};

// Types 0 to 5, by type number.
constexpr RegistrySetting kRegistrySettings[] = {
    {kTerminalServerKey, "fSingleSessionPerUser"}, {kWinStationKey, "PortNumber"},
    {kWinStationKey, "MinEncryptionLevel"},        {kWinStationKey, "MaxConnectionTime"},
    {kWinStationKey, "MaxDisconnectionTime"},      {kWinStationKey, "MaxIdleTime"},
};
constexpr char kDenyConnectionsValue[] = "fDenyTSConnections";

struct FileSetting {
    const char* section;
    const char* key;
    std::int32_t defaultValue;
};

constexpr FileSetting kReconnection = {"Base", "ReconnEnabled", 0};
constexpr FileSetting kPrinterManagement = {"PrintManage", "VpEnabled", 1};

bool IsUnknownType(long type) {
    return static_cast<unsigned long>(type) > kLastType;
}

std::int32_t ReadFileSetting(const FileSetting& setting) {
    std::string path;
    if (!LibraryConfigPath(path)) {
        return setting.defaultValue;
    }
    return static_cast<std::int32_t>(os::Installed<os::ProfileFiles>().ReadInt(
        setting.section, setting.key, setting.defaultValue, path));
}

void WriteFileSetting(const FileSetting& setting, long value) {
    std::string path;
    if (LibraryConfigPath(path)) {
        os::Installed<os::ProfileFiles>().WriteString(
            setting.section, setting.key, std::to_string(static_cast<int>(value)), path);
    }
}

std::int32_t Negation(long value) {
    return value == 0 ? 1 : 0;
}

}  // namespace

int GetSysSetting(long type, std::int32_t* value) {
    if (value == nullptr || IsUnknownType(type)) {
        return 0;
    }
    switch (type) {
        case kReconnectionType:
            *value = ReadFileSetting(kReconnection);
            return 1;
        case kPrinterManagementType:
            *value = ReadFileSetting(kPrinterManagement);
            return 1;
        case kConnectionsAllowedType: {
            const int read = ReadRegistryNumber(os::kLocalMachine, kTerminalServerKey,
                                                kDenyConnectionsValue, *value);
            // Negated whether or not the read succeeded.
            *value = Negation(*value);
            return read;
        }
        default: {
            const RegistrySetting& setting = kRegistrySettings[type];
            return ReadRegistryNumber(os::kLocalMachine, setting.key, setting.valueName, *value);
        }
    }
}

int SetSysSetting(long type, long value) {
    DllLogPrintf("SetSysSetting type=%d, value=%d", static_cast<int>(type),
                 static_cast<int>(value));
    if (IsUnknownType(type)) {
        return 0;
    }
    switch (type) {
        case kReconnectionType:
            WriteFileSetting(kReconnection, value);
            return 1;
        case kPrinterManagementType:
            WriteFileSetting(kPrinterManagement, value);
            return 1;
        case kConnectionsAllowedType:
            return WriteRegistryNumber(os::kLocalMachine, kTerminalServerKey, kDenyConnectionsValue,
                                       Negation(value));
        default: {
            const RegistrySetting& setting = kRegistrySettings[type];
            return WriteRegistryNumber(os::kLocalMachine, setting.key, setting.valueName,
                                       static_cast<std::int32_t>(value));
        }
    }
}

}  // namespace vagent
