// Constant tables of the prime-product evaluator, written at build time from the rules of poker.
// All values are on the descending scale.

#ifndef POKERMATH_EVAL_FIVE_CARD_TABLES_H_
#define POKERMATH_EVAL_FIVE_CARD_TABLES_H_

#include <cstdint>

namespace pokermath {

/// Value of a flush by the OR of its five rank bits; 0 where a mask is not five ranks.
extern const std::uint16_t kFlushValues[7937];
/// Value of five different ranks that are no flush, by the same mask; 0 elsewhere.
extern const std::uint16_t kUniqueFiveValues[7937];
/// Every product of the five primes of a hand with a repeated rank, rising.
extern const std::uint32_t kProducts[4888];
/// The value of the hand with the product in the same place.
extern const std::uint16_t kProductValues[4888];
/// Displacements of the perfect hash, by bucket.
extern const std::uint16_t kHashAdjust[512];
/// The value of the hand with a product, by hash slot.
extern const std::uint16_t kHashValues[8192];

}  // namespace pokermath

#endif  // POKERMATH_EVAL_FIVE_CARD_TABLES_H_
