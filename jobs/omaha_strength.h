// The table of Omaha starting hands by their equity against a random hand.

#ifndef POKERMATH_JOBS_OMAHA_STRENGTH_H_
#define POKERMATH_JOBS_OMAHA_STRENGTH_H_

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "jobs/sums_job.h"

namespace pokermath {

/// Sums up how every hand does, in units of boards with the same ranks.
class OmahaStrengthJob final : public SumsJob {
 public:
  /// @param hand_size  one of kOmahaHandSizes
  explicit OmahaStrengthJob(int hand_size);

  const std::string& name() const { return name_; }
  Json Identity() const override;
  std::int64_t units() const override;
  const char* unit_name() const override { return "sets of boards"; }
  const char* result_name() const override { return result_name_.c_str(); }

  std::unique_ptr<Adder> NewAdder() const override;
  /// Every hand whose suits are no renaming of another one's, the strongest first: a line for each.
  std::string ResultOf(Adder& all) const override;

 private:
  int hand_size_;
  std::string name_, result_name_;
};

/// What is wrong with the text of such a table; empty when nothing is.
std::string OmahaStrengthFault(const std::string& text, int hand_size);

/// The order of the classes in such a table without a fault, packed as the library has it.
std::vector<std::uint8_t> OmahaOrderOf(const std::string& text, int hand_size);

/// What is wrong with a packed order; empty when nothing is.
std::string OmahaOrderFault(std::span<const std::uint8_t> packed, int hand_size);

}  // namespace pokermath

#endif  // POKERMATH_JOBS_OMAHA_STRENGTH_H_
