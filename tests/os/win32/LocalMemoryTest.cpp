#include "os/win32/LocalMemory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>

using vagent::os::LocalMemory;

namespace {

// Large enough that the heap gives the block address space of its own and
// returns that space to the system when the block is freed, so that a freed
// block can be told from a live one.
constexpr std::uint32_t kLargeBlock = 16u * 1024u * 1024u;

DWORD StateOf(const void* address) {
    MEMORY_BASIC_INFORMATION info = {};
    return VirtualQuery(address, &info, sizeof(info)) == sizeof(info) ? info.State : 0;
}

bool AllZero(const void* block, std::size_t size) {
    const auto* bytes = static_cast<const unsigned char*>(block);
    for (std::size_t i = 0; i < size; ++i) {
        if (bytes[i] != 0) {
            return false;
        }
    }
    return true;
}

}  // namespace

TEST(LocalMemory, HoldsNothingUntilGivenABlock) {
    LocalMemory memory;
    EXPECT_EQ(memory.Get(), nullptr);
}

TEST(LocalMemory, SizedBlockIsZeroedAndAtLeastAsLargeAsAsked) {
    LocalMemory memory(4096);
    ASSERT_NE(memory.Get(), nullptr);
    EXPECT_GE(LocalSize(memory.Get()), 4096u);
    EXPECT_TRUE(AllZero(memory.Get(), 4096));
}

TEST(LocalMemory, BlockTheSystemCannotGiveLeavesItEmpty) {
    if (sizeof(void*) > 4) {
        GTEST_SKIP() << "a 64-bit process may be given 4 GiB";
    }
    LocalMemory memory(0xFFFFFFF0u);
    EXPECT_EQ(memory.Get(), nullptr);
}

TEST(LocalMemory, FreesItsBlockWhenTheScopeEnds) {
    void* address = nullptr;
    {
        LocalMemory memory(kLargeBlock);
        address = memory.Get();
        ASSERT_NE(address, nullptr);
        EXPECT_EQ(StateOf(address), static_cast<DWORD>(MEM_COMMIT));
    }
    EXPECT_NE(StateOf(address), static_cast<DWORD>(MEM_COMMIT));
}

TEST(LocalMemory, FreesItsBlockWhenACopyOutOfItThrows) {
    void* address = nullptr;
    try {
        LocalMemory memory(kLargeBlock);
        address = memory.Get();
        ASSERT_NE(address, nullptr);
        throw std::runtime_error("copy failed");
    } catch (const std::runtime_error&) {
    }
    ASSERT_NE(address, nullptr);
    EXPECT_NE(StateOf(address), static_cast<DWORD>(MEM_COMMIT));
}

TEST(LocalMemory, ReceiveFreesTheFormerBlockBeforeTakingTheNext) {
    LocalMemory memory(kLargeBlock);
    void* former = memory.Get();
    ASSERT_NE(former, nullptr);
    HLOCAL* slot = memory.Receive();
    EXPECT_NE(StateOf(former), static_cast<DWORD>(MEM_COMMIT));
    EXPECT_EQ(*slot, nullptr);
    EXPECT_EQ(memory.Get(), nullptr);
}

TEST(LocalMemory, TakesTheBufferASystemCallAllocates) {
    LocalMemory memory;
    const DWORD length = FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, ERROR_ACCESS_DENIED, 0, reinterpret_cast<LPSTR>(memory.Receive()), 0, nullptr);
    ASSERT_GT(length, 0u);
    ASSERT_NE(memory.Get(), nullptr);
    const std::string text(static_cast<const char*>(memory.Get()), length);
    EXPECT_EQ(std::strlen(static_cast<const char*>(memory.Get())), text.size());
    EXPECT_GE(LocalSize(memory.Get()), static_cast<SIZE_T>(length));
}
