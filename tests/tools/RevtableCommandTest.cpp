// `lodeqdb revtable show|update|headers`, run as users run it: on a drawing without a revision
// block (imported from the template, placed, filled) and on one with it, with the JSON parsed;
// failures that leave the file byte for byte as it was; usage errors; the installed client
// finding its template.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "CliRunner.h"
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/revisionblock/RevisionBlockName.h>
#include "support/DrawingReadBack.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>

namespace {

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;
using nlohmann::json;

const std::vector<std::string> kColumns = {"--columns", "REV,DATE,DESCRIPTION,BY"};

class RevtableCli : public lodeqdbtest::TempFolderTest {
  protected:
    RevtableCli() : TempFolderTest("lodeqdb-cli-revtable") {}

    std::string File(const std::string& name) const { return folder + "/" + name; }

    /// An empty drawing saved as `name` (.plw or .plx).
    std::string EmptyDrawing(const std::string& name) {
        auto drawing = PwDbAuthoring::createDrawing();
        PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0}, {10, 10, 0});
        return Saved(*drawing, name);
    }
    /// A drawing whose placed revision block holds `design`'s table, saved as `name`.
    std::string DrawingWith(const PwDbAuthoring::TableDesign& design, const std::string& name) {
        auto drawing = PwDbAuthoring::createDrawing();
        PwDbObjectId block;
        EXPECT_EQ(PwDbAuthoring::addBlock(*drawing, RevisionBlock::RevisionBlockName, &block),
                  Plotwright::StatusOk);
        if (!design.rows.empty())
            EXPECT_EQ(PwDbAuthoring::addTable(*drawing, block, design), Plotwright::StatusOk);
        else
            EXPECT_EQ(PwDbAuthoring::addCircle(*drawing, block, {0, 0, 0}, 1),
                      Plotwright::StatusOk);
        EXPECT_EQ(
            PwDbAuthoring::addBlockReference(*drawing, drawing->modelSpaceId(), block, {0, 0, 0}),
            Plotwright::StatusOk);
        return Saved(*drawing, name);
    }
    std::string Saved(PwDbDatabase& drawing, const std::string& name) {
        const std::string path = File(name);
        const wstring wide = LodeUtil::Utf16FromUtf8(path);
        if (path.ends_with(".plx"))
            EXPECT_EQ(drawing.plxOut(wide.c_str(), 16, PwDb::PwDbPlwVersionCurrent),
                      Plotwright::StatusOk);
        else
            EXPECT_EQ(drawing.saveAs(wide.c_str(), false, PwDb::PwDbPlwVersionCurrent),
                      Plotwright::StatusOk);
        return path;
    }
    std::string Rows(const std::string& name, const json& rows) {
        Write(name, rows.dump());
        return File(name);
    }
    static PwDbAuthoring::TableDesign Design(std::vector<std::vector<std::u16string>> data) {
        PwDbAuthoring::TableDesign design;
        design.columnWidths = {15, 25, 80, 20};
        design.rows.push_back({PwDb::RowKindTitle, 10.0, {u"REVISIONS"}});
        design.rows.push_back({PwDb::RowKindHeader, 8.0, {u"REV", u"DATE", u"DESCRIPTION", u"BY"}});
        for (const auto& row : data) {
            PwDbAuthoring::TableRowDesign made{PwDb::RowKindData, 8.0, {}};
            for (const auto& text : row) made.cells.emplace_back(text);
            design.rows.push_back(made);
        }
        return design;
    }
    /// The positions and scales of the revision block's references in the file `path`.
    std::vector<std::pair<PwGePoint3d, PwGeScale3d>> Placements(const std::string& path) {
        PwDbDatabase drawing(false, true);
        LodeQDBUtil::ReadFileToDatabase(LodeUtil::Utf16FromUtf8(path), drawing, true, false);
        PwDbObjectPointer<PwDbBlockTableRecord> block(
            lodeqdbtest::BlockNamed(drawing, RevisionBlock::RevisionBlockName), PwDb::OpenForRead);
        std::vector<std::pair<PwGePoint3d, PwGeScale3d>> found;
        if (!block) return found;
        PwArray<PwDbObjectId> ids;
        block->getBlockReferenceIds(ids, true, false);
        for (size_t i = 0; i < ids.length(); ++i) {
            PwDbObjectPointer<PwDbBlockReference> reference(ids.at(i), PwDb::OpenForRead);
            if (reference) found.push_back({reference->position(), reference->scaleFactors()});
        }
        return found;
    }
    json Show(const std::string& path) {
        const auto result = RunCli({"revtable", "show", path, "--json"}, folder);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return json::parse(result.out);
    }
    lodeqdbclitest::CliResult Update(const std::string& path, const std::string& rows,
                                     std::vector<std::string> more = {}) {
        std::vector<std::string> arguments = {"revtable", "update", path, "--rows",
                                              rows,       "--key",  "REV"};
        arguments.insert(arguments.end(), kColumns.begin(), kColumns.end());
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunCli(arguments, folder);
    }
};

const json kThreeRows = json::array(
    {{{"REV", "A"}, {"DATE", "2024-01-15"}, {"DESCRIPTION", "First issue"}, {"BY", "JM"}},
     {{"REV", "B"}, {"DATE", "2024-03-02"}, {"DESCRIPTION", "Stair {east}"}, {"BY", "JM"}},
     {{"REV", "C"}, {"DATE", "2024-06-20"}, {"DESCRIPTION", "Survey \\ site"}, {"BY", "AK"}}});

TEST_F(RevtableCli, ShowOfADrawingWithoutABlock) {
    const std::string drawing = EmptyDrawing("empty.plw");
    EXPECT_EQ(Show(drawing), json::parse(R"({"hasDefinition": false, "hasInstance": false,
                                              "headers": [], "rows": []})"));
    const auto result = RunCli({"revtable", "show", drawing}, folder);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(Lines(result.out), std::vector<std::string>{"revision block: none"});
}

TEST_F(RevtableCli, UpdateImportsPlacesAndFillsThenChangesOnlyWhatDiffers) {
    for (const std::string name : {"plain.plw", "plain.plx"}) {
        SCOPED_TRACE(name);
        const std::string drawing = EmptyDrawing(name);
        const std::string rows = Rows("rows.json", kThreeRows);
        auto result = Update(drawing, rows, {"--insert", "120.5,-30,2", "--json"});
        ASSERT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(json::parse(result.out), json::parse(R"({"imported": true, "inserted": true,
                                                           "changed": true, "written": true})"));
        const json shown = Show(drawing);
        EXPECT_EQ(shown["hasDefinition"], true);
        EXPECT_EQ(shown["hasInstance"], true);
        EXPECT_EQ(shown["headers"], json::parse(R"(["REV", "DATE", "DESCRIPTION", "BY"])"));
        EXPECT_EQ(shown["rows"], kThreeRows);
        const auto placements = Placements(drawing);
        ASSERT_EQ(placements.size(), 1u);
        EXPECT_EQ(placements[0].first, PwGePoint3d(120.5, -30, 0));
        EXPECT_EQ(placements[0].second, PwGeScale3d(2, 2, 2));
        // The file keeps its kind: an exchange file is text, a drawing starts with its
        // signature.
        EXPECT_EQ(Read(name).starts_with("PLOTWRIGHT EXCHANGE\n"), name.ends_with(".plx"));
        EXPECT_EQ(Read(name).starts_with("PW"), name.ends_with(".plw"));

        // The same rows again: nothing changes and nothing is written.
        const std::string before = Read(name);
        result = Update(drawing, rows, {"--json"});
        ASSERT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(json::parse(result.out), json::parse(R"({"imported": false, "inserted": false,
                                                           "changed": false, "written": false})"));
        EXPECT_EQ(Read(name), before);
        result = Update(drawing, rows);
        EXPECT_EQ(Lines(result.out),
                  (std::vector<std::string>{"the revision table already holds these rows",
                                            "nothing written"}));

        // A row reordered, one dropped, one new.
        json wanted = json::array(
            {kThreeRows[2], kThreeRows[0], {{"REV", "D"}, {"DESCRIPTION", "Doors"}, {"BY", "PL"}}});
        result = Update(drawing, Rows("next.json", wanted), {"--json"});
        ASSERT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(json::parse(result.out)["changed"], true);
        EXPECT_EQ(json::parse(result.out)["written"], true);
        wanted[2]["DATE"] = "";
        EXPECT_EQ(Show(drawing)["rows"], wanted);
        EXPECT_EQ(Placements(drawing).size(), 1u);
    }
}

TEST_F(RevtableCli, AnUpdateKeepsTheFilesFormatGeneration) {
    const std::string current = EmptyDrawing("current.plw");
    const std::string older = File("older.plw");
    ASSERT_EQ(RunCli({"save", current, older, "--format", "5"}, folder).exitCode, 0);
    const auto result = Update(older, Rows("rows.json", kThreeRows));
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto format = RunCli({"format", older, "--json"}, folder);
    ASSERT_EQ(format.exitCode, 0) << format.err;
    EXPECT_EQ(json::parse(format.out)["format"], 5);
    EXPECT_EQ(Show(older)["rows"], kThreeRows);
}

TEST_F(RevtableCli, ShowForPeopleListsTheHeadersThenOneRowALine) {
    const std::string drawing = DrawingWith(
        Design({{u"A", u"2024-01-15", u"First issue", u"JM"}, {u"B", u"", u"Doors", u"AK"}}),
        "with.plw");
    const auto result = RunCli({"revtable", "show", drawing}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(lodeqdbclitest::TableRows(result.out),
              (std::vector<std::vector<std::string>>{{"revision block: defined and placed"},
                                                     {"REV", "DATE", "DESCRIPTION", "BY"},
                                                     {"A", "2024-01-15", "First issue", "JM"},
                                                     {"B", "Doors", "AK"}}));
}

TEST_F(RevtableCli, UpdateToAnotherFileLeavesTheDrawingAlone) {
    const std::string drawing = DrawingWith(Design({{u"A", u"", u"old"}}), "source.plw");
    const std::string before = Read("source.plw");
    const auto result =
        Update(drawing, Rows("rows.json", kThreeRows), {"--output", File("copy.plx"), "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(json::parse(result.out), json::parse(R"({"imported": false, "inserted": false,
                                                       "changed": true, "written": true})"));
    EXPECT_EQ(Read("source.plw"), before);
    EXPECT_EQ(Show(File("copy.plx"))["rows"], kThreeRows);
}

TEST_F(RevtableCli, UpdateWritesTheHeadersWhenAsked) {
    const std::string drawing = EmptyDrawing("headers.plw");
    const json rows = json::array({{{"Rev", "A"}, {"Text", "First"}}});
    auto result =
        RunCli({"revtable", "update", drawing, "--rows", Rows("rows.json", rows), "--key", "Rev",
                "--columns", "Rev,Text", "--headers", "Rev,Date,Text,By", "--json"},
               folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const json shown = Show(drawing);
    EXPECT_EQ(shown["headers"], json::parse(R"(["Rev", "Date", "Text", "By"])"));
    EXPECT_EQ(shown["rows"],
              json::parse(R"([{"Rev": "A", "Date": "", "Text": "First", "By": ""}])"));
}

TEST_F(RevtableCli, HeadersWritesTheNamesOnlyWhenTheyChange) {
    const std::string drawing = DrawingWith(Design({{u"A"}}), "names.plx");
    auto result = RunCli({"revtable", "headers", drawing, "Rev", "Date", "--json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(json::parse(result.out), json::parse(R"({"changed": true, "written": true})"));
    EXPECT_EQ(Show(drawing)["headers"], json::parse(R"(["Rev", "Date", "DESCRIPTION", "BY"])"));
    const std::string before = Read("names.plx");
    result = RunCli({"revtable", "headers", drawing, "Rev", "Date"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Lines(result.out),
              (std::vector<std::string>{"the headers are already these", "nothing written"}));
    EXPECT_EQ(Read("names.plx"), before);
}

TEST_F(RevtableCli, AFailedUpdateLeavesTheFileByteForByte) {
    const std::string drawing = DrawingWith(Design({{u"A", u"", u"old"}}), "keep.plw");
    const std::string before = Read("keep.plw");
    const std::string rows = Rows("rows.json", kThreeRows);
    // A key outside the columns: code 403, with a sentence.
    auto result = RunCli(
        {"revtable", "update", drawing, "--rows", rows, "--key", "REV", "--columns", "DESCRIPTION"},
        folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("LodeException (code 403): no name of --columns"), std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("nothing was written"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find(drawing), std::string::npos) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(Read("keep.plw"), before);
    // Headers asked for with an update that then fails: nothing of either is written.
    result = RunCli({"revtable", "update", drawing, "--rows", rows, "--key", "NOPE", "--columns",
                     "REV", "--headers", "X,Y"},
                    folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(Read("keep.plw"), before);
}

TEST_F(RevtableCli, EachFailureOfTheRevisionBlockHasASentence) {
    // A block without a table: 402.
    const std::string tableless = DrawingWith(PwDbAuthoring::TableDesign(), "tableless.plw");
    const std::string before = Read("tableless.plw");
    auto result = Update(tableless, Rows("rows.json", kThreeRows));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("LodeException (code 402): the drawing's block \"lode_RevBlock\" "
                              "holds no table"),
              std::string::npos)
        << result.err;
    EXPECT_EQ(Read("tableless.plw"), before);
    result = RunCli({"revtable", "show", tableless}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("code 402"), std::string::npos) << result.err;

    // A table without a header row: RowNotFoundException.
    PwDbAuthoring::TableDesign headless = Design({{u"A"}});
    headless.rows.erase(headless.rows.begin() + 1);
    const std::string noHeader = DrawingWith(headless, "headless.plw");
    result = RunCli({"revtable", "show", noHeader, "--json"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("RowNotFoundException: the revision table has no header row"),
              std::string::npos)
        << result.err;

    // Headers for a drawing without the block: 401.
    const std::string empty = EmptyDrawing("plain.plw");
    result = RunCli({"revtable", "headers", empty, "REV"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("LodeException (code 401): the drawing has no revision block"),
              std::string::npos)
        << result.err;

    // A template that isn't there.
    result = Update(empty, Rows("rows.json", kThreeRows), {"--template", File("none.plw")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("NotFound (code 102)"), std::string::npos) << result.err;
    // A template without the block.
    result = Update(empty, Rows("rows.json", kThreeRows), {"--template", EmptyDrawing("t.plw")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("PlotwrightException (code 301, status"), std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("the drawing database refused"), std::string::npos) << result.err;
}

TEST_F(RevtableCli, AnExplicitTemplateIsUsed) {
    const std::string templateDrawing = DrawingWith(
        [] {
            PwDbAuthoring::TableDesign design;
            design.columnWidths = {10, 10};
            design.rows.push_back({PwDb::RowKindHeader, 8.0, {u"No", u"What"}});
            return design;
        }(),
        "own-template.plw");
    const std::string drawing = EmptyDrawing("own.plw");
    const json rows = json::array({{{"No", "1"}, {"What", "Made"}}});
    const auto result =
        RunCli({"revtable", "update", drawing, "--rows", Rows("rows.json", rows), "--key", "No",
                "--columns", "No,What", "--template", templateDrawing},
               folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Show(drawing)["rows"], rows);
}

TEST_F(RevtableCli, UsageErrorsExitWithTwo) {
    const std::string drawing = EmptyDrawing("u.plw");
    const std::string before = Read("u.plw");
    const std::string rows = Rows("rows.json", kThreeRows);
    Write("bad.json", "[{\"REV\": ");
    Write("object.json", "{\"REV\": \"A\"}");
    Write("number.json", "[{\"REV\": 1}]");
    Write("nested.json", "[[\"A\"]]");
    ASSERT_EQ(::mkfifo(File("pipe.json").c_str(), 0644), 0);
    const std::vector<std::vector<std::string>> wrong = {
        {"revtable"},
        {"revtable", "show"},
        {"revtable", "update", drawing, "--key", "REV", "--columns", "REV"},
        {"revtable", "update", drawing, "--rows", rows, "--columns", "REV"},
        {"revtable", "update", drawing, "--rows", rows, "--key", "REV"},
        {"revtable", "update", drawing, "--rows", File("bad.json"), "--key", "REV", "--columns",
         "REV"},
        {"revtable", "update", drawing, "--rows", File("object.json"), "--key", "REV", "--columns",
         "REV"},
        {"revtable", "update", drawing, "--rows", File("number.json"), "--key", "REV", "--columns",
         "REV"},
        {"revtable", "update", drawing, "--rows", File("nested.json"), "--key", "REV", "--columns",
         "REV"},
        {"revtable", "update", drawing, "--rows", File("missing.json"), "--key", "REV", "--columns",
         "REV"},
        {"revtable", "update", drawing, "--rows", File("pipe.json"), "--key", "REV", "--columns",
         "REV"},
        {"revtable", "update", drawing, "--rows", rows, "--key", "REV", "--columns", "REV",
         "--insert", "1,2"},
        {"revtable", "update", drawing, "--rows", rows, "--key", "REV", "--columns", "REV",
         "--insert", "1,2,0"},
        {"revtable", "update", drawing, "--rows", rows, "--key", "REV", "--columns", "REV",
         "--insert", "1,nan,1"},
        {"revtable", "update", drawing, "--rows", rows, "--key", "REV", "--columns", "REV",
         "--insert", "1,2,3,4"},
        {"revtable", "update", drawing, "--rows", rows, "--key", "REV", "--columns", "REV",
         "--output", File("out.txt")},
        {"revtable", "update", File("u.txt"), "--rows", rows, "--key", "REV", "--columns", "REV"},
        {"revtable", "headers", drawing},
    };
    for (const auto& arguments : wrong) {
        const auto result = lodeqdbclitest::RunCliWithin(20, arguments, folder);
        std::string line;
        for (const auto& argument : arguments) line += argument + " ";
        EXPECT_EQ(result.exitCode, 2) << line << "\n" << result.err;
        EXPECT_FALSE(result.err.empty()) << line;
    }
    EXPECT_EQ(Read("u.plw"), before);
}

TEST_F(RevtableCli, NoSubcommandWaitsOnAPipe) {
    ASSERT_EQ(::mkfifo(File("p.plw").c_str(), 0644), 0);
    const std::string pipe = File("p.plw");
    const std::string rows = Rows("rows.json", kThreeRows);
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"revtable", "show", pipe},
             {"revtable", "update", pipe, "--rows", rows, "--key", "REV", "--columns", "REV"},
             {"revtable", "headers", pipe, "REV"}}) {
        const auto result = lodeqdbclitest::RunCliWithin(20, arguments, folder);
        EXPECT_EQ(result.exitCode, 1) << arguments[1];
        EXPECT_NE(result.err.find(pipe), std::string::npos) << result.err;
    }
}

TEST_F(RevtableCli, EverySubcommandHasHelp) {
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"revtable", "--help"},
                                               {"revtable", "show", "--help"},
                                               {"revtable", "update", "--help"},
                                               {"revtable", "headers", "--help"}}) {
        const auto result = RunCli(arguments, folder);
        EXPECT_EQ(result.exitCode, 0);
        const bool group = arguments.size() == 2;
        EXPECT_NE(result.out.find(group ? "headers" : "--json"), std::string::npos) << result.out;
    }
    EXPECT_NE(RunCli({"revtable", "update", "--help"}, folder).out.find("--template"),
              std::string::npos);
}

TEST_F(RevtableCli, TheSamplesRootCarriesARevisionTableOfThreeRows) {
    const std::string project = File("project");
    ASSERT_EQ(RunCli({"sample", project}, folder).exitCode, 0);
    for (const std::string& root : {project + "/site.plw", project + "/site.plx"}) {
        const json shown = Show(root);
        EXPECT_EQ(shown["hasInstance"], true);
        EXPECT_EQ(shown["headers"], json::parse(R"(["REV", "DATE", "DESCRIPTION", "BY"])"));
        ASSERT_EQ(shown["rows"].size(), 3u);
        EXPECT_EQ(shown["rows"][2]["REV"], "C");
    }
}

// Installed, the client finds the template under share/lodeqdb/templates beside its bin folder.
TEST_F(RevtableCli, TheInstalledClientFindsItsTemplate) {
    const std::filesystem::path build =
        std::filesystem::path(LODEQDB_CLI).parent_path().parent_path();
    const std::string prefix = File("prefix");
    const std::string install = "cmake --install '" + build.string() + "' --prefix '" + prefix +
                                "' >'" + File("install.log") + "' 2>&1";
    ASSERT_EQ(std::system(install.c_str()), 0) << Read("install.log");
    ASSERT_TRUE(std::filesystem::exists(prefix + "/share/lodeqdb/templates/revision-block.plw"));
    const std::string drawing = EmptyDrawing("installed.plw");
    const std::string run = "'" + prefix + "/bin/lodeqdb' revtable update '" + drawing +
                            "' --rows '" + Rows("rows.json", kThreeRows) +
                            "' --key REV --columns REV,DATE,DESCRIPTION,BY --json >'" +
                            File("run.out") + "' 2>'" + File("run.err") + "'";
    ASSERT_EQ(std::system(run.c_str()), 0) << Read("run.err");
    EXPECT_EQ(json::parse(Read("run.out"))["imported"], true);
    EXPECT_EQ(Show(drawing)["rows"], kThreeRows);
}

}  // namespace
