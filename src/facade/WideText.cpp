#include "facade/WideText.h"

#include "accounts/TextConversion.h"

std::vector<std::string> NarrowList(const std::vector<std::wstring>& in) {
    std::vector<std::string> out;
    out.reserve(in.size());
    for (const std::wstring& text : in) {
        out.push_back(Narrow(text));
    }
    return out;
}

_VXUserInfoW Widened(const _VXUserInfoA& record) {
    return _VXUserInfoW{Wide(record.name), Wide(record.comment)};
}

_VXUserGroupW Widened(const _VXUserGroupA& record) {
    return _VXUserGroupW{Wide(record.name)};
}

_VXSessionW Widened(const _VXSessionA& record) {
    _VXSessionW wide;
    wide.sessionId = record.sessionId;
    wide.info1 = Wide(record.info1);
    wide.macAddress = Wide(record.macAddress);
    wide.info3 = Wide(record.info3);
    wide.clientAddress = Wide(record.clientAddress);
    return wide;
}

_VXPrinterW Widened(const _VXPrinterA& record) {
    _VXPrinterW wide;
    wide.sessionId = record.sessionId;
    wide.printerName = Wide(record.printerName);
    return wide;
}

FileAttrW Widened(const FileAttrA& record) {
    FileAttrW wide;
    wide.name = Wide(record.name);
    wide.attribute = record.attribute;
    return wide;
}
