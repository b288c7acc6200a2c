#include "jobs/questions_job.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>
#include <utility>

#include "jobs/question_line.h"
#include "jobs/run.h"
#include "kernels/three_way_table.h"
#include "pages/equity_report.h"
#include "pages/errors.h"
#include "pages/number_text.h"
#include "pokermath/version.h"

namespace pokermath {
namespace {

using Clock = std::chrono::steady_clock;

// A question that takes longer than this on a thread, as far as one can tell after a while, is left
// for all threads.
constexpr Seconds kLong{8};
constexpr Seconds kBeforeTelling{1};

// Ends the work on a question from within.
struct Left {
  Made made;
};

// A piece of the file, cut into lines.
class Lines {
 public:
  explicit Lines(const QuestionFile& file) : file_(file) {}

  /// Valid until the next call.
  std::string_view Of(std::int64_t line) {
    if (line < first_ || line >= first_ + static_cast<std::int64_t>(ends_.size())) Read(line);
    const auto place = static_cast<std::size_t>(line - first_);
    const std::size_t start = place == 0 ? 0 : ends_[place - 1] + 1;
    return std::string_view(text_).substr(start, ends_[place] - start);
  }

 private:
  void Read(std::int64_t line) {
    const QuestionFile::Piece& piece = file_.PieceOf(line);
    text_ = file_.Read(piece);
    first_ = piece.first_line;
    ends_.clear();
    for (std::size_t end = text_.find('\n'); end != text_.npos; end = text_.find('\n', end + 1)) {
      ends_.push_back(end);
    }
    if (!text_.empty() && text_.back() != '\n') ends_.push_back(text_.size());
  }

  const QuestionFile& file_;
  std::string text_;
  std::int64_t first_ = 0;
  std::vector<std::size_t> ends_;
};

// What is kept of a run: how far it was, where it looks next, and the sums.
std::string BytesOf(const RunKept& kept) {
  std::string bytes(sizeof kept.done + sizeof kept.stop, '\0');
  std::memcpy(bytes.data(), &kept.done, sizeof kept.done);
  std::memcpy(bytes.data() + sizeof kept.done, &kept.stop, sizeof kept.stop);
  return bytes + kept.sums.Bytes();
}

// Nothing where that is not from such a plan.
std::optional<RunKept> ReadKept(const Calculation& plan, std::string_view bytes) {
  RunKept kept;
  constexpr std::size_t kStart = sizeof kept.done + sizeof kept.stop;
  if (bytes.size() < kStart) return std::nullopt;
  std::memcpy(&kept.done, bytes.data(), sizeof kept.done);
  std::memcpy(&kept.stop, bytes.data() + sizeof kept.done, sizeof kept.stop);
  Result<Sums> sums = plan.ReadSums(bytes.substr(kStart));
  if (!sums || kept.done < 0 || kept.done > plan.steps() || kept.stop > plan.steps()) {
    return std::nullopt;
  }
  kept.sums = *std::move(sums);
  return kept;
}

class QuestionMaker final : public Maker {
 public:
  explicit QuestionMaker(const QuestionFile& file) : lines_(file) {}

  Made Make(std::int64_t unit, const std::atomic<bool>& stop, std::string& out) override {
    return Answer(unit, 1, out, [&](const Calculation& plan, RunOptions options) {
      const Clock::time_point start = Clock::now();
      std::optional<Left> left;
      options.go_on = [&](const RunState& state) {
        const Seconds elapsed = Clock::now() - start;
        if (stop) left = {Made::kStopped};
        if (elapsed > kBeforeTelling && elapsed > kLong * state.part) left = {Made::kTooLong};
        return !left;
      };
      return RunUnless(left, plan, options);
    });
  }

  Made MakeLong(std::int64_t unit, const LongUnit& how, std::string& out) override {
    return Answer(unit, how.threads, out, [&](const Calculation& plan, RunOptions options) {
      Clock::time_point next_look{}, next_keep = Clock::now() + kBetweenKeeps;
      std::optional<Left> left;
      std::optional<RunKept> last;
      options.go_on = [&](const RunState& state) {
        if (Clock::now() < next_look) return true;
        next_look = Clock::now() + std::chrono::milliseconds(100);
        if (!how.go_on(state.part)) left = {Made::kStopped};
        return !left;
      };
      options.keep = [&](const RunKept& kept) {
        last = kept;
        if (Clock::now() < next_keep) return;
        how.keep(BytesOf(kept));
        next_keep = Clock::now() + kBetweenKeeps;
      };
      options.from = ReadKept(plan, how.kept);
      try {
        return RunUnless(left, plan, options);
      } catch (const Left&) {
        if (last) how.keep(BytesOf(*last));
        throw;
      }
    });
  }

 private:
  static EquityRun RunUnless(const std::optional<Left>& left, const Calculation& plan,
                             const RunOptions& options) {
    try {
      EquityRun run = Run(plan, options);
      if (left) throw *left;
      return run;
    } catch (const Failure&) {
      if (left) throw *left;
      throw;
    }
  }

  template <typename RunPlan>
  Made Answer(std::int64_t unit, int threads, std::string& out, const RunPlan& run) {
    const std::string_view line = lines_.Of(unit);
    if (!IsQuestion(line)) return Made::kNothing;
    const auto timeless = [&](const Calculation& plan, const RunOptions& how) {
      if (how.time) Refuse("time_ms: the answer would depend on the machine", "time_ms");
      return run(plan, how);
    };
    const LineOptions options{.defaults = defaults_,
                              .seed = static_cast<std::uint64_t>(unit + 1),
                              .threads = threads,
                              .timed = false,
                              .run = timeless};
    try {
      out += AnswerObject(line, options);
      return Made::kAnswer;
    } catch (const LineError& error) {
      out += ErrorObject(kEquitySchema, unit + 1, error, error.id());
      return Made::kError;
    } catch (const Left& left) {
      return left.made;
    }
  }

  Lines lines_;
  const EquityWords defaults_{};
};

// Lines of a file of answers, one after another.
class AnswerReader {
 public:
  explicit AnswerReader(const std::string& path) : path_(path), file_(path) {
    if (!file_.ok()) throw SystemFailure("cannot read " + Quoted(path), file_.error());
  }

  /// The next line, its end included; empty at the end of the file. Valid until the next call.
  std::string_view Next() {
    for (std::size_t searched = start_;;) {
      const std::size_t end = buffer_.find('\n', searched);
      if (end != buffer_.npos) {
        const std::string_view line = std::string_view(buffer_).substr(start_, end + 1 - start_);
        start_ = end + 1;
        return line;
      }
      searched = buffer_.size() - start_;
      buffer_.erase(0, start_);
      start_ = 0;
      if (!ReadMore(file_, path_, position_, buffer_)) return {};
    }
  }

 private:
  std::string path_;
  InputFile file_;
  std::int64_t position_ = 0;
  std::string buffer_;
  std::size_t start_ = 0;
};

}  // namespace

Json QuestionsJob::Identity() const {
  Json json = {{"job", "questions"},
               {"program", POKERMATH_VERSION_STRING},
               {"schema", kEquitySchema},
               {"three_way", three_way_}};
  json.update(file_.ToJson());
  return json;
}

void QuestionsJob::Check(const UnitRange& units) const {
  file_.Check(units);
  if ((ThreeWayTable::Get() != nullptr) == three_way_) return;
  throw Failure(three_way_ ? "the work was begun with the table three-way, which is not here"
                           : "the work was begun without the table three-way, which is here");
}

std::unique_ptr<Maker> QuestionsJob::NewMaker() const {
  return std::make_unique<QuestionMaker>(file_);
}

Verified VerifyAnswers(const QuestionsJob& job, const std::string& answers, std::int64_t sample,
                       std::uint64_t seed, const std::function<bool(double part)>& go_on) {
  const QuestionFile& file = job.file();
  job.Check({});
  // Lines that ask something come in a random order of which the first ones are taken.
  std::vector<std::int64_t> chosen;
  std::mt19937_64 random(seed);
  std::int64_t questions = 0;
  Lines lines(file);
  for (std::int64_t line = 0; line < file.lines(); ++line) {
    if (!IsQuestion(lines.Of(line))) continue;
    ++questions;
    if (std::ssize(chosen) < sample) {
      chosen.push_back(line);
    } else if (const std::uint64_t place = random() % static_cast<std::uint64_t>(questions);
               place < static_cast<std::uint64_t>(sample)) {
      chosen[place] = line;
    }
  }
  std::ranges::sort(chosen);
  const std::unique_ptr<Maker> maker = job.NewMaker();
  const std::atomic<bool> stop = false;
  AnswerReader reader(answers);
  Verified verified;
  // With a part of the next one.
  const auto part_of = [&](double next) {
    return (static_cast<double>(verified.questions) + next) / static_cast<double>(chosen.size());
  };
  auto next = chosen.begin();
  for (std::int64_t line = 0; line < file.lines(); ++line) {
    if (!IsQuestion(lines.Of(line))) continue;
    const std::string_view there = reader.Next();
    if (there.empty()) {
      throw Failure(
          fmt::format("{} ends before the answer to line {}", Quoted(answers), Grouped(line + 1)));
    }
    if (next == chosen.end() || *next != line) continue;
    ++next;
    std::string again;
    if (maker->Make(line, stop, again) == Made::kTooLong) {
      const LongUnit alone{.kept = "",
                           .threads = 1,
                           .go_on = [&](double part) { return go_on(part_of(part)); },
                           .keep = [](const std::string&) {}};
      if (maker->MakeLong(line, alone, again) == Made::kStopped) return verified;
    }
    ++verified.questions;
    if (again != there) verified.differ.push_back(line + 1);
    if (!go_on(part_of(0))) return verified;
  }
  if (!reader.Next().empty()) {
    throw Failure(Quoted(answers) + " has more answers than there are questions");
  }
  return verified;
}

}  // namespace pokermath
