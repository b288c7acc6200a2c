#include "ranges/weight_text.h"

#include <algorithm>

#include "pokermath/hand_range.h"

namespace pokermath {

std::optional<Fault> ReadWeight(std::string_view text, WeightUnit unit, int& weight) {
  const bool percent = unit == WeightUnit::kPercent;
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction = text.substr(std::min(point + 1, text.size()));
  if ((whole.empty() && fraction.empty()) || !std::ranges::all_of(whole, is_digit) ||
      !std::ranges::all_of(fraction, is_digit)) {
    return Fault{0, percent ? "a weight in percent, like 50 or 12.5" : "a weight, like 0.5"};
  }
  // More digits in front of the point than that are too many anyhow.
  int value = 0;
  for (const char digit : whole) value = std::min(10 * value + (digit - '0'), kWholeWeight + 1);
  const auto decimals = static_cast<std::size_t>(unit);
  const auto digit_at = [&](std::size_t i) { return i < fraction.size() ? fraction[i] - '0' : 0; };
  for (std::size_t i = 0; i < decimals; ++i) value = 10 * value + digit_at(i);
  if (digit_at(decimals) >= 5) ++value;
  if (value > kWholeWeight) return Fault{0, percent ? "a weight up to 100" : "a weight up to 1"};
  if (value == 0 && text.find_first_of("123456789") != text.npos) {
    return Fault{0,
                 percent ? "a weight of 0.01 or more, or 0" : "a weight of 0.0001 or more, or 0"};
  }
  weight = value;
  return std::nullopt;
}

std::string WeightText(int weight, WeightUnit unit) {
  const int decimals = static_cast<int>(unit);
  int one = 1;
  for (int i = 0; i < decimals; ++i) one *= 10;
  std::string text = std::to_string(weight / one);
  if (weight % one == 0) return text;
  text += '.';
  for (int rest = weight % one; rest != 0; rest = 10 * rest % one) {
    text += static_cast<char>('0' + 10 * rest / one);
  }
  return text;
}

}  // namespace pokermath
