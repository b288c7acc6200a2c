// Classes of hands: the matrix, its order, and the text of a range.

#include "ranges/hand_classes.h"

#include <algorithm>

#include "platform/text.h"
#include "pokermath/hand_range.h"
#include "ranges/weight_text.h"

// clang-format off
const int HandClassRank[169] = {
    // A    K    Q    J    T    9    8    7    6    5    4    3    2
      1,   4,   6,   8,  13,  20,  26,  29,  34,  30,  32,  38,  42,  // A
     11,   2,   7,   9,  14,  23,  39,  46,  53,  57,  58,  63,  64,  // K
     18,  19,   3,  12,  15,  25,  43,  61,  66,  69,  72,  76,  77,  // Q
     27,  31,  35,   5,  16,  24,  41,  62,  79,  84,  87,  89,  91,  // J
     40,  45,  52,  51,  10,  22,  37,  56,  73,  93,  97,  99, 100,  // T
     71,  80,  85,  81,  75,  17,  36,  54,  68,  88, 106, 109, 112,  // 9
     86, 111, 116, 113, 103, 101,  21,  50,  60,  78,  94, 114, 118,  // 8
     96, 119, 131, 129, 125, 121, 115,  28,  55,  67,  83, 102, 120,  // 7
    107, 123, 137, 147, 141, 136, 126, 122,  33,  59,  70,  90, 108,  // 6
     98, 128, 139, 149, 157, 151, 140, 132, 124,  44,  65,  74,  92,  // 5
    105, 130, 143, 152, 159, 164, 156, 145, 135, 127,  47,  82,  95,  // 4
    110, 133, 144, 154, 161, 165, 167, 160, 148, 138, 142,  49, 104,  // 3
    117, 134, 146, 155, 162, 166, 168, 169, 163, 150, 153, 158,  48};  // 2

const int HandClassRank6Plus[113] = {
    // A    K    Q    J    T    9    8    7    6
      1,   4,   6,   8,  13,  20,  26,  29,  34,   0,   0,   0,   0,  // A
     11,   2,   7,   9,  14,  23,  39,  46,  53,   0,   0,   0,   0,  // K
     18,  19,   3,  12,  15,  25,  43,  61,  66,   0,   0,   0,   0,  // Q
     27,  31,  35,   5,  16,  24,  41,  62,  79,   0,   0,   0,   0,  // J
     40,  45,  52,  51,  10,  22,  37,  56,  73,   0,   0,   0,   0,  // T
     71,  80,  85,  81,  75,  17,  36,  54,  68,   0,   0,   0,   0,  // 9
     86, 111, 116, 113, 103, 101,  21,  50,  60,   0,   0,   0,   0,  // 8
     96, 119, 131, 129, 125, 121, 115,  28,  55,   0,   0,   0,   0,  // 7
    107, 123, 137, 147, 141, 136, 126, 122,  33};  // 6
// clang-format on

namespace pokermath {
namespace {

constexpr std::wstring_view kRankLetters = L"23456789TJQKA";

int RankOf(wchar_t letter) { return static_cast<int>(kRankLetters.find(letter)); }

wchar_t LetterOf(int row_or_column) {
  return kRankLetters[static_cast<std::size_t>(12 - row_or_column)];
}

// Text of a cell: "QQ", "AKs", and "AK" with the offsuit letter.
CString CellText(int row, int column, const CString& offsuit) {
  CString text = {LetterOf(std::min(row, column)), LetterOf(std::max(row, column))};
  if (column > row) text += L"s";
  if (column < row) text += offsuit;
  return text;
}

// One of the three lists of a range text while the matrix is walked along it: runs of neighbouring
// cells of one weight are gathered and written when they end.
class RunList {
 public:
  void Add(int index, int top, int weight, const CString& text) {
    if (start_ >= 0 && (end_ != index - 1 || weight_ != weight)) Flush();
    if (start_ < 0) {
      start_ = index;
      top_ = top;
      weight_ = weight;
      first_ = text;
    }
    end_ = index;
    last_ = text;
  }
  void Flush() {
    if (start_ < 0) return;
    MakeStr(start_, end_, top_, first_, last_, list_);
    if (weight_ != kWholeWeight) list_ += L":" + FromUtf8(WeightText(weight_, WeightUnit::kOne));
    start_ = -1;
  }
  const CString& list() const { return list_; }

 private:
  int start_ = -1;
  int end_ = -1;
  int top_ = 0;
  int weight_ = 0;
  CString first_;
  CString last_;
  CString list_;
};

}  // namespace

int CellOf(int code1, int code2) {
  const int high = std::max(GetCardRank(code1), GetCardRank(code2));
  const int low = std::min(GetCardRank(code1), GetCardRank(code2));
  return isSuit(code1, code2) ? (12 - high) * 13 + (12 - low) : (12 - low) * 13 + (12 - high);
}

void AddCell(int cell, Spec& range) {
  const int rank1 = 12 - cell / 13;
  const int rank2 = 12 - cell % 13;
  if (rank1 == rank2) {
    range.AddPair(rank1);
  } else if (rank2 < rank1) {
    range.AddSuit(rank1, rank2);
  } else {
    range.AddNonSuit(rank2, rank1);
  }
}

void AddClasses(std::string_view names, Spec& range) {
  while (!names.empty()) {
    const std::string_view name = names.substr(0, names.find(' '));
    names.remove_prefix(std::min(names.size(), name.size() + 1));
    const int high = RankOf(static_cast<wchar_t>(name[0]));
    const int low = RankOf(static_cast<wchar_t>(name[1]));
    if (high == low) {
      range.AddPair(high);
    } else if (name[2] == 's') {
      range.AddSuit(high, low);
    } else {
      range.AddNonSuit(high, low);
    }
  }
}

CString RangeText(const Spec& range, bool short_deck, const CString& offsuit) {
  std::array<int, kHandClasses> cells{};
  if (short_deck) {
    range.MakeMatrix6Plus(cells.data());
  } else {
    range.MakeMatrix(cells.data());
  }
  for (int& cell : cells) cell *= kWholeWeight;
  return RangeText(cells, offsuit);
}

CString RangeText(const std::array<int, kHandClasses>& weights, const CString& offsuit) {
  RunList pairs;
  RunList suited;
  RunList unsuited;
  const auto add = [&](RunList& runs, int row, int column, int index, int top) {
    const int weight = weights[static_cast<std::size_t>(row * 13 + column)];
    if (weight != 0) runs.Add(index, top, weight, CellText(row, column, offsuit));
  };
  for (int row = 0; row < 13; ++row) {
    suited.Flush();
    add(pairs, row, row, row, 0);
    for (int column = row + 1; column < 13; ++column) add(suited, row, column, column, row + 1);
  }
  for (int column = 0; column < 13; ++column) {
    unsuited.Flush();
    for (int row = column + 1; row < 13; ++row) add(unsuited, row, column, row, column + 1);
  }
  CString text;
  for (RunList* runs : {&pairs, &suited, &unsuited}) {
    runs->Flush();
    if (!text.empty() && !runs->list().empty()) text += L",";
    text += runs->list();
  }
  return text;
}

}  // namespace pokermath

void MakeStr(int start, int end, int top, const CString& first, const CString& last, CString& out) {
  if (!out.empty()) out += L",";
  if (start != top) {
    out += first;
    if (end != start) out += L"-" + last;
  } else {
    out += last;
    if (end != top) out += L"+";
  }
}
