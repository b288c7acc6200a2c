// Cards by rank and suit, on the hands themselves, and both covers as text.

#include "ranges/omaha/cover.h"

#include <map>
#include <numeric>

#include "pokermath/cards.h"

namespace pokermath {
namespace {

template <int cards>
class SuitCover {
 public:
  SuitCover(OmahaSpec<cards>& wanted, const OmahaSpec<cards>& allowed, Exclusions exclusions)
      : rest_(OmahaBits::Of(wanted)), exclusions_(exclusions) {
    allowed_.emplace(kAllSplits<cards>, allowed);
  }

  std::vector<OmahaPiece<cards>> Pieces(std::size_t longest) {
    std::vector<OmahaPiece<cards>> pieces;
    for (std::size_t word = rest_.size(); word-- > 0;) {
      while (rest_[word] != 0) {
        if (!work_.Left() || pieces.size() * (cards + 1) > longest) return pieces;
        const int number = static_cast<int>(64 * word) + 63 - std::countl_zero(rest_[word]);
        pieces.push_back(CoverHand(OmahaHandOf<cards>(number)));
        Remove(pieces.back());
      }
    }
    return pieces;
  }

 private:
  static constexpr std::int64_t kMostWork = cards == 4 ? 2'000'000 : 5'000'000;

  struct Order {
    bool low_first, suits_first, own_split;
  };

  OmahaPiece<cards> CoverHand(const typename OmahaSpec<cards>::Hand& hand) {
    OmahaPiece<cards> best;
    int best_gain = 0;
    const int all =
        std::accumulate(rest_.begin(), rest_.end(), 0,
                        [](int count, std::uint64_t word) { return count + std::popcount(word); });
    for (unsigned order = 0; order < 8 && best_gain < all; ++order) {
      const OmahaPiece<cards> piece =
          Widen(hand, {(order & 1) == 0, (order & 2) == 0, (order & 4) != 0});
      const int gain = Gain(piece);
      if (gain <= best_gain) continue;
      best = piece;
      best_gain = gain;
    }
    Trim(best, exclusions_, [this](const OmahaPiece<cards>& piece) { return Gain(piece); });
    return best;
  }

  OmahaPiece<cards> Widen(typename OmahaSpec<cards>::Hand hand, const Order& order) {
    std::ranges::sort(hand, {}, [&](int card) { return order.low_first ? card % 13 : -card % 13; });
    OmahaPiece<cards> piece;
    for (std::size_t i = 0; i < cards; ++i) {
      piece.pattern[i] = {static_cast<RankSet>(1U << hand[i] % 13), hand[i] / 13};
    }
    const Splits own = 1U << SplitOf<cards>(hand);
    if (order.own_split) {
      piece.splits = NameableSplits<cards>(own, kAllSplits<cards>, false, exclusions_);
    }
    for (std::size_t i = 0; i < cards; ++i) {
      if (order.suits_first) WidenSuit(piece, i);
      WidenRanks(piece, i);
      if (!order.suits_first) WidenSuit(piece, i);
    }
    if (order.own_split) WidenSplits(piece);
    return piece;
  }

  void WidenSuit(OmahaPiece<cards>& piece, std::size_t atom) {
    OmahaPiece<cards> wider = piece;
    wider.pattern[atom].suit = kAnySuit;
    if (Fits(wider)) piece = wider;
  }

  void WidenRanks(OmahaPiece<cards>& piece, std::size_t atom) {
    OmahaPiece<cards> other = piece;
    piece.pattern[atom].ranks = WidestRanks(piece.pattern[atom].ranks, [&](RankSet ranks) {
      other.pattern[atom].ranks = ranks;
      return Fits(other);
    });
  }

  void WidenSplits(OmahaPiece<cards>& piece) {
    OmahaPiece<cards> wider = piece;
    for (wider.splits = kAllSplits<cards>; wider.splits > 0; --wider.splits) {
      const bool more = (piece.splits & ~wider.splits) == 0 && wider.splits != piece.splits;
      if (!more || ShapesText<cards>(wider.splits, exclusions_) == nullptr) continue;
      if (Fits(wider)) piece = wider;
    }
  }

  bool Fits(const OmahaPiece<cards>& piece) {
    const auto& allowed = OmahaBits::Of(AllowedWith(piece.splits));
    return work_.Walk<cards, false>(CardsOf<cards>(piece.pattern),
                                    [&](int number, std::uint64_t row) {
                                      return OmahaBits::Common(allowed, number, row) == row;
                                    });
  }

  // What is allowed when only hands of some splits are meant.
  const OmahaSpec<cards>& AllowedWith(Splits splits) {
    const auto found = allowed_.find(splits);
    if (found != allowed_.end()) return found->second;
    OmahaSpec<cards> allowed = HandsOfSplits<cards>(kAllSplits<cards> & ~splits);
    allowed.Unite(allowed_.at(kAllSplits<cards>));
    return allowed_.emplace(splits, std::move(allowed)).first->second;
  }

  // New hands.
  int Gain(const OmahaPiece<cards>& piece) {
    int gain = 0;
    work_.Walk<cards, false>(CardsOf<cards>(piece.pattern), [&](int number, std::uint64_t row) {
      const std::uint64_t common = OmahaBits::Common(rest_, number, row);
      gain += std::popcount(RowOfSplits<cards>(piece.splits, number, common));
      return true;
    });
    return gain;
  }

  void Remove(const OmahaPiece<cards>& piece) {
    work_.Walk<cards, false>(CardsOf<cards>(piece.pattern), [&](int number, std::uint64_t row) {
      OmahaBits::RemoveRow(rest_, number, RowOfSplits<cards>(piece.splits, number, row));
      return true;
    });
  }

  std::vector<std::uint64_t>& rest_;
  Exclusions exclusions_;
  std::map<Splits, OmahaSpec<cards>> allowed_;
  Work work_{kMostWork};
};

template <int cards>
void TakeOff(OmahaSpec<cards>& hands, const OmahaPiece<cards>& piece) {
  WalkPattern<cards, false>(CardsOf<cards>(piece.pattern), [&](int number, std::uint64_t row) {
    OmahaBits::RemoveRow(OmahaBits::Of(hands), number,
                         RowOfSplits<cards>(piece.splits, number, row));
    return true;
  });
}

// Drops pieces without which others and the single hands have all that is wanted: a piece that was
// found later may be wider. Of many pieces that takes long.
template <int cards>
void DropSpare(OmahaSpec<cards> wanted, const OmahaSpec<cards>& single,
               std::vector<OmahaPiece<cards>>& pieces) {
  constexpr std::size_t kMostPieces = 12;
  if (pieces.size() > kMostPieces) return;
  wanted.Subtract(single);
  for (std::size_t i = 0; i < pieces.size();) {
    OmahaSpec<cards> left = wanted;
    for (const OmahaPiece<cards>& piece : pieces) {
      if (&piece != &pieces[i]) TakeOff(left, piece);
    }
    if (left.Empty()) {
      pieces.erase(pieces.begin() + static_cast<std::ptrdiff_t>(i));
    } else {
      ++i;
    }
  }
}

}  // namespace

template <int cards>
std::vector<OmahaPiece<cards>> CoverBySuits(OmahaSpec<cards>& wanted,
                                            const OmahaSpec<cards>& allowed, Exclusions exclusions,
                                            std::size_t longest) {
  return SuitCover<cards>(wanted, allowed, exclusions).Pieces(longest);
}

template <int cards>
std::optional<std::vector<std::string>> CoverOmaha(OmahaSpec<cards> wanted,
                                                   const OmahaSpec<cards>& allowed,
                                                   Exclusions exclusions, std::size_t longest) {
  const OmahaSpec<cards> all_wanted = wanted;
  std::size_t length = 0;
  const auto add = [&](const OmahaPiece<cards>& piece) {
    length += piece.Text(exclusions).size() + 1;
  };
  std::vector<OmahaPiece<cards>> pieces = CoverByRanks(wanted, allowed, exclusions, longest);
  std::ranges::for_each(pieces, add);
  for (const OmahaPiece<cards>& piece : pieces) TakeOff(wanted, piece);
  if (length > longest) return std::nullopt;
  const auto by_suits = CoverBySuits(wanted, allowed, exclusions, longest - length);
  std::ranges::for_each(by_suits, add);
  pieces.insert(pieces.end(), by_suits.begin(), by_suits.end());
  constexpr std::size_t kLengthOfHand = 2 * cards + 1;
  if (length + kLengthOfHand * static_cast<std::size_t>(wanted.Count()) > longest) {
    return std::nullopt;
  }
  DropSpare(all_wanted, wanted, pieces);
  std::vector<std::string> texts;
  for (const OmahaPiece<cards>& piece : pieces) texts.push_back(piece.Text(exclusions));
  const auto single = wanted.Hands();
  for (auto hand = single.rbegin(); hand != single.rend(); ++hand) {
    std::string& text = texts.emplace_back();
    for (const int card : *hand) text.insert(0, CardName(card));
  }
  return texts;
}

template std::vector<OmahaPiece<4>> CoverBySuits<4>(OmahaSpec<4>&, const OmahaSpec<4>&, Exclusions,
                                                    std::size_t);
template std::vector<OmahaPiece<5>> CoverBySuits<5>(OmahaSpec<5>&, const OmahaSpec<5>&, Exclusions,
                                                    std::size_t);
template std::optional<std::vector<std::string>> CoverOmaha<4>(OmahaSpec<4>, const OmahaSpec<4>&,
                                                               Exclusions, std::size_t);
template std::optional<std::vector<std::string>> CoverOmaha<5>(OmahaSpec<5>, const OmahaSpec<5>&,
                                                               Exclusions, std::size_t);

}  // namespace pokermath
