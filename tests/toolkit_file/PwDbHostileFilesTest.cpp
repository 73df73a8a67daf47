// Files that a hostile or unlucky user gives the drawing readers: a pipe with no writer, a
// folder, and a huge file that isn't a drawing. Each gets its status at once, and a file that
// turns out not to be a drawing costs little memory however large it is.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/file/PwDbPreview.h>
#include "support/TempFolderTest.h"

namespace {

using Plotwright::StatusOk;

class HostileFiles : public lodeqdbtest::TempFolderTest {
  protected:
    HostileFiles() : TempFolderTest("lodeqdb-hostile") {}

    // A file of `size` bytes that occupies no disk: a hole with `start` at its beginning.
    void Sparse(const std::string& name, off_t size, const std::string& start) {
        Write(name, start);
        ASSERT_EQ(::truncate((folder + "/" + name).c_str(), size), 0);
    }

    // The growth of the peak memory of a child process while it runs `read`, in MiB (at most
    // 250); kWrongAnswer when `read` says its answers weren't the expected ones.
    static constexpr int kWrongAnswer = 255;
    template <class Read>
    int PeakGrowthInChild(Read read) {
        return InChildProcess([&] {
            rusage before{};
            getrusage(RUSAGE_SELF, &before);
            if (!read()) return kWrongAnswer;
            rusage after{};
            getrusage(RUSAGE_SELF, &after);
            return static_cast<int>(
                std::min<long>((after.ru_maxrss - before.ru_maxrss) / 1024, 250));
        });
    }
};

TEST_F(HostileFiles, PipesAndFoldersGetAStatusAtOnce) {
    ASSERT_EQ(::mkfifo((folder + "/pipe.plw").c_str(), 0644), 0);
    ASSERT_EQ(::mkfifo((folder + "/pipe.plx").c_str(), 0644), 0);
    ASSERT_EQ(::mkdir((folder + "/dir.plw").c_str(), 0755), 0);
    for (const char* name : {"pipe.plw", "dir.plw"}) {
        PwDbDatabase drawing;
        for (const auto mode : {PwDbDatabase::OpenModeShareRead, PwDbDatabase::OpenModeExclusive,
                                PwDbDatabase::OpenModeShareAll, PwDbDatabase::OpenModeAlternate}) {
            EXPECT_EQ(drawing.readPlwFile(Path(name).c_str(), mode), Plotwright::StatusFileIOError)
                << name;
        }
        HBITMAP bitmap = nullptr;
        HPALETTE palette = nullptr;
        EXPECT_FALSE(pwdbGetPreviewBitmapFromPlw(Path(name).c_str(), &bitmap, &palette));
    }
    PwDbDatabase drawing;
    EXPECT_EQ(drawing.plxIn(Path("pipe.plx").c_str()), Plotwright::StatusFileIOError);
}

// 4 GiB that start like nothing the readers know: refused by their first bytes.
TEST_F(HostileFiles, AHugeFileThatIsNoDrawingIsRefusedByItsStart) {
    constexpr off_t kFourGiB = off_t{4} << 30;
    Sparse("huge.plw", kFourGiB, "PW1033 but not a drawing");
    Sparse("huge.plx", kFourGiB, "PLOTWRIGHT EXCHANGE?");
    Sparse("huge.dgn", kFourGiB, "");
    const int native = PeakGrowthInChild([&] {
        PwDbDatabase drawing;
        HBITMAP bitmap = nullptr;
        HPALETTE palette = nullptr;
        return drawing.readPlwFile(Path("huge.plw").c_str()) == Plotwright::StatusBadFileFormat &&
               drawing.readPlwFile(Path("huge.dgn").c_str()) == Plotwright::StatusBadFileFormat &&
               !pwdbGetPreviewBitmapFromPlw(Path("huge.plw").c_str(), &bitmap, &palette);
    });
    EXPECT_LT(native, 64) << "MiB for refusing a file by its start (255: a wrong status)";
    const int exchange = PeakGrowthInChild([&] {
        PwDbDatabase drawing;
        return drawing.plxIn(Path("huge.plx").c_str()) == Plotwright::StatusBadFileFormat;
    });
    EXPECT_LT(exchange, 64) << "MiB for refusing a file by its start (255: a wrong status)";
}

// A sound header whose lengths don't agree with the file's size (a drawing cut short, or
// grown by a hole) is refused by its start as well.
TEST_F(HostileFiles, AHeaderThatDisagreesWithTheSizeIsRefused) {
    PwDbDatabase made;
    ASSERT_EQ(made.saveAs(Path("a.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    struct stat status {};
    ASSERT_EQ(::stat((folder + "/a.plw").c_str(), &status), 0);
    ASSERT_EQ(::truncate((folder + "/a.plw").c_str(), off_t{3} << 30), 0);
    const int growth = PeakGrowthInChild([&] {
        PwDbDatabase drawing;
        return drawing.readPlwFile(Path("a.plw").c_str()) == Plotwright::StatusBadFileFormat;
    });
    EXPECT_LT(growth, 64) << "MiB (255: a wrong status)";
    ASSERT_EQ(::truncate((folder + "/a.plw").c_str(), status.st_size - 1), 0);
    PwDbDatabase drawing;
    EXPECT_EQ(drawing.readPlwFile(Path("a.plw").c_str()), Plotwright::StatusBadFileFormat);
}

}  // namespace
