// One question of equity for every game, any number of players and any ranges, and its answer.
//
//   const auto answer = pokermath::Calculate({
//       .players = {HandRange::Of(Game::kHoldem, hand), HandRange::Every(Game::kHoldem)}});
//   if (answer) use(answer->players[0].equity); else report(answer.error().text);
//
// A host that wants threads, progress or a stop takes the calculation in steps instead: Plan,
// then Do for steps in any order and on any thread, then Answer.

#ifndef POKERMATH_CALCULATOR_H_
#define POKERMATH_CALCULATOR_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pokermath/card_set.h"
#include "pokermath/export.h"
#include "pokermath/game.h"
#include "pokermath/hand_range.h"
#include "pokermath/result.h"

namespace pokermath {

inline constexpr std::size_t kMostPlayers = 10;

enum class Method {
  kAuto,     ///< exact where that takes less than about a second, sampled otherwise
  kExact,    ///< counted, however long it takes
  kSampled,  ///< dealt at random
};

/// When sampling ends: as soon as one of them is reached. At least one of them must be set. A limit
/// of time is the host's affair: it stops between steps. To an error, sampling gives up where it
/// takes 2^32 deals of ranges that hardly fit together, which the reason says.
struct SamplingLimits {
  /// Of every player's equity, 0..1; 0 for none.
  double standard_error = 0.0005;
  /// Trials, up to 2^40; 0 for none. Without a standard error there are so many. Of ranges that
  /// seldom fit together, which are dealt in pools, there are about so many, mostly a few more; or
  /// fewer, which the reason says.
  std::int64_t trials = 0;
};

/// What the answer holds beside every player's totals.
struct Detail {
  /// Every hand of every player, of 10 million hands together at the most: an answer takes some 200
  /// bytes for each of them.
  bool hands = false;
  bool next = false;  ///< by what comes next: the flop, or the turn or river card
  bool made = false;  ///< what each player makes, by category
};

struct EquityQuestion {
  Game game = Game::kHoldem;
  /// 2 to 10 ranges of the game's hands. One hand and every hand are ranges.
  std::vector<HandRange> players{};
  /// Of players who are out: their hands take cards away and win nothing. Every hand takes away
  /// nothing that matters, and is left out.
  std::vector<HandRange> folded{};
  CardSet board{};  ///< 0 to 5 cards, no more than the street has
  CardSet dead{};   ///< cards that nobody holds and that cannot come
  Street street = Street::kRiver;
  Method method = Method::kAuto;
  Detail detail{};
  SamplingLimits sampling{};
  std::uint64_t seed = 1;
  /// The operations that Method::kAuto counts with at the most; the default takes about a second.
  double exact_budget = 4e8;
};

__extension__ using Int128 = __int128;

/// A number of cases in each of which a hand counts as often as its weight says; or of trials.
struct CaseCount {
  Int128 units = 0;
  double unit = 1;  ///< 1 where all weights are whole, and then units are cases

  double Value() const { return static_cast<double>(units) * unit; }
  bool IsWhole() const { return unit == 1; }
};

/// Cases of a player, or of one of his hands. Losses are cases - wins - ties.
struct Outcome {
  CaseCount cases;
  CaseCount wins;     ///< that he wins alone; in Hi/Lo, in which he takes all of the pot
  CaseCount ties;     ///< in which he takes a part of the pot
  double equity = 0;  ///< share of the pot, 0..1: a pot shared by k counts 1/k; 0 without cases
  double low = 0;     ///< in Hi/Lo, what of the equity comes from low hands
};

/// One hand of a player's range, of those that the known cards leave.
struct HandOutcome {
  WeightedHand hand;
  Outcome outcome;
};

/// Cases in which a player makes a category.
struct MadeOutcome {
  int category = 0;  ///< 1 high card .. 10 royal flush, in the game's own order of strength
  Outcome outcome;
};

struct PlayerAnswer {
  Outcome total;
  std::size_t hands_left = 0;  ///< of the range, that the certain cards leave
  /// [k]: cases in which k + 1 players share the best hand, he among them; in Hi/Lo the best high
  /// hand.
  std::array<CaseCount, kMostPlayers> shared{};
  std::array<CaseCount, kMostPlayers> low_shared{};  ///< the same for the best low
  /// Of the equity, 0..1; where it was sampled, from two trials on. Of trials that all gave the
  /// player the same it is 1 / (trials + 1), as if one more had differed by a whole pot. In pools
  /// trials share hands; then it comes from how far pools are apart, and there is none before eight
  /// of them had trials, and of trials that were all alike only those count that share none.
  std::optional<double> standard_error;
  std::vector<HandOutcome> hands;  ///< with Detail::hands, rising by their cards
  std::vector<MadeOutcome> made;   ///< with Detail::made, the categories that occur
};

/// What comes next, and every player's outcome then.
struct NextOutcome {
  CardSet cards;  ///< of flops that are alike up to the names of suits, one
  int alike = 1;  ///< how many flops it stands for
  std::vector<Outcome> players;
};

struct EquityAnswer {
  Method method = Method::kExact;  ///< or kSampled
  std::string reason;              ///< why that method, in words
  std::string solver;              ///< name of the way it was counted or sampled
  CaseCount cases;                 ///< of boards and hands, or trials
  std::vector<PlayerAnswer> players;
  std::vector<NextOutcome> next;  ///< with Detail::next, those that can come
};

/// What steps add up: whole numbers. Steps in any order, on any machine, give the same sums.
class POKERMATH_EXPORT Sums {
 public:
  /// Adds the sums of other steps of the same calculation.
  void Add(const Sums& other);
  /// 16 bytes a number, the lowest byte first.
  std::string Bytes() const;

  bool operator==(const Sums&) const = default;

  std::vector<Int128> numbers;
};

class CheckedQuestion;
class Work;

/// The plan that answers a question, in steps. The cut into steps follows from the question alone.
/// Const members may run in any number of threads.
class POKERMATH_EXPORT Calculation {
 public:
  Calculation(std::shared_ptr<const CheckedQuestion> question, std::unique_ptr<const Work> work,
              std::string reason);
  Calculation(Calculation&&) noexcept;
  Calculation& operator=(Calculation&&) noexcept;
  ~Calculation();

  Method method() const;
  /// Why that method, in words; of a sample, the answer may know better.
  const std::string& reason() const { return reason_; }
  /// Steps that there are. Sampling to a standard error ends before the last one.
  std::int64_t steps() const;
  /// Sums of no steps.
  Sums NewSums() const;
  /// Adds the steps first .. last - 1 to sums, which are from NewSums or ReadSums. Every step has
  /// to be added once.
  void Do(std::int64_t first, std::int64_t last, Sums& sums) const;

  /// Where to stop and see whether it is Enough, after so many steps were done: a number of steps
  /// that is larger, at most steps(). Whoever does the steps in this order ends at the same one.
  std::int64_t NextStop(std::int64_t done) const;
  /// Whether the answer is as good as was asked for, after the first `done` steps.
  bool Enough(std::int64_t done, const Sums& sums) const;

  /// Cases or trials in the sums of some steps.
  CaseCount Cases(const Sums& sums) const;
  /// How much of the work the first `done` steps are, 0..1; where a standard error ends it, guessed
  /// from the one that they have reached.
  double Part(std::int64_t done, const Sums& sums) const;

  /// The answer; an error if the count is not finished, or not one trial was dealt. A sample may
  /// be answered at any time.
  Result<EquityAnswer> Answer(const Sums& sums) const;

  /// Sums::Bytes read back; an error where their length or their numbers cannot be those of this
  /// calculation.
  Result<Sums> ReadSums(std::string_view bytes) const;

 private:
  std::shared_ptr<const CheckedQuestion> question_;
  std::unique_ptr<const Work> work_;
  std::string reason_;
};

/// Checks a question and finds the way to answer it. The error says which player, which card, and
/// what was expected.
POKERMATH_EXPORT Result<Calculation> Plan(const EquityQuestion& question);

/// Plan, all steps on this thread, and the answer.
///
/// @param go_on  called between steps with those done and all, of which sampling to an error needs
///               few; returning false stops, and a count is then an error, a sample the answer so
///               far
POKERMATH_EXPORT Result<EquityAnswer> Calculate(
    const EquityQuestion& question,
    const std::function<bool(std::int64_t done, std::int64_t all)>& go_on = {});

}  // namespace pokermath

#endif  // POKERMATH_CALCULATOR_H_
