// From a question to its plan, and from sums to the answer.

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "calculator/question.h"
#include "calculator/solvers.h"
#include "calculator/sums.h"
#include "platform/require.h"
#include "pokermath/calculator.h"

namespace pokermath {
namespace {

constexpr std::int64_t kFirstStop = 16;  // steps of sampling before their error means something
// Sampling to an error ends where ranges that hardly fit together take too long: so many deals, or
// so many without a single one that fits. Some minutes, and some seconds.
constexpr std::int64_t kMostAttempts = std::int64_t{1} << 32;
constexpr std::int64_t kMostFutileAttempts = std::int64_t{1} << 26;

// Pools whose error is believed; where few have nearly all trials, these are the ones.
constexpr double kFewestPools = 8;

// Standard error of the mean of a player's points. Trials that were all alike do not prove that the
// next ones will be: then it is that of a sample in which one more differs by a whole pot.
class ErrorReader {
 public:
  ErrorReader(const SumsLayout& layout, std::span<const Int128> sums, std::size_t player)
      : trials_(sums[SumsLayout::kCases]),
        pool_squares_(sums[SumsLayout::kPoolSquares]),
        independent_(sums[SumsLayout::kIndependent]),
        points_(sums[layout.Total(player).points()]),
        squares_(sums[layout.Squares(player)]),
        products_(sums[layout.Products(player)]) {}

  /// Nothing where there are too few trials to know.
  std::optional<double> Read() const {
    if (pool_squares_ > 0) return OfPools();
    if (trials_ < 2) return std::nullopt;
    const auto n = static_cast<double>(trials_);
    // n * (n - 1) times the variance.
    const Int128 spread = trials_ * squares_ - points_ * points_;
    if (spread == 0) return kPot / (n + 1);
    return std::sqrt(static_cast<double>(spread) / (n * (n - 1)) / n);
  }

 private:
  // The mean is that of the ratio of points y to trials n, both added up over pools. So it errs by
  // the sum of what is between y and mean * n in every pool, over all trials. (William G. Cochran,
  // 1977, "Sampling techniques", chapter 6.)
  std::optional<double> OfPools() const {
    const auto n = static_cast<double>(trials_);
    const double pools = n * n / static_cast<double>(pool_squares_);  // if they were all alike
    if (pools < kFewestPools) return std::nullopt;
    // Squares of y - whole * n in whole numbers, since nearly all of the squares of y cancels.
    const Int128 whole = points_ / trials_;
    const double rest = static_cast<double>(points_ - whole * trials_) / n;
    const Int128 squares = squares_ - 2 * whole * products_ + whole * whole * pool_squares_;
    const auto products = static_cast<double>(products_ - whole * pool_squares_);
    const double spread = static_cast<double>(squares) - 2 * rest * products +
                          rest * rest * static_cast<double>(pool_squares_);
    if (spread <= 0) return kPot / (static_cast<double>(independent_) + 1);
    return std::sqrt(spread * pools / (pools - 1)) / n;
  }

  Int128 trials_, pool_squares_, independent_, points_, squares_, products_;
};

// The compiler's own conversion is a slow call.
double DoubleOf(Int128 number) {
  const auto low = static_cast<std::int64_t>(number);
  return low == number ? static_cast<double>(low) : static_cast<double>(number);
}

// Reads sums as an answer shows them.
class AnswerReader {
 public:
  AnswerReader(const CheckedQuestion& question, std::span<const Int128> sums, bool sampled)
      : question_(question), layout_(question), sums_(sums), sampled_(sampled) {
    if (sampled) return;
    for (const auto* sides : {&question.players(), &question.folded()}) {
      for (const Side& side : *sides) unit_ *= static_cast<double>(side.unit) / kWholeWeight;
    }
  }

  CaseCount Cases() const { return Count(SumsLayout::kCases); }

  EquityAnswer Read() const {
    EquityAnswer answer;
    answer.method = sampled_ ? Method::kSampled : Method::kExact;
    answer.cases = Cases();
    answer.players.reserve(question_.players().size());
    for (std::size_t i = 0; i < question_.players().size(); ++i) {
      answer.players.push_back(PlayerOf(i));
    }
    if (question_.asked().detail.next) ReadNext(answer);
    return answer;
  }

 private:
  CaseCount Count(std::size_t place) const { return {sums_[place], unit_}; }

  double ShareOf(std::size_t points, Int128 cases) const {
    if (cases == 0) return 0;
    // Both are rounded, where weights make them large.
    return std::min(1.0, DoubleOf(sums_[points]) / (kPot * DoubleOf(cases)));
  }

  Outcome OutcomeAt(std::size_t cases, OutcomePlace place) const {
    return {Count(cases), Count(place.wins()), Count(place.ties()),
            ShareOf(place.points(), sums_[cases]), ShareOf(place.low(), sums_[cases])};
  }

  PlayerAnswer PlayerOf(std::size_t player) const {
    PlayerAnswer answer;
    answer.total = OutcomeAt(SumsLayout::kCases, layout_.Total(player));
    answer.hands_left = question_.players()[player].range.size();
    for (std::size_t k = 0; k < kMostPlayers; ++k) {
      answer.shared[k] = Count(layout_.Shared(player, k));
      answer.low_shared[k] = Count(layout_.LowShared(player, k));
    }
    if (sampled_) {
      const std::optional<double> error = ErrorReader(layout_, sums_, player).Read();
      if (error) answer.standard_error = *error / kPot;
    }
    if (question_.asked().detail.hands) ReadHands(player, answer);
    if (question_.asked().detail.made) ReadMade(player, answer);
    return answer;
  }

  void ReadHands(std::size_t player, PlayerAnswer& answer) const {
    const std::span<const WeightedHand> hands = question_.players()[player].range.hands();
    answer.hands.reserve(hands.size());
    for (std::size_t i = 0; i < hands.size(); ++i) {
      const std::size_t cases = layout_.HandCases(player, i);
      answer.hands.push_back({hands[i], OutcomeAt(cases, SumsLayout::OutcomeOf(cases))});
    }
  }

  void ReadMade(std::size_t player, PlayerAnswer& answer) const {
    for (std::size_t category = 0; category < kCategories; ++category) {
      const std::size_t cases = layout_.MadeCases(player, category);
      if (sums_[cases] == 0) continue;
      answer.made.push_back(
          {static_cast<int>(category), OutcomeAt(cases, SumsLayout::OutcomeOf(cases))});
    }
  }

  void ReadNext(EquityAnswer& answer) const {
    const NextBoards boards(question_);
    for (std::size_t i = 0; i < boards.size(); ++i) {
      const std::size_t cases = layout_.NextCases(i);
      if (sums_[cases] == 0) continue;
      NextOutcome next{boards.BoardOf(i), boards.Alike(i), {}};
      for (std::size_t player = 0; player < question_.players().size(); ++player) {
        next.players.push_back(OutcomeAt(cases, layout_.NextOutcome(i, player)));
      }
      answer.next.push_back(std::move(next));
    }
  }

  const CheckedQuestion& question_;
  SumsLayout layout_;
  std::span<const Int128> sums_;
  bool sampled_;
  double unit_ = 1;
};

// The largest standard error of a player's points; nothing where there is none yet.
std::optional<double> LargestError(const CheckedQuestion& question, const Sums& sums) {
  const SumsLayout layout(question);
  double largest = 0;
  for (std::size_t i = 0; i < question.players().size(); ++i) {
    const std::optional<double> error = ErrorReader(layout, sums.numbers, i).Read();
    if (!error) return std::nullopt;
    largest = std::max(largest, *error);
  }
  return largest;
}

// Whether sums can be those of trials; of others the error may not fit into its numbers.
bool CanBeOfTrials(const CheckedQuestion& question, std::span<const Int128> sums) {
  const SumsLayout layout(question);
  const Int128 trials = sums[SumsLayout::kCases];
  if (std::ranges::any_of(sums, [](Int128 number) { return number < 0; })) return false;
  if (trials > 2 * kMostTrials) return false;
  static_assert(kMostTrials < (std::int64_t{1} << 41) && kPot < (1 << 13));  // products: 110 bits
  const Int128 pool_squares = sums[SumsLayout::kPoolSquares];
  if (pool_squares > trials * trials) return false;
  const bool in_pools = pool_squares > 0;
  const Int128 most_squares = kPot * kPot * (in_pools ? pool_squares : trials);
  for (std::size_t i = 0; i < question.players().size(); ++i) {
    const Int128 points = sums[layout.Total(i).points()];
    const Int128 squares = sums[layout.Squares(i)], products = sums[layout.Products(i)];
    if (points > kPot * trials || squares > most_squares || products > kPot * pool_squares ||
        (!in_pools && points * points > trials * squares)) {
      return false;
    }
  }
  return true;
}

Error Stopped(std::string text) { return {ErrorCode::kStopped, std::move(text)}; }

}  // namespace

void Sums::Add(const Sums& other) {
  POKERMATH_REQUIRE(numbers.size() == other.numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] += other.numbers[i];
}

namespace {

constexpr std::size_t kBytes = sizeof(Int128);
__extension__ using UnsignedInt128 = unsigned __int128;

}  // namespace

std::string Sums::Bytes() const {
  std::string bytes;
  bytes.reserve(numbers.size() * kBytes);
  for (const Int128 number : numbers) {
    for (std::size_t i = 0; i < kBytes; ++i) {
      bytes += static_cast<char>(static_cast<UnsignedInt128>(number) >> 8 * i & 0xFF);
    }
  }
  return bytes;
}

Calculation::Calculation(std::shared_ptr<const CheckedQuestion> question,
                         std::unique_ptr<const Work> work, std::string reason)
    : question_(std::move(question)), work_(std::move(work)), reason_(std::move(reason)) {}
Calculation::Calculation(Calculation&&) noexcept = default;
Calculation& Calculation::operator=(Calculation&&) noexcept = default;
Calculation::~Calculation() = default;

Method Calculation::method() const { return work_->method(); }
std::int64_t Calculation::steps() const { return work_->steps(); }

Sums Calculation::NewSums() const {
  Sums sums;
  sums.numbers.resize(SumsLayout(*question_).size());
  return sums;
}

void Calculation::Do(std::int64_t first, std::int64_t last, Sums& sums) const {
  POKERMATH_REQUIRE(0 <= first && first <= last && last <= steps());
  for (std::int64_t step = first; step < last; ++step) {
    work_->Do(step, sums.numbers);
    ++sums.numbers[SumsLayout::kSteps];
  }
}

std::int64_t Calculation::NextStop(std::int64_t done) const {
  const bool to_an_error =
      method() == Method::kSampled && question_->asked().sampling.standard_error > 0;
  if (!to_an_error) return steps();
  return std::min(std::max(kFirstStop, done + done / 4), steps());
}

bool Calculation::Enough(std::int64_t done, const Sums& sums) const {
  if (done >= steps()) return true;
  const double limit = question_->asked().sampling.standard_error;
  if (method() != Method::kSampled || limit <= 0) return false;
  const Int128 attempts = sums.numbers[SumsLayout::kAttempts];
  const bool futile = sums.numbers[SumsLayout::kCases] == 0;
  if (attempts >= (futile ? kMostFutileAttempts : kMostAttempts)) return true;
  const std::optional<double> error = LargestError(*question_, sums);
  return error && *error <= limit * kPot;
}

CaseCount Calculation::Cases(const Sums& sums) const {
  return AnswerReader(*question_, sums.numbers, method() == Method::kSampled).Cases();
}

double Calculation::Part(std::int64_t done, const Sums& sums) const {
  const double part = static_cast<double>(done) / static_cast<double>(steps());
  const double limit = question_->asked().sampling.standard_error * kPot;
  if (method() != Method::kSampled || limit <= 0) return part;
  const std::optional<double> error = LargestError(*question_, sums);
  if (!error) return part;
  return std::min(1.0, std::max(part, limit * limit / (*error * *error)));
}

Result<EquityAnswer> Calculation::Answer(const Sums& sums) const {
  const bool sampled = method() == Method::kSampled;
  if (sums.numbers.size() != SumsLayout(*question_).size()) {
    return Error{ErrorCode::kText, "these are sums of another calculation"};
  }
  const auto done = static_cast<std::int64_t>(sums.numbers[SumsLayout::kSteps]);
  if (!sampled && done != steps()) {
    return Stopped("stopped after " + std::to_string(done) + " of " + std::to_string(steps()) +
                   " steps: no exact answer");
  }
  if (sampled && done == 0) return Stopped("stopped before the first trial");
  if (sums.numbers[SumsLayout::kCases] == 0) {
    return Error{ErrorCode::kBlocked, "no deal was found in which the ranges share no card"};
  }
  EquityAnswer answer = AnswerReader(*question_, sums.numbers, sampled).Read();
  answer.solver = work_->name();
  answer.reason = reason_;
  const SamplingLimits& limits = question_->asked().sampling;
  if (sampled && done == steps() && answer.cases.units < limits.trials) {
    answer.reason += "; the ranges hardly fit together, so there are fewer trials than asked for";
  } else if (sampled && limits.standard_error > 0 &&
             sums.numbers[SumsLayout::kAttempts] >= kMostAttempts) {
    const std::optional<double> error = LargestError(*question_, sums);
    if (!error || *error > limits.standard_error * kPot) {
      answer.reason +=
          "; the ranges hardly fit together, so the standard error is larger than asked for";
    }
  }
  return answer;
}

Result<Sums> Calculation::ReadSums(std::string_view bytes) const {
  Sums sums = NewSums();
  if (bytes.size() != sums.numbers.size() * kBytes) {
    return Error{ErrorCode::kText, "sums of another calculation: " + std::to_string(bytes.size()) +
                                       " bytes, expected " +
                                       std::to_string(sums.numbers.size() * kBytes)};
  }
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const UnsignedInt128 byte = static_cast<unsigned char>(bytes[i]);
    sums.numbers[i / kBytes] |= static_cast<Int128>(byte << 8 * (i % kBytes));
  }
  // Steps of a count may take off what others add, so only all of them are never below 0.
  constexpr Int128 kMost = Int128{1} << 126;
  const Int128 done = sums.numbers[SumsLayout::kSteps];
  const Int128 least = done == steps() ? 0 : 1 - kMost;
  const auto is_sum = [=](Int128 number) { return least <= number && number < kMost; };
  if (done < 0 || done > steps() || !std::ranges::all_of(sums.numbers, is_sum) ||
      (method() == Method::kSampled && !CanBeOfTrials(*question_, sums.numbers))) {
    return Error{ErrorCode::kText, "damaged sums"};
  }
  return sums;
}

Result<Calculation> Plan(const EquityQuestion& question) {
  Result<CheckedQuestion> checked = Check(question);
  if (!checked) return checked.error();
  const auto shared = std::make_shared<const CheckedQuestion>(*std::move(checked));
  if (question.method == Method::kSampled) {
    return Calculation(shared, StartSampling(shared), "as asked for");
  }
  const SolverChoice choice = CheapestFor(*shared);
  if (question.method == Method::kExact) {
    if (choice.solver != nullptr) {
      return Calculation(shared, choice.solver->start(shared), "as asked for");
    }
    return Error{
        ErrorCode::kLimit,
        "so many players with such fine weights cannot be counted exactly: expected rounder "
        "weights, or sampling"};
  }
  if (choice.solver == nullptr) {
    return Calculation(shared, StartSampling(shared),
                       "too many players with too fine weights to be counted");
  }
  const bool usual = question.exact_budget == EquityQuestion().exact_budget;
  if (choice.cost <= question.exact_budget) {
    return Calculation(
        shared, choice.solver->start(shared),
        usual ? "counting takes less than a second" : "counting is within the budget");
  }
  return Calculation(
      shared, StartSampling(shared),
      usual ? "counting would take longer than a second" : "counting would exceed the budget");
}

Result<EquityAnswer> Calculate(
    const EquityQuestion& question,
    const std::function<bool(std::int64_t done, std::int64_t all)>& go_on) {
  const Result<Calculation> plan = Plan(question);
  if (!plan) return plan.error();
  Sums sums = plan->NewSums();
  std::int64_t done = 0;
  while (!plan->Enough(done, sums)) {
    for (const std::int64_t stop = plan->NextStop(done); done < stop; ++done) {
      if (go_on && !go_on(done, plan->steps())) return plan->Answer(sums);
      plan->Do(done, done + 1, sums);
    }
  }
  return plan->Answer(sums);
}

}  // namespace pokermath
