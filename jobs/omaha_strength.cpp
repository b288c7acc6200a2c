#include "jobs/omaha_strength.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <nlohmann/json.hpp>

#include "kernels/omaha_every_hand.h"
#include "pages/colours.h"
#include "pokermath/cards.h"
#include "pokermath/version.h"
#include "ranges/omaha/classes.h"
#include "ranges/omaha/order.h"

namespace pokermath {
namespace {

constexpr char kTitles[] = "hand,hands,value,equity,percentile\n";
// The lines behind the titles.
std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1);
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  return lines;
}

class StrengthAdder final : public Adder {
 public:
  explicit StrengthAdder(int hand_size) : hands_(hand_size) {}

  void Add(std::int64_t unit) override { hands_.Add(static_cast<int>(unit)); }
  std::span<std::int64_t> sums() override { return hands_.sums(); }
  std::int64_t Of(std::span<const int> hand) const { return hands_.Of(hand); }

 private:
  OmahaEveryHand hands_;
};

}  // namespace

OmahaStrengthJob::OmahaStrengthJob(int hand_size)
    : hand_size_(hand_size),
      name_(hand_size == 4 ? "omaha-strength" : fmt::format("omaha{}-strength", hand_size)),
      result_name_(name_ + ".csv") {}

Json OmahaStrengthJob::Identity() const {
  return {{"job", name_}, {"program", POKERMATH_VERSION_STRING}, {"units", units()}};
}

std::int64_t OmahaStrengthJob::units() const { return OmahaEveryHand::kSteps; }

std::unique_ptr<Adder> OmahaStrengthJob::NewAdder() const {
  return std::make_unique<StrengthAdder>(hand_size_);
}

std::string OmahaStrengthJob::ResultOf(Adder& all) const {
  const auto& strength = static_cast<const StrengthAdder&>(all);
  struct Line {
    std::vector<int> hand;
    int hands;
    std::int64_t value;
  };
  std::vector<Line> lines;
  for (const OmahaClass& hands : OmahaClasses(hand_size_)) {
    const std::vector<int> hand = CardsOf(hands);
    lines.push_back({hand, HandsOf(hands), strength.Of(hand)});
  }
  std::ranges::stable_sort(lines, std::greater(), &Line::value);
  // All boards that a hand leaves, all hands that a board leaves, won.
  const double most = 2.0 * Choose(52 - hand_size_, 5) * Choose(47 - hand_size_, hand_size_);
  const int every = Choose(52, hand_size_);
  std::string text = kTitles;
  int so_far = 0;
  for (const auto& [hand, hands, value] : lines) {
    so_far += hands;
    fmt::format_to(std::back_inserter(text), "{},{},{},{:.9f},{:.6f}\n", CardsText(hand), hands,
                   value, static_cast<double>(value) / most, 100.0 * so_far / every);
  }
  return text;
}

std::string OmahaStrengthFault(const std::string& text, int hand_size) {
  if (!text.starts_with(kTitles)) return "its first line is not the titles";
  const auto size = static_cast<std::size_t>(hand_size);
  std::size_t number = 1;
  std::int64_t last = INT64_MAX;
  for (const std::string_view line : LinesOf(text)) {
    ++number;
    const std::size_t comma = std::min(line.find(','), line.size());
    const std::size_t value_at = std::min(line.find(',', comma + 1), line.size() - 1) + 1;
    std::int64_t value = -1;
    std::from_chars(line.data() + value_at, line.data() + line.size(), value);
    if (ParseCards(line.substr(0, comma)).cards.size() != size || value < 0 || value > last) {
      return fmt::format("line {} is not the next hand with its equity", number);
    }
    last = value;
  }
  return "";
}

std::vector<std::uint8_t> OmahaOrderOf(const std::string& text, int hand_size) {
  const std::vector<OmahaClass> classes = OmahaClasses(hand_size);
  std::vector<std::uint32_t> order;
  for (const std::string_view line : LinesOf(text)) {
    const OmahaClass hands = OmahaClassOf(ParseCards(line.substr(0, line.find(','))).cards);
    const auto place = std::ranges::lower_bound(classes, hands, ComesBefore);
    order.push_back(static_cast<std::uint32_t>(place - classes.begin()));
  }
  return PackOmahaOrder(hand_size, order);
}

std::string OmahaOrderFault(std::span<const std::uint8_t> packed, int hand_size) {
  if (packed.size() != PackedOmahaOrderSize(hand_size)) return "its length is not right";
  std::vector<bool> seen(static_cast<std::size_t>(OmahaClassCount(hand_size)));
  std::size_t entry = 0;
  for (const std::uint32_t number : UnpackOmahaOrder(hand_size, packed)) {
    ++entry;
    if (number >= seen.size() || seen[number]) {
      return fmt::format("entry {} has the number {}, which {}", entry, number,
                         number < seen.size() ? "was there before" : "no hand has");
    }
    seen[number] = true;
  }
  return "";
}

}  // namespace pokermath
