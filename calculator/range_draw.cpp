#include "calculator/range_draw.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <utility>

#include "platform/require.h"

namespace pokermath {
namespace {

// Of a number that is drawn in two parts.
constexpr int kHighBits = 16;
// Pairs of hands that are listed for two ranges at the most.
constexpr std::size_t kMostPairs = std::size_t{1} << 16;

}  // namespace

Bag::Bag(std::span<const std::uint64_t> weights)
    : size_(weights.size()),
      limits_(static_cast<std::uint32_t>(size_), static_cast<std::uint32_t>(size_)) {
  for (const std::uint64_t weight : weights) all_ += weight;
  const auto differs = [&](std::uint64_t weight) { return weight != weights[0]; };
  if (std::ranges::none_of(weights, differs)) return;
  low_bits_ = std::bit_width(all_) <= 32 ? 0 : static_cast<int>(std::bit_width(all_)) - kHighBits;
  POKERMATH_REQUIRE(low_bits_ < 32);
  limits_ = PairLimits(static_cast<std::uint32_t>(size_),
                       static_cast<std::uint32_t>(((all_ - 1) >> low_bits_) + 1));
  low_limits_ = PairLimits(1u << low_bits_, 1u << low_bits_);
  // A column for each place, as high as the sum of all weights; a place fills as much of the
  // columns as its weight times their number. What is too much for its own fills up one that is too
  // low.
  columns_.resize(size_);
  std::vector<std::uint32_t> low, high;
  for (std::uint32_t i = 0; i < size_; ++i) {
    columns_[i] = {weights[i] * size_, i};
    (columns_[i].limit < all_ ? low : high).push_back(i);
  }
  while (!low.empty()) {
    Column& filled = columns_[low.back()];
    low.pop_back();
    Column& filler = columns_[high.back()];
    filled.other = high.back();
    filler.limit -= all_ - filled.limit;
    if (filler.limit >= all_) continue;
    low.push_back(high.back());
    high.pop_back();
  }
}

void Bag::Draw(RandomNumbers& random, std::span<std::uint32_t> places) const {
  if (columns_.empty()) return random.Draw(limits_, places);
  DealtBlock::Each<DrawnPair> drawn;
  DealtBlock::Each<std::uint32_t> low;
  random.Draw(limits_, std::span(drawn).first(places.size()));
  if (low_bits_ > 0) random.Draw(low_limits_, std::span(low).first(places.size()));
  for (std::size_t i = 0; i < places.size(); ++i) {
    std::uint64_t number = drawn[i].second();
    if (low_bits_ > 0) number = number << low_bits_ | low[i];
    const Column& column = columns_[drawn[i].first()];
    places[i] = number < column.limit ? drawn[i].first() : column.other;
    // The last high part has fewer low parts than the others.
    if (number >= all_) [[unlikely]] {
      Draw(random, places.subspan(i, 1));
    }
  }
}

struct RangeDraw::Seat {
  const Side& side;
  std::size_t player;
  bool plays;

  std::uint64_t WeightOf(const WeightedHand& hand) const {
    return static_cast<std::uint64_t>(hand.weight / side.unit);
  }
  Member AsMember() const {
    std::vector<DealtCards> hands;
    for (const WeightedHand& hand : side.range.hands()) hands.push_back(DealtOf(hand.cards));
    return {std::move(hands), player, plays};
  }
};

RangeDraw::RangeDraw(const CheckedQuestion& question) {
  std::vector<Seat> seats;
  for (std::size_t i = 0; i < question.players().size(); ++i) {
    const Side& side = question.players()[i];
    if (side.IsListed() && !side.IsOneHand()) seats.push_back({side, i, true});
  }
  for (const Side& side : question.folded()) seats.push_back({side, 0, false});
  // The narrowest ranges clash first.
  std::vector<const Seat*> order;
  for (const Seat& seat : seats) order.push_back(&seat);
  std::ranges::stable_sort(order, {}, [](const Seat* seat) { return seat->side.range.size(); });
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (i + 1 < order.size() && Join(*order[i], *order[i + 1])) {
      ++i;
    } else {
      Add(*order[i]);
    }
  }
}

void RangeDraw::Add(const Seat& seat) {
  std::vector<CardSet> cards;
  std::vector<std::uint64_t> weights;
  for (const WeightedHand& hand : seat.side.range.hands()) {
    cards.push_back(hand.cards);
    weights.push_back(seat.WeightOf(hand));
  }
  groups_.push_back({std::move(cards), Bag(weights), {seat.AsMember()}, {}});
}

bool RangeDraw::Join(const Seat& seat1, const Seat& seat2) {
  const std::span<const WeightedHand> hands1 = seat1.side.range.hands();
  const std::span<const WeightedHand> hands2 = seat2.side.range.hands();
  if (hands1.size() * hands2.size() > kMostPairs) return false;
  std::vector<CardSet> cards;
  std::vector<std::uint64_t> weights;
  std::vector<std::array<std::uint16_t, 2>> pairs;
  for (std::size_t i = 0; i < hands1.size(); ++i) {
    for (std::size_t j = 0; j < hands2.size(); ++j) {
      if (hands1[i].cards.Meets(hands2[j].cards)) continue;
      cards.push_back(hands1[i].cards | hands2[j].cards);
      weights.push_back(seat1.WeightOf(hands1[i]) * seat2.WeightOf(hands2[j]));
      pairs.push_back({static_cast<std::uint16_t>(i), static_cast<std::uint16_t>(j)});
    }
  }
  // The gate does not look into everything.
  if (cards.empty()) return false;
  groups_.push_back(
      {std::move(cards), Bag(weights), {seat1.AsMember(), seat2.AsMember()}, std::move(pairs)});
  return true;
}

RangeDraw RangeDraw::TakeHalf() {
  RangeDraw half;
  std::vector<Group> kept;
  for (std::size_t i = 0; i < groups_.size(); ++i) {
    (i % 2 == 0 ? kept : half.groups_).push_back(std::move(groups_[i]));
  }
  groups_ = std::move(kept);
  return half;
}

std::vector<std::size_t> RangeDraw::Players() const {
  std::vector<std::size_t> players;
  for (const Group& group : groups_) {
    for (const Member& member : group.members) {
      if (member.plays) players.push_back(member.player);
    }
  }
  return players;
}

// Deals side by side, and which of them fit so far.
struct RangeDraw::Attempts {
  static constexpr std::size_t kMostGroups = 26;  // of two cards

  DealtBlock::Each<CardSet> held;
  std::array<DealtBlock::Each<std::uint32_t>, kMostGroups> drawn;
  DealtBlock::Each<std::uint16_t> fitting;
  std::size_t count;
};

std::size_t RangeDraw::Deal(RandomNumbers& random, std::size_t wanted, std::int64_t& attempts,
                            DealtBlock& block, std::span<CardSet> held) const {
  if (groups_.empty()) {
    std::fill_n(held.begin(), wanted, CardSet());
    attempts -= static_cast<std::int64_t>(wanted);
    return wanted;
  }
  Attempts made;
  std::size_t count = 0, tried = 0;
  while (count < wanted && attempts > 0) {
    // About as many as will do, by those before.
    const std::size_t missing = wanted - count;
    const std::size_t likely =
        missing * std::max(tried, std::size_t{1}) / std::max(count, std::size_t{1});
    made.count = std::min({likely, DealtBlock::kMost, static_cast<std::size_t>(attempts)});
    tried += made.count;
    attempts -= static_cast<std::int64_t>(made.count);
    Attempt(random, made);
    made.count = std::min(made.count, missing);
    for (std::size_t i = 0; i < made.count; ++i) held[count + i] = made.held[made.fitting[i]];
    Keep(made, count, block);
    count += made.count;
  }
  return count;
}

// Draws for the first deals, and leaves those that fit.
void RangeDraw::Attempt(RandomNumbers& random, Attempts& made) const {
  std::iota(made.fitting.begin(), made.fitting.end(), std::uint16_t{0});
  std::fill_n(made.held.begin(), made.count, CardSet());
  DealtBlock::Each<std::uint32_t> drawn;
  for (std::size_t k = 0; k < groups_.size(); ++k) {
    groups_[k].bag.Draw(random, std::span(drawn).first(made.count));
    std::size_t fitting = 0;
    for (std::size_t i = 0; i < made.count; ++i) {
      const std::uint16_t deal = made.fitting[i];
      const CardSet cards = groups_[k].cards[drawn[i]];
      const bool clash = cards.Meets(made.held[deal]);
      made.held[deal] |= cards;
      made.drawn[k][deal] = drawn[i];
      made.fitting[fitting] = deal;
      fitting += clash ? 0 : 1;
    }
    made.count = fitting;
  }
}

void RangeDraw::Keep(const Attempts& made, std::size_t first, DealtBlock& block) const {
  for (std::size_t k = 0; k < groups_.size(); ++k) {
    const Group& group = groups_[k];
    for (std::size_t m = 0; m < group.members.size(); ++m) {
      const Member& member = group.members[m];
      for (std::size_t i = 0; member.plays && i < made.count; ++i) {
        const std::uint32_t place = group.PlaceOf(m, made.drawn[k][made.fitting[i]]);
        block.hands[member.player][first + i] = member.hands[place];
        block.places[member.player][first + i] = place;
      }
    }
  }
}

}  // namespace pokermath
