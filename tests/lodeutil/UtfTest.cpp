// UTF-16 and UTF-8 at the operating-system boundary.
#include "lodeutil/Utf.h"

#include <gtest/gtest.h>

namespace {

TEST(Utf, RoundTripsEveryPlane) {
    const wstring text = u"Plan \u00E4\u00DF \u4E2D \U0001F600.plw";
    EXPECT_EQ(LodeUtil::Utf16FromUtf8(LodeUtil::Utf8FromUtf16(text)), text);
    EXPECT_EQ(LodeUtil::Utf8FromUtf16(u"\u00E4"), "\xC3\xA4");
}

TEST(Utf, EmptyStaysEmpty) {
    EXPECT_EQ(LodeUtil::Utf8FromUtf16(u""), "");
    EXPECT_EQ(LodeUtil::Utf16FromUtf8(""), u"");
}

TEST(Utf, LoneSurrogatesBecomeReplacementCharacters) {
    const wstring broken = wstring(u"a") + u'\xD800' + u"b" + u'\xDC00';
    EXPECT_FALSE(LodeUtil::IsWellFormedUtf16(broken));
    EXPECT_EQ(LodeUtil::Utf8FromUtf16(broken),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD");
}

TEST(Utf, SurrogatePairIsWellFormedButReversedIsNot) {
    EXPECT_TRUE(LodeUtil::IsWellFormedUtf16(u"\U0001F600"));
    const char16_t reversed[] = {0xDE00, 0xD83D, 0};
    EXPECT_FALSE(LodeUtil::IsWellFormedUtf16(reversed));
}

TEST(Utf, InvalidUtf8BecomesReplacementCharacters) {
    EXPECT_EQ(LodeUtil::Utf16FromUtf8("a\xFF"
                                      "b"),
              u"a\uFFFDb");
    EXPECT_EQ(LodeUtil::Utf16FromUtf8("\xC3"), u"\uFFFD");
    EXPECT_EQ(LodeUtil::Utf16FromUtf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
}

TEST(Utf, EmbeddedZeroSurvives) {
    const std::string narrow("a\0b", 3);
    EXPECT_EQ(LodeUtil::Utf16FromUtf8(narrow), wstring(u"a\0b", 3));
}

}  // namespace
