// Classes in the order of strength, each with how many of its hands are in the set and how many are
// not: the best run is that of the largest sum of the differences (Kadane's algorithm). Its bounds
// may lie anywhere between two classes that count, so the shortest numbers are chosen.
//
// A set that lists of percentages and patterns make has whole runs of them, with no hand missing.
// These are sought split by split, and joined where the splits agree.

#include "ranges/omaha/strength_run.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <map>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

#include "ranges/omaha/classes.h"
#include "ranges/omaha/piece.h"

namespace pokermath {
namespace {

struct Step {
  double percentile;
  Splits split;
  int in;
  int out;
};

struct Bounds {
  double at_least, below;
};

// A number within bounds in as few digits as can be, as text.
std::string ShortestNumber(const Bounds& bounds) {
  char text[32] = "";
  char* end = text;
  for (int digits = 0; digits <= 12; ++digits) {
    const double unit = std::pow(10.0, -digits);
    end = std::to_chars(text, std::end(text), std::ceil(bounds.at_least / unit) * unit,
                        std::chars_format::fixed, digits)
              .ptr;
    double value = 0;
    std::from_chars(text, end, value);
    if (value >= bounds.at_least && value < bounds.below && value > 0) break;
  }
  return std::string(text, end);
}

// Classes that count, the strongest first.
template <int cards>
std::vector<Step> StepsOf(const OmahaSpec<cards>& range, const OmahaSpec<cards>& free) {
  std::vector<Step> steps;
  for (const OmahaClass& hands : OmahaClasses(cards)) {
    Step step = {};
    ForEachHandOf<cards>(hands, [&](const typename OmahaSpec<cards>::Hand& hand) {
      if (step.split == 0) step.split = 1U << SplitOf<cards>(hand);
      if (!free.Contains(hand)) ++(range.Contains(hand) ? step.in : step.out);
    });
    if (step.in + step.out == 0) continue;
    step.percentile = OmahaPercentile(CardsOf(hands));
    steps.push_back(step);
  }
  std::ranges::sort(steps, {}, &Step::percentile);
  return steps;
}

struct Run {
  Splits splits = 0;
  Splits spare = 0;  // splits that it may have as well
  std::int64_t sum = 0;
  // Percentiles of its ends and of the steps of these splits before and behind it.
  double before = 0;
  double first = 0;
  double last = 0;
  double behind = 0;
};

constexpr double kNoBound = 1000;

Run BestRunOf(Splits splits, const std::vector<Step>& steps) {
  Run best, run;
  double before = 0;
  for (const Step& step : steps) {
    if ((step.split & splits) == 0) continue;
    if (best.behind == kNoBound) best.behind = step.percentile;
    if (run.sum <= 0) run = {splits, 0, 0, before, step.percentile, 0, kNoBound};
    run.last = step.percentile;
    run.sum += step.in - step.out;
    if (run.sum > best.sum) best = run;
    before = step.percentile;
  }
  return best;
}

// Of several that are as good, the one whose shapes are the shortest text.
template <int cards>
Run BestRun(const std::vector<Step>& steps) {
  const auto length = [](const Run& run) {
    return ShapesText<cards>(run.splits, Exclusions::kAllowed)->size();
  };
  Run best;
  for (Splits splits = kAllSplits<cards>; splits > 0; --splits) {
    if (ShapesText<cards>(splits, Exclusions::kAllowed) == nullptr) continue;
    const Run run = BestRunOf(splits, steps);
    if (run.sum > best.sum || (run.sum == best.sum && run.sum > 0 && length(run) < length(best))) {
      best = run;
    }
  }
  return best;
}

// The runs of one split that no hand is missing from.
void AddWholeRuns(Splits split, const std::vector<Step>& steps, std::vector<Run>& runs) {
  Run run;
  double before = 0;
  const auto end = [&](double behind) {
    run.behind = behind;
    if (run.sum > 0) runs.push_back(run);
    run = {};
  };
  for (const Step& step : steps) {
    if (step.split != split) continue;
    if (step.out > 0) {
      end(step.percentile);
    } else {
      if (run.sum == 0) run = {split, 0, 0, before, step.percentile, 0, kNoBound};
      run.last = step.percentile;
      run.sum += step.in;
    }
    before = step.percentile;
  }
  end(kNoBound);
}

// Joins runs of different splits where one pair of bounds does for all, the longest first.
//
// @param slack  how much shorter at each end a run may become
std::vector<Run> Joined(const std::vector<Run>& runs, double slack) {
  std::vector<Run> joined;
  for (Run run : runs) {
    if (run.last - run.first > 4 * slack) {
      run.first += slack;
      run.last -= slack;
    }
    const auto other = std::ranges::find_if(joined, [&run](const Run& that) {
      return (that.splits & run.splits) == 0 &&
             std::max(that.before, run.before) < std::min(that.first, run.first) &&
             std::max(that.last, run.last) < std::min(that.behind, run.behind);
    });
    if (other == joined.end()) {
      joined.push_back(run);
      continue;
    }
    other->splits |= run.splits;
    other->sum += run.sum;
    other->before = std::max(other->before, run.before);
    other->first = std::min(other->first, run.first);
    other->last = std::max(other->last, run.last);
    other->behind = std::min(other->behind, run.behind);
  }
  std::ranges::stable_sort(joined, std::ranges::greater(), &Run::sum);
  return joined;
}

// Finds the splits of which no hand of the run is missing, since there is none or they have it.
void FindSpareSplits(Splits all, const std::vector<Step>& steps, Run& run) {
  Splits missing = 0;
  for (const Step& step : steps) {
    const bool within = step.percentile > run.before && step.percentile < run.behind;
    if (within && step.out > 0) missing |= step.split;
  }
  run.spare = all & ~missing & ~run.splits;
}

// "5%-20%", "10%" from the strongest hand.
std::string PercentText(const Run& run) {
  const std::string to = ShortestNumber({run.last, run.behind}) + "%";
  return run.before == 0 ? to : ShortestNumber({run.before, run.first}) + "%-" + to;
}

// The shapes of the run, in as few letters as can be. Null if no text says them.
template <int cards>
const std::string* ShapesOf(const Run& run) {
  const std::string* shortest = nullptr;
  for (Splits splits = 1; splits <= kAllSplits<cards>; ++splits) {
    if ((run.splits & ~splits) != 0 || (splits & ~(run.splits | run.spare)) != 0) continue;
    const std::string* text = ShapesText<cards>(splits, Exclusions::kAllowed);
    if (text != nullptr && (shortest == nullptr || text->size() < shortest->size())) {
      shortest = text;
    }
  }
  return shortest;
}

// One term, or one for each set of splits that has a name; nothing if none has.
template <int cards>
std::string TextOf(const Run& run) {
  const bool whole = run.before == 0 && run.behind == kNoBound;
  const std::string percent = whole ? std::string(cards, 'x') : PercentText(run);
  if (const std::string* shapes = ShapesOf<cards>(run)) {
    return whole && shapes->empty() ? "random" : percent + *shapes;
  }
  std::string text;
  Splits rest = run.splits;
  while (const Splits named = NameableSplits<cards>(0, rest, true, Exclusions::kAllowed)) {
    text += (text.empty() ? "" : ",") + percent + *ShapesText<cards>(named, Exclusions::kAllowed);
    rest &= ~named;
  }
  return text;
}

// From the strongest to the weakest.
template <int cards>
std::string ListOf(std::vector<Run> runs) {
  std::ranges::stable_sort(runs, {}, &Run::last);
  std::string text;
  for (const Run& run : runs) {
    const std::string term = TextOf<cards>(run);
    if (!text.empty() && !term.empty()) text += ',';
    text += term;
  }
  return text;
}

// Lists of whole runs, if they have much of the set: the longest lists first.
template <int cards>
std::vector<std::string> WholeRunTexts(const std::vector<Step>& steps, std::int64_t hands) {
  constexpr std::size_t kMostRuns = 4;
  std::vector<Run> runs;
  for (Splits split = 1; split < kAllSplits<cards>; split <<= 1) AddWholeRuns(split, steps, runs);
  // Of a set without order there are very many.
  std::erase_if(runs, [hands](const Run& run) { return 1000 * run.sum < hands; });
  std::ranges::stable_sort(runs, std::ranges::greater(), &Run::sum);
  std::vector<std::string> texts;
  // A pattern may make a run longer than it was written.
  for (const double slack : {0.0, 0.05}) {
    std::vector<Run> joined = Joined(runs, slack);
    std::erase_if(joined, [hands](const Run& run) { return 50 * run.sum < hands; });
    if (joined.size() > kMostRuns) joined.resize(kMostRuns);
    for (Run& run : joined) FindSpareSplits(kAllSplits<cards>, steps, run);
    for (; !joined.empty(); joined.pop_back()) {
      const auto add = [](std::int64_t sum, const Run& run) { return sum + run.sum; };
      if (3 * std::accumulate(joined.begin(), joined.end(), std::int64_t{0}, add) < hands) break;
      texts.push_back(ListOf<cards>(joined));
    }
  }
  return texts;
}

template <int cards>
std::vector<std::string> BestRunTexts(const std::vector<Step>& steps, std::int64_t hands) {
  std::vector<std::string> texts;
  for (const Run& run : {BestRunOf(kAllSplits<cards>, steps), BestRun<cards>(steps)}) {
    // Where most hands would be exceptions, other patterns are shorter.
    if (2 * run.sum < hands) continue;
    const std::string shapes = *ShapesText<cards>(run.splits, Exclusions::kAllowed);
    Run from_the_strongest = run;
    from_the_strongest.before = 0;
    // A run of everything is no percentage.
    if (run.behind < kNoBound) texts.push_back(PercentText(from_the_strongest) + shapes);
    if (run.before != 0) texts.push_back(PercentText(run) + shapes);
  }
  return texts;
}

// The hands of lists of percentages; lists have terms in common.
template <int cards>
class ReadLists {
 public:
  // Nothing if it cannot be read.
  std::optional<OmahaSpec<cards>> Read(std::string_view list) {
    OmahaSpec<cards> hands;
    while (!list.empty()) {
      const std::size_t end = std::min(list.find(','), list.size());
      const std::string term(list.substr(0, end));
      list.remove_prefix(std::min(end + 1, list.size()));
      const auto [place, is_new] = terms_.try_emplace(term);
      if (is_new) place->second = ParseOmahaRange<cards>(term);
      if (!place->second.error.empty()) return std::nullopt;
      hands.Unite(place->second.range);
    }
    return hands;
  }

 private:
  std::map<std::string, OmahaRangeResult<cards>> terms_;
};

}  // namespace

template <int cards>
std::vector<StrengthRun<cards>> FindStrengthRuns(const OmahaSpec<cards>& range,
                                                 const OmahaSpec<cards>& free) {
  const std::vector<Step> steps = StepsOf(range, free);
  const std::int64_t hands = range.Count();
  std::vector<std::string> texts = BestRunTexts<cards>(steps, hands);
  for (std::string& list : WholeRunTexts<cards>(steps, hands)) {
    if (!list.empty() && std::ranges::find(texts, list) == texts.end())
      texts.push_back(std::move(list));
  }
  std::vector<StrengthRun<cards>> runs;
  ReadLists<cards> lists;
  for (const std::string& text : texts) {
    if (std::optional<OmahaSpec<cards>> read = lists.Read(text)) {
      runs.push_back({text, std::move(*read)});
    }
  }
  // Lists of several runs fit best.
  std::ranges::stable_sort(runs, std::ranges::greater(), [](const StrengthRun<cards>& run) {
    return std::ranges::count(run.text, ',');
  });
  return runs;
}

template std::vector<StrengthRun<4>> FindStrengthRuns<4>(const OmahaSpec<4>&, const OmahaSpec<4>&);
template std::vector<StrengthRun<5>> FindStrengthRuns<5>(const OmahaSpec<5>&, const OmahaSpec<5>&);

}  // namespace pokermath
