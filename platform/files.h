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

/// All that can be read from a file, also from one that does not tell its length (a pipe, /proc).
/// Nothing, with errno set, if it cannot be read or has more than `most` bytes (EFBIG).
std::optional<std::string> ReadWholeFile(const std::string& path,
                                         std::size_t most = std::size_t{1} << 31);

/// Bytes on their way to an open file; small pieces are gathered.
class FileWriter {
 public:
  FileWriter() = default;
  explicit FileWriter(int fd) : fd_(fd) {}
  ~FileWriter();
  FileWriter(const FileWriter&) = delete;
  FileWriter& operator=(const FileWriter&) = delete;

  /// False when there is no file or a write failed.
  bool ok() const { return fd_ >= 0 && !failed_; }
  void Write(const void* data, std::size_t bytes);
  /// Hands what was gathered to the system.
  void Flush();

 protected:
  int fd_ = -1;

 private:
  bool failed_ = false;
  std::vector<char> buffer_;
};

/// A new file under its own name, for reports that are read while they grow. Not ok() if anything
/// of that name exists. Flushes when it goes away.
class NewFile : public FileWriter {
 public:
  explicit NewFile(const std::string& path);
  ~NewFile() { Flush(); }
};

/// A file being written: under a temporary name in the folder of `path`, which Commit flushes to
/// the disk and renames. Without a successful Commit the destructor removes it and `path` is as it
/// was. A path that is a link is written where the link points, but a link of /proc to an open file
/// is refused; a device is written directly. What replaces a file keeps its owner and permissions.
class AtomicFile : public FileWriter {
 public:
  explicit AtomicFile(const std::string& path);
  ~AtomicFile();

  /// Completes the file. False, and nothing changed, when anything failed; errno says why.
  bool Commit();

 private:
  void OpenTemporary(unsigned mode);

  std::string path_;
  std::string temporary_;  // empty when the path is written directly
};

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_FILES_H_
