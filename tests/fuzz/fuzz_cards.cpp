// Any text is either cards, all different, that read back from their names, or one line of error.

#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>

#include "pokermath/cards.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [cards, error] =
      pokermath::ParseCards(std::string_view(reinterpret_cast<const char*>(data), size));
  if (!error.empty()) {
    Require(cards.empty());
    for (const char c : error) Require(static_cast<unsigned char>(c) >= ' ' && c != '\x7F');
    return 0;
  }
  std::string names;
  for (const int card : cards) {
    Require(card >= 0 && card < 52);
    names += pokermath::CardName(card);
  }
  Require(std::set<int>(cards.begin(), cards.end()).size() == cards.size());
  Require(pokermath::ParseCards(names).cards == cards);
  return 0;
}
