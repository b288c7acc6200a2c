#include "calculator/dealing.h"

#include <algorithm>
#include <bit>

#include "calculator/choices.h"
#include "pokermath/evaluators.h"

namespace pokermath {

DealtCards DealtOf(CardSet cards) {
  DealtCards dealt{cards, 0};
  for (const int card : cards) dealt.word += kCompactTables.card_words[card];
  return dealt;
}

Bag::Bag(const Side& side) {
  const std::span<const WeightedHand> hands = side.range.hands();
  hands_.reserve(hands.size());
  bool alike = true;
  for (const WeightedHand& hand : hands) {
    hands_.push_back(DealtOf(hand.cards));
    all_ += static_cast<std::uint64_t>(hand.weight / side.unit);
    alike = alike && hand.weight == hands[0].weight;
  }
  if (alike) return;
  // A column for each hand, as high as the sum of all weights; a hand fills as much of the columns
  // as its weight times their number. What is too much for its own fills up one that is too low.
  columns_.resize(hands.size());
  std::vector<std::uint32_t> low, high;
  for (std::uint32_t i = 0; i < hands.size(); ++i) {
    columns_[i] = {static_cast<std::uint64_t>(hands[i].weight / side.unit) * hands.size(), i};
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

std::uint32_t Bag::Draw(StepRandom& random) const {
  const auto size = static_cast<std::uint32_t>(hands_.size());
  if (columns_.empty()) return random.Below(size, 1).first;
  const auto [column, number] = all_ <= 0xFFFFFFFF
                                    ? random.Below(size, static_cast<std::uint32_t>(all_))
                                    : random.BelowLarge(size, all_);
  return number < columns_[column].limit ? column : columns_[column].other;
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

CardDraw::CardDraw(CardSet from, int count)
    : from_(from),
      count_(count),
      cards_(DealtSetsOf(from, 1)),
      first_(DealtSetsOf(from, std::min(count, 3))),
      second_(DealtSetsOf(from, std::max(count - 3, 0))) {}

bool CardDraw::IsCrowded(CardSet taken) const {
  constexpr std::int64_t kMostTries = 8;
  return ChoicesOf(from_.size(), count_) > kMostTries * ChoicesOf((from_ - taken).size(), count_);
}

DealtCards CardDraw::DrawOneByOne(StepRandom& random, CardSet taken) const {
  DealtCards drawn;
  while (drawn.cards.size() < count_) {
    const DealtCards& card = cards_[random.Below(cards_.size())];
    if (!card.cards.Meets(taken | drawn.cards)) drawn = drawn + card;
  }
  return drawn;
}

namespace {

// How many of the cards that come are to be told from the others.
int NextOf(const CheckedQuestion& question) {
  return question.asked().detail.next ? question.next_cards() : 0;
}

// Draws for the first places of a block, for each until it fits what is taken there.
void DrawAll(const CardDraw& from, StepRandom& random, std::span<DealtCards> drawn,
             std::array<CardSet, DealtBlock::kMost>& taken) {
  // As many cards are taken everywhere.
  const bool crowded = !drawn.empty() && from.IsCrowded(taken[0]);
  for (std::size_t i = 0; crowded && i < drawn.size(); ++i) {
    drawn[i] = from.DrawOneByOne(random, taken[i]);
  }
  // Whether a draw fits is anybody's guess, so there is no branch to guess it.
  for (std::size_t i = 0; !crowded && i < drawn.size();) {
    const bool fits = from.Draw(random, taken[i], drawn[i]);
    i += fits ? 1 : 0;
  }
  for (std::size_t i = 0; i < drawn.size(); ++i) taken[i] |= drawn[i].cards;
}

}  // namespace

Dealing::Dealing(const CheckedQuestion& question)
    : board_(DealtOf(question.board())),
      next_(question.live() - question.certain(), NextOf(question)),
      later_(question.live() - question.certain(), question.to_come() - NextOf(question)),
      hand_({}, 0) {
  for (std::size_t i = 0; i < question.players().size(); ++i) {
    const Side& side = question.players()[i];
    if (side.range.size() == 1) {
      certain_.emplace_back(i, DealtOf(side.range.hands()[0].cards));
    } else if (side.IsListed()) {
      listed_.push_back({Bag(side), i, true});
    } else {
      any_.push_back(i);
    }
  }
  if (!any_.empty()) {
    hand_ = CardDraw(question.live() - question.certain(), question.rules().hand_size);
  }
  for (const Side& side : question.folded()) listed_.push_back({Bag(side), 0, false});
  // The narrowest ranges clash first.
  std::ranges::stable_sort(listed_, {}, [](const Listed& one) { return one.bag.size(); });
}

std::size_t Dealing::Deal(StepRandom& random, std::size_t wanted, std::int64_t& attempts,
                          DealtBlock& block) const {
  TakenCards taken{};
  const std::size_t count = DealListed(random, wanted, attempts, block, taken);
  for (const auto& [player, hand] : certain_) {
    for (std::size_t i = 0; i < count; ++i) {
      block.hands[player][i] = hand;
      block.places[player][i] = 0;
    }
  }
  const auto first = [count](auto& all) { return std::span(all).first(count); };
  DrawAll(later_, random, first(block.board), taken);
  for (DealtCards& board : first(block.board)) board = board + board_;
  if (!next_.empty()) {
    DrawAll(next_, random, first(block.next), taken);
    for (std::size_t i = 0; i < count; ++i) block.board[i] = block.board[i] + block.next[i];
  }
  for (const std::size_t player : any_) {
    DrawAll(hand_, random, first(block.hands[player]), taken);
  }
  return count;
}

std::size_t Dealing::DealListed(StepRandom& random, std::size_t wanted, std::int64_t& attempts,
                                DealtBlock& block, TakenCards& taken) const {
  if (listed_.empty()) {
    attempts -= static_cast<std::int64_t>(wanted);
    return wanted;
  }
  std::size_t count = 0;
  for (; count < wanted && attempts > 0; --attempts) {
    CardSet held;
    bool clash = false;
    for (const Listed& one : listed_) {
      const std::uint32_t place = one.bag.Draw(random);
      const DealtCards& hand = one.bag[place];
      clash = hand.cards.Meets(held);
      if (clash) break;
      held |= hand.cards;
      if (!one.plays) continue;
      block.hands[one.player][count] = hand;
      block.places[one.player][count] = place;
    }
    taken[count] = held;
    count += clash ? 0 : 1;
  }
  return count;
}

}  // namespace pokermath
