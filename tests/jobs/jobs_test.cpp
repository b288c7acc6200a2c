// Bulk work: whatever the threads, shards and interruptions, the same bytes; and no damage passes.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <random>
#include <thread>

#include "jobs/checksum.h"
#include "jobs/flop_report.h"
#include "jobs/job_folder.h"
#include "jobs/list_job.h"
#include "jobs/question_file.h"
#include "jobs/questions_job.h"
#include "jobs/run.h"
#include "jobs/start_threads.h"
#include "jobs/sums_job.h"
#include "pages/errors.h"
#include "tests/platform/scratch_folder.h"

namespace pokermath {
namespace {

std::string ReadText(const std::string& path) { return ReadWholeFile(path).value_or("no file"); }

// Units of all kinds and lengths, from their numbers alone.
class TestList final : public ListJob {
 public:
  explicit TestList(std::int64_t units) : units_(units) {}

  Json Identity() const override { return {{"job", "test"}, {"units", units_}}; }
  std::int64_t units() const override { return units_; }
  const char* unit_name() const override { return "units"; }
  const char* result_name() const override { return "result"; }
  std::unique_ptr<Maker> NewMaker() const override { return std::make_unique<TestMaker>(); }

  std::string Whole() const {
    std::string all;
    for (std::int64_t unit = 0; unit < units_; ++unit) all += TextOf(unit);
    return all;
  }
  static bool IsLong(std::int64_t unit) { return unit % 499 == 41 || unit % 499 == 42; }
  static bool IsNothing(std::int64_t unit) { return unit % 13 == 5; }
  static bool IsError(std::int64_t unit) { return unit % 31 == 7; }

 private:
  static std::string TextOf(std::int64_t unit) {
    if (IsNothing(unit)) return "";
    std::string text = std::to_string(unit);
    return text + std::string(static_cast<std::size_t>(unit * unit % 3000), '.') + "\n";
  }

  class TestMaker final : public Maker {
   public:
    Made Make(std::int64_t unit, const std::atomic<bool>& stop, std::string& out) override {
      if (stop) return Made::kStopped;
      if (IsLong(unit)) return Made::kTooLong;
      return Write(unit, out);
    }
    // Takes three goes, of which what the first two came to is kept.
    Made MakeLong(std::int64_t unit, const LongUnit& how, std::string& out) override {
      for (std::string done = how.kept; done.size() < 2; how.keep(done)) {
        done += 'x';
        if (!how.go_on(0.5)) {
          how.keep(done);
          return Made::kStopped;
        }
      }
      return Write(unit, out);
    }

   private:
    static Made Write(std::int64_t unit, std::string& out) {
      out += TextOf(unit);
      return IsNothing(unit) ? Made::kNothing : IsError(unit) ? Made::kError : Made::kAnswer;
    }
  };

  std::int64_t units_;
};

class TestSums final : public SumsJob {
 public:
  Json Identity() const override { return {{"job", "sums"}}; }
  std::int64_t units() const override { return 3000; }
  const char* unit_name() const override { return "units"; }
  const char* result_name() const override { return "result"; }
  std::unique_ptr<Adder> NewAdder() const override { return std::make_unique<TestAdder>(); }
  std::string ResultOf(Adder& all) const override {
    return std::to_string(all.sums()[0]) + " " + std::to_string(all.sums()[1]);
  }

 private:
  struct TestAdder final : Adder {
    void Add(std::int64_t unit) override {
      sums_[0] += unit;
      sums_[1] += unit * unit;
      std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
    std::span<std::int64_t> sums() override { return sums_; }
    std::array<std::int64_t, 2> sums_{};
  };
};

// Does all shards, stopped now and then, and puts them together.
std::string InParts(const Job& job, int shards, std::mt19937& random, int stops) {
  const ScratchFolder scratch;
  const std::string folder = scratch / "job";
  BeginJob(job, "", folder);
  for (Shard shard{1, shards}; shard.number <= shards; ++shard.number) {
    for (int go = 0;; ++go) {
      WorkOptions options{.threads = 1 + static_cast<int>(random() % 4)};
      std::atomic<int> looks = go < stops ? static_cast<int>(random() % 4) : 1 << 20;
      options.go_on = [&](const ShardState&, double part) {
        EXPECT_GE(part, 0);
        EXPECT_LE(part, 1);
        return looks-- > 0;
      };
      const ShardEnd end = DoShard(job, folder, shard, options);
      if (end == ShardEnd::kFinished) break;
      EXPECT_EQ(end, ShardEnd::kStopped);
      EXPECT_LT(go, stops);
    }
    EXPECT_EQ(DoShard(job, folder, shard, {}), ShardEnd::kWasThere);
  }
  const Merged merged = MergeShards(job, folder);
  EXPECT_EQ(merged.shards, shards);
  return ReadText(merged.result);
}

TEST(Bulk, PartsThreadsAndStopsDoNotChangeAByte) {
  std::mt19937 random(7);
  const TestList list(2000);
  const std::string whole = list.Whole();
  for (const int shards : {1, 3, 64}) {
    EXPECT_TRUE(InParts(list, shards, random, 5) == whole) << shards;
    EXPECT_EQ(InParts(TestSums(), shards, random, 3), "4498500 8995500500") << shards;
  }
  EXPECT_TRUE(InParts(TestList(5), 8, random, 0) == TestList(5).Whole()) << "empty shards";
  EXPECT_EQ(InParts(TestList(0), 1, random, 0), "");
}

TEST(Bulk, ShardsCoverAllUnitsOnce) {
  for (const std::int64_t units : {0LL, 1LL, 7LL, 64LL, 1'000'003LL, 9'000'000'000'000'000'000LL}) {
    for (const int count : {1, 3, 64, 1000, kMostShards}) {
      std::int64_t next = 0;
      for (int number = 1; number <= count; ++number) {
        const UnitRange range = Shard{number, count}.UnitsOf(units);
        ASSERT_EQ(range.first, next) << number << " of " << count;
        ASSERT_LE(std::abs(range.size() - units / count), 1) << number << " of " << count;
        next = range.last;
      }
      ASSERT_EQ(next, units);
    }
  }
}

TEST(Bulk, TheStateOfAFolder) {
  const ScratchFolder scratch;
  const TestList job(300);
  const std::string folder = scratch / "job";
  BeginJob(job, "", folder);
  EXPECT_EQ(DoShard(job, folder, {2, 4}, {}), ShardEnd::kFinished);
  EXPECT_EQ(
      DoShard(job, folder, {3, 4}, {.go_on = [](const ShardState&, double) { return false; }}),
      ShardEnd::kStopped);
  const int other = open((folder + "/1-of-4.unfinished").c_str(), O_CREAT | O_RDWR, 0600);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  EXPECT_EQ(DoShard(job, folder, {1, 4}, {}), ShardEnd::kBusy);
  const FolderState state = StateOf(job, folder);
  EXPECT_EQ(state.shards, 4);
  ASSERT_EQ(state.finished.size(), 1u);
  EXPECT_EQ(state.finished[0].units, (UnitRange{75, 150}));
  int answers = 0, errors = 0;
  for (int unit = 75; unit < 150; ++unit) {
    answers += TestList::IsNothing(unit) ? 0 : 1;
    errors += !TestList::IsNothing(unit) && TestList::IsError(unit) ? 1 : 0;
  }
  EXPECT_EQ(state.finished[0].answers, answers);
  EXPECT_EQ(state.finished[0].failed, errors);
  ASSERT_EQ(state.running.size(), 1u);
  EXPECT_EQ(state.running[0].shard.number, 1);
  ASSERT_EQ(state.stopped.size(), 1u);
  EXPECT_EQ(state.stopped[0].shard.number, 3);
  ASSERT_EQ(state.missing.size(), 1u);
  EXPECT_EQ(state.missing[0].number, 4);
  close(other);

  // Somebody finishes a shard while another one is about to open it.
  const ShardState begun{.shard = {2, 4}, .job = job.Hash(), .units = {75, 150}};
  EXPECT_FALSE(ShardFile::Open(folder, begun));
  EXPECT_FALSE(std::filesystem::exists(folder + "/2-of-4.unfinished"));
  // He is killed before the last name is given, and goes on.
  std::filesystem::rename(folder + "/2-of-4.shard", folder + "/2-of-4.unfinished");
  EXPECT_EQ(StateOf(job, folder).stopped.at(1).answers, answers);
  EXPECT_EQ(DoShard(job, folder, {2, 4}, {}), ShardEnd::kFinished);
  // What is wrong with one shard is not another one's.
  SetContent(folder + "/1-of-4.shard", "damaged");
  EXPECT_EQ(StateOfFinished(job, folder, {2, 4})->answers, answers);
  EXPECT_THROW(StateOfFinished(job, folder, {1, 4}), Failure);
}

// What MergeShards says, or what it made.
std::string TryToMerge(const Job& job, const std::string& folder) {
  std::filesystem::remove(folder + "/" + job.result_name());
  try {
    return ReadText(MergeShards(job, folder).result);
  } catch (const Failure& failure) {
    EXPECT_FALSE(std::filesystem::exists(folder + "/" + job.result_name())) << failure.what();
    return failure.what();
  }
}

TEST(Bulk, NoDamageIsMerged) {
  const ScratchFolder scratch;
  const TestList job(40);
  const std::string folder = scratch / "job", file = folder + "/2-of-3.shard";
  BeginJob(job, "", folder);
  for (const int number : {1, 2, 3}) DoShard(job, folder, {number, 3}, {});
  const std::string good = ReadText(file), whole = TryToMerge(job, folder);
  ASSERT_EQ(whole, job.Whole());
  for (std::size_t i = 0; i < good.size(); i += i < 300 ? 1 : 101) {
    std::string bad = good;
    bad[i] = static_cast<char>(bad[i] ^ 1 << i % 8);
    SetContent(file, bad);
    EXPECT_NE(TryToMerge(job, folder).find("2-of-3.shard' is "), std::string::npos) << i;
    SetContent(file, good.substr(0, i));
    EXPECT_NE(TryToMerge(job, folder).find("2-of-3.shard' is damaged"), std::string::npos) << i;
  }
  SetContent(file, good + "x");
  EXPECT_NE(TryToMerge(job, folder).find("2-of-3.shard' is damaged"), std::string::npos);
  SetContent(file, ReadText(folder + "/1-of-3.shard"));
  EXPECT_NE(TryToMerge(job, folder).find("name of another shard"), std::string::npos);
  std::filesystem::remove(file);
  EXPECT_EQ(TryToMerge(job, folder), "shard 2 of 3 is not finished");
  SetContent(file, good);
  EXPECT_EQ(TryToMerge(job, folder), whole);
  SetContent(folder + "/1-of-2.shard", good);
  EXPECT_NE(TryToMerge(job, folder).find("overlap"), std::string::npos);
  EXPECT_THROW(BeginJob(TestList(41), "", folder), Failure);
}

// A process that was killed, or a machine, leaves any part of a file.
TEST(Bulk, AnyRestOfAShardIsGoneOnWith) {
  const ScratchFolder scratch;
  const TestList job(3000);
  const std::string folder = scratch / "job", file = folder + "/1-of-1.unfinished";
  BeginJob(job, "", folder);
  std::string whole_file;
  {
    const auto shard =
        ShardFile::Open(folder, {.shard = {}, .job = job.Hash(), .units = {0, job.units()}});
    ASSERT_TRUE(shard);
    ASSERT_TRUE(job.Work(*shard, {}));
    whole_file = ReadText(file);
  }
  ASSERT_GT(whole_file.size(), 3u << 20) << "some blocks";
  std::mt19937 random(3);
  for (int i = 0; i < 12; ++i) {
    std::string rest = whole_file.substr(0, random() % whole_file.size());
    // Of what is behind the last flush, anything may be missing.
    if (i % 3 == 0 && rest.size() > 200) rest[128 + random() % (rest.size() - 128)] ^= 4;
    SetContent(file, rest);
    ASSERT_EQ(DoShard(job, folder, {}, {.threads = 2}), ShardEnd::kFinished);
    ASSERT_TRUE(TryToMerge(job, folder) == job.Whole()) << i;
    std::filesystem::remove(folder + "/1-of-1.shard");
  }
}

// As where the system has no more of them.
TEST(Bulk, ThreadsThatDoNotStartAreDoneWithout) {
  struct Act {
    std::atomic<int>*starts, *runs;
    Act(std::atomic<int>* starts_, std::atomic<int>* runs_) : starts(starts_), runs(runs_) {}
    Act(const Act& other) : starts(other.starts), runs(other.runs) {
      if (--*starts < 0) throw std::system_error(EAGAIN, std::generic_category());
    }
    void operator()(int) const { ++*runs; }
  };
  std::atomic<int> starts = 3, runs = 0;
  const Act act(&starts, &runs);
  std::vector<std::jthread> threads;
  EXPECT_EQ(StartThreads(8, threads, act), 3);
  threads.clear();
  EXPECT_EQ(runs, 3);
  EXPECT_THROW(StartThreads(8, threads, act), std::system_error);
}

TEST(Bulk, AFullDiskLosesNothing) {
  const ScratchFolder scratch;
  const TestList job(3000);
  const std::string folder = scratch / "job";
  BeginJob(job, "", folder);
  {
    const FullDisk disk(2u << 20);
    EXPECT_THROW(DoShard(job, folder, {}, {.threads = 2}), Failure);
  }
  EXPECT_GT(StateOf(job, folder).stopped.at(0).next, 500);
  EXPECT_EQ(DoShard(job, folder, {}, {}), ShardEnd::kFinished);
  const std::string whole = TryToMerge(job, folder);
  EXPECT_TRUE(whole == job.Whole());
  const FullDisk disk(2u << 20);
  EXPECT_THROW(MergeShards(job, folder), Failure);
  EXPECT_TRUE(ReadText(folder + "/result") == whole) << "the result of before stays";
}

// --- questions ---

TEST(Questions, IdsAreFoundWhereverTheyStand) {
  EXPECT_EQ(IdOf(R"({"id":7,"players":["AhKd","id"]})"), "7");
  EXPECT_EQ(IdOf(R"( { "players" : [ "x" ] , "id" : "a\",b" } )"), R"("a\",b")");
  EXPECT_EQ(IdOf(R"({"dead":["id",{"id":1}],"id":{"flop":"2c","alike":4},"x":1})"),
            R"({"flop":"2c","alike":4})");
  EXPECT_EQ(IdOf(R"({"players":["id"],"board":"id"})"), "");
  EXPECT_EQ(IdOf(R"({"id":null})"), "");
  for (const char* text :
       {"", "{", "\"", "{\"id\"", "{\"id\":", "{\"id\":\"", "}}", "{\"id\":[}"}) {
    EXPECT_NO_FATAL_FAILURE(IdOf(text)) << text;
  }
}

TEST(Questions, AFileIsKnownByItsPieces) {
  const ScratchFolder scratch;
  const std::string path = scratch / "questions.jsonl";
  std::string text;
  for (int i = 0; i < 40'000; ++i) {
    text += "{\"id\":" + std::to_string(i) + ",\"players\":[\"AhKd\",\"7s7c\"],\"dead\":[]}\n";
  }
  text.pop_back();
  SetContent(path, text);
  const QuestionFile file = QuestionFile::Of(path);
  EXPECT_EQ(file.lines(), 40'000);
  EXPECT_EQ(file.bytes(), static_cast<std::int64_t>(text.size()));
  ASSERT_GT(file.pieces().size(), 1u);
  std::string joined;
  for (const QuestionFile::Piece& piece : file.pieces()) joined += file.Read(piece);
  EXPECT_EQ(joined, text);
  const Json json = file.ToJson();
  EXPECT_EQ(QuestionFile::FromJson(json, path).ToJson(), json);

  // Somebody changes the last line: whoever reads the first ones does not care.
  text[text.size() - 20] = 'x';
  SetContent(path, text);
  const QuestionFile kept = QuestionFile::FromJson(json, path);
  EXPECT_NO_THROW(kept.Check({0, 100}));
  EXPECT_THROW(kept.Check({39'990, 40'000}), Failure);
  SetContent(path, text + "\n");
  EXPECT_THROW(QuestionFile::FromJson(json, path).Check({0, 100}), Failure);

  SetContent(path, "{\"id\":\"a\"}\n# {\"id\":\"b\"}\n{\"id\":\"b\"}\n{\"x\":1,\"id\": \"a\"}\n");
  try {
    QuestionFile::Of(path);
    FAIL() << "an id twice";
  } catch (const UsageError& error) {
    EXPECT_NE(std::string(error.what()).find("lines 1 and 4"), std::string::npos) << error.what();
  }
}

// Whoever writes such a file knows its checksum.
TEST(Questions, AJobFileIsCheckedWhole) {
  const ScratchFolder scratch;
  const std::string path = scratch / "questions.jsonl", folder = scratch / "job";
  SetContent(path, "{}\n{}\n");
  const QuestionsJob job(QuestionFile::Of(path), false);
  BeginJob(job, path, folder);
  const Json good = Json::parse(ReadText(folder + "/job.json"));
  EXPECT_EQ(JobOf(folder)->units(), 2);
  for (const char* patch : {
           R"({"job":5})",
           R"({"program":5})",
           R"({"three_way":5})",
           R"({"pieces":5})",
           R"({"pieces":[[6,2]]})",
           R"({"pieces":[["6",2,"0"]]})",
           R"({"pieces":[[-6,2,"0"]]})",
           R"({"pieces":[[6,0,"0"]]})",
           R"({"pieces":[[6,7,"0"]]})",
           R"({"pieces":[[9223372036854775807,1,"0"],[9223372036854775807,1,"0"]]})",
       }) {
    Json bad = good;
    bad["identity"].update(Json::parse(patch));
    bad["hash"] = ChecksumText(Checksum(bad["identity"].dump()));
    SetContent(folder + "/job.json", bad.dump());
    EXPECT_THROW(JobOf(folder), Failure) << patch;
  }
  Json bad = job.Identity();
  bad["pieces"][0][1] = 5;  // there are not so many lines
  const QuestionFile file = QuestionFile::FromJson(bad, path);
  EXPECT_THROW(file.Read(file.PieceOf(4)), Failure);
}

// A question that takes long is left at any time, and its answer is the same.
TEST(Questions, ALongOneIsGoneOnWith) {
  const ScratchFolder scratch;
  const std::string path = scratch / "questions.jsonl";
  SetContent(path,
             R"({"id":1,"players":["AhKd","random","random"],"standard_error":0.002}
{"id":2,"players":["15%","AsKsQs9c"],"game":"omaha","board":"2c7dTh"}
{"id":3,"players":["QQ+","AKs","KJs,TT"],"board":"2c7dTh","method":"exact","detail":"next"}
)");
  const QuestionsJob job(QuestionFile::Of(path), false);
  const auto maker = job.NewMaker();
  std::mt19937 random(5);
  for (std::int64_t unit = 0; unit < job.units(); ++unit) {
    std::string at_once;
    ASSERT_EQ(maker->Make(unit, false, at_once), Made::kAnswer) << unit;
    std::string kept, answer;
    int goes = 0;
    for (bool done = false; !done; ++goes) {
      LongUnit how{.kept = kept, .threads = 1 + static_cast<int>(random() % 3)};
      const int most = goes < 20 ? static_cast<int>(random() % 2) : 1 << 20;
      how.go_on = [looks = 0, most](double) mutable { return looks++ < most; };
      how.keep = [&](const std::string& bytes) { kept = bytes; };
      const Made made = maker->MakeLong(unit, how, answer);
      done = made == Made::kAnswer;
      if (!done) {
        ASSERT_EQ(made, Made::kStopped);
      }
    }
    EXPECT_EQ(answer, at_once) << goes;
  }
  // What was kept of another question, or is damaged, begins anew.
  for (const char* kept : {"", "damaged", "1234567812345678", "12345678123456781234567812345678"}) {
    std::string at_once, answer;
    maker->Make(2, false, at_once);
    LongUnit how{.kept = kept, .go_on = [](double) { return true; }};
    how.keep = [](const std::string&) {};
    EXPECT_EQ(maker->MakeLong(2, how, answer), Made::kAnswer);
    EXPECT_EQ(answer, at_once);
  }
}

TEST(Questions, ARunIsGoneOnWithAnywhere) {
  EquityQuestion question{
      .players = {HandRange::Every(Game::kHoldem), HandRange::Every(Game::kHoldem),
                  HandRange::Every(Game::kHoldem)},
      .method = Method::kSampled};
  question.sampling = {.standard_error = 0.001};
  const auto plan = Plan(question);
  ASSERT_TRUE(plan);
  std::vector<RunKept> kept;
  RunOptions options;
  options.keep = [&](const RunKept& one) { kept.push_back(one); };
  const EquityRun whole = pokermath::Run(*plan, options);
  ASSERT_GT(kept.size(), 2u);
  for (const RunKept& one : kept) {
    const EquityRun again = pokermath::Run(*plan, {.threads = 2, .from = one});
    EXPECT_EQ(again.answer.cases.units, whole.answer.cases.units) << one.done;
    EXPECT_EQ(again.answer.players[0].total.equity, whole.answer.players[0].total.equity);
  }
}

std::int64_t LinesIn(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }

TEST(FlopReport, StandsForAllFlops) {
  const auto alike_in = [](const std::string& text) {
    std::int64_t all = 0;
    for (std::size_t at = 0; (at = text.find("\"alike\":", at)) != text.npos;) {
      all += std::stoi(text.substr(at += 8));
    }
    return all;
  };
  EquityWords words;
  words.players = {"15%", "QQ+,AKs"};
  std::string text = FlopReport(words);
  EXPECT_EQ(LinesIn(text), 1755);
  EXPECT_EQ(alike_in(text), 22100);
  // One suit is another: 3! renamings less. Cards that are known do not come.
  words.players = {"AhKh", "15%"};
  text = FlopReport(words);
  EXPECT_EQ(alike_in(text), 50 * 49 * 48 / 6);
  EXPECT_GT(LinesIn(text), 1755);
  EXPECT_LT(LinesIn(text), 22100 / 3);
  EXPECT_EQ(text.find("\"board\":\"Ah"), std::string::npos);
  words = {};
  words.players = {"10%", "random"};
  words.game = "omaha";
  words.trials = "1000";
  words.seed = "5";
  words.by = {"made"};
  text = FlopReport(words);
  EXPECT_EQ(LinesIn(text), 1755);
  EXPECT_NE(text.find(R"("trials":1000,"seed":5,"detail":["made"],"board":")"), std::string::npos);
  words.board = "2c3c4c";
  EXPECT_THROW(FlopReport(words), UsageError);
}

}  // namespace
}  // namespace pokermath
