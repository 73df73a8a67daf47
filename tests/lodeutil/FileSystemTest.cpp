// Tests for the file-system boundary, in a fresh temporary directory per test.
#include <lodeqdb/lodeutil/FileSystem.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeUtil {
namespace {

namespace fs = std::filesystem;

class FileSystemTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = "/tmp/lodeutil-fs-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr) << "errno " << errno;
        root_ = pattern;
        wroot_ = Utf16FromUtf8(root_);
    }

    void TearDown() override {
        detail::ReplaceFileSystemCallsForTesting(detail::SystemFileSystemCalls());
        std::error_code error;
        fs::permissions(root_, fs::perms::owner_all, fs::perm_options::add, error);
        fs::remove_all(root_, error);
        EXPECT_FALSE(fs::exists(root_));
    }

    /// Writes a small file at `relative` (UTF-8, '/'-separated) under the temporary directory.
    void WriteFile(const std::string& relative) const {
        std::ofstream out(root_ + "/" + relative);
        out << "drawing";
        ASSERT_TRUE(out.good()) << relative;
    }

    bool IsNativeDirectory(const std::string& relative) const {
        return fs::is_directory(fs::path(root_ + "/" + relative));
    }

    /// `relative` under the temporary directory, joined the way stored paths are.
    wstring Under(const wstring& relative) const { return CombineRelative(wroot_, relative); }

    std::string root_;
    wstring wroot_;
};

TEST(NativePathTest, TurnsBackslashesIntoSlashesAndRejectsForeignForms) {
    static constexpr char16_t kNul[] = u"/tmp/a\0b";
    const struct {
        wstring path;
        std::optional<std::string> native;
    } cases[] = {
        {u"sub\\x.plw", "sub/x.plw"},
        {u"/tmp/a\\b/c", "/tmp/a/b/c"},
        {u"\\lib\\x.plw", "/lib/x.plw"},
        {u"///x", "///x"},
        {u"Zeichnung \u00e4.plw", "Zeichnung \xC3\xA4.plw"},
        {u"\U0001D11E", "\xF0\x9D\x84\x9E"},
        {u"", std::nullopt},
        {u"C:\\a", std::nullopt},
        {u"C:x.plw", std::nullopt},
        {u"c:", std::nullopt},
        {u"\\\\srv\\share\\x", std::nullopt},
        {u"//srv/share/x", std::nullopt},
        {u"\\\\?\\C:\\a", std::nullopt},
        {u"\\\\.\\pipe\\x", std::nullopt},
        {wstring(kNul, std::size(kNul) - 1), std::nullopt},
        {u"a\xD800.plw", std::nullopt},
        {u"a\xDC00\xD800", std::nullopt},
        {u"caf\xDCE9.plw", "caf\xE9.plw"},  // a byte that isn't UTF-8, carried
        {u"\xDCFF", "\xFF"},
        {u"a\xDC7F", std::nullopt},  // no byte below 0x80 is ever carried so
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("path: " + Utf8FromUtf16(c.path));
        EXPECT_EQ(NativePath(c.path), c.native);
    }
}

// A file whose name isn't UTF-8 is found by the name the boundary gives it, and the current
// folder's name comes back as the same units.
TEST_F(FileSystemTest, NamesThatArentUtf8AreFoundAndKept) {
    WriteFile("caf\xE9.plw");
    WriteFile("\xFF.plw");
    EXPECT_TRUE(File::Exists(wroot_ + u"/caf\xDCE9.plw"));
    EXPECT_TRUE(File::Exists(wroot_ + u"/\xDCFF.plw"));
    EXPECT_FALSE(File::Exists(wroot_ + u"/caf\uFFFD.plw"));
    ASSERT_TRUE(fs::create_directory(root_ + "/dir\xE9"));
    const fs::path before = fs::current_path();
    fs::current_path(root_ + "/dir\xE9");
    const std::optional<wstring> current = detail::CurrentDirectory();
    fs::current_path(before);
    ASSERT_TRUE(current.has_value());
    EXPECT_EQ(*current, Utf16FromNative(root_) + u"/dir\xDCE9");
}

TEST_F(FileSystemTest, StoredRelativePathWithBackslashesFindsTheFile) {
    ASSERT_TRUE(fs::create_directory(root_ + "/sub"));
    WriteFile("sub/x.plw");
    const wstring stored = Under(u"sub\\x.plw");
    EXPECT_EQ(stored, wroot_ + u"/sub\\x.plw");
    EXPECT_TRUE(File::Exists(stored));
    EXPECT_FALSE(Directory::Exists(stored));
    EXPECT_TRUE(Directory::Exists(Under(u"sub")));
    EXPECT_TRUE(Directory::Exists(Under(u"sub\\")));
    EXPECT_FALSE(File::Exists(Under(u"sub")));
    EXPECT_FALSE(File::Exists(Under(u"sub\\y.plw")));
    EXPECT_FALSE(File::Exists(Under(u"sub\\x.plw\\more")));
    EXPECT_TRUE(File::Exists(Under(u"sub\\..\\sub\\.\\x.plw")));
}

TEST_F(FileSystemTest, NonAsciiNamesAreFoundAsUtf8) {
    WriteFile("Zeichnung \xC3\xA4 \xE2\x82\xAC \xF0\x9D\x84\x9E.plw");
    EXPECT_TRUE(File::Exists(Under(u"Zeichnung \u00e4 \u20ac \U0001D11E.plw")));
    // The same letter decomposed is different text, and no file has that name.
    EXPECT_FALSE(File::Exists(Under(u"Zeichnung a\u0308 \u20ac \U0001D11E.plw")));
    EXPECT_TRUE(Directory::CreateDirectory(Under(u"\u00f8rsted\\\u65e5\u672c")));
    EXPECT_TRUE(IsNativeDirectory("\xC3\xB8rsted/\xE6\x97\xA5\xE6\x9C\xAC"));
}

TEST_F(FileSystemTest, LoneSurrogateNamesNothingEvenBesideAReplacementCharacter) {
    // A file whose name is what a lossy conversion of the lone surrogate would give.
    WriteFile("\xEF\xBF\xBD.plw");
    ASSERT_TRUE(File::Exists(Under(u"\uFFFD.plw")));
    EXPECT_FALSE(File::Exists(Under(u"\xD800.plw")));
    EXPECT_FALSE(File::Exists(Under(u"\xDC00.plw")));
    EXPECT_FALSE(Directory::Exists(wroot_ + u"\xD800"));
    EXPECT_FALSE(Directory::CreateDirectory(Under(u"\xDBFF")));
    EXPECT_FALSE(IsNativeDirectory("\xEF\xBF\xBD"));
}

TEST_F(FileSystemTest, RejectedFormsAreAbsentEvenWhenLinuxWouldFindThem) {
    ASSERT_TRUE(Directory::Exists(wroot_));
    // `//tmp/...` is the same directory to Linux, but reads as a UNC share here.
    EXPECT_FALSE(Directory::Exists(u"/" + wroot_));
    EXPECT_FALSE(Directory::Exists(u"\\" + wroot_));
    EXPECT_FALSE(Directory::CreateDirectory(u"/" + wroot_ + u"/unc"));
    EXPECT_FALSE(IsNativeDirectory("unc"));
    static constexpr char16_t kNul[] = u"\0/x";
    EXPECT_FALSE(Directory::Exists(wroot_ + wstring(kNul, std::size(kNul) - 1)));
    EXPECT_FALSE(Directory::CreateDirectory(wroot_ + wstring(kNul, std::size(kNul) - 1)));
    EXPECT_FALSE(File::Exists(u""));
    EXPECT_FALSE(Directory::Exists(u""));
    EXPECT_FALSE(Directory::CreateDirectory(u""));
    EXPECT_FALSE(Directory::Exists(u"C:\\"));
    EXPECT_FALSE(Directory::CreateDirectory(u"C:\\lodeutil-test"));
    EXPECT_FALSE(Directory::CreateDirectory(u"C:lodeutil-test"));
}

TEST_F(FileSystemTest, SymbolicLinksAreFollowed) {
    WriteFile("target.plw");
    ASSERT_TRUE(fs::create_directory(root_ + "/dir"));
    fs::create_symlink(root_ + "/target.plw", root_ + "/file-link");
    fs::create_directory_symlink(root_ + "/dir", root_ + "/dir-link");
    fs::create_symlink(root_ + "/missing", root_ + "/dangling");
    EXPECT_TRUE(File::Exists(Under(u"file-link")));
    EXPECT_FALSE(Directory::Exists(Under(u"file-link")));
    EXPECT_TRUE(Directory::Exists(Under(u"dir-link")));
    EXPECT_FALSE(File::Exists(Under(u"dir-link")));
    EXPECT_FALSE(File::Exists(Under(u"dangling")));
    EXPECT_FALSE(Directory::Exists(Under(u"dangling")));
    EXPECT_TRUE(Directory::CreateDirectory(Under(u"dir-link\\inner")));
    EXPECT_TRUE(IsNativeDirectory("dir/inner"));
    EXPECT_FALSE(Directory::CreateDirectory(Under(u"dangling")));
}

TEST_F(FileSystemTest, CreateDirectoryMakesEveryMissingParent) {
    EXPECT_TRUE(Directory::CreateDirectory(Under(u"a\\b/c\\d")));
    EXPECT_TRUE(IsNativeDirectory("a/b/c/d"));
    EXPECT_TRUE(Directory::Exists(Under(u"a/b/c/d")));
    // Already there is success, with or without trailing separators.
    EXPECT_TRUE(Directory::CreateDirectory(Under(u"a\\b/c\\d")));
    EXPECT_TRUE(Directory::CreateDirectory(Under(u"a\\b")));
    EXPECT_TRUE(Directory::CreateDirectory(Under(u"e//f\\\\")));
    EXPECT_TRUE(IsNativeDirectory("e/f"));
    EXPECT_TRUE(Directory::CreateDirectory(Under(u"p\\..\\q\\.\\r")));
    EXPECT_TRUE(IsNativeDirectory("p"));
    EXPECT_TRUE(IsNativeDirectory("q/r"));
    EXPECT_TRUE(Directory::CreateDirectory(wroot_));
    EXPECT_TRUE(Directory::CreateDirectory(u"/"));
    EXPECT_TRUE(Directory::CreateDirectory(u"."));
}

TEST_F(FileSystemTest, CreateDirectoryFailsWhereAFileStands) {
    WriteFile("f.plw");
    EXPECT_FALSE(Directory::CreateDirectory(Under(u"f.plw")));
    EXPECT_FALSE(Directory::CreateDirectory(Under(u"f.plw\\sub")));
    EXPECT_FALSE(Directory::CreateDirectory(Under(u"f.plw\\sub\\deeper")));
    EXPECT_TRUE(File::Exists(Under(u"f.plw")));
}

TEST_F(FileSystemTest, CreateDirectoryFailsWithoutPermission) {
    if (::geteuid() == 0) GTEST_SKIP() << "the superuser is not refused by permissions";
    ASSERT_TRUE(fs::create_directory(root_ + "/locked"));
    fs::permissions(root_ + "/locked", fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(Directory::CreateDirectory(Under(u"locked\\x\\y")));
    EXPECT_FALSE(IsNativeDirectory("locked/x"));
    fs::permissions(root_ + "/locked", fs::perms::owner_all);
}

// Fakes for the system calls. Function pointers carry no state, so the state is here.
int g_creationsAllowed = 0;
int g_creationsMade = 0;
std::vector<std::string> g_mkdirCalls;

int MkdirFailingAfterAllowance(const char* path) {
    g_mkdirCalls.emplace_back(path);
    if (g_creationsMade >= g_creationsAllowed) return EIO;
    const int result = detail::SystemFileSystemCalls().makeDirectory(path);
    if (result == 0) ++g_creationsMade;
    return result;
}

int MkdirClaimingSuccess(const char*) {
    return 0;
}

int MkdirRefusingButRacedByAnother(const char* path) {
    detail::SystemFileSystemCalls().makeDirectory(path);
    return EACCES;
}

detail::NodeKind EverythingIsAFile(const char*) {
    return detail::NodeKind::RegularFile;
}

bool FixedCwd(std::string& out) {
    out = "/fixed/\xC3\xA4";
    return true;
}

bool NoCwd(std::string&) {
    return false;
}

TEST_F(FileSystemTest, CreateDirectoryStopsWhenAMkdirFailsMidway) {
    g_creationsAllowed = 1;
    g_creationsMade = 0;
    g_mkdirCalls.clear();
    detail::FileSystemCalls calls = detail::SystemFileSystemCalls();
    calls.makeDirectory = &MkdirFailingAfterAllowance;
    detail::ReplaceFileSystemCallsForTesting(calls);

    EXPECT_FALSE(Directory::CreateDirectory(Under(u"one\\two\\three")));
    EXPECT_EQ(g_creationsMade, 1);
    EXPECT_TRUE(IsNativeDirectory("one"));
    EXPECT_FALSE(IsNativeDirectory("one/two"));
    ASSERT_FALSE(g_mkdirCalls.empty());
    EXPECT_EQ(g_mkdirCalls.back(), root_ + "/one/two");

    // Once mkdir works again, the rest is made and what exists is kept.
    detail::ReplaceFileSystemCallsForTesting(detail::SystemFileSystemCalls());
    EXPECT_TRUE(Directory::CreateDirectory(Under(u"one\\two\\three")));
    EXPECT_TRUE(IsNativeDirectory("one/two/three"));
}

TEST_F(FileSystemTest, CreateDirectoryBelievesOnlyWhatIsThere) {
    detail::FileSystemCalls calls = detail::SystemFileSystemCalls();
    calls.makeDirectory = &MkdirClaimingSuccess;
    detail::ReplaceFileSystemCallsForTesting(calls);
    EXPECT_FALSE(Directory::CreateDirectory(Under(u"claimed\\dir")));

    calls.makeDirectory = &MkdirRefusingButRacedByAnother;
    detail::ReplaceFileSystemCallsForTesting(calls);
    EXPECT_TRUE(Directory::CreateDirectory(Under(u"raced\\dir")));
    EXPECT_TRUE(IsNativeDirectory("raced/dir"));
}

TEST_F(FileSystemTest, ExistenceTestsGoThroughTheReplaceableCalls) {
    detail::FileSystemCalls calls = {};
    calls.kindOf = &EverythingIsAFile;
    const detail::FileSystemCalls previous = detail::ReplaceFileSystemCallsForTesting(calls);
    EXPECT_EQ(previous.kindOf, detail::SystemFileSystemCalls().kindOf);
    EXPECT_TRUE(File::Exists(Under(u"not-there.plw")));
    EXPECT_FALSE(Directory::Exists(wroot_));
    // A null member stands for the system call.
    EXPECT_EQ(detail::ActiveFileSystemCalls().makeDirectory,
              detail::SystemFileSystemCalls().makeDirectory);
    // Paths that cannot exist here never reach the calls.
    EXPECT_FALSE(File::Exists(u"C:\\x.plw"));

    detail::ReplaceFileSystemCallsForTesting(previous);
    EXPECT_FALSE(File::Exists(Under(u"not-there.plw")));
    EXPECT_TRUE(Directory::Exists(wroot_));
}

TEST_F(FileSystemTest, CurrentDirectoryComesFromGetcwd) {
    std::vector<char> buffer(65536);
    ASSERT_NE(::getcwd(buffer.data(), buffer.size()), nullptr);
    EXPECT_EQ(detail::CurrentDirectory(), Utf16FromUtf8(buffer.data()));

    detail::FileSystemCalls calls = detail::SystemFileSystemCalls();
    calls.currentDirectory = &FixedCwd;
    detail::ReplaceFileSystemCallsForTesting(calls);
    EXPECT_EQ(detail::CurrentDirectory(), wstring(u"/fixed/\u00e4"));
    calls.currentDirectory = &NoCwd;
    detail::ReplaceFileSystemCallsForTesting(calls);
    EXPECT_EQ(detail::CurrentDirectory(), std::nullopt);
}

}  // namespace
}  // namespace LodeUtil
