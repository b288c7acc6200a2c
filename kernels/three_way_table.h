// The table of all matchups of three hands before the flop, as the bytes of a file.
//
//   header    32 bytes: who it is
//   payload   the rank triples by their numbers, each from a full byte on
//   trailer   16 bytes: length and checksum of the payload
//
// A triple is packed into bits, the lowest first. There are seven columns, one for each set of
// hands that may share a board; the last one, in which all three do, is left out, as every row adds
// up to all boards or to nothing.
//
//   6 times   21 bits: boards by ranks
//   6 times   19 bits: the least change of a column, 2^18 added; 5 bits: its width
//   6 times   for each set of cards that a suit may have, in `width` bits: the change less the
//   least
//
// A triple that four suits do not have has no bytes.

#ifndef POKERMATH_KERNELS_THREE_WAY_TABLE_H_
#define POKERMATH_KERNELS_THREE_WAY_TABLE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kernels/three_way.h"
#include "pokermath/large_table.h"

namespace pokermath {

inline constexpr const char* kThreeWayFile = "holdem.three-way";
inline constexpr std::int64_t kThreeWayUnits = kRankTriples;

/// What stands before the payload.
std::string ThreeWayHeader();

/// Appends the payload of rank triples `first` to `last` - 1: about 400 bytes and 0.2 ms each. Any
/// cut into pieces gives the same payload, and so does any machine.
void AppendThreeWay(std::int64_t first, std::int64_t last, std::string& out);

/// What stands behind the payload.
class ThreeWayTrailer {
 public:
  /// The next piece of the payload, of any length.
  void Add(std::string_view piece);
  std::string Bytes() const;

 private:
  void AddWords(const char* words);

  static constexpr std::size_t kWords = 4;
  static constexpr std::size_t kBytes = kWords * sizeof(std::uint64_t);

  std::array<std::uint64_t, kWords> sums_{};
  std::array<char, kBytes> rest_{};  // of the payload, that does not fill words yet
  std::uint64_t length_ = 0;
};

/// What is wrong with the bytes of a file; empty if nothing is.
std::string ThreeWayFault(std::string_view bytes);

/// A table that is looked up.
class ThreeWayTable {
 public:
  /// More than a file may have.
  static constexpr std::size_t kMostBytes = std::size_t{1} << 27;

  /// The one in the folder of tables, read and checked when it is first asked for; null where there
  /// is none or something is wrong with it.
  static const ThreeWayTable* Get();

  /// @param bytes  of a file; without a fault if that is to be `ok`
  explicit ThreeWayTable(LargeTable<std::uint8_t> bytes);

  bool ok() const { return !starts_.empty(); }
  ThreeWayCounts Of(const RankTriple& triple) const;

 private:
  LargeTable<std::uint8_t> bytes_;
  std::vector<std::uint32_t> starts_;  // of the triples
};

}  // namespace pokermath

#endif  // POKERMATH_KERNELS_THREE_WAY_TABLE_H_
