#pragma once

#include <string>

#include "vagent/FileRecords.h"
#include "vagent/PrinterRecords.h"
#include "vagent/SessionRecords.h"
#include "vagent/UserRecords.h"

namespace vagentctl {

// Text for the narrow facade: in the target's code page when the agent
// talks to a service, and this machine's own narrow text (UTF-8 here) when
// it works in this process.
class NarrowCodec {
public:
    using Text = std::string;
    using UserInfo = _VXUserInfoA;
    using UserGroup = _VXUserGroupA;
    using Session = _VXSessionA;
    using Printer = _VXPrinterA;
    using FileAttr = FileAttrA;

    // A code page of 0 means this machine's own text.
    explicit NarrowCodec(unsigned codePage) : codePage_(codePage) {}

    Text ToTarget(const std::string& utf8) const;
    std::string FromTarget(const Text& text) const;
    Text LocalPath(const std::string& utf8) const { return utf8; }

private:
    unsigned codePage_;
};

}  // namespace vagentctl
