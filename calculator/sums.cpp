#include "calculator/sums.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <map>

#include "platform/require.h"

namespace pokermath {
namespace {

static_assert([] {
  for (int k = 1; k <= static_cast<int>(kMostPlayers); ++k) {
    if (kHalfPot % k != 0) return false;
  }
  return true;
}());

// The same number for flops that differ in the names of suits alone: the ranks of every suit, the
// suits in the order of these.
std::uint64_t SuitlessKey(CardSet cards) {
  std::array<std::uint64_t, 4> suits;
  for (std::size_t suit = 0; suit < 4; ++suit) suits[suit] = cards.bits() >> 13 * suit & 0x1FFF;
  std::ranges::sort(suits);
  return suits[0] | suits[1] << 13 | suits[2] << 26 | suits[3] << 39;
}

constexpr std::size_t kCards = 52, kPairs = 1326, kTriples = 22100, kFlops = 1755;

// Where a set of three cards stands among all.
std::size_t TripleOf(CardSet cards) {
  auto card = cards.begin();
  const auto low = static_cast<std::size_t>(*card);
  const auto middle = static_cast<std::size_t>(*++card);
  const auto high = static_cast<std::size_t>(*++card);
  return high * (high - 1) * (high - 2) / 6 + middle * (middle - 1) / 2 + low;
}

// Numbers of all sets of three cards, those that differ in the names of suits alone having the
// same.
const std::vector<std::uint16_t>& FlopNumbers() {
  static const std::vector<std::uint16_t> numbers = [] {
    std::map<std::uint64_t, std::uint16_t> by_key;
    std::vector<std::uint16_t> of_triples(kTriples);
    for (int a = 0; a < 52; ++a) {
      for (int b = 0; b < a; ++b) {
        for (int c = 0; c < b; ++c) {
          const CardSet cards{a, b, c};
          const auto next = static_cast<std::uint16_t>(by_key.size());
          of_triples[TripleOf(cards)] = by_key.emplace(SuitlessKey(cards), next).first->second;
        }
      }
    }
    return of_triples;
  }();
  return numbers;
}

}  // namespace

NextBoards::NextBoards(const CheckedQuestion& question) : cards_(question.next_cards()) {
  boards_.resize(CountOf(question));
  alike_.resize(boards_.size());
  const CardSet may_come = question.live() - question.certain();
  const std::vector<int> live(may_come.begin(), may_come.end());
  const auto add = [&](CardSet next) {
    const std::size_t number = NumberOf(next);
    boards_[number] = next;
    ++alike_[number];
  };
  for (std::size_t a = 0; a < live.size(); ++a) {
    if (cards_ == 1) add({live[a]});
    for (std::size_t b = 0; cards_ > 1 && b < a; ++b) {
      if (cards_ == 2) add({live[a], live[b]});
      for (std::size_t c = 0; cards_ > 2 && c < b; ++c) add({live[a], live[b], live[c]});
    }
  }
}

std::size_t NextBoards::CountOf(const CheckedQuestion& question) {
  const int cards = question.next_cards();
  return cards == 3 ? kFlops : cards == 2 ? kPairs : kCards;
}

std::size_t NextBoards::NumberOf(CardSet next) const {
  POKERMATH_REQUIRE(next.size() == cards_);
  if (cards_ == 3) return FlopNumbers()[TripleOf(next)];
  const auto low = static_cast<std::size_t>(*next.begin());
  if (cards_ == 1) return low;
  const auto high = static_cast<std::size_t>(*++next.begin());
  return high * (high - 1) / 2 + low;
}

SumsLayout::SumsLayout(const CheckedQuestion& question) : players_(question.players().size()) {
  const Detail& detail = question.asked().detail;
  size_ = Player(players_);
  for (std::size_t i = 0; i < players_; ++i) {
    hands_[i] = size_;
    if (detail.hands) size_ += question.players()[i].range.size() * kCell;
  }
  next_ = size_;
  if (detail.next) size_ = NextCases(NextBoards::CountOf(question));
  made_ = size_;
  if (detail.made) size_ += players_ * kCategories * kCell;
}

PoolSums::PoolSums(const SumsLayout& layout, std::size_t players, std::span<Int128> sums)
    : layout_(layout), players_(players), sums_(sums), trials_(sums[SumsLayout::kCases]) {
  for (std::size_t i = 0; i < players; ++i) {
    points_[i] = sums[layout.Total(i).points()];
    squares_[i] = sums[layout.Squares(i)];
  }
}

void PoolSums::Close(std::int64_t independent) {
  const Int128 trials = sums_[SumsLayout::kCases] - trials_;
  sums_[SumsLayout::kPoolSquares] += trials * trials;
  sums_[SumsLayout::kIndependent] += independent;
  for (std::size_t i = 0; i < players_; ++i) {
    const Int128 points = sums_[layout_.Total(i).points()] - points_[i];
    sums_[layout_.Squares(i)] = squares_[i] + points * points;
    sums_[layout_.Products(i)] += points * trials;
  }
}

struct Settler::Shares {
  std::array<int, kMostPlayers> points{};
  std::array<int, kMostPlayers> low_points{};
  std::array<bool, kMostPlayers> has_high{}, has_low{};
  std::size_t high_sharers = 0;
  std::size_t low_sharers = 0;
};

Settler::Settler(const CheckedQuestion& question)
    : rules_(question.rules()),
      detail_(question.asked().detail),
      players_(question.players().size()),
      layout_(question) {}

Settler::Shares Settler::SharesOf(const SettledDeal& deal) const {
  Shares shares;
  int best = 0;
  int best_low = 1;  // so that 0, no low, is not the best
  for (std::size_t i = 0; i < players_; ++i) {
    best = std::max(best, deal.worths[i].high);
    best_low = std::max(best_low, deal.worths[i].low);
  }
  for (std::size_t i = 0; i < players_; ++i) {
    shares.has_high[i] = deal.worths[i].high == best;
    shares.has_low[i] = deal.worths[i].low == best_low;
    shares.high_sharers += shares.has_high[i] ? 1 : 0;
    shares.low_sharers += shares.has_low[i] ? 1 : 0;
  }
  const bool some_low = shares.low_sharers > 0;
  const int high_share = (some_low ? kHalfPot : kPot) / static_cast<int>(shares.high_sharers);
  const int low_share = some_low ? kHalfPot / static_cast<int>(shares.low_sharers) : 0;
  for (std::size_t i = 0; i < players_; ++i) {
    shares.low_points[i] = shares.has_low[i] ? low_share : 0;
    shares.points[i] = (shares.has_high[i] ? high_share : 0) + shares.low_points[i];
  }
  return shares;
}

void Settler::Add(const SettledDeal& deal, Int128 weight, std::span<Int128> sums) const {
  AddShares(deal, SharesOf(deal), weight, sums);
}

void Settler::AddTrial(const SettledDeal& deal, std::span<Int128> sums) const {
  const Shares shares = SharesOf(deal);
  AddShares(deal, shares, 1, sums);
  for (std::size_t i = 0; i < players_; ++i) {
    sums[layout_.Squares(i)] += shares.points[i] * shares.points[i];
  }
}

void Settler::AddSharers(unsigned sharers, Int128 times, std::span<Int128> sums) const {
  const int count = std::popcount(sharers);
  const auto add_outcome = [&](OutcomePlace place) {
    sums[count == 1 ? place.wins() : place.ties()] += times;
    sums[place.points()] += kPot / count * times;
  };
  sums[SumsLayout::kCases] += times;
  for (std::size_t i = 0; i < players_; ++i) {
    const std::size_t cell = layout_.HandCases(i, 0);
    if (detail_.hands) sums[cell] += times;
    if ((sharers >> i & 1) == 0) continue;
    add_outcome(layout_.Total(i));
    if (detail_.hands) add_outcome(SumsLayout::OutcomeOf(cell));
    sums[layout_.Shared(i, static_cast<std::size_t>(count) - 1)] += times;
  }
}

void Settler::AddTrials(unsigned sharers, std::int64_t times, std::span<Int128> sums) const {
  AddSharers(sharers, times, sums);
  const int points = kPot / std::popcount(sharers);
  for (std::size_t i = 0; i < players_; ++i) {
    if ((sharers >> i & 1) != 0) sums[layout_.Squares(i)] += Int128{points} * points * times;
  }
}

void Settler::AddShares(const SettledDeal& deal, const Shares& shares, Int128 weight,
                        std::span<Int128> sums) const {
  const auto add_outcome = [&](OutcomePlace place, std::size_t player) {
    const int points = shares.points[player];
    if (points == 0) return;
    sums[points == kPot ? place.wins() : place.ties()] += weight;
    sums[place.points()] += points * weight;
    sums[place.low()] += shares.low_points[player] * weight;
  };
  const auto add_cell = [&](std::size_t cases, std::size_t player) {
    sums[cases] += weight;
    add_outcome(SumsLayout::OutcomeOf(cases), player);
  };
  sums[SumsLayout::kCases] += weight;
  const std::span<const std::size_t> next = std::span(deal.next).first(deal.next_count);
  for (const std::size_t number : next) sums[layout_.NextCases(number)] += weight;
  for (std::size_t i = 0; i < players_; ++i) {
    add_outcome(layout_.Total(i), i);
    if (shares.has_high[i]) sums[layout_.Shared(i, shares.high_sharers - 1)] += weight;
    if (shares.has_low[i]) sums[layout_.LowShared(i, shares.low_sharers - 1)] += weight;
    if (detail_.hands) add_cell(layout_.HandCases(i, deal.hands[i]), i);
    if (detail_.made) {
      const int category = CategoryOf(rules_, deal.worths[i].high);
      add_cell(layout_.MadeCases(i, static_cast<std::size_t>(category)), i);
    }
    for (const std::size_t number : next) add_outcome(layout_.NextOutcome(number, i), i);
  }
}

}  // namespace pokermath
