// The Omaha batch evaluators for a given instruction set, for tests and benchmarks.

#ifndef POKERMATH_EVAL_OMAHA_BATCH_H_
#define POKERMATH_EVAL_OMAHA_BATCH_H_

#include <cstddef>
#include <cstdint>

#include "platform/isa.h"
#include "pokermath/omaha_evaluators.h"

namespace pokermath {

// With the instructions of a given level, which the machine must have.

void EvaluateOmahaBatch(Isa isa, int holes, const std::uint8_t* hands, const std::uint8_t* boards,
                        std::size_t count, std::uint16_t* values);

class OmahaBoardKernels {
 public:
  static void Evaluate(Isa isa, const OmahaBoardValues& board, int holes, const std::uint8_t* hands,
                       std::size_t count, std::uint16_t* values);

 private:
  template <int kHoles>
  static void Plain(const OmahaBoardValues& board, const std::uint8_t* hands, std::size_t count,
                    std::uint16_t* values);
  template <int kHoles>
  static void Vbmi(const OmahaBoardValues& board, const std::uint8_t* hands, std::size_t count,
                   std::uint16_t* values);
  template <int kHoles>
  static void Any(Isa isa, const OmahaBoardValues& board, const std::uint8_t* hands,
                  std::size_t count, std::uint16_t* values);
};

}  // namespace pokermath

#endif  // POKERMATH_EVAL_OMAHA_BATCH_H_
