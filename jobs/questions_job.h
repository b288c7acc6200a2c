// The job of answering a file of questions, one answer a line.

#ifndef POKERMATH_JOBS_QUESTIONS_JOB_H_
#define POKERMATH_JOBS_QUESTIONS_JOB_H_

#include <memory>

#include "jobs/list_job.h"
#include "jobs/question_file.h"

namespace pokermath {

/// A unit is a line. Answers are those of JSON lines elsewhere, but without a time; where a
/// question has no seed, it is the number of its line, counted from 1. A question that limits its
/// time is an error: its answer would depend on the machine.
class QuestionsJob final : public ListJob {
 public:
  /// @param three_way  whether the table of three hands is there, which decides what is sampled
  QuestionsJob(QuestionFile file, bool three_way) : file_(std::move(file)), three_way_(three_way) {}

  Json Identity() const override;
  std::int64_t units() const override { return file_.lines(); }
  const char* unit_name() const override { return "questions"; }
  const char* result_name() const override { return "answers.jsonl"; }
  void Check(const UnitRange& units) const override;
  std::unique_ptr<Maker> NewMaker() const override;

  const QuestionFile& file() const { return file_; }

 private:
  QuestionFile file_;
  bool three_way_;
};

/// Answers some questions again, taken at random, and compares them with the lines of a file of
/// answers. Throws Failure if that file does not have an answer for every question.
///
/// @param go_on  asked now and then with the part that is done; false ends the work
struct Verified {
  std::int64_t questions = 0;        ///< that were answered again
  std::vector<std::int64_t> differ;  ///< lines of the questions whose answers are others, from 1
};
Verified VerifyAnswers(const QuestionsJob& job, const std::string& answers, std::int64_t sample,
                       std::uint64_t seed, const std::function<bool(double part)>& go_on);

}  // namespace pokermath

#endif  // POKERMATH_JOBS_QUESTIONS_JOB_H_
