// A thin owner of SQLite's C interface for the index: a connection, prepared statements and
// transactions that end on every way out. Failures throw IndexError with SQLite's message.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <lodeqdb/index/IndexError.h>

namespace LodeQDBIndex::detail {

/// One open connection. Not shared between threads: each thread that asks opens its own.
class Connection {
  public:
    /// Opens (with `create`, makes) the database file `path`; waits up to `busyMs` for another
    /// connection's lock. Throws IndexError when the file can't be opened.
    Connection(const std::string& path, bool create, int busyMs = 5000);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Runs one or more statements that give no rows. Throws IndexError.
    void Execute(std::string_view sql);
    sqlite3* Handle() const { return db_; }
    /// The path the connection was opened with.
    const std::string& Path() const { return path_; }

  private:
    sqlite3* db_ = nullptr;
    std::string path_;
};

/// One prepared statement, reset for reuse by Reset(). Columns and parameters count from 0 and
/// 1 as in SQLite.
class Statement {
  public:
    Statement(Connection& connection, std::string_view sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& Bind(int index, int64_t value);
    Statement& Bind(int index, double value);
    Statement& Bind(int index, std::string_view text);
    Statement& Bind(int index, std::nullopt_t);
    Statement& Bind(int index, const std::optional<int64_t>& value);
    Statement& Bind(int index, const std::optional<std::string>& value);

    /// Steps once: true while there is a row. Throws IndexError on failure.
    bool Step();
    /// Steps until done (for statements that give no rows).
    void Run();
    /// Clears the bindings and rewinds the statement.
    void Reset();

    int64_t Int(int column) const;
    double Real(int column) const;
    std::string Text(int column) const;
    bool IsNull(int column) const;

  private:
    Connection& connection_;
    sqlite3_stmt* statement_ = nullptr;
};

/// BEGIN IMMEDIATE on construction, ROLLBACK unless Commit() was called.
class Transaction {
  public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void Commit();

  private:
    Connection& connection_;
    bool open_ = true;
};

}  // namespace LodeQDBIndex::detail
