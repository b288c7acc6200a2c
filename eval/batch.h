// The batch evaluators for a given instruction set, for tests and benchmarks.

#ifndef POKERMATH_EVAL_BATCH_H_
#define POKERMATH_EVAL_BATCH_H_

#include <cstddef>
#include <cstdint>

#include "platform/isa.h"

namespace pokermath {

// With the instructions of a given level, which the machine must have.

void EvaluateBatch(Isa isa, int count, const std::uint8_t* cards, std::size_t hands,
                   std::uint16_t* values);
void EvaluateShortDeckBatch(Isa isa, int count, const std::uint8_t* cards, std::size_t hands,
                            std::uint16_t* values);

}  // namespace pokermath

#endif  // POKERMATH_EVAL_BATCH_H_
