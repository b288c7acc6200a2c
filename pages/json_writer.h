// JSON written as it comes, without a tree of it: for answers, of which there may be millions.

#ifndef POKERMATH_PAGES_JSON_WRITER_H_
#define POKERMATH_PAGES_JSON_WRITER_H_

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "pages/json.h"

namespace pokermath {

/// A number as Json prints it: the digits that read back, null for what is none.
std::string NumberText(double number);

/// Text that Json would print, compact, member by member. What is opened has to be closed.
class JsonWriter {
 public:
  JsonWriter() { text_.reserve(1024); }

  void OpenObject() { Open('{'); }
  void CloseObject() { text_ += '}'; }
  void OpenList() { Open('['); }
  void CloseList() { text_ += ']'; }
  /// The next value is a member's.
  /// @param name  without a character that needs an escape
  JsonWriter& Key(std::string_view name);

  void Text(std::string_view text);
  void Cards(std::span<const int> cards);
  void Number(std::integral auto number) { Raw(std::to_string(number)); }
  void Number(double number);
  void True() { Raw("true"); }
  void Null() { Raw("null"); }
  /// A value that is JSON already.
  void Raw(std::string_view json);

  std::string_view text() const { return text_; }
  /// The text with a line end; the writer is empty then.
  std::string TakeLine();

 private:
  void Separate();
  void Open(char bracket);

  std::string text_;
};

}  // namespace pokermath

#endif  // POKERMATH_PAGES_JSON_WRITER_H_
