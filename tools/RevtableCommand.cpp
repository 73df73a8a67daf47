// `lodeqdb revtable show|update|headers`: a drawing's revision table read, brought to the rows
// a release tool wants, or given its column names.
//
// The revision block's exceptions carry no words: the sentences people read on stderr are the
// client's, one per code and one for a table without a header row. A failed update or headers
// command writes nothing, so the drawing's file stays byte for byte as it was.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <functional>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <typeinfo>
#include <vector>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/lodeutil/Module.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/readsave/Saving.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>
#include "tools/Commands.h"
#include "tools/Json.h"
#include "tools/Output.h"
#include "tools/Table.h"

namespace lodeqdb::cli {
namespace {

using Rows = std::vector<std::map<wstring, wstring>>;

struct RevtableOptions {
    std::string file;
    std::string rows;
    std::vector<std::string> keys;
    std::vector<std::string> columns;
    std::string templateFile;
    std::string insert = "0,0,1";
    std::vector<std::string> headers;
    std::string output;
    bool json = false;
};

std::string Utf8(const wstring& text) {
    return LodeUtil::Utf8FromUtf16(text);
}

std::vector<wstring> WideList(const std::vector<std::string>& names) {
    std::vector<wstring> wide;
    for (const std::string& name : names) wide.push_back(LodeUtil::Utf16FromUtf8(name));
    return wide;
}

// --- Errors -----------------------------------------------------------------------------------

// The sentence for a bare lode::LodeException of the revision block; empty for other codes.
std::string RevisionBlockSentence(int32_t code) {
    switch (code) {
        case RevisionBlock::CellReadFailed:
            return "a cell of the revision table could not be read";
        case RevisionBlock::NoBlockInstance:
            return "the drawing has no revision block, or nothing places it "
                   "(`lodeqdb revtable update` imports and places one)";
        case RevisionBlock::NoTableInBlock:
            return "the drawing's block \"lode_RevBlock\" holds no table";
        case RevisionBlock::NoMatchingColumn:
            return "no name of --columns is a column of the table's header, or no name of --key "
                   "is among those columns";
        default:
            return {};
    }
}

// Runs `command`, giving the revision block's exceptions their sentences and every other
// failure the report all subcommands share. `writes` adds that the file was left alone.
int RunRevtable(const std::function<int()>& command, const std::string& file, bool writes) {
    const std::string prefix = "lodeqdb: " + file + ": ";
    const std::string unchanged = writes ? "; nothing was written" : "";
    return RunReportingErrors(
        [&] {
            try {
                return command();
            } catch (const RevisionBlock::RowNotFoundException&) {
                std::cerr << prefix
                          << "RowNotFoundException: the revision table has no header row, so "
                             "its columns have no names"
                          << unchanged << '\n';
            } catch (const lode::PlotwrightException& error) {
                std::cerr << prefix << "PlotwrightException (code " << error.code() << ", status "
                          << static_cast<int>(error.status())
                          << "): the drawing database refused a step of the revision table's "
                             "work"
                          << unchanged << '\n';
            } catch (const lode::LodeException& error) {
                const std::string sentence = RevisionBlockSentence(error.code());
                // File errors and the like have words of their own.
                if (typeid(error) != typeid(lode::LodeException) || sentence.empty()) throw;
                std::cerr << prefix << "LodeException (code " << error.code() << "): " << sentence
                          << unchanged << '\n';
            }
            return static_cast<int>(ExitFailure);
        },
        file);
}

// --- Input --------------------------------------------------------------------------------

// The bytes of `path`, a regular file; a pipe or a folder is refused at once instead of waited
// on. Throws CLI::ValidationError (exit 2): the command line named a file that can't serve.
std::string ReadInputFile(const std::string& option, const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) throw CLI::ValidationError(option, path + ": " + std::strerror(errno));
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        throw CLI::ValidationError(option, path + ": not a regular file");
    }
    std::string bytes;
    char buffer[65536];
    for (;;) {
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) {
            const int error = errno;
            ::close(fd);
            throw CLI::ValidationError(option, path + ": " + std::strerror(error));
        }
        if (got == 0) break;
        bytes.append(buffer, static_cast<size_t>(got));
    }
    ::close(fd);
    return bytes;
}

// ROWS.json: an array of objects, each from a column name to the cell's text.
Rows ParseRows(const std::string& path) {
    const std::string bytes = ReadInputFile("--rows", path);
    const nlohmann::json parsed = nlohmann::json::parse(bytes, nullptr, false);
    const std::string expected = ": expected a JSON array of objects from column name to text";
    if (parsed.is_discarded()) throw CLI::ValidationError("--rows", path + ": not JSON" + expected);
    if (!parsed.is_array()) throw CLI::ValidationError("--rows", path + expected);
    Rows rows;
    for (size_t index = 0; index < parsed.size(); ++index) {
        const nlohmann::json& row = parsed[index];
        const std::string where = path + ": row " + std::to_string(index + 1);
        if (!row.is_object())
            throw CLI::ValidationError("--rows", where + " is no object" + expected);
        std::map<wstring, wstring> values;
        for (const auto& [name, text] : row.items()) {
            if (!text.is_string()) {
                throw CLI::ValidationError("--rows",
                                           where + ": \"" + name + "\" is not a text" + expected);
            }
            values[LodeUtil::Utf16FromUtf8(name)] =
                LodeUtil::Utf16FromUtf8(text.get_ref<const std::string&>());
        }
        rows.push_back(std::move(values));
    }
    return rows;
}

struct Placement {
    double x = 0.0;
    double y = 0.0;
    double scale = 1.0;
};

// "X,Y,SCALE": three finite numbers, the scale not 0. Throws CLI::ValidationError (exit 2).
Placement ParsePlacement(const std::string& text) {
    std::vector<double> numbers;
    size_t start = 0;
    for (;;) {
        const size_t comma = text.find(',', start);
        const std::string part =
            text.substr(start, comma == std::string::npos ? comma : comma - start);
        char* end = nullptr;
        const double value = std::strtod(part.c_str(), &end);
        if (part.empty() || end != part.c_str() + part.size() || !std::isfinite(value)) break;
        numbers.push_back(value);
        if (comma == std::string::npos) {
            if (numbers.size() == 3 && numbers[2] != 0.0)
                return {numbers[0], numbers[1], numbers[2]};
            break;
        }
        start = comma + 1;
    }
    throw CLI::ValidationError(
        "--insert", "takes X,Y,SCALE: three finite numbers, the scale not 0, not \"" + text + "\"");
}

void RequireDrawingName(const std::string& option, const std::string& path) {
    const wstring extension = LodeUtil::FileUtil::GetFileExtension(Wide(path));
    if (LodeUtil::FileUtil::IsPLWFile(extension) || LodeUtil::FileUtil::IsPLXFile(extension))
        return;
    throw CLI::ValidationError(option, path + ": a drawing is written as .plw or .plx");
}

// The installed template: share/lodeqdb/templates beside the client's bin folder, in the build
// tree as after installing.
std::string InstalledTemplate() {
    const wstring client = LodeUtil::Module::FileName(
        LodeUtil::Module::Containing(reinterpret_cast<const void*>(&InstalledTemplate)));
    const std::string folder = Narrow(LodeUtil::Path::GetDirectoryName(client));
    return folder + "/" + LODEQDB_TEMPLATES_FROM_BIN + "/revision-block.plw";
}

// --- The table's texts --------------------------------------------------------------------

// Every stored text of the revision table (title and headers included), to tell whether
// writing the headers changed anything: the table takes every write, same text or not. Empty
// without the block. Opened and closed here, while the manager holds the table for read.
std::vector<wstring> TableTexts(PwDbDatabase& drawing) {
    std::vector<wstring> texts;
    PwDbObjectPointer<PwDbBlockTable> blocks(&drawing, PwDb::OpenForRead);
    if (!blocks) return texts;
    PwDbObjectId id;
    if (blocks->getIdAt(RevisionBlock::RevisionBlockName.c_str(), id, false) != 0) return texts;
    PwDbObjectPointer<PwDbBlockTableRecord> block(id, PwDb::OpenForRead);
    blocks.release();
    if (!block) return texts;
    PwDbBlockTableRecordIterator* raw = nullptr;
    if (block->newIterator(raw) != Plotwright::StatusOk) return texts;
    const std::unique_ptr<PwDbBlockTableRecordIterator> entities(raw);
    for (entities->start(); !entities->done(); entities->step()) {
        PwDbObjectId entity;
        entities->getEntityId(entity);
        PwDbObjectPointer<PwDbTable> table(entity, PwDb::OpenForRead);
        if (!table) continue;
        for (unsigned row = 0; row < table->rowCount(); ++row) {
            for (unsigned column = 0; column < table->columnCount(); ++column) {
                PwString text;
                table->getCellText(row, column, 0, text);
                texts.push_back(text.toWString());
            }
        }
        break;
    }
    return texts;
}

// Writes the headers; true when that changed any text of the table.
bool WriteHeaders(RevisionBlock::BlockMgr& manager, PwDbDatabase& drawing,
                  const std::vector<std::string>& headers) {
    const std::vector<wstring> before = TableTexts(drawing);
    manager.ApplyColumnHeaders(WideList(headers));
    return TableTexts(drawing) != before;
}

// Saves over FILE or to OUT, in the drawing's own format generation, replacing the file
// atomically. A refusal is a failure: nothing was written.
void Save(PwDbDatabase& drawing, const std::string& target) {
    const Plotwright::ErrorStatus status =
        LodeQDBUtil::DbSaveAsOriginalVersion(drawing, FullPath(target));
    if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);
}

// --- The subcommands ----------------------------------------------------------------------

int Show(const RevtableOptions& options) {
    RequireReadableFile(options.file);
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(FullPath(options.file), drawing, true, false);
    RevisionBlock::BlockMgr manager(drawing);
    const bool defined = manager.HasBlockDefinition();
    const bool placed = manager.HasBlockInstance();
    const std::vector<wstring> headers =
        defined ? manager.GetColumnHeaders() : std::vector<wstring>();
    const Rows rows = manager.GetData();
    if (options.json) {
        nlohmann::json list = nlohmann::json::array();
        for (const auto& row : rows) {
            nlohmann::json values = nlohmann::json::object();
            for (const auto& [name, text] : row) values[Utf8(name)] = Utf8(text);
            list.push_back(values);
        }
        nlohmann::json names = nlohmann::json::array();
        for (const wstring& header : headers) names.push_back(Utf8(header));
        std::cout << DumpJson({{"hasDefinition", defined},
                               {"hasInstance", placed},
                               {"headers", names},
                               {"rows", list}})
                  << '\n';
        return ExitSuccess;
    }
    std::cout << "revision block: "
              << (!defined ? "none"
                  : placed ? "defined and placed"
                           : "defined, placed nowhere")
              << '\n';
    if (!defined) return ExitSuccess;
    std::vector<std::string> headings;
    for (const wstring& header : headers) headings.push_back(Utf8(header));
    Table table(headings);
    for (const auto& row : rows) {
        std::vector<std::string> cells;
        for (const wstring& header : headers) {
            const auto found = row.find(header);
            cells.push_back(found != row.end() ? Utf8(found->second) : std::string());
        }
        table.add(cells);
    }
    table.print(std::cout);
    return ExitSuccess;
}

struct UpdateResult {
    bool imported = false;
    bool inserted = false;
    bool changed = false;
    bool written = false;
};

// Brings the block in when the drawing has none, places it when nothing shows it, writes the
// headers when asked, updates the rows. The manager is gone before the drawing is saved.
UpdateResult UpdateDrawing(const RevtableOptions& options, const Rows& rows,
                           const Placement& placement, PwDbDatabase& drawing) {
    UpdateResult result;
    RevisionBlock::BlockMgr manager(drawing);
    if (!manager.HasBlockDefinition()) {
        const std::string source =
            options.templateFile.empty() ? InstalledTemplate() : options.templateFile;
        RequireReadableFile(source);
        PwDbDatabase templateDrawing(false, true);
        LodeQDBUtil::ReadFileToDatabase(FullPath(source), templateDrawing, true, false);
        result.imported = manager.ImportBlockDefinition(templateDrawing);
        if (!manager.HasBlockDefinition())
            throw lode::LodeException(RevisionBlock::NoBlockInstance);
    }
    if (!manager.HasBlockInstance()) {
        manager.InsertBlockInstance(placement.x, placement.y, placement.scale);
        result.inserted = true;
    }
    if (!options.headers.empty() && WriteHeaders(manager, drawing, options.headers))
        result.changed = true;
    RevisionBlock::UpdateContext context;
    context.rows = rows;
    context.keyColumns = WideList(options.keys);
    context.columns = WideList(options.columns);
    if (manager.Update(context)) result.changed = true;
    return result;
}

int Update(const RevtableOptions& options, const Rows& rows, const Placement& placement) {
    RequireReadableFile(options.file);
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(FullPath(options.file), drawing, true, false);
    UpdateResult result = UpdateDrawing(options, rows, placement, drawing);
    const std::string target = options.output.empty() ? options.file : options.output;
    if (result.changed || result.imported || result.inserted) {
        Save(drawing, target);
        result.written = true;
    }
    if (options.json) {
        std::cout << DumpJson({{"imported", result.imported},
                               {"inserted", result.inserted},
                               {"changed", result.changed},
                               {"written", result.written}})
                  << '\n';
        return ExitSuccess;
    }
    if (result.imported) std::cout << "imported the revision block\n";
    if (result.inserted) {
        std::cout << "placed the revision block at " << placement.x << "," << placement.y
                  << " (scale " << placement.scale << ")\n";
    }
    std::cout << (result.changed ? "the revision table changed\n"
                                 : "the revision table already holds these rows\n");
    std::cout << (result.written ? "written to " + target + "\n"
                                 : std::string("nothing written\n"));
    return ExitSuccess;
}

int Headers(const RevtableOptions& options) {
    RequireReadableFile(options.file);
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(FullPath(options.file), drawing, true, false);
    bool changed = false;
    {
        RevisionBlock::BlockMgr manager(drawing);
        changed = WriteHeaders(manager, drawing, options.headers);
    }
    const std::string target = options.output.empty() ? options.file : options.output;
    if (changed) Save(drawing, target);
    if (options.json) {
        std::cout << DumpJson({{"changed", changed}, {"written", changed}}) << '\n';
    } else {
        std::cout << (changed ? "the headers changed\nwritten to " + target + "\n"
                              : std::string("the headers are already these\nnothing written\n"));
    }
    return ExitSuccess;
}

void AddOutputOption(CLI::App& command, RevtableOptions& options) {
    command
        .add_option("--output", options.output,
                    "Write the result here (.plw or .plx) instead of over FILE")
        ->check([](const std::string& path) {
            const wstring extension = LodeUtil::FileUtil::GetFileExtension(Wide(path));
            return LodeUtil::FileUtil::IsPLWFile(extension) ||
                           LodeUtil::FileUtil::IsPLXFile(extension)
                       ? std::string()
                       : std::string("OUT must end in .plw or .plx");
        });
}

void AddShow(CLI::App& revtable) {
    auto options = std::make_shared<RevtableOptions>();
    CLI::App* command = revtable.add_subcommand(
        "show", "The revision table of a drawing: its column names, then one row a line");
    command->add_option("file", options->file, "Drawing file (.plw or .plx)")->required();
    command->add_flag("--json", options->json,
                      "One JSON object: hasDefinition, hasInstance, headers, rows");
    command->callback(
        [options] { EndWith(RunRevtable([&] { return Show(*options); }, options->file, false)); });
}

void AddUpdate(CLI::App& revtable) {
    auto options = std::make_shared<RevtableOptions>();
    CLI::App* command = revtable.add_subcommand(
        "update",
        "Make the revision table hold the rows of ROWS.json, importing the block from the "
        "template and placing it when the drawing lacks them; the file is written only when "
        "something changed");
    command->add_option("file", options->file, "Drawing file (.plw or .plx)")->required();
    command
        ->add_option("--rows", options->rows,
                     "JSON array of objects from column name to text, top row first")
        ->required();
    command
        ->add_option("--key", options->keys,
                     "Columns that identify a row, in order of preference (NAME,NAME...)")
        ->required()
        ->delimiter(',');
    command
        ->add_option("--columns", options->columns,
                     "Columns the update writes (NAME,NAME...); others keep their text")
        ->required()
        ->delimiter(',');
    command->add_option("--template", options->templateFile,
                        "Drawing holding the block \"lode_RevBlock\" (default: the installed "
                        "template)");
    command->add_option("--insert", options->insert,
                        "Where a new placement goes: X,Y,SCALE (default 0,0,1)");
    command->add_option("--headers", options->headers, "Column names to write first (NAME,NAME...)")
        ->delimiter(',');
    AddOutputOption(*command, *options);
    command->add_flag("--json", options->json,
                      "One JSON object: imported, inserted, changed, written");
    command->callback([options] {
        // The command line and ROWS.json are checked before the drawing is read: their faults
        // are usage errors.
        RequireDrawingName("file", options->file);
        const Placement placement = ParsePlacement(options->insert);
        const Rows rows = ParseRows(options->rows);
        EndWith(
            RunRevtable([&] { return Update(*options, rows, placement); }, options->file, true));
    });
}

void AddHeaders(CLI::App& revtable) {
    auto options = std::make_shared<RevtableOptions>();
    CLI::App* command = revtable.add_subcommand(
        "headers",
        "Write the table's title and column names (in upper case for drawings in imperial "
        "units); the file is written only when a text changed");
    command->add_option("file", options->file, "Drawing file (.plw or .plx)")->required();
    command->add_option("names", options->headers, "Column names, left to right")->required();
    AddOutputOption(*command, *options);
    command->add_flag("--json", options->json, "One JSON object: changed, written");
    command->callback([options] {
        RequireDrawingName("file", options->file);
        EndWith(RunRevtable([&] { return Headers(*options); }, options->file, true));
    });
}

}  // namespace

void AddRevtableCommand(CLI::App& app) {
    CLI::App* revtable = app.add_subcommand(
        "revtable", "A drawing's revision table: show it, update its rows, write its headers");
    revtable->require_subcommand(1);
    AddShow(*revtable);
    AddUpdate(*revtable);
    AddHeaders(*revtable);
}

}  // namespace lodeqdb::cli
