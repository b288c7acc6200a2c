// Random questions of every kind, small enough to be counted plainly.

#ifndef POKERMATH_TESTS_CALCULATOR_RANDOM_QUESTION_H_
#define POKERMATH_TESTS_CALCULATOR_RANDOM_QUESTION_H_

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "pokermath/calculator.h"
#include "pokermath/cards.h"

namespace pokermath {

class RandomQuestions {
 public:
  explicit RandomQuestions(std::uint32_t seed) : random_(seed) {}

  // 2 to 5 players with ranges of a few hands, which clash often; sometimes one may hold anything.
  EquityQuestion Next() {
    EquityQuestion question;
    question.game = kGames[Below(kGames.size())].game;
    const GameRules& rules = RulesOf(question.game);
    const CardSet deck = rules.Deck();
    deck_.assign(deck.begin(), deck.end());
    std::shuffle(deck_.begin(), deck_.end(), random_);
    // Boards of mostly one suit, of few ranks and of one run of a suit are rare otherwise.
    const std::size_t kind = Below(6);
    if (kind < 2) {
      std::stable_partition(deck_.begin(), deck_.begin() + 18,
                            [&](int card) { return card / 13 == deck_[0] / 13; });
    } else if (kind < 4) {
      std::ranges::stable_sort(deck_, {},
                               [kind](int card) { return kind == 2 ? card % 13 / 2 : card / 7; });
    }
    question.street = static_cast<Street>(3 + Below(3));
    const auto street = static_cast<std::size_t>(question.street);
    // A board to which two cards come, or the flop itself.
    std::size_t known = std::max<std::size_t>(street - Below(3), 3);
    if (question.street == Street::kFlop && Below(4) == 0) known = Below(3);
    question.board = CardSet(std::span(deck_).first(known));
    if (Below(2) == 0) question.dead = CardSet(std::span(deck_).subspan(known, Below(4)));
    const std::size_t players = Below(2) == 0 ? 2 : 2 + Below(4);
    for (std::size_t i = 0; i < players; ++i) question.players.push_back(Range(question.game));
    for (std::size_t i = Below(3); i > 1; --i) question.folded.push_back(Range(question.game));
    if (players <= 3 && rules.hand_size == 2 && street - known < 2 && Below(2) == 0) {
      question.players[Below(players)] = HandRange::Every(question.game);
    }
    if (Below(4) == 0) {
      for (HandRange& range : question.players) {
        range = HandRange::Of(question.game, HandOf(rules));
      }
      if (rules.hand_size == 2 && question.street != Street::kRiver) question.board = {};
    }
    if (players == 2 && rules.IsOmaha() && rules.hand_size == 4 && street == known &&
        Below(3) == 0) {
      question.players = {HandRange::Of(question.game, HandOf(rules)),
                          HandRange::Every(question.game)};
      std::rotate(question.players.begin(),
                  question.players.begin() + static_cast<std::ptrdiff_t>(Below(2)),
                  question.players.end());
    }
    // Three of them are counted on a complete board.
    if (players == 3 && question.game == Game::kOmaha && known >= 3) {
      question.street = static_cast<Street>(known);
      question.folded.clear();
    }
    question.seed = random_();
    return question;
  }

  // Two players with a few hands on an empty board, or several with one each: much to count. Mostly
  // of Hold'em.
  EquityQuestion NextBeforeTheFlop() {
    EquityQuestion question = Next();
    question.board = {};
    if (Below(3) > 0) {
      question.game = Game::kHoldem;
      question.street = Street::kRiver;
      if (Below(3) > 0) question.dead = {};
    }
    const bool one_each = Below(2) == 0;
    if (!one_each) question.players.resize(2, question.players[0]);
    for (HandRange& range : question.players) {
      range = one_each ? HandRange::Of(question.game, HandOf(RulesOf(question.game)))
                       : Range(question.game, 2);
    }
    question.folded.clear();
    return question;
  }

  // A hand of Omaha against a few before the flop, with so many dead cards that there is little to
  // count.
  EquityQuestion NextOmahaBeforeTheFlop() {
    EquityQuestion question = Next();
    while (!RulesOf(question.game).IsOmaha()) question.game = kGames[Below(kGames.size())].game;
    question = {.game = question.game};
    constexpr std::size_t kLive = 26;
    question.dead = CardSet(std::span(deck_).subspan(kLive));
    deck_.resize(kLive);
    question.players = {HandRange::Of(question.game, HandOf(RulesOf(question.game))),
                        Range(question.game, 6)};
    if (Below(2) == 0) std::swap(question.players[0], question.players[1]);
    return question;
  }

  std::size_t Below(std::size_t limit) { return random_() % limit; }

 private:
  CardSet HandOf(const GameRules& rules) {
    const std::size_t near = std::min<std::size_t>(Below(2) == 0 ? 30 : 52, deck_.size());
    std::vector<int> cards(deck_.begin() + 3, deck_.begin() + static_cast<std::ptrdiff_t>(near));
    std::shuffle(cards.begin(), cards.end(), random_);
    return CardSet(std::span(cards).first(static_cast<std::size_t>(rules.hand_size)));
  }

  // Of cards that the last ranges are of, too, but seldom of the board.
  HandRange Range(Game game, std::size_t most = 4) {
    std::vector<WeightedHand> hands;
    std::size_t count = Below(3) == 0 ? 1 : 1 + Below(most);
    if (RulesOf(game).IsOmaha() && Below(6) == 0) count = 5 * most;
    const bool weighted = Below(2) == 0;
    for (std::size_t i = 0; i < count; ++i) {
      const int weight = weighted ? 1 + static_cast<int>(Below(kWholeWeight)) : kWholeWeight;
      hands.push_back({HandOf(RulesOf(game)), weight});
    }
    return HandRange(game, std::move(hands));
  }

  std::mt19937 random_;
  std::vector<int> deck_;
};

// As a failed test shows it.
inline std::string Trace(const EquityQuestion& question) {
  const auto names = [](CardSet cards) {
    std::string text;
    for (const int card : cards) text += CardName(card);
    return text;
  };
  std::string text = RulesOf(question.game).name;
  text += " board " + names(question.board) + " dead " + names(question.dead) + " street " +
          std::to_string(static_cast<int>(question.street));
  for (const auto* ranges : {&question.players, &question.folded}) {
    text += ranges == &question.players ? " players" : " folded";
    for (const HandRange& range : *ranges) {
      text += " {";
      if (range.IsEvery()) text += "every";
      for (std::size_t i = 0; !range.IsEvery() && i < range.size(); ++i) {
        const WeightedHand& hand = range.hands()[i];
        text += names(hand.cards) + ":" + std::to_string(hand.weight) + " ";
      }
      text += "}";
    }
  }
  return text;
}

}  // namespace pokermath

#endif  // POKERMATH_TESTS_CALCULATOR_RANDOM_QUESTION_H_
