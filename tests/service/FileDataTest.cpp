// File records: construction, accessors and the comparison by full name alone.
#include <lodeqdb/service/FileData.h>

#include <gtest/gtest.h>

#include <set>
#include <utility>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace {

using LodeQDBService::FileData;

TEST(FileData, ANewRecordIsEmpty) {
    const FileData record;
    EXPECT_EQ(record.GetFullname(), u"");
    EXPECT_TRUE(record.PwdbObjectId().isNull());
    EXPECT_EQ(record.GetRefId(), 0u);
    EXPECT_EQ(record.GetType(), lode::Unknown);
    EXPECT_EQ(record.GetXrefStatus(), PwDb::XrefNotAnXref);
    const FileData named(u"C:\\a.plw");
    EXPECT_EQ(named.GetFullname(), u"C:\\a.plw");
    EXPECT_EQ(named.GetRefId(), 0u);
}

TEST(FileData, ARecordFromAnObjectCarriesItsHandleAndNothingElse) {
    PwDbDatabase drawing;
    const FileData record(drawing.layerZeroId());
    EXPECT_EQ(record.PwdbObjectId(), drawing.layerZeroId());
    EXPECT_EQ(record.GetRefId(), drawing.layerZeroId().nonForwardedHandle());
    EXPECT_NE(record.GetRefId(), 0u);
    EXPECT_EQ(record.GetFullname(), u"");
    EXPECT_EQ(record.GetType(), lode::Unknown);
    EXPECT_EQ(record.GetXrefStatus(), PwDb::XrefNotAnXref);
}

TEST(FileData, ChangingTheObjectIdKeepsTheRefId) {
    PwDbDatabase drawing;
    FileData record(drawing.layerZeroId());
    const uint64_t refId = record.GetRefId();
    record.SetPwdbObjectId(PwDbObjectId());
    EXPECT_TRUE(record.PwdbObjectId().isNull());
    EXPECT_EQ(record.GetRefId(), refId);
}

TEST(FileData, EveryFieldHasItsSetter) {
    FileData record;
    record.SetFullname(u"/srv/b.dgn");
    record.SetRefId(42);
    record.SetType(lode::Dgn);
    record.SetXrefStatus(PwDb::XrefFileMissing);
    EXPECT_EQ(record.GetFullname(), u"/srv/b.dgn");
    EXPECT_EQ(record.GetRefId(), 42u);
    EXPECT_EQ(record.GetType(), lode::Dgn);
    EXPECT_EQ(record.GetXrefStatus(), PwDb::XrefFileMissing);
}

TEST(FileData, AMoveLeavesTheSourceNameEmpty) {
    FileData source(u"/srv/a.plw");
    source.SetRefId(7);
    FileData moved(std::move(source));
    EXPECT_EQ(moved.GetFullname(), u"/srv/a.plw");
    EXPECT_EQ(moved.GetRefId(), 7u);
    EXPECT_EQ(source.GetFullname(), u"");  // NOLINT(bugprone-use-after-move)
}

TEST(FileData, RecordsOfOneNameAreEqualWhateverElseDiffers) {
    PwDbDatabase drawing;
    FileData a(drawing.layerZeroId());
    a.SetFullname(u"/srv/a.plw");
    a.SetType(lode::Plw);
    a.SetXrefStatus(PwDb::XrefResolved);
    FileData b(u"/srv/a.plw");
    b.SetRefId(99);
    b.SetType(lode::Image);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
}

TEST(FileData, NamesCompareExactlyCodeUnitByCodeUnit) {
    EXPECT_FALSE(FileData(u"/srv/A.plw") == FileData(u"/srv/a.plw"));
    EXPECT_TRUE(FileData(u"/srv/Z.plw") < FileData(u"/srv/a.plw"));
    EXPECT_TRUE(FileData(u"") < FileData(u"a"));
    EXPECT_FALSE(FileData(u"") < FileData(u""));
    EXPECT_TRUE(FileData(u"/srv/a") < FileData(u"/srv/a.plw"));
    EXPECT_FALSE(FileData(u"/srv/a.plw") < FileData(u"/srv/a"));
    // Units above the surrogate range order as unsigned numbers.
    EXPECT_TRUE(FileData(u"\u00e9") < FileData(u"\uff21"));
    std::set<FileData> ordered{FileData(u"b"), FileData(u"a"), FileData(u"b")};
    EXPECT_EQ(ordered.size(), 2u);
}

}  // namespace
