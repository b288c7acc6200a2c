// Golden figures as the tests read them.

#ifndef POKERMATH_TESTS_GOLDEN_ROWS_H_
#define POKERMATH_TESTS_GOLDEN_ROWS_H_

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace pokermath {

// The fields of a table in tests/data, without its titles.
inline std::vector<std::vector<std::string>> GoldenRows(const std::string& name) {
  std::ifstream in(std::string(POKERMATH_TEST_DATA) + "/" + name);
  std::vector<std::vector<std::string>> rows;
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line)) {
    rows.emplace_back();
    std::istringstream fields(line);
    for (std::string field; std::getline(fields, field, ',');) rows.back().push_back(field);
  }
  return rows;
}

}  // namespace pokermath

#endif  // POKERMATH_TESTS_GOLDEN_ROWS_H_
