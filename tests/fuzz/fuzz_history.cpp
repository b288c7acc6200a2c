// Any bytes in a hand-history file, looked at twice, give lines without line ends, and the reader
// that follows the file gives all of them however it is cut.

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

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
  Require(ReadHistoryFile(path, position, lines) == 0);
  Require(ReadHistoryFileUTF8(path, raw_position, lines) == 0);
  Require(position == static_cast<__int64>(bytes.size()) && raw_position == position);
  // A position that is not in the file.
  position = static_cast<__int64>(bytes.size()) + data[0] - 100;
  Require(ReadHistoryFile(path, position, lines) == 0);
  return 0;
}
