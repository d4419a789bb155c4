#include "os/SystemMessages.h"
#include "os/win32/LocalMemory.h"
#include "os/win32/WindowsHeaders.h"

namespace vagent::os {
namespace {

class Win32SystemMessages final : public SystemMessages {
public:
    std::uint32_t MessageText(std::uint32_t code, std::string& text) override {
        LocalMemory buffer;
        const DWORD length =
            FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                               FORMAT_MESSAGE_IGNORE_INSERTS,
                           nullptr, code, 0, reinterpret_cast<LPSTR>(buffer.Receive()), 0, nullptr);
        if (length == 0 || buffer.Get() == nullptr) {
            const DWORD status = GetLastError();
            return status != ERROR_SUCCESS ? status : ERROR_MR_MID_NOT_FOUND;
        }
        text.assign(static_cast<const char*>(buffer.Get()), length);
        return 0;
    }
};

}  // namespace

template <>
SystemMessages& RealFacility<SystemMessages>() {
    static Win32SystemMessages real;
    return real;
}

}  // namespace vagent::os
