// Tests for PwArray: the growth sequence and its 1 MiB cap, failed growth, copies and moves,
// insertion, removal and search.
#include <lodeqdb/toolkit/core/PwArray.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "toolkit/pal/PwHeapFaults.h"

namespace {

using Plotwright::StatusInvalidInput;
using Plotwright::StatusOk;
using Plotwright::StatusOutOfMemory;

using Int64Array = PwArray<int64_t>;

struct Point {
    double x;
    double y;
    bool operator==(const Point&) const = default;
};

// Counts the copies PwArray makes when it changes blocks, to show it goes through R.
struct CountingReallocator {
    static inline size_t calls = 0;
    static void copy(int32_t* destination, const int32_t* source, size_t count) {
        ++calls;
        PwArrayMemCopyReallocator<int32_t>::copy(destination, source, count);
    }
};

class PwArrayTest : public ::testing::Test {
  protected:
    void SetUp() override { mLiveAtStart = pwHeapLiveBlockCount(); }
    void TearDown() override {
        pwHeapFailReset();
        EXPECT_EQ(pwHeapLiveBlockCount(), mLiveAtStart) << "a block outlived its array";
    }
    size_t mLiveAtStart = 0;
};

TEST_F(PwArrayTest, LayoutIsFourFields) {
    EXPECT_EQ(sizeof(Int64Array), sizeof(void*) + 3 * sizeof(size_t));
}

TEST_F(PwArrayTest, DefaultIsEmptyWithoutBlock) {
    const size_t before = pwHeapLiveBlockCount();
    Int64Array array;
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
    EXPECT_EQ(array.physicalLength(), 0u);
    EXPECT_EQ(array.logicalLength(), 0u);
    EXPECT_EQ(array.growLength(), 8u);
    EXPECT_TRUE(array.isEmpty());
    EXPECT_EQ(array.asArrayPtr(), nullptr);
}

TEST_F(PwArrayTest, GrowthFromEmptyDoublesAfterTheFirstStep) {
    Int64Array array;
    std::vector<size_t> physicalLengths;
    for (int64_t i = 0; i < 300; ++i) {
        ASSERT_EQ(array.append(i * 3), static_cast<size_t>(i));
        if (physicalLengths.empty() || physicalLengths.back() != array.physicalLength()) {
            physicalLengths.push_back(array.physicalLength());
        }
    }
    EXPECT_EQ(physicalLengths, (std::vector<size_t>{8, 16, 32, 64, 128, 256, 512}));
    EXPECT_EQ(array.length(), 300u);
    for (size_t i = 0; i < 300; ++i) ASSERT_EQ(array[i], static_cast<int64_t>(i * 3));
}

TEST_F(PwArrayTest, DoublingStopsAtOneMebibyteOfElements) {
    ASSERT_EQ(Int64Array::kMaxDoubling, 131072u);
    Int64Array atCap(131072, 8);
    ASSERT_EQ(atCap.setLogicalLength(131072), StatusOk);
    ASSERT_EQ(atCap.setLogicalLength(131073), StatusOk);
    EXPECT_EQ(atCap.physicalLength(), 262144u);  // still doubles: min(131072, cap) == cap

    Int64Array aboveCap(200000, 8);
    ASSERT_EQ(aboveCap.setLogicalLength(200000), StatusOk);
    ASSERT_EQ(aboveCap.append(7), 200000u);
    EXPECT_EQ(aboveCap.physicalLength(), 331072u);  // 200000 + 131072, not 400000
    ASSERT_EQ(aboveCap.setLogicalLength(331073), StatusOk);
    EXPECT_EQ(aboveCap.physicalLength(), 462144u);
    EXPECT_EQ(aboveCap[200000], 7);
}

TEST_F(PwArrayTest, CapDependsOnElementSize) {
    EXPECT_EQ(PwArray<uint8_t>::kMaxDoubling, 1048576u);
    EXPECT_EQ(PwArray<int32_t>::kMaxDoubling, 262144u);
}

TEST_F(PwArrayTest, RequestBeyondTheGrowthStepIsTakenAsIs) {
    Int64Array array;
    ASSERT_EQ(array.append(1), 0u);
    ASSERT_EQ(array.physicalLength(), 8u);
    ASSERT_EQ(array.setLogicalLength(100), StatusOk);
    EXPECT_EQ(array.physicalLength(), 100u);
    EXPECT_EQ(array.logicalLength(), 100u);
    EXPECT_EQ(array[0], 1);
    EXPECT_EQ(array[99], 0);  // elements that come into use are zero
}

TEST_F(PwArrayTest, GrowLengthLargerThanPhysicalWins) {
    Int64Array array(10, 50);
    ASSERT_EQ(array.setLogicalLength(10), StatusOk);
    ASSERT_EQ(array.append(5), 10u);
    EXPECT_EQ(array.physicalLength(), 60u);
    ASSERT_EQ(array.setGrowLength(3), StatusOk);
    ASSERT_EQ(array.setLogicalLength(61), StatusOk);
    EXPECT_EQ(array.physicalLength(), 120u);  // 60 + max(3, 60)
}

TEST_F(PwArrayTest, GrowLengthZeroIsRejected) {
    Int64Array array;
    EXPECT_EQ(array.setGrowLength(0), StatusInvalidInput);
    EXPECT_EQ(array.growLength(), 8u);
    EXPECT_EQ(Int64Array(0, 0).growLength(), 8u);
}

TEST_F(PwArrayTest, MovingToANewBlockKeepsTheContents) {
    PwArray<Point> array;
    for (int i = 0; i < 40; ++i) array.append(Point{i * 1.5, -i * 1.0});
    const Point* block = array.asArrayPtr();
    ASSERT_EQ(array.setPhysicalLength(1000), StatusOk);
    EXPECT_NE(array.asArrayPtr(), block);
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(array[static_cast<size_t>(i)], (Point{i * 1.5, -i * 1.0}));
}

TEST_F(PwArrayTest, BlockChangesGoThroughTheReallocator) {
    CountingReallocator::calls = 0;
    PwArray<int32_t, CountingReallocator> array;
    for (int32_t i = 0; i < 17; ++i) array.append(i);  // 0 -> 8 -> 16 -> 32
    EXPECT_EQ(CountingReallocator::calls, 2u);         // the first block had nothing to copy
    EXPECT_EQ(array.last(), 16);
}

TEST_F(PwArrayTest, FailedGrowthLeavesZeroAndZero) {
    Int64Array array;
    for (int64_t i = 0; i < 8; ++i) array.append(i);
    const size_t before = pwHeapLiveBlockCount();
    pwHeapFailAfter(0);
    EXPECT_EQ(array.append(8), Int64Array::kNoIndex);
    EXPECT_FALSE(pwHeapFailPending());
    EXPECT_EQ(array.physicalLength(), 0u);
    EXPECT_EQ(array.logicalLength(), 0u);
    EXPECT_EQ(array.asArrayPtr(), nullptr);
    EXPECT_EQ(pwHeapLiveBlockCount(), before - 1);  // the old block is gone
    EXPECT_EQ(array.append(9), 0u);                 // and the array is usable again
}

TEST_F(PwArrayTest, FailedInsertAndSetLengthLeaveZeroAndZero) {
    Int64Array array;
    array.append(1);
    ASSERT_EQ(array.setLogicalLength(8), StatusOk);
    pwHeapFailAfter(0);
    EXPECT_EQ(array.insertAt(0, 5), StatusOutOfMemory);
    EXPECT_EQ(array.physicalLength(), 0u);
    EXPECT_EQ(array.logicalLength(), 0u);

    array.append(1);
    pwHeapFailAfter(0);
    EXPECT_EQ(array.setPhysicalLength(4), StatusOutOfMemory);
    EXPECT_EQ(array.physicalLength(), 0u);
    EXPECT_EQ(array.logicalLength(), 0u);
}

TEST_F(PwArrayTest, UnrepresentableRequestFailsLikeAFailedAllocation) {
    Int64Array array;
    array.append(1);
    EXPECT_EQ(array.setLogicalLength(SIZE_MAX / 4), StatusOutOfMemory);
    EXPECT_EQ(array.physicalLength(), 0u);
    EXPECT_EQ(array.logicalLength(), 0u);
}

TEST_F(PwArrayTest, FreeingAnArrayWithoutRoomFreesNothing) {
    const size_t before = pwHeapLiveBlockCount();
    {
        Int64Array array(0, 4);
        EXPECT_EQ(pwHeapLiveBlockCount(), before);
    }
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
    {
        Int64Array array(16, 4);
        EXPECT_EQ(pwHeapLiveBlockCount(), before + 1);
        ASSERT_EQ(array.setPhysicalLength(0), StatusOk);
        EXPECT_EQ(pwHeapLiveBlockCount(), before);
        EXPECT_EQ(array.asArrayPtr(), nullptr);
    }
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwArrayTest, ShrinkingThePhysicalLengthCutsTheLogicalLength) {
    Int64Array array;
    for (int64_t i = 0; i < 10; ++i) array.append(i);
    ASSERT_EQ(array.setPhysicalLength(4), StatusOk);
    EXPECT_EQ(array.physicalLength(), 4u);
    EXPECT_EQ(array.logicalLength(), 4u);
    EXPECT_EQ(array.last(), 3);
}

TEST_F(PwArrayTest, InsertRemoveAndFind) {
    PwArray<int32_t> array;
    for (int32_t value : {10, 20, 30}) array.append(value);
    ASSERT_EQ(array.insertAt(1, 15), StatusOk);
    ASSERT_EQ(array.insertAt(0, 5), StatusOk);
    ASSERT_EQ(array.insertAt(5, 35), StatusOk);
    EXPECT_EQ(array.insertAt(7, 99), StatusInvalidInput);
    ASSERT_EQ(array.length(), 6u);
    const int32_t expected[] = {5, 10, 15, 20, 30, 35};
    for (size_t i = 0; i < 6; ++i) EXPECT_EQ(array.at(i), expected[i]);

    size_t index = 99;
    EXPECT_TRUE(array.find(20, index));
    EXPECT_EQ(index, 3u);
    EXPECT_FALSE(array.find(20, index, 4));
    EXPECT_EQ(index, 3u);  // left alone when nothing is found
    EXPECT_FALSE(array.find(20, index, 100));
    EXPECT_TRUE(array.contains(35));
    EXPECT_FALSE(array.contains(36));

    ASSERT_EQ(array.removeAt(0), StatusOk);
    ASSERT_EQ(array.removeAt(4), StatusOk);
    EXPECT_EQ(array.removeAt(4), StatusInvalidInput);
    EXPECT_EQ(array.first(), 10);
    EXPECT_EQ(array.last(), 30);
    EXPECT_EQ(array.length(), 4u);
    EXPECT_FALSE(array.contains(5));
}

TEST_F(PwArrayTest, FindFromAStartSkipsEarlierMatches) {
    PwArray<int32_t> array;
    for (int32_t value : {7, 1, 7, 2}) array.append(value);
    size_t index = 0;
    ASSERT_TRUE(array.find(7, index, 1));
    EXPECT_EQ(index, 2u);
}

TEST_F(PwArrayTest, AppendingOwnElementWhileGrowing) {
    Int64Array array;
    for (int64_t i = 0; i < 8; ++i) array.append(100 + i);
    ASSERT_EQ(array.physicalLength(), 8u);
    ASSERT_EQ(array.append(array[3]), 8u);  // the block it refers to is replaced
    EXPECT_EQ(array[8], 103);
    ASSERT_EQ(array.insertAt(0, array.last()), StatusOk);
    EXPECT_EQ(array[0], 103);
}

TEST_F(PwArrayTest, RemoveAllKeepsTheBlock) {
    Int64Array array;
    for (int64_t i = 0; i < 5; ++i) array.append(i);
    const int64_t* block = array.asArrayPtr();
    array.removeAll();
    EXPECT_TRUE(array.isEmpty());
    EXPECT_EQ(array.physicalLength(), 8u);
    EXPECT_EQ(array.asArrayPtr(), block);
}

TEST_F(PwArrayTest, CopiesAreIndependentAndMovesTakeTheBlock) {
    Int64Array original(20, 4);
    for (int64_t i = 0; i < 5; ++i) original.append(i);
    Int64Array copy(original);
    EXPECT_EQ(copy.physicalLength(), 20u);
    EXPECT_EQ(copy.logicalLength(), 5u);
    EXPECT_EQ(copy.growLength(), 4u);
    EXPECT_NE(copy.asArrayPtr(), original.asArrayPtr());
    copy[0] = 42;
    EXPECT_EQ(original[0], 0);

    Int64Array assigned;
    assigned = original;
    EXPECT_EQ(assigned.length(), 5u);
    EXPECT_EQ(assigned[4], 4);

    const int64_t* block = original.asArrayPtr();
    Int64Array moved(std::move(original));
    EXPECT_EQ(moved.asArrayPtr(), block);
    EXPECT_EQ(original.physicalLength(), 0u);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(original.asArrayPtr(), nullptr);

    copy = std::move(moved);
    EXPECT_EQ(copy.asArrayPtr(), block);
    EXPECT_EQ(copy[0], 0);
}

TEST_F(PwArrayTest, CopyWithoutMemoryIsEmpty) {
    Int64Array original;
    original.append(1);
    pwHeapFailAfter(0);
    Int64Array copy(original);
    EXPECT_FALSE(pwHeapFailPending());
    EXPECT_EQ(copy.physicalLength(), 0u);
    EXPECT_EQ(copy.logicalLength(), 0u);
    EXPECT_EQ(original.length(), 1u);
}

}  // namespace
