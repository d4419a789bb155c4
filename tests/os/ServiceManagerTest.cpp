#include "os/ServiceManager.h"

#include <gtest/gtest.h>

#include "os/Status.h"

using vagent::os::Installed;
using vagent::os::ServiceHandle;
using vagent::os::ServiceManager;

namespace {

constexpr char kTestService[] = "VagentContractTest";

ServiceManager& Services() {
    return Installed<ServiceManager>();
}

// A service made for one test with the service manager and deleted when the
// test ends; on a system without a service manager, Available() is false.
class TestService {
public:
    TestService() {
        status_ = Services().OpenManager(vagent::os::kScManagerCreateService, manager_);
        if (status_ != 0) {
            return;
        }
        ServiceHandle existing = 0;
        if (Services().OpenNamed(manager_, kTestService, vagent::os::kServiceAllAccess, existing) ==
            0) {
            Services().Delete(existing);
            Services().Close(existing);
        }
        status_ = Services().CreateOwnProcess(manager_, kTestService, "Vagent Contract Test",
                                              "C:\\windows\\system32\\notepad.exe", service_);
    }
    ~TestService() {
        if (service_ != 0) {
            Services().Delete(service_);
            Services().Close(service_);
        }
        if (manager_ != 0) {
            Services().Close(manager_);
        }
    }
    TestService(const TestService&) = delete;
    TestService& operator=(const TestService&) = delete;

    std::uint32_t Status() const { return status_; }

private:
    ServiceHandle manager_ = 0;
    ServiceHandle service_ = 0;
    std::uint32_t status_ = 0;
};

}  // namespace

TEST(ServiceManager, ConfigurationQueryNeedsASizeQueryFirst) {
    TestService created;
    if (created.Status() == vagent::os::kNotSupported) {
        return;
    }
    ASSERT_EQ(created.Status(), 0u);
    ServiceHandle manager = 0;
    ServiceHandle service = 0;
    ASSERT_EQ(Services().OpenManager(vagent::os::kScManagerConnect, manager), 0u);
    ASSERT_EQ(Services().OpenNamed(manager, kTestService, vagent::os::kServiceQueryConfig, service),
              0u);
    std::uint32_t needed = 0;
    EXPECT_EQ(Services().QueryConfigSize(service, needed), vagent::os::kInsufficientBuffer);
    EXPECT_GT(needed, 36u);
    vagent::os::ServiceConfig config;
    EXPECT_EQ(Services().QueryConfig(service, needed, config), 0u);
    EXPECT_EQ(config.displayName, "Vagent Contract Test");
    EXPECT_EQ(config.binaryPath, "C:\\windows\\system32\\notepad.exe");
    EXPECT_TRUE(config.hasStartName);
    Services().Close(service);
    Services().Close(manager);
}

TEST(ServiceManager, AccountChangeStoresTheAccountAndTheDisplayName) {
    TestService created;
    if (created.Status() == vagent::os::kNotSupported) {
        return;
    }
    ASSERT_EQ(created.Status(), 0u);
    ServiceHandle manager = 0;
    ServiceHandle service = 0;
    ASSERT_EQ(Services().OpenManager(vagent::os::kScManagerCreateService, manager), 0u);
    ASSERT_EQ(Services().OpenNamed(
                  manager, kTestService,
                  vagent::os::kServiceChangeConfig | vagent::os::kServiceQueryConfig, service),
              0u);
    EXPECT_EQ(Services().ChangeAccount(service, ".\\vagent", "secret", kTestService), 0u);
    std::uint32_t needed = 0;
    Services().QueryConfigSize(service, needed);
    vagent::os::ServiceConfig config;
    ASSERT_EQ(Services().QueryConfig(service, needed, config), 0u);
    EXPECT_EQ(config.startName, ".\\vagent");
    EXPECT_EQ(config.displayName, kTestService);
    Services().Close(service);
    Services().Close(manager);
}

TEST(ServiceManager, OpeningAMissingServiceFails) {
    ServiceHandle manager = 0;
    const std::uint32_t opened = Services().OpenManager(vagent::os::kScManagerConnect, manager);
    if (opened == vagent::os::kNotSupported) {
        EXPECT_EQ(manager, 0u);
        return;
    }
    ASSERT_EQ(opened, 0u);
    ServiceHandle service = 0;
    EXPECT_EQ(Services().OpenNamed(manager, "NoSuchVagentService", vagent::os::kServiceQueryConfig,
                                   service),
              vagent::os::kServiceDoesNotExist);
    EXPECT_EQ(service, 0u);
    Services().Close(manager);
}
