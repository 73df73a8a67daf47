// Copying, ordering, replacing and trimming wide strings.
#include <lodeqdb/lodeutil/Strings.h>

#include <gtest/gtest.h>

namespace {

using LodeUtil::Order;
namespace StringCase = LodeUtil::StringCase;
namespace StringOrder = LodeUtil::StringOrder;

int Sign(int value) {
    return value < 0 ? -1 : (value > 0 ? 1 : 0);
}

TEST(MakeWideString, CopiesPointerAndString) {
    const char16_t text[] = u"Plan A";
    wstring copy = LodeUtil::MakeWideString(text);
    EXPECT_EQ(copy, u"Plan A");
    EXPECT_NE(copy.data(), text);
    EXPECT_EQ(LodeUtil::MakeWideString(wstring(u"x\0y", 3)).size(), 3u);
}

struct OrderCase {
    const char16_t* a;
    const char16_t* b;
    StringOrder::Enum order;
    StringCase::Enum sense;
    int expected;
};

class OrderTable : public testing::TestWithParam<OrderCase> {};

TEST_P(OrderTable, GivesTheExpectedSign) {
    const OrderCase& c = GetParam();
    EXPECT_EQ(Sign(Order(c.a, c.b, c.order, c.sense)), c.expected);
    EXPECT_EQ(Sign(Order(c.b, c.a, c.order, c.sense)), -c.expected) << "antisymmetry";
}

INSTANTIATE_TEST_SUITE_P(
    Strings, OrderTable,
    testing::Values(
        OrderCase{u"", u"", StringOrder::CodeUnit, StringCase::Respect, 0},
        OrderCase{u"a", u"", StringOrder::CodeUnit, StringCase::Respect, 1},
        OrderCase{u"abc", u"abd", StringOrder::CodeUnit, StringCase::Respect, -1},
        OrderCase{u"Z", u"a", StringOrder::CodeUnit, StringCase::Respect, -1},
        OrderCase{u"Z", u"a", StringOrder::CodeUnit, StringCase::Ignore, 1},
        OrderCase{u"REV", u"rev", StringOrder::CodeUnit, StringCase::Respect, -1},
        OrderCase{u"REV", u"rev", StringOrder::CodeUnit, StringCase::Ignore, 0},
        OrderCase{u"STRASSE", u"straße", StringOrder::CodeUnit, StringCase::Ignore, 0},
        OrderCase{u"ÄNDERUNG", u"änderung", StringOrder::Natural, StringCase::Ignore, 0},
        // U+FF21 (fullwidth A) lies above every surrogate unit, U+1F600 is a pair.
        OrderCase{u"\uFF21", u"\U0001F600", StringOrder::CodeUnit, StringCase::Respect, 1},
        OrderCase{u"Sheet9", u"Sheet10", StringOrder::CodeUnit, StringCase::Respect, 1},
        OrderCase{u"Sheet9", u"Sheet10", StringOrder::Natural, StringCase::Respect, -1},
        OrderCase{u"sheet9", u"SHEET10", StringOrder::Natural, StringCase::Ignore, -1},
        OrderCase{u"Rev 7", u"Rev 07", StringOrder::Natural, StringCase::Respect, -1},
        OrderCase{u"a2b10", u"a2b9", StringOrder::Natural, StringCase::Respect, 1},
        OrderCase{u"x100000000000000000000", u"x99999999999999999999", StringOrder::Natural,
                  StringCase::Respect, 1},
        OrderCase{u"Date", u"Date ", StringOrder::Natural, StringCase::Ignore, -1},
        OrderCase{u"rev", u"REV", StringOrder::Natural, StringCase::Ignore, 0}));

TEST(Order, NaturalOrderCallsOnlyEqualTextsEqual) {
    EXPECT_NE(Order(u"Rev01", u"Rev1", StringOrder::Natural, StringCase::Respect), 0);
    EXPECT_EQ(Order(u"Rev01", u"Rev01", StringOrder::Natural, StringCase::Respect), 0);
}

TEST(Order, LoneSurrogatesDoNotBreakComparison) {
    const wstring broken(1, u'\xD800');
    EXPECT_EQ(Order(broken, broken, StringOrder::CodeUnit, StringCase::Ignore), 0);
    EXPECT_NE(Order(broken, u"a", StringOrder::Natural, StringCase::Ignore), 0);
}

TEST(Replace, ReplacesEveryOccurrence) {
    wstring text = u"a-b-c";
    LodeUtil::Replace(text, u"-", u"--");
    EXPECT_EQ(text, u"a--b--c");
}

TEST(Replace, DoesNotRescanWhatItPutIn) {
    wstring text = u"aaa";
    LodeUtil::Replace(text, u"a", u"aa");
    EXPECT_EQ(text, u"aaaaaa");
}

TEST(Replace, NonOverlappingFromTheLeft) {
    wstring text = u"aaaa";
    LodeUtil::Replace(text, u"aa", u"b");
    EXPECT_EQ(text, u"bb");
    text = u"aaa";
    LodeUtil::Replace(text, u"aa", u"b");
    EXPECT_EQ(text, u"ba");
}

TEST(Replace, EmptyFromChangesNothing) {
    wstring text = u"abc";
    LodeUtil::Replace(text, u"", u"x");
    EXPECT_EQ(text, u"abc");
}

TEST(Replace, ToEmptyDeletes) {
    wstring text = u"C:\\a\\..\\b";
    LodeUtil::Replace(text, u"\\..", u"");
    EXPECT_EQ(text, u"C:\\a\\b");
}

TEST(Replace, AbsentTextStaysAsItIs) {
    wstring text = u"abc";
    LodeUtil::Replace(text, u"x", u"y");
    EXPECT_EQ(text, u"abc");
}

TEST(TrimString, RemovesUnicodeWhiteSpaceAtBothEnds) {
    wstring text = u"\u3000\t Rev A \u00A0\u2003\n";
    LodeUtil::PathUtil::TrimString(text);
    EXPECT_EQ(text, u"Rev A");
}

TEST(TrimString, KeepsInnerSpaceAndHandlesEmptyAndBlank) {
    wstring empty;
    LodeUtil::PathUtil::TrimString(empty);
    EXPECT_EQ(empty, u"");
    wstring blank = u" \t\r\n ";
    LodeUtil::PathUtil::TrimString(blank);
    EXPECT_EQ(blank, u"");
    wstring inner = u"a  b";
    LodeUtil::PathUtil::TrimString(inner);
    EXPECT_EQ(inner, u"a  b");
}

TEST(TrimString, LeavesNonSpaceAndSurrogatesAlone) {
    wstring text = u"\U0001F600 x \U0001F600";
    LodeUtil::PathUtil::TrimString(text);
    EXPECT_EQ(text, u"\U0001F600 x \U0001F600");
    wstring broken = wstring(u" ") + u'\xDC00' + u" ";
    LodeUtil::PathUtil::TrimString(broken);
    EXPECT_EQ(broken, wstring(1, u'\xDC00'));
}

TEST(FoldCase, FoldsFully) {
    EXPECT_EQ(LodeUtil::FoldCase(u"Straße"), u"strasse");
    EXPECT_EQ(LodeUtil::FoldCase(u""), u"");
}

}  // namespace
