// The index file's schema, made and checked.
#include "index/Schema.h"

#include <string>

namespace LodeQDBIndex::detail {

std::string_view SchemaSql() {
    // Keep in step with docs/index.md: a test compares the two.
    return R"sql(CREATE TABLE IF NOT EXISTS meta (
    key   TEXT PRIMARY KEY,
    value TEXT NOT NULL
);
CREATE TABLE IF NOT EXISTS files (
    id                INTEGER PRIMARY KEY,
    path              TEXT NOT NULL UNIQUE,
    path_key          TEXT NOT NULL,
    size              INTEGER NOT NULL,
    mtime_ns          INTEGER NOT NULL,
    inode             INTEGER NOT NULL,
    kind              TEXT NOT NULL,
    creator_kind      INTEGER,
    format_generation INTEGER,
    creator_name      TEXT,
    error_class       TEXT,
    error_code        INTEGER,
    error_message     TEXT,
    stale             INTEGER NOT NULL DEFAULT 0,
    run_id            INTEGER NOT NULL
);
CREATE INDEX IF NOT EXISTS files_by_key ON files (path_key);
CREATE TABLE IF NOT EXISTS refs (
    file_id  INTEGER NOT NULL REFERENCES files (id) ON DELETE CASCADE,
    position INTEGER NOT NULL,
    name     TEXT NOT NULL,
    name_key TEXT NOT NULL,
    type     INTEGER NOT NULL,
    status   INTEGER NOT NULL,
    ref_id   INTEGER NOT NULL,
    present  INTEGER NOT NULL,
    PRIMARY KEY (file_id, position)
) WITHOUT ROWID;
CREATE INDEX IF NOT EXISTS refs_by_name ON refs (name_key);
CREATE TABLE IF NOT EXISTS runs (
    id        INTEGER PRIMARY KEY,
    folder    TEXT NOT NULL,
    started   INTEGER NOT NULL,
    finished  INTEGER,
    seen      INTEGER,
    read      INTEGER,
    unchanged INTEGER,
    removed   INTEGER,
    failed    INTEGER,
    seconds   REAL
);
)sql";
}

void PrepareSchema(Connection& connection, bool writing) {
    connection.Execute("PRAGMA foreign_keys = ON");
    if (!writing) {
        Statement tables(connection,
                         "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = 'meta'");
        if (!tables.Step() || tables.Int(0) == 0)
            throw IndexError(connection.Path() + " is not an index: it has no tables");
        Statement version(connection, "SELECT value FROM meta WHERE key = 'schema_version'");
        if (!version.Step() || version.Text(0) != std::to_string(kSchemaVersion))
            throw IndexError("the index " + connection.Path() + " is of another version");
        return;
    }
    // WAL: readers go on while a run writes, and a run killed at any moment leaves the
    // index as of its last commit. NORMAL synchronisation loses no committed transaction
    // when the process dies (only, at worst, the last ones when the machine does).
    connection.Execute("PRAGMA journal_mode = WAL");
    connection.Execute("PRAGMA synchronous = NORMAL");
    Transaction transaction(connection);
    connection.Execute(SchemaSql());
    Statement version(connection, "SELECT value FROM meta WHERE key = 'schema_version'");
    if (version.Step()) {
        if (version.Text(0) != std::to_string(kSchemaVersion))
            throw IndexError("the index " + connection.Path() + " is of another version");
    } else {
        Statement insert(connection,
                         "INSERT INTO meta (key, value) VALUES ('schema_version', ?1)");
        insert.Bind(1, std::string_view(std::to_string(kSchemaVersion))).Run();
    }
    transaction.Commit();
}

}  // namespace LodeQDBIndex::detail
