// The direct children of drawings on disk: references, images and underlays, in that order.
#include <lodeqdb/service/ChildrenQuery.h>

#include <gtest/gtest.h>

#include <lodeqdb/platform/LodeExceptions.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace {

using LodeQDBService::FileData;
using LodeQDBService::Request::FoundAtPathHelper;
using LodeQDBService::Request::PlotwrightChildren;
using Plotwright::StatusOk;

class Children : public lodeqdbtest::TempFolderTest {
  protected:
    Children() : TempFolderTest("lodeqdb-children") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        ASSERT_EQ(system(("mkdir -p '" + folder + "/sub'").c_str()), 0);
        auto empty = PwDbAuthoring::createDrawing();
        ASSERT_EQ(empty->saveAs(Path("sub/b.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
        ASSERT_EQ(empty->saveAs(Path("c.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
        Write("plan.pdf", "%PDF-1.4\n");
    }

    // The host drawing a.plw: two references, images (one unplaced) and one underlay of each
    // kind, given in an order that the result must not follow.
    void WriteHost() {
        auto host = PwDbAuthoring::createDrawing();
        const PwDbObjectId space = host->modelSpaceId();
        PwDbObjectId pdf, dgn, plf, photo, again, unused;
        ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*host, PwDbPdfDefinition::desc(), u"PDF",
                                                       u"plan.pdf", u"", &pdf),
                  StatusOk);
        ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*host, PwDbDgnDefinition::desc(), u"DGN",
                                                       u"https://example.com/site.dgn", u"", &dgn),
                  StatusOk);
        ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*host, PwDbPlfDefinition::desc(), u"PLF",
                                                       u"sheets\\a.plf", u"", &plf),
                  StatusOk);
        ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*host, u"PHOTO", u"img/photo.png", &photo),
                  StatusOk);
        ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*host, u"AGAIN", u"img/photo.png", &again),
                  StatusOk);
        ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*host, u"UNUSED", u"img/unused.png", &unused),
                  StatusOk);
        ASSERT_EQ(PwDbAuthoring::addRasterImage(*host, space, photo, {}, 1, 1), StatusOk);
        ASSERT_EQ(PwDbAuthoring::addRasterImage(*host, space, again, {}, 1, 1), StatusOk);
        ASSERT_EQ(PwDbAuthoring::addXref(*host, u"B", u"sub\\b.plw"), StatusOk);
        ASSERT_EQ(PwDbAuthoring::addXref(*host, u"GONE", u"gone/x.plw"), StatusOk);
        ASSERT_EQ(host->saveAs(Path("a.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }

    static std::vector<std::pair<lode::FileType, wstring>> Summary(
        const std::vector<FileData>& children) {
        std::vector<std::pair<lode::FileType, wstring>> summary;
        for (const FileData& child : children)
            summary.emplace_back(child.GetType(), child.GetFullname());
        return summary;
    }

    std::vector<std::pair<lode::FileType, wstring>> Expected() const {
        return {{lode::Plw, Path("sub/b.plw")},
                {lode::Plw, Path("") + u"gone/x.plw"},
                {lode::Image, Path("") + u"img/photo.png"},
                {lode::Image, Path("") + u"img/photo.png"},
                {lode::PlxOrPlf, Path("") + u"sheets\\a.plf"},
                {lode::Dgn, u"https://example.com/site.dgn"},
                {lode::Pdf, Path("plan.pdf")}};
    }
};

TEST_F(Children, ReferencesImagesAndUnderlaysComeInThatOrderInEveryForm) {
    WriteHost();
    EXPECT_EQ(Summary(PlotwrightChildren(Path("a.plw"), nullptr)), Expected());
    PwDbDatabase host(false, true);
    ASSERT_EQ(host.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    pwdbResolveCurrentXRefs(&host, false, true);
    EXPECT_EQ(Summary(PlotwrightChildren(host, nullptr)), Expected());
    EXPECT_EQ(Summary(PlotwrightChildren(host, Path("a.plw"), nullptr)), Expected());
}

TEST_F(Children, RecordsCarryTheirObjectStatusAndHandle) {
    WriteHost();
    // A drawing that outlives the query: the records' ids name its objects.
    PwDbDatabase host(false, true);
    ASSERT_EQ(host.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    pwdbResolveCurrentXRefs(&host, false, true);
    const auto children = PlotwrightChildren(host, nullptr);
    ASSERT_EQ(children.size(), 7u);
    EXPECT_EQ(children[0].GetXrefStatus(), PwDb::XrefResolved);
    EXPECT_EQ(children[1].GetXrefStatus(), PwDb::XrefFileMissing);
    EXPECT_EQ(children[2].GetXrefStatus(), PwDb::XrefNotAnXref);
    for (const FileData& child : children) {
        EXPECT_FALSE(child.PwdbObjectId().isNull());
        EXPECT_EQ(child.GetRefId(), child.PwdbObjectId().nonForwardedHandle());
    }
    // Two images of one file are two records, equal as records.
    EXPECT_TRUE(children[2] == children[3]);
    EXPECT_NE(children[2].PwdbObjectId(), children[3].PwdbObjectId());
}

TEST_F(Children, ALoadedReferenceIsAnsweredFromMemory) {
    auto b = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addXref(*b, u"C", u"..\\c.plw"), StatusOk);
    ASSERT_EQ(b->saveAs(Path("sub/b.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    WriteHost();
    PwDbDatabase host(false, true);
    ASSERT_EQ(host.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    pwdbResolveCurrentXRefs(&host, false, true);
    ASSERT_EQ(std::remove((folder + "/sub/b.plw").c_str()), 0);
    const auto byPath = PlotwrightChildren(host, Path("sub/b.plw"), nullptr);
    ASSERT_EQ(byPath.size(), 1u);
    EXPECT_EQ(byPath[0].GetFullname(), Path("c.plw"));
    PwDbObjectId block;
    {
        PwDbSymbolTablePointer<PwDbBlockTable> table(&host, PwDb::OpenForRead);
        table->getIdAt(u"B", block);
    }
    EXPECT_EQ(Summary(PlotwrightChildren(host, block, nullptr)), Summary(byPath));
    // A file no drawing loaded is read, and it is gone.
    EXPECT_THROW(PlotwrightChildren(host, Path("sub/other.plw"), nullptr), lode::NotFound);
}

TEST_F(Children, ADrawingWithNothingHasNoChildren) {
    EXPECT_TRUE(PlotwrightChildren(Path("c.plw"), nullptr).empty());
    PwDbDatabase nothing;
    EXPECT_TRUE(PlotwrightChildren(nothing, nullptr).empty());
    EXPECT_THROW(PlotwrightChildren(Path("missing.plw"), nullptr), lode::NotFound);
    Write("bad.txt", "");
    EXPECT_THROW(PlotwrightChildren(Path("bad.txt"), nullptr), lode::ReadError);
}

TEST_F(Children, WithoutReferencesImagesAndUnderlaysAreStillListed) {
    auto host = PwDbAuthoring::createDrawing();
    PwDbObjectId photo;
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*host, u"P", u"photo.png", &photo), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addRasterImage(*host, host->modelSpaceId(), photo, {}, 1, 1),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*host, PwDbPdfDefinition::desc(), u"PDF",
                                                   u"plan.pdf", u""),
              StatusOk);
    // Not saved: no file name, so relative names stay as they are.
    const auto children = PlotwrightChildren(*host, nullptr);
    EXPECT_EQ(Summary(children), (std::vector<std::pair<lode::FileType, wstring>>{
                                     {lode::Image, u"photo.png"}, {lode::Pdf, u"plan.pdf"}}));
}

// A helper that answers from a table, for chosen objects.
class KnowsBetter : public FoundAtPathHelper {
  public:
    bool GetFullPath(const PwDbObjectId& id, wstring& path) override {
        ++asked;
        if (id != target) return false;
        path = answer;
        return reply;
    }
    PwDbObjectId target;
    wstring answer;
    bool reply = true;
    int asked = 0;
};

TEST_F(Children, AHelperCorrectsNamesOnlyWithTrueAndAText) {
    WriteHost();
    PwDbDatabase host(false, true);
    ASSERT_EQ(host.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    pwdbResolveCurrentXRefs(&host, false, true);
    KnowsBetter helper;
    helper.target = PlotwrightChildren(host, nullptr)[0].PwdbObjectId();
    helper.answer = u"/mirror/b.plw";
    EXPECT_EQ(PlotwrightChildren(host, &helper)[0].GetFullname(), u"/mirror/b.plw");
    EXPECT_EQ(helper.asked, 7);
    helper.answer = u"mirror\\b.plw";
    EXPECT_EQ(PlotwrightChildren(host, &helper)[0].GetFullname(), Path("") + u"mirror\\b.plw");
    helper.answer = u"";
    EXPECT_EQ(PlotwrightChildren(host, &helper)[0].GetFullname(), Path("sub/b.plw"));
    helper.answer = u"/ignored.plw";
    helper.reply = false;
    EXPECT_EQ(PlotwrightChildren(host, &helper)[0].GetFullname(), Path("sub/b.plw"));
    FoundAtPathHelper base;
    EXPECT_EQ(Summary(PlotwrightChildren(Path("a.plw"), &base)), Expected());
}

TEST_F(Children, AMissingUnderlayDictionaryDoesntEndTheStage) {
    auto host = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*host, PwDbPdfDefinition::desc(), u"PDF",
                                                   u"plan.pdf", u""),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*host, PwDbPlfDefinition::desc(), u"PLF",
                                                   u"a.plf", u""),
              StatusOk);
    ASSERT_EQ(host->saveAs(Path("u.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    const auto children = PlotwrightChildren(*host, nullptr);
    EXPECT_EQ(Summary(children),
              (std::vector<std::pair<lode::FileType, wstring>>{{lode::PlxOrPlf, Path("a.plf")},
                                                               {lode::Pdf, Path("plan.pdf")}}));
}

TEST_F(Children, ADrawingThatRefersToItselfListsItself) {
    auto self = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addXref(*self, u"SELF", u"self.plw"), StatusOk);
    ASSERT_EQ(self->saveAs(Path("self.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    const auto children = PlotwrightChildren(Path("self.plw"), nullptr);
    ASSERT_EQ(children.size(), 1u);
    EXPECT_EQ(children[0].GetFullname(), Path("self.plw"));
    EXPECT_EQ(children[0].GetXrefStatus(), PwDb::XrefFilePresentUnresolved);
}

}  // namespace
