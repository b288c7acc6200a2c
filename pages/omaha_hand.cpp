#include "pages/omaha_hand.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <span>

#include "eval/omaha_best.h"
#include "pages/card_words.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pokermath/cards.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

constexpr auto kFewestAndMost = std::ranges::minmax(kOmahaHandSizes);

std::vector<int> ReadHoleCards(const OmahaQuestion& question) {
  if (!question.game) {
    const auto [fewest, most] = kFewestAndMost;
    return ReadCards(question.hand, fewest, most,
                     fmt::format("an Omaha hand has {} to {}", fewest, most));
  }
  const auto high = OmahaGames(false), high_low = OmahaGames(true);
  std::vector<Game> games(high.begin(), high.end());
  if (question.low) games.insert(games.end(), high_low.begin(), high_low.end());
  const std::size_t size = HandSize(ReadGame(*question.game, games, question.game_option));
  return ReadCards(question.hand, size, size, fmt::format("a hand of this game has {}", size));
}

}  // namespace

OmahaHand BestOfOmaha(std::vector<int> hand, std::vector<int> board) {
  const OmahaChoice choice = FindBestOmaha(hand, board);
  OmahaHand best = {std::move(hand), std::move(board), {}, {}, choice.value};
  for (const int i : choice.hole) best.hole.push_back(best.hand[static_cast<std::size_t>(i)]);
  for (const int i : choice.board) {
    best.from_board.push_back(best.board[static_cast<std::size_t>(i)]);
  }
  return best;
}

const char* OmahaHand::Game(bool high_low) const {
  const auto of_size = [this](pokermath::Game game) { return HandSize(game) == hand.size(); };
  static constexpr auto kHigh = OmahaGames(false), kHighLow = OmahaGames(true);
  return NameOf(*std::ranges::find_if(high_low ? kHighLow : kHigh, of_size));
}

std::string OmahaHand::Words() const {
  std::vector<int> five = hole;
  five.insert(five.end(), from_board.begin(), from_board.end());
  return HandInWords(five);
}

std::string OmahaHand::Cards(const Colours& colours) const {
  return fmt::format("{} on {}", colours.Cards(hand), colours.Cards(board));
}

std::string OmahaHeadline(const OmahaHand& hand, const Colours& colours) {
  return fmt::format("{}: {}, {} from the hand and {} from the board\n", hand.Cards(colours),
                     colours.Strong(CategoryName(hand.value)), colours.Cards(hand.hole),
                     colours.Cards(hand.from_board));
}

Json OmahaJson(const OmahaHand& hand, bool high_low) {
  return {{"schema", kJsonSchema},
          {"game", hand.Game(high_low)},
          {"hand", CardsJson(hand.hand)},
          {"board", CardsJson(hand.board)}};
}

OmahaHand ReadOmahaHand(const OmahaQuestion& question, std::size_t most_board) {
  std::vector<int> hand = ReadHoleCards(question);
  std::vector<int> board =
      ReadCards(question.board, 3, most_board,
                most_board == 5 ? "a board has 3 to 5" : "a board with a card to come has 3 or 4");
  // Reads all of them as one list, which refuses a card that is there twice.
  ReadCards(question.hand + " " + question.board, 0, 52, "");
  return BestOfOmaha(std::move(hand), std::move(board));
}

}  // namespace pokermath
