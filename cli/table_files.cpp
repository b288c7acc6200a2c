#include "cli/table_files.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <zlib.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

#include "cli/bulk_run.h"
#include "cli/errors.h"
#include "cli/progress.h"
#include "cli/stop_signals.h"
#include "contracts/hand_ranks_builder.h"
#include "contracts/holdem_tables.h"
#include "contracts/state_tables.h"
#include "jobs/job_folder.h"
#include "jobs/omaha_strength.h"
#include "jobs/three_way_job.h"
#include "kernels/known_matchups.h"
#include "kernels/matchups.h"
#include "kernels/three_way_table.h"
#include "pages/number_text.h"
#include "platform/files.h"
#include "pokermath/evaluators.h"
#include "pokermath/five_card_map.h"

namespace pokermath::cli {
namespace {

static_assert(std::endian::native == std::endian::little, "the files are little-endian");
static_assert(sizeof(EquityRecord) == 12);

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;
constexpr auto kPatience = std::chrono::milliseconds(300);

std::uint32_t Crc32(std::uint32_t crc, std::span<const std::byte> bytes) {
  return static_cast<std::uint32_t>(
      crc32_z(crc, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

// Reads a whole file for its checksum; nothing, with errno set, if it cannot be read.
std::optional<std::uint32_t> FileCrc32(const std::string& path) {
  const InputFile file(path);
  if (!file.ok()) {
    errno = file.error();
    return std::nullopt;
  }
  std::vector<std::byte> piece(kPieceBytes);
  std::uint32_t crc = 0;
  for (std::int64_t position = 0;;) {
    bool good;
    const std::size_t got = file.Read(position, piece.data(), piece.size(), good);
    if (!good) return std::nullopt;
    if (got == 0) return crc;
    crc = Crc32(crc, std::span(piece).first(got));
    position += static_cast<std::int64_t>(got);
  }
}

std::string HandRanksFault(const std::string& path) {
  LargeTable<std::uint32_t> entries;
  return LoadHandRanks(path, entries) ? "" : "an entry is neither a row nor a hand value";
}

// Walks through all matchups in key order beside the records. A fault is named with its record.
std::string EquityFault(const std::string& path, Deck deck, std::size_t matchups, int boards) {
  std::vector<EquityRecord> records(matchups);
  if (!ReadFile(path, records.data(), matchups * sizeof(EquityRecord))) {
    return "it cannot be read to its end";
  }
  std::vector<std::int32_t> keys;
  for (int low = 0; low < 52; ++low) {
    for (int high = low + 1; high < 52; ++high) {
      if (std::min(low % 13, high % 13) >= LowestRank(deck)) keys.push_back(low * 64 + high);
    }
  }
  const auto share_card = [](std::int32_t a, std::int32_t b) {
    return a / 64 == b / 64 || a / 64 == b % 64 || a % 64 == b / 64 || a % 64 == b % 64;
  };
  std::size_t number = 0;
  for (const std::int32_t hand1 : keys) {
    for (const std::int32_t hand2 : keys) {
      if (share_card(hand1, hand2)) continue;
      const EquityRecord& record = records[number++];
      if (record.hand1 != hand1 || record.hand2 != hand2) {
        return fmt::format("record {} is for hands {} and {}, not {} and {}", number, record.hand1,
                           record.hand2, hand1, hand2);
      }
      if (record.value < 1 || record.value > 2 * boards) {
        return fmt::format("record {} has the value {}", number, record.value);
      }
    }
  }
  return "";
}

std::string RiverEquityFault(const std::string& path) {
  return EquityFault(path, Deck::kFull, kMatchups, BoardsOf(Street::kRiver));
}

std::string TurnEquityFault(const std::string& path) {
  return EquityFault(path, Deck::kFull, kMatchups, BoardsOf(Street::kTurn));
}

std::string ShortDeckEquityFault(const std::string& path) {
  return EquityFault(path, Deck::kShort, kShortDeckMatchups, kShortDeckBoards);
}

template <Deck deck>
std::string MatchupsFault(const std::string& path) {
  std::vector<std::uint8_t> bytes(FileLength(path).value_or(0));
  if (!ReadFile(path, bytes.data(), bytes.size())) return "it cannot be read to its end";
  const auto number_at = [&](std::size_t i) {
    return bytes[i] | bytes[i + 1] << 8 | bytes[i + 2] << 16;
  };
  for (std::size_t i = 0; i + 6 <= bytes.size(); i += 6) {
    if (number_at(i) + number_at(i + 3) > Choose(CardsOf(deck) - 4, 5)) {
      return fmt::format("record {} has more wins and ties than boards", i / 6 + 1);
    }
  }
  return "";
}

struct CombinationRecord {
  std::int32_t key;
  std::int32_t value;
};

std::string CombinationsFault(const std::string& path) {
  std::vector<CombinationRecord> records(FiveCardMap::kHands);
  if (!ReadFile(path, records.data(), records.size() * sizeof records[0])) {
    return "it cannot be read to its end";
  }
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (FiveCardMap::PlaceOf(records[i].key) != i) {
      return fmt::format("record {} is for the key {}", i + 1, records[i].key);
    }
    if (records[i].value < 1 || records[i].value > 7462) {
      return fmt::format("record {} has the value {}", i + 1, records[i].value);
    }
  }
  return "";
}

template <const StateFile& file>
std::string StatesFault(const std::string& path) {
  bool missing = false;
  const std::unique_ptr<std::uint32_t[]> entries(LoadStates(file, path, missing));
  return entries ? "" : "its header is not right or an entry leads out of the table";
}

using Parts = std::initializer_list<std::span<const std::byte>>;

bool IsRight(const TableFile& table, Parts parts) {
  std::uint64_t length = 0;
  std::uint32_t crc = 0;
  for (const auto& part : parts) {
    length += part.size();
    crc = Crc32(crc, part);
  }
  return length == table.bytes && crc == table.crc32;
}

// Writes what has been worked out, unless it is not what it must be: nothing that does not verify
// may take the place of a file.
bool WriteTable(const TableFile& table, const std::string& path, Parts parts) {
  if (!IsRight(table, parts)) {
    throw Failure(fmt::format("{} came out wrong and was not written", table.name));
  }
  const auto check = [&path](bool good) {
    if (!good) throw SystemFailure("cannot write " + Quoted(path), errno);
  };
  AtomicFile file(path);
  check(file.ok());
  Progress progress(std::string("writing ") + table.file, static_cast<std::int64_t>(table.bytes),
                    "bytes", kPatience);
  std::int64_t written = 0;
  for (const auto& part : parts) {
    for (std::size_t done = 0; done < part.size();) {
      if (StopRequested()) return false;
      const auto piece = part.subspan(done, std::min(kPieceBytes, part.size() - done));
      file.Write(piece.data(), piece.size());
      check(file.ok());
      done += piece.size();
      written += static_cast<std::int64_t>(piece.size());
      progress.Update(written);
    }
  }
  check(file.Commit());
  return true;
}

bool BuildHandRanksFile(const TableFile& table, const std::string& path) {
  const HandRanks ranks = BuildHandRanks();
  return WriteTable(table, path, {std::as_bytes(std::span(ranks.entries))});
}

template <Deck deck, Street street>
bool BuildEquity(const TableFile& table, const std::string& path) {
  std::vector<EquityRecord> records;
  {
    Progress progress(std::string("building ") + table.name,
                      static_cast<std::int64_t>(table.bytes / sizeof(EquityRecord)), "matchups",
                      kPatience);
    records = AllEquityRecords(deck, street, [&progress](std::int64_t done) {
      progress.Update(done);
      return !StopRequested();
    });
  }
  return !StopRequested() && WriteTable(table, path, {std::as_bytes(std::span(records))});
}

template <const StateFile& file>
bool BuildStatesFile(const TableFile& table, const std::string& path) {
  StateEntries entries;
  {
    Progress progress(std::string("building ") + table.name,
                      static_cast<std::int64_t>(table.bytes) / (4 * file.shape.width), "rows",
                      kPatience);
    entries = BuildStates(file, [&progress](std::int64_t done) {
      progress.Update(done);
      return !StopRequested();
    });
  }
  if (StopRequested()) return false;
  const auto header = StateHeader(file, entries.size());
  return WriteTable(table, path, {header, std::as_bytes(std::span(entries))});
}

template <Deck deck>
bool BuildMatchups(const TableFile& table, const std::string& path) {
  const std::vector<std::uint8_t> matchups = CountKnownMatchups(deck);
  return WriteTable(table, path, {std::as_bytes(std::span(matchups))});
}

bool BuildCombinations(const TableFile& table, const std::string& path) {
  std::vector<CombinationRecord> records;
  records.reserve(FiveCardMap::kHands);
  FiveCardMap::ForEachHand([&records](const int(&c)[5]) {
    records.push_back(
        {FiveCardMap::KeyOf(c[0], c[1], c[2], c[3], c[4]), 7463 - EvaluateCards<5>(c)});
  });
  return WriteTable(table, path, {std::as_bytes(std::span(records))});
}

// A job, whose folder stays until the table is written: a build that was stopped is gone on with.
bool BuildByJob(const TableFile& table, const std::string& path, const Job& job) {
  const std::string folder = path + ".unfinished";
  BeginJob(job, "", folder);
  switch (DoShardAttended(job, folder, {}, AllThreads())) {
    case ShardEnd::kStopped:
      throw Failure(fmt::format("stopped {}; the next build goes on from there", table.name));
    case ShardEnd::kBusy:
      throw Failure(fmt::format("another process builds {}", table.name));
    default:
      break;
  }
  const auto result = ReadWholeFile(MergeAttended(job, folder).result);
  if (!result) throw SystemFailure("cannot read what is in " + Quoted(folder), errno);
  const bool is_right = IsRight(table, {std::as_bytes(std::span(*result))});
  const bool written = is_right && WriteTable(table, path, {std::as_bytes(std::span(*result))});
  // What leads to a wrong table would do so again.
  std::error_code ignored;
  if (written || !is_right) std::filesystem::remove_all(folder, ignored);
  if (!is_right) throw Failure(fmt::format("{} came out wrong and was not written", table.name));
  return written;
}

template <int hand_size>
bool BuildOmahaStrength(const TableFile& table, const std::string& path) {
  return BuildByJob(table, path, OmahaStrengthJob(hand_size));
}

// The whole file; nothing, with errno set, if it cannot be read.
std::optional<std::string> FileText(const std::string& path) {
  std::string text(FileLength(path).value_or(0), '\0');
  return ReadFile(path, text.data(), text.size()) ? std::optional(text) : std::nullopt;
}

bool BuildThreeWay(const TableFile& table, const std::string& path) {
  return BuildByJob(table, path, ThreeWayJob());
}

std::string ThreeWayFileFault(const std::string& path) {
  const auto text = FileText(path);
  return text ? ThreeWayFault(*text) : "it cannot be read to its end";
}

template <int hand_size>
std::string OmahaStrengthFileFault(const std::string& path) {
  const auto text = FileText(path);
  return text ? OmahaStrengthFault(*text, hand_size) : "it cannot be read to its end";
}

// Takes the order from the table of equities beside it, which is built if need be.
template <int hand_size>
bool BuildOmahaOrder(const TableFile& table, const std::string& path) {
  const TableFile& strength = *std::ranges::find_if(AllTables(), [](const TableFile& other) {
    return other.fault == OmahaStrengthFileFault<hand_size>;
  });
  const std::string source = std::filesystem::path(path).replace_filename(strength.file).string();
  if (!CheckTable(strength, source).ok() && !strength.build(strength, source)) return false;
  const auto text = FileText(source);
  if (!text) throw SystemFailure("cannot read " + Quoted(source), errno);
  const std::vector<std::uint8_t> order = OmahaOrderOf(*text, hand_size);
  return WriteTable(table, path, {std::as_bytes(std::span(order))});
}

template <int hand_size>
std::string OmahaOrderFileFault(const std::string& path) {
  std::vector<std::uint8_t> packed(FileLength(path).value_or(0));
  if (!ReadFile(path, packed.data(), packed.size())) return "it cannot be read to its end";
  return OmahaOrderFault(packed, hand_size);
}

constexpr TableFile kTables[] = {
    {"hand-ranks", "VarnholtHR.dat", kHandRanksBytes, 0x7808da57, BuildHandRanksFile,
     HandRanksFault},
    {"river-equity", "holdem-river-equity.bin", kMatchups * sizeof(EquityRecord), 0x85b22b4d,
     BuildEquity<Deck::kFull, Street::kRiver>, RiverEquityFault},
    {"turn-equity", "holdem-turn-equity.bin", kMatchups * sizeof(EquityRecord), 0xebb462ff,
     BuildEquity<Deck::kFull, Street::kTurn>, TurnEquityFault},
    {"six-plus-5", "six-plus-5.bin", 248720, 0xc4c694ba, BuildStatesFile<kSixPlus5File>,
     StatesFault<kSixPlus5File>},
    {"six-plus-7", "six-plus-7.bin", 10538096, 0x37c18cb2, BuildStatesFile<kSixPlus7File>,
     StatesFault<kSixPlus7File>},
    {"six-plus-equity", "six-plus-equity.bin", kShortDeckMatchups * sizeof(EquityRecord),
     0xfcc57c8b, BuildEquity<Deck::kShort, Street::kRiver>, ShortDeckEquityFault},
    {"matchups", "holdem.matchups", 314028, 0xd33dc624, BuildMatchups<Deck::kFull>,
     MatchupsFault<Deck::kFull>},
    {"six-plus-matchups", "shortdeck.matchups", 71766, 0xa5c65a3b, BuildMatchups<Deck::kShort>,
     MatchupsFault<Deck::kShort>},
    {"six-plus-straights-matchups", "shortdeck-straights.matchups", 71766, 0x2adb215d,
     BuildMatchups<Deck::kShortStraights>, MatchupsFault<Deck::kShortStraights>},
    {"combinations", "VarnholtPC.dat", FiveCardMap::kHands * sizeof(CombinationRecord), 0x7a86dfc6,
     BuildCombinations, CombinationsFault},
    {"omaha-strength", "omaha-strength.csv", 769549, 0xbf7be6f9, BuildOmahaStrength<4>,
     OmahaStrengthFileFault<4>},
    {"omaha5-strength", "omaha5-strength.csv", 6704352, 0xcce8369b, BuildOmahaStrength<5>,
     OmahaStrengthFileFault<5>},
    {"omaha-order", "omaha4.order", 30810, 0xed04f2ba, BuildOmahaOrder<4>, OmahaOrderFileFault<4>},
    {"omaha5-order", "omaha5.order", 302533, 0x1cd6537c, BuildOmahaOrder<5>,
     OmahaOrderFileFault<5>},
    {"three-way", kThreeWayFile, 43453907, 0xce124ab8, BuildThreeWay, ThreeWayFileFault},
    {"omaha7", "omaha7.bin", 311201108, 0xd197bccf, BuildStatesFile<kOmaha7File>,
     StatesFault<kOmaha7File>}};

}  // namespace

std::span<const TableFile> AllTables() { return kTables; }

TableState CheckTable(const TableFile& table, const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return {"missing", {}, {}};
    return {"unreadable: " + SystemReason(errno), {}, {}};
  }
  if (!S_ISREG(status.st_mode)) return {"damaged: it is not a regular file", {}, {}};
  TableState result;
  result.bytes = static_cast<std::uint64_t>(status.st_size);
  result.crc32 = FileCrc32(path);
  if (!result.crc32) {
    result.state = "unreadable: " + SystemReason(errno);
  } else if (*result.bytes != table.bytes) {
    result.state = fmt::format("damaged: its length is not {} bytes",
                               Grouped(static_cast<std::int64_t>(table.bytes)));
  } else if (*result.crc32 != table.crc32) {
    result.state = fmt::format("damaged: its checksum is not 0x{:08x}", table.crc32);
  } else {
    result.state = "ok";
  }
  return result;
}

TableState VerifyTable(const TableFile& table, const std::string& path) {
  TableState result = CheckTable(table, path);
  if (!result.crc32 || result.bytes != table.bytes) return result;
  const std::string fault = table.fault(path);
  if (!fault.empty()) result.state = "damaged: " + fault;
  return result;
}

}  // namespace pokermath::cli
