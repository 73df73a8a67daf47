// The object access helpers: scoped upgrades, the transaction fallback, the working database,
// block records and dictionaries in wide strings, filer items and previews.
#include <gtest/gtest.h>

#include <lodeqdb/platform/AutoObjectUpgrader.h>
#include <lodeqdb/platform/BlockTableRecordAccess.h>
#include <lodeqdb/platform/DictionaryAccess.h>
#include <lodeqdb/platform/FilerItems.h>
#include <lodeqdb/platform/ObjectPointer.h>
#include <lodeqdb/platform/PreviewBitmap.h>
#include <lodeqdb/platform/SetWorkingDBMgr.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace {

using Plotwright::StatusOk;

class Helpers : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PwDbAuthoring::addXref(*drawing, u"REF", u"C:\\lib\\ref.plw", {}, &block),
                  StatusOk);
    }
    std::unique_ptr<PwDbDatabase> drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId block;
};

TEST_F(Helpers, AnUpgraderDowngradesOnlyWhatItUpgraded) {
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForRead);
    {
        pwdb::AutoObjectUpgrader upgrade(*record);
        EXPECT_EQ(upgrade.GetStatus(), StatusOk);
        EXPECT_TRUE(record->isWriteEnabled());
    }
    EXPECT_FALSE(record->isWriteEnabled());
    EXPECT_TRUE(record->isReadEnabled());
    PwDbObjectPointer<PwDbBlockTableRecord> second(block, PwDb::OpenForRead);
    {
        pwdb::AutoObjectUpgrader refused(*record);
        EXPECT_EQ(refused.GetStatus(), Plotwright::StatusWasOpenForRead);
    }
    EXPECT_EQ(record->numReaders(), 2u);
}

TEST_F(Helpers, PathNamesAndNamesInWideStrings) {
    EXPECT_EQ(LodeQDBUtil::BlockTableRecord::PathName(block), u"C:\\lib\\ref.plw");
    EXPECT_EQ(LodeQDBUtil::BlockTableRecord::PathName(nullptr), u"");
    EXPECT_EQ(LodeQDBUtil::BlockTableRecord::PathName(PwDbObjectId()), u"");
    EXPECT_EQ(LodeQDBUtil::BlockTableRecord::PathName(drawing->layerZeroId()), u"");
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForWrite);
    EXPECT_EQ(LodeQDBUtil::BlockTableRecord::Name(record.object()), u"REF");
    EXPECT_TRUE(LodeQDBUtil::BlockTableRecord::SetName(*record, u"RENAMED"));
    EXPECT_TRUE(LodeQDBUtil::BlockTableRecord::SetPathName(*record, u"new\\ref.plw"));
    EXPECT_FALSE(LodeQDBUtil::BlockTableRecord::SetName(*record, u""));
    EXPECT_EQ(LodeQDBUtil::BlockTableRecord::Name(record.object()), u"RENAMED");
    EXPECT_EQ(LodeQDBUtil::BlockTableRecord::PathName(record.object()), u"new\\ref.plw");
}

TEST_F(Helpers, ConstSettersWriteThroughAReadOpenAndLeaveIt) {
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForRead);
    const PwDbBlockTableRecord& reading = *record;
    EXPECT_TRUE(LodeQDBUtil::BlockTableRecord::SetName(reading, u"CONST"));
    EXPECT_TRUE(LodeQDBUtil::BlockTableRecord::SetPathName(reading, u"const.plw"));
    EXPECT_FALSE(record->isWriteEnabled());
    EXPECT_EQ(record->numReaders(), 1u);
    EXPECT_EQ(LodeQDBUtil::BlockTableRecord::Name(record.object()), u"CONST");
    // With a second reader the upgrade is refused: nothing changes, nothing is downgraded.
    PwDbObjectPointer<PwDbBlockTableRecord> other(block, PwDb::OpenForRead);
    EXPECT_FALSE(LodeQDBUtil::BlockTableRecord::SetName(reading, u"REFUSED"));
    EXPECT_FALSE(LodeQDBUtil::BlockTableRecord::SetPathName(reading, u"refused.plw"));
    EXPECT_EQ(record->numReaders(), 2u);
    EXPECT_EQ(LodeQDBUtil::BlockTableRecord::Name(record.object()), u"CONST");
}

class ReferenceStates : public lodeqdbtest::TempFolderTest {
  protected:
    ReferenceStates() : TempFolderTest("lodeqdb-status") {}
};

TEST_F(ReferenceStates, AnExistingPathTurnsAMissingFileIntoAnUnresolvedOneOnly) {
    auto ref = PwDbAuthoring::createDrawing();
    ASSERT_EQ(ref->saveAs(Path("ref.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    Write("elsewhere.plw", "present");
    auto host = PwDbAuthoring::createDrawing();
    PwDbObjectId missing, found;
    ASSERT_EQ(PwDbAuthoring::addXref(*host, u"MISSING", u"gone.plw", {}, &missing), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addXref(*host, u"FOUND", u"ref.plw", {}, &found), StatusOk);
    ASSERT_EQ(host->saveAs(Path("host.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    pwdbResolveCurrentXRefs(host.get(), false, true);
    using LodeQDBUtil::BlockTableRecord::Status;
    EXPECT_EQ(Status(missing), PwDb::XrefFileMissing);
    EXPECT_EQ(Status(missing, Path("elsewhere.plw")), PwDb::XrefFilePresentUnresolved);
    EXPECT_EQ(Status(missing, Path("nothing.plw")), PwDb::XrefFileMissing);
    EXPECT_EQ(Status(found), PwDb::XrefResolved);
    EXPECT_EQ(Status(found, Path("nothing.plw")), PwDb::XrefResolved);
    EXPECT_EQ(Status(host->modelSpaceId(), Path("elsewhere.plw")), PwDb::XrefNotAnXref);
}

TEST_F(Helpers, DictionaryNamesInWideStrings) {
    PwDbObjectPointer<PwDbDictionary> layouts(drawing->layoutDictionaryId(), PwDb::OpenForWrite);
    PwDbObjectId layout;
    ASSERT_EQ(layouts->getAt(u"Layout1", layout), StatusOk);
    EXPECT_EQ(LodeQDBUtil::Dictionary::NameAt(layouts, layout), u"Layout1");
    EXPECT_EQ(LodeQDBUtil::Dictionary::NameAt(layouts, drawing->layerZeroId()), u"");
    EXPECT_TRUE(LodeQDBUtil::Dictionary::SetName(layouts, u"Layout1", u"Sheet A"));
    EXPECT_FALSE(LodeQDBUtil::Dictionary::SetName(layouts, u"Missing", u"Other"));
    EXPECT_EQ(LodeQDBUtil::Dictionary::NameAt(layouts, layout), u"Sheet A");
    layouts->downgradeOpen();
    const PwDbObjectPointer<PwDbDictionary>& reading = layouts;
    EXPECT_TRUE(LodeQDBUtil::Dictionary::SetName(reading, u"Sheet A", u"Sheet B"));
    EXPECT_FALSE(layouts->isWriteEnabled());
    EXPECT_EQ(LodeQDBUtil::Dictionary::NameAt(layouts, layout), u"Sheet B");
    EXPECT_EQ(LodeQDBUtil::Dictionary::NameAt(PwDbObjectPointer<PwDbDictionary>(), layout), u"");
}

TEST_F(Helpers, ObjectPointersFallBackOnATransaction) {
    PwDbObjectPointer<PwDbBlockTableRecord> writer(block, PwDb::OpenForWrite);
    PwDbTransactionManager* manager = drawing->transactionManager();
    {
        LodeQDBUtil::ObjectPointer<PwDbBlockTableRecord> pointer(block, PwDb::OpenForRead, false);
        EXPECT_EQ(pointer.status(), Plotwright::StatusWasOpenForWrite);
        EXPECT_TRUE(pointer.isUsable());
        EXPECT_EQ(pointer.object(), writer.object());
        EXPECT_TRUE(pointer.startedTransaction());
        EXPECT_EQ(manager->numActiveTransactions(), 1);
    }
    EXPECT_EQ(manager->numActiveTransactions(), 0);
    PwDbTransaction* outer = manager->beginTransaction();
    {
        LodeQDBUtil::ObjectPointer<PwDbBlockTableRecord> pointer(block, PwDb::OpenForRead, false);
        EXPECT_FALSE(pointer.startedTransaction());
        EXPECT_EQ(manager->currentTransaction(), outer);
    }
    EXPECT_EQ(manager->numActiveTransactions(), 1);
    manager->finishTransaction();
}

TEST_F(Helpers, ObjectPointersOpenDirectlyWhenTheyCan) {
    LodeQDBUtil::ObjectPointer<PwDbLayout> layout(
        [&] {
            PwDbObjectPointer<PwDbDictionary> layouts(drawing->layoutDictionaryId(),
                                                      PwDb::OpenForRead);
            PwDbObjectId id;
            layouts->getAt(u"Model", id);
            return id;
        }(),
        PwDb::OpenForRead, false);
    EXPECT_EQ(layout.status(), StatusOk);
    EXPECT_TRUE(layout.isUsable());
    EXPECT_FALSE(layout.startedTransaction());
    EXPECT_EQ(drawing->transactionManager()->numActiveTransactions(), 0);
    LodeQDBUtil::ObjectPointer<PwDbDictionary> none(PwDbObjectId(), PwDb::OpenForRead, false);
    EXPECT_FALSE(none.isUsable());
    EXPECT_EQ(none.status(), Plotwright::StatusNullObjectId);
    LodeQDBUtil::ObjectPointer<PwDbRasterImageDef> empty(static_cast<PwDbRasterImageDef*>(nullptr));
    EXPECT_EQ(empty.status(), Plotwright::StatusNullDatabase);
    EXPECT_FALSE(empty.isUsable());
    // The wrong class opens neither way.
    LodeQDBUtil::ObjectPointer<PwDbRasterImageDef> wrong(block, PwDb::OpenForRead, false);
    EXPECT_FALSE(wrong.isUsable());
    EXPECT_EQ(drawing->transactionManager()->numActiveTransactions(), 0);
}

// A full host: not the toolkit alone.
class FullHost : public PwDbHostApplicationServices {
  public:
    int hostKind() const override { return 2; }
};

TEST(WorkingDatabase, SwitchesUnderTheToolkitAloneAndSwitchesBack) {
    PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    PwDbDatabase first, second;
    services->setWorkingDatabase(&first);
    {
        LodeQDBUtil::SetWorkingDBMgr working(&second);
        EXPECT_EQ(services->workingDatabase(), &second);
    }
    EXPECT_EQ(services->workingDatabase(), &first);
    {
        LodeQDBUtil::SetWorkingDBMgr same(&first);
        EXPECT_EQ(services->workingDatabase(), &first);
        services->setWorkingDatabase(&second);
    }
    // Nothing was switched, so nothing is switched back.
    EXPECT_EQ(services->workingDatabase(), &second);
    services->setWorkingDatabase(nullptr);
}

TEST(WorkingDatabase, AFullHostsWorkingDatabaseIsLeftAlone) {
    FullHost host;
    PwDbHostApplicationServices* previous = pwdbSetHostApplicationServices(&host);
    PwDbDatabase first, second;
    host.setWorkingDatabase(&first);
    {
        LodeQDBUtil::SetWorkingDBMgr working(&second);
        EXPECT_EQ(host.workingDatabase(), &first);
    }
    EXPECT_EQ(host.workingDatabase(), &first);
    host.setWorkingDatabase(nullptr);
    {
        LodeQDBUtil::SetWorkingDBMgr working(&second);
        EXPECT_EQ(host.workingDatabase(), &second);
    }
    EXPECT_EQ(host.workingDatabase(), nullptr);
    pwdbSetHostApplicationServices(previous);
}

// A filer whose every item fails.
class FailingFiler : public PwDbMemoryFiler {
  public:
    Plotwright::ErrorStatus readInt32(int32_t& value) override {
        value = -99;  // what a careless filer might leave behind
        return Plotwright::StatusFilerError;
    }
    Plotwright::ErrorStatus readString(char16_t*& text) override {
        text = nullptr;
        return Plotwright::StatusFilerError;
    }
    using PwDbMemoryFiler::readString;
};

TEST(FilerItems, EachValueIsOneItemAndReadsBack) {
    PwDbMemoryFiler filer;
    ASSERT_EQ(pwdb::writeItem(filer, 42), StatusOk);
    ASSERT_EQ(pwdb::writeItem(filer, wstring(u"Revision \u00c4")), StatusOk);
    EXPECT_EQ(filer.items().size(), 2u);
    int number = 0;
    wstring text;
    ASSERT_EQ(pwdb::readItem(filer, number), StatusOk);
    ASSERT_EQ(pwdb::readItem(filer, text), StatusOk);
    EXPECT_EQ(number, 42);
    EXPECT_EQ(text, u"Revision \u00c4");
    EXPECT_NE(pwdb::readItem(filer, number), StatusOk);
    EXPECT_EQ(number, 42);
}

TEST(FilerItems, AFailedReadLeavesTheValue) {
    FailingFiler filer;
    int number = 7;
    wstring text = u"kept";
    EXPECT_EQ(pwdb::readItem(filer, number), Plotwright::StatusFilerError);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(pwdb::readItem(filer, text), Plotwright::StatusFilerError);
    EXPECT_EQ(text, u"kept");
}

class Previews : public lodeqdbtest::TempFolderTest {
  protected:
    Previews() : TempFolderTest("lodeqdb-preview") {}
};

TEST_F(Previews, APreviewIsReadWithoutADatabase) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbPreviewImage preview;
    preview.width = 2;
    preview.height = 1;
    preview.pixels = {0xFF102030u, 0xFF405060u};
    drawing->setPreviewImage(&preview);
    ASSERT_EQ(drawing->saveAs(Path("a.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    HBITMAP bitmap = nullptr;
    HPALETTE palette = nullptr;
    ASSERT_TRUE(pwdb::GetPreviewBitmapFromPlw(Path("a.plw"), bitmap, palette));
    uint32_t width = 0, height = 0;
    EXPECT_TRUE(pwdbBitmapSize(bitmap, width, height));
    EXPECT_EQ(width, 2u);
    EXPECT_EQ(pwdbBitmapPixels(bitmap)[1], 0xFF405060u);
    pwdbDeleteBitmap(bitmap);
    EXPECT_FALSE(pwdb::GetPreviewBitmapFromPlw(Path("missing.plw"), bitmap, palette));
    EXPECT_FALSE(pwdb::GetPreviewBitmapFromPlw(u"", bitmap, palette));
}

}  // namespace
