#include "facade/ErrorText.h"

#include "os/SystemMessages.h"
#include "vagent/ErrorCodes.h"

namespace vagent::facade {
namespace {

constexpr std::uint32_t kCustomerBit = 1u << 29;

std::string OwnText(std::uint32_t code) {
    switch (code) {
        case kErrorInvalidParameter:
            return "Invalid Parameter.";
        case kErrorInvalidSetting:
            return "Invalid Setting.";
        case kErrorNetReceiveData:
            return "Net Receive Data Error.";
        case kErrorNetReceiveDataLength:
            return "Net Receive Data Len Error.";
        default:
            return "Unknow Error.";
    }
}

std::string SystemText(std::uint32_t code) {
    std::string text;
    if (os::Installed<os::SystemMessages>().MessageText(code, text) != 0) {
        text.clear();
    }
    return text;
}

}  // namespace

std::string ErrorText(std::uint32_t code) {
    return (code & kCustomerBit) != 0 ? OwnText(code) : SystemText(code);
}

}  // namespace vagent::facade
