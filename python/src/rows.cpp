// A row has two equal cards if it equals itself, moved by one card, two cards and so on, at a place
// where both are of the same row. All rows of a block are compared as one string of bytes, with a
// mask that says where that is.

#include "python/src/rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/dispatch.h"
#include "pokermath/cards.h"
#include "ranges/hand_classes.h"

namespace pokermath {
namespace {

constexpr std::size_t kRowsAtOnce = 64;
static_assert(kBlockRows % kRowsAtOnce == 0);

template <std::size_t width>
constexpr auto kSameRow = [] {
  std::array<std::array<std::uint8_t, width * kRowsAtOnce>, width> masks{};
  for (std::size_t distance = 1; distance < width; ++distance) {
    for (std::size_t i = 0; i < width * kRowsAtOnce; ++i) {
      masks[distance][i] = i % width + distance < width ? 0xFF : 0;
    }
  }
  return masks;
}();

// Not 0 where a card is in no deck.
POKERMATH_KERNEL std::uint8_t IsForeign(std::uint8_t card, bool short_deck) {
  if (!short_deck) return card > 51 ? 0xFF : 0;
  bool in_deck = false;
  for (std::uint8_t lowest = kLowestShortDeckRank; lowest < 52; lowest += 13) {
    in_deck |= static_cast<std::uint8_t>(card - lowest) < 13 - kLowestShortDeckRank;
  }
  return in_deck ? 0 : 0xFF;
}

template <std::size_t width, bool short_deck>
POKERMATH_KERNEL std::uint8_t FaultsIn(const std::uint8_t* rows) {
  std::uint8_t faults = 0;
  for (std::size_t i = 0; i < width * kRowsAtOnce; ++i) faults |= IsForeign(rows[i], short_deck);
  for (std::size_t distance = 1; distance < width; ++distance) {
    const auto& same_row = kSameRow<width>[distance];
    for (std::size_t i = 0; i < width * kRowsAtOnce; ++i) {
      const std::uint8_t equal = rows[i] == rows[i + distance] ? 0xFF : 0;
      faults |= static_cast<std::uint8_t>(equal & same_row[i]);
    }
  }
  return faults;
}

template <std::size_t width, bool short_deck>
bool AreHandsOf(std::uint8_t* rows, std::size_t count) {
  // What is behind them counts as copies of the first one.
  const std::size_t end = (count + kRowsAtOnce - 1) / kRowsAtOnce * kRowsAtOnce;
  for (std::size_t row = count; row < end; ++row) std::copy_n(rows, width, rows + row * width);
  return Dispatch(BestIsa(), [&](auto) POKERMATH_INLINE {
    std::uint8_t faults = 0;
    for (std::size_t row = 0; row < end; row += kRowsAtOnce) {
      faults |= FaultsIn<width, short_deck>(rows + row * width);
    }
    return faults == 0;
  });
}

}  // namespace

bool AreHands(std::size_t width, bool short_deck, std::uint8_t* rows, std::size_t count) {
  if (count == 0) return true;
  const auto check = [&]<std::size_t... widths>(std::index_sequence<widths...>) {
    bool fine = false;
    ((width == widths + 2 && (fine = short_deck ? AreHandsOf<widths + 2, true>(rows, count)
                                                : AreHandsOf<widths + 2, false>(rows, count))),
     ...);
    return fine;
  };
  return check(std::make_index_sequence<kMostRowCards - 1>());
}

std::string FaultOf(std::span<const std::uint8_t> row, bool short_deck) {
  std::uint64_t seen = 0;
  for (const std::uint8_t card : row) {
    if (card > 51) return fmt::format("{} is not a card code: 0 to 51", card);
    const std::string name = CardName(card);
    if (short_deck && card % 13 < kLowestShortDeckRank) {
      return name + " is not in the short deck, which has six to ace";
    }
    if ((seen >> card & 1) != 0) return name + " is given twice";
    seen |= std::uint64_t{1} << card;
  }
  return "";
}

}  // namespace pokermath
