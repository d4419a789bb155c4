#include "accounts/DnsName.h"

#include <new>

#include "os/ComputerNames.h"
#include "vagent/ErrorCodes.h"
#include "vagent/DllLog.h"

namespace {

vagent::os::ComputerNames& Names() {
    return vagent::os::Installed<vagent::os::ComputerNames>();
}

// The size the name needs with its zero, as the size query reports it.
std::uint32_t QueryNameSize(std::uint32_t format) {
    std::uint32_t size = 0;
    Names().ComputerNameEx(format, nullptr, size);
    return size;
}

}  // namespace

int GetDnsName(char** name, int nameType) {
    const auto format = static_cast<std::uint32_t>(nameType);
    std::uint32_t size = QueryNameSize(format);
    char* buffer = new (std::nothrow) char[size == 0 ? 1 : size]();
    if (buffer == nullptr) {
        DllLogPrintf("GetDnsName : new [%ld] bytes failed", static_cast<long>(size));
        return 0;
    }
    if (Names().ComputerNameEx(format, buffer, size) != 0) {
        delete[] buffer;
        *name = nullptr;
        return 0;
    }
    *name = buffer;
    return 1;
}

int NameDns2Ldap(const std::string& dns, std::string& out, int reverse) {
    std::string result;
    std::string rest = dns;
    for (;;) {
        const std::size_t dot = reverse == 0 ? rest.find('.') : rest.rfind('.');
        if (!result.empty()) {
            result += ", ";
        }
        if (dot == std::string::npos) {
            break;
        }
        if (reverse == 0) {
            result += "DC=" + rest.substr(0, dot);
            rest = rest.substr(dot + 1);
        } else {
            result += "DC=" + rest.substr(dot + 1);
            rest = rest.substr(0, dot);
        }
    }
    result += "DC=" + rest;
    out = result;
    return 1;
}

bool ReadDnsDomain(const char* function, std::uint32_t& errorCode, std::string& domain) {
    std::uint32_t size = QueryNameSize(vagent::os::kComputerNameDnsDomain);
    char* buffer = new (std::nothrow) char[size == 0 ? 1 : size]();
    if (buffer == nullptr) {
        errorCode = vagent::kErrorNotEnoughMemory;
        DllLogPrintf("%s : new [%ld] bytes failed", function, static_cast<long>(size));
        return false;
    }
    Names().ComputerNameEx(vagent::os::kComputerNameDnsDomain, buffer, size);
    domain = buffer;
    delete[] buffer;
    return true;
}

bool ReadDomainDn(const char* function, std::uint32_t& errorCode, std::string& dn) {
    std::string domain;
    if (!ReadDnsDomain(function, errorCode, domain)) {
        return false;
    }
    NameDns2Ldap(domain, dn, 0);
    return true;
}
