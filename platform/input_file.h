// Files that are read by position.

#ifndef POKERMATH_PLATFORM_INPUT_FILE_H_
#define POKERMATH_PLATFORM_INPUT_FILE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace pokermath {

/// Length in bytes of a regular file (paths are UTF-8 throughout); nothing if there is none or it
/// cannot be read.
std::optional<std::uint64_t> FileLength(const std::string& path);

/// A file that is open for reading. Only regular files are opened: a FIFO would wait for its other
/// end and a device may do anything.
class InputFile {
 public:
  explicit InputFile(const std::string& path);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  bool ok() const { return error_ == 0; }
  /// Why it is not open, as errno would say; EISDIR for a folder, EINVAL for what is no file.
  int error() const { return error_; }
  /// Length when it was opened, and now.
  std::int64_t size() const { return size_; }
  std::int64_t SizeNow() const;
  /// Device and number, alike for two names of one file.
  std::pair<std::uint64_t, std::uint64_t> id() const { return id_; }

  /// The number of bytes read from a position on, less than asked for only where the file ends or
  /// cannot be read: then `good` is false and errno says why.
  std::size_t Read(std::int64_t position, void* out, std::size_t most, bool& good) const;
  /// The same where all of them have to be there.
  bool ReadAll(std::int64_t position, void* out, std::size_t bytes) const;

 private:
  int fd_ = -1;
  int error_ = 0;
  std::int64_t size_ = 0;
  std::pair<std::uint64_t, std::uint64_t> id_;
};

/// Reads the first `bytes` bytes of a regular file; false if it cannot be opened or is shorter.
bool ReadFile(const std::string& path, void* out, std::size_t bytes);

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_INPUT_FILE_H_
