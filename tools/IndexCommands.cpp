// `lodeqdb index`, `lodeqdb where-used`, `lodeqdb broken`, `lodeqdb stats`: a persistent index
// of a folder of drawings, and the questions asked of it.
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include <lodeqdb/index/FolderIndex.h>
#include <lodeqdb/index/IndexUpdate.h>
#include "tools/Commands.h"
#include "tools/EnumNames.h"
#include "tools/IndexOutput.h"
#include "tools/Json.h"
#include "tools/Output.h"

namespace lodeqdb::cli {
namespace {

struct IndexOptions {
    std::string folder;
    std::string database;
    unsigned jobs = 0;
    bool quiet = false;
    bool json = false;
    bool followLinks = false;
};

struct QueryOptions {
    std::string file;
    std::string database;
    bool direct = false;
    bool json = false;
};

// Runs a question of the index, turning IndexError into a message and ExitFailure.
int RunQuery(const std::function<int()>& query) {
    return RunReportingErrors([&] {
        try {
            return query();
        } catch (const LodeQDBIndex::IndexError& error) {
            std::cerr << "lodeqdb: " << error.what() << '\n';
            return int(ExitFailure);
        }
    });
}

// The index a question goes to: --db, else the first .lodeqdb/index.sqlite at or above
// `near`.
std::string IndexFile(const std::string& database, const std::string& near) {
    if (!database.empty()) return database;
    const std::string found = LodeQDBIndex::FindIndexFor(near);
    if (found.empty())
        throw LodeQDBIndex::IndexError("no index found for " + near +
                                       " (make one with `lodeqdb index DIR`, or name it with --db)");
    return found;
}

int Index(const IndexOptions& options) {
    LodeQDBIndex::UpdateOptions update;
    update.folder = options.folder;
    update.database = options.database;
    update.jobs = options.jobs;
    update.followLinks = options.followLinks;
    const bool showProgress = !options.quiet && isatty(STDERR_FILENO) == 1;
    if (showProgress) update.progress = PrintProgress;
    LodeQDBIndex::UpdateSummary summary;
    try {
        summary = LodeQDBIndex::UpdateIndex(update);
    } catch (const LodeQDBIndex::IndexError& error) {
        if (showProgress) std::cerr << '\n';
        std::cerr << "lodeqdb: " << error.what() << '\n';
        return ExitFailure;
    }
    if (showProgress) std::cerr << '\n';
    PrintSummary(summary, options.json);
    return ExitSuccess;
}

}  // namespace

void AddIndexCommands(CLI::App& app) {
    auto index = std::make_shared<IndexOptions>();
    CLI::App* indexCommand = app.add_subcommand(
        "index",
        "Bring the index of the folder DIR up to date: read what changed since the last run, "
        "drop what is gone");
    indexCommand->add_option("dir", index->folder, "The folder of drawings")->required();
    indexCommand->add_option("--db", index->database,
                             "The index file (default: DIR/.lodeqdb/index.sqlite)");
    indexCommand->add_option("--jobs,-j", index->jobs, "Worker threads (default: the cores)")
        ->check(CLI::Range(1u, 256u));
    indexCommand->add_flag("--quiet,-q", index->quiet, "No progress on stderr");
    indexCommand->add_flag("--json", index->json, "The summary as one JSON object");
    indexCommand->add_flag("--follow-links", index->followLinks,
                           "Enter symbolic links to folders");
    indexCommand->footer(
        "Exit codes: 0 the index is up to date (files that couldn't be read are recorded in it); "
        "1 the index itself couldn't be written; 2 usage error");
    indexCommand->callback([index] { EndWith(Index(*index)); });

    auto whereUsed = std::make_shared<QueryOptions>();
    CLI::App* whereUsedCommand = app.add_subcommand(
        "where-used", "Every drawing of the index that uses FILE, at any depth, with the chain of "
                      "references that leads there");
    whereUsedCommand->add_option("file", whereUsed->file, "The file asked about")->required();
    whereUsedCommand->add_option("--db", whereUsed->database,
                                 "The index (default: the nearest .lodeqdb/index.sqlite at or "
                                 "above FILE's folder)");
    whereUsedCommand->add_flag("--direct", whereUsed->direct, "Only the drawings that refer to "
                                                              "FILE themselves");
    whereUsedCommand->add_flag("--json", whereUsed->json, "One JSON array of objects");
    whereUsedCommand->callback([whereUsed] {
        EndWith(RunQuery([&] {
            LodeQDBIndex::FolderIndex index(IndexFile(whereUsed->database, whereUsed->file));
            PrintUsages(index.WhereUsed(whereUsed->file, whereUsed->direct), whereUsed->json);
            return int(ExitSuccess);
        }));
    });

    auto broken = std::make_shared<QueryOptions>();
    CLI::App* brokenCommand = app.add_subcommand(
        "broken", "Every reference of the index whose file isn't there or didn't resolve, and "
                  "every file that couldn't be read");
    brokenCommand->add_option("--db", broken->database,
                              "The index (default: the nearest .lodeqdb/index.sqlite at or above "
                              "the working directory)");
    brokenCommand->add_flag("--json", broken->json, "One JSON object");
    brokenCommand->callback([broken] {
        EndWith(RunQuery([&] {
            LodeQDBIndex::FolderIndex index(IndexFile(broken->database, "."));
            PrintBroken(index.BrokenReferences(), index.FailedFiles(), broken->json);
            return int(ExitSuccess);
        }));
    });

    auto stats = std::make_shared<QueryOptions>();
    CLI::App* statsCommand = app.add_subcommand(
        "stats", "Counts of the index: files by kind, drawings by format generation and creator "
                 "kind, broken references, failed files");
    statsCommand->add_option("--db", stats->database,
                             "The index (default: the nearest .lodeqdb/index.sqlite at or above "
                             "the working directory)");
    statsCommand->add_flag("--json", stats->json, "One JSON object");
    statsCommand->callback([stats] {
        EndWith(RunQuery([&] {
            LodeQDBIndex::FolderIndex index(IndexFile(stats->database, "."));
            PrintStats(index.Stats(), stats->json);
            return int(ExitSuccess);
        }));
    });
}

}  // namespace lodeqdb::cli
