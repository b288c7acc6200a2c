// The hand value scales and how they follow from one another.

#ifndef POKERMATH_EVAL_SCALES_H_
#define POKERMATH_EVAL_SCALES_H_

namespace pokermath {

/// Descending = 7463 - ascending, and back.
constexpr int OtherScale(int value) { return 7463 - value; }

/// Lowest ascending value less one of category 1 (high card) .. 9 (straight flush), and the end.
inline constexpr int kCategoryStarts[10] = {0,    1277, 4137, 4995, 5853,
                                            5863, 7140, 7296, 7452, 7462};

/// Category 1..9 of an ascending value.
constexpr int CategoryOf(int ascending) {
  int category = 1;
  while (category < 9 && ascending > kCategoryStarts[category]) ++category;
  return category;
}

/// The HandRanks scale: category * 4096 + place in the category, from 1.
constexpr int ToHandRanks(int ascending) {
  const int category = CategoryOf(ascending);
  return category * 4096 + ascending - kCategoryStarts[category - 1];
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_SCALES_H_
