// The files of the finite-state tables that are loaded into `fsm5` and `ofsm_omaha7`.

#ifndef POKERMATH_CONTRACTS_STATE_MACHINES_H_
#define POKERMATH_CONTRACTS_STATE_MACHINES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "eval/state_table_builder.h"
#include "pokermath/evaluators.h"

namespace pokermath {

/// A kind of table file: a header of 32 bytes, then the entries.
struct StateFile {
  std::string_view name;   ///< of the file
  std::string_view magic;  ///< up to 16 characters
  StateTableShape shape;
  std::uint32_t best;  ///< the largest value
};
inline constexpr StateFile kSixPlus5File = {"six-plus-5.bin", "OFSM Six Plus 5", {36, 5, 0}, 1404};
inline constexpr StateFile kSixPlus7File = {"six-plus-7.bin", "OFSM Six Plus 7", {36, 7, 0}, 1404};
inline constexpr StateFile kOmaha7File = {"omaha7.bin", "OFSM Omaha 7", {52, 7, 1}, 7462};

inline constexpr std::size_t kStateHeaderBytes = 32;
/// The header of a file with so many entries.
std::array<std::byte, kStateHeaderBytes> StateHeader(const StateFile& file, std::uint64_t entries);

/// Whether every way through the table stays inside, cards that come twice included, and the hands
/// that were looked at have values of the scale: one hand for each state that hands lead to, with
/// every last card. States may be any places of the table; what no cards lead to, and the value of
/// cards that come twice, may be anything.
bool StatesAreSound(const StateFile& file, const std::uint32_t* entries, std::size_t count);

/// An array for so many entries, for delete[], where the system has them on large pages.
std::uint32_t* NewStates(std::size_t count);

/// Reads and checks a table file. Row 0 may be anything there, if no hand leads to it; the table
/// then has zeros in it.
///
/// @param path     UTF-8
/// @param missing  out: whether there is no file that could be opened
/// @return a new array for delete[], null if the file is not sound
std::uint32_t* LoadStates(const StateFile& file, const std::string& path, bool& missing);

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_STATE_MACHINES_H_
