// Random deals.
//
// A step is a block of trials whose random numbers start from the seed and the number of the step.
// Where only totals are asked for and nothing but the high hand counts, a trial is one of the sets
// of players who share the pot, and a step counts how often each came.

#include <algorithm>
#include <bit>
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
// Without a limit of trials; a standard error is reached long before.
constexpr std::int64_t kMostTrials = std::int64_t{1} << 40;

class SamplingWork : public Work {
 public:
  explicit SamplingWork(const QuestionPointer& question)
      : question_(question), settler_(*question), dealing_(*question) {
    const std::int64_t limit = question->asked().sampling.trials;
    trials_ = limit > 0 ? std::min(limit, kMostTrials) : kMostTrials;
  }

  const char* name() const final { return "random deals"; }
  Method method() const final { return Method::kSampled; }
  std::int64_t steps() const final { return (trials_ + kTrialsAStep - 1) / kTrialsAStep; }

 protected:
  const CheckedQuestion& question() const { return *question_; }
  const Settler& settler() const { return settler_; }

  // Calls visit with blocks of trials, and how many there are in each, until a step is done.
  template <typename Visit>
  void ForEachBlock(std::int64_t step, std::span<Int128> sums, const Visit& visit) const {
    RandomNumbers random(question_->asked().seed, step);
    std::int64_t left = std::min(kTrialsAStep, trials_ - step * kTrialsAStep);
    std::int64_t attempts = kMostAttemptsAStep;
    DealtBlock block;
    while (left > 0 && attempts > 0) {
      const auto wanted = std::min(left, static_cast<std::int64_t>(DealtBlock::kMost));
      const std::size_t dealt =
          dealing_.Deal(random, static_cast<std::size_t>(wanted), attempts, block);
      visit(block, dealt);
      left -= static_cast<std::int64_t>(dealt);
    }
    sums[SumsLayout::kAttempts] += kMostAttemptsAStep - attempts;
  }

 private:
  QuestionPointer question_;
  Settler settler_;
  Dealing dealing_;
  std::int64_t trials_;
};

// Every game, with all details.
class DetailedSampling final : public SamplingWork {
 public:
  explicit DetailedSampling(const QuestionPointer& question)
      : SamplingWork(question),
        next_(question->asked().detail.next ? std::make_unique<NextBoards>(*question) : nullptr) {}

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const std::vector<Side>& players = question().players();
    const Detail& detail = question().asked().detail;
    SettledDeal deal;
    ForEachBlock(step, sums, [&](const DealtBlock& block, std::size_t count) {
      for (std::size_t trial = 0; trial < count; ++trial) {
        const CardList board(block.board[trial].cards);
        for (std::size_t i = 0; i < players.size(); ++i) {
          const bool certain = players[i].IsOneHand();
          const CardSet hand =
              certain ? players[i].range.hands()[0].cards : block.hands[i][trial].cards;
          deal.worths[i] = WorthOf(question().rules(), CardList(hand).cards(), board.cards());
          if (!detail.hands) continue;
          const bool is_listed = players[i].IsListed() && !certain;
          deal.hands[i] = is_listed ? block.places[i][trial] : players[i].range.Find(hand);
        }
        if (detail.next) {
          deal.next[0] = next_->NumberOf(block.next[trial].cards);
          deal.next_count = 1;
        }
        settler().AddTrial(deal, sums);
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

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    SharerTimes times(question().players().size());
    ForEachBlock(step, sums, [&](const DealtBlock& block, std::size_t count) {
      const std::span<const DealtCards> boards = std::span(block.board).first(count);
      single_hands_.Value(boards, times);
      for (const std::size_t player : others_) {
        const DealtBlock::Each<DealtCards>& hands = block.hands[player];
        values_.Of(
            boards, [&](std::size_t deal) { return hands[deal]; }, times.ValuesOf(player));
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
