// Random deals.
//
// A step is a block of trials whose random numbers start from the seed and the number of the step.
// Where only totals are asked for and nothing but the high hand counts, a trial is one of the sets
// of players who share the pot, and a step counts how often each came.

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "calculator/dealing.h"
#include "calculator/one_hand.h"
#include "calculator/sharers.h"
#include "calculator/solvers.h"

namespace pokermath {
namespace {

constexpr std::int64_t kTrialsAStep = 4096;
// Ranges that hardly ever fit together give fewer trials a step.
constexpr std::int64_t kMostAttemptsAStep = 32 * kTrialsAStep;
// In pools, no more deals of half the players than so many for each trial that is wanted.
constexpr double kMostDealsATrial = 128;
constexpr double kFewestPools = 64;
// So that pools are not too few by chance.
constexpr double kMorePools = 1.1;

class SamplingWork : public Work {
 public:
  explicit SamplingWork(const QuestionPointer& question)
      : question_(question), settler_(*question), dealing_(*question) {
    const std::int64_t limit = question->asked().sampling.trials;
    trials_ = limit > 0 ? std::min(limit, kMostTrials) : kMostTrials;
    if (dealing_.pools()) CutPools(*dealing_.pools());
  }

  const char* name() const final {
    return dealing_.pools() ? "random deals in pools" : "random deals";
  }
  Method method() const final { return Method::kSampled; }
  std::int64_t steps() const final {
    return dealing_.pools() ? (pools_ + pools_a_step_ - 1) / pools_a_step_
                            : (trials_ + kTrialsAStep - 1) / kTrialsAStep;
  }

  void Do(std::int64_t step, std::span<Int128> sums) const final {
    RandomNumbers random(question_->asked().seed, step);
    DealtBlock block;
    if (!dealing_.pools()) {
      return Add(
          block, [&](const Visit& visit) { Deal(step, random, block, sums, visit); }, sums);
    }
    const std::int64_t end = std::min(pools_, (step + 1) * pools_a_step_);
    for (std::int64_t pool = step * pools_a_step_; pool < end; ++pool) {
      PoolSums of_pool(settler_.layout(), question_->players().size(), sums);
      std::int64_t attempts = 0, independent = 0;
      Add(
          block,
          [&](const Visit& visit) {
            independent = dealing_.DealPool(random, attempts, block, visit);
          },
          sums);
      of_pool.Close(independent);
      sums[SumsLayout::kAttempts] += attempts;
    }
  }

 protected:
  using Visit = std::function<void(std::size_t count)>;

  const CheckedQuestion& question() const { return *question_; }
  const Settler& settler() const { return settler_; }

 private:
  // Adds all deals that deal(visit) puts into the block, some at a time.
  virtual void Add(const DealtBlock& block, const std::function<void(const Visit&)>& deal,
                   std::span<Int128> sums) const = 0;

  void CutPools(const Pools& pools) {
    const auto trials = static_cast<double>(trials_);
    const double most =
        std::max(kMostDealsATrial * trials / static_cast<double>(pools.deals()), kFewestPools);
    pools_ =
        static_cast<std::int64_t>(std::ceil(std::min(kMorePools * trials / pools.trials(), most)));
    const double most_a_step = std::min(static_cast<double>(kTrialsAStep) / pools.trials(),
                                        static_cast<double>(kMostAttemptsAStep) / pools.attempts());
    pools_a_step_ = static_cast<std::int64_t>(std::max(1.0, most_a_step));
  }

  void Deal(std::int64_t step, RandomNumbers& random, DealtBlock& block, std::span<Int128> sums,
            const Visit& visit) const {
    std::int64_t left = std::min(kTrialsAStep, trials_ - step * kTrialsAStep);
    std::int64_t attempts = kMostAttemptsAStep;
    while (left > 0 && attempts > 0) {
      const auto wanted = std::min(left, static_cast<std::int64_t>(DealtBlock::kMost));
      const std::size_t dealt =
          dealing_.Deal(random, static_cast<std::size_t>(wanted), attempts, block);
      visit(dealt);
      left -= static_cast<std::int64_t>(dealt);
    }
    sums[SumsLayout::kAttempts] += kMostAttemptsAStep - attempts;
  }

  QuestionPointer question_;
  Settler settler_;
  Dealing dealing_;
  std::int64_t trials_;
  std::int64_t pools_ = 0, pools_a_step_ = 1;
};

// Every game, with all details.
class DetailedSampling final : public SamplingWork {
 public:
  explicit DetailedSampling(const QuestionPointer& question)
      : SamplingWork(question),
        next_(question->asked().detail.next ? std::make_unique<NextBoards>(*question) : nullptr) {}

  void Add(const DealtBlock& block, const std::function<void(const Visit&)>& deal,
           std::span<Int128> sums) const override {
    const std::vector<Side>& players = question().players();
    const Detail& detail = question().asked().detail;
    SettledDeal settled;
    deal([&](std::size_t count) {
      for (std::size_t trial = 0; trial < count; ++trial) {
        const CardList board(block.board[trial].cards);
        for (std::size_t i = 0; i < players.size(); ++i) {
          const bool certain = players[i].IsOneHand();
          const CardSet hand =
              certain ? players[i].range.hands()[0].cards : block.hands[i][trial].cards;
          settled.worths[i] = WorthOf(question().rules(), CardList(hand).cards(), board.cards());
          if (!detail.hands) continue;
          const bool is_listed = players[i].IsListed() && !certain;
          settled.hands[i] = is_listed ? block.places[i][trial] : players[i].range.Find(hand);
        }
        if (detail.next) {
          settled.next[0] = next_->NumberOf(block.next[trial].cards);
          settled.next_count = 1;
        }
        settler().AddTrial(settled, sums);
      }
    });
  }

 private:
  std::unique_ptr<const NextBoards> next_;
};

// Totals of high hands.
template <typename Values>
class SharersSampling final : public SamplingWork {
 public:
  explicit SharersSampling(const QuestionPointer& question)
      : SamplingWork(question),
        values_(question->rules()),
        single_hands_(*question, steps() * kTrialsAStep) {
    for (std::size_t i = 0; i < question->players().size(); ++i) {
      if (!question->players()[i].IsOneHand()) others_.push_back(i);
    }
  }

  void Add(const DealtBlock& block, const std::function<void(const Visit&)>& deal,
           std::span<Int128> sums) const override {
    SharerTimes times(question().players().size());
    deal([&](std::size_t count) {
      const std::span<const DealtCards> boards = std::span(block.board).first(count);
      single_hands_.Value(boards, times);
      for (const std::size_t player : others_) {
        const DealtBlock::Each<DealtCards>& hands = block.hands[player];
        values_.Of(
            boards, [&](std::size_t trial) { return hands[trial]; }, times.ValuesOf(player));
      }
      times.Add(count);
    });
    times.ForEach(
        [&](unsigned sharers, std::int64_t trials) { settler().AddTrials(sharers, trials, sums); });
  }

 private:
  Values values_;
  SingleHands<Values> single_hands_;
  std::vector<std::size_t> others_;
};

}  // namespace

std::unique_ptr<const Work> StartSampling(const QuestionPointer& question) {
  const Detail& detail = question->asked().detail;
  const GameRules& rules = question->rules();
  if (detail.hands || detail.next || detail.made || rules.high_low) {
    return std::make_unique<DetailedSampling>(question);
  }
  return WithValues(rules, question->street(), [&]<typename Values>() {
    return std::unique_ptr<const Work>(std::make_unique<SharersSampling<Values>>(question));
  });
}

}  // namespace pokermath
