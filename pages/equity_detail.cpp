#include "pages/equity_detail.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "pages/card_words.h"
#include "pages/equity_report.h"
#include "pages/game.h"
#include "pages/json_writer.h"
#include "pages/range_picture.h"
#include "pokermath/cards.h"
#include "pokermath/omaha_ranges.h"
#include "ranges/hand_classes.h"

namespace pokermath {
namespace {

// Names go by the order of strength, in which the short decks differ.
const char* CategoryName(Game game, int category) {
  static constexpr const char* kNames[11] = {
      "",      "high card",  "one pair",       "two pair",       "three of a kind", "straight",
      "flush", "full house", "four of a kind", "straight flush", "royal flush"};
  const GameRules& rules = RulesOf(game);
  const bool swap_low = !rules.straight_over_trips && (category == 4 || category == 5);
  const bool swap_high = rules.IsShortDeck() && (category == 6 || category == 7);
  const int number = swap_low ? 9 - category : swap_high ? 13 - category : category;
  return kNames[number];
}

std::string WeightText(std::int32_t weight) {
  return fmt::format("{}", static_cast<double>(weight) / kWholeWeight);
}

int CellOf(CardSet hand) {
  auto card = hand.begin();
  const int low = *card;
  return pokermath::CellOf(low, *++card);
}

std::string NameOfCell(std::size_t cell) {
  return RangeMatrix::Name(static_cast<int>(cell) / 13, static_cast<int>(cell) % 13);
}

bool HasCases(const Outcome& outcome) { return outcome.cases.units != 0; }

void AddTo(HandClass& sum, const Outcome& added) {
  ++sum.hands;
  Outcome& outcome = sum.outcome;
  const double before = outcome.cases.Value();
  outcome.cases = {outcome.cases.units + added.cases.units, added.cases.unit};
  outcome.wins = {outcome.wins.units + added.wins.units, added.wins.unit};
  outcome.ties = {outcome.ties.units + added.ties.units, added.ties.unit};
  if (!HasCases(outcome)) return;
  // Rounded, weights may sum to a little more than a whole pot.
  const auto mean = [&](double of_sum, double of_added) {
    return std::min(1.0,
                    (of_sum * before + of_added * added.cases.Value()) / outcome.cases.Value());
  };
  outcome.equity = mean(outcome.equity, added.equity);
  outcome.low = mean(outcome.low, added.low);
}

std::vector<HandClass> CellsOf(const PlayerAnswer& player) {
  std::vector<HandClass> classes(169);
  for (std::size_t cell = 0; cell < classes.size(); ++cell) classes[cell].name = NameOfCell(cell);
  for (const auto& [hand, outcome] : player.hands) {
    AddTo(classes[static_cast<std::size_t>(CellOf(hand.cards))], outcome);
  }
  return classes;
}

void AddHands(std::size_t player, const PlayerAnswer& answer, std::vector<DetailRow>& rows) {
  for (const HandOutcome& hand : answer.hands) {
    rows.push_back(
        {player, CardsText(InOrder(hand.hand.cards)), WeightText(hand.hand.weight), hand.outcome});
  }
}

void AddClasses(std::size_t player, const PlayerAnswer& answer, std::vector<DetailRow>& rows) {
  for (const HandClass& of : ClassesOf(answer)) {
    if (of.hands == 0) continue;
    rows.push_back({player, of.name, std::to_string(of.hands), of.outcome});
  }
}

// The rows of one player.
void AddRows(const AskedEquity& asked, std::size_t player, const PlayerAnswer& answer, By by,
             std::vector<DetailRow>& rows) {
  const auto first = static_cast<std::ptrdiff_t>(rows.size());
  if (by == By::kHand) AddHands(player, answer, rows);
  if (by == By::kClass) AddClasses(player, answer, rows);
  for (const MadeOutcome& made : answer.made) {
    if (by != By::kMade) break;
    rows.push_back({player, CategoryName(asked.question.game, made.category), "", made.outcome});
  }
  if (by == By::kMade) return;
  std::stable_sort(rows.begin() + first, rows.end(), [](const DetailRow& a, const DetailRow& b) {
    return a.outcome.equity > b.outcome.equity;
  });
}

struct Titles {
  const char* name;
  const char* size;
};

Titles TitlesOf(By by) {
  switch (by) {
    case By::kHand:
      return {"hand", "weight"};
    case By::kClass:
      return {"class", "hands"};
    case By::kNext:
      return {"next", "alike"};
    case By::kMade:
      break;
  }
  return {"made", ""};
}

std::string PlayerTitle(const AskedEquity& asked, std::size_t player) {
  return fmt::format("player {}, {}", player + 1, asked.players[player]);
}

// --- matrices ---

std::string ClassMatrix(const PlayerAnswer& player, Game game, const Colours& colours) {
  constexpr std::string_view kRanks = "AKQJT98765432";
  const std::size_t size = RulesOf(game).IsShortDeck() ? 9 : 13;
  const std::vector<HandClass> classes = ClassesOf(player);
  std::string text = " ";
  for (std::size_t i = 0; i < size; ++i) text += fmt::format("{:>6}", kRanks[i]);
  text = colours.Faint(text) + "\n";
  for (std::size_t row = 0; row < size; ++row) {
    text += colours.Faint(std::string(1, kRanks[row]));
    for (std::size_t column = 0; column < size; ++column) {
      const Outcome& outcome = classes[row * 13 + column].outcome;
      text += HasCases(outcome) ? fmt::format("{:>6.1f}", 100 * outcome.equity)
                                : colours.Faint(fmt::format("{:>6}", "."));
    }
    text += "\n";
  }
  return text;
}

std::string MatricesText(const AskedEquity& asked, const EquityRun& run, const Colours& colours) {
  std::string text;
  for (std::size_t i = 0; i < asked.players.size(); ++i) {
    if (asked.question.players[i].size() == 1) continue;
    text += fmt::format("\n{}: equity in % of every class, suited above the diagonal\n{}",
                        PlayerTitle(asked, i),
                        ClassMatrix(run.answer.players[i], asked.question.game, colours));
  }
  return text;
}

// The equity of a player with each card that comes next, a suit a row.
std::string DeckText(const AskedEquity& asked, const EquityRun& run, std::size_t player,
                     const Colours& colours) {
  std::array<const Outcome*, 52> by_card{};
  for (const NextOutcome& next : run.answer.next) {
    by_card[static_cast<std::size_t>(*next.cards.begin())] = &next.players[player];
  }
  const GameRules& rules = RulesOf(asked.question.game);
  std::string head = " ", rows;
  for (int rank = 12; rank >= rules.lowest_rank; --rank) {
    head += fmt::format("{:>6}", CardName(rank)[0]);
  }
  for (int suit = 3; suit >= 0; --suit) {
    rows += CardName(suit * 13)[1];
    for (int rank = 12; rank >= rules.lowest_rank; --rank) {
      const Outcome* outcome = by_card[static_cast<std::size_t>(suit * 13 + rank)];
      rows += outcome != nullptr ? fmt::format("{:>6.1f}", 100 * outcome->equity)
                                 : colours.Faint(fmt::format("{:>6}", "."));
    }
    rows += "\n";
  }
  return fmt::format("\n{}: equity in % with each card that comes next\n{}\n{}",
                     PlayerTitle(asked, player), colours.Faint(head), rows);
}

// --- lists ---

// How lists of a question look: a column for lows, and one as wide as names are.
struct ListForm {
  bool high_low;
  std::size_t width = 16;

  ListForm(const AskedEquity& asked, std::span<const DetailRow> rows)
      : high_low(IsHighLow(asked.question.game)) {
    for (const DetailRow& row : rows) width = std::max(width, row.name.size() + 2);
  }
};

std::string ListTitle(const ListForm& form, const Titles& titles, const Colours& colours) {
  const std::string low = form.high_low ? fmt::format("{:>12}", "from lows") : "";
  const auto [all, part, none] = form.high_low ? std::array{"whole pot", "part of it", "nothing"}
                                               : std::array{"wins alone", "ties", "losses"};
  return colours.Faint(fmt::format("{:<{}}{:>8}{:>12}{}{:>14}{:>{}}{:>10}", titles.name, form.width,
                                   titles.size, "equity", low, all, part, form.high_low ? 12 : 10,
                                   none)) +
         "\n";
}

std::string ListLine(const ListForm& form, const DetailRow& row, const Colours& colours) {
  const Outcome& outcome = row.outcome;
  std::string line = fmt::format("{:<{}}{:>8}", row.name, form.width, row.size);
  if (!HasCases(outcome)) return line + "  no case\n";
  const auto percent = [&](Int128 units) {
    return 100 * static_cast<double>(units) / static_cast<double>(outcome.cases.units);
  };
  line += colours.Strong(fmt::format("{:>10.3f} %", 100 * outcome.equity));
  if (form.high_low) line += fmt::format("{:>10.3f} %", 100 * outcome.low);
  return line + fmt::format("{:>12.2f} %{:>{}.2f} %{:>8.2f} %\n", percent(outcome.wins.units),
                            percent(outcome.ties.units), form.high_low ? 10 : 8,
                            percent(outcome.cases.units - outcome.wins.units - outcome.ties.units));
}

std::string ListsText(const AskedEquity& asked, const EquityRun& run, By by,
                      const Colours& colours) {
  std::string text;
  std::size_t player = asked.players.size();
  const std::vector<DetailRow> rows = DetailRows(asked, run, by);
  const ListForm form(asked, rows);
  for (const DetailRow& row : rows) {
    if (row.player != player) {
      player = row.player;
      text += fmt::format("\n{}\n{}", PlayerTitle(asked, player),
                          ListTitle(form, TitlesOf(by), colours));
    }
    text += ListLine(form, row, colours);
  }
  return text;
}

// What a player makes, and how often.
std::string MadeText(const AskedEquity& asked, const EquityRun& run, const Colours& colours) {
  std::string text;
  for (std::size_t i = 0; i < asked.players.size(); ++i) {
    std::vector<DetailRow> rows;
    AddRows(asked, i, run.answer.players[i], By::kMade, rows);
    const ListForm form(asked, rows);
    text += fmt::format("\n{}\n{}", PlayerTitle(asked, i),
                        ListTitle(form, {"made", "of all"}, colours));
    for (DetailRow& row : rows) {
      row.size =
          fmt::format("{:.2f} %", 100 * row.outcome.cases.Value() / run.answer.cases.Value());
      text += ListLine(form, row, colours);
    }
  }
  return text;
}

// Boards that come next with the equity of each player, the first one's best first.
std::string NextList(const AskedEquity& asked, const EquityRun& run, const Colours& colours) {
  std::vector<const NextOutcome*> all;
  for (const NextOutcome& next : run.answer.next) all.push_back(&next);
  std::ranges::stable_sort(all, std::ranges::greater{},
                           [](const NextOutcome* next) { return next->players[0].equity; });
  std::string head = fmt::format("{:<8}{:>8}", "next", "alike");
  for (std::size_t i = 0; i < asked.players.size(); ++i) {
    head += fmt::format("{:>12}", fmt::format("player {}", i + 1));
  }
  std::string text = "\n" + colours.Faint(head) + "\n";
  for (const NextOutcome* next : all) {
    text += fmt::format("{:<8}{:>8}", CardsText(InOrder(next->cards)), next->alike);
    for (const Outcome& outcome : next->players) {
      text += fmt::format("{:>10.3f} %", 100 * outcome.equity);
    }
    text += "\n";
  }
  return text;
}

std::string NextText(const AskedEquity& asked, const EquityRun& run, const Colours& colours) {
  if (!ComesOneCard(asked)) return NextList(asked, run, colours);
  std::string text;
  for (std::size_t i = 0; i < asked.players.size(); ++i) {
    text += DeckText(asked, run, i, colours);
  }
  return text;
}

// --- CSV and JSON ---

std::string CsvText(const std::string& text) {
  if (text.find_first_of(",\"") == text.npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

void WriteShare(const Outcome& outcome, double share, JsonWriter& json) {
  HasCases(outcome) ? json.Number(share) : json.Null();
}

// The last members of an object.
void WriteOutcome(const Outcome& outcome, bool high_low, JsonWriter& json) {
  json.Key("cases").Raw(CountJson(outcome.cases));
  WriteShare(outcome, outcome.equity, json.Key("equity"));
  if (high_low) WriteShare(outcome, outcome.low, json.Key("low"));
  json.Key("wins").Raw(CountJson(outcome.wins));
  json.Key("ties").Raw(CountJson(outcome.ties));
  json.CloseObject();
}

void WriteRow(const DetailRow& row, By by, bool high_low, JsonWriter& json) {
  const Titles titles = TitlesOf(by);
  json.OpenObject();
  if (by == By::kHand) {
    json.Key(titles.name).Cards(ParseCards(row.name).cards);
  } else {
    json.Key(by == By::kMade ? "category" : titles.name).Text(row.name);
  }
  if (!row.size.empty()) json.Key(titles.size).Raw(row.size);
  WriteOutcome(row.outcome, high_low, json);
}

bool IsFirst(std::span<const By> asked, std::size_t place) {
  return std::ranges::find(asked, asked[place]) ==
         asked.begin() + static_cast<std::ptrdiff_t>(place);
}

}  // namespace

bool ComesOneCard(const AskedEquity& asked) { return asked.board.size() >= 3; }

std::vector<HandClass> ClassesOf(const PlayerAnswer& player) {
  if (player.hands.empty() || player.hands[0].hand.cards.size() == 2) return CellsOf(player);
  std::map<std::string, HandClass> by_name;
  for (const auto& [hand, outcome] : player.hands) {
    const std::string name = OmahaHandName(InOrder(hand.cards));
    AddTo(by_name.try_emplace(name, HandClass{name, 0, {}}).first->second, outcome);
  }
  std::vector<HandClass> classes;
  for (auto& [name, of] : by_name) classes.push_back(std::move(of));
  return classes;
}

std::vector<DetailRow> DetailRows(const AskedEquity& asked, const EquityRun& run, By by) {
  std::vector<DetailRow> rows;
  if (by == By::kNext) {
    for (const NextOutcome& next : run.answer.next) {
      for (std::size_t i = 0; i < next.players.size(); ++i) {
        rows.push_back(
            {i, CardsText(InOrder(next.cards)), std::to_string(next.alike), next.players[i]});
      }
    }
    return rows;
  }
  for (std::size_t i = 0; i < run.answer.players.size(); ++i) {
    AddRows(asked, i, run.answer.players[i], by, rows);
  }
  return rows;
}

std::string DetailText(const AskedEquity& asked, const EquityRun& run, By by,
                       const Colours& colours) {
  switch (by) {
    case By::kClass:
      if (RulesOf(asked.question.game).hand_size == 2) return MatricesText(asked, run, colours);
      break;
    case By::kNext:
      return NextText(asked, run, colours);
    case By::kMade:
      return MadeText(asked, run, colours);
    case By::kHand:
      break;
  }
  return ListsText(asked, run, by, colours);
}

std::string DetailCsv(const AskedEquity& asked, const EquityRun& run, By by) {
  const Titles titles = TitlesOf(by);
  const bool sized = *titles.size != 0;
  const bool high_low = IsHighLow(asked.question.game);
  std::string csv = fmt::format("player,range,{}{}{},cases,equity,wins,ties{}\n", titles.name,
                                sized ? "," : "", titles.size, high_low ? ",low" : "");
  for (const DetailRow& row : DetailRows(asked, run, by)) {
    const Outcome& outcome = row.outcome;
    const auto share = [&](double of) { return HasCases(outcome) ? NumberText(of) : ""; };
    csv += fmt::format("{},{},{}{}{},{},{},{},{}{}\n", row.player + 1,
                       CsvText(asked.players[row.player]), CsvText(row.name), sized ? "," : "",
                       row.size, CountJson(outcome.cases), share(outcome.equity),
                       CountJson(outcome.wins), CountJson(outcome.ties),
                       high_low ? "," + share(outcome.low) : "");
  }
  return csv;
}

void WriteDetail(const AskedEquity& asked, const EquityRun& run, std::size_t player,
                 JsonWriter& json) {
  for (std::size_t i = 0; i < asked.by.size(); ++i) {
    const By by = asked.by[i];
    if (by == By::kNext || !IsFirst(asked.by, i)) continue;
    json.Key(by == By::kHand ? "hands_detail" : by == By::kClass ? "classes" : "made").OpenList();
    std::vector<DetailRow> rows;
    AddRows(asked, player, run.answer.players[player], by, rows);
    for (const DetailRow& row : rows) WriteRow(row, by, IsHighLow(asked.question.game), json);
    json.CloseList();
  }
}

void WriteNext(const AskedEquity& asked, const EquityRun& run, JsonWriter& json) {
  if (std::ranges::find(asked.by, By::kNext) == asked.by.end()) return;
  json.Key("next").OpenList();
  for (const NextOutcome& next : run.answer.next) {
    json.OpenObject();
    json.Key("cards").Cards(InOrder(next.cards));
    json.Key("alike").Number(next.alike);
    json.Key("players").OpenList();
    for (const Outcome& outcome : next.players) {
      json.OpenObject();
      WriteOutcome(outcome, IsHighLow(asked.question.game), json);
    }
    json.CloseList();
    json.CloseObject();
  }
  json.CloseList();
}

}  // namespace pokermath
