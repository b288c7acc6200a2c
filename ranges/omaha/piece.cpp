#include "ranges/omaha/piece.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace pokermath {
namespace {

// Shapes and the splits that they are together.
template <int cards>
std::pair<Splits, std::string> Named(unsigned shapes) {
  std::pair<Splits, std::string> named;
  for (std::size_t i = 0; i < kSuitShapes<cards>.size(); ++i) {
    if ((shapes >> i & 1) == 0) continue;
    named.first |= kSuitShapes<cards>[i].splits;
    named.second += ":";
    named.second += kSuitShapes<cards>[i].letters;
  }
  return named;
}

// The shortest text for every set of splits: shapes, without others if that is allowed.
template <int cards>
class ShapesTexts {
 public:
  explicit ShapesTexts(Exclusions exclusions) {
    constexpr unsigned kNames = 1U << kSuitShapes<cards>.size();
    const std::string any_hand(cards, 'x');
    for (unsigned in = 1; in < kNames; ++in) {
      const auto [in_splits, in_text] = Named<cards>(in);
      Add(in_splits, in_splits == kAllSplits<cards> ? "" : in_text);
      for (unsigned out = 1; out < kNames && exclusions == Exclusions::kAllowed; ++out) {
        const auto [out_splits, out_text] = Named<cards>(out);
        Add(in_splits & ~out_splits,
            (in_splits == kAllSplits<cards> ? "" : in_text) + "!" + any_hand + out_text);
      }
    }
  }

  const std::string* Text(Splits splits) const {
    return texts_[splits] ? &*texts_[splits] : nullptr;
  }

 private:
  void Add(Splits splits, const std::string& text) {
    std::optional<std::string>& place = texts_[splits];
    if (splits != 0 && (!place || text.size() < place->size())) place = text;
  }

  std::array<std::optional<std::string>, kAllSplits<cards> + 1> texts_;
};

}  // namespace

template <int cards>
const std::string* ShapesText(Splits splits, Exclusions exclusions) {
  static const ShapesTexts<cards> kWithout(Exclusions::kNone), kWith(Exclusions::kAllowed);
  return (exclusions == Exclusions::kAllowed ? kWith : kWithout).Text(splits);
}

template <int cards>
std::string OmahaPiece<cards>::Text(Exclusions exclusions) const {
  OmahaPattern<cards> sorted = pattern;
  std::ranges::stable_sort(sorted, [](const OmahaAtom& a, const OmahaAtom& b) {
    const bool a_any = a.ranks == kAllRanks;
    const bool b_any = b.ranks == kAllRanks;
    if (a_any != b_any) return b_any;
    return a.ranks != b.ranks ? a.ranks > b.ranks : a.suit > b.suit;
  });
  std::string text;
  for (const OmahaAtom& atom : sorted) text += atom.Text();
  return text + *ShapesText<cards>(splits, exclusions);
}

template <int cards>
Splits NameableSplits(Splits within, Splits among, bool most, Exclusions exclusions) {
  Splits best = 0;
  for (Splits splits = 1; splits <= kAllSplits<cards>; ++splits) {
    if ((splits & ~among) != 0 || (within & ~splits) != 0) continue;
    if (ShapesText<cards>(splits, exclusions) == nullptr) continue;
    const int more = std::popcount(splits) - std::popcount(best);
    if (best == 0 || (most ? more > 0 : more < 0)) best = splits;
  }
  return best;
}

template const std::string* ShapesText<4>(Splits, Exclusions);
template const std::string* ShapesText<5>(Splits, Exclusions);
template struct OmahaPiece<4>;
template struct OmahaPiece<5>;
template Splits NameableSplits<4>(Splits, Splits, bool, Exclusions);
template Splits NameableSplits<5>(Splits, Splits, bool, Exclusions);

}  // namespace pokermath
