// The text of a range with weights.
//
// Hands of two cards are written as runs of whole classes, each with its weight behind it, and as
// single holdings. Omaha hands are written as one list for every weight, the one of whole weight
// first: text that OmahaSpec writes, in a block of its own if it has several pieces, for an
// exclusion in it must not reach the lists in front of it.

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <utility>

#include "cards/omaha_sizes.h"
#include "platform/text.h"
#include "pokermath/hand_range.h"
#include "ranges/hand_classes.h"
#include "ranges/percent_gap.h"
#include "ranges/weight_text.h"

namespace pokermath {
namespace {

// To find patterns takes long, the longer the more cards there are, so that is done for so many
// weights; of the others single hands are listed.
template <int cards>
constexpr std::size_t kMostPatternLists = std::size_t{16} >> 2 * (cards - 4);
static_assert(kMostPatternLists<kOmahaHandSizes.back()> > 0);

// Higher ranks first, as players say it.
std::string HandText(CardSet hand) {
  std::vector<int> cards(hand.begin(), hand.end());
  std::ranges::sort(cards, std::greater(),
                    [](int card) { return 4 * GetCardRank(card) + card / 13; });
  std::string text;
  for (const int card : cards) text += CardName(card);
  return text;
}

void AddPiece(std::string& text, const std::string& piece) {
  if (!text.empty() && !piece.empty()) text += ',';
  text += piece;
}

// What text can say: hands of the game with weights that there are.
std::vector<WeightedHand> HandsOf(const HandRange& range) {
  const GameRules& rules = RulesOf(range.game());
  const CardSet deck = rules.Deck();
  std::vector<WeightedHand> hands;
  std::ranges::copy_if(range.hands(), std::back_inserter(hands), [&](const WeightedHand& hand) {
    return hand.cards.size() == rules.hand_size && (hand.cards - deck).empty() && hand.weight > 0 &&
           hand.weight <= kWholeWeight;
  });
  return hands;
}

// All hands but those with dead cards.
std::string TextOfEvery(const HandRange& range) {
  std::string text = "random";
  for (const int card : RulesOf(range.game()).Deck() - range.EveryOf()) {
    text += "!" + CardName(card) + "Xx";
  }
  return text;
}

std::string TwoCardText(const HandRange& range) {
  if (range.IsEvery()) return TextOfEvery(range);
  const std::vector<WeightedHand> hands = HandsOf(range);
  using ByCell = std::array<int, kHandClasses>;
  const auto cell_of = [](const WeightedHand& hand) {
    const int low = *hand.cards.begin();
    return static_cast<std::size_t>(CellOf(low, *(hand.cards - CardSet{low}).begin()));
  };
  // The weight of a cell is that of all its holdings, if they have the same.
  ByCell weights{}, counts{};
  for (const WeightedHand& hand : hands) {
    const std::size_t cell = cell_of(hand);
    weights[cell] = hand.weight;
    ++counts[cell];
  }
  for (const WeightedHand& hand : hands) {
    const std::size_t cell = cell_of(hand);
    const bool whole = counts[cell] == HoldingsIn(static_cast<int>(cell));
    if (!whole || weights[cell] != hand.weight) weights[cell] = 0;
  }
  std::map<std::size_t, std::string> holdings;
  for (const WeightedHand& hand : hands) {
    const std::size_t cell = cell_of(hand);
    if (weights[cell] != 0) continue;
    std::string piece = HandText(hand.cards);
    if (hand.weight != kWholeWeight) piece += ":" + WeightText(hand.weight, WeightUnit::kOne);
    AddPiece(holdings[cell], piece);
  }
  std::string text = ToUtf8(RangeText(weights, L"o"));
  for (const auto& [cell, pieces] : holdings) AddPiece(text, pieces);
  return text;
}

template <int cards>
class OmahaText {
 public:
  static std::string Of(const HandRange& range) {
    if (range.IsEvery()) return PatternText(Every(range.EveryOf()));
    OmahaText text;
    for (const auto& [hand, weight] : HandsOf(range)) text.lists_[weight].push_back(hand);
    return text.Write();
  }

 private:
  using Hands = std::vector<CardSet>;

  static std::string PatternText(const OmahaSpec<cards>& hands) {
    const CString text = hands.MakeString();
    return std::string(text.begin(), text.end());
  }

  static OmahaSpec<cards> Every(CardSet of) {
    OmahaSpec<cards> all, live;
    all.MakeRandom();
    const CardSet dead = RulesOf(Game::kOmaha).Deck() - of;
    all.Exclude(std::vector<int>(dead.begin(), dead.end()), live);
    return live;
  }

  std::string Write() {
    std::vector<std::size_t> sizes;
    for (const auto& [weight, hands] : lists_) sizes.push_back(hands.size());
    std::ranges::sort(sizes, std::greater());
    const std::size_t listed = sizes.size() > kMostPatternLists<cards>
                                   ? sizes[kMostPatternLists<cards>]
                                   : 1;  // a single hand is what it is
    for (const auto& [weight, hands] : lists_) {
      AddList(weight, hands.size() > listed ? PatternText(SetOf(hands)) : ListText(hands));
    }
    return text_;
  }

  static OmahaSpec<cards> SetOf(const Hands& hands) {
    OmahaSpec<cards> set;
    for (const CardSet hand : hands) {
      typename OmahaSpec<cards>::Hand codes;
      std::ranges::copy(hand, codes.begin());
      set.Insert(codes);
    }
    return set;
  }

  static std::string ListText(const Hands& hands) {
    std::string text;
    for (const CardSet hand : hands) AddPiece(text, HandText(hand));
    return text;
  }

  void AddList(int weight, std::string list) {
    // What would be read as the percent behind the last one.
    const std::string_view last = std::string_view(text_).substr(text_.rfind(',') + 1);
    const std::string_view last_piece = last.substr(0, std::min(last.find('@'), last.find("[/")));
    if (CloseGap(last_piece, list.substr(0, list.find(',')))) list = WithoutWholePercent(list);
    if (weight != kWholeWeight) {
      std::string percent = WeightText(weight, WeightUnit::kPercent);
      if (list.find(',') == list.npos) {
        list += "@" + percent;
      } else {
        // With a point it cannot be taken for two ranks, like [52].
        if (percent.find('.') == percent.npos) percent += ".0";
        list = "[" + percent + "]" + list + "[/" + percent + "]";
      }
    }
    AddPiece(text_, list);
  }

  std::map<int, Hands, std::greater<>> lists_;  // by weight, the whole one first
  std::string text_;
};

}  // namespace

std::string RangeText(const HandRange& range) {
  const GameRules& rules = RulesOf(range.game());
  if (!rules.IsOmaha()) return TwoCardText(range);
  return ForOmahaSize(rules.hand_size, [&](auto cards) { return OmahaText<cards>::Of(range); });
}

}  // namespace pokermath
