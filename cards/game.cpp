#include "pokermath/game.h"

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
