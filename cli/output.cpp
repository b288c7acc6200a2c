#include "cli/output.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "cli/errors.h"
#include "platform/files.h"

namespace pokermath::cli {
namespace {

constexpr std::string_view kStandardOutput = "-";  // as a path

}  // namespace

void Print(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw SystemFailure("cannot write to standard output", errno);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void WriteDocument(const std::string& path, std::string_view content) {
  if (path == kStandardOutput) return Print(content);
  AtomicFile file(path);
  file.Write(content.data(), content.size());
  if (!file.Commit()) throw SystemFailure("cannot write " + Quoted(path), errno);
}

bool IsAlone(std::string_view option, const std::optional<std::string>& path, bool json) {
  if (path != kStandardOutput) return false;
  if (json) {
    throw UsageError(
        fmt::format("{} - and --json do not go together: both are standard output", option));
  }
  return true;
}

Colours ColoursForStandardOutput() {
  const char* no_color = std::getenv("NO_COLOR");
  const char* term = std::getenv("TERM");
  return Colours(isatty(STDOUT_FILENO) == 1 && (no_color == nullptr || *no_color == '\0') &&
                 term != nullptr && std::string_view(term) != "dumb");
}

}  // namespace pokermath::cli
