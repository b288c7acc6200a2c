// Fills the tables of the prime-product evaluator.
//
// Flushes and hands of five different ranks are found by their rank bits; all other hands by the
// product of five primes, either in a sorted list or through a perfect hash. The hash is given up
// to its displacements, which are searched for here: buckets with many products first, each takes
// the first displacement that leads all its products to free slots.

#include "eval/generate/five_card_tables.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <stdexcept>
#include <vector>

#include "eval/five_card_hash.h"
#include "eval/generate/array_text.h"

namespace pokermath {
namespace {

constexpr std::array<std::uint32_t, 13> kPrimes = {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41};
constexpr std::size_t kMasks = 7937;  // up to the rank bits of ten to ace

struct MaskTables {
  std::vector<int> flush = std::vector<int>(kMasks);
  std::vector<int> unique_five = std::vector<int>(kMasks);
};

MaskTables FillMaskTables(const ReferenceValues& values) {
  MaskTables tables;
  for (const RankCounts& counts : AllRankCounts(kFullDeck, 5)) {
    if (std::ranges::max(counts) > 1) continue;
    std::size_t mask = 0;
    for (std::size_t rank = 0; rank < 13; ++rank) {
      if (counts[rank] == 1) mask |= std::size_t{1} << rank;
    }
    tables.flush[mask] = values.Of(counts, true);
    tables.unique_five[mask] = values.Of(counts, false);
  }
  return tables;
}

std::map<std::uint32_t, int> FillProducts(const ReferenceValues& values) {
  std::map<std::uint32_t, int> products;
  for (const RankCounts& counts : AllRankCounts(kFullDeck, 5)) {
    if (std::ranges::max(counts) == 1) continue;
    std::uint32_t product = 1;
    for (std::size_t rank = 0; rank < 13; ++rank) {
      for (int i = 0; i < counts[rank]; ++i) product *= kPrimes[rank];
    }
    products[product] = values.Of(counts, false);
  }
  return products;
}

struct HashTables {
  std::vector<int> adjust = std::vector<int>(kHashBuckets);
  std::vector<int> values = std::vector<int>(kHashSlots);
};

HashTables SearchHash(const std::map<std::uint32_t, int>& products) {
  std::vector<std::vector<std::uint32_t>> buckets(kHashBuckets);
  for (const auto& [product, value] : products)
    buckets[HashProduct(product).bucket].push_back(product);
  std::vector<std::size_t> order(kHashBuckets);
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::ranges::stable_sort(order, std::greater<>(),
                           [&](std::size_t i) { return buckets[i].size(); });

  HashTables tables;
  for (const std::size_t bucket : order) {
    const auto fits = [&](std::uint32_t adjust) {
      std::vector<std::uint32_t> slots;
      for (const std::uint32_t product : buckets[bucket]) {
        const std::uint32_t slot = HashProduct(product).slot ^ adjust;
        if (tables.values[slot] != 0 || std::ranges::count(slots, slot) != 0) return false;
        slots.push_back(slot);
      }
      return true;
    };
    std::uint32_t adjust = 0;
    while (adjust < kHashSlots && !fits(adjust)) ++adjust;
    if (adjust == kHashSlots) throw std::runtime_error("no displacement fits a bucket");
    tables.adjust[bucket] = static_cast<int>(adjust);
    for (const std::uint32_t product : buckets[bucket]) {
      tables.values[HashProduct(product).slot ^ adjust] = products.at(product);
    }
  }
  return tables;
}

}  // namespace

void WriteFiveCardTables(std::ostream& out, const ReferenceValues& values) {
  const MaskTables masks = FillMaskTables(values);
  const std::map<std::uint32_t, int> products = FillProducts(values);
  const HashTables hash = SearchHash(products);
  std::vector<std::uint32_t> product_list;
  std::vector<int> product_values;
  for (const auto& [product, value] : products) {
    product_list.push_back(product);
    product_values.push_back(value);
  }
  out << "// Written by pokermath_generate.\n#include \"eval/five_card_tables.h\"\n"
         "namespace pokermath {\n";
  WriteArray(out, "const std::uint16_t kFlushValues[7937]", masks.flush);
  WriteArray(out, "const std::uint16_t kUniqueFiveValues[7937]", masks.unique_five);
  WriteArray(out, "const std::uint32_t kProducts[4888]", product_list);
  WriteArray(out, "const std::uint16_t kProductValues[4888]", product_values);
  WriteArray(out, "const std::uint16_t kHashAdjust[512]", hash.adjust);
  WriteArray(out, "const std::uint16_t kHashValues[8192]", hash.values);
  out << "}  // namespace pokermath\n";
}

}  // namespace pokermath
