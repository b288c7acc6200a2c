// Any bytes as range text: either a one-line error and an empty range, or a range of different
// holdings whose written text reads back to the same classes; for Omaha and with weights, to the
// same hands.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "pokermath/hand_range.h"
#include "pokermath/omaha_ranges.h"
#include "pokermath/ranges.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// Writing five cards and more may take seconds where very many hands are in no order.
template <int cards>
bool IsFastToWrite(const pokermath::OmahaSpec<cards>& range) {
  constexpr int kFewHands = 300;
  return cards == 4 || range.Count() <= kFewHands;
}

template <int cards>
void TryOmaha(std::string_view text) {
  const auto read = pokermath::ParseOmahaRange<cards>(text);
  if (!read.error.empty()) {
    Require(read.range.Empty() && read.position <= text.size());
    return Require(read.error.find('\n') == std::string::npos);
  }
  if (!IsFastToWrite(read.range)) return;
  const CString written = read.range.MakeString();
  const auto again = pokermath::ParseOmahaRange<cards>(std::string(written.begin(), written.end()));
  Require(again.error.empty() && again.range == read.range);
}

void TryWeights(pokermath::Game game, std::string_view text) {
  const auto read = pokermath::ReadRange(game, text);
  if (!read) {
    Require(read.error().position <= text.size());
    return Require(read.error().text.find('\n') == std::string::npos);
  }
  for (const std::string& warning : read->warnings) Require(warning.find('\n') == warning.npos);
  const pokermath::GameRules& rules = pokermath::RulesOf(game);
  constexpr std::size_t kFewHands = 300;
  if (rules.IsOmaha() && read->range.size() > kFewHands) return;
  for (const auto& [cards, weight] : read->range.hands()) {
    Require(cards.size() == rules.hand_size && (cards - rules.Deck()).empty());
    Require(weight >= 1 && weight <= pokermath::kWholeWeight);
  }
  // Five cards and more are written by what writes four, in ten times the time.
  if (rules.hand_size > 4) return;
  const auto again = pokermath::ReadRange(game, pokermath::RangeText(read->range));
  Require(again && again->range == read->range && again->warnings.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using pokermath::ParseRange;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  TryOmaha<4>(text);
  // A long text may be allowed some seconds of work.
  constexpr std::size_t kShortText = 200;
  if (size <= kShortText) TryOmaha<5>(text);
  // Shapes of their own, and no percentages.
  constexpr std::size_t kOnePiece = 30;
  if (size <= kOnePiece) TryOmaha<6>(text);
  TryWeights(pokermath::Game::kHoldem, text);
  TryWeights(pokermath::Game::kShortDeck, text);
  TryWeights(pokermath::Game::kOmaha, text);
  // Without weights that is ParseOmahaRange again.
  const bool has_weights = text.find('@') != text.npos || text.find("[/") != text.npos;
  if (size <= kShortText && has_weights) TryWeights(pokermath::Game::kOmaha5, text);
  const auto read = ParseRange(text);
  if (!read.error.empty()) {
    Require(read.range.combinations().empty() && read.position <= size);
    Require(read.error.find('\n') == std::string::npos);
    return 0;
  }
  for (const auto& [first, second] : read.range.combinations()) {
    Require(first >= 0 && first < 52 && second >= 0 && second < 52 && first != second);
    Require(!read.range.combinations().contains({second, first}));
  }
  const CString written = read.range.MakeString();
  const auto again =
      ParseRange(std::string(written.begin(), written.end()), {.bare_offsuit = true});
  Require(again.error.empty() && again.range.MakeString() == written);
  Require(ParseRange(pokermath::FormatRange(read.range)).range == read.range);
  return 0;
}
