// Every hand is counted against all holdings of the range at once, those that share a card with it
// among them; then these are taken off. What ranks and suits have in common is counted once, rank
// class by rank class.

#include "kernels/every_hand.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "kernels/matchup.h"
#include "kernels/range_count.h"
#include "kernels/runouts.h"
#include "platform/isa.h"

namespace pokermath {
namespace {

// The holdings of a range that a board leaves, for any hand to be counted against.
class EveryHand {
 public:
  EveryHand(const ShowdownCounts& counts, std::span<const Combination> opponents,
            std::uint64_t taken)
      : counts_(counts), taken_(taken) {
    for (int suit = 0; suit < 4; ++suit) {
      if (counts.CardsToFlush(suit) <= 2) suits_.push_back(static_cast<std::size_t>(suit));
    }
    for (const Combination& opponent : opponents) {
      if ((Bits(opponent) & taken) == 0) AddOpponent(opponent);
    }
  }

  // Counts all hands of a rank class.
  void CountClass(int rank_class, std::vector<HandTally>& hands) {
    const std::vector<Combination> holdings = HoldingsOf(rank_class);
    MarkViews(holdings);
    Compare(rank_class);
    for (const Combination& hand : holdings) hands.push_back({hand, CountHand(hand)});
  }

 private:
  // An opponent as those who hold one of its cards meet it.
  struct Holder {
    int other_card;
    std::size_t rank_class;
    std::array<std::uint8_t, 4> views;  // by suit, without the class
  };
  // By suit, by the hand's view and by the opponent's.
  using Corrections = std::array<std::array<std::array<Counts, 4>, 4>, 4>;

  static std::array<std::uint8_t, 4> ViewsOf(const Combination& holding) {
    std::array<std::uint8_t, 4> views;
    for (std::size_t suit = 0; suit < 4; ++suit) {
      views[suit] = static_cast<std::uint8_t>(
          ViewNumber(holding.first, holding.second, static_cast<int>(suit)) % 4);
    }
    return views;
  }

  void AddOpponent(const Combination& opponent) {
    const auto& [card1, card2] = opponent;
    const auto rank_class = static_cast<std::size_t>(RankClassOf(card1 % 13, card2 % 13));
    const std::array<std::uint8_t, 4> views = ViewsOf(opponent);
    ++all_;
    ++holdings_[rank_class];
    for (const std::size_t suit : suits_) ++opponents_[suit][rank_class * 4 + views[suit]];
    holders_[static_cast<std::size_t>(card1)].push_back({card2, rank_class, views});
    holders_[static_cast<std::size_t>(card2)].push_back({card1, rank_class, views});
  }

  std::vector<Combination> HoldingsOf(int rank_class) const {
    const auto& [low, high] = RanksOf(rank_class);
    std::vector<Combination> holdings;
    for (int card1 = low; card1 < 52; card1 += 13) {
      for (int card2 = low == high ? card1 + 13 : high; card2 < 52; card2 += 13) {
        if (((Bit(card1) | Bit(card2)) & taken_) == 0)
          holdings.emplace_back(std::minmax({card1, card2}));
      }
    }
    return holdings;
  }

  void MarkViews(const std::vector<Combination>& holdings) {
    seen_ = {};
    for (const Combination& holding : holdings) {
      const std::array<std::uint8_t, 4> views = ViewsOf(holding);
      for (std::size_t suit = 0; suit < 4; ++suit) seen_[suit][views[suit]] = true;
    }
  }

  // Counts a rank class against the classes of all opponents.
  void Compare(int rank_class) {
    ranks_ = {};
    flushes_ = {};
    for (std::size_t other = 0; other < kRankClasses; ++other) {
      if (holdings_[other] == 0) continue;
      by_ranks_[other] = counts_.CountRanks(rank_class, static_cast<int>(other));
      AddTimes(by_ranks_[other], holdings_[other], ranks_);
      for (const std::size_t suit : suits_) CompareSuit(rank_class, other, suit);
    }
  }
  void CompareSuit(int rank_class, std::size_t other, std::size_t suit) {
    const int needed = counts_.CardsToFlush(static_cast<int>(suit));
    for (std::size_t view1 = 0; view1 < 4; ++view1) {
      if (!seen_[suit][view1]) continue;
      for (std::size_t view2 = 0; view2 < 4; ++view2) {
        const std::size_t number = other * 4 + view2;
        const int opponents = opponents_[suit][number];
        if (opponents == 0) continue;
        const SuitView& hand = kViews[static_cast<std::size_t>(rank_class) * 4 + view1];
        Counts& correction = corrections_[other][suit][view1][view2];
        correction = {};
        if (std::max(hand.held_count, kViews[number].held_count) < needed) continue;
        correction = counts_.CorrectSuit(static_cast<int>(suit), hand, kViews[number]);
        AddTimes(correction, opponents, flushes_[suit][view1]);
      }
    }
  }

  // All opponents, less those that share a card with the hand.
  Tally CountHand(const Combination& hand) const {
    const std::array<std::uint8_t, 4> views = ViewsOf(hand);
    Tally tally = ranks_;
    for (const std::size_t suit : suits_) tally += flushes_[suit][views[suit]];
    int blocked = 0;
    const auto take_off = [&](const Holder& opponent) {
      ++blocked;
      AddTimes(by_ranks_[opponent.rank_class], -1, tally);
      for (const std::size_t suit : suits_) {
        AddTimes(corrections_[opponent.rank_class][suit][views[suit]][opponent.views[suit]], -1,
                 tally);
      }
    };
    for (const Holder& opponent : holders_[static_cast<std::size_t>(hand.first)])
      take_off(opponent);
    for (const Holder& opponent : holders_[static_cast<std::size_t>(hand.second)]) {
      if (opponent.other_card != hand.first) take_off(opponent);
    }
    tally.cases = std::int64_t{all_ - blocked} * counts_.Boards();
    return tally;
  }

  const ShowdownCounts& counts_;
  std::uint64_t taken_;
  std::vector<std::size_t> suits_;  // in which anybody can make a flush
  // The opponents.
  int all_ = 0;
  std::array<int, kRankClasses> holdings_{};
  std::array<std::array<int, kSuitViews>, 4> opponents_{};
  std::array<std::vector<Holder>, 52> holders_;  // by card
  // The rank class that was compared last: with every class, and with all opponents.
  std::array<std::array<bool, 4>, 4> seen_{};  // by suit and view
  std::array<Counts, kRankClasses> by_ranks_{};
  std::array<Corrections, kRankClasses> corrections_{};
  Tally ranks_;
  std::array<std::array<Tally, 4>, 4> flushes_{};
};

}  // namespace

std::vector<HandTally> CountEveryHand(std::span<const Combination> opponents,
                                      std::span<const int> board, Street street) {
  const std::uint64_t taken = Bits(board);
  std::vector<HandTally> hands;
  hands.reserve(1326);
  const auto count_classes = [&](const ShowdownCounts& counts) {
    EveryHand every(counts, opponents, taken);
    for (int rank_class = 0; rank_class < kRankClasses; ++rank_class) {
      every.CountClass(rank_class, hands);
    }
    std::ranges::sort(hands, {}, &HandTally::hand);
  };
  if (board.empty()) {
    count_classes(EmptyBoardCounts(BestIsa(), Deck::kFull, street));
  } else if (board.size() >= 3 && board.size() < static_cast<std::size_t>(street)) {
    count_classes(Runouts(BestIsa(), Deck::kFull, board, static_cast<int>(street)));
  } else {
    for (int card1 = 0; card1 < 51; ++card1) {
      for (int card2 = card1 + 1; card2 < 52; ++card2) {
        if (((Bit(card1) | Bit(card2)) & taken) != 0) continue;
        const int hand[2] = {card1, card2};
        hands.push_back(
            {{card1, card2}, CountAgainst(Deck::kFull, hand, opponents, board, street)});
      }
    }
  }
  return hands;
}

}  // namespace pokermath
