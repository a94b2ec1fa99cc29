#include "hosts/common/StateDatabase.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <system_error>
#include <utility>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

namespace hosts::common {
namespace {

constexpr std::string_view kSQLiteMagic{"SQLite format 3\0", 16};
constexpr std::size_t kHeaderSize = 100;
constexpr std::size_t kPageSizeOffset = 16;
constexpr std::size_t kUserVersionOffset = 60;
constexpr std::size_t kApplicationIdOffset = 68;

constexpr std::string_view kDamaged = "the file is damaged or truncated";
constexpr std::string_view kAnotherFile = "; move the file, or name another one with --state";
constexpr std::string_view kElsewhere = "or name a file elsewhere with --state";

std::string Quoted(const std::filesystem::path& file) {
  return "'" + file.native() + "'";
}

[[noreturn]] void Refuse(const std::filesystem::path& file, std::string_view reason) {
  throw StateStoreError("cannot use the state store " + Quoted(file) + ": " + std::string(reason) +
                        std::string(kAnotherFile));
}

std::string InSeconds(std::chrono::milliseconds time) {
  const auto tenths = (time.count() + 50) / 100;
  return std::to_string(tenths / 10) + (tenths % 10 == 0 ? "" : "." + std::to_string(tenths % 10)) +
         " s";
}

/// Returns the operating system's reason for the last error of the database. If that is unknown,
/// returns the message of `error`.
std::string Reason(const SQLite::Exception& error, sqlite3* handle) {
  const int systemError = handle == nullptr ? 0 : sqlite3_system_errno(handle);
  return systemError == 0 ? error.what() : std::generic_category().message(systemError);
}

/// Returns a message that explains an SQLite error and says what the user can do. `patience` is the
/// time that SQLite waited for a lock. `handle` is null if the database was not opened.
std::string Explain(const SQLite::Exception& error, const std::filesystem::path& file,
                    std::chrono::milliseconds patience, sqlite3* handle) {
  const std::string store = "the state store " + Quoted(file);
  switch (error.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "cannot lock " + store + " within " + InSeconds(patience) +
             ": another program has locked it; wait for that program or end it, and try again";
    case SQLITE_FULL:
      return "cannot write " + store + ": the disk is full; free some space and try again, " +
             std::string(kElsewhere);
    case SQLITE_IOERR:
      return "cannot read or write " + store + ": " + Reason(error, handle) +
             "; check the disk and try again, " + std::string(kElsewhere);
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return "cannot open " + store + " for writing: " + Reason(error, handle) +
             "; allow writing to the file and its folder, " + std::string(kElsewhere);
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return "cannot use " + store + ": " + std::string(kDamaged) + std::string(kAnotherFile);
    default:
      return "cannot use " + store + ": " + error.what();
  }
}

/// Calls `function` and returns its result. Converts an SQLite error to a `StateStoreError`.
template <class Function>
auto Guarded(const std::filesystem::path& file, std::chrono::milliseconds patience,
             const SQLite::Database* database, Function function) {
  try {
    return function();
  } catch (const SQLite::Exception& error) {
    throw StateStoreError(
        Explain(error, file, patience, database == nullptr ? nullptr : database->getHandle()));
  }
}

/// Returns whether the file exists. Throws if it exists but is not a regular file, because opening
/// a pipe or a device can block. Throws if its type cannot be read.
bool Exists(const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  switch (status.type()) {
    case std::filesystem::file_type::regular:
      return true;
    case std::filesystem::file_type::not_found:
      return false;
    case std::filesystem::file_type::directory:
      Refuse(file, "it is a folder");
    case std::filesystem::file_type::none:
    case std::filesystem::file_type::unknown:
      Refuse(file, error.message());
    default:
      Refuse(file, "it is not a regular file");
  }
}

void MakeFolderOf(const std::filesystem::path& file) {
  std::error_code error;
  std::filesystem::create_directories(file.parent_path(), error);
  if (!error) return;
  throw StateStoreError("cannot create the folder " + Quoted(file.parent_path()) +
                        " for the state store: " + error.message() + "; create it, " +
                        std::string(kElsewhere));
}

int ReadBigEndian(const std::array<char, kHeaderSize>& header, std::size_t offset,
                  std::size_t length) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < length; ++i) {
    value = (value << 8U) | static_cast<unsigned char>(header[offset + i]);
  }
  return static_cast<int>(value);
}

/// The first 100 bytes of a database file, and the size of the file in bytes.
struct Header {
  sqlite3_int64 fileSize = 0;
  std::array<char, kHeaderSize> bytes{};

  bool IsCutShort() const { return fileSize < static_cast<sqlite3_int64>(kHeaderSize); }
  bool IsOfDatabase() const {
    return std::string_view(bytes.data(), kSQLiteMagic.size()) == kSQLiteMagic;
  }
  int PageSize() const { return ReadBigEndian(bytes, kPageSizeOffset, 2); }
  int UserVersion() const { return ReadBigEndian(bytes, kUserVersionOffset, 4); }
  int ApplicationId() const { return ReadBigEndian(bytes, kApplicationIdOffset, 4); }
};

/// Reads the header through SQLite's own file descriptor. Closing a second descriptor would release
/// the POSIX locks that this process holds on the file.
Header ReadHeader(SQLite::Database& database, const std::filesystem::path& path) {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(database.getHandle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
  Header header;
  if (file == nullptr || file->pMethods == nullptr ||
      file->pMethods->xFileSize(file, &header.fileSize) != SQLITE_OK) {
    Refuse(path, "cannot read the size of the file");
  }
  const int result = file->pMethods->xRead(file, header.bytes.data(), kHeaderSize, 0);
  if (result != SQLITE_OK && result != SQLITE_IOERR_SHORT_READ) {
    Refuse(path, "cannot read the header of the file");
  }
  return header;
}

/// Throws if the file is not empty and is not a state store that this version supports. Call this
/// before SQLite reads the file. A read could change another program's database, because SQLite
/// would roll back its journal or apply its write-ahead log.
void RefuseForeignFile(SQLite::Database& database, const std::filesystem::path& path) {
  const Header header = ReadHeader(database, path);
  if (header.fileSize == 0) {
    // SQLite reports a size of 0 for a file of one byte.
    std::error_code error;
    if (std::filesystem::file_size(path, error) == 1) Refuse(path, "it is not a state store");
    return;
  }
  if (!header.IsOfDatabase()) Refuse(path, "it is not a state store");
  if (header.IsCutShort()) Refuse(path, kDamaged);
  if (header.ApplicationId() != kStateApplicationId) {
    Refuse(path, "it is a database of another program");
  }
  if (header.UserVersion() > kStateLayoutVersion) {
    throw StateStoreError("cannot use the state store " + Quoted(path) +
                          ": a newer version of this program wrote it (layout " +
                          std::to_string(header.UserVersion()) + "; this version supports layout " +
                          std::to_string(kStateLayoutVersion) +
                          "); update this program, or name another file with --state");
  }
}

/// Throws if the last page of the file is incomplete, because SQLite does not detect that. Call
/// this only while the file is locked. Otherwise, another program may be writing a page, or SQLite
/// may still have to roll back a journal.
void RefuseCutFile(SQLite::Database& database, const std::filesystem::path& path) {
  const Header header = ReadHeader(database, path);
  const int pageSize = header.PageSize();
  if (header.fileSize != 0 && pageSize > 1 && header.fileSize % pageSize != 0) {
    Refuse(path, kDamaged);
  }
}

StateValues ReadTable(SQLite::Database& database) {
  StateValues values;
  SQLite::Statement statement(database, "SELECT key, value FROM kept_value");
  while (statement.executeStep()) {
    values.insert_or_assign(statement.getColumn(0).getString(), statement.getColumn(1).getString());
  }
  return values;
}

bool HasTable(SQLite::Database& database) {
  return database.tableExists("kept_value");
}

void MakeTable(SQLite::Database& database) {
  database.exec("PRAGMA application_id = " + std::to_string(kStateApplicationId));
  database.exec("PRAGMA user_version = " + std::to_string(kStateLayoutVersion));
  database.exec("CREATE TABLE kept_value (key TEXT PRIMARY KEY, value TEXT NOT NULL)");
}

void WriteDifference(SQLite::Database& database, const StateValues& before,
                     const StateValues& after) {
  SQLite::Statement remove(database, "DELETE FROM kept_value WHERE key = ?");
  for (const auto& [key, value] : before) {
    if (after.contains(key)) continue;
    remove.bind(1, key);
    remove.exec();
    remove.reset();
  }
  SQLite::Statement keep(database, "INSERT OR REPLACE INTO kept_value VALUES (?, ?)");
  for (const auto& [key, value] : after) {
    const auto old = before.find(key);
    if (old != before.end() && old->second == value) continue;
    keep.bind(1, key);
    keep.bind(2, value);
    keep.exec();
    keep.reset();
  }
}

}  // namespace

std::optional<StateDatabase> StateDatabase::OpenExisting(const std::filesystem::path& file,
                                                         std::chrono::milliseconds patience) {
  if (!Exists(file)) return std::nullopt;
  return StateDatabase(file, patience, SQLite::OPEN_READWRITE);
}

StateDatabase StateDatabase::OpenOrMake(const std::filesystem::path& file,
                                        std::chrono::milliseconds patience) {
  if (!Exists(file)) MakeFolderOf(file);
  return StateDatabase(file, patience, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
}

StateDatabase::StateDatabase(std::filesystem::path file, std::chrono::milliseconds patience,
                             int openFlags)
    : file_(std::move(file)), patience_(patience) {
  Guarded(file_, patience_, nullptr, [&] {
    database_ = std::make_unique<SQLite::Database>(file_.c_str(), openFlags,
                                                   static_cast<int>(patience_.count()));
  });
  RefuseForeignFile(*database_, file_);
  // The schema of an untrusted file must not call functions with side effects.
  Guarded(file_, patience_, database_.get(),
          [&] { database_->exec("PRAGMA trusted_schema = OFF"); });
}

StateDatabase::StateDatabase(StateDatabase&&) noexcept = default;
StateDatabase& StateDatabase::operator=(StateDatabase&&) noexcept = default;
StateDatabase::~StateDatabase() = default;

StateValues StateDatabase::Read() {
  return Guarded(file_, patience_, database_.get(), [&] {
    const SQLite::Transaction transaction(*database_);
    const bool isEmpty = !HasTable(*database_);
    RefuseCutFile(*database_, file_);
    return isEmpty ? StateValues() : ReadTable(*database_);
  });
}

StateValues StateDatabase::Change(const std::function<void(StateValues&)>& change) {
  return Guarded(file_, patience_, database_.get(), [&] {
    SQLite::Transaction transaction(*database_, SQLite::TransactionBehavior::IMMEDIATE);
    const bool isNew = !HasTable(*database_);
    RefuseCutFile(*database_, file_);
    const StateValues before = isNew ? StateValues() : ReadTable(*database_);
    StateValues after = before;
    change(after);
    if (after == before) return after;
    if (isNew) MakeTable(*database_);
    WriteDifference(*database_, before, after);
    transaction.commit();
    return after;
  });
}

}  // namespace hosts::common
