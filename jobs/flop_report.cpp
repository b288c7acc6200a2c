#include "jobs/flop_report.h"

#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "calculator/question.h"
#include "calculator/suit_symmetry.h"
#include "pages/colours.h"
#include "pages/errors.h"
#include "pages/json.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

// What all questions have in common, as an object has it.
Json CommonOf(const EquityWords& words, const EquityQuestion& question) {
  Json json = Json::object();
  const auto set = [&](const char* key, const std::optional<std::string>& text) {
    if (text) json[key] = *text;
  };
  set("game", words.game);
  json["players"] = words.players;
  if (!words.folded.empty()) json["folded"] = words.folded;
  set("dead", words.dead);
  set("to", words.to);
  if (words.exact || words.sampled) json["method"] = words.exact ? "exact" : "sampled";
  if (words.standard_error) json["standard_error"] = question.sampling.standard_error;
  if (words.trials) json["trials"] = question.sampling.trials;
  if (words.seed) json["seed"] = question.seed;
  if (!words.by.empty()) json["detail"] = words.by;
  return json;
}

}  // namespace

std::string FlopReport(const EquityWords& words) {
  if (words.board) Refuse("--board does not go with a report over all flops", "board");
  const AskedEquity asked = ReadEquity(words);
  PlanOf(asked);  // refuses what has no answer
  const Result<CheckedQuestion> checked = Check(asked.question);
  const CardSet live = checked->live() - checked->certain();
  const SuitSymmetry symmetry(*checked);
  const std::vector<int> cards(live.begin(), live.end());
  const Json common = CommonOf(words, asked.question);
  std::string lines;
  for (std::size_t a = 0; a < cards.size(); ++a) {
    for (std::size_t b = 0; b < a; ++b) {
      for (std::size_t c = 0; c < b; ++c) {
        const int alike = symmetry.TimesOf({cards[c], cards[b], cards[a]});
        if (alike == 0) continue;
        const std::string flop = CardsText(std::vector{cards[a], cards[b], cards[c]});
        Json question = {{"id", {{"flop", flop}, {"alike", alike}}}};
        question.update(common);
        question["board"] = flop;
        lines += JsonLine(question);
      }
    }
  }
  return lines;
}

}  // namespace pokermath
