#include "cli/nearest.h"

#include <algorithm>
#include <cctype>

namespace pokermath::cli {
namespace {

// Letters in lower case, and without the dashes of an option.
std::string Compared(std::string_view word) {
  word.remove_prefix(std::min(word.find_first_not_of('-'), word.size()));
  std::string letters(word);
  std::ranges::transform(letters, letters.begin(), [](unsigned char letter) {
    return static_cast<char>(std::tolower(letter));
  });
  return letters;
}

// Who writes another digit means another thing.
std::size_t Weight(char letter) { return '0' <= letter && letter <= '9' ? 9 : 1; }

// Letters that are wrong, missing or too many, and neighbours that changed places, each counted
// once (Damerau 1964, Levenshtein 1966). No letter is touched twice.
std::size_t Slips(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before, last(b.size() + 1), row(b.size() + 1);
  for (std::size_t j = 1; j <= b.size(); ++j) last[j] = last[j - 1] + Weight(b[j - 1]);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    const std::size_t extra = Weight(a[i - 1]);
    row[0] = last[0] + extra;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t missing = Weight(b[j - 1]);
      const std::size_t changed = a[i - 1] == b[j - 1] ? 0 : std::max(extra, missing);
      row[j] = std::min({last[j - 1] + changed, last[j] + extra, row[j - 1] + missing});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], before[j - 2] + 1);
      }
    }
    before = last;
    std::swap(last, row);
  }
  return last[b.size()];
}

}  // namespace

std::string NearestHint(std::string_view word, const std::vector<std::string>& known) {
  constexpr std::size_t kLongest = 64;  // of words that are known
  const std::string typed = Compared(word);
  if (typed.size() < 2 || typed.size() > kLongest) return "";
  std::size_t least = typed.size() < 5 ? 2 : 3;
  const std::string* nearest = nullptr;
  for (const std::string& one : known) {
    const std::string compared = Compared(one);
    if (compared.size() < 2) continue;  // near to everything that is short
    const std::size_t slips = Slips(typed, compared);
    if (slips < least) least = slips, nearest = &one;
  }
  return nearest == nullptr ? "" : "; did you mean '" + *nearest + "'?";
}

}  // namespace pokermath::cli
