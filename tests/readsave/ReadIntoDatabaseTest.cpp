// The library's doors for reading drawing files: by extension, in which mode, with which
// exception, and whether references are resolved.
#include <lodeqdb/readsave/ReadIntoDatabase.h>

#include <gtest/gtest.h>

#include <lodeqdb/platform/LodeExceptions.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>

namespace {

using Plotwright::StatusOk;

class ReadIntoDatabase : public lodeqdbtest::TempFolderTest {
  protected:
    ReadIntoDatabase() : TempFolderTest("lodeqdb-read") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        auto drawing = PwDbAuthoring::createDrawing();
        ASSERT_EQ(PwDbAuthoring::addLayer(*drawing, u"WALLS"), StatusOk);
        ASSERT_EQ(PwDbAuthoring::addXref(*drawing, u"REF", u"ref.plw", {}, nullptr), StatusOk);
        ASSERT_EQ(drawing->saveAs(Path("host.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
        ASSERT_EQ(drawing->plxOut(Path("host.plx").c_str(), 16, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
        auto referenced = PwDbAuthoring::createDrawing();
        ASSERT_EQ(referenced->saveAs(Path("ref.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }

    static PwDb::XrefStatus ReferenceStatus(const PwDbDatabase& database) {
        PwDbSymbolTablePointer<PwDbBlockTable> blocks(const_cast<PwDbDatabase*>(&database),
                                                      PwDb::OpenForRead);
        PwDbBlockTableRecord* block = nullptr;
        if (blocks->getAt(u"REF", block, PwDb::OpenForRead) != StatusOk) return PwDb::XrefNotAnXref;
        const PwDb::XrefStatus status = block->xrefStatus();
        block->close();
        return status;
    }

    PwDbDatabase database{false, true};
};

TEST_F(ReadIntoDatabase, ShareFlagsMapToOpenModes) {
    EXPECT_EQ(LodeQDBUtil::ConvertOpenMode(16), PwDbDatabase::OpenModeExclusive);
    EXPECT_EQ(LodeQDBUtil::ConvertOpenMode(32), PwDbDatabase::OpenModeShareRead);
    EXPECT_EQ(LodeQDBUtil::ConvertOpenMode(48), PwDbDatabase::OpenModeExclusive);
    EXPECT_EQ(LodeQDBUtil::ConvertOpenMode(64), PwDbDatabase::OpenModeShareAll);
    EXPECT_EQ(LodeQDBUtil::ConvertOpenMode(0), PwDbDatabase::OpenModeShareAll);
    EXPECT_EQ(LodeQDBUtil::ConvertOpenMode(-1), PwDbDatabase::OpenModeShareAll);
}

TEST_F(ReadIntoDatabase, AnUnknownOrEmptyNameIsAnUnhandledKind) {
    Write("host.txt", Read("host.plw"));
    EXPECT_EQ(LodeQDBUtil::ReadPLWOrPLXToDb(Path("host.txt"), database, true),
              Plotwright::StatusUnhandledFileKind);
    EXPECT_EQ(LodeQDBUtil::ReadPLWOrPLXToDb(u"", database, true),
              Plotwright::StatusUnhandledFileKind);
}

TEST_F(ReadIntoDatabase, AnUnknownExtensionThrowsAReadErrorAndLeavesTheDatabase) {
    Write("host.txt", Read("host.plw"));
    const size_t before = database.numObjects();
    EXPECT_THROW(LodeQDBUtil::ReadFileToDatabase(Path("host.txt"), database, true, true),
                 lode::ReadError);
    EXPECT_EQ(database.numObjects(), before);
    const char16_t* name = nullptr;
    database.getFilename(name);
    EXPECT_EQ(name, nullptr);
}

TEST_F(ReadIntoDatabase, ANativeFileHeldForOthersToShareCantBeSavedOverUntilClosed) {
    ASSERT_EQ(LodeQDBUtil::ReadPLWOrPLXToDb(Path("host.plw"), database, false), StatusOk);
    EXPECT_EQ(database.saveAs(Path("host.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
              Plotwright::StatusFileInUse);
    ASSERT_EQ(database.closeInput(), StatusOk);
    EXPECT_EQ(database.saveAs(Path("host.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
              StatusOk);
}

TEST_F(ReadIntoDatabase, ANativeFileReadToHoldNothingCanBeSavedOverAtOnce) {
    ASSERT_EQ(LodeQDBUtil::ReadPLWOrPLXToDb(Path("host.plw"), database, true), StatusOk);
    EXPECT_EQ(database.saveAs(Path("host.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
              StatusOk);
}

TEST_F(ReadIntoDatabase, AnExchangeFileReadsTheSameEitherWay) {
    for (bool holdNothing : {false, true}) {
        PwDbDatabase drawing(false, true);
        ASSERT_EQ(LodeQDBUtil::ReadPLWOrPLXToDb(Path("host.plx"), drawing, holdNothing), StatusOk);
        EXPECT_EQ(ReferenceStatus(drawing), PwDb::XrefFilePresentUnresolved);
        EXPECT_EQ(drawing.plxOut(Path("host.plx").c_str(), 16, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }
}

TEST_F(ReadIntoDatabase, FailuresBecomeTheExceptionsOfTheirStatus) {
    EXPECT_THROW(LodeQDBUtil::ReadFileToDatabase(Path("missing.plw"), database, true, true),
                 lode::NotFound);
    Write("broken.plw", "not a drawing");
    EXPECT_THROW(LodeQDBUtil::ReadFileToDatabase(Path("broken.plw"), database, true, true),
                 lode::InvalidFormat);
    Write("broken.plx", "not an exchange file");
    EXPECT_THROW(LodeQDBUtil::ReadFileToDatabase(Path("broken.plx"), database, true, true),
                 lode::InvalidFormat);
}

TEST_F(ReadIntoDatabase, ReferencesAreResolvedOnlyWhenAskedFor) {
    LodeQDBUtil::ReadFileToDatabase(Path("host.plw"), database, true, false);
    EXPECT_EQ(ReferenceStatus(database), PwDb::XrefFilePresentUnresolved);
    PwDbDatabase resolved(false, true);
    LodeQDBUtil::ReadFileToDatabase(Path("host.plw"), resolved, true, true);
    EXPECT_EQ(ReferenceStatus(resolved), PwDb::XrefResolved);
    PwDbDatabase exchange(false, true);
    LodeQDBUtil::ReadFileToDatabase(Path("host.plx"), exchange, true, true);
    EXPECT_EQ(ReferenceStatus(exchange), PwDb::XrefResolved);
}

TEST_F(ReadIntoDatabase, TheThinWrapperReturnsTheToolkitsStatus) {
    EXPECT_EQ(LodeQDBUtil::readPlwFile(database, Path("host.plw"), PwDbDatabase::OpenModeAlternate,
                                       false, u""),
              StatusOk);
    EXPECT_EQ(ReferenceStatus(database), PwDb::XrefFilePresentUnresolved);
    EXPECT_EQ(LodeQDBUtil::readPlwFile(database, Path("missing.plw"),
                                       PwDbDatabase::OpenModeAlternate, false, u"secret"),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(LodeQDBUtil::readPlwFile(database, Path("host.plx"), PwDbDatabase::OpenModeAlternate,
                                       false, u""),
              Plotwright::StatusBadFileFormat);
}

}  // namespace
