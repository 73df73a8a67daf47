// The stripper of formatted text: codes, groups, escapes, texts cut short, and who frees what.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include "toolkit/pal/PwHeapFaults.h"
#include <lodeqdb/toolkit/table/PwDbFormattedText.h>

namespace {

struct Case {
    const char16_t* formatted;
    const char16_t* plain;
};

const std::vector<Case> kCases = {
    {u"", u""},
    {u"Rev", u"Rev"},
    {u"two words", u"two words"},
    // Paragraph breaks.
    {u"one\\Ptwo", u"one\ntwo"},
    {u"\\P", u"\n"},
    {u"a\\P\\Pb", u"a\n\nb"},
    {u"line\nkept", u"line\nkept"},
    // Font switches and heights, with their parameters.
    {u"\\fserif;Title", u"Title"},
    {u"\\Fmono|b1;x", u"x"},
    {u"\\H2.5;big", u"big"},
    {u"\\H0.7x;small", u"small"},
    {u"\\fserif;\\H3;both", u"both"},
    // Underlining.
    {u"\\Lunder\\l over", u"under over"},
    {u"\\L\\l", u""},
    // Groups, nested and empty.
    {u"{grouped}", u"grouped"},
    {u"{\\fserif;A}{\\H2;B}", u"AB"},
    {u"{outer {inner {deepest}} back}", u"outer inner deepest back"},
    {u"{}", u""},
    {u"{{{}}}", u""},
    // Every escape.
    {u"\\\\", u"\\"},
    {u"\\{", u"{"},
    {u"\\}", u"}"},
    {u"a\\\\b\\{c\\}d", u"a\\b{c}d"},
    {u"\\\\P", u"\\P"},
    {u"{\\{\\}}", u"{}"},
    {u"\\~", u"\u00A0"},
    // Codes at the very end.
    {u"end\\", u"end\\"},
    {u"\\", u"\\"},
    {u"font at end \\f", u"font at end "},
    {u"height without end \\H2.5", u"height without end "},
    {u"text\\P", u"text\n"},
    {u"under\\L", u"under"},
    // Groups left open or closed too often.
    {u"{open", u"open"},
    {u"{{open twice", u"open twice"},
    {u"closed}", u"closed"},
    {u"}}x{", u"x"},
    {u"{\\fserif;unterminated", u"unterminated"},
    // Codes this language doesn't know are shown as written.
    {u"\\Q", u"\\Q"},
    {u"C:\\Temp", u"C:\\Temp"},
    // Text beyond the Basic Multilingual Plane passes whole.
    {u"\U0001F4D0\\P\u00E4", u"\U0001F4D0\n\u00E4"},
};

TEST(FormattedText, EveryCaseStripsToWhatAReaderSees) {
    ASSERT_GE(kCases.size(), 30u);
    for (const Case& c : kCases) {
        SCOPED_TRACE(LodeUtil::Utf8FromUtf16(c.formatted));
        char16_t* plain = pwdbStripMTextFormatting(c.formatted, PwDbObjectId(), 0);
        ASSERT_NE(plain, nullptr);
        EXPECT_EQ(wstring(plain), wstring(c.plain));
        pwutDelBuffer(plain);
        EXPECT_EQ(plain, nullptr);
        EXPECT_EQ(pwdbPlainText(c.formatted), wstring(c.plain));
    }
}

TEST(FormattedText, NullGivesNull) {
    EXPECT_EQ(pwdbStripMTextFormatting(nullptr, PwDbObjectId(), 0), nullptr);
    EXPECT_EQ(pwdbPlainText(nullptr), wstring());
}

TEST(FormattedText, AFailedAllocationGivesNull) {
    pwHeapFailAfter(0);
    char16_t* plain = pwdbStripMTextFormatting(u"text", PwDbObjectId(), 0);
    pwHeapFailReset();
    EXPECT_EQ(plain, nullptr);
}

TEST(FormattedText, StopsAtTheTerminatingZero) {
    // What follows the zero must never be read: a code cut by it ends there.
    const char16_t cut[] = {u'a', u'\\', u'\0', u'P', u'b', u'\0'};
    EXPECT_EQ(pwdbPlainText(cut), u"a\\");
    const char16_t parameter[] = {u'\\', u'f', u'x', u'\0', u';', u'y', u'\0'};
    EXPECT_EQ(pwdbPlainText(parameter), u"");
}

TEST(FormattedText, EscapedTextReadsBackAsItself) {
    for (const wstring& text : {wstring(u"plain"), wstring(u"a\\b"), wstring(u"{x}"),
                                wstring(u"\\P not a break"), wstring(u"}{\\\\")}) {
        EXPECT_EQ(pwdbPlainText(pwdbEscapeFormattedText(text).c_str()), text);
    }
    EXPECT_EQ(pwdbEscapeFormattedText(u"a{b}\\"), u"a\\{b\\}\\\\");
}

}  // namespace
