// Spec, the two-card range.

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "ranges/hand_classes.h"

namespace {

constexpr int kSuits[4] = {0, 13, 26, 39};
constexpr int kNone = 200;  // above every place in the class order

bool IsShortDeck(const pokermath::Combination& cards) {
  return GetCardRank(cards.first) >= pokermath::kLowestShortDeckRank &&
         GetCardRank(cards.second) >= pokermath::kLowestShortDeckRank;
}

void FillMatrix(const pokermath::CombinationSet& combinations, bool short_deck, int* cells) {
  std::fill_n(cells, pokermath::kHandClasses, 0);
  for (const pokermath::Combination& cards : combinations) {
    if (short_deck && !IsShortDeck(cards)) continue;
    cells[pokermath::CellOf(cards.first, cards.second)] = 1;
  }
}

// The class of the lowest place among the cells whose presence is as wanted; places of 0 do not
// count.
Spec BestClass(const int* cells, int wanted, const int* places, int count) {
  int best = kNone;
  int best_cell = 0;
  for (int cell = 0; cell < count; ++cell) {
    if (cells[cell] == wanted && places[cell] != 0 && places[cell] <= best) {
      best = places[cell];
      best_cell = cell;
    }
  }
  Spec range;
  if (best < kNone) pokermath::AddCell(best_cell, range);
  return range;
}

// The holdings as they are whatever the order of their cards.
std::vector<pokermath::Combination> Unordered(const pokermath::CombinationSet& combinations) {
  std::vector<pokermath::Combination> holdings;
  for (const auto& [first, second] : combinations) {
    holdings.push_back(std::minmax({first, second}));
  }
  std::ranges::sort(holdings);
  return holdings;
}

}  // namespace

Spec::~Spec() = default;

bool Spec::operator==(const Spec& other) const {
  return Unordered(combinations_) == Unordered(other.combinations_);
}

bool Spec::Contains(int first, int second) const {
  return combinations_.contains({first, second}) || combinations_.contains({second, first});
}

void Spec::Erase(int first, int second) {
  combinations_.erase({first, second});
  combinations_.erase({second, first});
}

void Spec::Intersect(const Spec& other) {
  combinations_.erase_if([&other](const pokermath::Combination& cards) {
    return !other.Contains(cards.first, cards.second);
  });
}

void Spec::Subtract(const Spec& other) {
  if (this == &other) return combinations_.clear();
  combinations_.erase_if([&other](const pokermath::Combination& cards) {
    return other.Contains(cards.first, cards.second);
  });
}

void Spec::AddPair(int rank) {
  for (int i = 0; i < 39; i += 13) {
    for (int j = i + 13; j <= 39; j += 13) Insert(i + rank, j + rank);
  }
}

void Spec::AddSuit(int rank1, int rank2) {
  for (const int suit : kSuits) {
    Insert(suit + std::max(rank1, rank2), suit + std::min(rank1, rank2));
  }
}

void Spec::AddNonSuit(int rank1, int rank2) {
  for (const int suit1 : kSuits) {
    for (const int suit2 : kSuits) {
      if (suit1 == suit2) continue;
      if (rank1 > rank2) {
        Insert(suit1 + rank1, suit2 + rank2);
      } else {
        Insert(suit2 + rank2, suit1 + rank1);
      }
    }
  }
}

void Spec::AddCard(int code1, int code2) {
  if (code1 == code2) return;
  if (GetCardRank(code1) > GetCardRank(code2)) {
    Insert(code1, code2);
  } else {
    Insert(code2, code1);
  }
}

void Spec::AddCard(const CCard& card1, const CCard& card2) {
  if (card1.IsValid() && card2.IsValid()) AddCard(card1.GetInt(), card2.GetInt());
}

void Spec::MakeRandom() {
  combinations_.clear();
  for (int a = 0; a < 51; ++a) {
    for (int b = a + 1; b < 52; ++b) AddCard(a, b);
  }
}

void Spec::Exclude(const std::vector<int>& dead, Spec& out) const {
  const auto is_dead = [&dead](int card) { return std::ranges::find(dead, card) != dead.end(); };
  for (const auto& [first, second] : combinations_) {
    if (!is_dead(first) && !is_dead(second)) out.Insert(first, second);
  }
}

void Spec::CalcStat(int& pairs, int& aces, int& suited, int& kings) const {
  pairs = aces = suited = kings = 0;
  for (const auto& [code1, code2] : combinations_) {
    const CCard first(code1);
    const CCard second(code2);
    if (first.GetRank() == second.GetRank()) {
      ++pairs;
      continue;
    }
    if (first.GetRank() == 1) ++aces;
    if (first.GetRank() == 13) ++kings;
    if (first.GetSuit() == second.GetSuit()) ++suited;
  }
}

void Spec::CalcSuits(int& count, int suit) const {
  const bool any = suit < 0 || suit > 3;
  count = static_cast<int>(
      std::ranges::count_if(combinations_, [=](const pokermath::Combination& cards) {
        return isSuit(cards.first, cards.second) && (any || cards.first / 13 == suit);
      }));
}

void Spec::CalcSuits(int& count, const CString& suit) const {
  constexpr std::wstring_view kLetters = L"cdhsCDHS";
  const std::size_t place = suit.empty() ? kLetters.npos : kLetters.find(suit.front());
  CalcSuits(count, place == kLetters.npos ? -1 : static_cast<int>(place % 4));
}

void Spec::MakeMatrix(int* cells) const { FillMatrix(combinations_, false, cells); }

void Spec::MakeMatrix6Plus(int* cells) const { FillMatrix(combinations_, true, cells); }

Spec Spec::MakeBestHand() const {
  std::array<int, pokermath::kHandClasses> cells{};
  MakeMatrix(cells.data());
  return BestClass(cells.data(), 1, HandClassRank, pokermath::kHandClasses);
}

Spec Spec::MakeBestHand6Plus() const {
  std::array<int, pokermath::kHandClasses> cells{};
  MakeMatrix6Plus(cells.data());
  return BestClass(cells.data(), 1, HandClassRank, pokermath::kHandClasses);
}

Spec Spec::MakeNextForceHand() const {
  std::array<int, pokermath::kHandClasses> cells{};
  MakeMatrix(cells.data());
  return BestClass(cells.data(), 0, HandClassRank, pokermath::kHandClasses);
}

Spec Spec::MakeNextForceHand6Plus() const {
  std::array<int, pokermath::kHandClasses> cells{};
  MakeMatrix6Plus(cells.data());
  return BestClass(cells.data(), 0, HandClassRank6Plus,
                   static_cast<int>(std::size(HandClassRank6Plus)));
}

Spec Spec::MakeSuitMatrix(int rank1, int rank2, int kind, int* matrix) const {
  std::fill_n(matrix, 16, 0);
  Spec found;
  for (const auto& [first, second] : combinations_) {
    if (GetCardRank(first) != std::max(rank1, rank2)) continue;
    if (GetCardRank(second) != std::min(rank1, rank2)) continue;
    const bool suited = isSuit(first, second);
    const bool kept = kind == 0 ? !suited : kind == 1 ? suited : rank1 == rank2;
    if (!kept) continue;
    matrix[CCard(first).GetSuitAsInt() * 4 + CCard(second).GetSuitAsInt()] = 1;
    found.Insert(first, second);
  }
  return found;
}

CString Spec::MakeString() const { return pokermath::RangeText(*this, false, L""); }

CString Spec::MakeString6Plus() const { return pokermath::RangeText(*this, true, L""); }

Spec SpecBySuitMatrix(int rank1, int rank2, int* matrix) {
  Spec range;
  for (int cell = 0; cell < 16; ++cell) {
    if (matrix[cell] == 0) continue;
    const auto [low, high] = std::minmax({cell / 4 * 13 + rank1, cell % 4 * 13 + rank2});
    range.Insert(high, low);
  }
  return range;
}
