// The deck as a picture, a suit a row: on the terminal and as SVG.

#ifndef POKERMATH_PAGES_DECK_PICTURE_H_
#define POKERMATH_PAGES_DECK_PICTURE_H_

#include <array>
#include <string>

#include "pages/colours.h"

namespace pokermath {

enum class CardMark { kNone, kHand, kBoard, kOut, kNutOut };

/// By card code.
using MarkedDeck = std::array<CardMark, 52>;

/// A title line, a line for each suit, and what the marks mean.
std::string DeckText(const MarkedDeck& deck, const Colours& colours);

/// A stand-alone SVG document.
std::string DeckSvg(const MarkedDeck& deck, const std::string& title);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_DECK_PICTURE_H_
