// Questions about one hand, one range text or one pot: what the command line answers as a dict, as
// the page that it prints, and as its picture where it has one.

#include <fmt/format.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

#include "pages/card_words.h"
#include "pages/colours.h"
#include "pages/errors.h"
#include "pages/eval.h"
#include "pages/game.h"
#include "pages/low.h"
#include "pages/number_text.h"
#include "pages/nuts.h"
#include "pages/omaha_range_page.h"
#include "pages/outs.h"
#include "pages/points.h"
#include "pages/pots.h"
#include "pages/range_page.h"
#include "pokermath/cards.h"
#include "python/src/attend.h"
#include "python/src/bindings.h"
#include "python/src/convert.h"

namespace pokermath {
namespace {

const Colours kPlain(false);

py::tuple Made(const Json& json, const std::string& page, py::object svg = py::none()) {
  return py::make_tuple(ObjectOf(json), page, std::move(svg));
}

Game HighGameOf(py::handle game) { return ReadGame(TextOf("game", game), kHighGames, "game"); }

OmahaHand OmahaHandOf(py::handle hand, py::handle board, py::handle game, bool low,
                      std::size_t most_board) {
  OmahaQuestion question;
  question.hand = CardsTextOf("hand", hand);
  question.board = CardsTextOf("board", board);
  question.low = low;
  question.game_option = "game";
  if (!game.is_none()) question.game = TextOf("game", game);
  return ReadOmahaHand(question, most_board);
}

py::tuple OutsOf(py::handle hand, py::handle board, py::handle game) {
  const OutsAnswer answer = FindOuts(OmahaHandOf(hand, board, game, false, 4));
  return Made(OutsJson(answer), OutsText(answer, kPlain), py::str(OutsSvg(answer)));
}

py::tuple NutsOf(py::handle hand, py::handle board, py::handle game) {
  const OmahaHand of = OmahaHandOf(hand, board, game, false, 5);
  const NutsAnswer answer = WithoutLock([&] { return FindNuts(of); });
  return Made(NutsJson(answer), NutsText(answer, kPlain));
}

py::tuple LowOf(py::handle hand, py::handle board, py::handle game) {
  const LowAnswer answer = FindLow(OmahaHandOf(hand, board, game, true, 5));
  return Made(LowJson(answer), LowText(answer, kPlain));
}

py::tuple BestHandOf(py::handle cards, py::handle board, py::handle game) {
  const Game of = HighGameOf(game);
  if (IsOmaha(of)) {
    if (board.is_none()) {
      throw UsageError("board is needed: an Omaha hand plays three cards of it");
    }
    const OmahaHand hand = OmahaHandOf(cards, board, game, false, 5);
    return Made(OmahaEvalJson(hand), OmahaEvalText(hand, kPlain));
  }
  std::string text = CardsTextOf("cards", cards);
  if (!board.is_none()) text += " " + CardsTextOf("board", board);
  const EvalAnswer answer =
      Evaluate(of == Game::kShortDeck, ReadCards(text, 5, 7, "5 to 7 have a value"));
  return Made(EvalJson(answer), EvalText(answer, kPlain));
}

int Compare(py::handle first, py::handle second, py::handle board, py::handle game) {
  const Game of = HighGameOf(game);
  if (IsOmaha(of)) throw UsageError("game: hands of holdem and shortdeck are compared");
  const std::string texts[2] = {CardsTextOf("a hand", first), CardsTextOf("a hand", second)};
  std::vector<int> hands[2];
  for (std::size_t i = 0; i < 2; ++i) hands[i] = ReadCards(texts[i], 2, 2, "a hand has 2");
  const std::string shared = board.is_none() ? "" : CardsTextOf("board", board);
  std::vector<int> cards = ReadCards(shared);
  if (!cards.empty()) cards = ReadCards(shared, 3, 5, "a board has 3 to 5 here");
  // Reads all of them as one list, which refuses a card that is there twice.
  CheckDeck(of == Game::kShortDeck, ReadCards(texts[0] + " " + texts[1] + " " + shared));
  return Judge(of == Game::kShortDeck, hands[0], hands[1], std::move(cards));
}

py::object PointsOf(py::handle hand, bool high_low) {
  const std::vector<int> cards =
      ReadCards(CardsTextOf("a hand", hand), 4, 4, "a starting hand has 4");
  const double points = FindPoints({cards}, high_low).points[0];
  return high_low ? py::object(py::float_(points)) : py::int_(static_cast<int>(points));
}

std::vector<int> NumbersOf(const char* name, py::handle values, int low) {
  if (PyUnicode_Check(values.ptr()) || PySequence_Check(values.ptr()) == 0) {
    RefuseType(name, "a sequence of ints", values);
  }
  std::vector<int> numbers;
  for (const py::handle value : py::reinterpret_borrow<py::object>(values)) {
    numbers.push_back(
        ReadNumber(name, WholeTextOf(name, value), low, std::numeric_limits<int>::max()));
  }
  return numbers;
}

py::tuple PotsOf(py::handle stakes, py::handle scores) {
  const PotsAnswer answer =
      FindPots(NumbersOf("stakes", stakes, 0),
               NumbersOf("scores", scores, std::numeric_limits<int>::min()), "");
  return Made(PotsJson(answer), PotsText(answer, kPlain));
}

RangeOptions OptionsOf(Game game, py::handle table, bool bare_offsuit) {
  return ReadRangeOptions(game, TextOf("table", table), bare_offsuit, "table");
}

void RefuseTwoCardOptions(Game game, py::handle table, bool bare_offsuit) {
  const std::string name = TextOf("table", table);
  if (name == "equilibrium" && !bare_offsuit) return;
  throw UsageError(fmt::format("{} is for two cards, not for {}",
                               bare_offsuit ? "bare_offsuit" : "table", TitleOf(game)));
}

py::tuple RankOf(py::handle hand, py::handle game, py::handle table) {
  const Game of = HighGameOf(game);
  const std::string text =
      PyUnicode_Check(hand.ptr()) ? TextOf("hand", hand) : CardsTextOf("hand", hand);
  if (IsOmaha(of)) {
    RefuseTwoCardOptions(of, table, false);
    const OmahaRankAnswer answer = FindOmahaRank(of, text, "");
    return Made(OmahaRankJson(answer), OmahaRankPage(answer, kPlain));
  }
  const RankAnswer answer = FindRank(text, OptionsOf(of, table, false));
  return Made(RankJson(answer), RankPage(answer));
}

py::tuple DescribeRangeOf(py::handle range, py::handle game, py::handle table, bool bare_offsuit,
                          py::handle dead) {
  const Game of = HighGameOf(game);
  const std::string text = TextOf("text", range);
  if (IsOmaha(of)) {
    RefuseTwoCardOptions(of, table, bare_offsuit);
    const std::vector<int> cards = dead.is_none() ? std::vector<int>() : CardsOf("dead", dead);
    const OmahaRangeAnswer answer =
        Attended([=](Attention&) { return DescribeOmahaRange(of, text, cards); });
    return Made(OmahaRangeJson(answer), OmahaRangePage(answer, kPlain));
  }
  if (!dead.is_none()) {
    throw UsageError("dead goes with game " + NamesOf(OmahaGames(false)));
  }
  const RangeAnswer answer = DescribeRange(text, OptionsOf(of, table, bare_offsuit));
  return Made(RangeJson(answer), RangePage(answer, kPlain), py::str(RangeSvg(answer)));
}

}  // namespace

void AddHands(py::module_& module) {
  module.def("cards", [](py::handle cards) { return CodesOf(CardsOf("cards", cards)); });
  module.def("card_text", [](py::handle cards) { return CardsText(CardsOf("cards", cards)); });
  module.def("outs", OutsOf);
  module.def("nuts", NutsOf);
  module.def("low", LowOf);
  module.def("best_hand", BestHandOf);
  module.def("compare", Compare);
  module.def("points", PointsOf);
  module.def("pots", PotsOf);
  module.def("rank", RankOf);
  module.def("describe_range", DescribeRangeOf);
}

}  // namespace pokermath
