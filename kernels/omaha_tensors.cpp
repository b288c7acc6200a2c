#include "kernels/omaha_tensors.h"

#include <algorithm>
#include <utility>

#include "platform/made_once.h"

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

// Seven ranks with room for three more suits between them.
constexpr std::array<std::uint64_t, 128> kWithRoom = [] {
  std::array<std::uint64_t, 128> spread{};
  for (std::size_t ranks = 0; ranks < 128; ++ranks) {
    for (std::size_t rank = 0; rank < 7; ++rank) {
      spread[ranks] |= (std::uint64_t{ranks} >> rank & 1) << 4 * rank;
    }
  }
  return spread;
}();

// Without branches, which nobody could foresee: as bits that fall as the numbers rise.
template <std::size_t size>
CardList<size> Arranged(CardSet cards) {
  std::uint64_t bits = 0;
  for (unsigned suit = 0; suit < 4; ++suit) {
    const auto ranks = static_cast<std::size_t>(cards.bits() >> 13 * suit & kAllRanks);
    bits |= (kWithRoom[ranks & 127] | kWithRoom[ranks >> 7] << 28) << (3 - suit);
  }
  CardList<size> numbers;
  for (int& number : numbers) {
    const int highest = 63 - std::countl_zero(bits);
    number = 51 - highest;
    bits ^= std::uint64_t{1} << highest;
  }
  return numbers;
}

// Those of some cards that are not left out.
template <std::size_t left, std::size_t size>
CardList<left> Without(const CardList<size>& cards, int left_out1, int left_out2 = -1) {
  CardList<left> others;
  std::size_t next = 0;
  for (const int card : cards) {
    if (card != left_out1 && card != left_out2 && next < left) others[next++] = card;
  }
  return others;
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
static_assert(kTriplePlaces <= 1 << 16 && kWholeWeight < 1 << 16 && kHandClasses<5> <= 1 << 16,
              "what SuitedHand keeps");

// The same card twice stands nowhere.
template <typename... Cards>
std::size_t PlaceOfCards(Cards... cards) {
  const CardSet set{cards...};
  return set.size() == sizeof...(cards) ? PlaceOf(Arranged<sizeof...(Cards)>(set)) : 0;
}

// Of each part of a class the tensor begins where all its cards are of the first suit.
template <std::size_t hand_size>
HandClass<hand_size> ClassOf(const std::array<std::uint8_t, hand_size>& ranks) {
  HandClass<hand_size> of{};
  of.ranks = ranks;
  std::size_t pairs = 0;
  for (std::size_t cards = 1; cards + 1 < of.of_cards.size(); ++cards) {
    std::size_t number = 0, size = 0;
    for (std::size_t i = hand_size; i-- > 0;) {
      if ((cards >> i & 1) == 0) continue;
      number += static_cast<std::size_t>(kMultisetPlaces[size++][ranks[i]]);
    }
    of.of_cards[cards] = static_cast<PartPlace<hand_size>>(number << 2 * size);
    if (size == 2) of.rank_pairs[pairs++] = static_cast<std::uint8_t>(number);
  }
  return of;
}

int HighestOf(unsigned ranks) { return 31 - std::countl_zero(ranks); }

// The two highest cards of a suit.
struct SuitedPair {
  int suit, high, low;  // ranks

  SuitedPair(int of_suit, unsigned ranks)
      : suit(of_suit), high(HighestOf(ranks)), low(HighestOf(ranks & ~(1u << high))) {}
  std::size_t group() const {
    return static_cast<std::size_t>(suit) * kSuitedPairs +
           static_cast<std::size_t>(high * (high - 1) / 2 + low);
  }
};

// Calls visit(pair, ranks) for every suit of which a hand has two cards and more.
template <typename Visit>
void ForEachSuitOf(CardSet cards, unsigned suits, const Visit& visit) {
  for (; suits != 0; suits &= suits - 1) {
    const int suit = std::countr_zero(suits);
    const auto ranks = static_cast<RankSet>(cards.bits() >> 13 * suit & kAllRanks);
    if ((ranks & (ranks - 1)) != 0) visit(SuitedPair(suit, ranks), ranks);
  }
}

// Sets what depends on the suit.
template <std::size_t hand_size>
void SetSuit(SuitedHand<hand_size>& hand, const CardList<hand_size>& cards,
             const SuitedPair& pair) {
  constexpr std::size_t kOthers = hand_size - 2;
  const int high = NumberOf(pair.suit * 13 + pair.high), low = NumberOf(pair.suit * 13 + pair.low);
  const CardList<kOthers> others = Without<kOthers>(cards, high, low);
  hand.with_high = static_cast<PartPlace<hand_size>>(PlaceOf(Without<hand_size - 1>(cards, low)));
  hand.with_low = static_cast<PartPlace<hand_size>>(PlaceOf(Without<hand_size - 1>(cards, high)));
  hand.others = static_cast<std::uint16_t>(PlaceOf(others));
  for (std::size_t i = 0; i < kOthers; ++i) {
    hand.cards[i] = static_cast<std::uint8_t>(CardOf(others[i]));
  }
  if constexpr (hand_size > 4) {
    const auto [a, b, c] = others;
    hand.pairs = {static_cast<std::uint16_t>(PlaceOf(CardList<2>{a, b})),
                  static_cast<std::uint16_t>(PlaceOf(CardList<2>{a, c})),
                  static_cast<std::uint16_t>(PlaceOf(CardList<2>{b, c}))};
  }
}

// The two cards of a suit whose pair of ranks has a number, the higher one first.
std::pair<int, int> CardsOfPair(std::size_t suit, std::size_t pair) {
  int high = 1;
  auto low = static_cast<int>(pair);
  for (; low >= high; ++high) low -= high;
  const int first = static_cast<int>(suit) * 13;
  return {first + high, first + low};
}

constexpr std::size_t kAllSuitedPairs = 4 * kSuitedPairs;

}  // namespace

template <std::size_t hand_size>
std::span<const HandClass<hand_size>, kHandClasses<hand_size>> HandClasses() {
  static const std::vector<HandClass<hand_size>> classes = [] {
    std::vector<HandClass<hand_size>> all;
    std::array<int, hand_size> ranks;  // rising
    RankCounts counts;
    counts.fill(hand_size);
    all.resize(kHandClasses<hand_size>);
    ForEachMultiset(counts, ranks, [&](std::int64_t) {
      std::array<std::uint8_t, hand_size> falling;
      for (std::size_t i = 0; i < hand_size; ++i) {
        falling[i] = static_cast<std::uint8_t>(ranks[hand_size - 1 - i]);
      }
      all[static_cast<std::size_t>(MultisetNumber(ranks))] = ClassOf(falling);
    });
    return all;
  }();
  return std::span<const HandClass<hand_size>, kHandClasses<hand_size>>(classes);
}

const SuitedPairPlaces& PlacesOf(std::size_t suit, std::size_t pair) {
  static const MadeOnce<SuitedPairPlaces> all(kAllSuitedPairs);
  return all.Get(suit * kSuitedPairs + pair, [&](SuitedPairPlaces& of) {
    const auto [card1, card2] = CardsOfPair(suit, pair);
    const auto place = [](auto... cards) {
      return static_cast<std::uint16_t>(PlaceOfCards(cards...));
    };
    of.singles = {place(card1), place(card2)};
    of.both = place(card1, card2);
    for (int card = 0; card < 52; ++card) {
      const auto i = static_cast<std::size_t>(card);
      of.pair1[i] = place(card1, card);
      of.pair2[i] = place(card2, card);
      of.triple[i] = place(card1, card2, card);
    }
  });
}

const PlacesWithPairs& PlacesWithPairsOf(std::size_t suit, std::size_t pair) {
  static const MadeOnce<PlacesWithPairs> all(kAllSuitedPairs);
  return all.Get(suit * kSuitedPairs + pair, [&](PlacesWithPairs& of) {
    const auto [card1, card2] = CardsOfPair(suit, pair);
    of = {};
    for (int other1 = 0; other1 < 52; ++other1) {
      for (int other2 = 0; other2 < other1; ++other2) {
        const std::size_t i = PlaceOfCards(other1, other2);
        of.triple1[i] = static_cast<std::uint16_t>(PlaceOfCards(card1, other1, other2));
        of.triple2[i] = static_cast<std::uint16_t>(PlaceOfCards(card2, other1, other2));
        of.quad[i] = static_cast<std::uint32_t>(PlaceOfCards(card1, card2, other1, other2));
      }
    }
  });
}

template <std::size_t hand_size>
OmahaTensor<hand_size>::OmahaTensor(std::span<const WeightedHand> hands) {
  constexpr std::size_t kBlocks = std::size_t{1} << 2 * (hand_size - 2);  // of a class
  // Numbers of the blocks of all classes, first only whether there are such hands.
  std::vector<std::uint32_t> numbers(kHandClasses<hand_size> * kBlocks);
  places_.reserve(hands.size());
  for (const WeightedHand& hand : hands) {
    places_.push_back(static_cast<std::uint32_t>(PlaceOf(Arranged<hand_size>(hand.cards))));
    numbers[places_.back() / kBlockLanes] = 1;
  }
  std::uint32_t count = 0;
  for (std::size_t i = 0; i < classes_.size(); ++i) {
    classes_[i].first = count;
    for (std::size_t bit = 0; bit < kBlocks; ++bit) {
      std::uint32_t& number = numbers[i * kBlocks + bit];
      if (number == 0) continue;
      classes_[i].held =
          static_cast<BlockBits<hand_size>>(classes_[i].held | BlockBits<hand_size>{1} << bit);
      number = count++;
    }
  }
  weights_.resize((count + 1) * kBlockLanes);
  for (std::size_t i = 0; i < hands.size(); ++i) {
    const auto block = static_cast<std::size_t>(numbers[places_[i] / kBlockLanes]);
    places_[i] = static_cast<std::uint32_t>(block * kBlockLanes + places_[i] % kBlockLanes);
    weights_[places_[i]] = static_cast<std::uint32_t>(hands[i].weight);
    weight_ += static_cast<std::uint64_t>(hands[i].weight);
  }
}

template <std::size_t hand_size>
void OmahaTensor<hand_size>::Relate(std::span<const WeightedHand> hands, unsigned flush_suits,
                                    const OmahaTensor& other) {
  twins_.reserve(blocks());
  for (std::size_t i = 0; i < classes_.size(); ++i) {
    for (BlockBits<hand_size> held = classes_[i].held; held != 0;
         held = static_cast<BlockBits<hand_size>>(held & (held - 1))) {
      const auto bit = static_cast<unsigned>(std::countr_zero(held));
      const Blocks& twins = other.classes_[i];
      twins_.push_back(static_cast<std::uint32_t>(twins.Has(bit) ? twins.Of(bit) : other.blocks()));
    }
  }
  // A counting sort by groups.
  for (const WeightedHand& hand : hands) {
    ForEachSuitOf(hand.cards, flush_suits,
                  [&](const SuitedPair& pair, RankSet) { ++groups_[pair.group() + 1]; });
  }
  for (std::size_t i = 1; i < groups_.size(); ++i) groups_[i] += groups_[i - 1];
  suited_.resize(groups_.back());
  std::array<std::size_t, 4 * kSuitedPairs + 1> next = groups_;
  for (std::size_t i = 0; i < hands.size(); ++i) {
    ForEachSuitOf(hands[i].cards, flush_suits, [&](const SuitedPair& pair, RankSet ranks) {
      const CardList<hand_size> cards = Arranged<hand_size>(hands[i].cards);
      SuitedHand<hand_size>& hand = suited_[next[pair.group()]++];
      hand.place = places_[i];
      hand.weight = static_cast<std::uint16_t>(hands[i].weight);
      const std::uint32_t twin = twins_[hand.place / kBlockLanes];
      hand.same =
          static_cast<std::uint16_t>(other.weights_[twin * kBlockLanes + hand.place % kBlockLanes]);
      hand.hand_class = static_cast<std::uint16_t>(RanksNumber(cards));
      hand.suited = ranks;
      SetSuit(hand, cards, pair);
    });
  }
}

template <std::size_t hand_size>
OmahaTensors<hand_size>::OmahaTensors(std::span<const WeightedHand> hands1,
                                      std::span<const WeightedHand> hands2, unsigned flush_suits)
    : flush_suits_(flush_suits),
      sides_{OmahaTensor<hand_size>(hands1), OmahaTensor<hand_size>(hands2)} {
  sides_[0].Relate(hands1, flush_suits, sides_[1]);
  sides_[1].Relate(hands2, flush_suits, sides_[0]);
  for (std::size_t i = 0; i < kHandClasses<hand_size>; ++i) {
    if ((sides_[0].BlocksOf(i).held | sides_[1].BlocksOf(i).held) != 0) {
      classes_.push_back(static_cast<std::uint16_t>(i));
    }
  }
}

template std::span<const HandClass<4>, kHandClasses<4>> HandClasses<4>();
template std::span<const HandClass<5>, kHandClasses<5>> HandClasses<5>();
template class OmahaTensor<4>;
template class OmahaTensor<5>;
template class OmahaTensors<4>;
template class OmahaTensors<5>;

}  // namespace pokermath
