#include "os/Registry.h"

#include <gtest/gtest.h>

#include <string>

#include "os/Facilities.h"
#include "os/Status.h"

using vagent::os::Installed;
using vagent::os::kLocalMachine;
using vagent::os::Registry;
using vagent::os::RegistryKey;

namespace {

constexpr char kTestKey[] = "SOFTWARE\\vagent-registry-test";

Registry& TheRegistry() {
    return Installed<Registry>();
}

// A POSIX host answers every registry call with "not supported".
bool HasRegistry() {
    RegistryKey key = 0;
    const std::uint32_t status = TheRegistry().OpenKey(kLocalMachine, "SOFTWARE", 0x20019, key);
    if (status == 0) {
        TheRegistry().CloseKey(key);
    }
    return status != vagent::os::kNotSupported;
}

// Creates the test's key for the scope and deletes it afterwards, so that the
// tests leave the machine's registry as they found it.
class ScopedTestKey {
public:
    ScopedTestKey() {
        TheRegistry().DeleteKey(kLocalMachine, kTestKey);
        RegistryKey key = 0;
        created_ = TheRegistry().CreateKey(kLocalMachine, kTestKey, key) == 0;
        if (created_) {
            TheRegistry().CloseKey(key);
        }
    }
    ~ScopedTestKey() { TheRegistry().DeleteKey(kLocalMachine, kTestKey); }
    ScopedTestKey(const ScopedTestKey&) = delete;
    ScopedTestKey& operator=(const ScopedTestKey&) = delete;

    bool Created() const { return created_; }

private:
    bool created_ = false;
};

}  // namespace

TEST(Registry, WithoutARegistryEveryCallIsNotSupported) {
    if (HasRegistry()) {
        GTEST_SKIP() << "this host has a registry";
    }
    RegistryKey key = 0;
    std::uint32_t value = 0;
    EXPECT_EQ(TheRegistry().OpenKey(kLocalMachine, kTestKey, 0x20019, key),
              vagent::os::kNotSupported);
    EXPECT_EQ(TheRegistry().CreateKey(kLocalMachine, kTestKey, key), vagent::os::kNotSupported);
    EXPECT_EQ(TheRegistry().QueryValue(key, "x", value), vagent::os::kNotSupported);
    EXPECT_EQ(TheRegistry().CloseKey(kLocalMachine), 0u);
}

TEST(Registry, MissingKeyIsNotFoundAndOpeningDoesNotCreateIt) {
    if (!HasRegistry()) {
        GTEST_SKIP() << "no registry on this host";
    }
    ScopedTestKey scope;
    ASSERT_TRUE(scope.Created());
    const std::string missing = std::string(kTestKey) + "\\Missing";
    RegistryKey key = 0;
    EXPECT_EQ(TheRegistry().OpenKey(kLocalMachine, missing, 0x20019 | 0x20006, key),
              vagent::os::kFileNotFound);
    EXPECT_EQ(TheRegistry().OpenKey(kLocalMachine, missing, 0x20019, key),
              vagent::os::kFileNotFound);
    EXPECT_EQ(TheRegistry().DeleteKey(kLocalMachine, missing), vagent::os::kFileNotFound);
}

TEST(Registry, NumberWrittenIsReadBackAfterReopening) {
    if (!HasRegistry()) {
        GTEST_SKIP() << "no registry on this host";
    }
    ScopedTestKey scope;
    ASSERT_TRUE(scope.Created());
    RegistryKey key = 0;
    ASSERT_EQ(TheRegistry().OpenKey(kLocalMachine, kTestKey, 0x20019 | 0x20006, key), 0u);
    EXPECT_EQ(TheRegistry().SetNumberValue(key, "PortNumber", 0xFEDCBA98u), 0u);
    EXPECT_EQ(TheRegistry().CloseKey(key), 0u);
    ASSERT_EQ(TheRegistry().OpenKey(kLocalMachine, kTestKey, 0x20019, key), 0u);
    std::uint32_t value = 0;
    EXPECT_EQ(TheRegistry().QueryValue(key, "PortNumber", value), 0u);
    EXPECT_EQ(value, 0xFEDCBA98u);
    EXPECT_EQ(TheRegistry().QueryValue(key, "Missing", value), vagent::os::kFileNotFound);
    EXPECT_EQ(TheRegistry().CloseKey(key), 0u);
    EXPECT_EQ(TheRegistry().CloseKey(kLocalMachine), 0u);
}
