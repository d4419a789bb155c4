#include <map>

#include "os/Status.h"
#include "os/SystemMessages.h"

namespace vagent::os {
namespace {

// A POSIX host has no message table of Windows codes: the texts of the codes
// that the library and its sockets report are kept here, in the system's
// English wording.
const std::map<std::uint32_t, const char*>& KnownTexts() {
    static const std::map<std::uint32_t, const char*> texts = {
        {0, "The operation completed successfully."},
        {2, "The system cannot find the file specified."},
        {3, "The system cannot find the path specified."},
        {5, "Access is denied."},
        {8, "Not enough memory resources are available to process this command."},
        {50, "The request is not supported."},
        {80, "The file exists."},
        {87, "The parameter is incorrect."},
        {122, "The data area passed to a system call is too small."},
        {183, "Cannot create a file when that file already exists."},
        {1400, "Invalid window handle."},
        {10004, "A blocking operation was interrupted by a call to WSACancelBlockingCall."},
        {10022, "An invalid argument was supplied."},
        {10048,
         "Only one usage of each socket address (protocol/network address/port) is normally "
         "permitted."},
        {10054, "An existing connection was forcibly closed by the remote host."},
        {10057,
         "A request to send or receive data was disallowed because the socket is not connected "
         "and (when sending on a datagram socket using a sendto call) no address was supplied."},
        {10060,
         "A connection attempt failed because the connected party did not properly respond "
         "after a period of time, or established connection failed because connected host has "
         "failed to respond."},
        {10061, "No connection could be made because the target machine actively refused it."},
        {10065, "A socket operation was attempted to an unreachable host."},
        {10093, "Either the application has not called WSAStartup, or WSAStartup failed."},
        {10103,
         "A call to WSALookupServiceEnd was made while this call was still processing. "
         "The call has been canceled."},
    };
    return texts;
}

// The status the system's table gives for a code it has no text for.
constexpr std::uint32_t kNoText = 317;

class PosixSystemMessages final : public SystemMessages {
public:
    std::uint32_t MessageText(std::uint32_t code, std::string& text) override {
        const auto found = KnownTexts().find(code);
        if (found == KnownTexts().end()) {
            return kNoText;
        }
        text = found->second;
        return 0;
    }
};

}  // namespace

template <>
SystemMessages& RealFacility<SystemMessages>() {
    static PosixSystemMessages real;
    return real;
}

}  // namespace vagent::os
