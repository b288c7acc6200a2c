// Fills the tables of the compact evaluator, of any deck: the value of five, six or seven cards by
// the sum of their rank keys. And keys of Omaha boards, whose sums find a place for each.
//
// Keys are numbers such that no two multisets of seven ranks (of a board: five) have the same sum:
// that of the lowest rank is 0 and each one the smallest that is right with those before it. Sums
// of such keys crowd in few rows. So keys are multiplied by an odd number modulo a power of two
// that no sum reaches, which keeps different sums different and spreads them. A sum is cut into a
// row (upper bits) and a column (lower bits). The rows are laid over one another in one array,
// those with most entries first, each at the first offset where its entries fall on free places or
// on equal values.

#include "eval/generate/compact_tables.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "eval/generate/array_text.h"
#include "eval/omaha_keys.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

using Keys = std::array<std::uint32_t, 13>;

constexpr std::size_t kMostOfRank = 4;

// Sums of keys, rising, by how many cards there are.
using SumsByCards = std::vector<std::vector<std::uint32_t>>;

SumsByCards WithRank(const SumsByCards& sums, std::uint32_t key) {
  SumsByCards all(sums.size());
  for (std::size_t cards = 0; cards < sums.size(); ++cards) {
    for (std::size_t of_rank = 0; of_rank <= std::min(cards, kMostOfRank); ++of_rank) {
      for (const std::uint32_t sum : sums[cards - of_rank]) {
        all[cards].push_back(sum + static_cast<std::uint32_t>(of_rank) * key);
      }
    }
    std::ranges::sort(all[cards]);
  }
  return all;
}

// The smallest key above `last` with which no sums of all cards fall together: x is wrong if two
// multisets with i and j cards of its rank have sums a + i x = b + j x.
std::uint32_t NextKey(const SumsByCards& sums, std::uint32_t last) {
  constexpr std::uint32_t kLimit = 1u << 21;
  const std::size_t cards = sums.size() - 1;
  std::vector<bool> wrong(kLimit);
  for (std::size_t i = 0; i <= kMostOfRank; ++i) {
    for (std::size_t j = i + 1; j <= kMostOfRank; ++j) {
      const auto more = static_cast<std::uint32_t>(j - i);
      const std::vector<std::uint32_t>& larger = sums[cards - i];
      for (const std::uint32_t smaller : sums[cards - j]) {
        for (auto sum = std::ranges::lower_bound(larger, smaller); sum != larger.end(); ++sum) {
          const std::uint32_t key = (*sum - smaller) / more;
          if (key >= kLimit) break;
          if (key * more == *sum - smaller) wrong[key] = true;
        }
      }
    }
  }
  const auto found = std::find(wrong.begin() + last + 1, wrong.end(), false);
  if (found == wrong.end()) throw std::runtime_error("no key fits a rank");
  return static_cast<std::uint32_t>(found - wrong.begin());
}

Keys FindKeys(const DeckRules& rules, std::size_t cards, int key_bits) {
  Keys keys{};
  SumsByCards sums(cards + 1);
  sums[0] = {0};
  sums = WithRank(sums, 0);
  const auto lowest = static_cast<std::size_t>(rules.lowest_rank);
  for (std::size_t rank = lowest + 1; rank < 13; ++rank) {
    keys[rank] = NextKey(sums, keys[rank - 1]);
    sums = WithRank(sums, keys[rank]);
  }
  if (sums[cards].back() >> key_bits != 0) throw std::runtime_error("keys are too large");
  constexpr std::uint32_t kSpread = 0x9E3779B1;  // odd, near 2^32 / the golden ratio
  for (std::uint32_t& key : keys) key = key * kSpread & ((1u << key_bits) - 1);
  return keys;
}

// Ascending value of every rank multiset of `cards` cards that are no flush.
std::map<RankCounts, int> ValuesOfRanks(int cards, const ReferenceValues& reference) {
  std::map<RankCounts, int> values;
  const std::map<RankCounts, int> fewer =
      cards > 5 ? ValuesOfRanks(cards - 1, reference) : std::map<RankCounts, int>();
  for (const RankCounts& counts : AllRankCounts(reference.rules(), cards)) {
    int& best = values[counts];
    if (cards == 5) best = reference.Ascending(counts, false);
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

std::vector<SumValue> ValuesBySum(const std::map<RankCounts, int>& values, const Keys& keys,
                                  int key_bits) {
  std::vector<SumValue> by_sum;
  for (const auto& [counts, value] : values) {
    std::uint32_t sum = 0;
    for (std::size_t rank = 0; rank < 13; ++rank) {
      sum += static_cast<std::uint32_t>(counts[rank]) * keys[rank];
    }
    by_sum.push_back({sum & ((1u << key_bits) - 1), value});
  }
  std::ranges::sort(by_sum);
  const auto same_sum = [](const SumValue& a, const SumValue& b) { return a.sum == b.sum; };
  if (std::ranges::adjacent_find(by_sum, same_sum) != by_sum.end()) {
    throw std::runtime_error("two hands have the same sum of keys");
  }
  return by_sum;
}

struct Packed {
  std::vector<std::uint32_t> rows;
  std::vector<int> values;
};

Packed Pack(const std::vector<SumValue>& by_sum, int key_bits, int column_bits) {
  struct Entry {
    std::uint32_t column;
    int value;
  };
  const std::size_t row_count = std::size_t{1} << (key_bits - column_bits);
  const std::uint32_t columns = 1u << column_bits;
  std::vector<std::vector<Entry>> rows(row_count);
  for (const auto& [sum, value] : by_sum) {
    rows[sum >> column_bits].push_back({sum % columns, value});
  }
  std::vector<std::size_t> order(row_count);
  for (std::size_t i = 0; i < row_count; ++i) order[i] = i;
  std::ranges::stable_sort(order, std::greater<>(), [&](std::size_t i) { return rows[i].size(); });

  Packed packed;
  packed.rows.resize(row_count);
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
  packed.values.resize(last_offset + columns);
  return packed;
}

// Best flush value, ascending, of every set of a deck's ranks.
std::vector<int> FlushValues(const ReferenceValues& reference) {
  const int lowest = reference.rules().lowest_rank;
  std::vector<int> values(1u << (13 - lowest));
  for (std::uint32_t mask = 0; mask < values.size(); ++mask) {
    const int ranks = __builtin_popcount(mask);
    if (ranks == 5) {
      RankCounts counts{};
      for (int rank = lowest; rank < 13; ++rank) {
        counts[static_cast<std::size_t>(rank)] = static_cast<int>(mask >> (rank - lowest) & 1);
      }
      values[mask] = reference.Ascending(counts, true);
    }
    for (std::uint32_t rest = mask; rest != 0 && ranks > 5; rest &= rest - 1) {
      values[mask] = std::max(values[mask], values[mask & ~(rest & -rest)]);
    }
  }
  return values;
}

// What each card adds: its rank's key at the top, and 1 in the counter of its suit.
template <typename Tables>
std::vector<std::string> CardWords(const Keys& keys) {
  std::vector<std::string> words;
  for (int card = 0; card < 52; ++card) {
    const std::uint64_t key = keys[static_cast<std::size_t>(card % 13)];
    const std::uint64_t suit = card % 13 < Tables::kLowestRank
                                   ? Tables::kAbsentBits & -Tables::kAbsentBits
                                   : std::uint64_t{1} << (card / 13 * 4);
    words.push_back(std::to_string(key << Tables::kKeyShift | suit) + "u");
  }
  return words;
}

// The same in 32 bits, without a counter of the last suit.
template <typename Tables>
std::vector<std::uint32_t> ShortWords(const Keys& keys) {
  std::vector<std::uint32_t> words;
  for (int card = 0; card < 52; ++card) {
    const std::uint32_t suit = card < 39 ? 1u << (card / 13 * 3) : 0;
    words.push_back(keys[static_cast<std::size_t>(card % 13)] << Tables::kShortKeyShift | suit);
  }
  return words;
}

// Pairs by card + 256 * card. Of each 256 places one deck takes 64, the next deck the next ones.
constexpr std::size_t kPairRow = 256;
constexpr std::size_t kPairDeck = 64;

void AddPairs(const std::vector<std::uint32_t>& words, std::size_t place,
              std::vector<std::uint32_t>& pairs) {
  for (std::size_t i = 0; i < 52; ++i) {
    for (std::size_t j = 0; j < 52; ++j) pairs[kPairRow * i + place + j] = words[i] + words[j];
  }
}

// The suit of five and more out of `cards`, from 1, by the counts of three suits; 0 for none.
std::vector<int> FlushSuits(int cards) {
  std::vector<int> suits(512);
  for (std::size_t counts = 0; counts < suits.size(); ++counts) {
    int left = cards;
    for (int suit = 0; suit < 3; ++suit) {
      const int count = static_cast<int>(counts >> (3 * suit) & 7);
      if (count >= 5) suits[counts] = suit + 1;
      left -= count;
    }
    if (left >= 5) suits[counts] = 4;
  }
  return suits;
}

// Everything of one deck but the pairs, which follow those of the decks before.
template <typename Tables>
void WriteDeck(std::ostream& out, const ReferenceValues& reference, const Keys& keys,
               const std::string& deck, std::size_t pair_place) {
  out << "namespace {\n";
  for (int cards = 5; cards <= 7; ++cards) {
    const std::vector<SumValue> by_sum =
        ValuesBySum(ValuesOfRanks(cards, reference), keys, Tables::kKeyBits);
    const Packed packed = Pack(by_sum, Tables::kKeyBits, Tables::kColumnBits);
    const std::string name = deck + std::to_string(cards);
    WriteArray(out, "const std::uint16_t kRows" + name + "[]", packed.rows);
    WriteArray(out, "const std::uint16_t kValues" + name + "[]", packed.values);
  }
  out << "}  // namespace\n";
  out << "const " << deck << "Tables k" << deck << "Tables = {\n.card_words = ";
  WriteBraces(out, CardWords<Tables>(keys));
  out << ",\n.short_words = ";
  WriteBraces(out, ShortWords<Tables>(keys));
  out << ",\n.flush_values = ";
  WriteBraces(out, FlushValues(reference));
  const auto all = [](const std::string& name) {
    return "{" + name + "5, " + name + "6, " + name + "7}";
  };
  out << ",\n.rows = " << all("kRows" + deck) << ",\n.values = " << all("kValues" + deck)
      << ",\n.pair_words = kPairWords + " << pair_place
      << ",\n.flush_suits = " << all("kFlushSuits") << "};\n";
}

// The keys of boards, and a place of its own for each.
void WriteOmahaKeys(std::ostream& out) {
  const Keys keys = FindKeys(kFullDeck, 5, kOmahaKeyBits);
  std::map<RankCounts, int> boards;
  int number = 0;
  for (const RankCounts& counts : AllRankCounts(kFullDeck, 5)) boards[counts] = ++number;
  const Packed packed =
      Pack(ValuesBySum(boards, keys, kOmahaKeyBits), kOmahaKeyBits, kOmahaColumnBits);
  if (packed.values.size() > kOmahaPlaces) throw std::runtime_error("too many places of boards");
  WriteArray(out, "const std::uint32_t kOmahaKeys[13]", keys);
  WriteArray(out, "const std::uint16_t kOmahaOffsets[]", packed.rows);
}

}  // namespace

void WriteCompactTables(std::ostream& out, const ReferenceValues& values) {
  const ReferenceValues short_values(kShortDeck);
  constexpr std::size_t kMostCards = 7;
  const Keys keys = FindKeys(values.rules(), kMostCards, CompactTables::kKeyBits);
  const Keys short_keys = FindKeys(short_values.rules(), kMostCards, ShortDeckTables::kKeyBits);
  std::vector<std::uint32_t> pairs(52 * kPairRow);
  AddPairs(ShortWords<CompactTables>(keys), 0, pairs);
  AddPairs(ShortWords<ShortDeckTables>(short_keys), kPairDeck, pairs);

  out << "// Written by pokermath_generate.\n#include \"eval/compact_keys.h\"\n"
         "#include \"eval/omaha_keys.h\"\n"
         "#include \"pokermath/evaluators.h\"\n"
         "namespace pokermath {\nnamespace {\n";
  WriteArray(out, "const std::uint32_t kPairWords[]", pairs);
  for (int cards = 5; cards <= 7; ++cards) {
    WriteArray(out, "const std::uint8_t kFlushSuits" + std::to_string(cards) + "[]",
               FlushSuits(cards));
  }
  out << "}  // namespace\n";
  WriteArray(out, "const std::uint32_t kRankKeys[13]", keys);
  WriteArray(out, "const std::uint32_t kShortDeckKeys[13]", short_keys);
  WriteDeck<CompactTables>(out, values, keys, "Compact", 0);
  WriteDeck<ShortDeckTables>(out, short_values, short_keys, "ShortDeck", kPairDeck);
  WriteOmahaKeys(out);
  out << "}  // namespace pokermath\n";
}

}  // namespace pokermath
