// `lodeqdb repath` and `lodeqdb pack`: moving drawings without breaking their references.
// The work is the relocation library's; here the arguments are read and the outcome printed.
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/relocate/Pack.h>
#include <lodeqdb/relocate/Repath.h>
#include "tools/Commands.h"
#include "tools/Json.h"
#include "tools/Output.h"

namespace lodeqdb::cli {
namespace {

using LodeQDBRelocate::StoredPathKindName;

std::string Utf8(const wstring& text) {
    return LodeUtil::Utf8FromUtf16(text);
}

struct RepathArguments {
    std::vector<std::string> files;
    std::string index;
    std::string from;
    std::string to;
    bool relative = false;
    bool dryRun = false;
    bool json = false;
};

nlohmann::json ChangeJson(const LodeQDBRelocate::PathChange& change) {
    return {{"kind", StoredPathKindName(change.kind)},
            {"name", Utf8(change.name)},
            {"old", Utf8(change.oldPath)},
            {"new", Utf8(change.newPath)},
            {"resolves", change.resolves},
            {"resolved", Utf8(change.resolvedPath)},
            {"applied", change.applied}};
}

nlohmann::json OutcomeJson(const LodeQDBRelocate::RepathOutcome& outcome, bool dryRun) {
    nlohmann::json changes = nlohmann::json::array();
    for (const auto& change : outcome.changes) changes.push_back(ChangeJson(change));
    nlohmann::json error = nullptr;
    if (!outcome.failure.empty())
        error = {{"class", outcome.failure},
                 {"code", outcome.failureCode},
                 {"message", Utf8(outcome.failureMessage)}};
    return {{"drawing", Utf8(outcome.drawing)},
            {"dryRun", dryRun},
            {"written", outcome.written},
            {"saveStatus", static_cast<int>(outcome.saveStatus)},
            {"error", error},
            {"changes", changes}};
}

void PrintOutcome(const LodeQDBRelocate::RepathOutcome& outcome, bool dryRun) {
    const std::string drawing = Narrow(outcome.drawing);
    if (!outcome.failure.empty()) {
        std::cerr << "lodeqdb: " << drawing << ": " << outcome.failure << " (code "
                  << outcome.failureCode << ")";
        if (!outcome.failureMessage.empty()) std::cerr << ": " << Narrow(outcome.failureMessage);
        std::cerr << '\n';
        return;
    }
    const bool designFile = !outcome.changes.empty() &&
                            outcome.changes.front().kind ==
                                LodeQDBRelocate::StoredPathKind::DgnAttachment;
    std::cout << drawing << ": ";
    if (outcome.changes.empty()) std::cout << "unchanged";
    else if (designFile) std::cout << "a design file: its attachments are listed, never changed";
    else if (dryRun) std::cout << "would be written (dry run)";
    else if (outcome.written) std::cout << "written";
    else std::cout << "not written";
    std::cout << '\n';
    for (const auto& change : outcome.changes) {
        std::cout << "  " << StoredPathKindName(change.kind) << ' ' << Narrow(change.name) << ": "
                  << Narrow(change.oldPath) << " -> " << Narrow(change.newPath)
                  << (change.resolves ? "  (found)" : "  (not found)") << '\n';
    }
    if (outcome.saveStatus != Plotwright::StatusOk)
        std::cerr << "lodeqdb: " << drawing << ": not saved (status "
                  << static_cast<int>(outcome.saveStatus) << "); the file keeps its old bytes\n";
}

int RunRepath(const RepathArguments& arguments) {
    LodeQDBRelocate::RepathOptions options;
    options.from = Wide(arguments.from);
    options.to = Wide(arguments.to);
    options.relative = arguments.relative;
    options.dryRun = arguments.dryRun;
    std::vector<wstring> drawings;
    for (const std::string& file : arguments.files) drawings.push_back(FullPath(file));
    const auto outcomes = arguments.index.empty()
                              ? LodeQDBRelocate::Repath(drawings, options)
                              : LodeQDBRelocate::RepathOverIndex(arguments.index, options);
    bool failed = false;
    nlohmann::json list = nlohmann::json::array();
    for (const auto& outcome : outcomes) {
        failed = failed || !outcome.failure.empty() || outcome.saveStatus != Plotwright::StatusOk;
        if (arguments.json) list.push_back(OutcomeJson(outcome, arguments.dryRun));
        else PrintOutcome(outcome, arguments.dryRun);
    }
    if (arguments.json) {
        for (const auto& outcome : outcomes)
            if (!outcome.failure.empty())
                std::cerr << "lodeqdb: " << Narrow(outcome.drawing) << ": " << outcome.failure
                          << " (code " << outcome.failureCode << ")\n";
        std::cout << DumpJson(list) << '\n';
    }
    return failed ? ExitFailure : ExitSuccess;
}

struct PackArguments {
    std::string root;
    std::string output;
    bool json = false;
};

int RunPack(const PackArguments& arguments) {
    RequireReadableFile(arguments.root);
    const LodeQDBRelocate::PackReport report =
        LodeQDBRelocate::Pack(FullPath(arguments.root), FullPath(arguments.output));
    if (arguments.json) {
        nlohmann::json files = nlohmann::json::array();
        for (const auto& file : report.files) {
            files.push_back({{"path", file.archivePath},
                             {"original", Utf8(file.original)},
                             {"kind", file.kind},
                             {"size", file.size},
                             {"sha256", file.sha256},
                             {"rewritten", file.rewritten},
                             {"note", file.note}});
        }
        nlohmann::json missing = nlohmann::json::array();
        for (const auto& gone : report.missing) {
            missing.push_back({{"referrer", gone.referrer},
                               {"kind", StoredPathKindName(gone.kind)},
                               {"name", Utf8(gone.name)},
                               {"storedPath", Utf8(gone.storedPath)}});
        }
        std::cout << DumpJson({{"output", Utf8(report.output)},
                               {"root", report.root},
                               {"baseFolder", Utf8(report.baseFolder)},
                               {"files", files},
                               {"missing", missing}})
                  << '\n';
        return ExitSuccess;
    }
    std::cout << "packed " << report.files.size() << " files into " << Narrow(report.output)
              << "\nroot " << report.root << ", laid out below " << Narrow(report.baseFolder)
              << '\n';
    for (const auto& file : report.files) {
        std::cout << "  " << file.archivePath << (file.rewritten ? "  (paths rewritten)" : "");
        if (!file.note.empty()) std::cout << "  (" << file.note << ')';
        std::cout << '\n';
    }
    for (const auto& gone : report.missing) {
        std::cout << "missing: " << gone.referrer << ' ' << StoredPathKindName(gone.kind) << ' '
                  << Narrow(gone.name) << ": " << Narrow(gone.storedPath) << '\n';
    }
    return ExitSuccess;
}

}  // namespace

void AddRepathCommand(CLI::App& app) {
    auto arguments = std::make_shared<RepathArguments>();
    CLI::App* command = app.add_subcommand(
        "repath",
        "Rewrite the stored paths of references, images and underlays: a folder replaced by "
        "another (--from/--to), or made relative (--relative); changed drawings are saved in "
        "their own format generation");
    auto* files = command->add_option("files", arguments->files,
                                      "Drawings (.plw, .plx; .dgn only listed)");
    auto* index = command->add_option("--db", arguments->index,
                                      "Instead of FILEs: every drawing with dependencies in "
                                      "this index (of `lodeqdb index`)")
                      ->check(CLI::ExistingFile);
    files->excludes(index);
    auto* from = command->add_option("--from", arguments->from,
                                     "The folder the stored paths start with (Windows-form "
                                     "paths compare without regard to case or separator)");
    auto* to = command->add_option("--to", arguments->to, "What it becomes");
    from->needs(to);
    to->needs(from);
    command->add_flag("--relative", arguments->relative,
                      "Make every path that finds its file relative to the drawing's folder");
    command->add_flag("--dry-run", arguments->dryRun, "Write nothing; list what would change");
    command->add_flag("--json", arguments->json, "One JSON array of drawings on stdout");
    command->callback([arguments] {
        if (arguments->from.empty() && !arguments->relative)
            throw CLI::ValidationError("give --from and --to, or --relative");
        if (arguments->files.empty() && arguments->index.empty())
            throw CLI::ValidationError("give the drawings, or --db INDEX");
        if (!arguments->index.empty() && arguments->from.empty())
            throw CLI::ValidationError("--db needs --from and --to");
        EndWith(RunReportingErrors([&] { return RunRepath(*arguments); }));
    });
}

void AddPackCommand(CLI::App& app) {
    auto arguments = std::make_shared<PackArguments>();
    CLI::App* command = app.add_subcommand(
        "pack",
        "Put a drawing and everything it depends on, at any depth, into a zip archive that "
        "opens elsewhere, with a manifest.json of files, sizes, SHA-256 and missing files");
    command->add_option("root", arguments->root, "The drawing (or design file) to pack")
        ->required();
    command->add_option("--output,-o", arguments->output, "The zip archive to write")
        ->required();
    command->add_flag("--json", arguments->json, "One JSON object on stdout");
    command->callback([arguments] {
        EndWith(RunReportingErrors([&] { return RunPack(*arguments); }, arguments->root));
    });
}

}  // namespace lodeqdb::cli
