// A question of equity as a JSON object.

#ifndef POKERMATH_PAGES_EQUITY_OBJECT_H_
#define POKERMATH_PAGES_EQUITY_OBJECT_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pages/equity_words.h"
#include "pages/json.h"

namespace pokermath {

class JsonWriter;

/// What stands behind a key.
struct ObjectValue {
  enum class Kind { kText, kNumber, kList, kOther };

  Kind kind = Kind::kText;
  std::string text;  ///< of a number and of what a question has not, JSON
  std::vector<ObjectValue> items;

  bool IsText() const { return kind == Kind::kText; }
  std::string Json() const;
  void WriteTo(JsonWriter& writer) const;
};

struct QuestionObject {
  using Member = std::pair<std::string, ObjectValue>;
  std::vector<Member> members;  ///< none of them twice

  /// Nothing where it is not there.
  const ObjectValue* Find(std::string_view key) const;
  /// JSON of what is to come back with the answer; empty for none.
  std::string Id() const;
};

/// Parses the text of an object; refuses any other text.
Json ParseObject(std::string_view text);
/// The same for a question, without a tree of Json where the text is as simple as most.
QuestionObject ParseQuestion(std::string_view text);

/// The words of an object, and the options of `defaults` that it does not have itself; "id" is the
/// caller's. Refuses a key that is none, and a value that cannot be read.
EquityWords ReadObject(const QuestionObject& object, const EquityWords& defaults);

}  // namespace pokermath

#endif  // POKERMATH_PAGES_EQUITY_OBJECT_H_
