#include "platform/made_once.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <future>
#include <vector>

namespace pokermath {
namespace {

// Entries have to be whole when another thread sees them, and stay where they are.
TEST(MadeOnce, ThreadsSeeTheSameWholeEntries) {
  constexpr std::size_t kEntries = 1000, kThreads = 8;
  using Entry = std::array<std::size_t, 16>;
  const MadeOnce<Entry> entries(kEntries);
  std::atomic<std::size_t> made = 0;
  const auto get = [&](std::size_t number) -> const Entry& {
    return entries.Get(number, [&](Entry& entry) {
      ++made;
      entry.fill(number);
    });
  };
  std::vector<std::future<std::vector<const Entry*>>> threads;
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.push_back(std::async(std::launch::async, [&] {
      std::vector<const Entry*> seen;
      for (std::size_t number = 0; number < kEntries; ++number) seen.push_back(&get(number));
      return seen;
    }));
  }
  std::vector<std::vector<const Entry*>> seen;
  for (auto& thread : threads) seen.push_back(thread.get());
  for (std::size_t number = 0; number < kEntries; ++number) {
    for (const auto& of_thread : seen) {
      ASSERT_EQ(of_thread[number], seen[0][number]) << number;
      ASSERT_EQ((*of_thread[number])[15], number);
    }
  }
  const std::size_t before = made;
  EXPECT_EQ(&get(7), seen[0][7]);
  EXPECT_EQ(made, before);
}

}  // namespace
}  // namespace pokermath
