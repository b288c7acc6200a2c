#ifndef POKERMATH_EVAL_GENERATE_FIVE_CARD_TABLES_H_
#define POKERMATH_EVAL_GENERATE_FIVE_CARD_TABLES_H_

#include <ostream>

#include "eval/generate/reference.h"

namespace pokermath {

/// Writes the source of eval/five_card_tables.h's tables.
void WriteFiveCardTables(std::ostream& out, const ReferenceValues& values);

}  // namespace pokermath

#endif  // POKERMATH_EVAL_GENERATE_FIVE_CARD_TABLES_H_
