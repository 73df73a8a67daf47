// The folder index tests' helpers.
#include "index/IndexTestSupport.h"

#include <sqlite3.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include <lodeqdb/index/FolderIndex.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/service/ChildrenQuery.h>
#include <lodeqdb/service/DgnChildren.h>
#include "tools/samplefolder/SampleFolder.h"

namespace lodeqdbtest {
namespace {

std::vector<std::string> Rows(sqlite3* db, const char* sql) {
    std::vector<std::string> rows;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) != SQLITE_OK) {
        rows.push_back(std::string("bad query: ") + sqlite3_errmsg(db));
        return rows;
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
        std::string row;
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            const auto* text = sqlite3_column_text(statement, column);
            row += (text != nullptr ? reinterpret_cast<const char*>(text) : "NULL");
            row += '|';
        }
        rows.push_back(row);
    }
    sqlite3_finalize(statement);
    return rows;
}

}  // namespace

std::string DumpIndex(const std::string& database) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(database.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return "can't open " + database;
    }
    std::vector<std::string> rows = Rows(
        db, "SELECT path, path_key, size, mtime_ns, inode, kind, creator_kind, format_generation,"
            " creator_name, error_class, error_code, error_message FROM files");
    for (const std::string& row :
         Rows(db, "SELECT f.path, r.position, r.name, r.name_key, r.type, r.status, r.ref_id,"
                  " r.present FROM refs r JOIN files f ON f.id = r.file_id"))
        rows.push_back("ref " + row);
    sqlite3_close(db);
    std::sort(rows.begin(), rows.end());
    std::string all;
    for (const std::string& row : rows) all += row + '\n';
    return all;
}

std::vector<std::string> FilesWithExtension(const std::string& folder,
                                            const std::string& extension) {
    std::vector<std::string> files;
    for (auto walk = std::filesystem::recursive_directory_iterator(folder);
         walk != std::filesystem::recursive_directory_iterator(); ++walk) {
        if (walk->path().filename() == ".lodeqdb") {
            walk.disable_recursion_pending();
            continue;
        }
        if (walk->is_regular_file() && walk->path().extension() == extension)
            files.push_back(walk->path().native());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string IndexedRecordsText(const std::string& database, const std::string& file) {
    std::ostringstream out;
    for (const auto& record : LodeQDBIndex::FolderIndex(database).RecordsOf(file))
        out << record.name << ' ' << record.type << ' ' << record.status << ' ' << record.refId
            << '\n';
    return out.str();
}

std::string LibraryRecordsText(const std::string& file) {
    const wstring path = LodeUtil::Utf16FromUtf8(file);
    const bool dgn = file.size() > 4 && file.substr(file.size() - 4) == ".dgn";
    std::ostringstream out;
    try {
        for (const auto& record : dgn ? LodeQDBService::Request::DGNChildren(path)
                                      : LodeQDBService::Request::PlotwrightChildren(path, nullptr))
            out << LodeUtil::Utf8FromUtf16(record.GetFullname()) << ' ' << record.GetType() << ' '
                << record.GetXrefStatus() << ' ' << record.GetRefId() << '\n';
    } catch (const std::exception&) {
        // A file that can't be read has no records in the index either.
    }
    return out.str();
}

std::string Normal(const std::string& name) {
    std::string slashes = name;
    std::replace(slashes.begin(), slashes.end(), '\\', '/');
    return std::filesystem::path(slashes).lexically_normal().native();
}

void Touch(const std::string& path, int seconds) {
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0) << path;
    timespec times[2] = {info.st_atim, info.st_mtim};
    times[1].tv_sec += seconds;
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0) << path;
}

void IndexFolderTest::SetUp() {
    TempFolderTest::SetUp();
    store = folder + "/store";
    lodeqdb::samples::WriteSampleFolder(store, SampleDrawings());
}

size_t IndexFolderTest::SampleDrawings() {
#ifdef LODEQDB_SANITIZED
    return 108;  // the shared drawings and two whole projects
#else
    return 130;
#endif
}

}  // namespace lodeqdbtest
