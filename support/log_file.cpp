// Log files that are kept from growing.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "platform/text.h"
#include "pokermath/utilities.h"

namespace pokermath {
namespace {

struct Descriptor {
  explicit Descriptor(int number) : fd(number) {}
  ~Descriptor() {
    if (fd >= 0) close(fd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int fd;
};

// Opens a file for reading and, where that is allowed, for writing.
Descriptor OpenLog(const std::string& name) {
  const int fd = open(name.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
  return Descriptor(fd >= 0 ? fd : open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

// Moves bytes between a file and memory at an offset, as far as that goes; `failed` tells an error
// from the end of the file.
template <typename Transfer>
std::size_t TransferAll(std::size_t bytes, bool& failed, const Transfer& transfer) {
  std::size_t done = 0;
  failed = false;
  while (done < bytes) {
    const ssize_t moved = transfer(done);
    if (moved < 0 && errno == EINTR) continue;
    failed = moved < 0;
    if (moved <= 0) break;
    done += static_cast<std::size_t>(moved);
  }
  return done;
}

// What a file has from an offset on, up to so many bytes; nothing if it cannot be read.
std::optional<std::vector<char>> ReadAt(int fd, off_t start, std::size_t bytes) {
  std::vector<char> read(bytes);
  bool failed;
  read.resize(TransferAll(bytes, failed, [&](std::size_t done) {
    return pread(fd, read.data() + done, bytes - done, start + static_cast<off_t>(done));
  }));
  if (failed) return std::nullopt;
  return read;
}

// The number of bytes that could be written to the start of a file.
std::size_t WriteToStart(int fd, const std::vector<char>& from, std::size_t bytes) {
  bool failed;
  return TransferAll(bytes, failed, [&](std::size_t done) {
    return pwrite(fd, from.data() + done, bytes - done, static_cast<off_t>(done));
  });
}

}  // namespace
}  // namespace pokermath

void TrimLogFile(CString path, std::uint64_t keepBytes, std::uint64_t limitBytes) {
  using namespace pokermath;
  if (path.empty()) return;
  const Descriptor log = OpenLog(ToUtf8(path));
  struct stat status {};
  if (log.fd < 0 || fstat(log.fd, &status) != 0 || !S_ISREG(status.st_mode)) return;
  const auto length = static_cast<std::uint64_t>(status.st_size);
  if (length < limitBytes) return;
  if (keepBytes > length) {
    throw std::system_error(EINVAL, std::generic_category(),
                            "the log file is shorter than what is to be kept");
  }
  const std::size_t keep = static_cast<std::uint32_t>(keepBytes);
  const auto kept = ReadAt(log.fd, static_cast<off_t>(length - keepBytes), keep);
  const auto replaced = ReadAt(log.fd, 0, keep);
  if (!kept || !replaced || replaced->size() < kept->size()) return;
  const std::size_t written = WriteToStart(log.fd, *kept, kept->size());
  // Nothing is cut off before what is kept stands at the start.
  if (written == kept->size() && ftruncate(log.fd, static_cast<off_t>(written)) == 0) {
    fsync(log.fd);
  } else {
    WriteToStart(log.fd, *replaced, written);
  }
}
