// Boards by their ranks alone, in blocks of which each is some head ranks and a run of tails.
//
// A block of boards of five is, for instance, all of "a pair of sevens and three ranks more": the
// head is the pair, the tails are all sets of three ranks. Ways to draw heads and tails multiply,
// and so do polynomials that tell how many cards are of a suit; so a few products give the ways to
// draw every board of a block. Boards whose tail has a rank of the head have no ways.

#ifndef POKERMATH_KERNELS_RANK_BOARDS_H_
#define POKERMATH_KERNELS_RANK_BOARDS_H_

#include <array>
#include <cstdint>
#include <vector>

#include "kernels/decks.h"
#include "kernels/hole_cards.h"
#include "kernels/matchup_tables.h"
#include "platform/made_once.h"

namespace pokermath {

/// What stands behind the head: nothing, one rank to three, once each; or one rank twice.
enum class Tail { kNone, kOne, kTwo, kThree, kPair };
inline constexpr int kTails = 5;
constexpr int RanksIn(Tail tail) { return tail == Tail::kPair ? 1 : static_cast<int>(tail); }

struct BoardBlock {
  std::array<int, 2> head{};   ///< ranks, the lower one last; a single one twice
  std::array<int, 2> times{};  ///< cards of each of them; of a second one that is none, 0
  int head_ranks = 0;          ///< how many there are
  std::uint16_t head_set = 0;  ///< the same as a set
  Tail tail = Tail::kNone;
  int size = 0;   ///< boards: so many tails from the first one on
  int first = 0;  ///< where they stand among all boards
};

/// Rank boards of all blocks, one behind the other.
struct RankBoards {
  static constexpr int kMost = 7371;  ///< boards, of five cards

  std::vector<BoardBlock> blocks;
  int size = 0;  ///< a multiple of kGroup; the last boards have no ways
  /// [tail][place]: the ranks of a tail. Sets of ranks rise as numbers, so that those below a rank
  /// are the first ones. Rows are longer by kGroup.
  std::array<std::vector<std::int16_t>, kTails> tails;
};

/// The boards of kBoard cards, 3 to 5, and what rank classes make with them: 1.3 MB for the river
/// when all is built, each class when it is first asked for, by any thread.
template <Deck deck, int kBoard>
class RankBoardTables {
 public:
  static const RankBoardTables& Get();

  const RankBoards& boards() const { return boards_; }
  /// Ascending, suits left aside.
  const Values& Of(int rank_class) const {
    return classes_.Get(static_cast<std::size_t>(rank_class),
                        [&](Values& values) { Build(rank_class, values); });
  }

 private:
  RankBoardTables();
  void Build(int rank_class, Values& values) const;

  RankBoards boards_;
  std::vector<std::uint32_t> keys_;
  MadeOnce<Values> classes_{kRankClasses};
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_RANK_BOARDS_H_
