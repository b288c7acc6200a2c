// Fills the tables of the compact evaluator: the value of five, six or seven cards by the sum of
// their rank keys.
//
// Keys are numbers such that no two hands of different value have the same key sum; we draw key
// sets until one is right. A deuce has the key 0, and no key exceeds a seventh of 2^26, so that
// sums have 26 bits. A sum is cut into a row (upper 13 bits) and a column (lower 13 bits). The rows
// are laid over one another in one array, those with most entries first, each at the first offset
// where its entries fall on free places or on equal values.

#include "eval/generate/compact_tables.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "eval/generate/array_text.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

constexpr std::uint32_t kMaxKey = ((1u << 26) - 1) / 7;
constexpr int kColumnBits = CompactTables::kColumnBits;
constexpr std::uint32_t kColumns = CompactTables::kColumns;
constexpr std::size_t kRows = 8192;

using Keys = std::array<std::uint32_t, 13>;

// Ascending value of every rank multiset of `cards` cards that are no flush.
std::map<RankCounts, int> ValuesOfRanks(int cards, const ReferenceValues& reference) {
  std::map<RankCounts, int> values;
  const std::map<RankCounts, int> fewer =
      cards > 5 ? ValuesOfRanks(cards - 1, reference) : std::map<RankCounts, int>();
  for (const RankCounts& counts : AllRankCounts(cards)) {
    int& best = values[counts];
    if (cards == 5) best = 7463 - reference.Of(counts, false);
    for (std::size_t rank = 0; rank < 13 && cards > 5; ++rank) {
      if (counts[rank] == 0) continue;
      RankCounts without = counts;
      --without[rank];
      best = std::max(best, fewer.at(without));
    }
  }
  return values;
}

// A key sum and the value of the hands that have it.
struct SumValue {
  std::uint32_t sum;
  int value;
  auto operator<=>(const SumValue&) const = default;
};

// All key sums with their values, rising; none if two different values have the same sum.
std::vector<SumValue> ValuesBySum(const std::map<RankCounts, int>& values, const Keys& keys) {
  std::vector<SumValue> by_sum;
  for (const auto& [counts, value] : values) {
    std::uint32_t sum = 0;
    for (std::size_t rank = 0; rank < 13; ++rank) {
      sum += static_cast<std::uint32_t>(counts[rank]) * keys[rank];
    }
    by_sum.push_back({sum, value});
  }
  std::ranges::sort(by_sum);
  by_sum.erase(std::unique(by_sum.begin(), by_sum.end()), by_sum.end());
  const auto same_sum = [](const SumValue& a, const SumValue& b) { return a.sum == b.sum; };
  if (std::ranges::adjacent_find(by_sum, same_sum) != by_sum.end()) by_sum.clear();
  return by_sum;
}

struct Packed {
  std::vector<std::uint32_t> rows = std::vector<std::uint32_t>(kRows);
  std::vector<int> values;
};

Packed Pack(const std::vector<SumValue>& by_sum) {
  struct Entry {
    std::uint32_t column;
    int value;
  };
  std::vector<std::vector<Entry>> rows(kRows);
  for (const auto& [sum, value] : by_sum) {
    rows[sum >> kColumnBits].push_back({sum % kColumns, value});
  }
  std::vector<std::size_t> order(kRows);
  for (std::size_t i = 0; i < kRows; ++i) order[i] = i;
  std::ranges::stable_sort(order, std::greater<>(), [&](std::size_t i) { return rows[i].size(); });

  Packed packed;
  packed.values.resize(1u << 17);
  std::uint32_t last_offset = 0;
  for (const std::size_t row : order) {
    std::uint32_t offset = 0;
    const auto fits = [&](const Entry& entry) {
      const int there = packed.values[offset + entry.column];
      return there == 0 || there == entry.value;
    };
    while (!std::ranges::all_of(rows[row], fits)) ++offset;
    for (const Entry& entry : rows[row]) packed.values[offset + entry.column] = entry.value;
    packed.rows[row] = offset;
    last_offset = std::max(last_offset, offset);
  }
  if (last_offset > 0xFFFF) throw std::runtime_error("a row offset exceeds 16 bits");
  // Any key sum at all, of impossible cards too, stays inside the array.
  packed.values.resize(last_offset + kColumns);
  return packed;
}

// Best flush value, ascending, of every rank mask.
std::vector<int> FlushValues(const ReferenceValues& reference) {
  std::vector<int> values(8192);
  for (std::uint32_t mask = 0; mask < 8192; ++mask) {
    const int ranks = __builtin_popcount(mask);
    if (ranks == 5) {
      RankCounts counts{};
      for (std::size_t rank = 0; rank < 13; ++rank) counts[rank] = (mask >> rank & 1) != 0 ? 1 : 0;
      values[mask] = 7463 - reference.Of(counts, true);
    }
    for (std::uint32_t rank = 0; rank < 13 && ranks > 5; ++rank) {
      if ((mask >> rank & 1) != 0)
        values[mask] = std::max(values[mask], values[mask & ~(1u << rank)]);
    }
  }
  return values;
}

// What each card adds: its rank's key from bit 38, and 1 in the counter of its suit.
std::vector<std::string> CardWords(const Keys& keys) {
  std::vector<std::string> words;
  for (int card = 0; card < 52; ++card) {
    const std::uint64_t key = keys[static_cast<std::size_t>(card % 13)];
    words.push_back(
        std::to_string(key << CompactTables::kKeyShift | std::uint64_t{1} << (card / 13 * 4)) +
        "u");
  }
  return words;
}

}  // namespace

void WriteCompactTables(std::ostream& out, const ReferenceValues& reference) {
  std::array<std::map<RankCounts, int>, 3> values;
  for (int cards = 5; cards <= 7; ++cards) {
    values[static_cast<std::size_t>(cards - 5)] = ValuesOfRanks(cards, reference);
  }
  std::mt19937 random(1);
  Keys keys;
  std::array<std::vector<SumValue>, 3> by_sum;
  const auto works = [&](std::size_t i) {
    return !(by_sum[i] = ValuesBySum(values[i], keys)).empty();
  };
  do {
    for (std::uint32_t& key : keys) key = static_cast<std::uint32_t>(random() % (kMaxKey + 1));
    keys[0] = 0;
  } while (!(works(2) && works(1) && works(0)));

  out << "// Written by pokermath_generate.\n#include \"eval/compact_keys.h\"\n"
         "#include \"pokermath/evaluators.h\"\n"
         "namespace pokermath {\nnamespace {\n";
  for (std::size_t i = 0; i < 3; ++i) {
    const Packed packed = Pack(by_sum[i]);
    const std::string name = std::to_string(i + 5);
    WriteArray(out, "const std::uint16_t kRows" + name + "[]", packed.rows);
    WriteArray(out, "const std::uint16_t kValues" + name + "[]", packed.values);
  }
  out << "}  // namespace\n";
  WriteArray(out, "const std::uint32_t kRankKeys[13]", keys);
  out << "const CompactTables kCompactTables = {\n.card_words = ";
  WriteBraces(out, CardWords(keys));
  out << ",\n.flush_values = ";
  WriteBraces(out, FlushValues(reference));
  out << ",\n.rows = {kRows5, kRows6, kRows7},\n.values = {kValues5, kValues6, kValues7},\n};\n"
         "}  // namespace pokermath\n";
}

}  // namespace pokermath
