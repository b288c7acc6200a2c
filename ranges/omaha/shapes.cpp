#include "ranges/omaha/shapes.h"

#include "ranges/omaha/bits.h"

namespace pokermath {
namespace {

template <int cards>
auto SortBySplit() {
  std::array<OmahaSpec<cards>, kSuitSplits<cards>.size()> sorted;
  ForEachOmahaHand<cards>([&](int number, const typename OmahaSpec<cards>::Hand& hand) {
    OmahaBits::AddRow(OmahaBits::Of(sorted[SplitOf<cards>(hand)]), number, 1);
  });
  return sorted;
}

}  // namespace

template <int cards>
const OmahaSpec<cards>& HandsOfSplit(std::size_t split) {
  static const auto kSorted = SortBySplit<cards>();
  return kSorted[split];
}

template <int cards>
OmahaSpec<cards> HandsOfSplits(Splits splits) {
  OmahaSpec<cards> hands;
  for (std::size_t split = 0; split < kSuitSplits<cards>.size(); ++split) {
    if ((splits >> split & 1) != 0) hands.Unite(HandsOfSplit<cards>(split));
  }
  return hands;
}

template const OmahaSpec<4>& HandsOfSplit<4>(std::size_t);
template const OmahaSpec<5>& HandsOfSplit<5>(std::size_t);
template OmahaSpec<4> HandsOfSplits<4>(Splits);
template OmahaSpec<5> HandsOfSplits<5>(Splits);

}  // namespace pokermath
