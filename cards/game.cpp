#include "pokermath/game.h"

#include <algorithm>
#include <string>

namespace pokermath {
namespace {

// The table is indexed by the game.
static_assert([] {
  for (std::size_t i = 0; i < kGames.size(); ++i) {
    if (kGames[i].game != static_cast<Game>(i)) return false;
  }
  return true;
}());

// Every number of hole cards has a game with lows and one without, and no game has another number.
static_assert([] {
  for (const int size : kOmahaHandSizes) {
    for (const bool high_low : {false, true}) {
      const auto is_it = [=](const GameRules& rules) {
        return rules.IsOmaha() && rules.hand_size == size && rules.high_low == high_low;
      };
      if (std::ranges::count_if(kGames, is_it) != 1) return false;
    }
  }
  return std::ranges::all_of(kGames, [](const GameRules& rules) {
    return !rules.IsOmaha() || IsOmahaHandSize(rules.hand_size);
  });
}());

}  // namespace

std::optional<Game> FindGame(std::string_view name) {
  for (const GameRules& rules : kGames) {
    if (rules.name == name) return rules.game;
  }
  return std::nullopt;
}

std::string_view GameNames() {
  static const std::string names = [] {
    std::string list;
    for (const GameRules& rules : kGames) {
      if (!list.empty()) list += ", ";
      list += rules.name;
    }
    return list;
  }();
  return names;
}

}  // namespace pokermath
