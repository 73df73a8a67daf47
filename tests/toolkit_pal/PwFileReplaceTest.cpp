// Atomic replacement as users meet it: the file's mode and owner kept, symbolic links written
// through, and temporaries of savers that were killed removed by the next save.
#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <set>
#include <string>
#include <thread>

#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/pal/PwFileIO.h>
#include "toolkit/pal/PwFileSystemCalls.h"

namespace {

using namespace Morvane::Plotwright::PAL::FileIO;
using Plotwright::StatusOk;

class PwFileReplace : public lodeqdbtest::TempFolderTest {
  protected:
    PwFileReplace() : TempFolderTest("lodeqdb-replace") {}

    std::set<std::string> Entries() const {
        std::set<std::string> names;
        DIR* dir = opendir(folder.c_str());
        while (dirent* entry = readdir(dir)) {
            const std::string name = entry->d_name;
            if (name != "." && name != "..") names.insert(name);
        }
        closedir(dir);
        return names;
    }
    mode_t ModeOf(const std::string& name) const {
        struct stat status {};
        EXPECT_EQ(::stat((folder + "/" + name).c_str(), &status), 0) << name;
        return status.st_mode & 07777;
    }
    bool IsLink(const std::string& name) const {
        struct stat status {};
        return ::lstat((folder + "/" + name).c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    }
    void Link(const std::string& target, const std::string& name) const {
        ASSERT_EQ(::symlink(target.c_str(), (folder + "/" + name).c_str()), 0);
    }
};

TEST_F(PwFileReplace, ThePermissionBitsOfTheOldFileStay) {
    for (const mode_t mode : {0600, 0640, 0664, 0444}) {
        Write("a.plw", "old");
        ASSERT_EQ(::chmod((folder + "/a.plw").c_str(), mode), 0);
        ASSERT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), "new"), StatusOk);
        EXPECT_EQ(ModeOf("a.plw"), mode) << std::oct << mode;
        EXPECT_EQ(Read("a.plw"), "new");
    }
}

TEST_F(PwFileReplace, ANewFileGetsTheModeTheUmaskGives) {
    const mode_t mask = ::umask(027);
    ASSERT_EQ(ReplaceFileAtomically(Path("new.plw").c_str(), "made"), StatusOk);
    ::umask(mask);
    EXPECT_EQ(ModeOf("new.plw"), 0640);
}

TEST_F(PwFileReplace, TheOwnerAndGroupStayWhereTheProcessMaySetThem) {
    Write("a.plw", "old");
    struct stat before {};
    ASSERT_EQ(::stat((folder + "/a.plw").c_str(), &before), 0);
    ASSERT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), "new"), StatusOk);
    struct stat after {};
    ASSERT_EQ(::stat((folder + "/a.plw").c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    if (::geteuid() != 0) return;
    // Root may give a file any owner: a drawing of another user stays theirs.
    ASSERT_EQ(::chown((folder + "/a.plw").c_str(), 65534, 65534), 0);
    ASSERT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), "newer"), StatusOk);
    ASSERT_EQ(::stat((folder + "/a.plw").c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, 65534u);
    EXPECT_EQ(after.st_gid, 65534u);
}

TEST_F(PwFileReplace, ASymbolicLinkStaysALinkAndItsTargetIsWritten) {
    ASSERT_EQ(::mkdir((folder + "/real").c_str(), 0755), 0);
    Write("real/a.plw", "old");
    Link("real/a.plw", "link.plw");
    ASSERT_EQ(ReplaceFileAtomically(Path("link.plw").c_str(), "new"), StatusOk);
    EXPECT_TRUE(IsLink("link.plw"));
    EXPECT_EQ(Read("real/a.plw"), "new");
    EXPECT_EQ(Read("link.plw"), "new");
}

TEST_F(PwFileReplace, AChainOfLinksIsFollowedToTheEnd) {
    Write("a.plw", "old");
    Link(folder + "/a.plw", "first.plw");  // absolute
    Link("first.plw", "second.plw");       // relative, to another link
    ASSERT_EQ(ReplaceFileAtomically(Path("second.plw").c_str(), "new"), StatusOk);
    EXPECT_TRUE(IsLink("first.plw"));
    EXPECT_TRUE(IsLink("second.plw"));
    EXPECT_EQ(Read("a.plw"), "new");
}

// A link whose target isn't there yet: the save makes the target, as writing through the
// link would.
TEST_F(PwFileReplace, ADanglingLinkGetsItsTargetMade) {
    Link("made.plw", "link.plw");
    ASSERT_EQ(ReplaceFileAtomically(Path("link.plw").c_str(), "new"), StatusOk);
    EXPECT_TRUE(IsLink("link.plw"));
    EXPECT_EQ(Read("made.plw"), "new");
}

TEST_F(PwFileReplace, ALoopOfLinksOrATargetThatIsNoFileIsRefused) {
    Link("b.plw", "a.plw");
    Link("a.plw", "b.plw");
    EXPECT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), "new"), Plotwright::StatusFileIOError);
    ASSERT_EQ(::mkfifo((folder + "/pipe.plw").c_str(), 0644), 0);
    EXPECT_EQ(ReplaceFileAtomically(Path("pipe.plw").c_str(), "new"),
              Plotwright::StatusFileIOError);
    ASSERT_EQ(::mkdir((folder + "/dir.plw").c_str(), 0755), 0);
    EXPECT_EQ(ReplaceFileAtomically(Path("dir.plw").c_str(), "new"), Plotwright::StatusFileIOError);
    EXPECT_EQ(Entries(), (std::set<std::string>{"a.plw", "b.plw", "pipe.plw", "dir.plw"}));
}

// A saver killed while it writes leaves its temporary; the next save of the same file removes
// it and leaves nothing but the file. Killed at random moments, twenty times.
TEST_F(PwFileReplace, TemporariesOfKilledSaversAreRemovedByTheNextSave) {
    const std::string old(1 << 20, 'o');
    const std::string replacement(1 << 20, 'n');
    Write("a.plw", old);
    std::mt19937 random(20261123);
    for (int round = 0; round < 20; ++round) {
        const pid_t saver = fork();
        if (saver == 0) {
            // Writes slowly, so that the kill comes while the temporary is being written.
            PwFileSystemCalls slow{};
            slow.write = [](int fd, const void* data, size_t size) -> ssize_t {
                std::this_thread::sleep_for(std::chrono::microseconds(200));
                return ::write(fd, data, std::min<size_t>(size, 4096));
            };
            pwReplaceFileSystemCallsForTesting(slow);
            for (;;) ReplaceFileAtomically(Path("a.plw").c_str(), replacement);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5 + random() % 60));
        ASSERT_EQ(::kill(saver, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(saver, &status, 0), saver);
        const std::string now = Read("a.plw");
        EXPECT_TRUE(now == old || now == replacement) << "round " << round;
        ASSERT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), old), StatusOk);
        EXPECT_EQ(Entries(), std::set<std::string>{"a.plw"}) << "round " << round;
        EXPECT_EQ(Read("a.plw"), old);
    }
}

// The temporary of a saver that still runs is never taken for an abandoned one.
TEST_F(PwFileReplace, TheTemporaryOfALiveSaverIsLeftAlone) {
    Write("a.plw", "old");
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t saver = fork();
    if (saver == 0) {
        static int signal = -1;
        signal = ready[1];
        PwFileSystemCalls stuck{};
        stuck.fsync = [](int) -> int {
            ::write(signal, "x", 1);
            ::pause();  // until killed
            return 0;
        };
        pwReplaceFileSystemCallsForTesting(stuck);
        ReplaceFileAtomically(Path("a.plw").c_str(), "theirs");
        _exit(0);
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    ASSERT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), "ours"), StatusOk);
    EXPECT_EQ(Entries().size(), 2u) << "the live saver's temporary stays";
    ::kill(saver, SIGKILL);
    ::waitpid(saver, nullptr, 0);
    ::close(ready[0]);
    ::close(ready[1]);
    ASSERT_EQ(ReplaceFileAtomically(Path("a.plw").c_str(), "ours again"), StatusOk);
    EXPECT_EQ(Entries(), std::set<std::string>{"a.plw"});
}

}  // namespace
