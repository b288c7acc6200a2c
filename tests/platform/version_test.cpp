// The version, which is written as numbers and as text.

#include "pokermath/version.h"

#include <gtest/gtest.h>

#include <string>

namespace pokermath {
namespace {

TEST(Version, IsTheSameEverywhere) {
  const std::string numbers = std::to_string(POKERMATH_VERSION_MAJOR) + "." +
                              std::to_string(POKERMATH_VERSION_MINOR) + "." +
                              std::to_string(POKERMATH_VERSION_PATCH);
  EXPECT_EQ(numbers, POKERMATH_VERSION_STRING);
  EXPECT_EQ(numbers, Version());
  EXPECT_LT(POKERMATH_VERSION_MINOR, 100);
  EXPECT_LT(POKERMATH_VERSION_PATCH, 100);
}

}  // namespace
}  // namespace pokermath
