// Range text as people write it.
//
// The text is cut into pieces at commas, semicolons and blanks. A piece is read from the left: a
// percentage, the word random, one holding (two cards), or a class of hands with nothing, a plus or
// a dash and a second class behind it. Whatever is left over is an error, never ignored.

#include "ranges/range_text.h"

#include <algorithm>

#include "ranges/hand_classes.h"
#include "ranges/percent_ranges.h"

namespace pokermath {
namespace {

constexpr std::string_view kExpected =
    "a class (AA, AKs, AKo, AK), a class with + (TT+, A9s+), a run (JJ-88, A9s-A5s), a holding "
    "(AhKd), a percentage (15%) or random";

enum class Kind { kPair, kSuited, kOffsuit, kBoth };

struct HandClass {
  int high;
  int low;
  Kind kind;
};

class PieceReader : PieceCursor {
 public:
  PieceReader(std::string_view piece, const RangeOptions& options, Spec& range)
      : PieceCursor(piece), options_(options), range_(range) {}

  // Adds what the piece says to the range, or says what is wrong and adds nothing.
  std::optional<Fault> Read() {
    if (EqualsIgnoringCase(Piece(), "random")) return AddAll();
    if (Piece().find('%') != Piece().npos) return ReadPercentage();
    const std::optional<int> first = ReadRank();
    if (!first) return Fault{0, std::string(kExpected)};
    if (ReadSuit()) return ReadHolding();
    return ReadClasses(*first);
  }

 private:
  std::optional<Fault> ReadPercentage() {
    const std::optional<double> percent = ReadPercent();
    if (!percent || !AtEnd()) return Fault{0, "a percentage above 0 and up to 100, like 15%"};
    return AddPercent(*percent);
  }

  std::optional<Fault> AddPercent(double percent) {
    range_.Unite(RangeWithin(percent, options_.percent_table, options_.short_deck));
    return std::nullopt;
  }

  std::optional<Fault> AddAll() {
    for (int rank = options_.short_deck ? kLowestShortDeckRank : 0; rank < 13; ++rank) {
      range_.AddPair(rank);
      for (int high = rank + 1; high < 13; ++high) {
        range_.AddSuit(high, rank);
        range_.AddNonSuit(high, rank);
      }
    }
    return std::nullopt;
  }

  std::optional<Fault> ReadHolding() {
    const CardsResult read = ParseCards(Piece());
    if (!read.error.empty()) return Fault{0, "two cards, like AhKd (" + read.error + ")"};
    if (read.cards.size() != 2) return Fault{0, "two cards, like AhKd"};
    const auto [low, high] = std::minmax({read.cards[0], read.cards[1]});
    for (const int card : read.cards) {
      if (IsMissing(GetCardRank(card))) return NoSuchRank(0);
    }
    // As AddPair, AddSuit and AddNonSuit store it.
    if (GetCardRank(low) == GetCardRank(high)) {
      range_.Insert(low, high);
    } else {
      range_.AddCard(low, high);
    }
    return std::nullopt;
  }

  std::optional<Fault> ReadClasses(int first) {
    const std::optional<HandClass> from = ReadClass(first);
    if (!from) return Here("a second rank (23456789TJQKA) or a suit (cdhs)");
    if (IsMissing(from->low)) return NoSuchRank(0);
    if (AtEnd()) return AddRun(*from, *from);
    if (Skip('+')) return AtEnd() ? AddRun(Top(*from), *from) : Here("nothing behind the +");
    if (!Skip('-')) return Here(EndOfClass(*from));
    const std::size_t second_place = Place();
    const std::optional<int> second = ReadRank();
    const std::optional<HandClass> to = second ? ReadClass(*second) : std::nullopt;
    if (!to) return Here("the other end of the run, like JJ-88 or A9s-A5s");
    if (!AtEnd()) return Here("nothing behind the run");
    if (IsMissing(to->low)) return NoSuchRank(second_place);
    const bool same_kind = to->kind == from->kind;
    if (!same_kind || (from->kind != Kind::kPair && to->high != from->high)) {
      return Fault{second_place, from->kind == Kind::kPair
                                     ? "another pair, like JJ-88"
                                     : "a hand of the same high card and kind, like A9s-A5s"};
    }
    return from->low > to->low ? AddRun(*from, *to) : AddRun(*to, *from);
  }

  // The class of a rank that was read and what follows it.
  std::optional<HandClass> ReadClass(int first) {
    const std::optional<int> second = ReadRank();
    if (!second) return std::nullopt;
    const int high = std::max(first, *second);
    const int low = std::min(first, *second);
    if (high == low) return HandClass{high, low, Kind::kPair};
    if (Skip('s')) return HandClass{high, low, Kind::kSuited};
    if (Skip('o')) return HandClass{high, low, Kind::kOffsuit};
    return HandClass{high, low, options_.bare_offsuit ? Kind::kOffsuit : Kind::kBoth};
  }

  std::string EndOfClass(const HandClass& from) const {
    if (from.kind == Kind::kPair) return "+, - or the end behind a pair";
    const char last = Piece()[Place() - 1];
    return std::string_view("sSoO").find(last) != std::string_view::npos
               ? "+, - or the end behind a class"
               : "s, o, +, - or the end behind two ranks";
  }

  // The best class of the same high card and kind.
  static HandClass Top(const HandClass& hand) {
    if (hand.kind == Kind::kPair) return {12, 12, hand.kind};
    return {hand.high, hand.high - 1, hand.kind};
  }

  std::optional<Fault> AddRun(const HandClass& best, const HandClass& worst) {
    for (int low = worst.low; low <= best.low; ++low) {
      if (best.kind == Kind::kPair) {
        range_.AddPair(low);
        continue;
      }
      if (best.kind != Kind::kOffsuit) range_.AddSuit(best.high, low);
      if (best.kind != Kind::kSuited) range_.AddNonSuit(best.high, low);
    }
    return std::nullopt;
  }

  bool IsMissing(int rank) const { return options_.short_deck && rank < kLowestShortDeckRank; }
  static std::optional<Fault> NoSuchRank(std::size_t position) {
    return Fault{position, "ranks of the short deck, 6 to A"};
  }

  const RangeOptions& options_;
  Spec& range_;
};

}  // namespace

std::optional<Fault> ReadSpecPiece(std::string_view piece, const RangeOptions& options,
                                   Spec& range) {
  return PieceReader(piece, options, range).Read();
}

RangeResult ParseRange(std::string_view text, const RangeOptions& options) {
  RangeResult result;
  const std::optional<TextError> error = ReadPieces(
      text, [&](std::string_view piece) { return ReadSpecPiece(piece, options, result.range); });
  if (error) result = {Spec(), error->message, error->position};
  return result;
}

}  // namespace pokermath
