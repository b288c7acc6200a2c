#include "pages/equity_report.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "pages/equity_detail.h"
#include "pages/game.h"
#include "pages/json_writer.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

const char* StreetName(Street street) {
  switch (street) {
    case Street::kFlop:
      return "flop";
    case Street::kTurn:
      return "turn";
    default:
      return "river";
  }
}

bool IsSampled(const EquityRun& run) { return run.answer.method == Method::kSampled; }

bool IsOneHand(const AskedEquity& asked, std::size_t player) {
  return asked.question.players[player].size() == 1;
}

// A player as he was worded, his cards in colours.
std::string NameOf(const AskedEquity& asked, std::size_t player, const Colours& colours) {
  if (!IsOneHand(asked, player)) return asked.players[player];
  const CardsResult cards = ParseCards(asked.players[player]);
  return cards.error.empty() ? colours.Cards(cards.cards) : asked.players[player];
}

// "AhKd against 15% and 3 random hands".
std::string PlayersText(const AskedEquity& asked, const Colours& colours) {
  std::vector<std::string> others;
  int randoms = 0;
  for (std::size_t i = 1; i < asked.players.size(); ++i) {
    if (asked.players[i] == "random") {
      ++randoms;
    } else {
      others.push_back(NameOf(asked, i, colours));
    }
  }
  if (randoms == 1) others.push_back("a random hand");
  if (randoms > 1) others.push_back(fmt::format("{} random hands", randoms));
  return NameOf(asked, 0, colours) + " against " + fmt::format("{}", fmt::join(others, " and "));
}

std::string Title(const AskedEquity& asked, const Colours& colours) {
  std::string title = fmt::format("{}, {}, {}", PlayersText(asked, colours),
                                  TitleOf(asked.question.game), SituationText(asked, colours));
  if (!asked.dead.empty()) title += fmt::format(", {} dead", colours.Cards(asked.dead));
  if (!asked.folded.empty()) title += fmt::format(", {} folded", fmt::join(asked.folded, " and "));
  return title;
}

// --- the table ---

// Text of a cell, and how wide it is without escape sequences.
struct Cell {
  std::string text;
  std::size_t width;
};

struct Column {
  std::string title;
  std::vector<Cell> cells = {};

  void Add(const std::string& text) { cells.push_back({text, text.size()}); }
};

// The first column stands to the left, the others to the right.
std::string TableText(const std::vector<Column>& columns, const Colours& colours) {
  std::vector<std::size_t> widths;
  for (const Column& column : columns) {
    std::size_t width = column.title.size();
    for (const Cell& cell : column.cells) width = std::max(width, cell.width);
    widths.push_back(width);
  }
  std::string head = fmt::format("{:{}}", "", widths[0]);
  for (std::size_t i = 1; i < columns.size(); ++i) {
    head += fmt::format("   {:>{}}", columns[i].title, widths[i]);
  }
  std::string text = colours.Faint(head) + "\n";
  for (std::size_t row = 0; row < columns[0].cells.size(); ++row) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const Cell& cell = columns[i].cells[row];
      const std::string blanks(widths[i] - cell.width, ' ');
      text += i == 0 ? cell.text + blanks : "   " + blanks + cell.text;
    }
    text += "\n";
  }
  return text;
}

// Long ranges are in the title.
std::string Shortened(std::string name) {
  constexpr std::size_t kLongest = 24;
  if (name.size() > kLongest) name = name.substr(0, kLongest - 3) + "...";
  return name;
}

Column NameColumn(const AskedEquity& asked, const Colours& colours) {
  Column column{""};
  for (std::size_t i = 0; i < asked.players.size(); ++i) {
    // Those who are worded alike have numbers.
    const bool alike = std::ranges::count(asked.players, asked.players[i]) > 1;
    const std::string number = alike ? fmt::format("{} ", i + 1) : "";
    const bool hand = IsOneHand(asked, i);
    const std::string name = hand ? asked.players[i] : Shortened(asked.players[i]);
    column.cells.push_back(
        {number + (hand ? NameOf(asked, i, colours) : name), number.size() + name.size()});
  }
  return column;
}

double Percent(const CaseCount& count, const CaseCount& cases) {
  return 100 * count.Value() / cases.Value();
}

// Counts with their percentage, both of them in line.
Column CountColumn(std::string title, const std::vector<CaseCount>& counts,
                   const CaseCount& cases) {
  Column column{std::move(title)};
  for (const CaseCount& count : counts) {
    column.Add(fmt::format("{}  {:>6.2f} %", CountText(count), Percent(count, cases)));
  }
  return column;
}

template <typename Get>
std::vector<CaseCount> OfPlayers(const EquityRun& run, const Get& get) {
  std::vector<CaseCount> counts;
  for (const PlayerAnswer& player : run.answer.players) counts.push_back(get(player.total));
  return counts;
}

CaseCount Losses(const Outcome& outcome) {
  return {outcome.cases.units - outcome.wins.units - outcome.ties.units, outcome.cases.unit};
}

std::string Table(const AskedEquity& asked, const EquityRun& run, const Colours& colours) {
  const bool high_low = IsHighLow(asked.question.game);
  std::vector<Column> columns = {NameColumn(asked, colours)};
  const bool ranges = std::ranges::any_of(asked.question.players,
                                          [](const HandRange& range) { return range.size() != 1; });
  if (ranges) {
    Column& hands = columns.emplace_back(Column{"hands"});
    for (const PlayerAnswer& player : run.answer.players) {
      hands.Add(Grouped(static_cast<std::int64_t>(player.hands_left)));
    }
  }
  Column equity{"equity"}, error{"standard error"}, low{"from lows"};
  for (const PlayerAnswer& player : run.answer.players) {
    const std::string text = fmt::format("{:.3f} %", 100 * player.total.equity);
    equity.cells.push_back({colours.Strong(text), text.size()});
    const std::string spread =
        player.standard_error ? fmt::format("{:.3f} %", 100 * *player.standard_error) : "none";
    error.cells.push_back({"\u00B1 " + spread, 2 + spread.size()});
    low.Add(fmt::format("{:.3f} %", 100 * player.total.low));
  }
  columns.push_back(std::move(equity));
  if (IsSampled(run)) columns.push_back(std::move(error));
  if (high_low) columns.push_back(std::move(low));
  const CaseCount& cases = run.answer.cases;
  const bool two = asked.players.size() == 2;
  const auto get = [&](const auto& of) { return OfPlayers(run, of); };
  columns.push_back(CountColumn(high_low ? "whole pot" : "wins alone",
                                get([](const Outcome& o) { return o.wins; }), cases));
  columns.push_back(CountColumn(high_low ? "part of it"
                                : two    ? "ties"
                                         : "shares the pot",
                                get([](const Outcome& o) { return o.ties; }), cases));
  columns.push_back(CountColumn(high_low ? "nothing" : "losses", get(Losses), cases));
  return TableText(columns, colours);
}

// What was counted, how and how fast.
std::string MethodText(const AskedEquity& asked, const EquityRun& run) {
  const CaseCount& cases = run.answer.cases;
  const std::string count = CountText(cases);
  const std::string time = run.elapsed ? ", " + DurationText(*run.elapsed) : "";
  if (IsSampled(run)) {
    return fmt::format("{} random deal{} with seed {}, sampled ({}){}.\n", count,
                       count == "1" ? "" : "s", asked.question.seed, run.answer.reason, time);
  }
  return fmt::format("{} {} of board and hands, counted exactly ({}){}.\n", count,
                     count == "1" ? "case" : "cases", run.answer.reason, time);
}

// What was counted, how, and what the figures mean.
std::string Footer(const AskedEquity& asked, const EquityRun& run) {
  std::string text = MethodText(asked, run);
  if (run.out_of_time) {
    text += fmt::format("So many deals were possible in {} ms.\n", Grouped(asked.time->count()));
  }
  if (run.interrupted) text += "Stopped early: fewer deals than were asked for.\n";
  if (!run.answer.cases.IsWhole()) text += "A case counts as often as its hands weigh.\n";
  if (IsHighLow(asked.question.game)) {
    return text +
           "Equity is the share of the pot; where somebody has a low, half of it is the low's.\n";
  }
  return text + (asked.players.size() == 2
                     ? "Equity is the share of the pot: a tie counts one half.\n"
                     : "Equity is the share of the pot: a pot shared by k players counts 1/k.\n");
}

// Adds a name and the value of each player.
template <typename Get>
void AddValues(std::string_view name, const EquityRun& run, const Get& get, std::string& line) {
  line += ' ';
  line += name;
  for (const PlayerAnswer& player : run.answer.players) {
    line += ' ';
    line += get(player);
  }
}

std::string PlainCount(const CaseCount& count) {
  if (count.IsWhole() && count.Value() <= 9e18) {
    return std::to_string(static_cast<std::int64_t>(count.units));
  }
  std::string text = CountText(count);
  std::erase(text, ',');
  return text;
}

void WritePlayer(const AskedEquity& asked, const EquityRun& run, std::size_t i, JsonWriter& json) {
  const PlayerAnswer& player = run.answer.players[i];
  json.OpenObject();
  json.Key("range").Text(asked.players[i]);
  json.Key("hands").Number(player.hands_left);
  json.Key("equity").Number(player.total.equity);
  json.Key("wins").Raw(CountJson(player.total.wins));
  json.Key("ties").Raw(CountJson(player.total.ties));
  json.Key("shared").OpenList();
  for (std::size_t k = 0; k < asked.players.size(); ++k) json.Raw(CountJson(player.shared[k]));
  json.CloseList();
  if (IsHighLow(asked.question.game)) json.Key("low").Number(player.total.low);
  if (IsSampled(run)) {
    json.Key("standard_error");
    player.standard_error ? json.Number(*player.standard_error) : json.Null();
  }
  WriteDetail(asked, run, i, json);
  json.CloseObject();
}

}  // namespace

std::string SituationText(const AskedEquity& asked, const Colours& colours) {
  static constexpr const char* kNames[6] = {"before the flop", "with",        "with",
                                            "on the flop",     "on the turn", "on the river"};
  const Street street = asked.question.street;
  const std::size_t known = asked.board.size();
  if (known == 0 && street == Street::kFlop) return "over all flops";
  std::string text = kNames[known];
  if (known > 0) text += fmt::format(" {}", colours.Cards(asked.board));
  if (known == 1 || known == 2) text += " on the board";
  if (known < static_cast<std::size_t>(street)) {
    text += fmt::format(" to the {}", StreetName(street));
  }
  return text;
}

std::string CountJson(const CaseCount& count) {
  if (count.IsWhole() && count.units <= std::numeric_limits<std::int64_t>::max()) {
    return std::to_string(static_cast<std::int64_t>(count.units));
  }
  return NumberText(count.Value());
}

std::string CountText(const CaseCount& count) {
  const double value = count.Value();
  if (value > 9e18) return fmt::format("{:.6g}", value);
  if (count.IsWhole()) return Grouped(static_cast<std::int64_t>(count.units));
  const double whole = std::floor(value);
  return Grouped(static_cast<std::int64_t>(whole)) + fmt::format("{:.2f}", value - whole).substr(1);
}

std::string EquityPage(const AskedEquity& asked, const EquityRun& run, const Colours& colours) {
  return fmt::format("{}\n\n{}\n{}", Title(asked, colours), Table(asked, run, colours),
                     Footer(asked, run));
}

std::string EquityLine(const AskedEquity& asked, const EquityRun& run) {
  const EquityQuestion& question = asked.question;
  std::string line;
  for (const std::string& player : asked.players) {
    if (!line.empty()) line += ' ';
    line += player;
  }
  for (const std::string& folded : asked.folded) line += " --folded " + folded;
  if (question.game != Game::kHoldem) line += fmt::format(" --game {}", NameOf(question.game));
  if (!asked.board.empty()) line += " --board " + CardsText(asked.board);
  if (!asked.dead.empty()) line += " --dead " + CardsText(asked.dead);
  if (question.street != Street::kRiver)
    line += fmt::format(" --to {}", StreetName(question.street));
  const auto share = [](double equity) { return fmt::format("{:.6f}", equity); };
  AddValues(
      "equity", run, [&](const PlayerAnswer& p) { return share(p.total.equity); }, line);
  AddValues(
      "wins", run, [](const PlayerAnswer& p) { return PlainCount(p.total.wins); }, line);
  AddValues(
      "ties", run, [](const PlayerAnswer& p) { return PlainCount(p.total.ties); }, line);
  const std::string cases = PlainCount(run.answer.cases);
  line += fmt::format(" of {} {}{} {}", cases, IsSampled(run) ? "trial" : "case",
                      cases == "1" ? "" : "s", IsSampled(run) ? "sampled" : "exact");
  if (IsSampled(run)) {
    const auto error = [&](const PlayerAnswer& p) {
      return p.standard_error ? share(*p.standard_error) : "none";
    };
    AddValues("standard_error", run, error, line);
  }
  if (IsHighLow(question.game)) {
    AddValues(
        "low", run, [&](const PlayerAnswer& p) { return share(p.total.low); }, line);
  }
  line += '\n';
  return line;
}

std::string EquityJson(const AskedEquity& asked, const EquityRun& run, std::string_view id) {
  const EquityQuestion& question = asked.question;
  JsonWriter json;
  json.OpenObject();
  json.Key("schema").Number(kEquitySchema);
  if (!id.empty()) json.Key("id").Raw(id);
  json.Key("game").Text(NameOf(question.game));
  json.Key("board").Cards(asked.board);
  json.Key("dead").Cards(asked.dead);
  json.Key("to").Text(StreetName(question.street));
  json.Key("method").Text(IsSampled(run) ? "sampled" : "exact");
  json.Key("reason").Text(run.answer.reason);
  if (!asked.folded.empty()) {
    json.Key("folded").OpenList();
    for (const std::string& folded : asked.folded) json.Text(folded);
    json.CloseList();
  }
  json.Key(IsSampled(run) ? "trials" : "cases").Raw(CountJson(run.answer.cases));
  if (run.interrupted) json.Key("interrupted").True();
  json.Key("players").OpenList();
  for (std::size_t i = 0; i < asked.players.size(); ++i) WritePlayer(asked, run, i, json);
  json.CloseList();
  WriteNext(asked, run, json);
  // Microseconds are enough.
  if (run.elapsed) json.Key("elapsed_ms").Number(std::round(run.elapsed->count() * 1e6) / 1e3);
  json.CloseObject();
  return json.TakeLine();
}

}  // namespace pokermath
