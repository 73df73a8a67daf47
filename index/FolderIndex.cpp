// Questions to the index: where-used, records, broken references, failed files, counts.
#include <lodeqdb/index/FolderIndex.h>

#include <sys/stat.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>

#include "index/PathKey.h"
#include "index/Schema.h"
#include "index/Sqlite.h"

namespace LodeQDBIndex {

using namespace detail;

struct FolderIndex::Impl {
    explicit Impl(const std::string& path) : connection(OpenExisting(path), false) {
        PrepareSchema(connection, false);
    }
    static const std::string& OpenExisting(const std::string& path) {
        struct stat info {};
        if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
            throw IndexError("there is no index " + path);
        return path;
    }
    Connection connection;
};

namespace {

// A record that the walks go down through: a resolved reference, or a design file.
constexpr const char* kFollowed = "((r.type = 1 AND r.status = 1) OR r.type = 4)";

IndexedRecord RecordOf(Statement& select) {
    IndexedRecord record;
    record.referrer = select.Text(0);
    record.name = select.Text(1);
    record.type = static_cast<int>(select.Int(2));
    record.status = static_cast<int>(select.Int(3));
    record.refId = select.Int(4);
    record.present = select.Int(5) != 0;
    return record;
}

}  // namespace

FolderIndex::FolderIndex(const std::string& path) : impl_(std::make_unique<Impl>(path)) {}

FolderIndex::~FolderIndex() = default;

std::vector<Usage> FolderIndex::WhereUsed(const std::string& file, bool direct) const {
    Connection& db = impl_->connection;
    // Direct users: any record of the name. Above them, only records the walks go down.
    Statement anyRecord(db,
                        "SELECT DISTINCT f.path, f.path_key FROM refs r JOIN files f"
                        " ON f.id = r.file_id WHERE r.name_key = ?1");
    Statement followed(db, std::string("SELECT DISTINCT f.path, f.path_key FROM refs r JOIN "
                                       "files f ON f.id = r.file_id WHERE r.name_key = ?1 AND ") +
                               kFollowed);
    const std::string target = IndexName(file);
    // Each user found, by key: its name and the key of the file it refers to on the way down.
    struct Found {
        std::string path;
        std::string below;
        size_t depth;
    };
    std::map<std::string, Found> found;
    std::deque<std::string> frontier{PathKey(target)};
    std::map<std::string, size_t> depthOf{{frontier.front(), 0}};
    while (!frontier.empty()) {
        const std::string key = frontier.front();
        frontier.pop_front();
        const size_t depth = depthOf[key];
        if (direct && depth > 0) break;
        Statement& select = depth == 0 ? anyRecord : followed;
        select.Reset();
        select.Bind(1, std::string_view(key));
        while (select.Step()) {
            const std::string userKey = select.Text(1);
            if (depthOf.count(userKey) != 0) continue;
            depthOf[userKey] = depth + 1;
            found.emplace(userKey, Found{select.Text(0), key, depth + 1});
            frontier.push_back(userKey);
        }
    }
    std::vector<Usage> uses;
    for (const auto& [key, user] : found) {
        Usage use;
        use.drawing = user.path;
        use.chain.push_back(user.path);
        for (std::string below = user.below;;) {
            const auto step = found.find(below);
            if (step == found.end()) {
                use.chain.push_back(target);
                break;
            }
            use.chain.push_back(step->second.path);
            below = step->second.below;
        }
        uses.push_back(std::move(use));
    }
    std::sort(uses.begin(), uses.end(), [](const Usage& a, const Usage& b) {
        return a.chain.size() != b.chain.size() ? a.chain.size() < b.chain.size()
                                                : a.drawing < b.drawing;
    });
    return uses;
}

std::vector<IndexedRecord> FolderIndex::RecordsOf(const std::string& file) const {
    Statement select(impl_->connection,
                     "SELECT f.path, r.name, r.type, r.status, r.ref_id, r.present FROM refs r"
                     " JOIN files f ON f.id = r.file_id WHERE f.path = ?1 ORDER BY r.position");
    select.Bind(1, std::string_view(IndexName(file)));
    std::vector<IndexedRecord> records;
    while (select.Step()) records.push_back(RecordOf(select));
    return records;
}

std::vector<IndexedRecord> FolderIndex::AllRecords() const {
    Statement select(impl_->connection,
                     "SELECT f.path, r.name, r.type, r.status, r.ref_id, r.present FROM refs r"
                     " JOIN files f ON f.id = r.file_id ORDER BY f.path, r.position");
    std::vector<IndexedRecord> records;
    while (select.Step()) records.push_back(RecordOf(select));
    return records;
}

bool FolderIndex::Contains(const std::string& file) const {
    Statement select(impl_->connection, "SELECT 1 FROM files WHERE path = ?1");
    select.Bind(1, std::string_view(IndexName(file)));
    return select.Step();
}

std::vector<IndexedRecord> FolderIndex::BrokenReferences() const {
    Statement select(impl_->connection,
                     "SELECT f.path, r.name, r.type, r.status, r.ref_id, r.present FROM refs r"
                     " JOIN files f ON f.id = r.file_id"
                     " WHERE r.present = 0 OR (r.type = 1 AND r.status IN (4, 5))"
                     " ORDER BY f.path, r.position");
    std::vector<IndexedRecord> records;
    while (select.Step()) records.push_back(RecordOf(select));
    return records;
}

std::vector<FailedFile> FolderIndex::FailedFiles() const {
    Statement select(impl_->connection,
                     "SELECT path, kind, error_class, error_code, error_message FROM files"
                     " WHERE error_class IS NOT NULL ORDER BY path");
    std::vector<FailedFile> files;
    while (select.Step())
        files.push_back({select.Text(0), select.Text(1), select.Text(2), select.Int(3),
                         select.Text(4)});
    return files;
}

IndexStats FolderIndex::Stats() const {
    Connection& db = impl_->connection;
    IndexStats stats;
    const auto count = [&db](const char* sql) {
        Statement select(db, sql);
        return select.Step() ? select.Int(0) : 0;
    };
    stats.files = count("SELECT count(*) FROM files");
    stats.records = count("SELECT count(*) FROM refs");
    stats.brokenReferences =
        count("SELECT count(*) FROM refs r WHERE r.present = 0 OR (r.type = 1 AND r.status IN (4, 5))");
    stats.failedFiles = count("SELECT count(*) FROM files WHERE error_class IS NOT NULL");
    Statement kinds(db, "SELECT kind, count(*) FROM files GROUP BY kind");
    while (kinds.Step()) stats.byKind[kinds.Text(0)] = kinds.Int(1);
    Statement formats(db,
                      "SELECT format_generation, count(*) FROM files WHERE format_generation IS"
                      " NOT NULL GROUP BY format_generation");
    while (formats.Step()) stats.byFormatGeneration[formats.Int(0)] = formats.Int(1);
    Statement creators(db,
                       "SELECT creator_kind, count(*) FROM files WHERE creator_kind IS NOT NULL"
                       " AND error_class IS NULL GROUP BY creator_kind");
    while (creators.Step()) stats.byCreatorKind[creators.Int(0)] = creators.Int(1);
    return stats;
}

DependencyGraph FolderIndex::GraphBelow(const std::string& root) const {
    Statement records(impl_->connection,
                      "SELECT r.name, r.name_key, r.type, r.status, r.present FROM refs r JOIN"
                      " files f ON f.id = r.file_id WHERE f.path_key = ?1 ORDER BY f.path,"
                      " r.position");
    DependencyGraph graph;
    std::map<std::string, size_t> nodeOf;
    const std::string rootName = IndexName(root);
    graph.nodes.push_back({rootName, 1, !Contains(rootName)});
    nodeOf[PathKey(rootName)] = 0;
    std::deque<std::string> pending{PathKey(rootName)};
    while (!pending.empty()) {
        const std::string key = pending.front();
        pending.pop_front();
        const size_t from = nodeOf[key];
        records.Reset();
        records.Bind(1, std::string_view(key));
        while (records.Step()) {
            const std::string childKey = records.Text(1);
            const int type = static_cast<int>(records.Int(2));
            const int status = static_cast<int>(records.Int(3));
            auto [node, added] = nodeOf.emplace(childKey, graph.nodes.size());
            if (added) {
                const bool missing = records.Int(4) == 0 || (type == 1 && status == 4);
                graph.nodes.push_back({records.Text(0), type, missing});
                if ((type == 1 && status == 1) || type == 4) pending.push_back(childKey);
            }
            graph.edges.push_back({from, node->second, status});
        }
    }
    return graph;
}

std::string FindIndexFor(const std::string& path) {
    std::filesystem::path folder(IndexName(path));
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error)) folder = folder.parent_path();
    for (;;) {
        const std::filesystem::path candidate = folder / ".lodeqdb" / "index.sqlite";
        if (std::filesystem::is_regular_file(candidate, error)) return candidate.native();
        if (!folder.has_parent_path() || folder.parent_path() == folder) return {};
        folder = folder.parent_path();
    }
}

std::string IndexName(const std::string& path) {
    std::error_code error;
    std::string text = std::filesystem::absolute(path, error).lexically_normal().native();
    if (error) text = path;
    while (text.size() > 1 && text.back() == '/') text.pop_back();
    return text;
}

}  // namespace LodeQDBIndex
