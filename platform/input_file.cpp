#include "platform/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace pokermath {

std::optional<std::uint64_t> FileLength(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  if (access(path.c_str(), R_OK) != 0) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

InputFile::InputFile(const std::string& path) {
  const auto refuse = [this](const struct stat& status) {
    error_ = S_ISREG(status.st_mode) ? 0 : S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return error_ != 0;
  };
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    error_ = errno;
    return;
  }
  if (refuse(status)) return;
  // Another thing may have taken its place since.
  fd_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd_ < 0 || fstat(fd_, &status) != 0) {
    error_ = errno;
  } else if (!refuse(status)) {
    size_ = status.st_size;
    id_ = {status.st_dev, status.st_ino};
  }
}

InputFile::~InputFile() {
  if (fd_ >= 0) close(fd_);
}

std::int64_t InputFile::SizeNow() const {
  struct stat status;
  return fstat(fd_, &status) == 0 ? status.st_size : 0;
}

std::size_t InputFile::Read(std::int64_t position, void* out, std::size_t most, bool& good) const {
  std::size_t done = 0;
  good = true;
  while (done < most) {
    const ssize_t got = pread(fd_, static_cast<char*>(out) + done, most - done,
                              position + static_cast<std::int64_t>(done));
    if (got < 0 && errno == EINTR) continue;
    good = got >= 0;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

bool InputFile::ReadAll(std::int64_t position, void* out, std::size_t bytes) const {
  bool good;
  return Read(position, out, bytes, good) == bytes;
}

bool ReadFile(const std::string& path, void* out, std::size_t bytes) {
  const InputFile file(path);
  return file.ok() && file.ReadAll(0, out, bytes);
}

}  // namespace pokermath
