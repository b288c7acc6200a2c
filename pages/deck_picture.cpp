#include "pages/deck_picture.h"

#include <fmt/format.h>

#include <vector>

#include "pages/range_picture.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

// Spades first, aces first.
CardMark MarkAt(const MarkedDeck& deck, int row, int column) {
  return deck[static_cast<std::size_t>((3 - row) * 13 + 12 - column)];
}

std::string MarkText(CardMark mark, const Colours& colours) {
  switch (mark) {
    case CardMark::kHand:
      return colours.Strong("H");
    case CardMark::kBoard:
      return colours.Strong("B");
    case CardMark::kOut:
      return colours.Out("+", false);
    case CardMark::kNutOut:
      return colours.Out("*", true);
    default:
      return colours.Faint(".");
  }
}

GridCell CellFor(CardMark mark) {
  switch (mark) {
    case CardMark::kHand:
      return {"#5b8fd6", "#14202b", "hand"};
    case CardMark::kBoard:
      return {"#c6d8f0", "#14202b", "board"};
    case CardMark::kOut:
      return {"#e9a93b", "#14202b", "out"};
    case CardMark::kNutOut:
      return {"#62b36c", "#14202b", "nut out"};
    default:
      return {"#eef0f3", "#a3abb5", ""};
  }
}

}  // namespace

std::string DeckText(const MarkedDeck& deck, const Colours& colours) {
  std::string text = "    A  K  Q  J  T  9  8  7  6  5  4  3  2\n";
  for (int row = 0; row < 4; ++row) {
    text += "shdc"[row];
    for (int column = 0; column < 13; ++column) {
      text += (column == 0 ? "   " : "  ") + MarkText(MarkAt(deck, row, column), colours);
    }
    text += "\n";
  }
  return text + colours.Faint("H hand, B board, + out, * nut out") + "\n";
}

std::string DeckSvg(const MarkedDeck& deck, const std::string& title) {
  std::vector<GridCell> cells;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 13; ++column) {
      cells.push_back(CellFor(MarkAt(deck, row, column)));
      cells.back().name = CardName((3 - row) * 13 + 12 - column);
    }
  }
  return GridSvg(4, 13, title, cells);
}

}  // namespace pokermath
