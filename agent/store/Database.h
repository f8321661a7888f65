// SQLite with errors as exceptions of one type and values that are always bound.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace agent {

class StoreError : public std::runtime_error {
 public:
  StoreError(const std::string& what, int code) : std::runtime_error(what), code_(code) {}
  // The file's content is damaged or no database, as opposed to a full disk or a missing right.
  bool IsDamage() const;
  // The file cannot be written or made: a full or read-only disk, or a missing right.
  bool IsUnwritable() const;

 private:
  int code_;
};

// A database file, made if missing. All operations throw StoreError.
class Database {
 public:
  enum class Place {
    kFile,
    kMemory,  // a copy of the file, if there is one; what changes is lost with this object
  };
  explicit Database(const std::string& path, Place place = Place::kFile);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  void Execute(const std::string& sql);
  int64_t LastInsertedRow() const;
  int Version();  // PRAGMA user_version
  void SetVersion(int version);
  // Each step is SQL that brings the tables from the version of its place to the next. All that are missing are done,
  // or none; a file of a later version is refused.
  void Migrate(std::span<const char* const> steps);
  // Goes on with a copy in memory. Call while no statement or transaction is in use.
  void MoveToMemory();
  // Stores the copy in the file as a whole and goes on there. Returns false, with the file unchanged, if it still
  // cannot be written, or if the copy may lack something that is in the file.
  bool ReturnToFile();
  // Looks through the whole file; throws if it is damaged.
  void Check();
  void ReleaseMemory();  // that only makes the next questions faster

  sqlite3* Get() const { return database_.get(); }
  const std::string& Path() const { return path_; }

 private:
  friend class Statement;
  struct Close {
    void operator()(sqlite3* database) const;
  };
  std::string path_;
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  using Prepared = std::unique_ptr<sqlite3_stmt, Finalize>;

  using Handle = std::unique_ptr<sqlite3, Close>;
  Handle Open(const std::string& name, int flags) const;
  Handle OpenReadOnly();
  Handle OpenFile() const;
  void SetUpFile();
  void Copy(sqlite3* from, sqlite3* to) const;

  Handle database_;
  bool isComplete_ = true;  // the copy in memory has everything that is in the file
  // By their SQL, those that are not in use: to prepare one takes longer than to run it.
  std::multimap<std::string, Prepared, std::less<>> prepared_;
};

// A prepared statement. Parameters count from 1, columns from 0.
class Statement {
 public:
  Statement(Database& database, const char* sql);
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Statement& Bind(int parameter, int64_t value);
  Statement& Bind(int parameter, std::string_view text);
  Statement& BindBytes(int parameter, std::string_view bytes);
  bool Step();  // true while there is a row
  // Steps once and makes ready for the next values.
  void Run();
  void Reset();
  int64_t Integer(int column) const;
  std::string Text(int column) const;
  std::string_view Bytes(int column) const;  // until the next step

 private:
  void Check(int code) const;
  Database::Prepared statement_;
  Database& database_;
};

// Everything until Commit, or nothing. One within another is part of it.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit();

 private:
  Database* database_;  // null if there is nothing to undo
};

}  // namespace agent
