// `pokermath bulk`: questions by the million and tables that take hours, in parts where need be.

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>

#include "cli/bulk_job.h"
#include "cli/bulk_run.h"
#include "cli/bulk_submit.h"
#include "cli/command.h"
#include "cli/errors.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/scheduler.h"
#include "cli/stop_signals.h"
#include "jobs/job_folder.h"
#include "jobs/questions_job.h"
#include "pages/json.h"
#include "pages/number_text.h"
#include "platform/files.h"

namespace pokermath::cli {
namespace {

constexpr const char* kBulkHelp =
    R"(JOB is a file of JSON Lines, one question a line with the keys of 'pokermath equity -' (empty lines
and lines that start with # have no answer), or the name of a job:
  flop-report PLAYER ...     the question on every flop up to suits, for example all 1,755
  three-way                  three hands before the flop, all of them: what 'tables build' makes
  omaha-strength             every Omaha hand against a random one; omaha5-strength, omaha6-strength
FOLDER/answers.jsonl then has a line for every question, in their order, with its id and without a
time; a question that cannot be answered has a line with an error. Random numbers start from the
number of the question's line, so the bytes are the same for any number of threads and parts.
Stopped or killed, the work goes on from its last half minute when it is started again. Exit code
0 done, 1 failed or some question has an error, 2 wrong usage, 75 stopped: start it again.

In parts, on several machines with a common folder: every process does --shard I/N, then one says
'pokermath bulk merge FOLDER'. Tasks of a Slurm array (SLURM_ARRAY_TASK_ID, _MIN, _MAX, _STEP) and
ranks of Open MPI (OMPI_COMM_WORLD_RANK, _SIZE) are shards by themselves, and with --shards N jobs of
GNU parallel (PARALLEL_SEQ).

Examples:
  pokermath bulk questions.jsonl --out answers
  pokermath bulk questions.jsonl --out answers --shard 3/8
  pokermath bulk flop-report 15% 20% --game omaha --out report
  pokermath bulk omaha6-strength --out omaha6
  pokermath bulk status answers
  pokermath bulk merge answers
  pokermath bulk verify answers --sample 1000
  pokermath bulk submit questions.jsonl --out answers --slurm --shards 100 --now)";

struct BulkOptions {
  JobWords job;
  std::optional<std::string> shard, shards, threads;
  bool json = false;
};

std::string ShardText(const Shard& shard) {
  return shard.IsWhole() ? "the job" : fmt::format("shard {} of {}", shard.number, shard.count);
}

// "1,000 answers, 3 of them errors".
std::string AnswersText(const Merged& merged) {
  std::string text = Counted(merged.answers, "answer");
  if (merged.failed > 0) text += fmt::format(", {} of them errors", Grouped(merged.failed));
  return text;
}

Json MergedJson(const Merged& merged) {
  return {{"schema", kJsonSchema},
          {"result", merged.result},
          {"shards", merged.shards},
          {"answers", merged.answers},
          {"failed", merged.failed}};
}

int ReportMerged(const Merged& merged, bool json) {
  if (json) {
    Print(JsonLine(MergedJson(merged)));
  } else if (merged.answers > 0) {
    Print(fmt::format("{}: {}\n", merged.result, AnswersText(merged)));
  } else {
    Print(merged.result + "\n");
  }
  return merged.failed > 0 ? kExitFailed : kExitDone;
}

int ReportShard(const Job& job, const BulkOptions& options, const Shard& shard) {
  const std::optional<ShardState> own = StateOfFinished(job, options.job.folder, shard);
  if (!own) throw Failure(ShardText(shard) + " is not there any more");
  if (options.json) {
    Print(JsonLine({{"schema", kJsonSchema},
                    {"shard", shard.number},
                    {"shards", shard.count},
                    {"answers", own->answers},
                    {"failed", own->failed}}));
  } else {
    const std::string answers =
        own->answers > 0 ? ": " + AnswersText({.answers = own->answers, .failed = own->failed})
                         : "";
    Print(fmt::format("{} is done{}\n", ShardText(shard), answers));
  }
  return own->failed > 0 ? kExitFailed : kExitDone;
}

// What one process did alone is put in its last form at once.
int ReportWhole(const Job& job, const BulkOptions& options, ShardEnd end) {
  const std::string result = options.job.folder + "/" + job.result_name();
  if (end == ShardEnd::kWasThere && FileLength(result)) {
    if (const auto own = StateOfFinished(job, options.job.folder, {})) {
      return ReportMerged({result, 1, own->answers, own->failed}, options.json);
    }
  }
  return ReportMerged(MergeAttended(job, options.job.folder), options.json);
}

int RunBulk(const BulkOptions& options) {
  const std::optional<Shard> given = ShardOfProcess(options.shard, options.shards);
  const int threads =
      options.threads ? ReadNumber("--threads", *options.threads, 1, 1024) : AllThreads();
  const Shard shard = given.value_or(Shard{});
  std::unique_ptr<Job> job;
  ShardEnd end;
  {
    // A signal that comes while the questions are read stops the work before it begins.
    const StopSignals signals;
    job = BeginJob(options.job).job;
    end = DoShardAttended(*job, options.job.folder, shard, threads);
  }
  if (end == ShardEnd::kStopped) {
    PrintError("stopped " + ShardText(shard) + "; started again, it goes on from there");
    return kExitAgain;
  }
  if (end == ShardEnd::kBusy) {
    throw Failure("another process works on " + ShardText(shard) + " in " +
                  Quoted(options.job.folder));
  }
  return given ? ReportShard(*job, options, shard) : ReportWhole(*job, options, end);
}

// --- a folder of parts ---

struct FolderOptions {
  std::string folder;
  std::optional<std::string> sample, seed;
  bool json = false;
};

int RunMerge(const FolderOptions& options) {
  return ReportMerged(MergeAttended(*pokermath::JobOf(options.folder), options.folder),
                      options.json);
}

// How far a shard is.
double PartOf(const ShardState& state) {
  if (state.units.size() == 0) return 1;
  return static_cast<double>(state.next - state.units.first) /
         static_cast<double>(state.units.size());
}

Json StatusJson(const FolderState& state, const Job& job, const std::string& folder) {
  const auto list = [](const std::vector<ShardState>& states) {
    Json json = Json::array();
    for (const ShardState& one : states) {
      json.push_back({{"shard", one.shard.number}, {"part", PartOf(one)}});
    }
    return json;
  };
  Json json = {{"schema", kJsonSchema}, {"shards", state.shards}, {"units", job.units()}};
  std::int64_t answers = 0, failed = 0;
  for (const auto* states : {&state.finished, &state.running, &state.stopped}) {
    for (const ShardState& one : *states) answers += one.answers, failed += one.failed;
  }
  json["answers"] = answers;
  json["failed"] = failed;
  json["finished"] = state.finished.size();
  json["running"] = list(state.running);
  json["stopped"] = list(state.stopped);
  json["missing"] = Json::array();
  for (const Shard& shard : state.missing) json["missing"].push_back(shard.number);
  json["merged"] = FileLength(folder + "/" + job.result_name()).has_value();
  return json;
}

// "3 (45.2 %), 4 (12.0 %)".
std::string PartsText(const std::vector<ShardState>& states) {
  constexpr std::size_t kMost = 8;
  std::string text;
  for (std::size_t i = 0; i < std::min(kMost, states.size()); ++i) {
    text += fmt::format("{}{} ({:.1f} %)", i == 0 ? "" : ", ", states[i].shard.number,
                        100 * PartOf(states[i]));
  }
  return states.size() > kMost ? text + ", ..." : text;
}

std::string NumbersText(const std::vector<Shard>& shards) {
  constexpr std::size_t kMost = 16;
  std::string text;
  for (std::size_t i = 0; i < std::min(kMost, shards.size()); ++i) {
    text += fmt::format("{}{}", i == 0 ? "" : ", ", shards[i].number);
  }
  return shards.size() > kMost ? text + ", ..." : text;
}

// How fast processes were, and how long one would take for what is left.
std::string RateText(const FolderState& state, const Job& job) {
  double done = 0, seconds = 0;
  for (const auto* states : {&state.finished, &state.running, &state.stopped}) {
    for (const ShardState& one : *states) {
      done += PartOf(one) * static_cast<double>(one.units.size());
      seconds += one.seconds;
    }
  }
  if (done == 0 || seconds == 0) return "";
  const double left = static_cast<double>(job.units()) - done;
  return fmt::format("rate      {} {}/s in a process; {} of work left\n",
                     RoughCount(done / seconds), job.unit_name(),
                     DurationText(Seconds(left * seconds / done)));
}

std::string StatusText(const FolderState& state, const Job& job, const std::string& folder) {
  std::string text = fmt::format("{} {} in {}\n", Grouped(job.units()), job.unit_name(),
                                 Counted(state.shards, "shard"));
  const auto line = [&](const char* what, std::size_t count, const std::string& which) {
    text += fmt::format("{:<8} {:>5}{}\n", what, count, which.empty() ? "" : "   " + which);
  };
  std::int64_t failed = 0;
  for (const ShardState& one : state.finished) failed += one.failed;
  line("done", state.finished.size(), failed > 0 ? Counted(failed, "error") : "");
  line("running", state.running.size(), PartsText(state.running));
  line("stopped", state.stopped.size(), PartsText(state.stopped));
  line("missing", state.missing.size(), NumbersText(state.missing));
  text += RateText(state, job);
  if (FileLength(folder + "/" + job.result_name())) {
    text += fmt::format("merged    {}/{}\n", folder, job.result_name());
  }
  return text;
}

int RunStatus(const FolderOptions& options) {
  const std::unique_ptr<Job> job = pokermath::JobOf(options.folder);
  const FolderState state = StateOf(*job, options.folder);
  Print(options.json ? JsonLine(StatusJson(state, *job, options.folder))
                     : StatusText(state, *job, options.folder));
  return kExitDone;
}

int RunVerify(const FolderOptions& options) {
  constexpr std::int64_t kMostSample = 1'000'000'000;
  const std::int64_t sample =
      ReadNumber("--sample", options.sample.value_or("100"), std::int64_t{1}, kMostSample);
  const std::uint64_t seed = options.seed
                                 ? ReadNumber("--seed", *options.seed, std::uint64_t{0}, UINT64_MAX)
                                 : std::random_device()();
  const std::unique_ptr<Job> job = pokermath::JobOf(options.folder);
  const auto* questions = dynamic_cast<const QuestionsJob*>(job.get());
  if (questions == nullptr) {
    throw UsageError("verify answers questions again: what 'tables verify' knows, it checks whole");
  }
  const std::string answers = options.folder + "/" + job->result_name();
  if (!FileLength(answers))
    throw Failure(Quoted(answers) + " is not there: merge the shards first");
  const StopSignals signals;
  Progress progress("verifying", sample, "questions", std::chrono::milliseconds(300));
  const Verified verified = VerifyAnswers(*questions, answers, sample, seed, [&](double part) {
    progress.Update(static_cast<std::int64_t>(part * static_cast<double>(sample)), part);
    return !StopRequested();
  });
  progress.Wipe();
  for (const std::int64_t line : verified.differ) {
    PrintError(fmt::format("the answer to line {} is another one", Grouped(line)));
  }
  if (StopRequested()) throw Failure("stopped before all questions were answered again");
  const auto differ = static_cast<std::int64_t>(verified.differ.size());
  if (options.json) {
    Print(JsonLine({{"schema", kJsonSchema},
                    {"verified", verified.questions},
                    {"differ", verified.differ},
                    {"seed", seed}}));
  } else if (differ == 0) {
    Print(fmt::format("{} answered again: all answers are the same\n",
                      Counted(verified.questions, "question")));
  } else {
    Print(fmt::format("{} answered again: {} differ\n", Counted(verified.questions, "question"),
                      Grouped(differ)));
  }
  return differ == 0 ? kExitDone : kExitFailed;
}

void AddFolderAction(Command bulk, const char* name, const char* description,
                     int (*run)(const FolderOptions&), int& exit_code) {
  auto options = std::make_shared<FolderOptions>();
  Command action = bulk.AddCommand(name, description);
  action.AddOption("FOLDER", options->folder, "Folder of the job").Required().ValueName("");
  if (run == RunVerify) {
    action.AddOption("--sample", options->sample, "Questions, taken at random [100]")
        .ValueName("K");
    action.AddOption("--seed", options->seed, "Start of the random choice [any]").ValueName("N");
  }
  action.AddFlag("--json", options->json, "Print a JSON object");
  action.SetAction([options, run, &exit_code] { exit_code = run(*options); });
}

}  // namespace

void AddBulk(Command program, int& exit_code) {
  auto options = std::make_shared<BulkOptions>();
  Command bulk = program.AddCommand("bulk", "Questions by the million, on one machine or many");
  AddJobWords(bulk, options->job);
  bulk.AddOption("--shard", options->shard, "Do the I-th of N parts [all, or the scheduler's]")
      .ValueName("I/N");
  bulk.AddOption("--shards", options->shards, "Parts, of which the scheduler says one")
      .ValueName("N");
  bulk.AddOption("--threads", options->threads, "Threads; the answers are the same [all cores]")
      .ValueName("N");
  bulk.AddFlag("--json", options->json, "Print a JSON object");
  AddFolderAction(bulk, "merge", "Put finished shards together", RunMerge, exit_code);
  AddFolderAction(bulk, "status", "Shards that are done, running, missing", RunStatus, exit_code);
  AddFolderAction(bulk, "verify", "Answer random questions again", RunVerify, exit_code);
  AddBulkSubmit(bulk, exit_code);
  bulk.SetFooter(kBulkHelp);
  bulk.SetAction([options, bulk, &exit_code] {
    if (!bulk.HasCommand()) exit_code = RunBulk(*options);
  });
}

}  // namespace pokermath::cli
