// Any bytes as range text: either a one-line error and an empty range, or a range of different
// holdings whose written text reads back to the same classes.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "pokermath/ranges.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using pokermath::ParseRange;
  const auto require = [](bool holds) {
    if (!holds) std::abort();
  };
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto read = ParseRange(text);
  if (!read.error.empty()) {
    require(read.range.combinations().empty() && read.position <= size);
    require(read.error.find('\n') == std::string::npos);
    return 0;
  }
  for (const auto& [first, second] : read.range.combinations()) {
    require(first >= 0 && first < 52 && second >= 0 && second < 52 && first != second);
    require(!read.range.combinations().contains({second, first}));
  }
  const CString written = read.range.MakeString();
  const auto again =
      ParseRange(std::string(written.begin(), written.end()), {.bare_offsuit = true});
  require(again.error.empty() && again.range.MakeString() == written);
  return 0;
}
