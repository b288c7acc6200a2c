// Rows come from rows of triples of board ranks: the largest of ten.

#include "eval/omaha_rows.h"

#include <algorithm>

#include "eval/rank_sets.h"

namespace pokermath {
namespace {

// Signed numbers, of which the baseline finds the larger ones eight at a time.
using Row = std::array<std::int16_t, OmahaRows::kRow>;

// What pairs of ranks make with three of a board, by the number of the three.
class TripleRows {
 public:
  TripleRows() {
    for (int c = 0; c < 13; ++c)
      for (int b = 0; b <= c; ++b)
        for (int a = 0; a <= b; ++a) {
          const std::uint32_t key = kRankKeys[a] + kRankKeys[b] + kRankKeys[c];
          auto value = rows_[NumberOf(a, b, c)].begin();
          for (int high = 0; high < 13; ++high) {
            for (int low = 0; low <= high; ++low) {
              // Five cards of a rank, which no hand has, find some value of the table.
              *value++ = static_cast<std::int16_t>(
                  ValueOfRanks<5>(key + kRankKeys[high] + kRankKeys[low]));
            }
          }
        }
  }

  // Of three ranks in rising order.
  const Row& Of(int a, int b, int c) const { return rows_[NumberOf(a, b, c)]; }

 private:
  static std::size_t NumberOf(int a, int b, int c) {
    return static_cast<std::size_t>(MultisetNumber(std::array{a, b, c}));
  }

  std::array<Row, MultisetsOf(3)> rows_{};
};

// Writes the largest of some rows.
template <typename Value, typename... Rows>
void WriteLargest(Value* values, const Row& first, const Rows&... others) {
  for (std::size_t i = 0; i < first.size(); ++i) {
    std::int16_t largest = first[i];
    ((largest = std::max(largest, others[i])), ...);
    values[i] = static_cast<Value>(largest);
  }
}

}  // namespace

std::atomic<const OmahaRows*> OmahaRows::made_ = nullptr;

const OmahaRows& OmahaRows::Make() {
  static const OmahaRows rows;
  made_.store(&rows, std::memory_order_release);
  return rows;
}

OmahaRows::OmahaRows() {
  for (std::size_t card = 0; card < 52; ++card) {
    card_words_[card] = kOmahaKeys[card % 13] << kKeyShift | 1u << card / 13 * 3;
  }
  for (std::size_t card1 = 0; card1 < 52; ++card1) {
    for (std::size_t card2 = 0; card2 < 52; ++card2) {
      pair_words_[card1 * 256 + card2] = card_words_[card1] + card_words_[card2];
    }
  }
  // Room for a whole large page, if the system has them: taking it costs less than 300 small ones.
  values_.reserve((std::size_t{2} << 20) / sizeof(std::uint16_t));
  values_.assign(kOmahaPlaces * kRow, 0);
  // Any key at all, of impossible cards too, has a row.
  const std::uint16_t* offsets = kCompactTables.rows[0];
  const std::size_t last =
      *std::max_element(offsets, offsets + CompactTables::kKeys / CompactTables::kColumns);
  by_compact_key_.assign(last + CompactTables::kColumns, 0);

  const TripleRows rows;
  for (int d = 0; d < 13; ++d)
    for (int c = 0; c <= d; ++c)
      for (int b = 0; b <= c; ++b)
        for (int a = 0; a <= b; ++a) {
          Row of_four;
          WriteLargest(of_four.data(), rows.Of(a, b, c), rows.Of(a, b, d), rows.Of(a, c, d),
                       rows.Of(b, c, d));
          for (int e = a == d ? d + 1 : d; e < 13; ++e) {
            std::uint32_t key = 0;
            std::uint32_t compact_key = 0;
            for (const int rank : {a, b, c, d, e}) {
              key += kOmahaKeys[rank];
              compact_key += kRankKeys[rank];
            }
            const std::size_t place = OmahaPlaceOf(key);
            WriteLargest(&values_[place * kRow], of_four, rows.Of(a, b, e), rows.Of(a, c, e),
                         rows.Of(a, d, e), rows.Of(b, c, e), rows.Of(b, d, e), rows.Of(c, d, e));
            by_compact_key_[PlaceOfFive(compact_key)] = static_cast<std::uint16_t>(place);
          }
        }
}

}  // namespace pokermath
