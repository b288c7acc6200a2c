#include "jobs/shard_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <map>
#include <thread>
#include <utility>

#include "jobs/checksum.h"
#include "pages/errors.h"
#include "platform/files.h"
#include "platform/require.h"

namespace pokermath {
namespace {

constexpr const char* kFinished = ".shard";
constexpr const char* kUnfinished = ".unfinished";
constexpr const char* kPartial = ".partial";

constexpr std::size_t kBlockBytes = std::size_t{1} << 20;  // about
// A machine that stops may lose what was not flushed; that much is looked at again.
constexpr std::int64_t kFlushBytes = std::int64_t{1} << 26;

// Numbers in files are little-endian, as are all machines that this is compiled for.

struct Header {
  char magic[16];
  std::uint64_t job;
  std::int64_t first, last;
  std::int32_t number, count;
  std::int64_t finished;
  std::int64_t answers, failed, bytes;
  double seconds;
  std::uint64_t blocks_check;
  std::uint64_t check;  // of all before
};
constexpr char kMagic[16] = "pokermath shard";

struct BlockHeader {
  std::int64_t first, last;
  std::int64_t answers, failed, bytes;
  double seconds;  // of the shard until it was written
  std::uint64_t bytes_check;
  std::uint64_t check;  // of all before
};

struct PartialHeader {
  std::uint64_t job;
  std::int64_t unit, end;  // it is of these units
  double seconds;
  std::int64_t bytes;
  std::uint64_t bytes_check;
  std::uint64_t check;  // of all before
};

// The checksum of a header without its last member, which is the place for it.
template <typename T>
std::uint64_t CheckOf(const T& header) {
  return Checksum({reinterpret_cast<const char*>(&header), sizeof header - sizeof header.check});
}

std::uint64_t HeaderCheck(const Header& header) {
  return std::memcmp(header.magic, kMagic, sizeof kMagic) == 0 ? CheckOf(header) : ~header.check;
}

std::optional<Header> ReadHeader(const InputFile& file) {
  Header header;
  if (!file.ReadAll(0, &header, sizeof header)) return std::nullopt;
  if (header.check != HeaderCheck(header) || header.count < 1 || header.number < 1 ||
      header.number > header.count) {
    return std::nullopt;
  }
  return header;
}

// Of a file that is finished.
ShardState StateOf(const Header& header) {
  return {.shard = {header.number, header.count},
          .job = header.job,
          .units = {header.first, header.last},
          .finished = true,
          .next = header.last,
          .answers = header.answers,
          .failed = header.failed,
          .bytes = header.bytes,
          .seconds = header.seconds};
}

// Nothing if it is not of the next unit.
std::optional<PartialHeader> ReadPartialHeader(const InputFile& file, const ShardState& state) {
  PartialHeader header;
  if (!file.ok() || !file.ReadAll(0, &header, sizeof header)) return std::nullopt;
  if (header.check != CheckOf(header) || header.job != state.job || header.unit != state.next ||
      header.end < header.unit || header.end > state.units.last ||
      header.bytes != file.size() - static_cast<std::int64_t>(sizeof header)) {
    return std::nullopt;
  }
  return header;
}

// Reads the blocks of a file one behind another.
class BlockReader {
 public:
  BlockReader(const InputFile& file, std::int64_t size, const UnitRange& units)
      : file_(file), size_(size), units_(units), next_(units.first) {}

  // False at the end, or where no block follows that could be right.
  bool Next() {
    const std::int64_t left = size_ - end_ - static_cast<std::int64_t>(sizeof header_);
    BlockHeader header;
    if (left < 0 || !file_.ReadAll(end_, &header, sizeof header)) return false;
    if (header.check != CheckOf(header) || header.first != next_ || header.last <= header.first ||
        header.last > units_.last || header.bytes < 0 || header.bytes > left) {
      return false;
    }
    header_ = header;
    start_ = end_ + static_cast<std::int64_t>(sizeof header);
    end_ = start_ + header.bytes;
    next_ = header.last;
    return true;
  }

  const BlockHeader& header() const { return header_; }
  std::int64_t end() const { return end_; }
  std::int64_t next_unit() const { return next_; }

  // The bytes of the block; false if they are not those that were written.
  bool Read(std::string& bytes) const {
    bytes.resize(static_cast<std::size_t>(header_.bytes));
    return file_.ReadAll(start_, bytes.data(), bytes.size()) &&
           Checksum(bytes) == header_.bytes_check;
  }

 private:
  const InputFile& file_;
  std::int64_t size_;
  UnitRange units_;
  BlockHeader header_{};
  std::int64_t start_ = 0;
  std::int64_t end_ = sizeof(Header);
  std::int64_t next_;
};

// Without a lock two processes would write into each other's blocks. False if another one has it,
// and not only for the moment in which IsInWork looks.
bool Lock(int fd, const std::string& path) {
  for (int tries = 0; flock(fd, LOCK_EX | LOCK_NB) != 0;) {
    if (errno != EWOULDBLOCK && errno != EINTR) {
      throw SystemFailure("cannot lock " + Quoted(path), errno);
    }
    if (++tries == 20) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

// Whether a path leads to an open file still.
bool IsAt(const std::string& path, int fd) {
  struct stat there {};
  struct stat here {};
  return stat(path.c_str(), &there) == 0 && fstat(fd, &here) == 0 && there.st_ino == here.st_ino &&
         there.st_dev == here.st_dev;
}

}  // namespace

UnitRange Shard::UnitsOf(std::int64_t units) const {
  // Not by multiplying what may be large with what may be.
  const auto start = [&](std::int64_t i) { return units / count * i + units % count * i / count; };
  return {start(number - 1), start(number)};
}

std::string Shard::Name() const { return fmt::format("{}-of-{}", number, count); }

// --- in work ---

std::unique_ptr<ShardFile> ShardFile::Open(const std::string& folder, const ShardState& empty) {
  const std::string path = folder + "/" + empty.shard.Name();
  const std::string file = path + kUnfinished;
  const int fd = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
  if (fd < 0) throw SystemFailure("cannot write " + Quoted(file), errno);
  std::unique_ptr<ShardFile> shard(new ShardFile(path, fd, empty));
  if (!Lock(fd, file) || !IsAt(file, fd)) return nullptr;
  struct stat status {};
  if (stat((path + kFinished).c_str(), &status) == 0) {
    // It was finished just now, before this one was made.
    if (fstat(fd, &status) == 0 && status.st_size == 0) unlink(file.c_str());
    return nullptr;
  }
  if (fstat(fd, &status) != 0 || !shard->ReadBlocks(status.st_size)) {
    // Nothing yet, or nothing that could be gone on with.
    if (ftruncate(fd, 0) != 0) throw SystemFailure("cannot write " + Quoted(file), errno);
    shard->WriteHeader();
    shard->end_ = sizeof(Header);
  }
  return shard;
}

ShardFile::ShardFile(std::string path, int fd, const ShardState& state)
    : path_(std::move(path)), fd_(fd), state_(state) {
  state_.next = state_.units.first;
  gathered_.units = {state_.next, state_.next};
}

ShardFile::~ShardFile() { close(fd_); }

bool ShardFile::ReadBlocks(std::int64_t size) {
  const std::string path = path_ + kUnfinished;
  const InputFile file(path);
  const std::optional<Header> header = ReadHeader(file);
  if (!header) return false;
  if (header->job != state_.job || UnitRange{header->first, header->last} != state_.units) {
    throw Failure(fmt::format("{} is of another job", Quoted(path)));
  }
  BlockReader reader(file, size, state_.units);
  std::string bytes;
  for (end_ = reader.end(); reader.Next(); end_ = reader.end()) {
    if (reader.end() > size - 2 * kFlushBytes && !reader.Read(bytes)) break;
    const BlockHeader& block = reader.header();
    state_.next = block.last;
    state_.answers += block.answers;
    state_.failed += block.failed;
    state_.bytes += block.bytes;
    state_.seconds = seconds_before_ = block.seconds;
    blocks_check_ = Chained(blocks_check_, block.check);
  }
  synced_ = end_;
  gathered_.units = {state_.next, state_.next};
  if (ftruncate(fd_, end_) != 0) throw SystemFailure("cannot write " + Quoted(path), errno);
  return true;
}

void ShardFile::Write(const void* data, std::size_t bytes, std::int64_t position) {
  const char* next = static_cast<const char*>(data);
  while (bytes > 0) {
    const ssize_t written = pwrite(fd_, next, bytes, position);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) throw SystemFailure("cannot write " + Quoted(path_ + kUnfinished), errno);
    next += written;
    position += written;
    bytes -= static_cast<std::size_t>(written);
  }
}

void ShardFile::WriteHeader() {
  Header header{{},
                state_.job,
                state_.units.first,
                state_.units.last,
                state_.shard.number,
                state_.shard.count,
                state_.finished ? 1 : 0,
                state_.answers,
                state_.failed,
                state_.bytes,
                state_.seconds,
                blocks_check_,
                0};
  std::memcpy(header.magic, kMagic, sizeof kMagic);
  header.check = HeaderCheck(header);
  Write(&header, sizeof header, 0);
}

void ShardFile::WriteBlock() {
  if (gathered_.units.size() == 0) return;
  BlockHeader block{gathered_.units.first,
                    gathered_.units.last,
                    gathered_.answers,
                    gathered_.failed,
                    static_cast<std::int64_t>(gathered_.bytes.size()),
                    state_.seconds,
                    Checksum(gathered_.bytes),
                    0};
  block.check = CheckOf(block);
  Write(&block, sizeof block, end_);
  Write(gathered_.bytes.data(), gathered_.bytes.size(),
        end_ + static_cast<std::int64_t>(sizeof block));
  end_ += static_cast<std::int64_t>(sizeof block) + block.bytes;
  blocks_check_ = Chained(blocks_check_, block.check);
  gathered_.units.first = gathered_.units.last;
  gathered_.answers = gathered_.failed = 0;
  gathered_.bytes.clear();
}

void ShardFile::Append(const MadeUnits& made) {
  POKERMATH_REQUIRE(made.units.first == state_.next);
  gathered_.units.last = made.units.last;
  gathered_.answers += made.answers;
  gathered_.failed += made.failed;
  gathered_.bytes += made.bytes;
  state_.next = made.units.last;
  state_.answers += made.answers;
  state_.failed += made.failed;
  state_.bytes += static_cast<std::int64_t>(made.bytes.size());
  if (gathered_.bytes.size() < kBlockBytes) return;
  WriteBlock();
  if (end_ - synced_ >= kFlushBytes) Keep(state_.seconds - seconds_before_);
}

void ShardFile::Keep(double seconds) {
  state_.seconds = seconds_before_ + seconds;
  WriteBlock();
  if (end_ == synced_) return;
  if (fdatasync(fd_) != 0)
    throw SystemFailure("cannot write " + Quoted(path_ + kUnfinished), errno);
  synced_ = end_;
}

void ShardFile::KeepPartial(std::int64_t end, double seconds, std::string_view bytes) {
  PartialHeader header{state_.job,
                       state_.next,
                       end,
                       seconds_before_ + seconds,
                       static_cast<std::int64_t>(bytes.size()),
                       Checksum(bytes),
                       0};
  header.check = CheckOf(header);
  AtomicFile file(path_ + kPartial);
  file.Write(&header, sizeof header);
  file.Write(bytes.data(), bytes.size());
  if (!file.Commit()) throw SystemFailure("cannot write " + Quoted(path_ + kPartial), errno);
}

std::optional<std::string> ShardFile::ReadPartial() {
  const InputFile file(path_ + kPartial);
  const std::optional<PartialHeader> header = ReadPartialHeader(file, state_);
  if (!header) return std::nullopt;
  std::string text(static_cast<std::size_t>(header->bytes), '\0');
  if (!file.ReadAll(sizeof *header, text.data(), text.size()) ||
      Checksum(text) != header->bytes_check) {
    return std::nullopt;
  }
  seconds_before_ = header->seconds;
  return text;
}

void ShardFile::Finish(double seconds) {
  Keep(seconds);
  state_.finished = true;
  WriteHeader();
  const std::string from = path_ + kUnfinished;
  if (fsync(fd_) != 0 || rename(from.c_str(), (path_ + kFinished).c_str()) != 0) {
    throw SystemFailure("cannot write " + Quoted(path_ + kFinished), errno);
  }
  SyncFolder(path_);
  unlink((path_ + kPartial).c_str());
}

// --- finished ---

FinishedShard::FinishedShard(const std::string& path) : path_(path) {
  const InputFile file(path);
  if (!file.ok()) throw SystemFailure("cannot read " + Quoted(path), file.error());
  const std::optional<Header> header = ReadHeader(file);
  if (!header || header->finished != 1) {
    throw Failure(Quoted(path) + " is damaged: its header is not that of a finished shard");
  }
  state_ = StateOf(*header);
  blocks_check_ = header->blocks_check;
}

void FinishedShard::ForEachBlock(const std::function<void(const MadeUnits& made)>& visit) const {
  const InputFile file(path_);
  if (!file.ok()) throw SystemFailure("cannot read " + Quoted(path_), file.error());
  BlockReader reader(file, file.size(), state_.units);
  std::uint64_t check = 0;
  MadeUnits made;
  while (reader.Next()) {
    const BlockHeader& block = reader.header();
    const std::string name = fmt::format("{} is damaged: the block of units {} to {}",
                                         Quoted(path_), block.first + 1, block.last);
    if (!reader.Read(made.bytes)) throw Failure(name + " is not as it was written");
    check = Chained(check, block.check);
    made.units = {block.first, block.last};
    made.answers = block.answers;
    made.failed = block.failed;
    visit(made);
    if (tell_) tell_(block.bytes);
  }
  if (reader.next_unit() != state_.units.last || reader.end() != file.size() ||
      check != blocks_check_) {
    throw Failure(fmt::format("{} is damaged: it goes wrong behind unit {} of its last, {}",
                              Quoted(path_), reader.next_unit(), state_.units.last));
  }
}

// --- in a folder ---

namespace {

// "3-of-8" with something behind it.
std::optional<Shard> ShardOfName(std::string_view name, std::string_view ending) {
  if (!name.ends_with(ending)) return std::nullopt;
  name.remove_suffix(ending.size());
  Shard shard;
  const char* const end = name.data() + name.size();
  const auto number = std::from_chars(name.data(), end, shard.number);
  constexpr std::string_view kOf = "-of-";
  if (!std::string_view(number.ptr, end).starts_with(kOf)) return std::nullopt;
  std::from_chars(number.ptr + kOf.size(), end, shard.count);
  // What the name of the shard would be has to be the name, to the letter.
  const bool is_shard = shard.number >= 1 && shard.number <= shard.count &&
                        shard.count <= kMostShards && shard.Name() == name;
  return is_shard ? std::optional(shard) : std::nullopt;
}

}  // namespace

std::vector<FoundShard> FindShards(const std::string& folder) {
  std::map<std::pair<int, int>, FoundShard> found;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    const std::string path = folder + "/" + name;
    if (const std::optional<Shard> shard = ShardOfName(name, kFinished)) {
      found[{shard->count, shard->number}] = {*shard, true, path};
    } else if (const std::optional<Shard> begun = ShardOfName(name, kUnfinished)) {
      found.try_emplace({begun->count, begun->number}, FoundShard{*begun, false, path});
    }
  }
  if (error) throw SystemFailure("cannot read the folder " + Quoted(folder), error.value());
  std::vector<FoundShard> shards;
  for (auto& [key, shard] : found) shards.push_back(std::move(shard));
  return shards;
}

bool IsInWork(const FoundShard& found) {
  const int fd = open(found.path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (fd < 0) return false;
  const bool locked = flock(fd, LOCK_SH | LOCK_NB) != 0;
  close(fd);
  return locked;
}

std::optional<ShardState> ReadUnfinished(const FoundShard& found) {
  const InputFile file(found.path);
  if (!file.ok()) return std::nullopt;
  const std::optional<Header> header = ReadHeader(file);
  if (!header) return std::nullopt;
  // The sums of a header are for finished ones; it has them a moment before its last name.
  ShardState state{.shard = {header->number, header->count},
                   .job = header->job,
                   .units = {header->first, header->last},
                   .next = header->first};
  BlockReader reader(file, file.size(), state.units);
  while (reader.Next()) {
    state.next = reader.next_unit();
    state.answers += reader.header().answers;
    state.failed += reader.header().failed;
    state.bytes += reader.header().bytes;
    state.seconds = reader.header().seconds;
  }
  const std::filesystem::path partial =
      std::filesystem::path(found.path).replace_filename(found.shard.Name() + kPartial);
  if (const auto kept = ReadPartialHeader(InputFile(partial.string()), state)) {
    state.next = kept->end;
    state.seconds = kept->seconds;
  }
  return state;
}

}  // namespace pokermath
