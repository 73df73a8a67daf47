// File and folder names that aren't UTF-8, end to end: a file named by a byte that no UTF-8
// has, a working folder whose name is Latin-1, and a sample project written into one.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "CliRunner.h"
#include <lodeqdb/lodeutil/Utf.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>

namespace {

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;

class ForeignNames : public lodeqdbtest::TempFolderTest {
  protected:
    ForeignNames() : TempFolderTest("lodeqdb-cli-names") {}
    std::string File(const std::string& name) const { return folder + "/" + name; }
};

TEST_F(ForeignNames, AFileNamedByABytesThatIsntUtf8IsFoundAndNamedAsItIs) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(drawing->saveAs(Path("ok.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent),
              Plotwright::StatusOk);
    std::filesystem::rename(File("ok.plw"), File("\xff.plw"));
    const auto result = RunCli({"type", File("\xff.plw")}, folder);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out.rfind(File("\xff.plw") + ": 1 PlwTypePlain", 0), 0u) << result.out;
    // JSON text is UTF-8: the byte that isn't is replaced there, and the rest is whole.
    const auto json = RunCli({"type", "--json", File("\xff.plw")}, folder);
    EXPECT_EQ(json.exitCode, 0) << json.err;
    EXPECT_EQ(nlohmann::json::parse(json.out)["file"], File("\xEF\xBF\xBD.plw"));
}

// In a folder named "café" in Latin-1, relative names work, and what is printed names the
// files by their bytes.
TEST_F(ForeignNames, AWorkingFolderWhoseNameIsntUtf8) {
    const std::string project = File("caf\xe9");
    ASSERT_TRUE(std::filesystem::create_directory(project));
    auto child = PwDbAuthoring::createDrawing();
    ASSERT_EQ(child->saveAs(LodeUtil::Utf16FromNative(project + "/b.plw").c_str(), false,
                            PwDb::PwDbPlwVersionCurrent),
              Plotwright::StatusOk);
    auto root = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addXref(*root, u"B", u"b.plw"), Plotwright::StatusOk);
    ASSERT_EQ(root->saveAs(LodeUtil::Utf16FromNative(project + "/a.plw").c_str(), false,
                           PwDb::PwDbPlwVersionCurrent),
              Plotwright::StatusOk);
    const std::string run =
        "cd '" + project + "' && '" + LODEQDB_CLI + "' children a.plw > ../out.txt 2> ../err.txt";
    EXPECT_EQ(std::system(run.c_str()), 0) << Read("err.txt");
    const auto lines = Lines(Read("out.txt"));
    ASSERT_FALSE(lines.empty()) << Read("err.txt");
    EXPECT_NE(lines.back().find(project + "/b.plw"), std::string::npos) << lines.back();
}

TEST_F(ForeignNames, ASampleProjectInAFolderWhoseNameIsntUtf8) {
    const std::string project = File("caf\xe9");
    const auto result = RunCli({"sample", project}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto lines = Lines(result.out);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), project + "/site.plw");
    EXPECT_TRUE(std::filesystem::exists(project + "/site.plw"));
    EXPECT_FALSE(std::filesystem::exists(File("caf\xEF\xBF\xBD"))) << "no other folder is made";
    const auto tree = RunCli({"tree", "--json", project + "/site.plw"}, folder);
    EXPECT_EQ(tree.exitCode, 0) << tree.err;
}

}  // namespace
