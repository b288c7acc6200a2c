#include "pages/equity_object.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "pages/errors.h"

namespace pokermath {
namespace {

struct Key {
  std::string_view name;
  void (*read)(const Json& value, EquityWords& words);
};

[[noreturn]] void RefuseValue(std::string_view key, const Json& value, std::string_view expected,
                              std::string_view field) {
  Refuse(fmt::format("the value of '{}' is {}: expected {}", key,
                     Quoted(value.dump(-1, ' ', false, Json::error_handler_t::replace)), expected),
         field);
}
[[noreturn]] void RefuseValue(std::string_view key, const Json& value, std::string_view expected) {
  RefuseValue(key, value, expected, key);
}

// Cards or a range as a text, or cards as a list of texts.
std::string CardsOf(std::string_view key, const Json& value, std::string_view field) {
  constexpr const char* kExpected = "a text or a list of cards";
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_array()) RefuseValue(key, value, kExpected, field);
  std::string text;
  for (const Json& card : value) {
    if (!card.is_string()) RefuseValue(key, value, kExpected, field);
    text += (text.empty() ? "" : " ") + card.get<std::string>();
  }
  return text;
}

std::vector<std::string> PlayersOf(std::string_view key, const Json& value) {
  if (!value.is_array()) RefuseValue(key, value, "a list with a text or a list of cards for each");
  std::vector<std::string> players;
  for (const Json& player : value) {
    players.push_back(CardsOf(key, player, fmt::format("{}/{}", key, players.size())));
  }
  return players;
}

std::string TextOf(std::string_view key, const Json& value) {
  if (!value.is_string()) RefuseValue(key, value, "a text");
  return value.get<std::string>();
}

// Read as a number where all numbers are.
std::string NumberOf(std::string_view key, const Json& value) {
  if (!value.is_number()) RefuseValue(key, value, "a number");
  return value.dump();
}

// An empty list of cards is none.
std::optional<std::string> SomeCardsOf(std::string_view key, const Json& value) {
  std::string cards = CardsOf(key, value, key);
  return cards.empty() ? std::nullopt : std::optional(std::move(cards));
}

void ReadMethod(const Json& value, EquityWords& words) {
  const std::string method = TextOf("method", value);
  words.exact = method == "exact";
  words.sampled = method == "sampled";
  words.any_method = method == "auto";
  if (!words.exact && !words.sampled && !words.any_method) {
    RefuseValue("method", value, "auto, exact or sampled");
  }
}

// A text or a list of texts.
void ReadDetail(const Json& value, EquityWords& words) {
  const bool is_list = value.is_array() && std::ranges::all_of(value, &Json::is_string);
  if (!is_list && !value.is_string()) RefuseValue("detail", value, "a text or a list of texts");
  words.by = is_list ? value.get<std::vector<std::string>>()
                     : std::vector<std::string>{value.get<std::string>()};
}

constexpr Key kKeys[] = {
    {"id", [](const Json&, EquityWords&) {}},
    {"game", [](const Json& v, EquityWords& w) { w.game = TextOf("game", v); }},
    {"players", [](const Json& v, EquityWords& w) { w.players = PlayersOf("players", v); }},
    {"folded", [](const Json& v, EquityWords& w) { w.folded = PlayersOf("folded", v); }},
    {"board", [](const Json& v, EquityWords& w) { w.board = SomeCardsOf("board", v); }},
    {"dead", [](const Json& v, EquityWords& w) { w.dead = SomeCardsOf("dead", v); }},
    {"to", [](const Json& v, EquityWords& w) { w.to = TextOf("to", v); }},
    {"method", ReadMethod},
    {"standard_error",
     [](const Json& v, EquityWords& w) { w.standard_error = NumberOf("standard_error", v); }},
    {"trials", [](const Json& v, EquityWords& w) { w.trials = NumberOf("trials", v); }},
    {"time_ms", [](const Json& v, EquityWords& w) { w.time_ms = NumberOf("time_ms", v); }},
    {"seed", [](const Json& v, EquityWords& w) { w.seed = NumberOf("seed", v); }},
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

}  // namespace

Json ParseObject(std::string_view text) {
  Json object = Json::parse(text, nullptr, false);
  if (object.is_object()) return object;
  if (object.is_discarded()) {
    FaultFinder finder(text);
    Json::sax_parse(text, &finder);
  }
  Refuse(Quoted(text) + " is no JSON object");
}

EquityWords ReadObject(const Json& object, const EquityWords& defaults) {
  EquityWords words;
  words.of_object = true;
  words.by_name = "detail";
  for (const auto& [name, value] : object.items()) {
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
