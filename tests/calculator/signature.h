// One number for what the calculator answers: it guards every change.

#ifndef POKERMATH_TESTS_CALCULATOR_SIGNATURE_H_
#define POKERMATH_TESTS_CALCULATOR_SIGNATURE_H_

#include <string>

namespace pokermath {

/// Asks some four hundred questions: every game, street and number of board cards, hands and
/// ranges with weights, dead and folded cards, counted and sampled.
///
/// @return "0x0123456789abcdef of 441 answers", a hash over their whole numbers
std::string SignatureOfAnswers();

}  // namespace pokermath

#endif  // POKERMATH_TESTS_CALCULATOR_SIGNATURE_H_
