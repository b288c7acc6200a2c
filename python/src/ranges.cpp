// Range and Hand.

#include "python/src/ranges.h"

#include <fmt/format.h>
#include <pybind11/operators.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <memory>
#include <numeric>

#include "pages/card_words.h"
#include "pages/colours.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pages/range_picture.h"
#include "pokermath/cards.h"
#include "python/src/attend.h"
#include "python/src/bindings.h"
#include "ranges/hand_classes.h"

namespace pokermath {
namespace {

using Hands = std::span<const WeightedHand>;

double Share(std::int32_t weight) { return static_cast<double>(weight) / kWholeWeight; }

// --- Hand ---

struct Hand {
  CardSet cards;

  bool operator==(const Hand&) const = default;
};

// The hands of a range one by one.
struct HandIterator {
  HandRange range;
  std::size_t next = 0;
  bool with_weights = false;

  py::object Next();
};

Hand HandOf(py::handle value) {
  if (IsA<Hand>(value)) return value.cast<Hand>();
  const std::string text = CardsTextOf("a hand", value);
  CardsResult read = ParseCards(text);
  if (!read.error.empty()) throw UsageError(read.error);
  if (read.cards.size() < 2 || read.cards.size() > 7) {
    throw UsageError(
        fmt::format("{} has {} cards: a hand has 2 to 7", Quoted(text), read.cards.size()));
  }
  return {CardSet(read.cards)};
}

int CardAt(const Hand& hand, py::ssize_t place) {
  const auto cards = InOrder(hand.cards);
  const auto size = static_cast<py::ssize_t>(cards.size());
  if (place < -size || place >= size) throw py::index_error("a hand has no such card");
  return cards[static_cast<std::size_t>(place < 0 ? place + size : place)];
}

// "AKs" of two cards, "aces, double-suited" of four to six; else the cards.
std::string NameOfHand(const Hand& hand) {
  const std::vector<int> cards = InOrder(hand.cards);
  if (IsOmahaHandSize(static_cast<int>(cards.size()))) return OmahaHandName(cards);
  if (cards.size() != 2) return CardsText(cards);
  const int cell = CellOf(cards[0], cards[1]);
  return RangeMatrix::Name(cell / 13, cell % 13);
}

void AddHand(py::module_& module) {
  py::class_<Hand>(module, "Hand",
                   "Two to seven cards without an order: Hand(\"AhKd\"). As a sequence, its card "
                   "codes, the highest\nrank first; as text, \"AhKd\". ValueError for what is no "
                   "such hand.")
      .def(py::init(&HandOf), py::arg("cards"))
      .def_property_readonly(
          "cards", [](const Hand& h) { return CodesOf(InOrder(h.cards)); },
          "Card codes, the highest rank first.")
      .def_property_readonly(
          "name", NameOfHand,
          "\"AKo\" of two cards, \"aces, double-suited\" of four to six; else the "
          "cards.")
      .def("__len__", [](const Hand& h) { return h.cards.size(); })
      .def("__getitem__", CardAt)
      .def("__iter__", [](const Hand& h) { return py::iter(CodesOf(InOrder(h.cards))); })
      .def("__contains__",
           [](const Hand& h, int card) { return 0 <= card && card < 52 && h.cards.Contains(card); })
      .def(py::self == py::self)
      .def("__hash__", [](const Hand& h) { return py::hash(py::int_(h.cards.bits())); })
      .def("__str__", [](const Hand& h) { return CardsText(InOrder(h.cards)); })
      .def("__repr__", [](const Hand& h) { return "Hand('" + CardsText(InOrder(h.cards)) + "')"; })
      .def("__reduce__", [](const Hand& h) {
        return py::make_tuple(py::type::of<Hand>(), py::make_tuple(CardsText(InOrder(h.cards))));
      });
}

// --- reading ---

NamedRange ReadNamed(const std::string& text, Game game, std::vector<std::string>& warnings) {
  if (Pieces(text).empty()) return {HandRange(game), ""};
  PlayerReading read = ReadPlayer(text, game);
  warnings = std::move(read.warnings);
  return {std::move(read.range), std::move(read.name)};
}

NamedRange RangeOf(const std::string& text, Game game) {
  std::vector<std::string> warnings;
  const auto read = [text, game, &warnings] { return ReadNamed(text, game, warnings); };
  if (!HasLargeRanges(game)) {
    NamedRange range = read();
    Warn(warnings);
    return range;
  }
  auto [range, said] = Attended([text, game](Attention&) {
    std::vector<std::string> all;
    NamedRange named = ReadNamed(text, game, all);
    return std::pair(std::move(named), std::move(all));
  });
  Warn(said);
  return range;
}

void CheckHand(CardSet hand, Game game) {
  const GameRules& rules = RulesOf(game);
  if (hand.size() == rules.hand_size && (hand - rules.Deck()).empty()) return;
  throw UsageError(fmt::format("{} is not a hand of {}, which has {} cards of its deck",
                               Quoted(CardsText(InOrder(hand))), rules.name, rules.hand_size));
}

std::int32_t WeightOf(double weight) {
  const double units = std::round(weight * kWholeWeight);
  if (!(units >= 1 && units <= kWholeWeight)) {
    throw UsageError(fmt::format("weight {} is not accepted: 0.0001 to 1", weight));
  }
  return static_cast<std::int32_t>(units);
}

// Hands and their weights, from a dict or from hands alone.
NamedRange RangeOfHands(const py::object& hands, py::handle game) {
  const Game of = GameOf(game);
  std::vector<WeightedHand> list;
  const bool weighted = PyMapping_Check(hands.ptr()) != 0 && py::hasattr(hands, "items");
  for (const py::handle item : weighted ? py::object(hands.attr("items")()) : hands) {
    const py::object pair = py::reinterpret_borrow<py::object>(item);
    const Hand hand = HandOf(weighted ? py::object(pair[py::int_(0)]) : pair);
    CheckHand(hand.cards, of);
    const double weight = weighted ? PyFloat_AsDouble(py::object(pair[py::int_(1)]).ptr()) : 1;
    if (PyErr_Occurred() != nullptr) throw py::error_already_set();
    list.push_back({hand.cards, WeightOf(weight)});
  }
  return {HandRange(of, std::move(list)), ""};
}

// --- asking ---

bool Holds(const NamedRange& all, py::handle value) {
  const Game game = all.range.game();
  if (!PyUnicode_Check(value.ptr()) && !IsA<NamedRange>(value)) {
    return all.range.WeightOf(HandOf(value).cards) > 0;
  }
  const HandRange part = IsA<NamedRange>(value) ? value.cast<const NamedRange&>().range
                                                : RangeOf(TextOf("a hand", value), game).range;
  if (part.empty()) return true;
  return WithoutLock([&] {
    return std::ranges::all_of(
        part.hands(), [&](const WeightedHand& hand) { return all.range.WeightOf(hand.cards) > 0; });
  });
}

double WeightIn(const NamedRange& range, py::handle value) {
  const Hand hand = HandOf(value);
  const int weight = range.range.WeightOf(hand.cards);
  if (weight == 0) throw py::key_error(CardsText(InOrder(hand.cards)));
  return Share(weight);
}

double WeightOfAll(const HandRange& range) {
  if (range.IsEvery()) return static_cast<double>(range.size());
  const std::int64_t units =
      std::accumulate(range.hands().begin(), range.hands().end(), std::int64_t{0},
                      [](std::int64_t sum, const WeightedHand& hand) { return sum + hand.weight; });
  return static_cast<double>(units) / kWholeWeight;
}

double ShareOf(const HandRange& range) {
  return WeightOfAll(range) / static_cast<double>(HandRange::Every(range.game()).size());
}

py::array WeightsOf(const HandRange& range) {
  py::array_t<double> weights(static_cast<py::ssize_t>(range.size()));
  double* next = weights.mutable_data();
  for (const WeightedHand& hand : range.hands()) *next++ = Share(hand.weight);
  return weights;
}

py::array CodesOfHands(const HandRange& range) {
  const int size = RulesOf(range.game()).hand_size;
  py::array_t<std::uint8_t> codes({static_cast<py::ssize_t>(range.size()), py::ssize_t{size}});
  std::uint8_t* const first = codes.mutable_data();
  return WithoutLock([&] {
           std::uint8_t* next = first;
           for (const WeightedHand& hand : range.hands()) {
             std::uint8_t* const start = next;
             for (const int card : hand.cards) *next++ = static_cast<std::uint8_t>(card);
             std::sort(start, next, comparefun);
           }
           return true;
         }),
         std::move(codes);
}

// --- sets ---

void CheckGame(const HandRange& a, const HandRange& b) {
  if (a.game() == b.game()) return;
  throw UsageError(
      fmt::format("ranges of {} and of {} do not go together", NameOf(a.game()), NameOf(b.game())));
}

// Walks two lists of hands side by side; `take` says the weight that is kept of the two, 0 for
// none.
template <typename Take>
NamedRange Merged(const NamedRange& a, const NamedRange& b, const Take& take) {
  CheckGame(a.range, b.range);
  return WithoutLock([&] {
    std::vector<WeightedHand> merged;
    const Hands left = a.range.hands(), right = b.range.hands();
    auto i = left.begin();
    auto j = right.begin();
    while (i != left.end() || j != right.end()) {
      const bool from_left = j == right.end() || (i != left.end() && i->cards <= j->cards);
      const bool from_right = i == left.end() || (j != right.end() && j->cards <= i->cards);
      const CardSet cards = from_left ? i->cards : j->cards;
      const std::int32_t weight = take(from_left ? i->weight : 0, from_right ? j->weight : 0);
      if (weight > 0) merged.push_back({cards, weight});
      if (from_left) ++i;
      if (from_right) ++j;
    }
    return NamedRange{HandRange(a.range.game(), std::move(merged)), ""};
  });
}

// --- writing ---

std::string WrittenText(const HandRange& range) {
  if (!HasLargeRanges(range.game())) return RangeText(range);
  return Attended([range](Attention&) { return RangeText(range); });
}

std::string ReprOf(const NamedRange& range) {
  const Game game = range.range.game();
  const py::str text(range.name.empty() ? WrittenText(range.range) : range.name);
  std::string repr = "Range(" + py::repr(text).cast<std::string>();
  if (game != Game::kHoldem) repr += fmt::format(", game='{}'", NameOf(game));
  return repr + ")";
}

py::object SvgOf(const NamedRange& named) {
  const HandRange& range = named.range;
  if (HasLargeRanges(range.game())) return py::none();
  Spec spec;
  std::array<std::int64_t, 169> units{}, hands{};
  for (const WeightedHand& hand : range.hands()) {
    const std::vector<int> cards = InOrder(hand.cards);
    spec.Insert(cards[0], cards[1]);
    const auto cell = static_cast<std::size_t>(CellOf(cards[0], cards[1]));
    units[cell] += hand.weight;
    ++hands[cell];
  }
  std::array<std::string, 169> notes;
  for (std::size_t cell = 0; cell < notes.size(); ++cell) {
    if (units[cell] == hands[cell] * kWholeWeight) continue;
    notes[cell] = fmt::format("{:.3g}", static_cast<double>(units[cell]) /
                                            static_cast<double>(hands[cell] * kWholeWeight));
  }
  constexpr std::size_t kLongestTitle = 60;
  const std::string text = named.Name();
  const std::string holds = fmt::format("{} hands, {:.2f} %", range.size(), 100 * ShareOf(range));
  const bool is_short = text.size() <= kLongestTitle && !text.empty();
  return py::str(MatrixSvg(RangeMatrix(spec, RulesOf(range.game()).IsShortDeck()),
                           is_short ? fmt::format("{}  ({})", text, holds) : holds, notes));
}

// --- hash and pickle ---

std::size_t HashOf(const HandRange& range) {
  return WithoutLock([&] {
    std::uint64_t hash = 0xCBF29CE484222325 + static_cast<std::uint64_t>(range.game());
    for (const WeightedHand& hand : range.hands()) {
      for (const std::uint64_t part :
           {hand.cards.bits(), static_cast<std::uint64_t>(hand.weight)}) {
        hash = std::rotl((hash ^ part) * 0x9E3779B97F4A7C15, 29);
      }
    }
    return static_cast<std::size_t>(hash);
  });
}

constexpr std::size_t kHandBytes = 12;  // the bits of the cards, the weight

// A range whose text may be anything: it is kept only if it reads to the range.
NamedRange WithName(NamedRange named) {
  if (named.name.empty()) return named;
  std::vector<std::string> warnings;
  if (ReadNamed(named.name, named.range.game(), warnings).range == named.range) return named;
  throw UsageError("these are no bytes of a pickled range");
}

py::tuple StateOf(const NamedRange& named) {
  const HandRange& range = named.range;
  std::string bytes;
  if (!range.IsEvery()) {
    bytes.resize(range.size() * kHandBytes);
    char* next = bytes.data();
    for (const WeightedHand& hand : range.hands()) {
      const std::uint64_t bits = hand.cards.bits();
      std::memcpy(next, &bits, 8);
      std::memcpy(next + 8, &hand.weight, 4);
      next += kHandBytes;
    }
  }
  const std::uint64_t every = range.IsEvery() ? range.EveryOf().bits() : 0;
  return py::make_tuple(NameOf(range.game()), named.name, every, py::bytes(bytes));
}

NamedRange OfState(py::handle game_name, py::handle text, py::handle every_of, py::handle bytes) {
  const auto refuse = [] { throw UsageError("these are no bytes of a pickled range"); };
  const std::string name = TextOf("name", text);
  const std::optional<Game> game = FindGame(TextOf("game", game_name));
  if (!game) refuse();
  if (!PyLong_Check(every_of.ptr())) RefuseType("cards", "an int", every_of);
  if (!PyBytes_Check(bytes.ptr())) RefuseType("hands", "bytes", bytes);
  const std::uint64_t every = PyLong_AsUnsignedLongLong(every_of.ptr());
  if (PyErr_Occurred() != nullptr) {
    PyErr_Clear();
    refuse();
  }
  const CardSet deck = RulesOf(*game).Deck();
  if (every != 0) {
    const CardSet cards = CardSet::OfBits(every);
    if (!(cards - deck).empty()) refuse();
    return WithName({HandRange::Every(*game).Without(deck - cards), name});
  }
  const std::string_view view(PyBytes_AS_STRING(bytes.ptr()),
                              static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr())));
  if (view.size() % kHandBytes != 0) refuse();
  std::vector<WeightedHand> hands(view.size() / kHandBytes);
  for (std::size_t i = 0; i < hands.size(); ++i) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, view.data() + i * kHandBytes, 8);
    std::memcpy(&hands[i].weight, view.data() + i * kHandBytes + 8, 4);
    hands[i].cards = CardSet::OfBits(bits);
    if (hands[i].cards.size() != RulesOf(*game).hand_size || !(hands[i].cards - deck).empty() ||
        hands[i].weight < 1 || hands[i].weight > kWholeWeight) {
      refuse();
    }
  }
  return WithName({HandRange(*game, std::move(hands)), name});
}

py::object HandIterator::Next() {
  if (next >= range.size()) throw py::stop_iteration();
  const WeightedHand& hand = range.hands()[next++];
  py::object cards = py::cast(Hand{hand.cards});
  return with_weights ? py::make_tuple(std::move(cards), Share(hand.weight)) : std::move(cards);
}

}  // namespace

PlayerArgument::PlayerArgument(py::handle value) {
  if (PyUnicode_Check(value.ptr())) {
    text = TextOf("a player", value);
  } else if (IsA<NamedRange>(value)) {
    range = value.cast<NamedRange>();
  } else {
    text = CardsTextOf("a player", value);
  }
}

bool PlayerArgument::IsHand(Game game) const {
  return !range && ParseCards(text).cards.size() == HandSize(game);
}

PlayerReading PlayerArgument::Read(Game game) const {
  if (!range) return ReadPlayer(text, game);
  if (range->range.game() != game) {
    throw UsageError(
        fmt::format("a range of {} is no player of {}", NameOf(range->range.game()), NameOf(game)));
  }
  return {range->range, range->Name(), {}};
}

void AddRanges(py::module_& module) {
  AddHand(module);
  module.def("unpickled_range", OfState);
  py::class_<HandIterator>(module, "_HandIterator")
      .def("__iter__", [](HandIterator& i) -> HandIterator& { return i; })
      .def("__next__", &HandIterator::Next);
  py::class_<NamedRange>(
      module, "Range",
      "Hands of a game with weights, 0.0001 to 1: Range(\"TT+,AQs+:0.5\"), Range(\"AAxx:ds\",\n"
      "game=\"omaha\"). Never changes.\n\n"
      "Text: classes (AA, AKs, AKo, AK), with all better ones (TT+, A9s+), runs (JJ-88), hands\n"
      "(AhKd), percentages (15%), random; a weight behind a colon. ValueError says where a text\n"
      "cannot be read and what was expected; a UserWarning what may be meant otherwise.\n\n"
      "len() is the number of hands, and iteration gives them, each a Hand; items() gives pairs "
      "of\n"
      "hand and weight, range[hand] its weight (KeyError if it is not there). `in` takes a hand, "
      "or\n"
      "a text or range of which all hands have to be there.\n\n"
      "a | b has the hands of both, the larger weight holds; a & b those that are in both, the\n"
      "smaller weight holds; a - b those of a that are not in b. Equal are ranges of the same "
      "game,\n"
      "hands and weights.")
      .def(py::init([](py::handle text, py::handle game) {
             return RangeOf(TextOf("a range", text), GameOf(game));
           }),
           py::arg("text"), py::kw_only(), py::arg("game") = "holdem")
      .def_static(
          "of", [](const py::object& hands, py::handle game) { return RangeOfHands(hands, game); },
          py::arg("hands"), py::kw_only(), py::arg("game") = "holdem",
          "The range of some hands, or of a dict of hands and their weights, 0.0001 to 1. Of a "
          "hand\n"
          "given twice the last weight holds.")
      .def_static(
          "percent",
          [](double percent, py::handle game) {
            return RangeOf(fmt::format("{}%", percent), GameOf(game));
          },
          py::arg("percent"), py::kw_only(), py::arg("game") = "holdem",
          "The strongest so many percent, 0..100, as in the text \"15%\".")
      .def_static(
          "random", [](py::handle game) { return RangeOf("random", GameOf(game)); }, py::kw_only(),
          py::arg("game") = "holdem", "Every hand.")
      .def_property_readonly(
          "game", [](const NamedRange& r) { return NameOf(r.range.game()); }, "Name of the game.")
      .def_property_readonly(
          "text", [](const NamedRange& r) { return WrittenText(r.range); },
          "Range text that reads back to the same range, the shortest one that is found.")
      .def_property_readonly(
          "combos", [](const NamedRange& r) { return WeightOfAll(r.range); }, "Sum of all weights.")
      .def_property_readonly(
          "share", [](const NamedRange& r) { return ShareOf(r.range); },
          "Sum of all weights, of all hands of the game, 0..1.")
      .def_property_readonly(
          "weights", [](const NamedRange& r) { return WeightsOf(r.range); },
          "Weights in the order of iteration, shape (n,), float64, 0..1.")
      .def_property_readonly(
          "hands", [](const NamedRange& r) { return CodesOfHands(r.range); },
          "Card codes in the order of iteration, shape (n, cards of a hand), uint8, the highest "
          "rank first.")
      .def("__len__", [](const NamedRange& r) { return r.range.size(); })
      .def("__iter__", [](const NamedRange& r) { return HandIterator{r.range}; })
      .def(
          "items",
          [](const NamedRange& r) { return HandIterator{.range = r.range, .with_weights = true}; },
          "Pairs of hand and weight.")
      .def("__contains__", Holds)
      .def("__getitem__", WeightIn)
      .def(
          "without",
          [](const NamedRange& r, py::handle dead) {
            return NamedRange{r.range.Without(CardSet(CardsOf("dead", dead))), ""};
          },
          py::arg("dead"), "The hands that hold none of these cards.")
      .def(
          "__or__",
          [](const NamedRange& a, const NamedRange& b) {
            return Merged(a, b, [](int x, int y) { return std::max(x, y); });
          },
          py::is_operator())
      .def(
          "__and__",
          [](const NamedRange& a, const NamedRange& b) {
            return Merged(a, b, [](int x, int y) { return std::min(x, y); });
          },
          py::is_operator())
      .def(
          "__sub__",
          [](const NamedRange& a, const NamedRange& b) {
            return Merged(a, b, [](int x, int y) { return y > 0 ? 0 : x; });
          },
          py::is_operator())
      .def(
          "__eq__", [](const NamedRange& a, const NamedRange& b) { return a.range == b.range; },
          py::is_operator())
      .def("__hash__", [](const NamedRange& r) { return HashOf(r.range); })
      .def("__repr__", ReprOf)
      .def("_repr_svg_", SvgOf)
      .def("__reduce__", [](const NamedRange& r) {
        const auto pickled = py::module_::import("pokermath._pickled");
        return py::make_tuple(pickled.attr("unpickled_range"), StateOf(r));
      });
}

}  // namespace pokermath
