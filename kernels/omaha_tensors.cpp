#include "kernels/omaha_tensors.h"

#include <algorithm>
#include <utility>

namespace pokermath {
namespace {

// Cards are numbered in the order in which they stand: by falling ranks, then by rising suits.
constexpr int NumberOf(int card) { return (12 - card % 13) * 4 + card / 13; }
constexpr int CardOf(int number) { return number % 4 * 13 + 12 - number / 4; }
constexpr int RankOf(int number) { return 12 - number / 4; }
constexpr int SuitOf(int number) { return number % 4; }

// Numbers of cards, rising.
template <std::size_t size>
using CardList = std::array<int, size>;

template <std::size_t size>
CardList<size> Arranged(const std::array<int, size>& cards) {
  CardList<size> numbers;
  std::ranges::transform(cards, numbers.begin(), NumberOf);
  for (std::size_t i = 1; i < size; ++i) {
    for (std::size_t j = i; j > 0 && numbers[j] < numbers[j - 1]; --j) {
      std::swap(numbers[j], numbers[j - 1]);
    }
  }
  return numbers;
}

// Multisets are numbered by rising ranks.
template <std::size_t size>
std::size_t RanksNumber(const CardList<size>& cards) {
  std::array<int, size> ranks;
  for (std::size_t i = 0; i < size; ++i) ranks[i] = RankOf(cards[size - 1 - i]);
  return static_cast<std::size_t>(MultisetNumber(ranks));
}

// Where cards stand in the tensors of all sets of their size.
template <std::size_t size>
std::size_t PlaceOf(const CardList<size>& cards) {
  std::size_t place = RanksNumber(cards);
  for (const int card : cards) place = place * 4 + static_cast<std::size_t>(SuitOf(card));
  return place;
}
static_assert(kTriplePlaces <= 1 << 16 && kWholeWeight < 1 << 16, "what SuitedHand keeps");

// Where a tensor of some falling ranks begins.
template <typename... Ranks>
std::uint16_t TensorOf(Ranks... ranks) {
  return static_cast<std::uint16_t>(PlaceOf(CardList<sizeof...(Ranks)>{NumberOf(ranks)...}));
}

QuadClass ClassOf(const std::array<int, 4>& ranks) {
  const auto [a, b, c, d] = ranks;
  QuadClass of;
  of.single = {TensorOf(a), TensorOf(b), TensorOf(c), TensorOf(d)};
  of.pair01 = TensorOf(a, b);
  of.pair02 = TensorOf(a, c);
  of.pair03 = TensorOf(a, d);
  of.pair12 = TensorOf(b, c);
  of.pair13 = TensorOf(b, d);
  of.pair23 = TensorOf(c, d);
  of.triple012 = TensorOf(a, b, c);
  of.triple013 = TensorOf(a, b, d);
  of.triple023 = TensorOf(a, c, d);
  of.triple123 = TensorOf(b, c, d);
  for (std::size_t i = 0; i < 4; ++i) of.ranks[i] = static_cast<std::uint8_t>(ranks[i]);
  const std::uint16_t pairs[6] = {of.pair01, of.pair02, of.pair03, of.pair12, of.pair13, of.pair23};
  for (std::size_t i = 0; i < 6; ++i) of.rank_pairs[i] = static_cast<std::uint8_t>(pairs[i] / 16);
  return of;
}

CardList<4> ArrangedHand(const WeightedHand& hand) {
  std::array<int, 4> cards{};
  std::ranges::copy(hand.cards, cards.begin());
  return Arranged(cards);
}

std::size_t PlaceWithout(const CardList<4>& hand, std::size_t left_out) {
  CardList<3> cards;
  for (std::size_t i = 0, next = 0; i < 4; ++i) {
    if (i != left_out) cards[next++] = hand[i];
  }
  return PlaceOf(cards);
}

// The places in a hand of its cards of a suit, then of the others.
struct SuitFirst {
  std::array<std::size_t, 4> places;
  std::size_t suited = 0;

  SuitFirst(const CardList<4>& hand, int suit) {
    std::size_t next = 0;
    for (const bool of_suit : {true, false}) {
      for (std::size_t i = 0; i < 4; ++i) {
        if ((SuitOf(hand[i]) == suit) == of_suit) places[next++] = i;
      }
      if (of_suit) suited = next;
    }
  }
};

}  // namespace

std::size_t PairPlace(int card1, int card2) { return PlaceOf(Arranged(std::array{card1, card2})); }

std::size_t TriplePlace(int card1, int card2, int card3) {
  return PlaceOf(Arranged(std::array{card1, card2, card3}));
}

std::span<const QuadClass, kQuadClasses> QuadClasses() {
  static const std::vector<QuadClass> classes = [] {
    std::vector<QuadClass> all(kQuadClasses);
    for (int a = 0; a < 13; ++a)
      for (int b = 0; b <= a; ++b)
        for (int c = 0; c <= b; ++c)
          for (int d = 0; d <= c; ++d) {
            all[RanksNumber(Arranged(std::array{a, b, c, d}))] = ClassOf({a, b, c, d});
          }
    return all;
  }();
  return std::span<const QuadClass, kQuadClasses>(classes);
}

const SuitedPairPlaces& PlacesOf(std::size_t suit, std::size_t pair) {
  static const std::vector<SuitedPairPlaces> places = [] {
    std::vector<SuitedPairPlaces> all;
    for (int of_suit = 0; of_suit < 4; ++of_suit) {
      for (int high = 1; high < 13; ++high) {
        for (int low = 0; low < high; ++low) {
          SuitedPairPlaces& of = all.emplace_back();
          const int card1 = of_suit * 13 + high, card2 = of_suit * 13 + low;
          of.singles = {static_cast<std::uint16_t>(SinglePlace(card1)),
                        static_cast<std::uint16_t>(SinglePlace(card2))};
          of.both = static_cast<std::uint16_t>(PairPlace(card1, card2));
          for (int card = 0; card < 52; ++card) {
            const auto i = static_cast<std::size_t>(card);
            of.pair1[i] = static_cast<std::uint16_t>(PairPlace(card1, card));
            of.pair2[i] = static_cast<std::uint16_t>(PairPlace(card2, card));
            of.triple[i] = static_cast<std::uint16_t>(TriplePlace(card1, card2, card));
          }
        }
      }
    }
    return all;
  }();
  return places[suit * kSuitedPairs + pair];
}

OmahaTensor::OmahaTensor(std::span<const WeightedHand> hands) {
  std::vector<std::size_t> tensor_places;
  tensor_places.reserve(hands.size());
  for (const WeightedHand& hand : hands) {
    const std::size_t place = PlaceOf(ArrangedHand(hand));
    tensor_places.push_back(place);
    Blocks& blocks = classes_[place / 256];
    blocks.held = static_cast<std::uint16_t>(blocks.held | 1u << place / kBlockLanes % 16);
  }
  std::uint32_t count = 0;
  for (Blocks& blocks : classes_) {
    blocks.first = count;
    count += static_cast<std::uint32_t>(__builtin_popcount(blocks.held));
  }
  weights_.resize((count + 1) * kBlockLanes);
  places_.reserve(hands.size());
  for (std::size_t i = 0; i < hands.size(); ++i) {
    const std::size_t place = tensor_places[i];
    const Blocks& blocks = classes_[place / 256];
    const std::size_t block = blocks.Of(static_cast<unsigned>(place / kBlockLanes % 16));
    places_.push_back(static_cast<std::uint32_t>(block * kBlockLanes + place % kBlockLanes));
    weights_[places_[i]] = static_cast<std::uint32_t>(hands[i].weight);
    weight_ += static_cast<std::uint64_t>(hands[i].weight);
  }
}

void OmahaTensor::Relate(std::span<const WeightedHand> hands, const OmahaTensor& other) {
  twins_.reserve(blocks());
  for (std::size_t i = 0; i < kQuadClasses; ++i) {
    for (unsigned held = classes_[i].held; held != 0; held &= held - 1) {
      const auto bit = static_cast<unsigned>(__builtin_ctz(held));
      const Blocks& twins = other.classes_[i];
      twins_.push_back(static_cast<std::uint32_t>(twins.Has(bit) ? twins.Of(bit) : other.blocks()));
    }
  }
  std::vector<std::pair<std::size_t, SuitedHand>> grouped;
  grouped.reserve(2 * hands.size());  // of two suits at the most
  for (std::size_t i = 0; i < hands.size(); ++i) {
    const CardList<4> cards = ArrangedHand(hands[i]);
    const std::uint32_t twin = twins_[places_[i] / kBlockLanes];
    SuitedHand hand{};
    hand.place = places_[i];
    hand.weight = static_cast<std::uint16_t>(hands[i].weight);
    hand.same =
        static_cast<std::uint16_t>(other.weights_[twin * kBlockLanes + hand.place % kBlockLanes]);
    hand.quad_class = static_cast<std::uint16_t>(RanksNumber(cards));
    for (int suit = 0; suit < 4; ++suit) {
      const SuitFirst by_suit(cards, suit);
      if (by_suit.suited < 2) continue;
      const auto [high, low, other1, other2] = by_suit.places;
      hand.triple1 = static_cast<std::uint16_t>(PlaceWithout(cards, low));
      hand.triple2 = static_cast<std::uint16_t>(PlaceWithout(cards, high));
      hand.pair = static_cast<std::uint16_t>(
          PlaceOf(CardList<2>{cards[std::min(other1, other2)], cards[std::max(other1, other2)]}));
      hand.card1 = static_cast<std::uint8_t>(CardOf(cards[other1]));
      hand.card2 = static_cast<std::uint8_t>(CardOf(cards[other2]));
      hand.suited = 0;
      for (std::size_t j = 0; j < by_suit.suited; ++j) {
        hand.suited = static_cast<RankSet>(hand.suited | 1u << RankOf(cards[by_suit.places[j]]));
      }
      const int pair = RankOf(cards[high]) * (RankOf(cards[high]) - 1) / 2 + RankOf(cards[low]);
      grouped.emplace_back(
          static_cast<std::size_t>(suit) * kSuitedPairs + static_cast<std::size_t>(pair), hand);
    }
  }
  // A counting sort by groups.
  groups_.fill(0);
  for (const auto& [group, hand] : grouped) ++groups_[group + 1];
  for (std::size_t i = 1; i < groups_.size(); ++i) groups_[i] += groups_[i - 1];
  suited_.resize(grouped.size());
  std::array<std::size_t, 4 * kSuitedPairs + 1> next = groups_;
  for (const auto& [group, hand] : grouped) suited_[next[group]++] = hand;
}

OmahaTensors::OmahaTensors(std::span<const WeightedHand> hands1,
                           std::span<const WeightedHand> hands2)
    : sides_{OmahaTensor(hands1), OmahaTensor(hands2)} {
  sides_[0].Relate(hands1, sides_[1]);
  sides_[1].Relate(hands2, sides_[0]);
  for (std::size_t i = 0; i < kQuadClasses; ++i) {
    if ((sides_[0].BlocksOf(i).held | sides_[1].BlocksOf(i).held) != 0) {
      classes_.push_back(static_cast<std::uint16_t>(i));
    }
  }
}

}  // namespace pokermath
