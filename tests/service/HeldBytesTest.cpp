#include "HeldBytes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

namespace vagent::service {
namespace {

TEST(HeldBytes, TakesUpToTheBudgetAndNoMore) {
    HeldBytes held(100);
    EXPECT_TRUE(held.TryTake(60));
    EXPECT_TRUE(held.TryTake(40));
    EXPECT_FALSE(held.TryTake(1));
    EXPECT_EQ(held.Held(), 100u);
}

TEST(HeldBytes, ARefusedTakeTakesNothing) {
    HeldBytes held(100);
    EXPECT_TRUE(held.TryTake(70));
    EXPECT_FALSE(held.TryTake(31));
    EXPECT_EQ(held.Held(), 70u);
    EXPECT_TRUE(held.TryTake(30));
}

TEST(HeldBytes, ACountAboveTheWholeBudgetIsRefusedWithoutWrapping) {
    HeldBytes held(100);
    EXPECT_TRUE(held.TryTake(10));
    EXPECT_FALSE(held.TryTake(UINT64_MAX - 5));
    EXPECT_FALSE(held.TryTake(101));
    EXPECT_EQ(held.Held(), 10u);
}

TEST(HeldBytes, WhatIsGivenBackCanBeTakenAgain) {
    HeldBytes held(100);
    EXPECT_TRUE(held.TryTake(100));
    held.Give(25);
    EXPECT_EQ(held.Held(), 75u);
    EXPECT_TRUE(held.TryTake(25));
    EXPECT_FALSE(held.TryTake(1));
}

TEST(HeldBytes, ConcurrentTakersNeverTakeMoreThanTheBudget) {
    HeldBytes held(1000);
    std::vector<std::thread> takers;
    std::vector<int> taken(8, 0);
    for (std::size_t t = 0; t < taken.size(); ++t) {
        takers.emplace_back([&held, &taken, t] {
            for (int i = 0; i < 1000; ++i) {
                taken[t] += held.TryTake(1) ? 1 : 0;
            }
        });
    }
    for (std::thread& taker : takers) {
        taker.join();
    }
    int total = 0;
    for (const int count : taken) {
        total += count;
    }
    EXPECT_EQ(total, 1000);
    EXPECT_EQ(held.Held(), 1000u);
}

}  // namespace
}  // namespace vagent::service
