// `lodeqdb layers`, `lodeqdb layouts`, `lodeqdb plotsettings`: what a drawing holds.
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <lodeqdb/contents/Layers.h>
#include <lodeqdb/contents/Layouts.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "tools/Commands.h"
#include "tools/Json.h"
#include "tools/Output.h"
#include "tools/Table.h"

namespace lodeqdb::cli {
namespace {

const std::map<std::string, lode::PlwLayoutsCollection>& CollectionNames() {
    static const std::map<std::string, lode::PlwLayoutsCollection> names = {
        {"model", lode::ModelLayouts}, {"paper", lode::PaperLayouts}, {"all", lode::AllLayouts}};
    return names;
}

std::string CollectionName(lode::PlwLayoutsCollection collection) {
    return collection == lode::ModelLayouts ? "model" : "paper";
}

// The set flags of a layer in words, comma-separated; "-" when none is set.
std::string FlagList(const lode::PlwLayerInfo& layer) {
    std::string flags;
    const std::pair<bool, const char*> all[] = {
        {layer.isHidden, "hidden"}, {layer.isFrozen, "frozen"}, {layer.isInUse, "in use"},
        {layer.isLocked, "locked"}, {layer.isOff, "off"},       {layer.isReconciled, "reconciled"}};
    for (const auto& [set, name] : all) {
        if (!set) continue;
        if (!flags.empty()) flags += ", ";
        flags += name;
    }
    return flags.empty() ? "-" : flags;
}

void PrintLayers(const std::vector<lode::PlwLayerInfo>& layers, bool json) {
    if (json) {
        nlohmann::json list = nlohmann::json::array();
        for (const lode::PlwLayerInfo& layer : layers) {
            list.push_back({{"name", Narrow(layer.name)},
                            {"description", Narrow(layer.description)},
                            {"isHidden", layer.isHidden},
                            {"isFrozen", layer.isFrozen},
                            {"isInUse", layer.isInUse},
                            {"isLocked", layer.isLocked},
                            {"isOff", layer.isOff},
                            {"isReconciled", layer.isReconciled}});
        }
        std::cout << DumpJson(list) << '\n';
        return;
    }
    Table table({"LAYER", "FLAGS", "DESCRIPTION"});
    for (const lode::PlwLayerInfo& layer : layers)
        table.add({Narrow(layer.name), FlagList(layer), Narrow(layer.description)});
    table.print(std::cout);
}

void PrintLayouts(const std::vector<lode::PlwLayoutInfo>& layouts, bool json) {
    if (json) {
        nlohmann::json list = nlohmann::json::array();
        for (const lode::PlwLayoutInfo& layout : layouts) {
            list.push_back({{"name", Narrow(layout.name)},
                            {"hasPaperSize", layout.hasPaperSize},
                            {"collection", CollectionName(layout.collection)},
                            {"tabOrder", layout.tabOrder}});
        }
        std::cout << DumpJson(list) << '\n';
        return;
    }
    Table table({"TAB", "SPACE", "PAPER SIZE", "LAYOUT"});
    for (const lode::PlwLayoutInfo& layout : layouts)
        table.add({std::to_string(layout.tabOrder), CollectionName(layout.collection),
                   layout.hasPaperSize ? "set" : "none", Narrow(layout.name)});
    table.print(std::cout);
}

void PrintPlotSettings(const std::vector<lode::PlwPlotSettingInfo>& settings, bool json) {
    if (json) {
        nlohmann::json list = nlohmann::json::array();
        for (const lode::PlwPlotSettingInfo& setting : settings) {
            list.push_back({{"name", Narrow(setting.name)},
                            {"collection", CollectionName(setting.collection)}});
        }
        std::cout << DumpJson(list) << '\n';
        return;
    }
    Table table({"FOR", "PLOT SETTINGS"});
    for (const lode::PlwPlotSettingInfo& setting : settings)
        table.add({CollectionName(setting.collection), Narrow(setting.name)});
    table.print(std::cout);
}

struct ContentsOptions {
    std::string file;
    std::string collection = "all";
    bool sort = false;
    bool paperOnly = false;
    bool json = false;
};

void AddCollectionOption(CLI::App& command, ContentsOptions& options) {
    command.add_option("--collection", options.collection, "Which entries: model, paper or all")
        ->check(CLI::IsMember({"model", "paper", "all"}));
}

}  // namespace

void AddContentsCommands(CLI::App& app) {
    auto layers = std::make_shared<ContentsOptions>();
    CLI::App* layersCommand =
        app.add_subcommand("layers", "The layers of a drawing: name, set flags, description");
    layersCommand->add_option("file", layers->file, "Drawing file (.plw or .plx)")->required();
    layersCommand->add_flag("--json", layers->json, "One JSON array on stdout");
    layersCommand->callback([layers] {
        EndWith(RunReportingErrors([&] {
            PrintLayers(LodeQDBUtil::Layer::GetPlwLayers(FullPath(layers->file)), layers->json);
            return ExitSuccess;
        }));
    });

    auto layouts = std::make_shared<ContentsOptions>();
    CLI::App* layoutsCommand = app.add_subcommand(
        "layouts", "The layouts of a drawing: tab order, model or paper, paper size, name");
    layoutsCommand->add_option("file", layouts->file, "Drawing file (.plw or .plx)")->required();
    layoutsCommand->add_flag("--sort", layouts->sort, "In ascending tab order");
    layoutsCommand->add_flag("--paper-only", layouts->paperOnly,
                             "Only the layouts that have a paper size");
    AddCollectionOption(*layoutsCommand, *layouts);
    layoutsCommand->add_flag("--json", layouts->json, "One JSON array on stdout");
    layoutsCommand->callback([layouts] {
        EndWith(RunReportingErrors([&] {
            PwDbDatabase drawing(false, true);
            LodeQDBUtil::ReadFileToDatabase(FullPath(layouts->file), drawing, true, false);
            PrintLayouts(LodeQDBUtil::Layout::GetPlwLayoutInfoList(
                             drawing, layouts->sort, layouts->paperOnly,
                             CollectionNames().at(layouts->collection)),
                         layouts->json);
            return ExitSuccess;
        }));
    });

    auto settings = std::make_shared<ContentsOptions>();
    CLI::App* settingsCommand = app.add_subcommand(
        "plotsettings", "The named plot settings of a drawing: model or paper, name");
    settingsCommand->add_option("file", settings->file, "Drawing file (.plw or .plx)")->required();
    AddCollectionOption(*settingsCommand, *settings);
    settingsCommand->add_flag("--json", settings->json, "One JSON array on stdout");
    settingsCommand->callback([settings] {
        EndWith(RunReportingErrors([&] {
            PwDbDatabase drawing(false, true);
            LodeQDBUtil::ReadFileToDatabase(FullPath(settings->file), drawing, true, false);
            PrintPlotSettings(LodeQDBUtil::Layout::GetPlotSettingsInfoList(
                                  drawing, CollectionNames().at(settings->collection)),
                              settings->json);
            return ExitSuccess;
        }));
    });
}

}  // namespace lodeqdb::cli
