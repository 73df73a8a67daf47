// `lodeqdb graph ROOT [--db FILE] [--format dot|svg|json] [--output FILE]`: the dependency
// graph below a drawing, from the index or by the nested walk.
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include <lodeqdb/index/DependencyGraph.h>
#include <lodeqdb/index/FolderIndex.h>
#include <lodeqdb/lodeutil/Utf.h>
#include "tools/Commands.h"
#include "tools/GraphOutput.h"
#include "tools/Output.h"

namespace lodeqdb::cli {
namespace {

struct GraphOptions {
    std::string root;
    std::string database;
    std::string format = "dot";
    std::string output;
};

int Graph(const GraphOptions& options) {
    LodeQDBIndex::DependencyGraph graph;
    bool stopped = false;
    if (!options.database.empty()) {
        graph = LodeQDBIndex::FolderIndex(options.database).GraphBelow(options.root);
    } else {
        RequireReadableFile(options.root);
        const std::string root = LodeUtil::NativeFromUtf16(FullPath(options.root))
                                     .value_or(options.root);
        graph = LodeQDBIndex::GraphByWalk(root, &stopped);
    }
    const std::string text = options.format == "svg"    ? GraphSvg(graph)
                             : options.format == "json" ? GraphJson(graph) + "\n"
                                                        : GraphDot(graph);
    if (options.output.empty()) {
        std::cout << text;
    } else {
        std::ofstream out(options.output, std::ios::binary);
        out << text;
        out.close();
        if (!out) {
            std::cerr << "lodeqdb: can't write " << options.output << '\n';
            return ExitFailure;
        }
    }
    if (stopped) {
        std::cerr << "lodeqdb: the graph is incomplete: the walk stopped early\n";
        return ExitIncomplete;
    }
    return ExitSuccess;
}

}  // namespace

void AddGraphCommand(CLI::App& app) {
    auto options = std::make_shared<GraphOptions>();
    CLI::App* command = app.add_subcommand(
        "graph", "The dependency graph below the drawing ROOT, as DOT, SVG or JSON: from the "
                 "index with --db, otherwise by walking the files");
    command->add_option("root", options->root, "The drawing at the top")->required();
    command->add_option("--db", options->database, "Take the graph from this index");
    command->add_option("--format", options->format, "dot (default), svg or json")
        ->check(CLI::IsMember({"dot", "svg", "json"}));
    command->add_option("--output,-o", options->output, "Write to FILE instead of stdout");
    command->footer(
        "Exit codes: 0 success; 1 failure; 2 usage error; 3 the walk stopped early (the graph "
        "written is what was found before)");
    command->callback([options] {
        EndWith(RunReportingErrors(
            [&] {
                try {
                    return Graph(*options);
                } catch (const LodeQDBIndex::IndexError& error) {
                    std::cerr << "lodeqdb: " << error.what() << '\n';
                    return int(ExitFailure);
                } catch (const std::runtime_error& error) {
                    std::cerr << "lodeqdb: " << error.what() << '\n';
                    return int(ExitFailure);
                }
            },
            options->root));
    });
}

}  // namespace lodeqdb::cli
