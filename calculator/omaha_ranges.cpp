// Two ranges of Omaha hands of four or five cards, every hand of both, board by board.
//
// Boards that a renaming of suits makes of each other are counted once, where the question does not
// tell these suits apart. What a hand gets from all of them is then what the hands alike get from
// one of them, shared out, as many times as there are boards.
//
// Where one or two cards come to hands of four, most of the boards may allow no flush. Then all
// boards are counted by classes as if there were none. Those that allow one are swept like that, to
// be taken off again, and as they are.
//
// A step is some boards that stand for as many. By classes the first one is all but the last part.

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <memory>
#include <vector>

#include "calculator/choices.h"
#include "calculator/solvers.h"
#include "calculator/suit_symmetry.h"
#include "cards/omaha_sizes.h"
#include "kernels/omaha_class_runouts.h"
#include "kernels/omaha_sweep.h"

namespace pokermath {
namespace {

std::vector<WeightedHand> HandsOf(const Side& side) {
  const std::span<const WeightedHand> hands = side.range.hands();
  std::vector<WeightedHand> of_units(hands.begin(), hands.end());
  for (WeightedHand& hand : of_units) hand.weight /= side.unit;
  return of_units;
}

// Two ranges of hands of other sizes are dealt or counted plainly.
constexpr bool IsSwept(int hand_size) { return hand_size == 4 || hand_size == 5; }

// Whether the weights of a range add up to no more than the sums of a board have room for. Every
// hand of four cards with the largest weight does.
bool FitsSweep(const Side& side, int hand_size) {
  if (hand_size == 4 || !side.IsListed()) return true;
  std::uint64_t weight = 0;
  for (const WeightedHand& hand : side.range.hands()) {
    weight += static_cast<std::uint64_t>(hand.weight);
  }
  return weight / static_cast<std::uint64_t>(side.unit) >> 32 == 0;
}

int CountOf(CardSet cards, int suit) { return std::popcount(cards.bits() >> 13 * suit & 0x1FFF); }

bool AllowsFlush(CardSet board) {
  for (int suit = 0; suit < 4; ++suit) {
    if (CountOf(board, suit) >= 3) return true;
  }
  return false;
}

// The suits of which the board may get three cards.
unsigned FlushSuitsOf(const CheckedQuestion& question) {
  unsigned suits = 0;
  for (int suit = 0; suit < 4; ++suit) {
    if (CountOf(question.board(), suit) + question.to_come() >= 3) suits |= 1u << suit;
  }
  return suits;
}

// Operations of a sweep.
double CostOfBoard(const CheckedQuestion& question, bool with_flush) {
  const bool four = question.rules().hand_size == 4;
  double cost = 6000;
  for (const Side& side : question.players()) {
    const auto hands = static_cast<double>(side.range.size());
    // Of five cards few have the same suits but for two.
    cost += four ? (with_flush ? 3.5 : 2.2) * hands : 4 * hands + 80 / (1 / hands + 1e-4);
  }
  return (!question.rules().high_low ? 1 : four ? 3.5 : 4) * cost;
}

// Operations of counting so many classes on each side by classes.
double CostOfClasses(const CheckedQuestion& question, double classes1, double classes2) {
  return (question.rules().high_low ? 3 : 1) * (1e5 + 20 * classes1 * classes2);
}

// What boards cost, and whether they are counted by classes.
struct BoardsCost {
  double sum;
  bool by_classes;
};
BoardsCost CostOfBoards(const CheckedQuestion& question, double boards, double with_flush,
                        double of_classes) {
  const double plain = CostOfBoard(question, false), flush = CostOfBoard(question, true);
  const double swept = (boards - with_flush) * plain + with_flush * flush;
  const double by_classes = of_classes + with_flush * (plain + flush);
  const bool few_come = question.to_come() == 1 || question.to_come() == 2;
  if (question.rules().hand_size != 4 || !few_come || by_classes >= swept) return {swept, false};
  return {by_classes, true};
}

// A step goes through all hands once more, so it is a large one.
std::size_t BoardsAStep(const CheckedQuestion& question) {
  const double step_cost = (question.rules().hand_size == 4 ? 4 : 20) * kStepCost;
  return static_cast<std::size_t>(std::clamp(step_cost / CostOfBoard(question, true), 1.0, 96.0));
}

// What completes the board.
struct Boards {
  std::int64_t alike = 1;  // how many boards each of them stands for
  std::vector<CardSet> come;
};

// All of them, or one of those that are alike.
class BoardList {
 public:
  BoardList(const CheckedQuestion& question, const SuitSymmetry* symmetry)
      : question_(question), symmetry_(symmetry), live_(ListOf(question.live())) {
    Extend({}, 0, question.to_come());
  }

  std::size_t size() const { return size_; }
  std::size_t with_flush() const { return with_flush_; }

  // Boards that stand for as many, no more together than a step has.
  std::vector<Boards> Steps(bool only_with_flush) const {
    const std::size_t boards_a_step = BoardsAStep(question_);
    std::vector<Boards> steps;
    for (const auto& [alike, all] : by_alike_) {
      for (const CardSet come : all) {
        if (only_with_flush && !AllowsFlush(question_.board() | come)) continue;
        if (steps.empty() || steps.back().alike != alike ||
            steps.back().come.size() == boards_a_step) {
          steps.push_back({alike, {}});
        }
        steps.back().come.push_back(come);
      }
    }
    return steps;
  }

 private:
  // Among sets that are alike the first one is that with the lowest cards, the lowest of all
  // deciding first. Without its highest card it is still the first one, so others lead nowhere.
  void Extend(CardSet come, std::size_t next, int missing) {
    const std::int64_t alike = TimesOf(come);
    if (alike == 0) return;
    if (missing == 0) {
      by_alike_[alike].push_back(come);
      ++size_;
      with_flush_ += AllowsFlush(question_.board() | come) ? 1 : 0;
      return;
    }
    for (std::size_t i = next; i < live_.size(); ++i) {
      CardSet more = come;
      more.Add(live_[i]);
      Extend(more, i + 1, missing - 1);
    }
  }

  // How many are alike if this one is the first of them, otherwise 0.
  std::int64_t TimesOf(CardSet come) const {
    if (symmetry_ == nullptr) return 1;
    std::size_t same = 0;
    for (const SuitRenaming& renaming : symmetry_->renamings()) {
      const std::uint64_t other = renaming.Of(come).bits();
      const std::uint64_t differ = other ^ come.bits();
      if ((other & differ & -differ) != 0) return 0;
      same += differ == 0 ? 1 : 0;
    }
    return static_cast<std::int64_t>(symmetry_->renamings().size() / same);
  }

  const CheckedQuestion& question_;
  const SuitSymmetry* symmetry_;
  std::vector<int> live_;
  std::map<std::int64_t, std::vector<CardSet>> by_alike_;
  std::size_t size_ = 0;
  std::size_t with_flush_ = 0;
};

// The hands of a player, and which of them are alike.
struct Hands {
  std::vector<WeightedHand> hands;
  std::vector<std::size_t> orbit_of;  // numbers of the sets of hands that are alike
  std::vector<std::int64_t> orbit_size;

  Hands(const Side& side, const SuitSymmetry* symmetry) : hands(HandsOf(side)) {
    if (symmetry == nullptr) return;
    orbit_of.resize(hands.size());
    for (std::size_t i = 0; i < hands.size(); ++i) {
      const CardSet first = symmetry->FirstOf(hands[i].cards);
      // Hands rise, so the first one has been seen.
      if (first == hands[i].cards) {
        orbit_of[i] = orbit_size.size();
        orbit_size.push_back(1);
      } else {
        orbit_of[i] = orbit_of[side.range.Find(first)];
        ++orbit_size[orbit_of[i]];
      }
    }
  }
};

template <std::size_t hand_size>
class OmahaRangesWork final : public Work {
 public:
  explicit OmahaRangesWork(const QuestionPointer& question)
      : OmahaRangesWork(question, SymmetryOf(*question)) {}

  const char* name() const override { return "Omaha ranges"; }
  Method method() const override { return Method::kExact; }
  std::int64_t steps() const override {
    return static_cast<std::int64_t>(boards_.size()) + (by_classes_ ? 1 : 0);
  }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    if (step == 0) AddCases(sums);
    if constexpr (hand_size == 4) {
      if (by_classes_ && step == 0) return CountByClasses(sums);
    }
    const Boards& boards = boards_[static_cast<std::size_t>(step) - (by_classes_ ? 1 : 0)];
    const auto part = by_classes_ ? OmahaSweepPart::kButLow : OmahaSweepPart::kAll;
    Sweep(boards, part, boards.alike, sums);
  }

 private:
  using Symmetry = std::unique_ptr<const SuitSymmetry>;

  // Where few boards come it takes longer to find out than to count them.
  static Symmetry SymmetryOf(const CheckedQuestion& question) {
    if (question.to_come() < 2) return nullptr;
    auto symmetry = std::make_unique<const SuitSymmetry>(question);
    return symmetry->renamings().size() > 1 ? std::move(symmetry) : nullptr;
  }

  OmahaRangesWork(const QuestionPointer& question, const Symmetry& symmetry)
      : question_(question),
        layout_(*question),
        hands_{Hands(question->players()[0], symmetry.get()),
               Hands(question->players()[1], symmetry.get())},
        ranges_(hands_[0].hands, hands_[1].hands, FlushSuitsOf(*question)) {
    const BoardList boards(*question, symmetry.get());
    by_classes_ = CostOfBoards(*question, static_cast<double>(boards.size()),
                               static_cast<double>(boards.with_flush()),
                               CostOfClasses(*question, static_cast<double>(ranges_[0].classes()),
                                             static_cast<double>(ranges_[1].classes())))
                      .by_classes;
    boards_ = boards.Steps(by_classes_);
  }

  void Sweep(const Boards& boards, OmahaSweepPart part, std::int64_t times,
             std::span<Int128> sums) const {
    OmahaSweep<hand_size> sweep(BestIsa(), ranges_, question_->rules().high_low, part);
    for (const CardSet come : boards.come) sweep.Count(question_->board() | come);
    for (const std::size_t player : {0u, 1u}) AddPlayer(player, sweep, times, sums);
  }

  // All boards that allow no flush, and of those that do, the lows.
  void CountByClasses(std::span<Int128> sums) const requires(hand_size == 4) {
    const OmahaClassRunouts all(BestIsa(), ranges_, question_->board(), question_->live(),
                                question_->to_come(), question_->rules().high_low);
    for (const std::size_t player : {0u, 1u}) AddPlayer(player, all, 1, sums);
    for (const Boards& boards : boards_) {
      Sweep(boards, OmahaSweepPart::kButLowWithoutFlushes, -boards.alike, sums);
    }
  }

  // What a hand gets, in numbers that its weight is in.
  struct Gains {
    Int128 wins = 0, ties = 0, points = 0;
    Int128 low = 0;
    std::array<Int128, 2> shared{}, low_shared{};  // alone, with the other player

    void Add(const Gains& other, Int128 times) {
      wins += other.wins * times;
      ties += other.ties * times;
      points += other.points * times;
      low += other.low * times;
      for (const std::size_t i : {0u, 1u}) {
        shared[i] += other.shared[i] * times;
        low_shared[i] += other.low_shared[i] * times;
      }
    }
    void AddHigh(const OmahaCounts& counts, Int128 pot, Int128 weight) {
      AddShares(counts, pot, weight, shared);
    }
    void AddLow(const OmahaCounts& counts, Int128 weight) {
      low += AddShares(counts, kHalfPot, weight, low_shared);
    }
    // Half of a pot for the better hand.
    Int128 AddShares(const OmahaCounts& counts, Int128 pot, Int128 weight,
                     std::array<Int128, 2>& sharers) {
      const Int128 won = weight * counts.below, tied = weight * (counts.not_above - counts.below);
      sharers[0] += won;
      sharers[1] += tied;
      const Int128 added = pot * won + pot / 2 * tied;
      points += added;
      return added;
    }
  };

  // Where no low comes in.
  static Gains HighGains(const OmahaCounts& whole, Int128 weight) {
    Gains gains;
    gains.AddHigh(whole, kPot, weight);
    gains.wins = gains.shared[0];
    gains.ties = gains.shared[1];
    return gains;
  }

  // Half of the pot is for the high hand on every board with lows; the other half is for the low,
  // or without one for the high hand again. A hand takes all of it as the better one in both. It
  // takes nothing where it is worse in both, or without a low in the high hand.
  static Gains HighLowGains(const std::array<OmahaCounts, kOmahaContests>& counts, Int128 weight) {
    const auto [whole, high, low, no_low, both] = counts;
    Gains gains = HighGains(whole, weight);
    gains.AddHigh(high, kHalfPot, weight);
    gains.AddLow(low, weight);
    std::array<Int128, 2> counted_before{};
    gains.AddShares(no_low, kHalfPot, weight, counted_before);
    const Int128 scoops = weight * (no_low.below + both.below);
    gains.wins += scoops;
    gains.ties += weight * (Int128{high.not_above} + low.not_above - both.not_above) - scoops;
    return gains;
  }

  // Adds what was counted, so many times.
  template <typename Counted>
  void AddPlayer(std::size_t player, Counted& counted, std::int64_t times,
                 std::span<Int128> sums) const {
    const Hands& hands = hands_[player];
    const bool high_low = question_->rules().high_low;
    std::array<std::vector<OmahaCounts>, kOmahaContests> counts;
    for (std::size_t i = 0; i < (high_low ? kOmahaContests : 1); ++i) {
      counts[i] = counted.CountsOf(player, static_cast<OmahaContest>(i));
    }
    const auto gains_of = [&](std::size_t hand) {
      const Int128 weight = hands.hands[hand].weight;
      if (!high_low) return HighGains(counts[0][hand], weight);
      std::array<OmahaCounts, kOmahaContests> of_hand;
      for (std::size_t i = 0; i < kOmahaContests; ++i) of_hand[i] = counts[i][hand];
      return HighLowGains(of_hand, weight);
    };
    Gains all;
    std::vector<Gains> of_orbits(hands.orbit_size.size());
    for (std::size_t i = 0; i < hands.hands.size(); ++i) {
      const Gains gains = gains_of(i);
      all.Add(gains, times);
      if (!question_->asked().detail.hands) continue;
      if (of_orbits.empty()) {
        Add(SumsLayout::OutcomeOf(layout_.HandCases(player, i)), gains, times, 1, sums);
      } else {
        of_orbits[hands.orbit_of[i]].Add(gains, 1);
      }
    }
    Add(layout_.Total(player), all, 1, 1, sums);
    for (const std::size_t i : {0u, 1u}) {
      sums[layout_.Shared(player, i)] += all.shared[i];
      sums[layout_.LowShared(player, i)] += all.low_shared[i];
    }
    // Every hand gets what its likes have on average.
    for (std::size_t i = 0; i < hands.orbit_of.size() && question_->asked().detail.hands; ++i) {
      const std::size_t orbit = hands.orbit_of[i];
      Add(SumsLayout::OutcomeOf(layout_.HandCases(player, i)), of_orbits[orbit], times,
          hands.orbit_size[orbit], sums);
    }
  }

  // Adds gains, times / parts of them.
  static void Add(OutcomePlace place, const Gains& gains, Int128 times, Int128 parts,
                  std::span<Int128> sums) {
    sums[place.wins()] += gains.wins * times / parts;
    sums[place.ties()] += gains.ties * times / parts;
    sums[place.points()] += gains.points * times / parts;
    sums[place.low()] += gains.low * times / parts;
  }

  // Every two hands that share no card leave as many boards.
  void AddCases(std::span<Int128> sums) const {
    const int live = question_->live().size() - 2 * question_->rules().hand_size;
    const Int128 boards = ChoicesOf(live, question_->to_come());
    OmahaSweep<hand_size> sweep(BestIsa(), ranges_, false);
    sweep.CountAll();
    for (const std::size_t player : {0u, 1u}) {
      const std::vector<OmahaCounts> counts = sweep.CountsOf(player, OmahaContest::kWholePot);
      for (std::size_t i = 0; i < counts.size(); ++i) {
        const Int128 cases = hands_[player].hands[i].weight * Int128{counts[i].not_above} * boards;
        if (player == 0) sums[SumsLayout::kCases] += cases;
        if (question_->asked().detail.hands) sums[layout_.HandCases(player, i)] += cases;
      }
    }
  }

  QuestionPointer question_;
  SumsLayout layout_;
  std::array<Hands, 2> hands_;
  OmahaTensors<hand_size> ranges_;
  bool by_classes_ = false;
  std::vector<Boards> boards_;
};

// What part of the boards allows a flush: with so many cards of a suit on the board and left, the
// chances that enough of those to come are of it add up.
double PartWithFlush(const CheckedQuestion& question) {
  const int live = question.live().size(), to_come = question.to_come();
  double boards = 0;
  for (int suit = 0; suit < 4; ++suit) {
    const int left = CountOf(question.live(), suit);
    for (int come = std::max(0, 3 - CountOf(question.board(), suit)); come <= to_come; ++come) {
      boards += static_cast<double>(ChoicesOf(left, come)) *
                static_cast<double>(ChoicesOf(live - left, to_come - come));
    }
  }
  return boards / static_cast<double>(ChoicesOf(live, to_come));
}

// About as many classes as hands of this number have, where it is the strongest ones.
double ClassesIn(const CheckedQuestion& question, std::size_t player) {
  const auto hands = static_cast<double>(question.players()[player].range.size());
  return std::min({hands, 3 * std::sqrt(hands), static_cast<double>(kHandClasses<4>)});
}

}  // namespace

std::optional<double> OmahaRangesCost(const CheckedQuestion& question) {
  const Detail& detail = question.asked().detail;
  if (!question.rules().IsOmaha() || !IsSwept(question.rules().hand_size) ||
      question.players().size() != 2 || !question.folded().empty() || detail.next || detail.made) {
    return std::nullopt;
  }
  double hands = 0;
  for (const Side& side : question.players()) {
    if (!FitsSweep(side, question.rules().hand_size)) return std::nullopt;
    hands += static_cast<double>(side.range.size());
  }
  const auto boards = static_cast<double>(ChoicesOf(question.live().size(), question.to_come()));
  return 1e5 + 80 * hands +
         CostOfBoards(question, boards, boards * PartWithFlush(question),
                      CostOfClasses(question, ClassesIn(question, 0), ClassesIn(question, 1)))
             .sum;
}

std::unique_ptr<const Work> StartOmahaRanges(const QuestionPointer& question) {
  return ForOmahaSize(question->rules().hand_size, [&](auto cards) -> std::unique_ptr<const Work> {
    if constexpr (IsSwept(cards)) {
      return std::make_unique<OmahaRangesWork<cards>>(question);
    } else {
      return nullptr;  // has no cost
    }
  });
}

}  // namespace pokermath
