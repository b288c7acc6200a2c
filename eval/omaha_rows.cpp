#include "eval/omaha_rows.h"

#include <algorithm>

namespace pokermath {

OmahaRows::OmahaRows() {
  // Any key at all, of impossible cards too, has a row.
  const std::uint16_t* offsets = kCompactTables.rows[0];
  const std::size_t last =
      *std::max_element(offsets, offsets + CompactTables::kKeys / CompactTables::kColumns);
  values_.assign((last + CompactTables::kColumns) * kRow, 0);
  for (int e = 0; e < 13; ++e)
    for (int d = 0; d <= e; ++d)
      for (int c = 0; c <= d; ++c)
        for (int b = 0; b <= c; ++b)
          for (int a = 0; a <= b; ++a) {
            if (a != e) AddBoard({a, b, c, d, e});
          }
}

void OmahaRows::AddBoard(const std::array<int, 5>& ranks) {
  std::uint32_t key = 0;
  for (const int rank : ranks) key += kRankKeys[rank];
  std::array<std::uint32_t, 10> triples;
  auto next = triples.begin();
  for (std::size_t a = 0; a < 3; ++a)
    for (std::size_t b = a + 1; b < 4; ++b)
      for (std::size_t c = b + 1; c < 5; ++c) {
        *next++ = kRankKeys[ranks[a]] + kRankKeys[ranks[b]] + kRankKeys[ranks[c]];
      }
  std::uint16_t* value = &values_[PlaceOfFive(key) * kRow];
  for (int high = 0; high < 13; ++high) {
    for (int low = 0; low <= high; ++low) {
      int best = 0;
      for (const std::uint32_t triple : triples) {
        best = std::max(best, ValueOfRanks<5>(triple + kRankKeys[high] + kRankKeys[low]));
      }
      *value++ = static_cast<std::uint16_t>(best);
    }
  }
}

}  // namespace pokermath
