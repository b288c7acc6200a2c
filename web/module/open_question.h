// One question on its way to an answer: a plan, and the sums of the steps that were done here.

#ifndef POKERMATH_WEB_MODULE_OPEN_QUESTION_H_
#define POKERMATH_WEB_MODULE_OPEN_QUESTION_H_

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "pages/equity_object.h"
#include "pages/equity_run.h"
#include "pages/equity_words.h"
#include "pages/json.h"
#include "pokermath/calculator.h"

namespace pokermath {

class OpenQuestion {
 public:
  /// @param object  of JSON, as `pokermath equity -` reads it
  explicit OpenQuestion(const QuestionObject& object);

  const Calculation& plan() const { return plan_; }
  const Sums& sums() const { return sums_; }
  /// What was planned, for who waits: steps, method, reason, time_ms, warnings.
  Json Summary() const;

  void Do(std::int64_t first, std::int64_t last) { plan_.Do(first, last, sums_); }
  /// The sums as bytes; there are none then.
  std::string TakeSums();
  /// Adds bytes of TakeSums of the same question, mostly from elsewhere.
  void AddSums(std::string_view bytes);

  /// The object that `pokermath equity --json` prints.
  std::string Answer(Seconds elapsed, bool out_of_time);
  // After Answer only.
  /// The page that `pokermath equity` prints, with all details.
  std::string Text() const;
  /// Of a detail that was asked for.
  std::string Csv(By by) const;
  std::string Svg(By by) const;

 private:
  const EquityRun& AnsweredBy(By by) const;

  std::string id_;  // JSON
  AskedEquity asked_;
  Calculation plan_;
  Sums sums_;
  std::optional<EquityRun> run_;
};

}  // namespace pokermath

#endif  // POKERMATH_WEB_MODULE_OPEN_QUESTION_H_
