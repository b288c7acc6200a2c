#include "kernels/three_way_table.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>

#include "platform/require.h"
#include "platform/table_folder.h"

namespace pokermath {
namespace {

static_assert(std::endian::native == std::endian::little, "files are little-endian");

constexpr std::size_t kColumns = 6;
constexpr int kBoardBits = 21, kLeastBits = 19, kWidthBits = 5;
constexpr std::int32_t kLeast = -(1 << (kLeastBits - 1));
constexpr int kMostWidth = 19;
static_assert(kThreeWayBoards < 1 << kBoardBits);
static_assert(kMostChange <= -kLeast && 2 * kMostChange < 1 << kMostWidth);
static_assert(kMostWidth < 1 << kWidthBits);

constexpr std::size_t kTripleBits = kColumns * (kBoardBits + kLeastBits + kWidthBits);

struct Header {
  char magic[16] = {'p', 'o', 'k', 'e', 'r', 'm', 'a', 't', 'h', ' ', '3', '-', 'w', 'a', 'y'};
  std::uint32_t version = 1;
  std::uint32_t triples = kRankTriples;
  std::uint64_t unused = 0;
};
static_assert(sizeof(Header) == 32);

struct Trailer {
  std::uint64_t length;
  std::uint64_t checksum;
};
static_assert(sizeof(Trailer) == 16);

template <typename Struct>
std::string BytesOf(const Struct& value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

// --- bits ---

class BitWriter {
 public:
  explicit BitWriter(std::string& out) : out_(out) {}

  void Write(std::uint32_t value, int width) {
    bits_ |= std::uint64_t{value} << count_;
    for (count_ += width; count_ >= 8; count_ -= 8, bits_ >>= 8) {
      out_ += static_cast<char>(bits_ & 0xFF);
    }
  }
  void FillByte() {
    if (count_ > 0) Write(0, 8 - count_);
  }

 private:
  std::string& out_;
  std::uint64_t bits_ = 0;
  int count_ = 0;
};

// Reads eight bytes at a time: the trailer stands behind the last triple.
class BitReader {
 public:
  explicit BitReader(const char* bytes) : bytes_(bytes) {}

  std::int32_t Read(int width) {
    std::uint64_t word;
    std::memcpy(&word, bytes_ + bit_ / 8, sizeof word);
    word = word >> bit_ % 8 & ((std::uint64_t{1} << width) - 1);
    bit_ += static_cast<std::size_t>(width);
    return static_cast<std::int32_t>(word);
  }

 private:
  const char* bytes_;
  std::size_t bit_ = 0;
};

// --- a triple ---

struct Column {
  std::int32_t least;
  int width;
};

Column ColumnOf(const ThreeWayCounts& counts, std::size_t sharers) {
  std::int32_t least = counts.changes[0][sharers], largest = least;
  for (std::size_t i = 1; i < counts.sets.size(); ++i) {
    least = std::min(least, counts.changes[i][sharers]);
    largest = std::max(largest, counts.changes[i][sharers]);
  }
  return {least, static_cast<int>(std::bit_width(static_cast<std::uint32_t>(largest - least)))};
}

void AppendTriple(const RankTriple& triple, std::string& out) {
  const ThreeWayCounts counts = CountThreeWay(BestIsa(), triple);
  if (counts.sets.size() == 0) return;
  BitWriter writer(out);
  for (std::size_t i = 1; i <= kColumns; ++i) {
    writer.Write(static_cast<std::uint32_t>(counts.by_ranks[i]), kBoardBits);
  }
  for (std::size_t i = 1; i <= kColumns; ++i) {
    const Column column = ColumnOf(counts, i);
    writer.Write(static_cast<std::uint32_t>(column.least - kLeast), kLeastBits);
    writer.Write(static_cast<std::uint32_t>(column.width), kWidthBits);
  }
  for (std::size_t i = 1; i <= kColumns; ++i) {
    const Column column = ColumnOf(counts, i);
    for (std::size_t place = 0; place < counts.sets.size(); ++place) {
      writer.Write(static_cast<std::uint32_t>(counts.changes[place][i] - column.least),
                   column.width);
    }
  }
  writer.FillByte();
}

// What stands before the rows.
struct TripleHead {
  ThreeWayTimes by_ranks{};
  std::array<Column, kColumns> columns;

  explicit TripleHead(BitReader& reader) {
    by_ranks[7] = kThreeWayBoards;
    for (std::size_t i = 1; i <= kColumns; ++i) {
      by_ranks[i] = reader.Read(kBoardBits);
      by_ranks[7] -= by_ranks[i];
    }
    for (Column& column : columns) {
      column.least = reader.Read(kLeastBits) + kLeast;
      column.width = reader.Read(kWidthBits);
    }
  }
};

ThreeWayCounts ReadTriple(const RankTriple& triple, const char* bytes) {
  ThreeWayCounts counts{.sets = SuitSets::Of(triple), .by_ranks = {}, .changes = {}};
  if (counts.sets.size() == 0) return counts;
  BitReader reader(bytes);
  const TripleHead head(reader);
  counts.by_ranks = head.by_ranks;
  for (std::size_t i = 1; i <= kColumns; ++i) {
    const auto [least, width] = head.columns[i - 1];
    for (std::size_t place = 0; place < counts.sets.size(); ++place) {
      const std::int32_t change = reader.Read(width) + least;
      counts.changes[place][i] = change;
      counts.changes[place][7] -= change;
    }
  }
  return counts;
}

// --- the file ---

std::string_view PayloadOf(std::string_view bytes) {
  return bytes.substr(sizeof(Header), bytes.size() - sizeof(Header) - sizeof(Trailer));
}

// What is wrong with the frame of a file; empty if nothing is.
std::string FrameFault(std::string_view bytes) {
  if (bytes.size() < sizeof(Header) + sizeof(Trailer)) return "it is too short";
  if (bytes.size() > ThreeWayTable::kMostBytes) return "it is too long";
  if (!bytes.starts_with(ThreeWayHeader())) return "its header is not right";
  ThreeWayTrailer trailer;
  trailer.Add(PayloadOf(bytes));
  return bytes.ends_with(trailer.Bytes()) ? "" : "its length or checksum is not right";
}

// Where the triples of a payload begin, which something stands behind; nothing if one leads out of
// it.
std::vector<std::uint32_t> StartsOf(std::string_view payload) {
  std::vector<std::uint32_t> starts;
  starts.reserve(static_cast<std::size_t>(kRankTriples));
  std::size_t start = 0;
  for (int c = 0; c < kRankClasses; ++c) {
    for (int b = 0; b <= c; ++b) {
      for (int a = 0; a <= b; ++a) {
        starts.push_back(static_cast<std::uint32_t>(start));
        const SuitSets& sets = SuitSets::Of({a, b, c});
        if (sets.size() == 0) continue;
        if (payload.size() - start < kTripleBits / 8) return {};
        BitReader reader(payload.data() + start);
        std::size_t bits = kTripleBits;
        for (const Column& column : TripleHead(reader).columns) {
          if (column.width > kMostWidth) return {};
          bits += sets.size() * static_cast<std::size_t>(column.width);
        }
        start += (bits + 7) / 8;
        if (start > payload.size()) return {};
      }
    }
  }
  if (start != payload.size()) return {};
  return starts;
}

bool IsOfBoards(const ThreeWayTimes& times) {
  return std::ranges::all_of(
      times, [](std::int32_t boards) { return 0 <= boards && boards <= kThreeWayBoards; });
}
bool IsChange(const ThreeWayTimes& times) {
  return std::ranges::all_of(
      times, [](std::int32_t boards) { return -kMostChange <= boards && boards <= kMostChange; });
}

}  // namespace

std::string ThreeWayHeader() { return BytesOf(Header()); }

void AppendThreeWay(std::int64_t first, std::int64_t last, std::string& out) {
  POKERMATH_REQUIRE(0 <= first && first <= last && last <= kThreeWayUnits);
  for (std::int64_t number = first; number < last; ++number) {
    AppendTriple(RankTripleOf(number), out);
  }
}

// Each of four sums takes every fourth word. A step has an inverse, so that no single word can
// change unnoticed.
void ThreeWayTrailer::AddWords(const char* words) {
  for (std::size_t i = 0; i < kWords; ++i) {
    std::uint64_t word;
    std::memcpy(&word, words + i * sizeof word, sizeof word);
    sums_[i] = std::rotl((sums_[i] ^ word) * 0x9E3779B97F4A7C15, 29);
  }
}

void ThreeWayTrailer::Add(std::string_view piece) {
  const std::size_t begun = length_ % kBytes;
  length_ += piece.size();
  if (begun > 0) {
    const std::size_t more = std::min(piece.size(), kBytes - begun);
    std::memcpy(rest_.data() + begun, piece.data(), more);
    piece.remove_prefix(more);
    if (begun + more < kBytes) return;
    AddWords(rest_.data());
  }
  for (; piece.size() >= kBytes; piece.remove_prefix(kBytes)) AddWords(piece.data());
  std::ranges::copy(piece, rest_.begin());
}

std::string ThreeWayTrailer::Bytes() const {
  ThreeWayTrailer whole = *this;
  std::fill(whole.rest_.begin() + length_ % kBytes, whole.rest_.end(), '\0');
  whole.AddWords(whole.rest_.data());
  std::uint64_t checksum = length_;
  for (const std::uint64_t sum : whole.sums_) {
    checksum = std::rotl((checksum ^ sum) * 0x9E3779B97F4A7C15, 29);
  }
  return BytesOf(Trailer{length_, checksum});
}

std::string ThreeWayFault(std::string_view bytes) {
  std::string fault = FrameFault(bytes);
  if (!fault.empty()) return fault;
  const std::string_view payload = PayloadOf(bytes);
  const std::vector<std::uint32_t> starts = StartsOf(payload);
  if (starts.empty()) return "its triples do not fill it";
  for (std::size_t number = 0; number < starts.size(); ++number) {
    const RankTriple triple = RankTripleOf(static_cast<std::int64_t>(number));
    const ThreeWayCounts counts = ReadTriple(triple, payload.data() + starts[number]);
    const auto changes = std::span(counts.changes).first(counts.sets.size());
    if (!IsOfBoards(counts.by_ranks) || !std::ranges::all_of(changes, IsChange)) {
      return "triple " + std::to_string(number) + " has more boards than there are";
    }
  }
  return "";
}

const ThreeWayTable* ThreeWayTable::Get() {
  static const std::optional<ThreeWayTable> table = [] {
    std::optional<ThreeWayTable> read;
    std::optional<LargeTable<std::uint8_t>> bytes = ReadTable(kThreeWayFile, kMostBytes);
    if (bytes) read.emplace(*std::move(bytes));
    return read && read->ok() ? std::move(read) : std::nullopt;
  }();
  return table ? &*table : nullptr;
}

ThreeWayTable::ThreeWayTable(LargeTable<std::uint8_t> bytes) : bytes_(std::move(bytes)) {
  const std::string_view all(reinterpret_cast<const char*>(bytes_.data()), bytes_.size());
  if (FrameFault(all).empty()) starts_ = StartsOf(PayloadOf(all));
}

ThreeWayCounts ThreeWayTable::Of(const RankTriple& triple) const {
  const std::uint8_t* payload = bytes_.data() + sizeof(Header);
  const std::uint32_t start = starts_[static_cast<std::size_t>(NumberOf(triple))];
  return ReadTriple(triple, reinterpret_cast<const char*>(payload + start));
}

}  // namespace pokermath
