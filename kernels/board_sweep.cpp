// Boards that have their ranks in common, and that suit in which somebody may flush with the ranks
// of it, share one order of values. So the cards to come are taken rank by rank, and of their suits
// those together that make no difference: 13 to 35 groups instead of 48 rivers behind a turn, some
// 270 to 490 instead of 1,176 run-outs behind a flop. The order is the one of rank classes; where
// somebody flushes, the lanes of hands that do are left out of it and stand by themselves.

#include "kernels/board_sweep.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace pokermath {
namespace {

constexpr std::uint8_t kNoPlace = 0xFF;
constexpr std::uint16_t kNoLane = 0xFFFF;
constexpr std::size_t kMostFlushes =
    256;  // less than: 91 + 8 * 14 + 28 beside a flush on the board

// A hand's rank class * 16 + lane, by card1 * 52 + card2. Of a pair the higher card is the second.
constexpr auto kHandLanes = [] {
  std::array<std::uint16_t, 52 * 52> lanes{};
  for (int card1 = 0; card1 < 52; ++card1) {
    for (int card2 = card1 + 1; card2 < 52; ++card2) {
      const bool second = card2 % 13 >= card1 % 13;
      const int high = second ? card2 : card1;
      const int low = second ? card1 : card2;
      lanes[static_cast<std::size_t>(card1 * 52 + card2)] = static_cast<std::uint16_t>(
          RankClassOf(high % 13, low % 13) * 16 + high / 13 * 4 + low / 13);
    }
  }
  return lanes;
}();

// Which pairs of suits: all, and for each suit these.
enum View { kNotBoth, kNone, kBoth, kHighOnly, kLowOnly, kViewsOfSuit };
constexpr std::size_t kAll = 0;
constexpr std::size_t ViewOf(int suit, View view) {
  return static_cast<std::size_t>(1 + suit * kViewsOfSuit + view);
}

constexpr auto kMasks = [] {
  std::array<SuitLanes, 1 + 4 * kViewsOfSuit> masks{};
  for (int lane = 0; lane < 16; ++lane) {
    const auto at = static_cast<std::size_t>(lane);
    masks[kAll].at[at] = ~0u;
    for (int suit = 0; suit < 4; ++suit) {
      const bool high = lane / 4 == suit;
      const bool low = lane % 4 == suit;
      const bool in[] = {!(high && low), !high && !low, high && low, high && !low, low && !high};
      for (const View view : {kNotBoth, kNone, kBoth, kHighOnly, kLowOnly}) {
        masks[ViewOf(suit, view)].at[at] = in[view] ? ~0u : 0;
      }
    }
  }
  return masks;
}();

unsigned SuitsOf(CardSet cards, int rank) {
  unsigned suits = 0;
  for (int suit = 0; suit < 4; ++suit) {
    suits |= (cards.Contains(suit * 13 + rank) ? 1u : 0u) << suit;
  }
  return suits;
}

// A hand weighs up to kWholeWeight, of 1,326, on up to sixteen boards of a group.
static_assert(std::uint64_t{1326} * 10000 * 16 < std::uint64_t{1} << 32);

}  // namespace

// The board as far as it is alike on all boards that are counted.
struct BoardSweep::Known {
  Known(CardSet board, CardSet coming) {
    for (int rank = 0; rank < 13; ++rank) {
      const auto index = static_cast<std::size_t>(rank);
      const auto cards = std::popcount(SuitsOf(board | coming, rank));
      ranks.insert(ranks.end(), static_cast<std::size_t>(cards), rank);
      group.dead[index] = static_cast<std::uint8_t>(SuitsOf(coming, rank));
      if (group.dead[index] != 0) group.touched |= 1u << rank;
    }
    for (std::size_t suit = 0; suit < 4; ++suit) {
      suited[suit] = static_cast<RankSet>((board | coming).bits() >> 13 * suit & kAllRanks);
    }
  }

  std::vector<int> ranks;  // rising
  std::array<RankSet, 4> suited;
  BoardGroup group;  // without cards that may be of several suits
};

// How suits to come make a flush possible.
struct BoardSweep::Kind {
  int suit = -1;       // in which there can be one, or -1
  bool with1 = false;  // whether the first card is of it
  bool with2 = false;
  bool operator==(const Kind&) const = default;

  static Kind Of(const Known& known, int suit1, int suit2) {
    for (int suit = 0; suit < 4; ++suit) {
      const int cards = std::popcount(known.suited[static_cast<std::size_t>(suit)]);
      const bool with1 = suit == suit1;
      const bool with2 = suit == suit2;
      if (cards + (with1 ? 1 : 0) + (with2 ? 1 : 0) >= 3) return {suit, with1, with2};
    }
    return {};
  }
};

// Cards to come, each of any of some suits, alike in what flushes they allow. Without suits for the
// second one only the first comes; of equal ranks with equal suits, two of these come.
struct BoardSweep::Choice {
  Kind kind;
  unsigned suits1 = 0;
  unsigned suits2 = 0;
  int rank1 = 0;
  int rank2 = 0;
};

BoardSweep::BoardSweep(Isa isa, const GameRules& rules, const TwoRanges& ranges, CardSet board,
                       SweepOf of)
    : kernels_(isa), rules_(rules), board_(board), of_(of) {
  sides_[0].hands = ranges.hands1;
  sides_[1].hands = ranges.hands2;
  std::array<bool, kRankClasses> held{};
  for (std::size_t side = 0; side < 2; ++side) Gather(side, board, held);
  places_.fill(kNoPlace);
  for (std::size_t number = 0; number < kRankClasses; ++number) {
    if (!held[number]) continue;
    places_[number] = static_cast<std::uint8_t>(classes_.size());
    const auto& [low, high] = RanksOf(static_cast<int>(number));
    classes_.push_back({static_cast<std::uint8_t>(high), static_cast<std::uint8_t>(low),
                        static_cast<std::uint16_t>(1u << high | 1u << low)});
  }
  LargeTable<SweptHands>& counted = counted_[0];
  counted.resize(classes_.size());  // which leaves it as it is
  std::memset(counted.data(), 0, counted.size() * sizeof(SweptHands));
  for (std::size_t side = 0; side < 2; ++side) {
    for (std::size_t i = 0; i < sides_[side].hands.size(); ++i) {
      const std::uint16_t lane = sides_[side].lanes[i];
      if (lane == kNoLane) continue;
      counted[places_[lane / 16]].weights[side].at[lane % 16] =
          static_cast<std::uint32_t>(sides_[side].hands[i].weight);
    }
  }
  views_.resize(kMasks.size() * (HasCategories() ? kCategories : 1));
  held_.resize(kMasks.size());
  tables_ = {classes_, views_, of != SweepOf::kFirstByHand};
}

void BoardSweep::Gather(std::size_t number, CardSet board, std::array<bool, kRankClasses>& held) {
  Side& side = sides_[number];
  side.lanes.resize(side.hands.size(), kNoLane);
  for (std::size_t i = 0; i < side.hands.size(); ++i) {
    const WeightedPair& hand = side.hands[i];
    if (hand.cards().Meets(board)) continue;
    side.lanes[i] = kHandLanes[static_cast<std::size_t>(hand.card1 * 52 + hand.card2)];
    held[side.lanes[i] / 16] = true;
    const auto weight = static_cast<std::uint32_t>(hand.weight);
    side.holds[static_cast<std::size_t>(hand.card1)] += weight;
    side.holds[static_cast<std::size_t>(hand.card2)] += weight;
    side.total += weight;
  }
}

// A view with its sums, which are made when it is asked for first.
SuitsView& BoardSweep::Prepare(std::size_t view) {
  SuitsView& used = views_[view];
  if (!used.classes.empty()) return used;
  LargeTable<SweptHands>& counted = counted_[view / kMasks.size()];
  // Of a category that is new, the weights alone.
  if (counted.empty()) {
    counted = counted_[0];
    for (SweptHands& hands : counted) hands = {{hands.weights[0], hands.weights[1]}, {}, {}};
  }
  used.mask = &kMasks[view % kMasks.size()];
  used.hands = counted;
  used.classes.resize(classes_.size());
  kernels_.Use(used);
  return used;
}

void BoardSweep::Use(std::size_t view) {
  if (!views_[view].classes.empty()) return;
  const SuitsView& used = Prepare(view);
  held_[view].fill(kNoPlace);
  for (std::size_t number = 0; number < kRankClasses; ++number) {
    const std::uint8_t place = places_[number];
    if (place != kNoPlace && !used.classes[place].IsEmpty()) held_[view][number] = place;
  }
}

void BoardSweep::Sweep(const BoardGroup& group, std::span<const SweptItem> items) {
  if (!HasCategories()) {
    kernels_.Count(tables_, group, items);
    return;
  }
  static_assert(kMasks.size() * kCategories <= 256);
  by_category_.assign(items.begin(), items.end());
  for (SweptItem& item : by_category_) {
    const auto category = static_cast<std::size_t>(CategoryOf(rules_, item.value));
    const std::size_t view = category * kMasks.size() + item.view;
    Prepare(view);
    item.view = static_cast<std::uint8_t>(view);
    if (of_ == SweepOf::kCasesByCategory) item.value = 0;
  }
  kernels_.Count(tables_, group, by_category_);
}

void BoardSweep::Count(CardSet coming, CardSet from, int to_come) {
  if (classes_.empty()) return;
  const Known known(board_, coming);
  if (to_come == 0) {
    SetRanks(known, {});
    const Kind kind = Kind::Of(known, -1, -1);
    CountGroup(known.group, 1, kind.suit,
               kind.suit < 0 ? RankSet{0} : known.suited[static_cast<std::size_t>(kind.suit)]);
  } else if (to_come == 1) {
    CountOneMore(known, from);
  } else {
    CountTwoMore(known, from);
  }
}

void BoardSweep::CountOneMore(const Known& known, CardSet from) {
  std::vector<Choice> choices;
  for (int suit = 0; suit < 4; ++suit) {
    const Kind kind = Kind::Of(known, suit, -1);
    auto same = std::ranges::find(choices, kind, &Choice::kind);
    if (same == choices.end()) same = choices.insert(same, Choice{kind});
    same->suits1 |= 1u << suit;
  }
  for (int rank = 0; rank < 13; ++rank) {
    const unsigned suits = SuitsOf(from, rank);
    if (suits == 0) continue;
    SetRanks(known, {&rank, 1});
    for (Choice choice : choices) {
      choice.rank1 = rank;
      choice.suits1 &= suits;
      CountChoice(known, choice);
    }
  }
}

void BoardSweep::CountTwoMore(const Known& known, CardSet from) {
  // For two ranks, the first cards that go with the same second ones are taken together.
  std::vector<Choice> choices;
  for (int suit1 = 0; suit1 < 4; ++suit1) {
    std::vector<Choice> of_suit;
    for (int suit2 = 0; suit2 < 4; ++suit2) {
      const Kind kind = Kind::Of(known, suit1, suit2);
      auto same = std::ranges::find(of_suit, kind, &Choice::kind);
      if (same == of_suit.end()) same = of_suit.insert(same, Choice{kind, 1u << suit1});
      same->suits2 |= 1u << suit2;
    }
    for (const Choice& choice : of_suit) {
      const auto same = std::ranges::find_if(choices, [&](const Choice& other) {
        return other.kind == choice.kind && other.suits2 == choice.suits2;
      });
      if (same == choices.end()) {
        choices.push_back(choice);
      } else {
        same->suits1 |= choice.suits1;
      }
    }
  }
  // Of one rank, the cards of a suit that makes a flush possible are apart from the others.
  unsigned apart = 0;
  for (int suit = 0; suit < 4; ++suit) {
    if (std::popcount(known.suited[static_cast<std::size_t>(suit)]) >= 2) apart |= 1u << suit;
  }
  for (int rank1 = 0; rank1 < 13; ++rank1) {
    const unsigned suits1 = SuitsOf(from, rank1);
    for (int rank2 = rank1; suits1 != 0 && rank2 < 13; ++rank2) {
      const unsigned suits2 = SuitsOf(from, rank2);
      if (suits2 == 0) continue;
      const int ranks[2] = {rank1, rank2};
      SetRanks(known, ranks);
      if (rank1 != rank2) {
        for (Choice choice : choices) {
          choice.suits1 &= suits1;
          choice.suits2 &= suits2;
          choice.rank1 = rank1;
          choice.rank2 = rank2;
          if (choice.suits2 != 0) CountChoice(known, choice);
        }
      } else {
        const unsigned others = suits1 & ~apart;
        CountChoice(known, {Kind::Of(known, -1, -1), others, others, rank1, rank1});
        for (int suit = 0; suit < 4; ++suit) {
          if ((apart & suits1) >> suit & 1 && others != 0) {
            CountChoice(known, {Kind::Of(known, suit, -1), 1u << suit, others, rank1, rank1});
          }
        }
      }
    }
  }
}

void BoardSweep::CountChoice(const Known& known, const Choice& choice) {
  if (choice.suits1 == 0) return;
  BoardGroup group = known.group;
  std::uint32_t boards = 1;
  const auto add = [&](int rank, unsigned suits, std::array<std::uint8_t, 13>& to) {
    std::uint8_t& at = to[static_cast<std::size_t>(rank)];
    at = static_cast<std::uint8_t>(at | suits);
    group.touched |= 1u << rank;
  };
  const auto count1 = static_cast<std::uint32_t>(std::popcount(choice.suits1));
  const auto count2 = static_cast<std::uint32_t>(std::popcount(choice.suits2));
  if (choice.rank1 == choice.rank2 && choice.suits1 == choice.suits2) {
    if (count1 < 2) return;
    boards = count1 * (count1 - 1) / 2;
    if (boards == 1) {
      add(choice.rank1, choice.suits1, group.dead);
    } else {
      add(choice.rank1, choice.suits1, group.free1);
      group.count1 = count1;
      group.terms = 3;
    }
  } else {
    // A card of one suit only is as good as known.
    const auto add_free = [&](int rank, unsigned suits, std::uint32_t count) {
      if (count == 0) return;
      boards *= count;
      if (count == 1) {
        add(rank, suits, group.dead);
      } else if (group.terms == 1) {
        add(rank, suits, group.free1);
        group.count1 = count;
        group.terms = 2;
      } else {
        add(rank, suits, group.free2);
        group.count2 = count;
        group.terms = 4;
      }
    };
    add_free(choice.rank1, choice.suits1, count1);
    add_free(choice.rank2, choice.suits2, count2);
  }
  const Kind& kind = choice.kind;
  unsigned suited = kind.suit < 0 ? 0 : known.suited[static_cast<std::size_t>(kind.suit)];
  if (kind.with1) suited |= 1u << choice.rank1;
  if (kind.with2) suited |= 1u << choice.rank2;
  CountGroup(group, boards, kind.suit, static_cast<RankSet>(suited));
}

void BoardSweep::SetRanks(const Known& known, std::span<const int> more) {
  std::array<int, 5> ranks;
  const auto end = std::ranges::merge(known.ranks, more, ranks.begin()).out;
  const RankOrder& order = RankOrderOf(rules_, {ranks.begin(), end});
  plain_.resize(kRankClasses);
  SweptItem* next = plain_.data();
  for (std::size_t i = 0; i < order.size; ++i) {
    const std::uint8_t place = places_[order.classes[i]];
    *next = {order.values[i], place, kAll};
    next += place == kNoPlace ? 0 : 1;
  }
  plain_.resize(static_cast<std::size_t>(next - plain_.data()));
}

void BoardSweep::SetFlushes(int suit, RankSet suited) {
  if (suit == flushes_suit_ && suited == flushes_suited_) return;
  flushes_suit_ = suit;
  flushes_suited_ = suited;
  for (const View view : {kNone, kBoth, kHighOnly, kLowOnly}) Use(ViewOf(suit, view));
  flushes_.resize(kMostFlushes);
  std::size_t size = 0;
  const auto add_if_held = [&](View view, int rank_class, std::int16_t value) {
    const std::size_t number = ViewOf(suit, view);
    const std::uint8_t place = held_[number][static_cast<std::size_t>(rank_class)];
    flushes_[size] = {value, place, static_cast<std::uint8_t>(number)};
    if (place != kNoPlace) ++size;
  };
  const FlushOrder& order = FlushOrderOf(rules_, suited);
  for (std::size_t i = 0; i < order.size; ++i) {
    const unsigned held = order.held[i];
    const std::int16_t value = order.values[i];
    if (held == 0) {
      for (int number = 0; number < kRankClasses; ++number) add_if_held(kNone, number, value);
      continue;
    }
    const int low = std::countr_zero(held);
    const int high = 31 - std::countl_zero(held);
    if (low != high) {
      add_if_held(kBoth, RankClassOf(high, low), value);
      continue;
    }
    for (int other = 0; other <= high; ++other) {
      add_if_held(kHighOnly, RankClassOf(high, other), value);
    }
    for (int other = high; other < 13; ++other) {
      add_if_held(kLowOnly, RankClassOf(other, high), value);
    }
  }
  flushes_.resize(size);
}

void BoardSweep::CountGroup(const BoardGroup& group, std::uint32_t boards, int suit,
                            RankSet suited) {
  const std::uint64_t most = std::uint64_t{boards} * std::max(sides_[0].total, sides_[1].total);
  if (spent_ + most > 0xFFFFFFFF) Spill();
  spent_ += most;
  if (suit < 0) {
    Use(kAll);
    Sweep(group, plain_);
    return;
  }
  SetFlushes(suit, suited);
  const int count = std::popcount(suited);
  if (count == 5) {
    // Nobody has less than the flush of the board, and without a pair on it nobody more than one.
    Sweep(group, flushes_);
    return;
  }
  const std::size_t view = ViewOf(suit, count == 3 ? kNotBoth : kNone);
  Use(view);
  items_.resize(plain_.size() + flushes_.size());
  std::size_t next = 0;
  auto flush = flushes_.begin();
  for (const SweptItem& item : plain_) {
    while (flush != flushes_.end() && flush->value < item.value) items_[next++] = *flush++;
    items_[next++] = {item.value, item.place, static_cast<std::uint8_t>(view)};
  }
  std::copy(flush, flushes_.end(), items_.begin() + static_cast<std::ptrdiff_t>(next));
  Sweep(group, items_);
}

void BoardSweep::Settle() {
  for (SuitsView& view : views_) {
    if (!view.classes.empty()) kernels_.Settle(tables_, view);
  }
}

void BoardSweep::Spill() {
  Settle();
  spent_ = 0;
  for (std::size_t category = 0; category < counted_.size(); ++category) {
    std::vector<std::uint64_t>& spilled = spilled_[category];
    spilled.resize(counted_[category].size() * 64);
    std::size_t at = 0;
    for (SweptHands& hands : counted_[category]) {
      for (SuitLanes* lanes : {&hands.wins[0], &hands.wins[1], &hands.ties[0], &hands.ties[1]}) {
        for (std::uint32_t& lane : lanes->at) {
          spilled[at++] += lane;
          lane = 0;
        }
      }
    }
  }
}

void BoardSweep::AddTo(std::int64_t boards, const TwoTallies& tallies, int category) {
  Settle();
  if (!spilled_[0].empty()) Spill();
  const auto& counted = counted_[static_cast<std::size_t>(category)];
  const auto& spilled = spilled_[static_cast<std::size_t>(category)];
  if (counted.empty()) return;
  for (std::size_t number = 0; number < (tables_.both ? 2 : 1); ++number) {
    const Side& side = sides_[number];
    const Side& other = sides_[1 - number];
    Tally* tally = (number == 0 ? tallies.of1 : tallies.of2).data();
    const std::uint16_t* of = side.lanes.data();
    for (const WeightedPair& hand : side.hands) {
      const std::size_t place = *of == kNoLane ? kNoPlace : places_[*of / 16];
      const std::size_t lane = *of++ % 16;
      Tally& to = *tally++;
      if (place == kNoPlace) continue;
      const SweptHands& hands = counted[place];
      if (spilled.empty()) {
        to.wins += hands.wins[number].at[lane];
        to.ties += hands.ties[number].at[lane];
      } else {
        to.wins += static_cast<std::int64_t>(spilled[place * 64 + number * 16 + lane]);
        to.ties += static_cast<std::int64_t>(spilled[place * 64 + 32 + number * 16 + lane]);
      }
      const std::uint32_t against =
          other.total - other.holds[static_cast<std::size_t>(hand.card1)] -
          other.holds[static_cast<std::size_t>(hand.card2)] + hands.weights[1 - number].at[lane];
      to.cases += boards * std::int64_t{against};
    }
  }
}

}  // namespace pokermath
