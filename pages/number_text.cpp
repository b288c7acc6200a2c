#include "pages/number_text.h"

#include <fmt/format.h>

namespace pokermath {

std::string Grouped(std::int64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t place = text.size(); place > 3;) {
    place -= 3;
    text.insert(place, 1, ',');
  }
  return text;
}

std::string Counted(std::int64_t number, std::string_view what) {
  return fmt::format("{} {}{}", Grouped(number), what, number == 1 ? "" : "s");
}

std::string DurationText(Seconds duration) {
  const double seconds = duration.count();
  if (seconds < 0.001) return fmt::format("{:.3f} ms", seconds * 1e3);
  if (seconds < 0.01) return fmt::format("{:.1f} ms", seconds * 1e3);
  if (seconds < 0.9995) return fmt::format("{:.0f} ms", seconds * 1e3);
  if (seconds < 60) return fmt::format("{:.2f} s", seconds);
  const auto whole = static_cast<std::int64_t>(seconds);
  if (whole < 3600) return fmt::format("{}:{:02} min", whole / 60, whole % 60);
  return fmt::format("{}:{:02} h", whole / 3600, whole / 60 % 60);
}

std::string RoughCount(double number) {
  if (number < 1e3) return fmt::format("{:.0f}", number);
  if (number < 1e6) return fmt::format("{:.3g} thousand", number / 1e3);
  return fmt::format("{:.3g} million", number / 1e6);
}

}  // namespace pokermath
