#include "agent/store/Database.h"

#include <sqlite3.h>

#include "platform/Files.h"

namespace agent {

namespace {

StoreError MakeError(const std::string& path, sqlite3* database, int code) {
  const char* text = database ? sqlite3_errmsg(database) : sqlite3_errstr(code);
  return StoreError(path + ": " + text, code);
}

}  // namespace

bool StoreError::IsDamage() const {
  const int primary = code_ & 0xFF;
  return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
}

bool StoreError::IsUnwritable() const {
  switch (code_ & 0xFF) {
    case SQLITE_PERM:
    case SQLITE_READONLY:
    case SQLITE_IOERR:
    case SQLITE_FULL:
    case SQLITE_CANTOPEN: return true;
    default: return false;
  }
}

void Database::Close::operator()(sqlite3* database) const { sqlite3_close_v2(database); }
void Database::Finalize::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Database::Database(const std::string& path, Place place) : path_(path) {
  if (place == Place::kMemory) {
    if (platform::FileExists(path_)) database_ = OpenReadOnly();
    MoveToMemory();
    return;
  }
  database_ = OpenFile();
  SetUpFile();
}

Database::~Database() = default;

void Database::SetUpFile() {
  Execute("PRAGMA synchronous=NORMAL");  // first, because the change of the journal waits for the disk, too
  Execute("PRAGMA journal_mode=WAL");
  Execute("PRAGMA foreign_keys=ON");
}

Database::Handle Database::Open(const std::string& name, int flags) const {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &opened, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  Handle handle(opened);
  if (code != SQLITE_OK) throw MakeError(path_, opened, code);
  sqlite3_extended_result_codes(opened, 1);
  return handle;
}

Database::Handle Database::OpenFile() const {
  Handle handle = Open(path_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  // SQLite opens a file that cannot be written all the same, and only the first change would fail.
  if (sqlite3_db_readonly(handle.get(), "main") == 1) throw MakeError(path_, nullptr, SQLITE_READONLY);
  sqlite3_busy_timeout(handle.get(), 2000);
  return handle;
}

// The companion files of a database on a read-only disk cannot be made. Without them its last changes may be missing.
Database::Handle Database::OpenReadOnly() {
  Handle handle = Open(path_, SQLITE_OPEN_READONLY);
  if (sqlite3_exec(handle.get(), "SELECT 1 FROM sqlite_master", nullptr, nullptr, nullptr) == SQLITE_OK) return handle;
  isComplete_ = false;
  std::string name = "file:";
  for (const char c : path_) name += c == '%' ? "%25" : c == '?' ? "%3f" : c == '#' ? "%23" : std::string(1, c);
  return Open(name + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

void Database::Copy(sqlite3* from, sqlite3* to) const {
  sqlite3_backup* backup = sqlite3_backup_init(to, "main", from, "main");
  if (!backup) throw MakeError(path_, to, sqlite3_errcode(to));
  sqlite3_backup_step(backup, -1);
  const int code = sqlite3_backup_finish(backup);
  if (code != SQLITE_OK) throw MakeError(path_, to, code);
}

bool Database::ReturnToFile() {
  if (!isComplete_) return false;
  try {
    Handle file = OpenFile();
    Copy(database_.get(), file.get());
    prepared_.clear();
    database_ = std::move(file);
    SetUpFile();
    return true;
  } catch (const StoreError& error) {
    if (error.IsUnwritable()) return false;
    throw;
  }
}

void Database::MoveToMemory() {
  Handle copy = Open(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  if (database_) Copy(database_.get(), copy.get());
  prepared_.clear();
  database_ = std::move(copy);
  Execute("PRAGMA foreign_keys=ON");
}

void Database::Execute(const std::string& sql) {
  const int code = sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw MakeError(path_, database_.get(), code);
}

int64_t Database::LastInsertedRow() const { return sqlite3_last_insert_rowid(database_.get()); }

int Database::Version() {
  Statement statement(*this, "PRAGMA user_version");
  return statement.Step() ? static_cast<int>(statement.Integer(0)) : 0;
}

// A pragma takes no parameters; the value is a number of our own.
void Database::SetVersion(int version) { Execute("PRAGMA user_version=" + std::to_string(version)); }

void Database::Migrate(std::span<const char* const> steps) {
  const int version = Version(), last = static_cast<int>(steps.size());
  if (version > last) throw StoreError(path_ + ": was written by a later version of this program", 0);
  if (version == last) return;
  Transaction transaction(*this);
  for (const char* step : steps.subspan(static_cast<size_t>(version))) Execute(step);
  SetVersion(last);
  transaction.Commit();
}

void Database::Check() {
  Statement statement(*this, "PRAGMA quick_check(1)");
  const std::string verdict = statement.Step() ? statement.Text(0) : "";
  if (verdict != "ok") throw StoreError(path_ + ": " + verdict, SQLITE_CORRUPT);
}

void Database::ReleaseMemory() { sqlite3_db_release_memory(database_.get()); }

Statement::Statement(Database& database, const char* sql) : database_(database) {
  if (auto idle = database.prepared_.extract(sql)) {
    statement_ = std::move(idle.mapped());
    return;
  }
  sqlite3_stmt* prepared = nullptr;
  Check(sqlite3_prepare_v3(database.Get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr));
  statement_.reset(prepared);
}

Statement::~Statement() {
  if (!statement_) return;
  Reset();
  sqlite3_clear_bindings(statement_.get());
  std::string sql = sqlite3_sql(statement_.get());
  database_.prepared_.emplace(std::move(sql), std::move(statement_));
}

void Statement::Check(int code) const {
  if (code != SQLITE_OK) throw MakeError(database_.Path(), database_.Get(), code);
}

Statement& Statement::Bind(int parameter, int64_t value) {
  Check(sqlite3_bind_int64(statement_.get(), parameter, value));
  return *this;
}

Statement& Statement::Bind(int parameter, std::string_view text) {
  // A null pointer would bind NULL.
  const char* bytes = text.data() ? text.data() : "";
  Check(sqlite3_bind_text(statement_.get(), parameter, bytes, static_cast<int>(text.size()), SQLITE_TRANSIENT));
  return *this;
}

Statement& Statement::BindBytes(int parameter, std::string_view bytes) {
  Check(sqlite3_bind_blob64(statement_.get(), parameter, bytes.data(), bytes.size(), SQLITE_TRANSIENT));
  return *this;
}

bool Statement::Step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  const StoreError error = MakeError(database_.Path(), database_.Get(), code);
  sqlite3_reset(statement_.get());
  throw StoreError(error);
}

void Statement::Run() {
  Step();
  Reset();
}

void Statement::Reset() { sqlite3_reset(statement_.get()); }

int64_t Statement::Integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }

std::string Statement::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
  return text ? std::string(text, static_cast<size_t>(sqlite3_column_bytes(statement_.get(), column))) : "";
}

std::string_view Statement::Bytes(int column) const {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  return {bytes, static_cast<size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

Transaction::Transaction(Database& database) : database_(sqlite3_get_autocommit(database.Get()) ? &database : nullptr) {
  if (database_) database_->Execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
  if (database_) sqlite3_exec(database_->Get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
  if (database_) database_->Execute("COMMIT");
  database_ = nullptr;
}

}  // namespace agent
