// The SQLite connection, statement and transaction owners of the index.
#include "index/Sqlite.h"

namespace LodeQDBIndex::detail {
namespace {

[[noreturn]] void Fail(sqlite3* db, const std::string& what) {
    throw IndexError(what + ": " + (db != nullptr ? sqlite3_errmsg(db) : "out of memory"));
}

}  // namespace

Connection::Connection(const std::string& path, bool create, int busyMs) : path_(path) {
    const int flags = SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0) |
                      SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(path.c_str(), &db_, flags, nullptr) != SQLITE_OK) {
        const std::string message = db_ != nullptr ? sqlite3_errmsg(db_) : "out of memory";
        sqlite3_close(db_);
        db_ = nullptr;
        throw IndexError("can't open the index " + path + ": " + message);
    }
    sqlite3_busy_timeout(db_, busyMs);
    sqlite3_extended_result_codes(db_, 1);
}

Connection::~Connection() {
    sqlite3_close_v2(db_);
}

void Connection::Execute(std::string_view sql) {
    char* error = nullptr;
    const std::string text(sql);
    if (sqlite3_exec(db_, text.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
        const std::string message = error != nullptr ? error : sqlite3_errmsg(db_);
        sqlite3_free(error);
        throw IndexError("the index " + path_ + ": " + message);
    }
}

Statement::Statement(Connection& connection, std::string_view sql) : connection_(connection) {
    if (sqlite3_prepare_v2(connection.Handle(), sql.data(), static_cast<int>(sql.size()),
                           &statement_, nullptr) != SQLITE_OK)
        Fail(connection.Handle(), "the index " + connection.Path());
}

Statement::~Statement() {
    sqlite3_finalize(statement_);
}

Statement& Statement::Bind(int index, int64_t value) {
    sqlite3_bind_int64(statement_, index, value);
    return *this;
}

Statement& Statement::Bind(int index, double value) {
    sqlite3_bind_double(statement_, index, value);
    return *this;
}

Statement& Statement::Bind(int index, std::string_view text) {
    sqlite3_bind_text(statement_, index, text.data(), static_cast<int>(text.size()),
                      SQLITE_TRANSIENT);
    return *this;
}

Statement& Statement::Bind(int index, std::nullopt_t) {
    sqlite3_bind_null(statement_, index);
    return *this;
}

Statement& Statement::Bind(int index, const std::optional<int64_t>& value) {
    return value ? Bind(index, *value) : Bind(index, std::nullopt);
}

Statement& Statement::Bind(int index, const std::optional<std::string>& value) {
    return value ? Bind(index, std::string_view(*value)) : Bind(index, std::nullopt);
}

bool Statement::Step() {
    const int result = sqlite3_step(statement_);
    if (result == SQLITE_ROW) return true;
    if (result == SQLITE_DONE) return false;
    Fail(connection_.Handle(), "the index " + connection_.Path());
}

void Statement::Run() {
    while (Step()) {
    }
    sqlite3_reset(statement_);
}

void Statement::Reset() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

int64_t Statement::Int(int column) const {
    return sqlite3_column_int64(statement_, column);
}

double Statement::Real(int column) const {
    return sqlite3_column_double(statement_, column);
}

std::string Statement::Text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return text == nullptr ? std::string()
                           : std::string(text, static_cast<size_t>(
                                                   sqlite3_column_bytes(statement_, column)));
}

bool Statement::IsNull(int column) const {
    return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

Transaction::Transaction(Connection& connection) : connection_(connection) {
    connection_.Execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (open_) sqlite3_exec(connection_.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
    connection_.Execute("COMMIT");
    open_ = false;
}

}  // namespace LodeQDBIndex::detail
