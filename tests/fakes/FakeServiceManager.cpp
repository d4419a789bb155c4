#include "fakes/FakeServiceManager.h"

#include <gtest/gtest.h>

#include "os/Status.h"

namespace vagent::test {
namespace {

constexpr os::ServiceHandle kManagerHandle = 1;
constexpr os::ServiceHandle kFirstServiceHandle = 100;

// What QueryServiceConfigA needs: the fixed record and every text with its
// zero.
std::uint32_t RecordSize(const os::ServiceConfig& config) {
    return static_cast<std::uint32_t>(36 + config.binaryPath.size() + 1 + config.startName.size() +
                                      1 + config.displayName.size() + 1);
}

}  // namespace

FakeServiceManager::Service* FakeServiceManager::Find(os::ServiceHandle service) {
    if (service < kFirstServiceHandle || service - kFirstServiceHandle >= opened_.size()) {
        ADD_FAILURE() << "unknown service handle " << service;
        return nullptr;
    }
    const auto found = services.find(opened_[service - kFirstServiceHandle]);
    return found == services.end() ? nullptr : &found->second;
}

std::uint32_t FakeServiceManager::OpenManager(std::uint32_t access, os::ServiceHandle& manager) {
    calls.push_back("OpenManager " + std::to_string(access));
    manager = 0;
    if (managerStatus != 0) {
        return managerStatus;
    }
    manager = kManagerHandle;
    ++openHandles;
    return 0;
}

std::uint32_t FakeServiceManager::OpenNamed(os::ServiceHandle manager, const std::string& name,
                                            std::uint32_t access, os::ServiceHandle& service) {
    calls.push_back("OpenNamed " + name + " " + std::to_string(access));
    service = 0;
    EXPECT_EQ(manager, kManagerHandle);
    if (services.count(name) == 0) {
        return os::kServiceDoesNotExist;
    }
    opened_.push_back(name);
    service = kFirstServiceHandle + opened_.size() - 1;
    ++openHandles;
    return 0;
}

std::uint32_t FakeServiceManager::CreateOwnProcess(os::ServiceHandle, const std::string& name,
                                                   const std::string&, const std::string&,
                                                   os::ServiceHandle& service) {
    ADD_FAILURE() << "CreateOwnProcess " << name << " is not part of this fake";
    service = 0;
    return os::kNotSupported;
}

std::uint32_t FakeServiceManager::Delete(os::ServiceHandle service) {
    ADD_FAILURE() << "Delete " << service << " is not part of this fake";
    return os::kNotSupported;
}

std::uint32_t FakeServiceManager::QueryConfigSize(os::ServiceHandle service,
                                                  std::uint32_t& needed) {
    calls.push_back("QueryConfigSize");
    const Service* found = Find(service);
    if (found == nullptr) {
        return os::kInvalidParameter;
    }
    needed = RecordSize(found->config);
    return os::kInsufficientBuffer;
}

std::uint32_t FakeServiceManager::QueryConfig(os::ServiceHandle service, std::uint32_t capacity,
                                              os::ServiceConfig& config) {
    calls.push_back("QueryConfig " + std::to_string(capacity));
    const Service* found = Find(service);
    if (found == nullptr) {
        return os::kInvalidParameter;
    }
    if (queryStatus != 0) {
        return queryStatus;
    }
    if (capacity < RecordSize(found->config)) {
        return os::kInsufficientBuffer;
    }
    config = found->config;
    return 0;
}

std::uint32_t FakeServiceManager::ChangeAccount(os::ServiceHandle service,
                                                const std::string& account,
                                                const std::string& password,
                                                const std::string& displayName) {
    calls.push_back("ChangeAccount " + account + " " + password + " " + displayName);
    Service* found = Find(service);
    if (found == nullptr) {
        return os::kInvalidParameter;
    }
    if (changeStatus != 0) {
        return changeStatus;
    }
    found->config.startName = account;
    found->config.hasStartName = true;
    found->config.displayName = displayName;
    found->password = password;
    return 0;
}

void FakeServiceManager::Close(os::ServiceHandle handle) {
    calls.push_back("Close");
    EXPECT_NE(handle, 0u);
    --openHandles;
}

}  // namespace vagent::test
