// The hands of both ranges are taken from weak to strong, level by level. What a hand beats is what
// the hands of the other range so far weigh that share no card with it. That is asked before a
// level's hands are put in, and once more behind it. The same hand is on the same level.
//
// Without a flush a level is some whole classes. Where the board has three cards of a suit, hands
// with two of it leave the blocks by masks, as those do that share a card with the board, but for
// classes that have a full house or better. The flushes are hands in groups by their two highest
// cards of the suit, which decide: rising groups are rising levels, and two hands of a group share
// cards. So are the hands with the same straight flush, which come last.
//
// Who takes half of a pot follows from a sweep by high hands and one by lows. Who takes all of it
// is better in both: classes are halved by their lows, those of the better half are swept by high
// hands against those of the other one, and each half is halved again. What is left are classes
// with the same low, which are swept for those that are not above.

#include "kernels/omaha_sweep.h"

#include <algorithm>
#include <bit>

#include "kernels/omaha_blocks.h"
#include "kernels/omaha_board.h"
#include "platform/require.h"

namespace pokermath {
namespace {

// Sums of every hand, in blocks.
using Counts = std::vector<Lanes>;

constexpr int kAllLows = 256;

// A sweep: who is put in, who asks, and where the answers go.
struct Sweeping {
  const OmahaTensors& ranges;
  std::array<Inserted*, 2> inserted;
  // By side; nothing where it is not asked for.
  std::array<Lanes*, 2> below, not_above;
  std::array<Weight*, 2> of_flushes;
  unsigned flush_suit;
  // Classes with a low below this are put in; those with one not below that ask.
  int lows_inserted = kAllLows;
  int first_low_asked = 0;

  bool Inserts(int low) const { return low < lows_inserted; }
  bool Asks(int low) const { return low >= first_low_asked; }
};

using Level = std::span<const ClassOnBoard>;

inline unsigned LiveBlocks(const OmahaTensor& range, const ClassOnBoard& of) {
  return range.BlocksOf(of.number).held & of.blocks;
}

// Calls visit(class, blocks, masks) for the classes of a level of which a range has blocks.
template <typename Register, typename Visit>
POKERMATH_KERNEL void ForEachClass(const OmahaTensor& range, Level level, unsigned flush_suit,
                                   const Visit& visit) {
  for (const ClassOnBoard& of : level) {
    const unsigned live = LiveBlocks(range, of);
    if (live == 0) continue;
    LaneMasks<Register> masks;
    SetMasks(masks, of, flush_suit);
    visit(of, live, masks);
  }
}

// What the hands of a side beat; and without ties to come, what they do not lose to.
template <typename Register>
POKERMATH_KERNEL void AddBelow(const Sweeping& sweeping, std::size_t side, Level level, bool ties) {
  const OmahaTensor& range = sweeping.ranges[side];
  Lanes* const all_below = sweeping.below[side];
  Lanes* const all_not_above = ties ? nullptr : sweeping.not_above[side];
  if (all_below == nullptr && all_not_above == nullptr) return;
  ForEachClass<Register>(
      range, level, sweeping.flush_suit,
      [&](const ClassOnBoard& of, unsigned live, const LaneMasks<Register>& masks) {
        if (!sweeping.Asks(of.low)) return;
        const OmahaTensor::Blocks blocks = range.BlocksOf(of.number);
        ForEachBlock<Register>(*of.quad, *sweeping.inserted[1 - side], live,
                               [&](unsigned first, unsigned second, Block<Register>& sums) {
                                 Mask(sums, masks.For(first, second));
                                 const std::size_t place = blocks.Of(first * 4 + second);
                                 if (all_below != nullptr) AddTo(all_below[place].of.data(), sums);
                                 if (all_not_above != nullptr)
                                   AddTo(all_not_above[place].of.data(), sums);
                               });
      });
}

// What they do not lose to, behind the level.
template <typename Register>
POKERMATH_KERNEL void AddNotAbove(const Sweeping& sweeping, std::size_t side, Level level) {
  const OmahaTensor& range = sweeping.ranges[side];
  const std::span<const std::uint32_t> weights = sweeping.ranges[1 - side].weights();
  const std::uint32_t* const twins = range.twins().data();
  Lanes* const all_not_above = sweeping.not_above[side];
  ForEachClass<Register>(
      range, level, sweeping.flush_suit,
      [&](const ClassOnBoard& of, unsigned live, const LaneMasks<Register>& masks) {
        if (!sweeping.Asks(of.low)) return;
        const OmahaTensor::Blocks blocks = range.BlocksOf(of.number);
        // The same hand is put in with its class.
        const bool with_same = sweeping.Inserts(of.low);
        ForEachBlock<Register>(*of.quad, *sweeping.inserted[1 - side], live,
                               [&](unsigned first, unsigned second, Block<Register>& sums) {
                                 const std::size_t place = blocks.Of(first * 4 + second);
                                 if (with_same) {
                                   Block<Register> same;
                                   Read(same, weights.data() + twins[place] * kBlockLanes);
                                   Add(sums, same);
                                 }
                                 Mask(sums, masks.For(first, second));
                                 AddTo(all_not_above[place].of.data(), sums);
                               });
      });
}

template <typename Register>
POKERMATH_KERNEL void Insert(const Sweeping& sweeping, std::size_t side, Level level) {
  const OmahaTensor& range = sweeping.ranges[side];
  const std::uint32_t* const all_weights = range.weights().data();
  ForEachClass<Register>(
      range, level, sweeping.flush_suit,
      [&](const ClassOnBoard& of, unsigned live, const LaneMasks<Register>& masks) {
        if (!sweeping.Inserts(of.low)) return;
        const OmahaTensor::Blocks blocks = range.BlocksOf(of.number);
        InsertBlocks<Register>(*of.quad, *sweeping.inserted[side], live,
                               [&](unsigned first, unsigned second, Block<Register>& weights) {
                                 Read(weights,
                                      all_weights + blocks.Of(first * 4 + second) * kBlockLanes);
                                 Mask(weights, masks.For(first, second));
                               });
      });
}

template <typename Register>
POKERMATH_KERNEL void SweepLevel(const Sweeping& sweeping, Level level) {
  std::array<bool, 2> asks{}, inserts{};
  for (const ClassOnBoard& of : level) {
    for (const std::size_t side : {0u, 1u}) {
      if (LiveBlocks(sweeping.ranges[side], of) == 0) continue;
      asks[side] = asks[side] || sweeping.Asks(of.low);
      inserts[side] = inserts[side] || sweeping.Inserts(of.low);
    }
  }
  for (const std::size_t side : {0u, 1u}) {
    if (asks[side]) AddBelow<Register>(sweeping, side, level, inserts[1 - side]);
  }
  for (const std::size_t side : {0u, 1u}) {
    if (inserts[side]) Insert<Register>(sweeping, side, level);
  }
  for (const std::size_t side : {0u, 1u}) {
    if (asks[side] && inserts[1 - side]) AddNotAbove<Register>(sweeping, side, level);
  }
}

using SweepLevelFunction = void (*)(const Sweeping& sweeping, Level level);

void SweepLevelBaseline(const Sweeping& sweeping, Level level) {
  SweepLevel<Four>(sweeping, level);
}
POKERMATH_TARGET_AVX2 void SweepLevelAvx2(const Sweeping& sweeping, Level level) {
  SweepLevel<Eight>(sweeping, level);
}

// --- flushes ---

// A hand with a flush.
struct FlushHand {
  const SuitedHand* hand;
  std::uint16_t pair;  // its group
  std::uint8_t side;
  std::int8_t straight_flush;  // number of the best one, or -1
};

// What is inserted without the two cards of a group, for every third one.
struct WithoutPair {
  Weight all;
  std::array<Weight, 52> singles;
};

Weight AllWithout(const Inserted& in, const SuitedPairPlaces& places) {
  return in.all - in.singles[places.singles[0]] - in.singles[places.singles[1]] +
         in.pairs[places.both];
}
Weight SingleWithout(const Inserted& in, const SuitedPairPlaces& places, std::size_t card) {
  return in.singles[SinglePlace(static_cast<int>(card))] - in.pairs[places.pair1[card]] -
         in.pairs[places.pair2[card]] + in.triples[places.triple[card]];
}

// What takes part in a sweep by high hands, everything from weak to strong. Parts of it are split
// off by lows.
struct Field {
  std::vector<ClassOnBoard> classes, full_classes;
  std::vector<FlushHand> flushes, straight_flushes;  // by group or rank, then by side
};

// Those with a low below a limit; the others are left.
template <typename List, typename LowOf>
List SplitOff(List& list, int limit, const LowOf& low_of) {
  List below;
  std::size_t left = 0;
  for (const auto& item : list) {
    if (low_of(item) < limit) {
      below.push_back(item);
    } else {
      list[left++] = item;
    }
  }
  list.resize(left);
  return below;
}

}  // namespace

struct OmahaSweep::State {
  State(Isa isa, const OmahaTensors& of_ranges, bool with_lows);

  void Count(CardSet board);
  void CountAll();
  std::vector<OmahaCounts> CountsOf(std::size_t side, OmahaContest contest);

 private:
  // Sums of a contest for the hands of a side.
  struct OfContest {
    Counts below, not_above;
    // Of the suited hands: what is to be added to both, and to the second.
    std::vector<Weight> of_flushes, of_flushes_not_above;
    std::vector<OmahaCounts> wide;  // where 32 bits had no more room; empty until then
  };
  OfContest& Sums(std::size_t side, OmahaContest contest) {
    return sums_[side][static_cast<std::size_t>(contest)];
  }

  void Spread(std::size_t side, OfContest& sums) const;
  void MakeRoom();
  void Clear(const Field& field);
  Sweeping SweepingInto(OmahaContest contest);
  void SetField();
  void Sweep(const Sweeping& sweeping, const Field& field);
  void SweepClasses(const Sweeping& sweeping, Level classes);
  void SweepFlushes(const Sweeping& sweeping, std::span<const FlushHand> flushes);
  void SweepGroup(const Sweeping& sweeping, std::span<const FlushHand> group);
  void SweepFlush(const Sweeping& sweeping, const FlushHand& flush, Weight below);
  void InsertGroup(std::size_t side, const SuitedPairPlaces& places);
  void SweepLows(Field field);
  void SweepHighAndLow(Field field);
  int LowOf(const FlushHand& flush) const { return board_.LowOf(flush.hand->quad_class); }

  const OmahaTensors& ranges_;
  bool high_low_;
  SweepLevelFunction sweep_level_;
  // Empty between sweeps.
  std::unique_ptr<std::array<Inserted, 2>> inserted_ = std::make_unique<std::array<Inserted, 2>>();
  OmahaBoard board_;
  Field field_;
  std::array<WithoutPair, 2> added_{};  // by the group that is being swept

  std::array<std::array<OfContest, kOmahaContests>, 2> sums_;
  std::uint64_t boards_of_room_ = 1;  // boards that 32 bits have room for
  std::uint64_t boards_ = 0;
};

OmahaSweep::State::State(Isa isa, const OmahaTensors& of_ranges, bool with_lows)
    : ranges_(of_ranges),
      high_low_(with_lows),
      sweep_level_(isa == Isa::kBaseline ? SweepLevelBaseline : SweepLevelAvx2) {
  std::uint64_t most = 1;
  for (const std::size_t side : {0u, 1u}) {
    most = std::max(most, ranges_[side].weight());
    for (std::size_t i = 0; i < (high_low_ ? kOmahaContests : 1); ++i) {
      OfContest& sums = sums_[side][i];
      sums.below.resize(ranges_[side].blocks());
      sums.not_above.resize(ranges_[side].blocks());
      sums.of_flushes.resize(ranges_[side].suited().size());
      if (high_low_) sums.of_flushes_not_above.resize(ranges_[side].suited().size());
    }
  }
  POKERMATH_REQUIRE(most <= ~Weight{0});
  boards_of_room_ = ~Weight{0} / most;
}

// Adds what flushes have won to the sums of their hands.
void OmahaSweep::State::Spread(std::size_t side, OfContest& sums) const {
  const std::span<const SuitedHand> suited = ranges_[side].suited();
  const auto add = [&](std::vector<Weight>& of_flushes, std::initializer_list<Counts*> to) {
    for (std::size_t i = 0; i < of_flushes.size(); ++i) {
      const std::uint32_t place = suited[i].place;
      for (Counts* counts : to) {
        (*counts)[place / kBlockLanes].of[place % kBlockLanes] += of_flushes[i];
      }
    }
    std::ranges::fill(of_flushes, Weight{0});
  };
  add(sums.of_flushes, {&sums.below, &sums.not_above});
  add(sums.of_flushes_not_above, {&sums.not_above});
}

// Moves sums to 64 bits before they do not fit into 32.
void OmahaSweep::State::MakeRoom() {
  if (boards_++ < boards_of_room_) return;
  boards_ = 1;
  for (const std::size_t side : {0u, 1u}) {
    for (OfContest& sums : sums_[side]) {
      Spread(side, sums);
      sums.wide.resize(sums.below.size() * kBlockLanes);
      for (std::size_t i = 0; i < sums.wide.size(); ++i) {
        sums.wide[i].below += sums.below[i / kBlockLanes].of[i % kBlockLanes];
        sums.wide[i].not_above += sums.not_above[i / kBlockLanes].of[i % kBlockLanes];
      }
      std::ranges::fill(sums.below, Lanes{});
      std::ranges::fill(sums.not_above, Lanes{});
    }
  }
}

std::vector<OmahaCounts> OmahaSweep::State::CountsOf(std::size_t side, OmahaContest contest) {
  OfContest& sums = Sums(side, contest);
  Spread(side, sums);
  std::vector<OmahaCounts> counts;
  counts.reserve(ranges_[side].size());
  for (const std::uint32_t place : ranges_[side].places()) {
    OmahaCounts& of = counts.emplace_back();
    if (!sums.wide.empty()) of = sums.wide[place];
    of.below += sums.below[place / kBlockLanes].of[place % kBlockLanes];
    of.not_above += sums.not_above[place / kBlockLanes].of[place % kBlockLanes];
  }
  return counts;
}

// Takes out what a field has put in.
void OmahaSweep::State::Clear(const Field& field) {
  constexpr std::size_t kFewClasses = 60;
  for (Inserted& in : *inserted_) {
    in.singles.fill(0);
    in.pairs.fill(0);
    in.all = 0;
    if (field.classes.size() + field.full_classes.size() > kFewClasses) {
      in.triples.fill(0);
      continue;
    }
    for (const std::vector<ClassOnBoard>* classes : {&field.classes, &field.full_classes}) {
      for (const ClassOnBoard& of : *classes) {
        for (const std::uint16_t triple :
             {of.quad->triple012, of.quad->triple013, of.quad->triple023, of.quad->triple123}) {
          std::fill_n(&in.triples[triple], 64, Weight{0});
        }
      }
    }
  }
}

Sweeping OmahaSweep::State::SweepingInto(OmahaContest contest) {
  Sweeping sweeping = {
      ranges_, {&(*inserted_)[0], &(*inserted_)[1]}, {}, {}, {}, board_.flush_suit()};
  for (const std::size_t side : {0u, 1u}) {
    sweeping.below[side] = Sums(side, contest).below.data();
    sweeping.not_above[side] = Sums(side, contest).not_above.data();
    sweeping.of_flushes[side] = Sums(side, contest).of_flushes.data();
  }
  return sweeping;
}

// All hands that the board leaves.
void OmahaSweep::State::SetField() {
  Field& field = field_;
  const auto below_full =
      board_.classes().begin() + static_cast<std::ptrdiff_t>(board_.below_full());
  field.classes.assign(board_.classes().begin(), below_full);
  field.full_classes.assign(below_full, board_.classes().end());
  field.flushes.clear();
  field.straight_flushes.clear();
  const unsigned suit = board_.flush_suit();
  if (suit == kNoSuit) return;
  const bool straight = !board_.straight_flushes().missing().empty();
  const auto is_on_board = [&](std::size_t rank) {
    return board_.cards().Contains(static_cast<int>(suit * 13 + rank));
  };
  for (std::size_t high = 1, pair = 0; high < 13; ++high) {
    for (std::size_t low = 0; low < high; ++low, ++pair) {
      if (is_on_board(high) || is_on_board(low)) continue;
      for (const std::size_t side : {0u, 1u}) {
        for (const SuitedHand& hand : ranges_[side].Suited(suit, pair)) {
          if (board_.cards().Contains(hand.card1) || board_.cards().Contains(hand.card2)) continue;
          FlushHand flush = {&hand, static_cast<std::uint16_t>(pair),
                             static_cast<std::uint8_t>(side), -1};
          if (straight) {
            flush.straight_flush =
                static_cast<std::int8_t>(board_.straight_flushes().BestOf(hand.suited));
          }
          if (flush.straight_flush >= 0) {
            field.straight_flushes.push_back(flush);
          } else if (!board_.IsFull(hand.quad_class)) {
            field.flushes.push_back(flush);
          }
        }
      }
    }
  }
  std::ranges::stable_sort(field.straight_flushes, {}, [](const FlushHand& of) {
    return std::pair(of.straight_flush, of.side);
  });
}

void OmahaSweep::State::SweepClasses(const Sweeping& sweeping, Level classes) {
  while (!classes.empty()) {
    const auto end = std::ranges::find_if(
        classes, [&](const ClassOnBoard& of) { return of.value != classes[0].value; });
    const auto size = static_cast<std::size_t>(end - classes.begin());
    sweep_level_(sweeping, classes.first(size));
    classes = classes.subspan(size);
  }
}

// Asks for a hand whose group's other hands share cards with it, and puts it in, but for the sets
// that hold only one of the cards that are not its group's.
void OmahaSweep::State::SweepFlush(const Sweeping& sweeping, const FlushHand& flush, Weight below) {
  const SuitedHand& hand = *flush.hand;
  const std::size_t side = flush.side;
  const int low = LowOf(flush);
  const bool inserts = sweeping.Inserts(low);
  if (sweeping.Asks(low)) {
    const Inserted& other = *sweeping.inserted[1 - side];
    below += other.pairs[hand.pair] - other.triples[hand.triple1] - other.triples[hand.triple2];
    // The first range has the group put in already. Of its hands only the same one is not counted
    // right: its last term is missing.
    if (side == 1 && inserts) below += hand.same;
    sweeping.of_flushes[side][&hand - ranges_[side].suited().data()] += below;
  }
  if (!inserts) return;
  Inserted& own = *sweeping.inserted[side];
  WithoutPair& added = added_[side];
  own.pairs[hand.pair] += hand.weight;
  own.triples[hand.triple1] += hand.weight;
  own.triples[hand.triple2] += hand.weight;
  added.all += hand.weight;
  added.singles[hand.card1] += hand.weight;
  added.singles[hand.card2] += hand.weight;
}

// Puts in the sets that SweepFlush has left out for the hands of a group.
void OmahaSweep::State::InsertGroup(std::size_t side, const SuitedPairPlaces& places) {
  WithoutPair& added = added_[side];
  if (added.all == 0) return;
  Inserted& in = (*inserted_)[side];
  for (std::size_t card = 0; card < 52; ++card) {
    const Weight weight = added.singles[card];
    if (weight == 0) continue;
    in.singles[SinglePlace(static_cast<int>(card))] += weight;
    in.pairs[places.pair1[card]] += weight;
    in.pairs[places.pair2[card]] += weight;
    in.triples[places.triple[card]] += weight;
    added.singles[card] = 0;
  }
  in.all += added.all;
  for (const std::uint16_t single : places.singles) in.singles[single] += added.all;
  in.pairs[places.both] += added.all;
  added.all = 0;
}

// What is inserted without the two cards of a group is not changed by its own hands.
void OmahaSweep::State::SweepGroup(const Sweeping& sweeping, std::span<const FlushHand> group) {
  // From so many hands on it is best worked out once for every third card.
  constexpr std::size_t kManyHands = 30;
  const SuitedPairPlaces& places = PlacesOf(sweeping.flush_suit, group[0].pair);
  if (group.size() < kManyHands) {
    for (const FlushHand& flush : group) {
      const Inserted& other = *sweeping.inserted[1 - flush.side];
      SweepFlush(sweeping, flush,
                 AllWithout(other, places) - SingleWithout(other, places, flush.hand->card1) -
                     SingleWithout(other, places, flush.hand->card2));
    }
  } else {
    std::array<WithoutPair, 2> without;
    for (const std::size_t side : {0u, 1u}) {
      const Inserted& in = *sweeping.inserted[side];
      without[side].all = AllWithout(in, places);
      for (std::size_t card = 0; card < 52; ++card) {
        without[side].singles[card] = SingleWithout(in, places, card);
      }
    }
    for (const FlushHand& flush : group) {
      const WithoutPair& other = without[1 - flush.side];
      SweepFlush(sweeping, flush,
                 other.all - other.singles[flush.hand->card1] - other.singles[flush.hand->card2]);
    }
  }
  for (const std::size_t side : {0u, 1u}) InsertGroup(side, places);
}

void OmahaSweep::State::SweepFlushes(const Sweeping& sweeping, std::span<const FlushHand> flushes) {
  while (!flushes.empty()) {
    std::size_t size = 1;
    while (size < flushes.size() && flushes[size].pair == flushes[0].pair) ++size;
    SweepGroup(sweeping, flushes.first(size));
    flushes = flushes.subspan(size);
  }
}

void OmahaSweep::State::Sweep(const Sweeping& sweeping, const Field& field) {
  SweepClasses(sweeping, field.classes);
  SweepFlushes(sweeping, field.flushes);
  SweepClasses(sweeping, field.full_classes);
  // Each as a group of its own: those with the same one share cards.
  for (const FlushHand& flush : field.straight_flushes) SweepGroup(sweeping, {&flush, 1});
  Clear(field);
}

// All hands by their lows, which know no suits.
void OmahaSweep::State::SweepLows(Field field) {
  std::vector<ClassOnBoard>& classes = field.classes;
  classes.insert(classes.end(), field.full_classes.begin(), field.full_classes.end());
  for (ClassOnBoard& of : classes) {
    of.value = of.low;
    of.blocks = of.live_blocks;
    of.lanes.fill(of.live_lanes);
  }
  std::ranges::stable_sort(classes, {}, &ClassOnBoard::low);
  Sweeping sweeping = SweepingInto(OmahaContest::kLow);
  sweeping.flush_suit = kNoSuit;
  sweeping.first_low_asked = 1;
  SweepClasses(sweeping, classes);
  Clear(field);
}

void OmahaSweep::State::SweepHighAndLow(Field field) {
  std::vector<int> lows;
  for (const std::vector<ClassOnBoard>* classes : {&field.classes, &field.full_classes}) {
    for (const ClassOnBoard& of : *classes) lows.push_back(of.low);
  }
  if (lows.empty()) return;
  std::ranges::sort(lows);
  if (lows.back() == 0) return Sweep(SweepingInto(OmahaContest::kNoLow), field);
  Sweeping sweeping = SweepingInto(OmahaContest::kHighAndLow);
  if (lows.front() == lows.back()) {
    for (const std::size_t side : {0u, 1u}) {
      sweeping.below[side] = nullptr;
      sweeping.of_flushes[side] = Sums(side, OmahaContest::kHighAndLow).of_flushes_not_above.data();
    }
    return Sweep(sweeping, field);
  }
  // The low in the middle, or the next one where it is the lowest.
  int limit = lows[lows.size() / 2];
  if (limit == lows.front()) limit = *std::ranges::upper_bound(lows, limit);
  sweeping.lows_inserted = sweeping.first_low_asked = limit;
  Sweep(sweeping, field);
  const auto low_of_class = [](const ClassOnBoard& of) { return of.low; };
  const auto low_of_flush = [this](const FlushHand& of) { return LowOf(of); };
  Field below;
  below.classes = SplitOff(field.classes, limit, low_of_class);
  below.full_classes = SplitOff(field.full_classes, limit, low_of_class);
  below.flushes = SplitOff(field.flushes, limit, low_of_flush);
  below.straight_flushes = SplitOff(field.straight_flushes, limit, low_of_flush);
  SweepHighAndLow(std::move(below));
  SweepHighAndLow(std::move(field));
}

void OmahaSweep::State::Count(CardSet board) {
  MakeRoom();
  board_.Set(board, ranges_.classes(), high_low_);
  SetField();
  if (!board_.has_lows()) return Sweep(SweepingInto(OmahaContest::kWholePot), field_);
  Sweep(SweepingInto(OmahaContest::kHigh), field_);
  SweepLows(field_);
  SweepHighAndLow(field_);
}

void OmahaSweep::State::CountAll() {
  MakeRoom();
  Field field;
  for (const std::uint16_t number : ranges_.classes()) {
    constexpr std::uint16_t kAll = 0xFFFF;
    field.classes.push_back(
        {&QuadClasses()[number], number, 0, 0, kAll, kAll, kAll, {kAll, kAll, kAll, kAll}});
  }
  Sweeping sweeping = SweepingInto(OmahaContest::kWholePot);
  sweeping.flush_suit = kNoSuit;
  Sweep(sweeping, field);
}

OmahaSweep::OmahaSweep(Isa isa, const OmahaTensors& ranges, bool high_low)
    : state_(std::make_unique<State>(isa, ranges, high_low)) {}
OmahaSweep::~OmahaSweep() = default;
void OmahaSweep::Count(CardSet board) { state_->Count(board); }
void OmahaSweep::CountAll() { state_->CountAll(); }
std::vector<OmahaCounts> OmahaSweep::CountsOf(std::size_t side, OmahaContest contest) {
  return state_->CountsOf(side, contest);
}

}  // namespace pokermath
