// Range text with weights, of every game.
//
// The text is a list of pieces, and of blocks of pieces between [50] and [/50]. A weight is cut off
// a piece and what is left is read as text without weights: into a sheet that knows the weight of
// each hand, or into the set of a block, which is a list of its own and goes to the sheet at its
// end. In Omaha text : is in front of shapes and brackets hold ranks, so there is less that is a
// weight.

#include <algorithm>
#include <utility>

#include "cards/omaha_sizes.h"
#include "pokermath/hand_range.h"
#include "ranges/omaha/read.h"
#include "ranges/percent_gap.h"
#include "ranges/two_card_piece.h"
#include "ranges/weight_sheet.h"
#include "ranges/weight_text.h"

namespace pokermath {
namespace {

// Set is what a block's hands are read into; read_piece(piece, hands) reads a piece without its
// weight into one or into the sheet.
template <typename Set, typename ReadPiece>
class WeightedListReader {
 public:
  WeightedListReader(std::string_view text, bool omaha, WeightSheet& sheet,
                     const ReadPiece& read_piece)
      : text_(text), omaha_(omaha), sheet_(sheet), read_piece_(read_piece) {}

  std::optional<TextError> Read() {
    while ((place_ = text_.find_first_not_of(kSeparators, place_)) != text_.npos) {
      const std::size_t end = std::min(text_.find_first_of(kSeparators, place_), text_.size());
      const std::string_view piece = Cut(text_.substr(place_, end - place_));
      if (const std::optional<Fault> fault = ReadNext(piece)) return ErrorOf(*fault, piece, place_);
      place_ += piece.size();
    }
    if (!block_) return std::nullopt;
    return ErrorOf({block_->tag.size(), EndOf(block_->tag) + " behind this"}, block_->tag,
                   block_->place);
  }

 private:
  struct Block {
    std::string_view tag;
    std::size_t place;
    int weight;
    Set hands;
  };
  struct Before {
    std::string_view base;
    int weight = kWholeWeight;
  };

  static std::string EndOf(std::string_view tag) { return "[/" + std::string(tag.substr(1)); }

  // What comes first of a text without separators: the beginning or end of a block, or a piece.
  std::string_view Cut(std::string_view text) {
    if (text.starts_with("[/") || BeginsBlock(text)) return text.substr(0, EndOfTag(text));
    return text.substr(0, text.find("[/"));
  }
  static std::size_t EndOfTag(std::string_view text) {
    return std::min(text.find(']'), text.size() - 1) + 1;
  }

  // In Omaha text only if the next end of a block is that of these brackets.
  bool BeginsBlock(std::string_view text) {
    if (block_ || !text.starts_with('[')) return false;
    if (!omaha_) return true;
    if (next_end_ <= place_) next_end_ = std::min(text_.find("[/", place_), text_.size());
    return text_.substr(next_end_).starts_with(EndOf(text.substr(0, EndOfTag(text))));
  }

  std::optional<Fault> ReadNext(std::string_view piece) {
    if (piece.starts_with("[/")) return EndBlock(piece);
    if (BeginsBlock(piece)) return BeginBlock(piece);
    const std::size_t mark = std::min(piece.find_first_of(omaha_ ? "@" : "@:"), piece.size());
    int weight = kWholeWeight;
    if (mark < piece.size()) {
      if (std::optional<Fault> fault = ReadWeightAt(piece, mark, weight)) return fault;
    }
    const std::string_view base = piece.substr(0, mark);
    if (block_) return ReadBase(base, block_->weight, block_->hands);
    sheet_.Begin(piece, place_, weight);
    std::optional<Fault> fault = ReadBase(base, weight, sheet_);
    sheet_.End();
    if (omaha_ && fault && base.substr(0, fault->position).ends_with(':')) {
      fault->expected += "; a weight is written behind @, like AAxx@50";
    }
    return fault;
  }

  std::optional<Fault> ReadWeightAt(std::string_view piece, std::size_t mark, int& weight) const {
    if (block_) return Fault{mark, "no weight of its own within " + std::string(block_->tag)};
    if (piece.starts_with('!')) return Fault{mark, "no weight behind hands that are taken off"};
    const WeightUnit unit = piece[mark] == '@' ? WeightUnit::kPercent : WeightUnit::kOne;
    std::optional<Fault> fault = ReadWeight(piece.substr(mark + 1), unit, weight);
    if (fault) fault->position += mark + 1;
    return fault;
  }

  template <typename Hands>
  std::optional<Fault> ReadBase(std::string_view base, int weight, Hands& hands) {
    const Before before = std::exchange(before_, {base, weight});
    // Omaha text without weights means real numbers.
    const bool may_close = !omaha_ || weight != before.weight;
    const std::optional<std::string> closed =
        may_close ? CloseGap(before.base, base) : std::nullopt;
    if (!closed) return read_piece_(base, hands);
    sheet_.Warn(QuotedPiece(base) + " at position " + std::to_string(place_ + 1) + " is read as " +
                QuotedPiece(*closed) + ", from where " + QuotedPiece(before.base) + " ends");
    return read_piece_(*closed, hands);
  }

  std::optional<Fault> BeginBlock(std::string_view tag) {
    int weight = 0;
    const bool ends = tag.ends_with(']');
    std::optional<Fault> fault =
        ReadWeight(tag.substr(1, tag.size() - (ends ? 2 : 1)), WeightUnit::kPercent, weight);
    if (fault) {
      fault->position += 1;
      return fault;
    }
    if (!ends) return Fault{tag.size(), "] behind a weight"};
    block_.emplace(Block{tag, place_, weight, Set()});
    return std::nullopt;
  }

  std::optional<Fault> EndBlock(std::string_view tag) {
    if (!block_) return Fault{0, "a beginning in front of an end, like [50]AA,KK[/50]"};
    if (tag != EndOf(block_->tag)) return Fault{0, EndOf(block_->tag)};
    sheet_.Begin(block_->tag, block_->place, block_->weight);
    sheet_.Unite(block_->hands);
    sheet_.End();
    block_.reset();
    return std::nullopt;
  }

  std::string_view text_;
  bool omaha_;
  WeightSheet& sheet_;
  const ReadPiece& read_piece_;
  std::size_t place_ = 0;
  std::size_t next_end_ = 0;
  std::optional<Block> block_;
  Before before_;
};

template <int cards, typename Set, typename ReadPiece>
Result<RangeReading> ReadWeighted(Game game, std::string_view text, WeightSheet& sheet,
                                  const ReadPiece& read_piece) {
  const std::optional<TextError> error =
      WeightedListReader<Set, ReadPiece>(text, RulesOf(game).IsOmaha(), sheet, read_piece).Read();
  if (error) {
    return Error{.code = ErrorCode::kText, .text = error->message, .position = error->position};
  }
  return RangeReading{sheet.Range<cards>(game), sheet.Warnings()};
}

Result<RangeReading> ReadTwoCards(Game game, std::string_view text) {
  WeightSheet sheet(2);
  const auto read_piece = [&](std::string_view piece, auto& hands) {
    HoldingSet found;
    bool off = false;
    std::optional<Fault> fault = ReadTwoCardPiece(piece, RulesOf(game), found, off);
    if (!fault) off ? hands.Subtract(found) : hands.Unite(found);
    return fault;
  };
  return ReadWeighted<2, HoldingSet>(game, text, sheet, read_piece);
}

template <int cards>
Result<RangeReading> ReadOmaha(Game game, std::string_view text) {
  // Without weights a set says it all, and every hand needs no list.
  if (text.find('@') == text.npos && text.find("[/") == text.npos) {
    const OmahaRangeResult<cards> read = ParseOmahaRange<cards>(text);
    if (read.error.empty()) {
      const bool every = read.range.Count() == OmahaSpec<cards>::kAllHands;
      return RangeReading{every ? HandRange::Every(game) : HandRange(game, read.range), {}};
    }
  }
  constexpr std::int64_t kWritesOfRow = 8;  // that cost as much
  WeightSheet sheet(cards);
  Budget budget(kRowsOfText);
  std::int64_t writes = 0;
  const auto read_piece = [&](std::string_view piece, auto& hands) {
    budget.Spend((sheet.Writes() - std::exchange(writes, sheet.Writes())) / kWritesOfRow);
    return ReadOmahaPiece<cards>(piece, budget, hands);
  };
  return ReadWeighted<cards, OmahaSpec<cards>>(game, text, sheet, read_piece);
}

}  // namespace

Result<RangeReading> ReadRange(Game game, std::string_view text) {
  if (!RulesOf(game).IsOmaha()) return ReadTwoCards(game, text);
  return ForOmahaSize(RulesOf(game).hand_size,
                      [=](auto cards) { return ReadOmaha<cards>(game, text); });
}

}  // namespace pokermath
