// What goes to standard output: plain text, colours for a terminal, JSON.

#ifndef POKERMATH_CLI_OUTPUT_H_
#define POKERMATH_CLI_OUTPUT_H_

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "nlohmann/json_fwd.hpp"

namespace pokermath::cli {

/// Keys stay in the order in which they are set.
using Json = nlohmann::ordered_json;

/// Version of the JSON layout, the key "schema" of every object.
inline constexpr int kJsonSchema = 1;

/// Writes the whole text to standard output; throws Failure if it cannot.
void Print(std::string_view text);

/// Writes a picture or a list to a file in one piece, or to standard output if the path is "-";
/// throws Failure if it cannot.
void WriteDocument(const std::string& path, std::string_view content);

/// Whether the document of an option goes to standard output, which is then all that goes there;
/// throws UsageError if JSON is to go there, too.
bool IsAlone(std::string_view option, const std::optional<std::string>& path, bool json);

/// One object on one line. Bytes that are no UTF-8 become U+FFFD.
std::string JsonLine(const Json& object);

/// Card names without blanks: "AhKd".
std::string CardsText(std::span<const int> cards);

/// Card names as a list: ["Ah", "Kd"].
Json CardsJson(std::span<const int> cards);

/// Escape sequences for a text that may be shown on a terminal; all of them empty for any other
/// destination.
class Colours {
 public:
  /// Colours when standard output is a terminal that can, and NO_COLOR is not set.
  static Colours ForStandardOutput();

  explicit Colours(bool on) : on_(on) {}
  std::string Strong(std::string_view text) const;
  std::string Faint(std::string_view text) const;
  /// A class of hands in the colour of pairs (kind 0), suited (below 0) or offsuit hands.
  std::string Class(std::string_view text, int kind) const;
  /// A card that improves a hand, and one that makes it the nuts.
  std::string Out(std::string_view text, bool nuts) const;
  /// CardsText, each card in the colour of its suit.
  std::string Cards(std::span<const int> cards) const;

 private:
  std::string Paint(std::string_view code, std::string_view text) const;

  bool on_;
};

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_OUTPUT_H_
