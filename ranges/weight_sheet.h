// Weights while a range text is read.
//
// For every hand of a game, by its number, the sheet has the piece that spoke of it last, and for
// every piece its weight. So a later piece simply writes over an earlier one, and which piece that
// was is known for the warning.

#ifndef POKERMATH_RANGES_WEIGHT_SHEET_H_
#define POKERMATH_RANGES_WEIGHT_SHEET_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/hand_range.h"
#include "ranges/holding_set.h"
#include "ranges/omaha/hands.h"

namespace pokermath {

class WeightSheet {
 public:
  /// Of hands of so many cards.
  explicit WeightSheet(int hand_size);

  /// What is added up to End has the weight of this piece; of weight 0 it is in the range no more.
  ///
  /// @param place  of the piece in the text, which must live as long as the sheet
  void Begin(std::string_view piece, std::size_t place, int weight);
  /// Warns if the piece gave hands another weight than an earlier one.
  void End();
  void Warn(std::string warning);

  /// Hands by number; rows are those of OmahaBits.
  void AddRow(int number, std::uint64_t row);
  void RemoveRow(int number, std::uint64_t row);
  void Unite(const HoldingSet& hands) { AddWords(hands.Words()); }
  void Subtract(const HoldingSet& hands) { RemoveWords(hands.Words()); }
  template <int cards>
  void Unite(const OmahaSpec<cards>& hands) {
    AddWords(OmahaBits::Of(hands));
  }
  template <int cards>
  void Subtract(const OmahaSpec<cards>& hands) {
    RemoveWords(OmahaBits::Of(hands));
  }

  /// How much all this was, in hands.
  std::int64_t Writes() const { return writes_; }

  /// Of a game with hands of this size.
  template <int cards>
  HandRange Range(Game game) const;
  /// The first ones, and a line that says how many more there are.
  std::vector<std::string> Warnings() const;

 private:
  struct Piece {
    std::string_view text;
    std::size_t place;
    int weight;
  };
  struct Replaced {
    std::int64_t hands = 0;
    std::size_t first_piece = 0;
  };

  void Set(std::size_t number);
  // All hands, 64 in a word.
  void AddWords(std::span<const std::uint64_t> words);
  void RemoveWords(std::span<const std::uint64_t> words);

  std::vector<Piece> pieces_;
  std::size_t all_hands_;
  // By hand; the first piece stands for none. Empty before a hand is added: of six cards it is
  // large, and many a text adds nothing.
  std::vector<std::uint32_t> piece_of_;
  Replaced replaced_;
  std::int64_t writes_ = 0;
  std::vector<std::string> warnings_;
  std::size_t more_warnings_ = 0;
};

}  // namespace pokermath

#endif  // POKERMATH_RANGES_WEIGHT_SHEET_H_
