// What goes to standard output and to documents.

#ifndef POKERMATH_CLI_OUTPUT_H_
#define POKERMATH_CLI_OUTPUT_H_

#include <optional>
#include <string>
#include <string_view>

#include "pages/colours.h"

namespace pokermath::cli {

/// Writes the whole text to standard output; throws Failure if it cannot.
void Print(std::string_view text);

/// Writes a picture or a list to a file in one piece, or to standard output if the path is "-";
/// throws Failure if it cannot.
void WriteDocument(const std::string& path, std::string_view content);

/// Whether the document of an option goes to standard output, which is then all that goes there;
/// throws UsageError if JSON is to go there, too.
bool IsAlone(std::string_view option, const std::optional<std::string>& path, bool json);

/// Colours when standard output is a terminal that can, and NO_COLOR is not set.
Colours ColoursForStandardOutput();

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_OUTPUT_H_
