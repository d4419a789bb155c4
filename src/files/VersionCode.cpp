#include "files/VersionCode.h"

namespace vagent::files {
namespace {

struct VersionRow {
    std::uint32_t major;
    std::uint32_t minor;
    // The platform the row needs; kAnyPlatform when it does not care.
    std::uint32_t platform;
    int code;
};

constexpr std::uint32_t kAnyPlatform = 0xFFFFFFFFu;

// Taken in order; the first row that matches gives the code.
constexpr VersionRow kVersionTable[] = {
    {4, 0, 1, 2},
    {4, 0, 2, 6},
    {4, 10, kAnyPlatform, 3},
    {4, 90, kAnyPlatform, 4},
    {3, 51, kAnyPlatform, 5},
    {5, 0, kAnyPlatform, 7},
    {5, 1, kAnyPlatform, 8},
};

bool Matches(const VersionRow& row, const os::VersionRecord& record) {
    return row.major == record.majorVersion && row.minor == record.minorVersion &&
           (row.platform == kAnyPlatform || row.platform == record.platformId);
}

}  // namespace

int VersionCode(const os::VersionRecord& record) {
    if (record.platformId == 0) {
        return 1;
    }
    for (const VersionRow& row : kVersionTable) {
        if (Matches(row, record)) {
            return row.code;
        }
    }
    if ((record.majorVersion == 5 && record.minorVersion >= 2) || record.majorVersion >= 6) {
        return 9;
    }
    return 0;
}

}  // namespace vagent::files
