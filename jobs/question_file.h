// A file of questions, one a line, that many processes read for a long time.
//
// It is known by the checksums of its pieces: whoever reads a piece finds out whether it is what it
// was when the work began, and need not read the others.

#ifndef POKERMATH_JOBS_QUESTION_FILE_H_
#define POKERMATH_JOBS_QUESTION_FILE_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jobs/shard_file.h"
#include "pages/json.h"
#include "platform/files.h"

namespace pokermath {

class QuestionFile {
 public:
  /// Whole lines that stand together, with their ends.
  struct Piece {
    std::int64_t start = 0;  ///< its first byte
    std::int64_t bytes = 0;
    std::int64_t first_line = 0;
    std::int64_t lines = 0;
    std::uint64_t checksum = 0;
  };

  /// Reads all of a file. Throws Failure if it cannot be read, UsageError if it cannot be a file of
  /// questions or two of them have the same id.
  static QuestionFile Of(const std::string& path);
  /// The same as when ToJson was called, whatever the file has become since. Throws Failure
  /// or Json's own exceptions for what ToJson did not write.
  static QuestionFile FromJson(const Json& json, const std::string& path);

  Json ToJson() const;

  const std::string& path() const { return path_; }
  std::int64_t lines() const { return lines_; }
  std::int64_t bytes() const { return bytes_; }
  const std::vector<Piece>& pieces() const { return pieces_; }
  /// The piece that has a line, counted from 0.
  const Piece& PieceOf(std::int64_t line) const;
  /// Its text. Throws Failure if it cannot be read or is not what it was. The first call of this or
  /// Check opens the file; after that others may be made on any thread.
  std::string Read(const Piece& piece) const;
  /// Reads the pieces of some lines. Throws Failure if they, or the file's length, are not what
  /// they were.
  void Check(const UnitRange& lines) const;

 private:
  explicit QuestionFile(const std::string& path) : path_(path) {}
  void AddPiece(std::string_view text);
  const InputFile& Open() const;

  std::string path_;
  std::int64_t lines_ = 0;
  std::int64_t bytes_ = 0;
  std::vector<Piece> pieces_;
  mutable std::shared_ptr<const InputFile> file_;  // once it is read
};

/// Reads some more of a file behind a text, and moves the position; false at its end. Throws
/// Failure if it cannot be read.
bool ReadMore(const InputFile& file, const std::string& path, std::int64_t& position,
              std::string& text);

/// The text of the value of the key "id" of an object; empty if it has none. What is no JSON may
/// have any.
std::string_view IdOf(std::string_view line);

}  // namespace pokermath

#endif  // POKERMATH_JOBS_QUESTION_FILE_H_
