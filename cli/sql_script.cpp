#include "cli/sql_script.h"

#include <algorithm>
#include <cctype>
#include <span>

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
      while (!done() && (IsWordSign(script_[at_]) || script_[at_] == '$')) ++at_;
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

  // PostgreSQL's E'it\'s' and E'it''s'.
  void SkipEscaped() {
    for (++at_; !done(); ++at_) {
      if (script_[at_] == '\\' || script_.substr(at_, 2) == "''") {
        ++at_;
      } else if (script_[at_] == '\'') {
        break;
      }
    }
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

// The words of a statement, as far as it takes them to tell whether a semicolon ends it and what it
// does to transactions.
class StatementWords {
 public:
  void Add(const std::string& word) {
    const bool create = !first_.empty() && first_[0] == "CREATE";
    // CREATE [OR REPLACE] [TEMPORARY] TRIGGER, and a function's BEGIN ATOMIC
    if (create && first_.size() < kFirst && word == "TRIGGER") has_body_ = true;
    if (create && last_ == "BEGIN" && word == "ATOMIC") has_body_ = true;
    if (word == "BEGIN" || word == "CASE") ++open_;
    if (word == "END") --open_;
    if (first_.size() < kFirst) first_.push_back(word);
    last_ = word;
  }
  bool empty() const { return first_.empty(); }
  bool CanEnd() const { return !has_body_ || open_ <= 0; }
  std::span<const std::string> first() const { return first_; }
  const std::string& last() const { return last_; }

 private:
  static constexpr std::size_t kFirst = 5;

  std::vector<std::string> first_;
  std::string last_;
  int open_ = 0;
  bool has_body_ = false;
};

// The name of a savepoint, which may stand in quotes.
std::string SavepointName(const std::string& word) {
  const bool quoted = word.size() >= 2 && std::string_view("\"'`").find(word[0]) != word.npos;
  return quoted ? word.substr(1, word.size() - 2) : word;
}

// Whether the statements so far have left a transaction open.
class OpenTransaction {
 public:
  void Follow(const StatementWords& words) {
    const auto first = words.first();
    const std::string& verb = first[0];
    const bool filler = first.size() > 1 && (first[1] == "WORK" || first[1] == "TRANSACTION");
    const auto rest = first.subspan(filler ? 2 : 1);
    const std::string& next = rest.empty() ? verb : rest.front();
    const bool ends = verb == "COMMIT" || verb == "END" || verb == "ABORT" || verb == "ROLLBACK" ||
                      (verb == "PREPARE" && filler);
    if (verb == "BEGIN" || verb == "START") {
      begun_ = true;
    } else if (verb == "SAVEPOINT") {
      savepoints_.push_back(SavepointName(next));
    } else if (verb == "RELEASE") {
      CutAt(SavepointName(words.last()), 0);
    } else if (verb == "ROLLBACK" && next == "TO") {
      CutAt(SavepointName(words.last()), 1);
    } else if (ends) {
      const bool chains = words.last() == "CHAIN" && std::ranges::count(first, "NO") == 0;
      begun_ = chains && (begun_ || !savepoints_.empty());
      savepoints_.clear();
    }
  }
  // The outermost savepoint begins a transaction where none has been begun.
  explicit operator bool() const { return begun_ || !savepoints_.empty(); }

 private:
  // Drops the savepoints from the last of that name on, but for so many.
  void CutAt(const std::string& name, std::size_t kept) {
    for (std::size_t i = savepoints_.size(); i-- > 0;) {
      if (savepoints_[i] == name) return savepoints_.resize(i + kept);
    }
  }

  bool begun_ = false;
  std::vector<std::string> savepoints_;  // that are open, the outermost first
};

}  // namespace

std::vector<SqlStatement> SplitSql(std::string_view script) {
  if (script.starts_with("\xEF\xBB\xBF")) script.remove_prefix(3);
  std::vector<SqlStatement> statements;
  StatementWords words;
  OpenTransaction transaction;
  std::size_t begin = 0;
  const auto end_statement = [&](std::size_t end) {
    if (!words.empty()) {
      const auto lines =
          std::count(script.begin(), script.begin() + static_cast<std::ptrdiff_t>(begin), '\n');
      transaction.Follow(words);
      statements.push_back({std::string(script.substr(begin, end - begin)),
                            static_cast<int>(lines) + 1, static_cast<bool>(transaction)});
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
