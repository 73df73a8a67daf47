// Writing the revision table's title and column names: as given in metric drawings, in upper
// case in drawings whose measurement is 0, and the case rules of the user's locale.
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "RevisionTestSupport.h"
#include "SpyTable.h"
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace revblocktest {
namespace {

using RevisionBlock::BlockMgr;
using RevisionBlock::BlockMgrImpl;

class Headers : public RevisionFiles {
  protected:
    std::unique_ptr<PwDbDatabase> Made(const PwDbAuthoring::TableDesign& design,
                                       PwDb::MeasurementValue units = PwDb::Metric,
                                       bool spy = false) {
        auto made = PwDbAuthoring::createDrawing();
        made->setMeasurement(units);
        AddRevisionBlock(*made, design, true, spy);
        return made;
    }
    std::unique_ptr<PwDbDatabase> Applied(PwDbDatabase& made, const std::vector<wstring>& names) {
        return ThroughDisk(made, "headers", [&](PwDbDatabase& drawing) {
            BlockMgr manager(drawing);
            manager.ApplyColumnHeaders(names);
        });
    }
};

// Sets an environment variable for the life of the object.
class ScopedEnvironment {
  public:
    ScopedEnvironment(const char* name, const char* value) : m_name(name) {
        if (const char* old = std::getenv(name)) m_old = old;
        setenv(name, value, 1);
    }
    ~ScopedEnvironment() {
        if (m_old)
            setenv(m_name, m_old->c_str(), 1);
        else
            unsetenv(m_name);
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    const char* m_name;
    std::optional<std::string> m_old;
};

TEST_P(Headers, InAMetricDrawingNamesAreWrittenAsGiven) {
    auto made = Made(Design({u"", u"", u"", u""}, {{u"A"}}));
    auto back = Applied(*made, {u"Rev", u"Date", u"Description {x}", u"By"});
    const Cells texts = PlainTexts(*back);
    EXPECT_EQ(texts[0][0], "REVISIONS");
    EXPECT_EQ(texts[1], (std::vector<std::string>{"Rev", "Date", "Description {x}", "By"}));
    EXPECT_EQ(StoredTexts(*back)[1][2], "Description \\{x\\}");
    BlockMgr manager(*back);
    EXPECT_EQ(manager.GetColumnHeaders(),
              (std::vector<wstring>{u"Rev", u"Date", u"Description {x}", u"By"}));
}

TEST_P(Headers, WithMeasurementZeroRevIsStoredREVAndStillResolvesAsRev) {
    auto made = Made(Design({u"", u"", u"", u""}, {{u"A", u"", u"old"}}), PwDb::Imperial);
    auto back = Applied(*made, {u"Rev", u"Date", u"Description", u"By"});
    EXPECT_EQ(PlainTexts(*back)[0][0], "REVISIONS");
    EXPECT_EQ(PlainTexts(*back)[1], (std::vector<std::string>{"REV", "DATE", "DESCRIPTION", "BY"}));
    RevisionBlock::UpdateContext context;
    context.columns = {u"Rev", u"Description"};
    context.keyColumns = {u"Rev"};
    context.rows = {{{u"Rev", u"A"}, {u"Description", u"new"}}};
    bool changed = false;
    auto updated = ThroughDisk(*back, "resolved", [&](PwDbDatabase& drawing) {
        BlockMgr manager(drawing);
        changed = manager.Update(context);
    });
    EXPECT_TRUE(changed);
    EXPECT_EQ(DataTexts(*updated), (Cells{{"A", "", "new", ""}}));
    // Read back, the keys are the headers as they stand.
    BlockMgr manager(*updated);
    EXPECT_EQ(manager.GetData()[0].at(u"DESCRIPTION"), u"new");
}

TEST_P(Headers, MoreNamesThanColumnsWriteEveryColumnAndTryOneMore) {
    auto made = Made(Design({u"a", u"b", u"c"}, {{u"A"}}), PwDb::Metric, true);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "many"));
    {
        BlockMgr manager(*drawing);
        PwTestSpyTable::knobs().textWrites.clear();
        manager.ApplyColumnHeaders({u"N1", u"N2", u"N3", u"N4", u"N5", u"N6"});
    }
    using Write = std::pair<std::pair<unsigned, unsigned>, Plotwright::ErrorStatus>;
    EXPECT_EQ(PwTestSpyTable::knobs().textWrites,
              (std::vector<Write>{{{0, 0}, Plotwright::StatusOk},
                                  {{1, 0}, Plotwright::StatusOk},
                                  {{1, 1}, Plotwright::StatusOk},
                                  {{1, 2}, Plotwright::StatusOk},
                                  {{1, 3}, Plotwright::StatusInvalidIndex}}));
    EXPECT_EQ(PlainTexts(*drawing)[1], (std::vector<std::string>{"N1", "N2", "N3"}));
}

TEST_P(Headers, FewerNamesThanColumnsLeaveTheRestAlone) {
    auto made = Made(StandardDesign({{u"A"}}));
    auto back = Applied(*made, {u"Rev"});
    EXPECT_EQ(PlainTexts(*back)[1], (std::vector<std::string>{"Rev", "DATE", "DESCRIPTION", "BY"}));
}

TEST_P(Headers, ALockedHeaderCellKeepsItsTextWithoutAFailure) {
    PwDbAuthoring::TableDesign design = StandardDesign({{u"A"}});
    design.rows[1].cells[1].state = PwDb::CellStateContentLocked;
    auto made = Made(design);
    auto back = Applied(*made, {u"Rev", u"Date", u"Text", u"By"});
    EXPECT_EQ(PlainTexts(*back)[1], (std::vector<std::string>{"Rev", "DATE", "Text", "By"}));
    EXPECT_EQ(CellState(*back, 1, 1), PwDb::CellStateContentLocked);
}

TEST_P(Headers, ATableWithoutTitleOrHeaderRowIsFine) {
    PwDbAuthoring::TableDesign untitled = StandardDesign({{u"A"}});
    untitled.rows.erase(untitled.rows.begin());
    auto made = Made(untitled);
    auto back = Applied(*made, {u"Rev"});
    EXPECT_EQ(PlainTexts(*back)[0][0], "Rev");

    auto headless = Made(StandardDesign({{u"A"}}), PwDb::Metric, true);
    auto drawing = ReadFromDisk(WriteToDisk(*headless, "headless"));
    {
        BlockMgr manager(*drawing);
        PwTestSpyTable::knobs().hideHeaderRow = true;
        PwTestSpyTable::knobs().textWrites.clear();
        manager.ApplyColumnHeaders({u"Rev"});
    }
    // Only the title was written.
    ASSERT_EQ(PwTestSpyTable::knobs().textWrites.size(), 1u);
    EXPECT_EQ(PwTestSpyTable::knobs().textWrites[0].first, (std::pair<unsigned, unsigned>{0, 0}));
}

TEST_P(Headers, ATableThatCantBeWrittenIsAToolkitFailure) {
    auto made = Made(StandardDesign({{u"A"}}));
    auto drawing = ReadFromDisk(WriteToDisk(*made, "held"));
    BlockMgr manager(*drawing);
    // Another reader keeps the manager from upgrading its open.
    PwDbObjectPointer<PwDbTable> reader(RevisionTableId(*drawing), PwDb::OpenForRead);
    ASSERT_TRUE(reader);
    try {
        manager.ApplyColumnHeaders({u"Rev"});
        FAIL() << "a table that can't be written must throw";
    } catch (const lode::PlotwrightException& error) {
        EXPECT_EQ(error.status(), Plotwright::StatusWasOpenForRead);
    }
    EXPECT_THROW(manager.Update(StandardContext({{u"B"}})), lode::PlotwrightException);
    EXPECT_FALSE(AnyObjectModified(*drawing));
}

TEST(UpperCase, OneUnitForOneInTheUsersLocale) {
    const ScopedEnvironment utf8("LC_ALL", "C.UTF-8");
    EXPECT_EQ(BlockMgrImpl::ToUpperUserLocale(u"Rev b"), u"REV B");
    EXPECT_EQ(BlockMgrImpl::ToUpperUserLocale(u"\u00e4nderung"), u"\u00c4NDERUNG");
    // No single unit is the upper case of sharp s: it stays, and the length with it.
    EXPECT_EQ(BlockMgrImpl::ToUpperUserLocale(u"stra\u00dfe"), u"STRA\u00dfE");
    // A character beyond the 16-bit range stays as its two units.
    EXPECT_EQ(BlockMgrImpl::ToUpperUserLocale(u"a\U0001D49Cb"), u"A\U0001D49CB");
    EXPECT_EQ(BlockMgrImpl::ToUpperUserLocale(u""), u"");
}

TEST(UpperCase, AnEnvironmentNamingAMissingLocaleGetsTheClassicOne) {
    const ScopedEnvironment missing("LC_ALL", "xx_NOWHERE.UTF-8");
    EXPECT_EQ(BlockMgrImpl::ToUpperUserLocale(u"rev"), u"REV");
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Headers, testing::Values(Format::Native, Format::Exchange),
                         FormatName);

}  // namespace
}  // namespace revblocktest
