#include "cli/omaha_strength.h"

#include <fmt/format.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cstring>
#include <numeric>
#include <thread>
#include <utility>

#include "cli/output.h"
#include "platform/files.h"
#include "pokermath/cards.h"

namespace pokermath::cli {
namespace {

constexpr char kTitles[] = "hand,hands,value,equity,percentile\n";
constexpr int kStepsOfAPiece = 64;

// What comes before the sums in the file of an unfinished count.
struct Header {
  char magic[16];
  std::uint32_t hand_size, done;
  std::uint32_t crc32;  // of the sums
  std::uint32_t unused;
};
constexpr char kMagic[16] = "Omaha strength1";

std::uint32_t Crc32(std::span<const std::int64_t> sums) {
  return static_cast<std::uint32_t>(
      crc32_z(0, reinterpret_cast<const Bytef*>(sums.data()), sums.size_bytes()));
}

// Cards from high to low, spades first.
bool Before(int card, int other) {
  return card % 13 != other % 13 ? card % 13 > other % 13 : card > other;
}

// Of all hands that are one with renamed suits the first, and how many there are.
struct HandClass {
  std::vector<int> hand;
  int hands = 0;
};

// Visits every hand of so many cards, each as the cards lie in the deck.
template <typename Visit>
void ForEachHand(std::span<const int> deck, std::vector<int>& hand, int cards, const Visit& visit) {
  if (cards == 0) return visit();
  for (std::size_t i = 0; i < deck.size(); ++i) {
    hand.push_back(deck[i]);
    ForEachHand(deck.subspan(i + 1), hand, cards - 1, visit);
    hand.pop_back();
  }
}

// How many hands are this one with renamed suits; 0 if it is not the first of them.
int HandsOfClass(const std::vector<int>& hand) {
  std::array<int, 4> suits = {0, 1, 2, 3};
  int same = 0;
  int renamings = 0;
  std::vector<int> renamed(hand.size());
  do {
    std::ranges::transform(hand, renamed.begin(), [&suits](int card) {
      return suits[static_cast<std::size_t>(card / 13)] * 13 + card % 13;
    });
    std::ranges::sort(renamed, Before);
    if (std::ranges::lexicographical_compare(renamed, hand, Before)) return 0;
    same += renamed == hand ? 1 : 0;
    ++renamings;
  } while (std::next_permutation(suits.begin(), suits.end()));
  return renamings / same;
}

std::vector<HandClass> HandClasses(int hand_size) {
  std::vector<int> deck(52);
  std::iota(deck.begin(), deck.end(), 0);
  std::ranges::sort(deck, Before);
  std::vector<HandClass> classes;
  std::vector<int> hand;
  ForEachHand(deck, hand, hand_size, [&] {
    if (const int hands = HandsOfClass(hand); hands > 0) classes.push_back({hand, hands});
  });
  return classes;
}

}  // namespace

OmahaStrength::OmahaStrength(int hand_size) : hand_size_(hand_size) {
  const unsigned processors = std::clamp(std::thread::hardware_concurrency(), 1u, 64u);
  for (unsigned i = 0; i < processors; ++i) {
    workers_.push_back(std::make_unique<OmahaEveryHand>(hand_size));
  }
}

void OmahaStrength::GoOn() {
  const int end = std::min(done_ + kStepsOfAPiece, OmahaEveryHand::kSteps);
  std::atomic<int> next = done_;
  const auto work = [&next, end](OmahaEveryHand* worker) {
    for (int step = next++; step < end; step = next++) worker->Add(step);
  };
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 1; i < workers_.size(); ++i) threads.emplace_back(work, workers_[i].get());
    work(workers_[0].get());
  }
  for (std::size_t i = 1; i < workers_.size(); ++i) {
    for (std::size_t k = 0; k < workers_[0]->sums().size(); ++k) {
      workers_[0]->sums()[k] += std::exchange(workers_[i]->sums()[k], 0);
    }
  }
  done_ = end;
}

bool OmahaStrength::Load(const std::string& path) {
  const std::span<std::int64_t> sums = workers_[0]->sums();
  std::vector<char> bytes(sizeof(Header) + sums.size_bytes());
  if (FileLength(path) != bytes.size() || !ReadFile(path, bytes.data(), bytes.size())) return false;
  Header header;
  std::memcpy(&header, bytes.data(), sizeof header);
  std::vector<std::int64_t> kept(sums.size());
  std::memcpy(kept.data(), bytes.data() + sizeof header, sums.size_bytes());
  if (std::memcmp(header.magic, kMagic, sizeof kMagic) != 0 || header.crc32 != Crc32(kept) ||
      header.hand_size != static_cast<std::uint32_t>(hand_size_) ||
      header.done > static_cast<std::uint32_t>(OmahaEveryHand::kSteps)) {
    return false;
  }
  std::ranges::copy(kept, sums.begin());
  done_ = static_cast<int>(header.done);
  return true;
}

bool OmahaStrength::Save(const std::string& path) {
  const std::span<const std::int64_t> sums = workers_[0]->sums();
  Header header = {{},
                   static_cast<std::uint32_t>(hand_size_),
                   static_cast<std::uint32_t>(done_),
                   Crc32(sums),
                   0};
  std::memcpy(header.magic, kMagic, sizeof kMagic);
  AtomicFile file(path);
  file.Write(&header, sizeof header);
  file.Write(sums.data(), sums.size_bytes());
  return file.Commit();
}

std::string OmahaStrength::Text() const {
  struct Line {
    HandClass hands;
    std::int64_t value;
  };
  std::vector<Line> lines;
  std::int64_t all = 0;
  for (const HandClass& hands : HandClasses(hand_size_)) {
    lines.push_back({hands, workers_[0]->Of(hands.hand)});
    all += hands.hands;
  }
  std::ranges::sort(lines, [](const Line& a, const Line& b) {
    if (a.value != b.value) return a.value > b.value;
    return std::ranges::lexicographical_compare(a.hands.hand, b.hands.hand, Before);
  });
  // All boards that a hand leaves, all hands that a board leaves, won.
  const double most = 2.0 * Choose(52 - hand_size_, 5) * Choose(47 - hand_size_, hand_size_);
  std::string text = kTitles;
  std::int64_t so_far = 0;
  for (const auto& [hands, value] : lines) {
    so_far += hands.hands;
    fmt::format_to(std::back_inserter(text), "{},{},{},{:.9f},{:.6f}\n", CardsText(hands.hand),
                   hands.hands, value, static_cast<double>(value) / most,
                   100.0 * static_cast<double>(so_far) / static_cast<double>(all));
  }
  return text;
}

std::string OmahaStrengthFault(const std::string& text) {
  if (!text.starts_with(kTitles)) return "its first line is not the titles";
  std::size_t number = 1;
  std::int64_t last = INT64_MAX;
  for (std::size_t at = sizeof kTitles - 1; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::string_view line(&text[at], end - at);
    at = end + 1;
    ++number;
    const std::size_t comma = std::min(line.find(','), line.size());
    const std::size_t value_at = std::min(line.find(',', comma + 1), line.size() - 1) + 1;
    std::int64_t value = -1;
    std::from_chars(line.data() + value_at, line.data() + line.size(), value);
    if (ParseCards(line.substr(0, comma)).cards.size() != 4 || value < 0 || value > last) {
      return fmt::format("line {} is not the next hand with its equity", number);
    }
    last = value;
  }
  return "";
}

}  // namespace pokermath::cli
