#include "kernels/three_ranges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>
#include <set>
#include <vector>

#include "eval/worth.h"
#include "kernels/omaha_three.h"
#include "platform/isa.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

using Tallies = std::array<std::vector<ThreeTally>, 3>;
using Hands = std::array<std::vector<WeightedHand>, 3>;

// Every hand of each against every two of the others.
Tallies CountPlainly(const GameRules& rules, CardSet board, const Hands& hands) {
  const std::vector<int> board_cards(board.begin(), board.end());
  const auto value = [&](const WeightedHand& hand) {
    const std::vector<int> cards(hand.cards.begin(), hand.cards.end());
    return hand.cards.Meets(board) ? -1 : WorthOf(rules, cards, board_cards).high;
  };
  std::array<std::vector<int>, 3> values;
  Tallies tallies;
  for (std::size_t i = 0; i < 3; ++i) {
    for (const WeightedHand& hand : hands[i]) values[i].push_back(value(hand));
    tallies[i].resize(hands[i].size());
  }
  for (std::size_t hero = 0; hero < 3; ++hero) {
    const std::size_t other1 = (hero + 1) % 3, other2 = (hero + 2) % 3;
    for (std::size_t a = 0; a < hands[hero].size(); ++a) {
      for (std::size_t b = 0; b < hands[other1].size(); ++b) {
        for (std::size_t c = 0; c < hands[other2].size(); ++c) {
          const CardSet cards = hands[hero][a].cards, cards1 = hands[other1][b].cards;
          if (cards.Meets(cards1) || (cards | cards1).Meets(hands[other2][c].cards)) continue;
          const std::int64_t weight =
              std::int64_t{hands[other1][b].weight} * hands[other2][c].weight;
          ThreeTally& tally = tallies[hero][a];
          tally.cases += weight;
          const int best = std::max(values[other1][b], values[other2][c]);
          if (std::min({values[hero][a], values[other1][b], values[other2][c]}) < 0 ||
              values[hero][a] < best) {
            continue;
          }
          const int sharers =
              1 + (values[other1][b] == values[hero][a]) + (values[other2][c] == values[hero][a]);
          (sharers == 1 ? tally.wins : sharers == 2 ? tally.shares2 : tally.shares3) += weight;
        }
      }
    }
  }
  return tallies;
}

// Boards and ranges of few cards, so that hands clash and are as good as each other everywhere:
// some hands are in one range, some in all, some ranges alike, with weights that need few bits or
// many.
TEST(ThreeRangesSweep, EqualsEveryTripleOfHands) {
  std::mt19937 random(5);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  std::int64_t shared = 0;
  for (int i = 0; i < 120; ++i) {
    SCOPED_TRACE(i);
    const GameRules& rules = kGames[below(3)];
    const CardSet all = rules.Deck();
    std::vector<int> deck(all.begin(), all.end());
    std::shuffle(deck.begin(), deck.end(), random);
    // Sometimes flushes, of the board or of some hands.
    if (below(3) == 0) {
      std::stable_partition(deck.begin(), deck.end(), [](int card) { return card < 13; });
    }
    const std::size_t board_size = 3 + below(3), cards = 6 + below(3) * 9;
    const CardSet board{std::span<const int>(deck).first(board_size)};
    const std::size_t most = below(2) == 0 ? 3 : 10000;
    std::array<std::vector<WeightedPair>, 3> hands;
    for (std::vector<WeightedPair>& of : hands) {
      // One card of them is on the board.
      for (std::size_t a = board_size - 1; a < board_size + cards; ++a) {
        for (std::size_t b = board_size - 1; b < a; ++b) {
          if (below(cards) > 4) continue;
          const auto [low, high] = std::minmax(deck[a], deck[b]);
          of.push_back({low, high, static_cast<std::int32_t>(1 + below(most))});
        }
      }
    }
    for (std::size_t alike = below(4); alike < 2; ++alike) hands[below(3)] = hands[below(3)];
    const int times = 1 + static_cast<int>(below(ThreeRangesSweep::kMostTimes));
    Hands of_cards;
    for (std::size_t player = 0; player < 3; ++player) {
      for (const WeightedPair& of : hands[player]) {
        of_cards[player].push_back({of.cards(), of.weight});
      }
    }
    const Tallies plain = CountPlainly(rules, board, of_cards);
    for (const Isa isa : IsasOfMachine()) {
      ThreeRangesSweep sweep(isa, rules, {hands[0], hands[1], hands[2]});
      sweep.Count(board, times);
      sweep.CountCases();
      for (std::size_t player = 0; player < 3; ++player) {
        for (std::size_t hand = 0; hand < hands[player].size(); ++hand) {
          const ThreeTally& once = plain[player][hand];
          const ThreeTally expected = {times * once.wins, times * once.shares2,
                                       times * once.shares3, once.cases};
          ASSERT_EQ(sweep.Of(player, hand), expected) << IsaName(isa) << " " << player;
          shared += once.shares3;
        }
      }
    }
  }
  EXPECT_GT(shared, 0);
}

// The same of four cards, in pieces, with hands that the board blocks.
TEST(OmahaThreeSweep, EqualsEveryTripleOfHands) {
  std::mt19937 random(6);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  const GameRules& rules = RulesOf(Game::kOmaha);
  std::int64_t wins = 0, shared = 0;
  for (int i = 0; i < 6; ++i) {
    SCOPED_TRACE(i);
    std::vector<int> deck(52);
    std::iota(deck.begin(), deck.end(), 0);
    std::shuffle(deck.begin(), deck.end(), random);
    if (i % 3 == 0)
      std::stable_partition(deck.begin(), deck.end(), [](int card) { return card < 13; });
    if (i % 3 == 1) std::ranges::stable_sort(deck, {}, [](int card) { return card % 13 / 6; });
    const std::size_t board_size = i % 4 < 2 ? 5 : 4;
    const CardSet board{std::span<const int>(deck).first(board_size)};
    // Of 14 cards nearly all hands clash, and equal ones are in several ranges.
    deck.resize(board_size + (i % 2 == 0 ? 14 : 40));
    const std::size_t most = below(2) == 0 ? 1 : 10000;
    Hands hands, unblocked;
    for (std::size_t player = 0; player < 3; ++player) {
      std::set<CardSet> all;
      while (all.size() < 60 + 20 * player) {
        std::shuffle(deck.begin() + static_cast<std::ptrdiff_t>(board_size) - 1, deck.end(),
                     random);
        all.insert(CardSet(std::span(deck).subspan(board_size - 1, 4)));
      }
      for (const CardSet cards : all) {
        hands[player].push_back({cards, static_cast<std::int32_t>(1 + below(most))});
        if (!cards.Meets(board)) unblocked[player].push_back(hands[player].back());
      }
    }
    const Tallies plain = CountPlainly(rules, board, unblocked);
    for (const Isa isa : {Isa::kBaseline, Isa::kAvx2, Isa::kAvx512}) {
      if (isa > BestIsa()) continue;
      const OmahaThreeSweep sweep(isa, {unblocked[0], unblocked[1], unblocked[2]}, board);
      const OmahaThreeSweep blocked(isa, {hands[0], hands[1], hands[2]}, board);
      ASSERT_EQ(blocked.size(), sweep.size());
      Tallies counted = {std::vector<ThreeTally>(unblocked[0].size()),
                         std::vector<ThreeTally>(unblocked[1].size()),
                         std::vector<ThreeTally>(unblocked[2].size())};
      for (const std::size_t first : {std::size_t{0}, sweep.size() / 3}) {
        const std::size_t last = first == 0 ? sweep.size() / 3 : sweep.size();
        sweep.Count(first, last, {}, [&](std::size_t player, std::size_t hand, const auto& tally) {
          counted[player][hand] = tally;
        });
      }
      ASSERT_EQ(counted, plain) << IsaName(isa);
    }
    for (const ThreeTally& tally : plain[0]) {
      wins += tally.wins;
      shared += tally.shares3;
    }
  }
  EXPECT_GT(std::min(wins, shared), 0);
}

}  // namespace
}  // namespace pokermath
