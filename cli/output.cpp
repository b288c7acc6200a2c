#include "cli/output.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "cli/errors.h"
#include "platform/files.h"
#include "pokermath/cards.h"

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

std::string JsonLine(const Json& object) {
  return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string CardsText(std::span<const int> cards) {
  std::string text;
  for (const int card : cards) text += CardName(card);
  return text;
}

Json CardsJson(std::span<const int> cards) {
  Json list = Json::array();
  for (const int card : cards) list.push_back(CardName(card));
  return list;
}

Colours Colours::ForStandardOutput() {
  const char* no_color = std::getenv("NO_COLOR");
  const char* term = std::getenv("TERM");
  return Colours(isatty(STDOUT_FILENO) == 1 && (no_color == nullptr || *no_color == '\0') &&
                 term != nullptr && std::string_view(term) != "dumb");
}

std::string Colours::Strong(std::string_view text) const { return Paint("1", text); }

std::string Colours::Faint(std::string_view text) const { return Paint("2", text); }

std::string Colours::Class(std::string_view text, int kind) const {
  return Paint(kind == 0 ? "1;33" : kind < 0 ? "1;32" : "1;34", text);
}

std::string Colours::Out(std::string_view text, bool nuts) const {
  return Paint(nuts ? "1;32" : "1;33", text);
}

std::string Colours::Cards(std::span<const int> cards) const {
  // Green, blue and red for clubs, diamonds and hearts; spades as the text around them.
  static constexpr const char* kSuitCodes[4] = {"32", "34", "31", "39"};
  std::string text;
  for (const int card : cards) text += Paint(kSuitCodes[card / 13], CardName(card));
  return text;
}

std::string Colours::Paint(std::string_view code, std::string_view text) const {
  return on_ ? fmt::format("\x1b[{}m{}\x1b[0m", code, text) : std::string(text);
}

}  // namespace pokermath::cli
