#include "cli/omaha_strength.h"

#include <fmt/format.h>
#include <zlib.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstring>
#include <functional>
#include <thread>
#include <utility>

#include "cli/output.h"
#include "platform/files.h"
#include "pokermath/cards.h"
#include "ranges/omaha/classes.h"
#include "ranges/omaha/order.h"

namespace pokermath::cli {
namespace {

constexpr char kTitles[] = "hand,hands,value,equity,percentile\n";
constexpr int kStepsOfAPiece = 16;

// What comes before the sums in the file of an unfinished count.
struct Header {
  char magic[16];
  std::uint32_t hand_size, done;
  std::uint32_t crc32;  // of the header, where this is 0, and the sums
  std::uint32_t unused;
};
constexpr char kMagic[16] = "Omaha strength2";

std::uint32_t Crc32(Header header, std::span<const std::int64_t> sums) {
  header.crc32 = 0;
  const uLong crc = crc32_z(0, reinterpret_cast<const Bytef*>(&header), sizeof header);
  return static_cast<std::uint32_t>(
      crc32_z(crc, reinterpret_cast<const Bytef*>(sums.data()), sums.size_bytes()));
}

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
  if (std::memcmp(header.magic, kMagic, sizeof kMagic) != 0 ||
      header.crc32 != Crc32(header, kept) ||
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
  Header header = {
      {}, static_cast<std::uint32_t>(hand_size_), static_cast<std::uint32_t>(done_), 0, 0};
  std::memcpy(header.magic, kMagic, sizeof kMagic);
  header.crc32 = Crc32(header, sums);
  AtomicFile file(path);
  file.Write(&header, sizeof header);
  file.Write(sums.data(), sums.size_bytes());
  return file.Commit();
}

std::string OmahaStrength::Text() const {
  struct Line {
    std::vector<int> hand;
    int hands;
    std::int64_t value;
  };
  std::vector<Line> lines;
  for (const OmahaClass& hands : OmahaClasses(hand_size_)) {
    const std::vector<int> hand = CardsOf(hands);
    lines.push_back({hand, HandsOf(hands), workers_[0]->Of(hand)});
  }
  std::ranges::stable_sort(lines, std::greater(), &Line::value);
  // All boards that a hand leaves, all hands that a board leaves, won.
  const double most = 2.0 * Choose(52 - hand_size_, 5) * Choose(47 - hand_size_, hand_size_);
  const int all = Choose(52, hand_size_);
  std::string text = kTitles;
  int so_far = 0;
  for (const auto& [hand, hands, value] : lines) {
    so_far += hands;
    fmt::format_to(std::back_inserter(text), "{},{},{},{:.9f},{:.6f}\n", CardsText(hand), hands,
                   value, static_cast<double>(value) / most, 100.0 * so_far / all);
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

}  // namespace pokermath::cli
