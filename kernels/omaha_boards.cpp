#include "kernels/omaha_boards.h"

#include <algorithm>

#include "kernels/hole_cards.h"

namespace pokermath {
namespace {

void AddTo(RankCounts& counts, RankSet ranks, int number) {
  for (std::size_t rank = 0; rank < 13; ++rank) {
    if ((ranks >> rank & 1) != 0) counts[rank] = static_cast<std::int8_t>(counts[rank] + number);
  }
}

}  // namespace

OmahaBoards::OmahaBoards(std::span<const int> hand, std::span<const int> board, Street street,
                         std::span<const int> dead)
    : known_(board.size()), size_(static_cast<std::size_t>(street)) {
  std::ranges::transform(board, ranks_.begin(), [](int card) { return card % 13; });
  for (int suit = 0; suit < 4; ++suit) {
    const auto ranks = [suit](std::uint64_t cards) {
      return static_cast<RankSet>(cards >> 13 * suit & kAllRanks);
    };
    const std::uint64_t live = ~(Bits(hand) | Bits(board) | Bits(dead));
    sights_[static_cast<std::size_t>(suit)] = {ranks(Bits(hand)), ranks(Bits(board)), ranks(live)};
  }
  for (const Sight& sight : sights_) AddTo(counts_, sight.live, 1);
}

// The classes with three cards of a suit and more.
template <typename Add>
void OmahaBoards::AddFlushes(int suit, const Add& add) const {
  const Sight& sight = sights_[static_cast<std::size_t>(suit)];
  RankCounts others = counts_;
  AddTo(others, sight.live, -1);
  const int to_come = static_cast<int>(size_ - known_);
  const int known = __builtin_popcount(sight.board);
  for (int suited = std::max(0, 3 - known); suited <= to_come; ++suited) {
    ForEachSubset(sight.live, suited, [&](RankSet coming) {
      OmahaBoardClass board = {ranks_, suit, static_cast<RankSet>(sight.board | coming)};
      std::size_t next = known_;
      for (unsigned rest = coming; rest != 0; rest &= rest - 1) {
        board.ranks[next++] = __builtin_ctz(rest);
      }
      ForEachMultiset(others, std::span(board.ranks).first(size_).subspan(next),
                      [&](std::int64_t boards) {
                        board.boards = boards;
                        add(board);
                      });
    });
  }
}

OmahaBoardClass OmahaBoards::Whole() const {
  OmahaBoardClass board = {.ranks = ranks_, .boards = 1};
  for (int suit = 0; suit < 4; ++suit) {
    const RankSet suited = sights_[static_cast<std::size_t>(suit)].board;
    if (__builtin_popcount(suited) < 3) continue;
    board.suit = suit;
    board.suited = suited;
  }
  return board;
}

std::vector<OmahaBoardClass> OmahaBoards::Classes() const {
  std::vector<OmahaBoardClass> classes;
  OmahaBoardClass board = {.ranks = ranks_};
  const std::span<int> coming = std::span(board.ranks).first(size_).subspan(known_);
  // By ranks, the boards without a flush: all of them less those with one.
  std::vector<std::int64_t> plain(
      static_cast<std::size_t>(MultisetsOf(static_cast<int>(coming.size()))));
  const auto plain_boards = [&plain](std::span<const int> ranks) -> std::int64_t& {
    return plain[static_cast<std::size_t>(MultisetNumber(ranks))];
  };
  ForEachMultiset(counts_, coming, [&](std::int64_t boards) { plain_boards(coming) = boards; });
  for (std::size_t suit = 0; suit < 4; ++suit) {
    const auto same = [&](std::size_t other) { return sights_[other] == sights_[suit]; };
    // Suits that see the same cards have the same classes.
    bool seen = false;
    std::int64_t alike = 0;
    for (std::size_t other = 0; other < 4; ++other) {
      seen = seen || (other < suit && same(other));
      alike += same(other) ? 1 : 0;
    }
    if (seen) continue;
    AddFlushes(static_cast<int>(suit), [&](const OmahaBoardClass& flush) {
      std::array<int, 5> sorted = flush.ranks;
      const auto ranks = std::span(sorted).first(size_).subspan(known_);
      std::ranges::sort(ranks);
      plain_boards(ranks) -= alike * flush.boards;
      classes.push_back(flush);
      classes.back().boards *= alike;
    });
  }
  ForEachMultiset(counts_, coming, [&](std::int64_t) {
    board.boards = plain_boards(coming);
    if (board.boards > 0) classes.push_back(board);
  });
  return classes;
}

LiveCards OmahaBoards::LiveOn(const OmahaBoardClass& board) const {
  RankCounts counts = counts_;
  for (const int rank : RanksOf(board).subspan(known_)) --counts[static_cast<std::size_t>(rank)];
  RankSet suited = 0;
  if (board.suit >= 0) {
    suited =
        static_cast<RankSet>(sights_[static_cast<std::size_t>(board.suit)].live & ~board.suited);
    AddTo(counts, suited, -1);
  }
  LiveCards live;
  const int other_suit = (board.suit + 1) % 4;
  for (int rank = 0; rank < 13; ++rank) {
    live.Add(other_suit * 13 + rank, counts[static_cast<std::size_t>(rank)]);
  }
  // Few of these are joined with each other, so it is best that they come last.
  for (unsigned rest = suited; rest != 0; rest &= rest - 1) {
    live.Add(board.suit * 13 + __builtin_ctz(rest), 1);
  }
  return live;
}

}  // namespace pokermath
