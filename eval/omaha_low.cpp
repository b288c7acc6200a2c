#include "eval/omaha_low.h"

#include <bit>

#include "pokermath/omaha_evaluators.h"

namespace pokermath {

int BestOmahaLow(std::span<const int> hand, std::span<const int> board) {
  unsigned ranks = 0;
  for (const int card : board) ranks |= LowBit(card % 13);
  int best = 0;
  for (std::size_t i = 0; i < hand.size(); ++i) {
    for (std::size_t j = i + 1; j < hand.size(); ++j) {
      best = std::max(best, BestLow(LowBit(hand[i] % 13) | LowBit(hand[j] % 13), ranks));
    }
  }
  return best;
}

namespace {

template <int kCount>
void EvaluateLows(const std::uint8_t* cards, std::size_t hands, std::uint8_t* values) {
  for (std::size_t i = 0; i < hands; ++i) {
    values[i] = static_cast<std::uint8_t>(EvaluateLow<kCount>(cards + kCount * i));
  }
}

template <int kHoles>
void EvaluateOmahaLows(const std::uint8_t* hands, const std::uint8_t* boards, std::size_t count,
                       std::uint8_t* values) {
  for (std::size_t i = 0; i < count; ++i) {
    values[i] =
        static_cast<std::uint8_t>(EvaluateOmahaLow<kHoles>(hands + kHoles * i, boards + 5 * i));
  }
}

}  // namespace

void EvaluateLowBatch(int count, const std::uint8_t* cards, std::size_t hands,
                      std::uint8_t* values) {
  switch (count) {
    case 5:
      return EvaluateLows<5>(cards, hands, values);
    case 6:
      return EvaluateLows<6>(cards, hands, values);
    case 7:
      return EvaluateLows<7>(cards, hands, values);
    default:
      std::fill_n(values, hands, std::uint8_t{0});
  }
}

void EvaluateOmahaLowBatch(int holes, const std::uint8_t* hands, const std::uint8_t* boards,
                           std::size_t count, std::uint8_t* values) {
  switch (holes) {
    case 4:
      return EvaluateOmahaLows<4>(hands, boards, count, values);
    case 5:
      return EvaluateOmahaLows<5>(hands, boards, count, values);
    case 6:
      return EvaluateOmahaLows<6>(hands, boards, count, values);
    default:
      std::fill_n(values, count, std::uint8_t{0});
  }
}

int LowDigits(int low) {
  // The sets of five ranks from the worst one.
  for (unsigned set = 0xFF; set != 0 && low > 0; --set) {
    if (std::popcount(set) == 5 && --low == 0) return LowValueOf(LowStrength(set));
  }
  return 0;
}

}  // namespace pokermath
