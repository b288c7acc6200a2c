// Omaha range text as people write it.
//
// A piece is a term, and behind exclamation marks terms whose hands are taken off it; a piece that
// begins with the mark is taken off everything to its left. A pattern goes straight into the range,
// or on the sheet of weights, as rows of bits, for a list may have a million of them; other pieces
// are put together in a set of their own.

#include "ranges/omaha/read.h"

#include <vector>

#include "ranges/omaha/order.h"
#include "ranges/weight_sheet.h"

namespace pokermath {
namespace {

constexpr std::string_view kBrackets = "ranks like [T-A] or [AKQ]";

// The rows of a set; a sheet of weights has the same as members.
template <int cards>
void AddRow(OmahaSpec<cards>& range, int number, std::uint64_t row) {
  OmahaBits::AddRow(range, number, row);
}
template <int cards>
void RemoveRow(OmahaSpec<cards>& range, int number, std::uint64_t row) {
  OmahaBits::RemoveRow(range, number, row);
}
void AddRow(WeightSheet& sheet, int number, std::uint64_t row) { sheet.AddRow(number, row); }
void RemoveRow(WeightSheet& sheet, int number, std::uint64_t row) { sheet.RemoveRow(number, row); }

template <int cards>
class OmahaTermReader : PieceCursor {
 public:
  struct Term : OmahaTerm<cards> {
    std::size_t place = 0;
    std::size_t shapes_place = 0;
  };

  explicit OmahaTermReader(std::string_view piece) : PieceCursor(piece) {}

  /// @param off  out: whether the piece begins with a mark
  std::optional<Fault> Read(std::vector<Term>& terms, bool& off) {
    off = Skip('!');
    do {
      if (std::optional<Fault> fault = ReadTerm(terms.emplace_back())) return fault;
    } while (Skip('!'));
    return std::nullopt;
  }

 private:
  static std::string Size() {
    constexpr std::array kWords = {"no", "one", "two", "three", "four", "five", "six"};
    static_assert(cards < kWords.size());
    return kWords[cards];
  }

  static std::string Expected() {
    constexpr std::string_view kHand = "AsKsQhJh9c8d";
    static_assert(2 * cards <= kHand.size());
    const std::string hand(kHand.substr(0, 2 * cards));
    const std::string any(cards - 2, 'x');
    return Size() + " cards (" + hand + ", AA" + any + ", [T-A][T-A]" + any + ")" +
           (HasOmahaOrder(cards) ? ", a percentage (10%, 5%-20%)" : "") + " or random";
  }

  bool AtEndOfBase() const { return AtEnd() || Peek() == ':' || Peek() == '!'; }

  std::optional<Fault> ReadTerm(Term& term) {
    term.place = Place();
    if (std::optional<Fault> fault = ReadBase(term)) return fault;
    if (!AtEndOfBase()) return Here("a shape (:ds), an exclusion (!AAxx) or the end");
    term.shapes_place = Place();
    if (Peek() == ':') term.splits = 0;
    while (Skip(':')) {
      const std::optional<Splits> splits = ReadShape();
      if (!splits) return Here(ExpectedShape());
      term.splits |= *splits;
    }
    return std::nullopt;
  }

  std::optional<Fault> ReadBase(Term& term) {
    const std::string_view base = Rest().substr(0, Rest().find_first_of(":!"));
    if (EqualsIgnoringCase(base, "random")) {
      Advance(base.size());
      return std::nullopt;
    }
    if (base.find('%') == base.npos) return ReadPattern(term);
    if constexpr (HasOmahaOrder(cards)) {
      return ReadBand(term.band.emplace());
    } else {
      return Here(Expected() + "; " + NoOmahaOrder(cards));
    }
  }

  std::optional<Fault> ReadPattern(Term& term) {
    std::size_t read = 0;
    while (!AtEndOfBase()) {
      if (read == cards) return Here("no more than " + Size() + " cards");
      const std::size_t place = Place();
      if (std::optional<Fault> fault = ReadRanks(term.pattern[read])) {
        return place == term.place && Place() == place ? Fault{place, Expected()} : fault;
      }
      term.pattern[read++].suit = ReadSuit().value_or(kAnySuit);
    }
    if (read == 0) return Here(Expected());
    if (read < cards) return Here(Size() + " cards, with x for any card");
    return std::nullopt;
  }

  // A rank, x, or ranks in brackets.
  std::optional<Fault> ReadRanks(PatternPlace& place) {
    if (Skip('x') || Skip('*')) return std::nullopt;
    place.ranks = 0;
    if (Skip('[')) return ReadBrackets(place);
    const std::optional<int> rank = ReadRank();
    if (!rank) return Here("a rank (23456789TJQKA), x, or " + std::string(kBrackets));
    place.ranks = static_cast<RankSet>(1U << *rank);
    return std::nullopt;
  }

  std::optional<Fault> ReadBrackets(PatternPlace& place) {
    do {
      const std::optional<int> first = ReadRank();
      const std::optional<int> last = first && Skip('-') ? ReadRank() : first;
      if (!last) return Here(std::string(kBrackets));
      for (int rank = std::min(*first, *last); rank <= std::max(*first, *last); ++rank) {
        place.ranks = static_cast<RankSet>(place.ranks | 1U << rank);
      }
    } while (Peek() != ']' && !AtEndOfBase());
    return Skip(']') ? std::nullopt : std::optional(Here("] behind ranks"));
  }

  // Nothing is read unless it is a whole shape.
  std::optional<Splits> ReadShape() {
    const std::string_view word = Rest().substr(0, Rest().find_first_of(":!"));
    for (const SuitShape& shape : kSuitShapes<cards>) {
      if (!EqualsIgnoringCase(word, shape.letters)) continue;
      Advance(word.size());
      return shape.splits;
    }
    return std::nullopt;
  }

  static std::string ExpectedShape() {
    std::string expected = "a suit shape of " + Size() + " cards:";
    for (const SuitShape& shape : kSuitShapes<cards>) {
      expected += expected.ends_with(':') ? " " : ", ";
      expected += shape.letters;
    }
    return expected;
  }
};

// Adds the hands of a pattern, or takes them off.
template <int cards, typename Into>
std::optional<Fault> ReadRows(const typename OmahaTermReader<cards>::Term& term, bool off,
                              Budget& budget, Into& range) {
  bool any = false;
  WalkPattern<cards>(term, budget, [&](int number, std::uint64_t row) {
    any = true;
    off ? RemoveRow(range, number, row) : AddRow(range, number, row);
    return true;
  });
  if (any) return std::nullopt;
  OmahaTerm<cards> of_any_shape = term;
  of_any_shape.splits = kAllSplits<cards>;
  if (!WalkPattern<cards>(of_any_shape, budget, [](int, std::uint64_t) { return false; })) {
    return Fault{term.shapes_place, "a suit shape that a hand of the pattern has"};
  }
  return Fault{term.place, "cards that one hand can have together"};
}

}  // namespace

template <int cards, typename Hands>
std::optional<Fault> ReadOmahaPiece(std::string_view piece, Budget& budget, Hands& hands) {
  constexpr int kRowsOfSet = OmahaSpec<cards>::kAllHands / 64;
  constexpr int kRowsOfBand = 4 * OmahaSpec<cards>::kAllHands;
  std::vector<typename OmahaTermReader<cards>::Term> terms;
  bool off = false;
  if (std::optional<Fault> fault = OmahaTermReader<cards>(piece).Read(terms, off)) return fault;
  const auto is_pattern = [](const OmahaTerm<cards>& term) {
    return !term.band && !(term == OmahaTerm<cards>());
  };
  const auto too_much = [](const auto& term) {
    return Fault{term.place, "the end of a list that takes less work than this"};
  };
  if (terms.size() == 1 && is_pattern(terms.front())) {
    if (!budget.Left()) return too_much(terms.front());
    return ReadRows<cards>(terms.front(), off, budget, hands);
  }
  budget.Spend(kRowsOfSet);
  OmahaSpec<cards> together;
  for (const auto& term : terms) {
    if (!budget.Left()) return too_much(term);
    // Behind a mark at the front, the others are taken off as well.
    const bool off_term = !off && &term != &terms.front();
    if (is_pattern(term)) {
      std::optional<Fault> fault = ReadRows<cards>(term, off_term, budget, together);
      if (fault) return fault;
    } else {
      budget.Spend(term.band ? kRowsOfBand : kRowsOfSet);
      off_term ? together.Subtract(term.Hands()) : together.Unite(term.Hands());
    }
  }
  off ? hands.Subtract(together) : hands.Unite(together);
  return std::nullopt;
}

template <int cards>
OmahaRangeResult<cards> ParseOmahaRange(std::string_view text) {
  OmahaRangeResult<cards> result;
  Budget budget(kRowsOfText);
  const std::optional<TextError> error = ReadPieces(text, [&](std::string_view piece) {
    return ReadOmahaPiece<cards>(piece, budget, result.range);
  });
  if (error) result = {OmahaSpec<cards>(), error->message, error->position};
  return result;
}

#define POKERMATH_READ(cards)                                                                   \
  template std::optional<Fault> ReadOmahaPiece<cards>(std::string_view, Budget&,                \
                                                      OmahaSpec<cards>&);                       \
  template std::optional<Fault> ReadOmahaPiece<cards>(std::string_view, Budget&, WeightSheet&); \
  template OmahaRangeResult<cards> ParseOmahaRange<cards>(std::string_view);
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_READ)

}  // namespace pokermath
