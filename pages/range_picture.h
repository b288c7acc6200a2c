// A range as a matrix of classes: on the terminal and as an SVG picture.

#ifndef POKERMATH_PAGES_RANGE_PICTURE_H_
#define POKERMATH_PAGES_RANGE_PICTURE_H_

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pages/colours.h"
#include "ranges/hand_classes.h"

namespace pokermath {

/// How much of every class a range holds, in the matrix layout of ranges.h.
class RangeMatrix {
 public:
  RangeMatrix(const Spec& range, bool short_deck);

  /// Rows and columns: 13, or 9 in the short deck.
  int size() const { return size_; }
  /// "AKs", "AKo", "AA".
  static std::string Name(int row, int column);
  /// Holdings of the class that are present, and how many it has.
  int Present(int row, int column) const;
  static int Whole(int row, int column) { return HoldingsIn(row * 13 + column); }

 private:
  int size_;
  std::array<int, 169> present_{};
};

/// A line for each row; classes that are absent are dots, those with some holdings only have a
/// star.
std::string MatrixText(const RangeMatrix& matrix, const Colours& colours);

/// A stand-alone SVG document.
///
/// @param notes  a second line in every cell, 169 of them, or nothing
std::string MatrixSvg(const RangeMatrix& matrix, const std::string& title,
                      std::span<const std::string> notes = {});

/// A text as SVG has it, without signs that mean something there.
std::string Escape(std::string_view text);

/// How a class or a card is drawn: colours, a second line below its name, and its name.
struct GridCell {
  std::string fill;
  std::string text;
  std::string note;
  std::string name = {};  // GridSvg knows those of classes
};

/// A stand-alone SVG document of a matrix of classes.
///
/// @param size   rows and columns that are drawn
/// @param cells  169, row by row
std::string GridSvg(int size, const std::string& title, std::vector<GridCell> cells);

/// A stand-alone SVG document of any grid.
///
/// @param cells  13 a row, of which `columns` are drawn
std::string GridSvg(int rows, int columns, const std::string& title,
                    const std::vector<GridCell>& cells);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_RANGE_PICTURE_H_
