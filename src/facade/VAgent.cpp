#include "vagent/VAgent.h"

// The agent object itself: its fields, its settings, the error texts and the
// checks that always run on this machine.

#include <algorithm>
#include <cstring>

#include "accounts/ServerDiscovery.h"
#include "accounts/TextConversion.h"
#include "facade/ErrorText.h"
#include "facade/RemoteCall.h"
#include "facade/Shield.h"
#include "vagent/LdapRootSite.h"
#include "vagent/TaskFactory.h"

namespace {

template <std::size_t Width>
void BoundedCopy(char (&field)[Width], const std::string& text) {
    std::memset(field, 0, Width);
    std::memcpy(field, text.data(), std::min(Width, text.size()));
}

}  // namespace

VAgent::VAgent() : workEnv_(0), errorCode_(0), filesCopyNumber_(0) {
    std::memset(agentHost_, 0, sizeof agentHost_);
    std::memset(agentPort_, 0, sizeof agentPort_);
}

VAgent::VAgent(int workEnv, const std::string& host, const std::string& port) : VAgent() {
    workEnv_ = workEnv;
    if (!host.empty()) {
        SetAgentSite(host, port);
    }
}

VAgent::VAgent(const VAgent& other) = default;
VAgent& VAgent::operator=(const VAgent& other) = default;
VAgent::~VAgent() = default;

void VAgent::SetAgentSite(const std::string& host, const std::string& port) {
    BoundedCopy(agentHost_, host);
    BoundedCopy(agentPort_, port);
}

// A host of 24 characters has no terminator of its own and reads on into the
// port, as it always has; the local copy of both fields, with a zero after
// them, keeps that read inside the object.
std::string VAgent::HostText() const {
    char joined[sizeof agentHost_ + sizeof agentPort_ + 1] = {};
    std::memcpy(joined, agentHost_, sizeof agentHost_);
    std::memcpy(joined + sizeof agentHost_, agentPort_, sizeof agentPort_);
    return std::string(joined);
}

std::string VAgent::PortText() const {
    char port[sizeof agentPort_ + 1] = {};
    std::memcpy(port, agentPort_, sizeof agentPort_);
    return std::string(port);
}

void VAgent::GetAgentSite(std::string& host, std::string& port) {
    host = HostText();
    port = PortText();
}

bool VAgent::IsRemote() const {
    return agentHost_[0] != '\0';
}

vagent::facade::AgentTarget VAgent::Target() const {
    return vagent::facade::AgentTarget{HostText(), PortText(), workEnv_, ldapRootSite_};
}

std::uint32_t* VAgent::RemoteErrorCode() {
    return IsRemote() ? &errorCode_ : nullptr;
}

int VAgent::SetWorkEnv(int env, int* previous) {
    if (previous != nullptr) {
        *previous = workEnv_;
    }
    workEnv_ = env;
    return 1;
}

int VAgent::GetWorkEnv() {
    return workEnv_;
}

void VAgent::SetLDAPRootSite(std::string& site) {
    ldapRootSite_ = site;
    ::SetLDAPRootSite(site);
}

int VAgent::SetFilesCopySite(std::string& site, int number) {
    filesCopySite_ = site;
    filesCopyNumber_ = number;
    return 1;
}

unsigned long VAgent::GetErrorCode() {
    return errorCode_;
}

unsigned long VAgent::SetErrorCode(unsigned long code) {
    const unsigned long previous = errorCode_;
    errorCode_ = static_cast<std::uint32_t>(code);
    return previous;
}

int VAgent::GetErrorMessage(std::string& text) {
    vagent::facade::Shielded(0, nullptr, [&] {
        text = vagent::facade::ErrorText(errorCode_);
        return 1;
    });
    return 1;
}

int VAgent::IsDnCtrl(int& result) {
    return vagent::facade::Shielded(0, nullptr, [&] { return ::IsDnCtrl(result); });
}

int VAgent::IsComputer(int& result) {
    return vagent::facade::Shielded(0, nullptr, [&] { return ::IsComputer(result, 0); });
}

VTask* VAgent::CreateVTask(unsigned long id) {
    return ::CreateVTask(id);
}

int VAgent::GetDnCtrl(std::string& name) {
    return vagent::facade::Shielded(0, nullptr, [&] {
        std::wstring wide;
        const int found = ::GetDnCtrl(wide);
        if (found != 0) {
            wstring2string(wide, name);
        }
        return found;
    });
}

int VAgent::NotOffered() {
    return 0;
}

int VAgent::AddUserPrivilege(std::string&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgent::RemoveUserPrivilege(std::string&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgent::ShowUserPrivilege(std::string&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgent::AddGroupPrivlege(std::string&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgent::RemoveGroupPrivlege(std::string&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgent::ShowGroupPrivilege(std::string&, std::vector<VPrivilege*>&) {
    return NotOffered();
}

int VAgent::RenameUser(std::vector<std::string>&, std::vector<std::string>&) {
    return NotOffered();
}

int VAgent::RenameGroup(std::vector<std::string>&, std::vector<std::string>&) {
    return NotOffered();
}
