#include "pages/range_picture.h"

#include <fmt/format.h>

#include <algorithm>

#include "ranges/hand_classes.h"

namespace pokermath {
namespace {

constexpr std::string_view kRanks = "AKQJT98765432";

// Pairs, suited and offsuit hands have a colour each; classes that are there in part a pale one.
const char* FillOf(const RangeMatrix& matrix, int row, int column) {
  const int present = matrix.Present(row, column);
  if (present == 0) return "#eef0f3";
  const bool part = present < RangeMatrix::Whole(row, column);
  if (row == column) return part ? "#f6dcae" : "#e9a93b";
  if (row < column) return part ? "#c5e3c9" : "#62b36c";
  return part ? "#c6d8f0" : "#5b8fd6";
}

}  // namespace

std::string Escape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    escaped += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
  }
  return escaped;
}

RangeMatrix::RangeMatrix(const Spec& range, bool short_deck) : size_(short_deck ? 9 : 13) {
  for (const auto& [first, second] : range.combinations()) {
    ++present_[static_cast<std::size_t>(CellOf(first, second))];
  }
}

std::string RangeMatrix::Name(int row, int column) {
  const auto [high, low] = std::minmax({row, column});  // the ace is 0
  std::string name = {kRanks[static_cast<std::size_t>(high)],
                      kRanks[static_cast<std::size_t>(low)]};
  if (row != column) name += row < column ? 's' : 'o';
  return name;
}

int RangeMatrix::Present(int row, int column) const {
  return present_[static_cast<std::size_t>(row * 13 + column)];
}

std::string MatrixText(const RangeMatrix& matrix, const Colours& colours) {
  std::string text;
  for (int row = 0; row < matrix.size(); ++row) {
    text += " ";
    for (int column = 0; column < matrix.size(); ++column) {
      const int present = matrix.Present(row, column);
      const bool part = present != 0 && present < RangeMatrix::Whole(row, column);
      const std::string name = RangeMatrix::Name(row, column) + (part ? "*" : "");
      const std::string cell = fmt::format(" {:<4}", present == 0 ? "." : name);
      text += present == 0 ? colours.Faint(cell) : colours.Class(cell, row - column);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    text += "\n";
  }
  return text;
}

std::string MatrixSvg(const RangeMatrix& matrix, const std::string& title,
                      std::span<const std::string> notes) {
  std::vector<GridCell> cells;
  for (int row = 0; row < 13; ++row) {
    for (int column = 0; column < 13; ++column) {
      const bool present = matrix.Present(row, column) != 0;
      cells.push_back({FillOf(matrix, row, column), present ? "#14202b" : "#a3abb5",
                       notes.empty() ? "" : notes[static_cast<std::size_t>(row * 13 + column)]});
    }
  }
  return GridSvg(matrix.size(), title, cells);
}

std::string GridSvg(int size, const std::string& title, std::vector<GridCell> cells) {
  for (int cell = 0; cell < 169; ++cell) {
    cells[static_cast<std::size_t>(cell)].name = RangeMatrix::Name(cell / 13, cell % 13);
  }
  return GridSvg(size, size, title, cells);
}

std::string GridSvg(int rows, int columns, const std::string& title,
                    const std::vector<GridCell>& cells) {
  constexpr int kCell = 44;
  constexpr int kMargin = 12;
  constexpr int kTitle = 34;
  const int width = columns * kCell + 2 * kMargin;
  // A character is about half as wide as it is high.
  const int title_size = std::min(
      15, static_cast<int>((width - 2 * kMargin) / (0.53 * static_cast<double>(title.size() + 1))));
  std::string svg = fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0} {1}\" width=\"{0}\" "
      "height=\"{1}\" font-family=\"Helvetica, Arial, sans-serif\">\n"
      "<title>{2}</title>\n<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n"
      "<text x=\"{3}\" y=\"24\" font-size=\"{4}\" fill=\"#222\">{2}</text>\n",
      width, kTitle + rows * kCell + kMargin, Escape(title), kMargin, title_size);
  const auto text = [](int x, int y, int font_size, const GridCell& cell,
                       const std::string& words) {
    return fmt::format(
        "<text x=\"{}\" y=\"{}\" font-size=\"{}\" text-anchor=\"middle\" fill=\"{}\">{}</text>", x,
        y, font_size, cell.text, words);
  };
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      const GridCell& cell = cells[static_cast<std::size_t>(row * 13 + column)];
      const int x = kMargin + column * kCell;
      const int y = kTitle + row * kCell;
      const int middle = x + kCell / 2;
      const int base = y + kCell / 2 + (cell.note.empty() ? 5 : -2);
      svg += fmt::format(
          "<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" rx=\"4\" fill=\"{}\"/>{}{}\n", x + 1,
          y + 1, kCell - 2, kCell - 2, cell.fill, text(middle, base, 13, cell, cell.name),
          cell.note.empty() ? "" : text(middle, base + 15, 11, cell, cell.note));
    }
  }
  return svg + "</svg>\n";
}

}  // namespace pokermath
