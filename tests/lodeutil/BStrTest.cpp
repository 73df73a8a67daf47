// The counted UTF-16 string.
#include <lodeqdb/lodeutil/BStr.h>

#include <gtest/gtest.h>

namespace {

TEST(BStr, EmptyTextGivesNullPointer) {
    const LodeUtil::BStr counted = LodeUtil::ToBstr(u"");
    EXPECT_EQ(static_cast<const char16_t*>(counted), nullptr);
    EXPECT_EQ(counted.length(), 0u);
    EXPECT_TRUE(counted.empty());
    EXPECT_EQ(counted.toWString(), u"");
}

TEST(BStr, HoldsTextWithTerminator) {
    const LodeUtil::BStr counted = LodeUtil::ToBstr(u"Layout1");
    ASSERT_NE(counted.c_str(), nullptr);
    EXPECT_EQ(wstring(counted.c_str()), u"Layout1");
    EXPECT_EQ(counted.length(), 7u);
    EXPECT_EQ(counted.c_str()[7], u'\0');
}

TEST(BStr, CountsEmbeddedZeros) {
    const LodeUtil::BStr counted = LodeUtil::ToBstr(wstring(u"a\0b", 3));
    EXPECT_EQ(counted.length(), 3u);
    EXPECT_EQ(counted.toWString(), wstring(u"a\0b", 3));
}

TEST(BStr, CopiesAreIndependentAndMovesEmptyTheSource) {
    LodeUtil::BStr first = LodeUtil::ToBstr(u"abc");
    LodeUtil::BStr copy = first;
    EXPECT_NE(copy.c_str(), first.c_str());
    EXPECT_EQ(copy.toWString(), u"abc");
    LodeUtil::BStr moved = std::move(first);
    EXPECT_EQ(moved.toWString(), u"abc");
    EXPECT_TRUE(first.empty());  // NOLINT(bugprone-use-after-move): moved-from state is defined
    copy = moved;
    EXPECT_EQ(copy.toWString(), u"abc");
}

TEST(BStr, NullTextMakesEmpty) {
    const LodeUtil::BStr counted(nullptr, 5);
    EXPECT_TRUE(counted.empty());
}

}  // namespace
