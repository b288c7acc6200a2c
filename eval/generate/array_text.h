// Numbers as the text of a C++ array.

#ifndef POKERMATH_EVAL_GENERATE_ARRAY_TEXT_H_
#define POKERMATH_EVAL_GENERATE_ARRAY_TEXT_H_

#include <cstddef>
#include <ostream>
#include <string_view>

namespace pokermath {

/// Writes "{1, 2, ...}".
template <typename Numbers>
void WriteBraces(std::ostream& out, const Numbers& numbers) {
  out << "{";
  std::size_t column = 0;
  for (const auto& number : numbers) out << (column++ % 16 == 0 ? "\n" : "") << number << ",";
  out << "}";
}

/// Writes "declaration = {1, 2, ...};".
template <typename Numbers>
void WriteArray(std::ostream& out, std::string_view declaration, const Numbers& numbers) {
  out << declaration << " = ";
  WriteBraces(out, numbers);
  out << ";\n";
}

}  // namespace pokermath

#endif  // POKERMATH_EVAL_GENERATE_ARRAY_TEXT_H_
