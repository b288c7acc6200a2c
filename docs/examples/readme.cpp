#include <pokermath/pokermath.h>

#include <cstdio>

int main() {
  using namespace pokermath;
  const auto fail = [](const Error& error) { return std::puts(error.text.c_str()), 1; };
  const auto hero = ReadRange(Game::kHoldem, "AhKd");
  if (!hero) return fail(hero.error());
  const auto villain = ReadRange(Game::kHoldem, "15%,T9s:0.5");
  if (!villain) return fail(villain.error());
  const auto board = ReadCardSet("2c7dTh");
  if (!board) return fail(board.error());

  const auto answer = Calculate({.players = {hero->range, villain->range}, .board = *board});
  if (!answer) return fail(answer.error());
  std::printf("%.3f %%, %s\n", 100 * answer->players[0].total.equity, answer->reason.c_str());
}
