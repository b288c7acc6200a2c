#include "ranges/omaha/term.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <utility>

#include "ranges/omaha/order.h"

namespace pokermath {
namespace {

// Runs of three and more with a dash, "T-A"; the highest rank first.
std::string RanksText(RankSet ranks) {
  std::string text;
  for (int high = 12; high >= 0; --high) {
    if ((ranks >> high & 1) == 0) continue;
    int low = high;
    while (low > 0 && (ranks >> (low - 1) & 1) != 0) --low;
    if (high - low < 2) {
      text += kRankLetters[static_cast<std::size_t>(high)];
      continue;
    }
    text += kRankLetters[static_cast<std::size_t>(low)];
    text += '-';
    text += kRankLetters[static_cast<std::size_t>(high)];
    high = low;
  }
  return text;
}

std::string PercentText(double percent) {
  char text[32];
  const auto end =
      std::to_chars(std::begin(text), std::end(text), percent, std::chars_format::fixed).ptr;
  return std::string(text, end) + "%";
}

template <int cards>
std::vector<NamedSplits> NameSplits() {
  std::map<Splits, std::string> texts;
  for (unsigned shapes = 1; shapes < 1U << kSuitShapes<cards>.size(); ++shapes) {
    NamedSplits named = {};
    for (std::size_t i = 0; i < kSuitShapes<cards>.size(); ++i) {
      if ((shapes >> i & 1) == 0) continue;
      named.splits |= kSuitShapes<cards>[i].splits;
      (named.text += ":") += kSuitShapes<cards>[i].letters;
    }
    if (named.splits == kAllSplits<cards>) named.text.clear();
    std::string& text = texts.try_emplace(named.splits, named.text).first->second;
    if (named.text.size() < text.size()) text = named.text;
  }
  std::vector<NamedSplits> all;
  for (const auto& [splits, text] : texts) all.push_back({splits, text});
  std::ranges::stable_sort(all, {}, [](const NamedSplits& named) {
    return std::pair(-std::popcount(named.splits), named.text.size());
  });
  return all;
}

}  // namespace

std::string PatternPlace::Text() const {
  std::string text = ranks == kAllRanks ? "x" : RanksText(ranks);
  if (text.size() > 1) text = "[" + text + "]";
  if (suit != kAnySuit) text += kSuitLetters[static_cast<std::size_t>(suit)];
  return text;
}

template <int cards>
const std::vector<NamedSplits>& AllNamedSplits() {
  static const std::vector<NamedSplits> kNamed = NameSplits<cards>();
  return kNamed;
}

template <int cards>
OmahaSpec<cards> OmahaTerm<cards>::Hands() const {
  OmahaSpec<cards> hands;
  if (*this == OmahaTerm()) {
    hands.MakeRandom();
  } else if (band) {
    if constexpr (HasOmahaOrder(cards)) AddBand(*band, splits, hands);
  } else {
    Budget budget(0);
    WalkPattern(*this, budget, [&](int number, std::uint64_t row) {
      OmahaBits::AddRow(hands, number, row);
      return true;
    });
  }
  return hands;
}

template <int cards>
std::string OmahaTerm<cards>::Text() const {
  if (*this == OmahaTerm()) return "random";
  std::string text;
  if (band) {
    if (band->from > 0) text = PercentText(band->from) + "-";
    text += PercentText(band->to);
  } else {
    auto places = pattern;
    std::ranges::stable_sort(places, [](const PatternPlace& a, const PatternPlace& b) {
      if ((a.ranks == kAllRanks) != (b.ranks == kAllRanks)) return b.ranks == kAllRanks;
      return a.ranks != b.ranks ? a.ranks > b.ranks : a.suit > b.suit;
    });
    for (const PatternPlace& place : places) text += place.Text();
  }
  const auto named = std::ranges::find(AllNamedSplits<cards>(), splits, &NamedSplits::splits);
  return text + named->text;
}

#define POKERMATH_TERM(cards)       \
  template struct OmahaTerm<cards>; \
  template const std::vector<NamedSplits>& AllNamedSplits<cards>();
POKERMATH_OMAHA_HAND_SIZES(POKERMATH_TERM)

}  // namespace pokermath
