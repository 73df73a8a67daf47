// Tests for the toolkit heap: block accounting, zero-byte blocks and armed failures.
#include <lodeqdb/toolkit/pal/PwHeap.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "toolkit/pal/PwHeapFaults.h"

namespace {

class PwHeapTest : public ::testing::Test {
  protected:
    void TearDown() override { pwHeapFailReset(); }
};

TEST_F(PwHeapTest, AllocatedBlockIsUsableAndCounted) {
    const size_t before = pwHeapLiveBlockCount();
    void* block = pwHeapAlloc(nullptr, 100);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(pwHeapLiveBlockCount(), before + 1);
    std::memset(block, 0xAB, 100);
    EXPECT_EQ(static_cast<unsigned char*>(block)[99], 0xAB);
    pwHeapFree(nullptr, block);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwHeapTest, BlockIsAlignedForAnyFundamentalType) {
    void* block = pwHeapAlloc(nullptr, 3);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % alignof(std::max_align_t), 0u);
    pwHeapFree(nullptr, block);
}

TEST_F(PwHeapTest, ZeroByteRequestsGiveDistinctLiveBlocks) {
    const size_t before = pwHeapLiveBlockCount();
    void* first = pwHeapAlloc(nullptr, 0);
    void* second = pwHeapAlloc(nullptr, 0);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(pwHeapLiveBlockCount(), before + 2);
    pwHeapFree(nullptr, first);
    pwHeapFree(nullptr, second);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwHeapTest, ImpossibleSizeGivesNullWithoutCounting) {
    const size_t before = pwHeapLiveBlockCount();
    EXPECT_EQ(pwHeapAlloc(nullptr, SIZE_MAX), nullptr);
    EXPECT_EQ(pwHeapAlloc(nullptr, static_cast<size_t>(PTRDIFF_MAX) + 1), nullptr);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwHeapTest, HeapOtherThanTheProcessHeapGivesNull) {
    int notAHeap = 0;
    const size_t before = pwHeapLiveBlockCount();
    EXPECT_EQ(pwHeapAlloc(&notAHeap, 16), nullptr);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwHeapTest, FailAfterZeroFailsTheNextAllocationOnce) {
    const size_t before = pwHeapLiveBlockCount();
    pwHeapFailAfter(0);
    EXPECT_TRUE(pwHeapFailPending());
    EXPECT_EQ(pwHeapAlloc(nullptr, 8), nullptr);
    EXPECT_FALSE(pwHeapFailPending());
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
    void* later = pwHeapAlloc(nullptr, 8);
    EXPECT_NE(later, nullptr);
    if (later != nullptr) pwHeapFree(nullptr, later);
}

TEST_F(PwHeapTest, FailAfterTwoLetsTwoSucceedThenFailsTheThird) {
    pwHeapFailAfter(2);
    void* first = pwHeapAlloc(nullptr, 8);
    void* second = pwHeapAlloc(nullptr, 0);
    EXPECT_TRUE(pwHeapFailPending());
    void* third = pwHeapAlloc(nullptr, 8);
    void* fourth = pwHeapAlloc(nullptr, 8);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(third, nullptr);
    EXPECT_NE(fourth, nullptr);
    for (void* block : {first, second, fourth}) {
        if (block != nullptr) pwHeapFree(nullptr, block);
    }
}

TEST_F(PwHeapTest, ResetAndNegativeCountDisarm) {
    pwHeapFailAfter(0);
    pwHeapFailReset();
    EXPECT_FALSE(pwHeapFailPending());
    void* block = pwHeapAlloc(nullptr, 8);
    EXPECT_NE(block, nullptr);
    if (block != nullptr) pwHeapFree(nullptr, block);

    pwHeapFailAfter(0);
    pwHeapFailAfter(-5);
    EXPECT_FALSE(pwHeapFailPending());
    block = pwHeapAlloc(nullptr, 8);
    EXPECT_NE(block, nullptr);
    if (block != nullptr) pwHeapFree(nullptr, block);
}

TEST_F(PwHeapTest, ArmingAgainReplacesTheEarlierCount) {
    pwHeapFailAfter(5);
    pwHeapFailAfter(0);
    EXPECT_EQ(pwHeapAlloc(nullptr, 8), nullptr);
}

// Debug builds stop on a null block; release builds ignore it and keep the count.
TEST_F(PwHeapTest, FreeingNullIsRefusedInDebugAndIgnoredInRelease) {
    const size_t before = pwHeapLiveBlockCount();
    EXPECT_DEBUG_DEATH(pwHeapFree(nullptr, nullptr), "callers test for a null block");
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

}  // namespace
