// Forcing a level of instructions; what kernels make of one, their own tests say.

#include "platform/isa.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "pokermath/instructions.h"

namespace pokermath {
namespace {

TEST(InstructionLevel, IsTheOneThatWasAskedForIfTheMachineHasIt) {
  const std::string before(InstructionLevel());
  const auto levels = InstructionLevels();
  ASSERT_EQ(levels.size(), IsasOfMachine().size());
  for (std::size_t i = 0; i < levels.size(); ++i) {
    EXPECT_TRUE(UseInstructionLevel(levels[i]));
    EXPECT_EQ(InstructionLevel(), levels[i]);
    EXPECT_EQ(BestIsa(), IsasOfMachine()[i]);
  }
  for (const char* name : {"baseline", "avx2", "avx512", "AVX2", "sse9", ""}) {
    EXPECT_TRUE(UseInstructionLevel("baseline"));
    EXPECT_FALSE(HasVbmi());
    const bool has = std::ranges::count(levels, std::string_view(name)) > 0;
    EXPECT_EQ(UseInstructionLevel(name), has) << name;
    EXPECT_EQ(InstructionLevel(), has ? name : "baseline");
  }
  EXPECT_TRUE(UseInstructionLevel(before));
}

}  // namespace
}  // namespace pokermath
