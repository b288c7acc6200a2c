// Omaha range text as people write it.
//
// A piece is a term, and behind exclamation marks terms whose hands are taken off it; a piece that
// begins with the mark is taken off everything to its left. A term is the word random, one or two
// percentages or a pattern, each with suit shapes behind colons. Patterns go straight into the
// range, or on the sheet of weights, as rows of bits; only what has exclusions needs a set of its
// own.

#include "ranges/omaha/range_text.h"

#include <vector>

#include "ranges/omaha/bits.h"
#include "ranges/omaha/pattern.h"
#include "ranges/omaha/shapes.h"
#include "ranges/weight_sheet.h"

namespace pokermath {
namespace {

// In rows of hands, as Work counts.
template <int cards>
constexpr std::int64_t kWorkOfPercentage = cards == 4 ? 1'000'000 : 10'000'000;
constexpr std::int64_t kWorkOfSet = 20'000;

constexpr std::string_view kBrackets = "ranks like [T-A] or [AKQ]";

template <int cards>
struct Term {
  enum class Kind { kRandom, kPercent, kPattern } kind = Kind::kRandom;
  PercentBand band;
  OmahaPattern<cards> pattern{};
  Splits splits = kAllSplits<cards>;
  Splits without = 0;  // of these splits
  std::size_t place = 0;
  std::size_t shapes_place = 0;

  bool IsAnyHand() const {
    return kind == Kind::kRandom || (kind == Kind::kPattern && pattern == OmahaPattern<cards>{});
  }
};

// The rows of a set; a sheet of weights has the same as members.
template <int cards>
void AddRow(OmahaSpec<cards>& range, int number, std::uint64_t row) {
  OmahaBits::AddRow(OmahaBits::Of(range), number, row);
}
template <int cards>
void RemoveRow(OmahaSpec<cards>& range, int number, std::uint64_t row) {
  OmahaBits::RemoveRow(OmahaBits::Of(range), number, row);
}
void AddRow(WeightSheet& sheet, int number, std::uint64_t row) { sheet.AddRow(number, row); }
void RemoveRow(WeightSheet& sheet, int number, std::uint64_t row) { sheet.RemoveRow(number, row); }

template <int cards, typename Hands>
class OmahaPieceReader : PieceCursor {
 public:
  OmahaPieceReader(std::string_view piece, Work& work, Hands& range)
      : PieceCursor(piece), work_(work), range_(range) {}

  // Adds what the piece says to the range, or takes it off, or says what is wrong.
  std::optional<Fault> Read() {
    const bool off = Skip('!');
    std::vector<Term<cards>> terms;
    do {
      terms.emplace_back();
      if (std::optional<Fault> fault = ReadTerm(terms.back())) return fault;
    } while (Skip('!'));
    if (!off) TakeShapesOff(terms);
    if (terms.size() == 1 && terms.front().kind == Term<cards>::Kind::kPattern) {
      return ReadPatternInto(range_, terms.front(), off);
    }
    work_.Spend(kWorkOfSet);
    OmahaSpec<cards> hands;
    for (const Term<cards>& term : terms) {
      // Behind a mark at the front, the others take hands off as well.
      const bool off_hands = !off && &term != &terms.front();
      if (std::optional<Fault> fault = ApplyTo(hands, term, off_hands)) return fault;
    }
    off ? range_.Subtract(hands) : range_.Unite(hands);
    return std::nullopt;
  }

 private:
  static constexpr const char* kSize = cards == 4 ? "four" : "five";

  bool AtEndOfBase() const { return AtEnd() || Peek() == ':' || Peek() == '!'; }

  static std::string ExpectedTerm() {
    return cards == 4 ? "four cards (AsKsQhJh, AAxx, [T-A][T-A]xx), a percentage (10%, 5%-20%) or "
                        "random"
                      : "five cards (AsKsQhJh9c, AAxxx, [T-A][T-A]xxx), a percentage (10%, "
                        "5%-20%) or random";
  }

  std::optional<Fault> ReadTerm(Term<cards>& term) {
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

  static Fault TooMuchWork(const Term<cards>& term) {
    return {term.place, "the end of a list that takes less work than this"};
  }

  std::optional<Fault> ReadBase(Term<cards>& term) {
    const std::string_view base = Rest().substr(0, Rest().find_first_of(":!"));
    if (EqualsIgnoringCase(base, "random")) {
      Advance(base.size());
      return std::nullopt;
    }
    if (base.find('%') != base.npos) {
      term.kind = Term<cards>::Kind::kPercent;
      return ReadBand(term.band);
    }
    return ReadPattern(term);
  }

  std::optional<Fault> ReadPattern(Term<cards>& term) {
    term.kind = Term<cards>::Kind::kPattern;
    std::size_t read = 0;
    while (!AtEndOfBase()) {
      if (read == cards) return Here(std::string("no more than ") + kSize + " cards");
      const std::size_t place = Place();
      OmahaAtom& atom = term.pattern[read];
      if (std::optional<Fault> fault = ReadRanks(atom)) {
        return place == term.place && Place() == place ? Fault{place, ExpectedTerm()} : fault;
      }
      atom.suit = ReadSuit().value_or(kAnySuit);
      ++read;
    }
    if (read == 0) return Here(ExpectedTerm());
    if (read < cards) return Here(std::string(kSize) + " cards, with x for any card");
    return std::nullopt;
  }

  // A rank, x, or ranks in brackets.
  std::optional<Fault> ReadRanks(OmahaAtom& atom) {
    if (Skip('x') || Skip('*')) return std::nullopt;
    atom.ranks = 0;
    if (Skip('[')) return ReadBrackets(atom);
    const std::optional<int> rank = ReadRank();
    if (!rank) return Here("a rank (23456789TJQKA), x, or " + std::string(kBrackets));
    atom.ranks = static_cast<RankSet>(1U << *rank);
    return std::nullopt;
  }

  std::optional<Fault> ReadBrackets(OmahaAtom& atom) {
    do {
      const std::optional<int> first = ReadRank();
      const std::optional<int> last = first && Skip('-') ? ReadRank() : first;
      if (!last) return Here(std::string(kBrackets));
      for (int rank = std::min(*first, *last); rank <= std::max(*first, *last); ++rank) {
        atom.ranks = static_cast<RankSet>(atom.ranks | 1U << rank);
      }
    } while (!AtEnd() && Peek() != ']' && !AtEndOfBase());
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
    std::string expected = std::string("a suit shape of ") + kSize + " cards:";
    for (const SuitShape& shape : kSuitShapes<cards>) {
      expected += expected.ends_with(':') ? " " : ", ";
      expected += shape.letters;
    }
    return expected;
  }

  // Where all hands of some shapes are taken off, the first term can do without these.
  static void TakeShapesOff(std::vector<Term<cards>>& terms) {
    Splits& without = terms.front().without;
    std::erase_if(terms, [&](const Term<cards>& term) {
      if (&term == &terms.front() || !term.IsAnyHand()) return false;
      without |= term.splits;
      return true;
    });
  }

  // Adds the hands of a term, or takes them off.
  std::optional<Fault> ApplyTo(OmahaSpec<cards>& range, const Term<cards>& term, bool off) {
    if (term.kind == Term<cards>::Kind::kPattern) return ReadPatternInto(range, term, off);
    if (!work_.Left()) return TooMuchWork(term);
    work_.Spend(kWorkOfSet);
    OmahaSpec<cards> hands;
    if (term.kind == Term<cards>::Kind::kPercent) {
      work_.Spend(kWorkOfPercentage<cards>);
      hands.AddPercent(term.band.from, term.band.to);
    } else {
      hands.MakeRandom();
    }
    const Splits splits = term.splits & ~term.without;
    if (splits != kAllSplits<cards>) hands.Intersect(HandsOfSplits<cards>(splits));
    off ? range.Subtract(hands) : range.Unite(hands);
    return std::nullopt;
  }

  template <typename Into>
  std::optional<Fault> ReadPatternInto(Into& range, const Term<cards>& term, bool off) {
    if (!work_.Left()) return TooMuchWork(term);
    const int lookups = (term.splits == kAllSplits<cards> ? 0 : std::popcount(term.splits)) +
                        std::popcount(term.without);
    bool any = false;
    bool any_of_shape = false;
    work_.Walk<cards, false>(CardsOf<cards>(term.pattern), [&](int number, std::uint64_t row) {
      any = true;
      work_.Spend(lookups);
      const std::uint64_t of_shape = RowOfSplits<cards>(term.splits, number, row);
      any_of_shape |= of_shape != 0;
      const std::uint64_t meant = of_shape & ~RowOfSplits<cards>(term.without, number, row);
      off ? RemoveRow(range, number, meant) : AddRow(range, number, meant);
      return true;
    });
    if (any_of_shape) return std::nullopt;
    return any ? Fault{term.shapes_place, "a suit shape that a hand of the pattern has"}
               : Fault{term.place, "cards that one hand can have together"};
  }

  Work& work_;
  Hands& range_;
};

}  // namespace

template <int cards, typename Hands>
std::optional<Fault> ReadOmahaPiece(std::string_view piece, Work& work, Hands& hands) {
  return OmahaPieceReader<cards, Hands>(piece, work, hands).Read();
}

template <int cards>
OmahaRangeResult<cards> ParseOmahaRange(std::string_view text) {
  OmahaRangeResult<cards> result;
  Work work(kMostTextWork);
  const std::optional<TextError> error = ReadPieces(text, [&](std::string_view piece) {
    return ReadOmahaPiece<cards>(piece, work, result.range);
  });
  if (error) result = {OmahaSpec<cards>(), error->message, error->position};
  return result;
}

template std::optional<Fault> ReadOmahaPiece<4>(std::string_view, Work&, OmahaSpec<4>&);
template std::optional<Fault> ReadOmahaPiece<5>(std::string_view, Work&, OmahaSpec<5>&);
template std::optional<Fault> ReadOmahaPiece<4>(std::string_view, Work&, WeightSheet&);
template std::optional<Fault> ReadOmahaPiece<5>(std::string_view, Work&, WeightSheet&);
template OmahaRangeResult<4> ParseOmahaRange<4>(std::string_view);
template OmahaRangeResult<5> ParseOmahaRange<5>(std::string_view);

}  // namespace pokermath
