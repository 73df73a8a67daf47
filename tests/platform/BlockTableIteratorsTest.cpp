// Walking a block table with begin() and end(), every odd rule included.
#include <lodeqdb/platform/BlockTableIterators.h>

#include <gtest/gtest.h>

#include <vector>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>

namespace {

using Plotwright::StatusOk;

class BlockTableWalks : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(PwDbAuthoring::addBlock(*drawing, u"DOOR", &door), StatusOk);
        table.open(drawing->blockTableId(), PwDb::OpenForRead);
        ASSERT_EQ(table.openStatus(), StatusOk);
    }
    static wstring NameOf(const PwDbBlockTableRecord& record) {
        const char16_t* name = nullptr;
        record.getName(name);
        return name;
    }

    std::unique_ptr<PwDbDatabase> drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId door;
    PwDbObjectPointer<PwDbBlockTable> table;
};

TEST_F(BlockTableWalks, ALoopVisitsEveryRecordInTableOrder) {
    pwdb::ConstBlockTableIterator blocks(*table, true, false);
    std::vector<wstring> names;
    for (auto it = blocks.begin(); it != blocks.end(); ++it) {
        ASSERT_EQ(it.errorStatus(), StatusOk);
        names.push_back(NameOf(*it));
        EXPECT_TRUE(it->isReadEnabled());
    }
    EXPECT_EQ(names, (std::vector<wstring>{u"*Model_Space", u"*Paper_Space", u"DOOR"}));
    EXPECT_TRUE(blocks.begin() == blocks.end());
    EXPECT_EQ(&blocks.begin(), &blocks.begin());
    EXPECT_EQ(&blocks.end(), &blocks.end());
    EXPECT_EQ(blocks.end().errorStatus(), Plotwright::StatusIteratorDone);
}

TEST_F(BlockTableWalks, TheRecordAtTheCurrentPositionStaysOpenUntilTheIteratorMoves) {
    pwdb::ConstBlockTableIterator blocks(*table, true, false);
    auto& first = blocks.begin();
    EXPECT_EQ(first->numReaders(), 1u);
    const PwDbBlockTableRecord* model = &*first;
    auto copy = first;
    ++copy;
    // The copy moved the shared toolkit position; the original still shows, and holds, its
    // record.
    EXPECT_EQ(NameOf(*copy), u"*Paper_Space");
    EXPECT_EQ(&*first, model);
    EXPECT_EQ(model->numReaders(), 1u);
    ++first;
    EXPECT_EQ(model->numReaders(), 0u);
    EXPECT_EQ(NameOf(*first), u"DOOR");
}

TEST_F(BlockTableWalks, ARecordThatFailsToOpenIsPassedByTheNextStep) {
    PwDbObjectPointer<PwDbBlockTableRecord> writer(drawing->paperSpaceId(), PwDb::OpenForWrite);
    pwdb::ConstBlockTableIterator blocks(*table, true, false);
    auto it = blocks.begin();
    EXPECT_EQ(NameOf(*it), u"*Model_Space");
    ++it;
    EXPECT_EQ(it.errorStatus(), Plotwright::StatusWasOpenForWrite);
    ++it;
    EXPECT_EQ(it.errorStatus(), StatusOk);
    EXPECT_EQ(NameOf(*it), u"DOOR");
    // The end's walk met the same refusal and went on: it stands at the end.
    ++it;
    EXPECT_TRUE(it == blocks.end());
}

TEST_F(BlockTableWalks, TwoIteratorsThatBothFailedCompareEqualWherever) {
    PwDbObjectPointer<PwDbBlockTableRecord> model(drawing->modelSpaceId(), PwDb::OpenForWrite);
    PwDbObjectPointer<PwDbBlockTableRecord> paper(drawing->paperSpaceId(), PwDb::OpenForWrite);
    pwdb::ConstBlockTableIterator first(*table, true, false);
    pwdb::ConstBlockTableIterator second(*table, true, false);
    auto a = first.begin();
    auto b = second.begin();
    ++b;
    EXPECT_NE(a.errorStatus(), StatusOk);
    EXPECT_NE(b.errorStatus(), StatusOk);
    EXPECT_TRUE(a == b);
    ++b;
    EXPECT_FALSE(a == b);
}

TEST_F(BlockTableWalks, AnEmptyTableOpensNothing) {
    PwDbBlockTable empty;
    pwdb::ConstBlockTableIterator blocks(empty, true, false);
    EXPECT_TRUE(blocks.begin() == blocks.end());
    EXPECT_EQ(blocks.end().errorStatus(), StatusOk);
    EXPECT_EQ(blocks.begin().errorStatus(), Plotwright::StatusIteratorDone);
}

TEST_F(BlockTableWalks, ErasedRecordsAreShownOnlyWhenAskedFor) {
    {
        PwDbObjectPointer<PwDbBlockTableRecord> record(door, PwDb::OpenForWrite);
        ASSERT_EQ(record->erase(), StatusOk);
    }
    int visible = 0;
    pwdb::ConstBlockTableIterator skipping(*table, true, false);
    for (auto it = skipping.begin(); it != skipping.end(); ++it) ++visible;
    EXPECT_EQ(visible, 2);
    int all = 0;
    pwdb::ConstBlockTableIterator including(*table, false, true);
    for (auto it = including.begin(); it != including.end(); ++it) {
        EXPECT_EQ(it.errorStatus(), StatusOk);
        ++all;
    }
    EXPECT_EQ(all, 3);
}

TEST_F(BlockTableWalks, MutableIteratorsOpenForWrite) {
    pwdb::MutableBlockTableIterator blocks(*table, true, false);
    for (auto it = blocks.begin(); it != blocks.end(); ++it) {
        ASSERT_EQ(it.errorStatus(), StatusOk);
        PwDbBlockTableRecord& record = *it;
        EXPECT_TRUE(record.isWriteEnabled());
        if (NameOf(record) == u"DOOR") {
            EXPECT_EQ(record.setName(u"GATE"), StatusOk);
        }
    }
    PwDbObjectPointer<PwDbBlockTableRecord> gate(door, PwDb::OpenForRead);
    EXPECT_EQ(NameOf(*gate), u"GATE");
}

TEST_F(BlockTableWalks, CopiedContainersShareTheirIterators) {
    pwdb::ConstBlockTableIterator blocks(*table, true, false);
    auto& begin = blocks.begin();
    pwdb::ConstBlockTableIterator copy(blocks);
    EXPECT_EQ(&copy.begin(), &begin);
    pwdb::ConstBlockTableIterator moved(std::move(copy));
    EXPECT_EQ(&moved.begin(), &begin);
}

}  // namespace
