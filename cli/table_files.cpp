#include "cli/table_files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <vector>

#include "cli/errors.h"
#include "cli/number_text.h"
#include "cli/progress.h"
#include "cli/stop_signals.h"
#include "equity/holdem_tables.h"
#include "equity/matchups.h"
#include "eval/hand_ranks_builder.h"
#include "platform/files.h"

namespace pokermath::cli {
namespace {

static_assert(std::endian::native == std::endian::little, "the files are little-endian");
static_assert(sizeof(EquityRecord) == 12);

constexpr TableFile kTables[3] = {
    {"hand-ranks", "VarnholtHR.dat", kHandRanksBytes, 0x7808da57},
    {"river-equity", "holdem-river-equity.bin", kMatchups * sizeof(EquityRecord), 0x85b22b4d},
    {"turn-equity", "holdem-turn-equity.bin", kMatchups * sizeof(EquityRecord), 0xebb462ff}};
constexpr const TableFile* kHandRanksTable = &kTables[0];
constexpr const TableFile* kTurnTable = &kTables[2];

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;
constexpr auto kPatience = std::chrono::milliseconds(300);

std::uint32_t Crc32(std::uint32_t crc, std::span<const std::byte> bytes) {
  return static_cast<std::uint32_t>(
      crc32_z(crc, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

// Reads a whole file for its checksum; nothing, with errno set, if it cannot be read.
std::optional<std::uint32_t> FileCrc32(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return std::nullopt;
  std::vector<std::byte> piece(kPieceBytes);
  std::uint32_t crc = 0;
  for (;;) {
    const ssize_t got = read(fd, piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      const int error = errno;
      close(fd);
      errno = error;
      return got == 0 ? std::optional(crc) : std::nullopt;
    }
    crc = Crc32(crc, std::span(piece).first(static_cast<std::size_t>(got)));
  }
}

std::string HandRanksFault(const std::string& path) {
  LargeTable<std::uint32_t> entries;
  return LoadHandRanks(path, entries) ? "" : "an entry is neither a row nor a hand value";
}

// Walks through all matchups in key order beside the records. A fault is named with its record.
std::string EquityFault(const std::string& path, std::int32_t boards) {
  std::vector<EquityRecord> records(kMatchups);
  if (!ReadFile(path, records.data(), kMatchups * sizeof(EquityRecord))) {
    return "it cannot be read to its end";
  }
  std::vector<std::int32_t> keys;
  for (int low = 0; low < 52; ++low) {
    for (int high = low + 1; high < 52; ++high) keys.push_back(low * 64 + high);
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

std::string Fault(const TableFile& table, const std::string& path) {
  if (&table == kHandRanksTable) return HandRanksFault(path);
  return EquityFault(path, BoardsOf(&table == kTurnTable ? Street::kTurn : Street::kRiver));
}

// Writes what has been worked out, unless it is not what it must be: nothing that does not verify
// may take the place of a file.
bool WriteTable(const TableFile& table, const std::string& path, std::span<const std::byte> bytes) {
  if (bytes.size() != table.bytes || Crc32(0, bytes) != table.crc32) {
    throw Failure(fmt::format("{} came out wrong and was not written", table.name));
  }
  const auto check = [&path](bool good) {
    if (!good) throw SystemFailure("cannot write " + Quoted(path), errno);
  };
  AtomicFile file(path);
  check(file.ok());
  Progress progress(std::string("writing ") + table.file, static_cast<std::int64_t>(bytes.size()),
                    "bytes", kPatience);
  for (std::size_t done = 0; done < bytes.size();) {
    if (StopRequested()) return false;
    const auto piece = bytes.subspan(done, std::min(kPieceBytes, bytes.size() - done));
    file.Write(piece.data(), piece.size());
    check(file.ok());
    done += piece.size();
    progress.Update(static_cast<std::int64_t>(done));
  }
  check(file.Commit());
  return true;
}

bool BuildEquity(const TableFile& table, const std::string& path, Street street) {
  std::vector<EquityRecord> records;
  {
    Progress progress(std::string("building ") + table.name, kMatchups, "matchups", kPatience);
    records = AllEquityRecords(street, [&progress](std::int64_t done) {
      progress.Update(done);
      return !StopRequested();
    });
  }
  return !StopRequested() && WriteTable(table, path, std::as_bytes(std::span(records)));
}

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
  const std::string fault = Fault(table, path);
  if (!fault.empty()) result.state = "damaged: " + fault;
  return result;
}

bool BuildTable(const TableFile& table, const std::string& path) {
  if (&table != kHandRanksTable) {
    return BuildEquity(table, path, &table == kTurnTable ? Street::kTurn : Street::kRiver);
  }
  const HandRanks ranks = BuildHandRanks();
  return WriteTable(table, path, std::as_bytes(std::span(ranks.entries)));
}

}  // namespace pokermath::cli
