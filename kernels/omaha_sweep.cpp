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
// Where there are lows, hands without one are put in first, and then those with one, each time
// asked by all: by high hands, and of those without a low also by lows, as all that have one are
// better. While the first ones are still in, hands with a low are swept by lows. Who takes all of
// the pot among these is better in both: classes are halved by their lows, those of the better half
// are swept by high hands against those of the other one, and each half is halved again. What is
// left are classes with the same low, which are swept for those that are not above.

#include "kernels/omaha_sweep.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "kernels/omaha_blocks.h"
#include "kernels/omaha_board.h"
#include "platform/dispatch.h"
#include "platform/require.h"

namespace pokermath {
namespace {

// Sums of every hand, in blocks.
using Counts = std::vector<Lanes>;

Weight& SumAt(Counts& counts, std::size_t place) {
  return counts[place / kBlockLanes].of[place % kBlockLanes];
}
std::uint64_t& SumAt(std::vector<std::uint64_t>& counts, std::size_t place) {
  return counts[place];
}

constexpr int kAllLows = 256;

// What contests are made of, by what is counted together.
enum class Part {
  kWholePot,
  // By high hands, on boards that allow a low:
  kNoLow,      // none with none
  kOverNoLow,  // of a hand with a low, with those that have none
  kOverLow,    // with those that have one
  // Of hands with a low:
  kLow,       // by lows, with all
  kBothLows,  // in both, with those that have one
};
constexpr std::size_t kParts = 6;

// The parts of a contest.
std::span<const Part> PartsOf(OmahaContest contest) {
  static constexpr Part kWholePot[] = {Part::kWholePot};
  static constexpr Part kHigh[] = {Part::kNoLow, Part::kOverNoLow, Part::kOverLow};
  static constexpr Part kLow[] = {Part::kLow};
  static constexpr Part kNoLow[] = {Part::kNoLow};
  static constexpr Part kHighAndLow[] = {Part::kOverNoLow, Part::kBothLows};
  static constexpr std::array<std::span<const Part>, kOmahaContests> kOf = {kWholePot, kHigh, kLow,
                                                                            kNoLow, kHighAndLow};
  return kOf[static_cast<std::size_t>(contest)];
}

// Where the answers of a side go; nothing where it is not asked for.
struct Answers {
  Lanes* below;
  Lanes* not_above;
  Weight* of_flushes;
};

// A sweep: who is put in, who asks, and where the answers go.
template <std::size_t hand_size>
struct Sweeping {
  const OmahaTensors<hand_size>& ranges;
  std::array<Inserted<hand_size>*, 2> inserted;
  // By side, and by whether who asks has a low.
  std::array<std::array<Answers, 2>, 2> answers;
  unsigned flush_suit;
  // Classes with a low in between are put in; those with one not below the last number ask.
  int first_low_inserted = 0;
  int lows_inserted = kAllLows;
  int first_low_asked = 0;

  bool Inserts(int low) const { return first_low_inserted <= low && low < lows_inserted; }
  bool Asks(int low) const { return low >= first_low_asked; }
  // Or for those that are not above alone.
  bool AsksBelow(std::size_t side) const { return answers[side][0].below != nullptr; }
  const Answers& AnswersOf(std::size_t side, int low) const {
    return answers[side][low > 0 ? 1 : 0];
  }
};

template <std::size_t hand_size>
using Level = std::span<const ClassOnBoard<hand_size>>;

template <std::size_t hand_size>
BlockBits<hand_size> LiveBlocks(const OmahaTensor<hand_size>& range,
                                const ClassOnBoard<hand_size>& of) {
  return static_cast<BlockBits<hand_size>>(range.BlocksOf(of.number).held & of.blocks);
}

// The hands of a level against what is put in so far, added to below, and to not_above where no
// ties are to come.
template <typename Register, bool with_flushes, bool without_ties, std::size_t hand_size>
POKERMATH_KERNEL void AddBelow(const Sweeping<hand_size>& sweeping, std::size_t side,
                               Level<hand_size> level) {
  const OmahaTensor<hand_size>& range = sweeping.ranges[side];
  for (const ClassOnBoard<hand_size>& of : level) {
    const BlockBits<hand_size> live = LiveBlocks(range, of);
    if (live == 0 || !sweeping.Asks(of.low)) continue;
    const auto blocks = range.BlocksOf(of.number);
    Lanes* const all_below = sweeping.AnswersOf(side, of.low).below;
    Lanes* const all_not_above = sweeping.AnswersOf(side, of.low).not_above;
    LaneMasks<Register, hand_size, with_flushes> masks(of, sweeping.flush_suit);
    ForEachBlock<Register>(*of.hand_class, *sweeping.inserted[1 - side], live,
                           [&](const BlockSuits& at, Block<Register>& sums) POKERMATH_INLINE {
                             const std::size_t place = blocks.Of(at.bit());
                             masks.Mask(at, sums);
                             AddTo(all_below[place].of.data(), sums);
                             if (without_ties) AddTo(all_not_above[place].of.data(), sums);
                           });
  }
}

// The same behind the level.
template <typename Register, bool with_flushes, std::size_t hand_size>
POKERMATH_KERNEL void AddNotAbove(const Sweeping<hand_size>& sweeping, std::size_t side,
                                  Level<hand_size> level) {
  const OmahaTensor<hand_size>& range = sweeping.ranges[side];
  const Weight* const weights = sweeping.ranges[1 - side].weights().data();
  const std::uint32_t* const twins = range.twins().data();
  for (const ClassOnBoard<hand_size>& of : level) {
    const BlockBits<hand_size> live = LiveBlocks(range, of);
    if (live == 0 || !sweeping.Asks(of.low)) continue;
    const auto blocks = range.BlocksOf(of.number);
    Lanes* const all_not_above = sweeping.AnswersOf(side, of.low).not_above;
    // The same hand is put in with its class.
    const bool with_same = sweeping.Inserts(of.low);
    LaneMasks<Register, hand_size, with_flushes> masks(of, sweeping.flush_suit);
    ForEachBlock<Register>(*of.hand_class, *sweeping.inserted[1 - side], live,
                           [&](const BlockSuits& at, Block<Register>& sums) POKERMATH_INLINE {
                             const std::size_t place = blocks.Of(at.bit());
                             if (with_same) {
                               Block<Register> same;
                               Read(same, weights + twins[place] * kBlockLanes);
                               // With the sign of its term.
                               if constexpr (hand_size % 2 == 0) {
                                 Add(sums, same);
                               } else {
                                 Subtract(sums, same);
                               }
                             }
                             masks.Mask(at, sums);
                             AddTo(all_not_above[place].of.data(), sums);
                           });
  }
}

template <typename Register, bool with_flushes, std::size_t hand_size>
POKERMATH_KERNEL void Insert(const Sweeping<hand_size>& sweeping, std::size_t side,
                             Level<hand_size> level) {
  const OmahaTensor<hand_size>& range = sweeping.ranges[side];
  const Weight* const weights = range.weights().data();
  for (const ClassOnBoard<hand_size>& of : level) {
    const BlockBits<hand_size> live = LiveBlocks(range, of);
    if (live == 0 || !sweeping.Inserts(of.low)) continue;
    const auto blocks = range.BlocksOf(of.number);
    LaneMasks<Register, hand_size, with_flushes> masks(of, sweeping.flush_suit);
    InsertBlocks<Register>(*of.hand_class, *sweeping.inserted[side], live,
                           [&](const BlockSuits& at, Block<Register>& lanes) POKERMATH_INLINE {
                             Read(lanes, weights + blocks.Of(at.bit()) * kBlockLanes);
                             masks.Mask(at, lanes);
                           });
  }
}

template <typename Register, bool with_flushes, std::size_t hand_size>
POKERMATH_KERNEL void SweepLevel(const Sweeping<hand_size>& sweeping, Level<hand_size> level) {
  std::array<bool, 2> asks{}, inserts{};
  for (const ClassOnBoard<hand_size>& of : level) {
    for (const std::size_t side : {0u, 1u}) {
      if (LiveBlocks(sweeping.ranges[side], of) == 0) continue;
      asks[side] = asks[side] || sweeping.Asks(of.low);
      inserts[side] = inserts[side] || sweeping.Inserts(of.low);
    }
  }
  for (const std::size_t side : {0u, 1u}) {
    if (!asks[side]) continue;
    if (!sweeping.AsksBelow(side)) continue;
    if (inserts[1 - side]) {
      AddBelow<Register, with_flushes, false>(sweeping, side, level);
    } else {
      AddBelow<Register, with_flushes, true>(sweeping, side, level);
    }
  }
  for (const std::size_t side : {0u, 1u}) {
    if (inserts[side]) Insert<Register, with_flushes>(sweeping, side, level);
  }
  for (const std::size_t side : {0u, 1u}) {
    if (asks[side] && (inserts[1 - side] || !sweeping.AsksBelow(side))) {
      AddNotAbove<Register, with_flushes>(sweeping, side, level);
    }
  }
}

template <typename Register, std::size_t hand_size>
POKERMATH_KERNEL void SweepLevel(const Sweeping<hand_size>& sweeping, Level<hand_size> level) {
  if (sweeping.flush_suit == kNoSuit) {
    SweepLevel<Register, false>(sweeping, level);
  } else {
    SweepLevel<Register, true>(sweeping, level);
  }
}

// --- flushes ---

// A hand with a flush.
template <std::size_t hand_size>
struct FlushHand {
  const SuitedHand<hand_size>* hand;
  std::uint16_t pair;  // its group
  std::uint8_t side;
  std::int8_t straight_flush;  // number of the best one, or -1
};

// The two cards of a group, with others.
struct Group {
  const SuitedPairPlaces& places;
  const PlacesWithPairs* with_pairs;  // for hands of five
};

// What is inserted without the two cards of a group: all of it, what holds any third card, and for
// hands of five what holds any two.
template <std::size_t hand_size>
struct WithoutGroup {
  const Inserted<hand_size>& in;
  const Group& group;

  Weight All() const {
    const SuitedPairPlaces& places = group.places;
    return in.all - in.singles[places.singles[0]] - in.singles[places.singles[1]] +
           in.pairs[places.both];
  }
  Weight Single(std::size_t card) const {
    const SuitedPairPlaces& places = group.places;
    return in.singles[SinglePlace(static_cast<int>(card))] - in.pairs[places.pair1[card]] -
           in.pairs[places.pair2[card]] + in.triples[places.triple[card]];
  }
  Weight Pair(std::size_t pair) const {
    const PlacesWithPairs& places = *group.with_pairs;
    return in.pairs[pair] - in.triples[places.triple1[pair]] - in.triples[places.triple2[pair]] +
           in.quads[places.quad[pair]];
  }
};

// The same, worked out.
template <std::size_t hand_size>
struct WithoutPair {
  Weight all;
  std::array<Weight, 52> singles;
  std::array<Weight, hand_size == 4 ? 0 : kPairPlaces> pairs;

  void Set(const WithoutGroup<hand_size>& without) {
    all = without.All();
    for (std::size_t card = 0; card < 52; ++card) singles[card] = without.Single(card);
    if constexpr (hand_size > 4) {
      for (std::size_t pair = 0; pair < kPairPlaces; ++pair) pairs[pair] = without.Pair(pair);
    }
  }
  Weight All() const { return all; }
  Weight Single(std::size_t card) const { return singles[card]; }
  Weight Pair(std::size_t pair) const { return pairs[pair]; }
};

// The sums for sets of all cards of a hand but one, and but two.
POKERMATH_KERNEL auto& Largest(auto& in) {
  if constexpr (requires { in.quads; }) {
    return in.quads;
  } else {
    return in.triples;
  }
}
POKERMATH_KERNEL auto& Rest(auto& in) {
  if constexpr (requires { in.quads; }) {
    return in.triples;
  } else {
    return in.pairs;
  }
}

// What takes part in a sweep by high hands, everything from weak to strong. Parts of it are split
// off by lows.
template <std::size_t hand_size>
struct Field {
  std::vector<ClassOnBoard<hand_size>> classes, full_classes;
  std::vector<FlushHand<hand_size>> flushes, straight_flushes;  // by group or rank, then by side
};

// Bits for every choice of some cards of a hand.
template <std::size_t hand_size, int size>
constexpr auto kChoices = [] {
  std::array<std::uint8_t, Choose(static_cast<int>(hand_size), size)> choices{};
  std::size_t next = 0;
  for (unsigned cards = 0; cards < 1u << hand_size; ++cards) {
    if (std::popcount(cards) == size) choices[next++] = static_cast<std::uint8_t>(cards);
  }
  return choices;
}();

// Takes what a class has put in out of the larger tensors.
template <std::size_t hand_size>
void ClearParts(const HandClass<hand_size>& of, Inserted<hand_size>& in) {
  for (const std::uint8_t cards : kChoices<hand_size, 3>) {
    std::fill_n(&in.triples[of.of_cards[cards]], 64, Weight{0});
  }
  if constexpr (hand_size > 4) {
    for (const std::uint8_t cards : kChoices<hand_size, 4>) {
      std::fill_n(&in.quads[of.of_cards[cards]], 256, Weight{0});
    }
  }
}

// Those with a low below a limit; the others are left.
template <typename List, typename LowOf>
List SplitOffList(List& list, int limit, const LowOf& low_of) {
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

template <std::size_t hand_size>
struct OmahaSweep<hand_size>::State {
  State(Isa isa, const OmahaTensors<hand_size>& of_ranges, bool with_lows,
        OmahaSweepPart of_contests);

  void Count(CardSet board);
  void CountAll();
  std::vector<OmahaCounts> CountsOf(std::size_t side, OmahaContest contest);

 private:
  // Sums of a part for the hands of a side.
  struct OfPart {
    Counts below, not_above;
    // Of the suited hands: what is to be added to both, and to the second.
    std::vector<Weight> of_flushes, of_flushes_not_above;
    // The same of boards before, where 32 bits had no more room; empty until then.
    struct {
      std::vector<std::uint64_t> below, not_above, of_flushes, of_flushes_not_above;
    } wide;
  };
  OfPart& Sums(std::size_t side, Part part) { return sums_[side][static_cast<std::size_t>(part)]; }

  template <typename Of>
  void Spread(std::size_t side, Of& sums) const;
  static void Widen(OfPart& sums);
  void MakeRoom();
  void Clear(const Sweeping<hand_size>& sweeping, const Field<hand_size>& field);
  Sweeping<hand_size> SweepingInto(Part of_no_low, Part of_low);
  void SetField();
  void Sweep(const Sweeping<hand_size>& sweeping, const Field<hand_size>& field);
  void SweepClasses(const Sweeping<hand_size>& sweeping, Level<hand_size> classes);
  void SweepFlushes(const Sweeping<hand_size>& sweeping,
                    std::span<const FlushHand<hand_size>> flushes);
  void SweepGroup(const Sweeping<hand_size>& sweeping, std::span<const FlushHand<hand_size>> hands);
  template <typename Without>
  void SweepFlush(const Sweeping<hand_size>& sweeping, const FlushHand<hand_size>& flush,
                  const Without& without);
  void InsertGroup(std::size_t side, const Group& group,
                   std::span<const FlushHand<hand_size>> few_hands);
  void SweepLows(const Field<hand_size>& field);
  void SweepHighWithLows();
  void SweepHighAndLow(Field<hand_size> field);
  Field<hand_size> SplitOff(Field<hand_size>& field, int limit) const;
  int LowOf(const FlushHand<hand_size>& flush) const {
    return board_.LowOf(flush.hand->hand_class);
  }

  const OmahaTensors<hand_size>& ranges_;
  bool high_low_;
  OmahaSweepPart part_;
  Isa isa_;
  // Empty between sweeps.
  std::unique_ptr<std::array<Inserted<hand_size>, 2>> inserted_ =
      std::make_unique<std::array<Inserted<hand_size>, 2>>();
  OmahaBoard<hand_size> board_;
  Field<hand_size> field_;
  std::array<WithoutPair<hand_size>, 2> added_{};  // by the group that is being swept

  std::array<std::array<OfPart, kParts>, 2> sums_;
  std::uint64_t boards_of_room_ = 1;  // boards that 32 bits have room for
  std::uint64_t boards_ = 0;
};

template <std::size_t hand_size>
OmahaSweep<hand_size>::State::State(Isa isa, const OmahaTensors<hand_size>& of_ranges,
                                    bool with_lows, OmahaSweepPart of_contests)
    : ranges_(of_ranges), high_low_(with_lows), part_(of_contests), isa_(isa) {
  std::uint64_t most = 1;
  for (const std::size_t side : {0u, 1u}) {
    most = std::max(most, ranges_[side].weight());
    for (std::size_t i = 0; i < (high_low_ ? kParts : 1); ++i) {
      OfPart& sums = sums_[side][i];
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
template <std::size_t hand_size>
template <typename Of>
void OmahaSweep<hand_size>::State::Spread(std::size_t side, Of& sums) const {
  const std::span<const SuitedHand<hand_size>> suited = ranges_[side].suited();
  const auto add = [&](auto& of_flushes, auto*... to) {
    for (std::size_t i = 0; i < of_flushes.size(); ++i) {
      if (of_flushes[i] == 0) continue;
      ((SumAt(*to, suited[i].place) += of_flushes[i]), ...);
      of_flushes[i] = 0;
    }
  };
  add(sums.of_flushes, &sums.below, &sums.not_above);
  add(sums.of_flushes_not_above, &sums.not_above);
}

// Moves sums to 64 bits.
template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::Widen(OfPart& sums) {
  const auto move = [](std::span<Weight> from, std::uint64_t* to) {
    for (std::size_t i = 0; i < from.size(); ++i) to[i] += from[i];
    std::ranges::fill(from, Weight{0});
  };
  const auto move_blocks = [&](Counts& from, std::vector<std::uint64_t>& to) {
    to.resize(from.size() * kBlockLanes);
    for (std::size_t i = 0; i < from.size(); ++i) move(from[i].of, &to[i * kBlockLanes]);
  };
  const auto move_flushes = [&](std::vector<Weight>& from, std::vector<std::uint64_t>& to) {
    to.resize(from.size());
    move(from, to.data());
  };
  move_blocks(sums.below, sums.wide.below);
  move_blocks(sums.not_above, sums.wide.not_above);
  move_flushes(sums.of_flushes, sums.wide.of_flushes);
  move_flushes(sums.of_flushes_not_above, sums.wide.of_flushes_not_above);
}

// Before they do not fit into 32 bits.
template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::MakeRoom() {
  if (boards_++ < boards_of_room_) return;
  boards_ = 1;
  for (auto& of_side : sums_) std::ranges::for_each(of_side, Widen);
}

template <std::size_t hand_size>
std::vector<OmahaCounts> OmahaSweep<hand_size>::State::CountsOf(std::size_t side,
                                                                OmahaContest contest) {
  std::vector<OmahaCounts> counts(ranges_[side].size());
  const auto add = [&](auto& from) {
    Spread(side, from);
    for (std::size_t i = 0; i < counts.size(); ++i) {
      const std::uint32_t place = ranges_[side].places()[i];
      counts[i].below += SumAt(from.below, place);
      counts[i].not_above += SumAt(from.not_above, place);
    }
  };
  for (const Part part : PartsOf(contest)) {
    OfPart& sums = Sums(side, part);
    if (sums.wide.below.empty()) {
      add(sums);
    } else {
      Widen(sums);
      add(sums.wide);
    }
  }
  return counts;
}

// Takes out what a sweep of a field has put in.
template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::Clear(const Sweeping<hand_size>& sweeping,
                                         const Field<hand_size>& field) {
  constexpr std::size_t kFewClasses = hand_size == 4 ? 60 : 200;
  for (const std::size_t side : {0u, 1u}) {
    Inserted<hand_size>& in = *sweeping.inserted[side];
    if (in.all == 0) continue;
    in.singles.fill(0);
    in.pairs.fill(0);
    in.all = 0;
    if (field.classes.size() + field.full_classes.size() > kFewClasses) {
      in.triples.fill(0);
      if constexpr (hand_size > 4) in.quads.fill(0);
      continue;
    }
    for (const auto* classes : {&field.classes, &field.full_classes}) {
      for (const ClassOnBoard<hand_size>& of : *classes) {
        if (!sweeping.Inserts(of.low) || ranges_[side].BlocksOf(of.number).held == 0) continue;
        ClearParts(*of.hand_class, in);
      }
    }
  }
}

// A sweep whose answers for hands without a low, and with one, are parts.
template <std::size_t hand_size>
Sweeping<hand_size> OmahaSweep<hand_size>::State::SweepingInto(Part of_no_low, Part of_low) {
  Sweeping<hand_size> sweeping = {
      ranges_, {&(*inserted_)[0], &(*inserted_)[1]}, {}, board_.flush_suit()};
  for (const std::size_t side : {0u, 1u}) {
    for (const std::size_t has_low : {0u, 1u}) {
      OfPart& sums = Sums(side, has_low == 0 ? of_no_low : of_low);
      sweeping.answers[side][has_low] = {sums.below.data(), sums.not_above.data(),
                                         sums.of_flushes.data()};
    }
  }
  return sweeping;
}

// All hands that the board leaves.
template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::SetField() {
  Field<hand_size>& field = field_;
  const auto below_full =
      board_.classes().begin() + static_cast<std::ptrdiff_t>(board_.below_full());
  field.classes.assign(board_.classes().begin(), below_full);
  field.full_classes.assign(below_full, board_.classes().end());
  field.flushes.clear();
  field.straight_flushes.clear();
  const unsigned suit = board_.flush_suit();
  if (suit == kNoSuit) return;
  POKERMATH_REQUIRE((ranges_.flush_suits() >> suit & 1) != 0);
  const bool straight = !board_.straight_flushes().missing().empty();
  const auto is_on_board = [&](std::size_t rank) {
    return board_.cards().Contains(static_cast<int>(suit * 13 + rank));
  };
  const auto is_card_of_board = [&](int card) { return board_.cards().Contains(card); };
  for (std::size_t high = 1, pair = 0; high < 13; ++high) {
    for (std::size_t low = 0; low < high; ++low, ++pair) {
      if (is_on_board(high) || is_on_board(low)) continue;
      for (const std::size_t side : {0u, 1u}) {
        for (const SuitedHand<hand_size>& hand : ranges_[side].Suited(suit, pair)) {
          if (std::ranges::any_of(hand.cards, is_card_of_board)) continue;
          FlushHand<hand_size> flush = {&hand, static_cast<std::uint16_t>(pair),
                                        static_cast<std::uint8_t>(side), -1};
          if (straight) {
            flush.straight_flush =
                static_cast<std::int8_t>(board_.straight_flushes().BestOf(hand.suited));
          }
          if (flush.straight_flush >= 0) {
            field.straight_flushes.push_back(flush);
          } else if (!board_.IsFull(hand.hand_class)) {
            field.flushes.push_back(flush);
          }
        }
      }
    }
  }
  std::ranges::stable_sort(field.straight_flushes, {}, [](const FlushHand<hand_size>& of) {
    return std::pair(of.straight_flush, of.side);
  });
}

template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::SweepClasses(const Sweeping<hand_size>& sweeping,
                                                Level<hand_size> classes) {
  while (!classes.empty()) {
    const auto end = std::ranges::find_if(
        classes, [&](const ClassOnBoard<hand_size>& of) { return of.value != classes[0].value; });
    const auto size = static_cast<std::size_t>(end - classes.begin());
    Dispatch<Isa::kAvx2>(isa_, [&](auto isa) POKERMATH_INLINE {
      using Register = std::conditional_t<isa() == Isa::kBaseline, Four, Eight>;
      SweepLevel<Register>(sweeping, classes.first(size));
    });
    classes = classes.subspan(size);
  }
}

// Asks for a hand whose group's other hands share cards with it, and puts it in, but for the sets
// that hold some of the cards that are not its group's, not all.
template <std::size_t hand_size>
template <typename Without>
void OmahaSweep<hand_size>::State::SweepFlush(const Sweeping<hand_size>& sweeping,
                                              const FlushHand<hand_size>& flush,
                                              const Without& without) {
  const SuitedHand<hand_size>& hand = *flush.hand;
  const std::size_t side = flush.side;
  const int low = LowOf(flush);
  const bool inserts = sweeping.Inserts(low);
  if (sweeping.Asks(low)) {
    const Inserted<hand_size>& other = *sweeping.inserted[1 - side];
    Weight below = without.All();
    for (const std::uint8_t card : hand.cards) below -= without.Single(card);
    if constexpr (hand_size > 4) {
      for (const std::uint16_t pair : hand.pairs) below += without.Pair(pair);
    }
    // The first range has the group put in already. Of its hands only the same one is not counted
    // right: its last term is missing.
    Weight all_others =
        Rest(other)[hand.others] - Largest(other)[hand.with_high] - Largest(other)[hand.with_low];
    if (side == 1 && inserts) all_others += hand.same;
    below += hand_size % 2 == 0 ? all_others : -all_others;
    const std::ptrdiff_t number = &hand - ranges_[side].suited().data();
    sweeping.AnswersOf(side, low).of_flushes[number] += below;
  }
  if (!inserts) return;
  Inserted<hand_size>& own = *sweeping.inserted[side];
  Rest(own)[hand.others] += hand.weight;
  Largest(own)[hand.with_high] += hand.weight;
  Largest(own)[hand.with_low] += hand.weight;
  WithoutPair<hand_size>& added = added_[side];
  added.all += hand.weight;
  for (const std::uint8_t card : hand.cards) added.singles[card] += hand.weight;
  for (const std::uint16_t pair : hand.pairs) added.pairs[pair] += hand.weight;
}

// Puts in the sets that SweepFlush has left out for the hands of a group.
template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::InsertGroup(std::size_t side, const Group& group,
                                               std::span<const FlushHand<hand_size>> few_hands) {
  WithoutPair<hand_size>& added = added_[side];
  if (added.all == 0) return;
  Inserted<hand_size>& in = (*inserted_)[side];
  const auto insert_single = [&](std::size_t card) {
    const Weight weight = std::exchange(added.singles[card], 0);
    if (weight == 0) return;
    in.singles[SinglePlace(static_cast<int>(card))] += weight;
    in.pairs[group.places.pair1[card]] += weight;
    in.pairs[group.places.pair2[card]] += weight;
    in.triples[group.places.triple[card]] += weight;
  };
  const auto insert_pair = [&](std::size_t pair) {
    if constexpr (hand_size > 4) {
      const Weight weight = std::exchange(added.pairs[pair], 0);
      if (weight == 0) return;
      in.pairs[pair] += weight;
      in.triples[group.with_pairs->triple1[pair]] += weight;
      in.triples[group.with_pairs->triple2[pair]] += weight;
      in.quads[group.with_pairs->quad[pair]] += weight;
    }
  };
  if (few_hands.empty()) {
    for (std::size_t card = 0; card < added.singles.size(); ++card) insert_single(card);
    for (std::size_t pair = 0; pair < added.pairs.size(); ++pair) insert_pair(pair);
  }
  for (const FlushHand<hand_size>& flush : few_hands) {
    for (const std::uint8_t card : flush.hand->cards) insert_single(card);
    for (const std::uint16_t pair : flush.hand->pairs) insert_pair(pair);
  }
  in.all += added.all;
  for (const std::uint16_t single : group.places.singles) in.singles[single] += added.all;
  in.pairs[group.places.both] += added.all;
  added.all = 0;
}

// What is inserted without the two cards of a group is not changed by its own hands.
template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::SweepGroup(const Sweeping<hand_size>& sweeping,
                                              std::span<const FlushHand<hand_size>> hands) {
  // From so many hands on it is best worked out once for every third card, and every pair.
  constexpr std::size_t kManyHands = hand_size == 4 ? 30 : 400;
  const Group group = {
      PlacesOf(sweeping.flush_suit, hands[0].pair),
      hand_size == 4 ? nullptr : &PlacesWithPairsOf(sweeping.flush_suit, hands[0].pair)};
  const auto without = [&](std::size_t side) {
    return WithoutGroup<hand_size>{*sweeping.inserted[side], group};
  };
  if (hands.size() < kManyHands) {
    for (const FlushHand<hand_size>& flush : hands) {
      SweepFlush(sweeping, flush, without(1 - flush.side));
    }
  } else {
    std::array<WithoutPair<hand_size>, 2> worked_out;
    for (const std::size_t side : {0u, 1u}) worked_out[side].Set(without(side));
    for (const FlushHand<hand_size>& flush : hands) {
      SweepFlush(sweeping, flush, worked_out[1 - flush.side]);
    }
  }
  const auto few_hands = hands.first(hands.size() < kManyHands ? hands.size() : 0);
  for (const std::size_t side : {0u, 1u}) InsertGroup(side, group, few_hands);
}

template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::SweepFlushes(const Sweeping<hand_size>& sweeping,
                                                std::span<const FlushHand<hand_size>> flushes) {
  while (!flushes.empty()) {
    std::size_t size = 1;
    while (size < flushes.size() && flushes[size].pair == flushes[0].pair) ++size;
    SweepGroup(sweeping, flushes.first(size));
    flushes = flushes.subspan(size);
  }
}

template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::Sweep(const Sweeping<hand_size>& sweeping,
                                         const Field<hand_size>& field) {
  SweepClasses(sweeping, field.classes);
  SweepFlushes(sweeping, field.flushes);
  SweepClasses(sweeping, field.full_classes);
  // Each as a group of its own: those with the same one share cards.
  for (const FlushHand<hand_size>& flush : field.straight_flushes)
    SweepGroup(sweeping, {&flush, 1});
}

// Hands with a low by their lows, which know no suits. Those without one are put in already.
template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::SweepLows(const Field<hand_size>& field) {
  std::vector<ClassOnBoard<hand_size>> classes;
  for (const std::vector<ClassOnBoard<hand_size>>* all : {&field.classes, &field.full_classes}) {
    for (const ClassOnBoard<hand_size>& of : *all) {
      if (of.low == 0) continue;
      ClassOnBoard<hand_size>& by_low = classes.emplace_back(of);
      by_low.value = of.low;
      by_low.blocks = of.live_blocks;
      by_low.lanes.fill(of.live_lanes);
    }
  }
  std::ranges::stable_sort(classes, {}, &ClassOnBoard<hand_size>::low);
  Sweeping<hand_size> sweeping = SweepingInto(Part::kLow, Part::kLow);
  sweeping.flush_suit = kNoSuit;
  SweepClasses(sweeping, classes);
}

// All hands by high hands, against those without a low and those with one.
template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::SweepHighWithLows() {
  Sweeping<hand_size> over_no_low = SweepingInto(Part::kNoLow, Part::kOverNoLow);
  over_no_low.lows_inserted = 1;
  Sweep(over_no_low, field_);
  if (part_ == OmahaSweepPart::kAll) {
    SweepLows(field_);
    over_no_low.lows_inserted = kAllLows;
  }
  Clear(over_no_low, field_);
  Sweeping<hand_size> over_low = SweepingInto(Part::kOverLow, Part::kOverLow);
  over_low.first_low_inserted = 1;
  Sweep(over_low, field_);
  Clear(over_low, field_);
}

// The part of a field with a low below a limit; the rest is left.
template <std::size_t hand_size>
Field<hand_size> OmahaSweep<hand_size>::State::SplitOff(Field<hand_size>& field, int limit) const {
  const auto low_of_class = [](const ClassOnBoard<hand_size>& of) { return of.low; };
  const auto low_of_flush = [this](const FlushHand<hand_size>& of) { return LowOf(of); };
  return {SplitOffList(field.classes, limit, low_of_class),
          SplitOffList(field.full_classes, limit, low_of_class),
          SplitOffList(field.flushes, limit, low_of_flush),
          SplitOffList(field.straight_flushes, limit, low_of_flush)};
}

// Those with a low in both.
template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::SweepHighAndLow(Field<hand_size> field) {
  std::vector<int> lows;
  for (const std::vector<ClassOnBoard<hand_size>>* classes :
       {&field.classes, &field.full_classes}) {
    for (const ClassOnBoard<hand_size>& of : *classes) lows.push_back(of.low);
  }
  if (lows.empty()) return;
  std::ranges::sort(lows);
  Sweeping<hand_size> sweeping = SweepingInto(Part::kBothLows, Part::kBothLows);
  if (lows.front() == lows.back()) {
    for (const std::size_t side : {0u, 1u}) {
      Weight* const of_flushes = Sums(side, Part::kBothLows).of_flushes_not_above.data();
      for (Answers& answers : sweeping.answers[side]) {
        answers.below = nullptr;
        answers.of_flushes = of_flushes;
      }
    }
    Sweep(sweeping, field);
    return Clear(sweeping, field);
  }
  // The low in the middle, or the next one where it is the lowest.
  int limit = lows[lows.size() / 2];
  if (limit == lows.front()) limit = *std::ranges::upper_bound(lows, limit);
  sweeping.lows_inserted = sweeping.first_low_asked = limit;
  Sweep(sweeping, field);
  Clear(sweeping, field);
  SweepHighAndLow(SplitOff(field, limit));
  SweepHighAndLow(std::move(field));
}

template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::Count(CardSet board) {
  MakeRoom();
  board_.Set(board, ranges_.classes(), high_low_, part_ != OmahaSweepPart::kButLowWithoutFlushes);
  SetField();
  if (!board_.has_lows()) {
    const Sweeping<hand_size> sweeping = SweepingInto(Part::kWholePot, Part::kWholePot);
    Sweep(sweeping, field_);
    return Clear(sweeping, field_);
  }
  SweepHighWithLows();
  SplitOff(field_, 1);
  SweepHighAndLow(std::move(field_));
}

template <std::size_t hand_size>
void OmahaSweep<hand_size>::State::CountAll() {
  MakeRoom();
  Field<hand_size> field;
  for (const std::uint16_t number : ranges_.classes()) {
    constexpr std::uint16_t kAll = 0xFFFF;
    constexpr auto kAllBlocks = static_cast<BlockBits<hand_size>>(~BlockBits<hand_size>{0});
    field.classes.push_back(
        {&HandClasses<hand_size>()[number], number, 0, 0, kAllBlocks, kAll, kAllBlocks, {}});
    field.classes.back().lanes.fill(kAll);
  }
  Sweeping<hand_size> sweeping = SweepingInto(Part::kWholePot, Part::kWholePot);
  sweeping.flush_suit = kNoSuit;
  Sweep(sweeping, field);
  Clear(sweeping, field);
}

template <std::size_t hand_size>
OmahaSweep<hand_size>::OmahaSweep(Isa isa, const OmahaTensors<hand_size>& ranges, bool high_low,
                                  OmahaSweepPart part)
    : state_(std::make_unique<State>(isa, ranges, high_low, part)) {}
template <std::size_t hand_size>
OmahaSweep<hand_size>::~OmahaSweep() = default;
template <std::size_t hand_size>
void OmahaSweep<hand_size>::Count(CardSet board) {
  state_->Count(board);
}
template <std::size_t hand_size>
void OmahaSweep<hand_size>::CountAll() {
  state_->CountAll();
}
template <std::size_t hand_size>
std::vector<OmahaCounts> OmahaSweep<hand_size>::CountsOf(std::size_t side, OmahaContest contest) {
  return state_->CountsOf(side, contest);
}

template class OmahaSweep<4>;
template class OmahaSweep<5>;

}  // namespace pokermath
