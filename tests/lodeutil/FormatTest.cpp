// Numbered-placeholder formatting.
#include <lodeqdb/lodeutil/Format.h>

#include <gtest/gtest.h>

namespace {

TEST(FormatMsg1, PutsTheArgumentInPlace) {
    wstring out = u"old";
    LodeUtil::FormatMsg1(out, u"The file \"%1\" was not found.", u"C:\\a.plw");
    EXPECT_EQ(out, u"The file \"C:\\a.plw\" was not found.");
}

TEST(FormatMsg1, FormatMayBeTheOutputItself) {
    wstring text = u"%1 and %1";
    LodeUtil::FormatMsg1(text, text, u"x%1");
    EXPECT_EQ(text, u"x%1 and x%1");
}

TEST(FormatMsg1, MissingArgumentsAndStrayPercentStay) {
    wstring out;
    LodeUtil::FormatMsg1(out, u"%2 %1 %0 %x 100% %", u"A");
    EXPECT_EQ(out, u"%2 A %0 %x 100% %");
}

TEST(FormatMsg1, DoublePercentGivesOne) {
    wstring out;
    LodeUtil::FormatMsg1(out, u"%%1 is %1", u"B");
    EXPECT_EQ(out, u"%1 is B");
}

TEST(FormatMsg, NumbersPickArguments) {
    wstring out;
    LodeUtil::FormatMsg(out, u"%2 of %1 (%9)",
                        {u"10", u"3", u"c", u"d", u"e", u"f", u"g", u"h", u"i"});
    EXPECT_EQ(out, u"3 of 10 (i)");
}

TEST(FormatMsg, NoArguments) {
    wstring out;
    LodeUtil::FormatMsg(out, u"plain %1", {});
    EXPECT_EQ(out, u"plain %1");
}

}  // namespace
