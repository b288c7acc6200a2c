// A piece is a term, and behind exclamation marks terms whose hands are taken off it; a piece that
// begins with the mark is taken off everything to its left, with all its terms. What is read here
// are the terms that ParseRange does not know; the others are left to its reader.

#include "ranges/two_card_piece.h"

#include <algorithm>
#include <array>
#include <string>

#include "ranges/hand_classes.h"
#include "ranges/omaha/term.h"
#include "ranges/percent_ranges.h"
#include "ranges/range_text.h"

namespace pokermath {
namespace {

constexpr const char* kExpected =
    "a class (AA, AKs, AKo, AK), a class with + (TT+, A9s+), a run (JJ-88, A9s-A5s, T9s-65s), a "
    "holding (AhKd), a pattern (AhXx, A*s), a percentage (15%, 10%-20%) or random";
constexpr const char* kShortDeckRanks = "ranks of the short deck, 6 to A";

HoldingSet SetOf(const Spec& range) {
  HoldingSet hands;
  for (const auto& [first, second] : range.combinations()) hands.Add(first, second);
  return hands;
}

enum class Suits { kAny, kSuited, kOffsuit };

// Two different ranks and which suits.
struct TwoRanks {
  std::size_t place;
  int high;
  int low;
  Suits suits;

  int Gap() const { return high - low; }
};

// Reads a run of two classes, if a term is one.
class RunReader : PieceCursor {
 public:
  explicit RunReader(std::string_view term) : PieceCursor(term) {}

  struct Run {
    TwoRanks from;
    TwoRanks to;
  };
  std::optional<Run> Read() {
    const std::optional<TwoRanks> from = ReadClass();
    if (!from || !Skip('-')) return std::nullopt;
    const std::optional<TwoRanks> to = ReadClass();
    if (!to || !AtEnd()) return std::nullopt;
    return Run{*from, *to};
  }

 private:
  std::optional<TwoRanks> ReadClass() {
    const std::size_t place = Place();
    const std::optional<int> first = ReadRank();
    const std::optional<int> second = first ? ReadRank() : std::nullopt;
    if (!second || *first == *second) return std::nullopt;
    const Suits suits = Skip('s') ? Suits::kSuited : Skip('o') ? Suits::kOffsuit : Suits::kAny;
    return TwoRanks{place, std::max(*first, *second), std::min(*first, *second), suits};
  }
};

class TermReader : PieceCursor {
 public:
  TermReader(std::string_view term, const GameRules& rules, HoldingSet& hands)
      : PieceCursor(term), rules_(rules), hands_(hands) {}

  std::optional<Fault> Read() {
    if (EqualsIgnoringCase(Piece(), "random")) return AddPattern({}, {}, Suits::kAny);
    if (Piece().find('%') != Piece().npos) return ReadPercentages();
    if (Piece().find_first_of("xX*") != Piece().npos) return ReadPattern();
    const auto run = RunReader(Piece()).Read();
    if (run && run->from.high != run->to.high) return AddConnectors(run->from, run->to);
    if (!ReadRank()) return Fault{0, kExpected};
    Spec range;
    const RangeOptions options = {.short_deck = rules_.IsShortDeck()};
    if (std::optional<Fault> fault = ReadSpecPiece(Piece(), options, range)) return fault;
    hands_.Unite(SetOf(range));
    return std::nullopt;
  }

 private:
  std::optional<Fault> ReadPercentages() {
    PercentBand band;
    if (std::optional<Fault> fault = ReadBand(band)) return fault;
    if (!AtEnd()) return Here("an exclusion (!AA) or the end");
    const auto within = [this](double percent) {
      return RangeWithin(percent, PercentTable::kEquilibrium, rules_.IsShortDeck());
    };
    hands_.Unite(SetOf(within(band.to)));
    if (band.from == 0) return std::nullopt;
    hands_.Subtract(SetOf(within(band.from)));
    return hands_.Empty() ? std::optional(Fault{0, "a band that is wide enough for a hand"})
                          : std::nullopt;
  }

  // Nearer cards together, of the same kind and gap.
  std::optional<Fault> AddConnectors(const TwoRanks& from, const TwoRanks& to) {
    if (from.Gap() != to.Gap() || from.suits != to.suits) {
      return Fault{to.place,
                   "a hand of the same kind with the same high card or the same gap, like A9s-A5s "
                   "or T9s-65s"};
    }
    for (const TwoRanks& end : {from, to}) {
      if (end.low < rules_.lowest_rank) return Fault{end.place, kShortDeckRanks};
    }
    Spec range;
    for (int low = std::min(from.low, to.low); low <= std::max(from.low, to.low); ++low) {
      if (from.suits != Suits::kOffsuit) range.AddSuit(low + from.Gap(), low);
      if (from.suits != Suits::kSuited) range.AddNonSuit(low + from.Gap(), low);
    }
    hands_.Unite(SetOf(range));
    return std::nullopt;
  }

  bool SkipAny() { return Skip('x') || Skip('*'); }

  // A rank or any; false if there is neither.
  bool ReadRanks(PatternPlace& place) {
    if (SkipAny()) return true;
    const std::optional<int> rank = ReadRank();
    if (rank) place.ranks = static_cast<RankSet>(1U << *rank);
    return rank.has_value();
  }

  // A suit or any. Of two places of which the first has one each is a card: AhXx, Ahx. Otherwise
  // both are ranks, as in a class: Ax, A*s.
  std::optional<Fault> ReadPattern() {
    constexpr const char* kPlace = "a rank (23456789TJQKA) or x";
    PatternPlace first, second;
    if (!ReadRanks(first)) return Fault{0, kExpected};
    const std::optional<int> suit = ReadSuit();
    const bool cards = suit || IsAnySuit();
    first.suit = suit.value_or(kAnySuit);
    if (!ReadRanks(second)) return Here(kPlace);
    Suits suits = Suits::kAny;
    if (!cards) {
      suits = Skip('s') ? Suits::kSuited : Skip('o') ? Suits::kOffsuit : Suits::kAny;
    } else if (!SkipAny()) {
      second.suit = ReadSuit().value_or(kAnySuit);
    }
    if (!AtEnd()) return Here(cards ? "a suit or the end" : "s, o or the end behind two ranks");
    return AddPattern(first, second, suits);
  }

  // Skips an x that stands for any suit: one that a rank follows.
  bool IsAnySuit() {
    constexpr std::string_view kRanksOrAny = "23456789TtJjQqKkAa1xX*";
    const std::string_view rest = Rest();
    if (rest.size() < 2 || kRanksOrAny.find(rest[1]) == rest.npos) return false;
    return SkipAny();
  }

  std::optional<Fault> AddPattern(const PatternPlace& first, const PatternPlace& second,
                                  Suits suits) {
    const std::uint64_t deck = rules_.Deck().bits();
    const std::array<std::uint64_t, 2> places = {first.Cards() & deck, second.Cards() & deck};
    if (places[0] == 0 || places[1] == 0) return Fault{0, kShortDeckRanks};
    const auto fits = [&](int card, int other) {
      return (places[0] >> card & 1) != 0 && (places[1] >> other & 1) != 0;
    };
    ForEachOmahaHand<2>([&](int, const std::array<int, 2>& hand) {
      const auto [low, high] = hand;
      if (!fits(low, high) && !fits(high, low)) return;
      const bool suited = low / 13 == high / 13;
      const bool pair = low % 13 == high % 13;
      if (suits != Suits::kAny && (pair || suited != (suits == Suits::kSuited))) return;
      hands_.Add(low, high);
    });
    return std::nullopt;
  }

  const GameRules& rules_;
  HoldingSet& hands_;
};

}  // namespace

std::optional<Fault> ReadTwoCardPiece(std::string_view piece, const GameRules& rules,
                                      HoldingSet& hands, bool& off) {
  off = piece.starts_with('!');
  std::size_t place = off ? 1 : 0;
  for (bool first = true;; first = false) {
    const std::size_t end = std::min(piece.find('!', place), piece.size());
    HoldingSet term;
    if (std::optional<Fault> fault =
            TermReader(piece.substr(place, end - place), rules, term).Read()) {
      fault->position += place;
      return fault;
    }
    first || off ? hands.Unite(term) : hands.Subtract(term);
    if (end == piece.size()) return std::nullopt;
    place = end + 1;
  }
}

}  // namespace pokermath
