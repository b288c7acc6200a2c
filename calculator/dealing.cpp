#include "calculator/dealing.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <utility>

#include "calculator/choices.h"
#include "platform/require.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

// Of a number that is drawn in two parts.
constexpr int kHighBits = 16;

}  // namespace

DealtCards DealtOf(CardSet cards) {
  DealtCards dealt{cards, 0};
  for (const int card : cards) dealt.word += kCompactTables.card_words[card];
  return dealt;
}

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
    if (number >= all_) [[unlikely]]
      Draw(random, places.subspan(i, 1));
  }
}

namespace {

// All sets of `count` more of some cards, added to those that are chosen already.
void AddSets(std::span<const DealtCards> cards, int count, const DealtCards& chosen,
             std::vector<DealtCards>& sets) {
  if (count == 0) {
    sets.push_back(chosen);
    return;
  }
  for (std::size_t i = 0; i < cards.size(); ++i) {
    AddSets(cards.first(i), count - 1, chosen + cards[i], sets);
  }
}

}  // namespace

std::vector<DealtCards> DealtSetsOf(CardSet from, int count) {
  std::vector<DealtCards> cards, sets;
  for (const int card : from) cards.push_back(DealtOf({card}));
  sets.reserve(static_cast<std::size_t>(ChoicesOf(from.size(), count)));
  AddSets(cards, count, {}, sets);
  return sets;
}

CardDraw::CardDraw(CardSet from, int count, const DealtCards& start)
    : from_(from),
      count_(count),
      start_(start),
      cards_(DealtSetsOf(from, 1)),
      first_(DealtSetsOf(from, std::min(count, 3))),
      second_(count > 3 ? DealtSetsOf(from, count - 3) : std::vector<DealtCards>()),
      limits_(static_cast<std::uint32_t>(first_.size()),
              static_cast<std::uint32_t>((count > 3 ? second_ : first_).size())) {
  for (DealtCards& part : first_) part = start_ + part;
}

void CardDraw::Draw(RandomNumbers& random, std::span<CardSet> taken,
                    std::span<DealtCards> drawn) const {
  if (taken.empty()) return;
  if (IsCrowded(taken[0])) {
    for (std::size_t i = 0; i < taken.size(); ++i)
      drawn[i] = start_ + DrawOneByOne(random, taken[i]);
  } else {
    DrawSets(random, taken, drawn);
  }
  for (std::size_t i = 0; i < taken.size(); ++i) taken[i] |= drawn[i].cards;
}

namespace {

// Draws a set for each place, and again for those where it does not fit what is taken there.
//
// draw(count) draws so many sets. set_of(i, overlap) is one of them; where its parts share a card,
// this is in the overlap.
template <typename Draw, typename SetOf>
void DrawFitting(std::span<const CardSet> taken, std::span<DealtCards> drawn, const Draw& draw,
                 const SetOf& set_of) {
  const auto fits = [&](std::size_t i, std::size_t place) {
    CardSet overlap;
    drawn[place] = set_of(i, overlap);
    return (overlap | (drawn[place].cards & taken[place])).empty();
  };
  // Whether a set fits is anybody's guess, so there is no branch to guess it.
  DealtBlock::Each<std::uint16_t> again;
  std::size_t misfits = 0;
  draw(taken.size());
  for (std::size_t i = 0; i < taken.size(); ++i) {
    again[misfits] = static_cast<std::uint16_t>(i);
    misfits += fits(i, i) ? 0 : 1;
  }
  while (misfits > 0) {
    const std::size_t count = std::exchange(misfits, 0);
    draw(count);
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint16_t place = again[i];
      again[misfits] = place;
      misfits += fits(i, place) ? 0 : 1;
    }
  }
}

}  // namespace

void CardDraw::DrawSets(RandomNumbers& random, std::span<const CardSet> taken,
                        std::span<DealtCards> drawn) const {
  if (second_.empty()) {
    DealtBlock::Each<std::uint32_t> places;
    DrawFitting(
        taken, drawn,
        [&](std::size_t count) { random.Draw(limits_, std::span(places).first(count)); },
        [&](std::size_t i, CardSet&) { return first_[places[i]]; });
    return;
  }
  DealtBlock::Each<DrawnPair> pairs;
  DrawFitting(
      taken, drawn, [&](std::size_t count) { random.Draw(limits_, std::span(pairs).first(count)); },
      [&](std::size_t i, CardSet& overlap) {
        const DealtCards& part1 = first_[pairs[i].first()];
        const DealtCards& part2 = second_[pairs[i].second()];
        overlap = part1.cards & part2.cards;
        return part1 + part2;
      });
}

// Whether so many of the sets hold a taken card that cards are better drawn one by one.
bool CardDraw::IsCrowded(CardSet taken) const {
  constexpr std::int64_t kMostTries = 8;
  return ChoicesOf(from_.size(), count_) > kMostTries * ChoicesOf((from_ - taken).size(), count_);
}

DealtCards CardDraw::DrawOneByOne(RandomNumbers& random, CardSet taken) const {
  const auto cards = static_cast<std::uint32_t>(cards_.size());
  const PairLimits limits(cards, cards);
  std::array<std::uint32_t, 64> places;
  std::size_t next = places.size();
  DealtCards drawn;
  while (drawn.cards.size() < count_) {
    if (next == places.size()) {
      random.Draw(limits, std::span(places));
      next = 0;
    }
    const DealtCards& card = cards_[places[next++]];
    if (!card.cards.Meets(taken | drawn.cards)) drawn = drawn + card;
  }
  return drawn;
}

namespace {

// How many of the cards that come are to be told from the others.
int NextOf(const CheckedQuestion& question) {
  return question.asked().detail.next ? question.next_cards() : 0;
}

std::vector<DealtCards> HandsOf(const Side& side) {
  std::vector<DealtCards> hands;
  for (const WeightedHand& hand : side.range.hands()) hands.push_back(DealtOf(hand.cards));
  return hands;
}

Bag BagOf(const Side& side) {
  std::vector<std::uint64_t> weights;
  for (const WeightedHand& hand : side.range.hands()) {
    weights.push_back(static_cast<std::uint64_t>(hand.weight / side.unit));
  }
  return Bag(weights);
}

}  // namespace

Dealing::Dealing(const CheckedQuestion& question)
    : next_(question.live() - question.certain(), NextOf(question)),
      later_(question.live() - question.certain(), question.to_come() - NextOf(question),
             DealtOf(question.board())),
      hand_({}, 0) {
  const auto list = [&](const Side& side, std::size_t player, bool plays) {
    listed_.push_back({HandsOf(side), BagOf(side), player, plays});
  };
  for (std::size_t i = 0; i < question.players().size(); ++i) {
    const Side& side = question.players()[i];
    if (side.IsOneHand()) continue;
    if (side.IsListed()) {
      list(side, i, true);
    } else {
      any_.push_back(i);
    }
  }
  if (!any_.empty()) {
    hand_ = CardDraw(question.live() - question.certain(), question.rules().hand_size);
  }
  for (const Side& side : question.folded()) list(side, 0, false);
  // The narrowest ranges clash first.
  std::ranges::stable_sort(listed_, {}, [](const Listed& one) { return one.bag.size(); });
}

std::size_t Dealing::Deal(RandomNumbers& random, std::size_t wanted, std::int64_t& attempts,
                          DealtBlock& block) const {
  DealtBlock::Each<CardSet> held{};
  const std::size_t count = DealListed(random, wanted, attempts, block, held);
  const std::span<CardSet> taken = std::span(held).first(count);
  later_.Draw(random, taken, block.board);
  if (!next_.empty()) {
    next_.Draw(random, taken, block.next);
    for (std::size_t i = 0; i < count; ++i) block.board[i] = block.board[i] + block.next[i];
  }
  for (const std::size_t player : any_) hand_.Draw(random, taken, block.hands[player]);
  return count;
}

// Deals of the listed ranges side by side, and which of them fit so far.
struct Dealing::Attempts {
  static constexpr std::size_t kMostRanges = 26;  // of two cards

  DealtBlock::Each<CardSet> held;
  std::array<DealtBlock::Each<std::uint32_t>, kMostRanges> places;
  DealtBlock::Each<std::uint16_t> fitting;
  std::size_t count;
};

std::size_t Dealing::DealListed(RandomNumbers& random, std::size_t wanted, std::int64_t& attempts,
                                DealtBlock& block, std::span<CardSet> held) const {
  if (listed_.empty()) {
    attempts -= static_cast<std::int64_t>(wanted);
    return wanted;
  }
  Attempts made;
  std::size_t count = 0, tried = 0;
  while (count < wanted && attempts > 0) {
    // About as many as will do, by those before.
    const std::size_t missing = wanted - count;
    const std::size_t likely =
        tried == 0 ? missing : missing * tried / std::max(count, std::size_t{1});
    made.count = std::min({likely, DealtBlock::kMost, static_cast<std::size_t>(attempts)});
    tried += made.count;
    attempts -= static_cast<std::int64_t>(made.count);
    Attempt(random, made);
    const std::size_t kept = std::min(made.count, missing);
    for (std::size_t i = 0; i < kept; ++i) held[count + i] = made.held[made.fitting[i]];
    for (std::size_t k = 0; k < listed_.size(); ++k) {
      const Listed& one = listed_[k];
      for (std::size_t i = 0; one.plays && i < kept; ++i) {
        const std::uint32_t place = made.places[k][made.fitting[i]];
        block.hands[one.player][count + i] = one.hands[place];
        block.places[one.player][count + i] = place;
      }
    }
    count += kept;
  }
  return count;
}

void Dealing::Attempt(RandomNumbers& random, Attempts& made) const {
  std::iota(made.fitting.begin(), made.fitting.end(), std::uint16_t{0});
  std::fill_n(made.held.begin(), made.count, CardSet());
  DealtBlock::Each<std::uint32_t> drawn;
  for (std::size_t k = 0; k < listed_.size(); ++k) {
    listed_[k].bag.Draw(random, std::span(drawn).first(made.count));
    std::size_t fitting = 0;
    for (std::size_t i = 0; i < made.count; ++i) {
      const std::uint16_t deal = made.fitting[i];
      const CardSet cards = listed_[k].hands[drawn[i]].cards;
      const bool clash = cards.Meets(made.held[deal]);
      made.held[deal] |= cards;
      made.places[k][deal] = drawn[i];
      made.fitting[fitting] = deal;
      fitting += clash ? 0 : 1;
    }
    made.count = fitting;
  }
}

}  // namespace pokermath
