// `lodeqdb children`, `lodeqdb tree`, `lodeqdb parents`: what drawings depend on, and who
// refers to a file.
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/service/ChildrenQuery.h>
#include <lodeqdb/service/TreeWalks.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "tools/Commands.h"
#include "tools/EnumNames.h"
#include "tools/FileRecords.h"
#include "tools/Output.h"
#include "tools/TreeOutput.h"

namespace lodeqdb::cli {
namespace {

using LodeQDBService::FileData;

struct QueryOptions {
    std::string file;
    std::vector<std::string> targets;
    bool followDgn = false;
    bool json = false;
    bool flat = false;
};

// The walk of `tree`: drawn as a tree for people, unless a flat list or JSON is asked for.
LodeQDBService::Request::WalkStop Tree(const QueryOptions& options) {
    const wstring root = FullPath(options.file);
    LodeQDBService::Request::WalkStop stop;
    if (options.json || options.flat) {
        PrintFileRecords(
            LodeQDBService::Request::PlotwrightNestedChildren(root, options.followDgn, stop),
            options.json);
        return stop;
    }
    std::vector<TreeLine> lines;
    LodeQDBService::Request::PlotwrightNestedChildren(
        root, options.followDgn, stop, [&](const LodeQDBService::Request::WalkStep& step) {
            lines.push_back(TreeLine{step.record, step.depth, step.metBefore});
        });
    PrintTree(std::cout, root, lines);
    return stop;
}

// Says on stderr that a walk stopped early, and why; the code for the client's exit.
int ReportStop(const LodeQDBService::Request::WalkStop& stop) {
    if (!stop.stopped) return ExitSuccess;
    std::cerr << "lodeqdb: the list is incomplete: the walk stopped";
    if (!stop.file.empty()) std::cerr << " at " << Narrow(stop.file);
    std::cerr << ": " << stop.exceptionClass << " (code " << stop.code << ")";
    if (!stop.message.empty()) std::cerr << ": " << Narrow(stop.message);
    std::cerr << '\n';
    return ExitIncomplete;
}

constexpr char kIncompleteHelp[] =
    "Exit codes: 0 the list is whole; 1 failure; 2 usage error; 3 the walk stopped early (the "
    "list printed is what was found before; stderr says where and why)";

}  // namespace

void AddDependencyCommands(CLI::App& app) {
    auto children = std::make_shared<QueryOptions>();
    CLI::App* childrenCommand = app.add_subcommand(
        "children", "The files a drawing depends on directly: references, images, underlays");
    childrenCommand->add_option("file", children->file, "Drawing file (.plw or .plx)")->required();
    childrenCommand->add_flag("--json", children->json, "One JSON array on stdout");
    childrenCommand->callback([children] {
        EndWith(RunReportingErrors([&] {
            PrintFileRecords(
                LodeQDBService::Request::PlotwrightChildren(FullPath(children->file), nullptr),
                children->json);
            return ExitSuccess;
        }));
    });

    auto tree = std::make_shared<QueryOptions>();
    CLI::App* treeCommand = app.add_subcommand(
        "tree",
        "Everything a drawing depends on at any depth, drawn as a tree: depth first, each file "
        "entered once and marked where it is met again");
    treeCommand->add_option("file", tree->file, "Drawing file (.plw or .plx)")->required();
    treeCommand->add_flag("--dgn", tree->followDgn, "Follow the references of DGN files too");
    treeCommand->add_flag("--json", tree->json, "One JSON array on stdout");
    treeCommand->add_flag("--flat", tree->flat,
                          "One record a line under headings, each file once, instead of a tree");
    treeCommand->footer(kIncompleteHelp);
    treeCommand->callback(
        [tree] { EndWith(RunReportingErrors([&] { return ReportStop(Tree(*tree)); })); });

    auto parents = std::make_shared<QueryOptions>();
    CLI::App* parentsCommand = app.add_subcommand(
        "parents", "The files in ROOT's tree that refer directly to one of the TARGETs");
    parentsCommand->add_option("root", parents->file, "Root drawing file")->required();
    parentsCommand->add_option("targets", parents->targets, "Target files")->required();
    parentsCommand->add_flag("--json", parents->json, "One JSON array on stdout");
    parentsCommand->footer(kIncompleteHelp);
    parentsCommand->callback([parents] {
        EndWith(RunReportingErrors([&] {
            const wstring rootPath = FullPath(parents->file);
            PwDbDatabase root(false, true);
            LodeQDBUtil::ReadFileToDatabase(rootPath, root, true, true);
            std::vector<wstring> targets;
            for (const std::string& target : parents->targets) targets.push_back(FullPath(target));
            LodeQDBService::Request::WalkStop stop;
            PrintFileRecords(
                LodeQDBService::Request::PlotwrightParents(rootPath, root, targets, stop),
                parents->json);
            return ReportStop(stop);
        }));
    });
}

}  // namespace lodeqdb::cli
