// Lines are read, and answers written, without a tree of JSON; the tree says what they should be.

#include "jobs/question_line.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "pages/json.h"

namespace pokermath {
namespace {

const EquityWords kNoDefaults;

LineOptions Untimed() { return {.defaults = kNoDefaults, .timed = false}; }

// An answer, or what stands in its place.
std::string Reply(std::string_view line) {
  try {
    return AnswerObject(line, Untimed());
  } catch (const LineError& error) {
    return ErrorObject(2, 7, error, error.id());
  }
}

// The same object in words that only the tree reads: with an escape in its first key.
std::string Escaped(const std::string& line) {
  const std::size_t place = line.find('"') + 1;
  return line.substr(0, place) + "\\u00" +
         (line[place] == 'i'   ? "69"
          : line[place] == 'p' ? "70"
                               : "67") +
         line.substr(place + 1);
}

class Questions {
 public:
  Json Next() {
    const std::string game = OneOf({"holdem", "holdem", "shortdeck", "omaha-hilo"});
    const bool omaha = game == "omaha-hilo";
    Shuffle(game == "shortdeck" ? 4 : 0);
    Json question = Json::object();
    if (Below(3) > 0)
      question["id"] = Json::array({Json(Below(99)), Json("a\"\n\x7F"), Json()})[Below(3)];
    question["game"] = game;
    const std::size_t known = omaha ? 5 : Json::array({0, 2, 3, 4, 5})[Below(5)].get<std::size_t>();
    for (int i = 0; i < 2; ++i) {
      const bool range = Below(3) == 0;
      question["players"].push_back(range ? OneOf(omaha ? kOmahaRanges : kRanges)
                                          : Take(omaha ? 4 : 2));
    }
    if (known > 0) question["board"] = Take(known);
    if (Below(4) == 0) question["dead"] = Json::array({Take(1), Take(1)});
    if (Below(4) == 0) question["folded"] = Json::array({Take(omaha ? 4 : 2)});
    if (Below(2) == 0 || known < 3)
      question.update({{"method", "sampled"}, {"trials", 1 + Below(50)}});
    if (Below(3) == 0) question["detail"] = Json::array({OneOf(kDetails), OneOf(kDetails)});
    return question;
  }

 private:
  using Texts = std::vector<std::string>;
  inline static const Texts kRanges = {"QQ+:0.5, AKs", "random", "15%", "AhKh,AA,AhKh:0.25"};
  inline static const Texts kOmahaRanges = {"AAKKds", "AAAA", "AhKhQdJd"};
  inline static const Texts kDetails = {"hand", "class", "next", "made"};

  std::size_t Below(std::size_t end) { return random_() % end; }
  std::string OneOf(const Texts& texts) { return texts[Below(texts.size())]; }
  void Shuffle(std::size_t lowest) {
    deck_.clear();
    for (std::size_t card = lowest * 4; card < 52; ++card) {
      deck_.push_back({"23456789TJQKA"[card / 4], "cdhs"[card % 4]});
    }
    std::shuffle(deck_.begin(), deck_.end(), random_);
  }
  std::string Take(std::size_t cards) {
    std::string text;
    for (; cards > 0; --cards, deck_.pop_back()) text += deck_.back();
    return text;
  }

  std::mt19937 random_{3};
  Texts deck_;
};

TEST(QuestionLine, SaysWhatTheTreeOfItSays) {
  Questions questions;
  int answers = 0;
  for (int i = 0; i < 300; ++i) {
    const std::string line = questions.Next().dump();
    SCOPED_TRACE(line);
    const std::string reply = Reply(line);
    const Json object = Json::parse(reply);
    answers += object.contains("error") ? 0 : 1;
    ASSERT_EQ(JsonLine(object), reply);
    ASSERT_EQ(Reply(Escaped(line)), reply);
    ASSERT_EQ(Reply(" " + Json::parse(line).dump(1, '\t') + "\r"), reply);
  }
  EXPECT_GT(answers, 150);
}

TEST(QuestionLine, IsRefusedAsByTheTree) {
  for (const std::string line : {
           R"({"players":"AhKd"})",
           R"({"players":["AhKd",5]})",
           R"({"players":["AhKd",["7s",[]]]})",
           R"({"players":["AhKd",["7s",{"a":[1,2.50]}]]})",
           R"({"players":["AhKd","7s7c"],"board":3})",
           R"({"players":["AhKd","7s7c"],"trials":"5"})",
           R"({"players":["AhKd","7s7c"],"trials":1.50})",
           R"({"players":["AhKd","7s7c"],"trials":0})",
           R"({"players":["AhKd","7s7c"],"detail":["hand",5]})",
           R"({"players":["AhKd","7s7c"],"method":"x"})",
           R"({"id":007,"players":["AhKd","7s7c"]})",
           R"({"id":5,"players":["AhKd","7s7c"],})",
           R"({"id":5,"players":["AhKd","7s7c"]} 5)",
           R"({"id":5,"players":["AhKd","7s7)",
           R"({"id":5,"players":["AhKd","AhKd"]})",
           R"({"id":1e2,"playrs":[]})",
       }) {
    SCOPED_TRACE(line);
    const std::string reply = Reply(line);
    EXPECT_TRUE(Json::parse(reply).contains("error"));
    // The place of a fault that is none of the words is further behind.
    const bool is_json = reply.find("no JSON object at byte") == reply.npos;
    EXPECT_EQ(Reply(Escaped(line)) == reply, is_json);
  }
  // What follows a zero is not passed over, and no depth ends the program.
  using std::string_literals::operator""s;
  const std::string deep(100'000, '['), good = R"({"players":["AhKd","7s7c"])";
  EXPECT_NE(Reply(good + "}\0}"s).find("no JSON object at byte 28"), std::string::npos);
  for (const std::string& line :
       {deep, good + ",\"id\":" + deep + std::string(deep.size(), ']') + "}"}) {
    EXPECT_NE(Reply(line).find("more than 64 deep"), std::string::npos);
  }
  EXPECT_EQ(Reply(good + R"(,"id":[["\"[{",{"a":[]}]]})").find("error"), std::string::npos);
  // Of a key that is there twice the last one holds.
  EXPECT_EQ(Reply(R"({"players":5,"players":["AhKd","7s7c"]})"),
            Reply(R"({"players":["AhKd","7s7c"]})"));
}

TEST(QuestionLine, TakesSeedAndTimeFromItsCaller) {
  const std::string line = R"({"players":["AhKd","QQ+"],"method":"sampled","trials":1000)";
  const auto answer = [&](const std::string& rest, std::uint64_t seed) {
    return AnswerObject(line + rest, {.defaults = kNoDefaults, .seed = seed, .timed = false});
  };
  EXPECT_EQ(answer("}", 5), answer(R"(,"seed":5})", 6));
  EXPECT_NE(answer("}", 5), answer("}", 6));
  EXPECT_FALSE(Json::parse(answer("}", 5)).contains("elapsed_ms"));
  EXPECT_TRUE(
      Json::parse(AnswerObject(line + "}", {.defaults = kNoDefaults})).contains("elapsed_ms"));
}

}  // namespace
}  // namespace pokermath
