#pragma once

#include <string>

#include "vagent/FileRecords.h"
#include "vagent/PrinterRecords.h"
#include "vagent/SessionRecords.h"
#include "vagent/UserRecords.h"

namespace vagentctl {

// Text for the wide facade, which turns it into this system's code page
// itself. A text meant for a service is first checked against the target's
// code page and this system's, so that a name either cannot hold is refused
// here instead of arriving as question marks.
class WideCodec {
public:
    using Text = std::wstring;
    using UserInfo = _VXUserInfoW;
    using UserGroup = _VXUserGroupW;
    using Session = _VXSessionW;
    using Printer = _VXPrinterW;
    using FileAttr = FileAttrW;

    // A code page of 0 checks nothing (work in this process).
    explicit WideCodec(unsigned codePage) : codePage_(codePage) {}

    Text ToTarget(const std::string& utf8) const;
    std::string FromTarget(const Text& text) const;
    Text LocalPath(const std::string& utf8) const;

private:
    unsigned codePage_;
};

}  // namespace vagentctl
