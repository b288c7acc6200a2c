// Between values of Python and of the library.

#ifndef POKERMATH_PYTHON_CONVERT_H_
#define POKERMATH_PYTHON_CONVERT_H_

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pages/json.h"
#include "pokermath/calculator.h"
#include "pokermath/game.h"

namespace pokermath {

namespace py = pybind11;

/// Whether an object is of a class of the module, whatever its __class__ says.
template <typename Class>
bool IsA(py::handle object) {
  return PyObject_TypeCheck(object.ptr(),
                            reinterpret_cast<PyTypeObject*>(py::type::of<Class>().ptr())) != 0;
}

/// Throws a TypeError "`name` is ..., not int".
[[noreturn]] void RefuseType(std::string_view name, std::string_view expected, py::handle value);

/// The text of a str; throws TypeError for any other object.
std::string TextOf(std::string_view name, py::handle value);
std::string_view ViewOf(std::string_view name, py::handle value);

/// Cards as text, for the library to read: a str as it is; card codes and texts of a sequence one
/// after the other. Throws TypeError for anything else, ValueError for a code beyond 0..51.
std::string CardsTextOf(std::string_view name, py::handle value);

/// Cards, read: no card twice, as many as there may be.
std::vector<int> CardsOf(std::string_view name, py::handle value);

/// A whole number as text, for the library to read and refuse.
std::string WholeTextOf(std::string_view name, py::handle value);
/// A number likewise, the shortest text that reads back.
std::string NumberTextOf(std::string_view name, py::handle value);

/// The game of a name.
Game GameOf(py::handle value);

/// An int, of any size, where weights are whole, else a float.
py::object CountOf(const CaseCount& count);

/// A tuple of card codes.
py::tuple CodesOf(std::span<const int> cards);

/// dict, list, str, int, float, bool and None.
py::object ObjectOf(const Json& json);

/// Warnings of the library as warnings of Python.
void Warn(std::span<const std::string> warnings);

/// A column of a structured array: text of so many characters, or a number.
struct Column {
  std::string name;
  std::string type;  ///< as numpy has it: "U4", "i8", "f8"
};

/// A structured array that is filled row by row, every row column by column.
class Table {
 public:
  Table(const std::vector<Column>& columns, std::size_t rows);

  /// The next value: ASCII text into a "U" column, which is as wide as `width`.
  void Add(std::string_view text, std::size_t width);
  void Add(double number) { AddBytes(&number, sizeof number); }
  void Add(std::int64_t number) { AddBytes(&number, sizeof number); }
  /// The units of a count where its column is of whole numbers, else its value.
  void Add(const CaseCount& count, bool whole);

  py::array array() const { return array_; }

 private:
  void AddBytes(const void* bytes, std::size_t size);

  py::array array_;
  char* next_;
};

}  // namespace pokermath

#endif  // POKERMATH_PYTHON_CONVERT_H_
