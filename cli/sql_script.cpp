#include "cli/sql_script.h"

#include <algorithm>
#include <cctype>

namespace pokermath::cli {
namespace {

bool IsWordSign(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return std::isalnum(byte) != 0 || c == '_' || byte >= 0x80;
}

// Reads a script piece by piece: a word, a quoted text, a comment or a single sign.
class Scanner {
 public:
  explicit Scanner(std::string_view script) : script_(script) {}

  bool done() const { return at_ >= script_.size(); }
  std::size_t at() const { return at_; }
  // Takes a piece; a comment comes as a blank.
  std::string_view Next() {
    const std::size_t begin = at_;
    const char c = script_[at_];
    if (IsWordSign(c)) {
      while (!done() && IsWordSign(script_[at_])) ++at_;
      const bool escapes = at_ == begin + 1 && (c == 'E' || c == 'e');
      if (escapes && !done() && script_[at_] == '\'') SkipEscaped();
    } else if (c == '\'' || c == '"' || c == '`') {
      // A doubled quote is the end of one quoted text and the start of another.
      SkipPast(begin + 1, std::string_view(&script_[begin], 1));
    } else if (script_.substr(at_, 2) == "--") {
      SkipPast(begin, "\n");
      return " ";
    } else if (script_.substr(at_, 2) == "/*") {
      SkipPast(begin + 2, "*/");
      return " ";
    } else if (c == '$') {
      const std::string_view tag = DollarTag();
      at_ += std::max<std::size_t>(tag.size(), 1);
      if (!tag.empty()) SkipPast(at_, tag);
    } else {
      ++at_;
    }
    return script_.substr(begin, at_ - begin);
  }

 private:
  void SkipPast(std::size_t from, std::string_view end) {
    const std::size_t found = script_.find(end, from);
    at_ = found == script_.npos ? script_.size() : found + end.size();
  }

  // PostgreSQL's E'it\'s'.
  void SkipEscaped() {
    for (++at_; !done() && script_[at_] != '\''; ++at_) at_ += script_[at_] == '\\' ? 1u : 0u;
    at_ = std::min(at_ + 1, script_.size());
  }

  // "$$" or "$body$" if one begins here, else nothing.
  std::string_view DollarTag() const {
    std::size_t end = at_ + 1;
    while (end < script_.size() && IsWordSign(script_[end])) ++end;
    const bool closed = end < script_.size() && script_[end] == '$';
    const bool parameter = std::isdigit(static_cast<unsigned char>(
                               script_[at_ + 1 < script_.size() ? at_ + 1 : at_])) != 0;
    return closed && !parameter ? script_.substr(at_, end + 1 - at_) : std::string_view();
  }

  std::string_view script_;
  std::size_t at_ = 0;
};

std::string Upper(std::string_view word) {
  std::string upper(word);
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return upper;
}

// Whether a semicolon ends the statement, told by the words that it has so far.
class StatementWords {
 public:
  void Add(const std::string& word) {
    ++count_;
    if (count_ == 1) first_ = word;
    if (count_ == 2 && first_ == "ROLLBACK") back_to_savepoint_ = word == "TO";
    create_ = first_ == "CREATE";
    // CREATE [OR REPLACE] [TEMPORARY] TRIGGER
    if (create_ && count_ <= 5 && word == "TRIGGER") trigger_ = true;
    if (word == "BEGIN" || word == "CASE") ++open_;
    if (word == "END") --open_;
  }
  bool empty() const { return count_ == 0; }
  bool CanEnd() const { return !trigger_ || open_ <= 0; }
  // Whether a transaction is open after the statement, if it was before or not.
  bool OpenAfter(bool open) const {
    if (first_ == "BEGIN" || first_ == "START") return true;
    const bool ends = first_ == "COMMIT" || first_ == "END" || first_ == "ABORT" ||
                      (first_ == "ROLLBACK" && !back_to_savepoint_);
    return open && !ends;
  }

 private:
  int count_ = 0;
  int open_ = 0;
  std::string first_;
  bool back_to_savepoint_ = false;
  bool create_ = false;
  bool trigger_ = false;
};

}  // namespace

std::vector<SqlStatement> SplitSql(std::string_view script) {
  if (script.starts_with("\xEF\xBB\xBF")) script.remove_prefix(3);
  std::vector<SqlStatement> statements;
  StatementWords words;
  std::size_t begin = 0;
  const auto end_statement = [&](std::size_t end) {
    if (!words.empty()) {
      const auto lines =
          std::count(script.begin(), script.begin() + static_cast<std::ptrdiff_t>(begin), '\n');
      const bool open = words.OpenAfter(!statements.empty() && statements.back().leaves_open);
      statements.push_back(
          {std::string(script.substr(begin, end - begin)), static_cast<int>(lines) + 1, open});
    }
    words = StatementWords();
  };
  for (Scanner scanner(script); !scanner.done();) {
    const std::size_t at = scanner.at();
    const std::string_view piece = scanner.Next();
    if (piece == ";" && words.CanEnd()) {
      end_statement(at);
    } else if (std::isspace(static_cast<unsigned char>(piece.front())) == 0 && piece != ";") {
      if (words.empty()) begin = at;
      words.Add(Upper(piece));
    }
  }
  end_statement(script.size());
  return statements;
}

}  // namespace pokermath::cli
