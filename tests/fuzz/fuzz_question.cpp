// Any line as a question: what is read without a tree of JSON is what the tree says, and nothing
// else is accepted.

#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string_view>

#include "jobs/question_file.h"
#include "pages/equity_object.h"
#include "pages/errors.h"

namespace pokermath {
namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// Errors are one line of text that names what is wrong.
void RequireError(const UsageError& error) {
  const std::string_view text = error.what();
  Require(!text.empty() && text.find('\n') == text.npos);
}

void CompareWithTree(std::string_view line, const QuestionObject& question) {
  const Json tree = Json::parse(line, nullptr, false);
  Require(tree.is_object() && tree.size() == question.members.size());
  for (const auto& [key, value] : question.members) {
    Require(tree.contains(key) && Json::parse(value.Json()) == tree[key]);
  }
  // A key may be written with escapes or twice, which nobody does.
  constexpr std::string_view kId = "\"id\"";
  if (line.find('\\') != line.npos || line.find(kId) != line.rfind(kId)) return;
  const std::string_view id = IdOf(line);
  const Json known = tree.value("id", Json());
  Require(id.empty() ? known.is_null() : Json::parse(id) == known);
}

}  // namespace
}  // namespace pokermath

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pokermath;
  const std::string_view line(reinterpret_cast<const char*>(data), size);
  IdOf(line);
  try {
    const QuestionObject question = ParseQuestion(line);
    CompareWithTree(line, question);
    ReadObject(question, {});
  } catch (const UsageError& error) {
    RequireError(error);
  }
  return 0;
}
