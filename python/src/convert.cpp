#include "python/src/convert.h"

#include <fmt/format.h>

#include <cstring>
#include <nlohmann/json.hpp>

#include "pages/card_words.h"
#include "pages/colours.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pokermath/cards.h"

namespace pokermath {

void RefuseType(std::string_view name, std::string_view expected, py::handle value) {
  throw py::type_error(
      fmt::format("{} is {}, not {}", name, expected, Py_TYPE(value.ptr())->tp_name));
}

std::string_view ViewOf(std::string_view name, py::handle value) {
  if (!PyUnicode_Check(value.ptr())) RefuseType(name, "a str", value);
  Py_ssize_t size = 0;
  const char* const text = PyUnicode_AsUTF8AndSize(value.ptr(), &size);
  if (text == nullptr) throw py::error_already_set();
  return {text, static_cast<std::size_t>(size)};
}

std::string TextOf(std::string_view name, py::handle value) {
  return std::string(ViewOf(name, value));
}

std::string CardsTextOf(std::string_view name, py::handle value) {
  constexpr const char* kExpected = "cards as a str or a sequence of card codes";
  if (PyUnicode_Check(value.ptr())) return TextOf(name, value);
  if (!PySequence_Check(value.ptr())) RefuseType(name, kExpected, value);
  std::string text;
  for (const py::handle item : py::reinterpret_borrow<py::object>(value)) {
    if (PyUnicode_Check(item.ptr())) {
      text += (text.empty() ? "" : " ") + TextOf(name, item);
      continue;
    }
    if (!PyIndex_Check(item.ptr())) RefuseType(name, kExpected, item);
    const Py_ssize_t code = PyNumber_AsSsize_t(item.ptr(), nullptr);
    if (code == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
    if (code < 0 || code > 51) {
      throw UsageError(fmt::format("{} is not a card code: 0 to 51", TextOf(name, py::str(item))));
    }
    text += CardName(static_cast<int>(code));
  }
  return text;
}

std::vector<int> CardsOf(std::string_view name, py::handle value) {
  return ReadCards(CardsTextOf(name, value));
}

std::string WholeTextOf(std::string_view name, py::handle value) {
  if (!PyIndex_Check(value.ptr())) RefuseType(name, "an int", value);
  const auto whole = py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()));
  if (!whole) throw py::error_already_set();
  return TextOf(name, py::str(whole));
}

std::string NumberTextOf(std::string_view name, py::handle value) {
  if (PyUnicode_Check(value.ptr()) || PyNumber_Check(value.ptr()) == 0) {
    RefuseType(name, "a number", value);
  }
  const double number = PyFloat_AsDouble(value.ptr());
  if (number == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
  return fmt::format("{}", number);
}

Game GameOf(py::handle value) {
  const std::string_view name = ViewOf("game", value);
  if (const std::optional<Game> game = FindGame(name)) return *game;
  throw UsageError(fmt::format("game {} is not known: {}", Quoted(name), GameNames()));
}

py::object CountOf(const CaseCount& count) {
  if (!count.IsWhole()) return py::float_(count.Value());
  const auto low = static_cast<std::int64_t>(count.units);
  if (low == count.units) return py::int_(low);
  const auto high = static_cast<std::int64_t>(count.units >> 64);
  return (py::int_(high) << py::int_(64)) | py::int_(static_cast<std::uint64_t>(count.units));
}

py::tuple CodesOf(std::span<const int> cards) {
  py::tuple codes(cards.size());
  for (std::size_t i = 0; i < cards.size(); ++i) codes[i] = cards[i];
  return codes;
}

py::object ObjectOf(const Json& json) {
  switch (json.type()) {
    case Json::value_t::object: {
      py::dict object;
      for (const auto& [key, value] : json.items()) object[py::str(key)] = ObjectOf(value);
      return object;
    }
    case Json::value_t::array: {
      py::list list(json.size());
      for (std::size_t i = 0; i < json.size(); ++i) list[i] = ObjectOf(json[i]);
      return list;
    }
    case Json::value_t::string:
      return py::str(json.get_ref<const std::string&>());
    case Json::value_t::boolean:
      return py::bool_(json.get<bool>());
    case Json::value_t::number_integer:
      return py::int_(json.get<std::int64_t>());
    case Json::value_t::number_unsigned:
      return py::int_(json.get<std::uint64_t>());
    case Json::value_t::number_float:
      return py::float_(json.get<double>());
    default:
      return py::none();
  }
}

void Warn(std::span<const std::string> warnings) {
  for (const std::string& text : warnings) {
    if (PyErr_WarnEx(PyExc_UserWarning, text.c_str(), 2) != 0) throw py::error_already_set();
  }
}

namespace {

py::dtype TypeOf(const std::vector<Column>& columns) {
  py::list fields;
  for (const Column& column : columns) fields.append(py::make_tuple(column.name, column.type));
  return py::dtype::from_args(fields);
}

}  // namespace

Table::Table(const std::vector<Column>& columns, std::size_t rows)
    : array_(TypeOf(columns), static_cast<py::ssize_t>(rows)),
      next_(static_cast<char*>(array_.mutable_data())) {}

void Table::Add(std::string_view text, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) {
    const auto letter = static_cast<char32_t>(i < text.size() ? text[i] : '\0');
    AddBytes(&letter, sizeof letter);
  }
}

void Table::Add(const CaseCount& count, bool whole) {
  if (whole) {
    Add(static_cast<std::int64_t>(count.units));
  } else {
    Add(count.Value());
  }
}

void Table::AddBytes(const void* bytes, std::size_t size) {
  std::memcpy(next_, bytes, size);
  next_ += size;
}

}  // namespace pokermath
