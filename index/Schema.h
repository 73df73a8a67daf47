// The index file's tables, as SQL: made when a file is new, checked when it is opened. The
// same text stands in docs/index.md, for other programs that read the index.
#pragma once

#include <string_view>

#include "index/Sqlite.h"

namespace LodeQDBIndex::detail {

/// The schema's version, kept in meta.schema_version.
inline constexpr int kSchemaVersion = 1;

/// The statements that make the tables and indexes (each CREATE ... IF NOT EXISTS).
std::string_view SchemaSql();

/// Sets the connection's journal (WAL) and pragmas, makes the tables when missing, and
/// checks the version. Throws IndexError for a file that isn't an index of this version.
void PrepareSchema(Connection& connection, bool writing);

}  // namespace LodeQDBIndex::detail
