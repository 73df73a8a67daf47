// Tests for AbsoluteFilePath: lexical normalisation, current-directory resolution, comparison.
#include <lodeqdb/lodeutil/AbsoluteFilePath.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <iterator>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeUtil {
namespace {

struct NormaliseCase {
    const char16_t* input;
    const char16_t* fullPath;
    bool windowsForm;
};

const NormaliseCase kAbsoluteCases[] = {
    {u"C:\\a\\..\\b\\.\\c.plw", u"C:\\b\\c.plw", true},
    {u"c:/B//C.PLW", u"c:\\B\\C.PLW", true},
    {u"C:\\..\\x", u"C:\\x", true},
    {u"C:\\a\\b\\..\\..\\..", u"C:\\", true},
    {u"C:x", u"C:\\x", true},
    {u"C:..\\x", u"C:\\x", true},
    {u"C:", u"C:\\", true},
    {u"C:\\a\\", u"C:\\a", true},
    {u"C:\\a\\\\\\", u"C:\\a", true},
    {u"C:\\a/b\\c/", u"C:\\a\\b\\c", true},
    {u"\\\\srv\\share\\x.plw", u"\\\\srv\\share\\x.plw", true},
    {u"\\\\srv\\share\\..\\..\\x", u"\\\\srv\\share\\x", true},
    {u"\\\\srv\\share\\a\\..", u"\\\\srv\\share\\", true},
    {u"\\\\srv\\share", u"\\\\srv\\share\\", true},
    {u"\\\\srv\\share\\", u"\\\\srv\\share\\", true},
    {u"\\\\srv\\\\share\\\\x", u"\\\\srv\\share\\x", true},
    {u"\\\\srv", u"\\\\srv\\", true},
    {u"//srv/share/a/./b", u"\\\\srv\\share\\a\\b", true},
    {u"\\\\?\\C:\\a\\..\\b", u"C:\\b", true},
    {u"\\\\?\\UNC\\srv\\share\\a", u"\\\\srv\\share\\a", true},
    {u"\\\\?\\Volume{1}\\a\\..\\..\\b", u"\\\\?\\Volume{1}\\b", true},
    {u"\\lib\\x.plw", u"\\lib\\x.plw", true},
    {u"\\..\\x", u"\\x", true},
    {u"\\", u"\\", true},
    {u"/home/a/../b", u"/home/b", false},
    {u"/home//a/./", u"/home/a", false},
    {u"/home\\a", u"/home/a", false},
    {u"/..", u"/", false},
    {u"/", u"/", false},
    {u"///x", u"/x", false},
    {u"/a/.../b", u"/a/.../b", false},
    {u"/a/b./..c", u"/a/b./..c", false},
    {u"", u"", false},
};

TEST(AbsoluteFilePathTest, NormalisesRootedPathsLexically) {
    for (const NormaliseCase& c : kAbsoluteCases) {
        SCOPED_TRACE("input: " + Utf8FromUtf16(c.input));
        const AbsoluteFilePath path(c.input);
        EXPECT_EQ(path.FullPath(), c.fullPath);
        EXPECT_EQ(path.IsWindowsForm(), c.windowsForm);
    }
}

TEST(AbsoluteFilePathTest, NormalisingTwiceChangesNothing) {
    for (const NormaliseCase& c : kAbsoluteCases) {
        SCOPED_TRACE("input: " + Utf8FromUtf16(c.input));
        const AbsoluteFilePath once(c.input);
        if (once.FullPath().empty()) continue;
        const AbsoluteFilePath twice(once.FullPath());
        EXPECT_EQ(twice.FullPath(), once.FullPath());
        EXPECT_EQ(twice.IsWindowsForm(), once.IsWindowsForm());
    }
}

/// Stands in for getcwd while alive; the directory it reports is `current`.
class FakeCurrentDirectory {
  public:
    explicit FakeCurrentDirectory(bool (*currentDirectory)(std::string&)) {
        detail::FileSystemCalls calls = detail::SystemFileSystemCalls();
        calls.currentDirectory = currentDirectory;
        previous_ = detail::ReplaceFileSystemCallsForTesting(calls);
    }
    ~FakeCurrentDirectory() { detail::ReplaceFileSystemCallsForTesting(previous_); }
    FakeCurrentDirectory(const FakeCurrentDirectory&) = delete;
    FakeCurrentDirectory& operator=(const FakeCurrentDirectory&) = delete;

  private:
    detail::FileSystemCalls previous_{};
};

bool WorkCwd(std::string& out) {
    out = "/work/cwd";
    return true;
}

bool CwdWithBackslashAndUmlaut(std::string& out) {
    out = "/tmp/a\\b/\xC3\xA4";
    return true;
}

bool NoCwd(std::string&) {
    return false;
}

bool RelativeCwd(std::string& out) {
    out = "not/absolute";
    return true;
}

TEST(AbsoluteFilePathTest, RelativePathsResolveAgainstTheCurrentDirectory) {
    const FakeCurrentDirectory cwd(&WorkCwd);
    const struct {
        const char16_t* input;
        const char16_t* fullPath;
    } cases[] = {
        {u"x.plw", u"/work/cwd/x.plw"},
        {u"sub\\x.plw", u"/work/cwd/sub/x.plw"},
        {u".\\sub/..\\x.plw", u"/work/cwd/x.plw"},
        {u"..\\lib\\x.plw", u"/work/lib/x.plw"},
        {u"..\\..\\..\\..\\x", u"/x"},
        {u".", u"/work/cwd"},
        {u"sub\\", u"/work/cwd/sub"},
        {u"C", u"/work/cwd/C"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("input: " + Utf8FromUtf16(c.input));
        const AbsoluteFilePath path(c.input);
        EXPECT_EQ(path.FullPath(), c.fullPath);
        EXPECT_FALSE(path.IsWindowsForm());
    }
}

TEST(AbsoluteFilePathTest, BackslashesInTheCurrentDirectorySeparate) {
    const FakeCurrentDirectory cwd(&CwdWithBackslashAndUmlaut);
    EXPECT_EQ(AbsoluteFilePath(u"x").FullPath(), u"/tmp/a/b/\u00e4/x");
}

TEST(AbsoluteFilePathTest, WithoutACurrentDirectoryTheRootStandsIn) {
    {
        const FakeCurrentDirectory cwd(&NoCwd);
        EXPECT_EQ(AbsoluteFilePath(u"a\\x.plw").FullPath(), u"/a/x.plw");
    }
    {
        const FakeCurrentDirectory cwd(&RelativeCwd);
        EXPECT_EQ(AbsoluteFilePath(u"a\\x.plw").FullPath(), u"/a/x.plw");
    }
}

TEST(AbsoluteFilePathTest, RelativePathUsesTheRealWorkingDirectory) {
    std::vector<char> buffer(65536);
    ASSERT_NE(::getcwd(buffer.data(), buffer.size()), nullptr);
    const wstring cwd = Utf16FromUtf8(buffer.data());
    const wstring expected = cwd == u"/" ? u"/x.plw" : cwd + u"/x.plw";
    const AbsoluteFilePath path(u"sub\\..\\x.plw");
    EXPECT_EQ(path.FullPath(), expected);
    EXPECT_TRUE(path == expected);
    EXPECT_TRUE(path == u"x.plw");
}

TEST(AbsoluteFilePathTest, WindowsFormComparesWithoutCase) {
    const AbsoluteFilePath path(u"C:\\a\\..\\b\\.\\c.plw");
    EXPECT_TRUE(path == u"c:\\B\\C.PLW");
    EXPECT_FALSE(path != u"c:\\B\\C.PLW");
    EXPECT_TRUE(path == u"C:/b//c.plw/");
    EXPECT_TRUE(path == u"\\\\?\\c:\\B\\c.plw");
    EXPECT_FALSE(path == u"D:\\b\\c.plw");
    EXPECT_FALSE(path == u"C:\\b\\c.plw2");
    EXPECT_TRUE(path != u"C:\\b\\c");
    EXPECT_TRUE(AbsoluteFilePath(u"\\\\SRV\\Share\\X") == u"\\\\srv\\share\\x");
    EXPECT_TRUE(AbsoluteFilePath(u"\\\\srv\\share\\..\\x") == u"//SRV/share/X");
    EXPECT_TRUE(AbsoluteFilePath(u"\\\\?\\UNC\\srv\\share\\a") == u"\\\\Srv\\Share\\A");
}

TEST(AbsoluteFilePathTest, WindowsFormUsesFullCaseFolding) {
    EXPECT_TRUE(AbsoluteFilePath(u"C:\\Stra\u00dfe") == u"c:\\STRASSE");
    EXPECT_TRUE(AbsoluteFilePath(u"C:\\\u03a3\u038a\u03a3\u03a5\u03a6\u039f\u03a3") ==
                u"c:\\\u03c3\u03af\u03c3\u03c5\u03c6\u03bf\u03c2");
    EXPECT_TRUE(AbsoluteFilePath(u"C:\\\u00c4") == u"c:\\\u00e4");
    EXPECT_FALSE(AbsoluteFilePath(u"C:\\\u00c4") == u"c:\\a");
}

TEST(AbsoluteFilePathTest, PosixFormComparesExactly) {
    const AbsoluteFilePath path(u"/home/a/../b");
    EXPECT_TRUE(path == u"/home/b");
    EXPECT_TRUE(path == u"/home//b/");
    EXPECT_TRUE(path == u"/home\\b");
    EXPECT_FALSE(path == u"/home/B");
    EXPECT_TRUE(path != u"/home/B");
    EXPECT_FALSE(AbsoluteFilePath(u"/home/Stra\u00dfe") == u"/home/strasse");
}

TEST(AbsoluteFilePathTest, DifferentFormsNeverCompareEqual) {
    EXPECT_FALSE(AbsoluteFilePath(u"\\lib\\x") == u"/lib/x");
    EXPECT_TRUE(AbsoluteFilePath(u"\\lib\\x") == u"\\LIB\\X");
    EXPECT_FALSE(AbsoluteFilePath(u"/lib/x") == u"\\lib\\x");
    EXPECT_FALSE(AbsoluteFilePath(u"//srv/share/x") == u"/srv/share/x");
    EXPECT_FALSE(AbsoluteFilePath(u"C:\\x") == u"/C:/x");
}

TEST(AbsoluteFilePathTest, ComparesWithAnotherAbsoluteFilePath) {
    const AbsoluteFilePath a(u"C:\\Dir\\x.plw");
    const AbsoluteFilePath b(u"c:\\dir\\sub\\..\\X.PLW");
    const AbsoluteFilePath c(u"c:\\dir\\y.plw");
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(b == a);
    EXPECT_FALSE(a != b);
    EXPECT_FALSE(a == c);
    EXPECT_TRUE(a != c);
    AbsoluteFilePath copy = a;
    EXPECT_TRUE(copy == a);
    copy = c;
    EXPECT_EQ(copy.FullPath(), c.FullPath());
}

TEST(AbsoluteFilePathTest, EmptyPathStaysEmpty) {
    const AbsoluteFilePath empty(u"");
    EXPECT_TRUE(empty.FullPath().empty());
    EXPECT_FALSE(empty.IsWindowsForm());
    EXPECT_TRUE(empty == u"");
    EXPECT_FALSE(empty == u"/");
}

TEST(AbsoluteFilePathTest, MalformedTextIsKeptAndCompared) {
    static constexpr char16_t kNul[] = u"C:\\x\\..\\a\0b\\c";
    static constexpr char16_t kNulNormalised[] = u"C:\\a\0b\\c";
    const AbsoluteFilePath nul(wstring(kNul, std::size(kNul) - 1));
    EXPECT_EQ(nul.FullPath(), wstring(kNulNormalised, std::size(kNulNormalised) - 1));
    const AbsoluteFilePath lone(u"C:\\\xD800x\\Y");
    EXPECT_EQ(lone.FullPath(), u"C:\\\xD800x\\Y");
    EXPECT_TRUE(lone == u"c:\\\xD800X\\y");
    EXPECT_FALSE(lone == u"c:\\\xDC00X\\y");
}

}  // namespace
}  // namespace LodeUtil
