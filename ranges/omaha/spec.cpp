// Sets of Omaha hands, as one bit for each hand at its number.

#include <bit>

#include "pokermath/omaha_ranges.h"
#include "ranges/omaha/term.h"

namespace pokermath {
namespace {

constexpr std::size_t kBits = 64;

std::uint64_t BitOf(int number) {
  return std::uint64_t{1} << (static_cast<std::size_t>(number) % kBits);
}

}  // namespace

template <int cards>
OmahaSpec<cards>::OmahaSpec() : bits_((kAllHands + kBits - 1) / kBits) {}

template <int cards>
int OmahaSpec<cards>::Count() const {
  int count = 0;
  for (const std::uint64_t word : bits_) count += std::popcount(word);
  return count;
}

template <int cards>
double OmahaSpec<cards>::Percent() const {
  return 100.0 * Count() / kAllHands;
}

template <int cards>
bool OmahaSpec<cards>::Empty() const {
  return std::ranges::all_of(bits_, [](std::uint64_t word) { return word == 0; });
}

template <int cards>
bool OmahaSpec<cards>::Contains(std::span<const int, cards> hand) const {
  const int number = HandNumber(hand);
  return (bits_[static_cast<std::size_t>(number) / kBits] & BitOf(number)) != 0;
}

template <int cards>
void OmahaSpec<cards>::Insert(std::span<const int, cards> hand) {
  const int number = HandNumber(hand);
  bits_[static_cast<std::size_t>(number) / kBits] |= BitOf(number);
}

template <int cards>
void OmahaSpec<cards>::Erase(std::span<const int, cards> hand) {
  const int number = HandNumber(hand);
  bits_[static_cast<std::size_t>(number) / kBits] &= ~BitOf(number);
}

template <int cards>
void OmahaSpec<cards>::MakeRandom() {
  std::ranges::fill(bits_, ~std::uint64_t{0});
  if constexpr (kAllHands % kBits != 0) bits_.back() >>= kBits - kAllHands % kBits;
}

template <int cards>
void OmahaSpec<cards>::Unite(const OmahaSpec& other) {
  for (std::size_t i = 0; i < bits_.size(); ++i) bits_[i] |= other.bits_[i];
}

template <int cards>
void OmahaSpec<cards>::Intersect(const OmahaSpec& other) {
  for (std::size_t i = 0; i < bits_.size(); ++i) bits_[i] &= other.bits_[i];
}

template <int cards>
void OmahaSpec<cards>::Subtract(const OmahaSpec& other) {
  for (std::size_t i = 0; i < bits_.size(); ++i) bits_[i] &= ~other.bits_[i];
}

template <int cards>
void OmahaSpec<cards>::Exclude(const std::vector<int>& dead, OmahaSpec& out) const {
  std::array<std::uint64_t, cards> live;
  live.fill((std::uint64_t{1} << 52) - 1);
  for (const int card : dead) {
    for (std::uint64_t& cards_left : live) cards_left &= ~(std::uint64_t{1} << card);
  }
  const auto add = [&](int number, std::uint64_t row) {
    OmahaBits::AddRow(out, number, OmahaBits::Common(*this, number, row));
    return true;
  };
  PatternWalk<cards, decltype(add)>(live, kAllSplits<cards>, add).Run();
}

template <int cards>
std::vector<typename OmahaSpec<cards>::Hand> OmahaSpec<cards>::Hands() const {
  std::vector<Hand> hands;
  hands.reserve(static_cast<std::size_t>(Count()));
  OmahaBits::ForEachHand(*this, [&hands](const Hand& hand) { hands.push_back(hand); });
  return hands;
}

template <int cards>
std::set<std::set<int>> OmahaSpec<cards>::Combinations() const {
  std::set<std::set<int>> combinations;
  for (const Hand& hand : Hands()) combinations.emplace(hand.begin(), hand.end());
  return combinations;
}

#define POKERMATH_SPEC(cards) template class OmahaSpec<cards>;
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_SPEC)

}  // namespace pokermath
