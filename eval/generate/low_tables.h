#ifndef POKERMATH_EVAL_GENERATE_LOW_TABLES_H_
#define POKERMATH_EVAL_GENERATE_LOW_TABLES_H_

#include <ostream>

namespace pokermath {

/// Writes the source of pokermath::kLowTables.
void WriteLowTables(std::ostream& out);

}  // namespace pokermath

#endif  // POKERMATH_EVAL_GENERATE_LOW_TABLES_H_
