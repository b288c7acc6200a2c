#include "jobs/question_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "jobs/checksum.h"
#include "jobs/question_line.h"
#include "pages/errors.h"
#include "pages/number_text.h"

namespace pokermath {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;  // about
constexpr std::size_t kLongestLine = std::size_t{16}
                                     << 20;  // a range with every hand of five cards

// Calls visit(line without its end) for the lines of a text.
template <typename Visit>
void ForEachLine(std::string_view text, const Visit& visit) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    visit(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::int64_t LinesIn(std::string_view text) {
  const auto ends = std::count(text.begin(), text.end(), '\n');
  return ends + (text.empty() || text.back() == '\n' ? 0 : 1);
}

// Ids of a file; of most lines only a checksum is kept.
class Ids {
 public:
  void Add(std::string_view line) {
    if (const std::string_view id = IdOf(line); !id.empty()) checksums_.push_back(Checksum(id));
  }

  // The checksums that came more than once.
  std::vector<std::uint64_t> Repeated() {
    std::ranges::sort(checksums_);
    std::vector<std::uint64_t> repeated;
    for (std::size_t i = 1; i < checksums_.size(); ++i) {
      const bool is_new = repeated.empty() || repeated.back() != checksums_[i];
      if (checksums_[i] == checksums_[i - 1] && is_new) repeated.push_back(checksums_[i]);
    }
    return repeated;
  }

 private:
  std::vector<std::uint64_t> checksums_;
};

void RefuseRepeated(const QuestionFile& file, const std::vector<std::uint64_t>& repeated) {
  std::map<std::string, std::int64_t, std::less<>> lines;
  for (const QuestionFile::Piece& piece : file.pieces()) {
    std::int64_t number = piece.first_line;
    ForEachLine(file.Read(piece), [&](std::string_view line) {
      ++number;
      const std::string_view id = IsQuestion(line) ? IdOf(line) : "";
      if (id.empty() || !std::ranges::binary_search(repeated, Checksum(id))) return;
      const auto [before, is_new] = lines.try_emplace(std::string(id), number);
      if (is_new) return;
      throw UsageError(fmt::format("lines {} and {} of {} have the same id: {}", before->second,
                                   number, Quoted(file.path()), Quoted(id)));
    });
  }
}

}  // namespace

std::string_view IdOf(std::string_view line) {
  const auto end_of_text = [&](std::size_t quote) {
    std::size_t i = quote + 1;
    while (i < line.size() && line[i] != '"') i += line[i] == '\\' ? 2 : 1;
    return std::min(i, line.size());
  };
  int depth = 0;
  bool is_key = false;               // what comes next
  std::optional<std::size_t> value;  // where the id's begins
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (c == '"') {
      const std::size_t end = end_of_text(i);
      const bool is_id = depth == 1 && is_key && line.substr(i, end - i + 1) == "\"id\"";
      i = end;
      if (is_id) {
        value = std::min(line.find(':', end), line.size() - 1) + 1;
        i = *value - 1;
        is_key = false;
      }
    } else if (depth == 1 && value && (c == ',' || c == '}')) {
      std::string_view id = line.substr(*value, i - *value);
      id.remove_prefix(std::min(id.find_first_not_of(" \t\r"), id.size()));
      id.remove_suffix(id.size() - (id.find_last_not_of(" \t\r") + 1));
      return id == "null" ? "" : id;
    } else if (c == '{' || c == '[') {
      ++depth;
    } else if (c == '}' || c == ']') {
      --depth;
    }
    if (c == '{' || c == ',') is_key = true;
    if (c == ':') is_key = false;
  }
  return "";
}

bool ReadMore(const InputFile& file, const std::string& path, std::int64_t& position,
              std::string& text) {
  const std::size_t before = text.size();
  text.resize(before + kPieceBytes);
  bool good;
  const std::size_t got = file.Read(position, text.data() + before, kPieceBytes, good);
  if (!good) throw SystemFailure("cannot read " + Quoted(path), errno);
  text.resize(before + got);
  position += static_cast<std::int64_t>(got);
  return got > 0;
}

void QuestionFile::AddPiece(std::string_view text) {
  pieces_.push_back(
      {bytes_, static_cast<std::int64_t>(text.size()), lines_, LinesIn(text), Checksum(text)});
  bytes_ += pieces_.back().bytes;
  lines_ += pieces_.back().lines;
}

QuestionFile QuestionFile::Of(const std::string& path) {
  QuestionFile questions(path);
  const InputFile& file = questions.Open();
  Ids ids;
  const auto add = [&](std::string_view text) {
    questions.AddPiece(text);
    ForEachLine(text, [&](std::string_view line) {
      if (IsQuestion(line)) ids.Add(line);
    });
  };
  std::string buffer;
  for (std::int64_t position = 0; ReadMore(file, path, position, buffer);) {
    const std::size_t end = buffer.rfind('\n');
    if (end != buffer.npos) {
      add(std::string_view(buffer).substr(0, end + 1));
      buffer.erase(0, end + 1);
    }
    if (buffer.size() > kLongestLine) {
      throw UsageError(fmt::format("line {} of {} is too long: up to {} bytes",
                                   questions.lines_ + 1, Quoted(path), kLongestLine));
    }
  }
  if (!buffer.empty()) add(buffer);
  const std::vector<std::uint64_t> repeated = ids.Repeated();
  if (!repeated.empty()) RefuseRepeated(questions, repeated);
  return questions;
}

QuestionFile QuestionFile::FromJson(const Json& json, const std::string& path) {
  QuestionFile questions(path);
  for (const Json& one : json.at("pieces")) {
    Piece piece{questions.bytes_, one.at(0).get<std::int64_t>(), questions.lines_,
                one.at(1).get<std::int64_t>(), 0};
    const auto& checksum = one.at(2).get_ref<const std::string&>();
    std::from_chars(checksum.data(), checksum.data() + checksum.size(), piece.checksum, 16);
    if (piece.lines < 1 || piece.lines > piece.bytes || piece.bytes > INT64_MAX - piece.start) {
      throw Failure("the pieces of " + Quoted(path) + " are not as they were written");
    }
    questions.pieces_.push_back(piece);
    questions.bytes_ += piece.bytes;
    questions.lines_ += piece.lines;
  }
  return questions;
}

Json QuestionFile::ToJson() const {
  Json json = {{"bytes", bytes_}, {"lines", lines_}, {"pieces", Json::array()}};
  for (const Piece& piece : pieces_) {
    json["pieces"].push_back(Json::array({piece.bytes, piece.lines, ChecksumText(piece.checksum)}));
  }
  return json;
}

const QuestionFile::Piece& QuestionFile::PieceOf(std::int64_t line) const {
  const auto behind = std::ranges::upper_bound(pieces_, line, {}, &Piece::first_line);
  return *(behind - 1);
}

const InputFile& QuestionFile::Open() const {
  if (!file_) file_ = std::make_shared<const InputFile>(path_);
  if (!file_->ok()) throw SystemFailure("cannot read " + Quoted(path_), file_->error());
  return *file_;
}

std::string QuestionFile::Read(const Piece& piece) const {
  std::string text(static_cast<std::size_t>(piece.bytes), '\0');
  if (Open().ReadAll(piece.start, text.data(), text.size()) && Checksum(text) == piece.checksum &&
      LinesIn(text) == piece.lines) {
    return text;
  }
  throw Failure(fmt::format("{} was changed since the work began: lines {} to {} are others",
                            Quoted(path_), Grouped(piece.first_line + 1),
                            Grouped(piece.first_line + piece.lines)));
}

void QuestionFile::Check(const UnitRange& lines) const {
  if (Open().SizeNow() != bytes_) {
    throw Failure(fmt::format("{} was changed since the work began: it has {} bytes, not {}",
                              Quoted(path_), Grouped(Open().SizeNow()), Grouped(bytes_)));
  }
  if (lines.size() == 0) return;
  for (auto piece = &PieceOf(lines.first);
       piece != pieces_.data() + pieces_.size() && piece->first_line < lines.last; ++piece) {
    Read(*piece);
  }
}

}  // namespace pokermath
