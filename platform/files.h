// Reading and writing whole files. A file that we write appears complete or not at all.

#ifndef POKERMATH_PLATFORM_FILES_H_
#define POKERMATH_PLATFORM_FILES_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pokermath {

/// Whether anything of that name exists (a folder too). Paths are UTF-8 throughout.
bool PathExists(const std::string& path);

/// Length in bytes of a regular file; nothing if there is none or it cannot be read.
std::optional<std::uint64_t> FileLength(const std::string& path);

/// Reads the first `bytes` bytes of a file; false if it cannot be opened or is shorter.
bool ReadFile(const std::string& path, void* out, std::size_t bytes);

/// A file being written: under a temporary name in the folder of `path`, which Commit flushes to
/// the disk and renames. Without a successful Commit the destructor removes it and `path` is as it
/// was. A path that is a link is written where the link points; a device is written directly.
class AtomicFile {
 public:
  explicit AtomicFile(const std::string& path);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  /// False when the file could not be created or a write failed.
  bool ok() const { return fd_ >= 0 && !failed_; }
  /// Appends; small pieces are gathered.
  void Write(const void* data, std::size_t bytes);
  /// Hands what was gathered to the system.
  void Flush();
  /// Completes the file. False, and nothing changed, when anything failed; errno says why.
  bool Commit();

 private:
  std::string path_;
  std::string temporary_;  // empty when the path is written directly
  int fd_ = -1;
  bool failed_ = false;
  std::vector<char> buffer_;
};

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_FILES_H_
