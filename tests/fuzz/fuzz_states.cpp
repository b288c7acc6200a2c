// Any entries as a finite-state table: it is taken exactly if every way through it stays inside,
// ends in a value of the scale, and only so many cards cannot come as have been seen.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
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
  return 0;
}
