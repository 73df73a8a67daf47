// Locks between readers and savers in different processes: a short conflict is waited out,
// a lock kept longer than the bound is still reported.
#include "toolkit/pal/PwFileLocks.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/pal/PwFileIO.h>

namespace {

using namespace Morvane::Plotwright::PAL::FileIO;
using Plotwright::StatusOk;

class PwFileLocks : public lodeqdbtest::TempFolderTest {
  protected:
    PwFileLocks() : TempFolderTest("lodeqdb-locks") {}

    // A child process that holds `name` under an exclusive lock for `milliseconds`; returns
    // once the lock is held.
    pid_t HoldExclusively(const std::string& name, int milliseconds) {
        int ready[2];
        if (pipe(ready) != 0) return -1;
        const pid_t holder = fork();
        if (holder == 0) {
            const File held = File::openFile(Path(name).c_str(), kWideChars, kOpenForRead,
                                             kShareExclusive, kOpenExisting);
            if (write(ready[1], "x", 1) != 1) _exit(1);
            usleep(static_cast<useconds_t>(milliseconds) * 1000);
            _exit(held.openStatus() == StatusOk ? 0 : 1);
        }
        char byte = 0;
        const bool held = read(ready[0], &byte, 1) == 1;
        close(ready[0]);
        close(ready[1]);
        return held ? holder : -1;
    }
};

// Four processes read one file 500 times each while a fifth replaces it again and again until
// they are done: every read and every save succeeds, and every read sees one whole version.
TEST_F(PwFileLocks, ReadersAndASaverNeverFailEachOther) {
    const std::string first(16 * 1024, 'a');
    const std::string second(16 * 1024, 'b');
    Write("a.plw", first);
    const std::string stop = folder + "/stop";
    const pid_t saver = fork();
    if (saver == 0) {
        int saves = 0;
        while (access(stop.c_str(), F_OK) != 0) {
            if (ReplaceFileAtomically(Path("a.plw").c_str(), saves % 2 ? first : second) !=
                StatusOk)
                _exit(1);
            ++saves;
        }
        _exit(saves > 0 ? 0 : 2);
    }
    constexpr int kReaders = 4;
    constexpr int kReads = 500;
    std::vector<pid_t> readers;
    for (int i = 0; i < kReaders; ++i) {
        readers.push_back(fork());
        if (readers.back() == 0) {
            for (int read = 0; read < kReads; ++read) {
                std::string bytes;
                if (ReadWholeFile(Path("a.plw").c_str(), kShareRead, bytes) != StatusOk ||
                    (bytes != first && bytes != second))
                    _exit(1);
            }
            _exit(0);
        }
    }
    int failedReaders = 0;
    for (const pid_t reader : readers) {
        int status = 0;
        ASSERT_EQ(waitpid(reader, &status, 0), reader);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) ++failedReaders;
    }
    Write("stop", "");
    int status = 0;
    ASSERT_EQ(waitpid(saver, &status, 0), saver);
    EXPECT_EQ(failedReaders, 0) << "readers that met a failed read";
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a save failed";
}

// An exclusive lock kept for longer than the bound: a reader gives up after the bound.
TEST_F(PwFileLocks, ALockKeptPastTheBoundIsReported) {
    Write("a.plw", "held");
    const pid_t holder = HoldExclusively("a.plw", 30000);
    ASSERT_GT(holder, 0);
    const auto start = std::chrono::steady_clock::now();
    std::string bytes;
    EXPECT_EQ(ReadWholeFile(Path("a.plw").c_str(), kShareRead, bytes),
              Plotwright::StatusSecurityAccessDenied);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(kPwLockWaitMilliseconds));
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    // Once the holder is gone the file reads at once.
    EXPECT_EQ(ReadWholeFile(Path("a.plw").c_str(), kShareRead, bytes), StatusOk);
}

// A holder that lets go within the bound is waited for.
TEST_F(PwFileLocks, ALockLetGoWithinTheBoundIsWaitedFor) {
    Write("a.plw", "held");
    const pid_t holder = HoldExclusively("a.plw", 300);
    ASSERT_GT(holder, 0);
    std::string bytes;
    EXPECT_EQ(ReadWholeFile(Path("a.plw").c_str(), kShareRead, bytes), StatusOk);
    EXPECT_EQ(bytes, "held");
    waitpid(holder, nullptr, 0);
}

}  // namespace
