#include "pages/omaha_range_page.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <nlohmann/json.hpp>

#include "cards/omaha_sizes.h"
#include "eval/rank_sets.h"
#include "pages/card_words.h"
#include "pages/errors.h"
#include "pages/game.h"
#include "pages/number_text.h"
#include "platform/text.h"
#include "pokermath/cards.h"
#include "pokermath/omaha_ranges.h"
#include "ranges/omaha/hands.h"
#include "ranges/omaha/shapes.h"

namespace pokermath {
namespace {

Kinds SortedKinds(const std::map<std::string, int>& counts) {
  Kinds kinds(counts.begin(), counts.end());
  std::ranges::stable_sort(kinds, std::ranges::greater(), &Kinds::value_type::second);
  return kinds;
}

template <int cards>
OmahaSpec<cards> Read(const std::string& text, const std::vector<int>& dead) {
  const OmahaRangeResult<cards> read = ParseOmahaRange<cards>(text);
  if (!read.error.empty()) Refuse(read.error);
  OmahaSpec<cards> range;
  read.range.Exclude(dead, range);
  return range;
}

// Hands of the same ranks: how many there are of each split of suits, and one of them.
template <int cards>
struct Alike {
  static constexpr std::size_t kSplits = kSuitSplits<cards>.size();
  std::array<typename OmahaSpec<cards>::Hand, kSplits> hand;
  std::array<int, kSplits> count{};
};

template <int cards>
OmahaRangeAnswer Describe(const OmahaSpec<cards>& range, const std::vector<int>& dead) {
  OmahaRangeAnswer answer;
  answer.text = ToUtf8(range.MakeString());
  answer.dead = dead;
  answer.all_hands = OmahaSpec<cards>::kAllHands;
  answer.percent = range.Percent();
  answer.hands = range.Count();
  // There may be millions of hands: those of the same ranks and suit shape have one name.
  std::vector<Alike<cards>> alike(static_cast<std::size_t>(MultisetsOf(cards)));
  const std::int64_t examples = std::min(6, answer.hands);
  std::int64_t left = answer.hands;
  OmahaBits::ForEachHand(range, [&](const auto& hand) {
    auto ranks = hand;
    for (int& card : ranks) card %= 13;
    std::ranges::sort(ranks);
    Alike<cards>& kind = alike[static_cast<std::size_t>(MultisetNumber(ranks))];
    const std::size_t split = SplitOf<cards>(hand);
    kind.hand[split] = hand;
    ++kind.count[split];
    // The first of them last, and about as many hands between each two.
    const std::int64_t behind = --left;
    const auto next = examples - 1 - static_cast<std::int64_t>(answer.examples.size());
    if (behind == next * answer.hands / examples) answer.examples.push_back(InOrder(CardSet(hand)));
  });
  std::ranges::reverse(answer.examples);
  std::map<std::string, int> suits, types;
  for (const Alike<cards>& kind : alike) {
    for (std::size_t split = 0; split < kind.count.size(); ++split) {
      if (kind.count[split] == 0) continue;
      const std::string name = OmahaHandName(kind.hand[split]);
      const std::size_t comma = name.find(", ");
      types[name.substr(0, comma)] += kind.count[split];
      suits[name.substr(comma + 2)] += kind.count[split];
    }
  }
  answer.suits = SortedKinds(suits);
  answer.types = SortedKinds(types);
  return answer;
}

Json KindsJson(const Kinds& kinds) {
  Json json = Json::object();
  for (const auto& [name, count] : kinds) json[name] = count;
  return json;
}

std::string KindsText(const Kinds& kinds, std::size_t most, int all) {
  std::string text = "\n";
  for (std::size_t i = 0; i < kinds.size() && i < most; ++i) {
    const auto& [name, count] = kinds[i];
    text += fmt::format("  {:<40} {:>9}  {:>6.2f} %\n", name, Grouped(count), 100.0 * count / all);
  }
  if (kinds.size() <= most) return text;
  const auto more = static_cast<std::int64_t>(kinds.size() - most);
  return text + fmt::format("  and {}\n", Counted(more, "more type"));
}

// Text that fits on a screen; JSON has all of it.
std::string Headline(const std::string& text) {
  constexpr std::size_t kLongest = 600;
  if (text.empty()) return "an empty range";
  if (text.size() <= kLongest) return text;
  return fmt::format("{}... ({} characters, --json has them all)",
                     text.substr(0, std::min(text.find_last_of(",!", kLongest), kLongest)),
                     Grouped(static_cast<std::int64_t>(text.size())));
}

// Every hand on a line; the high cards first.
template <int cards>
std::string ListOf(const OmahaSpec<cards>& range) {
  std::string list;
  const auto hands = range.Hands();
  for (auto hand = hands.rbegin(); hand != hands.rend(); ++hand) {
    list += CardsText(InOrder(CardSet(*hand))) + "\n";
  }
  return list;
}

}  // namespace

OmahaRangeAnswer DescribeOmahaRange(Game game, const std::string& text,
                                    const std::vector<int>& dead) {
  OmahaRangeAnswer answer = ForOmahaSize(
      RulesOf(game).hand_size, [&](auto cards) { return Describe(Read<cards>(text, dead), dead); });
  answer.game = game;
  return answer;
}

std::string OmahaRangeList(Game game, const std::string& text, const std::vector<int>& dead) {
  return ForOmahaSize(RulesOf(game).hand_size,
                      [&](auto cards) { return ListOf(Read<cards>(text, dead)); });
}

std::string OmahaRangePage(const OmahaRangeAnswer& answer, const Colours& colours) {
  constexpr std::size_t kMostTypes = 12;
  std::string text =
      fmt::format("{}\n\n{} of {} hands, {:.4g} %\n", colours.Strong(Headline(answer.text)),
                  Grouped(answer.hands), Grouped(answer.all_hands), answer.percent);
  if (answer.hands == 0) return text;
  text += KindsText(answer.suits, answer.suits.size(), answer.hands);
  text += KindsText(answer.types, kMostTypes, answer.hands);
  text += "\n  for example";
  for (const auto& hand : answer.examples) text += "  " + colours.Cards(hand);
  return text + "\n";
}

Json OmahaRangeJson(const OmahaRangeAnswer& answer) {
  Json json = {{"schema", kJsonSchema}, {"game", NameOf(answer.game)}, {"text", answer.text}};
  json["dead"] = CardsJson(answer.dead);
  json["hands"] = answer.hands;
  json["percent"] = answer.percent;
  json["suits"] = KindsJson(answer.suits);
  json["types"] = KindsJson(answer.types);
  json["examples"] = Json::array();
  for (const auto& hand : answer.examples) json["examples"].push_back(CardsText(hand));
  return json;
}

OmahaRankAnswer FindOmahaRank(Game game, const std::string& text, std::string_view option) {
  const std::size_t size = HandSize(game);
  OmahaRankAnswer answer;
  answer.game = game;
  answer.hand = InOrder(CardSet(
      ReadCards(text, size, size, fmt::format("a hand of {} has {}", TitleOf(game), size))));
  const Result<double> percentile = OmahaPercentile(answer.hand);
  if (!percentile) {
    Refuse(fmt::format("{}{}: {}", option, Quoted(text), percentile.error().text));
  }
  answer.name = OmahaHandName(answer.hand);
  answer.percentile = *percentile;
  return answer;
}

std::string OmahaRankPage(const OmahaRankAnswer& answer, const Colours& colours) {
  return fmt::format("{}   {}\n\n  among the strongest  {:.4g} %\n", colours.Cards(answer.hand),
                     answer.name, answer.percentile);
}

Json OmahaRankJson(const OmahaRankAnswer& answer) {
  return {{"schema", kJsonSchema},
          {"game", NameOf(answer.game)},
          {"hand", CardsJson(answer.hand)},
          {"name", answer.name},
          {"percentile", answer.percentile}};
}

}  // namespace pokermath
