// Reading and writing whole files. A file that we write appears complete or not at all.

#ifndef POKERMATH_PLATFORM_FILES_H_
#define POKERMATH_PLATFORM_FILES_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/input_file.h"

namespace pokermath {

/// Flushes the folder in which a file is: its name is safe against a power cut only then.
void SyncFolder(const std::string& path);

/// All that can be read from a regular file, also from one that does not tell its length (/proc).
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
  bool ok() const { return fd_ >= 0 && error_ == 0; }
  void Write(const void* data, std::size_t bytes);
  /// Hands what was gathered to the system.
  void Flush();

 protected:
  int error() const { return error_; }

  int fd_ = -1;

 private:
  void WriteNow(const char* data, std::size_t bytes);

  int error_ = 0;  // why a write failed
  std::vector<char> buffer_;
};

/// A new file under its own name, for reports that are read while they grow. Not ok() if anything
/// of that name exists. Flushes when it goes away.
class NewFile : public FileWriter {
 public:
  explicit NewFile(const std::string& path);
  ~NewFile() { Flush(); }
};

/// A file being written: in the folder of `path` but without a name, until Commit flushes it to the
/// disk and gives it that of `path`. Without a successful Commit nothing is left of it and `path`
/// is as it was, whatever becomes of the process. Where files without a name are not to be had, it
/// is written under a temporary one, and what replaces a file bears one for a moment; what a killed
/// process leaves of these is removed when somebody writes to the folder again. A path that is a
/// link is written where the link points, but a link of /proc to an open file is refused; a device
/// is written directly. What replaces a file keeps its owner and permissions.
class AtomicFile : public FileWriter {
 public:
  explicit AtomicFile(const std::string& path);
  ~AtomicFile();

  /// Completes the file. False, and nothing changed, when anything failed; errno says why.
  bool Commit();

 private:
  void OpenTemporary(unsigned mode);
  void OpenUnderTemporaryName(unsigned mode);
  bool TakeTemporaryName();
  bool CopyUnderTemporaryName();

  std::string path_;
  std::string temporary_;  // empty while the file has no name
  bool direct_ = false;    // a device
};

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_FILES_H_
