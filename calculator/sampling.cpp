// Random deals.
//
// Every player whose hands are listed draws one of them by its weight; if two of them share a card,
// the whole deal is drawn again, by all of them: to draw only for the one who clashed would favour
// hands that clash more often. Then those who may hold anything, and the board, take cards that are
// left. They need no second deal, because so many cards are left whatever the others hold.
//
// A step is a block of trials whose random numbers start from the seed and the number of the step.

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "calculator/random.h"
#include "calculator/solvers.h"

namespace pokermath {
namespace {

constexpr std::int64_t kTrialsAStep = 4096;
// Ranges that hardly ever fit together give fewer trials a step.
constexpr std::int64_t kMostAttemptsAStep = 256 * kTrialsAStep;
// Without a limit of trials; a standard error is reached long before.
constexpr std::int64_t kMostTrials = std::int64_t{1} << 40;

// Draws hands by their weights.
class Bag {
 public:
  explicit Bag(const Side& side) : hands_(side.range.hands()) {
    ends_.reserve(hands_.size());
    std::uint64_t end = 0;
    for (const WeightedHand& hand : hands_) {
      ends_.push_back(end += static_cast<std::uint64_t>(hand.weight / side.unit));
    }
    all_alike_ = end == hands_.size();
  }

  // The place of a hand.
  std::size_t Draw(StepRandom& random) const {
    const std::uint64_t number = random.Below(ends_.back());
    if (all_alike_) return static_cast<std::size_t>(number);
    const auto end = std::upper_bound(ends_.begin(), ends_.end(), number);
    return static_cast<std::size_t>(end - ends_.begin());
  }
  CardSet CardsOf(std::size_t place) const { return hands_[place].cards; }
  std::size_t size() const { return hands_.size(); }

 private:
  std::span<const WeightedHand> hands_;
  std::vector<std::uint64_t> ends_;
  bool all_alike_;
};

class SamplingWork final : public Work {
 public:
  explicit SamplingWork(const QuestionPointer& question)
      : question_(question),
        settler_(*question),
        next_(question->asked().detail.next ? std::make_unique<NextBoards>(*question) : nullptr),
        live_(question->live().begin(), question->live().end()) {
    for (const auto* sides : {&question->players(), &question->folded()}) {
      for (std::size_t i = 0; i < sides->size(); ++i) {
        const bool plays = sides == &question->players();
        const Side& side = (*sides)[i];
        if (side.IsListed()) {
          listed_.push_back({Bag(side), plays ? static_cast<int>(i) : -1});
        } else {
          any_.push_back(i);
        }
      }
    }
    // The narrowest ranges clash first.
    std::ranges::stable_sort(listed_, {}, [](const Listed& one) { return one.bag.size(); });
    const std::int64_t limit = question->asked().sampling.trials;
    trials_ = limit > 0 ? std::min(limit, kMostTrials) : kMostTrials;
  }

  const char* name() const override { return "random deals"; }
  Method method() const override { return Method::kSampled; }
  std::int64_t steps() const override { return (trials_ + kTrialsAStep - 1) / kTrialsAStep; }

  void Do(std::int64_t step, std::span<Int128> sums) const override {
    StepRandom random(question_->asked().seed, step);
    const std::int64_t wanted = std::min(kTrialsAStep, trials_ - step * kTrialsAStep);
    std::int64_t attempts = 0;
    for (std::int64_t dealt = 0; dealt < wanted && attempts < kMostAttemptsAStep; ++attempts) {
      Trial trial(*this, random);
      if (!trial.DealListed()) continue;
      trial.DealRest();
      settler_.AddTrial(trial.deal(), sums);
      ++dealt;
    }
    sums[SumsLayout::kAttempts] += attempts;
  }

 private:
  struct Listed {
    Bag bag;
    int player;  // -1 where he folded
  };

  class Trial {
   public:
    Trial(const SamplingWork& work, StepRandom& random)
        : work_(work), question_(*work.question_), random_(random) {}

    // False when two share a card.
    bool DealListed() {
      for (const Listed& one : work_.listed_) {
        const std::size_t place = one.bag.Draw(random_);
        const CardSet cards = one.bag.CardsOf(place);
        if (cards.Meets(taken_)) return false;
        taken_ |= cards;
        if (one.player < 0) continue;
        const auto player = static_cast<std::size_t>(one.player);
        hands_[player] = cards;
        deal_.hands[player] = place;
      }
      return true;
    }

    void DealRest() {
      const Detail& detail = question_.asked().detail;
      for (const std::size_t player : work_.any_) {
        hands_[player] = Draw(question_.rules().hand_size);
        if (detail.hands) {
          deal_.hands[player] = question_.players()[player].range.Find(hands_[player]);
        }
      }
      const CardSet next = Draw(question_.next_cards());
      const CardSet all =
          question_.board() | next | Draw(question_.to_come() - question_.next_cards());
      if (detail.next) {
        deal_.next[0] = work_.next_->NumberOf(next);
        deal_.next_count = 1;
      }
      const CardList board(all);
      for (std::size_t i = 0; i < question_.players().size(); ++i) {
        deal_.worths[i] = WorthOf(question_.rules(), CardList(hands_[i]).cards(), board.cards());
      }
    }

    const SettledDeal& deal() const { return deal_; }

   private:
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

    CardSet Draw(int count) {
      CardSet drawn;
      while (drawn.size() < count) {
        const int card = work_.live_[random_.Below(work_.live_.size())];
        if (taken_.Contains(card)) continue;
        taken_.Add(card);
        drawn.Add(card);
      }
      return drawn;
    }

    const SamplingWork& work_;
    const CheckedQuestion& question_;
    StepRandom& random_;
    CardSet taken_;
    std::array<CardSet, kMostPlayers> hands_;
    SettledDeal deal_;
  };

  QuestionPointer question_;
  Settler settler_;
  std::unique_ptr<const NextBoards> next_;
  std::vector<int> live_;
  std::vector<Listed> listed_;
  std::vector<std::size_t> any_;  // players who may hold anything
  std::int64_t trials_;
};

}  // namespace

std::unique_ptr<const Work> StartSampling(const QuestionPointer& question) {
  return std::make_unique<SamplingWork>(question);
}

}  // namespace pokermath
