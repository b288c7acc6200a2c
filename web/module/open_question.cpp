#include "web/module/open_question.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "pages/equity_detail.h"
#include "pages/equity_report.h"
#include "pages/equity_svg.h"
#include "pages/errors.h"

namespace pokermath {

OpenQuestion::OpenQuestion(const QuestionObject& object)
    : id_(object.Id()),
      asked_(ReadEquity(ReadObject(object, {}))),
      plan_(PlanOf(asked_)),
      sums_(plan_.NewSums()) {}

Json OpenQuestion::Summary() const {
  return {{"steps", plan_.steps()},
          {"method", plan_.method() == Method::kSampled ? "sampled" : "exact"},
          {"reason", plan_.reason()},
          {"time_ms", asked_.time ? Json(asked_.time->count()) : Json()},
          {"warnings", asked_.warnings}};
}

std::string OpenQuestion::TakeSums() { return std::exchange(sums_, plan_.NewSums()).Bytes(); }

void OpenQuestion::AddSums(std::string_view bytes) {
  const Result<Sums> read = plan_.ReadSums(bytes);
  if (!read) Refuse(read.error().text);
  sums_.Add(*read);
}

std::string OpenQuestion::Answer(Seconds elapsed, bool out_of_time) {
  Result<EquityAnswer> answer = plan_.Answer(sums_);
  if (!answer) Refuse(answer.error().text);
  run_ = {.answer = *std::move(answer), .out_of_time = out_of_time, .elapsed = elapsed};
  return EquityJson(asked_, *run_, id_);
}

std::string OpenQuestion::Text() const {
  if (!run_) Refuse("the question has no answer yet");
  const Colours colours(false);
  std::string page = EquityPage(asked_, *run_, colours);
  for (const By by : asked_.by) page += DetailText(asked_, *run_, by, colours);
  return page;
}

const EquityRun& OpenQuestion::AnsweredBy(By by) const {
  if (!run_ || std::ranges::find(asked_.by, by) == asked_.by.end()) {
    Refuse("the question was not asked for this detail", "by");
  }
  return *run_;
}

std::string OpenQuestion::Csv(By by) const { return DetailCsv(asked_, AnsweredBy(by), by); }

std::string OpenQuestion::Svg(By by) const {
  const EquityRun& run = AnsweredBy(by);
  if (!HasPicture(asked_, by)) {
    Refuse("there are pictures of hands, of classes, and of what comes next where that is one card",
           "by");
  }
  return DetailSvg(asked_, run, by);
}

}  // namespace pokermath
