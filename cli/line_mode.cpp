// Lines are cut from a buffer of fixed size, so a line may not be longer than that: an input
// without line ends must not fill the memory.

#include "cli/line_mode.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/command.h"
#include "cli/errors.h"
#include "cli/output.h"

namespace pokermath::cli {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{1} << 16;

class LineReader {
 public:
  explicit LineReader(std::function<void()> before_read) : before_read_(std::move(before_read)) {}

  /// The next line without its end, valid until the next call. False at the end of the input.
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

void AppendError(const LineForm& form, std::int64_t line_number, const std::string& error,
                 std::string& out) {
  PrintError(fmt::format("line {}: {}", line_number, error));
  if (form.json) {
    out += JsonLine({{"schema", form.schema}, {"line", line_number}, {"error", error}});
  } else {
    out += "error: " + error + "\n";
  }
}

bool HasQuestion(std::string_view line) {
  const std::size_t start = line.find_first_not_of(" \t\r");
  return start != line.npos && line[start] != '#';
}

}  // namespace

int AnswerLines(const LineForm& form, const AnswerLine& answer) {
  std::string out;
  const auto flush = [&out] {
    Print(out);
    out.clear();
  };
  LineReader reader(flush);
  int exit_code = kExitDone;
  std::string_view line;
  bool too_long = false;
  for (std::int64_t number = 1; reader.Next(line, too_long); ++number) {
    if (!too_long && !HasQuestion(line)) continue;
    try {
      if (too_long) {
        throw UsageError(fmt::format("the line that starts with {} is too long: up to {} bytes",
                                     Quoted(line), kBufferBytes));
      }
      answer(line, out);
    } catch (const UsageError& error) {
      exit_code = kExitFailed;
      AppendError(form, number, error.what(), out);
    }
    if (out.size() >= kBufferBytes) flush();
  }
  flush();
  return exit_code;
}

}  // namespace pokermath::cli
