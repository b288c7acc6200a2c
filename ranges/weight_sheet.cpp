#include "ranges/weight_sheet.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "ranges/text_pieces.h"

namespace pokermath {
namespace {

constexpr std::size_t kMostWarnings = 20;

template <typename Visit>
void ForEachBit(std::uint64_t bits, const Visit& visit) {
  for (; bits != 0; bits &= bits - 1) visit(static_cast<std::size_t>(std::countr_zero(bits)));
}

}  // namespace

WeightSheet::WeightSheet(int hand_size)
    : pieces_(1), all_hands_(static_cast<std::size_t>(Choose(52, hand_size))) {}

void WeightSheet::Begin(std::string_view piece, std::size_t place, int weight) {
  pieces_.push_back({piece, place, weight});
  replaced_ = {};
}

void WeightSheet::End() {
  if (replaced_.hands == 0) return;
  const auto name = [](const Piece& piece) {
    return QuotedPiece(piece.text) + " at position " + std::to_string(piece.place + 1);
  };
  const std::string hands =
      std::to_string(replaced_.hands) + (replaced_.hands == 1 ? " hand" : " hands");
  Warn(name(pieces_.back()) + " gives " + hands + " another weight than " +
       name(pieces_[replaced_.first_piece]) + "; the last one counts");
}

void WeightSheet::Warn(std::string warning) {
  if (warnings_.size() < kMostWarnings) {
    warnings_.push_back(std::move(warning));
  } else {
    ++more_warnings_;
  }
}

void WeightSheet::Set(std::size_t number) {
  const std::size_t before =
      std::exchange(piece_of_[number], static_cast<std::uint32_t>(pieces_.size() - 1));
  if (before == 0 || pieces_[before].weight == pieces_.back().weight) return;
  if (replaced_.hands++ == 0) replaced_.first_piece = before;
}

void WeightSheet::AddRow(int number, std::uint64_t row) {
  if (row == 0) return;
  if (piece_of_.empty()) piece_of_.resize(all_hands_);
  writes_ += std::popcount(row);
  ForEachBit(row, [&](std::size_t card) { Set(static_cast<std::size_t>(number) + card); });
}

void WeightSheet::RemoveRow(int number, std::uint64_t row) {
  writes_ += std::popcount(row);
  if (piece_of_.empty()) return;
  ForEachBit(row,
             [&](std::size_t card) { piece_of_[static_cast<std::size_t>(number) + card] = 0; });
}

void WeightSheet::AddWords(std::span<const std::uint64_t> words) {
  for (std::size_t i = 0; i < words.size(); ++i) AddRow(static_cast<int>(64 * i), words[i]);
  writes_ += static_cast<std::int64_t>(words.size());
}

void WeightSheet::RemoveWords(std::span<const std::uint64_t> words) {
  for (std::size_t i = 0; i < words.size(); ++i) RemoveRow(static_cast<int>(64 * i), words[i]);
  writes_ += static_cast<std::int64_t>(words.size());
}

template <int cards>
HandRange WeightSheet::Range(Game game) const {
  if (piece_of_.empty()) return HandRange(game, std::vector<WeightedHand>());
  std::size_t count = 0;
  std::size_t whole = 0;
  for (const std::uint32_t piece : piece_of_) {
    count += pieces_[piece].weight != 0;
    whole += pieces_[piece].weight == kWholeWeight;
  }
  if (whole == piece_of_.size()) return HandRange::Every(game);
  std::vector<WeightedHand> hands;
  hands.reserve(count);
  ForEachOmahaHand<cards>([&](int number, const auto& hand) {
    const int weight = pieces_[piece_of_[static_cast<std::size_t>(number)]].weight;
    if (weight != 0) hands.push_back({CardSet(hand), weight});
  });
  return HandRange(game, std::move(hands));
}

std::vector<std::string> WeightSheet::Warnings() const {
  std::vector<std::string> warnings = warnings_;
  if (more_warnings_ > 0) warnings.push_back("and " + std::to_string(more_warnings_) + " more");
  return warnings;
}

template HandRange WeightSheet::Range<2>(Game) const;
#define POKERMATH_RANGE(cards) template HandRange WeightSheet::Range<cards>(Game) const;
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_RANGE)

}  // namespace pokermath
