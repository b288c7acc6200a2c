// Evaluators over arrays. Rows go through a block that is copied, checked and evaluated while it is
// near: the array may be changed by others meanwhile, the block may not.

#include "pokermath/evaluators.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "pages/card_words.h"
#include "pages/errors.h"
#include "pokermath/cards.h"
#include "pokermath/game.h"
#include "pokermath/omaha_evaluators.h"
#include "python/src/attend.h"
#include "python/src/bindings.h"
#include "python/src/convert.h"
#include "python/src/rows.h"

namespace pokermath {
namespace {

using Bytes = py::array_t<std::uint8_t, py::array::c_style>;

constexpr std::size_t kBoard = 5;
constexpr std::size_t kRowsALook = std::size_t{1} << 21;  // between looks at signals

template <std::size_t width>
using Block = std::array<std::uint8_t, kBlockRows * width + kRowPadding>;

std::string ShapeOf(const py::array& array) { return py::str(array.attr("shape")); }

std::size_t LengthOf(const py::array& array) { return static_cast<std::size_t>(array.shape(0)); }

std::size_t WidthOf(const py::array& array) { return static_cast<std::size_t>(array.shape(1)); }

void CheckShape(const char* name, const Bytes& rows, std::size_t least, std::size_t most) {
  if (rows.ndim() == 2 && WidthOf(rows) >= least && WidthOf(rows) <= most) return;
  throw UsageError(
      fmt::format("{} has the shape {}: expected (n, {})", name, ShapeOf(rows),
                  least == most ? fmt::format("{}", least) : fmt::format("{} to {}", least, most)));
}

[[noreturn]] void RefuseRows(std::span<const std::uint8_t> rows, std::size_t width,
                             std::size_t first_row, bool short_deck) {
  for (std::size_t row = 0; row < rows.size() / width; ++row) {
    const std::string fault = FaultOf(rows.subspan(row * width, width), short_deck);
    if (!fault.empty()) throw UsageError(fmt::format("row {}: {}", first_row + row, fault));
  }
  throw Failure("rows that are no hands, and no fault in them");
}

// Calls do_block(first, count) for all rows, without the interpreter's lock and with looks at
// signals.
template <typename DoBlock>
void ForBlocks(std::size_t rows, const DoBlock& do_block) {
  for (std::size_t look = 0; look < rows; look += kRowsALook) {
    const std::size_t end = std::min(rows, look + kRowsALook);
    WithoutLock([&] {
      for (std::size_t first = look; first < end; first += kBlockRows) {
        do_block(first, std::min(kBlockRows, end - first));
      }
      return true;
    });
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  }
}

template <typename Value>
py::array_t<Value> Evaluate(const Bytes& cards, bool short_deck,
                            void (*batch)(int, const std::uint8_t*, std::size_t, Value*)) {
  CheckShape("the array", cards, 5, 7);
  const std::size_t width = WidthOf(cards), rows = LengthOf(cards);
  py::array_t<Value> values(static_cast<py::ssize_t>(rows));
  const std::uint8_t* const from = cards.data();
  Value* const to = values.mutable_data();
  Block<7> block;
  ForBlocks(rows, [&](std::size_t first, std::size_t count) {
    std::memcpy(block.data(), from + first * width, count * width);
    if (!AreHands(width, short_deck, block.data(), count)) {
      RefuseRows({block.data(), count * width}, width, first, short_deck);
    }
    batch(static_cast<int>(width), block.data(), count, to + first);
  });
  return values;
}

// Omaha hands with a board each or with one board, of which `boards` has one row.
class OmahaRows {
 public:
  OmahaRows(const Bytes& holes, const Bytes& boards)
      : holes_(holes.data()), boards_(boards.data()) {
    CheckShape("holes", holes, 4, 6);
    rows_ = LengthOf(holes);
    width_ = WidthOf(holes);
    const bool has_shape = boards.ndim() == 1 ? boards.shape(0) == kBoard
                                              : boards.ndim() == 2 && WidthOf(boards) == kBoard;
    one_board_ = boards.ndim() == 1;
    if (!has_shape || (!one_board_ && LengthOf(boards) != rows_)) {
      throw UsageError(
          fmt::format("boards has the shape {}: expected (5,) or ({}, 5)", ShapeOf(boards), rows_));
    }
    if (!one_board_) return;
    std::array<std::uint8_t, kBoard> codes;
    std::copy_n(boards_, kBoard, codes.begin());
    const std::string fault = FaultOf(codes, false);
    if (!fault.empty()) throw UsageError("boards: " + fault);
    std::ranges::copy(codes, board_.begin());
  }

  std::size_t width() const { return width_; }
  std::size_t rows() const { return rows_; }
  bool one_board() const { return one_board_; }
  std::span<const int> board() const { return board_; }

  /// The next rows: hands and boards apart, all of them checked.
  void Take(std::size_t first, std::size_t count) {
    std::memcpy(hands_.data(), holes_ + first * width_, count * width_);
    const std::size_t both = width_ + kBoard;
    for (std::size_t row = 0; row < count; ++row) {
      const std::uint8_t* const board = boards_ + (one_board_ ? 0 : (first + row) * kBoard);
      std::memcpy(&block_boards_[row * kBoard], board, kBoard);
      std::memcpy(&all_[row * both], &hands_[row * width_], width_);
      std::memcpy(&all_[row * both + width_], &block_boards_[row * kBoard], kBoard);
    }
    if (!AreHands(both, false, all_.data(), count)) {
      RefuseRows({all_.data(), count * both}, both, first, false);
    }
  }
  const std::uint8_t* hands() const { return hands_.data(); }
  const std::uint8_t* boards() const { return block_boards_.data(); }

 private:
  const std::uint8_t* holes_;
  const std::uint8_t* boards_;
  std::size_t rows_ = 0;
  std::size_t width_ = 0;
  bool one_board_ = false;
  std::array<int, kBoard> board_{};
  Block<6> hands_{};
  Block<kBoard> block_boards_{};
  Block<kMostRowCards> all_{};
};

py::array EvaluateOmahaRows(const Bytes& holes, const Bytes& boards) {
  OmahaRows rows(holes, boards);
  py::array_t<std::uint16_t> values(static_cast<py::ssize_t>(rows.rows()));
  std::uint16_t* const to = values.mutable_data();
  const auto width = static_cast<int>(rows.width());
  std::optional<OmahaBoardValues> board;
  if (rows.one_board()) board.emplace(rows.board());
  ForBlocks(rows.rows(), [&](std::size_t first, std::size_t count) {
    rows.Take(first, count);
    if (board) {
      board->EvaluateBatch(width, rows.hands(), count, to + first);
    } else {
      EvaluateOmahaBatch(width, rows.hands(), rows.boards(), count, to + first);
    }
  });
  return values;
}

py::array EvaluateOmahaLows(const Bytes& holes, const Bytes& boards) {
  OmahaRows rows(holes, boards);
  py::array_t<std::uint8_t> values(static_cast<py::ssize_t>(rows.rows()));
  std::uint8_t* const to = values.mutable_data();
  ForBlocks(rows.rows(), [&](std::size_t first, std::size_t count) {
    rows.Take(first, count);
    EvaluateOmahaLowBatch(static_cast<int>(rows.width()), rows.hands(), rows.boards(), count,
                          to + first);
  });
  return values;
}

// Texts or sequences of card codes as an array of rows, all of the same length.
Bytes RowsOf(const py::sequence& hands) {
  const std::size_t count = hands.size();
  std::size_t width = 0;
  std::vector<std::uint8_t> rows;
  for (std::size_t row = 0; row < count; ++row) {
    try {
      const std::vector<int> cards = CardsOf("a hand", hands[row]);
      if (row == 0) width = cards.size();
      if (cards.size() != width) {
        throw UsageError(fmt::format("{} cards, and {} in row 0", cards.size(), width));
      }
      for (const int card : cards) rows.push_back(static_cast<std::uint8_t>(card));
    } catch (const UsageError& error) {
      throw UsageError(fmt::format("row {}: {}", row, error.what()));
    }
  }
  Bytes array({static_cast<py::ssize_t>(count), static_cast<py::ssize_t>(width)});
  std::ranges::copy(rows, array.mutable_data());
  return array;
}

}  // namespace

void AddEvaluators(py::module_& module) {
  module.def("rows", RowsOf);
  module.def("evaluate", [](const Bytes& cards) {
    return Evaluate<std::uint16_t>(cards, false, EvaluateBatch);
  });
  module.def("shortdeck_evaluate", [](const Bytes& cards) {
    return Evaluate<std::uint16_t>(cards, true, EvaluateShortDeckBatch);
  });
  module.def("low_evaluate", [](const Bytes& cards) {
    return Evaluate<std::uint8_t>(cards, false, EvaluateLowBatch);
  });
  module.def("omaha_evaluate", EvaluateOmahaRows);
  module.def("omaha_low_evaluate", EvaluateOmahaLows);
}

}  // namespace pokermath
