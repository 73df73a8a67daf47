// `lodeqdb children`, `tree` and `parents` end to end on a tree of drawings the toolkit wrote.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CliRunner.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>

namespace {

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;
using lodeqdbclitest::TableRows;
using Rows = std::vector<std::vector<std::string>>;

class DependencyCommands : public lodeqdbtest::TempFolderTest {
  protected:
    DependencyCommands() : TempFolderTest("lodeqdb-cli-deps") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        ASSERT_EQ(system(("mkdir -p '" + folder + "/lib'").c_str()), 0);
        Save("lib/d.plw", {});
        Save("b.plw", {u"lib\\d.plw"});
        Save("c.plw", {u"lib/d.plw", u"gone.plw"});
        auto a = PwDbAuthoring::createDrawing();
        ASSERT_EQ(PwDbAuthoring::addXref(*a, u"B", u"b.plw"), Plotwright::StatusOk);
        ASSERT_EQ(PwDbAuthoring::addXref(*a, u"C", u"c.plw"), Plotwright::StatusOk);
        PwDbObjectId image;
        ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*a, u"P", u"photo.png", &image),
                  Plotwright::StatusOk);
        ASSERT_EQ(PwDbAuthoring::addRasterImage(*a, a->modelSpaceId(), image, {}, 1, 1),
                  Plotwright::StatusOk);
        ASSERT_EQ(a->saveAs(Path("a.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusOk);
    }
    void Save(const std::string& name, const std::vector<wstring>& references) {
        auto drawing = PwDbAuthoring::createDrawing();
        int n = 0;
        for (const wstring& path : references)
            ASSERT_EQ(PwDbAuthoring::addXref(
                          *drawing, std::u16string{u'R', static_cast<char16_t>(u'0' + n++)}, path),
                      Plotwright::StatusOk);
        ASSERT_EQ(drawing->saveAs(Path(name).c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusOk);
    }
    std::string File(const std::string& name) const { return folder + "/" + name; }
};

TEST_F(DependencyCommands, ChildrenAreOneLineEach) {
    const auto result = RunCli({"children", File("a.plw")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(TableRows(result.out), (Rows{{"KIND", "REFERENCE", "FILE"},
                                           {"drawing", "found", File("b.plw")},
                                           {"drawing", "found", File("c.plw")},
                                           {"image", "not a reference", File("photo.png")}}));
}

TEST_F(DependencyCommands, TheTreeAsJsonIsParsedRecordByRecord) {
    const auto result = RunCli({"tree", File("a.plw"), "--json"}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto records = nlohmann::json::parse(result.out);
    ASSERT_TRUE(records.is_array());
    std::vector<std::string> names;
    for (const auto& record : records) names.push_back(record["name"]);
    EXPECT_EQ(names, (std::vector<std::string>{File("b.plw"), File("lib/d.plw"), File("c.plw"),
                                               File("gone.plw"), File("photo.png")}));
    EXPECT_EQ(records[0]["type"], 1);
    EXPECT_EQ(records[0]["typeName"], "Plw");
    EXPECT_EQ(records[0]["status"], 1);
    EXPECT_GT(records[0]["refId"].get<uint64_t>(), 0u);
    EXPECT_EQ(records[3]["status"], 4);
    EXPECT_EQ(records[4]["typeName"], "Image");
}

TEST_F(DependencyCommands, ParentsOfATargetAreListed) {
    auto result = RunCli({"parents", File("a.plw"), File("lib/d.plw"), "--json"}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto records = nlohmann::json::parse(result.out);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0]["name"], File("b.plw"));
    EXPECT_EQ(records[1]["name"], File("c.plw"));
    result = RunCli({"parents", File("a.plw"), File("b.plw"), File("photo.png")}, folder);
    EXPECT_EQ(TableRows(result.out),
              (Rows{{"KIND", "REFERENCE", "FILE"}, {"drawing", "found", File("a.plw")}}));
}

TEST_F(DependencyCommands, FailuresAndUsage) {
    auto result = RunCli({"tree", File("missing.plw")}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("NotFound (code"), std::string::npos) << result.err;
    EXPECT_EQ(RunCli({"children"}, folder).exitCode, 2);
    EXPECT_EQ(RunCli({"parents", File("a.plw")}, folder).exitCode, 2);
    for (const char* command : {"children", "tree", "parents"})
        EXPECT_EQ(RunCli({command, "--help"}, folder).exitCode, 0) << command;
}

}  // namespace

namespace {

class RelativeArguments : public lodeqdbtest::TempFolderTest {
  protected:
    RelativeArguments() : TempFolderTest("lodeqdb-cli-relative") {}
};

TEST_F(RelativeArguments, FilesGivenRelativeToTheWorkingDirectoryAreAskedByFullPath) {
    auto result = RunCli({"sample", folder + "/p"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    // Run from the folder itself, with names relative to it.
    const std::string command = "cd '" + folder + "' && '" + std::string(LODEQDB_CLI) +
                                "' parents p/site.plw p/blocks/title.plw > out.txt";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(TableRows(Read("out.txt")),
              (Rows{{"KIND", "REFERENCE", "FILE"},
                    {"drawing", "found", folder + "/p/site.plw"},
                    {"drawing", "found", folder + "/p/floors/ground.plw"}}));
    const std::string tree = "cd '" + folder + "' && '" + std::string(LODEQDB_CLI) +
                             "' children p/site.plw > children.txt";
    ASSERT_EQ(std::system(tree.c_str()), 0);
    const auto rows = TableRows(Read("children.txt"));
    ASSERT_GT(rows.size(), 1u);
    for (size_t row = 1; row < rows.size(); ++row)
        EXPECT_EQ(rows[row].back().rfind(folder + "/p/", 0), 0u) << rows[row].back();
}

}  // namespace
