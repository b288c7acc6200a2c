#include "jobs/job_folder.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "jobs/checksum.h"
#include "jobs/omaha_strength.h"
#include "jobs/questions_job.h"
#include "jobs/three_way_job.h"
#include "kernels/three_way_table.h"
#include "pages/errors.h"
#include "pages/number_text.h"
#include "platform/files.h"
#include "pokermath/version.h"

namespace pokermath {
namespace {

constexpr const char* kQuestions = "questions";

std::string JobFile(const std::string& folder) { return folder + "/job.json"; }

// What job.json says.
struct Described {
  Json identity;
  std::string questions;  // path of the file; empty where there is none
};

Json ToJson(const Job& job, const std::string& questions) {
  Json json = {{"hash", ChecksumText(job.Hash())}};
  if (!questions.empty()) json[kQuestions] = questions;
  json["identity"] = job.Identity();
  return json;
}

// Nothing if there is no job.json.
std::optional<Described> Describe(const std::string& folder) {
  const std::string path = JobFile(folder);
  const std::optional<std::string> text = ReadWholeFile(path);
  if (!text) {
    if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
    throw SystemFailure("cannot read " + Quoted(path), errno);
  }
  const Json json = Json::parse(*text, nullptr, false);
  const bool has_all = json.is_object() && json.value("hash", Json()).is_string() &&
                       json.value("identity", Json()).is_object() &&
                       json["identity"].value("job", Json()).is_string() &&
                       json["identity"].value("program", Json()).is_string() &&
                       json.value(kQuestions, Json("")).is_string();
  if (!has_all || json["hash"] != ChecksumText(Checksum(json["identity"].dump()))) {
    throw Failure(Quoted(path) + " is damaged");
  }
  const std::string program = json["identity"].value("program", "");
  if (program != POKERMATH_VERSION_STRING) {
    throw Failure(
        fmt::format("{} was begun by pokermath {}, and this is {}: finish it with that one",
                    Quoted(folder), program, POKERMATH_VERSION_STRING));
  }
  return Described{json["identity"], json.value(kQuestions, "")};
}

std::unique_ptr<Job> ToJob(const Described& described, const std::string& folder) {
  const auto name = described.identity["job"].get<std::string>();
  if (name != kQuestions) return NamedJob(name);
  try {
    return std::make_unique<QuestionsJob>(
        QuestionFile::FromJson(described.identity, described.questions),
        described.identity.at("three_way").get<bool>());
  } catch (const Json::exception&) {
    throw Failure(Quoted(JobFile(folder)) + " is damaged");
  }
}

void MakeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw SystemFailure("cannot make the folder " + Quoted(folder), error.value());
}

// "shards 3 and 5 of 8", or more of them.
std::string NamesOf(const std::vector<int>& numbers, int count) {
  constexpr std::size_t kMost = 10;
  std::vector<int> named(numbers.begin(),
                         numbers.begin() + static_cast<long>(std::min(kMost, numbers.size())));
  std::string text =
      fmt::format("{} {}", numbers.size() == 1 ? "shard" : "shards", fmt::join(named, ", "));
  if (numbers.size() > kMost) text += fmt::format(" and {} more", numbers.size() - kMost);
  return text + fmt::format(" of {}", count);
}

// Shards of the folder, which all have to be of the same count.
std::vector<FoundShard> FindAlike(const std::string& folder) {
  std::vector<FoundShard> found = FindShards(folder);
  if (!found.empty() && found.front().shard.count != found.back().shard.count) {
    throw Failure(
        fmt::format("{} and {} overlap: the job was cut into {} shards and into {}; "
                    "remove those of one kind",
                    Quoted(found.front().path), Quoted(found.back().path),
                    found.front().shard.count, found.back().shard.count));
  }
  return found;
}

// @param hash  the job's
FinishedShard OpenFinished(const Job& job, std::uint64_t hash, const FoundShard& found) {
  FinishedShard shard(found.path);
  if (shard.state().job != hash) throw Failure(Quoted(found.path) + " is of another job");
  if (shard.state().shard != found.shard ||
      shard.state().units != found.shard.UnitsOf(job.units())) {
    throw Failure(
        fmt::format("{} is damaged or has the name of another shard: it has units {} to {}",
                    Quoted(found.path), shard.state().units.first + 1, shard.state().units.last));
  }
  return shard;
}

FolderState StateOf(const Job& job, const std::vector<FoundShard>& found) {
  FolderState state;
  if (found.empty()) return state;
  state.shards = found[0].shard.count;
  const std::uint64_t hash = job.Hash();
  auto next = found.begin();
  for (Shard shard{1, state.shards}; shard.number <= shard.count; ++shard.number) {
    if (next == found.end() || next->shard != shard) {
      state.missing.push_back(shard);
      continue;
    }
    if (next->finished) {
      state.finished.push_back(OpenFinished(job, hash, *next).state());
    } else {
      const bool runs = IsInWork(*next);
      const UnitRange units = shard.UnitsOf(job.units());
      const ShardState begun{.shard = shard, .job = hash, .units = units, .next = units.first};
      (runs ? state.running : state.stopped).push_back(ReadUnfinished(*next).value_or(begun));
    }
    ++next;
  }
  return state;
}

}  // namespace

std::unique_ptr<Job> NamedJob(std::string_view name) {
  if (name == ThreeWayJob::kName) return std::make_unique<ThreeWayJob>();
  for (const int hand_size : {4, 5, 6}) {
    auto job = std::make_unique<OmahaStrengthJob>(hand_size);
    if (job->name() == name) return job;
  }
  return nullptr;
}

std::unique_ptr<Job> QuestionsJobOf(const std::string& questions, const std::string& folder) {
  if (const std::optional<Described> described = Describe(folder)) {
    if (described->identity.value("job", "") == kQuestions) {
      return ToJob({described->identity, questions}, folder);
    }
  }
  return std::make_unique<QuestionsJob>(QuestionFile::Of(questions),
                                        ThreeWayTable::Get() != nullptr);
}

void BeginJob(const Job& job, const std::string& questions, const std::string& folder) {
  if (const std::optional<Described> described = Describe(folder)) {
    if (described->identity == job.Identity()) return;
    throw Failure(Quoted(folder) + " has another job: take a folder of its own");
  }
  MakeFolder(folder);
  std::string path;
  if (!questions.empty()) path = std::filesystem::absolute(questions).lexically_normal().string();
  const std::string text = JsonLine(ToJson(job, path));
  AtomicFile file(JobFile(folder));
  file.Write(text.data(), text.size());
  if (!file.Commit()) throw SystemFailure("cannot write " + Quoted(JobFile(folder)), errno);
}

std::unique_ptr<Job> JobOf(const std::string& folder) {
  const std::optional<Described> described = Describe(folder);
  if (!described) throw Failure(Quoted(folder) + " has no job: no job.json is there");
  if (std::unique_ptr<Job> job = ToJob(*described, folder)) return job;
  throw Failure(Quoted(JobFile(folder)) + " has a job that is not known");
}

std::optional<ShardState> StateOfFinished(const Job& job, const std::string& folder,
                                          const Shard& shard) {
  for (const FoundShard& found : FindShards(folder)) {
    if (found.shard.count != shard.count) {
      throw Failure(fmt::format("{} is there: the job is cut into {} shards, not {}",
                                Quoted(found.path), found.shard.count, shard.count));
    }
    if (found.shard == shard && found.finished) {
      return OpenFinished(job, job.Hash(), found).state();
    }
  }
  return std::nullopt;
}

ShardEnd DoShard(const Job& job, const std::string& folder, const Shard& shard,
                 const WorkOptions& options) {
  const UnitRange units = shard.UnitsOf(job.units());
  job.Check(units);
  if (StateOfFinished(job, folder, shard)) return ShardEnd::kWasThere;
  const auto file = ShardFile::Open(folder, {.shard = shard, .job = job.Hash(), .units = units});
  if (!file) {
    return StateOfFinished(job, folder, shard) ? ShardEnd::kWasThere : ShardEnd::kBusy;
  }
  const auto start = std::chrono::steady_clock::now();
  if (!job.Work(*file, options)) return ShardEnd::kStopped;
  file->Finish(SecondsSince(start));
  return ShardEnd::kFinished;
}

Merged MergeShards(const Job& job, const std::string& folder,
                   const std::function<void(std::int64_t done, std::int64_t all)>& tell) {
  const std::vector<FoundShard> found = FindAlike(folder);
  const FolderState state = StateOf(job, found);
  std::vector<int> missing;
  for (const Shard& shard : state.missing) missing.push_back(shard.number);
  for (const auto* unfinished : {&state.running, &state.stopped}) {
    for (const ShardState& shard : *unfinished) missing.push_back(shard.shard.number);
  }
  std::ranges::sort(missing);
  if (state.shards == 0) throw Failure(Quoted(folder) + " has no shards yet");
  if (!missing.empty()) {
    throw Failure(fmt::format("{} {} not finished", NamesOf(missing, state.shards),
                              missing.size() == 1 ? "is" : "are"));
  }
  Merged merged{.result = folder + "/" + job.result_name(), .shards = state.shards};
  std::vector<FinishedShard> shards;
  std::int64_t all = 0, done = 0;
  const std::uint64_t hash = job.Hash();
  for (const FoundShard& one : found) {
    shards.push_back(OpenFinished(job, hash, one));
    merged.answers += shards.back().state().answers;
    merged.failed += shards.back().state().failed;
    all += shards.back().state().bytes;
  }
  for (FinishedShard& shard : shards) {
    if (tell) shard.Tell([&](std::int64_t bytes) { tell(done += bytes, all); });
  }
  AtomicFile file(merged.result);
  const auto check = [&](bool good) {
    if (!good) throw SystemFailure("cannot write " + Quoted(merged.result), errno);
  };
  check(file.ok());
  job.Merge(shards, file);
  check(file.Commit());
  return merged;
}

FolderState StateOf(const Job& job, const std::string& folder) {
  return StateOf(job, FindAlike(folder));
}

}  // namespace pokermath
