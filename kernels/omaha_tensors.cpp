#include "kernels/omaha_tensors.h"

#include <algorithm>
#include <utility>

namespace pokermath {
namespace {

constexpr bool StandsBefore(int card1, int card2) {
  return card1 % 13 != card2 % 13 ? card1 % 13 > card2 % 13 : card1 < card2;
}

template <std::size_t size>
using CardList = std::array<int, size>;

template <std::size_t size>
void Arrange(CardList<size>& cards) {
  for (std::size_t i = 1; i < size; ++i) {
    for (std::size_t j = i; j > 0 && StandsBefore(cards[j], cards[j - 1]); --j) {
      std::swap(cards[j], cards[j - 1]);
    }
  }
}

// Multisets are numbered by rising ranks.
template <std::size_t size>
std::size_t RanksNumber(const CardList<size>& arranged) {
  std::array<int, size> ranks;
  for (std::size_t i = 0; i < size; ++i) ranks[i] = arranged[size - 1 - i] % 13;
  return static_cast<std::size_t>(MultisetNumber(ranks));
}

// Where arranged cards stand in the tensors of all sets of their size.
template <std::size_t size>
std::size_t PlaceOf(const CardList<size>& arranged) {
  std::size_t place = RanksNumber(arranged);
  for (const int card : arranged) place = place * 4 + static_cast<std::size_t>(card / 13);
  return place;
}
static_assert(kTriplePlaces <= 1 << 16);

// Where a tensor of some ranks begins.
template <typename... Ranks>
std::uint16_t TensorOf(Ranks... ranks) {
  return static_cast<std::uint16_t>(PlaceOf(CardList<sizeof...(Ranks)>{ranks...}));
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
  CardList<4> cards{};
  std::ranges::copy(hand.cards, cards.begin());
  Arrange(cards);
  return cards;
}

// Cards of a suit first, otherwise in the same order; how many these are.
std::size_t PutFirst(CardList<4>& cards, int suit) {
  CardList<4> others{};
  std::size_t suited = 0, other = 0;
  for (const int card : cards) {
    if (card / 13 == suit) {
      cards[suited++] = card;
    } else {
      others[other++] = card;
    }
  }
  std::copy_n(others.begin(), other, cards.begin() + static_cast<std::ptrdiff_t>(suited));
  return suited;
}

}  // namespace

std::size_t PairPlace(int card1, int card2) {
  CardList<2> cards = {card1, card2};
  Arrange(cards);
  return PlaceOf(cards);
}

std::size_t TriplePlace(int card1, int card2, int card3) {
  CardList<3> cards = {card1, card2, card3};
  Arrange(cards);
  return PlaceOf(cards);
}

std::span<const QuadClass, kQuadClasses> QuadClasses() {
  static const std::vector<QuadClass> classes = [] {
    std::vector<QuadClass> all(kQuadClasses);
    for (int a = 0; a < 13; ++a)
      for (int b = 0; b <= a; ++b)
        for (int c = 0; c <= b; ++c)
          for (int d = 0; d <= c; ++d) {
            all[RanksNumber(CardList<4>{a, b, c, d})] = ClassOf({a, b, c, d});
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
  for (std::size_t i = 0; i < hands.size(); ++i) {
    const CardList<4> cards = ArrangedHand(hands[i]);
    const std::size_t quad_class = RanksNumber(cards);
    const std::size_t twin = twins_[places_[i] / kBlockLanes];
    const auto same =
        static_cast<std::uint16_t>(other.weights_[twin * kBlockLanes + places_[i] % kBlockLanes]);
    for (int suit = 0; suit < 4; ++suit) {
      CardList<4> by_suit = cards;
      const std::size_t suited = PutFirst(by_suit, suit);
      if (suited < 2) continue;
      RankSet ranks = 0;
      for (std::size_t j = 0; j < suited; ++j) {
        ranks = static_cast<RankSet>(ranks | 1u << by_suit[j] % 13);
      }
      const auto [high, low, card1, card2] = by_suit;
      const int pair = high % 13 * (high % 13 - 1) / 2 + low % 13;
      grouped.push_back(
          {static_cast<std::size_t>(suit) * kSuitedPairs + static_cast<std::size_t>(pair),
           {.place = places_[i],
            .triple1 = static_cast<std::uint16_t>(TriplePlace(high, card1, card2)),
            .triple2 = static_cast<std::uint16_t>(TriplePlace(low, card1, card2)),
            .pair = static_cast<std::uint16_t>(PairPlace(card1, card2)),
            .weight = static_cast<std::uint16_t>(hands[i].weight),
            .same = same,
            .quad_class = static_cast<std::uint16_t>(quad_class),
            .suited = ranks,
            .card1 = static_cast<std::uint8_t>(card1),
            .card2 = static_cast<std::uint8_t>(card2)}});
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
