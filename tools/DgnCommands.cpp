// `lodeqdb dgn-models`, `lodeqdb dgn-refs`, `lodeqdb dgn-convert`: DGN design files, read
// through the DGN module.
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/DgnTranslation.h>
#include <lodeqdb/readsave/Saving.h>
#include <lodeqdb/service/DgnChildren.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "tools/Commands.h"
#include "tools/FileRecords.h"
#include "tools/Json.h"
#include "tools/Output.h"

namespace lodeqdb::cli {
namespace {

struct DgnOptions {
    std::string file;
    std::string output;
    std::string model;
    bool json = false;
};

// The element types of DGN V7 design files, as their public description names them.
std::string DgnElementTypeWords(int32_t type) {
    switch (type) {
        case 1:
            return "cell library header";
        case 2:
            return "cell";
        case 3:
            return "line";
        case 4:
            return "line string";
        case 5:
            return "group data";
        case 6:
            return "shape";
        case 7:
            return "text node";
        case 8:
            return "digitizer setup";
        case 9:
            return "design file header";
        case 10:
            return "level symbology";
        case 11:
            return "curve";
        case 12:
            return "complex chain";
        case 14:
            return "complex shape";
        case 15:
            return "ellipse";
        case 16:
            return "arc";
        case 17:
            return "text";
        case 18:
            return "3D surface";
        case 19:
            return "3D solid";
        case 34:
            return "shared cell definition";
        case 35:
            return "shared cell";
        case 66:
            return "application data";
        default:
            return "other";
    }
}

void PrintReport(const std::vector<LodeQDBUtil::DgnConvertRow>& report, const wstring& output,
                 bool json) {
    if (json) {
        // Element type → count, for what was translated and what was left out.
        std::map<std::string, uint64_t> translated;
        std::map<std::string, uint64_t> skipped;
        nlohmann::json classes = nlohmann::json::array();
        for (const auto& row : report) {
            const std::string type = std::to_string(row.elementType);
            if (row.className.empty()) {
                skipped[type] += row.count;
                continue;
            }
            translated[type] += row.count;
            classes.push_back({{"elementType", row.elementType},
                               {"className", Narrow(row.className)},
                               {"count", row.count}});
        }
        std::cout << DumpJson(nlohmann::json{{"output", Narrow(output)},
                                             {"translated", translated},
                                             {"skipped", skipped},
                                             {"classes", classes}})
                  << '\n';
        return;
    }
    for (const auto& row : report) {
        if (row.elementType < 0) {
            std::cout << row.count << " unreadable bytes after the last whole element: left out\n";
            continue;
        }
        std::cout << "type " << row.elementType << " (" << DgnElementTypeWords(row.elementType)
                  << "): " << row.count << (row.count == 1 ? " element " : " elements ");
        if (row.className.empty())
            std::cout << "left out\n";
        else
            std::cout << "became " << Narrow(row.className) << '\n';
    }
    std::cout << "written " << Narrow(output) << '\n';
}

int Convert(const DgnOptions& options) {
    const wstring output = FullPath(options.output);
    const wstring extension = LodeUtil::FileUtil::GetFileExtension(output);
    if (!LodeUtil::FileUtil::IsPLWFile(extension) && !LodeUtil::FileUtil::IsPLXFile(extension)) {
        std::cerr << "lodeqdb dgn-convert: OUT must end in .plw or .plx\n";
        return ExitUsage;
    }
    RequireReadableFile(options.file);
    PwDbDatabase drawing(false, true);
    std::vector<LodeQDBUtil::DgnConvertRow> report;
    LodeQDBUtil::ReadDGNToPlwDatabase(FullPath(options.file),
                                      LodeUtil::Utf16FromUtf8(options.model), drawing, report);
    const Plotwright::ErrorStatus status = LodeUtil::FileUtil::IsPLXFile(extension)
                                               ? LodeQDBUtil::DbSaveAsforPLX(drawing, output)
                                               : LodeQDBUtil::DbSaveAsforLODEHOST(drawing, output);
    if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);
    PrintReport(report, output, options.json);
    return ExitSuccess;
}

}  // namespace

void AddDgnCommands(CLI::App& app) {
    auto models = std::make_shared<DgnOptions>();
    CLI::App* modelsCommand =
        app.add_subcommand("dgn-models", "The models of a DGN design file, one name a line");
    modelsCommand->add_option("file", models->file, "DGN design file")->required();
    modelsCommand->callback([models] {
        EndWith(RunReportingErrors([&] {
            // The module answers a file it can't open as one it doesn't understand.
            RequireReadableFile(models->file);
            for (const wstring& name :
                 LodeQDBUtil::GetModelViewNamesFromDGN(FullPath(models->file)))
                std::cout << Narrow(name) << '\n';
            return ExitSuccess;
        }));
    });

    auto refs = std::make_shared<DgnOptions>();
    CLI::App* refsCommand =
        app.add_subcommand("dgn-refs", "The files a DGN design file refers to (its attachments)");
    refsCommand->add_option("file", refs->file, "DGN design file")->required();
    refsCommand->add_flag("--json", refs->json, "One JSON array on stdout");
    refsCommand->callback([refs] {
        EndWith(RunReportingErrors([&] {
            RequireReadableFile(refs->file);
            PrintFileRecords(LodeQDBService::Request::DGNChildren(FullPath(refs->file)),
                             refs->json);
            return ExitSuccess;
        }));
    });

    auto convert = std::make_shared<DgnOptions>();
    CLI::App* convertCommand = app.add_subcommand(
        "dgn-convert", "Translates a model of a DGN design file into a drawing and saves it");
    convertCommand->add_option("file", convert->file, "DGN design file")->required();
    convertCommand->add_option("out", convert->output, "Drawing to write (.plw or .plx)")
        ->required();
    convertCommand->add_option("--model", convert->model,
                               "The model to translate, by its exact name (default: the first)");
    convertCommand->add_flag("--json", convert->json,
                             "One JSON object: \"translated\" and \"skipped\" by element type");
    convertCommand->callback(
        [convert] { EndWith(RunReportingErrors([&] { return Convert(*convert); })); });
}

}  // namespace lodeqdb::cli
