// Classes in the order of strength, each with how many of its hands are in the set and how many are
// not: the best run is that of the largest sum of the differences (Kadane's algorithm). Its bounds
// may lie anywhere between two classes that count, so the shortest numbers are chosen.

#include "ranges/omaha_strength_run.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "ranges/omaha_classes.h"
#include "ranges/omaha_piece.h"

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
  for (int digits = 0; digits <= 12; ++digits) {
    const double unit = std::pow(10.0, -digits);
    std::snprintf(text, sizeof text, "%.*f", digits, std::ceil(bounds.at_least / unit) * unit);
    const double value = std::strtod(text, nullptr);
    if (value >= bounds.at_least && value < bounds.below && value > 0) break;
  }
  return text;
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
    if (run.sum <= 0) run = {splits, 0, before, step.percentile, 0, kNoBound};
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

}  // namespace

template <int cards>
std::vector<StrengthRun<cards>> FindStrengthRuns(const OmahaSpec<cards>& range,
                                                 const OmahaSpec<cards>& free) {
  const std::vector<Step> steps = StepsOf(range, free);
  std::vector<std::string> texts;
  for (const Run& run : {BestRunOf(kAllSplits<cards>, steps), BestRun<cards>(steps)}) {
    // Where most hands would be exceptions, other patterns are shorter.
    if (2 * run.sum < range.Count()) continue;
    const std::string to = ShortestNumber({run.last, run.behind}) + "%";
    const std::string shapes = *ShapesText<cards>(run.splits, Exclusions::kAllowed);
    // A run of everything is no percentage.
    if (run.behind < kNoBound) texts.push_back(to + shapes);
    if (run.before == 0) continue;
    texts.push_back(ShortestNumber({run.before, run.first}) + "%-" + to + shapes);
  }
  std::vector<StrengthRun<cards>> runs;
  for (const std::string& text : texts) runs.push_back({text, ParseOmahaRange<cards>(text).range});
  return runs;
}

template std::vector<StrengthRun<4>> FindStrengthRuns<4>(const OmahaSpec<4>&, const OmahaSpec<4>&);
template std::vector<StrengthRun<5>> FindStrengthRuns<5>(const OmahaSpec<5>&, const OmahaSpec<5>&);

}  // namespace pokermath
