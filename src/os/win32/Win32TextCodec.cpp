#include "os/win32/Win32TextCodec.h"

#include <climits>

#include "os/win32/WindowsHeaders.h"

namespace vagent::os {

std::uint32_t Win32TextCodec::NarrowToWide(const std::string& narrow, std::wstring& wide) {
    wide.clear();
    if (narrow.empty()) {
        return 0;
    }
    if (narrow.size() > static_cast<std::size_t>(INT_MAX)) {
        return ERROR_INVALID_PARAMETER;
    }
    const int inLength = static_cast<int>(narrow.size());
    const int needed = MultiByteToWideChar(CP_ACP, 0, narrow.data(), inLength, nullptr, 0);
    if (needed <= 0) {
        return GetLastError();
    }
    wide.resize(static_cast<std::size_t>(needed));
    if (MultiByteToWideChar(CP_ACP, 0, narrow.data(), inLength, &wide[0], needed) != needed) {
        wide.clear();
        return GetLastError();
    }
    return 0;
}

std::uint32_t Win32TextCodec::WideToNarrow(const std::wstring& wide, std::string& narrow) {
    narrow.clear();
    if (wide.empty()) {
        return 0;
    }
    if (wide.size() > static_cast<std::size_t>(INT_MAX)) {
        return ERROR_INVALID_PARAMETER;
    }
    const int inLength = static_cast<int>(wide.size());
    const int needed =
        WideCharToMultiByte(CP_ACP, 0, wide.data(), inLength, nullptr, 0, nullptr, nullptr);
    if (needed <= 0) {
        return GetLastError();
    }
    narrow.resize(static_cast<std::size_t>(needed));
    if (WideCharToMultiByte(CP_ACP, 0, wide.data(), inLength, &narrow[0], needed, nullptr,
                            nullptr) != needed) {
        narrow.clear();
        return GetLastError();
    }
    return 0;
}

template <>
TextCodec& RealFacility<TextCodec>() {
    static Win32TextCodec real;
    return real;
}

}  // namespace vagent::os
