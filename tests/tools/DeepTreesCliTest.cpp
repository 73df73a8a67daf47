// The client's walks on a chain of 100,000 drawings and one of 20,000 design files: every
// record printed, exit 0; and a walk that stops early says so and exits 3.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "CliRunner.h"
#include "support/ReferenceTrees.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>

namespace {

#ifdef LODEQDB_SANITIZED
constexpr int kDrawingChain = 20000;
#else
constexpr int kDrawingChain = 100000;
#endif

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;

class DeepTreesCli : public lodeqdbtest::TempFolderTest {
  protected:
    DeepTreesCli() : TempFolderTest("lodeqdb-cli-deep") {}
    std::string File(const std::string& name) const { return folder + "/" + name; }
};

TEST_F(DeepTreesCli, AChainOf100000DrawingsThroughChildrenTreeAndParents) {
    lodeqdbtest::WriteReferenceChain(folder, kDrawingChain);
    auto result = RunCli({"children", "--json", File("d0.plw")}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(nlohmann::json::parse(result.out).size(), 1u);
    result = RunCli({"tree", "--json", File("d0.plw")}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto all = nlohmann::json::parse(result.out);
    ASSERT_EQ(all.size(), static_cast<size_t>(kDrawingChain - 1));
    EXPECT_EQ(all.back()["name"], File("d" + std::to_string(kDrawingChain - 1) + ".plw"));
    result = RunCli({"parents", "--json", File("d0.plw"),
                     File("d" + std::to_string(kDrawingChain - 1) + ".plw")},
                    folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto parents = nlohmann::json::parse(result.out);
    ASSERT_EQ(parents.size(), 1u);
    EXPECT_EQ(parents[0]["name"], File("d" + std::to_string(kDrawingChain - 2) + ".plw"));
}

// Deeper than 32 levels the tree writes depths as numbers instead of drawing bars.
TEST_F(DeepTreesCli, DeepLevelsOfTheTreeAreNumbered) {
    lodeqdbtest::WriteReferenceChain(folder, 40);
    const auto result = RunCli({"tree", File("d0.plw")}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 40u);
    EXPECT_EQ(lines[0], "d0.plw");
    EXPECT_EQ(lines[1], "└── d1.plw  drawing, found");
    EXPECT_EQ(lines[2], "    └── d2.plw  drawing, found");
    EXPECT_EQ(lines[33], "[depth 33] └── d33.plw  drawing, found");
    EXPECT_EQ(lines[39], "[depth 39] └── d39.plw  drawing, found");
}

TEST_F(DeepTreesCli, AChainOf20000DesignFilesThroughTreeAndParents) {
    constexpr int kChain = 20000;
    lodeqdbtest::WriteDesignFileChain(folder, kChain);
    auto result = RunCli({"tree", "--dgn", "--json", File("root.plw")}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(nlohmann::json::parse(result.out).size(), static_cast<size_t>(kChain));
    result = RunCli(
        {"parents", "--json", File("root.plw"), File("g" + std::to_string(kChain - 1) + ".dgn")},
        folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(nlohmann::json::parse(result.out).size(), 1u);
}

// A design file that isn't there, below a DGN underlay and before a PDF: the list printed is
// what was found, stderr says where and why the walk stopped, and the exit code is 3.
TEST_F(DeepTreesCli, AWalkThatStopsEarlySaysSoAndExitsWithThree) {
    auto root = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*root, PwDbDgnDefinition::desc(), u"D",
                                                   u"missing.dgn", u""),
              Plotwright::StatusOk);
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*root, PwDbPdfDefinition::desc(), u"P",
                                                   u"plan.pdf", u""),
              Plotwright::StatusOk);
    ASSERT_EQ(root->saveAs(Path("a.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
              Plotwright::StatusOk);
    auto result = RunCli({"tree", "--dgn", "--json", File("a.plw")}, folder);
    EXPECT_EQ(result.exitCode, 3) << result.err;
    EXPECT_EQ(nlohmann::json::parse(result.out).size(), 1u) << "the design file, not the PDF";
    EXPECT_NE(result.err.find("incomplete"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find(File("missing.dgn")), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("NotFound (code 102)"), std::string::npos) << result.err;
    result = RunCli({"parents", File("a.plw"), File("plan.pdf")}, folder);
    EXPECT_EQ(result.exitCode, 3) << result.err;
    // Without entering design files the walk is whole.
    EXPECT_EQ(RunCli({"tree", "--json", File("a.plw")}, folder).exitCode, 0);
    for (const char* command : {"tree", "parents"}) {
        const auto help = RunCli({command, "--help"}, folder);
        EXPECT_NE(help.out.find("3 the walk stopped early"), std::string::npos) << command;
    }
}

}  // namespace
