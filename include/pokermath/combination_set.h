/// @file
/// The set of two-card combinations behind a range.

#ifndef POKERMATH_COMBINATION_SET_H_
#define POKERMATH_COMBINATION_SET_H_

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace pokermath {

/// Two card codes in the order in which they are stored.
using Combination = std::pair<int, int>;

/// An ordered set of combinations, by first card and then second, in one piece of memory: walking
/// and copying it is fast, inserting moves what comes behind. (1, 2) and (2, 1) are two elements.
/// Cards are not checked. Const members may run in any number of threads.
class CombinationSet {
 public:
  /// An element.
  using value_type = Combination;
  /// Walks the elements in order; inserting and erasing makes it invalid.
  using const_iterator = std::vector<Combination>::const_iterator;
  /// The same: elements are not changed in place.
  using iterator = const_iterator;

  /// The first element.
  const_iterator begin() const { return sorted_.begin(); }
  /// Behind the last one.
  const_iterator end() const { return sorted_.end(); }
  /// How many there are.
  std::size_t size() const { return sorted_.size(); }
  /// Whether there is none.
  bool empty() const { return sorted_.empty(); }
  /// Takes away all.
  void clear() { sorted_.clear(); }

  /// Where a combination stands, as it is stored; end() if it is not there.
  const_iterator find(const Combination& combination) const {
    const auto place = std::lower_bound(begin(), end(), combination);
    return place != end() && *place == combination ? place : end();
  }
  /// Whether a combination is there, as it is stored.
  bool contains(const Combination& combination) const { return find(combination) != end(); }
  /// The same as 1 or 0.
  std::size_t count(const Combination& combination) const { return contains(combination) ? 1 : 0; }

  /// Adds a combination, and says whether it is new.
  bool insert(const Combination& combination) {
    const auto place = std::lower_bound(begin(), end(), combination);
    if (place != end() && *place == combination) return false;
    sorted_.insert(place, combination);
    return true;
  }
  /// Takes a combination away, and says whether it was there.
  bool erase(const Combination& combination) {
    const auto place = find(combination);
    if (place == end()) return false;
    sorted_.erase(place);
    return true;
  }
  /// Takes away those for which `predicate` is true.
  template <typename Predicate>
  void erase_if(Predicate predicate) {
    std::erase_if(sorted_, predicate);
  }
  /// Adds all of another set.
  void merge(const CombinationSet& other) {
    std::vector<Combination> both;
    both.reserve(size() + other.size());
    std::set_union(begin(), end(), other.begin(), other.end(), std::back_inserter(both));
    sorted_ = std::move(both);
  }

  /// The same elements.
  bool operator==(const CombinationSet&) const = default;

 private:
  std::vector<Combination> sorted_;
};

}  // namespace pokermath

#endif  // POKERMATH_COMBINATION_SET_H_
