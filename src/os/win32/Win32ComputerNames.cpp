#include "os/win32/Win32ComputerNames.h"

#include "os/win32/WindowsHeaders.h"

namespace vagent::os {

std::uint32_t Win32ComputerNames::ComputerNameEx(std::uint32_t format, char* buffer,
                                                 std::uint32_t& size) {
    DWORD length = size;
    if (!GetComputerNameExA(static_cast<COMPUTER_NAME_FORMAT>(format), buffer, &length)) {
        const DWORD status = GetLastError();
        size = length;
        return status;
    }
    size = length;
    return 0;
}

template <>
ComputerNames& RealFacility<ComputerNames>() {
    static Win32ComputerNames real;
    return real;
}

}  // namespace vagent::os
