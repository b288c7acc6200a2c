// What an Omaha hand is worth is what its best pair of hole cards is worth. So a hand wins against
// those whose pairs are all worth less: the cards that are left make a graph, joined where a pair
// is worth less, and the hands that lose are its cliques of four (or five) cards. The hands that do
// not win are those of the graph joined where a pair is not worth more.
//
// Cards of one rank that cannot flush are joined with the same cards: they are one vertex, of which
// a clique takes some. Boards are alike too. Where nobody can flush only the ranks of a board
// matter; with three or more cards of a suit, which cards of it and the ranks of the others. So
// each such class of boards is counted once and weighed by its boards.

#include "equity/kernels/omaha_cliques.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "equity/kernels/hole_cards.h"
#include "eval/omaha_best.h"
#include "eval/rank_sets.h"
#include "platform/isa.h"

namespace pokermath {
namespace {

// Cards that are joined with the same cards.
struct Twins {
  int card = 0;  // one of them
  int count = 0;
  std::uint64_t bits = 0;  // theirs
};

// Every suited card and every rank of the others.
constexpr std::size_t kMostTwins = 26;

struct Graph {
  std::uint64_t first = 0;                       // bits of twins with which a clique may start
  std::array<std::uint64_t, kMostTwins> joined;  // bits of the twins behind
  std::array<bool, kMostTwins> among_themselves;

  // What is not used is not set.
  bool Same(const Graph& other, std::size_t size) const {
    return std::equal(joined.begin(), joined.begin() + size, other.joined.begin()) &&
           std::equal(among_themselves.begin(), among_themselves.begin() + size,
                      other.among_themselves.begin());
  }
};

// The cards that an opponent may hold.
class Live {
 public:
  void Add(int card, int count) {
    if (count == 0) return;
    Twins& twins = twins_[size_];
    twins = {card, count, ((std::uint64_t{1} << count) - 1) << cards_};
    for (int i = 0; i < count; ++i) {
      twins_of_bit_[static_cast<std::size_t>(cards_++)] = static_cast<std::uint8_t>(size_);
    }
    ++size_;
  }
  int cards() const { return cards_; }

  // The hands that are worth less than a value, and those that are worth it.
  template <int hand_size>
  [[gnu::always_inline]] void Count(const OmahaPairValues& values, int value, Tally& tally) const {
    Graph less, not_more;
    for (std::size_t i = 0; i < size_; ++i) {
      const int same = twins_[i].count > 1 ? values.Of(twins_[i].card, twins_[i].card) : value + 1;
      less.among_themselves[i] = same < value;
      not_more.among_themselves[i] = same <= value;
      std::uint64_t joined_less = 0;
      std::uint64_t joined_not_more = 0;
      for (std::size_t j = i + 1; j < size_; ++j) {
        const int pair = values.Of(twins_[i].card, twins_[j].card);
        joined_less |= pair < value ? twins_[j].bits : 0;
        joined_not_more |= pair <= value ? twins_[j].bits : 0;
      }
      less.joined[i] = joined_less;
      not_more.joined[i] = joined_not_more;
      less.first |= joined_less != 0 || same < value ? twins_[i].bits : 0;
      not_more.first |= joined_not_more != 0 || same <= value ? twins_[i].bits : 0;
    }
    const std::uint64_t all = (std::uint64_t{1} << cards_) - 1;
    tally.wins = Cliques<hand_size>(less, all);
    tally.ties = less.Same(not_more, size_) ? 0 : Cliques<hand_size>(not_more, all) - tally.wins;
  }

 private:
  // Ways to choose so many of the cards `among` that all are joined.
  template <int size>
  [[gnu::always_inline]] std::int64_t Cliques(const Graph& graph, std::uint64_t among) const {
    if constexpr (size == 0) {
      return 1;
    } else if constexpr (size == 1) {
      return __builtin_popcountll(among);
    } else {
      constexpr int kChoose[5][5] = {{}, {}, {0, 0, 1}, {0, 0, 3, 1}, {0, 0, 6, 4, 1}};
      std::int64_t cliques = 0;
      for (std::uint64_t rest = among & graph.first; rest != 0;) {
        const std::size_t i = twins_of_bit_[static_cast<std::size_t>(__builtin_ctzll(rest))];
        rest &= ~twins_[i].bits;
        const std::uint64_t joined = among & graph.joined[i];
        cliques += twins_[i].count * Cliques<size - 1>(graph, joined);
        if (!graph.among_themselves[i]) continue;
        const auto& choose = kChoose[twins_[i].count];
        cliques += choose[2] * Cliques<size - 2>(graph, joined);
        if constexpr (size >= 3) cliques += choose[3] * Cliques<size - 3>(graph, joined);
        if constexpr (size >= 4) cliques += choose[4] * Cliques<size - 4>(graph, joined);
      }
      return cliques;
    }
  }

  std::size_t size_ = 0;
  int cards_ = 0;
  std::array<Twins, kMostTwins> twins_;
  std::array<std::uint8_t, 52> twins_of_bit_;
};

// With and without an instruction that counts bits.
void CountBaseline(const Live& live, std::size_t hand_size, const OmahaPairValues& values,
                   int value, Tally& tally) {
  hand_size == 5 ? live.Count<5>(values, value, tally) : live.Count<4>(values, value, tally);
}
POKERMATH_TARGET_AVX2 void CountAvx2(const Live& live, std::size_t hand_size,
                                     const OmahaPairValues& values, int value, Tally& tally) {
  hand_size == 5 ? live.Count<5>(values, value, tally) : live.Count<4>(values, value, tally);
}

// Boards on which every hand is worth the same.
struct BoardClass {
  std::array<int, 5> ranks{};  // those that are known first
  int suit = -1;               // of which there are three cards and more, or -1
  RankSet suited = 0;          // their ranks
  std::int64_t boards = 0;
};

class Boards {
 public:
  Boards(std::span<const int> hand, std::span<const int> board, Street street,
         std::span<const int> dead)
      : known_(board.size()), size_(static_cast<std::size_t>(street)) {
    std::ranges::transform(board, ranks_.begin(), [](int card) { return card % 13; });
    for (int suit = 0; suit < 4; ++suit) {
      const auto ranks = [suit](std::uint64_t cards) {
        return static_cast<RankSet>(cards >> 13 * suit & kAllRanks);
      };
      const std::uint64_t live = ~(Bits(hand) | Bits(board) | Bits(dead));
      sights_[static_cast<std::size_t>(suit)] = {ranks(Bits(hand)), ranks(Bits(board)),
                                                 ranks(live)};
    }
    for (const Sight& sight : sights_) AddTo(counts_, sight.live, 1);
  }

  std::span<const int> RanksOf(const BoardClass& board) const {
    return std::span(board.ranks).first(size_);
  }

  // Every class that has boards.
  std::vector<BoardClass> Classes() const {
    std::vector<BoardClass> classes;
    BoardClass board = {.ranks = ranks_};
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
      AddFlushes(static_cast<int>(suit), [&](const BoardClass& flush) {
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

  // What an opponent may hold on a board of a class.
  Live LiveOn(const BoardClass& board) const {
    RankCounts counts = counts_;
    for (const int rank : RanksOf(board).subspan(known_)) --counts[static_cast<std::size_t>(rank)];
    RankSet suited = 0;
    if (board.suit >= 0) {
      suited =
          static_cast<RankSet>(sights_[static_cast<std::size_t>(board.suit)].live & ~board.suited);
      AddTo(counts, suited, -1);
    }
    Live live;
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

 private:
  // What a suit sees of the hand, the board and the cards that may come.
  struct Sight {
    RankSet hand, board, live;
    bool operator==(const Sight&) const = default;
  };

  static void AddTo(RankCounts& counts, RankSet ranks, int number) {
    for (std::size_t rank = 0; rank < 13; ++rank) {
      if ((ranks >> rank & 1) != 0) counts[rank] = static_cast<std::int8_t>(counts[rank] + number);
    }
  }

  // The classes with three cards of a suit and more.
  template <typename Add>
  void AddFlushes(int suit, const Add& add) const {
    const Sight& sight = sights_[static_cast<std::size_t>(suit)];
    RankCounts others = counts_;
    AddTo(others, sight.live, -1);
    const int to_come = static_cast<int>(size_ - known_);
    const int known = __builtin_popcount(sight.board);
    for (int suited = std::max(0, 3 - known); suited <= to_come; ++suited) {
      ForEachSubset(sight.live, suited, [&](RankSet coming) {
        BoardClass board = {ranks_, suit, static_cast<RankSet>(sight.board | coming)};
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

  std::size_t known_;
  std::size_t size_;
  std::array<int, 5> ranks_{};  // of the known cards
  std::array<Sight, 4> sights_{};
  RankCounts counts_{};  // of the cards that may come
};

}  // namespace

Tally CountOmahaAgainstAll(Isa isa, std::span<const int> hand, std::span<const int> board,
                           Street street, std::span<const int> dead, const GoOn& go_on) {
  constexpr std::size_t kBetweenCalls = 1024;
  const auto count = isa == Isa::kBaseline ? CountBaseline : CountAvx2;
  const Boards boards(hand, board, street, dead);
  const std::vector<BoardClass> classes = boards.Classes();
  Tally tally;
  for (std::size_t i = 0; i < classes.size(); ++i) {
    const BoardClass& of = classes[i];
    const OmahaPairValues values(boards.RanksOf(of), of.suit, of.suited);
    const Live live = boards.LiveOn(of);
    Tally part;
    count(live, hand.size(), values, values.Best(hand), part);
    tally.wins += part.wins * of.boards;
    tally.ties += part.ties * of.boards;
    tally.cases += Choose(live.cards(), static_cast<int>(hand.size())) * of.boards;
    if (go_on && i % kBetweenCalls == 0 &&
        !go_on(static_cast<std::int64_t>(i), static_cast<std::int64_t>(classes.size()))) {
      return {};
    }
  }
  return tally;
}

}  // namespace pokermath
