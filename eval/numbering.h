// Numbers for ids that come in any order.

#ifndef POKERMATH_EVAL_NUMBERING_H_
#define POKERMATH_EVAL_NUMBERING_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pokermath {

/// Numbers ids, none of them 0, from 0 in the order in which they first come.
class Numbering {
 public:
  /// @param ids  how many there will be, as far as that is known
  explicit Numbering(std::size_t ids = 0) {
    std::size_t capacity = 1024;
    while (capacity < 2 * ids) capacity *= 2;
    slots_.resize(capacity);
    ids_.reserve(ids);
  }

  std::uint32_t NumberOf(std::uint64_t id) {
    Slot& slot = slots_[Find(id)];
    if (slot.id == id) return slot.number;
    slot = {id, static_cast<std::uint32_t>(ids_.size())};
    ids_.push_back(id);
    const std::uint32_t number = slot.number;
    if (2 * ids_.size() > slots_.size()) Grow();
    return number;
  }

  /// All ids by their numbers.
  const std::vector<std::uint64_t>& ids() const { return ids_; }

 private:
  struct Slot {
    std::uint64_t id = 0;
    std::uint32_t number = 0;
  };

  // Where an id is, or is to be.
  std::size_t Find(std::uint64_t id) const {
    std::size_t slot = (id * 0x9E3779B97F4A7C15u) >> 20 & (slots_.size() - 1);
    while (slots_[slot].id != id && slots_[slot].id != 0) slot = (slot + 1) & (slots_.size() - 1);
    return slot;
  }
  void Grow() {
    slots_.assign(slots_.size() * 2, {});
    for (std::uint32_t number = 0; number < ids_.size(); ++number) {
      slots_[Find(ids_[number])] = {ids_[number], number};
    }
  }

  std::vector<Slot> slots_;
  std::vector<std::uint64_t> ids_;
};

}  // namespace pokermath

#endif  // POKERMATH_EVAL_NUMBERING_H_
