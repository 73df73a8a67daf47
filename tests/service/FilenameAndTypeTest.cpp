// The name, type and status of each kind of dependency object of a drawing.
#include <gtest/gtest.h>

#include <lodeqdb/service/FileClassification.h>
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

using LodeQDBService::Request::FilenameAndType;
using Plotwright::StatusOk;

class FilenameAndTypes : public lodeqdbtest::TempFolderTest {
  protected:
    FilenameAndTypes() : TempFolderTest("lodeqdb-filename-type") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        auto referenced = PwDbAuthoring::createDrawing();
        ASSERT_EQ(referenced->saveAs(Path("ref.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
        Write("plan.pdf", "%PDF-1.4\n");
        Write("elsewhere/gone.plw", "");
    }

    struct Answer {
        wstring name = u"(before)";
        lode::FileType type = static_cast<lode::FileType>(99);
        PwDb::XrefStatus status = static_cast<PwDb::XrefStatus>(99);
    };
    Answer Ask(const PwDbDatabase& database, const PwDbObjectId& id) {
        Answer answer;
        FilenameAndType(database, Path("host.plw"), id, answer.name, answer.type, answer.status);
        return answer;
    }
};

TEST_F(FilenameAndTypes, AResolvedReferenceGivesWhereItWasLoadedFrom) {
    auto host = PwDbAuthoring::createDrawing();
    PwDbObjectId ref, gone;
    ASSERT_EQ(PwDbAuthoring::addXref(*host, u"REF", u"ref.plw", {}, &ref), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addXref(*host, u"GONE", u"sub\\gone.plw", {}, &gone), StatusOk);
    ASSERT_EQ(host->saveAs(Path("host.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    pwdbResolveCurrentXRefs(host.get(), false, true);
    const Answer resolved = Ask(*host, ref);
    EXPECT_EQ(resolved.type, lode::Plw);
    EXPECT_EQ(resolved.name, Path("ref.plw"));
    EXPECT_EQ(resolved.status, PwDb::XrefResolved);
    const Answer missing = Ask(*host, gone);
    EXPECT_EQ(missing.type, lode::Plw);
    EXPECT_EQ(missing.name, Path("") + u"sub\\gone.plw");
    EXPECT_EQ(missing.status, PwDb::XrefFileMissing);
}

TEST_F(FilenameAndTypes, ImagesAndUnderlaysGiveTheirKindAndName) {
    auto host = PwDbAuthoring::createDrawing();
    ASSERT_EQ(host->saveAs(Path("host.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    PwDbObjectId image, pdf, dgn, plf;
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*host, u"IMG", u"img\\photo.png", &image), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*host, PwDbPdfDefinition::desc(), u"PDF",
                                                   u"plan.pdf", u"", &pdf),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*host, PwDbDgnDefinition::desc(), u"DGN",
                                                   u"site.dgn", u"", &dgn),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*host, PwDbPlfDefinition::desc(), u"PLF",
                                                   u"sheet.plf", u"", &plf),
              StatusOk);
    const Answer forImage = Ask(*host, image);
    EXPECT_EQ(forImage.type, lode::Image);
    EXPECT_EQ(forImage.name, u"img\\photo.png");
    EXPECT_EQ(forImage.status, 99);
    const Answer forPdf = Ask(*host, pdf);
    EXPECT_EQ(forPdf.type, lode::Pdf);
    EXPECT_EQ(forPdf.name, Path("plan.pdf"));
    EXPECT_EQ(forPdf.status, 99);
    const Answer forDgn = Ask(*host, dgn);
    EXPECT_EQ(forDgn.type, lode::Dgn);
    EXPECT_EQ(forDgn.name, u"site.dgn");
    const Answer forPlf = Ask(*host, plf);
    EXPECT_EQ(forPlf.type, lode::PlxOrPlf);
    EXPECT_EQ(forPlf.name, u"sheet.plf");
}

TEST_F(FilenameAndTypes, OtherObjectsAndIdsThatDontOpenLeaveEverything) {
    auto host = PwDbAuthoring::createDrawing();
    for (const PwDbObjectId& id : {host->layerZeroId(), PwDbObjectId()}) {
        const Answer answer = Ask(*host, id);
        EXPECT_EQ(answer.name, u"(before)");
        EXPECT_EQ(answer.type, 99);
        EXPECT_EQ(answer.status, 99);
    }
    // A block open for write elsewhere can't be opened for read.
    PwDbObjectPointer<PwDbBlockTableRecord> writer(host->modelSpaceId(), PwDb::OpenForWrite);
    EXPECT_EQ(Ask(*host, host->modelSpaceId()).type, 99);
}

TEST_F(FilenameAndTypes, AnOrdinaryBlockIsAPlwWithoutAReference) {
    auto host = PwDbAuthoring::createDrawing();
    const Answer answer = Ask(*host, host->modelSpaceId());
    EXPECT_EQ(answer.type, lode::Plw);
    EXPECT_EQ(answer.status, PwDb::XrefNotAnXref);
    EXPECT_EQ(answer.name, Path("").substr(0, Path("").size() - 1));
}

}  // namespace
