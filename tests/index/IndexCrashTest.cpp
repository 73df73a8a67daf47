// Runs killed with SIGKILL at random moments leave an index that opens and answers, and the
// next whole run makes it equal to an index made from nothing.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <thread>

#include <lodeqdb/index/FolderIndex.h>
#include <lodeqdb/index/IndexUpdate.h>
#include "index/IndexTestSupport.h"

namespace {

constexpr int kKills = 24;

class IndexCrash : public lodeqdbtest::IndexFolderTest {
  protected:
    LodeQDBIndex::UpdateOptions Options(const std::string& database) const {
        LodeQDBIndex::UpdateOptions options;
        options.folder = store;
        options.database = database;
        options.jobs = 2;
        return options;
    }
};

TEST_F(IndexCrash, KilledRunsLeaveAnIndexThatOpensAndTheNextRunCompletes) {
    const std::string database = folder + "/index.sqlite";
    // How long a whole run from nothing takes here, to spread the kills over it.
    const auto start = std::chrono::steady_clock::now();
    LodeQDBIndex::UpdateIndex(Options(folder + "/timing.sqlite"));
    auto whole = std::chrono::duration_cast<std::chrono::microseconds>(
                           std::chrono::steady_clock::now() - start)
                           .count();
    const auto drawings = lodeqdbtest::FilesWithExtension(store, ".plw");
    std::mt19937 random(19);
    int killedWhileRunning = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        // Something changes between runs, so that each run has reading and writing to do.
        if (kill % 3 == 1) {
            for (int i = 0; i < 10; ++i)
                lodeqdbtest::Touch(drawings[random() % drawings.size()], kill + 1);
        }
        if (kill % 8 == 4) std::remove((folder + "/index.sqlite").c_str());  // from nothing again
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            try {
                LodeQDBIndex::UpdateIndex(Options(database));
            } catch (...) {
                _exit(2);
            }
            _exit(0);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % (whole + 1)));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        if (WIFSIGNALED(status)) {
            ++killedWhileRunning;
        } else {
            ASSERT_EQ(WEXITSTATUS(status), 0) << "run " << kill;
            // Runs go faster than the first one measured (a warm cache, a machine less busy):
            // the kills come sooner from now on, so that most still land inside a run.
            whole = std::max<decltype(whole)>(whole / 2, 1);
        }
        // Whatever moment it died at, the index opens and answers as of its last commit.
        if (FILE* exists = std::fopen(database.c_str(), "rb")) {
            std::fclose(exists);
            try {
                LodeQDBIndex::FolderIndex index(database);
                const auto stats = index.Stats();
                EXPECT_GE(stats.files, 0);
                index.BrokenReferences();
                index.WhereUsed(store + "/shared/titles/title-0.plw", false);
            } catch (const LodeQDBIndex::IndexError& error) {
                // Killed before the schema's first commit: only then may it not be an index.
                EXPECT_NE(std::string(error.what()).find("has no tables"), std::string::npos)
                    << "run " << kill << ": " << error.what();
            }
        }
    }
    EXPECT_GE(killedWhileRunning, kKills / 2);
    LodeQDBIndex::UpdateIndex(Options(database));
    const std::string fresh = folder + "/fresh.sqlite";
    LodeQDBIndex::UpdateIndex(Options(fresh));
    EXPECT_EQ(lodeqdbtest::DumpIndex(database), lodeqdbtest::DumpIndex(fresh));
}

}  // namespace
