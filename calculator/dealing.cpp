#include "calculator/dealing.h"

#include <algorithm>
#include <utility>

#include "calculator/choices.h"

namespace pokermath {

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

void CardDraw::Draw(RandomNumbers& random, std::span<const CardSet> taken,
                    std::span<DealtCards> drawn) const {
  if (taken.empty()) return;
  if (IsCrowded(taken[0])) {
    DrawOneByOne(random, taken, drawn);
  } else {
    DrawSets(random, taken, drawn);
  }
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
  ForEachDeal(taken.size(), [&](std::size_t i) {
    again[misfits] = static_cast<std::uint16_t>(i);
    misfits += fits(i, i) ? 0 : 1;
  });
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

void CardDraw::DrawOneByOne(RandomNumbers& random, std::span<const CardSet> taken,
                            std::span<DealtCards> drawn) const {
  const auto cards = static_cast<std::uint32_t>(cards_.size());
  const PairLimits limits(cards, cards);
  std::array<std::uint32_t, 64> places;
  std::size_t next = places.size();
  for (std::size_t i = 0; i < taken.size(); ++i) {
    CardSet held = taken[i];
    DealtCards all = start_;
    for (int missing = count_; missing > 0;) {
      if (next == places.size()) {
        random.Draw(limits, std::span(places));
        next = 0;
      }
      // Whether a card fits is anybody's guess, so there is no branch to guess it.
      const DealtCards& card = cards_[places[next++]];
      const bool fits = !card.cards.Meets(held);
      held |= card.cards;
      const std::uint64_t mask = fits ? ~std::uint64_t{0} : 0;
      all = all + DealtCards{CardSet::OfBits(card.cards.bits() & mask), card.word & mask};
      missing -= fits ? 1 : 0;
    }
    drawn[i] = all;
  }
}

namespace {

// How many of the cards that come are to be told from the others.
int NextOf(const CheckedQuestion& question) {
  return question.asked().detail.next ? question.next_cards() : 0;
}

}  // namespace

Dealing::Dealing(const CheckedQuestion& question)
    : listed_(question),
      next_(question.live() - question.certain(), NextOf(question)),
      later_(question.live() - question.certain(), question.to_come() - NextOf(question),
             DealtOf(question.board())),
      hand_({}, 0) {
  for (std::size_t i = 0; i < question.players().size(); ++i) {
    const Side& side = question.players()[i];
    if (!side.IsListed() && !side.IsOneHand()) any_.push_back(i);
  }
  if (!any_.empty()) {
    hand_ = CardDraw(question.live() - question.certain(), question.rules().hand_size);
  }
  if (!Pools::PayFor(*listed_)) return;
  pools_.emplace(*std::move(listed_), question.to_come(), question.asked().sampling.trials);
  listed_.reset();
}

std::size_t Dealing::Deal(RandomNumbers& random, std::size_t wanted, std::int64_t& attempts,
                          DealtBlock& block) const {
  DealtBlock::Each<CardSet> held;
  const std::size_t count = listed_->Deal(random, wanted, attempts, block, held);
  DealRest(random, std::span(held).first(count), block);
  return count;
}

std::int64_t Dealing::DealPool(RandomNumbers& random, std::int64_t& attempts, DealtBlock& block,
                               const std::function<void(std::size_t)>& visit) const {
  DealtBlock::Each<CardSet> held;
  return pools_->Deal(random, attempts, block, held, [&](std::size_t count) {
    DealRest(random, std::span(held).first(count), block);
    visit(count);
  });
}

void Dealing::DealRest(RandomNumbers& random, std::span<CardSet> taken, DealtBlock& block) const {
  const auto take = [taken](const DealtBlock::Each<DealtCards>& drawn) {
    for (std::size_t i = 0; i < taken.size(); ++i) taken[i] |= drawn[i].cards;
  };
  later_.Draw(random, taken, block.board);
  if (!next_.empty()) {
    take(block.board);
    next_.Draw(random, taken, block.next);
    for (std::size_t i = 0; i < taken.size(); ++i) block.board[i] = block.board[i] + block.next[i];
  }
  const auto* last = &block.board;
  for (const std::size_t player : any_) {
    take(*last);
    last = &block.hands[player];
    hand_.Draw(random, taken, block.hands[player]);
  }
}

}  // namespace pokermath
