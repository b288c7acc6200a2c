// The file in which a part of a job is kept, while it grows and when it is finished.
//
// A shard is a run of a job's units. Its file is a header and blocks one behind another, each with
// the units that it covers, the bytes that they made and a checksum; so a process that was killed
// leaves whole blocks, and the next one goes on behind the last of them. A shard that is finished
// has all in its header and another name.
//
// In a job's folder, of shard 3 of 8: 3-of-8.shard when it is finished, 3-of-8.unfinished before,
// and 3-of-8.partial with what a unit that takes long has come to.

#ifndef POKERMATH_JOBS_SHARD_FILE_H_
#define POKERMATH_JOBS_SHARD_FILE_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pokermath {

/// Units first .. last - 1.
struct UnitRange {
  std::int64_t first = 0;
  std::int64_t last = 0;

  std::int64_t size() const { return last - first; }
  bool operator==(const UnitRange&) const = default;
};

/// One of the parts that a job is cut into.
struct Shard {
  int number = 1;  ///< from 1
  int count = 1;

  bool IsWhole() const { return count == 1; }
  /// Its part of so many units.
  UnitRange UnitsOf(std::int64_t units) const;
  /// "3-of-8"
  std::string Name() const;
  bool operator==(const Shard&) const = default;
};

inline constexpr int kMostShards = 1'000'000;

/// What is known of a shard from its file.
struct ShardState {
  Shard shard;
  std::uint64_t job = 0;  ///< the job's hash
  UnitRange units;        ///< that it covers
  bool finished = false;
  std::int64_t next = 0;     ///< the first unit that is not done
  std::int64_t answers = 0;  ///< that the units have made; a unit need not have one
  std::int64_t failed = 0;   ///< of them, those that are errors
  std::int64_t bytes = 0;    ///< that the units have made
  double seconds = 0;        ///< that processes have worked on it
};

/// What some units have made.
struct MadeUnits {
  UnitRange units;
  std::int64_t answers = 0;
  std::int64_t failed = 0;
  std::string bytes{};
};

/// A shard in work. One process at a time has it: its file is locked.
class ShardFile {
 public:
  /// Opens or makes the file in a folder. Null if another process works on the shard, or has just
  /// finished it. Throws Failure for what cannot be opened or belongs to another job.
  static std::unique_ptr<ShardFile> Open(const std::string& folder, const ShardState& empty);
  ~ShardFile();
  ShardFile(const ShardFile&) = delete;
  ShardFile& operator=(const ShardFile&) = delete;

  const ShardState& state() const { return state_; }

  /// Takes the next units. Throws Failure if the file cannot be written; what was kept before
  /// stays.
  void Append(const MadeUnits& made);
  /// What was appended is on the disk when this returns.
  ///
  /// @param seconds  that were worked since the file was opened
  void Keep(double seconds);

  /// What the next unit, or a sum over the units from it to `end`, has come to. Forgotten when the
  /// shard goes on.
  ///
  /// @param seconds  as of Keep
  void KeepPartial(std::int64_t end, double seconds, std::string_view bytes);
  /// Nothing if there is none, or none from the next unit on, or a damaged one.
  std::optional<std::string> ReadPartial();

  /// All units are done: the file gets its last name.
  void Finish(double seconds);

 private:
  ShardFile(std::string path, int fd, const ShardState& state);

  bool ReadBlocks(std::int64_t size);
  void Write(const void* data, std::size_t bytes, std::int64_t position);
  void WriteHeader();
  void WriteBlock();

  std::string path_;  // without what comes behind the shard's name
  int fd_;
  ShardState state_;
  double seconds_before_ = 0;
  std::int64_t end_ = 0;            // of the blocks in the file
  std::int64_t synced_ = 0;         // so far they are on the disk
  std::uint64_t blocks_check_ = 0;  // a chain of theirs
  MadeUnits gathered_;
};

/// A shard that is finished, to be read.
class FinishedShard {
 public:
  /// Throws Failure that says what is wrong with the file.
  explicit FinishedShard(const std::string& path);

  const std::string& path() const { return path_; }
  const ShardState& state() const { return state_; }
  /// Reads block by block, and throws Failure where one is damaged; what was visited before is
  /// right.
  void ForEachBlock(const std::function<void(const MadeUnits& made)>& visit) const;
  /// `tell` is called behind each block, with its bytes.
  void Tell(std::function<void(std::int64_t bytes)> tell) { tell_ = std::move(tell); }

 private:
  std::string path_;
  ShardState state_;
  std::uint64_t blocks_check_ = 0;
  std::function<void(std::int64_t bytes)> tell_;
};

/// A shard as it is found in a folder.
struct FoundShard {
  Shard shard;
  bool finished = false;
  std::string path;
};

/// Those of which there are files, by count and number. Throws Failure if the folder cannot be
/// read.
std::vector<FoundShard> FindShards(const std::string& folder);

/// Whether a process works on an unfinished shard.
bool IsInWork(const FoundShard& found);

/// What the files of an unfinished shard say, sums included; nothing if they cannot be read.
std::optional<ShardState> ReadUnfinished(const FoundShard& found);

}  // namespace pokermath

#endif  // POKERMATH_JOBS_SHARD_FILE_H_
