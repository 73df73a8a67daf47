// Raster image and underlay definitions as the library reads and reloads them.
#include <gtest/gtest.h>

#include <lodeqdb/references/RasterImageAccess.h>
#include <lodeqdb/references/UnderlayAccess.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include "toolkit/pal/PwHeapFaults.h"
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayReference.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace {

using Plotwright::StatusOk;

const std::string kPng("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\0\x02\0\0\0\x02\x08\0\0\0\0", 29);
const std::string kPdf = "%PDF-1.4\n%%EOF\n";

class DependentsAccess : public lodeqdbtest::TempFolderTest {
  protected:
    DependentsAccess() : TempFolderTest("lodeqdb-dependents") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        Write("photo.png", kPng);
        Write("plan.pdf", kPdf);
        drawing = PwDbAuthoring::createDrawing();
        ASSERT_EQ(drawing->saveAs(Path("host.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }
    // Saves the drawing and reads it back, so that nothing in it counts as changed.
    std::unique_ptr<PwDbDatabase> SavedAndRead() {
        EXPECT_EQ(drawing->saveAs(Path("host.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
        auto read = std::make_unique<PwDbDatabase>(false, true);
        EXPECT_EQ(read->readPlwFile(Path("host.plw").c_str(), PwDbDatabase::OpenModeAlternate),
                  StatusOk);
        return read;
    }

    std::unique_ptr<PwDbDatabase> drawing;
};

TEST_F(DependentsAccess, ImageNamesPreferTheActiveName) {
    PwDbObjectId id;
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*drawing, u"P", u"photo.png", &id), StatusOk);
    LodeQDBUtil::ObjectPointer<PwDbRasterImageDef> image(id, PwDb::OpenForWrite, false);
    EXPECT_EQ(LodeQDBUtil::RasterImageDef::FileName(image.object()), u"photo.png");
    EXPECT_EQ(LodeQDBUtil::RasterImageDef::ActiveFileName(image), u"");
    EXPECT_EQ(LodeQDBUtil::RasterImageDef::ActiveFileName(nullptr), u"");
    ASSERT_EQ(LodeQDBUtil::RasterImageDef::SetActiveFileName(image, u"/elsewhere/photo.png"),
              StatusOk);
    EXPECT_EQ(LodeQDBUtil::RasterImageDef::FileName(image.object()), u"/elsewhere/photo.png");
    ASSERT_EQ(LodeQDBUtil::RasterImageDef::SetSourceFileName(image, u"other.png"), StatusOk);
    EXPECT_EQ(LodeQDBUtil::RasterImageDef::SourceFileName(image), u"other.png");
    EXPECT_EQ(LodeQDBUtil::RasterImageDef::SetActiveFileName(*image.object(), u""), StatusOk);
}

TEST_F(DependentsAccess, DefinitionsOfOneFileAreFoundInEveryDrawingOfTheTree) {
    auto referenced = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*referenced, u"P", u"photo.png"), StatusOk);
    ASSERT_EQ(referenced->saveAs(Path("ref.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
              StatusOk);
    PwDbObjectId own;
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*drawing, u"OTHER", u"Photo.png"), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*drawing, u"MINE", u"photo.png", &own), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addXref(*drawing, u"REF", u"ref.plw"), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addXref(*drawing, u"REF2", u"ref.plw"), StatusOk);
    pwdbResolveCurrentXRefs(drawing.get(), false, true);
    const auto ids = LodeQDBUtil::RasterImageDef::ObjectId(u"photo.png", drawing.get());
    ASSERT_EQ(ids.size(), 2u);
    EXPECT_EQ(ids[0], own);
    EXPECT_NE(ids[1].database(), drawing.get());
    EXPECT_TRUE(LodeQDBUtil::RasterImageDef::ObjectId(u"PHOTO.PNG", drawing.get()).empty());
}

TEST_F(DependentsAccess, ADrawingWithoutImagesHasNoDictionaryAndNoDefinitions) {
    EXPECT_EQ(LodeQDBUtil::ImageDictionary::Get(*drawing), nullptr);
    EXPECT_TRUE(LodeQDBUtil::RasterImageDef::ObjectId(u"photo.png", drawing.get()).empty());
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*drawing, u"P", u"photo.png"), StatusOk);
    PwDbDictionary* dictionary = LodeQDBUtil::ImageDictionary::Get(*drawing);
    ASSERT_NE(dictionary, nullptr);
    EXPECT_TRUE(dictionary->isReadEnabled());
    EXPECT_EQ(dictionary->numEntries(), 1u);
    dictionary->close();
}

TEST_F(DependentsAccess, ImagesReloadAndTellTheirState) {
    PwDbObjectId id;
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*drawing, u"P", u"photo.png", &id), StatusOk);
    EXPECT_FALSE(LodeQDBUtil::RasterImage::IsLoaded(id));
    EXPECT_FALSE(LodeQDBUtil::RasterImage::IsLoaded(PwDbObjectId()));
    EXPECT_EQ(LodeQDBUtil::RasterImage::Reload(id), StatusOk);
    EXPECT_TRUE(LodeQDBUtil::RasterImage::IsLoaded(id));
    EXPECT_EQ(LodeQDBUtil::RasterImage::Reload(id), StatusOk);
    EXPECT_TRUE(LodeQDBUtil::RasterImage::IsLoaded(id));
    EXPECT_EQ(LodeQDBUtil::RasterImage::Reload(PwDbObjectId()), Plotwright::StatusNullObjectId);
}

TEST_F(DependentsAccess, UnderlayNamesFallBackOnDiskThenOnTheSourceName) {
    PwDbObjectId plan, gone;
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbPdfDefinition::desc(), u"PLAN",
                                                   u"plan.pdf", u"", &plan),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbPdfDefinition::desc(), u"GONE",
                                                   u"gone.pdf", u"", &gone),
              StatusOk);
    PwDbObjectPointer<PwDbUnderlayDefinition> found(plan, PwDb::OpenForRead);
    EXPECT_EQ(LodeQDBUtil::UnderlayDef::FileName(found.object()), Path("plan.pdf"));
    PwDbObjectPointer<PwDbUnderlayDefinition> missing(gone, PwDb::OpenForRead);
    EXPECT_EQ(LodeQDBUtil::UnderlayDef::FileName(missing.object()), u"gone.pdf");
    EXPECT_EQ(LodeQDBUtil::UnderlayDef::FileName(nullptr), u"");
}

TEST_F(DependentsAccess, AFailureOtherThanNotFoundGivesTheSourceNameWithoutLookingOnDisk) {
    PwDbObjectId plan;
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbPdfDefinition::desc(), u"PLAN",
                                                   u"plan.pdf", u"", &plan),
              StatusOk);
    PwDbObjectPointer<PwDbUnderlayDefinition> definition(plan, PwDb::OpenForRead);
    // The full path is long enough to need the heap, which fails once.
    pwHeapFailAfter(0);
    PwString name;
    const Plotwright::ErrorStatus status =
        LodeQDBUtil::ResolveUnderlayFileName(definition.object(), name);
    pwHeapFailReset();
    EXPECT_EQ(status, Plotwright::StatusOutOfMemory);
    pwHeapFailAfter(0);
    const wstring fileName = LodeQDBUtil::UnderlayDef::FileName(definition.object());
    pwHeapFailReset();
    EXPECT_EQ(fileName, u"plan.pdf");
}

TEST_F(DependentsAccess, ReloadingAnUnderlayMarksItsPlacementsOnly) {
    PwDbObjectId plan, other, shown, elsewhere, line;
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbPdfDefinition::desc(), u"PLAN",
                                                   u"plan.pdf", u"", &plan),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbPdfDefinition::desc(), u"OTHER",
                                                   u"plan.pdf", u"", &other),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayReference(*drawing, drawing->modelSpaceId(), plan, {}, {},
                                                  {}, &shown),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayReference(*drawing, drawing->modelSpaceId(), other, {}, {},
                                                  {}, &elsewhere),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {}, {1, 1, 0}, {}, &line),
              StatusOk);
    {
        // A line, and a placement of the other definition, among this one's reactors.
        PwDbObjectPointer<PwDbUnderlayDefinition> definition(plan, PwDb::OpenForWrite);
        ASSERT_EQ(definition->addPersistentReactor(line), StatusOk);
        ASSERT_EQ(definition->addPersistentReactor(elsewhere), StatusOk);
    }
    auto read = SavedAndRead();
    auto same = [&read](PwDbObjectId id) { return read->getPwDbObjectId(id.handle()); };
    {
        PwDbObjectPointer<PwDbUnderlayDefinition> definition(same(plan), PwDb::OpenForWrite);
        PwArray<PwDbObjectId> placements(0, 8);
        ASSERT_EQ(LodeQDBUtil::CollectUnderlayReferences(definition.object(), placements),
                  StatusOk);
        ASSERT_EQ(placements.length(), 1u);
        EXPECT_EQ(placements[0], same(shown));
    }
    EXPECT_FALSE(LodeQDBUtil::UnderlayRef::IsLoaded(same(plan)));
    ASSERT_EQ(LodeQDBUtil::UnderlayRef::Reload(same(plan)), StatusOk);
    EXPECT_TRUE(LodeQDBUtil::UnderlayRef::IsLoaded(same(plan)));
    auto modified = [](PwDbObjectId id) {
        PwDbObjectPointer<PwDbObject> object(id, PwDb::OpenForRead);
        return object->isModified();
    };
    EXPECT_TRUE(modified(same(plan)));
    EXPECT_TRUE(modified(same(shown)));
    EXPECT_FALSE(modified(same(elsewhere)));
    EXPECT_FALSE(modified(same(line)));
}

TEST_F(DependentsAccess, AFailedUnderlayLoadTouchesNoPlacement) {
    PwDbObjectId gone, shown;
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbPdfDefinition::desc(), u"GONE",
                                                   u"gone.pdf", u"", &gone),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayReference(*drawing, drawing->modelSpaceId(), gone, {}, {},
                                                  {}, &shown),
              StatusOk);
    auto read = SavedAndRead();
    const PwDbObjectId readShown = read->getPwDbObjectId(shown.handle());
    EXPECT_EQ(LodeQDBUtil::UnderlayRef::Reload(read->getPwDbObjectId(gone.handle())),
              Plotwright::StatusFileNotFound);
    PwDbObjectPointer<PwDbObject> placement(readShown, PwDb::OpenForRead);
    EXPECT_FALSE(placement->isModified());
}

TEST_F(DependentsAccess, UnderlayReloadRefusals) {
    EXPECT_EQ(LodeQDBUtil::UnderlayRef::Reload(PwDbObjectId()), Plotwright::StatusNullObjectId);
    EXPECT_EQ(LodeQDBUtil::UnderlayRef::Reload(static_cast<PwDbUnderlayDefinition*>(nullptr)),
              Plotwright::StatusNullDatabase);
    EXPECT_EQ(LodeQDBUtil::UnderlayRef::Reload(drawing->layerZeroId()),
              Plotwright::StatusNotThatKindOfClass);
    EXPECT_FALSE(LodeQDBUtil::UnderlayRef::IsLoaded(PwDbObjectId()));
    PwDbObjectId plan;
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbPdfDefinition::desc(), u"PLAN",
                                                   u"plan.pdf", u"", &plan),
              StatusOk);
    PwDbHostApplicationServices* previous = pwdbSetHostApplicationServices(nullptr);
    EXPECT_EQ(LodeQDBUtil::UnderlayRef::Reload(plan), Plotwright::StatusNoHostServices);
    pwdbSetHostApplicationServices(previous);
    PwDbObjectPointer<PwDbUnderlayDefinition> definition(plan, PwDb::OpenForWrite);
    PwArray<PwDbObjectId> placements(0, 8);
    EXPECT_EQ(LodeQDBUtil::CollectUnderlayReferences(definition.object(), placements),
              Plotwright::StatusNullDatabase);
    EXPECT_EQ(LodeQDBUtil::CollectUnderlayReferences(nullptr, placements),
              Plotwright::StatusNullDatabase);
    PwDbPdfDefinition loose;
    EXPECT_EQ(LodeQDBUtil::CollectUnderlayReferences(&loose, placements),
              Plotwright::StatusNullObjectId);
}

TEST_F(DependentsAccess, UnderlayDictionariesAreFoundByKey) {
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*drawing, PwDbDgnDefinition::desc(), u"SITE",
                                                   u"site.dgn", u""),
              StatusOk);
    const PwString key = PwDbUnderlayDefinition::dictionaryKey(PwDbDgnDefinition::desc());
    EXPECT_FALSE(LodeQDBUtil::UnderlayDictionary::GetDictId(key, drawing.get()).isNull());
    EXPECT_TRUE(LodeQDBUtil::UnderlayDictionary::GetDictId(
                    PwDbUnderlayDefinition::dictionaryKey(PwDbPdfDefinition::desc()), drawing.get())
                    .isNull());
    EXPECT_TRUE(LodeQDBUtil::UnderlayDictionary::GetDictId(PwString(), drawing.get()).isNull());
    // An empty key opens nothing: a root dictionary open for write elsewhere doesn't matter.
    PwDbObjectPointer<PwDbDictionary> root(drawing->namedObjectsDictionaryId(), PwDb::OpenForWrite);
    EXPECT_TRUE(LodeQDBUtil::UnderlayDictionary::GetDictId(PwString(), drawing.get()).isNull());
}

}  // namespace
