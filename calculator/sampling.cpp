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
#include "calculator/solvers.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

constexpr std::int64_t kTrialsAStep = 4096;
// Ranges that hardly ever fit together give fewer trials a step.
constexpr std::int64_t kMostAttemptsAStep = 256 * kTrialsAStep;
// Without a limit of trials; a standard error is reached long before.
constexpr std::int64_t kMostTrials = std::int64_t{1} << 40;

// The cards of a set, one behind the other.
class CardList {
 public:
  explicit CardList(CardSet set) {
    for (const int card : set) list_[size_++] = card;
  }
  std::span<const int> cards() const { return std::span(list_).first(size_); }

 private:
  std::array<int, 8> list_;
  std::size_t size_ = 0;
};

// Hands on one board by the rules of any game.
class AnyBoard {
 public:
  AnyBoard(const GameRules& rules, const DealtCards& board) : rules_(rules), board_(board.cards) {}
  Worth Of(const DealtCards& hand) const {
    return WorthOf(rules_, CardList(hand.cards).cards(), board_.cards());
  }
  int HighOf(const DealtCards& hand) const { return Of(hand).high; }

 private:
  const GameRules& rules_;
  CardList board_;
};

// Hold'em hands on one board of so many cards, by the sums of their words.
template <int board_size>
class HoldemBoard {
 public:
  HoldemBoard(const GameRules&, const DealtCards& board) : board_(board) {}
  int HighOf(const DealtCards& hand) const {
    return EvaluateSum<board_size + 2>(hand.word + board_.word, hand.cards | board_.cards);
  }

 private:
  template <int count>
  static int EvaluateSum(std::uint64_t words, CardSet cards) {
    const CompactTables& tables = kCompactTables;
    const std::uint64_t sum = CompactTables::kSuitStart + words;
    if (const std::uint64_t flush = sum & CompactTables::kFlushBits; flush != 0) [[unlikely]] {
      const int suit = std::countr_zero(flush) / 4;
      return tables.flush_values[cards.bits() >> 13 * suit & 0x1FFF];
    }
    const std::uint64_t key = sum >> CompactTables::kKeyShift;
    const std::uint16_t row = tables.rows[count - 5][key >> CompactTables::kColumnBits];
    return tables.values[count - 5][row + (key & (CompactTables::kColumns - 1))];
  }

  DealtCards board_;
};

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
    StepRandom random(question_->asked().seed, step);
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
        const AnyBoard board(question().rules(), block.board[trial]);
        for (std::size_t i = 0; i < players.size(); ++i) {
          const DealtCards& hand = block.hands[i][trial];
          deal.worths[i] = board.Of(hand);
          if (!detail.hands) continue;
          deal.hands[i] =
              players[i].IsListed() ? block.places[i][trial] : players[i].range.Find(hand.cards);
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
template <typename Board>
class SharersSampling final : public SamplingWork {
 public:
  using SamplingWork::SamplingWork;

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    const std::size_t players = question().players().size();
    std::array<std::int32_t, std::size_t{1} << kMostPlayers> times{};
    ForEachBlock(step, sums, [&](const DealtBlock& block, std::size_t count) {
      // In passes over the whole block, so that trials need not wait for each other.
      std::array<std::array<std::uint16_t, DealtBlock::kMost>, kMostPlayers> highs{};
      std::array<std::uint16_t, DealtBlock::kMost> best{}, sharers{};
      for (std::size_t trial = 0; trial < count; ++trial) {
        const Board board(question().rules(), block.board[trial]);
        for (std::size_t i = 0; i < players; ++i) {
          highs[i][trial] = static_cast<std::uint16_t>(board.HighOf(block.hands[i][trial]));
        }
      }
      for (std::size_t i = 0; i < players; ++i) {
        for (std::size_t trial = 0; trial < DealtBlock::kMost; ++trial) {
          best[trial] = std::max(best[trial], highs[i][trial]);
        }
      }
      for (std::size_t i = 0; i < players; ++i) {
        const auto bit = static_cast<std::uint16_t>(1u << i);
        for (std::size_t trial = 0; trial < DealtBlock::kMost; ++trial) {
          const bool shares = highs[i][trial] == best[trial];
          sharers[trial] = static_cast<std::uint16_t>(sharers[trial] | (shares ? bit : 0));
        }
      }
      for (std::size_t trial = 0; trial < count; ++trial) ++times[sharers[trial]];
    });
    for (unsigned sharers = 1; sharers < 1u << players; ++sharers) {
      if (times[sharers] == 0) continue;
      settler().AddTrials(sharers, times[sharers], sums);
    }
  }
};

}  // namespace

std::unique_ptr<const Work> StartSampling(const QuestionPointer& question) {
  const Detail& detail = question->asked().detail;
  const GameRules& rules = question->rules();
  if (detail.hands || detail.next || detail.made || rules.high_low) {
    return std::make_unique<DetailedSampling>(question);
  }
  if (rules.IsOmaha() || rules.IsShortDeck()) {
    return std::make_unique<SharersSampling<AnyBoard>>(question);
  }
  switch (question->street()) {
    case 3:
      return std::make_unique<SharersSampling<HoldemBoard<3>>>(question);
    case 4:
      return std::make_unique<SharersSampling<HoldemBoard<4>>>(question);
    default:
      return std::make_unique<SharersSampling<HoldemBoard<5>>>(question);
  }
}

}  // namespace pokermath
