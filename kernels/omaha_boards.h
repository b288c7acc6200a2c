// Boards of an Omaha deal that are alike: where nobody can flush only their ranks matter; with
// three or more cards of a suit, which cards of it and the ranks of the others.

#ifndef POKERMATH_KERNELS_OMAHA_BOARDS_H_
#define POKERMATH_KERNELS_OMAHA_BOARDS_H_

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "eval/rank_sets.h"
#include "kernels/card_graph.h"
#include "pokermath/equity.h"

namespace pokermath {

/// Boards on which every hand is worth the same.
struct OmahaBoardClass {
  std::array<int, 5> ranks{};  ///< those that are known first
  int suit = -1;               ///< of which there are three cards and more, or -1
  RankSet suited = 0;          ///< their ranks
  std::int64_t boards = 0;
};

/// The ways to complete a board.
class OmahaBoards {
 public:
  /// @param hand   cards that cannot come
  /// @param board  known cards, no more than the street has
  /// @param dead   more cards that cannot come and that nobody holds
  OmahaBoards(std::span<const int> hand, std::span<const int> board, Street street,
              std::span<const int> dead);

  /// Every class that has boards.
  std::vector<OmahaBoardClass> Classes() const;

  /// The class of a board to which nothing comes.
  OmahaBoardClass Whole() const;

  /// The ranks of a board of a class.
  std::span<const int> RanksOf(const OmahaBoardClass& board) const {
    return std::span(board.ranks).first(size_);
  }
  /// What an opponent may hold on a board of a class. The cards of the class's suit are themselves,
  /// the others stand for their ranks.
  LiveCards LiveOn(const OmahaBoardClass& board) const;

 private:
  // What a suit sees of the hand, the board and the cards that may come.
  struct Sight {
    RankSet hand, board, live;
    bool operator==(const Sight&) const = default;
  };

  template <typename Add>
  void AddFlushes(int suit, const Add& add) const;

  std::size_t known_;
  std::size_t size_;
  std::array<int, 5> ranks_{};  // of the known cards
  std::array<Sight, 4> sights_{};
  RankCounts counts_{};  // of the cards that may come
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_OMAHA_BOARDS_H_
