// Other programs, run to their end.

#ifndef POKERMATH_CLI_CHILD_PROCESS_H_
#define POKERMATH_CLI_CHILD_PROCESS_H_

#include <span>
#include <string>

namespace pokermath::cli {

struct EndedProcess {
  int error = 0;      ///< errno if the program could not be started
  int exit_code = 0;  ///< 128 and the signal if one ended it
  std::string out{};  ///< what it wrote to standard output
};

/// Runs a program that is found as the shell finds it, with nothing on standard input.
///
/// @param words   its name and its arguments
/// @param errors  whether its standard error is ours; else it goes nowhere
EndedProcess RunProcess(std::span<const std::string> words, bool errors);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_CHILD_PROCESS_H_
