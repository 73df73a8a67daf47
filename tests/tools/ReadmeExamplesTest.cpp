// The README's first look runs as written: its block of commands, in a sample project written
// where the README says it is, with the client where the README says it is.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "CliRunner.h"
#include "support/TempFolderTest.h"

namespace {

using lodeqdbclitest::RunCli;

// The shell block that follows the marker comment of the README's first look.
std::string FirstLookCommands() {
    std::ifstream in(std::string(LODEQDB_SOURCE_DIR) + "/README.md");
    std::stringstream all;
    all << in.rdbuf();
    const std::string readme = all.str();
    const size_t marker = readme.find("<!-- The commands below run as written in the tests");
    if (marker == std::string::npos) return {};
    const size_t begin = readme.find("```sh\n", marker);
    if (begin == std::string::npos) return {};
    const size_t end = readme.find("```", begin + 6);
    if (end == std::string::npos) return {};
    return readme.substr(begin + 6, end - begin - 6);
}

class ReadmeExamples : public lodeqdbtest::TempFolderTest {
  protected:
    ReadmeExamples() : TempFolderTest("lodeqdb-readme") {}
};

TEST_F(ReadmeExamples, TheFirstLookRunsAsWritten) {
    const std::string commands = FirstLookCommands();
    ASSERT_NE(commands.find("lodeqdb tree site.plw"), std::string::npos) << commands;
    const auto sample = RunCli({"sample", folder + "/build/sample-project"}, folder);
    ASSERT_EQ(sample.exitCode, 0) << sample.err;
    // The client's folder under the name the README uses for it.
    const std::filesystem::path client(LODEQDB_CLI);
    std::filesystem::create_directories(folder + "/build/release");
    std::filesystem::create_directory_symlink(client.parent_path(), folder + "/build/release/bin");
    Write("first-look.sh", "set -eu\n" + commands);
    // HOME: the DGN translation keeps its settings under the user's configuration folder.
    const std::string run = "cd '" + folder + "' && HOME='" + folder +
                            "' bash first-look.sh >first-look.out 2>first-look.err";
    const int status = std::system(run.c_str());
    EXPECT_EQ(status, 0) << Read("first-look.err") << Read("first-look.out");
    const std::string out = Read("first-look.out");
    EXPECT_NE(out.find("blocks/title.plw"), std::string::npos) << out;
    EXPECT_NE(out.find("survey/terrain.dgn"), std::string::npos) << out;
}

}  // namespace
