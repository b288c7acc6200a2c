#include "calculator/suit_symmetry.h"

#include <algorithm>
#include <numeric>

namespace pokermath {
namespace {

bool IsKept(const HandRange& range, const SuitRenaming& renaming) {
  if (range.IsEvery()) return renaming.Of(range.EveryOf()) == range.EveryOf();
  return std::ranges::all_of(range.hands(), [&](const WeightedHand& hand) {
    return range.WeightOf(renaming.Of(hand.cards)) == hand.weight;
  });
}

bool IsKept(const CheckedQuestion& question, const SuitRenaming& renaming) {
  for (const CardSet known : {question.board(), question.dead()}) {
    if (renaming.Of(known) != known) return false;
  }
  const auto range_is_kept = [&](const Side& side) { return IsKept(side.range, renaming); };
  return std::ranges::all_of(question.players(), range_is_kept) &&
         std::ranges::all_of(question.folded(), range_is_kept);
}

}  // namespace

SuitSymmetry::SuitSymmetry(const CheckedQuestion& question) {
  std::array<int, 4> to{};
  std::iota(to.begin(), to.end(), 0);
  do {
    const SuitRenaming renaming(to);
    if (IsKept(question, renaming)) renamings_.push_back(renaming);
  } while (std::ranges::next_permutation(to).found);
}

CardSet SuitSymmetry::FirstOf(CardSet cards) const {
  CardSet first = cards;
  for (const SuitRenaming& renaming : renamings_) first = std::min(first, renaming.Of(cards));
  return first;
}

std::vector<CardSet> SuitSymmetry::AlikeTo(CardSet cards) const {
  std::vector<CardSet> alike;
  for (const SuitRenaming& renaming : renamings_) alike.push_back(renaming.Of(cards));
  std::ranges::sort(alike);
  alike.erase(std::unique(alike.begin(), alike.end()), alike.end());
  return alike;
}

}  // namespace pokermath
