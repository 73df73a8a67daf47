// Repathing drawings: moved trees resolve again, dry runs write nothing, relative paths round
// trip, Windows-form paths move to POSIX folders, generations are kept, failed saves lose
// nothing, and design files are listed without being changed.
#include <lodeqdb/relocate/Repath.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include <lodeqdb/identification/FileFormat.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/service/ChildrenQuery.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "relocate/RelocateTrees.h"
#include "support/Archives.h"
#include "support/TempFolderTest.h"
#include "toolkit/pal/PwFileSystemCalls.h"

namespace {

using LodeQDBRelocate::RepathOptions;
using LodeQDBRelocate::StoredPathKind;
using LodeUtil::Utf16FromUtf8;
using LodeUtil::Utf8FromUtf16;

std::vector<wstring> Wide(const std::vector<std::string>& paths) {
    std::vector<wstring> wide;
    for (const std::string& path : paths) wide.push_back(Utf16FromUtf8(path));
    return wide;
}

// The stored paths of the drawing at `path`.
std::vector<wstring> StoredPathsOf(const std::string& path) {
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(Utf16FromUtf8(path), drawing, true, false);
    std::vector<wstring> paths;
    for (const auto& entry : LodeQDBRelocate::ListStoredPaths(drawing)) paths.push_back(entry.path);
    return paths;
}

ino_t InodeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

class Repath : public lodeqdbtest::TempFolderTest {
  protected:
    Repath() : TempFolderTest("lodeqdb-repath") {}

    // `drawings` with `from` replaced by `to` in every path.
    static std::vector<std::string> Moved(const std::vector<std::string>& drawings,
                                          const std::string& from, const std::string& to) {
        std::vector<std::string> moved;
        for (const std::string& drawing : drawings) moved.push_back(to + drawing.substr(from.size()));
        return moved;
    }
};

TEST_F(Repath, AMovedTreeResolvesEverythingThatResolvedBefore) {
    const std::string before = folder + "/before";
    const std::string after = folder + "/after";
    const auto drawings = lodeqdbtest::WriteProjectTree(before, true);
    const auto expected = lodeqdbtest::TreeByRelativeName(drawings[0], before);
    ASSERT_EQ(expected.at("proj/sub/a.plw"), PwDb::XrefResolved);
    ASSERT_EQ(expected.at("lib/shared.plw"), PwDb::XrefResolved);
    ASSERT_EQ(expected.at("proj/gone/nothere.plw"), PwDb::XrefFileMissing);
    ASSERT_TRUE(expected.count("proj/survey/terrain.dgn"));

    std::filesystem::rename(before, after);
    const auto moved = Moved(drawings, before, after);
    EXPECT_NE(lodeqdbtest::TreeByRelativeName(moved[0], after, false), expected);
    const ino_t sharedInode = InodeOf(moved[3]);

    RepathOptions options;
    options.from = Utf16FromUtf8(before);
    options.to = Utf16FromUtf8(after);
    const auto outcomes = LodeQDBRelocate::Repath(Wide(moved), options);
    ASSERT_EQ(outcomes.size(), 4u);
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_TRUE(outcomes[i].written) << moved[i];
        EXPECT_TRUE(outcomes[i].failure.empty());
        for (const auto& change : outcomes[i].changes) {
            EXPECT_TRUE(change.applied);
            EXPECT_EQ(Utf8FromUtf16(change.newPath).rfind(after, 0), 0u);
        }
    }
    EXPECT_EQ(outcomes[0].changes.size(), 6u);
    // A drawing with nothing to change isn't written at all.
    EXPECT_FALSE(outcomes[3].written);
    EXPECT_TRUE(outcomes[3].changes.empty());
    EXPECT_EQ(InodeOf(moved[3]), sharedInode);

    EXPECT_EQ(lodeqdbtest::TreeByRelativeName(moved[0], after), expected);
}

TEST_F(Repath, ADryRunChangesNoByteAndTellsWhatWouldChange) {
    const std::string before = folder + "/before";
    const auto drawings = lodeqdbtest::WriteProjectTree(before, true);
    const auto bytes = lodeqdbtest::FilesBelow(folder);
    RepathOptions options;
    options.from = Utf16FromUtf8(before + "/proj");
    options.to = Utf16FromUtf8(folder + "/elsewhere");
    options.dryRun = true;
    auto outcomes = LodeQDBRelocate::Repath(Wide(drawings), options);
    ASSERT_EQ(outcomes.size(), 4u);
    ASSERT_EQ(outcomes[0].changes.size(), 6u);
    for (const auto& change : outcomes[0].changes) EXPECT_FALSE(change.applied);
    // Nothing is at the new place; only the self-reference finds a file, by its bare name
    // beside the drawing, as the library looks for dependent files.
    EXPECT_FALSE(outcomes[0].changes[0].resolves);
    EXPECT_TRUE(outcomes[0].changes[1].resolves);
    EXPECT_EQ(Utf8FromUtf16(outcomes[0].changes[1].resolvedPath), drawings[0]);
    EXPECT_FALSE(outcomes[0].changes[3].resolves);
    EXPECT_EQ(outcomes[0].changes[0].kind, StoredPathKind::Reference);
    EXPECT_EQ(outcomes[0].changes[0].name, u"A");
    EXPECT_EQ(Utf8FromUtf16(outcomes[0].changes[0].newPath), folder + "/elsewhere/sub/a.plw");
    EXPECT_EQ(outcomes[0].changes[3].kind, StoredPathKind::Image);
    EXPECT_EQ(outcomes[0].changes[4].kind, StoredPathKind::DgnUnderlay);
    EXPECT_EQ(outcomes[0].changes[5].kind, StoredPathKind::PdfUnderlay);
    for (const auto& outcome : outcomes) EXPECT_FALSE(outcome.written);

    options = {};
    options.relative = true;
    options.dryRun = true;
    outcomes = LodeQDBRelocate::Repath(Wide(drawings), options);
    // Every path that finds its file would become relative; the missing one would not.
    ASSERT_EQ(outcomes[0].changes.size(), 5u);
    EXPECT_EQ(outcomes[0].changes[0].newPath, u"sub/a.plw");
    EXPECT_TRUE(outcomes[0].changes[0].resolves);
    EXPECT_EQ(outcomes[0].changes[1].newPath, u"root.plw");
    EXPECT_EQ(lodeqdbtest::FilesBelow(folder), bytes);
}

TEST_F(Repath, RelativePathsRoundTrip) {
    const std::string first = folder + "/first";
    const auto drawings = lodeqdbtest::WriteProjectTree(first, true);
    const auto expected = lodeqdbtest::TreeByRelativeName(drawings[0], first);
    RepathOptions options;
    options.relative = true;
    auto outcomes = LodeQDBRelocate::Repath(Wide(drawings), options);
    for (size_t i = 0; i < 3; ++i) EXPECT_TRUE(outcomes[i].written) << drawings[i];
    EXPECT_EQ(StoredPathsOf(drawings[1]),
              (std::vector<wstring>{u"b.plw", u"../../lib/shared.plw"}));
    for (const wstring& path : StoredPathsOf(drawings[0])) {
        if (path.find(u"nothere") == wstring::npos) {
            EXPECT_FALSE(LodeUtil::Path::IsPathRooted(path));
        }
    }
    EXPECT_EQ(lodeqdbtest::TreeByRelativeName(drawings[0], first), expected);

    // Asked again, nothing is left to change and nothing is written.
    const auto bytes = lodeqdbtest::FilesBelow(first);
    outcomes = LodeQDBRelocate::Repath(Wide(drawings), options);
    for (const auto& outcome : outcomes) {
        EXPECT_FALSE(outcome.written);
        EXPECT_TRUE(outcome.changes.empty());
    }
    EXPECT_EQ(lodeqdbtest::FilesBelow(first), bytes);

    // Relative paths travel with the folder.
    const std::string second = folder + "/second";
    std::filesystem::rename(first, second);
    auto moved = lodeqdbtest::TreeByRelativeName(second + "/proj/root.plw", second);
    auto wanted = expected;
    // The missing file was stored absolutely and stays where it was.
    wanted.erase("proj/gone/nothere.plw");
    moved.erase(first + "/proj/gone/nothere.plw");
    EXPECT_EQ(moved, wanted);
}

TEST_F(Repath, RelativePathsKeepTheSeparatorTheyWereWrittenWith) {
    lodeqdbtest::WriteDrawing(folder + "/lib/title.plw", {});
    lodeqdbtest::DrawingDesign host;
    host.references = {{u"T", Utf16FromUtf8(folder) + u"\\lib\\title.plw"},
                       {u"U", u".\\lib\\.\\title.plw"}};
    lodeqdbtest::WriteDrawing(folder + "/host.plw", host);
    RepathOptions options;
    options.relative = true;
    const auto outcome = LodeQDBRelocate::RepathDrawing(Path("host.plw"), options);
    ASSERT_EQ(outcome.changes.size(), 2u);
    // The first path's first separator is '/' (its root): it is written with '/'.
    EXPECT_EQ(outcome.changes[0].newPath, u"lib/title.plw");
    EXPECT_EQ(outcome.changes[1].newPath, u"lib\\title.plw");
}

TEST_F(Repath, WindowsFormPathsMoveToAPosixFolder) {
    lodeqdbtest::WriteDrawing(folder + "/posix/lib/title.plw", {});
    lodeqdbtest::WriteDrawing(folder + "/share/x.plw", {});
    std::filesystem::create_directories(folder + "/posix/img");
    Write("posix/img/pic.png", std::string("\x89PNG\r\n\x1a\n", 8));
    lodeqdbtest::DrawingDesign host;
    host.references = {{u"TITLE", u"C:\\proj\\lib\\title.plw"},
                       {u"X", u"\\\\srv\\share\\x.plw"},
                       {u"NOT", u"C:\\project\\lib\\title.plw"},
                       {u"POSIX", u"/Proj/lib/title.plw"}};
    host.images = {{u"PIC", u"c:/PROJ/img/pic.png"}};
    lodeqdbtest::WriteDrawing(folder + "/win/host.plw", host);

    RepathOptions options;
    options.from = u"c:/PROJ";
    options.to = Utf16FromUtf8(folder + "/posix");
    auto outcome = LodeQDBRelocate::RepathDrawing(Path("win/host.plw"), options);
    ASSERT_EQ(outcome.changes.size(), 2u);
    EXPECT_EQ(Utf8FromUtf16(outcome.changes[0].newPath), folder + "/posix/lib/title.plw");
    EXPECT_EQ(Utf8FromUtf16(outcome.changes[1].newPath), folder + "/posix/img/pic.png");
    EXPECT_TRUE(outcome.changes[0].resolves);
    EXPECT_TRUE(outcome.changes[1].resolves);
    EXPECT_TRUE(outcome.written);

    options.from = u"\\\\SRV\\share";
    options.to = Utf16FromUtf8(folder + "/share");
    outcome = LodeQDBRelocate::RepathDrawing(Path("win/host.plw"), options);
    ASSERT_EQ(outcome.changes.size(), 1u);
    EXPECT_EQ(Utf8FromUtf16(outcome.changes[0].newPath), folder + "/share/x.plw");

    const std::vector<wstring> stored = StoredPathsOf(folder + "/win/host.plw");
    EXPECT_EQ(Utf8FromUtf16(stored[0]), folder + "/posix/lib/title.plw");
    EXPECT_EQ(Utf8FromUtf16(stored[1]), folder + "/share/x.plw");
    EXPECT_EQ(stored[2], u"C:\\project\\lib\\title.plw");
    EXPECT_EQ(stored[3], u"/Proj/lib/title.plw");
    const auto children = LodeQDBService::Request::PlotwrightChildren(Path("win/host.plw"), nullptr);
    ASSERT_EQ(children.size(), 5u);
    EXPECT_EQ(children[0].GetXrefStatus(), PwDb::XrefResolved);
    EXPECT_EQ(children[1].GetXrefStatus(), PwDb::XrefResolved);
    EXPECT_EQ(children[2].GetXrefStatus(), PwDb::XrefFileMissing);
}

TEST_F(Repath, EachDrawingKeepsItsFormatGenerationAndKind) {
    lodeqdbtest::DrawingDesign design;
    design.references = {{u"T", u"/old/title.plw"}};
    lodeqdbtest::WriteDrawing(folder + "/gen5.plw", design, static_cast<PwDb::PwDbPlwVersion>(27));
    lodeqdbtest::WriteDrawing(folder + "/gen7.plx", design, static_cast<PwDb::PwDbPlwVersion>(31));
    const auto gen5 = LodeQDBUtil::GetPlotwrightFileFormat(Path("gen5.plw"));
    const auto gen7 = LodeQDBUtil::GetPlotwrightFileFormat(Path("gen7.plx"));
    ASSERT_EQ(gen5, lode::FormatGeneration5);
    ASSERT_EQ(gen7, lode::FormatGeneration7);
    RepathOptions options;
    options.from = u"/old";
    options.to = u"/new";
    const auto outcomes = LodeQDBRelocate::Repath({Path("gen5.plw"), Path("gen7.plx")}, options);
    for (const auto& outcome : outcomes) EXPECT_TRUE(outcome.written);
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(Path("gen5.plw")), gen5);
    EXPECT_EQ(LodeQDBUtil::GetPlotwrightFileFormat(Path("gen7.plx")), gen7);
    EXPECT_EQ(StoredPathsOf(folder + "/gen5.plw"), std::vector<wstring>{u"/new/title.plw"});
    EXPECT_EQ(StoredPathsOf(folder + "/gen7.plx"), std::vector<wstring>{u"/new/title.plw"});
    EXPECT_NE(Read("gen7.plx").find("/new/title.plw"), std::string::npos);
}

TEST_F(Repath, ASaveThatFailsInAReadOnlyFolderKeepsTheOldBytes) {
    lodeqdbtest::DrawingDesign design;
    design.references = {{u"T", u"/old/title.plw"}};
    lodeqdbtest::WriteDrawing(folder + "/locked/host.plw", design);
    const std::string bytes = Read("locked/host.plw");
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::chmod((folder + "/locked").c_str(), 0555), 0);
    ASSERT_EQ(::chmod((folder + "/locked/host.plw").c_str(), 0644), 0);
    const wstring host = Path("locked/host.plw");
    // Root may write anywhere: the save is tried as an ordinary user.
    const int code = InChildProcess([&] {
        if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) return 10;
        RepathOptions options;
        options.from = u"/old";
        options.to = u"/new";
        const auto outcome = LodeQDBRelocate::RepathDrawing(host, options);
        if (outcome.changes.size() != 1) return 11;
        if (outcome.written || outcome.changes[0].applied) return 12;
        return outcome.saveStatus != Plotwright::StatusOk ? 0 : 13;
    });
    ::chmod((folder + "/locked").c_str(), 0755);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(Read("locked/host.plw"), bytes);
    EXPECT_EQ(lodeqdbtest::FilesBelow(folder + "/locked").size(), 1u);
}

TEST_F(Repath, ASaveThatFindsTheDiskFullKeepsTheOldBytes) {
    lodeqdbtest::DrawingDesign design;
    design.references = {{u"T", u"/old/title.plw"}};
    lodeqdbtest::WriteDrawing(folder + "/host.plw", design);
    const std::string bytes = Read("host.plw");
    PwFileSystemCalls full = pwFileSystemCalls();
    full.write = [](int, const void*, size_t) -> ssize_t {
        errno = ENOSPC;
        return -1;
    };
    pwReplaceFileSystemCallsForTesting(full);
    RepathOptions options;
    options.from = u"/old";
    options.to = u"/new";
    const auto outcome = LodeQDBRelocate::RepathDrawing(Path("host.plw"), options);
    pwReplaceFileSystemCallsForTesting({});
    EXPECT_NE(outcome.saveStatus, Plotwright::StatusOk);
    EXPECT_FALSE(outcome.written);
    ASSERT_EQ(outcome.changes.size(), 1u);
    EXPECT_FALSE(outcome.changes[0].applied);
    EXPECT_EQ(Read("host.plw"), bytes);
    EXPECT_EQ(lodeqdbtest::FilesBelow(folder).size(), 1u);
}

TEST_F(Repath, ADesignFilesAttachmentsAreListedAndNeverChanged) {
    lodeqdbtest::WriteProjectTree(folder, false);
    const std::string bytes = Read("proj/survey/site.dgn");
    RepathOptions options;
    options.from = u"terrain.dgn";
    options.to = u"contours/relief.dgn";
    const auto outcome = LodeQDBRelocate::RepathDrawing(Path("proj/survey/site.dgn"), options);
    ASSERT_EQ(outcome.changes.size(), 1u);
    EXPECT_EQ(outcome.changes[0].kind, StoredPathKind::DgnAttachment);
    EXPECT_EQ(outcome.changes[0].name, u"TERRAIN");
    EXPECT_EQ(outcome.changes[0].newPath, u"contours/relief.dgn");
    EXPECT_FALSE(outcome.changes[0].resolves);
    EXPECT_FALSE(outcome.changes[0].applied);
    EXPECT_FALSE(outcome.written);
    EXPECT_EQ(Read("proj/survey/site.dgn"), bytes);
}

TEST_F(Repath, AFailureStopsOneDrawingAndTheRestGoOn) {
    lodeqdbtest::DrawingDesign design;
    design.references = {{u"T", u"/old/title.plw"}};
    lodeqdbtest::WriteDrawing(folder + "/good.plw", design);
    Write("broken.plw", "not a drawing");
    RepathOptions options;
    options.from = u"/old";
    options.to = u"/new";
    const auto outcomes = LodeQDBRelocate::Repath(
        {Path("missing.plw"), Path("broken.plw"), Path("good.plw")}, options);
    ASSERT_EQ(outcomes.size(), 3u);
    EXPECT_EQ(outcomes[0].failure, "NotFound");
    EXPECT_EQ(outcomes[1].failure, "InvalidFormat");
    EXPECT_TRUE(outcomes[2].failure.empty());
    EXPECT_TRUE(outcomes[2].written);
    EXPECT_EQ(Read("broken.plw"), "not a drawing");
    EXPECT_THROW(LodeQDBRelocate::RepathDrawing(Path("missing.plw"), options), lode::NotFound);
}

TEST_F(Repath, OptionsThatAskNothingAreRefused) {
    lodeqdbtest::WriteDrawing(folder + "/host.plw", {});
    RepathOptions options;
    EXPECT_THROW(LodeQDBRelocate::Repath({Path("host.plw")}, options), std::invalid_argument);
    options.from = u"/a";
    EXPECT_THROW(LodeQDBRelocate::RepathDrawing(Path("host.plw"), options), std::invalid_argument);
    options.from.clear();
    options.to = u"/b";
    EXPECT_THROW(LodeQDBRelocate::RepathDrawing(Path("host.plw"), options), std::invalid_argument);
}

}  // namespace
