// Hand-history files are read from a position to their end, as bytes, and decoded line by line.

#include "pokermath/hand_history.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <string>
#include <string_view>

#include "platform/messages.h"
#include "platform/text.h"

namespace pokermath {
namespace {

constexpr std::size_t kWhole = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kMostBytes = std::size_t{16} << 20;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Not zeroed before they are read.
using Bytes = LargeTable<char>;

std::string_view ViewOf(const Bytes& bytes) { return {bytes.data(), bytes.size()}; }

// A regular file that is open for reading.
class InputFile {
 public:
  explicit InputFile(const std::string& path)
      : fd_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (fd_ < 0 || fstat(fd_, &status_) != 0) {
      error_ = errno;
    } else if (!S_ISREG(status_.st_mode)) {
      error_ = S_ISDIR(status_.st_mode) ? EISDIR : EINVAL;
    }
  }
  ~InputFile() {
    if (fd_ >= 0) close(fd_);
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  int error() const { return error_; }  // 0 if it is open
  std::int64_t size() const { return status_.st_size; }
  std::uint64_t id() const { return static_cast<std::uint64_t>(status_.st_ino) + 1; }

  // What there is from a position on, up to a number of bytes.
  Bytes Read(std::int64_t position, std::size_t most) const {
    const std::int64_t left = position < 0 ? 0 : size() - position;
    Bytes bytes(left <= 0 ? 0 : std::min(most, static_cast<std::size_t>(left)));
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t got = pread(fd_, bytes.data() + done, bytes.size() - done,
                                position + static_cast<std::int64_t>(done));
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) break;  // it has become shorter
      done += static_cast<std::size_t>(got);
    }
    bytes.resize(done);
    return bytes;
  }

 private:
  int fd_;
  int error_ = 0;
  struct stat status_ {};
};

bool IsWindows1252(std::string_view path) { return path.starts_with("888poker"); }

CString Decode(std::string_view line, bool windows_1252) {
  return windows_1252 ? FromWindows1252(line) : FromUtf8(line);
}

// Calls add(line) for every line that is complete, without its end; the rest is left in `bytes`.
template <typename Add>
void TakeLines(std::string_view& bytes, const Add& add) {
  for (std::size_t end = bytes.find('\n'); end != bytes.npos; end = bytes.find('\n')) {
    std::string_view line = bytes.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    add(line);
    bytes.remove_prefix(end + 1);
  }
}

bool IsWhiteSpace(wchar_t c) {
  return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
         (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
         c == 0x3000;
}

CString Trimmed(CString text) {
  text.erase(std::find_if_not(text.rbegin(), text.rend(), IsWhiteSpace).base(), text.end());
  text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), IsWhiteSpace));
  return text;
}

// Bytes as Windows-1252, with the UTF-8 signs of euro and pound.
class CurrencyDecoder {
 public:
  explicit CurrencyDecoder(CStringArray& lines) : lines_(lines) {}

  void Decode(std::string_view bytes) {
    while (!bytes.empty()) bytes.remove_prefix(Next(bytes));
  }

 private:
  // Decodes one sign or some plain ones; the number of their bytes.
  std::size_t Next(std::string_view bytes) {
    // Most of a line is ASCII.
    const auto is_plain = [](char byte) {
      return static_cast<signed char>(byte) >= 0 && byte != '\r';
    };
    const auto plain_end = std::find_if_not(bytes.begin(), bytes.end(), is_plain);
    if (plain_end != bytes.begin()) {
      line_.append(bytes.begin(), plain_end);
      return static_cast<std::size_t>(plain_end - bytes.begin());
    }
    if (bytes.starts_with("\r\n")) {
      lines_.push_back(std::move(line_));
      line_.clear();
      return 2;
    }
    if (bytes.starts_with("\xE2\x82\xAC")) {
      line_ += L'\u20AC';
      return 3;
    }
    if (bytes.starts_with("\xC2\xA3")) {
      line_ += L'\u00A3';
      return 2;
    }
    if (kByteOrderMark.find(bytes[0]) == kByteOrderMark.npos) line_ += FromWindows1252(bytes[0]);
    return 1;
  }

  CStringArray& lines_;
  CString line_;  // lost if it is not completed
};

}  // namespace

HistoryReader::HistoryReader(std::string path, std::int64_t position)
    : path_(std::move(path)), position_(std::max<std::int64_t>(position, 0)) {}

bool HistoryReader::Load(LargeTable<char>& bytes, std::size_t most, bool& at_end) {
  const InputFile file(path_);
  if (file.error() != 0) {
    errno = file.error();
    return false;
  }
  if (file.size() < position_ || (file_ != 0 && file.id() != file_)) position_ = 0;
  file_ = file.id();
  bytes = file.Read(position_, most);
  at_end =
      position_ + static_cast<std::int64_t>(bytes.size()) >= file.size() || bytes.size() < most;
  return true;
}

std::string_view HistoryReader::WithoutMark(std::string_view bytes) const {
  const bool marked = position_ == 0 && bytes.starts_with(kByteOrderMark);
  return marked ? bytes.substr(kByteOrderMark.size()) : bytes;
}

bool HistoryReader::Read(CStringArray& lines) {
  for (std::size_t most = kMostBytes;; most *= 2) {
    Bytes bytes;
    bool at_end;
    if (!Load(bytes, most, at_end)) return false;
    std::string_view rest = WithoutMark(ViewOf(bytes));
    const bool windows_1252 = IsWindows1252(path_);
    TakeLines(rest, [&](std::string_view line) { lines.push_back(Decode(line, windows_1252)); });
    const bool taken = rest.size() < WithoutMark(ViewOf(bytes)).size();
    if (taken) position_ += static_cast<std::int64_t>(bytes.size() - rest.size());
    more_ = !at_end;
    // A line that is longer than what was read.
    if (taken || at_end) return true;
  }
}

bool HistoryReader::ReadUnfinished(CStringArray& lines) {
  Bytes bytes;
  bool at_end;
  if (!Load(bytes, kWhole, at_end)) return false;
  const std::string_view rest = WithoutMark(ViewOf(bytes));
  if (!rest.empty()) lines.push_back(Decode(rest, IsWindows1252(path_)));
  return true;
}

}  // namespace pokermath

int ReadHistoryFile(CString path, __int64& position, CStringArray& lines) {
  using namespace pokermath;
  lines.clear();
  const std::string name = ToUtf8(path);
  struct stat status;
  if (stat(name.c_str(), &status) != 0) return -1;
  const InputFile file(name);
  if (file.error() != 0) return -2;
  const Bytes bytes = file.Read(position, kWhole);
  std::string_view rest = ViewOf(bytes);
  const bool windows_1252 = IsWindows1252(name);
  if (position == 0 && !windows_1252 && rest.starts_with(kByteOrderMark)) rest.remove_prefix(3);
  const auto add = [&](std::string_view line) {
    if (!line.empty()) lines.push_back(Trimmed(Decode(line, windows_1252)));
  };
  TakeLines(rest, add);
  add(rest);
  position += static_cast<__int64>(bytes.size());
  return 0;
}

int ReadHistoryFileUTF8(CString path, __int64& position, CStringArray& lines) {
  using namespace pokermath;
  lines.clear();
  const std::string name = ToUtf8(path);
  struct stat status;
  if (stat(name.c_str(), &status) != 0) {
    ShowMessage(L"File <" + path + L"> could not be opened!");
    return -1;
  }
  const InputFile file(name);
  if (file.error() != 0) return file.error();
  const std::int64_t left = file.size() - position;
  const auto from = static_cast<std::int64_t>(static_cast<std::uint32_t>(position));
  if (left > 0) {
    CurrencyDecoder(lines).Decode(ViewOf(file.Read(from, static_cast<std::size_t>(left))));
  }
  position = file.size();
  return 0;
}
