#include "pages/json_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "pokermath/cards.h"

namespace pokermath {
namespace {

// Room for the longest number, as Json itself has it.
using Digits = std::array<char, 64>;

// Json's own digits: there are numbers for which others write fewer.
std::string_view DigitsOf(double number, Digits& digits) {
  if (!std::isfinite(number)) return "null";
  char* const end =
      nlohmann::detail::to_chars(digits.data(), digits.data() + digits.size(), number);
  return {digits.data(), end};
}

bool IsPlain(char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; }

}  // namespace

std::string NumberText(double number) {
  Digits digits;
  return std::string(DigitsOf(number, digits));
}

JsonWriter& JsonWriter::Key(std::string_view name) {
  Separate();
  text_ += '"';
  text_ += name;
  text_ += "\":";
  return *this;
}

void JsonWriter::Text(std::string_view text) {
  if (!std::ranges::all_of(text, IsPlain)) {
    Raw(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace));
    return;
  }
  Separate();
  text_ += '"';
  text_ += text;
  text_ += '"';
}

void JsonWriter::Cards(std::span<const int> cards) {
  OpenList();
  for (const int card : cards) Text(CardName(card));
  CloseList();
}

void JsonWriter::Number(double number) {
  Digits digits;
  Raw(DigitsOf(number, digits));
}

void JsonWriter::Raw(std::string_view json) {
  Separate();
  text_ += json;
}

std::string JsonWriter::TakeLine() {
  text_ += '\n';
  return std::exchange(text_, {});
}

// A value ends in none of these.
void JsonWriter::Separate() {
  constexpr std::string_view kBeforeFirst = "{[:";
  if (!text_.empty() && kBeforeFirst.find(text_.back()) == kBeforeFirst.npos) text_ += ',';
}

void JsonWriter::Open(char bracket) {
  Separate();
  text_ += bracket;
}

}  // namespace pokermath
