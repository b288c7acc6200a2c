#ifndef POKERMATH_EVAL_GENERATE_COMPACT_TABLES_H_
#define POKERMATH_EVAL_GENERATE_COMPACT_TABLES_H_

#include <ostream>

#include "eval/generate/reference.h"

namespace pokermath {

/// Writes the source of pokermath::kCompactTables and pokermath::kShortDeckTables, and the keys of
/// Omaha boards.
///
/// @param values  of the full deck
void WriteCompactTables(std::ostream& out, const ReferenceValues& values);

}  // namespace pokermath

#endif  // POKERMATH_EVAL_GENERATE_COMPACT_TABLES_H_
