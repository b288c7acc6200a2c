/// @file
/// Hand-history files: what was added since the last look, as lines.

#ifndef POKERMATH_HAND_HISTORY_H_
#define POKERMATH_HAND_HISTORY_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "pokermath/export.h"
#include "pokermath/text.h"

/// @name One look at a time
/// A position is a byte offset, 0 for a new file; it is set to where the next call must begin.
/// `lines` is cleared first. The file may grow meanwhile. That it shrank or was replaced these two
/// do not notice: the host sets the position to 0, or uses pokermath::HistoryReader. When memory
/// runs out, std::bad_alloc is thrown, the position is as it was and `lines` empty. Any number of
/// threads. Some 150 MB a second.
/// @{

/// Reads UTF-8 text (Windows-1252 where the path begins with "888poker"). Lines end with LF or
/// CR LF, the last one where the file ends. Empty lines are left out, the others trimmed of white
/// space. Invalid bytes become U+FFFD, a byte-order mark at the start is dropped.
///
/// @return 0; -1 if there is no such file; -2 if it cannot be opened or read: the position is as it
/// was
POKERMATH_EXPORT int ReadHistoryFile(CString path, __int64& position, CStringArray& lines);

/// Reads bytes as Windows-1252, but for the UTF-8 signs of euro and pound. Lines end with CR LF and
/// are given as they are, empty ones too. A last line without CR LF is lost: the position becomes
/// the file's size all the same, and so is what cannot be read. The bytes EF, BB and BF are dropped
/// wherever they stand. Of the position only the low 32 bits are used.
///
/// @return 0; -1 and a message if there is no such file; the system's error code if it cannot be
///         opened
POKERMATH_EXPORT int ReadHistoryFileUTF8(CString path, __int64& position, CStringArray& lines);

/// @}

namespace pokermath {

/// Follows a growing hand-history file and never loses a line: one that is not complete yet waits
/// for the next look. When another file has taken its place, what has come to the old one is given
/// to its end, then the new one from its start. A file that has become shorter or has other bytes
/// right before the position is read from its start; what it held before and has not been given is
/// gone. Between looks the file stays open. A copy goes its own way. An object belongs to one
/// thread; when memory runs out, std::bad_alloc is thrown.
class POKERMATH_EXPORT HistoryReader {
 public:
  /// @param path      UTF-8
  /// @param position  where a line begins: 0, or the position() of an earlier reader
  explicit HistoryReader(std::string path, std::int64_t position = 0);

  /// Appends the lines that have been completed, without their ends, decoded as ReadHistoryFile
  /// does, empty ones too. At most 16 MB are read at a time (or one line): more() tells whether
  /// there is more.
  ///
  /// @return false, with errno set and nothing appended, if the file cannot be opened or read
  bool Read(CStringArray& lines);
  /// Whether the last Read left complete lines behind.
  bool more() const { return more_; }

  /// Appends the last line if it has no end yet (a CR at its end is taken for half of one) and is
  /// not empty; Read will give it when it has been completed. Appends nothing while there are
  /// complete lines that Read has not given.
  ///
  /// @return as Read
  bool ReadUnfinished(CStringArray& lines);

  /// Where the first line begins that has not been given.
  std::int64_t position() const { return position_; }

 private:
  struct File;
  struct Look;

  bool Load(Look& look);
  bool LoadPart(Look& look, std::size_t most);
  std::string_view WithoutMark(std::string_view bytes) const;
  std::size_t BytesBefore() const;
  void Remember(const Look& look, std::size_t bytes);

  std::string path_;
  std::int64_t position_;
  std::shared_ptr<const File> file_;  // that was seen last; null: none
  std::array<char, 64> before_;       // what stood there before the position
  bool more_ = false;
};

}  // namespace pokermath

#endif  // POKERMATH_HAND_HISTORY_H_
