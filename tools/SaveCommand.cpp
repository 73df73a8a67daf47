// `lodeqdb save`: writes a drawing in its own generation, an earlier one, or as an exchange
// file.
#include <sys/stat.h>

#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/SetWorkingDBMgr.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/readsave/Saving.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "tools/Commands.h"
#include "tools/Json.h"
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
    if (options.format == static_cast<int>(lode::FormatCurrent)) {
        // The current generation is no earlier one: the toolkit writes it directly.
        LodeQDBUtil::SetWorkingDBMgr working(&drawing);
        return drawing.saveAs(output.c_str(), false, PwDb::PwDbPlwVersionCurrent, nullptr);
    }
    if (options.format) {
        return LodeQDBUtil::DbSaveAsPreviousVersionforLODEHOST(
            drawing, output, static_cast<lode::PlotwrightFileFormat>(*options.format));
    }
    return LodeQDBUtil::DbSaveAsOriginalVersion(drawing, output);
}

// What tells one file at a path from another: a save replaces the file by a new one.
struct FileStamp {
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    timespec modified{};
    off_t size = 0;
    bool operator!=(const FileStamp& other) const {
        return exists != other.exists || device != other.device || inode != other.inode ||
               modified.tv_sec != other.modified.tv_sec ||
               modified.tv_nsec != other.modified.tv_nsec || size != other.size;
    }
};

FileStamp StampOf(const wstring& path) {
    FileStamp stamp;
    const std::optional<std::string> native = LodeUtil::NativePath(path);
    struct stat status {};
    if (!native || ::stat(native->c_str(), &status) != 0) return stamp;
    stamp.exists = true;
    stamp.device = status.st_dev;
    stamp.inode = status.st_ino;
    stamp.modified = status.st_mtim;
    stamp.size = status.st_size;
    return stamp;
}

// The generations OUT can be written in: natively 2 to 8 (8, the current one, as the
// drawing's own current generation); as an exchange file 1 and 3 to 8.
std::string CheckFormat(const SaveOptions& options) {
    if (!options.format) return {};
    const int format = *options.format;
    const bool native = format >= lode::FormatOldestPlw && format <= lode::FormatCurrent;
    const bool exchange = format == lode::FormatOldestPlx ||
                          (format >= lode::FormatGeneration3 && format <= lode::FormatCurrent);
    if (options.plx ? exchange : native) return {};
    return options.plx ? "--format with --plx takes 1 or 3 to 8, not " + std::to_string(format)
                       : "--format takes 2 to 8 (8 is the current generation), not " +
                             std::to_string(format);
}

int SaveDrawing(const SaveOptions& options) {
    const wstring input = Wide(options.input);
    const wstring output = Wide(options.output);
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(input, drawing, true, false);
    const FileStamp before = StampOf(output);
    const Plotwright::ErrorStatus status = Save(options, drawing, output);
    // A save that answers 0 without writing is told apart, so that a script isn't misled:
    // every save replaces the file, so a written file is a new one.
    const FileStamp after = StampOf(output);
    const bool written = status == Plotwright::StatusOk && after.exists && after != before;
    if (options.json) {
        std::cout << DumpJson(
                         nlohmann::json{{"status", static_cast<int>(status)}, {"written", written}})
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
        "Save a drawing in its own format generation, another one (--format 2-8) or "
        "as an exchange file (--plx)");
    command->add_option("file", options->input, "Drawing to read (.plw or .plx)")->required();
    command->add_option("out", options->output, "File to write")->required();
    auto* format = command->add_option(
        "--format", options->format,
        "Generation to write: 2-8 natively (8: the current one); with --plx 1 or 3-8 "
        "(the numbers `lodeqdb format` prints)");
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
        if (const std::string wrong = CheckFormat(*options); !wrong.empty())
            throw CLI::ValidationError(wrong);
        const int code = RunReportingErrors([&] { return SaveDrawing(*options); });
        if (code != ExitSuccess) throw CLI::RuntimeError(code);
    });
}

}  // namespace lodeqdb::cli
