#include "tests/calculator/signature.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <map>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "pokermath/calculator.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

// What players hold, by the number of hole cards.
struct Words {
  const char* hands[2];
  const char* range;     // many hands
  const char* lists[3];  // a few, some of which clash
};

const Words& WordsOf(int hand_size) {
  static const Words two{{"AhKd", "8s8c"},
                         "QQ+,AKs,AQo:0.6,87s:0.25",
                         {"QQ+,AKs,AQo:0.6", "JJ-88,KQs:0.3", "A9s+,KTo:0.5,76s"}};
  static const Words four{
      {"AhKdQsJs", "8s8c7d7h"},
      "AAKK,QQJJ@40",
      {"AsAd8h7h,KsQsJd9d@50", "AcKdQcJc@30,8s8c7d7c,AsQhJs9s", "QhJs8d6d,AhKh7s6s@70"}};
  static const Words five{
      {"AhKdQsJsAc", "8s8c7d7h6s"},
      "AAKKQ,JJTT8@40",
      {"AsAd8h7hKs,KhQsJd9d7s@50", "AcKdQcJc6s@30,8s8c7d7cAh", "QhJs8d6d6h,AhKh7s6sJc@70"}};
  static const Words six{{"AhKdQsJsAcKh", "8s8c7d7h6s8d"},
                         "AsAdKsKc5h5d,JdJc8h8d7c7h@40",
                         {"AsAd8h7hKsQs,KhQsJd9d7sAs@50", "AcKdQcJc6s9s@30,8s8c7d7cAh6h",
                          "QhJs8d6dKhJd,AhKh7s6sJcQc@70"}};
  return hand_size == 2 ? two : hand_size == 4 ? four : hand_size == 5 ? five : six;
}

// Read once by a thread: text of six cards takes some time.
HandRange RangeOf(Game game, std::string_view text) {
  thread_local std::map<std::pair<Game, std::string_view>, HandRange> ranges;
  const auto known = ranges.find({game, text});
  if (known != ranges.end()) return known->second;
  const auto read = ReadRange(game, text);
  if (!read) throw std::logic_error(read.error().text);
  return ranges.emplace(std::pair(game, text), read->range).first->second;
}

EquityQuestion QuestionOf(Game game, std::initializer_list<const char*> players) {
  EquityQuestion question{.game = game, .method = Method::kExact};
  for (const char* player : players) question.players.push_back(RangeOf(game, player));
  question.sampling = {.standard_error = 0, .trials = 1000};
  return question;
}

// The kinds of question to a board of a game, most of them counted where that is not too much.
std::vector<EquityQuestion> Kinds(Game game, int board_cards, int to_come) {
  const Words& words = WordsOf(RulesOf(game).hand_size);
  const bool omaha = RulesOf(game).IsOmaha();
  std::vector<EquityQuestion> kinds;
  kinds.push_back(QuestionOf(game, {words.hands[0], words.hands[1]}));
  if (omaha && board_cards == 0 && to_come < 5) kinds.back().method = Method::kSampled;
  kinds.push_back(QuestionOf(game, {words.hands[0], words.range}));
  if (omaha && to_come > 1) kinds.back().method = Method::kSampled;
  kinds.push_back(QuestionOf(game, {words.lists[0], words.lists[1]}));
  kinds.back().dead = CardSet(ParseCards("KcJh").cards);
  kinds.back().detail.hands = true;
  if (omaha && board_cards == 0) kinds.back().method = Method::kSampled;
  kinds.push_back(QuestionOf(game, {words.lists[0], words.lists[1], words.lists[2]}));
  if (omaha || to_come > 1) {
    kinds.back().method = Method::kSampled;
    kinds.back().folded = {RangeOf(game, words.lists[1])};
  }
  kinds.push_back(QuestionOf(game, {words.range, "random", words.lists[2], "random"}));
  kinds.back().method = Method::kSampled;
  kinds.back().detail.made = true;
  return kinds;
}

// What comes next for ranges, counted and sampled.
std::vector<EquityQuestion> NextKinds(Game game) {
  const Words& words = WordsOf(RulesOf(game).hand_size);
  EquityQuestion question = QuestionOf(game, {words.lists[0], words.lists[1]});
  question.board = CardSet(ParseCards("Th9h6cTc").cards);
  question.detail = {.hands = true, .next = true};
  std::vector<EquityQuestion> kinds = {question};
  question.board = CardSet(ParseCards("Th9h6c").cards);
  question.street = Street::kTurn;
  kinds.push_back(question);
  question.board = {};
  question.street = Street::kRiver;
  question.method = Method::kSampled;
  kinds.push_back(question);
  return kinds;
}

// Ranges that hardly ever fit together, and nothing that is certain: dealt in pools.
std::vector<EquityQuestion> PooledKinds() {
  std::vector<EquityQuestion> kinds;
  for (const Game game : {Game::kHoldem, Game::kShortDeck, Game::kShortDeckStraights}) {
    for (const Street street : {Street::kFlop, Street::kTurn, Street::kRiver}) {
      EquityQuestion question = QuestionOf(game, {});
      question.players.assign(5, RangeOf(game, "QQ+:0.5,AKs"));
      question.street = street;
      question.board = CardSet(ParseCards("8c7dTh").cards);
      question.method = Method::kSampled;
      question.detail.hands = true;
      kinds.push_back(question);
    }
  }
  return kinds;
}

// A hash of whole numbers in their order.
class Hash {
 public:
  void Add(Int128 number) {
    Mix(static_cast<std::uint64_t>(number));
    Mix(static_cast<std::uint64_t>(number >> 64));
  }
  void Add(const Outcome& outcome) {
    for (const CaseCount* count : {&outcome.cases, &outcome.wins, &outcome.ties}) {
      Add(count->units);
    }
  }
  void Add(const EquityAnswer& answer) {
    Add(answer.cases.units);
    for (const PlayerAnswer& player : answer.players) {
      Add(player.total);
      for (const CaseCount& shared : player.shared) Add(shared.units);
      for (const CaseCount& shared : player.low_shared) Add(shared.units);
      for (const HandOutcome& hand : player.hands) Add(hand.outcome);
      for (const MadeOutcome& made : player.made) {
        Add(made.category);
        Add(made.outcome);
      }
    }
    for (const NextOutcome& next : answer.next) {
      Add(static_cast<Int128>(next.cards.bits()));
      for (const Outcome& outcome : next.players) Add(outcome);
    }
  }
  std::uint64_t value() const { return value_; }

 private:
  void Mix(std::uint64_t word) {
    value_ = (value_ ^ word) * 0x9E3779B97F4A7C15;
    value_ ^= value_ >> 32;
  }

  std::uint64_t value_ = 0xCBF29CE484222325;
};

}  // namespace

std::string SignatureOfAnswers() {
  Hash hash;
  int answers = 0;
  const auto ask = [&](const EquityQuestion& question) {
    const auto answer = Calculate(question);
    if (!answer) throw std::logic_error(answer.error().text);
    hash.Add(*answer);
    ++answers;
    return answer->solver;
  };
  for (const GameRules& rules : kGames) {
    for (const int board_cards : {0, 3, 4, 5}) {
      for (int street = std::max(board_cards, 3); street <= 5; ++street) {
        std::size_t number = 0;
        for (EquityQuestion& question : Kinds(rules.game, board_cards, street - board_cards)) {
          // Two suits and a pair to come, or one suit.
          const std::vector<int> cards =
              ParseCards(number++ % 2 == 0 ? "Th9h6c9cTs" : "Tc9c6cQdTd").cards;
          question.board = CardSet(std::span(cards).first(static_cast<std::size_t>(board_cards)));
          question.street = static_cast<Street>(street);
          question.seed = number;
          ask(question);
        }
      }
    }
  }
  for (const GameRules& rules : kGames) {
    for (const EquityQuestion& question : NextKinds(rules.game)) ask(question);
  }
  for (const EquityQuestion& question : PooledKinds()) {
    if (ask(question) != "random deals in pools") throw std::logic_error("not in pools");
  }
  char text[64];
  std::snprintf(text, sizeof text, "0x%016llx of %d answers",
                static_cast<unsigned long long>(hash.value()), answers);
  return text;
}

}  // namespace pokermath
