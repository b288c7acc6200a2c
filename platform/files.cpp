#include "platform/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace pokermath {
namespace {

constexpr std::size_t kGather = std::size_t{1} << 16;

// Writes all of it, whatever pieces the system takes.
bool WriteAll(int fd, const char* data, std::size_t bytes) {
  while (bytes > 0) {
    const ssize_t written = write(fd, data, bytes);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    data += written;
    bytes -= static_cast<std::size_t>(written);
  }
  return true;
}

// What is in another file, from its beginning.
bool CopyAll(int from, int to) {
  std::vector<char> piece(kGather);
  for (off_t at = 0;;) {
    const ssize_t got = pread(from, piece.data(), piece.size(), at);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    if (!WriteAll(to, piece.data(), static_cast<std::size_t>(got))) return false;
    at += got;
  }
}

std::string FolderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

// Links of /proc stand for what a program has open; it would keep the file that we replace.
bool IsLinkOfProc(const std::string& path) {
  struct stat link {};
  struct stat proc {};
  return lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode) && stat("/proc", &proc) == 0 &&
         link.st_dev == proc.st_dev;
}

// Where a link leads in the end, also when nothing is there yet.
std::string FollowLinks(std::string path) {
  std::error_code error;
  for (int links = 0; links < 40 && std::filesystem::is_symlink(path, error); ++links) {
    if (IsLinkOfProc(path)) break;
    const std::filesystem::path target = std::filesystem::read_symlink(path, error);
    if (error) break;
    path = (std::filesystem::path(path).parent_path() / target).string();
  }
  return path;
}

// -1, with the file closed, if it cannot have the permissions.
int WithOwnerAndMode(int fd, const struct stat& status) {
  // Only root may give a file away; anybody else owns what he writes, and what was meant for the
  // old owner or group is not for another one.
  mode_t mode = status.st_mode & 07777;
  if (fchown(fd, status.st_uid, status.st_gid) != 0) {
    mode &= 01777;
    if (fchown(fd, static_cast<uid_t>(-1), status.st_gid) != 0) mode &= 01707;
    errno = 0;
  }
  if (fchmod(fd, mode) == 0) return fd;
  const int error = errno;
  close(fd);
  errno = error;
  return -1;
}

// Temporary names are short, as that of the file may be as long as names can be.
constexpr std::string_view kTemporaryPrefix = ".pokermath-";

std::string NewTemporaryName(const std::string& folder) {
  static std::atomic<unsigned> count{0};
  return folder + "/" + std::string(kTemporaryPrefix) + std::to_string(getpid()) + "-" +
         std::to_string(count++);
}

bool IsTemporaryName(std::string_view name) {
  if (!name.starts_with(kTemporaryPrefix)) return false;
  name.remove_prefix(kTemporaryPrefix.size());
  return name.find_first_not_of("0123456789-") == name.npos &&
         std::count(name.begin(), name.end(), '-') == 1;
}

// Removes the temporary files of processes that are gone. Those that live hold a lock on theirs,
// which tells also where numbers of processes mean nothing: from a container or another machine.
void RemoveLeftovers(const std::string& folder) {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (!IsTemporaryName(entry->path().filename().native())) continue;
    const char* name = entry->path().c_str();
    const int fd = open(name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) continue;
    struct stat status {};
    if (fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
        flock(fd, LOCK_EX | LOCK_NB) == 0) {
      unlink(name);
    }
    close(fd);
  }
}

// Tells RemoveLeftovers that somebody is at work.
void Lock(int fd) {
  while (flock(fd, LOCK_EX) != 0 && errno == EINTR) continue;
}

// Where the system shows an open file as a link, by which a file without a name can be given one.
std::string LinkOf(int fd) { return "/proc/self/fd/" + std::to_string(fd); }

bool GiveName(int fd, const std::string& name) {
  return linkat(AT_FDCWD, LinkOf(fd).c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

}  // namespace

void SyncFolder(const std::string& path) {
  const int fd = open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  fsync(fd);
  close(fd);
}

std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t most) {
  const InputFile file(path);
  if (!file.ok()) {
    errno = file.error();
    return std::nullopt;
  }
  std::string content;
  // Room for all of a file that tells its length, and for the look that finds its end.
  content.resize(std::min(static_cast<std::size_t>(file.size()), most) + kGather);
  std::size_t length = 0;
  while (length <= most) {
    if (length == content.size()) content.resize(2 * length);
    bool good;
    const std::size_t room = content.size() - length;
    const std::size_t got =
        file.Read(static_cast<std::int64_t>(length), content.data() + length, room, good);
    if (!good) return std::nullopt;
    length += got;
    if (got < room) break;
  }
  if (length > most) {
    errno = EFBIG;
    return std::nullopt;
  }
  content.resize(length);
  return content;
}

FileWriter::~FileWriter() {
  if (fd_ >= 0) close(fd_);
}

void FileWriter::Write(const void* data, std::size_t bytes) {
  if (!ok()) return;
  const char* start = static_cast<const char*>(data);
  if (buffer_.size() + bytes > kGather) Flush();
  if (bytes >= kGather) {
    WriteNow(start, bytes);
  } else {
    buffer_.insert(buffer_.end(), start, start + bytes);
  }
}

void FileWriter::Flush() {
  WriteNow(buffer_.data(), buffer_.size());
  buffer_.clear();
}

void FileWriter::WriteNow(const char* data, std::size_t bytes) {
  if (ok() && !WriteAll(fd_, data, bytes)) error_ = errno != 0 ? errno : EIO;
}

NewFile::NewFile(const std::string& path)
    : FileWriter(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)) {}

AtomicFile::AtomicFile(const std::string& path) : path_(FollowLinks(path)) {
  struct stat status {};
  if (path_.empty()) {
    errno = ENOENT;
  } else if (stat(path_.c_str(), &status) != 0) {
    if (errno == ENOENT) OpenTemporary(0666);
  } else if (S_ISDIR(status.st_mode)) {
    errno = EISDIR;
  } else if (S_ISCHR(status.st_mode)) {
    fd_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    direct_ = true;
  } else if (!S_ISREG(status.st_mode) || IsLinkOfProc(path_)) {
    errno = EINVAL;
  } else if (access(path_.c_str(), W_OK) == 0) {
    OpenTemporary(0600);
    if (fd_ >= 0) fd_ = WithOwnerAndMode(fd_, status);
  }
}

void AtomicFile::OpenTemporary(unsigned mode) {
  const std::string folder = FolderOf(path_);
  RemoveLeftovers(folder);
  // It is read where it has to be copied.
  fd_ = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
  if (fd_ >= 0 && access(LinkOf(fd_).c_str(), F_OK) == 0) {
    Lock(fd_);
    return;
  }
  if (fd_ >= 0) close(fd_);
  OpenUnderTemporaryName(mode);
}

// mkstemp would leave the permissions of a new file to us, and the process's mask cannot be read
// without changing it; so the name is made here and the system applies the mask.
void AtomicFile::OpenUnderTemporaryName(unsigned mode) {
  for (;;) {
    temporary_ = NewTemporaryName(FolderOf(path_));
    fd_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (fd_ < 0 && errno == EEXIST) continue;
    if (fd_ < 0) break;
    struct stat status {};
    // Before it was locked it may have been taken for a leftover.
    Lock(fd_);
    if (fstat(fd_, &status) != 0 || status.st_nlink > 0) return;
    close(fd_);
  }
  temporary_.clear();
}

AtomicFile::~AtomicFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

// A link cannot take the place of a file as a rename can.
bool AtomicFile::TakeTemporaryName() {
  while (errno == EEXIST) {
    temporary_ = NewTemporaryName(FolderOf(path_));
    if (GiveName(fd_, temporary_)) return true;
  }
  temporary_.clear();
  return CopyUnderTemporaryName();
}

// Some systems have files without a name but let nobody name one.
bool AtomicFile::CopyUnderTemporaryName() {
  struct stat status {};
  if (fstat(fd_, &status) != 0) return false;
  const int unnamed = fd_;
  OpenUnderTemporaryName(0600);
  if (fd_ >= 0) fd_ = WithOwnerAndMode(fd_, status);
  const bool copied = fd_ >= 0 && CopyAll(unnamed, fd_) && fsync(fd_) == 0;
  const int error = errno;
  close(unnamed);
  errno = error;
  return copied;
}

bool AtomicFile::Commit() {
  Flush();
  // Whatever was called since has an errno of its own.
  if (error() != 0) errno = error();
  if (!ok()) return false;
  if (direct_) return true;
  if (fsync(fd_) != 0) return false;
  if (!temporary_.empty() || !GiveName(fd_, path_)) {
    if (temporary_.empty() && !TakeTemporaryName()) return false;
    if (rename(temporary_.c_str(), path_.c_str()) != 0) return false;
    temporary_.clear();
  }
  SyncFolder(path_);
  return true;
}

}  // namespace pokermath
