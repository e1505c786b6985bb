#include "BE/ProjectFile.h"

#include <cerrno>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <mutex>
#include <system_error>
#include <thread>

#include <SQLiteCpp/SQLiteCpp.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "BE/Problems.h"
#include "BE/ProjectFileStatements.h"

namespace BE {

namespace {

constexpr int kApplicationID = 0x43505456; // "CPTV"
constexpr char kMagic[] = "SQLite format 3";
// Pages in the write-ahead log from which the worker is asked to move them into the file proper.
constexpr int kCheckpointPages = 1000;
constexpr int kEmptyLogAttempts = 2;

Problem CannotOpen(const std::filesystem::path& path, int error) {
  return MakeProblem(
      "$$$/Vidra/Project/CannotOpen=The project \u201c%1\u201d cannot be opened: %2. Check that it is still "
      "there and that you may read and change it.",
      {path.string(), std::strerror(error)});
}

Problem NoProject(const std::filesystem::path& path) {
  return MakeProblem(
      "$$$/Vidra/Project/NoProject=\u201c%1\u201d is not a Captivo project. Choose a file that was saved by "
      "Captivo, or import it if it is media or captions.",
      {path.string()});
}

Problem InUse(const std::filesystem::path& path) {
  return MakeProblem(
      "$$$/Vidra/Project/InUse=The project \u201c%1\u201d is open already, in another window or by another "
      "user. Close it there first.",
      {path.string()});
}

void RemoveSideFiles(const std::filesystem::path& path) {
  std::error_code error;
  std::filesystem::remove(path.string() + "-wal", error);
  std::filesystem::remove(path.string() + "-shm", error);
}

void SyncFolder(const std::filesystem::path& folder) {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0)
    return;
  fsync(descriptor);
  close(descriptor);
}

// Moves all of the write-ahead log into the file, which is whole without it then. Somebody else who reads the file at
// this moment is waited for.
bool EmptyLog(sqlite3* database) {
  for (int attempt = 0; attempt < kEmptyLogAttempts; ++attempt) {
    if (sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr) == SQLITE_OK)
      return true;
  }
  return false;
}

// What can be told before the database is asked.
std::optional<Problem> CheckPlainFile(const std::filesystem::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0)
    return CannotOpen(path, errno);
  if (S_ISDIR(status.st_mode))
    return CannotOpen(path, EISDIR);
  if (!S_ISREG(status.st_mode))
    return NoProject(path);
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0)
    return CannotOpen(path, errno);
  char magic[sizeof kMagic] = {};
  const ssize_t count = read(descriptor, magic, sizeof magic);
  close(descriptor);
  if (count != static_cast<ssize_t>(sizeof magic) || std::memcmp(magic, kMagic, sizeof magic) != 0)
    return NoProject(path);
  return std::nullopt;
}

} // namespace

// The mark by which a second process, or a second opening in this one, finds the file taken. It goes with the process,
// however that ends. It is held beside the database's own locks, which another reader of the file in this process could
// lose.
class ProjectFile::FileLock {
 public:
  // flags as for open(2).
  FileLock(const std::filesystem::path& path, int flags, bool shared)
      : mDescriptor(open(path.c_str(), flags | O_CLOEXEC, 0666)) {
    mError = mDescriptor < 0 ? errno : 0;
    if (mDescriptor >= 0 && flock(mDescriptor, (shared ? LOCK_SH : LOCK_EX) | LOCK_NB) != 0) {
      mIsTaken = errno == EWOULDBLOCK;
      mError = mIsTaken ? 0 : errno;
    }
    struct stat status {};
    if (mDescriptor >= 0 && fstat(mDescriptor, &status) == 0) {
      mDevice = status.st_dev;
      mNode = status.st_ino;
    }
  }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock() {
    if (mDescriptor >= 0)
      close(mDescriptor);
  }
  int GetError() const { return mError; }
  bool IsTaken() const { return mIsTaken; }
  bool IsAbout(const struct stat& status) const { return status.st_dev == mDevice && status.st_ino == mNode; }
  void Sync() const { fsync(mDescriptor); }

 private:
  int mDescriptor;
  int mError = 0;
  bool mIsTaken = false;
  dev_t mDevice = 0;
  ino_t mNode = 0;
};

// Moves what the write-ahead log holds into the file, on a thread of its own, so that no key waits for the disk.
class ProjectFile::Checkpointer {
 public:
  Checkpointer(sqlite3* database, std::string path) : mPath(std::move(path)), mThread([this] { Run(); }) {
    sqlite3_wal_hook(
        database,
        [](void* self, sqlite3*, const char*, int pages) {
          if (pages >= kCheckpointPages)
            static_cast<Checkpointer*>(self)->Request();
          return SQLITE_OK;
        },
        this);
  }
  ~Checkpointer() {
    {
      const std::lock_guard lock(mMutex);
      mStops = true;
    }
    mWake.notify_one();
    mThread.join();
  }

 private:
  void Request() {
    {
      const std::lock_guard lock(mMutex);
      mIsWanted = true;
    }
    mWake.notify_one();
  }

  void Run() {
    std::unique_lock lock(mMutex);
    for (;;) {
      mWake.wait(lock, [this] { return mIsWanted || mStops; });
      if (mStops)
        return;
      mIsWanted = false;
      lock.unlock();
      try {
        SQLite::Database database(mPath, SQLite::OPEN_READWRITE);
        database.exec("PRAGMA wal_checkpoint(PASSIVE)");
      } catch (const std::exception&) {
        // The log goes on growing, and the next request tries again.
      }
      lock.lock();
    }
  }

  std::string mPath;
  std::mutex mMutex;
  std::condition_variable mWake;
  bool mIsWanted = false;
  bool mStops = false;
  std::thread mThread; // last: it uses all of the above
};

ProjectFile::ProjectFile(std::filesystem::path path) : mPath(std::move(path)) {}

ProjectFile::~ProjectFile() {
  Disconnect();
  mLock.reset();
  std::error_code error;
  if (IsCopy())
    std::filesystem::remove_all(mTemporaryFolder, error);
}

void ProjectFile::Connect(const std::string& place) {
  auto database = std::make_unique<SQLite::Database>(place, SQLite::OPEN_READWRITE, 2000);
  std::unique_ptr<Checkpointer> checkpointer;
  sqlite3* handle = database->getHandle();
  // A file may come from anywhere: nothing in it runs, and nothing in it is believed before it was checked.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  database->exec("PRAGMA trusted_schema=OFF");
  database->exec("PRAGMA cell_size_check=ON");
  if (place != ":memory:") {
    database->exec("PRAGMA journal_mode=WAL");
    database->exec("PRAGMA synchronous=NORMAL");
    database->exec("PRAGMA wal_autocheckpoint=0");
    checkpointer = std::make_unique<Checkpointer>(handle, place);
  }
  auto statements = std::make_unique<Statements>();
  Disconnect();
  mDatabase = std::move(database);
  mCheckpointer = std::move(checkpointer);
  mStatements = std::move(statements);
}

void ProjectFile::Disconnect() {
  mStatements.reset();
  mCheckpointer.reset();
  if (mDatabase && !mIsAdrift)
    EmptyLog(mDatabase->getHandle());
  mDatabase.reset();
}

std::optional<Problem> ProjectFile::CheckVersion() {
  if (mDatabase->execAndGet("PRAGMA application_id").getInt() != kApplicationID)
    return NoProject(mPath);
  const int version = mDatabase->execAndGet("PRAGMA user_version").getInt();
  if (version > kVersion)
    return MakeProblem(
        "$$$/Vidra/Project/Newer=The project \u201c%1\u201d was saved by a newer version of Captivo (format %2; "
        "this one knows up to %3). Open it with that version.",
        {mPath.string(), std::to_string(version), std::to_string(kVersion)});
  if (version < kVersion)
    Upgrade(version);
  return std::nullopt;
}

std::unique_ptr<ProjectFile> ProjectFile::CreateInMemory() {
  std::unique_ptr<ProjectFile> file(new ProjectFile({}));
  file->Connect(":memory:");
  file->CreateTables();
  return file;
}

Result<std::unique_ptr<ProjectFile>> ProjectFile::Create(const std::filesystem::path& path) {
  std::unique_ptr<ProjectFile> file(new ProjectFile(std::filesystem::absolute(path)));
  file->mLock = std::make_unique<FileLock>(file->mPath, O_RDWR | O_CREAT | O_EXCL, false);
  if (const int error = file->mLock->GetError())
    return {std::nullopt,
            MakeProblem("$$$/Vidra/Project/CannotCreate=The project \u201c%1\u201d cannot be created: %2. Choose "
                        "another name or folder.",
                        {path.string(), std::strerror(error)})};
  try {
    file->Connect(file->mPath.string());
    file->CreateTables();
  } catch (const std::exception& failure) {
    Problem problem = file->Describe(failure);
    file->Disconnect();
    std::error_code error;
    std::filesystem::remove(file->mPath, error);
    RemoveSideFiles(file->mPath);
    return {std::nullopt, std::move(problem)};
  }
  return {std::move(file), {}};
}

Result<std::unique_ptr<ProjectFile>> ProjectFile::Open(const std::filesystem::path& path) {
  std::unique_ptr<ProjectFile> file(new ProjectFile(std::filesystem::absolute(path)));
  // Locked before it is looked into: closing any other descriptor of a file that is open here would lose its locks.
  file->mLock = std::make_unique<FileLock>(file->mPath, O_RDWR, false);
  if (file->mLock->IsTaken())
    return {std::nullopt, InUse(path)};
  if (const int error = file->mLock->GetError())
    return {std::nullopt, CannotOpen(path, error)};
  if (std::optional<Problem> problem = CheckPlainFile(file->mPath))
    return {std::nullopt, std::move(*problem)};
  try {
    file->Connect(file->mPath.string());
    if (std::optional<Problem> problem = file->CheckVersion())
      return {std::nullopt, std::move(*problem)};
  } catch (const std::exception& failure) {
    return {std::nullopt, file->Describe(failure)};
  }
  return {std::move(file), {}};
}

Result<std::unique_ptr<ProjectFile>> ProjectFile::OpenCopy(const std::filesystem::path& path) {
  std::unique_ptr<ProjectFile> file(new ProjectFile(std::filesystem::absolute(path)));
  const FileLock lock(file->mPath, O_RDONLY, true);
  if (lock.IsTaken())
    return {std::nullopt, InUse(path)};
  if (const int error = lock.GetError())
    return {std::nullopt, CannotOpen(path, error)};
  if (std::optional<Problem> problem = CheckPlainFile(file->mPath))
    return {std::nullopt, std::move(*problem)};
  try {
    std::string folder = (std::filesystem::temp_directory_path() / "captivo-XXXXXX").string();
    if (!mkdtemp(folder.data()))
      return {std::nullopt, CannotOpen(path, errno)};
    file->mTemporaryFolder = folder;
    const std::filesystem::path copy = file->mTemporaryFolder / "project";
    std::filesystem::copy_file(file->mPath, copy);
    if (std::filesystem::exists(file->mPath.string() + "-wal"))
      std::filesystem::copy_file(file->mPath.string() + "-wal", copy.string() + "-wal");
    std::filesystem::permissions(copy, std::filesystem::perms::owner_all);
    file->Connect(copy.string());
    if (std::optional<Problem> problem = file->CheckVersion())
      return {std::nullopt, std::move(*problem)};
  } catch (const std::exception& failure) {
    return {std::nullopt, file->Describe(failure)};
  }
  return {std::move(file), {}};
}

void ProjectFile::Perform(const std::function<void(ProjectFile&)>& operation) {
  SQLite::Transaction transaction(*mDatabase, SQLite::TransactionBehavior::IMMEDIATE);
  operation(*this);
  transaction.commit();
}

bool ProjectFile::IsGone() const {
  if (!mLock)
    return false;
  struct stat status {};
  if (stat(mPath.c_str(), &status) != 0)
    return errno == ENOENT || errno == ENOTDIR;
  return mIsAdrift && mLock->IsAbout(status);
}

std::optional<Problem> ProjectFile::FindObstacle() const {
  if (!mLock)
    return std::nullopt;
  struct stat status {};
  if (stat(mPath.c_str(), &status) != 0 || !mLock->IsAbout(status))
    return MakeProblem(
        "$$$/Vidra/Project/Moved=The project file \u201c%1\u201d is no longer where it was, and another stands in "
        "its place. What you do is kept in memory. Save the project under another name.",
        {mPath.string()});
  if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
    return MakeProblem(
        "$$$/Vidra/Project/TurnedReadOnly=The project file \u201c%1\u201d may no longer be changed. What you do is "
        "kept in memory. Allow writing to it, or save the project under another name.",
        {mPath.string()});
  return std::nullopt;
}

void ProjectFile::WriteCopy(const std::filesystem::path& path) {
  const std::filesystem::path next = path.string() + ".new";
  std::error_code error;
  std::filesystem::remove(next, error);
  try {
    SQLite::Statement copy(*mDatabase, "VACUUM INTO ?");
    copy.bind(1, next.string());
    copy.exec();
    if (const int descriptor = open(next.c_str(), O_RDONLY | O_CLOEXEC); descriptor >= 0) {
      fsync(descriptor);
      close(descriptor);
    }
  } catch (...) {
    std::filesystem::remove(next, error);
    throw;
  }
}

// What is open reads on without a place on the disk, and touches nothing there when it is closed: what lies there by
// those names then is another file's. The file itself, should it have been moved, is left whole.
void ProjectFile::LetGoOfSideFiles() {
  mCheckpointer.reset();
  sqlite3* handle = mDatabase->getHandle();
  sqlite3_wal_hook(handle, nullptr, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  if (!mIsAdrift)
    EmptyLog(handle);
  mIsAdrift = true;
  RemoveSideFiles(mPath);
}

// The old connection goes only when the new one stands.
void ProjectFile::Restore() {
  const std::filesystem::path next = mPath.string() + ".new";
  WriteCopy(mPath);
  auto lock = std::make_unique<FileLock>(next, O_RDWR, false);
  if (const int error = lock->IsTaken() ? EWOULDBLOCK : lock->GetError())
    throw std::system_error(error, std::generic_category(), next.string());
  LetGoOfSideFiles();
  std::filesystem::rename(next, mPath);
  mLock = std::move(lock);
  SyncFolder(mPath.parent_path());
  Connect(mPath.string());
  mIsAdrift = false;
}

std::optional<Problem> ProjectFile::CopyTo(const std::filesystem::path& path,
                                           const std::function<void(ProjectFile&)>& finish) {
  const std::filesystem::path target = std::filesystem::absolute(path);
  const std::filesystem::path next = target.string() + ".new";
  std::error_code error;
  const auto fail = [&](const std::string& why) {
    std::filesystem::remove(next, error);
    RemoveSideFiles(next);
    return MakeProblem(
        "$$$/Vidra/Project/CannotSave=The project cannot be saved as \u201c%1\u201d: %2. Choose another name or "
        "folder; nothing there was changed.",
        {path.string(), why});
  };
  if (std::filesystem::is_directory(target, error))
    return fail(std::strerror(EISDIR));
  std::unique_ptr<FileLock> replaced;
  if (std::filesystem::exists(target, error)) {
    replaced = std::make_unique<FileLock>(target, O_RDWR, false);
    if (replaced->IsTaken())
      return InUse(path);
    if (replaced->GetError())
      return fail(std::strerror(replaced->GetError()));
  }
  try {
    WriteCopy(target);
    ProjectFile copy(next);
    copy.Connect(next.string());
    copy.Perform(finish);
    if (!EmptyLog(copy.mDatabase->getHandle()))
      throw std::runtime_error("the copy cannot be closed");
  } catch (const std::exception& failure) {
    return fail(failure.what());
  }
  // What the log of the old file holds must neither be lost while that file stands nor be taken for the new one's.
  if (std::filesystem::exists(target.string() + "-wal", error)) {
    try {
      SQLite::Database old(target.string(), SQLite::OPEN_READWRITE);
      old.exec("PRAGMA wal_checkpoint(TRUNCATE)");
    } catch (const std::exception&) {
      // No database: its log is of no use either.
    }
    RemoveSideFiles(target);
  }
  std::filesystem::rename(next, target, error);
  if (error)
    return fail(error.message());
  SyncFolder(target.parent_path());
  return std::nullopt;
}

Problem ProjectFile::Describe(const std::exception& failure) const {
  const auto* fromDatabase = dynamic_cast<const SQLite::Exception*>(&failure);
  const std::string name = mPath.string();
  const int code = fromDatabase ? fromDatabase->getErrorCode() & 0xFF : -1;
  const bool isRefused = code == SQLITE_FULL || code == SQLITE_READONLY || code == SQLITE_PERM ||
                         code == SQLITE_IOERR || code == SQLITE_CANTOPEN;
  if (isRefused && !mIsRead)
    return MakeProblem(
        "$$$/Vidra/Project/Refused=The project \u201c%1\u201d cannot be used where it lies (%2). Check the disk "
        "and the folder, or copy it to another place.",
        {name, failure.what()});
  switch (code) {
  case SQLITE_FULL:
    return MakeProblem(
        "$$$/Vidra/Project/DiskFull=There is no room on the disk for the project \u201c%1\u201d. What you do is kept "
        "in memory. Make room, or save the project on another disk.",
        {name});
  case SQLITE_READONLY:
  case SQLITE_PERM:
  case SQLITE_IOERR:
  case SQLITE_CANTOPEN:
    return MakeProblem(
        "$$$/Vidra/Project/CannotWrite=The project file \u201c%1\u201d cannot be written (%2). What you do is kept "
        "in memory. Check the disk and the folder, or save the project under another name.",
        {name, failure.what()});
  case SQLITE_BUSY:
  case SQLITE_LOCKED:
    return InUse(mPath);
  case SQLITE_NOTADB:
    return NoProject(mPath);
  default:
    return MakeProblem(
        "$$$/Vidra/Project/Damaged=The project file \u201c%1\u201d is damaged or cut off and cannot be read (%2). "
        "Take a copy from before, if there is one.",
        {name, failure.what()});
  }
}

} // namespace BE
