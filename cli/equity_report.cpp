#include "cli/equity_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/range_picture.h"

namespace pokermath::cli {
namespace {

// A row of the table: a name, and what its owner wins.
struct Row {
  std::string name;  // as it is shown, escape sequences included
  std::size_t name_width;
  double equity;
  double low;
  std::int64_t counts[3];  // wins, ties, losses
};

double Percent(std::int64_t count, std::int64_t cases) {
  return 100 * static_cast<double>(count) / static_cast<double>(cases);
}

std::string NameOf(int cell) { return RangeMatrix::Name(cell / 13, cell % 13); }

// Orange where the hand has no chance, blue where it cannot lose, pale in between.
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

const char* StreetName(const EquityQuestion& question) {
  switch (question.street) {
    case Street::kFlop:
      return "flop";
    case Street::kTurn:
      return "turn";
    default:
      return "river";
  }
}

// Where the hands stand: "before the flop to the river", "on the flop 2c3d4h to the turn".
std::string Situation(const EquityQuestion& question, const Colours& colours) {
  static constexpr const char* kNames[6] = {"before the flop", "with",        "with",
                                            "on the flop",     "on the turn", "on the river"};
  const std::size_t known = question.board.size();
  if (known == 0 && question.street == Street::kFlop) return "over all flops";
  std::string text = kNames[known];
  if (known > 0) text += fmt::format(" {}", colours.Cards(question.board));
  if (known == 1 || known == 2) text += " on the board";
  if (known < static_cast<std::size_t>(question.street)) {
    text += fmt::format(" to the {}", StreetName(question));
  }
  return text;
}

std::string OpponentText(const EquityQuestion& question, const Colours& colours) {
  if (question.HasRange()) return question.range_text;
  std::string hands;
  for (const std::vector<int>& hand : question.opponents) {
    hands += (hands.empty() ? "" : " and ") + colours.Cards(hand);
  }
  if (!hands.empty()) return hands;
  if (question.players == 2) return "a random hand";
  return fmt::format("{} random hands", question.players - 1);
}

// The row of a hand, or of what stands in the place of one.
Row RowOf(std::string name, std::size_t name_width, const HandAnswer& hand, std::int64_t cases) {
  return {std::move(name),
          name_width,
          hand.equity,
          hand.low,
          {hand.wins, hand.ties, cases - hand.wins - hand.ties}};
}

std::vector<Row> Rows(const EquityQuestion& question, const EquityAnswer& answer,
                      const Colours& colours) {
  const auto hand_row = [&](const std::vector<int>& cards, const HandAnswer& hand) {
    return RowOf(colours.Cards(cards), 2 * cards.size(), hand, answer.cases);
  };
  std::vector<Row> rows = {hand_row(question.hand, answer)};
  if (question.exact && question.opponents.empty()) {
    const std::string name = question.HasRange() ? "range" : "random";
    rows.push_back(RowOf(name, name.size(), answer.opponents[0], answer.cases));
  }
  for (std::size_t i = 0; i < question.opponents.size(); ++i) {
    rows.push_back(hand_row(question.opponents[i], answer.opponents[i]));
  }
  return rows;
}

std::string Table(Game game, const std::vector<Row>& rows, std::int64_t cases,
                  const Colours& colours) {
  // A count column is as wide as its longest count, a percentage and the blanks between.
  std::size_t widths[3];
  for (std::size_t column = 0; column < 3; ++column) {
    widths[column] = 6;
    for (const Row& row : rows) {
      widths[column] = std::max(widths[column], Grouped(row.counts[column]).size());
    }
  }
  std::size_t name_width = 6;
  for (const Row& row : rows) name_width = std::max(name_width, row.name_width + 1);
  constexpr std::size_t kPercentWidth = 10;  // "  100.00 %"
  std::string head = fmt::format("{:{}}{:>12}", "", name_width, "equity");
  static constexpr const char* kTitles[2][3] = {{"wins alone", "ties", "losses"},
                                                {"whole pot", "part of it", "nothing"}};
  if (IsHighLow(game)) head += fmt::format("{:>12}", "from lows");
  for (std::size_t column = 0; column < 3; ++column) {
    head += fmt::format("   {:>{}}", kTitles[IsHighLow(game) ? 1 : 0][column],
                        widths[column] + kPercentWidth);
  }
  std::string table = colours.Faint(head) + "\n";
  for (const Row& row : rows) {
    table += fmt::format("{}{:{}}{}", row.name, "", name_width - row.name_width,
                         colours.Strong(fmt::format("{:>10.3f} %", 100 * row.equity)));
    if (IsHighLow(game)) table += fmt::format("{:>10.3f} %", 100 * row.low);
    for (std::size_t column = 0; column < 3; ++column) {
      table += fmt::format("   {:>{}}  {:>6.2f} %", Grouped(row.counts[column]), widths[column],
                           Percent(row.counts[column], cases));
    }
    table += "\n";
  }
  return table;
}

std::string CasesText(const EquityQuestion& question, const EquityAnswer& answer) {
  const char* s = answer.cases == 1 ? "" : "s";
  if (question.range) return fmt::format("case{} of board and holding", s);
  if (question.opponents.empty()) return fmt::format("case{} of board and opponent's hand", s);
  return fmt::format("board{}", s);
}

// How much of a range of Omaha takes part.
std::string RangeText(const EquityAnswer& answer) {
  if (answer.range_hands == 0) return "";
  std::string text = fmt::format("{} of {} hands of the range are left beside the known cards.\n",
                                 Grouped(answer.range_left), Grouped(answer.range_hands));
  if (answer.blocked_boards > 0) {
    text += fmt::format("Boards to come that leave none of them, and are not counted: {}.\n",
                        Grouped(answer.blocked_boards));
  }
  return text;
}

// What was counted, how and how fast, and what the figures mean.
std::string Footer(const EquityQuestion& question, const EquityAnswer& answer) {
  const std::string time = DurationText(answer.elapsed);
  std::string text;
  if (question.exact) {
    text = fmt::format("{} {}, exact, {}.\n", Grouped(answer.cases), CasesText(question, answer),
                       time);
  } else {
    text = fmt::format("{} sampled with seed {}, ", Counted(answer.cases, "trial"), question.seed);
    if (answer.standard_error) {
      text += fmt::format("standard error {:.3f} %, ", 100 * *answer.standard_error);
    }
    text += time + ".\n";
  }
  if (answer.out_of_time) {
    text +=
        fmt::format("So many trials were possible in {} ms.\n", Grouped(question.time->count()));
  }
  if (answer.interrupted) {
    text += fmt::format("Stopped early: {} trials were asked for.\n", Grouped(question.trials));
  }
  text += RangeText(answer);
  const bool two = question.players == 2 && question.opponents.size() < 2;
  if (IsHighLow(question.game)) {
    return text +
           "Equity is the share of the pot; where somebody has a low, half of it is the low's.\n";
  }
  return fmt::format("{}Equity is the share of the pot: {}.\n", text,
                     two ? "a tie counts one half" : "a pot shared by k players counts 1/k");
}

// How many play, the hand itself included.
std::size_t Players(const EquityQuestion& question) {
  return question.opponents.empty() ? static_cast<std::size_t>(question.players)
                                    : question.opponents.size() + 1;
}

// The opponents' part of a JSON object.
void AddOpponents(const EquityQuestion& question, Json& json) {
  if (question.opponents.size() == 1) {
    json["opponent"] = CardsJson(question.opponents[0]);
  } else if (question.opponents.empty()) {
    json["opponent"] = question.HasRange() ? question.range_text : "random";
  } else {
    for (const std::vector<int>& hand : question.opponents) {
      json["opponents"].push_back(CardsJson(hand));
    }
  }
}

// Every hand with its figures.
Json HandsJson(const EquityQuestion& question, const EquityAnswer& answer) {
  Json list = Json::array();
  const auto add = [&](const std::vector<int>& cards, const HandAnswer& hand) {
    list.push_back({{"hand", CardsJson(cards)},
                    {"equity", hand.equity},
                    {"wins", hand.wins},
                    {"ties", hand.ties}});
    if (IsHighLow(question.game)) list.back()["low"] = hand.low;
  };
  add(question.hand, answer);
  for (std::size_t i = 0; i < question.opponents.size(); ++i) {
    add(question.opponents[i], answer.opponents[i]);
  }
  return list;
}

}  // namespace

std::string EquityPage(const EquityQuestion& question, const EquityAnswer& answer,
                       const Colours& colours) {
  std::string title = fmt::format("{} against {}, {}, {}", colours.Cards(question.hand),
                                  OpponentText(question, colours), TitleOf(question.game),
                                  Situation(question, colours));
  if (!question.dead.empty()) title += fmt::format(", {} dead", colours.Cards(question.dead));
  title += "\n\n";
  if (answer.cases == 0) {
    return fmt::format("{}No {} of the range is left beside the known cards.\n", title,
                       question.omaha_range ? "hand" : "holding");
  }
  return fmt::format("{}{}\n{}", title,
                     Table(question.game, Rows(question, answer, colours), answer.cases, colours),
                     Footer(question, answer));
}

std::string ClassTable(const std::vector<ClassAnswer>& answers, const Colours& colours) {
  std::string table =
      colours.Faint(fmt::format("{:<6}{:>12}{:>12}{:>16}{:>10}{:>10}", "class", "equity",
                                "holdings", "wins alone", "ties", "losses")) +
      "\n";
  for (const auto& [cell, holdings, tally] : answers) {
    table += fmt::format("{:<6}{}{:>12}{:>14.2f} %{:>8.2f} %{:>8.2f} %\n", NameOf(cell),
                         colours.Strong(fmt::format("{:>10.3f} %", 100 * tally.Equity())), holdings,
                         Percent(tally.wins, tally.cases), Percent(tally.ties, tally.cases),
                         Percent(tally.cases - tally.wins - tally.ties, tally.cases));
  }
  return table;
}

std::string ClassSvg(const EquityQuestion& question, const EquityAnswer& answer,
                     const std::vector<ClassAnswer>& answers) {
  const Colours plain(false);
  std::vector<GridCell> cells(169, {.fill = "#eef0f3", .text = "#a3abb5", .note = ""});
  for (const auto& [cell, holdings, tally] : answers) {
    cells[static_cast<std::size_t>(cell)] = {.fill = HeatColour(tally.Equity()),
                                             .text = "#14202b",
                                             .note = fmt::format("{:.1f}", 100 * tally.Equity())};
  }
  const auto title = [&](const std::string& opponent) {
    const std::string equity =
        answer.cases == 0 ? "no holding left" : fmt::format("{:.2f} %", 100 * answer.equity);
    return fmt::format("{} against {}, {}: {}", CardsText(question.hand), opponent,
                       Situation(question, plain), equity);
  };
  constexpr std::size_t kLongestTitle = 68;
  const std::string whole = title(OpponentText(question, plain));
  return GridSvg(question.game == Game::kShortDeck ? 9 : 13,
                 whole.size() > kLongestTitle ? title("a range") : whole, cells);
}

Json ClassJson(const std::vector<ClassAnswer>& answers) {
  Json list = Json::array();
  for (const auto& [cell, holdings, tally] : answers) {
    list.push_back({{"class", NameOf(cell)},
                    {"holdings", holdings},
                    {"equity", tally.Equity()},
                    {"wins", tally.wins},
                    {"ties", tally.ties},
                    {"cases", tally.cases}});
  }
  return list;
}

std::string EquityLine(const EquityQuestion& question, const EquityAnswer& answer) {
  std::string line = CardsText(question.hand);
  for (const std::vector<int>& hand : question.opponents) line += " " + CardsText(hand);
  if (question.opponents.empty())
    line += " " + (question.HasRange() ? question.range_text : "random");
  if (question.game != Game::kHoldem) line += fmt::format(" --game {}", NameOf(question.game));
  if (!question.board.empty()) line += " --board " + CardsText(question.board);
  if (!question.dead.empty()) line += " --dead " + CardsText(question.dead);
  if (question.street != Street::kRiver) line += fmt::format(" --to {}", StreetName(question));
  if (question.players != 2) line += fmt::format(" --players {}", question.players);
  if (answer.cases == 0) {
    return line + (question.omaha_range ? " no hand left\n" : " no holding left\n");
  }
  fmt::format_to(std::back_inserter(line), " equity {:.6f} wins {} ties {} losses {} of {}",
                 answer.equity, answer.wins, answer.ties, answer.Losses(), answer.cases);
  if (question.exact) {
    line += " " + CasesText(question, answer) + " exact";
  } else {
    line += fmt::format(" trial{} sampled standard_error ", answer.cases == 1 ? "" : "s");
    line += answer.standard_error ? fmt::format("{:.6f}", *answer.standard_error) : "none";
  }
  if (IsHighLow(question.game)) line += fmt::format(" low {:.6f}", answer.low);
  if (question.omaha_range) {
    line += fmt::format(" range_left {} of {}", answer.range_left, answer.range_hands);
    if (question.exact) line += fmt::format(" blocked_boards {}", answer.blocked_boards);
  }
  if (question.opponents.size() > 1) {
    line += " opponents";
    for (const HandAnswer& hand : answer.opponents) line += fmt::format(" {:.6f}", hand.equity);
  }
  return line + "\n";
}

Json EquityJson(const EquityQuestion& question, const EquityAnswer& answer) {
  Json json = {
      {"schema", kJsonSchema}, {"game", NameOf(question.game)}, {"hand", CardsJson(question.hand)}};
  AddOpponents(question, json);
  json["board"] = CardsJson(question.board);
  if (IsOmaha(question.game)) json["dead"] = CardsJson(question.dead);
  json["to"] = StreetName(question);
  json["players"] = Players(question);
  json["equity"] = answer.cases == 0 ? Json(nullptr) : Json(answer.equity);
  if (IsHighLow(question.game)) json["low"] = answer.low;
  json["wins"] = answer.wins;
  json["ties"] = answer.ties;
  json["cases"] = answer.cases;
  if (question.omaha_range) {
    json["range_hands"] = answer.range_hands;
    json["range_left"] = answer.range_left;
  }
  if (question.exact) {
    json["method"] = "exact";
    if (question.omaha_range) json["blocked_boards"] = answer.blocked_boards;
  } else {
    json["method"] = "sampled";
    json["standard_error"] = answer.standard_error ? Json(*answer.standard_error) : Json(nullptr);
    json["trials"] = question.trials;
    json["seed"] = question.seed;
    if (question.time) json["time_ms"] = question.time->count();
    if (answer.interrupted) json["interrupted"] = true;
  }
  if (IsOmaha(question.game) && !question.opponents.empty()) {
    json["hands"] = HandsJson(question, answer);
  }
  // Microseconds are enough.
  json["elapsed_ms"] = std::round(answer.elapsed.count() * 1e6) / 1e3;
  return json;
}

}  // namespace pokermath::cli
