// `lodeqdb index`, `where-used`, `broken`, `stats` and `graph` run as users run them, on the
// sample project, their JSON parsed; the SVG of the graph is well-formed XML with one node a
// file.
#include <gtest/gtest.h>

#include <expat.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "CliRunner.h"
#include "support/TempFolderTest.h"

namespace {

using lodeqdbclitest::Lines;
using lodeqdbclitest::RunCli;
using lodeqdbclitest::RunCliAsUser;
using nlohmann::json;

constexpr unsigned kNobody = 65534;

class IndexCommands : public lodeqdbtest::TempFolderTest {
  protected:
    IndexCommands() : TempFolderTest("lodeqdb-cli-index") {}
    void SetUp() override {
        TempFolderTest::SetUp();
        project = folder + "/project";
        auto result = RunCli({"sample", project}, folder);
        ASSERT_EQ(result.exitCode, 0) << result.err;
        root = Lines(result.out).back();
    }
    json Json(const std::vector<std::string>& arguments) {
        const auto result = RunCli(arguments, folder);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return json::parse(result.out);
    }
    std::string project;
    std::string root;
};

// Counts the elements <g class="node"> of an SVG document; -1 when it isn't well-formed XML.
int SvgNodes(const std::string& svg) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    int nodes = 0;
    XML_SetUserData(parser, &nodes);
    XML_SetElementHandler(
        parser,
        [](void* data, const XML_Char* name, const XML_Char** attributes) {
            if (std::string(name) != "g") return;
            for (int i = 0; attributes[i] != nullptr; i += 2)
                if (std::string(attributes[i]) == "class" && std::string(attributes[i + 1]) == "node")
                    ++*static_cast<int*>(data);
        },
        nullptr);
    const bool wellFormed =
        XML_Parse(parser, svg.data(), static_cast<int>(svg.size()), 1) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return wellFormed ? nodes : -1;
}

TEST_F(IndexCommands, IndexThenAskEverySubcommand) {
    json summary = Json({"index", project, "--json"});
    EXPECT_EQ(summary["seen"], 12);
    EXPECT_EQ(summary["read"], 12);
    EXPECT_EQ(summary["failed"], 0);
    EXPECT_EQ(summary["database"], project + "/.lodeqdb/index.sqlite");
    summary = Json({"index", project, "--json", "--jobs", "1"});
    EXPECT_EQ(summary["read"], 0);
    EXPECT_EQ(summary["unchanged"], 12);

    const std::string db = project + "/.lodeqdb/index.sqlite";
    const json stats = Json({"stats", "--db", db, "--json"});
    EXPECT_EQ(stats["files"], 12);
    EXPECT_EQ(stats["byKind"]["drawing"], 7);
    EXPECT_EQ(stats["byKind"]["exchange"], 1);
    EXPECT_EQ(stats["byKind"]["dgn"], 2);
    EXPECT_EQ(stats["brokenReferences"], 2);  // site.plw and site.plx miss missing/old.plw
    EXPECT_EQ(stats["failedFiles"], 0);
    EXPECT_EQ(stats["byFormatGeneration"][0]["name"], "FormatCurrent");

    // The index is found from the file's folder upwards.
    const json uses = Json({"where-used", project + "/floors/furniture/chairs.plw", "--json"});
    std::map<std::string, int> depth;
    for (const json& use : uses) depth[use["drawing"]] = use["depth"];
    EXPECT_EQ(depth[project + "/floors/upper.plw"], 1);
    EXPECT_EQ(depth[project + "/floors/ground.plw"], 2);
    EXPECT_EQ(depth[project + "/site.plw"], 3);
    EXPECT_EQ(depth[project + "/site.plx"], 3);
    EXPECT_EQ(depth.size(), 4u);
    const json direct = Json({"where-used", project + "/blocks/title.plw", "--direct", "--json"});
    std::set<std::string> referrers;
    for (const json& use : direct) referrers.insert(use["drawing"]);
    EXPECT_EQ(referrers, (std::set<std::string>{project + "/floors/ground.plw",
                                                project + "/site.plw", project + "/site.plx"}));

    const json broken = Json({"broken", "--db", db, "--json"});
    ASSERT_EQ(broken["references"].size(), 2u);
    EXPECT_EQ(broken["references"][0]["referrer"], root);
    EXPECT_EQ(broken["references"][0]["name"], project + "/missing/old.plw");
    EXPECT_EQ(broken["references"][0]["statusName"], "XrefFileMissing");
    EXPECT_TRUE(broken["failedFiles"].empty());

    const json fromIndex = Json({"graph", root, "--db", db, "--format", "json"});
    const json byWalk = Json({"graph", root, "--format", "json"});
    std::set<std::string> indexNodes, walkNodes;
    for (const json& node : fromIndex["nodes"]) indexNodes.insert(node["path"]);
    for (const json& node : byWalk["nodes"]) walkNodes.insert(node["path"]);
    EXPECT_EQ(indexNodes, walkNodes);
    EXPECT_EQ(walkNodes.size(), 12u);  // the root, 10 files below it, and the missing one
    for (const json& node : byWalk["nodes"])
        EXPECT_EQ(node["missing"], node["path"] == project + "/missing/old.plw") << node;

    auto dot = RunCli({"graph", root}, folder);
    ASSERT_EQ(dot.exitCode, 0) << dot.err;
    EXPECT_EQ(dot.out.rfind("digraph dependencies {", 0), 0u);
    EXPECT_NE(dot.out.find("label=\"blocks/title.plw\""), std::string::npos);
}

// The SVG of the sample's graph: well-formed XML, one node for each file of the tree (the root
// and every file the nested walk lists, design files entered).
TEST_F(IndexCommands, TheSvgIsWellFormedWithOneNodeAFile) {
    const std::string out = folder + "/graph.svg";
    auto result = RunCli({"graph", root, "--format", "svg", "--output", out}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.out.empty());
    const std::string svg = Read("graph.svg");
    ASSERT_NE(svg.find("<svg"), std::string::npos);
    result = RunCli({"tree", root, "--dgn", "--json"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const size_t files = json::parse(result.out).size() + 1;
    EXPECT_EQ(SvgNodes(svg), static_cast<int>(files));
    EXPECT_EQ(SvgNodes(svg.substr(0, svg.size() / 2)), -1);  // the check does fail on bad XML
}

// Progress goes to stderr only on a terminal and without --quiet.
TEST_F(IndexCommands, ProgressOnlyOnATerminal) {
    auto result = RunCli({"index", project, "--db", folder + "/a.sqlite"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.err.empty()) << result.err;
    EXPECT_NE(result.out.find("seen       12"), std::string::npos) << result.out;
    const auto onTerminal = [&](const std::string& extra) {
        const std::string log = folder + "/terminal.txt";
        const std::string command = std::string("script -qec \"") + LODEQDB_CLI + " index '" +
                                    project + "' --db '" + folder + "/t" + extra.substr(0, 3) +
                                    ".sqlite' " + extra + " >/dev/null\" /dev/null > '" + log + "'";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return Read("terminal.txt");
    };
    EXPECT_NE(onTerminal("").find("indexing: 12 of 12 files"), std::string::npos);
    EXPECT_EQ(onTerminal("--quiet").find("indexing"), std::string::npos);
}

// A file the user may not read is recorded with its error and the run succeeds; a folder the
// user may not write is indexed into an index elsewhere, and without one the run fails.
TEST_F(IndexCommands, UnreadableFilesAndAReadOnlyFolder) {
    const bool root = ::geteuid() == 0;
    const auto run = [&](const std::vector<std::string>& arguments) {
        return root ? RunCliAsUser(kNobody, arguments, folder) : RunCli(arguments, folder);
    };
    ASSERT_EQ(std::system(("chmod -R a+rX,a-w '" + folder + "'").c_str()), 0);
    ASSERT_EQ(::chmod((project + "/floors/upper.plw").c_str(), 0), 0);
    const std::string elsewhere = folder + "/elsewhere";
    ASSERT_TRUE(std::filesystem::create_directory(elsewhere));
    ASSERT_EQ(::chmod(elsewhere.c_str(), 0777), 0);

    auto result = run({"index", project, "--db", elsewhere + "/index.sqlite", "--json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const json summary = json::parse(result.out);
    EXPECT_EQ(summary["failed"], 1);
    EXPECT_EQ(summary["seen"], 12);
    EXPECT_FALSE(std::filesystem::exists(project + "/.lodeqdb"));
    result = run({"broken", "--db", elsewhere + "/index.sqlite", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const json broken = json::parse(result.out);
    ASSERT_EQ(broken["failedFiles"].size(), 1u);
    EXPECT_EQ(broken["failedFiles"][0]["path"], project + "/floors/upper.plw");
    EXPECT_EQ(broken["failedFiles"][0]["exceptionClass"], "SecurityError");
    EXPECT_EQ(broken["failedFiles"][0]["code"], 104);

    result = run({"index", project});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find(".lodeqdb"), std::string::npos) << result.err;
    ASSERT_EQ(std::system(("chmod -R u+w '" + folder + "'").c_str()), 0);
}

// `sample --drawings N` writes a store of N drawings with every kind of file and failure the
// index meets.
TEST_F(IndexCommands, AGeneratedStoreHasWhatItSays) {
    const std::string store = folder + "/store";
    auto result = RunCli({"sample", store, "--drawings", "120"}, folder);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find("120 drawings"), std::string::npos) << result.out;
    const json summary = Json({"index", store, "--json", "--quiet"});
    EXPECT_EQ(summary["failed"], 0);
    const json stats = Json({"stats", "--db", store + "/.lodeqdb/index.sqlite", "--json"});
    EXPECT_EQ(stats["byKind"]["drawing"], 120);
    EXPECT_EQ(stats["byKind"]["image"], 3);  // projects of 49, 49 and 11 sheets
    EXPECT_EQ(stats["byKind"]["pdf"], 2);
    EXPECT_EQ(stats["byKind"]["dgn"], 4);
    EXPECT_EQ(stats["brokenReferences"], 2);  // one missing drawing in each of two projects
    EXPECT_EQ(summary["seen"], stats["files"]);
    result = RunCli({"sample", folder + "/none", "--drawings", "0"}, folder);
    EXPECT_EQ(result.exitCode, 2);
}

TEST_F(IndexCommands, QuestionsWithoutAnIndexFailClearly) {
    auto result = RunCli({"stats", "--db", folder + "/none.sqlite"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("there is no index"), std::string::npos) << result.err;
    result = RunCli({"where-used", project + "/site.plw"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("no index found"), std::string::npos) << result.err;
    result = RunCli({"index", folder + "/nothing-here"}, folder);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("not a folder"), std::string::npos) << result.err;
    EXPECT_FALSE(std::filesystem::exists(folder + "/nothing-here"));
    result = RunCli({"index"}, folder);
    EXPECT_EQ(result.exitCode, 2);
    result = RunCli({"graph", root, "--format", "png"}, folder);
    EXPECT_EQ(result.exitCode, 2);
}

}  // namespace
