// Absolute paths, URLs, a database's path and a reference drawing's original path.
#include <lodeqdb/references/PathQuestions.h>

#include <gtest/gtest.h>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

namespace {

TEST(PathQuestions, URLsAreWhatTheHostSays) {
    EXPECT_TRUE(LodeQDBUtil::IsPathURL(u"https://example.com/x.plw"));
    EXPECT_FALSE(LodeQDBUtil::IsPathURL(u"C:\\x.plw"));
    EXPECT_FALSE(LodeQDBUtil::IsPathURL(u""));
    PwDbHostApplicationServices* previous = pwdbSetHostApplicationServices(nullptr);
    EXPECT_FALSE(LodeQDBUtil::IsPathURL(u"https://example.com/x.plw"));
    pwdbSetHostApplicationServices(previous);
}

TEST(PathQuestions, AURLAndARootedPathAreAbsolute) {
    EXPECT_TRUE(LodeQDBUtil::IsPathAbsolute(u"https://example.com/x.plw"));
    EXPECT_TRUE(LodeQDBUtil::IsPathAbsolute(u"C:\\proj\\x.plw"));
    EXPECT_TRUE(LodeQDBUtil::IsPathAbsolute(u"\\\\srv\\share\\x.plw"));
    EXPECT_TRUE(LodeQDBUtil::IsPathAbsolute(u"\\lib\\x.plw"));
    EXPECT_TRUE(LodeQDBUtil::IsPathAbsolute(u"/home/a/x.plw"));
    EXPECT_FALSE(LodeQDBUtil::IsPathAbsolute(u"..\\x.plw"));
    EXPECT_FALSE(LodeQDBUtil::IsPathAbsolute(u"sub/x.plw"));
    EXPECT_FALSE(LodeQDBUtil::IsPathAbsolute(u""));
}

TEST(PathQuestions, ADatabaseWithoutAFileHasTheEmptyPath) {
    PwDbDatabase unnamed;
    EXPECT_EQ(LodeQDBUtil::GetDatabasePath(unnamed), u"");
    PwDbDatabase named;
    named.setFilename(u"C:\\proj\\a.plw");
    EXPECT_EQ(LodeQDBUtil::GetDatabasePath(named), u"C:\\proj\\a.plw");
}

TEST(PathQuestions, ADrawingNotLoadedForAReferenceHasNoOriginalPath) {
    PwDbDatabase drawing;
    EXPECT_EQ(pwdb::OriginalXrefFullPathFor(drawing), u"");
}

}  // namespace
