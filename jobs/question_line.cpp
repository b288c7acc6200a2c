#include "jobs/question_line.h"

#include <chrono>
#include <nlohmann/json.hpp>

#include "jobs/run.h"
#include "pages/equity_object.h"
#include "pages/equity_report.h"
#include "pages/json.h"

namespace pokermath {

bool IsQuestion(std::string_view line) {
  const std::size_t start = line.find_first_not_of(" \t\r");
  return start != line.npos && line[start] != '#';
}

EquityRun RunLine(const AskedEquity& asked, const LineOptions& options) {
  using Clock = std::chrono::steady_clock;
  if (options.warn) {
    for (const std::string& warning : asked.warnings) options.warn(warning);
  }
  try {
    const Clock::time_point start = Clock::now();
    const Calculation plan = PlanOf(asked);
    const RunOptions how{.threads = options.threads, .time = asked.time};
    EquityRun run = options.run ? options.run(plan, how) : Run(plan, how);
    if (options.timed) run.elapsed = Clock::now() - start;
    return run;
  } catch (const Failure& failure) {
    throw UsageError(failure.what());
  }
}

std::string AnswerObject(std::string_view line, const LineOptions& options) {
  std::string id;
  try {
    const QuestionObject object = ParseQuestion(line);
    id = object.Id();
    const EquityWords words = ReadObject(object, options.defaults);
    AskedEquity asked = ReadEquity(words);
    if (options.seed && !words.seed) asked.question.seed = *options.seed;
    return EquityJson(asked, RunLine(asked, options), id);
  } catch (const UsageError& error) {
    throw LineError(error, id);
  }
}

std::string ErrorObject(int schema, std::int64_t line, const UsageError& error,
                        const std::string& id) {
  Json object = {{"schema", schema}};
  if (!id.empty()) object["id"] = Json::parse(id);
  object["line"] = line;
  object["error"] = error.what();
  if (!error.field().empty()) object["field"] = error.field();
  return JsonLine(object);
}

}  // namespace pokermath
