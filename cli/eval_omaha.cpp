#include "cli/eval_omaha.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <vector>

#include "cli/command.h"
#include "cli/errors.h"
#include "cli/output.h"
#include "cli/words.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/omaha.h"

namespace pokermath::cli {
namespace {

struct OmahaAnswer {
  std::vector<int> hand;
  std::vector<int> board;
  std::vector<int> hole;        // the two that play
  std::vector<int> from_board;  // the three that play
  int value;                    // ascending
};

std::vector<int> ReadCards(const std::string& text, std::size_t least, std::size_t most,
                           const std::string& what) {
  CardsResult read = ParseCards(text);
  if (!read.error.empty()) throw UsageError(read.error);
  if (read.cards.size() < least || read.cards.size() > most) {
    throw UsageError(fmt::format("{} has {} {}: {}", Quoted(text), read.cards.size(),
                                 read.cards.size() == 1 ? "card" : "cards", what));
  }
  return std::move(read.cards);
}

OmahaAnswer Evaluate(const std::string& hand, const std::string& board, std::size_t hole_cards) {
  OmahaAnswer answer;
  answer.hand = ReadCards(hand, hole_cards, hole_cards,
                          fmt::format("a hand of this game has {}", hole_cards));
  answer.board = ReadCards(board, 3, 5, "a board has 3 to 5");
  // Reads all of them as one list, which refuses a card that is there twice.
  ReadCards(hand + " " + board, 0, 52, "");
  int record[5];
  answer.value = getCombinationOmahaFsm5Common(
      answer.hand.data(), static_cast<int>(answer.hand.size()), answer.board.data(),
      static_cast<int>(answer.board.size()), record);
  for (int i = 0; i < 2; ++i) {
    answer.hole.push_back(answer.hand[static_cast<std::size_t>(record[i])]);
  }
  for (int i = 2; i < 5; ++i) {
    answer.from_board.push_back(answer.board[static_cast<std::size_t>(record[i])]);
  }
  return answer;
}

std::vector<int> Playing(const OmahaAnswer& answer) {
  std::vector<int> five = answer.hole;
  five.insert(five.end(), answer.from_board.begin(), answer.from_board.end());
  return five;
}

std::string ToText(const OmahaAnswer& answer, const Colours& colours) {
  return fmt::format(
      "{} on {}: {}, {} from the hand and {} from the board\n\n"
      "  {:<10}  {}\n  {:<10}  {:>5}   {}\n  {:<10}  {:>5}   {}\n",
      colours.Cards(answer.hand), colours.Cards(answer.board),
      colours.Strong(CategoryName(answer.value)), colours.Cards(answer.hole),
      colours.Cards(answer.from_board), "in words", InWords(Playing(answer)), "descending",
      7463 - answer.value, colours.Faint("of 7462, smaller is better"), "ascending", answer.value,
      colours.Faint("of 7462, larger is better"));
}

Json ToJson(const OmahaAnswer& answer) {
  return {{"schema", kJsonSchema},
          {"game", answer.hand.size() == 5 ? "omaha5" : "omaha"},
          {"hand", CardsJson(answer.hand)},
          {"board", CardsJson(answer.board)},
          {"category", CategoryName(answer.value)},
          {"words", InWords(Playing(answer))},
          {"hole_cards", CardsJson(answer.hole)},
          {"board_cards", CardsJson(answer.from_board)},
          {"descending", 7463 - answer.value},
          {"ascending", answer.value}};
}

}  // namespace

int RunEvalOmaha(const std::string& hand, const std::string& board, std::size_t hole_cards,
                 bool json) {
  const OmahaAnswer answer = Evaluate(hand, board, hole_cards);
  Print(json ? JsonLine(ToJson(answer)) : ToText(answer, Colours::ForStandardOutput()));
  return kExitDone;
}

}  // namespace pokermath::cli
