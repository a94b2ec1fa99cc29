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

constexpr std::string_view kDamaged = "it is damaged or cut short.";
constexpr std::string_view kAnotherFile =
    " The file was left as it is: move it away, or name another one with --state.";

std::string Quoted(const std::filesystem::path& file) {
  return "'" + file.native() + "'";
}

[[noreturn]] void Refuse(const std::filesystem::path& file, std::string_view reason) {
  throw StateStoreError("The state store " + Quoted(file) +
                        " cannot be used: " + std::string(reason) + std::string(kAnotherFile));
}

std::string InSeconds(std::chrono::milliseconds time) {
  const auto tenths = (time.count() + 50) / 100;
  return std::to_string(tenths / 10) + (tenths % 10 == 0 ? "" : "." + std::to_string(tenths % 10)) +
         " s";
}

std::string SystemReason(sqlite3* handle) {
  const int error = handle == nullptr ? 0 : sqlite3_system_errno(handle);
  return error == 0 ? std::string() : " (" + std::generic_category().message(error) + ")";
}

/// Returns a message that explains an SQLite error and what the user can do.
std::string Explain(const SQLite::Exception& error, const std::filesystem::path& file,
                    std::chrono::milliseconds patience, sqlite3* handle) {
  const std::string store = "The state store " + Quoted(file) + " ";
  switch (error.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return store + "is held by another program, which did not let go of it within " +
             InSeconds(patience) +
             ". Nothing was changed: end that program or wait for it, and try again.";
    case SQLITE_FULL:
      return store +
             "could not be written: the disk is full. Nothing was changed: free some space and "
             "try again, or name a file elsewhere with --state.";
    case SQLITE_IOERR:
      return store + "could not be read or written" + SystemReason(handle) +
             ". What was kept there still is: see to the disk and try again, or name a file "
             "elsewhere with --state.";
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return store + "cannot be opened for writing" + SystemReason(handle) +
             ". Nothing was changed: allow writing to the file and its folder, or name a file "
             "elsewhere with --state.";
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return store + "cannot be used: " + std::string(kDamaged) + std::string(kAnotherFile);
    default:
      return store + "failed: " + error.what() + ". Nothing was changed.";
  }
}

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

/// Returns whether the file exists. Throws if it is not a regular file, because opening a pipe or a
/// device can block.
bool Exists(const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  switch (status.type()) {
    case std::filesystem::file_type::regular:
      return true;
    case std::filesystem::file_type::not_found:
      return false;
    case std::filesystem::file_type::directory:
      Refuse(file, "it is a folder.");
    case std::filesystem::file_type::none:
    case std::filesystem::file_type::unknown:
      Refuse(file, "it cannot be looked at (" + error.message() + ").");
    default:
      Refuse(file, "it is no regular file.");
  }
}

void MakeFolderOf(const std::filesystem::path& file) {
  std::error_code error;
  std::filesystem::create_directories(file.parent_path(), error);
  if (!error) return;
  throw StateStoreError("The folder " + Quoted(file.parent_path()) +
                        " for the state store cannot be made (" + error.message() +
                        "). Make it, or name a file elsewhere with --state.");
}

int ReadBigEndian(const std::array<char, kHeaderSize>& header, std::size_t offset,
                  std::size_t length) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < length; ++i) {
    value = (value << 8U) | static_cast<unsigned char>(header[offset + i]);
  }
  return static_cast<int>(value);
}

/// The header and the size of a database file.
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

/// Reads through SQLite's own file descriptor. Closing a second descriptor would release the POSIX
/// locks that this process holds on the file.
Header ReadHeader(SQLite::Database& database, const std::filesystem::path& path) {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(database.getHandle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
  Header header;
  if (file == nullptr || file->pMethods == nullptr ||
      file->pMethods->xFileSize(file, &header.fileSize) != SQLITE_OK) {
    Refuse(path, "its size cannot be read.");
  }
  const int result = file->pMethods->xRead(file, header.bytes.data(), kHeaderSize, 0);
  if (result != SQLITE_OK && result != SQLITE_IOERR_SHORT_READ) {
    Refuse(path, "it cannot be read.");
  }
  return header;
}

/// Checks the header before SQLite reads the file. A read could change another program's database,
/// because SQLite would roll back its journal or apply its write-ahead log.
void RefuseForeignFile(SQLite::Database& database, const std::filesystem::path& path) {
  const Header header = ReadHeader(database, path);
  if (header.fileSize == 0) {
    // SQLite reports a size of 0 for a file of one byte.
    std::error_code error;
    if (std::filesystem::file_size(path, error) == 1) Refuse(path, "it is no state store.");
    return;
  }
  if (!header.IsOfDatabase()) Refuse(path, "it is no state store.");
  if (header.IsCutShort()) Refuse(path, kDamaged);
  if (header.ApplicationId() != kStateApplicationId) {
    Refuse(path, "it is a database of another program.");
  }
  if (header.UserVersion() > kStateLayoutVersion) {
    throw StateStoreError("The state store " + Quoted(path) +
                          " was written by a newer version of this program (layout " +
                          std::to_string(header.UserVersion()) + ", this one knows " +
                          std::to_string(kStateLayoutVersion) +
                          "). The file was left as it is: update this program, or name another "
                          "file with --state.");
  }
}

/// Throws if the last page is incomplete, because SQLite does not detect that. Call this only while
/// the file is locked. Otherwise another program may be writing a page, or a journal may have to be
/// rolled back first.
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
  // Prevent the schema of an untrusted file from calling functions with side effects.
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
