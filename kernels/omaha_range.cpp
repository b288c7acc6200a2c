// An Omaha hand does not win where any pair of the other hand's cards is worth as much as its own
// best pair, and loses where one is worth more. So for every pair of cards there is a row of bits,
// one for each board: where the pair is worth no less than the hand, and where it is worth more.
// Where the board holds a card of the pair both bits are set. The rows of a hand's six (ten,
// fifteen) pairs, put together, have the first bit where the hand is not beaten or cannot be held,
// and the first without the second where it ties; how many boards a hand leaves is known without
// counting.
//
// Most pairs are worth what their ranks are, so the rows are made of one for every two ranks, one
// for every two cards of a suit where these make a flush, and one for every card.
//
// Boards come in blocks, so that their rows fit into the second-level cache.

#include "kernels/omaha_range.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <type_traits>

#include "eval/omaha_best.h"
#include "kernels/hole_cards.h"
#include "kernels/registers.h"

namespace pokermath {
namespace {

using Word = std::uint64_t;
constexpr int kBits = 64;
// A block of boards is so many words wide; fewer boards than a word has are a block of one word.
constexpr std::size_t kWords = 16;
constexpr std::int64_t kBlock = kWords * kBits;

constexpr std::size_t PairNumber(int high, int low) {
  return static_cast<std::size_t>(high * (high - 1) / 2 + low);
}
constexpr std::size_t kCardPairs = PairNumber(51, 50) + 1;

// All ways to complete a board, one after the other.
class BoardsToCome {
 public:
  // From a number on, in the order of the lowest card, then the next one.
  BoardsToCome(std::uint64_t taken, std::span<const int> board, Street street,
               std::int64_t first = 0)
      : cards_(board.begin(), board.end()), known_(board.size()) {
    for (int card = 0; card < 52; ++card) {
      if ((taken & Bit(card)) == 0) live_.push_back(card);
    }
    places_.resize(static_cast<std::size_t>(street) - known_);
    cards_.resize(static_cast<std::size_t>(street));
    std::size_t place = 0;
    for (std::size_t i = 0; i < places_.size(); ++i, ++place) {
      const auto behind = static_cast<int>(places_.size() - i) - 1;
      const auto from = [&] {
        return Choose(static_cast<int>(live_.size()) - static_cast<int>(place) - 1, behind);
      };
      for (; place < live_.size() && first >= from(); ++place) first -= from();
      places_[i] = place;
    }
    for (std::size_t i = 0; i < places_.size() && places_.size() <= live_.size(); ++i) Show(i);
  }

  /// Of a deck with so many other cards less.
  std::int64_t Count(std::size_t fewer = 0) const {
    const std::size_t live = live_.size() - std::min(fewer, live_.size());
    return Choose(static_cast<int>(live), static_cast<int>(places_.size()));
  }
  std::span<const int> live() const { return live_; }
  std::span<const int> cards() const { return cards_; }
  std::span<const int> coming() const { return cards().subspan(known_); }

  void Next() {
    for (std::size_t i = places_.size(); i-- > 0;) {
      if (++places_[i] + places_.size() - i > live_.size()) continue;
      for (std::size_t j = i + 1; j < places_.size(); ++j) places_[j] = places_[j - 1] + 1;
      for (std::size_t j = i; j < places_.size(); ++j) Show(j);
      return;
    }
  }

 private:
  void Show(std::size_t i) { cards_[known_ + i] = live_[places_[i]]; }

  std::vector<int> live_;
  std::vector<int> cards_;
  std::size_t known_;
  std::vector<std::size_t> places_;
};

struct Marks {
  Word not_less = 0;
  Word more = 0;

  void Add(int value, int hero, int board) {
    not_less |= Word{value >= hero} << board;
    more |= Word{value > hero} << board;
  }
};

// The marks of up to 64 boards.
class BoardMarks {
 public:
  void Add(int number, std::span<const int> hand, std::span<const int> board,
           std::span<const int> coming) {
    const OmahaPairValues values(board);
    const int hero = values.Best(hand);
    for (int high = 0; high < 13; ++high) {
      for (int low = 0; low <= high; ++low) {
        // Of two suits, so there is no flush.
        plain_[ClassOf(high, low)].Add(values.Of(high, 13 + low), hero, number);
      }
    }
    for (const int card : coming) holds_[static_cast<std::size_t>(card)] |= Word{1} << number;
    const int suit = values.suit();
    if (suit < 0) return;
    auto& suited = suited_[static_cast<std::size_t>(suit)];
    for (int high = 1; high < 13; ++high) {
      for (int low = 0; low < high; ++low) {
        suited[ClassOf(high, low)].Add(values.Of(13 * suit + high, 13 * suit + low), hero, number);
      }
    }
  }

  /// Of a pair of cards; both marks where it cannot be held.
  Marks Of(int card1, int card2) const {
    const std::size_t rank_class = ClassOf(card1 % 13, card2 % 13);
    Marks marks = plain_[rank_class];
    if (card1 / 13 == card2 / 13) {
      const Marks& flush = suited_[static_cast<std::size_t>(card1 / 13)][rank_class];
      marks.not_less |= flush.not_less;
      marks.more |= flush.more;
    }
    const Word blocked =
        holds_[static_cast<std::size_t>(card1)] | holds_[static_cast<std::size_t>(card2)];
    return {marks.not_less | blocked, marks.more | blocked};
  }

 private:
  static std::size_t ClassOf(int rank1, int rank2) {
    return static_cast<std::size_t>(RankClassOf(rank1, rank2));
  }

  std::array<Marks, kRankClasses> plain_{};
  std::array<std::array<Marks, kRankClasses>, 4> suited_{};
  std::array<Word, 52> holds_{};
};

// The marks of a pair on a block of boards.
template <std::size_t words>
struct Row {
  std::array<Word, words> not_less, more;
};

// Fills the rows of all live pairs from the next boards.
template <std::size_t words>
void FillRows(std::span<const int> hand, BoardsToCome& boards, int count,
              std::span<Row<words>> rows) {
  const std::span<const int> live = boards.live();
  for (std::size_t word = 0; word < words; ++word) {
    BoardMarks marks;
    for (int i = 0; i < kBits && count > 0; ++i, --count) {
      marks.Add(i, hand, boards.cards(), boards.coming());
      boards.Next();
    }
    for (std::size_t i = 1; i < live.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        const Marks pair = marks.Of(live[i], live[j]);
        Row<words>& row = rows[PairNumber(live[i], live[j])];
        row.not_less[word] = pair.not_less;
        row.more[word] = pair.more;
      }
    }
  }
}

// How often hands do not lose, or cannot be held, and how often they tie, by their weights. No sum
// is as large as if all hands counted 10,000 times on all boards.
static_assert(Choose(52, 5) < (std::int64_t{1} << 62) / Choose(52, 6) / 10000);
struct Sums {
  std::int64_t not_less = 0;
  std::int64_t ties = 0;
};

using TwoWords = Word __attribute__((vector_size(16)));
using FourWords = Word __attribute__((vector_size(32)));

template <typename Register>
POKERMATH_KERNEL int CountBits(const Register& bits) {
  std::array<Word, sizeof(Register) / sizeof(Word)> words;
  std::memcpy(words.data(), &bits, sizeof bits);
  int count = 0;
  for (const Word word : words) count += std::popcount(word);
  return count;
}

template <typename Register, std::size_t words, std::size_t cards>
POKERMATH_KERNEL Sums CountRows(std::span<const Row<words>> rows,
                                std::span<const std::array<int, cards>> hands,
                                std::span<const int> weights) {
  constexpr std::size_t kStep = sizeof(Register) / sizeof(Word);
  Sums sums;
  for (std::size_t place = 0; place < hands.size(); ++place) {
    const std::array<int, cards>& hand = hands[place];
    std::int64_t all_not_less = 0, ties = 0;
    std::array<const Row<words>*, Choose(cards, 2)> pairs;
    for (std::size_t i = 1; i < cards; ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        pairs[i * (i - 1) / 2 + j] = &rows[PairNumber(hand[i], hand[j])];
      }
    }
    for (std::size_t word = 0; word < words; word += kStep) {
      Register not_less{}, more{};
      for (const Row<words>* pair : pairs) {
        Register bits;
        std::memcpy(&bits, &pair->not_less[word], sizeof bits);
        not_less |= bits;
        std::memcpy(&bits, &pair->more[word], sizeof bits);
        more |= bits;
      }
      all_not_less += CountBits(not_less);
      ties += CountBits(not_less & ~more);
    }
    sums.not_less += weights[place] * all_not_less;
    sums.ties += weights[place] * ties;
  }
  return sums;
}

}  // namespace

template <int cards>
OmahaRangeContest<cards>::OmahaRangeContest(std::span<const int> hand, std::span<const Hand> range,
                                            std::span<const int> board, Street street,
                                            std::span<const int> dead, std::span<const int> weights)
    : hand_(hand.begin(), hand.end()),
      board_(board.begin(), board.end()),
      street_(street),
      taken_(Bits(hand) | Bits(board) | Bits(dead)) {
  hands_.reserve(range.size());
  weights_.reserve(range.size());
  for (std::size_t i = 0; i < range.size(); ++i) {
    if ((Bits(range[i]) & taken_) != 0) continue;
    hands_.push_back(range[i]);
    weights_.push_back(weights.empty() ? 1 : weights[i]);
    weight_ += weights_.back();
  }
}

template <int cards>
std::int64_t OmahaRangeContest<cards>::blocks() const {
  if (hands_.empty()) return 0;
  const std::int64_t boards = BoardsToCome(taken_, board_, street_).Count();
  return boards <= kBits ? 1 : (boards + kBlock - 1) / kBlock;
}

template <int cards>
template <std::size_t words>
Tally OmahaRangeContest<cards>::CountBlocks(Isa isa, std::int64_t first, std::int64_t last) const {
  constexpr std::int64_t kSize = words * kBits;
  BoardsToCome boards(taken_, board_, street_, first * kSize);
  std::vector<Row<words>> rows(kCardPairs);
  Tally tally;
  for (std::int64_t block = first; block < last; ++block) {
    const std::int64_t size = std::min(kSize, boards.Count() - block * kSize);
    FillRows<words>(hand_, boards, static_cast<int>(size), rows);
    const Sums sums = Dispatch<Isa::kAvx2>(isa, [&](auto level) POKERMATH_INLINE {
      using Several = std::conditional_t<level() == Isa::kBaseline, TwoWords, FourWords>;
      return CountRows<std::conditional_t<words == 1, Word, Several>, words, cards>(rows, hands_,
                                                                                    weights_);
    });
    tally.wins += size * weight_ - sums.not_less;
    tally.ties += sums.ties;
  }
  if (first == 0 && last > 0) tally.cases = weight_ * boards.Count(cards);
  return tally;
}

template <int cards>
Tally OmahaRangeContest<cards>::Count(Isa isa, std::int64_t first, std::int64_t last) const {
  const bool one_word = BoardsToCome(taken_, board_, street_).Count() <= kBits;
  return one_word ? CountBlocks<1>(isa, first, last) : CountBlocks<kWords>(isa, first, last);
}

template <int cards>
Tally OmahaRangeContest<cards>::Count(Isa isa, const GoOn& go_on) const {
  if (!go_on) return Count(isa, 0, blocks());
  const std::int64_t all = blocks();
  Tally tally;
  for (std::int64_t block = 0; block < all; ++block) {
    if (!go_on(block, all)) return {};
    const Tally of_block = Count(isa, block, block + 1);
    tally.wins += of_block.wins;
    tally.ties += of_block.ties;
    tally.cases += of_block.cases;
  }
  return tally;
}

#define POKERMATH_CONTEST(cards) template class OmahaRangeContest<cards>;
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_CONTEST)

}  // namespace pokermath
