// Writes the finite-state table of five cards.

#ifndef POKERMATH_EVAL_GENERATE_FIVE_CARD_STATES_H_
#define POKERMATH_EVAL_GENERATE_FIVE_CARD_STATES_H_

#include <ostream>

#include "eval/generate/reference.h"

namespace pokermath {

void WriteFiveCardStates(std::ostream& out, const ReferenceValues& values);

}  // namespace pokermath

#endif  // POKERMATH_EVAL_GENERATE_FIVE_CARD_STATES_H_
