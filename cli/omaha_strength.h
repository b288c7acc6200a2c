// The table of Omaha starting hands by their equity against a random hand.

#ifndef POKERMATH_CLI_OMAHA_STRENGTH_H_
#define POKERMATH_CLI_OMAHA_STRENGTH_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "kernels/omaha_every_hand.h"

namespace pokermath::cli {

/// Sums up how every hand does, on all processors, in pieces between which it can be stopped, kept
/// in a file and taken up again.
class OmahaStrength {
 public:
  explicit OmahaStrength(int hand_size);

  /// Steps done, of OmahaEveryHand::kSteps.
  int done() const { return done_; }
  bool Finished() const { return done_ == OmahaEveryHand::kSteps; }
  /// Does a fraction of a second's work.
  void GoOn();

  /// Takes up what Save left; false, and nothing changed, if there is no such file or a damaged
  /// one.
  bool Load(const std::string& path);
  /// False, with errno set, if it cannot be written.
  bool Save(const std::string& path);

  /// Every hand whose suits are no renaming of another one's, the strongest first: a line for each.
  std::string Text() const;

 private:
  int hand_size_;
  int done_ = 0;
  std::vector<std::unique_ptr<OmahaEveryHand>> workers_;  // the first one has the sums so far
};

/// What is wrong with the text of such a table; empty when nothing is.
std::string OmahaStrengthFault(const std::string& text, int hand_size);

/// The order of the classes in such a table without a fault, packed as the library has it.
std::vector<std::uint8_t> OmahaOrderOf(const std::string& text, int hand_size);

/// What is wrong with a packed order; empty when nothing is.
std::string OmahaOrderFault(std::span<const std::uint8_t> packed, int hand_size);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_OMAHA_STRENGTH_H_
