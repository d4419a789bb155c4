#include "helpers/RegistrySnapshot.h"

#include <gtest/gtest.h>

#include "fakes/FakeRegistry.h"
#include "os/Facilities.h"
#include "os/Registry.h"

using vagent::test::FakeRegistry;
using vagent::test::RegistrySnapshot;

TEST(RegistrySnapshot, PutsBackValuesAndDeletesOnlyTheKeysItSawMissing) {
    FakeRegistry registry;
    vagent::os::ScopedFacility<vagent::os::Registry> scope(registry);
    registry.AddKey("Outer");
    registry.SetNumber("Outer", "kept", 7);
    {
        RegistrySnapshot snapshot({"Outer", "Outer\\Inner"},
                                  {{"Outer", "kept"}, {"Outer", "added"}, {"Outer\\Inner", "x"}});
        EXPECT_TRUE(snapshot.Complete());
        EXPECT_TRUE(snapshot.Existed("Outer"));
        EXPECT_FALSE(snapshot.Existed("Outer\\Inner"));
        registry.SetNumber("Outer", "kept", 8);
        registry.SetNumber("Outer", "added", 9);
        registry.SetNumber("Outer\\Inner", "x", 1);
    }
    std::uint32_t value = 0;
    EXPECT_TRUE(registry.HasKey("Outer"));
    EXPECT_TRUE(registry.Number("Outer", "kept", value));
    EXPECT_EQ(value, 7u);
    EXPECT_FALSE(registry.Number("Outer", "added", value));
    EXPECT_FALSE(registry.HasKey("Outer\\Inner"));
    EXPECT_EQ(registry.OpenKeys(), 0u);
}
