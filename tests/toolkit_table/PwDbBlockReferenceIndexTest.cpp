// A block's references from the drawing's index: order, erased references, references that
// change their block, and drawings read from both file formats.
#include <gtest/gtest.h>

#include <vector>

#include "TableTestSupport.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>

namespace {

using Plotwright::StatusOk;
using pwdbtabletest::Format;
using pwdbtabletest::Same;

std::vector<PwDbObjectId> ReferencesOf(PwDbObjectId block) {
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForRead);
    EXPECT_EQ(record.openStatus(), StatusOk);
    if (record.openStatus() != StatusOk) return {};
    PwArray<PwDbObjectId> ids;
    EXPECT_EQ(record->getBlockReferenceIds(ids, true, false), StatusOk);
    std::vector<PwDbObjectId> list;
    for (size_t i = 0; i < ids.length(); ++i) list.push_back(ids[i]);
    return list;
}

class BlockReferenceIndex : public pwdbtabletest::InBothFormats {};

TEST_P(BlockReferenceIndex, ListsLiveReferencesInTheOrderTheyWereAdded) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId door, window, inner;
    ASSERT_EQ(PwDbAuthoring::addBlock(*drawing, u"Door", &door), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlock(*drawing, u"Window", &window), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlock(*drawing, u"Inner", &inner), StatusOk);
    std::vector<PwDbObjectId> refs(5);
    const PwDbObjectId model = drawing->modelSpaceId();
    ASSERT_EQ(
        PwDbAuthoring::addBlockReference(*drawing, model, door, {0, 0, 0}, {}, 0, {}, &refs[0]),
        StatusOk);
    ASSERT_EQ(
        PwDbAuthoring::addBlockReference(*drawing, model, window, {1, 0, 0}, {}, 0, {}, &refs[1]),
        StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlockReference(*drawing, drawing->paperSpaceId(), door, {2, 0, 0},
                                               {}, 0, {}, &refs[2]),
              StatusOk);
    // A nested placement counts for the block it places, not for the one it sits in.
    ASSERT_EQ(
        PwDbAuthoring::addBlockReference(*drawing, window, inner, {3, 0, 0}, {}, 0, {}, &refs[3]),
        StatusOk);
    ASSERT_EQ(
        PwDbAuthoring::addBlockReference(*drawing, model, door, {4, 0, 0}, {}, 0, {}, &refs[4]),
        StatusOk);
    EXPECT_EQ(ReferencesOf(door), (std::vector<PwDbObjectId>{refs[0], refs[2], refs[4]}));
    EXPECT_EQ(ReferencesOf(window), (std::vector<PwDbObjectId>{refs[1]}));
    EXPECT_EQ(ReferencesOf(inner), (std::vector<PwDbObjectId>{refs[3]}));
    EXPECT_TRUE(ReferencesOf(model).empty());

    {  // The middle one erased, the first one moved to the window.
        PwDbObjectPointer<PwDbBlockReference> erased(refs[2], PwDb::OpenForWrite);
        ASSERT_EQ(erased->erase(), StatusOk);
        PwDbObjectPointer<PwDbBlockReference> moved(refs[0], PwDb::OpenForWrite);
        ASSERT_EQ(moved->setReferencedBlock(window), StatusOk);
    }
    EXPECT_EQ(ReferencesOf(door), (std::vector<PwDbObjectId>{refs[4]}));
    EXPECT_EQ(ReferencesOf(window), (std::vector<PwDbObjectId>{refs[0], refs[1]}))
        << "handle order, not the order of the change";

    const auto read = ReadBack(*drawing, "references");
    EXPECT_EQ(ReferencesOf(Same(*read, door)), (std::vector<PwDbObjectId>{Same(*read, refs[4])}));
    EXPECT_EQ(ReferencesOf(Same(*read, window)),
              (std::vector<PwDbObjectId>{Same(*read, refs[0]), Same(*read, refs[1])}));
    EXPECT_EQ(ReferencesOf(Same(*read, inner)), (std::vector<PwDbObjectId>{Same(*read, refs[3])}));

    {  // Un-erasing brings a reference back in its place.
        PwDbObjectPointer<PwDbBlockReference> back(refs[2], PwDb::OpenForWrite, true);
        ASSERT_EQ(back.openStatus(), StatusOk);
        ASSERT_EQ(back->erase(false), StatusOk);
    }
    EXPECT_EQ(ReferencesOf(door), (std::vector<PwDbObjectId>{refs[2], refs[4]}));
}

// The walk a client makes to tell every placement of a block, up through nested blocks, that
// the block changed: each reference opened for write as an entity and marked modified, then
// the same for the references of the block that owns it.
TEST(BlockReferenceIndexStatus, ReferencesUpThroughNestedBlocksCanBeMarkedChanged) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId inner, outer, innerRef, outerRef;
    ASSERT_EQ(PwDbAuthoring::addBlock(*drawing, u"Inner", &inner), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlock(*drawing, u"Outer", &outer), StatusOk);
    ASSERT_EQ(
        PwDbAuthoring::addBlockReference(*drawing, outer, inner, {0, 0, 0}, {}, 0, {}, &innerRef),
        StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlockReference(*drawing, drawing->modelSpaceId(), outer, {0, 0, 0},
                                               {}, 0, {}, &outerRef),
              StatusOk);
    std::vector<PwDbObjectId> touched;
    PwDbObjectId block = inner;
    while (!block.isNull()) {
        const std::vector<PwDbObjectId> references = ReferencesOf(block);
        block = PwDbObjectId();
        for (const PwDbObjectId id : references) {
            PwDbEntity* entity = nullptr;
            ASSERT_EQ(pwdbOpenObject(entity, id, PwDb::OpenForWrite, false), StatusOk);
            const uint64_t changes = drawing->changeCount();
            entity->assertWriteEnabled(true, true);
            EXPECT_TRUE(entity->isModified());
            EXPECT_GT(drawing->changeCount(), changes);
            touched.push_back(id);
            block = entity->ownerId();
            EXPECT_EQ(entity->close(), StatusOk);
        }
    }
    EXPECT_EQ(touched, (std::vector<PwDbObjectId>{innerRef, outerRef}));
    EXPECT_EQ(drawing->measurement(), PwDb::Metric);
}

TEST(BlockReferenceIndexStatus, ABlockInNoDrawingHasNoReferences) {
    PwDbBlockTableRecord loose;
    PwArray<PwDbObjectId> ids;
    ids.append(PwDbObjectId());
    EXPECT_EQ(loose.getBlockReferenceIds(ids, true, false), Plotwright::StatusNotInDatabase);
    EXPECT_EQ(ids.length(), 0u);
}

INSTANTIATE_TEST_SUITE_P(BothFormats, BlockReferenceIndex,
                         testing::Values(Format::Native, Format::Exchange),
                         pwdbtabletest::FormatName);

}  // namespace
