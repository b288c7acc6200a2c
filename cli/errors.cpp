#include "cli/errors.h"

#include <cstdio>
#include <string>

namespace pokermath::cli {

void PrintError(std::string_view text) {
  const std::string line = "pokermath: " + std::string(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace pokermath::cli
