// An update of a table of 500 entries that reorders, inserts, deletes and rewrites rows at
// once, checked cell by cell against the wanted rows, through files of both formats.
#include <gtest/gtest.h>

#include "RevisionTestSupport.h"
#include <lodeqdb/revisionblock/BlockMgr.h>
#include "revisionblock/ReorderScenario.h"

namespace revblocktest {
namespace {

using RevisionBlock::BlockMgr;

class LargeUpdate : public RevisionFiles {};

TEST_P(LargeUpdate, FiveHundredRowsReorderedInsertedAndDeletedAtOnce) {
    auto made = revblockscenario::TableOf500();
    const RevisionBlock::UpdateContext wanted = revblockscenario::Reordered();
    ASSERT_GT(wanted.rows.size(), 450u);
    bool changed = false;
    auto back = ThroughDisk(*made, "large", [&](PwDbDatabase& drawing) {
        BlockMgr manager(drawing);
        changed = manager.Update(wanted);
    });
    EXPECT_TRUE(changed);
    const Cells data = DataTexts(*back);
    ASSERT_EQ(data.size(), wanted.rows.size());
    for (size_t row = 0; row < data.size(); ++row) {
        ASSERT_EQ(data[row].size(), 4u);
        for (size_t column = 0; column < 4; ++column) {
            EXPECT_EQ(data[row][column], Utf8(wanted.rows[row].at(wanted.columns[column])))
                << "row " << row << ", column " << column;
        }
    }
    // Title and header stay on top, every other row is an entry.
    const std::vector<unsigned> kinds = RowKinds(*back);
    ASSERT_EQ(kinds.size(), wanted.rows.size() + 2);
    EXPECT_EQ(kinds[0], static_cast<unsigned>(PwDb::RowKindTitle));
    EXPECT_EQ(kinds[1], static_cast<unsigned>(PwDb::RowKindHeader));
    for (size_t row = 2; row < kinds.size(); ++row) EXPECT_EQ(kinds[row], 1u) << row;
    // What the library reads back is what was wanted, and asking again changes nothing.
    BlockMgr manager(*back);
    EXPECT_EQ(manager.GetData(), wanted.rows);
    EXPECT_FALSE(manager.Update(wanted));
}

INSTANTIATE_TEST_SUITE_P(BothFormats, LargeUpdate,
                         testing::Values(Format::Native, Format::Exchange), FormatName);

}  // namespace
}  // namespace revblocktest
