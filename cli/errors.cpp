#include "cli/errors.h"

#include <cstdio>
#include <system_error>

namespace pokermath::cli {

std::string SystemReason(int error_number) { return std::generic_category().message(error_number); }

Failure SystemFailure(const std::string& what, int error_number) {
  return Failure(what + ": " + SystemReason(error_number));
}

void PrintError(std::string_view text) {
  const std::string line = "pokermath: " + std::string(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace pokermath::cli
