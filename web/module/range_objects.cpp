#include "web/module/range_objects.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

#include "pages/card_words.h"
#include "pages/colours.h"
#include "pages/equity_object.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pages/player_words.h"
#include "pokermath/hand_range.h"

namespace pokermath {
namespace {

constexpr std::size_t kMostListed = 500;

std::string TextAt(const Json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_string()) {
    Refuse(fmt::format("'{}' is needed, a text", key), key);
  }
  return found->get<std::string>();
}

Game GameOf(const Json& object) {
  const std::string name = TextAt(object, "game");
  if (const std::optional<Game> game = FindGame(name)) return *game;
  Refuse(fmt::format("game {} is not known: {}", Quoted(name), GameNames()), "game");
}

// Of few cards all hands are listed, of all hands of more cards none.
std::span<const WeightedHand> ListedHands(const HandRange& range) {
  const bool two_cards = RulesOf(range.game()).hand_size == 2;
  if (range.IsEvery() && !two_cards) return {};
  const std::span<const WeightedHand> hands = range.hands();
  return two_cards ? hands : hands.first(std::min(hands.size(), kMostListed));
}

WeightedHand HandOf(const Json& pair, Game game) {
  if (!pair.is_array() || pair.size() != 2 || !pair[0].is_string() || !pair[1].is_number()) {
    Refuse("a hand with its weight is like [\"AhKd\", 0.5]", "weights");
  }
  const std::string text = pair[0].get<std::string>();
  const auto size = static_cast<std::size_t>(RulesOf(game).hand_size);
  const std::vector<int> cards = ReadCards(
      text, size, size, fmt::format("a hand of {} has {}", RulesOf(game).name, size), "weights");
  CheckDeck(RulesOf(game).IsShortDeck(), cards, "weights");
  const double weight = std::round(pair[1].get<double>() * kWholeWeight);
  if (!(weight >= 1 && weight <= kWholeWeight)) {
    Refuse(fmt::format("the weight of {} is not accepted: 0.0001 to 1", text), "weights");
  }
  return {CardSet(cards), static_cast<std::int32_t>(weight)};
}

}  // namespace

Json DescribedRange(std::string_view object) {
  const Json words = ParseObject(object);
  const PlayerReading read = ReadPlayer(TextAt(words, "text"), GameOf(words), "text");
  const std::span<const WeightedHand> listed = ListedHands(read.range);
  Json weights = Json::array();
  for (const auto& [cards, weight] : listed) {
    const std::vector<int> hand = InOrder(cards);
    CheckDeck(RulesOf(read.range.game()).IsShortDeck(), hand, "text");
    weights.push_back(Json::array({CardsText(hand), static_cast<double>(weight) / kWholeWeight}));
  }
  return {{"name", read.name},
          {"every", read.range.IsEvery()},
          {"hands", read.range.size()},
          {"weights", std::move(weights)},
          {"cut", listed.size() < read.range.size()},
          {"warnings", read.warnings}};
}

Json WrittenRange(std::string_view object) {
  const Json words = ParseObject(object);
  const Game game = GameOf(words);
  const auto weights = words.find("weights");
  if (weights == words.end() || !weights->is_array()) {
    Refuse("'weights' is needed, a list of hands with their weights", "weights");
  }
  std::vector<WeightedHand> hands;
  for (const Json& pair : *weights) hands.push_back(HandOf(pair, game));
  return {{"text", RangeText(HandRange(game, std::move(hands)))}};
}

}  // namespace pokermath
