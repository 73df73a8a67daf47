// Files of the platform layer: opening, reading, locks between processes, atomic replacement.
#include <lodeqdb/toolkit/pal/PwFileIO.h>

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include <lodeqdb/lodeutil/Utf.h>
#include "support/TempFolderTest.h"
#include "toolkit/pal/PwFileSystemCalls.h"

namespace {

using namespace Morvane::Plotwright::PAL::FileIO;
using Plotwright::StatusOk;

class PwFileIO : public lodeqdbtest::TempFolderTest {
  protected:
    PwFileIO() : TempFolderTest("lodeqdb-fileio") {}

    size_t EntriesInFolder() const {
        size_t count = 0;
        DIR* dir = opendir(folder.c_str());
        while (dirent* entry = readdir(dir)) {
            if (entry->d_name[0] != '.' || std::string(entry->d_name).size() > 2) ++count;
        }
        closedir(dir);
        return count;
    }
};

TEST_F(PwFileIO, MissingFileIsNotFound) {
    const File file = File::openFile(Path("none.plw").c_str(), kWideChars, kOpenForRead, kShareRead,
                                     kOpenExisting);
    EXPECT_EQ(file.openStatus(), Plotwright::StatusFileNotFound);
    uint32_t got = 7;
    char buffer[4];
    EXPECT_FALSE(file.readFromFile(buffer, 4, got));
    EXPECT_EQ(got, 0u);
}

TEST_F(PwFileIO, NamesThatCannotExistHereAreRefused) {
    for (const char16_t* name : {u"C:\\a.plw", u"\\\\srv\\share\\a.plw", u""}) {
        EXPECT_EQ(
            File::openFile(name, kWideChars, kOpenForRead, kShareRead, kOpenExisting).openStatus(),
            Plotwright::StatusInvalidInput);
    }
    EXPECT_EQ(
        File::openFile(nullptr, kWideChars, kOpenForRead, kShareRead, kOpenExisting).openStatus(),
        Plotwright::StatusInvalidInput);
}

TEST_F(PwFileIO, ReadsSeeksAndKnowsItsSize) {
    Write("a.bin", "0123456789");
    const File file =
        File::openFile(Path("a.bin").c_str(), kWideChars, kOpenForRead, kShareRead, kOpenExisting);
    ASSERT_EQ(file.openStatus(), StatusOk);
    EXPECT_EQ(file.size(), 10);
    ASSERT_TRUE(file.seek(4, kSeekFromStart));
    char buffer[16] = {};
    uint32_t got = 0;
    ASSERT_TRUE(file.readFromFile(buffer, 16, got));
    EXPECT_EQ(got, 6u);
    EXPECT_EQ(std::string(buffer, got), "456789");
    ASSERT_TRUE(file.readFromFile(buffer, 16, got));
    EXPECT_EQ(got, 0u) << "the end of the file reads as nothing";
    const File copy = file;
    EXPECT_EQ(copy.openStatus(), StatusOk);
    EXPECT_FALSE(File::nullFile().seek(0, kSeekFromStart));
}

TEST_F(PwFileIO, BackslashesCountAsSeparators) {
    mkdir((folder + "/sub").c_str(), 0777);
    Write("sub/x.plw", "x");
    const wstring path = LodeUtil::Utf16FromUtf8(folder) + u"\\sub\\x.plw";
    std::string bytes;
    EXPECT_EQ(ReadWholeFile(path.c_str(), kShareRead, bytes), StatusOk);
    EXPECT_EQ(bytes, "x");
}

// A pipe without a writer would make a plain open wait for ever; a folder has no bytes.
// Neither is opened, and neither makes anyone wait.
TEST_F(PwFileIO, OnlyRegularFilesAreOpenedAndNothingWaits) {
    ASSERT_EQ(::mkfifo((folder + "/pipe.plw").c_str(), 0644), 0);
    ASSERT_EQ(::mkdir((folder + "/dir.plw").c_str(), 0755), 0);
    for (const char* name : {"pipe.plw", "dir.plw"}) {
        for (const FileShareMode share : {kShareRead, kShareExclusive, kShareAll}) {
            EXPECT_EQ(
                File::openFile(Path(name).c_str(), kWideChars, kOpenForRead, share, kOpenExisting)
                    .openStatus(),
                Plotwright::StatusFileIOError)
                << name;
        }
        std::string bytes;
        EXPECT_EQ(ReadWholeFile(Path(name).c_str(), kShareRead, bytes),
                  Plotwright::StatusFileIOError)
            << name;
        EXPECT_EQ(ReadFileStart(Path(name).c_str(), 16, bytes), Plotwright::StatusFileNotFound)
            << name;
    }
    EXPECT_EQ(File::openFile(Path("pipe.plw").c_str(), kWideChars, kOpenForWrite, kShareAll,
                             kOpenExisting)
                  .openStatus(),
              Plotwright::StatusFileIOError);
}

// The start of a file is judged before the rest is read: a file refused by its start gives
// StatusBadFileFormat, one accepted reads whole.
TEST_F(PwFileIO, AFileIsReadWholeOnlyWhenItsStartIsAccepted) {
    Write("a.bin", "GOOD and the rest");
    Write("b.bin", "BAD! and the rest");
    const StartCheck good = [](std::string_view start, uint64_t size) {
        return start == "GOOD" && size == 17;
    };
    std::string bytes = "kept";
    EXPECT_EQ(ReadWholeFileIfItStartsWell(Path("b.bin").c_str(), kShareRead, 4, good, bytes),
              Plotwright::StatusBadFileFormat);
    EXPECT_EQ(bytes, "kept");
    EXPECT_EQ(ReadWholeFileIfItStartsWell(Path("a.bin").c_str(), kShareRead, 4, good, bytes),
              StatusOk);
    EXPECT_EQ(bytes, "GOOD and the rest");
    Write("short.bin", "GO");
    EXPECT_EQ(ReadWholeFileIfItStartsWell(
                  Path("short.bin").c_str(), kShareRead, 4,
                  [](std::string_view start, uint64_t size) { return start == "GO" && size == 2; },
                  bytes),
              StatusOk);
    EXPECT_EQ(bytes, "GO");
}

TEST_F(PwFileIO, ExclusiveHolderKeepsOtherProcessesOut) {
    Write("a.plw", "data");
    const File holder = File::openFile(Path("a.plw").c_str(), kWideChars, kOpenForRead,
                                       kShareExclusive, kOpenExisting);
    ASSERT_EQ(holder.openStatus(), StatusOk);
    const wstring path = Path("a.plw");
    const int shared = InChildProcess([&] {
        std::string bytes;
        return ReadWholeFile(path.c_str(), kShareRead, bytes) ==
                       Plotwright::StatusSecurityAccessDenied
                   ? 0
                   : 1;
    });
    EXPECT_EQ(shared, 0);
    const int replace = InChildProcess([&] {
        return ReplaceFileAtomically(path.c_str(), "new") == Plotwright::StatusFileInUse ? 0 : 1;
    });
    EXPECT_EQ(replace, 0);
    EXPECT_EQ(Read("a.plw"), "data");
}

TEST_F(PwFileIO, SharedReadersReadTogetherButNobodyReplaces) {
    Write("a.plw", "data");
    const File holder =
        File::openFile(Path("a.plw").c_str(), kWideChars, kOpenForRead, kShareRead, kOpenExisting);
    ASSERT_EQ(holder.openStatus(), StatusOk);
    const wstring path = Path("a.plw");
    EXPECT_EQ(InChildProcess([&] {
                  std::string bytes;
                  return ReadWholeFile(path.c_str(), kShareRead, bytes) == StatusOk ? 0 : 1;
              }),
              0);
    EXPECT_EQ(InChildProcess([&] {
                  return ReplaceFileAtomically(path.c_str(), "new") == Plotwright::StatusFileInUse
                             ? 0
                             : 1;
              }),
              0);
    EXPECT_EQ(Read("a.plw"), "data");
}

TEST_F(PwFileIO, ReplacementIsWholeAndLeavesNoTemporaryFile) {
    Write("a.plw", "old contents");
    ASSERT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), "new"), StatusOk);
    EXPECT_EQ(Read("a.plw"), "new");
    EXPECT_EQ(EntriesInFolder(), 1u);
    ASSERT_EQ(ReplaceFileAtomically(Path("fresh.plw").c_str(), "made"), StatusOk);
    EXPECT_EQ(Read("fresh.plw"), "made");
}

// Each write of the save fails in turn; every time the old file stays byte for byte.
TEST_F(PwFileIO, FailedWriteMidwayLeavesTheOldFileIntact) {
    Write("a.plw", "the old drawing");
    static int writesLeft;
    PwFileSystemCalls failing{};
    failing.write = [](int fd, const void* data, size_t size) -> ssize_t {
        if (writesLeft-- <= 0) {
            errno = ENOSPC;
            return -1;
        }
        // Short writes make the save take several calls.
        return ::write(fd, data, size < 3 ? size : 3);
    };
    pwReplaceFileSystemCallsForTesting(failing);
    const std::string contents(20, 'n');
    for (int allowed = 0; allowed < 7; ++allowed) {
        writesLeft = allowed;
        EXPECT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), contents),
                  Plotwright::StatusFileIOError)
            << allowed;
        EXPECT_EQ(Read("a.plw"), "the old drawing") << allowed;
        EXPECT_EQ(EntriesInFolder(), 1u) << "no temporary file is left behind";
    }
    writesLeft = 1000;
    EXPECT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), contents), StatusOk);
    EXPECT_EQ(Read("a.plw"), contents);
}

TEST_F(PwFileIO, FailedFlushOrRenameLeavesTheOldFileIntact) {
    Write("a.plw", "old");
    PwFileSystemCalls failing{};
    failing.fsync = [](int) {
        errno = EIO;
        return -1;
    };
    pwReplaceFileSystemCallsForTesting(failing);
    EXPECT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), "new"), Plotwright::StatusFileIOError);
    EXPECT_EQ(Read("a.plw"), "old");
    failing = {};
    failing.rename = [](const char*, const char*) {
        errno = EXDEV;
        return -1;
    };
    pwReplaceFileSystemCallsForTesting(failing);
    EXPECT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), "new"), Plotwright::StatusFileIOError);
    EXPECT_EQ(Read("a.plw"), "old");
    EXPECT_EQ(EntriesInFolder(), 1u);
}

TEST_F(PwFileIO, MissingFolderFailsCleanly) {
    EXPECT_NE(ReplaceFileAtomically(Path("no/such/folder/a.plw").c_str(), "x"), StatusOk);
}

TEST_F(PwFileIO, SameFileFollowsTheFileNotTheName) {
    Write("a.plw", "x");
    mkdir((folder + "/sub").c_str(), 0777);
    const wstring direct = Path("a.plw");
    const wstring roundabout = Path("sub/../a.plw");
    EXPECT_TRUE(SameFile(direct.c_str(), roundabout.c_str()));
    Write("b.plw", "x");
    EXPECT_FALSE(SameFile(direct.c_str(), Path("b.plw").c_str()));
    EXPECT_FALSE(SameFile(direct.c_str(), Path("none").c_str()));
}

}  // namespace
