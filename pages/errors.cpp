#include "pages/errors.h"

#include <system_error>

namespace pokermath {

std::string SystemReason(int error_number) { return std::generic_category().message(error_number); }

Failure SystemFailure(const std::string& what, int error_number) {
  return Failure(what + ": " + SystemReason(error_number));
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kLongest = 200;
  std::string quoted = "'";
  for (const char c : text.substr(0, kLongest)) {
    const auto byte = static_cast<unsigned char>(c);
    quoted += byte < 0x20 || byte == 0x7F ? '?' : c;
  }
  if (text.size() > kLongest) quoted += "...";
  return quoted + "'";
}

std::string OneOf(std::span<const std::string_view> words) {
  std::string text;
  for (const std::string_view& word : words) {
    if (&word != &words.front()) text += &word == &words.back() ? " or " : ", ";
    text += word;
  }
  return text;
}

}  // namespace pokermath
