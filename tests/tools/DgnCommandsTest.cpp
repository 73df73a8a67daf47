// `lodeqdb dgn-models`, `dgn-refs` and `dgn-convert` end to end on design files written by the
// DGN writer.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "CliRunner.h"
#include "support/TempFolderTest.h"
#include "tools/dgnwriter/DgnV7Writer.h"

namespace {

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;
using lodeqdbclitest::RunCliAsUser;

class DgnCommands : public lodeqdbtest::TempFolderTest {
  protected:
    DgnCommands() : TempFolderTest("lodeqdb-cli-dgn") {}

    // site.dgn: two lines, a text, a cell, an attachment of survey.dgn (there) and one of
    // gone.dgn (not there), and a deleted line.
    void SetUp() override {
        TempFolderTest::SetUp();
        ::setenv("LODEQDB_ROOT", (folder + "/root").c_str(), 1);
        DgnWriter::DgnV7Writer survey(false);
        survey.addLine(1, {0, 0, 0}, {10, 10, 0});
        ASSERT_TRUE(survey.save(File("survey.dgn")));
        DgnWriter::DgnV7Writer site(false);
        site.addLine(10, {0, 0, 0}, {10000, 0, 0});
        site.addLine(10, {0, 0, 0}, {0, 10000, 0});
        site.addText(2, {0, 0, 0}, "SITE", 2000);
        site.beginCell("TREE", {500, 500, 0});
        site.addEllipse(1, 500, 500, 0, 200, 200, 0);
        site.endComplex();
        DgnWriter::Attachment attachment;
        attachment.fileName = "survey.dgn";
        surveyRef = site.addAttachment(attachment);
        attachment.fileName = "gone.dgn";
        attachment.fileNumber = 2;
        site.addAttachment(attachment);
        site.markDeleted(site.addLine(10, {0, 0, 0}, {1, 1, 0}));
        ASSERT_TRUE(site.save(File("site.dgn")));
    }
    void TearDown() override {
        ::unsetenv("LODEQDB_ROOT");
        TempFolderTest::TearDown();
    }
    std::string File(const std::string& name) const { return folder + "/" + name; }

    uint32_t surveyRef = 0;
};

TEST_F(DgnCommands, ModelsAreOneNameALine) {
    const auto result = RunCli({"dgn-models", File("site.dgn")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Lines(result.out), std::vector<std::string>{"Default"});
}

TEST_F(DgnCommands, ReferencesArePrintedAsDependencyRecords) {
    auto result = RunCli({"dgn-refs", File("site.dgn")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(lodeqdbclitest::TableRows(result.out),
              (std::vector<std::vector<std::string>>{
                  {"KIND", "REFERENCE", "FILE"},
                  {"DGN design file", "not a reference", File("survey.dgn")},
                  {"unknown kind", "not a reference", File("gone.dgn")}}));
    result = RunCli({"dgn-refs", File("site.dgn"), "--json"}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto records = nlohmann::json::parse(result.out);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0]["name"], File("survey.dgn"));
    EXPECT_EQ(records[0]["typeName"], "Dgn");
    EXPECT_EQ(records[0]["status"], 0);
    EXPECT_EQ(records[0]["refId"], surveyRef);
    EXPECT_EQ(records[1]["name"], File("gone.dgn"));
}

// People read counts that say what they count, and element types by their names.
TEST_F(DgnCommands, ConvertSaysInWordsWhatBecameWhat) {
    const auto result = RunCli({"dgn-convert", File("site.dgn"), File("words.plw")}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto lines = Lines(result.out);
    EXPECT_NE(std::find(lines.begin(), lines.end(), "type 3 (line): 2 elements became PwDbLine"),
              lines.end())
        << result.out;
    EXPECT_NE(std::find(lines.begin(), lines.end(), "type 17 (text): 1 element became PwDbText"),
              lines.end())
        << result.out;
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "written " + File("words.plw"));
}

TEST_F(DgnCommands, ConvertReportsWhatBecameWhatAndSaves) {
    auto result = RunCli({"dgn-convert", File("site.dgn"), File("site.plw"), "--json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto report = nlohmann::json::parse(result.out);
    EXPECT_EQ(report["translated"]["3"], 2) << "the deleted line isn't counted";
    EXPECT_EQ(report["translated"]["17"], 1);
    EXPECT_EQ(report["translated"]["2"], 1);
    EXPECT_EQ(report["translated"]["15"], 1);
    EXPECT_EQ(report["translated"]["5"], 2);
    EXPECT_TRUE(report["skipped"].empty());
    // The drawing is there and refers to what the design file attached.
    result = RunCli({"children", File("site.plw"), "--json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto children = nlohmann::json::parse(result.out);
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[0]["name"], File("survey.dgn"));
    EXPECT_EQ(children[0]["typeName"], "Dgn");
    // The settings file was made under the root folder.
    EXPECT_EQ(Read("root/Support/DgnSetups.ini"), "[IMPORTSECTION]\nIsMasterUnits=1\n");
}

TEST_F(DgnCommands, ConvertNamesTheModelExactly) {
    auto result =
        RunCli({"dgn-convert", File("site.dgn"), File("a.plx"), "--model", "Default"}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Lines(result.out).back(), "written " + File("a.plx"));
    result = RunCli({"dgn-convert", File("site.dgn"), File("b.plw"), "--model", "default"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("NotFound"), std::string::npos) << result.err;
}

// A design file the user may not read is a security error, not one of an unknown format;
// a missing one is not found, and a pipe is refused without waiting for a writer.
TEST_F(DgnCommands, UnreadableMissingAndNonRegularFilesSayWhy) {
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::chmod(File("site.dgn").c_str(), 0), 0);
    ASSERT_EQ(::mkfifo(File("pipe.dgn").c_str(), 0644), 0);
    constexpr unsigned kNobody = 65534;
    for (const char* command : {"dgn-models", "dgn-refs"}) {
        // Root reads every file; an unprivileged user is refused as users are.
        auto result = ::geteuid() == 0 ? RunCliAsUser(kNobody, {command, File("site.dgn")}, folder)
                                       : RunCli({command, File("site.dgn")}, folder);
        EXPECT_EQ(result.exitCode, 1) << command;
        EXPECT_NE(result.err.find("SecurityError (code 104)"), std::string::npos) << result.err;
        result = RunCli({command, File("missing.dgn")}, folder);
        EXPECT_NE(result.err.find("NotFound (code 102)"), std::string::npos) << result.err;
        result = RunCli({command, File("pipe.dgn")}, folder);
        EXPECT_EQ(result.exitCode, 1) << command;
        EXPECT_NE(result.err.find("ReadError (code 101)"), std::string::npos) << result.err;
    }
}

TEST_F(DgnCommands, FailuresAndUsage) {
    Write("notes.dgn", "not a design file");
    auto result = RunCli({"dgn-refs", File("missing.dgn")}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("NotFound"), std::string::npos) << result.err;
    result = RunCli({"dgn-models", File("notes.dgn")}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("InvalidFormat"), std::string::npos) << result.err;
    EXPECT_EQ(RunCli({"dgn-convert", File("site.dgn"), File("out.txt")}, folder).exitCode, 2);
    EXPECT_EQ(RunCli({"dgn-convert", File("site.dgn")}, folder).exitCode, 2);
    for (const char* command : {"dgn-models", "dgn-refs", "dgn-convert"})
        EXPECT_EQ(RunCli({command, "--help"}, folder).exitCode, 0) << command;
}

}  // namespace
