// Ranges by percentage: the equilibrium order of Hold'em and short deck, two tables of hand-made
// steps, a user's own points, Sklansky groups and two fixed ranges.
//
// The tables are opinion, not arithmetic: they are written here as they would be checked against
// paper. Keys and texts of the equilibrium tables follow from the order, but for the exceptions
// that are named beside them, which hosts know.

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string_view>
#include <vector>

#include "ranges/hand_classes.h"
#include "ranges/percent_ranges.h"

namespace pokermath {
namespace {

using RangeMap = std::map<double, Spec>;
using TextMap = std::map<double, CString>;

constexpr std::string_view kHoldemOrder =
    "AA KK QQ JJ TT AKs 99 AQs AKo AJs KQs 88 ATs AQo KJs KTs QJs AJo KQo QTs A9s 77 ATo "
    "JTs KJo A8s K9s QJo A7s KTo Q9s A5s 66 A6s QTo J9s A9o T9s A4s K8s JTo K7s A8o A3s "
    "Q8s K9o A2s K6s J8s T8s A7o 55 Q9o 98s K5s Q7s J9o A5o T9o A6o K4s K8o Q6s J7s T7s "
    "A4o 97s K3s 87s Q5s K7o 44 Q8o A3o K2s J8o Q4s T8o J6s K6o A2o T6s 98o 76s 86s 96s "
    "Q3s J5s K5o Q7o Q2s J4s 33 65s J7o T7o K4o 75s T5s Q6o J3s 95s 87o 85s 97o T4s K3o "
    "J2s 54s Q5o 64s T3s 22 K2o 74s 76o T2s Q4o J6o 84s 94s 86o T6o 96o 53s 93s Q3o J5o "
    "63s 43s 92s 73s 65o Q2o J4o 83s 75o 52s 85o 82s T5o 95o J3o 62s 54o 42s T4o J2o 72s "
    "64o T3o 32s 74o 84o T2o 94o 53o 93o 63o 43o 92o 73o 83o 52o 82o 42o 62o 72o 32o";

constexpr std::string_view kShortDeckOrder =
    "AA KK QQ JJ TT AKs 99 AQs AKo AJs KQs 88 ATs AQo KJs KTs QJs AJo KQo QTs A9s 77 ATo "
    "JTs KJo A8s K9s QJo A7s KTo Q9s 66 A6s QTo J9s A9o T9s K8s JTo K7s A8o Q8s K9o K6s "
    "J8s T8s A7o Q9o 98s Q7s J9o T9o A6o K8o Q6s J7s T7s 97s 87s K7o Q8o J8o T8o J6s K6o "
    "T6s 98o 76s 86s 96s Q7o J7o T7o Q6o 87o 97o 76o J6o 86o T6o 96o";

constexpr double kHoldemPercent = 13.26;  // holdings of one percent
constexpr double kShortDeckPercent = 6.3;

// A step of a table: what it adds to the step before.
struct Step {
  double percent;
  std::string_view classes;
  const wchar_t* text;
};

constexpr Step kCorvelle[] = {
    {0.3, "AA", L"AA"},
    {0.9, "KK", L"KK+"},
    {3.0, "QQ JJ AKs AKo", L"JJ+,AK"},
    {3.8, "TT AQs", L"TT+,AK,AQs"},
    {4.7, "AQo", L"TT+,AQ+"},
    {5.9, "99 88 AJs", L"88+,AJs,AQ+"},
    {7.1, "KQs AJo", L"88+,AJ+,KQs"},
    {8.4, "77 ATs KJs QJs", L"77+,AJ+,ATs,KJs+,QJs"},
    {10.0, "KTs A9s KQo", L"77+,A9s+,KTs+,QJs,AJo+,KQo"},
    {12.2, "66 A8s QTs JTs ATo", L"66+,A8s+,KTs+,QTs+,JTs,ATo+,KQo"},
    {14.3, "A7s A6s A5s K9s KJo", L"66+,A5s+,K9s+,QTs+,JTs,ATo+,KJo+"},
    {16.0, "A9o QJo", L"66+,A5s+,K9s+,QTs+,JTs,A9o+,KJo+,QJo"},
    {20.1, "A4s Q9s J9s T9s KTo QTo JTo", L"66+,A4s+,K9s+,Q9s+,J9s+,T9s,A9o+,KTo+,QTo+,JTo"},
    {23.4, "55 44 33 22 A3s A2s T8s 98s 87s 76s 65s 54s A8o",
     L"22+,A2s+,K9s+,Q9s+,J9s+,T8s+,98s,87s,76s,65s,54s,A8o+,KTo+,QTo+,JTo"},
    {30.0, "K8s Q8s J8s 97s 86s 75s 64s 53s 43s 32s A7o A6o",
     L"22+,A2s+,K8s+,Q8s+,J8s+,T8s+,97s+,86s+,75s+,64s+,53s+,43s,32s,A6o+,KTo+,QTo+,JTo"},
    {40.0, "K7s K6s K5s K4s K3s K2s Q7s J7s T7s 42s A5o A4o A3o A2o K9o K8o Q9o J9o",
     L"22+,A2s+,K2s+,Q7s+,J7s+,T7s+,97s+,86s+,75s+,64s+,53s+,42s+,32s,A2o+,K8o+,Q9o+,J9o"}};

constexpr Step kBase[] = {
    {0.9, "AA KK", L""},
    {3.0, "QQ JJ AKs AKo", L""},
    {3.8, "TT AQs", L""},
    {4.7, "AQo", L""},
    {5.9, "99 88 AJs", L""},
    {7.1, "AJo KQs", L""},
    {8.4, "77 ATs KJs QJs", L""},
    {10.0, "A9s KTs KQo", L""},
    {12.2, "66 A8s QTs JTs ATo", L""},
    {14.3, "A7s A6s A5s K9s KJo", L""},
    {16.0, "A9o QJo", L""},
    {20.1, "A4s Q9s J9s T9s KTo QTo JTo", L""},
    {23.4, "55 44 33 22 A3s A2s T8s 98s 87s 76s 65s 54s A8o", L""},
    {30.0, "K8s Q8s J8s 97s 86s 75s 64s 53s 43s 32s A7o A6o", L""},
    {40.0, "K2s K3s K4s K5s K6s K7s Q7s J7s T7s A5o A4o A3o A2o K9o K8o Q9o J9o", L""}};

constexpr std::string_view kSklanskyGroups[8] = {
    "AA KK QQ JJ AKs",
    "TT AQs AJs KQs AKo",
    "99 ATs KJs QJs JTs AQo",
    "88 KTs QTs J9s T9s 98s AJo KQo",
    "77 A9s A8s A7s A6s A5s A4s A3s A2s Q9s T8s 97s 87s 76s 65s KJo QJo JTo",
    "66 55 K9s J8s 86s 75s 54s ATo KTo QTo",
    "44 33 22 K8s K7s K6s K5s K4s K3s K2s Q8s T7s 64s 53s 43s J9o T9o 98o",
    "J7s 96s 85s 74s 42s 32s A9o K9o Q9o J8o T8o 87o 76o 65o 54o"};

// Above each percentage this many groups are in; above 40.1 % all of them.
struct GroupsAbove {
  double percent;
  int groups;
};
constexpr GroupsAbove kGroupsAbove[] = {{30.1, 8}, {23.41, 7}, {20.11, 6}, {12.21, 5},
                                        {8.41, 4}, {7.11, 3},  {4.71, 2}};

constexpr std::string_view kAllPairs = "AA KK QQ JJ TT 99 88 77 66 55 44 33 22";

template <typename Steps>
void FillSteps(const Steps& steps, RangeMap& ranges, TextMap* texts) {
  Spec range;
  for (const Step& step : steps) {
    AddClasses(step.classes, range);
    ranges[step.percent] = range;
    if (texts != nullptr) (*texts)[step.percent] = step.text;
  }
}

// Calls visit(name, holdings) for every class of an order, with the holdings up to it.
template <typename Visit>
void WalkAlong(std::string_view order, Visit visit) {
  std::size_t holdings = 0;
  while (!order.empty()) {
    const std::string_view name = order.substr(0, order.find(' '));
    order.remove_prefix(std::min(order.size(), name.size() + 1));
    holdings += name[0] == name[1] ? 6 : name[2] == 's' ? 4 : 12;
    visit(name, holdings);
  }
}

double HoldemKey(std::string_view name, std::size_t holdings) {
  if (name == "AA") return 0.45;
  return std::round(static_cast<double>(holdings) / kHoldemPercent * 10) / 10;
}

// Holdings / 6.3, rounded up to two decimals in whole numbers.
double ShortDeckKey(std::string_view name, std::size_t holdings) {
  return name == "AA" ? 0.95 : static_cast<double>((holdings * 1000 + 62) / 63) / 100;
}

// 87s is filed under this key, in one table near its own and in the other far below it; look-ups
// pair ranges and texts by place.
constexpr double kKeyOf87s = 34.9;

// What a step of a table adds to the one before, without texts.
struct PercentStep {
  double percent;
  std::string_view classes;
};

std::vector<PercentStep> StepsOf(PercentTable table, bool short_deck) {
  std::vector<PercentStep> steps;
  if (short_deck) {
    WalkAlong(kShortDeckOrder, [&](std::string_view name, std::size_t holdings) {
      steps.push_back({ShortDeckKey(name, holdings), name});
    });
  } else if (table == PercentTable::kCorvelle) {
    for (const Step& step : kCorvelle) steps.push_back({step.percent, step.classes});
  } else {
    WalkAlong(kHoldemOrder, [&](std::string_view name, std::size_t holdings) {
      steps.push_back({name == "87s" ? kKeyOf87s : HoldemKey(name, holdings), name});
    });
  }
  return steps;
}

// The last of the entries whose keys are no greater than the percentage, or the first; texts are
// paired with the ranges by place.
void LookUp(const RangeMap& ranges, const TextMap& texts, double percent, Spec& spec,
            CString& text) {
  if (ranges.empty() || texts.empty()) return;
  auto taken = ranges.begin();
  auto taken_text = texts.begin();
  auto range = taken;
  auto range_text = taken_text;
  for (; range != ranges.end() && range_text != texts.end(); ++range, ++range_text) {
    if (percent < range->first) break;
    taken = range;
    taken_text = range_text;
    if (percent == range->first) break;
  }
  spec = taken->second;
  text = taken_text->second;
}

struct Game {
  bool short_deck;
  std::size_t holdings;
  double one_percent;
};
constexpr Game kHoldem = {false, 1326, kHoldemPercent};
constexpr Game kShortDeck = {true, 630, kShortDeckPercent};

// What is in one range and not in the other.
Spec Difference(const Spec& range, const Spec& other) {
  Spec difference;
  for (const Combination& cards : range.combinations()) {
    if (!other.combinations().contains(cards)) difference.Insert(cards.first, cards.second);
  }
  return difference;
}

void Interpolate(const Game& game, RangeMap& ranges, TextMap& texts) {
  RangeMap steps;
  // Adds a class and files the step; false when that changes nothing and it would go on forever.
  const auto add = [&](Spec& range, const Spec& best) {
    const std::size_t before = range.combinations().size();
    range.Unite(best);
    const std::size_t holdings = range.combinations().size();
    if (holdings == before) return false;
    steps[static_cast<double>(holdings) / game.one_percent] = range;
    return true;
  };
  for (auto point = ranges.begin(); point != ranges.end(); ++point) {
    Spec range = point->second;
    if (const auto next = std::next(point); next != ranges.end()) {
      bool grows = true;
      while (grows && range.combinations().size() < next->second.combinations().size()) {
        const Spec missing = Difference(next->second, range);
        grows = add(range, game.short_deck ? missing.MakeBestHand6Plus() : missing.MakeBestHand());
      }
    } else {
      bool grows = true;
      while (grows && range.combinations().size() < game.holdings) {
        grows = add(range,
                    game.short_deck ? range.MakeNextForceHand6Plus() : range.MakeNextForceHand());
      }
    }
  }
  for (const auto& [percent, range] : steps) {
    ranges.emplace(percent, range);
    texts.emplace(percent, game.short_deck ? range.MakeString6Plus() : range.MakeString());
  }
}

}  // namespace
}  // namespace pokermath

std::map<double, Spec> pokermath::RangesByPercent(PercentTable table, bool short_deck) {
  std::map<double, Spec> ranges;
  Spec range;
  for (const PercentStep& step : StepsOf(table, short_deck)) {
    AddClasses(step.classes, range);
    ranges.emplace(step.percent, range);
  }
  return ranges;
}

Spec pokermath::RangeWithin(double percent, PercentTable table, bool short_deck) {
  Spec range;
  for (const PercentStep& step : StepsOf(table, short_deck)) {
    if (step.percent > percent && !range.combinations().empty()) break;
    AddClasses(step.classes, range);
  }
  return range;
}

void CStatSpectr::Init() {
  base_.clear();
  pokermath::FillSteps(pokermath::kBase, base_, nullptr);
}

void CStatSpectr::InitCorvelle() {
  corvelle_.clear();
  corvelle_texts_.clear();
  pokermath::FillSteps(pokermath::kCorvelle, corvelle_, &corvelle_texts_);
}

void CStatSpectr::InitEquil() {
  equilibrium_.clear();
  equilibrium_texts_.clear();
  Spec range;
  pokermath::WalkAlong(pokermath::kHoldemOrder, [&](std::string_view name, std::size_t holdings) {
    pokermath::AddClasses(name, range);
    const double key = pokermath::HoldemKey(name, holdings);
    equilibrium_[name == "87s" ? pokermath::kKeyOf87s : key] = range;
    equilibrium_texts_[key] = pokermath::RangeText(range, false, L"o");
  });
}

void CStatSpectr::InitEquil6Plus() {
  equilibrium_.clear();
  equilibrium_texts_.clear();
  Spec range;
  pokermath::WalkAlong(pokermath::kShortDeckOrder,
                       [&](std::string_view name, std::size_t holdings) {
                         pokermath::AddClasses(name, range);
                         const double key = pokermath::ShortDeckKey(name, holdings);
                         // Filed between 33.34 and 35.88, far below its text: look-ups pair by
                         // place, so from there up to the next key, 66.35, a range comes with the
                         // text of the next one.
                         equilibrium_[name == "87s" ? pokermath::kKeyOf87s : key] = range;
                         CString text = pokermath::RangeText(range, true, L"o");
                         if (key == 47.94) text = L"66+,A2s+,K6s+,Q8s+,J8s+,T9s,A8o+,K9o+,QTo+,JTo";
                         if (key >= 92.39) text.replace(text.find(L"86s+"), 4, L"87s+");
                         equilibrium_texts_[key] = text;
                       });
}

void CStatSpectr::GetSpecByPercent(double percent, Spec& spec, CString& text, int table) const {
  if (table == 1) {
    pokermath::LookUp(corvelle_, corvelle_texts_, percent, spec, text);
  } else {
    pokermath::LookUp(equilibrium_, equilibrium_texts_, percent, spec, text);
  }
}

int SklanskyGroup(CCard card1, CCard card2) {
  static const auto groups = [] {
    std::array<int, pokermath::kHandClasses> by_cell{};
    for (int group = 8; group >= 1; --group) {
      Spec range;
      pokermath::AddClasses(pokermath::kSklanskyGroups[group - 1], range);
      for (const auto& [first, second] : range.combinations()) {
        by_cell[static_cast<std::size_t>(pokermath::CellOf(first, second))] = group;
      }
    }
    return by_cell;
  }();
  if (!card1.IsValid() || !card2.IsValid()) return 0;
  return groups[static_cast<std::size_t>(pokermath::CellOf(card1.GetInt(), card2.GetInt()))];
}

int CStatSpectr::numSklanskyGroup(CCard card1, CCard card2, double percent) const {
  const int group = SklanskyGroup(card1, card2);
  if (group == 0) return 0;
  const bool aces = card1.GetRank() == 1 && card2.GetRank() == 1;
  const bool kings = card1.GetRank() == 13 && card2.GetRank() == 13;
  if (percent < 1.0) return aces ? 1 : 0;
  if (percent < 3.1) return aces || kings ? 1 : 0;
  if (percent > 40.1) return 1;
  int groups = 1;
  for (const auto& above : pokermath::kGroupsAbove) {
    if (percent > above.percent) groups = std::max(groups, above.groups);
  }
  return group <= groups ? 1 : 0;
}

void CUserFolder::GetSpecByPercent(double percent, Spec& spec, CString& text) const {
  pokermath::LookUp(specs, texts, percent, spec, text);
}

void CUserFolder::MakeInterpolation() { pokermath::Interpolate(pokermath::kHoldem, specs, texts); }

void CUserFolder::MakeInterpolation6Plus() {
  pokermath::Interpolate(pokermath::kShortDeck, specs, texts);
}

void StrategyRanges::MakeSrategyRanges() {
  Spec range;
  pokermath::AddClasses(pokermath::kAllPairs, range);
  pokermath::AddClasses("AKs AQs AJs ATs A9s A8s A7s A6s A5s A4s A3s A2s KQs KJs KTs", range);
  pokermath::AddClasses("QJs QTs JTs T9s 98s 87s 76s", range);
  pokermath::AddClasses("AKo AQo AJo ATo A9o A8o A7o KQo KJo KTo QJo QTo JTo T9o", range);
  first = range;
  range = Spec();
  pokermath::AddClasses(pokermath::kAllPairs, range);
  pokermath::AddClasses("AKs AQs AJs ATs A9s A8s A7s KQs KJs KTs QJs QTs", range);
  pokermath::AddClasses("AKo AQo AJo ATo KQo KJo QJo", range);
  second = range;
}
