// Hand-history files are read from a position to their end, as bytes, and decoded line by line.

#include "pokermath/hand_history.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.h"
#include "platform/large_pages.h"
#include "platform/messages.h"
#include "platform/text.h"
#include "pokermath/large_table.h"

namespace pokermath {
namespace {

// What HistoryReader reads at a time.
constexpr std::size_t kMostBytes = std::size_t{16} << 20;
// What the two functions read at a time: it stays in the cache.
constexpr std::size_t kPiece = std::size_t{256} << 10;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// What a file has behind a position.
std::uint64_t Behind(const InputFile& file, std::int64_t position) {
  return position < 0 || position >= file.size()
             ? 0
             : static_cast<std::uint64_t>(file.size() - position);
}

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

// The same for lines that end with CR LF only.
template <typename Add>
void TakeCrLfLines(std::string_view& bytes, const Add& add) {
  for (std::size_t end = bytes.find("\r\n"); end != bytes.npos; end = bytes.find("\r\n")) {
    add(bytes.substr(0, end));
    bytes.remove_prefix(end + 2);
  }
}

// Room for the lines of all bytes if they are like the first ones, so that the list need not move
// as it grows; but not for more than one line in 16 bytes, as the first ones may be unlike the
// rest.
void Reserve(CStringArray& lines, std::size_t first_bytes, std::uint64_t all_bytes) {
  constexpr std::uint64_t kShortLine = 16;
  const double rate = static_cast<double>(lines.size()) / static_cast<double>(first_bytes);
  const auto expected = static_cast<std::uint64_t>(1.05 * rate * static_cast<double>(all_bytes));
  lines.reserve(std::min(expected, all_bytes / kShortLine));
  AskForLargePages(lines.data(), lines.capacity() * sizeof(CString));
}

// Reads some bytes from a position on in pieces. take(rest) takes the lines that are complete out
// of `rest`; what it leaves comes again, with more behind it. Gives what is left at the end to
// last(rest), and returns the number of bytes read; -1, without last(), if they cannot be read.
template <typename Take, typename Last>
std::int64_t ReadPieces(const InputFile& file, std::int64_t position, std::uint64_t bytes,
                        CStringArray& lines, const Take& take, const Last& last) {
  std::vector<char> piece(std::min<std::uint64_t>(bytes, kPiece));
  std::size_t held = 0;
  std::uint64_t done = 0;
  while (done < bytes) {
    if (held == piece.size()) piece.resize(2 * held);
    const std::size_t wanted = std::min<std::uint64_t>(piece.size() - held, bytes - done);
    bool good;
    const std::size_t got =
        file.Read(position + static_cast<std::int64_t>(done), piece.data() + held, wanted, good);
    if (!good) return -1;
    std::string_view rest(piece.data(), held + got);
    take(rest);
    if (done == 0 && got == wanted && bytes > got) Reserve(lines, got, bytes);
    done += got;
    held = rest.size();
    std::memmove(piece.data(), rest.data(), held);
    if (got < wanted) break;
  }
  last(std::string_view(piece.data(), held));
  return static_cast<std::int64_t>(done);
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

// The sign at the start of some bytes that are not ASCII; the number of its bytes.
std::size_t DecodeSign(std::string_view bytes, wchar_t*& out) {
  if (bytes.starts_with("\xE2\x82\xAC")) {
    *out++ = L'\u20AC';
    return 3;
  }
  if (bytes.starts_with("\xC2\xA3")) {
    *out++ = L'\u00A3';
    return 2;
  }
  if (kByteOrderMark.find(bytes[0]) == kByteOrderMark.npos) *out++ = FromWindows1252(bytes[0]);
  return 1;
}

// Bytes as Windows-1252, with the UTF-8 signs of euro and pound.
CString DecodeCurrency(std::string_view bytes) {
  CString line(bytes.size(), L'\0');
  wchar_t* end = line.data();
  while (!bytes.empty()) {
    const std::size_t plain = WidenAscii(bytes, end);
    end += plain;
    bytes.remove_prefix(plain);
    if (!bytes.empty()) bytes.remove_prefix(DecodeSign(bytes, end));
  }
  line.resize(static_cast<std::size_t>(end - line.data()));
  return line;
}

// Takes back the lines that were added, unless all of them have been.
class AddedLines {
 public:
  explicit AddedLines(CStringArray& lines) : lines_(lines), before_(lines.size()) {}
  ~AddedLines() {
    if (!kept_) lines_.resize(before_);
  }
  AddedLines(const AddedLines&) = delete;
  AddedLines& operator=(const AddedLines&) = delete;
  void Keep() { kept_ = true; }

 private:
  CStringArray& lines_;
  std::size_t before_;
  bool kept_ = false;
};

}  // namespace

struct HistoryReader::File : InputFile {
  using InputFile::InputFile;
};

// What is read at a look: some bytes before the position and what stands behind it.
struct HistoryReader::Look {
  LargeTable<char> bytes;  // not zeroed before they are read
  std::size_t before = 0;
  bool at_end = false;
  bool of_old_file = false;  // another one has taken its place: its last line is complete

  std::string_view Behind() const {
    return std::string_view(bytes.data(), bytes.size()).substr(before);
  }
};

HistoryReader::HistoryReader(std::string path, std::int64_t position)
    : path_(std::move(path)), position_(std::max<std::int64_t>(position, 0)) {}

bool HistoryReader::LoadPart(Look& look, std::size_t most) {
  auto file = std::make_shared<File>(path_);
  if (file->error() != 0) {
    errno = file->error();
    return false;
  }
  const bool replaced = file_ != nullptr && file->id() != file_->id();
  look.of_old_file = replaced && file_->SizeNow() > position_;
  const InputFile& source = look.of_old_file ? *file_ : *file;
  const std::int64_t size = source.SizeNow();
  const auto behind = [size](std::int64_t position) {
    return static_cast<std::uint64_t>(std::max<std::int64_t>(size - position, 0));
  };
  if (size < position_ || (replaced && !look.of_old_file)) position_ = 0;
  for (;; position_ = 0) {
    look.before = BytesBefore();
    const std::int64_t start = position_ - static_cast<std::int64_t>(look.before);
    look.bytes.resize(std::min<std::uint64_t>(look.before + most, behind(start)));
    bool good;
    look.bytes.resize(source.Read(start, look.bytes.data(), look.bytes.size(), good));
    if (!good) return false;
    const bool same =
        look.bytes.size() >= look.before &&
        (file_ == nullptr ||
         std::equal(before_.begin(), before_.begin() + look.before, look.bytes.begin()));
    if (same) break;
  }
  look.at_end = look.Behind().size() < most || behind(position_) <= most;
  if (!look.of_old_file) file_ = std::move(file);
  Remember(look, look.before);
  return true;
}

bool HistoryReader::Load(Look& look) {
  for (std::size_t most = kMostBytes;; most *= 2) {
    if (!LoadPart(look, most)) return false;
    if (look.at_end || look.Behind().find('\n') != std::string_view::npos) return true;
  }
}

std::string_view HistoryReader::WithoutMark(std::string_view bytes) const {
  const bool marked = position_ == 0 && !IsWindows1252(path_) && bytes.starts_with(kByteOrderMark);
  return marked ? bytes.substr(kByteOrderMark.size()) : bytes;
}

std::size_t HistoryReader::BytesBefore() const {
  return std::min<std::uint64_t>(static_cast<std::uint64_t>(position_), before_.size());
}

// The position is at so many bytes of the look.
void HistoryReader::Remember(const Look& look, std::size_t bytes) {
  const std::size_t count = BytesBefore();
  std::copy_n(look.bytes.begin() + static_cast<std::ptrdiff_t>(bytes - count), count,
              before_.begin());
}

bool HistoryReader::Read(CStringArray& lines) {
  more_ = false;
  Look look;
  if (!Load(look)) return false;
  AddedLines added(lines);
  const bool windows_1252 = IsWindows1252(path_);
  std::string_view rest = WithoutMark(look.Behind());
  const std::size_t size = rest.size();
  const auto add = [&](std::string_view line) { lines.push_back(Decode(line, windows_1252)); };
  TakeLines(rest, add);
  const bool last_of_old = look.of_old_file && look.at_end;
  if (last_of_old) {
    if (rest.ends_with('\r')) rest.remove_suffix(1);
    if (!rest.empty()) add(rest);
    rest = {};
  }
  added.Keep();
  if (rest.size() < size || last_of_old) {
    const std::size_t taken = look.bytes.size() - rest.size();
    position_ += static_cast<std::int64_t>(taken - look.before);
    Remember(look, taken);
  }
  more_ = !look.at_end || look.of_old_file;
  return true;
}

bool HistoryReader::ReadUnfinished(CStringArray& lines) {
  Look look;
  if (!Load(look)) return false;
  std::string_view rest = WithoutMark(look.Behind());
  if (look.of_old_file || rest.find('\n') != rest.npos) return true;
  if (rest.ends_with('\r')) rest.remove_suffix(1);
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
  AddedLines added(lines);
  const bool windows_1252 = IsWindows1252(name);
  bool at_start = position == 0 && !windows_1252;
  const auto add = [&](std::string_view line) {
    if (at_start && line.starts_with(kByteOrderMark)) line.remove_prefix(kByteOrderMark.size());
    at_start = false;
    if (!line.empty()) lines.push_back(Trimmed(Decode(line, windows_1252)));
  };
  const std::int64_t read = ReadPieces(
      file, position, Behind(file, position), lines,
      [&add](std::string_view& rest) { TakeLines(rest, add); }, add);
  if (read < 0) return -2;
  added.Keep();
  position += read;
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
  AddedLines added(lines);
  const auto add = [&lines](std::string_view line) { lines.push_back(DecodeCurrency(line)); };
  if (position < file.size()) {
    // As far as the file reaches from the position, even where only a part of it is used.
    const auto from = static_cast<std::int64_t>(static_cast<std::uint32_t>(position));
    const std::uint64_t reaches =
        static_cast<std::uint64_t>(file.size()) - static_cast<std::uint64_t>(position);
    ReadPieces(
        file, from, std::min(reaches, Behind(file, from)), lines,
        [&add](std::string_view& rest) { TakeCrLfLines(rest, add); }, [](std::string_view) {});
  }
  added.Keep();
  position = file.size();
  return 0;
}
