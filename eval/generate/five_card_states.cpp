// Works out the finite-state table of five cards from 52.

#include "eval/generate/five_card_states.h"

#include <stdexcept>

#include "eval/five_card_states.h"
#include "eval/generate/array_text.h"
#include "eval/scales.h"
#include "eval/state_table_builder.h"

namespace pokermath {
namespace {

class FiveCardRules final : public AnyFiveRules {
 public:
  explicit FiveCardRules(const ReferenceValues& values)
      : AnyFiveRules(0, 5, kFiveCardStateSuits), values_(values) {}

 protected:
  std::uint32_t ValueOfRanks(const std::array<int, 13>& counts) const override {
    return static_cast<std::uint32_t>(OtherScale(values_.Of(counts, false)));
  }
  std::uint32_t ValueOfFlush(unsigned ranks) const override {
    RankCounts counts{};
    for (std::size_t rank = 0; rank < 13; ++rank) counts[rank] = ranks >> rank & 1;
    return static_cast<std::uint32_t>(OtherScale(values_.Of(counts, true)));
  }

 private:
  const ReferenceValues& values_;
};

}  // namespace

void WriteFiveCardStates(std::ostream& out, const ReferenceValues& values) {
  const StateEntries entries = BuildStateTable(FiveCardRules(values), {52, 5, 0});
  if (entries.size() != kFiveCardStateEntries) {
    throw std::runtime_error("the five-card states came out wrong");
  }
  out << "// Written by pokermath_generate.\n#include \"eval/five_card_states.h\"\n"
         "namespace pokermath {\n";
  WriteArray(out, "const std::uint32_t kFiveCardStates[kFiveCardStateEntries]", entries);
  out << "}  // namespace pokermath\n";
}

}  // namespace pokermath
