// `lodeqdb type`, `creator` and `format` end to end on drawings the toolkit wrote.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CliRunner.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

namespace {

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;

const std::string kPlain = "made by a plain drawing application, without any add-on's marks";
const std::string kGearmark = "made by the Gearmark mechanical application";

class IdentifyCommands : public lodeqdbtest::TempFolderTest {
  protected:
    IdentifyCommands() : TempFolderTest("lodeqdb-cli-identify") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        auto plain = PwDbAuthoring::createDrawing();
        Save(*plain, "plain.plw", 33);
        Save(*plain, "old.plw", 25);
        ASSERT_EQ(plain->plxOut(Path("plain.plx").c_str(), 16, PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusOk);
        auto gear = PwDbAuthoring::createDrawing();
        ASSERT_EQ(PwDbAuthoring::addDictionaryEntry(*gear, gear->namedObjectsDictionaryId(),
                                                    u"GMD_DICT_ROOT", new PwDbDictionary),
                  Plotwright::StatusOk);
        PwDbHostApplicationServices services;
        services.setApplicationIdentity(u"{DE84900D-6D4B-7345-89E6-FB89C7CF723F}", u"Gearmark");
        PwDbHostApplicationServices* previous = pwdbSetHostApplicationServices(&services);
        Save(*gear, "gear.plw", 33);
        Save(*gear, "gear-old.plw", 22);
        pwdbSetHostApplicationServices(previous);
        Write("junk.plw", "not a drawing");
    }

    void Save(PwDbDatabase& drawing, const std::string& name, int version) {
        ASSERT_EQ(
            drawing.saveAs(Path(name).c_str(), false, static_cast<PwDb::PwDbPlwVersion>(version)),
            Plotwright::StatusOk);
    }
    std::string File(const std::string& name) const { return folder + "/" + name; }
};

TEST_F(IdentifyCommands, TypesAreListedOneLineAFile) {
    const auto result = RunCli({"type", File("plain.plw"), File("gear.plw")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], File("plain.plw") + ": 1 PlwTypePlain (" + kPlain + ")");
    EXPECT_EQ(lines[1], File("gear.plw") + ": 3 PlwTypeGearmark (" + kGearmark + ")");
}

TEST_F(IdentifyCommands, JsonLinesCarryFileTypeAndName) {
    const auto result = RunCli({"type", "--json", File("gear.plw"), File("gear-old.plw")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 2u);
    for (const std::string& line : lines) {
        const auto record = nlohmann::json::parse(line);
        EXPECT_EQ(record["type"], 3);
        EXPECT_EQ(record["typeName"], "PlwTypeGearmark");
    }
    EXPECT_EQ(nlohmann::json::parse(lines[1])["file"], File("gear-old.plw"));
}

TEST_F(IdentifyCommands, AFailingFileIsReportedAndTheOthersGoOn) {
    const auto result = RunCli(
        {"type", "--json", File("junk.plw"), File("plain.plw"), File("missing.plw")}, folder);
    EXPECT_EQ(result.exitCode, 1);
    const auto lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(nlohmann::json::parse(lines[0])["file"], File("plain.plw"));
    EXPECT_NE(result.err.find("InvalidFormat"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("NotFound"), std::string::npos) << result.err;
}

TEST_F(IdentifyCommands, HeaderAndDatabaseCanBeAskedAlone) {
    auto result = RunCli({"type", "--header", File("gear-old.plw")}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("NoAppInfo"), std::string::npos) << result.err;
    result = RunCli({"type", "--database", File("gear-old.plw"), File("plain.plx")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], File("gear-old.plw") + ": 3 PlwTypeGearmark (" + kGearmark + ")");
    EXPECT_EQ(lines[1], File("plain.plx") + ": 1 PlwTypePlain (" + kPlain + ")");
    EXPECT_EQ(RunCli({"type", "--header", "--database", File("plain.plw")}, folder).exitCode, 2);
}

TEST_F(IdentifyCommands, TheCreatorIsNamed) {
    auto result = RunCli({"creator", File("gear.plw")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, File("gear.plw") + " was last written by \"Gearmark\"\n");
    result = RunCli({"creator", "--json", File("plain.plw")}, folder);
    EXPECT_EQ(nlohmann::json::parse(result.out),
              (nlohmann::json{{"file", File("plain.plw")}, {"creator", "LodeQDB"}}));
    result = RunCli({"creator", File("gear-old.plw")}, folder);
    EXPECT_EQ(result.exitCode, 1);
}

TEST_F(IdentifyCommands, TheFormatIsNumberedAndNamed) {
    auto result = RunCli({"format", File("plain.plw")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "8 FormatCurrent (the current generation, 8 of 8)\n");
    result = RunCli({"format", "--json", File("old.plw")}, folder);
    const auto record = nlohmann::json::parse(result.out);
    EXPECT_EQ(record["format"], 4);
    EXPECT_EQ(record["formatName"], "FormatGeneration4");
    result = RunCli({"format", File("missing.plw")}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("NotFound (code"), std::string::npos);
}

// A file that fails is named, also where the library's message leaves the name out.
TEST_F(IdentifyCommands, ErrorsNameTheFile) {
    const auto result = RunCli({"type", File("missing.plw")}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("NotFound (code 102)"), std::string::npos) << result.err;
    const std::string quoted = File("missing.plw").insert(0, 1, '"') + '"';
    EXPECT_NE(result.err.find(quoted), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("\"\""), std::string::npos) << result.err;
}

// The header reader can't tell a missing file from one without application information;
// the client can, and says which.
TEST_F(IdentifyCommands, AMissingFileIsNotFoundByHeaderAndCreatorToo) {
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"type", "--header", File("missing.plw")},
          std::vector<std::string>{"creator", File("missing.plw")}}) {
        const auto result = RunCli(command, folder);
        EXPECT_EQ(result.exitCode, 1) << command[0];
        EXPECT_NE(result.err.find("NotFound (code 102)"), std::string::npos) << result.err;
        EXPECT_EQ(result.err.find("NoAppInfo"), std::string::npos) << result.err;
    }
}

// An exchange file has no header; its content tells its type, as with --database.
TEST_F(IdentifyCommands, AnExchangeFileIsTypedByItsContent) {
    const auto result = RunCli({"type", File("plain.plx")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, File("plain.plx") + ": 1 PlwTypePlain (" + kPlain + ")\n");
}

TEST_F(IdentifyCommands, UsageErrorsExitWithTwoAndHelpWithZero) {
    EXPECT_EQ(RunCli({"type"}, folder).exitCode, 2);
    EXPECT_EQ(RunCli({"format"}, folder).exitCode, 2);
    EXPECT_EQ(RunCli({"nonsense"}, folder).exitCode, 2);
    for (const char* command : {"type", "creator", "format"}) {
        const auto help = RunCli({command, "--help"}, folder);
        EXPECT_EQ(help.exitCode, 0) << command;
        EXPECT_NE(help.out.find("Usage"), std::string::npos) << command;
    }
}

}  // namespace

namespace {

class SaveCommand : public lodeqdbtest::TempFolderTest {
  protected:
    SaveCommand() : TempFolderTest("lodeqdb-cli-save") {}
    void SetUp() override {
        TempFolderTest::SetUp();
        auto drawing = PwDbAuthoring::createDrawing();
        ASSERT_EQ(
            drawing->saveAs(Path("gen5.plw").c_str(), false, static_cast<PwDb::PwDbPlwVersion>(27)),
            Plotwright::StatusOk);
    }
    std::string File(const std::string& name) const { return folder + "/" + name; }
    // The generation as `format` prints it in JSON: "8 FormatCurrent\n".
    std::string FormatOf(const std::string& name) {
        const auto record =
            nlohmann::json::parse(RunCli({"format", "--json", File(name)}, folder).out);
        return std::to_string(record["format"].get<int>()) + ' ' +
               record["formatName"].get<std::string>() + '\n';
    }
};

TEST_F(SaveCommand, TheOriginalGenerationIsTheDefault) {
    auto result = RunCli({"save", File("gen5.plw"), File("copy.plw")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "status 0\n");
    EXPECT_EQ(FormatOf("copy.plw"), "5 FormatGeneration5\n");
    result = RunCli({"save", "--original", File("gen5.plw"), File("copy.plx")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(FormatOf("copy.plx"), "5 FormatGeneration5\n");
}

TEST_F(SaveCommand, AnEarlierGenerationOrAnExchangeFileOnRequest) {
    auto result = RunCli({"save", File("gen5.plw"), File("g3.plw"), "--format", "3"}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(FormatOf("g3.plw"), "3 FormatGeneration3\n");
    result = RunCli({"save", File("gen5.plw"), File("new.plx"), "--plx", "--format", "8", "--json"},
                    folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto record = nlohmann::json::parse(result.out);
    EXPECT_EQ(record["status"], 0);
    EXPECT_EQ(record["written"], true);
    EXPECT_EQ(FormatOf("new.plx"), "8 FormatCurrent\n");
}

TEST_F(SaveCommand, StatusesAndNothingWrittenAreSaid) {
    auto result = RunCli({"save", File("gen5.plw"), File("out.txt")}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "status 434\n");
    result = RunCli({"save", File("gen5.plw"), File("cur.plw"), "--format", "8"}, folder);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "status 0\n");
    EXPECT_EQ(FormatOf("cur.plw"), "8 FormatCurrent\n") << "8 is the current generation";
    result = RunCli({"save", File("missing.plw"), File("x.plw")}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("NotFound"), std::string::npos);
    EXPECT_EQ(RunCli({"save", File("gen5.plw")}, folder).exitCode, 2);
    EXPECT_EQ(
        RunCli({"save", File("gen5.plw"), File("x.plw"), "--original", "--format", "3"}, folder)
            .exitCode,
        2);
    EXPECT_EQ(
        RunCli({"save", File("gen5.plw"), File("x.plw"), "--original", "--plx"}, folder).exitCode,
        2);
    EXPECT_EQ(RunCli({"save", "--help"}, folder).exitCode, 0);
}

// Generations that OUT can't be written in are usage errors, and nothing is written: not
// even over an OUT that is already there, which must not be reported as written.
TEST_F(SaveCommand, GenerationsThatCantBeWrittenAreUsageErrors) {
    Write("there.plw", "old bytes");
    for (const char* format : {"0", "1", "9", "-1", "100"}) {
        for (const char* out : {"new.plw", "there.plw"}) {
            const auto result =
                RunCli({"save", File("gen5.plw"), File(out), "--format", format, "--json"}, folder);
            EXPECT_EQ(result.exitCode, 2) << format << ' ' << out;
            EXPECT_EQ(result.out.find("written"), std::string::npos) << result.out;
        }
    }
    for (const char* format : {"0", "2", "9"}) {
        const auto result = RunCli(
            {"save", File("gen5.plw"), File("there.plx"), "--plx", "--format", format}, folder);
        EXPECT_EQ(result.exitCode, 2) << format;
    }
    EXPECT_EQ(Read("new.plw"), "");
    EXPECT_EQ(Read("there.plw"), "old bytes");
    EXPECT_EQ(Read("there.plx"), "");
}

// "written" tells whether OUT is a new file, also when a file of that name was there before.
TEST_F(SaveCommand, WrittenIsTrueOnlyForANewFile) {
    Write("there.plw", "old bytes");
    const auto result =
        RunCli({"save", File("gen5.plw"), File("there.plw"), "--format", "3", "--json"}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(nlohmann::json::parse(result.out)["written"], true);
    EXPECT_EQ(FormatOf("there.plw"), "3 FormatGeneration3\n");
}

}  // namespace
