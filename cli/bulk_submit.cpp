// `pokermath bulk submit`: writes the scripts that a Slurm cluster runs, and hands them over.
//
// One script is an array with a task for each shard, the other merges. A task that has to stop (its
// time is nearly over, or somebody sends SIGUSR1) keeps what is done, ends with 75 and puts itself
// back into the queue, where Slurm counts it as one that has not ended: so the merge that waits for
// the end of all tasks, good or bad, waits for those, too. The merge itself refuses gaps, so that
// a task that failed costs no more than another try of its shard.

#include "cli/bulk_submit.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/bulk_job.h"
#include "cli/child_process.h"
#include "cli/errors.h"
#include "cli/output.h"
#include "jobs/job_folder.h"
#include "pages/number_text.h"

namespace pokermath::cli {
namespace {

constexpr const char* kSubmitHelp =
    R"(Writes two scripts into FOLDER, shards.sbatch and merge.sbatch, and prints them; --now hands them
to sbatch, the second to run when all tasks of the first have ended. A task that is stopped goes on where
it was. To do some shards again, and to merge:
  sbatch --array=3,5 FOLDER/shards.sbatch
  pokermath bulk merge FOLDER

Examples:
  pokermath bulk submit questions.jsonl --out answers --slurm --shards 200 --cpus 8 --time 4:00:00 --now
  pokermath bulk submit omaha6-strength --out omaha6 --slurm --shards 64 --running 16)";

struct SubmitOptions {
  JobWords job;
  std::string shards;
  std::optional<std::string> running, time, cpus, memory, partition, account;
  bool slurm = false;
  bool now = false;
};

// How long before the end of a task's time it is told to stop, in seconds; Slurm may be a minute
// early. A task that has hardly more would do nothing but stop.
constexpr int kWarning = 120;
constexpr std::int64_t kShortestTime = 300;

// What was killed may be killed again: for want of memory, each time.
constexpr int kMostRestarts = 10;

// Fit for the shell, and for lines that begin with #SBATCH.
std::string ShellWord(std::string_view text) {
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

// Slurm replaces some letters behind a percent sign in the path of a log, and none at all where
// there is a backslash.
std::string LogPath(const std::string& folder, std::string_view name) {
  std::string path;
  for (const char c : folder) path += c == '%' ? std::string("%%") : std::string(1, c);
  return ShellWord(fmt::format("{}/{}", path, name));
}

std::string AbsolutePath(const std::string& path) {
  return std::filesystem::absolute(path).lexically_normal().string();
}

std::string AbsoluteFolder(const std::string& folder) {
  const std::string path = AbsolutePath(folder);
  for (const char c : path) {
    if (c == '\\' || static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      throw UsageError(fmt::format(
          "--out {} is not accepted: Slurm cannot write its logs where a path has a backslash or a "
          "control character",
          Quoted(folder)));
    }
  }
  return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
}

std::string ProgramPath() {
  std::error_code error;
  const std::string path = std::filesystem::read_symlink("/proc/self/exe", error).string();
  if (error) throw SystemFailure("cannot find where this program is", error.value());
  return path;
}

// What goes into a line that begins with #SBATCH as it is.
void CheckWord(const char* option, const std::optional<std::string>& word,
               std::string_view accepted, const char* expected) {
  if (!word || (word->find_first_not_of(accepted) == std::string::npos && word->front() != '-')) {
    return;
  }
  throw UsageError(fmt::format("{} {} is not accepted: {}", option, Quoted(*word), expected));
}

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kNameLetters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_-.,+@:/";

// Whole numbers with a colon between two of them; empty if that is not what it is.
std::vector<std::int64_t> ColonNumbers(std::string_view text) {
  std::vector<std::int64_t> numbers;
  for (;;) {
    const std::string_view piece = text.substr(0, text.find(':'));
    int number = 0;
    const auto [end, error] = std::from_chars(piece.data(), piece.data() + piece.size(), number);
    if (error != std::errc{} || end != piece.data() + piece.size() || number < 0) return {};
    numbers.push_back(number);
    if (piece.size() == text.size()) return numbers;
    text.remove_prefix(piece.size() + 1);
  }
}

// As Slurm reads a time: M, M:S, H:M:S, D-H, D-H:M or D-H:M:S.
std::optional<std::int64_t> SecondsOf(std::string_view text) {
  const std::size_t dash = text.find('-');
  const bool with_days = dash != std::string_view::npos;
  const auto days = ColonNumbers(with_days ? text.substr(0, dash) : "0");
  auto numbers = ColonNumbers(with_days ? text.substr(dash + 1) : text);
  if (days.size() != 1 || numbers.empty() || numbers.size() > 3) return std::nullopt;
  if (!with_days && numbers.size() < 3) numbers.insert(numbers.begin(), 0);
  numbers.resize(3);
  return ((days[0] * 24 + numbers[0]) * 60 + numbers[1]) * 60 + numbers[2];
}

void CheckTime(const std::optional<std::string>& time) {
  if (!time) return;
  const auto seconds = SecondsOf(*time);
  if (!seconds) {
    throw UsageError(fmt::format(
        "--time {} is not accepted: minutes, hours:minutes:seconds or days-hours", Quoted(*time)));
  }
  if (*seconds < kShortestTime) {
    throw UsageError(
        fmt::format("--time {} is too short: a task is told to stop {} seconds before its end; "
                    "give {} minutes or more",
                    Quoted(*time), kWarning, kShortestTime / 60));
  }
}

// The highest number that a task of an array may have here is one less than this.
int MaxArraySize() {
  constexpr int kUsual = 1001;
  constexpr std::string_view kName = "MaxArraySize";
  const std::array<std::string, 3> words = {"scontrol", "show", "config"};
  const EndedProcess ended = RunProcess(words, false);
  const std::size_t line = ended.out.find(kName);
  if (ended.exit_code != 0 || line == std::string::npos) return kUsual;
  const std::size_t digit = ended.out.find_first_of(kDigits, line + kName.size());
  int size = kUsual;
  if (digit != std::string::npos) {
    std::from_chars(ended.out.data() + digit, ended.out.data() + ended.out.size(), size);
  }
  return size;
}

int ShardsOf(const SubmitOptions& options) {
  const int shards = ReadNumber("--shards", options.shards, 1, kMostShards);
  const int size = MaxArraySize();
  if (shards >= size) {
    throw UsageError(
        fmt::format("--shards {} is too many: the highest number of an array's task is {} here "
                    "(MaxArraySize is {})",
                    shards, size - 1, size));
  }
  return shards;
}

// Both scripts say what they are and what the scheduler is to give them.
std::string Head(const SubmitOptions& options, std::string_view name, std::string_view log) {
  std::string head = "#!/bin/bash\n";
  const auto say = [&](std::string_view option, const std::optional<std::string>& value) {
    if (value) head += fmt::format("#SBATCH --{}={}\n", option, *value);
  };
  say("job-name", std::string(name));
  say("output", LogPath(options.job.folder, log));
  say("open-mode", "append");
  say("time", options.time);
  say("mem", options.memory);
  say("partition", options.partition);
  say("account", options.account);
  return head + "#SBATCH --requeue\n";
}

std::string ShardsHead(const SubmitOptions& options, int shards) {
  std::string head = Head(options, "pokermath", "shard-%a.log");
  head += fmt::format("#SBATCH --array=1-{}", shards);
  if (options.running) {
    head += fmt::format("%{}", ReadNumber("--running", *options.running, 1, kMostShards));
  }
  head += fmt::format("\n#SBATCH --cpus-per-task={}\n",
                      options.cpus ? ReadNumber("--cpus", *options.cpus, 1, 1024) : 1);
  return head + fmt::format("#SBATCH --signal=USR1@{}\n", kWarning);
}

// Started by srun, the program is a step, which is what --signal reaches.
//
// @param job  a file or a name
std::string ShardsBody(const std::string& job, const std::string& folder, int shards) {
  return fmt::format(R"(
srun --ntasks=1 --cpus-per-task="$SLURM_CPUS_PER_TASK" \
  {} bulk {} \
  --out {} \
  --shard "$SLURM_ARRAY_TASK_ID/{}" --threads "$SLURM_CPUS_PER_TASK"
code=$?
task=${{SLURM_ARRAY_JOB_ID}}_$SLURM_ARRAY_TASK_ID
# 75: stopped, and goes on when started again. Above 128: killed. A task that was cancelled is
# COMPLETING by now, and is not to come back.
if ((code == 75 || (code > 128 && ${{SLURM_RESTART_COUNT:-0}} < {}))) &&
  [[ $(squeue --noheader --format=%T --jobs="$task") != COMPLETING ]]; then
  scontrol requeue "$task"
fi
exit "$code"
)",
                     ShellWord(ProgramPath()), ShellWord(job), ShellWord(folder), shards,
                     kMostRestarts);
}

std::string MergeScript(const SubmitOptions& options) {
  return Head(options, "pokermath-merge", "merge.log") + fmt::format("\nexec {} bulk merge {}\n",
                                                                     ShellWord(ProgramPath()),
                                                                     ShellWord(options.job.folder));
}

// Hands a script over; the number of its job.
std::string Submit(const std::string& script, const std::string& after) {
  std::vector<std::string> words = {"sbatch", "--parsable"};
  if (!after.empty()) words.push_back("--dependency=afterany:" + after);
  words.push_back(script);
  const EndedProcess ended = RunProcess(words, true);
  if (ended.error != 0) throw SystemFailure("cannot start 'sbatch'", ended.error);
  // A cluster's name may stand behind it.
  const std::string number = ended.out.substr(0, ended.out.find_first_not_of(kDigits));
  if (ended.exit_code != 0 || number.empty()) {
    throw Failure(fmt::format("sbatch did not take {}{}: exit code {}", Quoted(script),
                              after.empty() ? "" : " (the array is job " + after + ")",
                              ended.exit_code));
  }
  return number;
}

void CheckOptions(const SubmitOptions& options) {
  if (!options.slurm) throw UsageError("--slurm is missing: no other scheduler is known");
  CheckTime(options.time);
  CheckWord("--mem", options.memory, "0123456789KMGT", "a number with K, M, G or T, as 4G");
  CheckWord("--partition", options.partition, kNameLetters, "a name");
  CheckWord("--account", options.account, kNameLetters, "a name");
}

// What tasks are to do, fit for any folder that they are started in. Said once, here, what the job
// is need not be found out by each of them.
std::string BegunJobWord(const JobWords& job, int shards) {
  const BegunJob begun = BeginJob(job);
  const int there = StateOf(*begun.job, job.folder).shards;
  if (there != 0 && there != shards) {
    throw Failure(fmt::format("{} is cut into {} already, not {}", Quoted(job.folder),
                              Counted(there, "shard"), shards));
  }
  return begun.questions.empty() ? job.words[0] : AbsolutePath(begun.questions);
}

int RunSubmit(SubmitOptions options) {
  CheckOptions(options);
  const int shards = ShardsOf(options);
  if (!options.job.folder.empty()) options.job.folder = AbsoluteFolder(options.job.folder);
  const std::string merge_script = MergeScript(options);
  const std::string head = ShardsHead(options, shards);
  const std::string shards_script =
      head + ShardsBody(BegunJobWord(options.job, shards), options.job.folder, shards);
  const std::string shards_path = options.job.folder + "/shards.sbatch";
  const std::string merge_path = options.job.folder + "/merge.sbatch";
  WriteDocument(shards_path, shards_script);
  WriteDocument(merge_path, merge_script);
  if (!options.now) {
    Print(
        fmt::format("{}\n{}\n# Both are in the folder; submit them with:\n"
                    "sbatch --dependency=afterany:\"$(sbatch --parsable {})\" {}\n",
                    shards_script, merge_script, ShellWord(shards_path), ShellWord(merge_path)));
    return kExitDone;
  }
  Print(shards_script + "\n" + merge_script + "\n");
  const std::string array = Submit(shards_path, "");
  Print(fmt::format("# job {}: {}\n", array, Counted(shards, "shard")));
  Print(fmt::format("# job {}: the merge, behind them\n", Submit(merge_path, array)));
  return kExitDone;
}

}  // namespace

void AddBulkSubmit(Command bulk, int& exit_code) {
  auto options = std::make_shared<SubmitOptions>();
  Command submit = bulk.AddCommand("submit", "Shards as an array of a cluster's scheduler");
  AddJobWords(submit, options->job);
  submit.AddFlag("--slurm", options->slurm, "Write scripts for Slurm");
  submit.AddOption("--shards", options->shards, "Number of tasks").ValueName("N").Required();
  submit.AddOption("--running", options->running, "Tasks that may run at once [all]")
      .ValueName("M");
  submit.AddOption("--time", options->time, "Time of a task, as sbatch has it: 4:00:00")
      .ValueName("T");
  submit.AddOption("--cpus", options->cpus, "Processors and threads of a task [1]").ValueName("C");
  submit.AddOption("--mem", options->memory, "Memory of a task, as sbatch has it: 4G")
      .ValueName("M");
  submit.AddOption("--partition", options->partition, "Partition of the cluster").ValueName("P");
  submit.AddOption("--account", options->account, "Account to charge").ValueName("A");
  submit.AddFlag("--now", options->now, "Submit both scripts");
  submit.SetFooter(kSubmitHelp);
  submit.SetAction([options, &exit_code] { exit_code = RunSubmit(*options); });
}

}  // namespace pokermath::cli
