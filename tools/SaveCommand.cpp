// `lodeqdb save`: writes a drawing in its own generation, an earlier one, or as an exchange
// file.
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "lodeutil/FileSystem.h"
#include "lodeutil/Utf.h"
#include "readsave/ReadIntoDatabase.h"
#include "readsave/Saving.h"
#include "toolkit/db/PwDbDatabase.h"
#include "tools/Commands.h"
#include "tools/Output.h"

namespace lodeqdb::cli {
namespace {

struct SaveOptions {
    std::string input;
    std::string output;
    std::optional<int> format;
    bool original = false;
    bool plx = false;
    bool json = false;
};

Plotwright::ErrorStatus Save(const SaveOptions& options, PwDbDatabase& drawing,
                             const wstring& output) {
    if (options.plx) {
        if (!options.format) return LodeQDBUtil::DbSaveAsforPLX(drawing, output);
        const auto format = static_cast<lode::PlotwrightFileFormat>(*options.format);
        return LodeQDBUtil::DbSaveAsforPLX(drawing, output, format);
    }
    if (options.format) {
        return LodeQDBUtil::DbSaveAsPreviousVersionforLODEHOST(
            drawing, output, static_cast<lode::PlotwrightFileFormat>(*options.format));
    }
    return LodeQDBUtil::DbSaveAsOriginalVersion(drawing, output);
}

int SaveDrawing(const SaveOptions& options) {
    const wstring input = LodeUtil::Utf16FromUtf8(options.input);
    const wstring output = LodeUtil::Utf16FromUtf8(options.output);
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(input, drawing, true, false);
    const bool existed = LodeUtil::File::Exists(output);
    const Plotwright::ErrorStatus status = Save(options, drawing, output);
    // A save that answers 0 without writing (an earlier generation the saver doesn't write)
    // is told apart, so that a script isn't misled.
    const bool written =
        status == Plotwright::StatusOk && (existed || LodeUtil::File::Exists(output));
    if (options.json) {
        std::cout
            << nlohmann::json{{"status", static_cast<int>(status)}, {"written", written}}.dump()
            << '\n';
    } else {
        std::cout << "status " << static_cast<int>(status);
        if (status == Plotwright::StatusOk && !written) std::cout << " (nothing written)";
        std::cout << '\n';
    }
    return status == Plotwright::StatusOk ? ExitSuccess : ExitFailure;
}

}  // namespace

void AddSaveCommand(CLI::App& app) {
    auto options = std::make_shared<SaveOptions>();
    CLI::App* command = app.add_subcommand(
        "save",
        "Save a drawing in its own format generation, an earlier one (--format 2-7) or "
        "as an exchange file (--plx)");
    command->add_option("file", options->input, "Drawing to read (.plw or .plx)")->required();
    command->add_option("out", options->output, "File to write")->required();
    auto* format = command->add_option(
        "--format", options->format,
        "Generation to write: 2-7 natively; with --plx 1 or 3-8 (lode::PlotwrightFileFormat)");
    command
        ->add_flag("--original", options->original,
                   "The drawing's own generation, native or exchange by OUT's extension "
                   "(the default)")
        ->excludes(format);
    command->add_flag("--plx", options->plx, "Write an exchange file");
    command->add_flag("--json", options->json, "One JSON object on stdout");
    command->callback([options] {
        if (options->original && options->plx)
            throw CLI::ValidationError("--original and --plx don't go together");
        const int code = RunReportingErrors([&] { return SaveDrawing(*options); });
        if (code != ExitSuccess) throw CLI::RuntimeError(code);
    });
}

}  // namespace lodeqdb::cli
