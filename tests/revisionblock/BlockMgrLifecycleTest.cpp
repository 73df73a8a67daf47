// Finding the revision block and its table, holding them, letting them go (the manager's
// lifecycle), on drawings read from files of both formats.
#include <lodeqdb/revisionblock/BlockMgr.h>

#include <gtest/gtest.h>

#include "RevisionTestSupport.h"
#include "SpyTable.h"
#include <lodeqdb/platform/LodeExceptions.h>
#include "support/DrawingReadBack.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbTransactionManager.h>
#include "toolkit/pal/PwHeapFaults.h"
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace revblocktest {
namespace {

using RevisionBlock::BlockMgr;

class Lifecycle : public RevisionFiles {};

// The number of read opens held on the object `id`.
unsigned Readers(PwDbObjectId id) {
    PwDbObjectPointer<PwDbObject> object(id, PwDb::OpenForRead);
    return object ? object->numReaders() - 1 : 0;
}

TEST_P(Lifecycle, TheNameIsLodeRevBlock) {
    EXPECT_EQ(RevisionBlock::RevisionBlockName, u"lode_RevBlock");
}

TEST_P(Lifecycle, ADrawingWithoutTheBlockIsNoFailure) {
    auto made = PwDbAuthoring::createDrawing();
    auto drawing = ReadFromDisk(WriteToDisk(*made, "empty"));
    BlockMgr manager(*drawing);
    EXPECT_FALSE(manager.HasBlockDefinition());
    EXPECT_FALSE(manager.HasBlockInstance());
    EXPECT_TRUE(manager.GetData().empty());
    try {
        manager.Update(StandardContext({{u"A"}}));
        FAIL() << "an update without a block must throw";
    } catch (const lode::LodeException& error) {
        EXPECT_EQ(error.code(), 401);
        EXPECT_EQ(typeid(error), typeid(lode::LodeException));
    }
    // The calls that need a block, made without one, fail cleanly.
    EXPECT_THROW(manager.GetColumnHeaders(), lode::LodeException);
    EXPECT_THROW(manager.ApplyColumnHeaders({u"REV"}), lode::LodeException);
    EXPECT_THROW(manager.InsertBlockInstance(0, 0, 1), lode::LodeException);
    EXPECT_FALSE(AnyObjectModified(*drawing));
}

TEST_P(Lifecycle, ABlockWhoseOnlyEntityIsALineIsCode402) {
    auto made = PwDbAuthoring::createDrawing();
    PwDbObjectId block;
    ASSERT_EQ(PwDbAuthoring::addBlock(*made, RevisionBlock::RevisionBlockName, &block),
              Plotwright::StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLine(*made, block, {0, 0, 0}, {10, 0, 0}), Plotwright::StatusOk);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "line"));
    try {
        BlockMgr manager(*drawing);
        FAIL() << "a block without a table must throw";
    } catch (const lode::LodeException& error) {
        EXPECT_EQ(error.code(), 402);
        EXPECT_EQ(typeid(error), typeid(lode::LodeException));
        EXPECT_TRUE(error.message().empty());
    }
    // Nothing stays open: the block can be opened for write.
    PwDbObjectPointer<PwDbBlockTableRecord> record(
        lodeqdbtest::BlockNamed(*drawing, RevisionBlock::RevisionBlockName), PwDb::OpenForWrite);
    EXPECT_EQ(record.openStatus(), Plotwright::StatusOk);
}

TEST_P(Lifecycle, OfTwoTablesTheFirstInTheBlockCounts) {
    auto made = PwDbAuthoring::createDrawing();
    const PwDbObjectId block = AddRevisionBlock(*made, Design({u"FIRST"}, {{u"1"}}));
    ASSERT_EQ(PwDbAuthoring::addTable(*made, block, Design({u"SECOND"}, {{u"2"}})),
              Plotwright::StatusOk);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "two"));
    BlockMgr manager(*drawing);
    EXPECT_EQ(manager.GetColumnHeaders(), std::vector<wstring>{u"FIRST"});
    ASSERT_EQ(manager.GetData().size(), 1u);
    EXPECT_EQ(manager.GetData()[0].at(u"FIRST"), u"1");
}

TEST_P(Lifecycle, ATableOfADerivedClassCounts) {
    auto made = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addLine(*made, made->modelSpaceId(), {0, 0, 0}, {1, 1, 0}),
              Plotwright::StatusOk);
    AddRevisionBlock(*made, StandardDesign({{u"A", u"2024-01-01"}}), true, true);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "derived"));
    BlockMgr manager(*drawing);
    ASSERT_TRUE(manager.HasBlockDefinition());
    EXPECT_EQ(manager.GetData()[0].at(u"DATE"), u"2024-01-01");
}

TEST_P(Lifecycle, ATableWithoutAHeaderRowThrowsEvenWithDataRows) {
    auto made = PwDbAuthoring::createDrawing();
    PwDbAuthoring::TableDesign design = StandardDesign({{u"A"}, {u"B"}});
    design.rows.erase(design.rows.begin() + 1);
    AddRevisionBlock(*made, design);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "headless"));
    EXPECT_THROW(BlockMgr manager(*drawing), RevisionBlock::RowNotFoundException);
    // Table and record were let go.
    EXPECT_EQ(Readers(RevisionTableId(*drawing)), 0u);
    EXPECT_EQ(Readers(lodeqdbtest::BlockNamed(*drawing, RevisionBlock::RevisionBlockName)), 0u);
}

TEST_P(Lifecycle, TheManagerHoldsTableAndRecordOpenForReadUntilItGoes) {
    auto made = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*made, StandardDesign({{u"A"}}));
    auto drawing = ReadFromDisk(WriteToDisk(*made, "held"));
    const PwDbObjectId table = RevisionTableId(*drawing);
    const PwDbObjectId block = lodeqdbtest::BlockNamed(*drawing, RevisionBlock::RevisionBlockName);
    {
        BlockMgr manager(*drawing);
        EXPECT_EQ(Readers(table), 1u);
        EXPECT_EQ(Readers(block), 1u);
        PwDbObjectPointer<PwDbTable> writer(table, PwDb::OpenForWrite);
        EXPECT_EQ(writer.openStatus(), Plotwright::StatusWasOpenForRead);
    }
    EXPECT_EQ(Readers(table), 0u);
    EXPECT_EQ(Readers(block), 0u);
}

TEST_P(Lifecycle, HasBlockInstanceTellsWhetherAReferencePlacesTheBlock) {
    auto unplaced = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*unplaced, StandardDesign({}), false);
    auto drawing = ReadFromDisk(WriteToDisk(*unplaced, "unplaced"));
    BlockMgr manager(*drawing);
    EXPECT_TRUE(manager.HasBlockDefinition());
    EXPECT_FALSE(manager.HasBlockInstance());

    auto placed = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*placed, StandardDesign({}), true);
    auto other = ReadFromDisk(WriteToDisk(*placed, "placed"));
    BlockMgr placedManager(*other);
    EXPECT_TRUE(placedManager.HasBlockInstance());
    // The list of references can't be had when its array can't grow.
    pwHeapFailAfter(0);
    EXPECT_FALSE(placedManager.HasBlockInstance());
    EXPECT_FALSE(pwHeapFailPending());
    pwHeapFailReset();
    EXPECT_TRUE(placedManager.HasBlockInstance());
}

TEST_P(Lifecycle, ResetClosesAndReopensAndTakesTheNewHeaderHeight) {
    auto made = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*made, StandardDesign({{u"A", u"", u"Old"}}));
    const wstring path = WriteToDisk(*made, "reset");
    auto drawing = ReadFromDisk(path);
    const PwDbObjectId table = RevisionTableId(*drawing);
    {
        BlockMgr manager(*drawing);
        // The header row grows while the manager holds the table: a transaction can reach it.
        PwDbTransactionManager* transactions = drawing->transactionManager();
        PwDbTransaction* transaction = transactions->beginTransaction();
        PwDbObject* fetched = nullptr;
        ASSERT_EQ(transaction->fetchObject(fetched, table, PwDb::OpenForWrite),
                  Plotwright::StatusOk);
        ASSERT_EQ(static_cast<PwDbTable*>(fetched)->setRowHeight(1, 12.5), Plotwright::StatusOk);
        ASSERT_EQ(transactions->finishTransaction(), Plotwright::StatusOk);

        manager.Reset();
        EXPECT_EQ(Readers(table), 1u);
        ASSERT_TRUE(manager.HasBlockDefinition());
        // A row that changes takes the header row's height as the manager last found it.
        EXPECT_TRUE(manager.Update(StandardContext({{u"A", u"", u"New"}})));
    }
    SaveToDisk(*drawing, path);
    auto back = ReadFromDisk(path);
    EXPECT_EQ(RowHeights(*back), (std::vector<double>{8.0, 12.5, 12.5}));
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "", "New", ""}}));
}

TEST_P(Lifecycle, ResetPicksUpABlockThatArrivedByOtherMeans) {
    auto made = PwDbAuthoring::createDrawing();
    auto drawing = ReadFromDisk(WriteToDisk(*made, "arrives"));
    BlockMgr manager(*drawing);
    EXPECT_FALSE(manager.HasBlockDefinition());
    AddRevisionBlock(*drawing, StandardDesign({{u"A"}}));
    EXPECT_FALSE(manager.HasBlockDefinition());
    manager.Reset();
    EXPECT_TRUE(manager.HasBlockDefinition());
    EXPECT_TRUE(manager.HasBlockInstance());
}

TEST_P(Lifecycle, AResetThatThrowsLeavesTheManagerWithoutABlock) {
    auto made = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*made, StandardDesign({{u"A"}}), true, true);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "lost"));
    BlockMgr manager(*drawing);
    ASSERT_TRUE(manager.HasBlockDefinition());
    PwTestSpyTable::knobs().hideHeaderRow = true;
    EXPECT_THROW(manager.Reset(), RevisionBlock::RowNotFoundException);
    EXPECT_FALSE(manager.HasBlockDefinition());
    EXPECT_EQ(Readers(RevisionTableId(*drawing)), 0u);
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Lifecycle, testing::Values(Format::Native, Format::Exchange),
                         FormatName);

}  // namespace
}  // namespace revblocktest
