// On a board where nobody can flush a hand is its ranks; with three cards of a suit and more it is
// the ranks of its cards of that suit and the ranks of the others. So cards are of 26 kinds, a rank
// of the suit or of the others, and a hand is a multiset of kinds.
//
// For a class of boards the multisets are sorted by value and taken from low to high. How many of
// the hands so far share no card with one follows by inclusion and exclusion: for every set of its
// cards one must know how many hands hold that set. These numbers, one for each multiset of up to
// three (four, five) kinds, grow with every hand that is passed.
//
// Boards are counted by their ranks as if there were no flushes, which depends on nothing but the
// ranks of a hand. Then the boards with three cards of a suit and more are put right, suit by suit,
// by what the suit sees of a hand.

#include "kernels/omaha_every_hand.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>
#include <utility>

#include "cards/omaha_sizes.h"
#include "eval/omaha_best.h"

namespace pokermath {
namespace {

constexpr std::size_t kKinds = 26;  // ranks of other suits, then ranks of the suit
constexpr std::size_t kMostCards = std::ranges::max(kOmahaHandSizes);
constexpr int kFlushSuit = 3;
constexpr std::size_t kValues = 7463;

// The number of a multiset of kinds among those of its size, by its kinds in rising order.
constexpr auto kKindPlaces = [] {
  std::array<std::array<int, kKinds>, kMostCards> places{};
  for (std::size_t i = 0; i < kMostCards; ++i) {
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
      places[i][kind] = Choose(static_cast<int>(kind + i), static_cast<int>(i) + 1);
    }
  }
  return places;
}();

constexpr int KindSets(int size) { return Choose(static_cast<int>(kKinds) - 1 + size, size); }

// Where the multisets of a size begin when all of them lie one behind the other, the empty one
// first.
constexpr std::size_t FirstSet(int size) {
  int first = 0;
  for (int smaller = 0; smaller < size; ++smaller) first += KindSets(smaller);
  return static_cast<std::size_t>(first);
}

using KindList = std::span<const std::uint8_t>;

// The number of a multiset.
std::size_t SetNumber(KindList kinds) {
  std::size_t number = FirstSet(static_cast<int>(kinds.size()));
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    number += static_cast<std::size_t>(kKindPlaces[i][kinds[i]]);
  }
  return number;
}

// A multiset as a smaller one and the cards of its last kind.
struct LastKind {
  std::uint32_t others;  // the number of the smaller one
  std::uint8_t kind, count;
};

LastKind LastKindOf(KindList kinds) {
  std::size_t others = kinds.size() - 1;
  while (others > 0 && kinds[others - 1] == kinds.back()) --others;
  return {static_cast<std::uint32_t>(SetNumber(kinds.first(others))), kinds.back(),
          static_cast<std::uint8_t>(kinds.size() - others)};
}

// Every multiset of `size` kinds in the order of their numbers.
template <std::size_t size, typename Visit>
void ForEachSet(const Visit& visit) {
  std::array<std::uint8_t, size> kinds{};
  for (;;) {
    visit(kinds);
    std::size_t i = 0;
    while (i + 1 < size && kinds[i] == kinds[i + 1]) ++i;
    if (i + 1 == size && kinds[i] + 1u == kKinds) return;
    ++kinds[i];
    std::fill_n(kinds.begin(), i, std::uint8_t{0});
  }
}

constexpr int kSubsets(int hand_size) { return 1 << hand_size; }

// The number of a multiset of fewer cards than a hand has.
template <int hand_size>
using SetOf =
    std::conditional_t<FirstSet(hand_size) <= UINT16_MAX + 1, std::uint16_t, std::uint32_t>;

template <int hand_size>
struct Hand {
  std::array<std::uint8_t, hand_size> kinds;  // rising
  // The multisets that its cards make, small ones first.
  std::array<SetOf<hand_size>, kSubsets(hand_size) - 1> sets;
  LastKind last;
  std::uint16_t ranks;  // the number of the multiset of its ranks
};

template <int hand_size>
constexpr std::size_t kRankHands = static_cast<std::size_t>(MultisetsOf(hand_size));

// All hands, first those without a card of the suit in the order of their ranks' numbers.
template <int hand_size>
class Hands {
 public:
  static const Hands& Get() {
    static const Hands hands;
    return hands;
  }

  const std::vector<Hand<hand_size>>& all() const { return hands_; }
  // Multisets of fewer cards than a hand has.
  const std::vector<LastKind>& sets() const { return sets_; }

  // The place of a hand in the list.
  std::size_t PlaceOf(std::span<const int> hand, int suit) const {
    std::array<std::uint8_t, hand_size> kinds;
    for (std::size_t i = 0; i < hand_size; ++i) {
      kinds[i] = static_cast<std::uint8_t>(hand[i] % 13 + (hand[i] / 13 == suit ? 13 : 0));
    }
    std::ranges::sort(kinds);
    return places_[SetNumber(kinds) - FirstSet(hand_size)];
  }

 private:
  Hands() : places_(static_cast<std::size_t>(KindSets(hand_size))) {
    sets_.push_back({0, 0, 0});  // the empty one
    AddSets<1>();
    ForEachSet<hand_size>([this](const auto& kinds) {
      // A card of the suit is there once.
      for (std::size_t i = 0; i + 1 < hand_size; ++i) {
        if (kinds[i] >= 13 && kinds[i] == kinds[i + 1]) return;
      }
      AddHand(kinds);
    });
  }

  template <std::size_t size>
  void AddSets() {
    if constexpr (size < hand_size) {
      ForEachSet<size>([this](const auto& kinds) { sets_.push_back(LastKindOf(kinds)); });
      AddSets<size + 1>();
    }
  }
  void AddHand(const std::array<std::uint8_t, hand_size>& kinds) {
    Hand<hand_size> hand{kinds, {}, LastKindOf(kinds), 0};
    std::size_t next = 0;
    for (int size = 0; size < hand_size; ++size) {
      for (unsigned places = 0; places < kSubsets(hand_size); ++places) {
        if (__builtin_popcount(places) != size) continue;
        std::array<std::uint8_t, hand_size> subset;
        std::size_t taken = 0;
        for (std::size_t i = 0; i < hand_size; ++i) {
          if ((places >> i & 1) != 0) subset[taken++] = kinds[i];
        }
        hand.sets[next++] = static_cast<SetOf<hand_size>>(SetNumber(KindList(subset).first(taken)));
      }
    }
    std::array<int, hand_size> ranks;
    std::ranges::transform(kinds, ranks.begin(), [](int kind) { return kind % 13; });
    std::ranges::sort(ranks);
    hand.ranks = static_cast<std::uint16_t>(MultisetNumber(ranks));
    places_[SetNumber(kinds) - FirstSet(hand_size)] = static_cast<std::uint32_t>(hands_.size());
    hands_.push_back(hand);
  }

  std::vector<Hand<hand_size>> hands_;
  std::vector<LastKind> sets_;
  std::vector<std::uint32_t> places_;  // by number
};

// How many hands so far share no card with one, but itself.
template <int hand_size>
double Disjoint(const Hand<hand_size>& hand, const std::vector<double>& holding) {
  double count = 0;
  std::size_t next = 0;
  for (int size = 0; size < hand_size; ++size) {
    double sum = 0;
    for (int i = 0; i < Choose(hand_size, size); ++i) sum += holding[hand.sets[next++]];
    count += size % 2 == 0 ? sum : -sum;
  }
  return count;
}

// Ways to take some ranks from the cards that a hand leaves, `each` of every rank without it.
template <std::size_t hand_size>
int WaysToTake(std::span<const int> ranks, const std::array<std::uint8_t, hand_size>& kinds,
               int each) {
  int ways = 1;
  for (std::size_t i = 0; i < ranks.size();) {
    int left = each;
    for (const std::uint8_t kind : kinds) left -= kind == ranks[i] ? 1 : 0;
    int taken = 0;
    for (const int rank = ranks[i]; i < ranks.size() && ranks[i] == rank; ++i) ++taken;
    ways *= Choose(left, taken);
  }
  return ways;
}

}  // namespace

struct OmahaEveryHand::Scratch {
  // By multiset of kinds: ways to take it, their inverse, and the hands so far that hold one such
  // set of cards.
  std::vector<int> ways;
  std::vector<double> inverse;
  std::vector<double> holding;
  std::vector<int> hand_ways;                    // by hand; 0 if it is not there
  std::vector<std::uint16_t> hand_value;         // by hand
  std::vector<double> wins;                      // by hand
  std::array<std::uint32_t, kValues + 1> first;  // by value
  std::vector<std::uint32_t> order;              // hands by value
  std::vector<std::int64_t> plain;               // by ranks: without flushes
};

OmahaEveryHand::OmahaEveryHand(int hand_size)
    : hand_size_(hand_size), scratch_(std::make_unique<Scratch>()) {
  const auto [hands, sets] = ForOmahaSize(hand_size, [](auto size) {
    const Hands<size>& all = Hands<size>::Get();
    return std::pair(all.all().size(), all.sets().size());
  });
  const auto rank_hands = static_cast<std::size_t>(MultisetsOf(hand_size));
  sums_.resize(rank_hands + hands);
  scratch_->ways.resize(sets);
  scratch_->inverse.resize(sets);
  scratch_->holding.resize(sets);
  scratch_->hand_ways.resize(hands);
  scratch_->hand_value.resize(hands);
  scratch_->wins.resize(hands);
  scratch_->order.resize(hands);
  scratch_->plain.resize(rank_hands);
}

OmahaEveryHand::~OmahaEveryHand() = default;

// Calls result(hand, twice its wins plus its ties) on one board of a class.
template <int hand_size, typename Result>
void OmahaEveryHand::CountClass(std::span<const int> ranks, RankSet suited, const Result& result) {
  Scratch& scratch = *scratch_;
  const Hands<hand_size>& hands = Hands<hand_size>::Get();
  // Cards of each kind; where there is no flush all four of a rank are one kind.
  std::array<std::array<int, kMostCards + 1>, kKinds> ways_of_kind;
  const auto set_count = [&ways_of_kind](std::size_t kind, int cards) {
    for (std::size_t taken = 0; taken <= kMostCards; ++taken) {
      ways_of_kind[kind][taken] = Choose(cards, static_cast<int>(taken));
    }
  };
  for (std::size_t rank = 0; rank < 13; ++rank) {
    const auto on_board = static_cast<int>(std::ranges::count(ranks, static_cast<int>(rank)));
    const int of_suit = suited >> rank & 1;
    set_count(rank, (suited != 0 ? 3 : 4) - (on_board - of_suit));
    set_count(rank + 13, suited != 0 ? 1 - of_suit : 0);
  }
  scratch.ways[0] = 1;
  scratch.inverse[0] = 1;
  for (std::size_t i = 1; i < hands.sets().size(); ++i) {
    const auto [others, kind, count] = hands.sets()[i];
    scratch.ways[i] = scratch.ways[others] * ways_of_kind[kind][count];
    scratch.inverse[i] = scratch.ways[i] == 0 ? 0.0 : 1.0 / scratch.ways[i];
  }

  // Values, and the hands in their order.
  const OmahaPairValues pair_values(ranks, suited != 0 ? kFlushSuit : -1, suited);
  std::array<std::uint16_t, static_cast<std::size_t>(KindSets(2))> values;
  std::size_t next = 0;
  ForEachSet<2>([&](const auto& kinds) {
    const auto card = [](int kind) { return kind < 13 ? kind : kFlushSuit * 13 + kind - 13; };
    values[next++] = static_cast<std::uint16_t>(pair_values.Of(card(kinds[0]), card(kinds[1])));
  });
  scratch.first.fill(0);
  const std::size_t hand_count = suited != 0 ? hands.all().size() : kRankHands<hand_size>;
  for (std::size_t i = 0; i < hand_count; ++i) {
    const Hand<hand_size>& hand = hands.all()[i];
    scratch.hand_ways[i] =
        scratch.ways[hand.last.others] * ways_of_kind[hand.last.kind][hand.last.count];
    if (scratch.hand_ways[i] == 0) continue;
    constexpr std::size_t kFirstPair = 1 + hand_size;
    std::uint16_t value = 0;
    for (std::size_t pair = 0; pair < static_cast<std::size_t>(Choose(hand_size, 2)); ++pair) {
      value = std::max(value, values[hand.sets[kFirstPair + pair] - FirstSet(2)]);
    }
    scratch.hand_value[i] = value;
    ++scratch.first[value + 1u];
  }
  for (std::size_t value = 1; value <= kValues; ++value)
    scratch.first[value] += scratch.first[value - 1];
  const std::uint32_t there = scratch.first[kValues];
  for (std::size_t i = 0; i < hand_count; ++i) {
    if (scratch.hand_ways[i] == 0) continue;
    scratch.order[scratch.first[scratch.hand_value[i]]++] = static_cast<std::uint32_t>(i);
  }

  // From low to high, hands of one value together.
  std::ranges::fill(scratch.holding, 0.0);
  for (std::uint32_t begin = 0; begin < there;) {
    const std::uint32_t end = scratch.first[scratch.hand_value[scratch.order[begin]]];
    const auto group = std::span(scratch.order).subspan(begin, end - begin);
    for (const std::uint32_t i : group) {
      scratch.wins[i] = Disjoint(hands.all()[i], scratch.holding);
    }
    for (const std::uint32_t i : group) {
      for (const SetOf<hand_size> set : hands.all()[i].sets) {
        scratch.holding[set] += scratch.hand_ways[i] * scratch.inverse[set];
      }
    }
    for (const std::uint32_t i : group) {
      // The hand itself holds all of its cards: the last term of inclusion and exclusion.
      constexpr int kItself = hand_size % 2 == 0 ? 1 : -1;
      const double wins_and_ties = Disjoint(hands.all()[i], scratch.holding) + kItself;
      result(i, std::llround(scratch.wins[i] + wins_and_ties));
    }
    begin = end;
  }
}

template <int hand_size>
void OmahaEveryHand::AddBoards(std::span<const int> ranks) {
  const std::vector<Hand<hand_size>>& hands = Hands<hand_size>::Get().all();
  std::ranges::fill(scratch_->plain, 0);
  CountClass<hand_size>(ranks, 0, [&](std::size_t i, std::int64_t value) {
    scratch_->plain[i] = value;
    sums_[i] += value * WaysToTake(ranks, hands[i].kinds, 4);
  });
  RankSet different = 0;
  for (const int rank : ranks) different = static_cast<RankSet>(different | 1 << rank);
  for (int size = 3; size <= __builtin_popcount(different); ++size) {
    ForEachSubset(different, size, [&](RankSet suited) {
      std::vector<int> others;
      RankSet rest = suited;
      for (const int rank : ranks) {
        if ((rest >> rank & 1) == 0) others.push_back(rank);
        rest = static_cast<RankSet>(rest & ~(1 << rank));
      }
      CountClass<hand_size>(ranks, suited, [&](std::size_t i, std::int64_t value) {
        sums_[kRankHands<hand_size> + i] +=
            (value - scratch_->plain[hands[i].ranks]) * WaysToTake(others, hands[i].kinds, 3);
      });
    });
  }
}

void OmahaEveryHand::Add(int step) {
  std::array<int, 5> ranks{};
  for (std::size_t i = 5; i-- > 0;) {
    while (ranks[i] < 12 && kMultisetPlaces[i][static_cast<std::size_t>(ranks[i] + 1)] <= step) {
      ++ranks[i];
    }
    step -= kMultisetPlaces[i][static_cast<std::size_t>(ranks[i])];
  }
  if (ranks[0] == ranks[4]) return;  // five of a kind
  ForOmahaSize(hand_size_, [&](auto size) { AddBoards<size>(ranks); });
}

namespace {

template <int hand_size>
std::int64_t SumOf(std::span<const int> hand, std::span<const std::int64_t> sums) {
  const Hands<hand_size>& hands = Hands<hand_size>::Get();
  std::int64_t sum = sums[hands.all()[hands.PlaceOf(hand, 0)].ranks];
  for (int suit = 0; suit < 4; ++suit) {
    sum += sums[kRankHands<hand_size> + hands.PlaceOf(hand, suit)];
  }
  return sum;
}

}  // namespace

std::int64_t OmahaEveryHand::Of(std::span<const int> hand) const {
  return ForOmahaSize(hand_size_, [&](auto size) { return SumOf<size>(hand, sums_); });
}

}  // namespace pokermath
