#include "vagent/VAgentW.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "accounts/ServerDiscovery.h"
#include "accounts/TextConversion.h"
#include "os/NetApi.h"
#include "vagent/LdapRootSite.h"

namespace {

constexpr std::size_t kHostBytes = 24;
constexpr std::size_t kPortBytes = 6;

// Fills the field with the text's first bytes, zeroes the rest; a text as
// long as the field keeps no terminator.
template <std::size_t Size>
void BoundedCopy(char (&field)[Size], const std::string& text) {
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), std::min(Size, text.size()));
}

std::string UpToFirstZero(const std::string& bytes) {
    return bytes.substr(0, bytes.find('\0'));
}

}  // namespace

static_assert(sizeof(VAgentW) == sizeof(VAgent), "VAgentW keeps VAgent's layout");

VAgentW::VAgentW() : agentHost_(), agentPort_(), workEnv_(0), errorCode_(0), filesCopyNumber_(0) {}

VAgentW::VAgentW(int workEnv, const std::wstring& host, const std::wstring& port)
    : agentHost_(), agentPort_(), workEnv_(workEnv), errorCode_(0), filesCopyNumber_(0) {
    SetAgentSite(host, port);
}

VAgentW::VAgentW(const VAgentW& other) = default;

VAgentW& VAgentW::operator=(const VAgentW& other) = default;

VAgentW::~VAgentW() = default;

int VAgentW::wstring2string(const std::wstring& in, std::string& out) {
    return WideToNarrowLogging(in, out, "wstring2string", "");
}

// The log text names the other direction; host programs match on it as it is.
int VAgentW::string2wstring(const std::string& in, std::wstring& out) {
    return NarrowToWideLogging(in, out, "wstring2string", "");
}

void VAgentW::SetAgentSite(const std::wstring& host, const std::wstring& port) {
    BoundedCopy(agentHost_, Narrow(host));
    BoundedCopy(agentPort_, Narrow(port));
}

void VAgentW::GetAgentSite(std::wstring& host, std::wstring& port) {
    ::string2wstring(HostText(), host);
    ::string2wstring(PortText(), port);
}

int VAgentW::SetWorkEnv(int env, int* previous) {
    if (previous != nullptr) {
        *previous = workEnv_;
    }
    workEnv_ = env;
    return 1;
}

int VAgentW::GetWorkEnv() {
    return workEnv_;
}

void VAgentW::SetLDAPRootSite(std::wstring& site) {
    ldapRootSite_ = Narrow(site);
    ::SetLDAPRootSite(ldapRootSite_);
}

int VAgentW::SetFilesCopySite(std::wstring& site, int number) {
    wstring2string(site, filesCopySite_);
    filesCopyNumber_ = number;
    return 1;
}

unsigned long VAgentW::GetErrorCode() {
    return errorCode_;
}

unsigned long VAgentW::SetErrorCode(unsigned long code) {
    const unsigned long previous = errorCode_;
    errorCode_ = static_cast<std::uint32_t>(code);
    return previous;
}

int VAgentW::GetErrorMessage(std::wstring& text) {
    VAgent agent;
    agent.SetErrorCode(errorCode_);
    std::string narrow;
    agent.GetErrorMessage(narrow);
    string2wstring(narrow, text);
    return 1;
}

int VAgentW::IsDnCtrl(int& result) {
    return VAgent::IsDnCtrl(result);
}

int VAgentW::IsComputer(int& result) {
    return VAgent::IsComputer(result);
}

VTask* VAgentW::CreateVTask(unsigned long id) {
    return VAgent::CreateVTask(id);
}

int VAgentW::GetDnCtrl(std::wstring& name) {
    const int found = ::GetDnCtrl(name);
    errorCode_ = vagent::os::Installed<vagent::os::NetApi>().LastError();
    return found;
}

// Allocated without throwing, as the library's own buffers are, so that a
// refused temporary takes the same way out as any other exhausted allocation.
std::unique_ptr<VAgent> VAgentW::NarrowAgent() {
    std::unique_ptr<VAgent> agent(new (std::nothrow) VAgent);
    if (agent == nullptr) {
        throw std::bad_alloc();
    }
    std::string rootSite = ldapRootSite_;
    agent->SetLDAPRootSite(rootSite);
    agent->SetWorkEnv(workEnv_, nullptr);
    agent->SetAgentSite(HostText(), PortText());
    return agent;
}

// A host that fills its field has no terminator and reads on into the port,
// as the narrow agent reads it; nothing past the port is read.
std::string VAgentW::HostText() const {
    return UpToFirstZero(std::string(agentHost_, kHostBytes) + std::string(agentPort_, kPortBytes));
}

std::string VAgentW::PortText() const {
    return UpToFirstZero(std::string(agentPort_, kPortBytes));
}
