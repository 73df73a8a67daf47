// Runs after a file is changed, added, removed or renamed read only what they must, and leave
// the index equal to one made from nothing; damaged files are recorded and the run goes on.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include <lodeqdb/index/FolderIndex.h>
#include <lodeqdb/index/IndexError.h>
#include <lodeqdb/index/IndexUpdate.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/lodeutil/Utf.h>
#include "index/IndexTestSupport.h"

namespace {

using lodeqdbtest::DumpIndex;

class IndexIncremental : public lodeqdbtest::IndexFolderTest {
  protected:
    LodeQDBIndex::UpdateSummary Run(const std::string& database = "") {
        LodeQDBIndex::UpdateOptions options;
        options.folder = store;
        options.database = database;
        options.jobs = 2;
        return LodeQDBIndex::UpdateIndex(options);
    }

    // The index kept up to date equals one made from nothing, and agrees with the library.
    void ExpectAsIfMadeAfresh(const std::string& database) {
        const std::string fresh = folder + "/fresh.sqlite";
        std::remove(fresh.c_str());
        Run(fresh);
        EXPECT_EQ(DumpIndex(database), DumpIndex(fresh));
        for (const std::string& file : lodeqdbtest::FilesWithExtension(store, ".plw"))
            EXPECT_EQ(lodeqdbtest::IndexedRecordsText(database, file),
                      lodeqdbtest::LibraryRecordsText(file))
                << file;
    }

    void WriteDrawing(const std::string& path, const std::vector<std::string>& references) {
        auto drawing = PwDbAuthoring::createDrawing();
        for (size_t i = 0; i < references.size(); ++i)
            ASSERT_EQ(PwDbAuthoring::addXref(*drawing, u"R" + LodeUtil::Utf16FromUtf8(std::to_string(i)),
                                             LodeUtil::Utf16FromUtf8(references[i])),
                      Plotwright::StatusOk);
        ASSERT_EQ(drawing->saveAs(LodeUtil::Utf16FromUtf8(path).c_str(), false,
                                  PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusOk);
    }
};

TEST_F(IndexIncremental, AnUnchangedFolderIsNotReadAgain) {
    const auto first = Run();
    EXPECT_EQ(first.read, first.seen);
    const auto second = Run();
    EXPECT_EQ(second.seen, first.seen);
    EXPECT_EQ(second.read, 0u);
    EXPECT_EQ(second.unchanged, first.seen);
    EXPECT_EQ(second.removed, 0u);
}

TEST_F(IndexIncremental, AChangedFileAndItsUsersAreReadAgain) {
    const std::string database = Run().database;
    // The base plan of project 1 now uses a title block too: it is read, and so are the
    // sheets that use it (their records of it stay as they were, but that is only known by
    // reading them).
    WriteDrawing(store + "/proj-0001/base.plw", {"../shared/titles/title-2.plw"});
    lodeqdbtest::Touch(store + "/proj-0001/base.plw", 5);
    const auto summary = Run();
    EXPECT_GE(summary.read, 2u);
    EXPECT_LT(summary.read, summary.seen / 2);
    EXPECT_EQ(summary.removed, 0u);
    const auto uses = LodeQDBIndex::FolderIndex(database).WhereUsed(
        store + "/shared/titles/title-2.plw", true);
    bool baseUses = false;
    for (const auto& use : uses) baseUses = baseUses || use.drawing == store + "/proj-0001/base.plw";
    EXPECT_TRUE(baseUses);
    ExpectAsIfMadeAfresh(database);
}

TEST_F(IndexIncremental, AnAddedFileResolvesTheReferencesThatMissedIt) {
    const auto first = Run();
    const std::string database = first.database;
    const std::string gone = store + "/proj-0000/old/gone-025.plw";
    ASSERT_TRUE(std::filesystem::create_directories(store + "/proj-0000/old"));
    WriteDrawing(gone, {});
    WriteDrawing(store + "/proj-0000/sheets/extra.plw", {"../../shared/lib/lib-0.plw"});
    const auto summary = Run();
    EXPECT_EQ(summary.seen, first.seen + 2);
    EXPECT_GE(summary.read, 3u);  // the two new ones and the sheet that missed one
    bool found = false;
    for (const auto& record : LodeQDBIndex::FolderIndex(database).RecordsOf(
             store + "/proj-0000/sheets/sheet-025.plw")) {
        if (record.name != gone) continue;
        found = true;
        EXPECT_EQ(record.status, 1);
        EXPECT_TRUE(record.present);
    }
    EXPECT_TRUE(found);
    ExpectAsIfMadeAfresh(database);
}

TEST_F(IndexIncremental, ARemovedFileIsDroppedAndItsUsersSeeItMissing) {
    const std::string database = Run().database;
    const std::string lib = store + "/shared/lib/lib-1.plw";
    ASSERT_EQ(std::remove(lib.c_str()), 0);
    const auto summary = Run();
    EXPECT_EQ(summary.removed, 1u);
    EXPECT_GE(summary.read, 2u);
    LodeQDBIndex::FolderIndex index(database);
    EXPECT_FALSE(index.Contains(lib));
    bool missingSeen = false;
    for (const auto& record : index.BrokenReferences())
        missingSeen = missingSeen || lodeqdbtest::Normal(record.name) == lib;
    EXPECT_TRUE(missingSeen);
    ExpectAsIfMadeAfresh(database);
}

TEST_F(IndexIncremental, ARenamedFileIsOneGoneAndOneNew) {
    const std::string database = Run().database;
    const std::string from = store + "/shared/titles/title-0.plw";
    const std::string to = store + "/shared/titles/title-0-renamed.plw";
    ASSERT_EQ(std::rename(from.c_str(), to.c_str()), 0);
    const auto summary = Run();
    EXPECT_EQ(summary.removed, 1u);
    LodeQDBIndex::FolderIndex index(database);
    EXPECT_TRUE(index.Contains(to));
    EXPECT_FALSE(index.Contains(from));
    EXPECT_TRUE(index.WhereUsed(to, true).empty());
    EXPECT_FALSE(index.WhereUsed(from, true).empty());
    ExpectAsIfMadeAfresh(database);
}

TEST_F(IndexIncremental, DamagedFilesAreRecordedAndTheRunGoesOn) {
    Write("store/damaged.plw", "PW1032 but no drawing follows");
    Write("store/empty.plw", "");
    Write("store/not-a-design.dgn", "plain text, not a design file");
    Write("store/damaged.plx", "not an exchange file");
    ASSERT_EQ(mkfifo((store + "/pipe.plw").c_str(), 0600), 0);  // never opened: no hang
    const auto summary = Run();
    EXPECT_EQ(summary.failed, 4u);
    LodeQDBIndex::FolderIndex index(summary.database);
    const auto failed = index.FailedFiles();
    ASSERT_EQ(failed.size(), 4u);
    for (const auto& file : failed) {
        EXPECT_FALSE(file.errorClass.empty()) << file.path;
        EXPECT_NE(file.errorCode, 0) << file.path;
    }
    EXPECT_EQ(failed[0].path, store + "/damaged.plw");
    EXPECT_EQ(failed[0].errorClass, "InvalidFormat");
    EXPECT_FALSE(index.Contains(store + "/pipe.plw"));
    EXPECT_EQ(index.Stats().byKind.at("drawing"), static_cast<int64_t>(SampleDrawings()) + 2);
    // A failed file is tried again at every run; once mended it is read like any other.
    Write("store/damaged.plw", "");
    std::filesystem::copy_file(store + "/shared/titles/title-0.plw", store + "/damaged.plw",
                               std::filesystem::copy_options::overwrite_existing);
    const auto again = Run();
    EXPECT_EQ(again.failed, 3u);
    EXPECT_EQ(LodeQDBIndex::FolderIndex(summary.database).FailedFiles().size(), 3u);
}

TEST_F(IndexIncremental, AReadOnlyFolderIsIndexedIntoAnotherPlace) {
    const std::string elsewhere = folder + "/elsewhere/index.sqlite";
    ASSERT_TRUE(std::filesystem::create_directories(folder + "/elsewhere"));
    ASSERT_EQ(std::system(("chmod -R a-w '" + store + "'").c_str()), 0);
    const std::string before = DumpIndex(Run(elsewhere).database);
    EXPECT_FALSE(std::filesystem::exists(store + "/.lodeqdb"));
    EXPECT_NE(before.find("title-0.plw"), std::string::npos);
    if (geteuid() != 0) {
        // Without a place of its own for the index, the run fails with the index's error.
        EXPECT_THROW(Run(), LodeQDBIndex::IndexError);
    }
    ASSERT_EQ(std::system(("chmod -R u+w '" + store + "'").c_str()), 0);
}

TEST_F(IndexIncremental, AnIndexFileThatIsntOneIsRefused) {
    Write("bad.sqlite", "this is not a database file, and it is long enough to be looked at....");
    EXPECT_THROW(Run(folder + "/bad.sqlite"), LodeQDBIndex::IndexError);
    EXPECT_THROW(LodeQDBIndex::FolderIndex(folder + "/none.sqlite"), LodeQDBIndex::IndexError);
    EXPECT_THROW(LodeQDBIndex::FolderIndex(folder + "/bad.sqlite"), LodeQDBIndex::IndexError);
}

}  // namespace
