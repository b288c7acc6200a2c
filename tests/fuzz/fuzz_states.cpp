// Any entries as a finite-state table: it is taken exactly if every way through it stays inside,
// ends in a value of the scale, and only so many cards cannot come as have been seen. As a file it
// is taken exactly if, besides, its header and its length are right.

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "eval/state_machines.h"

namespace pokermath {
namespace {

// Walks every way, as an evaluator would.
bool StaysInside(const StateFile& file, const std::vector<std::uint32_t>& entries,
                 std::size_t state, int cards) {
  const auto width = static_cast<std::size_t>(file.shape.width);
  const auto first = static_cast<std::size_t>(file.shape.first_index);
  if (state % width != 0 || state + first + width > entries.size()) return false;
  int impossible = 0;
  for (std::size_t card = first; card < first + width; ++card) {
    impossible += entries[state + card] == 0 ? 1 : 0;
  }
  if (impossible > cards) return false;
  for (std::size_t card = first; card < first + width; ++card) {
    const std::uint32_t next = entries[state + card];
    const bool good = next == 0                       ? true
                      : cards + 1 == file.shape.cards ? next <= file.best
                                                      : StaysInside(file, entries, next, cards + 1);
    if (!good) return false;
  }
  return true;
}

// The file of the entries: as it is, with one byte of its header changed, one too many, or one too
// few.
std::string FileOf(const StateFile& file, const std::vector<std::uint32_t>& entries, int change,
                   std::size_t place) {
  const auto header = StateHeader(file, entries.size());
  std::string bytes(reinterpret_cast<const char*>(header.data()), header.size());
  bytes.append(reinterpret_cast<const char*>(entries.data()), 4 * entries.size());
  if (change == 1) bytes[place % header.size()] ^= 1;
  if (change == 2) bytes += '\0';
  if (change == 3) bytes.pop_back();
  return bytes;
}

bool Loads(const StateFile& file, const std::string& bytes) {
  static const int fd = memfd_create("states", MFD_CLOEXEC);
  if (ftruncate(fd, 0) != 0 || pwrite(fd, bytes.data(), bytes.size(), 0) < 0) std::abort();
  bool missing = true;
  const std::unique_ptr<std::uint32_t[]> loaded(
      LoadStates(file, "/proc/self/fd/" + std::to_string(fd), missing));
  if (missing) std::abort();
  return loaded != nullptr;
}

}  // namespace
}  // namespace pokermath

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pokermath;
  if (size < 2) return 0;
  const StateFile file = {"", "", {2 + data[0] % 2, 2 + data[0] / 2 % 2, data[1] % 2}, 7, 1000};
  // A byte an entry, so that good entries are common; the largest ones stand for any number.
  std::vector<std::uint32_t> entries;
  for (std::size_t i = 2; i < size; ++i) {
    entries.push_back(data[i] < 250 ? data[i] : 0xFFFFFF00u + data[i]);
  }
  const auto width = static_cast<std::size_t>(file.shape.width);
  const bool sound = StatesAreSound(file, entries.data(), entries.size());
  const auto first = static_cast<std::size_t>(file.shape.first_index);
  const bool first_row_is_zero =
      entries.size() >= first + 2 * width &&
      std::all_of(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(first + width),
                  [](std::uint32_t entry) { return entry == 0; });
  const bool inside = first_row_is_zero && StaysInside(file, entries, width, 0);
  if (sound != inside) std::abort();
  const int change = data[0] / 4 % 4;
  if (Loads(file, FileOf(file, entries, change, data[1] / 2)) != (sound && change == 0)) {
    std::abort();
  }
  return 0;
}
