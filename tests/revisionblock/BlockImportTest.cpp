// Giving a drawing its revision block: the definition imported from a template drawing, and
// references that place it; on drawings read from files of both formats and saved again.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "RevisionTestSupport.h"
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include "support/DrawingReadBack.h"
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace revblocktest {
namespace {

using RevisionBlock::BlockMgr;

class Import : public RevisionFiles {
  protected:
    /// The template drawing the build made.
    std::unique_ptr<PwDbDatabase> Template() {
        auto drawing = std::make_unique<PwDbDatabase>(false, true);
        LodeQDBUtil::ReadFileToDatabase(LodeUtil::Utf16FromUtf8(LODEQDB_REVISION_TEMPLATE),
                                        *drawing, true, false);
        return drawing;
    }
};

// The font of the text style `name` of `drawing`; empty when it has none.
wstring FontOf(const PwDbDatabase& drawing, const wstring& name) {
    PwDbObjectPointer<PwDbTextStyleTable> styles(const_cast<PwDbDatabase*>(&drawing),
                                                 PwDb::OpenForRead);
    PwDbSymbolTableRecordPointer<PwDbTextStyleTableRecord> style(name.c_str(), styles.object(),
                                                                 PwDb::OpenForRead);
    return style ? wstring(style->fontName()) : wstring();
}

TEST_P(Import, IntoADrawingWithoutTheBlockAndThenPlaced) {
    auto made = PwDbAuthoring::createDrawing();
    auto source = Template();
    auto back = ThroughDisk(*made, "import", [&](PwDbDatabase& drawing) {
        BlockMgr manager(drawing);
        ASSERT_FALSE(manager.HasBlockDefinition());
        EXPECT_TRUE(manager.ImportBlockDefinition(*source));
        // The same manager reads the copy: no new manager is needed.
        ASSERT_TRUE(manager.HasBlockDefinition());
        EXPECT_FALSE(manager.HasBlockInstance());
        EXPECT_EQ(manager.GetColumnHeaders(),
                  (std::vector<wstring>{u"REV", u"DATE", u"DESCRIPTION", u"BY"}));
        manager.InsertBlockInstance(300.0, 20.0, 1.0);
        EXPECT_TRUE(manager.HasBlockInstance());
        EXPECT_TRUE(
            manager.Update(StandardContext({{u"A", u"2024-01-05", u"First issue", u"JM"}})));
    });
    BlockMgr manager(*back);
    ASSERT_TRUE(manager.HasBlockInstance());
    ASSERT_EQ(manager.GetData().size(), 1u);
    EXPECT_EQ(manager.GetData()[0].at(u"DESCRIPTION"), u"First issue");
    // The template's styles came along with the table.
    EXPECT_EQ(FontOf(*back, u"RevisionHeading"), u"Sans Bold");
}

TEST_P(Import, StylesTheDrawingHasAlreadyAreKeptAndUsed) {
    auto made = PwDbAuthoring::createDrawing();
    PwDbAuthoring::TextStyleOptions own;
    own.fontName = u"serif";
    ASSERT_EQ(PwDbAuthoring::addTextStyle(*made, u"RevisionHeading", own), Plotwright::StatusOk);
    auto source = Template();
    auto back = ThroughDisk(*made, "styles", [&](PwDbDatabase& drawing) {
        BlockMgr manager(drawing);
        EXPECT_TRUE(manager.ImportBlockDefinition(*source));
    });
    EXPECT_EQ(FontOf(*back, u"RevisionHeading"), u"serif");
    PwDbObjectPointer<PwDbTable> table(RevisionTableId(*back), PwDb::OpenForRead);
    ASSERT_TRUE(table);
    PwDbObjectPointer<PwDbTextStyleTableRecord> style(table->cellTextStyle(1, 0),
                                                      PwDb::OpenForRead);
    ASSERT_TRUE(style);
    EXPECT_EQ(wstring(style->fontName()), u"serif");
}

TEST_P(Import, IntoADrawingThatHasTheBlockIsFalseAndTouchesNeither) {
    auto made = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*made, StandardDesign({{u"A"}}));
    auto drawing = ReadFromDisk(WriteToDisk(*made, "has"));
    auto source = Template();
    const uint64_t drawingChanges = drawing->changeCount();
    const uint64_t sourceChanges = source->changeCount();
    BlockMgr manager(*drawing);
    EXPECT_FALSE(manager.ImportBlockDefinition(*source));
    EXPECT_EQ(drawing->changeCount(), drawingChanges);
    EXPECT_EQ(source->changeCount(), sourceChanges);
    EXPECT_FALSE(AnyObjectModified(*drawing));
    EXPECT_FALSE(AnyObjectModified(*source));
}

TEST_P(Import, FromADrawingWithoutTheBlockThrowsAndLeavesTheTargetWithoutOne) {
    auto made = PwDbAuthoring::createDrawing();
    auto empty = PwDbAuthoring::createDrawing();
    const wstring path = WriteToDisk(*made, "target");
    const std::string before = Read(FileName("target"));
    auto drawing = ReadFromDisk(path);
    const uint64_t changes = drawing->changeCount();
    {
        BlockMgr manager(*drawing);
        try {
            manager.ImportBlockDefinition(*empty);
            FAIL() << "an import from a drawing without the block must throw";
        } catch (const lode::PlotwrightException& error) {
            EXPECT_EQ(error.code(), 301);
            EXPECT_NE(error.status(), Plotwright::StatusOk);
        }
        EXPECT_FALSE(manager.HasBlockDefinition());
    }
    EXPECT_EQ(drawing->changeCount(), changes);
    SaveToDisk(*drawing, path);
    EXPECT_EQ(Read(FileName("target")), before);
}

TEST_P(Import, ABlockWithoutATableIsCopiedAndThenRefused) {
    auto source = PwDbAuthoring::createDrawing();
    PwDbObjectId block;
    ASSERT_EQ(PwDbAuthoring::addBlock(*source, RevisionBlock::RevisionBlockName, &block),
              Plotwright::StatusOk);
    ASSERT_EQ(PwDbAuthoring::addCircle(*source, block, {0, 0, 0}, 5), Plotwright::StatusOk);
    auto made = PwDbAuthoring::createDrawing();
    auto back = ThroughDisk(*made, "tableless", [&](PwDbDatabase& drawing) {
        BlockMgr manager(drawing);
        try {
            manager.ImportBlockDefinition(*source);
            FAIL() << "a copied block without a table must throw";
        } catch (const lode::LodeException& error) {
            EXPECT_EQ(error.code(), 402);
        }
        EXPECT_FALSE(manager.HasBlockDefinition());
    });
    // No rollback: the copy stays in the drawing.
    EXPECT_FALSE(lodeqdbtest::BlockNamed(*back, RevisionBlock::RevisionBlockName).isNull());
}

TEST_P(Import, APlacementScaledByTwoAndAHalf) {
    auto made = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*made, StandardDesign({{u"A"}}), false);
    auto back = ThroughDisk(*made, "scaled", [&](PwDbDatabase& drawing) {
        BlockMgr manager(drawing);
        manager.InsertBlockInstance(10.0, -4.0, 2.5);
    });
    const std::vector<PwDbObjectId> references = RevisionReferences(*back);
    ASSERT_EQ(references.size(), 1u);
    PwDbObjectPointer<PwDbBlockReference> reference(references[0], PwDb::OpenForRead);
    ASSERT_TRUE(reference);
    EXPECT_EQ(reference->scaleFactors(), PwGeScale3d(2.5, 2.5, 2.5));
    EXPECT_EQ(reference->rotation(), 0.0);
    EXPECT_EQ(reference->position(), PwGePoint3d(10.0, -4.0, 0.0));
    EXPECT_EQ(reference->ownerId(), back->modelSpaceId());
}

TEST_P(Import, EveryPlacementAddsAReference) {
    auto made = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*made, StandardDesign({{u"A"}}), false);
    auto back = ThroughDisk(*made, "twice", [&](PwDbDatabase& drawing) {
        BlockMgr manager(drawing);
        manager.InsertBlockInstance(0, 0, 1);
        manager.InsertBlockInstance(50, 0, 1);
    });
    EXPECT_EQ(RevisionReferences(*back).size(), 2u);
}

TEST_P(Import, APlacementGoesIntoTheCurrentLayout) {
    auto made = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*made, StandardDesign({{u"A"}}), false);
    auto back = ThroughDisk(*made, "paper", [&](PwDbDatabase& drawing) {
        ASSERT_EQ(drawing.setCurrentLayoutBlockId(drawing.paperSpaceId()), Plotwright::StatusOk);
        BlockMgr manager(drawing);
        manager.InsertBlockInstance(0, 0, 1);
    });
    const std::vector<PwDbObjectId> references = RevisionReferences(*back);
    ASSERT_EQ(references.size(), 1u);
    PwDbObjectPointer<PwDbBlockReference> reference(references[0], PwDb::OpenForRead);
    EXPECT_EQ(reference->ownerId(), back->paperSpaceId());
}

TEST_P(Import, APlacementTheToolkitRefusesChangesNothing) {
    auto made = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*made, StandardDesign({{u"A"}}), false);
    const wstring path = WriteToDisk(*made, "refused");
    const std::string before = Read(FileName("refused"));
    auto drawing = ReadFromDisk(path);
    {
        BlockMgr manager(*drawing);
        EXPECT_THROW(manager.InsertBlockInstance(0, 0, 0.0), lode::PlotwrightException);
        EXPECT_THROW(manager.InsertBlockInstance(std::nan(""), 0, 1), lode::PlotwrightException);
        EXPECT_FALSE(manager.HasBlockInstance());
    }
    EXPECT_FALSE(AnyObjectModified(*drawing));
    SaveToDisk(*drawing, path);
    EXPECT_EQ(Read(FileName("refused")), before);
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Import, testing::Values(Format::Native, Format::Exchange),
                         FormatName);

}  // namespace
}  // namespace revblocktest
