// Plot settings and layouts: their values, the checks on them, and their persistent data.
#include <lodeqdb/toolkit/db/PwDbLayout.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

wstring plotSettingsName(const PwDbPlotSettings& settings) {
    const char16_t* name = nullptr;
    EXPECT_EQ(settings.getPlotSettingsName(name), Plotwright::StatusOk);
    return name != nullptr ? wstring(name) : u"(null)";
}

wstring layoutName(const PwDbLayout& layout) {
    const char16_t* name = nullptr;
    EXPECT_EQ(layout.getLayoutName(name), Plotwright::StatusOk);
    return name != nullptr ? wstring(name) : u"(null)";
}

void expectPaper(const PwDbPlotSettings& settings, double width, double height) {
    double w = -1.0;
    double h = -1.0;
    ASSERT_EQ(settings.getPlotPaperSize(w, h), Plotwright::StatusOk);
    EXPECT_EQ(w, width);
    EXPECT_EQ(h, height);
}

TEST(PwDbPlotSettings, StartsNamelessWithoutPaperForPaperSpace) {
    PwDbPlotSettings settings;
    EXPECT_EQ(plotSettingsName(settings), u"");
    expectPaper(settings, 0.0, 0.0);
    EXPECT_FALSE(settings.modelType());
}

TEST(PwDbPlotSettings, KeepsItsValues) {
    PwDbPlotSettings settings;
    ASSERT_EQ(settings.setPlotSettingsName(u"A1 Colour"), Plotwright::StatusOk);
    ASSERT_EQ(settings.setPlotPaperSize(841.0, 594.0), Plotwright::StatusOk);
    ASSERT_EQ(settings.setModelType(true), Plotwright::StatusOk);
    EXPECT_EQ(plotSettingsName(settings), u"A1 Colour");
    expectPaper(settings, 841.0, 594.0);
    EXPECT_TRUE(settings.modelType());
    ASSERT_EQ(settings.setPlotSettingsName(u""), Plotwright::StatusOk);
    EXPECT_EQ(plotSettingsName(settings), u"");
}

TEST(PwDbPlotSettings, RefusesNegativeAndNonFinitePaper) {
    PwDbPlotSettings settings;
    ASSERT_EQ(settings.setPlotPaperSize(420.0, 297.0), Plotwright::StatusOk);
    const double refused[][2] = {
        {-1.0, 10.0}, {10.0, -0.5}, {kNaN, 10.0}, {10.0, kInfinity}, {-kInfinity, 1.0}};
    for (const auto& size : refused) {
        EXPECT_EQ(settings.setPlotPaperSize(size[0], size[1]), Plotwright::StatusInvalidInput);
    }
    expectPaper(settings, 420.0, 297.0);
    EXPECT_EQ(settings.setPlotPaperSize(0.0, 0.0), Plotwright::StatusOk);
    expectPaper(settings, 0.0, 0.0);
    EXPECT_EQ(settings.setPlotSettingsName(nullptr), Plotwright::StatusInvalidInput);
}

TEST(PwDbLayout, StartsNamelessUntiedFirstInTabOrder) {
    PwDbLayout layout;
    EXPECT_EQ(layoutName(layout), u"");
    EXPECT_TRUE(layout.getBlockTableRecordId().isNull());
    EXPECT_EQ(layout.getTabOrder(), 0);
    EXPECT_FALSE(layout.modelType());
    EXPECT_TRUE(layout.isKindOf(PwDbPlotSettings::desc()));
}

TEST(PwDbLayout, KeepsItsValuesAndChecksThem) {
    PwDbDatabase db;
    PwDbDatabase other;
    PwDbLayout layout;
    ASSERT_EQ(layout.setLayoutName(u"Sheet A-101"), Plotwright::StatusOk);
    ASSERT_EQ(layout.setBlockTableRecordId(db.paperSpaceId()), Plotwright::StatusOk);
    ASSERT_EQ(layout.setTabOrder(3), Plotwright::StatusOk);
    EXPECT_EQ(layoutName(layout), u"Sheet A-101");
    EXPECT_EQ(layout.getBlockTableRecordId(), db.paperSpaceId());
    EXPECT_EQ(layout.getTabOrder(), 3);

    EXPECT_EQ(layout.setLayoutName(u""), Plotwright::StatusInvalidKey);
    EXPECT_EQ(layout.setLayoutName(nullptr), Plotwright::StatusInvalidKey);
    EXPECT_EQ(layout.setLayoutName(u"A/B"), Plotwright::StatusInvalidKey);
    EXPECT_EQ(layoutName(layout), u"Sheet A-101");
    EXPECT_EQ(layout.setTabOrder(-1), Plotwright::StatusOk) << "before the model's tab";
    EXPECT_EQ(layout.getTabOrder(), -1);

    // Once in a drawing, the layout shows only that drawing's blocks.
    auto* placed = new PwDbLayout;
    ASSERT_EQ(db.addPwDbObject(placed), Plotwright::StatusOk);
    EXPECT_EQ(placed->setBlockTableRecordId(other.modelSpaceId()), Plotwright::StatusWrongDatabase);
    EXPECT_EQ(placed->setBlockTableRecordId(db.modelSpaceId()), Plotwright::StatusOk);
    placed->close();
}

TEST(PwDbLayout, RefusesChangesUnlessOpenForWrite) {
    PwDbDatabase db;
    PwDbDictionary* layouts = nullptr;
    ASSERT_EQ(db.getLayoutDictionary(layouts, PwDb::OpenForRead), Plotwright::StatusOk);
    PwDbObjectId id;
    ASSERT_EQ(layouts->getAt(u"Layout1", id), Plotwright::StatusOk);
    layouts->close();
    PwDbObjectPointer<PwDbLayout> layout(id, PwDb::OpenForRead);
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->setLayoutName(u"Renamed"), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(layout->setTabOrder(5), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(layout->setBlockTableRecordId(PwDbObjectId()), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(layout->setPlotSettingsName(u"x"), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(layout->setPlotPaperSize(1.0, 1.0), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(layout->setModelType(true), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(layoutName(*layout), u"Layout1");
    EXPECT_EQ(layout->getTabOrder(), 1);
    EXPECT_FALSE(layout->modelType());
    expectPaper(*layout, 297.0, 210.0);
}

// Files `object` in the dictionary `dictionaryId` under `key`; it stays open for write.
void fileIn(PwDbObjectId dictionaryId, const char16_t* key, PwDbObject* object) {
    PwDbObjectPointer<PwDbDictionary> dictionary(dictionaryId, PwDb::OpenForWrite);
    ASSERT_TRUE(dictionary);
    PwDbObjectId id;
    ASSERT_EQ(dictionary->setAt(key, object, id), Plotwright::StatusOk);
}

TEST(PwDbPlotSettings, RoundTripsThroughAFilerAndClones) {
    PwDbDatabase db;
    auto* settings = new PwDbPlotSettings;
    ASSERT_EQ(settings->setPlotSettingsName(u"Check plot"), Plotwright::StatusOk);
    ASSERT_EQ(settings->setPlotPaperSize(594.0, 420.0), Plotwright::StatusOk);
    ASSERT_EQ(settings->setModelType(true), Plotwright::StatusOk);
    fileIn(db.plotSettingsDictionaryId(), u"Check plot", settings);
    ASSERT_EQ(settings->ownerId(), db.plotSettingsDictionaryId());
    PwDbObjectPointer<PwDbPlotSettings> held(settings);

    PwDbMemoryFiler filer(&db);
    ASSERT_EQ(settings->plwOutFields(&filer), Plotwright::StatusOk);
    std::unique_ptr<PwRxObject> made(PwDbPlotSettings::desc()->create());
    auto* copy = PwDbPlotSettings::cast(made.get());
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->plwInFields(&filer), Plotwright::StatusOk);
    EXPECT_EQ(filer.remaining(), 0u);
    std::unique_ptr<PwDbObject> cloned(settings->clone());
    auto* twin = PwDbPlotSettings::cast(cloned.get());
    ASSERT_NE(twin, nullptr);
    EXPECT_EQ(twin->runtimeClass(), PwDbPlotSettings::desc());
    for (const PwDbPlotSettings* read : {copy, twin}) {
        EXPECT_TRUE(read->objectId().isNull());
        EXPECT_EQ(plotSettingsName(*read), u"Check plot");
        expectPaper(*read, 594.0, 420.0);
        EXPECT_TRUE(read->modelType());
        EXPECT_EQ(read->ownerId(), db.plotSettingsDictionaryId());
    }
}

TEST(PwDbLayout, RoundTripsThroughAFilerAndClones) {
    PwDbDatabase db;
    auto* layout = new PwDbLayout;
    ASSERT_EQ(layout->setPlotSettingsName(u"Half size"), Plotwright::StatusOk);
    ASSERT_EQ(layout->setPlotPaperSize(420.0, 297.0), Plotwright::StatusOk);
    ASSERT_EQ(layout->setModelType(false), Plotwright::StatusOk);
    ASSERT_EQ(layout->setLayoutName(u"Details"), Plotwright::StatusOk);
    ASSERT_EQ(layout->setBlockTableRecordId(db.paperSpaceId()), Plotwright::StatusOk);
    ASSERT_EQ(layout->setTabOrder(7), Plotwright::StatusOk);
    fileIn(db.layoutDictionaryId(), u"Details", layout);
    PwDbObjectPointer<PwDbLayout> held(layout);

    PwDbMemoryFiler filer(&db);
    ASSERT_EQ(layout->plwOutFields(&filer), Plotwright::StatusOk);
    std::unique_ptr<PwRxObject> made(PwDbLayout::desc()->create());
    auto* copy = PwDbLayout::cast(made.get());
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->plwInFields(&filer), Plotwright::StatusOk);
    EXPECT_EQ(filer.remaining(), 0u);
    std::unique_ptr<PwDbObject> cloned(layout->clone());
    auto* twin = PwDbLayout::cast(cloned.get());
    ASSERT_NE(twin, nullptr);
    for (const PwDbLayout* read : {copy, twin}) {
        EXPECT_EQ(plotSettingsName(*read), u"Half size");
        expectPaper(*read, 420.0, 297.0);
        EXPECT_FALSE(read->modelType());
        EXPECT_EQ(layoutName(*read), u"Details");
        EXPECT_EQ(read->getBlockTableRecordId(), db.paperSpaceId());
        EXPECT_EQ(read->getTabOrder(), 7);
        EXPECT_EQ(read->ownerId(), db.layoutDictionaryId());
    }
}

TEST(PwDbLayout, DamagedDataIsRefused) {
    PwDbMemoryFiler negativePaper;
    negativePaper.writeObjectId(PwDbObjectId());
    negativePaper.writeInt32(0);  // no persistent reactors
    negativePaper.writeString(u"");
    negativePaper.writeDouble(-3.0);
    negativePaper.writeDouble(1.0);
    negativePaper.writeBool(false);
    PwDbPlotSettings settings;
    EXPECT_EQ(settings.plwInFields(&negativePaper), Plotwright::StatusFilerError);
    expectPaper(settings, 0.0, 0.0);

    PwDbMemoryFiler tabBeforeTheModel;
    tabBeforeTheModel.writeObjectId(PwDbObjectId());
    tabBeforeTheModel.writeInt32(0);  // no persistent reactors
    tabBeforeTheModel.writeString(u"");
    tabBeforeTheModel.writeDouble(1.0);
    tabBeforeTheModel.writeDouble(1.0);
    tabBeforeTheModel.writeBool(false);
    tabBeforeTheModel.writeString(u"Tab");
    tabBeforeTheModel.writeObjectId(PwDbObjectId());
    tabBeforeTheModel.writeInt32(-2);
    PwDbLayout layout;
    EXPECT_EQ(layout.plwInFields(&tabBeforeTheModel), Plotwright::StatusOk);
    EXPECT_EQ(layout.getTabOrder(), -2) << "a negative tab order is a place like any other";

    PwDbMemoryFiler wrongType;
    wrongType.writeObjectId(PwDbObjectId());
    wrongType.writeInt32(0);  // no persistent reactors
    wrongType.writeInt32(5);  // where the settings' name belongs
    EXPECT_EQ(layout.plwInFields(&wrongType), Plotwright::StatusFilerError);
}

}  // namespace
