#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

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

// A rename is safe against a power cut only when the folder reaches the disk as well.
void SyncFolder(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  const int fd = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  fsync(fd);
  close(fd);
}

}  // namespace

bool PathExists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

std::optional<std::uint64_t> FileLength(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  if (access(path.c_str(), R_OK) != 0) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

bool ReadFile(const std::string& path, void* out, std::size_t bytes) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  char* place = static_cast<char*>(out);
  while (bytes > 0) {
    const ssize_t got = read(fd, place, bytes);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    place += got;
    bytes -= static_cast<std::size_t>(got);
  }
  close(fd);
  return bytes == 0;
}

AtomicFile::AtomicFile(const std::string& path) : path_(path) {
  struct stat status {};
  mode_t mode = 0;
  if (stat(path_.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) {
      errno = EISDIR;
      return;
    }
    if (!S_ISREG(status.st_mode)) {
      fd_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC);
      return;
    }
    // What replaces a file keeps its permissions, and must have been allowed to write it.
    if (access(path_.c_str(), W_OK) != 0) return;
    mode = status.st_mode & 07777;
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path_, error);
    if (!error) path_ = target.string();
  } else {
    const mode_t mask = umask(0);
    umask(mask);
    mode = 0666 & ~mask;
  }
  temporary_ = path_ + ".XXXXXX";
  fd_ = mkostemp(temporary_.data(), O_CLOEXEC);
  if (fd_ < 0) {
    temporary_.clear();
    return;
  }
  fchmod(fd_, mode);
}

AtomicFile::~AtomicFile() {
  if (fd_ >= 0) close(fd_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void AtomicFile::Write(const void* data, std::size_t bytes) {
  if (!ok()) return;
  const char* start = static_cast<const char*>(data);
  if (buffer_.size() + bytes > kGather) Flush();
  if (bytes >= kGather) {
    failed_ = failed_ || !WriteAll(fd_, start, bytes);
  } else {
    buffer_.insert(buffer_.end(), start, start + bytes);
  }
}

void AtomicFile::Flush() {
  if (ok() && !buffer_.empty()) failed_ = !WriteAll(fd_, buffer_.data(), buffer_.size());
  buffer_.clear();
}

bool AtomicFile::Commit() {
  Flush();
  if (!ok()) return false;
  if (temporary_.empty()) return true;
  if (fsync(fd_) != 0) return false;
  if (rename(temporary_.c_str(), path_.c_str()) != 0) return false;
  temporary_.clear();
  SyncFolder(path_);
  return true;
}

}  // namespace pokermath
