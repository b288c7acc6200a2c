// Where the table files are, and how one of them is shown.

#ifndef POKERMATH_CLI_TABLE_REPORT_H_
#define POKERMATH_CLI_TABLE_REPORT_H_

#include <string>
#include <string_view>

#include "cli/output.h"
#include "cli/table_files.h"
#include "pages/json.h"

namespace pokermath::cli {

/// `dir` or, if that is empty, the folder that the environment names. Throws UsageError when it
/// names none.
std::string TableFolder(const std::string& dir);

/// Name, file, length, checksum and state.
Json TableJson(const TableFile& table, const TableState& state);

/// The same as a line, with `said` in place of the state.
std::string TableLine(const TableFile& table, const TableState& state, std::string_view said);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_TABLE_REPORT_H_
