#include "pages/equity_svg.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "pages/equity_detail.h"
#include "pages/equity_report.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pages/range_picture.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

// Orange where a player has no chance, blue where he cannot lose, pale in between.
std::string HeatColour(double equity) {
  constexpr double kColours[3][3] = {{222, 110, 52}, {246, 242, 230}, {74, 144, 203}};
  const int half = equity < 0.5 ? 0 : 1;
  const double part = 2 * equity - half;
  std::string colour = "#";
  for (int i = 0; i < 3; ++i) {
    const double level = kColours[half][i] * (1 - part) + kColours[half + 1][i] * part;
    colour += fmt::format("{:02x}", static_cast<int>(std::lround(level)));
  }
  return colour;
}

GridCell HeatCell(const Outcome& outcome, std::string name) {
  if (outcome.cases.units == 0) return {"#eef0f3", "#a3abb5", "", std::move(name)};
  return {HeatColour(outcome.equity), "#14202b", fmt::format("{:.1f}", 100 * outcome.equity),
          std::move(name)};
}

// "AhKd on the flop 2c7dTh to the river: 54.08 %"; a long range goes by its player's number.
std::string TitleOf(const AskedEquity& asked, const EquityRun& run, std::size_t player) {
  constexpr std::size_t kLongestTitle = 68;
  const auto title = [&](const std::string& name) {
    const Outcome& total = run.answer.players[player].total;
    const std::string low =
        IsHighLow(asked.question.game) ? fmt::format(", {:.2f} % from lows", 100 * total.low) : "";
    return fmt::format("{} {}: {:.2f} %{}", name, SituationText(asked, Colours(false)),
                       100 * total.equity, low);
  };
  const std::string whole = title(asked.players[player]);
  return whole.size() > kLongestTitle ? title(fmt::format("player {}", player + 1)) : whole;
}

std::string ClassGrid(const AskedEquity& asked, const EquityRun& run, std::size_t player) {
  std::vector<GridCell> cells;
  for (const HandClass& of : ClassesOf(run.answer.players[player])) {
    cells.push_back(HeatCell(of.outcome, ""));
  }
  return GridSvg(RulesOf(asked.question.game).IsShortDeck() ? 9 : 13, TitleOf(asked, run, player),
                 std::move(cells));
}

// "aces, double-suited" are of the type "aces".
std::pair<std::string, std::string> TypeAndSuits(const std::string& name) {
  const std::size_t comma = name.find(", ");
  return {name.substr(0, comma), name.substr(comma + 2)};
}

// Classes that have a row for each type of hand, the best first, and a column for each way that
// suits are.
struct TypeTable {
  std::vector<std::string> types, suits;
  std::map<std::string, Outcome> by_name;

  explicit TypeTable(const PlayerAnswer& player) {
    struct Sum {
      double points = 0, cases = 0;
    };
    std::map<std::string, Sum> by_type, by_suits;
    for (const HandClass& of : ClassesOf(player)) {
      const auto [type, suit] = TypeAndSuits(of.name);
      const double cases = of.outcome.cases.Value();
      for (Sum* sum : {&by_type[type], &by_suits[suit]}) {
        sum->points += of.outcome.equity * cases;
        sum->cases += cases;
      }
      by_name[of.name] = of.outcome;
    }
    for (const auto& [type, sum] : by_type) types.push_back(type);
    for (const auto& [suit, sum] : by_suits) suits.push_back(suit);
    std::ranges::stable_sort(types, std::ranges::greater{}, [&](const std::string& type) {
      const Sum& sum = by_type[type];
      return sum.cases > 0 ? sum.points / sum.cases : 0;
    });
    std::ranges::stable_sort(suits, std::ranges::greater{},
                             [&](const std::string& suit) { return by_suits[suit].cases; });
  }
};

// Spades first, aces first.
std::string NextGrid(const AskedEquity& asked, const EquityRun& run, std::size_t player) {
  const auto place = [](int card) {
    return static_cast<std::size_t>((3 - card / 13) * 13 + 12 - card % 13);
  };
  std::vector<GridCell> cells(52);
  for (int card = 0; card < 52; ++card) cells[place(card)] = HeatCell({}, CardName(card));
  for (const NextOutcome& next : run.answer.next) {
    const int card = *next.cards.begin();
    cells[place(card)] = HeatCell(next.players[player], CardName(card));
  }
  return GridSvg(4, RulesOf(asked.question.game).IsShortDeck() ? 9 : 13,
                 TitleOf(asked, run, player), cells);
}

int NumberBehind(const std::string& svg, std::string_view name) {
  return std::stoi(svg.substr(svg.find(name) + name.size()));
}

// One document with all of them, one below the other.
std::string Stacked(const std::vector<std::string>& pictures) {
  int width = 0, height = 0;
  std::string inner;
  for (const std::string& svg : pictures) {
    constexpr std::string_view kStart = "<svg ";
    inner += fmt::format("<svg y=\"{}\" {}", height, svg.substr(kStart.size()));
    width = std::max(width, NumberBehind(svg, " width=\""));
    height += NumberBehind(svg, " height=\"");
  }
  return fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0} {1}\" width=\"{0}\" "
      "height=\"{1}\">\n{2}</svg>\n",
      width, height, inner);
}

// --- curves ---

constexpr int kPlot = 480, kMargin = 48, kLegendLine = 20;

// The hands' equities from the best down; each takes as much of the width as it has cases.
std::string CurveOf(const PlayerAnswer& player, const char* colour) {
  std::vector<const Outcome*> hands;
  for (const HandOutcome& hand : player.hands) {
    if (hand.outcome.cases.units != 0) hands.push_back(&hand.outcome);
  }
  std::ranges::stable_sort(hands, std::ranges::greater{}, &Outcome::equity);
  std::string points;
  double before = 0;
  const double all = player.total.cases.Value();
  for (const Outcome* hand : hands) {
    const double y = kMargin + kPlot * (1 - hand->equity);
    const double after = before + hand->cases.Value() / all;
    points += fmt::format("{:.1f},{:.1f} {:.1f},{:.1f} ", kMargin + kPlot * before, y,
                          kMargin + kPlot * after, y);
    before = after;
  }
  return fmt::format("<polyline fill=\"none\" stroke=\"{}\" stroke-width=\"2\" points=\"{}\"/>\n",
                     colour, points);
}

std::string Text(int x, int y, const char* anchor, const std::string& words) {
  return fmt::format(
      "<text x=\"{}\" y=\"{}\" font-size=\"12\" text-anchor=\"{}\" "
      "fill=\"#222\">{}</text>\n",
      x, y, anchor, Escape(words));
}

// A document with a white ground and a title.
std::string StartOfSvg(int width, int height, const std::string& title) {
  return fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0} {1}\" width=\"{0}\" "
      "height=\"{1}\" font-family=\"Helvetica, Arial, sans-serif\">\n<title>{2}</title>\n"
      "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n{3}",
      width, height, Escape(title), Text(kMargin, 28, "start", title));
}

std::string Frame() {
  std::string svg;
  for (int percent = 0; percent <= 100; percent += 25) {
    const int y = kMargin + kPlot * (100 - percent) / 100;
    const int x = kMargin + kPlot * percent / 100;
    svg += fmt::format("<path d=\"M{} {}h{}\" stroke=\"#d5dae3\"/>\n", kMargin, y, kPlot);
    svg += Text(kMargin - 6, y + 4, "end", fmt::format("{} %", percent));
    svg += Text(x, kMargin + kPlot + 18, "middle", fmt::format("{} %", percent));
  }
  return svg;
}

// A heat map with names at its sides.
std::string TypeGrid(const AskedEquity& asked, const EquityRun& run, std::size_t player) {
  constexpr int kNames = 250, kWide = 112, kHigh = 22, kTop = 76;
  const TypeTable table(run.answer.players[player]);
  const int columns = std::max(3, static_cast<int>(table.suits.size()));  // the title is wide
  const int width = kNames + kWide * columns + kMargin;
  const int height = kTop + kHigh * static_cast<int>(table.types.size()) + kMargin / 2;
  std::string svg = StartOfSvg(width, height, TitleOf(asked, run, player));
  for (std::size_t column = 0; column < table.suits.size(); ++column) {
    const int middle = kNames + kWide * static_cast<int>(column) + kWide / 2;
    // The longest one takes two lines.
    const std::string& suits = table.suits[column];
    const std::size_t with = suits.find(" with ");
    svg += Text(middle, with == suits.npos ? kTop - 8 : kTop - 24, "middle", suits.substr(0, with));
    if (with != suits.npos) svg += Text(middle, kTop - 8, "middle", suits.substr(with + 1));
  }
  for (std::size_t row = 0; row < table.types.size(); ++row) {
    const int y = kTop + kHigh * static_cast<int>(row);
    svg += Text(kNames - 10, y + 15, "end", table.types[row]);
    for (std::size_t column = 0; column < table.suits.size(); ++column) {
      const auto found = table.by_name.find(table.types[row] + ", " + table.suits[column]);
      const GridCell cell = HeatCell(found == table.by_name.end() ? Outcome{} : found->second, "");
      const int x = kNames + kWide * static_cast<int>(column);
      svg +=
          fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" rx=\"4\" fill=\"{}\"/>",
                      x + 1, y + 1, kWide - 2, kHigh - 2, cell.fill);
      svg += Text(x + kWide / 2, y + 15, "middle", cell.note);
    }
  }
  return svg + "</svg>\n";
}

std::string Curves(const AskedEquity& asked, const EquityRun& run) {
  // Told apart by those who see colours otherwise, too.
  static constexpr const char* kColours[10] = {"#0072b2", "#d55e00", "#009e73", "#cc79a7",
                                               "#e69f00", "#56b4e9", "#000000", "#999999",
                                               "#8b5a2b", "#6a3d9a"};
  const int width = kPlot + 2 * kMargin;
  const int legend = kMargin + kPlot + 44;
  const int height = legend + kLegendLine * static_cast<int>(asked.players.size());
  std::string svg =
      StartOfSvg(width, height,
                 "Equity of all hands, the best first, " + SituationText(asked, Colours(false)));
  svg += Frame();
  for (std::size_t i = 0; i < asked.players.size(); ++i) {
    svg += CurveOf(run.answer.players[i], kColours[i]);
    const int y = legend + kLegendLine * static_cast<int>(i);
    svg += fmt::format("<path d=\"M{} {}h24\" stroke=\"{}\" stroke-width=\"2\"/>\n", kMargin, y - 4,
                       kColours[i]);
    svg += Text(kMargin + 32, y, "start", TitleOf(asked, run, i));
  }
  return svg + "</svg>\n";
}

}  // namespace

bool HasPicture(const AskedEquity& asked, By by) {
  return by == By::kHand || by == By::kClass || (by == By::kNext && ComesOneCard(asked));
}

std::string DetailSvg(const AskedEquity& asked, const EquityRun& run, By by) {
  if (by == By::kHand) return Curves(asked, run);
  std::vector<std::string> pictures;
  for (std::size_t i = 0; i < asked.players.size(); ++i) {
    pictures.push_back(by == By::kNext                               ? NextGrid(asked, run, i)
                       : RulesOf(asked.question.game).hand_size == 2 ? ClassGrid(asked, run, i)
                                                                     : TypeGrid(asked, run, i));
  }
  return Stacked(pictures);
}

}  // namespace pokermath
