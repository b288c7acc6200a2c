#include "pages/equity_object.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "pages/errors.h"
#include "pages/json_writer.h"

namespace pokermath {
namespace {

using Value = ObjectValue;
using Kind = ObjectValue::Kind;

struct Key {
  std::string_view name;
  void (*read)(const Value& value, EquityWords& words);
};

[[noreturn]] void RefuseValue(std::string_view key, const Value& value, std::string_view expected,
                              std::string_view field) {
  Refuse(fmt::format("the value of '{}' is {}: expected {}", key, Quoted(value.Json()), expected),
         field);
}
[[noreturn]] void RefuseValue(std::string_view key, const Value& value, std::string_view expected) {
  RefuseValue(key, value, expected, key);
}

// Cards or a range as a text, or cards as a list of texts.
std::string CardsOf(std::string_view key, const Value& value, std::string_view field) {
  constexpr const char* kExpected = "a text or a list of cards";
  if (value.IsText()) return value.text;
  if (value.kind != Kind::kList) RefuseValue(key, value, kExpected, field);
  std::string text;
  for (const Value& card : value.items) {
    if (!card.IsText()) RefuseValue(key, value, kExpected, field);
    text += (text.empty() ? "" : " ") + card.text;
  }
  return text;
}

std::vector<std::string> PlayersOf(std::string_view key, const Value& value) {
  if (value.kind != Kind::kList) {
    RefuseValue(key, value, "a list with a text or a list of cards for each");
  }
  std::vector<std::string> players;
  players.reserve(value.items.size());
  for (const Value& player : value.items) {
    players.push_back(CardsOf(key, player, FieldInList(key, players.size())));
  }
  return players;
}

std::string TextOf(std::string_view key, const Value& value) {
  if (!value.IsText()) RefuseValue(key, value, "a text");
  return value.text;
}

// Read as a number where all numbers are.
std::string NumberOf(std::string_view key, const Value& value) {
  if (value.kind != Kind::kNumber) RefuseValue(key, value, "a number");
  return value.text;
}

// An empty list of cards is none.
std::optional<std::string> SomeCardsOf(std::string_view key, const Value& value) {
  std::string cards = CardsOf(key, value, key);
  return cards.empty() ? std::nullopt : std::optional(std::move(cards));
}

void ReadMethod(const Value& value, EquityWords& words) {
  const std::string method = TextOf("method", value);
  words.exact = method == "exact";
  words.sampled = method == "sampled";
  words.any_method = method == "auto";
  if (!words.exact && !words.sampled && !words.any_method) {
    RefuseValue("method", value, "auto, exact or sampled");
  }
}

// A text or a list of texts.
void ReadDetail(const Value& value, EquityWords& words) {
  const bool is_list =
      value.kind == Kind::kList && std::ranges::all_of(value.items, &Value::IsText);
  if (!is_list && !value.IsText()) RefuseValue("detail", value, "a text or a list of texts");
  words.by.clear();
  for (const Value& text : is_list ? value.items : std::vector{value})
    words.by.push_back(text.text);
}

constexpr Key kKeys[] = {
    {"id", [](const Value&, EquityWords&) {}},
    {"game", [](const Value& v, EquityWords& w) { w.game = TextOf("game", v); }},
    {"players", [](const Value& v, EquityWords& w) { w.players = PlayersOf("players", v); }},
    {"folded", [](const Value& v, EquityWords& w) { w.folded = PlayersOf("folded", v); }},
    {"board", [](const Value& v, EquityWords& w) { w.board = SomeCardsOf("board", v); }},
    {"dead", [](const Value& v, EquityWords& w) { w.dead = SomeCardsOf("dead", v); }},
    {"to", [](const Value& v, EquityWords& w) { w.to = TextOf("to", v); }},
    {"method", ReadMethod},
    {"standard_error",
     [](const Value& v, EquityWords& w) { w.standard_error = NumberOf("standard_error", v); }},
    {"trials", [](const Value& v, EquityWords& w) { w.trials = NumberOf("trials", v); }},
    {"time_ms", [](const Value& v, EquityWords& w) { w.time_ms = NumberOf("time_ms", v); }},
    {"seed", [](const Value& v, EquityWords& w) { w.seed = NumberOf("seed", v); }},
    {"detail", ReadDetail},
};

// Reads what is known to be no JSON once more, to say why.
struct FaultFinder : Json::json_sax_t {
  explicit FaultFinder(std::string_view read) : text(read) {}

  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool number_integer(number_integer_t) override { return true; }
  bool number_unsigned(number_unsigned_t) override { return true; }
  bool number_float(number_float_t, const string_t&) override { return true; }
  bool string(string_t&) override { return true; }
  bool binary(binary_t&) override { return true; }
  bool start_object(std::size_t) override { return true; }
  bool key(string_t&) override { return true; }
  bool end_object() override { return true; }
  bool start_array(std::size_t) override { return true; }
  bool end_array() override { return true; }
  bool parse_error(std::size_t byte, const std::string&, const Json::exception& error) override {
    constexpr int kNumberOutOfRange = 406;
    if (error.id == kNumberOutOfRange) Refuse(Quoted(text) + " has a number that is too large");
    Refuse(fmt::format("{} is no JSON object at byte {}", Quoted(text), byte));
  }

  std::string_view text;
};

// Json reads any depth, but what walks through its values member by member would run out of its
// stack.
constexpr int kMostDepth = 64;

bool IsTooDeep(std::string_view text) {
  int depth = 0;
  bool in_text = false;
  for (std::size_t i = 0; i < text.size() && depth <= kMostDepth; ++i) {
    const char c = text[i];
    if (c == '"') in_text = !in_text;
    if (in_text && c == '\\') ++i;
    if (in_text) continue;
    if (c == '{' || c == '[') ++depth;
    if (c == '}' || c == ']') --depth;
  }
  return depth > kMostDepth;
}

// Reads the objects that nearly all lines are: plain texts without escapes, whole numbers, and
// lists of them. Whatever else there is, also what is wrong, is left to Json.
class PlainReader {
 public:
  explicit PlainReader(std::string_view text) : rest_(text) {}

  /// False for any other object.
  bool Read(QuestionObject& object) {
    if (!Take('{')) return false;
    while (object.members.size() < std::size(kKeys)) {
      auto& [name, value] = object.members.emplace_back();
      // Of a key that is there twice the last value holds.
      if (!ReadText(name) || object.Find(name) != &value || !Take(':') || !ReadValue(value, 0)) {
        return false;
      }
      if (Take('}')) return Next() == 0 && rest_.empty();
      if (!Take(',')) return false;
    }
    return false;
  }

 private:
  // The next character that is no blank; 0 at the end.
  char Next() {
    while (!rest_.empty() && (rest_[0] == ' ' || rest_[0] == '\t' || rest_[0] == '\r')) {
      rest_.remove_prefix(1);
    }
    return rest_.empty() ? '\0' : rest_[0];
  }

  bool Take(char c) {
    if (Next() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool ReadText(std::string& text) {
    if (!Take('"')) return false;
    const auto is_plain = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };
    const auto end = std::ranges::find_if_not(rest_, is_plain);
    if (end == rest_.end() || *end != '"') return false;
    text.assign(rest_.begin(), end);
    rest_.remove_prefix(text.size() + 1);
    return true;
  }

  // As it would be written.
  bool ReadNumber(std::string& text) {
    constexpr std::size_t kMostDigits = 18;
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    text.assign(rest_.begin(), std::ranges::find_if_not(rest_, is_digit));
    rest_.remove_prefix(text.size());
    const bool is_written_so = text == "0" || (!text.empty() && text[0] != '0');
    // What follows may be a fraction or an exponent.
    return is_written_so && text.size() <= kMostDigits && (Next() == ',' || Next() == '}');
  }

  bool ReadValue(Value& value, int depth) {
    if (Next() == '"') return ReadText(value.text);
    if (Next() != '[') {
      value.kind = Kind::kNumber;
      return depth == 0 && ReadNumber(value.text);
    }
    value.kind = Kind::kList;
    return depth < 2 && ReadList(value.items, depth + 1);
  }

  bool ReadList(std::vector<Value>& items, int depth) {
    Take('[');
    if (Take(']')) return true;
    do {
      if (!ReadValue(items.emplace_back(), depth)) return false;
    } while (Take(','));
    return Take(']');
  }

  std::string_view rest_;
};

Value ValueOf(const Json& json) {
  if (json.is_string()) return {Kind::kText, json.get<std::string>(), {}};
  if (json.is_array()) {
    Value list{Kind::kList, "", {}};
    for (const Json& item : json) list.items.push_back(ValueOf(item));
    return list;
  }
  return {json.is_number() ? Kind::kNumber : Kind::kOther,
          json.dump(-1, ' ', false, Json::error_handler_t::replace),
          {}};
}

}  // namespace

std::string ObjectValue::Json() const {
  JsonWriter writer;
  WriteTo(writer);
  return std::string(writer.text());
}

void ObjectValue::WriteTo(JsonWriter& writer) const {
  if (IsText()) return writer.Text(text);
  if (kind != Kind::kList) return writer.Raw(text);
  writer.OpenList();
  for (const ObjectValue& item : items) item.WriteTo(writer);
  writer.CloseList();
}

const ObjectValue* QuestionObject::Find(std::string_view key) const {
  const auto found = std::ranges::find(members, key, &Member::first);
  return found == members.end() ? nullptr : &found->second;
}

std::string QuestionObject::Id() const {
  const ObjectValue* id = Find("id");
  std::string json = id == nullptr ? "" : id->Json();
  return json == "null" ? "" : json;
}

QuestionObject ParseQuestion(std::string_view text) {
  QuestionObject object;
  if (PlainReader(text).Read(object)) return object;
  object.members.clear();
  const Json json = ParseObject(text);
  for (const auto& [name, value] : json.items()) object.members.emplace_back(name, ValueOf(value));
  return object;
}

Json ParseObject(std::string_view text) {
  // Json would end there.
  if (const std::size_t zero = text.find('\0'); zero != text.npos) {
    Refuse(fmt::format("{} is no JSON object at byte {}", Quoted(text), zero + 1));
  }
  if (IsTooDeep(text)) {
    Refuse(fmt::format("{} is nested more than {} deep", Quoted(text), kMostDepth));
  }
  Json object = Json::parse(text, nullptr, false);
  if (object.is_object()) return object;
  if (object.is_discarded()) {
    FaultFinder finder(text);
    Json::sax_parse(text, &finder);
  }
  Refuse(Quoted(text) + " is no JSON object");
}

EquityWords ReadObject(const QuestionObject& object, const EquityWords& defaults) {
  EquityWords words;
  words.of_object = true;
  words.by_name = "detail";
  for (const auto& [name, value] : object.members) {
    const auto key = std::ranges::find(kKeys, name, &Key::name);
    if (key == std::ranges::end(kKeys)) {
      std::string known;
      for (const Key& one : kKeys) known += (known.empty() ? "" : ", ") + std::string(one.name);
      Refuse(fmt::format("{} is not a key of a question: {}", Quoted(name), known), name);
    }
    key->read(value, words);
  }
  words.TakeMissing(defaults);
  return words;
}

}  // namespace pokermath
