#include "kernels/several_hands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "eval/worth.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

struct Deal {
  Deck deck;
  Street street;
  std::vector<CardSet> hands;
  CardSet dead;
};

std::string Trace(const Deal& deal) {
  std::string text = deal.deck == Deck::kShort ? "short deck" : "full deck";
  text += " street " + std::to_string(static_cast<int>(deal.street));
  for (const CardSet hand : deal.hands) {
    text += " ";
    for (const int card : hand) text += CardName(card);
  }
  text += " dead";
  for (const int card : deal.dead) text += " " + CardName(card);
  return text;
}

// Every board by itself.
std::vector<std::int64_t> CountPlainly(const Deal& deal) {
  const GameRules& rules = RulesOf(deal.deck == Deck::kShort ? Game::kShortDeck : Game::kHoldem);
  CardSet left = rules.Deck() - deal.dead;
  std::vector<std::vector<int>> hands;
  for (const CardSet hand : deal.hands) {
    left -= hand;
    hands.emplace_back(hand.begin(), hand.end());
  }
  const std::vector<int> cards(left.begin(), left.end());
  std::vector<std::int64_t> times(std::size_t{1} << hands.size());
  std::vector<int> board;
  const auto deal_on = [&](const auto& self, std::size_t first) -> void {
    if (board.size() == static_cast<std::size_t>(deal.street)) {
      int best = 0;
      std::size_t sharers = 0;
      for (std::size_t i = 0; i < hands.size(); ++i) {
        const int value = WorthOf(rules, hands[i], board).high;
        if (value > best) sharers = 0;
        best = std::max(best, value);
        if (value == best) sharers |= std::size_t{1} << i;
      }
      ++times[sharers];
      return;
    }
    for (std::size_t i = first; i < cards.size(); ++i) {
      board.push_back(cards[i]);
      self(self, i + 1);
      board.pop_back();
    }
  };
  deal_on(deal_on, 0);
  return times;
}

void ExpectPlainCount(const Deal& deal) {
  SCOPED_TRACE(Trace(deal));
  const std::vector<std::int64_t> plain = CountPlainly(deal);
  for (const Isa isa : IsasOfMachine()) {
    std::vector<std::int64_t> times(plain.size());
    CountSeveralHands(isa, deal.deck, deal.hands, deal.dead, deal.street, times);
    EXPECT_EQ(times, plain) << IsaName(isa);
  }
}

// Hands of all cards, of two suits, or of few ranks, and up to as many dead cards as leave some.
Deal RandomDeal(std::mt19937& random) {
  const auto below = [&](std::size_t limit) { return random() % limit; };
  Deal deal{.deck = below(3) == 0 ? Deck::kShort : Deck::kFull,
            .street = static_cast<Street>(3 + below(3)),
            .hands = {},
            .dead = {}};
  std::vector<int> cards;
  for (int card = 0; card < 52; ++card) {
    if ((AbsentCards(deal.deck) >> card & 1) == 0) cards.push_back(card);
  }
  std::shuffle(cards.begin(), cards.end(), random);
  const std::size_t kind = below(3);
  std::stable_partition(cards.begin(), cards.end(), [&](int card) {
    return kind == 0 || (kind == 1 ? card < 26 : card % 13 >= 9 || card % 13 == 5);
  });
  const std::size_t hands = 2 + below(kMostHands - 1);
  const std::size_t left = 9 + below(cards.size() - 2 * hands - 8);
  for (std::size_t i = 0; i < 2 * hands; i += 2) deal.hands.push_back({cards[i], cards[i + 1]});
  std::shuffle(cards.begin() + static_cast<std::ptrdiff_t>(2 * hands), cards.end(), random);
  deal.dead = CardSet(std::span(cards).subspan(2 * hands, cards.size() - 2 * hands - left));
  return deal;
}

TEST(SeveralHands, EqualEveryBoardByItself) {
  std::mt19937 random(5);
  for (int i = 0; i < 60; ++i) ExpectPlainCount(RandomDeal(random));
}

TEST(SeveralHandsSlow, EqualEveryBoardByItself) {
  std::mt19937 random(6);
  for (int i = 0; i < 500; ++i) ExpectPlainCount(RandomDeal(random));
}

}  // namespace
}  // namespace pokermath
