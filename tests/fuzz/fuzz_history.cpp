// Any bytes in a hand-history file, looked at twice, give lines without line ends, and the reader
// that follows the file gives all of them however it is cut.

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "platform/text.h"
#include "pokermath/hand_history.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

const std::string& Path() {
  static const std::string path = "/tmp/pokermath-fuzz-" + std::to_string(getpid());
  static const int removed = std::atexit([] { unlink(Path().c_str()); });
  (void)removed;
  return path;
}

void Put(const std::string& bytes, std::ios::openmode mode) {
  std::ofstream(Path(), std::ios::binary | mode) << bytes;
}

// The first bytes of the input as a position, which need not be in the file, and one near its end.
void RequireAnyPositionWorks(const CString& path, const std::uint8_t* data, std::size_t size,
                             __int64 file_size) {
  __int64 anywhere = 0;
  std::memcpy(&anywhere, data, std::min(size, sizeof anywhere));
  for (const __int64 start : {anywhere, file_size + data[0] - 100}) {
    CStringArray lines;
    __int64 position = start;
    Require(ReadHistoryFile(path, position, lines) == 0);
    Require(position == (start < 0 || start > file_size ? start : file_size));
    position = start;
    Require(ReadHistoryFileUTF8(path, position, lines) == 0 && position == file_size);
    pokermath::HistoryReader reader(pokermath::ToUtf8(path), start);
    Require(reader.Read(lines) && reader.position() >= 0 && reader.position() <= file_size);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::size_t cut = data[0] % (bytes.size() + 1);
  const CString path(Path().begin(), Path().end());
  CStringArray whole, pieces, lines;
  Put(bytes, std::ios::trunc);
  pokermath::HistoryReader reader(Path());
  Require(reader.Read(whole) && !reader.more());
  for (const CString& line : whole) Require(line.find(L'\n') == line.npos);

  Put(bytes.substr(0, cut), std::ios::trunc);
  pokermath::HistoryReader piecewise(Path());
  __int64 position = 0, raw_position = 0;
  Require(piecewise.Read(pieces));
  Require(ReadHistoryFile(path, position, lines) == 0);
  Require(ReadHistoryFileUTF8(path, raw_position, lines) == 0);
  Put(bytes.substr(cut), std::ios::app);
  Require(piecewise.Read(pieces));
  Require(pieces == whole && piecewise.position() == reader.position());
  pieces.clear();
  Require(piecewise.ReadUnfinished(pieces) && pieces.size() <= 1);
  for (const CString& line : pieces) Require(line.find(L'\n') == line.npos);
  Require(ReadHistoryFile(path, position, lines) == 0);
  Require(ReadHistoryFileUTF8(path, raw_position, lines) == 0);
  Require(position == static_cast<__int64>(bytes.size()) && raw_position == position);
  RequireAnyPositionWorks(path, data, size, static_cast<__int64>(bytes.size()));
  return 0;
}
