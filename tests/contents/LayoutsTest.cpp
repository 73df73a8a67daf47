// Layouts and named plot settings of drawings on disk: paper sizes, model or paper, the
// filters, the sort by tab order, entries left out, and a missing settings dictionary.
#include <lodeqdb/contents/Layouts.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "DrawingFiles.h"
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace {

using LodeQDBUtil::Layout::GetPlotSettingsInfoList;
using LodeQDBUtil::Layout::GetPlwLayoutInfoList;
using Plotwright::StatusOk;

std::vector<wstring> Names(const std::vector<lode::PlwLayoutInfo>& layouts) {
    std::vector<wstring> names;
    for (const auto& layout : layouts) names.push_back(layout.name);
    return names;
}

std::vector<wstring> Names(const std::vector<lode::PlwPlotSettingInfo>& settings) {
    std::vector<wstring> names;
    for (const auto& setting : settings) names.push_back(setting.name);
    return names;
}

const lode::PlwLayoutInfo& Find(const std::vector<lode::PlwLayoutInfo>& layouts,
                                const wstring& name) {
    const auto found = std::find_if(layouts.begin(), layouts.end(),
                                    [&](const auto& layout) { return layout.name == name; });
    if (found == layouts.end()) throw std::runtime_error("no such layout");
    return *found;
}

class Layouts : public lodeqdbtest::DrawingFilesTest {
  protected:
    Layouts() : DrawingFilesTest("lodeqdb-layouts") {}

    // Besides "Model" (tab 0, no paper) and "Layout1" (tab 1, A4): sheets filed out of tab
    // order, one with a width but a height of 0, one with neither, one with a height only.
    std::unique_ptr<PwDbDatabase> Sheets() {
        auto drawing = PwDbAuthoring::createDrawing();
        EXPECT_EQ(PwDbAuthoring::addLayout(*drawing, u"E", 5, 841, 594), StatusOk);
        EXPECT_EQ(PwDbAuthoring::addLayout(*drawing, u"WidthOnly", 3, 420, 0.0), StatusOk);
        EXPECT_EQ(PwDbAuthoring::addLayout(*drawing, u"NoPaper", 4, 0, 0), StatusOk);
        EXPECT_EQ(PwDbAuthoring::addLayout(*drawing, u"HeightOnly", 2, 0, 297), StatusOk);
        return drawing;
    }
};

TEST_P(Layouts, EveryLayoutInDictionaryOrderWithItsFields) {
    auto drawing = Sheets();
    auto read = SaveAndRead(*drawing, "sheets");
    const auto layouts = GetPlwLayoutInfoList(*read, false, false, lode::AllLayouts);
    EXPECT_EQ(Names(layouts), (std::vector<wstring>{u"Model", u"Layout1", u"E", u"WidthOnly",
                                                    u"NoPaper", u"HeightOnly"}));
    const auto& model = Find(layouts, u"Model");
    EXPECT_EQ(model.collection, lode::ModelLayouts);
    EXPECT_FALSE(model.hasPaperSize);
    EXPECT_EQ(model.tabOrder, 0);
    const auto& sheet = Find(layouts, u"E");
    EXPECT_EQ(sheet.collection, lode::PaperLayouts);
    EXPECT_TRUE(sheet.hasPaperSize);
    EXPECT_EQ(sheet.tabOrder, 5);
    EXPECT_TRUE(Find(layouts, u"Layout1").hasPaperSize);
    // The ids name the layouts in the database asked about.
    for (const auto& layout : layouts) {
        PwDbObjectPointer<PwDbLayout> object(layout.objectId, PwDb::OpenForRead);
        ASSERT_EQ(object.openStatus(), StatusOk);
        const char16_t* name = nullptr;
        object->getLayoutName(name);
        EXPECT_EQ(wstring(name), layout.name);
    }
}

TEST_P(Layouts, APaperSizeNeedsBothWidthAndHeight) {
    auto drawing = Sheets();
    auto read = SaveAndRead(*drawing, "sheets");
    const auto layouts = GetPlwLayoutInfoList(*read, false, false, lode::PaperLayouts);
    EXPECT_FALSE(Find(layouts, u"WidthOnly").hasPaperSize);
    EXPECT_FALSE(Find(layouts, u"HeightOnly").hasPaperSize);
    EXPECT_FALSE(Find(layouts, u"NoPaper").hasPaperSize);
    EXPECT_EQ(Names(GetPlwLayoutInfoList(*read, false, true, lode::AllLayouts)),
              (std::vector<wstring>{u"Layout1", u"E"}));
}

TEST_P(Layouts, TheModelLayoutWithoutPaperIsDroppedOnlyWhenPaperIsAskedFor) {
    auto drawing = PwDbAuthoring::createDrawing();
    auto read = SaveAndRead(*drawing, "plain");
    const auto kept = GetPlwLayoutInfoList(*read, false, false, lode::ModelLayouts);
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].name, u"Model");
    EXPECT_FALSE(kept[0].hasPaperSize);
    EXPECT_TRUE(GetPlwLayoutInfoList(*read, false, true, lode::ModelLayouts).empty());
}

TEST_P(Layouts, TheSelectorChoosesModelPaperOrBoth) {
    auto drawing = Sheets();
    auto read = SaveAndRead(*drawing, "sheets");
    EXPECT_EQ(Names(GetPlwLayoutInfoList(*read, false, false, lode::ModelLayouts)),
              (std::vector<wstring>{u"Model"}));
    EXPECT_EQ(Names(GetPlwLayoutInfoList(*read, false, false, lode::PaperLayouts)),
              (std::vector<wstring>{u"Layout1", u"E", u"WidthOnly", u"NoPaper", u"HeightOnly"}));
    const auto all = Names(GetPlwLayoutInfoList(*read, false, false, lode::AllLayouts));
    EXPECT_EQ(all.size(), 6u);
    for (int other : {3, 7, -1, 1000})
        EXPECT_EQ(Names(GetPlwLayoutInfoList(*read, false, false,
                                             static_cast<lode::PlwLayoutsCollection>(other))),
                  all)
            << other;
}

TEST_P(Layouts, SortedByAscendingTabOrder) {
    auto drawing = Sheets();
    auto read = SaveAndRead(*drawing, "sheets");
    const auto sorted = GetPlwLayoutInfoList(*read, true, false, lode::AllLayouts);
    EXPECT_EQ(Names(sorted), (std::vector<wstring>{u"Model", u"Layout1", u"HeightOnly",
                                                   u"WidthOnly", u"NoPaper", u"E"}));
    EXPECT_EQ(Names(GetPlwLayoutInfoList(*read, true, true, lode::PaperLayouts)),
              (std::vector<wstring>{u"Layout1", u"E"}));
}

TEST_P(Layouts, EqualTabOrdersAreBothListedSideBySide) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addLayout(*drawing, u"Late", 9, 1, 1), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLayout(*drawing, u"TwinA", 4, 1, 1), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLayout(*drawing, u"TwinB", 4, 1, 1), StatusOk);
    auto read = SaveAndRead(*drawing, "twins");
    const auto sorted = GetPlwLayoutInfoList(*read, true, false, lode::PaperLayouts);
    ASSERT_EQ(sorted.size(), 4u);
    EXPECT_EQ(sorted[0].name, u"Layout1");
    EXPECT_EQ(sorted[1].tabOrder, 4);
    EXPECT_EQ(sorted[2].tabOrder, 4);
    EXPECT_NE(sorted[1].name, sorted[2].name);
    EXPECT_EQ(sorted[3].name, u"Late");
}

TEST_P(Layouts, AnEntryOfAnotherClassOrThatCantBeOpenedIsLeftOut) {
    auto drawing = Sheets();
    ASSERT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->layoutDictionaryId(),
                                                u"NotALayout", new PwDbDictionary),
              StatusOk);
    auto read = SaveAndRead(*drawing, "odd");
    EXPECT_EQ(GetPlwLayoutInfoList(*read, true, false, lode::AllLayouts).size(), 6u);

    PwDbObjectPointer<PwDbDictionary> layouts(read->layoutDictionaryId(), PwDb::OpenForRead);
    PwDbObjectId e;
    ASSERT_EQ(layouts->getAt(u"E", e), StatusOk);
    layouts.release();
    PwDbObjectPointer<PwDbLayout> held(e, PwDb::OpenForWrite);
    ASSERT_EQ(held.openStatus(), StatusOk);
    const auto without = Names(GetPlwLayoutInfoList(*read, false, false, lode::AllLayouts));
    EXPECT_EQ(std::count(without.begin(), without.end(), u"E"), 0);
    EXPECT_EQ(without.size(), 5u);
}

TEST_P(Layouts, NegativeTabOrdersComeFirst) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addLayout(*drawing, u"Three", 3, 1, 1), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLayout(*drawing, u"MinusTwo", -2, 1, 1), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLayout(*drawing, u"MinusSeven", -7, 1, 1), StatusOk);
    auto read = SaveAndRead(*drawing, "negative");
    const auto sorted = GetPlwLayoutInfoList(*read, true, false, lode::AllLayouts);
    EXPECT_EQ(Names(sorted),
              (std::vector<wstring>{u"MinusSeven", u"MinusTwo", u"Model", u"Layout1", u"Three"}));
    EXPECT_EQ(sorted[0].tabOrder, -7);
}

class PlotSettings : public lodeqdbtest::DrawingFilesTest {
  protected:
    PlotSettings() : DrawingFilesTest("lodeqdb-plotsettings") {}

    std::unique_ptr<PwDbDatabase> Named() {
        auto drawing = PwDbAuthoring::createDrawing();
        EXPECT_EQ(PwDbAuthoring::addPlotSettings(*drawing, u"Draft A3", false, 420, 297), StatusOk);
        EXPECT_EQ(PwDbAuthoring::addPlotSettings(*drawing, u"Model check", true, 297, 210),
                  StatusOk);
        EXPECT_EQ(PwDbAuthoring::addPlotSettings(*drawing, u"Archive", false, 0, 0), StatusOk);
        // Settings whose own name is empty, filed under a key.
        EXPECT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->plotSettingsDictionaryId(),
                                                    u"Unnamed", new PwDbPlotSettings),
                  StatusOk);
        return drawing;
    }
};

TEST_P(PlotSettings, NamedSettingsInDictionaryOrder) {
    auto drawing = Named();
    auto read = SaveAndRead(*drawing, "settings");
    const auto settings = GetPlotSettingsInfoList(*read, lode::AllLayouts);
    EXPECT_EQ(Names(settings),
              (std::vector<wstring>{u"Draft A3", u"Model check", u"Archive", u""}));
    EXPECT_EQ(settings[0].collection, lode::PaperLayouts);
    EXPECT_EQ(settings[1].collection, lode::ModelLayouts);
    for (const auto& setting : settings) {
        PwDbObjectPointer<PwDbPlotSettings> object(setting.objectId, PwDb::OpenForRead);
        ASSERT_EQ(object.openStatus(), StatusOk);
        EXPECT_EQ(object->modelType(), setting.collection == lode::ModelLayouts);
    }
}

TEST_P(PlotSettings, TheSelectorChoosesModelPaperOrBoth) {
    auto drawing = Named();
    auto read = SaveAndRead(*drawing, "settings");
    EXPECT_EQ(Names(GetPlotSettingsInfoList(*read, lode::ModelLayouts)),
              (std::vector<wstring>{u"Model check"}));
    EXPECT_EQ(Names(GetPlotSettingsInfoList(*read, lode::PaperLayouts)),
              (std::vector<wstring>{u"Draft A3", u"Archive", u""}));
    for (int other : {2, 5, -3})
        EXPECT_EQ(
            GetPlotSettingsInfoList(*read, static_cast<lode::PlwLayoutsCollection>(other)).size(),
            4u);
}

TEST_P(PlotSettings, ANewDrawingHasNone) {
    auto drawing = PwDbAuthoring::createDrawing();
    auto read = SaveAndRead(*drawing, "plain");
    EXPECT_TRUE(GetPlotSettingsInfoList(*read, lode::AllLayouts).empty());
}

TEST_P(PlotSettings, ADrawingWithoutTheDictionaryGivesAnEmptyList) {
    auto drawing = Named();
    {
        PwDbObjectPointer<PwDbDictionary> root(drawing->namedObjectsDictionaryId(),
                                               PwDb::OpenForWrite);
        ASSERT_TRUE(root->setName(u"PLOTWRIGHT_PLOTSETTINGS", u"SOMETHING_ELSE"));
    }
    auto read = SaveAndRead(*drawing, "without");
    EXPECT_TRUE(GetPlotSettingsInfoList(*read, lode::AllLayouts).empty());
    // The layouts don't depend on it.
    EXPECT_EQ(GetPlwLayoutInfoList(*read, false, false, lode::AllLayouts).size(), 2u);
}

TEST_P(PlotSettings, AKeyThatHoldsNoDictionaryGivesAnEmptyList) {
    auto drawing = Named();
    {
        PwDbObjectPointer<PwDbDictionary> root(drawing->namedObjectsDictionaryId(),
                                               PwDb::OpenForWrite);
        ASSERT_TRUE(root->setName(u"PLOTWRIGHT_PLOTSETTINGS", u"SOMETHING_ELSE"));
    }
    ASSERT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->namedObjectsDictionaryId(),
                                                u"PLOTWRIGHT_PLOTSETTINGS", new PwDbPlotSettings),
              StatusOk);
    auto read = SaveAndRead(*drawing, "odd");
    EXPECT_TRUE(GetPlotSettingsInfoList(*read, lode::AllLayouts).empty());
}

TEST_P(PlotSettings, AnEntryOfAnotherClassOrThatCantBeOpenedIsLeftOut) {
    auto drawing = Named();
    ASSERT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->plotSettingsDictionaryId(),
                                                u"NotSettings", new PwDbDictionary),
              StatusOk);
    auto read = SaveAndRead(*drawing, "odd");
    EXPECT_EQ(GetPlotSettingsInfoList(*read, lode::AllLayouts).size(), 4u);

    PwDbObjectPointer<PwDbDictionary> settings(read->plotSettingsDictionaryId(), PwDb::OpenForRead);
    PwDbObjectId archive;
    ASSERT_EQ(settings->getAt(u"Archive", archive), StatusOk);
    settings.release();
    PwDbObjectPointer<PwDbPlotSettings> held(archive, PwDb::OpenForWrite);
    ASSERT_EQ(held.openStatus(), StatusOk);
    EXPECT_EQ(Names(GetPlotSettingsInfoList(*read, lode::AllLayouts)),
              (std::vector<wstring>{u"Draft A3", u"Model check", u""}));
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Layouts, testing::Bool(), lodeqdbtest::FormatName);
INSTANTIATE_TEST_SUITE_P(BothFormats, PlotSettings, testing::Bool(), lodeqdbtest::FormatName);

}  // namespace
