// Tests for the path text functions: one table of paths in Windows and POSIX form, one of joins.
#include <lodeqdb/lodeutil/Path.h>

#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include <lodeqdb/lodeutil/Utf.h>

namespace LodeUtil {
namespace {

struct PathCase {
    const char16_t* path;
    const char16_t* root;
    const char16_t* directory;
    const char16_t* fileName;
    const char16_t* extension;
};

// Columns: input, GetPathRoot, GetDirectoryName, GetFileName, GetExtension.
const PathCase kPathCases[] = {
    // Drive paths.
    {u"D:\\proj\\a\\host.plw", u"D:\\", u"D:\\proj\\a", u"host.plw", u".plw"},
    {u"C:\\a\\b.plw", u"C:\\", u"C:\\a", u"b.plw", u".plw"},
    {u"C:\\a", u"C:\\", u"C:\\", u"a", u""},
    {u"C:\\", u"C:\\", u"", u"", u""},
    {u"C:", u"C:", u"", u"", u""},
    {u"C:x.plw", u"C:", u"C:", u"x.plw", u".plw"},
    {u"c:sub\\x.plw", u"c:", u"c:sub", u"x.plw", u".plw"},
    {u"C:\\a\\b\\", u"C:\\", u"C:\\a\\b", u"", u""},
    {u"C:\\a\\", u"C:\\", u"C:\\a", u"", u""},
    {u"C:\\a\\\\b", u"C:\\", u"C:\\a", u"b", u""},
    {u"C:\\\\a", u"C:\\", u"C:\\", u"a", u""},
    {u"C:/a/b.PLW", u"C:/", u"C:/a", u"b.PLW", u".PLW"},
    {u"C:\\a/b\\c.Plw", u"C:\\", u"C:\\a/b", u"c.Plw", u".Plw"},
    {u"c:\\Dir.v2\\file", u"c:\\", u"c:\\Dir.v2", u"file", u""},
    {u"C:\\a\\..\\..\\b.plw", u"C:\\", u"C:\\a\\..\\..", u"b.plw", u".plw"},
    // UNC shares.
    {u"\\\\srv\\share\\x.plw", u"\\\\srv\\share\\", u"\\\\srv\\share\\", u"x.plw", u".plw"},
    {u"\\\\srv\\share", u"\\\\srv\\share", u"", u"", u""},
    {u"\\\\srv\\share\\", u"\\\\srv\\share\\", u"", u"", u""},
    {u"\\\\srv\\share\\d\\x.plw", u"\\\\srv\\share\\", u"\\\\srv\\share\\d", u"x.plw", u".plw"},
    {u"//srv/share/x.plw", u"//srv/share/", u"//srv/share/", u"x.plw", u".plw"},
    {u"\\\\srv/share\\d/x", u"\\\\srv/share\\", u"\\\\srv/share\\d", u"x", u""},
    {u"\\\\srv", u"\\\\srv", u"", u"", u""},
    // Device prefixes.
    {u"\\\\?\\C:\\a\\b.plw", u"\\\\?\\C:\\", u"\\\\?\\C:\\a", u"b.plw", u".plw"},
    {u"\\\\?\\UNC\\srv\\share\\x.plw", u"\\\\?\\UNC\\srv\\share\\", u"\\\\?\\UNC\\srv\\share\\",
     u"x.plw", u".plw"},
    {u"\\\\?\\unc\\srv\\share", u"\\\\?\\unc\\srv\\share", u"", u"", u""},
    {u"\\\\.\\Volume{1}\\a.plw", u"\\\\.\\Volume{1}\\", u"\\\\.\\Volume{1}\\", u"a.plw", u".plw"},
    // Root-relative.
    {u"\\lib\\x.plw", u"\\", u"\\lib", u"x.plw", u".plw"},
    {u"\\x", u"\\", u"\\", u"x", u""},
    {u"\\", u"\\", u"", u"", u""},
    // Relative.
    {u"..\\x", u"", u"..", u"x", u""},
    {u"..\\..\\lib\\x.plw", u"", u"..\\..\\lib", u"x.plw", u".plw"},
    {u"a\\b", u"", u"a", u"b", u""},
    {u"a\\\\b", u"", u"a", u"b", u""},
    {u"sub/", u"", u"sub", u"", u""},
    {u"a.plw", u"", u"", u"a.plw", u".plw"},
    {u"", u"", u"", u"", u""},
    {u".", u"", u"", u".", u""},
    {u"..", u"", u"", u"..", u""},
    {u"a\\.", u"", u"a", u".", u""},
    {u"name.", u"", u"", u"name.", u""},
    {u".bashrc", u"", u"", u".bashrc", u".bashrc"},
    {u"archive.tar.gz", u"", u"", u"archive.tar.gz", u".gz"},
    {u"a.b\\c", u"", u"a.b", u"c", u""},
    {u"./x.plw", u"", u".", u"x.plw", u".plw"},
    {u"ab:c", u"", u"", u"ab:c", u""},
    {u"1:x", u"", u"", u"1:x", u""},
    // POSIX form.
    {u"/home/a/b.plw", u"/", u"/home/a", u"b.plw", u".plw"},
    {u"/x", u"/", u"/", u"x", u""},
    {u"/", u"/", u"", u"", u""},
    {u"/home/a/", u"/", u"/home/a", u"", u""},
    {u"/home//a", u"/", u"/home", u"a", u""},
    {u"///x", u"/", u"/", u"x", u""},
    {u"/home/a.b/c", u"/", u"/home/a.b", u"c", u""},
    {u"/home/a/../b.plw", u"/", u"/home/a/..", u"b.plw", u".plw"},
    {u"/home/.hidden", u"/", u"/home", u".hidden", u".hidden"},
    {u"/a/b..", u"/", u"/a", u"b..", u""},
    {u"/a/b..c", u"/", u"/a", u"b..c", u".c"},
    {u"/home/a\\lib\\x.plw", u"/", u"/home/a\\lib", u"x.plw", u".plw"},
    {u"/home/Zeichnung \u00e4.PLW", u"/", u"/home", u"Zeichnung \u00e4.PLW", u".PLW"},
};

TEST(PathTest, RootDirectoryFileNameAndExtensionOfEveryForm) {
    for (const PathCase& c : kPathCases) {
        const wstring path = c.path;
        SCOPED_TRACE("path: " + Utf8FromUtf16(path));
        EXPECT_EQ(Path::GetPathRoot(path), c.root);
        EXPECT_EQ(Path::IsPathRooted(path), *c.root != u'\0');
        EXPECT_EQ(Path::GetDirectoryName(path), c.directory);
        EXPECT_EQ(Path::GetFileName(path), c.fileName);
        EXPECT_EQ(Path::GetExtension(path), c.extension);
    }
}

TEST(PathTest, RootIsAlwaysAPrefixOfThePath) {
    for (const PathCase& c : kPathCases) {
        const wstring path = c.path;
        SCOPED_TRACE("path: " + Utf8FromUtf16(path));
        const Path::RootInfo root = Path::ParseRoot(path);
        EXPECT_EQ(root.length == 0, root.kind == Path::RootKind::None);
        EXPECT_EQ(path.compare(0, root.length, Path::GetPathRoot(path)), 0);
    }
}

TEST(PathTest, ParseRootNamesTheKind) {
    using Path::RootKind;
    EXPECT_EQ(Path::ParseRoot(u"C:\\a").kind, RootKind::Drive);
    EXPECT_EQ(Path::ParseRoot(u"C:a").kind, RootKind::Drive);
    EXPECT_EQ(Path::ParseRoot(u"\\\\srv\\share").kind, RootKind::Unc);
    EXPECT_EQ(Path::ParseRoot(u"//srv/share").kind, RootKind::Unc);
    EXPECT_EQ(Path::ParseRoot(u"\\\\?\\C:\\a").kind, RootKind::Device);
    EXPECT_EQ(Path::ParseRoot(u"\\lib").kind, RootKind::Separator);
    EXPECT_EQ(Path::ParseRoot(u"///x").kind, RootKind::Separator);
    EXPECT_EQ(Path::ParseRoot(u"a\\b").kind, RootKind::None);
    EXPECT_EQ(Path::ParseRoot(u"").kind, RootKind::None);
}

TEST(PathTest, TextWithNulAndLoneSurrogatesIsOrdinaryText) {
    static constexpr char16_t kText[] = u"C:\\a\0b\\\xD800x.p\xDC00";
    const wstring path(kText, std::size(kText) - 1);
    EXPECT_EQ(Path::GetPathRoot(path), u"C:\\");
    EXPECT_EQ(Path::GetDirectoryName(path), wstring(u"C:\\a\0b", 6));
    EXPECT_EQ(Path::GetFileName(path), u"\xD800x.p\xDC00");
    EXPECT_EQ(Path::GetExtension(path), u".p\xDC00");
}

struct CombineCase {
    const char16_t* directory;
    const char16_t* relative;
    const char16_t* combined;
};

const CombineCase kCombineCases[] = {
    {u"C:\\a", u"..\\..\\b.plw", u"C:\\a\\..\\..\\b.plw"},
    {u"C:\\a\\", u"b.plw", u"C:\\a\\b.plw"},
    {u"C:\\a\\\\", u"b.plw", u"C:\\a\\b.plw"},
    {u"C:\\a/", u"b", u"C:\\a/b"},
    {u"C:\\a/b", u"c", u"C:\\a/b/c"},
    {u"/home/a", u"..\\lib\\x.plw", u"/home/a/..\\lib\\x.plw"},
    {u"/home/a/", u"./x", u"/home/a/./x"},
    {u"/", u"x", u"/x"},
    {u"//", u"x", u"/x"},
    {u"C:\\", u"x", u"C:\\x"},
    {u"C:", u"x", u"C:x"},
    {u"C:a", u"b", u"C:a\\b"},
    {u"\\\\?\\C:", u"x", u"\\\\?\\C:x"},
    {u"\\\\srv\\share", u"x", u"\\\\srv\\share\\x"},
    {u"\\\\srv\\share\\", u"x", u"\\\\srv\\share\\x"},
    {u"//srv/share", u"x\\y", u"//srv/share/x\\y"},
    {u"\\lib", u"x.plw", u"\\lib\\x.plw"},
    {u"a", u"b", u"a/b"},
    {u"a", u"b\\c", u"a\\b\\c"},
    {u"a/b\\", u"c", u"a/b\\c"},
    {u".", u"x", u"./x"},
    {u"..", u"..\\x", u"..\\..\\x"},
    // A rooted second argument wins.
    {u"C:\\a", u"D:\\b", u"D:\\b"},
    {u"C:\\a", u"D:b", u"D:b"},
    {u"C:\\a", u"\\b", u"\\b"},
    {u"/a", u"/b", u"/b"},
    {u"/a", u"\\\\srv\\s\\x", u"\\\\srv\\s\\x"},
    // Empty sides.
    {u"", u"x\\y", u"x\\y"},
    {u"C:\\a", u"", u"C:\\a"},
    {u"", u"", u""},
};

TEST(PathTest, CombineRelativeJoinsWithOneSeparator) {
    for (const CombineCase& c : kCombineCases) {
        SCOPED_TRACE("directory: " + Utf8FromUtf16(c.directory) +
                     "  relative: " + Utf8FromUtf16(c.relative));
        EXPECT_EQ(CombineRelative(c.directory, c.relative), c.combined);
    }
}

TEST(PathTest, CombineRelativeThenGetDirectoryNameGivesTheDirectoryBack) {
    const char16_t* const directories[] = {u"C:\\a", u"/home/a", u"\\\\srv\\share\\d", u"C:\\"};
    for (const char16_t* directory : directories) {
        SCOPED_TRACE(Utf8FromUtf16(directory));
        EXPECT_EQ(Path::GetDirectoryName(CombineRelative(directory, u"x.plw")), directory);
        EXPECT_EQ(Path::GetFileName(CombineRelative(directory, u"x.plw")), u"x.plw");
    }
}

}  // namespace
}  // namespace LodeUtil
