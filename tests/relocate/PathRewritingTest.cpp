// Path text for moving files: prefixes by whole components in each form, replacements,
// separator styles and relative paths.
#include <lodeqdb/relocate/PathRewriting.h>

#include <gtest/gtest.h>

namespace {

using namespace LodeQDBRelocate;

TEST(PathRewriting, WindowsFormPrefixesIgnoreCaseAndSeparatorStyle) {
    EXPECT_TRUE(StartsWithPath(u"C:\\proj\\lib\\title.plw", u"c:/PROJ"));
    EXPECT_TRUE(StartsWithPath(u"C:\\proj\\lib\\title.plw", u"C:\\proj\\"));
    EXPECT_TRUE(StartsWithPath(u"C:\\proj", u"C:\\proj"));
    EXPECT_TRUE(StartsWithPath(u"\\\\srv\\share\\x.plw", u"//SRV/share"));
    EXPECT_TRUE(StartsWithPath(u"\\lib\\x.plw", u"\\LIB"));
    EXPECT_FALSE(StartsWithPath(u"C:\\project\\x.plw", u"C:\\proj"));
    EXPECT_FALSE(StartsWithPath(u"D:\\proj\\x.plw", u"C:\\proj"));
    EXPECT_FALSE(StartsWithPath(u"\\\\srv\\other\\x.plw", u"\\\\srv\\share"));
    EXPECT_FALSE(StartsWithPath(u"C:\\proj", u"C:\\proj\\lib"));
}

TEST(PathRewriting, PosixPrefixesCompareExactly) {
    EXPECT_TRUE(StartsWithPath(u"/srv/proj/x.plw", u"/srv/proj"));
    EXPECT_TRUE(StartsWithPath(u"/srv//proj/x.plw", u"/srv/proj/"));
    EXPECT_FALSE(StartsWithPath(u"/srv/Proj/x.plw", u"/srv/proj"));
    EXPECT_FALSE(StartsWithPath(u"/srv/projects/x.plw", u"/srv/proj"));
    // One form never starts with the other.
    EXPECT_FALSE(StartsWithPath(u"\\srv\\proj\\x.plw", u"/srv/proj"));
    EXPECT_FALSE(StartsWithPath(u"/srv/proj/x.plw", u"\\srv\\proj"));
    EXPECT_FALSE(StartsWithPath(u"srv/proj/x.plw", u"/srv/proj"));
    EXPECT_FALSE(StartsWithPath(u"/srv/proj/x.plw", u""));
}

TEST(PathRewriting, RelativePrefixesTakeEitherSeparatorAndRespectCase) {
    EXPECT_TRUE(StartsWithPath(u"..\\blocks\\title.plw", u"../blocks"));
    EXPECT_FALSE(StartsWithPath(u"..\\blocks\\title.plw", u"..\\Blocks"));
    EXPECT_FALSE(StartsWithPath(u"..\\blocks\\title.plw", u"C:\\blocks"));
}

TEST(PathRewriting, ReplacementsAreWrittenInTheNewFoldersStyle) {
    EXPECT_EQ(ReplacePathPrefix(u"C:\\proj\\lib\\title.plw", u"c:/PROJ", u"/srv/proj"),
              u"/srv/proj/lib/title.plw");
    EXPECT_EQ(ReplacePathPrefix(u"/srv/proj/lib/title.plw", u"/srv/proj", u"D:\\work\\"),
              u"D:\\work\\lib\\title.plw");
    EXPECT_EQ(ReplacePathPrefix(u"\\\\srv\\share\\x.plw", u"\\\\srv\\share", u"/mnt/share"),
              u"/mnt/share/x.plw");
    EXPECT_EQ(ReplacePathPrefix(u"/a/b/x.plw", u"/a", u"/"), u"/b/x.plw");
    EXPECT_EQ(ReplacePathPrefix(u"/a/b/x.plw", u"/a", u"D:"), u"D:b/x.plw");
    EXPECT_EQ(ReplacePathPrefix(u"/a/x.plw", u"/a", u"new"), u"new/x.plw");
    EXPECT_EQ(ReplacePathPrefix(u"C:\\a\\x.plw", u"C:\\a", u"lib"), u"lib\\x.plw");
    EXPECT_EQ(ReplacePathPrefix(u"/a/x.plw", u"/a", u""), u"x.plw");
    EXPECT_EQ(ReplacePathPrefix(u"/a/x.plw", u"/a/x.plw", u"/b/y.plw"), u"/b/y.plw");
    EXPECT_EQ(ReplacePathPrefix(u"/ab/x.plw", u"/a", u"/b"), std::nullopt);
}

TEST(PathRewriting, SeparatorStyleIsThePathsFirstSeparator) {
    EXPECT_EQ(SeparatorStyleOf(u"..\\a/b"), u'\\');
    EXPECT_EQ(SeparatorStyleOf(u"/a\\b"), u'/');
    EXPECT_EQ(SeparatorStyleOf(u"a.plw"), u'/');
}

TEST(PathRewriting, RelativePathsClimbThenDescend) {
    EXPECT_EQ(RelativePathBetween(u"/srv/proj/floors", u"/srv/proj/blocks/title.plw", u'\\'),
              u"..\\blocks\\title.plw");
    EXPECT_EQ(RelativePathBetween(u"/srv/proj", u"/srv/proj/a.plw", u'/'), u"a.plw");
    EXPECT_EQ(RelativePathBetween(u"/srv/proj", u"/srv/proj/sub/a.plw", u'/'), u"sub/a.plw");
    EXPECT_EQ(RelativePathBetween(u"/", u"/a/b.plw", u'/'), u"a/b.plw");
    EXPECT_EQ(RelativePathBetween(u"/a/b/c", u"/x.plw", u'/'), u"../../../x.plw");
    EXPECT_EQ(RelativePathBetween(u"/a/B", u"/a/b/x.plw", u'/'), u"../b/x.plw");
    EXPECT_EQ(RelativePathBetween(u"C:\\a", u"C:\\a\\x.plw", u'\\'), std::nullopt);
    EXPECT_EQ(RelativePathBetween(u"/a/b", u"/a/b", u'/'), std::nullopt);
    EXPECT_EQ(RelativePathBetween(u"a", u"/a/x", u'/'), std::nullopt);
}

}  // namespace
