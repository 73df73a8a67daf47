// Tests for PwString: where the text lies, heap capacities, assignment from its own text,
// failures that keep the old value, the UTF-8 cache and the comparisons.
#include <lodeqdb/toolkit/core/PwString.h>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/pal/PwHeap.h>
#include "toolkit/pal/PwHeapFaults.h"

// Lets failed expectations show the text instead of the object's bytes.
static void PrintTo(const PwString& text, std::ostream* out) {
    *out << '"' << LodeUtil::Utf8FromUtf16(std::u16string_view(text.kwszPtr(), text.length()))
         << '"';
}

namespace {

using Plotwright::StatusInvalidInput;
using Plotwright::StatusOk;
using Plotwright::StatusOutOfMemory;

// "0123456789abcdef..." repeated to `length` units, so that every position is recognisable.
wstring Digits(size_t length) {
    static const char16_t kCycle[] = u"0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUV";
    wstring text;
    for (size_t i = 0; i < length; ++i) text.push_back(kCycle[i % (sizeof(kCycle) / 2 - 1)]);
    return text;
}

class PwStringTest : public ::testing::Test {
  protected:
    void SetUp() override { mLiveAtStart = pwHeapLiveBlockCount(); }
    void TearDown() override {
        pwHeapFailReset();
        EXPECT_EQ(pwHeapLiveBlockCount(), mLiveAtStart) << "a block outlived its strings";
    }
    size_t mLiveAtStart = 0;
};

TEST_F(PwStringTest, LayoutIsLengthWordThenTwentyUnitsThenPointer) {
    const size_t lengthWord = alignof(void*) > 4 ? alignof(void*) : 4;
    EXPECT_EQ(sizeof(PwString), lengthWord + 20 * sizeof(char16_t) + sizeof(void*));
}

TEST_F(PwStringTest, DefaultIsEmptyInObjectAndAllocatesNothing) {
    const size_t before = pwHeapLiveBlockCount();
    PwString text;
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
    ASSERT_NE(text.kwszPtr(), nullptr);
    EXPECT_EQ(text.kwszPtr()[0], u'\0');
    EXPECT_EQ(text.length(), 0u);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_FALSE(text.isOnHeap());
    EXPECT_EQ(text.capacity(), 20u);
}

TEST_F(PwStringTest, NineteenUnitsStayInTheObject) {
    const size_t before = pwHeapLiveBlockCount();
    const wstring source = Digits(19);
    PwString text(source);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
    EXPECT_FALSE(text.isOnHeap());
    EXPECT_EQ(text.capacity(), 20u);
    EXPECT_EQ(text.length(), 19u);
    EXPECT_EQ(text.toWString(), source);
    EXPECT_EQ(text.kwszPtr()[19], u'\0');
}

TEST_F(PwStringTest, TwentyUnitsTakeAHeapBlockOfThirtyTwo) {
    const size_t before = pwHeapLiveBlockCount();
    const wstring source = Digits(20);
    PwString text(source);
    EXPECT_EQ(pwHeapLiveBlockCount(), before + 1);
    EXPECT_TRUE(text.isOnHeap());
    EXPECT_EQ(text.capacity(), 32u);
    EXPECT_EQ(text.toWString(), source);
    EXPECT_EQ(text.kwszPtr()[20], u'\0');
}

TEST_F(PwStringTest, CapacityIsTheNextMultipleOfThirtyTwoAboveTheLength) {
    const std::pair<size_t, size_t> table[] = {{0, 20},  {1, 20},  {19, 20}, {20, 32},
                                               {31, 32}, {32, 64}, {33, 64}, {63, 64},
                                               {64, 96}, {95, 96}, {96, 128}};
    for (const auto& [length, capacity] : table) {
        PwString text(Digits(length));
        EXPECT_EQ(text.length(), length);
        EXPECT_EQ(text.capacity(), capacity) << "length " << length;
        EXPECT_EQ(text.isOnHeap(), length >= 20) << "length " << length;
    }
}

TEST_F(PwStringTest, CapacityFollowsTheLengthWhenTheTextShrinks) {
    PwString text(Digits(100));
    ASSERT_EQ(text.capacity(), 128u);
    ASSERT_EQ(text.assign(Digits(40).c_str()), StatusOk);
    EXPECT_EQ(text.capacity(), 64u);
    ASSERT_EQ(text.assign(u"short"), StatusOk);
    EXPECT_FALSE(text.isOnHeap());
    EXPECT_EQ(text.capacity(), 20u);
    EXPECT_EQ(text, u"short");
}

TEST_F(PwStringTest, ConstructorsCopyTheirSource) {
    const char16_t withZero[] = {u'a', u'\0', u'b'};
    EXPECT_TRUE(PwString(static_cast<const char16_t*>(nullptr)).isEmpty());
    EXPECT_EQ(PwString(u"host.plw"), u"host.plw");
    EXPECT_EQ(PwString(u"host.plw", 4), u"host");
    EXPECT_EQ(PwString(wstring(u"wide")), u"wide");

    const PwString embedded(withZero, 3);
    EXPECT_EQ(embedded.length(), 3u);
    EXPECT_EQ(embedded.toWString(), wstring(withZero, 3));
    EXPECT_NE(embedded, u"a");  // a zero-terminated text stops at the first zero

    const PwString original(Digits(50));
    const PwString copy(original);
    EXPECT_EQ(copy, original);
    EXPECT_NE(copy.kwszPtr(), original.kwszPtr());
}

TEST_F(PwStringTest, NullTextWithCountIsRejected) {
    PwString text(u"keep");
    EXPECT_EQ(text.assign(nullptr, 3), StatusInvalidInput);
    EXPECT_EQ(text, u"keep");
    EXPECT_EQ(text.assign(nullptr, 0), StatusOk);
    EXPECT_TRUE(text.isEmpty());
}

TEST_F(PwStringTest, MoveTakesTheBlockAndLeavesTheSourceEmpty) {
    PwString source(Digits(40));
    const char16_t* block = source.kwszPtr();
    const size_t before = pwHeapLiveBlockCount();

    PwString moved(std::move(source));
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
    EXPECT_EQ(moved.kwszPtr(), block);
    EXPECT_TRUE(source.isEmpty());  // NOLINT(bugprone-use-after-move): the state is promised
    EXPECT_FALSE(source.isOnHeap());

    PwString target(Digits(70));
    target = std::move(moved);  // frees target's own block
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
    EXPECT_EQ(target.kwszPtr(), block);
    EXPECT_EQ(target.toWString(), Digits(40));
}

TEST_F(PwStringTest, AssignmentOperatorsReplaceTheText) {
    PwString text;
    text = u"first";
    EXPECT_EQ(text, u"first");
    text = wstring(u"second");
    EXPECT_EQ(text, u"second");
    const PwString other(Digits(33));
    text = other;
    EXPECT_EQ(text, other);
    text = static_cast<const char16_t*>(nullptr);
    EXPECT_TRUE(text.isEmpty());
}

TEST_F(PwStringTest, AssignFromInsideTheOwnInlineText) {
    PwString text(u"0123456789");
    ASSERT_EQ(text.assign(text.kwszPtr() + 3, 5), StatusOk);
    EXPECT_EQ(text, u"34567");
    EXPECT_FALSE(text.isOnHeap());
}

TEST_F(PwStringTest, AssignFromInsideTheOwnHeapTextInTheSameBlock) {
    PwString text(Digits(50));
    const char16_t* block = text.kwszPtr();
    ASSERT_EQ(text.assign(text.kwszPtr() + 3, 40), StatusOk);
    EXPECT_EQ(text.kwszPtr(), block);
    EXPECT_EQ(text.toWString(), Digits(50).substr(3, 40));
}

TEST_F(PwStringTest, AssignFromInsideTheOwnHeapTextIntoASmallerBlock) {
    PwString text(Digits(90));
    ASSERT_EQ(text.assign(text.kwszPtr() + 5, 40), StatusOk);
    EXPECT_EQ(text.capacity(), 64u);
    EXPECT_EQ(text.toWString(), Digits(90).substr(5, 40));
}

TEST_F(PwStringTest, AssignFromInsideTheOwnHeapTextIntoTheObject) {
    PwString text(Digits(40));
    ASSERT_EQ(text.assign(text.kwszPtr() + 10, 5), StatusOk);
    EXPECT_FALSE(text.isOnHeap());
    EXPECT_EQ(text.toWString(), Digits(40).substr(10, 5));
}

TEST_F(PwStringTest, AssigningItselfKeepsTheText) {
    PwString inlineText(u"abc");
    PwString heapText(Digits(45));
    // Through references, as self-assignment happens in practice (and compilers warn on the
    // literal form).
    const PwString& sameInline = inlineText;
    const PwString& sameHeap = heapText;
    inlineText = sameInline;
    heapText = sameHeap;
    EXPECT_EQ(inlineText, u"abc");
    EXPECT_EQ(heapText.toWString(), Digits(45));
    ASSERT_EQ(heapText.assign(heapText.kwszPtr(), heapText.length()), StatusOk);
    ASSERT_EQ(inlineText.assign(inlineText.kwszPtr()), StatusOk);
    EXPECT_EQ(heapText.toWString(), Digits(45));
    EXPECT_EQ(inlineText, u"abc");
}

TEST_F(PwStringTest, OversizeLengthKeepsTheOldValue) {
    PwString text(Digits(25));
    const char* narrow = text.utf8();
    ASSERT_NE(narrow, nullptr);
    EXPECT_EQ(text.assign(u"x", PwString::kMaxLength + 1), StatusInvalidInput);
    EXPECT_EQ(text.toWString(), Digits(25));
    EXPECT_EQ(text.utf8(), narrow);
    // The sum overflows the length field although each part alone would fit.
    EXPECT_EQ(text.append(u"x", PwString::kMaxLength - 24), StatusInvalidInput);
    EXPECT_EQ(text.toWString(), Digits(25));
}

TEST_F(PwStringTest, FailedAllocationKeepsTheOldValue) {
    PwString inlineText(u"short");
    pwHeapFailAfter(0);
    EXPECT_EQ(inlineText.assign(Digits(30).c_str()), StatusOutOfMemory);
    EXPECT_FALSE(pwHeapFailPending());
    EXPECT_EQ(inlineText, u"short");
    EXPECT_FALSE(inlineText.isOnHeap());

    PwString heapText(Digits(40));
    const char16_t* block = heapText.kwszPtr();
    pwHeapFailAfter(0);
    EXPECT_EQ(heapText.append(Digits(40).c_str()), StatusOutOfMemory);
    EXPECT_FALSE(pwHeapFailPending());
    EXPECT_EQ(heapText.kwszPtr(), block);
    EXPECT_EQ(heapText.capacity(), 64u);
    EXPECT_EQ(heapText.toWString(), Digits(40));
}

TEST_F(PwStringTest, ShrinkingIntoASmallerBlockCanFailAndKeepsTheOldValue) {
    PwString text(Digits(100));
    pwHeapFailAfter(0);
    EXPECT_EQ(text.assign(text.kwszPtr(), 30), StatusOutOfMemory);
    EXPECT_EQ(text.toWString(), Digits(100));
    EXPECT_EQ(text.capacity(), 128u);
}

TEST_F(PwStringTest, CopyThatCannotAllocateIsEmpty) {
    const PwString original(Digits(30));
    pwHeapFailAfter(0);
    const PwString copy(original);
    EXPECT_FALSE(pwHeapFailPending());
    EXPECT_TRUE(copy.isEmpty());
    EXPECT_FALSE(copy.isOnHeap());
}

TEST_F(PwStringTest, AppendGrowsFromTheObjectToTheHeap) {
    PwString text(u"0123456789");
    ASSERT_EQ(text.append(u"abcdefghij"), StatusOk);
    EXPECT_TRUE(text.isOnHeap());
    EXPECT_EQ(text.capacity(), 32u);
    EXPECT_EQ(text, u"0123456789abcdefghij");
    ASSERT_EQ(text.append(static_cast<const char16_t*>(nullptr)), StatusOk);
    ASSERT_EQ(text.append(PwString(u"!")), StatusOk);
    EXPECT_EQ(text, u"0123456789abcdefghij!");
    EXPECT_EQ(text.append(nullptr, 2), StatusInvalidInput);
    EXPECT_EQ(text.length(), 21u);
}

TEST_F(PwStringTest, AppendingItselfDoublesTheText) {
    PwString inlineText(u"0123456789abcdefghi");  // 19 units, the doubled text needs the heap
    ASSERT_EQ(inlineText.append(inlineText), StatusOk);
    EXPECT_EQ(inlineText, u"0123456789abcdefghi0123456789abcdefghi");

    PwString heapText(Digits(40));
    ASSERT_EQ(heapText.append(heapText.kwszPtr() + 1, 10), StatusOk);  // stays in its block
    EXPECT_EQ(heapText.toWString(), Digits(40) + Digits(11).substr(1));
}

TEST_F(PwStringTest, Utf8IsMadeOnceAndDroppedWhenTheTextChanges) {
    PwString text(u"Zeichnung \u00e4");
    const size_t before = pwHeapLiveBlockCount();
    const char* narrow = text.utf8();
    ASSERT_NE(narrow, nullptr);
    EXPECT_STREQ(narrow, "Zeichnung \xC3\xA4");
    EXPECT_EQ(pwHeapLiveBlockCount(), before + 1);
    EXPECT_EQ(text.utf8(), narrow);  // cached, not made again
    EXPECT_EQ(pwHeapLiveBlockCount(), before + 1);

    ASSERT_EQ(text.append(u".plw"), StatusOk);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
    EXPECT_STREQ(text.utf8(), "Zeichnung \xC3\xA4.plw");
    text = u"x";
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwStringTest, DestructionFreesTextAndUtf8Blocks) {
    const size_t before = pwHeapLiveBlockCount();
    {
        PwString text(Digits(60));
        ASSERT_NE(text.utf8(), nullptr);
        EXPECT_EQ(pwHeapLiveBlockCount(), before + 2);
    }
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_F(PwStringTest, Utf8OfEmptyAndOfLoneSurrogate) {
    EXPECT_STREQ(PwString().utf8(), "");
    const char16_t lone[] = {u'a', 0xD800, u'b', 0};
    EXPECT_STREQ(PwString(lone).utf8(),
                 "a\xEF\xBF\xBD"
                 "b");
}

TEST_F(PwStringTest, Utf8WithoutMemoryIsNullAndLaterSucceeds) {
    const PwString text(u"plain");
    pwHeapFailAfter(0);
    EXPECT_EQ(text.utf8(), nullptr);
    EXPECT_FALSE(pwHeapFailPending());
    EXPECT_STREQ(text.utf8(), "plain");
}

TEST_F(PwStringTest, ComparisonsLookAtEveryUnit) {
    const PwString abc(u"abc");
    EXPECT_TRUE(abc == PwString(u"abc"));
    EXPECT_FALSE(abc != PwString(u"abc"));
    EXPECT_TRUE(abc != PwString(u"abd"));
    EXPECT_TRUE(abc != PwString(u"ab"));
    EXPECT_TRUE(abc == u"abc");
    EXPECT_TRUE(u"abc" == abc);
    EXPECT_TRUE(abc != u"abcd");
    EXPECT_TRUE(u"ab" != abc);
    EXPECT_TRUE(PwString() == static_cast<const char16_t*>(nullptr));
    EXPECT_TRUE(abc != static_cast<const char16_t*>(nullptr));
    EXPECT_TRUE(PwString(Digits(40)) == PwString(Digits(40)));
    EXPECT_TRUE(PwString(Digits(40)) != PwString(Digits(41)));
}

}  // namespace
