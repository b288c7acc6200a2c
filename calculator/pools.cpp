// Pools.
//
// The players are cut into two halves. A pool is some deals of each half, drawn independently by
// their weights, and every pair of them that shares no card is a trial with a board of its own. So
// thousands of whole deals are found where hardly one of the same number of draws would fit.
//
// A choice of hands of all players is expected in a pool as often as its weight says. So what a
// player takes in a pool and the trials of the pool, each added up over pools, have the equity as
// the ratio of what is expected of them; that of the sums is off by a part that falls as one over
// the pools, far less than its error. Trials of a pool share hands and are not independent, but
// pools are: the error comes from what they add up to each.
//
// A half that does not fit often itself is made the same way, of pools of its own halves.

#include "calculator/pools.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace pokermath {
namespace {

// Deals that are drawn to see how often they fit, and how many of them have to.
constexpr std::size_t kLooks = DealtBlock::kMost;
constexpr std::size_t kOften = kLooks / 20;
// Of deals that fit often, no more draws than so many for each that is wanted.
constexpr std::int64_t kMostDraws = 512;

// Pairs that fit, to know how often they do.
constexpr double kEnoughPairs = 250;

constexpr std::size_t kMostDeals = 8192;
constexpr std::size_t kFewestDeals = 64;
// Trials that a deal of a half is part of, about. More of them take less time each and tell less,
// the less the fewer cards are to come.
constexpr double kUses = 2, kUsesBeforeOneCard = 1;
// Pools that the error of a limited number of trials rests on.
constexpr double kPools = 64;

// Random numbers that no step has, to look at ranges.
RandomNumbers NumbersToLook() { return RandomNumbers(0, -1); }

// Deals to some of those whose hands are listed, who share no card.
struct PartDeals {
  struct Hand {
    DealtCards cards;
    std::uint32_t place;  // in the range
  };
  std::vector<CardSet> held;                               // by all of them
  std::array<std::vector<Hand>, kMostPlayers> of_players;  // none of those who are not dealt to

  std::size_t size() const { return held.size(); }
};

// Finds deals that share no card with another one: a bit for each deal, for each card those that
// hold it.
class Fitting {
 public:
  explicit Fitting(std::span<const CardSet> deals)
      : words_((deals.size() + 63) / 64), holders_(kCards * words_), rest_(words_) {
    for (std::size_t i = 0; i < deals.size(); ++i) {
      for (const int card : deals[i]) {
        holders_[static_cast<std::size_t>(card) * words_ + i / 64] |= std::uint64_t{1} << i % 64;
      }
    }
    if (deals.size() % 64 != 0) rest_.back() = ~std::uint64_t{0} << deals.size() % 64;
  }

  // Calls visit(i) for those that fit.
  template <typename Visit>
  void ForEach(CardSet held, const Visit& visit) {
    blocked_ = rest_;
    for (const int card : held) {
      const std::uint64_t* const holders = &holders_[static_cast<std::size_t>(card) * words_];
      for (std::size_t word = 0; word < words_; ++word) blocked_[word] |= holders[word];
    }
    for (std::size_t word = 0; word < words_; ++word) {
      for (std::uint64_t fit = ~blocked_[word]; fit != 0; fit &= fit - 1) {
        visit(word * 64 + static_cast<std::size_t>(std::countr_zero(fit)));
      }
    }
  }

 private:
  static constexpr std::size_t kCards = 52;

  std::size_t words_;
  std::vector<std::uint64_t> holders_;  // [card][word]
  std::vector<std::uint64_t> rest_;     // behind the last deal
  std::vector<std::uint64_t> blocked_;
};

}  // namespace

// Draws deals to some of the players.
class Pools::Part {
 public:
  // Drawn until it fits, or in halves.
  Part(RangeDraw draw, bool in_halves) : players_(draw.Players()) {
    if (!in_halves) {
      whole_ = std::move(draw);
      return;
    }
    const auto part_of = [](RangeDraw part) {
      const bool pays = PayFor(part);
      return std::make_unique<const Part>(std::move(part), pays);
    };
    half2_ = part_of(draw.TakeHalf());
    half1_ = part_of(std::move(draw));
    RandomNumbers random = NumbersToLook();
    std::int64_t attempts = 0;
    double pairs = 0, all = 0, deals = 0;
    for (std::size_t count = kLooks; count <= kMostDeals; count *= 4) {
      const Halves halves = DrawHalves(random, count, attempts);
      ForEachPair(halves, attempts, [&](std::size_t, std::size_t) { ++pairs; });
      all += static_cast<double>(halves[0].size()) * static_cast<double>(halves[1].size());
      deals += static_cast<double>(count);
      if (pairs >= kEnoughPairs) break;
    }
    attempts_a_deal_ = static_cast<double>(attempts) / deals;
    fit_ = std::max(pairs, 0.5) / std::max(all, 1.0);
  }

  using Halves = std::array<PartDeals, 2>;

  // About so many deals of each half.
  Halves DrawHalves(RandomNumbers& random, std::size_t count, std::int64_t& attempts) const {
    PartDeals deals1 = half1_->Draw(random, count, attempts);
    return {std::move(deals1), half2_->Draw(random, count, attempts)};
  }

  // Calls visit(i, j) with every pair that shares no card, rising.
  template <typename Visit>
  static void ForEachPair(const Halves& halves, std::int64_t& attempts, const Visit& visit) {
    Fitting fitting(halves[1].held);
    // To look through so many pairs takes about as long as to draw a deal.
    constexpr std::size_t kPairsAnAttempt = 512;
    attempts +=
        static_cast<std::int64_t>(halves[0].size() * (halves[1].size() / kPairsAnAttempt + 1));
    for (std::size_t i = 0; i < halves[0].size(); ++i) {
      fitting.ForEach(halves[0].held[i], [&](std::size_t j) { visit(i, j); });
    }
  }

  // Deals of each half of which there are about so many pairs that fit.
  std::size_t SizeFor(double pairs) const {
    return static_cast<std::size_t>(
        std::clamp(std::ceil(std::sqrt(pairs / fit_)), 1.0, static_cast<double>(kMostDeals)));
  }
  // Pairs of so many deals of each half, about.
  double PairsOf(std::size_t count) const {
    return half1_->Expected(count) * half2_->Expected(count) * fit_;
  }
  // How many deals the parts that are drawn whole have at the least, for so many of each half.
  std::size_t FewestDrawn(std::size_t count) const {
    const auto of_half = [count](const Part& half) {
      return half.whole_ ? count : half.FewestDrawn(half.SizeFor(static_cast<double>(count)));
    };
    return std::min(of_half(*half1_), of_half(*half2_));
  }
  double fit() const { return fit_; }
  // What a deal of each half takes, about.
  double attempts_a_deal() const { return attempts_a_deal_; }
  const std::vector<std::size_t>& players() const { return players_; }

 private:
  double Expected(std::size_t count) const {
    return whole_ ? static_cast<double>(count) : PairsOf(SizeFor(static_cast<double>(count)));
  }

  PartDeals Draw(RandomNumbers& random, std::size_t count, std::int64_t& attempts) const {
    return whole_ ? DrawWhole(random, count, attempts) : DrawPairs(random, count, attempts);
  }

  PartDeals DrawWhole(RandomNumbers& random, std::size_t count, std::int64_t& attempts) const {
    PartDeals deals;
    DealtBlock block;
    DealtBlock::Each<CardSet> held;
    const std::int64_t most = static_cast<std::int64_t>(count) * kMostDraws;
    std::int64_t left = most;
    while (deals.size() < count && left > 0) {
      const std::size_t wanted = std::min(count - deals.size(), DealtBlock::kMost);
      const std::size_t dealt = whole_->Deal(random, wanted, left, block, held);
      deals.held.insert(deals.held.end(), held.data(), held.data() + dealt);
      for (const std::size_t player : players_) {
        for (std::size_t i = 0; i < dealt; ++i) {
          deals.of_players[player].push_back({block.hands[player][i], block.places[player][i]});
        }
      }
    }
    attempts += most - left;
    return deals;
  }

  PartDeals DrawPairs(RandomNumbers& random, std::size_t count, std::int64_t& attempts) const {
    const Halves halves = DrawHalves(random, SizeFor(static_cast<double>(count)), attempts);
    PartDeals deals;
    ForEachPair(halves, attempts, [&](std::size_t i, std::size_t j) {
      deals.held.push_back(halves[0].held[i] | halves[1].held[j]);
      for (const std::size_t player : players_) {
        const auto& first = halves[0].of_players[player];
        deals.of_players[player].push_back(first.empty() ? halves[1].of_players[player][j]
                                                         : first[i]);
      }
    });
    return deals;
  }

  std::vector<std::size_t> players_;
  std::optional<RangeDraw> whole_;
  std::unique_ptr<const Part> half1_, half2_;
  double fit_ = 1;  // of the pairs of deals of both halves
  double attempts_a_deal_ = 0;
};

bool Pools::PayFor(const RangeDraw& draw) {
  if (draw.groups() < 2) return false;
  RandomNumbers random = NumbersToLook();
  DealtBlock block;
  DealtBlock::Each<CardSet> held;
  std::int64_t attempts = kLooks;
  return draw.Deal(random, kLooks, attempts, block, held) < kOften;
}

Pools::Pools(RangeDraw draw, int to_come, std::int64_t trials)
    : all_(std::make_unique<const Part>(std::move(draw), true)) {
  const double uses = to_come > 1 ? kUses : kUsesBeforeOneCard;
  deals_ = std::max(all_->SizeFor(uses * uses / all_->fit()), kFewestDeals);
  if (trials > 0) deals_ = std::min(deals_, all_->SizeFor(static_cast<double>(trials) / kPools));
  trials_ = all_->PairsOf(deals_);
  attempts_ = all_->attempts_a_deal() * static_cast<double>(deals_);
}
Pools::Pools(Pools&&) noexcept = default;
Pools::~Pools() = default;

std::int64_t Pools::Deal(RandomNumbers& random, std::int64_t& attempts, DealtBlock& block,
                         std::span<CardSet> held,
                         const std::function<void(std::size_t)>& visit) const {
  const Part::Halves halves = all_->DrawHalves(random, deals_, attempts);
  struct Pair {
    std::uint32_t first, second;
  };
  std::array<Pair, DealtBlock::kMost> pairs;
  std::size_t count = 0;
  const auto use = [&] {
    for (std::size_t i = 0; i < count; ++i) {
      held[i] = halves[0].held[pairs[i].first] | halves[1].held[pairs[i].second];
    }
    for (const std::size_t player : all_->players()) {
      const bool is_first = !halves[0].of_players[player].empty();
      const auto& hands = halves[is_first ? 0 : 1].of_players[player];
      for (std::size_t i = 0; i < count; ++i) {
        const PartDeals::Hand& hand = hands[is_first ? pairs[i].first : pairs[i].second];
        block.hands[player][i] = hand.cards;
        block.places[player][i] = hand.place;
      }
    }
    visit(count);
    count = 0;
  };
  // Trials that share no deal of a half are independent.
  std::array<std::vector<bool>, 2> used{std::vector<bool>(halves[0].size()),
                                        std::vector<bool>(halves[1].size())};
  Part::ForEachPair(halves, attempts, [&](std::size_t i, std::size_t j) {
    used[0][i] = used[1][j] = true;
    pairs[count++] = {static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(j)};
    if (count == pairs.size()) use();
  });
  if (count > 0) use();
  return std::min({static_cast<std::int64_t>(all_->FewestDrawn(deals_)),
                   static_cast<std::int64_t>(std::ranges::count(used[0], true)),
                   static_cast<std::int64_t>(std::ranges::count(used[1], true))});
}

}  // namespace pokermath
