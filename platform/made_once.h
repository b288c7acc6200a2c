// A table whose entries are made when they are first asked for, by any thread: a question pays for
// what it needs, and nobody waits for a table that is large.

#ifndef POKERMATH_PLATFORM_MADE_ONCE_H_
#define POKERMATH_PLATFORM_MADE_ONCE_H_

#include <atomic>
#include <cstddef>
#include <memory>
#include <vector>

namespace pokermath {

template <typename Entry>
class MadeOnce {
 public:
  explicit MadeOnce(std::size_t size) : entries_(size) {}
  ~MadeOnce() {
    for (const auto& entry : entries_) delete entry.load();
  }
  MadeOnce(const MadeOnce&) = delete;
  MadeOnce& operator=(const MadeOnce&) = delete;

  /// The entry of a number; what it returns stays.
  ///
  /// @param make  sets an Entry that is default-initialised, the same one at every call
  template <typename Make>
  const Entry& Get(std::size_t number, const Make& make) const {
    const Entry* known = entries_[number].load(std::memory_order_acquire);
    return known != nullptr ? *known : Keep(number, make);
  }

 private:
  // Threads that come at the same time make it each, and the first one's stays.
  template <typename Make>
  [[gnu::noinline]] const Entry& Keep(std::size_t number, const Make& make) const {
    auto fresh = std::make_unique_for_overwrite<Entry>();
    make(*fresh);
    const Entry* known = nullptr;
    if (entries_[number].compare_exchange_strong(known, fresh.get(), std::memory_order_acq_rel)) {
      known = fresh.release();
    }
    return *known;
  }

  mutable std::vector<std::atomic<const Entry*>> entries_;
};

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_MADE_ONCE_H_
