// UTF-16 and UTF-8 at the operating-system boundary.
#include <lodeqdb/lodeutil/Utf.h>

#include <gtest/gtest.h>

namespace {

using LodeUtil::NativeFromUtf16;
using LodeUtil::Utf16FromNative;

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

// File names are bytes: every byte that isn't UTF-8 goes through UTF-16 and back unchanged,
// alone and among others, while UTF-8 reads as it always did.
TEST(Utf, NativeBytesRoundTripLosslessly) {
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        const std::string alone(1, static_cast<char>(byte));
        const wstring wide = Utf16FromNative(alone);
        ASSERT_EQ(wide, wstring(1, static_cast<char16_t>(0xDC00 + byte))) << byte;
        EXPECT_EQ(NativeFromUtf16(wide), alone) << byte;
        const std::string among = "a" + alone + alone + "\xC3\xA4z";
        EXPECT_EQ(NativeFromUtf16(Utf16FromNative(among)), among) << byte;
    }
    // Well-formed UTF-8 of every length, and forms that aren't well-formed: overlong, an
    // encoded surrogate, past U+10FFFF, cut short.
    for (const std::string& text :
         {std::string("plain.plw"), std::string("Zeichnung \xC3\xA4"), std::string("\xE2\x82\xAC"),
          std::string("\xF0\x9D\x84\x9E"), std::string("\xC0\xAF"), std::string("\xED\xA0\x80"),
          std::string("\xF4\x90\x80\x80"), std::string("\xE2\x82"), std::string("\xF0\x9D\x84")}) {
        EXPECT_EQ(NativeFromUtf16(Utf16FromNative(text)), text);
    }
    EXPECT_EQ(Utf16FromNative("Zeichnung \xC3\xA4"), u"Zeichnung \u00e4");
    EXPECT_EQ(Utf16FromNative("\xF0\x9D\x84\x9E"), u"\U0001D11E");
    EXPECT_EQ(Utf16FromNative("\xC0\xAF"), (wstring{0xDCC0, 0xDCAF}));
    EXPECT_EQ(Utf16FromNative(std::string("a\0b", 3)), wstring(u"a\0b", 3));
}

TEST(Utf, OnlyCarriedBytesLeaveUtf16AsLoneSurrogates) {
    EXPECT_EQ(NativeFromUtf16(u"\U0001D11E"), "\xF0\x9D\x84\x9E");
    EXPECT_EQ(NativeFromUtf16(u"x\xDCE9"), "x\xE9");
    EXPECT_EQ(NativeFromUtf16(u"x\xD800"), std::nullopt);
    EXPECT_EQ(NativeFromUtf16(u"x\xDC7F"), std::nullopt);
    EXPECT_EQ(NativeFromUtf16(u"\xDD00"), std::nullopt);
    EXPECT_EQ(NativeFromUtf16(u""), "");
}

}  // namespace
