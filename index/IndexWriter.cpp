// Writing files, records and runs into the index.
#include "index/IndexWriter.h"

#include <chrono>

namespace LodeQDBIndex::detail {
namespace {

int64_t Now() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

}  // namespace

IndexWriter::IndexWriter(Connection& connection)
    : connection_(connection),
      upsert_(connection,
              "INSERT INTO files (path, path_key, size, mtime_ns, inode, kind, creator_kind,"
              " format_generation, creator_name, error_class, error_code, error_message, stale,"
              " run_id) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, 0, ?13)"
              " ON CONFLICT (path) DO UPDATE SET path_key = excluded.path_key,"
              " size = excluded.size, mtime_ns = excluded.mtime_ns, inode = excluded.inode,"
              " kind = excluded.kind, creator_kind = excluded.creator_kind,"
              " format_generation = excluded.format_generation,"
              " creator_name = excluded.creator_name, error_class = excluded.error_class,"
              " error_code = excluded.error_code, error_message = excluded.error_message,"
              " stale = 0, run_id = excluded.run_id RETURNING id"),
      clearRecords_(connection, "DELETE FROM refs WHERE file_id = ?1"),
      insertRecord_(connection,
                    "INSERT INTO refs (file_id, position, name, name_key, type, status, ref_id,"
                    " present) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)") {}

std::map<std::string, IndexedFile> IndexWriter::FilesUnder(const std::string& folder) {
    // Paths under the folder sort between "folder/" and "folder0" ('0' follows '/').
    Statement select(connection_,
                     "SELECT id, path, size, mtime_ns, inode, error_class IS NOT NULL, stale"
                     " FROM files WHERE path > ?1 AND path < ?2");
    select.Bind(1, std::string_view(folder + "/")).Bind(2, std::string_view(folder + "0"));
    std::map<std::string, IndexedFile> files;
    while (select.Step()) {
        IndexedFile file;
        file.id = select.Int(0);
        file.size = select.Int(2);
        file.mtimeNs = select.Int(3);
        file.inode = select.Int(4);
        file.failed = select.Int(5) != 0;
        file.stale = select.Int(6) != 0;
        files.emplace(select.Text(1), file);
    }
    return files;
}

std::vector<int64_t> IndexWriter::ReferrersOf(const std::string& key) {
    Statement select(connection_, "SELECT DISTINCT file_id FROM refs WHERE name_key = ?1");
    select.Bind(1, std::string_view(key));
    std::vector<int64_t> ids;
    while (select.Step()) ids.push_back(select.Int(0));
    return ids;
}

void IndexWriter::MarkStale(int64_t id) {
    Statement update(connection_, "UPDATE files SET stale = 1 WHERE id = ?1");
    update.Bind(1, id).Run();
}

void IndexWriter::Remove(int64_t id) {
    Statement remove(connection_, "DELETE FROM files WHERE id = ?1");
    remove.Bind(1, id).Run();
}

void IndexWriter::Write(const FileFacts& facts, int64_t runId) {
    upsert_.Reset();
    upsert_.Bind(1, std::string_view(facts.file.path))
        .Bind(2, std::string_view(facts.key))
        .Bind(3, facts.file.size)
        .Bind(4, facts.file.mtimeNs)
        .Bind(5, facts.file.inode)
        .Bind(6, std::string_view(facts.kind))
        .Bind(7, facts.creatorKind)
        .Bind(8, facts.formatGeneration)
        .Bind(9, facts.creatorName)
        .Bind(10, facts.errorClass)
        .Bind(11, facts.errorCode)
        .Bind(12, facts.errorMessage)
        .Bind(13, runId);
    if (!upsert_.Step()) throw IndexError("the index gave no row for " + facts.file.path);
    const int64_t id = upsert_.Int(0);
    upsert_.Reset();
    clearRecords_.Reset();
    clearRecords_.Bind(1, id).Run();
    int64_t position = 0;
    for (const DependencyRecord& record : facts.records) {
        insertRecord_.Reset();
        insertRecord_.Bind(1, id)
            .Bind(2, position++)
            .Bind(3, std::string_view(record.name))
            .Bind(4, std::string_view(record.key))
            .Bind(5, static_cast<int64_t>(record.type))
            .Bind(6, static_cast<int64_t>(record.status))
            .Bind(7, record.refId)
            .Bind(8, static_cast<int64_t>(record.present ? 1 : 0))
            .Run();
    }
}

int64_t IndexWriter::StartRun(const std::string& folder) {
    Statement insert(connection_, "INSERT INTO runs (folder, started) VALUES (?1, ?2)");
    insert.Bind(1, std::string_view(folder)).Bind(2, Now()).Run();
    return sqlite3_last_insert_rowid(connection_.Handle());
}

void IndexWriter::FinishRun(int64_t runId, int64_t seen, int64_t read, int64_t unchanged,
                            int64_t removed, int64_t failed, double seconds) {
    Statement update(connection_,
                     "UPDATE runs SET finished = ?2, seen = ?3, read = ?4, unchanged = ?5,"
                     " removed = ?6, failed = ?7, seconds = ?8 WHERE id = ?1");
    update.Bind(1, runId)
        .Bind(2, Now())
        .Bind(3, seen)
        .Bind(4, read)
        .Bind(5, unchanged)
        .Bind(6, removed)
        .Bind(7, failed)
        .Bind(8, seconds)
        .Run();
}

}  // namespace LodeQDBIndex::detail
