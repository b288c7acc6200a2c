#include "cli/bulk_job.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string_view>

#include "cli/errors.h"
#include "cli/output.h"
#include "jobs/flop_report.h"
#include "jobs/job_folder.h"
#include "pages/game.h"
#include "platform/files.h"

namespace pokermath::cli {
namespace {

constexpr std::array<std::string_view, 5> kJobs = {"flop-report", "three-way", "omaha-strength",
                                                   "omaha5-strength", "omaha6-strength"};

bool IsFlopReport(const JobWords& words) { return words.words[0] == "flop-report"; }

// The report's own questions are a file in its folder.
std::string WriteReport(const JobWords& words) {
  EquityWords report = words.report;
  report.players.assign(words.words.begin() + 1, words.words.end());
  const std::string text = FlopReport(report);
  std::error_code error;
  std::filesystem::create_directories(words.folder, error);
  if (error) throw SystemFailure("cannot make the folder " + Quoted(words.folder), error.value());
  const std::string path = words.folder + "/questions.jsonl";
  if (const std::optional<std::string> there = ReadWholeFile(path)) {
    if (*there == text) return path;
    throw Failure(Quoted(path) + " has other questions: take a folder of its own");
  }
  if (FileLength(words.folder + "/job.json")) {
    throw Failure(Quoted(words.folder) + " has another job: take a folder of its own");
  }
  WriteDocument(path, text);
  return path;
}

void RefuseReportOptions(const JobWords& words) {
  const EquityWords& report = words.report;
  if (words.words.size() > 1) {
    throw UsageError(Quoted(words.words[1]) + " is one word too many: players are flop-report's");
  }
  if (report.game || report.dead || report.to || report.standard_error || report.trials ||
      report.seed || report.exact || report.sampled || !report.by.empty() ||
      !report.folded.empty()) {
    throw UsageError("options of a question are flop-report's: in a file, every line has its own");
  }
}

// First of all: who mistypes a command of `bulk` names no job.
void CheckJob(const JobWords& words) {
  const std::string list = fmt::format("{}", fmt::join(kJobs, ", "));
  if (words.words.empty()) throw UsageError("JOB is missing: a file, or " + list);
  const std::string& job = words.words[0];
  if (std::ranges::find(kJobs, job) == kJobs.end() && !std::filesystem::exists(job)) {
    throw UsageError(Quoted(job) + " is neither a file nor a job: " + list);
  }
}

std::unique_ptr<Job> JobOf(const JobWords& words, std::string& questions) {
  questions = words.words[0];
  if (IsFlopReport(words)) {
    questions = WriteReport(words);
  } else {
    RefuseReportOptions(words);
    if (std::unique_ptr<Job> job = NamedJob(questions)) {
      questions.clear();
      return job;
    }
  }
  return QuestionsJobOf(questions, words.folder);
}

void AddReportOptions(Command command, EquityWords& words) {
  command
      .AddOption("--game", words.game, "Of flop-report: " + std::string(GameNames()) + " [holdem]")
      .ValueName("GAME")
      .OneOf(ListOf(kAllGames));
  command
      .AddOption("--dead", words.dead, "Of flop-report, as the following: cards that cannot come")
      .ValueName("CARDS");
  command.AddOption("--folded", words.folded, "The range of a player who is out")
      .ValueName("RANGE")
      .MayBeRepeated();
  command
      .AddOption("--to", words.to, "Compare the hands on the flop, the turn or the river [river]")
      .ValueName("STREET")
      .OneOf(kStreetNames);
  command.AddFlag("--exact", words.exact, "Count, however long it takes");
  command.AddFlag("--sampled", words.sampled, "Deal at random, even what could be counted");
  command.AddOption("--standard-error", words.standard_error, "Of samples [0.05%]").ValueName("E");
  command.AddOption("--trials", words.trials, "Of samples, at the most [none]").ValueName("N");
  command.AddOption("--seed", words.seed, "Start of the random numbers [the line]").ValueName("N");
  command.AddOption("--by", words.by, "Detail: hand, class, next or made")
      .ValueName("WHAT")
      .OneOf(kByNames)
      .MayBeRepeated();
}

}  // namespace

void AddJobWords(Command command, JobWords& words) {
  command.AddOption("JOB", words.words, "A file of questions, or a job's name [and its players]")
      .ValueName("")
      .OneOf(kJobs)
      .OrFile()
      .ManyWords();
  command.AddOption("--out", words.folder, "Folder of the answers; it may be there already")
      .ValueName("FOLDER");
  AddReportOptions(command, words.report);
}

BegunJob BeginJob(const JobWords& words) {
  CheckJob(words);
  if (words.folder.empty()) throw UsageError("--out FOLDER is missing");
  BegunJob begun;
  begun.job = JobOf(words, begun.questions);
  pokermath::BeginJob(*begun.job, begun.questions, words.folder);
  return begun;
}

}  // namespace pokermath::cli
