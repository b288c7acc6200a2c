// Hands fall into cells, a multiset of ranks and a split of suits each; without suits a pattern
// holds whole cells only. A few thousand multisets are all there is, so this is quick.

#include <functional>

#include "ranges/omaha/cover.h"

namespace pokermath {
namespace {

template <int cards>
inline constexpr std::size_t kSplitCount = kSuitSplits<cards>.size();

// The cell of each hand: multiset * splits + split. Built at first use, 0.5 and 5 MB.
template <int cards>
const std::vector<std::uint16_t>& CellsOfHands() {
  static const auto kCells = [] {
    std::vector<std::uint16_t> cells;
    cells.reserve(OmahaSpec<cards>::kAllHands);
    ForEachOmahaHand<cards>([&](int, const typename OmahaSpec<cards>::Hand& hand) {
      std::array<int, cards> ranks;
      std::ranges::transform(hand, ranks.begin(), [](int card) { return card % 13; });
      std::ranges::sort(ranks);
      const auto multiset = static_cast<std::size_t>(MultisetNumber(ranks));
      cells.push_back(
          static_cast<std::uint16_t>(multiset * kSplitCount<cards> + SplitOf<cards>(hand)));
    });
    return cells;
  }();
  return kCells;
}

template <int cards>
class RankCover {
 public:
  RankCover(const OmahaSpec<cards>& wanted, const OmahaSpec<cards>& allowed, Exclusions exclusions)
      : exclusions_(exclusions) {
    std::vector<char> wants(kMultisets * kSplitCount<cards>), forbids(wants.size());
    const auto& wanted_bits = OmahaBits::Of(wanted);
    const auto& allowed_bits = OmahaBits::Of(allowed);
    const auto& cells = CellsOfHands<cards>();
    for (std::size_t hand = 0; hand < cells.size(); ++hand) {
      wants[cells[hand]] |= static_cast<char>(wanted_bits[hand / 64] >> hand % 64 & 1);
      forbids[cells[hand]] |= static_cast<char>(~allowed_bits[hand / 64] >> hand % 64 & 1);
    }
    for (std::size_t split = 0; split < kSplitCount<cards>; ++split) {
      allowed_[split].resize(kWords);
      wanted_[split].resize(kWords);
      for (std::size_t ranks = 0; ranks < kMultisets; ++ranks) {
        const std::size_t cell = ranks * kSplitCount<cards> + split;
        if (forbids[cell] != 0) continue;
        OmahaBits::AddRow(allowed_[split], static_cast<int>(ranks), 1);
        if (wants[cell] != 0) OmahaBits::AddRow(wanted_[split], static_cast<int>(ranks), 1);
      }
    }
  }

  std::vector<OmahaPiece<cards>> Pieces(std::size_t longest) {
    uncovered_ = wanted_;
    // Some may turn out to be redundant.
    const std::size_t most = 2 * (longest / (cards + 1));
    for (int multiset = kMultisets; multiset-- > 0 && pieces_.size() <= most;) {
      for (std::size_t split = 0; split < kSplitCount<cards>; ++split) {
        if (OmahaBits::Common(uncovered_[split], multiset, 1) != 0) CoverCell(multiset, split);
      }
    }
    DropRedundant();
    return std::move(pieces_);
  }

 private:
  static constexpr int kMultisets = MultisetsOf(cards);
  static constexpr std::size_t kWords = kMultisets / 64 + 1;
  static constexpr std::int64_t kMostWork = 20'000'000;

  using Bits = std::vector<std::uint64_t>;  // a bit for each multiset
  using Masks = std::array<std::uint64_t, cards>;

  static Masks RanksOf(const OmahaPiece<cards>& piece) {
    Masks masks;
    for (std::size_t i = 0; i < cards; ++i) masks[i] = piece.pattern[i].ranks;
    return masks;
  }

  // One atom for each rank, the highest first.
  static OmahaPiece<cards> PieceOf(int multiset) {
    OmahaPiece<cards> piece;
    for (std::size_t place = cards; place-- > 0;) {
      std::size_t rank = 12;
      while (kMultisetPlaces[place][rank] > multiset) --rank;
      multiset -= kMultisetPlaces[place][rank];
      piece.pattern[cards - 1 - place].ranks = static_cast<RankSet>(1U << rank);
    }
    return piece;
  }

  void CoverCell(int multiset, std::size_t split) {
    const OmahaPiece<cards> seed = PieceOf(multiset);
    OmahaPiece<cards> best;
    int best_gain = 0;
    for (const bool most : {true, false}) {
      OmahaPiece<cards> start = seed;
      start.splits = NameableSplits<cards>(1U << split, AllowedSplits(seed), most, exclusions_);
      if (start.splits == 0) return;
      for (const bool low_first : {true, false}) {
        const OmahaPiece<cards> piece = work_.Left() ? Widen(start, low_first) : start;
        const int gain = Gain(piece);
        if (gain <= best_gain) continue;
        best = piece;
        best_gain = gain;
      }
    }
    Trim(best, exclusions_, [this](const OmahaPiece<cards>& piece) { return Gain(piece); });
    ForEachRow(best, [this](std::size_t in, int number, std::uint64_t row) {
      OmahaBits::RemoveRow(uncovered_[in], number, row);
    });
    pieces_.push_back(best);
  }

  OmahaPiece<cards> Widen(OmahaPiece<cards> piece, bool low_first) {
    Bits allowed(kWords, ~std::uint64_t{0});
    for (std::size_t i = 0; i < kSplitCount<cards>; ++i) {
      if ((piece.splits >> i & 1) == 0) continue;
      std::ranges::transform(allowed, allowed_[i], allowed.begin(), std::bit_and());
    }
    for (std::size_t i = 0; i < cards; ++i) {
      const std::size_t atom = low_first ? cards - 1 - i : i;
      Masks masks = RanksOf(piece);
      RankSet& ranks = piece.pattern[atom].ranks;
      ranks = WidestRanks(ranks, [&](RankSet others) {
        masks[atom] = others;
        return work_.Walk<cards, true>(masks, [&](int number, std::uint64_t row) {
          return OmahaBits::Common(allowed, number, row) == row;
        });
      });
    }
    piece.splits = NameableSplits<cards>(piece.splits, AllowedSplits(piece), true, exclusions_);
    return piece;
  }

  // The splits in which the ranks are allowed.
  Splits AllowedSplits(const OmahaPiece<cards>& piece) {
    Splits splits = kAllSplits<cards>;
    work_.Walk<cards, true>(RanksOf(piece), [&](int number, std::uint64_t row) {
      for (std::size_t i = 0; i < kSplitCount<cards>; ++i) {
        if (OmahaBits::Common(allowed_[i], number, row) != row) splits &= ~(1U << i);
      }
      return splits != 0;
    });
    return splits;
  }

  template <typename Visit>
  void ForEachRow(const OmahaPiece<cards>& piece, const Visit& visit) {
    work_.Walk<cards, true>(RanksOf(piece), [&](int number, std::uint64_t row) {
      for (std::size_t i = 0; i < kSplitCount<cards>; ++i) {
        if ((piece.splits >> i & 1) != 0) visit(i, number, row);
      }
      return true;
    });
  }

  // New cells.
  int Gain(const OmahaPiece<cards>& piece) {
    int gain = 0;
    ForEachRow(piece, [&](std::size_t split, int number, std::uint64_t row) {
      gain += std::popcount(OmahaBits::Common(uncovered_[split], number, row));
    });
    return gain;
  }

  template <typename Visit>
  void ForEachWantedCell(const OmahaPiece<cards>& piece, const Visit& visit) {
    ForEachRow(piece, [&](std::size_t split, int number, std::uint64_t row) {
      for (std::uint64_t rest = OmahaBits::Common(wanted_[split], number, row); rest != 0;
           rest &= rest - 1) {
        visit(static_cast<std::size_t>(number + std::countr_zero(rest)) * kSplitCount<cards> +
              split);
      }
    });
  }

  // The earlier pieces were chosen while less was covered, so they go first.
  void DropRedundant() {
    std::vector<int> covers(kMultisets * kSplitCount<cards>);
    for (const OmahaPiece<cards>& piece : pieces_) {
      ForEachWantedCell(piece, [&covers](std::size_t cell) { ++covers[cell]; });
    }
    std::erase_if(pieces_, [&](const OmahaPiece<cards>& piece) {
      bool needed = false;
      ForEachWantedCell(piece, [&](std::size_t cell) { needed |= covers[cell] == 1; });
      if (needed) return false;
      ForEachWantedCell(piece, [&covers](std::size_t cell) { --covers[cell]; });
      return true;
    });
  }

  Exclusions exclusions_;
  std::array<Bits, kSplitCount<cards>> allowed_, wanted_, uncovered_;
  std::vector<OmahaPiece<cards>> pieces_;
  Work work_{kMostWork};
};

}  // namespace

template <int cards>
std::vector<OmahaPiece<cards>> CoverByRanks(const OmahaSpec<cards>& wanted,
                                            const OmahaSpec<cards>& allowed, Exclusions exclusions,
                                            std::size_t longest) {
  return RankCover<cards>(wanted, allowed, exclusions).Pieces(longest);
}

template std::vector<OmahaPiece<4>> CoverByRanks<4>(const OmahaSpec<4>&, const OmahaSpec<4>&,
                                                    Exclusions, std::size_t);
template std::vector<OmahaPiece<5>> CoverByRanks<5>(const OmahaSpec<5>&, const OmahaSpec<5>&,
                                                    Exclusions, std::size_t);

}  // namespace pokermath
