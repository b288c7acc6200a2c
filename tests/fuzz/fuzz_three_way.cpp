// Any changes of a table of three hands whose checksum is right: whatever is taken is looked up
// inside of its bytes, and what has no fault is taken.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "kernels/three_way.h"
#include "kernels/three_way_table.h"

namespace pokermath {
namespace {

// A triple without any rows.
constexpr std::size_t kEmptyTriple = 34;

const std::string& EmptyPayload() {
  static const std::string payload = [] {
    std::size_t triples = 0;
    for (std::int64_t number = 0; number < kThreeWayUnits; ++number) {
      triples += SuitSets::Of(RankTripleOf(number)).size() > 0;
    }
    return std::string(triples * kEmptyTriple, '\0');
  }();
  return payload;
}

}  // namespace
}  // namespace pokermath

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pokermath;
  std::string payload = EmptyPayload();
  // Four bytes are a place and what comes there; the last ones move the end.
  std::size_t at = 0;
  for (; at + 4 <= size; at += 4) {
    const std::size_t place = data[at] + 256u * data[at + 1] + 65536u * data[at + 2];
    payload[place % payload.size()] = static_cast<char>(data[at + 3]);
  }
  if (at + 2 <= size) {
    payload.append(data[at], static_cast<char>(data[at + 1]));
  } else if (at < size) {
    payload.resize(payload.size() - data[at]);
  }

  ThreeWayTrailer trailer;
  trailer.Add(payload);
  const std::string bytes = ThreeWayHeader() + payload + trailer.Bytes();
  const auto* const first = reinterpret_cast<const std::uint8_t*>(bytes.data());
  const ThreeWayTable table(LargeTable<std::uint8_t>(first, first + bytes.size()));
  if (!table.ok()) {
    // What nothing was done to is a table.
    if (payload == EmptyPayload()) std::abort();
    return 0;
  }
  for (std::int64_t number = 0; number < kThreeWayUnits; number += 997) {
    table.Of(RankTripleOf(number));
  }
  table.Of(RankTripleOf(kThreeWayUnits - 1));
  return 0;
}
