// Any entries as a finite-state table: what is taken keeps every way through it inside; what
// does so and has a value of the scale for every hand is taken. As a file it is taken
// exactly if, besides, its header is right and its entries are there, whatever is in row 0 if that
// is in the way.

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

#include "contracts/state_machines.h"

namespace pokermath {
namespace {

struct Ways {
  bool inside = true;    // every way stays inside
  bool complete = true;  // hands of different cards have values of the scale
};

// Walks every way, as an evaluator would.
void Walk(const StateFile& file, const std::vector<std::uint32_t>& entries, std::size_t state,
          std::vector<std::size_t> cards, bool is_hand, Ways& ways) {
  const auto width = static_cast<std::size_t>(file.shape.width);
  const auto first = static_cast<std::size_t>(file.shape.first_index);
  if (state + first + width > entries.size()) ways.inside = false;
  for (std::size_t card = 0; card < width && ways.inside; ++card) {
    const std::uint32_t entry = entries[state + first + card];
    const bool still_hand = is_hand && std::count(cards.begin(), cards.end(), card) == 0;
    if (cards.size() + 1 < static_cast<std::size_t>(file.shape.cards)) {
      cards.push_back(card);
      Walk(file, entries, entry, cards, still_hand, ways);
      cards.pop_back();
    } else {
      const bool is_value = entry > 0 && entry <= file.best;
      ways.complete = ways.complete && (is_value || !still_hand);
    }
  }
}

bool IsSound(const StateFile& file, const std::vector<std::uint32_t>& entries) {
  Ways ways;
  Walk(file, entries, static_cast<std::size_t>(file.shape.width), {}, true, ways);
  const bool sound = StatesAreSound(file, entries.data(), entries.size());
  if (sound ? !ways.inside : ways.inside && ways.complete) std::abort();
  return sound;
}

// The file of the entries: as it is, with one byte of its header changed (but for the number of
// entries, which may be smaller), one too many, or one too few.
std::string FileOf(const StateFile& file, const std::vector<std::uint32_t>& entries, int change,
                   std::size_t place) {
  const auto header = StateHeader(file, entries.size());
  std::string bytes(reinterpret_cast<const char*>(header.data()), header.size());
  bytes.append(reinterpret_cast<const char*>(entries.data()), 4 * entries.size());
  if (change == 1) bytes[place % 24] ^= 1;
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
  const StateFile file = {"", "", {2 + data[0] % 2, 2 + data[0] / 2 % 2, data[1] % 2}, 7};
  // A byte an entry, so that good entries are common; the largest ones stand for any number.
  std::vector<std::uint32_t> entries;
  for (std::size_t i = 2; i < size; ++i) {
    entries.push_back(data[i] < 250 ? data[i] : 0xFFFFFF00u + data[i]);
  }
  bool sound = IsSound(file, entries);
  const int change = data[0] / 4 % 4;
  const std::string bytes = FileOf(file, entries, change, data[1] / 2);
  const auto row_0 = static_cast<std::size_t>(file.shape.width + file.shape.first_index);
  if (!sound && entries.size() >= row_0) {
    std::fill_n(entries.begin(), row_0, 0u);
    sound = IsSound(file, entries);
  }
  if (Loads(file, bytes) != (sound && (change == 0 || change == 2))) std::abort();
  return 0;
}
