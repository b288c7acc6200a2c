// Facts of the operating system and the processor, each with its name.

#ifndef POKERMATH_SUPPORT_SYSTEM_FACTS_H_
#define POKERMATH_SUPPORT_SYSTEM_FACTS_H_

#include <string>
#include <vector>

namespace pokermath {

struct Fact {
  std::string name;   // lower-case words
  std::string value;  // UTF-8 on one line, never empty
};

/// What cannot be found out is not in the list.
///
/// @param root  the folder in which /etc, /proc and /sys are looked for, without a slash at its end
std::vector<Fact> OsFacts(const std::string& root = "");
std::vector<Fact> CpuFacts(const std::string& root = "");

/// A line for each: two blanks, the name, the value.
std::string FactLines(const std::vector<Fact>& facts);

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_SYSTEM_FACTS_H_
