// The hands of both ranges in the order of their values, level by level from below. What a hand
// beats is the weight of the other range below its level, less what shares one of its cards:
//
//   below - below with its first card - below with its second card + below with both
//
// and the last is the same hand in the other range. That is asked before a level is put in and once
// more behind it; the difference is ties.

#include "kernels/board_sweep.h"

#include <algorithm>

#include "eval/worth.h"

namespace pokermath {
namespace {

constexpr int kHandBits = 11;
constexpr std::uint32_t kHands = (1u << kHandBits) - 1;
constexpr std::uint32_t kSecond = 1u << kHandBits;  // of the second range
constexpr int kValueShift = kHandBits + 1;
static_assert(1326 <= kHands && 7462 < 1u << (32 - kValueShift));

}  // namespace

BoardSweep::BoardSweep(const GameRules& rules, const TwoRanges& ranges) : rules_(rules) {
  sides_[0].hands = ranges.hands1;
  sides_[1].hands = ranges.hands2;
  const auto place = [](const WeightedPair& hand) {
    return static_cast<std::size_t>(hand.card1 * 52 + hand.card2);
  };
  for (std::size_t i = 0; i < 2; ++i) {
    std::vector<std::int64_t> weights(52 * 52);
    for (const WeightedPair& hand : sides_[1 - i].hands) weights[place(hand)] = hand.weight;
    sides_[i].same.reserve(sides_[i].hands.size());
    for (const WeightedPair& hand : sides_[i].hands) {
      sides_[i].same.push_back(weights[place(hand)]);
    }
  }
}

void BoardSweep::Gather(std::uint32_t number, CardSet board, std::span<const int> board_cards) {
  Side& side = sides_[number];
  side.all = side.below = 0;
  side.holds = side.below_holds = {};
  for (std::size_t i = 0; i < side.hands.size(); ++i) {
    const WeightedPair& hand = side.hands[i];
    if (hand.cards().Meets(board)) continue;
    side.all += hand.weight;
    side.holds[static_cast<std::size_t>(hand.card1)] += hand.weight;
    side.holds[static_cast<std::size_t>(hand.card2)] += hand.weight;
    const int cards[2] = {hand.card1, hand.card2};
    const auto value = static_cast<std::uint32_t>(WorthOf(rules_, cards, board_cards).high);
    order_.push_back(value << kValueShift | number << kHandBits | static_cast<std::uint32_t>(i));
  }
}

std::int64_t BoardSweep::Below(const Side& other, const WeightedPair& hand, std::int64_t same) {
  return other.below - other.below_holds[static_cast<std::size_t>(hand.card1)] -
         other.below_holds[static_cast<std::size_t>(hand.card2)] + same;
}

void BoardSweep::Insert(std::span<const std::uint32_t> level) {
  for (const std::uint32_t entry : level) {
    Side& side = sides_[(entry & kSecond) != 0];
    const WeightedPair& hand = side.hands[entry & kHands];
    side.below += hand.weight;
    side.below_holds[static_cast<std::size_t>(hand.card1)] += hand.weight;
    side.below_holds[static_cast<std::size_t>(hand.card2)] += hand.weight;
  }
}

void BoardSweep::Count(CardSet board, const TwoTallies& tallies) {
  std::array<int, 5> board_cards;
  const auto end = std::copy(board.begin(), board.end(), board_cards.begin());
  order_.clear();
  for (const std::uint32_t side : {0u, 1u}) Gather(side, board, {board_cards.begin(), end});
  std::ranges::sort(order_);
  for (std::size_t first = 0; first < order_.size();) {
    std::size_t last = first;
    while (last < order_.size() && order_[last] >> kValueShift == order_[first] >> kValueShift) {
      ++last;
    }
    const std::span<const std::uint32_t> level(&order_[first], last - first);
    // The same hand is on the same level, so it is below only behind it.
    const auto for_each = [&](const auto& add) {
      for (const std::uint32_t entry : level) {
        const bool second = (entry & kSecond) != 0;
        const std::size_t hand = entry & kHands;
        const Side& side = sides_[second];
        add(side.hands[hand], side.same[hand], sides_[!second],
            (second ? tallies.of2 : tallies.of1)[hand]);
      }
    };
    for_each([](const WeightedPair& hand, std::int64_t, const Side& other, Tally& tally) {
      const std::int64_t below = Below(other, hand, 0);
      tally.wins += below;
      tally.ties -= below;
    });
    Insert(level);
    for_each([](const WeightedPair& hand, std::int64_t same, const Side& other, Tally& tally) {
      tally.ties += Below(other, hand, same);
      tally.cases += other.all - other.holds[static_cast<std::size_t>(hand.card1)] -
                     other.holds[static_cast<std::size_t>(hand.card2)] + same;
    });
    first = last;
  }
}

}  // namespace pokermath
