/// @file
/// One question of equity for every game, any number of players and any ranges, and its answer.
///
///     const auto answer = pokermath::Calculate({
///         .players = {HandRange::Of(Game::kHoldem, hand), HandRange::Every(Game::kHoldem)}});
///     if (answer) use(answer->players[0].total.equity); else report(answer.error().text);
///
/// A host that wants threads, progress or a stop takes the calculation in steps instead: Plan,
/// then Do for steps in any order and on any thread, then Answer.
///
/// Everything is checked: a wrong question is an Error, never undefined. Equities are shares of the
/// pot, 0..1. Nothing has to be loaded. Everything here may be called by any number of threads;
/// none is started. Counts are by the rules of poker, case by case or by what is proven equal to
/// it. When memory runs out, std::bad_alloc is thrown.
///
/// Two hands take microseconds. Two ranges with every hand of both take less than 0.1 ms before the
/// flop and 0.5 ms on a flop, three ranges on a flop some 20 ms, two ranges of Omaha on a flop some
/// 0.2 s. Random deals go at 1 to 70 million a second and thread. Three ranges before the flop are
/// counted in milliseconds where the file of `pokermath tables build three-way` is in the folder of
/// tables (docs/tables.md); else it takes seconds, or they are sampled.

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

/// Players of a question at the most, folded ones not counted.
inline constexpr std::size_t kMostPlayers = 10;

/// How a question is answered.
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
  /// Trials, up to 2^40, for which more are taken; 0 for none. Without a standard error there are
  /// so many. Of ranges that seldom fit together, which are dealt in pools, there are about so
  /// many, mostly a few more; or fewer, which the reason says.
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

/// What Calculate and Plan answer. All but the players has a default; nothing is checked before
/// these two look at it.
struct EquityQuestion {
  Game game = Game::kHoldem;  ///< ranges are of this game, or of one with the same deck and hands
  /// 2 to 10 ranges of the game's hands. One hand and every hand are ranges.
  std::vector<HandRange> players{};
  /// Of players who are out: their hands take cards away and win nothing. Every hand takes away
  /// nothing that matters, and is left out.
  std::vector<HandRange> folded{};
  CardSet board{};                 ///< 0 to 5 cards, no more than the street has
  CardSet dead{};                  ///< cards that nobody holds and that cannot come
  Street street = Street::kRiver;  ///< up to which board the hands are compared
  Method method = Method::kAuto;   ///< counted, sampled, or as is quicker
  Detail detail{};                 ///< what the answer holds beside totals
  SamplingLimits sampling{};       ///< looked at unless the method is kExact
  /// Of the random deals: the same question with the same seed has the same answer, on any machine.
  std::uint64_t seed = 1;
  /// The operations that Method::kAuto counts with at the most; the default takes about a second.
  /// Less than 0 is an error, whatever the method.
  double exact_budget = 4e8;
};

/// A whole number of 128 bits.
__extension__ using Int128 = __int128;

/// A number of cases in each of which a hand counts as often as its weight says; or of trials.
struct CaseCount {
  Int128 units = 0;  ///< how many, each of them `unit` cases
  double unit = 1;   ///< 1 where all weights are whole, and then units are cases

  /// The number of cases, rounded to a double.
  double Value() const { return static_cast<double>(units) * unit; }
  /// Whether `units` are the cases themselves.
  bool IsWhole() const { return unit == 1; }
};

/// Cases of a player, or of one of his hands. Losses are cases - wins - ties.
struct Outcome {
  CaseCount cases;    ///< that there are
  CaseCount wins;     ///< that he wins alone; in Hi/Lo, in which he takes all of the pot
  CaseCount ties;     ///< in which he takes a part of the pot
  double equity = 0;  ///< share of the pot, 0..1: a pot shared by k counts 1/k; 0 without cases
  double low = 0;     ///< in Hi/Lo, what of the equity comes from low hands
};

/// One hand of a player's range, of those that the known cards leave.
struct HandOutcome {
  WeightedHand hand;  ///< its cards and weight
  Outcome outcome;    ///< over the cases in which he holds it
};

/// Cases in which a player makes a category.
struct MadeOutcome {
  int category = 0;  ///< 1 high card .. 10 royal flush, in the game's own order of strength
  Outcome outcome;   ///< over the cases in which he makes it
};

/// What the answer says of one player.
struct PlayerAnswer {
  Outcome total;               ///< over all cases
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
  CardSet cards;                 ///< of flops that are alike up to the names of suits, one
  int alike = 1;                 ///< how many flops it stands for
  std::vector<Outcome> players;  ///< in the order of the question
};

/// The answer to a question.
struct EquityAnswer {
  Method method = Method::kExact;     ///< or kSampled
  std::string reason;                 ///< why that method, in words
  std::string solver;                 ///< name of the way it was counted or sampled
  CaseCount cases;                    ///< of boards and hands, or trials
  std::vector<PlayerAnswer> players;  ///< in the order of the question
  std::vector<NextOutcome> next;      ///< with Detail::next, those that can come
};

/// What steps add up: whole numbers. Steps in any order, on any machine, give the same sums.
class POKERMATH_EXPORT Sums {
 public:
  /// Adds the sums of other steps of the same calculation; of another one, undefined.
  void Add(const Sums& other);
  /// 16 bytes a number, the lowest byte first.
  std::string Bytes() const;

  /// The same numbers.
  bool operator==(const Sums&) const = default;

  std::vector<Int128> numbers;  ///< as the calculation lays them out; only it can read them
};

class CheckedQuestion;
class Work;

/// The plan that answers a question, in steps. The cut into steps follows from the question alone.
/// Const members may run in any number of threads.
class POKERMATH_EXPORT Calculation {
 public:
  /// @cond
  Calculation(std::shared_ptr<const CheckedQuestion> question, std::unique_ptr<const Work> work,
              std::string reason);
  /// @endcond
  /// What is moved from can only be assigned to and destroyed.
  Calculation(Calculation&&) noexcept;
  /// Likewise.
  Calculation& operator=(Calculation&&) noexcept;
  ~Calculation();

  /// Method::kExact or Method::kSampled.
  Method method() const;
  /// Why that method, in words; of a sample, the answer may know better.
  const std::string& reason() const { return reason_; }
  /// Steps that there are. Sampling to a standard error ends before the last one.
  std::int64_t steps() const;
  /// Sums of no steps.
  Sums NewSums() const;
  /// Adds the steps first .. last - 1 to sums, which are from NewSums or ReadSums of this
  /// calculation. Every step has to be added once. Threads need sums of their own, which Sums::Add
  /// brings together.
  ///
  /// @param first,last  0 <= first <= last <= steps(); not checked
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
