// The layers of drawings on disk as plain records: order, flags, descriptions, skipped
// layers, and the failures of both forms.
#include <lodeqdb/contents/Layers.h>

#include <gtest/gtest.h>

#include "DrawingFiles.h"
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/pal/PwHeap.h>

namespace {

using LodeQDBUtil::Layer::GetPlwLayers;
using Plotwright::StatusOk;

class Layers : public lodeqdbtest::DrawingFilesTest {
  protected:
    Layers() : DrawingFilesTest("lodeqdb-layers") {}

    // One layer per flag, each with only that flag set, and one with a line on it.
    std::unique_ptr<PwDbDatabase> Flagged() {
        auto drawing = PwDbAuthoring::createDrawing();
        PwDbAuthoring::LayerOptions options;
        options.hidden = true;
        options.description = u"Hidden, with a description longer than twenty characters";
        EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"Hidden", options), StatusOk);
        options = {};
        options.frozen = true;
        EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"Frozen", options), StatusOk);
        options = {};
        options.locked = true;
        options.description = u"Locked ä";
        EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"Locked", options), StatusOk);
        options = {};
        options.off = true;
        EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"Off", options), StatusOk);
        options = {};
        options.reconciled = true;
        EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"Reconciled", options), StatusOk);
        PwDbObjectId used;
        EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"Used", {}, &used), StatusOk);
        EXPECT_EQ(
            PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0}, {1, 1, 0}, used),
            StatusOk);
        return drawing;
    }
};

TEST_P(Layers, ADrawingWithOnlyItsDefaultLayerGivesOneRecord) {
    auto drawing = PwDbAuthoring::createDrawing();
    const auto layers = GetPlwLayers(Save(*drawing, "plain"));
    ASSERT_EQ(layers.size(), 1u);
    EXPECT_EQ(layers[0].name, u"0");
    EXPECT_EQ(layers[0].description, u"");
    EXPECT_TRUE(layers[0].isInUse);
    EXPECT_FALSE(layers[0].isHidden || layers[0].isFrozen || layers[0].isLocked ||
                 layers[0].isOff || layers[0].isReconciled);
}

TEST_P(Layers, EveryFlagAndDescriptionIsReadInTheTablesOrder) {
    auto drawing = Flagged();
    const auto layers = GetPlwLayers(Save(*drawing, "flags"));
    ASSERT_EQ(layers.size(), 7u);
    const std::vector<wstring> names = {u"0",   u"Hidden",     u"Frozen", u"Locked",
                                        u"Off", u"Reconciled", u"Used"};
    for (size_t i = 0; i < names.size(); ++i) {
        const lode::PlwLayerInfo& layer = layers[i];
        EXPECT_EQ(layer.name, names[i]);
        EXPECT_EQ(layer.isHidden, layer.name == u"Hidden") << i;
        EXPECT_EQ(layer.isFrozen, layer.name == u"Frozen") << i;
        EXPECT_EQ(layer.isLocked, layer.name == u"Locked") << i;
        EXPECT_EQ(layer.isOff, layer.name == u"Off") << i;
        EXPECT_EQ(layer.isReconciled, layer.name == u"Reconciled") << i;
        EXPECT_EQ(layer.isInUse, layer.name == u"0" || layer.name == u"Used") << i;
    }
    EXPECT_EQ(layers[1].description, u"Hidden, with a description longer than twenty characters");
    EXPECT_EQ(layers[2].description, u"");
    EXPECT_EQ(layers[3].description, u"Locked ä");
}

TEST_P(Layers, TheDatabaseFormGivesWhatThePathFormGives) {
    auto drawing = Flagged();
    auto read = SaveAndRead(*drawing, "flags");
    const auto byDatabase = GetPlwLayers(*read);
    const auto byPath = GetPlwLayers(FileName("flags"));
    ASSERT_EQ(byDatabase.size(), byPath.size());
    for (size_t i = 0; i < byPath.size(); ++i) {
        EXPECT_EQ(byDatabase[i].name, byPath[i].name);
        EXPECT_EQ(byDatabase[i].description, byPath[i].description);
        EXPECT_EQ(byDatabase[i].isHidden, byPath[i].isHidden);
        EXPECT_EQ(byDatabase[i].isInUse, byPath[i].isInUse);
    }
}

TEST_P(Layers, NoToolkitBufferIsLeftBehind) {
    auto drawing = Flagged();
    auto read = SaveAndRead(*drawing, "flags");
    const size_t before = pwHeapLiveBlockCount();
    for (int round = 0; round < 3; ++round) EXPECT_EQ(GetPlwLayers(*read).size(), 7u);
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
}

TEST_P(Layers, ALayerThatCantBeOpenedIsLeftOut) {
    auto drawing = Flagged();
    auto read = SaveAndRead(*drawing, "flags");
    PwDbSymbolTablePointer<PwDbLayerTable> table(read.get(), PwDb::OpenForRead);
    PwDbLayerTableRecord* locked = nullptr;
    ASSERT_EQ(table->getAt(u"Locked", locked, PwDb::OpenForWrite), StatusOk);
    table.release();
    const auto layers = GetPlwLayers(*read);
    locked->close();
    ASSERT_EQ(layers.size(), 6u);
    for (const auto& layer : layers) EXPECT_NE(layer.name, u"Locked");
    EXPECT_EQ(GetPlwLayers(*read).size(), 7u);
}

TEST_P(Layers, ALayerTableThatCantBeOpenedThrowsItsStatus) {
    auto drawing = Flagged();
    auto read = SaveAndRead(*drawing, "flags");
    PwDbSymbolTablePointer<PwDbLayerTable> table(read.get(), PwDb::OpenForWrite);
    ASSERT_EQ(table.openStatus(), StatusOk);
    try {
        GetPlwLayers(*read);
        FAIL() << "no exception";
    } catch (const lode::PlotwrightException& error) {
        EXPECT_EQ(error.status(), Plotwright::StatusWasOpenForWrite);
        EXPECT_EQ(error.code(), lode::PlotwrightErrorCode);
    }
    table.release();
    EXPECT_EQ(GetPlwLayers(*read).size(), 7u);
}

TEST_P(Layers, AnErasedLayerIsNotListed) {
    auto drawing = Flagged();
    {
        PwDbSymbolTablePointer<PwDbLayerTable> table(drawing.get(), PwDb::OpenForRead);
        PwDbLayerTableRecord* off = nullptr;
        ASSERT_EQ(table->getAt(u"Off", off, PwDb::OpenForWrite), StatusOk);
        ASSERT_EQ(off->erase(), StatusOk);
        off->close();
    }
    const auto layers = GetPlwLayers(Save(*drawing, "erased"));
    ASSERT_EQ(layers.size(), 6u);
    for (const auto& layer : layers) EXPECT_NE(layer.name, u"Off");
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Layers, testing::Bool(), lodeqdbtest::FormatName);

class LayerFiles : public lodeqdbtest::TempFolderTest {
  protected:
    LayerFiles() : TempFolderTest("lodeqdb-layers") {}
};

TEST_F(LayerFiles, AnUnknownExtensionIsAReadError) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(drawing->saveAs(Path("drawing.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
              StatusOk);
    ASSERT_EQ(rename((folder + "/drawing.plw").c_str(), (folder + "/drawing.txt").c_str()), 0);
    EXPECT_THROW(GetPlwLayers(Path("drawing.txt")), lode::ReadError);
}

TEST_F(LayerFiles, AMissingFileIsNotFound) {
    try {
        GetPlwLayers(Path("missing.plw"));
        FAIL() << "no exception";
    } catch (const lode::NotFound& error) {
        EXPECT_NE(error.message().find(Path("missing.plw")), wstring::npos);
    }
    EXPECT_THROW(GetPlwLayers(Path("missing.plx")), lode::NotFound);
}

TEST_F(LayerFiles, ADamagedFileIsAFileErrorAndStaysAsItWas) {
    Write("damaged.plw", "not a drawing at all");
    Write("damaged.plx", "not an exchange file");
    EXPECT_THROW(GetPlwLayers(Path("damaged.plw")), lode::FileError);
    EXPECT_THROW(GetPlwLayers(Path("damaged.plx")), lode::FileError);
    EXPECT_EQ(Read("damaged.plw"), "not a drawing at all");
}

}  // namespace
