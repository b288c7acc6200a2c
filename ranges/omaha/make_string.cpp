// Text of an Omaha range: the shortest of several ways to say it.
//
// A range is said as a base with patterns added to it and others taken off: the base is nothing,
// every hand, the narrowest pattern of ranks, or runs of the strength order. Cards that no hand
// holds may be dead ones: then hands with them are of no account while patterns are sought, and go
// at the end.

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

#include "ranges/omaha/cover.h"
#include "ranges/omaha/strength_run.h"

namespace pokermath {
namespace {

// Fewer hands are better said by patterns than by a percentage.
constexpr int kFewHands = 500;
constexpr int kNearlyAllRanks = 10;

template <int cards>
class OmahaWriter {
 public:
  explicit OmahaWriter(const OmahaSpec<cards>& range) : range_(range) {}

  std::string Write() {
    if (range_.Empty()) return "";
    OmahaSpec<cards> all;
    all.MakeRandom();
    if (range_ == all) return "random";
    const std::vector<int> dead = DeadCards();
    const OmahaSpec<cards> no_dead;
    const OmahaSpec<cards> with_dead = HandsWith(dead);
    const std::string dead_text = DeadText(dead);
    if (range_.Count() > kFewHands) {
      runs_ = FindStrengthRuns(range_, with_dead);
      for (const StrengthRun<cards>& run : runs_) {
        const std::string text = TakenOff(run.text, dead_text);
        if (IsSame(run.hands, with_dead) && (!best_ || text.size() < best_->size())) best_ = text;
      }
      if (best_ && dead.empty()) return *best_;
    }
    TryBases(no_dead, "");
    if (!dead.empty()) TryBases(with_dead, dead_text);
    return *best_;
  }

 private:
  // The text with exclusions behind it; off a list they are taken by a piece of their own.
  static std::string TakenOff(std::string text, const std::string& exclusions) {
    if (!exclusions.empty() && text.find(',') != text.npos) text += ',';
    return text + exclusions;
  }

  // Cards that no hand holds while some hand holds another of their rank.
  std::vector<int> DeadCards() const {
    std::array<bool, 52> held{};
    for (int card = 0; card < 52; ++card) held[static_cast<std::size_t>(card)] = Holds(card);
    std::vector<int> dead;
    for (std::size_t card = 0; card < 52; ++card) {
      const std::size_t rank = card % 13;
      const bool rank_held = held[rank] || held[rank + 13] || held[rank + 26] || held[rank + 39];
      if (rank_held && !held[card]) dead.push_back(static_cast<int>(card));
    }
    return dead;
  }

  static OmahaPattern<cards> PatternWith(int card) {
    OmahaPattern<cards> pattern{};
    pattern[0] = {static_cast<RankSet>(1U << card % 13), card / 13};
    return pattern;
  }

  // Whether any hand of the range holds a card.
  bool Holds(int card) const {
    return !WalkPattern<cards, false>(
        CardsOf<cards>(PatternWith(card)), [this](int number, std::uint64_t row) {
          return OmahaBits::Common(OmahaBits::Of(range_), number, row) == 0;
        });
  }

  static OmahaSpec<cards> HandsWith(const std::vector<int>& any_of) {
    OmahaSpec<cards> hands;
    for (const int card : any_of) {
      WalkPattern<cards, false>(CardsOf<cards>(PatternWith(card)),
                                [&](int number, std::uint64_t row) {
                                  OmahaBits::AddRow(OmahaBits::Of(hands), number, row);
                                  return true;
                                });
    }
    return hands;
  }

  bool IsSame(OmahaSpec<cards> hands, const OmahaSpec<cards>& free) const {
    hands.Subtract(free);
    return hands == range_;
  }

  // "!Ahxxx![T-K]cxxx".
  static std::string DeadText(const std::vector<int>& dead) {
    std::string text;
    for (int suit = 3; suit >= 0; --suit) {
      OmahaPiece<cards> piece;
      piece.pattern[0] = {0, suit};
      RankSet& ranks = piece.pattern[0].ranks;
      for (const int card : dead) {
        if (card / 13 == suit) ranks = static_cast<RankSet>(ranks | 1U << card % 13);
      }
      if (ranks != 0) text += "!" + piece.Text(Exclusions::kNone);
    }
    return text;
  }

  // Hands that are free are of no account; what takes them off comes at the end.
  void TryBases(const OmahaSpec<cards>& free, const std::string& off) {
    for (const StrengthRun<cards>& run : runs_) Try(run.text, run.hands, free, off);
    TryNarrowest(free, off);
    Try("", OmahaSpec<cards>(), free, off);
    if (2 * (range_.Count() + free.Count()) < OmahaSpec<cards>::kAllHands) return;
    OmahaSpec<cards> all;
    all.MakeRandom();
    Try("random", all, free, off);
  }

  // All hands of the ranks and splits that the range has, if most of them are in it; and those of
  // a pattern that is nearly as narrow, but shorter.
  void TryNarrowest(const OmahaSpec<cards>& free, const std::string& off) {
    const OmahaPiece<cards> narrowest = Narrowest();
    OmahaPiece<cards> shorter = narrowest;
    for (OmahaAtom& atom : shorter.pattern) {
      if (std::popcount(atom.ranks) >= kNearlyAllRanks) atom.ranks = kAllRanks;
    }
    if (std::popcount(shorter.splits) > 2) shorter.splits = kAllSplits<cards>;
    for (const OmahaPiece<cards>& piece : {shorter, narrowest}) {
      const std::string text = piece.Text(Exclusions::kAllowed);
      if (text == OmahaPiece<cards>().Text(Exclusions::kAllowed)) continue;
      const OmahaSpec<cards> hands = ParseOmahaRange<cards>(text).range;
      if (hands.Count() < 2 * range_.Count()) Try(text, hands, free, off);
    }
  }

  // The ranks that every hand has; for the others, those of the lowest card up to the highest.
  OmahaPiece<cards> Narrowest() const {
    const auto hands = range_.Hands();
    std::array<int, 13> common;
    common.fill(cards);
    Splits splits = 0;
    for (const auto& hand : hands) {
      std::array<int, 13> counts{};
      for (const int card : hand) ++counts[static_cast<std::size_t>(card % 13)];
      for (std::size_t rank = 0; rank < 13; ++rank) {
        common[rank] = std::min(common[rank], counts[rank]);
      }
      splits |= 1U << SplitOf<cards>(hand);
    }
    OmahaPiece<cards> piece;
    piece.splits = NameableSplits<cards>(splits, kAllSplits<cards>, false, Exclusions::kAllowed);
    for (OmahaAtom& atom : piece.pattern) atom.ranks = 0;
    for (const auto& hand : hands) AddRanks(hand, common, piece);
    return piece;
  }

  static void AddRanks(const typename OmahaSpec<cards>::Hand& hand, std::array<int, 13> common,
                       OmahaPiece<cards>& piece) {
    std::array<int, cards> ranks;
    std::ranges::transform(hand, ranks.begin(), [](int card) { return card % 13; });
    std::ranges::sort(ranks);
    std::size_t of_all = 0;
    auto of_some = static_cast<std::size_t>(std::accumulate(common.begin(), common.end(), 0));
    for (const int rank : ranks) {
      const bool in_all = common[static_cast<std::size_t>(rank)]-- > 0;
      RankSet& set = piece.pattern[in_all ? of_all++ : of_some++].ranks;
      set = static_cast<RankSet>(set | 1U << rank);
    }
  }

  // Keeps the text if it is shorter than the best so far.
  void Try(std::string text, const OmahaSpec<cards>& base, const OmahaSpec<cards>& free,
           const std::string& off) {
    if (Longest(text.size() + off.size()) == 0) return;
    OmahaSpec<cards> more = range_;
    more.Subtract(base);
    OmahaSpec<cards> allowed = range_;
    allowed.Unite(free);
    OmahaSpec<cards> less = base;
    less.Subtract(allowed);
    OmahaSpec<cards> forbidden;
    forbidden.MakeRandom();
    forbidden.Subtract(range_);

    const auto longest = [&] { return Longest(text.size() + off.size()); };
    const auto taken_off = CoverOmaha(less, forbidden, Exclusions::kNone, longest());
    if (!taken_off) return;
    std::string exclusions;
    for (const std::string& piece : *taken_off) exclusions += "!" + piece;
    text = TakenOff(std::move(text), exclusions);
    const auto added = CoverOmaha(more, allowed, Exclusions::kAllowed, longest());
    if (!added) return;
    for (const std::string& piece : *added) {
      if (!text.empty()) text += ',';
      text += piece;
    }
    text = TakenOff(std::move(text), off);
    if (best_ && text.size() >= best_->size()) return;
    best_ = std::move(text);
  }

  // What is left for text before it is no shorter than the best.
  std::size_t Longest(std::size_t size) const {
    if (!best_) return std::string::npos;
    return best_->size() > size ? best_->size() - size : 0;
  }

  const OmahaSpec<cards>& range_;
  std::vector<StrengthRun<cards>> runs_;
  std::optional<std::string> best_;
};

}  // namespace

template <int cards>
CString OmahaSpec<cards>::MakeString() const {
  const std::string text = OmahaWriter<cards>(*this).Write();
  return CString(text.begin(), text.end());
}

template CString OmahaSpec<4>::MakeString() const;
template CString OmahaSpec<5>::MakeString() const;

}  // namespace pokermath
