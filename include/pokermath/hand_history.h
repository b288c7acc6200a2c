// Hand-history files: what was added since the last look, as lines.

#ifndef POKERMATH_HAND_HISTORY_H_
#define POKERMATH_HAND_HISTORY_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "pokermath/export.h"
#include "pokermath/large_table.h"
#include "pokermath/text.h"

// A position is a byte offset, 0 for a new file; it is set to where the next call must begin.
// `lines` is cleared first. The file may grow, shrink and be replaced meanwhile. Any number of
// threads.

/// Reads UTF-8 text (Windows-1252 where the path begins with "888poker"). Lines end with LF or
/// CR LF, the last one where the file ends. Empty lines are left out, the others trimmed of white
/// space. Invalid bytes become U+FFFD, a byte-order mark at the start is dropped.
///
/// @return 0; -1 if there is no such file; -2 if it cannot be opened
POKERMATH_EXPORT int ReadHistoryFile(CString path, __int64& position, CStringArray& lines);

/// Reads bytes as Windows-1252, but for the UTF-8 signs of euro and pound. Lines end with CR LF and
/// are given as they are, empty ones too. A last line without CR LF is lost: the position becomes
/// the file's size all the same. The bytes EF, BB and BF are dropped wherever they stand. Of the
/// position only the low 32 bits are used.
///
/// @return 0; -1 and a message if there is no such file; the system's error code if it cannot be
///         opened
POKERMATH_EXPORT int ReadHistoryFileUTF8(CString path, __int64& position, CStringArray& lines);

namespace pokermath {

/// Follows a growing hand-history file and never loses a line: one that is not complete yet waits
/// for the next look.
class POKERMATH_EXPORT HistoryReader {
 public:
  /// @param path      UTF-8
  /// @param position  where a line begins: 0, or the position() of an earlier reader
  explicit HistoryReader(std::string path, std::int64_t position = 0);

  /// Appends the lines that have been completed, without their ends, decoded as ReadHistoryFile
  /// does, empty ones too. At most 16 MB are read at a time (or one line): more() tells whether
  /// there is more. A file that has become shorter or was replaced by another one is read from its
  /// start.
  ///
  /// @return false, with errno set, if the file cannot be opened or read
  bool Read(CStringArray& lines);
  bool more() const { return more_; }

  /// Appends what stands behind the last line end, if anything does; it will be given again, then
  /// whole, when it has been completed.
  bool ReadUnfinished(CStringArray& lines);

  /// Where the first line begins that has not been given.
  std::int64_t position() const { return position_; }

 private:
  bool Load(LargeTable<char>& bytes, std::size_t most, bool& at_end);
  std::string_view WithoutMark(std::string_view bytes) const;

  std::string path_;
  std::int64_t position_;
  std::uint64_t file_ = 0;  // which file it is; 0 before the first look
  bool more_ = false;
};

}  // namespace pokermath

#endif  // POKERMATH_HAND_HISTORY_H_
