// `lodeqdb repath` and `lodeqdb pack` run as users run them, on the sample project: a moved
// copy repathed resolves what it resolved before, a dry run writes nothing, relative paths
// travel, the packed sample opens elsewhere with the same tree; JSON output parsed.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "CliRunner.h"
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/readsave/Saving.h>
#include <lodeqdb/relocate/StoredPaths.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>
#include "support/Archives.h"
#include "support/TempFolderTest.h"

namespace {

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;
using lodeqdbclitest::RunCliAsUser;

constexpr unsigned kNobody = 65534;

// The sample's drawings, the root first.
const std::vector<std::string> kDrawings = {
    "site.plw",  "blocks/title.plw", "floors/ground.plw", "floors/upper.plw",
    "floors/furniture/chairs.plw", "loop/a.plw", "loop/b.plw", "site.plx"};

class RelocateCommands : public lodeqdbtest::TempFolderTest {
  protected:
    RelocateCommands() : TempFolderTest("lodeqdb-cli-relocate") {}

    std::string WriteSample(const std::string& name) {
        const std::string project = folder + "/" + name;
        const auto result = RunCli({"sample", project}, folder);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return project;
    }

    // `tree --dgn --json` of `root`: each file by its name relative to `base`, with its status.
    std::map<std::string, int> Tree(const std::string& root, const std::string& base) {
        const auto result = RunCli({"tree", root, "--dgn", "--json"}, folder);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::map<std::string, int> tree;
        for (const auto& record : nlohmann::json::parse(result.out)) {
            std::string name = record["name"];
            const std::string full = std::filesystem::path(name).lexically_normal().string();
            name = full.rfind(base + "/", 0) == 0 ? full.substr(base.size() + 1) : full;
            tree[name] = record["status"];
        }
        return tree;
    }

    // Every stored path of the drawing `path` that finds its file becomes that file's full
    // path, so that the project can't be moved without repathing.
    static void MakeStoredPathsAbsolute(const std::string& path) {
        PwDbDatabase drawing(false, true);
        const wstring wide = LodeUtil::Utf16FromUtf8(path);
        LodeQDBUtil::ReadFileToDatabase(wide, drawing, true, false);
        for (const auto& entry : LodeQDBRelocate::ListStoredPaths(drawing)) {
            wstring found;
            if (pwdbFindDependentFile(found, entry.path, &drawing,
                                      LodeQDBRelocate::FindHintFor(entry.kind)) == 0) {
                ASSERT_EQ(LodeQDBRelocate::SetStoredPath(entry, found), 0);
            }
        }
        ASSERT_EQ(LodeQDBUtil::DbSaveAsOriginalVersion(drawing, wide), 0) << path;
    }

    std::vector<std::string> Drawings(const std::string& project) {
        std::vector<std::string> paths;
        for (const std::string& drawing : kDrawings) paths.push_back(project + "/" + drawing);
        return paths;
    }
};

TEST_F(RelocateCommands, AMovedCopyOfTheSampleResolvesAgainAfterRepath) {
    const std::string first = WriteSample("first");
    for (const std::string& drawing : Drawings(first)) MakeStoredPathsAbsolute(drawing);
    const auto expected = Tree(first + "/site.plw", first);
    ASSERT_EQ(expected.size(), 11u);
    ASSERT_EQ(expected.at("floors/furniture/chairs.plw"), 1);

    const std::string moved = folder + "/moved";
    std::filesystem::rename(first, moved);
    const auto bytes = lodeqdbtest::FilesBelow(moved);
    std::vector<std::string> arguments = {"repath"};
    for (const std::string& drawing : Drawings(moved)) arguments.push_back(drawing);
    for (const std::string& option : std::vector<std::string>{"--from", first, "--to", moved})
        arguments.push_back(option);

    // A dry run lists every change, each resolving at the new place, and writes nothing.
    auto dryRun = arguments;
    dryRun.push_back("--dry-run");
    dryRun.push_back("--json");
    auto result = RunCli(dryRun, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    auto outcomes = nlohmann::json::parse(result.out);
    ASSERT_EQ(outcomes.size(), kDrawings.size());
    size_t changes = 0;
    for (const auto& outcome : outcomes) {
        EXPECT_TRUE(outcome["dryRun"]);
        EXPECT_FALSE(outcome["written"]);
        EXPECT_TRUE(outcome["error"].is_null());
        for (const auto& change : outcome["changes"]) {
            ++changes;
            EXPECT_TRUE(change["resolves"]) << change["new"];
            EXPECT_FALSE(change["applied"]);
            EXPECT_EQ(std::string(change["new"]).rfind(moved + "/", 0), 0u) << change["new"];
        }
    }
    EXPECT_GE(changes, 14u);
    EXPECT_EQ(lodeqdbtest::FilesBelow(moved), bytes);

    arguments.push_back("--json");
    result = RunCli(arguments, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    outcomes = nlohmann::json::parse(result.out);
    std::set<std::string> written;
    for (const auto& outcome : outcomes)
        if (outcome["written"]) written.insert(outcome["drawing"]);
    // Drawings that store no path (title, chairs) are not written.
    EXPECT_EQ(written.size(), 6u);
    EXPECT_EQ(written.count(moved + "/blocks/title.plw"), 0u);
    EXPECT_EQ(Tree(moved + "/site.plw", moved), expected);

    // Made relative, the project moves freely; asked again, nothing is left to do.
    result = RunCli({"repath", moved + "/site.plw", moved + "/floors/ground.plw",
                     moved + "/floors/upper.plw", moved + "/loop/a.plw", moved + "/loop/b.plw",
                     "--relative"},
                    folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find("site.plw: written"), std::string::npos) << result.out;
    result = RunCli({"repath", moved + "/site.plw", "--relative"}, folder);
    EXPECT_EQ(Lines(result.out), std::vector<std::string>{moved + "/site.plw: unchanged"});
    const std::string again = folder + "/again";
    std::filesystem::rename(moved, again);
    EXPECT_EQ(Tree(again + "/site.plw", again), expected);
}

TEST_F(RelocateCommands, AMovedCopyRepathedOverItsIndexResolvesAgain) {
    const std::string first = WriteSample("first");
    for (const std::string& drawing : Drawings(first)) MakeStoredPathsAbsolute(drawing);
    const auto expected = Tree(first + "/site.plw", first);
    const std::string moved = folder + "/moved";
    std::filesystem::rename(first, moved);
    ASSERT_EQ(RunCli({"tree", moved + "/site.plw", "--dgn", "--json"}, folder).exitCode, 3)
        << "moved, the walk stops at a design file it can't find";

    const std::string index = folder + "/moved.sqlite";
    auto result = RunCli({"index", moved, "--db", index, "--quiet"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    result = RunCli({"repath", "--db", index, "--from", first, "--to", moved, "--json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    std::set<std::string> written;
    for (const auto& outcome : nlohmann::json::parse(result.out)) {
        EXPECT_TRUE(outcome["error"].is_null()) << outcome["drawing"];
        if (outcome["written"]) written.insert(outcome["drawing"]);
    }
    // Every drawing with dependencies was asked; those that store no path (title, chairs)
    // weren't written.
    EXPECT_EQ(written.size(), 6u);
    EXPECT_EQ(written.count(moved + "/blocks/title.plw"), 0u);
    EXPECT_EQ(Tree(moved + "/site.plw", moved), expected);

    // Usage: --db wants a folder to replace, and no drawings beside it.
    EXPECT_EQ(RunCli({"repath", "--db", index, "--relative"}, folder).exitCode, 2);
    EXPECT_EQ(RunCli({"repath", moved + "/site.plw", "--db", index, "--from", first, "--to",
                      moved},
                     folder)
                  .exitCode,
              2);
    EXPECT_EQ(RunCli({"repath", "--db", moved + "/site.plw", "--from", first, "--to", moved},
                     folder)
                  .exitCode,
              1)
        << "a file that isn't an index";
}

TEST_F(RelocateCommands, ThePackedSampleOpensElsewhereWithTheSameFiles) {
    const std::string project = WriteSample("project");
    const auto originals = lodeqdbtest::FilesBelow(project);
    const auto expected = Tree(project + "/site.plw", project);
    auto result =
        RunCli({"pack", project + "/site.plw", "--output", folder + "/site.zip", "--json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto report = nlohmann::json::parse(result.out);
    EXPECT_EQ(report["root"], "site.plw");
    EXPECT_EQ(report["baseFolder"], project);
    EXPECT_EQ(report["files"].size(), 11u);
    ASSERT_EQ(report["missing"].size(), 1u);
    EXPECT_EQ(report["missing"][0]["storedPath"], "missing/old.plw");

    const std::string unpacked = folder + "/elsewhere";
    const auto names = lodeqdbtest::ExtractZip(folder + "/site.zip", unpacked);
    EXPECT_EQ(names.size(), 12u);
    std::ifstream in(unpacked + "/manifest.json");
    const auto manifest = nlohmann::json::parse(in);
    ASSERT_EQ(manifest["files"].size(), 11u);
    for (const auto& file : manifest["files"]) {
        const std::string path = file["path"];
        EXPECT_EQ(file["sha256"], lodeqdbtest::FileSha256(unpacked + "/" + path)) << path;
        EXPECT_EQ(file["original"], project + "/" + path);
    }
    // The same files by relative names, nothing missing that wasn't missing before.
    EXPECT_EQ(Tree(unpacked + "/site.plw", unpacked), expected);
    EXPECT_EQ(lodeqdbtest::FilesBelow(project), originals);

    result = RunCli({"pack", project + "/site.plw", "-o", folder + "/again.zip"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find("packed 11 files"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("missing: site.plw reference OLD: missing/old.plw"),
              std::string::npos)
        << result.out;
}

TEST_F(RelocateCommands, FailuresAndUsage) {
    const std::string project = WriteSample("project");
    auto result = RunCli({"repath", project + "/site.plw"}, folder);
    EXPECT_EQ(result.exitCode, 2);
    result = RunCli({"repath", project + "/site.plw", "--from", "/a"}, folder);
    EXPECT_EQ(result.exitCode, 2);
    result = RunCli({"pack", project + "/site.plw"}, folder);
    EXPECT_EQ(result.exitCode, 2);

    // One drawing that can't be read fails the command; the others are still done.
    result = RunCli({"repath", project + "/gone.plw", project + "/floors/ground.plw", "--from",
                     "..\\blocks", "--to", project + "/blocks"},
                    folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("gone.plw: NotFound (code 102)"), std::string::npos) << result.err;
    EXPECT_NE(result.out.find("ground.plw: written"), std::string::npos) << result.out;

    // A drawing in a folder the user may not write keeps its bytes, and the command says so.
    const std::string locked = project + "/loop";
    const std::string before = Read("project/loop/a.plw");
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::chmod(project.c_str(), 0755), 0);
    ASSERT_EQ(::chmod(locked.c_str(), 0555), 0);
    const std::vector<std::string> repath = {"repath", locked + "/a.plw", "--from", "b.plw",
                                             "--to", "c.plw"};
    result = ::geteuid() == 0 ? RunCliAsUser(kNobody, repath, folder) : RunCli(repath, folder);
    ::chmod(locked.c_str(), 0755);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("not saved (status"), std::string::npos) << result.err;
    EXPECT_EQ(Read("project/loop/a.plw"), before);

    result = RunCli({"pack", project + "/nothing.plw", "-o", folder + "/x.zip"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("NotFound"), std::string::npos) << result.err;
    result = RunCli({"pack", project + "/site.plw", "-o", folder + "/no/such/x.zip"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("can't"), std::string::npos) << result.err;
}

}  // namespace
