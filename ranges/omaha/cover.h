// Patterns that cover a set of Omaha hands.
//
// Both covers take a seed that is not covered yet and widen its cards one after the other, each to
// all that it may be while the pattern holds nothing that is not allowed. The order of the cards
// matters, so some are tried, and the pattern that covers most of what is left is taken.
// (Expanding, then dropping what is redundant, is how logic is minimised: Brayton, Hachtel,
// McMullen, Sangiovanni-Vincentelli, Logic Minimization Algorithms for VLSI Synthesis, 1984.)

#ifndef POKERMATH_RANGES_OMAHA_COVER_H_
#define POKERMATH_RANGES_OMAHA_COVER_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "pokermath/omaha_ranges.h"
#include "ranges/omaha/piece.h"

namespace pokermath {

/// Patterns without suits, for all wanted hands of a multiset of ranks and a split whose other
/// hands are allowed as well; nothing for the others. After much work patterns are not widened.
///
/// @param allowed  holds all that is wanted
/// @param longest  length of text that is still of use; may stop when it gets longer
template <int cards>
std::vector<OmahaPiece<cards>> CoverByRanks(const OmahaSpec<cards>& wanted,
                                            const OmahaSpec<cards>& allowed, Exclusions exclusions,
                                            std::size_t longest);

/// Patterns with suits, as long as the work is within its bound. Their hands are taken off
/// `wanted`.
template <int cards>
std::vector<OmahaPiece<cards>> CoverBySuits(OmahaSpec<cards>& wanted,
                                            const OmahaSpec<cards>& allowed, Exclusions exclusions,
                                            std::size_t longest);

/// Pieces of text that hold all wanted hands and none that is not allowed: patterns of both kinds,
/// then single hands. Nothing if they are longer than they may be.
template <int cards>
std::optional<std::vector<std::string>> CoverOmaha(OmahaSpec<cards> wanted,
                                                   const OmahaSpec<cards>& allowed,
                                                   Exclusions exclusions, std::size_t longest);

extern template std::vector<OmahaPiece<4>> CoverByRanks<4>(const OmahaSpec<4>&, const OmahaSpec<4>&,
                                                           Exclusions, std::size_t);
extern template std::vector<OmahaPiece<5>> CoverByRanks<5>(const OmahaSpec<5>&, const OmahaSpec<5>&,
                                                           Exclusions, std::size_t);
extern template std::vector<OmahaPiece<4>> CoverBySuits<4>(OmahaSpec<4>&, const OmahaSpec<4>&,
                                                           Exclusions, std::size_t);
extern template std::vector<OmahaPiece<5>> CoverBySuits<5>(OmahaSpec<5>&, const OmahaSpec<5>&,
                                                           Exclusions, std::size_t);
extern template std::optional<std::vector<std::string>> CoverOmaha<4>(OmahaSpec<4>,
                                                                      const OmahaSpec<4>&,
                                                                      Exclusions, std::size_t);
extern template std::optional<std::vector<std::string>> CoverOmaha<5>(OmahaSpec<5>,
                                                                      const OmahaSpec<5>&,
                                                                      Exclusions, std::size_t);

}  // namespace pokermath

#endif  // POKERMATH_RANGES_OMAHA_COVER_H_
