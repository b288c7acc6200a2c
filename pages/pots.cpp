#include "pages/pots.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <utility>

#include "pages/errors.h"
#include "pages/number_text.h"

namespace pokermath {
namespace {

std::vector<std::int64_t> WinningsOf(const std::vector<Pot>& pots, std::size_t seats) {
  std::vector<std::int64_t> winnings(seats);
  for (const Pot& pot : pots) {
    for (std::size_t seat = 0; seat < seats; ++seat) winnings[seat] += pot.won[seat];
  }
  return winnings;
}

// "seat 1 wins 150", "seat 0 wins 35, seat 1 wins 33", "seat 2 gets 1 back".
std::string PotText(const Pot& pot) {
  std::string text;
  for (std::size_t seat = 0; seat < pot.won.size(); ++seat) {
    if (pot.won[seat] == 0) continue;
    const bool own = pot.won[seat] == pot.paid[seat];
    text += fmt::format("{}seat {} {} {}{}", text.empty() ? "" : ", ", seat, own ? "gets" : "wins",
                        Grouped(pot.won[seat]), own ? " back" : "");
  }
  return text;
}

}  // namespace

PotsAnswer FindPots(std::vector<int> stakes, std::vector<int> scores, const char* prefix) {
  if (stakes.size() != scores.size()) {
    Refuse(fmt::format("{0}stakes has {1} and {0}scores has {2} numbers: one each for a seat",
                       prefix, stakes.size(), scores.size()));
  }
  constexpr std::size_t kMostSeats = 1000;
  if (stakes.size() > kMostSeats) {
    Refuse(fmt::format("{} seats are too many: up to {}", stakes.size(), kMostSeats));
  }
  PotsAnswer answer = {std::move(stakes), std::move(scores), {}, {}};
  answer.pots = SplitPots(answer.stakes, answer.scores);
  answer.winnings = WinningsOf(answer.pots, answer.stakes.size());
  return answer;
}

std::string PotsText(const PotsAnswer& answer, const Colours& colours) {
  const auto& [stakes, scores, pots, winnings] = answer;
  std::string text;
  for (std::size_t i = 0; i < pots.size(); ++i) {
    text +=
        fmt::format("pot {}: {}, {}\n", i + 1, Counted(pots[i].chips, "chip"), PotText(pots[i]));
  }
  text += "\n" +
          colours.Faint(fmt::format("{:<6}{:>15}{:>13}{:>15}", "seat", "stake", "score", "gets")) +
          "\n";
  for (std::size_t seat = 0; seat < stakes.size(); ++seat) {
    text += fmt::format("{:<6}{:>15}{:>13}{}\n", seat, Grouped(stakes[seat]), scores[seat],
                        colours.Strong(fmt::format("{:>15}", Grouped(winnings[seat]))));
  }
  return text;
}

Json PotsJson(const PotsAnswer& answer) {
  Json list = Json::array();
  for (const Pot& pot : answer.pots) {
    list.push_back(
        {{"chips", pot.chips}, {"winners", pot.winners}, {"paid", pot.paid}, {"won", pot.won}});
  }
  return {{"schema", kJsonSchema}, {"winnings", answer.winnings}, {"pots", list}};
}

}  // namespace pokermath
