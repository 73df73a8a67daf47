// Tests for pwutNewString and pwutDelBuffer: copies, null text, failed allocation, freeing.
#include <lodeqdb/toolkit/core/PwStringBuffer.h>

#include <gtest/gtest.h>

#include <string>

#include <lodeqdb/toolkit/pal/PwHeap.h>
#include "toolkit/pal/PwHeapFaults.h"

namespace {

class PwStringBufferTest : public ::testing::Test {
  protected:
    void TearDown() override { pwHeapFailReset(); }
};

TEST_F(PwStringBufferTest, NewStringCopiesTextIntoOwnBlock) {
    const size_t before = pwHeapLiveBlockCount();
    char16_t source[] = u"Zeichnung ä.plw";
    char16_t* copy = nullptr;
    ASSERT_EQ(pwutNewString(source, copy), Plotwright::StatusOk);
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, source);
    EXPECT_EQ(std::u16string(copy), u"Zeichnung ä.plw");
    EXPECT_EQ(pwHeapLiveBlockCount(), before + 1);

    source[0] = u'X';  // the copy must not share storage with the source
    EXPECT_EQ(copy[0], u'Z');

    pwutDelBuffer(copy);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwStringBufferTest, EmptyTextGivesTerminatedBlock) {
    char16_t* copy = nullptr;
    ASSERT_EQ(pwutNewString(u"", copy), Plotwright::StatusOk);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy[0], u'\0');
    pwutDelBuffer(copy);
}

TEST_F(PwStringBufferTest, NullTextIsInvalidAndClearsOut) {
    const size_t before = pwHeapLiveBlockCount();
    char16_t stale = u'x';
    char16_t* out = &stale;
    EXPECT_EQ(pwutNewString(nullptr, out), Plotwright::StatusInvalidInput);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwStringBufferTest, FailedAllocationReportsOutOfMemoryAndClearsOut) {
    const size_t before = pwHeapLiveBlockCount();
    char16_t stale = u'x';
    char16_t* out = &stale;
    pwHeapFailAfter(0);
    EXPECT_EQ(pwutNewString(u"text", out), Plotwright::StatusOutOfMemory);
    EXPECT_FALSE(pwHeapFailPending());
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwStringBufferTest, DeletingNullDoesNothing) {
    const size_t before = pwHeapLiveBlockCount();
    char16_t* buffer = nullptr;
    pwutDelBuffer(buffer);
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

}  // namespace
