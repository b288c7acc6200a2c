// equity(): words are read by pages/, as those of the command line are, and so are the answer's
// texts written. An answer is kept as the library gave it, and turned into what is asked of it.

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "jobs/run.h"
#include "pages/equity_detail.h"
#include "pages/equity_report.h"
#include "pages/equity_svg.h"
#include "pages/equity_words.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pokermath/cards.h"
#include "python/src/attend.h"
#include "python/src/bindings.h"
#include "python/src/convert.h"
#include "python/src/ranges.h"

namespace pokermath {
namespace {

using Clock = std::chrono::steady_clock;

struct Answered {
  AskedEquity asked;
  EquityRun run;

  const EquityAnswer& answer() const { return run.answer; }
  const PlayerAnswer& player(std::size_t i) const { return run.answer.players[i]; }
};
using AnswerPointer = std::shared_ptr<const Answered>;

struct PlayerView {
  AnswerPointer of;
  std::size_t place;

  const PlayerAnswer& answer() const { return of->player(place); }
  const Outcome& total() const { return answer().total; }
};

// --- asking ---

struct EquityArguments {
  EquityWords words;
  std::vector<PlayerArgument> players, folded;
  int threads = 0;  ///< 0 for as many as there are processors, which takes a while to find out

  Game game() const { return words.game ? FindGame(*words.game).value_or(Game::kHoldem) : Game(); }

  /// Whether reading them and finding the way to answer takes some milliseconds at the most, and so
  /// does a way of one step: hands against each other, and two ranges of two cards.
  bool IsShort() const {
    const auto takes_boards = [](const std::string& what) {
      return what == "next" || what == "made";
    };
    if (!folded.empty() || std::ranges::any_of(words.by, takes_boards)) return false;
    if (players.size() <= 2 && !HasLargeRanges(game())) return true;
    return std::ranges::all_of(players,
                               [&](const PlayerArgument& player) { return player.IsHand(game()); });
  }
};

AskedEquity Read(const EquityArguments& arguments) {
  AskedEquity asked = ReadOptions(arguments.words);
  if (arguments.players.empty()) {
    throw UsageError("players are needed, like AhKd 7s7c");
  }
  const auto read = [&](const PlayerArgument& argument, std::vector<HandRange>& ranges,
                        std::vector<std::string>& names) {
    PlayerReading player = argument.Read(asked.question.game);
    ranges.push_back(std::move(player.range));
    names.push_back(std::move(player.name));
    for (std::string& warning : player.warnings) asked.warnings.push_back(std::move(warning));
  };
  for (const PlayerArgument& player : arguments.players) {
    read(player, asked.question.players, asked.players);
  }
  for (const PlayerArgument& folded : arguments.folded) {
    read(folded, asked.question.folded, asked.folded);
  }
  return asked;
}

constexpr int kMostThreads = 1024;

int ThreadsOrAll(int threads) {
  if (threads > 0) return threads;
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostThreads);
}

std::shared_ptr<Answered> Answer(AskedEquity asked, const Calculation& plan, RunOptions options,
                                 Clock::time_point start) {
  auto answered = std::make_shared<Answered>();
  answered->run = Run(plan, options);
  answered->run.elapsed = Clock::now() - start;
  answered->asked = std::move(asked);
  return answered;
}

std::shared_ptr<Answered> AnswerAttended(AskedEquity asked, const Calculation& plan, int threads,
                                         Clock::time_point start, Attention& attention) {
  RunOptions options{.threads = ThreadsOrAll(threads), .time = asked.time};
  options.go_on = [&](const RunState& state) {
    attention.done = state.done;
    attention.part = std::min(state.part, 1.0);  // time may be over
    return !attention.stop;
  };
  auto answered = Answer(std::move(asked), plan, options, start);
  attention.done = plan.method() == Method::kSampled
                       ? static_cast<std::int64_t>(answered->run.answer.cases.units)
                       : plan.steps();
  return answered;
}

std::shared_ptr<Answered> Ask(EquityArguments arguments, const py::object& progress) {
  const Clock::time_point start = Clock::now();
  const int threads = arguments.threads;
  if (!arguments.IsShort()) {
    return Attended(
        [=](Attention& attention) {
          AskedEquity asked = Read(arguments);
          const Calculation plan = PlanOf(asked);
          return AnswerAttended(std::move(asked), plan, threads, start, attention);
        },
        progress);
  }
  AskedEquity asked = Read(arguments);
  auto plan = std::make_shared<const Calculation>(PlanOf(asked));
  if (plan->steps() > 1 || !progress.is_none()) {
    return Attended(
        [=, asked = std::move(asked)](Attention& attention) mutable {
          return AnswerAttended(std::move(asked), *plan, threads, start, attention);
        },
        progress);
  }
  const bool quick = std::ranges::all_of(asked.question.players,
                                         [](const HandRange& range) { return range.size() == 1; });
  const auto answer = [&] { return Answer(std::move(asked), *plan, {}, start); };
  return quick ? answer() : WithoutLock(answer);
}

// --- arguments ---

void ReadMethod(py::handle value, EquityWords& words) {
  const std::string_view method = ViewOf("method", value);
  words.exact = method == "exact";
  words.sampled = method == "sampled";
  if (!words.exact && !words.sampled && method != "auto") {
    throw UsageError(fmt::format("method {} is not known: auto, exact or sampled", Quoted(method)));
  }
}

// One or several of what text_of reads.
void ReadBy(py::handle value, EquityWords& words) {
  if (PyUnicode_Check(value.ptr())) {
    words.by = {TextOf("by", value)};
    return;
  }
  if (!PySequence_Check(value.ptr())) RefuseType("by", "a str or a sequence of them", value);
  for (const py::handle item : py::reinterpret_borrow<py::object>(value)) {
    words.by.push_back(TextOf("by", item));
  }
}

int ThreadsOf(py::handle value) {
  if (value.is_none()) return 0;
  return ReadNumber("threads", WholeTextOf("threads", value), 1, kMostThreads);
}

std::vector<PlayerArgument> PlayersOf(py::handle values) {
  std::vector<PlayerArgument> players;
  for (const py::handle value : py::reinterpret_borrow<py::object>(values)) {
    // There may be no end to them.
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    players.emplace_back(value);
  }
  return players;
}

// An empty sequence of cards is none.
std::optional<std::string> SomeCardsOf(const char* name, py::handle value) {
  std::string cards = CardsTextOf(name, value);
  return cards.empty() ? std::nullopt : std::optional(std::move(cards));
}

std::shared_ptr<Answered> Equity(const py::tuple& players, py::handle game, py::handle board,
                                 py::handle dead, py::handle folded, py::handle to,
                                 py::handle method, py::handle standard_error, py::handle trials,
                                 py::handle time_ms, py::handle seed, py::handle threads,
                                 py::handle by, const py::object& progress) {
  EquityArguments arguments;
  EquityWords& words = arguments.words;
  words.of_object = true;
  words.by_name = "by";
  const Game of = GameOf(game);
  if (of != Game::kHoldem) words.game = NameOf(of);
  arguments.players = PlayersOf(players);
  if (!folded.is_none()) arguments.folded = PlayersOf(folded);
  if (!board.is_none()) words.board = SomeCardsOf("board", board);
  if (!dead.is_none()) words.dead = SomeCardsOf("dead", dead);
  if (!to.is_none()) words.to = TextOf("to", to);
  ReadMethod(method, words);
  if (!standard_error.is_none()) {
    words.standard_error = NumberTextOf("standard_error", standard_error);
  }
  if (!trials.is_none()) words.trials = WholeTextOf("trials", trials);
  if (!time_ms.is_none()) words.time_ms = WholeTextOf("time_ms", time_ms);
  if (!seed.is_none()) words.seed = WholeTextOf("seed", seed);
  if (!by.is_none()) ReadBy(by, words);
  arguments.threads = ThreadsOf(threads);
  std::shared_ptr<Answered> answered = Ask(std::move(arguments), progress);
  Warn(answered->asked.warnings);
  return answered;
}

// --- answers ---

CaseCount Losses(const Outcome& outcome) {
  return {outcome.cases.units - outcome.wins.units - outcome.ties.units, outcome.cases.unit};
}

py::tuple PlayersOf(const AnswerPointer& of) {
  py::tuple players(of->answer().players.size());
  for (std::size_t i = 0; i < players.size(); ++i) players[i] = PlayerView{of, i};
  return players;
}

py::tuple SharedOf(const PlayerView& player) {
  py::tuple shared(player.of->answer().players.size());
  for (std::size_t k = 0; k < shared.size(); ++k) shared[k] = CountOf(player.answer().shared[k]);
  return shared;
}

std::string PageOf(const Answered& answered) {
  const Colours plain(false);
  std::string page = EquityPage(answered.asked, answered.run, plain);
  for (const By by : answered.asked.by) {
    page += DetailText(answered.asked, answered.run, by, plain);
  }
  return page;
}

std::size_t PlaceOf(const Answered& answered, py::ssize_t player) {
  const auto players = static_cast<py::ssize_t>(answered.answer().players.size());
  if (player < -players || player >= players) {
    throw py::index_error(
        fmt::format("there is no player {}: {} players, the first one is 0", player, players));
  }
  return static_cast<std::size_t>(player < 0 ? player + players : player);
}

void CheckAsked(const Answered& answered, By by, const char* name) {
  if (std::ranges::count(answered.asked.by, by) != 0) return;
  throw UsageError(fmt::format("the question was not asked by='{}'", name));
}

// Rows of a detail as a structured array.
class RowTable {
 public:
  RowTable(const Answered& answered, std::vector<Column> front, std::size_t rows)
      : high_low_(IsHighLow(answered.asked.question.game)),
        whole_(answered.answer().cases.IsWhole() &&
               answered.answer().cases.units <= std::numeric_limits<std::int64_t>::max()),
        table_(Columns(std::move(front), high_low_, whole_), rows) {}

  Table& table() { return table_; }

  void Add(const Outcome& outcome) {
    const bool any = outcome.cases.units != 0;
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    table_.Add(any ? outcome.equity : kNone);
    if (high_low_) table_.Add(any ? outcome.low : kNone);
    for (const CaseCount* count : {&outcome.wins, &outcome.ties, &outcome.cases}) {
      table_.Add(*count, whole_);
    }
  }

  py::array array() const { return table_.array(); }

 private:
  static std::vector<Column> Columns(std::vector<Column> columns, bool high_low, bool whole) {
    const char* const count = whole ? "i8" : "f8";
    columns.push_back({"equity", "f8"});
    if (high_low) columns.push_back({"low", "f8"});
    for (const char* name : {"wins", "ties", "cases"}) columns.push_back({name, count});
    return columns;
  }

  bool high_low_;
  bool whole_;
  Table table_;
};

std::string TextType(std::size_t width) {
  return fmt::format("U{}", std::max<std::size_t>(width, 1));
}

py::array HandsOf(const Answered& answered, py::ssize_t of) {
  CheckAsked(answered, By::kHand, "hand");
  const std::vector<HandOutcome>& hands = answered.player(PlaceOf(answered, of)).hands;
  std::vector<const HandOutcome*> order;
  for (const HandOutcome& hand : hands) order.push_back(&hand);
  std::ranges::stable_sort(order, std::ranges::greater{},
                           [](const HandOutcome* hand) { return hand->outcome.equity; });
  const std::size_t width = 2 * HandSize(answered.asked.question.game);
  RowTable rows(answered, {{"hand", TextType(width)}, {"weight", "f8"}}, hands.size());
  for (const HandOutcome* hand : order) {
    std::vector<int> cards(hand->hand.cards.begin(), hand->hand.cards.end());
    std::ranges::sort(cards, comparefun);
    rows.table().Add(CardsText(cards), width);
    rows.table().Add(static_cast<double>(hand->hand.weight) / kWholeWeight);
    rows.Add(hand->outcome);
  }
  return rows.array();
}

// Classes and categories, as the pages list them.
py::array RowsOf(const Answered& answered, py::ssize_t of, By by, const char* asked,
                 const char* name) {
  CheckAsked(answered, by, asked);
  const std::size_t player = PlaceOf(answered, of);
  std::vector<DetailRow> list = DetailRows(answered.asked, answered.run, by);
  std::erase_if(list, [=](const DetailRow& row) { return row.player != player; });
  std::size_t width = 1;
  for (const DetailRow& row : list) width = std::max(width, row.name.size());
  std::vector<Column> front = {{name, TextType(width)}};
  const bool sized = by != By::kMade;
  if (sized) front.push_back({by == By::kNext ? "alike" : "hands", "i8"});
  RowTable rows(answered, std::move(front), list.size());
  for (const DetailRow& row : list) {
    rows.table().Add(row.name, width);
    if (sized) rows.table().Add(static_cast<std::int64_t>(std::stoll(row.size)));
    rows.Add(row.outcome);
  }
  return rows.array();
}

// The picture of the first detail that has one; None if there is none.
py::object SvgOf(const Answered& answered) {
  for (const By by : answered.asked.by) {
    if (HasPicture(answered.asked, by)) return py::str(DetailSvg(answered.asked, answered.run, by));
  }
  return py::none();
}

void AddPlayer(py::module_& module) {
  py::class_<PlayerView> type(module, "Player",
                              "What a player wins. Not made by hand: `Answer.players`.");
  const auto add = [&](const char* name, const auto& get, const char* meaning) {
    type.def_property_readonly(name, get, meaning);
  };
  add(
      "range", [](const PlayerView& p) { return p.of->asked.players[p.place]; },
      "The player as he was worded: \"AhKd\", \"TT+,AQs+\", \"random\".");
  add(
      "hands", [](const PlayerView& p) { return p.answer().hands_left; },
      "Hands of the range that the known cards leave.");
  add(
      "equity", [](const PlayerView& p) { return p.total().equity; },
      "Share of the pot, 0..1: a pot shared by k players counts 1/k.");
  add(
      "low", [](const PlayerView& p) { return p.total().low; },
      "In Hi/Lo, what of the equity comes from low hands; else 0.");
  add(
      "wins", [](const PlayerView& p) { return CountOf(p.total().wins); },
      "Cases that he wins alone; in Hi/Lo, in which he takes the whole pot. An int, or a float "
      "where\n"
      "weights are not whole.");
  add(
      "ties", [](const PlayerView& p) { return CountOf(p.total().ties); },
      "Cases in which he takes a part of the pot.");
  add(
      "losses", [](const PlayerView& p) { return CountOf(Losses(p.total())); },
      "Cases in which he takes nothing.");
  add("shared", SharedOf,
      "[k]: cases in which k + 1 players share the best hand, he among them; in Hi/Lo the best "
      "high.");
  add(
      "standard_error",
      [](const PlayerView& p) -> py::object {
        const std::optional<double> error = p.answer().standard_error;
        return error ? py::object(py::float_(*error)) : py::none();
      },
      "Of the equity, 0..1, where it was sampled; None where it was counted, and below two "
      "trials.");
  type.def("__repr__", [](const PlayerView& p) {
    return fmt::format("<Player {}: equity {:.6f}>", p.of->asked.players[p.place],
                       p.total().equity);
  });
}

// A picture that the package's own Python draws.
py::object Drawn(const char* name, const std::shared_ptr<Answered>& answered) {
  return py::module_::import("pokermath._pictures").attr(name)(answered);
}

}  // namespace

void AddEquity(py::module_& module) {
  AddPlayer(module);
  py::class_<Answered, std::shared_ptr<Answered>> type(
      module, "Answer",
      "The answer of equity(). It prints as a page, and in a notebook as a table with a picture.");
  const auto add = [&](const char* name, const auto& get, const char* meaning) {
    type.def_property_readonly(name, get, meaning);
  };
  add(
      "game", [](const Answered& a) { return NameOf(a.asked.question.game); }, "Name of the game.");
  add(
      "board", [](const Answered& a) { return CodesOf(a.asked.board); }, "Card codes, as given.");
  add(
      "dead", [](const Answered& a) { return CodesOf(a.asked.dead); }, "Card codes, as given.");
  add(
      "method",
      [](const Answered& a) { return a.answer().method == Method::kSampled ? "sampled" : "exact"; },
      "\"exact\" or \"sampled\".");
  add(
      "reason", [](const Answered& a) { return a.answer().reason; }, "Why that method, in words.");
  add(
      "cases", [](const Answered& a) { return CountOf(a.answer().cases); },
      "Cases of boards and hands, or trials. An int, or a float where weights are not whole.");
  add(
      "elapsed_ms", [](const Answered& a) { return 1e3 * a.run.elapsed->count(); },
      "Milliseconds that it took.");
  add(
      "equity", [](const Answered& a) { return a.player(0).total.equity; },
      "Share of the pot of the first player, 0..1.");
  add(
      "players", [](const std::shared_ptr<Answered>& a) { return PlayersOf(a); },
      "Every player's results, a tuple of Player.");
  add(
      "by_hand", [](const Answered& a) { return HandsOf(a, 0); }, "hands(0).");
  type.def("hands", HandsOf, py::arg("player") = 0,
           "Every hand of a player, asked for with by=\"hand\": a structured array that\n"
           "pandas.DataFrame takes as it is, the best equity first.\n\n"
           "Fields: hand (text), weight (0..1), equity (0..1, nan for a hand without a case), in\n"
           "Hi/Lo low, then wins, ties and cases (int64; float64 where weights are not whole).\n"
           "IndexError for a player that there is not, ValueError if it was not asked for.");
  type.def(
      "classes",
      [](const Answered& a, py::ssize_t i) { return RowsOf(a, i, By::kClass, "class", "class"); },
      py::arg("player") = 0,
      "The classes of a player's hands (by=\"class\"): fields class (\"AKs\"), hands, then as of "
      "hands().");
  type.def(
      "next",
      [](const Answered& a, py::ssize_t i) { return RowsOf(a, i, By::kNext, "next", "next"); },
      py::arg("player") = 0,
      "A player by what comes next (by=\"next\"): fields next (cards), alike (how many flops it\n"
      "stands for), then as of hands().");
  type.def(
      "made",
      [](const Answered& a, py::ssize_t i) { return RowsOf(a, i, By::kMade, "made", "made"); },
      py::arg("player") = 0,
      "What a player makes (by=\"made\"): fields made (\"flush\"), then as of hands().");
  type.def(
      "to_dict",
      [](const Answered& a) { return ObjectOf(Json::parse(EquityJson(a.asked, a.run, ""))); },
      "What the command line prints with --json.");
  type.def("_svg", SvgOf);
  type.def("_repr_html_", [](const std::shared_ptr<Answered>& a) { return Drawn("table", a); });
  type.def("_repr_svg_", [](const std::shared_ptr<Answered>& a) { return Drawn("picture", a); });
  type.def("__repr__", PageOf);
  module.def("equity", Equity);
}

}  // namespace pokermath
