// The signature of all answers is the one that is kept, at every level of instructions. Whoever
// changes it has to say why answers are others: pokermath_bench --signature prints the new one.

#include "tests/calculator/signature.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "pokermath/instructions.h"

namespace pokermath {
namespace {

TEST(SignatureSlow, IsTheOneThatIsKept) {
  std::ifstream file(std::string(POKERMATH_TEST_DATA) + "/signature.txt");
  std::string kept;
  std::getline(file, kept);
  const std::string before(InstructionLevel());
  for (const std::string_view level : InstructionLevels()) {
    ASSERT_TRUE(UseInstructionLevel(level));
    EXPECT_EQ(SignatureOfAnswers(), kept) << level;
  }
  ASSERT_TRUE(UseInstructionLevel(before));
}

}  // namespace
}  // namespace pokermath
