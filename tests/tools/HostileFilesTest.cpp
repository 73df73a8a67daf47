// Every subcommand that takes a file, given a pipe with no writer: it must answer at once
// with an error naming the file, never wait for a writer.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "CliRunner.h"
#include "support/TempFolderTest.h"

namespace {

using lodeqdbclitest::RunCliWithin;

class HostileFilesCli : public lodeqdbtest::TempFolderTest {
  protected:
    HostileFilesCli() : TempFolderTest("lodeqdb-cli-hostile") {}
    std::string File(const std::string& name) const { return folder + "/" + name; }
};

TEST_F(HostileFilesCli, NoSubcommandWaitsOnAPipe) {
    for (const char* name : {"p.plw", "p.plx", "p.dgn"})
        ASSERT_EQ(::mkfifo(File(name).c_str(), 0644), 0);
    const std::string plw = File("p.plw"), plx = File("p.plx"), dgn = File("p.dgn");
    const std::vector<std::vector<std::string>> commands = {
        {"children", plw},
        {"children", plx},
        {"tree", plw},
        {"tree", "--dgn", plw},
        {"parents", plw, plx},
        {"layers", plw},
        {"layers", plx},
        {"layouts", plw},
        {"plotsettings", plw},
        {"type", plw},
        {"type", plx},
        {"type", "--header", plw},
        {"type", "--database", plw},
        {"creator", plw},
        {"format", plw},
        {"format", plx},
        {"save", plw, File("out.plw")},
        {"save", plx, File("out.plx")},
        {"dgn-models", dgn},
        {"dgn-refs", dgn},
        {"dgn-convert", dgn, File("out.plw")},
    };
    for (const auto& command : commands) {
        std::string line;
        for (const auto& word : command) line += word + ' ';
        const auto result = RunCliWithin(20, command, folder);
        EXPECT_EQ(result.exitCode, 1) << line << "\n" << result.err;
        EXPECT_NE(result.err.find("lodeqdb: "), std::string::npos) << line;
        EXPECT_NE(result.err.find("p."), std::string::npos) << line << ": the file is named";
    }
}

}  // namespace
