// Lines are cut from a buffer of fixed size, so a line may not be longer than that: an input
// without line ends must not fill the memory. The lines that are in the buffer at once are answered
// by several threads.

#include "cli/line_mode.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <exception>
#include <future>
#include <vector>

#include "cli/command.h"
#include "cli/errors.h"
#include "cli/output.h"
#include "jobs/question_line.h"

namespace pokermath::cli {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{1} << 16;

class LineReader {
 public:
  explicit LineReader(std::function<void()> before_read) : before_read_(std::move(before_read)) {}

  /// Whether the next line is there already, its end included.
  bool HasLine() const {
    return std::string_view(buffer_.data() + start_, end_ - start_).find('\n') !=
           std::string_view::npos;
  }

  /// The next line without its end, valid until something is read from the input: not before a call
  /// without HasLine(). False at the end of the input.
  /// @param too_long  out: the line did not fit; it is left out and `line` is its start
  bool Next(std::string_view& line, bool& too_long) {
    too_long = false;
    for (std::size_t searched = 0;;) {
      const std::string_view rest(buffer_.data() + start_, end_ - start_);
      if (const std::size_t length = rest.find('\n', searched); length != rest.npos) {
        line = rest.substr(0, length);
        start_ += length + 1;
        return true;
      }
      searched = rest.size();
      if (searched == buffer_.size()) {
        too_long = true;
        SkipLine();
        line = std::string_view(buffer_.data(), 20);
        return true;
      }
      if (!Fill()) {
        line = rest;
        start_ = end_;
        return !rest.empty();
      }
    }
  }

 private:
  // Moves what is left to the front and reads more behind it; false when there is no more.
  bool Fill() {
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(start_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    end_ -= start_;
    start_ = 0;
    const std::size_t got = Read(buffer_.data() + end_, buffer_.size() - end_);
    end_ += got;
    return got > 0;
  }

  // Drops the rest of the line that fills the buffer; its start stays in the front.
  void SkipLine() {
    constexpr std::size_t kKept = 1024;
    for (;;) {
      start_ = kKept;
      end_ = kKept + Read(buffer_.data() + kKept, buffer_.size() - kKept);
      const std::string_view more(buffer_.data() + kKept, end_ - kKept);
      if (const std::size_t length = more.find('\n'); length != more.npos) start_ += length + 1;
      if (start_ > kKept || more.empty()) return;
    }
  }

  std::size_t Read(char* place, std::size_t bytes) {
    before_read_();
    for (;;) {
      const ssize_t got = read(STDIN_FILENO, place, bytes);
      if (got >= 0) return static_cast<std::size_t>(got);
      if (errno != EINTR) throw SystemFailure("cannot read standard input", errno);
    }
  }

  std::function<void()> before_read_;
  std::vector<char> buffer_ = std::vector<char>(kBufferBytes);
  std::size_t start_ = 0;
  std::size_t end_ = 0;
};

struct Line {
  std::int64_t number = 0;
  std::string_view text;
  bool too_long = false;
};

// What became of a line: an answer, or what was thrown.
struct Answered {
  std::string text;
  std::exception_ptr thrown;
};

// Answers what the reader has, in the order of the lines.
class LineAnswerer {
 public:
  LineAnswerer(const LineForm& form, const AnswerLine& answer)
      : form_(form), answer_(answer), reader_([this] { Flush(); }) {}

  int Run() {
    while (ReadLines()) {
      AnswerAll();
      for (std::size_t i = 0; i < lines_.size(); ++i) Append(lines_[i], answered_[i]);
      if (out_.size() >= kBufferBytes) Flush();
    }
    Flush();
    return exit_code_;
  }

 private:
  static constexpr std::size_t kMostLines = 256;
  static constexpr auto kWorthThreads = std::chrono::microseconds(200);

  void Flush() {
    Print(out_);
    out_.clear();
  }

  // Waits for a line, and takes those that came with it; false at the end of the input.
  bool ReadLines() {
    lines_.clear();
    Line line;
    do {
      if (!reader_.Next(line.text, line.too_long)) return !lines_.empty();
      line.number = ++last_number_;
      if (line.too_long || IsQuestion(line.text)) lines_.push_back(line);
    } while (lines_.size() < kMostLines && reader_.HasLine());
    return true;
  }

  void AnswerAll() {
    answered_.assign(lines_.size(), {});
    next_ = 0;
    if (lines_.size() == 1) AnswerNext(form_.threads);
    // Quick answers are no work for several threads.
    const auto start = std::chrono::steady_clock::now();
    AnswerNext(1);
    const auto first = std::chrono::steady_clock::now() - start;
    std::vector<std::future<void>> others;
    const std::size_t left = lines_.size() - std::min(lines_.size(), next_.load());
    const bool share = first * static_cast<std::int64_t>(left) > kWorthThreads;
    for (std::size_t i = 1; share && i < static_cast<std::size_t>(form_.threads) && i < left; ++i) {
      others.push_back(std::async(std::launch::async, [this] {
        while (AnswerNext(1)) continue;
      }));
    }
    while (AnswerNext(1)) continue;
    for (std::future<void>& other : others) other.get();
  }

  // False if no line is left.
  bool AnswerNext(int threads) {
    const std::size_t place = next_++;
    if (place >= lines_.size()) return false;
    const Line& line = lines_[place];
    Answered& answered = answered_[place];
    try {
      if (line.too_long) {
        throw UsageError(fmt::format("the line that starts with {} is too long: up to {} bytes",
                                     Quoted(line.text), kBufferBytes));
      }
      answer_(line.text, threads, answered.text);
    } catch (...) {
      answered.thrown = std::current_exception();
    }
    return true;
  }

  void Append(const Line& line, const Answered& answered) {
    if (!answered.thrown) {
      out_ += answered.text;
      return;
    }
    try {
      std::rethrow_exception(answered.thrown);
    } catch (const LineError& error) {
      AppendError(line.number, error, true, error.id());
    } catch (const UsageError& error) {
      AppendError(line.number, error, form_.json, "");
    }
  }

  void AppendError(std::int64_t number, const UsageError& error, bool json, const std::string& id) {
    exit_code_ = kExitFailed;
    PrintError(fmt::format("line {}: {}", number, error.what()));
    if (!json) {
      out_ += fmt::format("error: {}\n", error.what());
      return;
    }
    out_ += ErrorObject(form_.schema, number, error, id);
  }

  const LineForm& form_;
  const AnswerLine& answer_;
  std::string out_;
  LineReader reader_;
  int exit_code_ = kExitDone;
  std::int64_t last_number_ = 0;
  std::vector<Line> lines_;
  std::vector<Answered> answered_;
  std::atomic<std::size_t> next_ = 0;
};

}  // namespace

int AnswerLines(const LineForm& form, const AnswerLine& answer) {
  return LineAnswerer(form, answer).Run();
}

}  // namespace pokermath::cli
