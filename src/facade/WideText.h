#pragma once

#include <string>
#include <vector>

#include "vagent/FileRecords.h"
#include "vagent/PrinterRecords.h"
#include "vagent/SessionRecords.h"
#include "vagent/UserRecords.h"

// The wide facade's conversions of lists and records, in the active code
// page. A string that cannot be converted becomes empty and the rest goes on.

// Each element converted to narrow, in order.
std::vector<std::string> NarrowList(const std::vector<std::wstring>& in);

// Each record's twin: string members converted, every other member as it is.
_VXUserInfoW Widened(const _VXUserInfoA& record);
_VXUserGroupW Widened(const _VXUserGroupA& record);
_VXSessionW Widened(const _VXSessionA& record);
_VXPrinterW Widened(const _VXPrinterA& record);
FileAttrW Widened(const FileAttrA& record);

// The caller's list is cleared, then the twin of each narrow record is
// appended.
template <class Wide, class Narrow>
void ReplaceWithWidened(const std::vector<Narrow>& in, std::vector<Wide>& out) {
    out.clear();
    out.reserve(in.size());
    for (const Narrow& record : in) {
        out.push_back(Widened(record));
    }
}
