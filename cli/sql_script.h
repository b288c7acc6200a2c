// A file of SQL statements.

#ifndef POKERMATH_CLI_SQL_SCRIPT_H_
#define POKERMATH_CLI_SQL_SCRIPT_H_

#include <string>
#include <string_view>
#include <vector>

namespace pokermath::cli {

struct SqlStatement {
  std::string text;
  int line;          // where it begins, from 1
  bool leaves_open;  // a transaction that the script has begun
};

/// Splits a script at its semicolons, but for those in quotes (E'it\'s' too), in comments, in
/// PostgreSQL's $tag$ bodies and between BEGIN and END of a trigger or BEGIN ATOMIC and END of a
/// function. What holds nothing but
/// comments is left out.
std::vector<SqlStatement> SplitSql(std::string_view script);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_SQL_SCRIPT_H_
