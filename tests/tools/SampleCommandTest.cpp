// `lodeqdb sample` writes a project on which the dependency subcommands show the main job.
#include <gtest/gtest.h>

#include <algorithm>

#include <map>
#include <nlohmann/json.hpp>

#include "CliRunner.h"
#include <lodeqdb/lodeutil/Utf.h>
#include "support/DrawingReadBack.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace {

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;

class SampleCommand : public lodeqdbtest::TempFolderTest {
  protected:
    SampleCommand() : TempFolderTest("lodeqdb-cli-sample") {}
};

TEST_F(SampleCommand, TheSampleTreeHasEveryKindOfDependency) {
    const std::string project = folder + "/project";
    auto result = RunCli({"sample", project}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::string root = Lines(result.out).back();
    EXPECT_EQ(root, project + "/site.plw");

    result = RunCli({"tree", root, "--json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    std::map<std::string, int> statuses;
    std::map<std::string, std::string> kinds;
    for (const auto& record : nlohmann::json::parse(result.out)) {
        statuses[record["name"]] = record["status"];
        kinds[record["name"]] = record["typeName"];
    }
    // Three levels deep, a shared drawing listed once, a cycle cut, a missing file listed.
    EXPECT_EQ(statuses.at(project + "/floors/furniture/chairs.plw"), 1);
    EXPECT_EQ(statuses.at(project + "/blocks/title.plw"), 1);
    EXPECT_EQ(statuses.at(project + "/loop/b.plw"), 1);
    EXPECT_EQ(statuses.at(project + "/missing/old.plw"), 4);
    EXPECT_EQ(kinds.at(project + "/images/photo.png"), "Image");
    EXPECT_EQ(kinds.at(project + "/docs/plan.pdf"), "Pdf");
    EXPECT_EQ(kinds.at(project + "/survey/site.dgn"), "Dgn");
    EXPECT_EQ(statuses.size(), 10u);

    // Following design files, the one the sample's design file attaches comes right after it.
    result = RunCli({"tree", root, "--dgn", "--flat"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto rows = lodeqdbclitest::TableRows(result.out);
    ASSERT_EQ(rows.size(), 12u);
    using Row = std::vector<std::string>;
    const auto site =
        std::find(rows.begin(), rows.end(),
                  Row{"DGN design file", "not a reference", project + "/survey/site.dgn"});
    ASSERT_NE(site, rows.end());
    ASSERT_NE(site + 1, rows.end());
    EXPECT_EQ(*(site + 1),
              (Row{"DGN design file", "not a reference", project + "/survey/terrain.dgn"}));
    // And the design file itself can be asked.
    result = RunCli({"dgn-refs", project + "/survey/site.dgn"}, folder);
    EXPECT_EQ(lodeqdbclitest::TableRows(result.out),
              (std::vector<Row>{
                  {"KIND", "REFERENCE", "FILE"},
                  {"DGN design file", "not a reference", project + "/survey/terrain.dgn"}}));

    // The exchange copy beside the root has the same children.
    const auto native = RunCli({"children", root}, folder).out;
    EXPECT_EQ(RunCli({"children", project + "/site.plx"}, folder).out, native);
    // Who refers to the shared title block: the root and the ground floor.
    result = RunCli({"parents", root, project + "/blocks/title.plw"}, folder);
    EXPECT_EQ(lodeqdbclitest::TableRows(result.out),
              (std::vector<Row>{{"KIND", "REFERENCE", "FILE"},
                                {"drawing", "found", root},
                                {"drawing", "found", project + "/floors/ground.plw"}}));
}

// The root holds a table of rooms, made with the authoring API, whose title is in a text
// style of its own.
TEST_F(SampleCommand, TheRootHoldsATable) {
    const std::string project = folder + "/project";
    ASSERT_EQ(RunCli({"sample", project}, folder).exitCode, 0);
    PwDbDatabase root(false, true);
    ASSERT_EQ(root.readPlwFile(LodeUtil::Utf16FromNative(project + "/site.plw").c_str(),
                               PwDbDatabase::OpenModeAlternate),
              Plotwright::StatusOk);
    int tables = 0;
    for (const PwDbObjectId id : lodeqdbtest::Entities(root.modelSpaceId())) {
        PwDbObjectPointer<PwDbTable> table(id, PwDb::OpenForRead);
        if (table.openStatus() != Plotwright::StatusOk) continue;
        ++tables;
        EXPECT_EQ(table->rowCount(), 4u);
        EXPECT_EQ(table->columnCount(), 3u);
        EXPECT_EQ(table->rowKind(0), static_cast<unsigned>(PwDb::RowKindTitle));
        PwString text;
        ASSERT_EQ(table->getCellText(3, 1, 0, text), Plotwright::StatusOk);
        EXPECT_EQ(text.toWString(), u"Hall");
        EXPECT_NE(table->cellTextStyle(0, 0), root.standardTextStyleId());
    }
    EXPECT_EQ(tables, 1);
}

// The tree as people read it: depth by indentation, names relative to the root's folder, the
// cycle and the shared title block visible where they are met again, the missing drawing
// said to be missing.
TEST_F(SampleCommand, TheTreeIsDrawnAsATree) {
    const std::string project = folder + "/project";
    ASSERT_EQ(RunCli({"sample", project}, folder).exitCode, 0);
    const auto result = RunCli({"tree", "--dgn", project + "/site.plw"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Lines(result.out), (std::vector<std::string>{
                                     "site.plw",
                                     "├── floors/ground.plw  drawing, found",
                                     "│   ├── blocks/title.plw  drawing, found",
                                     "│   └── floors/upper.plw  drawing, found",
                                     "│       └── floors/furniture/chairs.plw  drawing, found",
                                     "├── blocks/title.plw  (already listed above)",
                                     "├── loop/a.plw  drawing, found",
                                     "│   └── loop/b.plw  drawing, found",
                                     "│       └── loop/a.plw  (already listed above)",
                                     "├── missing/old.plw  drawing, missing",
                                     "├── images/photo.png  image",
                                     "├── survey/site.dgn  DGN design file",
                                     "│   └── survey/terrain.dgn  DGN design file",
                                     "└── docs/plan.pdf  PDF",
                                 }));
}

TEST_F(SampleCommand, AFolderThatCantBeMadeIsAFailure) {
    Write("file", "in the way");
    const auto result = RunCli({"sample", folder + "/file/project"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("can't make"), std::string::npos) << result.err;
    EXPECT_EQ(RunCli({"sample"}, folder).exitCode, 2);
}

// An empty folder name would put the project at the file system's root.
TEST_F(SampleCommand, AnEmptyFolderNameIsAUsageError) {
    const auto result = RunCli({"sample", ""}, folder);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.err.find("DIR must not be empty"), std::string::npos) << result.err;
    EXPECT_EQ(result.out, "");
}

}  // namespace
