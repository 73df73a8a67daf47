// `lodeqdb layers`, `layouts` and `plotsettings` end to end on the sample project, in both
// formats, as text lines and as parsed JSON.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CliRunner.h"
#include "support/TempFolderTest.h"

namespace {

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;
using nlohmann::json;

class ContentsCommands : public lodeqdbtest::TempFolderTest,
                         public testing::WithParamInterface<const char*> {
  protected:
    ContentsCommands() : TempFolderTest("lodeqdb-cli-contents") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        const auto result = RunCli({"sample", folder + "/p"}, folder);
        ASSERT_EQ(result.exitCode, 0) << result.err;
    }
    // The sample's root drawing in the format under test.
    std::string Root() const { return folder + "/p/site." + GetParam(); }

    json Json(const std::vector<std::string>& arguments) {
        const auto result = RunCli(arguments, folder);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return json::parse(result.out);
    }
    std::vector<std::string> Names(const std::vector<std::string>& arguments) {
        std::vector<std::string> names;
        for (const auto& entry : Json(arguments)) names.push_back(entry.at("name"));
        return names;
    }
};

TEST_P(ContentsCommands, LayersAsJsonCarryEveryFlag) {
    const json layers = Json({"layers", Root(), "--json"});
    ASSERT_EQ(layers.size(), 5u);
    const std::vector<std::string> names = {"0", "Walls", "Furniture", "Annotations", "Existing"};
    for (size_t i = 0; i < names.size(); ++i) EXPECT_EQ(layers[i].at("name"), names[i]);
    for (const auto& layer : layers) {
        const std::string name = layer.at("name");
        EXPECT_EQ(layer.at("isInUse"), name == "0" || name == "Walls") << name;
        EXPECT_EQ(layer.at("isFrozen"), name == "Furniture") << name;
        EXPECT_EQ(layer.at("isLocked"), name == "Annotations") << name;
        EXPECT_EQ(layer.at("isOff"), name == "Annotations") << name;
        EXPECT_EQ(layer.at("isHidden"), name == "Existing") << name;
        EXPECT_EQ(layer.at("isReconciled"), name == "Existing") << name;
    }
    EXPECT_EQ(layers[2].at("description"), "Hidden furniture");
    EXPECT_EQ(layers[1].at("description"), "");
}

TEST_P(ContentsCommands, LayersAsTextAreOneLineEachUnderHeadings) {
    const auto result = RunCli({"layers", Root()}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Lines(result.out), (std::vector<std::string>{
                                     "LAYER        FLAGS               DESCRIPTION",
                                     "0            in use",
                                     "Walls        in use",
                                     "Furniture    frozen              Hidden furniture",
                                     "Annotations  locked, off         Notes, locked and off",
                                     "Existing     hidden, reconciled",
                                 }));
}

TEST_P(ContentsCommands, LayoutsInDictionaryOrderOrSorted) {
    const json layouts = Json({"layouts", Root(), "--json"});
    ASSERT_EQ(layouts.size(), 4u);
    EXPECT_EQ(layouts[0], json({{"name", "Model"},
                                {"hasPaperSize", false},
                                {"collection", "model"},
                                {"tabOrder", 0}}));
    EXPECT_EQ(layouts[2], json({{"name", "Sketch"},
                                {"hasPaperSize", false},
                                {"collection", "paper"},
                                {"tabOrder", 3}}));
    EXPECT_EQ(Names({"layouts", Root(), "--json"}),
              (std::vector<std::string>{"Model", "Layout1", "Sketch", "Plan A1"}));
    EXPECT_EQ(Names({"layouts", Root(), "--sort", "--json"}),
              (std::vector<std::string>{"Model", "Layout1", "Plan A1", "Sketch"}));
}

TEST_P(ContentsCommands, LayoutFilters) {
    EXPECT_EQ(Names({"layouts", Root(), "--paper-only", "--json"}),
              (std::vector<std::string>{"Layout1", "Plan A1"}));
    EXPECT_EQ(Names({"layouts", Root(), "--collection", "model", "--json"}),
              (std::vector<std::string>{"Model"}));
    EXPECT_EQ(Names({"layouts", Root(), "--collection", "paper", "--json"}),
              (std::vector<std::string>{"Layout1", "Sketch", "Plan A1"}));
    EXPECT_EQ(Names({"layouts", Root(), "--collection", "all", "--json"}).size(), 4u);
    EXPECT_TRUE(
        Json({"layouts", Root(), "--collection", "model", "--paper-only", "--json"}).empty());
    const auto text = RunCli({"layouts", Root(), "--sort", "--collection", "paper"}, folder);
    EXPECT_EQ(Lines(text.out),
              (std::vector<std::string>{
                  "TAB  SPACE  PAPER SIZE  LAYOUT", "1    paper  set         Layout1",
                  "2    paper  set         Plan A1", "3    paper  none        Sketch"}));
    const auto none = RunCli({"layouts", Root(), "--collection", "model", "--paper-only"}, folder);
    EXPECT_EQ(Lines(none.out),
              (std::vector<std::string>{"TAB  SPACE  PAPER SIZE  LAYOUT", "(none)"}));
}

TEST_P(ContentsCommands, PlotSettingsByCollection) {
    EXPECT_EQ(Json({"plotsettings", Root(), "--json"}),
              json::parse(R"([{"name":"Draft A3","collection":"paper"},)"
                          R"({"name":"Model check","collection":"model"}])"));
    EXPECT_EQ(Names({"plotsettings", Root(), "--collection", "model", "--json"}),
              (std::vector<std::string>{"Model check"}));
    EXPECT_EQ(Names({"plotsettings", Root(), "--collection", "paper", "--json"}),
              (std::vector<std::string>{"Draft A3"}));
    const auto text = RunCli({"plotsettings", Root()}, folder);
    EXPECT_EQ(Lines(text.out), (std::vector<std::string>{"FOR    PLOT SETTINGS", "paper  Draft A3",
                                                         "model  Model check"}));
}

INSTANTIATE_TEST_SUITE_P(BothFormats, ContentsCommands, testing::Values("plw", "plx"));

class ContentsCommandFailures : public lodeqdbtest::TempFolderTest {
  protected:
    ContentsCommandFailures() : TempFolderTest("lodeqdb-cli-contents") {}
};

TEST_F(ContentsCommandFailures, FailuresAndUsage) {
    for (const char* command : {"layers", "layouts", "plotsettings"}) {
        auto result = RunCli({command, folder + "/missing.plw"}, folder);
        EXPECT_EQ(result.exitCode, 1) << command;
        EXPECT_NE(result.err.find("NotFound (code 102)"), std::string::npos) << result.err;
        EXPECT_TRUE(result.out.empty()) << command;

        Write("notes.txt", "text");
        result = RunCli({command, folder + "/notes.txt"}, folder);
        EXPECT_EQ(result.exitCode, 1) << command;
        EXPECT_NE(result.err.find("ReadError (code 101)"), std::string::npos) << result.err;

        EXPECT_EQ(RunCli({command}, folder).exitCode, 2) << command;
        const auto help = RunCli({command, "--help"}, folder);
        EXPECT_EQ(help.exitCode, 0) << command;
        EXPECT_NE(help.out.find("Usage"), std::string::npos) << command;
    }
    Write("a.plw", "x");
    EXPECT_EQ(RunCli({"layouts", folder + "/a.plw", "--collection", "both"}, folder).exitCode, 2);
    EXPECT_EQ(RunCli({"plotsettings", folder + "/a.plw", "--collection", "1"}, folder).exitCode, 2);
    EXPECT_EQ(RunCli({"layers", folder + "/a.plw", "--sort"}, folder).exitCode, 2);
}

TEST_F(ContentsCommandFailures, ADamagedDrawingIsReportedAndLeftAsItWas) {
    Write("damaged.plw", "PLW but not really");
    const auto result = RunCli({"layers", folder + "/damaged.plw"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("lodeqdb: "), std::string::npos) << result.err;
    EXPECT_EQ(Read("damaged.plw"), "PLW but not really");
}

}  // namespace
