// Raster image definitions and placements in drawings on disk: finding and checking the files,
// load states, reactors, the image dictionary, and both file formats.
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>

#include <gtest/gtest.h>

#include "ImageFiles.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/image/PwDbRasterImage.h>

namespace {

using Plotwright::StatusOk;
using pwdbimagetest::Png;

class RasterImages : public lodeqdbtest::TempFolderTest {
  protected:
    RasterImages() : TempFolderTest("pwdb-images") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        ASSERT_EQ(system(("mkdir -p '" + folder + "/images'").c_str()), 0);
        Write("images/aerial.png", Png(4, 3));
        Write("images/notes.png", "these are notes, not pixels");
        drawing = PwDbAuthoring::createDrawing();
        // A drawing finds its images beside its own file.
        ASSERT_EQ(drawing->saveAs(Path("site.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }

    PwDbObjectId Define(const wstring& key, const wstring& source) {
        PwDbObjectId id;
        EXPECT_EQ(PwDbAuthoring::addRasterImageDef(*drawing, key, source, &id), StatusOk);
        return id;
    }

    std::unique_ptr<PwDbDatabase> drawing;
};

TEST_F(RasterImages, AFoundImageLoadsWithItsFullPathAndSize) {
    const PwDbObjectId id = Define(u"AERIAL", u"images/aerial.png");
    PwDbObjectPointer<PwDbRasterImageDef> definition(id, PwDb::OpenForWrite);
    EXPECT_FALSE(definition->isLoaded());
    EXPECT_EQ(wstring(definition->activeFileName()), u"");
    ASSERT_EQ(definition->load(), StatusOk);
    EXPECT_TRUE(definition->isLoaded());
    EXPECT_EQ(wstring(definition->activeFileName()), Path("images/aerial.png"));
    EXPECT_EQ(wstring(definition->sourceFileName()), u"images/aerial.png");
    EXPECT_EQ(definition->imageInfo().format, PwDbImageFormat::Png);
    EXPECT_EQ(definition->imageInfo().width, 4u);
    EXPECT_EQ(definition->imageInfo().height, 3u);
}

TEST_F(RasterImages, BackslashesAndStalePathsAreFoundToo) {
    PwDbObjectPointer<PwDbRasterImageDef> backslash(Define(u"A", u"images\\aerial.png"),
                                                    PwDb::OpenForWrite);
    ASSERT_EQ(backslash->load(), StatusOk);
    EXPECT_EQ(wstring(backslash->activeFileName()), Path("images/aerial.png"));
    Write("beside.png", Png(1, 1));
    PwDbObjectPointer<PwDbRasterImageDef> moved(Define(u"B", u"D:\\old\\beside.png"),
                                                PwDb::OpenForWrite);
    ASSERT_EQ(moved->load(), StatusOk);
    EXPECT_EQ(wstring(moved->activeFileName()), Path("beside.png"));
}

TEST_F(RasterImages, AMissingFileOrOneThatIsNoImageStaysUnloaded) {
    PwDbObjectPointer<PwDbRasterImageDef> missing(Define(u"GONE", u"images/gone.png"),
                                                  PwDb::OpenForWrite);
    EXPECT_EQ(missing->load(), Plotwright::StatusFileNotFound);
    EXPECT_FALSE(missing->isLoaded());
    EXPECT_EQ(wstring(missing->activeFileName()), u"");
    PwDbObjectPointer<PwDbRasterImageDef> notes(Define(u"NOTES", u"images/notes.png"),
                                                PwDb::OpenForWrite);
    EXPECT_EQ(notes->load(), Plotwright::StatusBadFileFormat);
    EXPECT_FALSE(notes->isLoaded());
    EXPECT_EQ(wstring(notes->activeFileName()), u"");
    PwDbObjectPointer<PwDbRasterImageDef> unnamed(Define(u"EMPTY", u""), PwDb::OpenForWrite);
    EXPECT_EQ(unnamed->load(), Plotwright::StatusFileNotFound);
}

TEST_F(RasterImages, UnloadingKeepsTheActiveNameAndLoadingAgainWorks) {
    PwDbObjectPointer<PwDbRasterImageDef> definition(Define(u"AERIAL", u"images/aerial.png"),
                                                     PwDb::OpenForWrite);
    ASSERT_EQ(definition->load(), StatusOk);
    ASSERT_EQ(definition->unload(true), StatusOk);
    EXPECT_FALSE(definition->isLoaded());
    EXPECT_EQ(wstring(definition->activeFileName()), Path("images/aerial.png"));
    ASSERT_EQ(definition->load(), StatusOk);
    EXPECT_TRUE(definition->isLoaded());
    ASSERT_EQ(definition->load(), StatusOk);
    EXPECT_TRUE(definition->isLoaded());
    definition->downgradeOpen();
    EXPECT_EQ(definition->unload(true), Plotwright::StatusNotOpenForWrite);
    EXPECT_TRUE(definition->isLoaded());
    EXPECT_EQ(definition->unload(false), StatusOk);
    EXPECT_FALSE(definition->isLoaded());
}

TEST_F(RasterImages, ANewSourceNameUnloads) {
    PwDbObjectPointer<PwDbRasterImageDef> definition(Define(u"AERIAL", u"images/aerial.png"),
                                                     PwDb::OpenForWrite);
    ASSERT_EQ(definition->load(), StatusOk);
    ASSERT_EQ(definition->setSourceFileName(u"images/aerial.png"), StatusOk);
    EXPECT_TRUE(definition->isLoaded());
    ASSERT_EQ(definition->setSourceFileName(u"images/other.png"), StatusOk);
    EXPECT_FALSE(definition->isLoaded());
    EXPECT_EQ(wstring(definition->activeFileName()), u"");
    ASSERT_EQ(definition->setSourceFileName(nullptr), StatusOk);
    EXPECT_EQ(wstring(definition->sourceFileName()), u"");
}

TEST_F(RasterImages, ChangesNeedAWriteOpen) {
    PwDbObjectPointer<PwDbRasterImageDef> definition(Define(u"AERIAL", u"images/aerial.png"),
                                                     PwDb::OpenForRead);
    EXPECT_EQ(definition->setSourceFileName(u"x.png"), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(definition->setActiveFileName(u"x.png"), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(definition->load(), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(wstring(definition->sourceFileName()), u"images/aerial.png");
    ASSERT_EQ(definition->upgradeOpen(), StatusOk);
    EXPECT_EQ(definition->setActiveFileName(u"/elsewhere/x.png"), StatusOk);
    EXPECT_EQ(wstring(definition->activeFileName()), u"/elsewhere/x.png");
}

TEST_F(RasterImages, PlacementsAreReactorsAndMakeTheDefinitionAChild) {
    const PwDbObjectId id = Define(u"AERIAL", u"images/aerial.png");
    {
        PwDbObjectPointer<PwDbRasterImageDef> definition(id, PwDb::OpenForRead);
        EXPECT_TRUE(definition->skipAsChild());
        EXPECT_EQ(definition->reactors(), nullptr);
    }
    PwDbObjectId placed;
    ASSERT_EQ(PwDbAuthoring::addRasterImage(*drawing, drawing->modelSpaceId(), id, {1, 2, 0}, 40,
                                            30, {}, &placed),
              StatusOk);
    {
        PwDbObjectPointer<PwDbRasterImageDef> definition(id, PwDb::OpenForRead);
        ASSERT_NE(definition->reactors(), nullptr);
        ASSERT_EQ(definition->reactors()->length(), 1u);
        EXPECT_EQ(pwdbPersistentReactorObjectId(definition->reactors()->at(0)), placed);
        EXPECT_FALSE(definition->skipAsChild());
        PwDbObjectPointer<PwDbRasterImage> image(placed, PwDb::OpenForRead);
        EXPECT_EQ(image->imageDefId(), id);
        EXPECT_EQ(image->position(), PwGePoint3d(1, 2, 0));
        EXPECT_EQ(image->width(), 40.0);
        EXPECT_EQ(image->height(), 30.0);
    }
    {
        PwDbObjectPointer<PwDbRasterImage> image(placed, PwDb::OpenForWrite);
        ASSERT_EQ(image->erase(), StatusOk);
    }
    PwDbObjectPointer<PwDbRasterImageDef> definition(id, PwDb::OpenForRead);
    EXPECT_TRUE(definition->skipAsChild());
}

TEST_F(RasterImages, APlacementOfAnotherDefinitionDoesntCount) {
    const PwDbObjectId first = Define(u"FIRST", u"images/aerial.png");
    const PwDbObjectId second = Define(u"SECOND", u"images/aerial.png");
    PwDbObjectId placed;
    ASSERT_EQ(PwDbAuthoring::addRasterImage(*drawing, drawing->modelSpaceId(), second, {}, 1, 1, {},
                                            &placed),
              StatusOk);
    {
        // The placement recorded on the wrong definition by hand.
        PwDbObjectPointer<PwDbRasterImageDef> wrong(first, PwDb::OpenForWrite);
        ASSERT_EQ(wrong->addPersistentReactor(placed), StatusOk);
        EXPECT_TRUE(wrong->skipAsChild());
    }
    PwDbObjectPointer<PwDbRasterImageDef> right(second, PwDb::OpenForRead);
    EXPECT_FALSE(right->skipAsChild());
}

TEST_F(RasterImages, ThePlacementsValuesAreChecked) {
    PwDbRasterImage image;
    EXPECT_EQ(image.setSize(0, 1), Plotwright::StatusInvalidInput);
    EXPECT_EQ(image.setSize(1, -1), Plotwright::StatusInvalidInput);
    EXPECT_EQ(image.setPosition({std::nan(""), 0, 0}), Plotwright::StatusInvalidInput);
    auto other = PwDbAuthoring::createDrawing();
    const PwDbObjectId id = Define(u"AERIAL", u"images/aerial.png");
    PwDbObjectId placed;
    ASSERT_EQ(
        PwDbAuthoring::addRasterImage(*other, other->modelSpaceId(), id, {}, 1, 1, {}, &placed),
        Plotwright::StatusWrongDatabase);
}

TEST_F(RasterImages, TheImageDictionaryIsMadeOnceAndFoundByItsKey) {
    EXPECT_TRUE(PwDbRasterImageDef::imageDictionary(drawing.get()).isNull());
    EXPECT_TRUE(PwDbRasterImageDef::imageDictionary(nullptr).isNull());
    PwDbObjectId made;
    ASSERT_EQ(PwDbRasterImageDef::createImageDictionary(drawing.get(), made), StatusOk);
    EXPECT_FALSE(made.isNull());
    EXPECT_EQ(PwDbRasterImageDef::imageDictionary(drawing.get()), made);
    PwDbObjectId again;
    ASSERT_EQ(PwDbRasterImageDef::createImageDictionary(drawing.get(), again), StatusOk);
    EXPECT_EQ(again, made);
    EXPECT_EQ(PwDbRasterImageDef::createImageDictionary(nullptr, again),
              Plotwright::StatusNullDatabase);
    Define(u"AERIAL", u"images/aerial.png");
    EXPECT_EQ(PwDbAuthoring::addRasterImageDef(*drawing, u"aerial", u"x.png"),
              Plotwright::StatusDuplicateKey);
}

class RasterImagesInFiles : public RasterImages,
                            public testing::WithParamInterface<std::pair<bool, int>> {};

TEST_P(RasterImagesInFiles, DefinitionsPlacementsAndReactorsSurviveASave) {
    const auto [exchange, version] = GetParam();
    const PwDbObjectId id = Define(u"AERIAL", u"images\\aerial.png");
    Define(u"UNUSED", u"https://example.com/map.png");
    PwDbObjectId placed;
    ASSERT_EQ(PwDbAuthoring::addRasterImage(*drawing, drawing->modelSpaceId(), id, {1.25, -2, 0.5},
                                            0.1, 1e6, {}, &placed),
              StatusOk);
    {
        PwDbObjectPointer<PwDbRasterImageDef> definition(id, PwDb::OpenForWrite);
        ASSERT_EQ(definition->load(), StatusOk);
    }
    const wstring path = Path(exchange ? "copy.plx" : "copy.plw");
    const auto v = static_cast<PwDb::PwDbPlwVersion>(version);
    ASSERT_EQ(
        exchange ? drawing->plxOut(path.c_str(), 16, v) : drawing->saveAs(path.c_str(), false, v),
        StatusOk);
    PwDbDatabase read;
    ASSERT_EQ(exchange ? read.plxIn(path.c_str()) : read.readPlwFile(path.c_str()), StatusOk);

    const PwDbObjectId dictionaryId = PwDbRasterImageDef::imageDictionary(&read);
    ASSERT_FALSE(dictionaryId.isNull());
    PwDbObjectPointer<PwDbDictionary> dictionary(dictionaryId, PwDb::OpenForRead);
    PwDbObjectId readId, unusedId;
    ASSERT_EQ(dictionary->getAt(u"AERIAL", readId), StatusOk);
    ASSERT_EQ(dictionary->getAt(u"UNUSED", unusedId), StatusOk);
    PwDbObjectPointer<PwDbRasterImageDef> definition(readId, PwDb::OpenForRead);
    EXPECT_EQ(wstring(definition->sourceFileName()), u"images\\aerial.png");
    EXPECT_EQ(wstring(definition->activeFileName()), u"");
    EXPECT_FALSE(definition->isLoaded());
    EXPECT_FALSE(definition->skipAsChild());
    ASSERT_NE(definition->reactors(), nullptr);
    const PwDbObjectId readPlacement = pwdbPersistentReactorObjectId(definition->reactors()->at(0));
    EXPECT_EQ(readPlacement.handle(), placed.handle());
    PwDbObjectPointer<PwDbRasterImage> image(readPlacement, PwDb::OpenForRead);
    ASSERT_EQ(image.openStatus(), StatusOk);
    EXPECT_EQ(image->imageDefId(), readId);
    EXPECT_EQ(image->position(), PwGePoint3d(1.25, -2, 0.5));
    EXPECT_EQ(image->width(), 0.1);
    EXPECT_EQ(image->height(), 1e6);
    PwDbObjectPointer<PwDbRasterImageDef> unused(unusedId, PwDb::OpenForRead);
    EXPECT_EQ(wstring(unused->sourceFileName()), u"https://example.com/map.png");
    EXPECT_TRUE(unused->skipAsChild());
}

INSTANTIATE_TEST_SUITE_P(BothFormats, RasterImagesInFiles,
                         testing::Values(std::pair{false, 16}, std::pair{false, 33},
                                         std::pair{true, 16}, std::pair{true, 33}));

}  // namespace
