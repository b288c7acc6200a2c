// Ranges with weights.
//
// Every hand of some cards is not listed until somebody walks it: 2,598,960 hands of five cards
// take 40 MB, and 20,358,520 of six cards 310 MB; most questions about "random" hands need no list
// of them.

#include "pokermath/hand_range.h"

#include <algorithm>
#include <functional>
#include <mutex>
#include <utility>

#include "platform/require.h"
#include "ranges/omaha/hands.h"

namespace pokermath {
namespace {

std::size_t HandsOfDeck(CardSet deck, Game game) {
  return static_cast<std::size_t>(Choose(deck.size(), RulesOf(game).hand_size));
}

// Calls add with every set of `count` cards below a card, and with those that are chosen already;
// the sets rise by their bits.
template <typename Add>
void ForEachHand(std::span<const int> cards, int count, CardSet chosen, const Add& add) {
  if (count == 0) {
    add(chosen);
    return;
  }
  for (std::size_t i = static_cast<std::size_t>(count) - 1; i < cards.size(); ++i) {
    ForEachHand(cards.first(i), count - 1, chosen | CardSet{cards[i]}, add);
  }
}

bool ByCards(const WeightedHand& a, const WeightedHand& b) { return a.cards < b.cards; }

}  // namespace

struct HandRange::Hands {
  Game game;
  bool every = false;
  CardSet every_of;  // with `every`
  // Where it is every hand, filled by the first who asks for it.
  mutable std::once_flag listing;
  mutable std::vector<WeightedHand> list;

  explicit Hands(Game of_game) : game(of_game) {}
};

HandRange::HandRange(Game game) : hands_(std::make_shared<Hands>(game)) {}

HandRange::HandRange(Game game, std::vector<WeightedHand> hands) {
  // Millions of hands come in order.
  if (std::ranges::adjacent_find(hands, std::not_fn(ByCards)) != hands.end()) {
    std::stable_sort(hands.begin(), hands.end(), ByCards);
    // Of equal ones the last stays.
    const auto same = [](const WeightedHand& a, const WeightedHand& b) {
      return a.cards == b.cards;
    };
    hands.erase(hands.begin(), std::unique(hands.rbegin(), hands.rend(), same).base());
  }
  const GameRules& rules = RulesOf(game);
  const bool every = hands.size() == HandsOfDeck(rules.Deck(), game) &&
                     std::ranges::all_of(hands, [&](const WeightedHand& hand) {
                       return hand.weight == kWholeWeight && hand.cards.size() == rules.hand_size &&
                              (hand.cards - rules.Deck()).empty();
                     });
  if (every) {
    *this = Every(game);
    return;
  }
  auto made = std::make_shared<Hands>(game);
  made->list = std::move(hands);
  hands_ = std::move(made);
}

HandRange::HandRange(Game game, const Spec& range)
    : HandRange(game, [&] {
        POKERMATH_REQUIRE(RulesOf(game).hand_size == 2);
        const CardSet deck = RulesOf(game).Deck();
        std::vector<WeightedHand> hands;
        hands.reserve(range.combinations().size());
        for (const auto& [first, second] : range.combinations()) {
          const auto is_card = [&](int card) {
            return card >= 0 && card < 52 && deck.Contains(card);
          };
          if (first == second || !is_card(first) || !is_card(second)) continue;
          hands.push_back({CardSet{first, second}});
        }
        return hands;
      }()) {}

namespace {

template <int cards>
std::vector<WeightedHand> HandsOf(Game game, const OmahaSpec<cards>& range) {
  POKERMATH_REQUIRE(RulesOf(game).hand_size == cards);
  static_cast<void>(game);
  std::vector<WeightedHand> hands;
  hands.reserve(static_cast<std::size_t>(range.Count()));
  OmahaBits::ForEachHand(range, [&hands](const auto& hand) { hands.push_back({CardSet(hand)}); });
  return hands;
}

}  // namespace

template <int cards>
HandRange::HandRange(Game game, const OmahaSpec<cards>& range)
    : HandRange(game, HandsOf(game, range)) {}

#define POKERMATH_RANGE(cards) template HandRange::HandRange(Game, const OmahaSpec<cards>&);
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_RANGE)

HandRange HandRange::Every(Game game) {
  auto made = std::make_shared<Hands>(game);
  made->every = true;
  made->every_of = RulesOf(game).Deck();
  return HandRange(std::move(made));
}

HandRange HandRange::Of(Game game, CardSet hand) {
  return HandRange(game, std::vector<WeightedHand>{{hand}});
}

Game HandRange::game() const { return hands_->game; }
bool HandRange::IsEvery() const { return hands_->every; }
CardSet HandRange::EveryOf() const { return hands_->every_of; }

std::size_t HandRange::size() const {
  return hands_->every ? HandsOfDeck(hands_->every_of, game()) : hands_->list.size();
}

std::span<const WeightedHand> HandRange::hands() const& {
  const Hands& held = *hands_;
  if (held.every) {
    std::call_once(held.listing, [&] {
      const std::vector<int> cards(held.every_of.begin(), held.every_of.end());
      held.list.reserve(size());
      ForEachHand(cards, RulesOf(held.game).hand_size, {},
                  [&](CardSet hand) { held.list.push_back({hand}); });
    });
  }
  return held.list;
}

std::size_t HandRange::Find(CardSet hand) const {
  const std::span<const WeightedHand> all = hands();
  const auto place = std::lower_bound(all.begin(), all.end(), WeightedHand{hand}, ByCards);
  if (place == all.end() || place->cards != hand) return all.size();
  return static_cast<std::size_t>(place - all.begin());
}

int HandRange::WeightOf(CardSet hand) const {
  const std::size_t place = Find(hand);
  return place == size() ? 0 : hands()[place].weight;
}

HandRange HandRange::Without(CardSet dead) const {
  const auto blocked = [&](const WeightedHand& hand) { return hand.cards.Meets(dead); };
  // Nothing to take away: a range that is shared keeps its list.
  const bool whole = hands_->every ? !hands_->every_of.Meets(dead)
                                   : dead.empty() || std::ranges::none_of(hands_->list, blocked);
  if (whole) return *this;
  auto left = std::make_shared<Hands>(game());
  if (hands_->every) {
    left->every = true;
    left->every_of = hands_->every_of - dead;
    return HandRange(std::move(left));
  }
  std::ranges::remove_copy_if(hands_->list, std::back_inserter(left->list), blocked);
  return HandRange(std::move(left));
}

bool HandRange::operator==(const HandRange& other) const {
  if (game() != other.game() || size() != other.size()) return false;
  if (IsEvery() && other.IsEvery()) return EveryOf() == other.EveryOf();
  return std::ranges::equal(hands(), other.hands());
}

}  // namespace pokermath
