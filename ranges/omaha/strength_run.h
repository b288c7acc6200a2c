// The percentages, and lists of them, that say a set of Omaha hands best.

#ifndef POKERMATH_RANGES_OMAHA_STRENGTH_RUN_H_
#define POKERMATH_RANGES_OMAHA_STRENGTH_RUN_H_

#include <string>
#include <vector>

#include "pokermath/omaha_ranges.h"

namespace pokermath {

template <int cards>
struct StrengthRun {
  std::string text;  // "10%", "5%-20%:ds", "5%:ss,10%:ds"
  OmahaSpec<cards> hands;
};

/// The runs of the strength order that have most of the set's hands with fewest others, of all
/// hands and within some suit shapes, and for each the one that goes on from its end to the
/// strongest hand; and lists of runs that have no others. Lists of most runs first; nothing if they
/// are no use.
///
/// @param free  hands that are of no account
template <int cards>
std::vector<StrengthRun<cards>> FindStrengthRuns(const OmahaSpec<cards>& range,
                                                 const OmahaSpec<cards>& free);

extern template std::vector<StrengthRun<4>> FindStrengthRuns<4>(const OmahaSpec<4>&,
                                                                const OmahaSpec<4>&);
extern template std::vector<StrengthRun<5>> FindStrengthRuns<5>(const OmahaSpec<5>&,
                                                                const OmahaSpec<5>&);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_STRENGTH_RUN_H_
