// Log files that are kept from growing.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
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

// Moves bytes between a file and memory at an offset, as far as that goes.
template <typename Transfer>
std::size_t TransferAll(std::size_t bytes, const Transfer& transfer) {
  std::size_t done = 0;
  while (done < bytes) {
    const ssize_t moved = transfer(done);
    if (moved < 0 && errno == EINTR) continue;
    if (moved <= 0) break;
    done += static_cast<std::size_t>(moved);
  }
  return done;
}

}  // namespace
}  // namespace pokermath

void TrimLogFile(CString path, std::uint64_t keepBytes, std::uint64_t limitBytes) {
  using namespace pokermath;
  if (path.empty()) return;
  const std::string name = ToUtf8(path);
  const Descriptor input(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (input.fd < 0 || fstat(input.fd, &status) != 0 || !S_ISREG(status.st_mode)) return;
  const auto length = static_cast<std::uint64_t>(status.st_size);
  if (length < limitBytes) return;
  const std::uint64_t keep = static_cast<std::uint32_t>(keepBytes);
  if (keepBytes > length) {
    throw std::system_error(EINVAL, std::generic_category(),
                            "the log file is shorter than what is to be kept");
  }
  std::vector<char> kept(keep);
  const auto start = static_cast<off_t>(length - keepBytes);
  kept.resize(TransferAll(kept.size(), [&](std::size_t done) {
    return pread(input.fd, kept.data() + done, kept.size() - done,
                 start + static_cast<off_t>(done));
  }));
  const Descriptor output(open(name.c_str(), O_WRONLY | O_CLOEXEC));
  if (output.fd < 0) return;
  const std::size_t written = TransferAll(kept.size(), [&](std::size_t done) {
    return pwrite(output.fd, kept.data() + done, kept.size() - done, static_cast<off_t>(done));
  });
  // Nothing is cut off before what is kept stands at the start.
  if (written < kept.size() || ftruncate(output.fd, static_cast<off_t>(written)) != 0) return;
  fsync(output.fd);
}
