// `lodeqdb type`, `lodeqdb creator`, `lodeqdb format`: what generation a drawing is of and
// which kind of application made it.
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/identification/FileFormat.h>
#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "tools/Commands.h"
#include "tools/EnumNames.h"
#include "tools/Json.h"
#include "tools/Output.h"

namespace lodeqdb::cli {
namespace {

struct TypeOptions {
    std::vector<std::string> files;
    bool header = false;
    bool database = false;
    bool json = false;
};

lode::PlwFileType TypeOf(const TypeOptions& options, const std::string& file) {
    const wstring path = Wide(file);
    if (options.header) {
        // The header reader answers every unreadable file with "no application information".
        RequireReadableFile(file);
        return LodeQDBUtil::GetPlwFileTypeByHeader(path);
    }
    // An exchange file has no header to read: its content tells.
    const bool exchange = LodeUtil::FileUtil::IsPLXFile(LodeUtil::FileUtil::GetFileExtension(path));
    if (options.database || exchange) {
        PwDbDatabase drawing(false, true);
        LodeQDBUtil::ReadFileToDatabase(path, drawing, true, false);
        return LodeQDBUtil::GetPlwFileTypeByDatabase(drawing);
    }
    return LodeQDBUtil::GetPlwFileType(path);
}

// One line a file; a file that fails says so on stderr and the others go on.
int ShowTypes(const TypeOptions& options) {
    int result = ExitSuccess;
    for (const std::string& file : options.files) {
        const int code = RunReportingErrors(
            [&] {
                const lode::PlwFileType type = TypeOf(options, file);
                if (options.json) {
                    const nlohmann::json line = {{"file", file},
                                                 {"type", static_cast<int>(type)},
                                                 {"typeName", PlwFileTypeName(type)}};
                    std::cout << DumpJson(line) << '\n';
                } else {
                    std::cout << file << ": " << static_cast<int>(type) << ' '
                              << PlwFileTypeName(type) << " (" << PlwFileTypeWords(type) << ")\n";
                }
                return ExitSuccess;
            },
            file);
        if (code != ExitSuccess) result = ExitFailure;
    }
    return result;
}

}  // namespace

void AddIdentifyCommands(CLI::App& app) {
    auto type = std::make_shared<TypeOptions>();
    CLI::App* typeCommand = app.add_subcommand(
        "type",
        "Which kind of application made each drawing (its header first, else its content; an "
        "exchange file, which has no header, by its content)");
    typeCommand->add_option("files", type->files, "Drawing files")->required();
    auto* header = typeCommand->add_flag("--header", type->header,
                                         "Tell by the header alone (fails without an owner entry)");
    typeCommand->add_flag("--database", type->database, "Tell by the drawing's content alone")
        ->excludes(header);
    typeCommand->add_flag("--json", type->json, "One JSON object a line (JSON Lines)");
    typeCommand->callback([type] { EndWith(ShowTypes(*type)); });

    auto creatorFile = std::make_shared<std::string>();
    auto creatorJson = std::make_shared<bool>(false);
    CLI::App* creator =
        app.add_subcommand("creator", "The name of the application that made a drawing");
    creator->add_option("file", *creatorFile, "Drawing file")->required();
    creator->add_flag("--json", *creatorJson, "One JSON object on stdout");
    creator->callback([creatorFile, creatorJson] {
        EndWith(RunReportingErrors(
            [&] {
                RequireReadableFile(*creatorFile);
                const std::string name = Narrow(LodeQDBUtil::GetPlwCreatorName(Wide(*creatorFile)));
                if (*creatorJson) {
                    std::cout << DumpJson(nlohmann::json{{"file", *creatorFile}, {"creator", name}})
                              << '\n';
                } else {
                    std::cout << *creatorFile << " was last written by \"" << name << "\"\n";
                }
                return ExitSuccess;
            },
            *creatorFile));
    });

    auto formatFile = std::make_shared<std::string>();
    auto formatJson = std::make_shared<bool>(false);
    CLI::App* format =
        app.add_subcommand("format", "The format generation a drawing was last written in");
    format->add_option("file", *formatFile, "Drawing file (.plw or .plx)")->required();
    format->add_flag("--json", *formatJson, "One JSON object on stdout");
    format->callback([formatFile, formatJson] {
        EndWith(RunReportingErrors([&] {
            const lode::PlotwrightFileFormat generation =
                LodeQDBUtil::GetPlotwrightFileFormat(Wide(*formatFile));
            if (*formatJson) {
                const nlohmann::json record = {
                    {"file", *formatFile},
                    {"format", static_cast<int>(generation)},
                    {"formatName", PlotwrightFileFormatName(generation)}};
                std::cout << DumpJson(record) << '\n';
            } else {
                std::cout << static_cast<int>(generation) << ' '
                          << PlotwrightFileFormatName(generation) << " ("
                          << PlotwrightFileFormatWords(generation) << ")\n";
            }
            return ExitSuccess;
        }));
    });
}

}  // namespace lodeqdb::cli
