// The HandRanks table: its IDs, its entries, its file.

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <set>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "contracts/hand_ranks_builder.h"
#include "platform/text.h"
#include "pokermath/cards.h"
#include "pokermath/poker_logic.h"
#include "tests/cards/dealer.h"
#include "tests/eval/oracle.h"
#include "tests/platform/scratch_folder.h"

namespace pokermath {
namespace {

int NumberOf(int card) { return card % 13 * 4 + card / 13 + 1; }

struct PlainId {
  std::uint64_t id;
  int cards;
};

// The construction word for word: slot 0 the new card, slots 1 to 6 the old ones, slot 7 empty.
PlainId PlainMakeId(std::uint64_t id, int card) {
  std::array<int, 8> slots{};
  slots[0] = (((card - 1) >> 2) + 1) << 4 | (((card - 1) & 3) + 1);
  for (std::size_t i = 1; i < 7; ++i) slots[i] = static_cast<int>(id >> 8 * (i - 1) & 0xFF);
  std::array<int, 16> suits{}, ranks{};
  int cards = 0;
  bool twice = false;
  for (std::size_t i = 0; slots[i] != 0; ++i) {
    ++cards;
    ++suits[static_cast<std::size_t>(slots[i] & 15)];
    ++ranks[static_cast<std::size_t>(slots[i] >> 4)];
    twice = twice || (i > 0 && slots[i] == slots[0]);
  }
  if (twice) return {0, cards};
  if (cards > 4 && *std::max_element(ranks.begin(), ranks.end()) > 4) return {0, cards};
  if (cards - 2 > 1) {
    for (int& slot : slots) {
      if (suits[static_cast<std::size_t>(slot & 15)] < cards - 2) slot &= 0xF0;
    }
  }
  std::sort(slots.rbegin(), slots.rend());
  std::uint64_t packed = 0;
  for (std::size_t i = 0; i < 7; ++i) packed |= static_cast<std::uint64_t>(slots[i]) << 8 * i;
  return {packed, cards};
}

__int64 IdOf(std::span<const int> cards) {
  std::uint64_t id = 0;
  for (const int card : cards) id = PlainMakeId(id, NumberOf(card)).id;
  return static_cast<__int64>(id);
}

const HandRanks& TheTable() {
  static const HandRanks table = BuildHandRanks();
  return table;
}

TEST(HandRanks, MakeIdFollowsTheConstruction) {
  Dealer dealer(5);
  SCOPED_TRACE(dealer.Trace());
  PokerLogic logic;
  int impossible = 0;
  for (int walk = 0; walk < 50'000; ++walk) {
    std::uint64_t id = 0;
    std::vector<int> cards;
    for (int step = 0; step < 7; ++step) {
      // Often a card that is there, or a neighbour of its rank, so that impossible hands come up.
      int card = 1 + dealer.Below(52);
      if (step > 0 && dealer.Below(3) == 0) {
        const int old = cards[static_cast<std::size_t>(dealer.Below(step))] - 1;
        card = 1 + old / 4 * 4 + dealer.Below(4);
      }
      cards.push_back(card);
      const PlainId plain = PlainMakeId(id, card);
      const auto made = static_cast<std::uint64_t>(logic.MakeID(static_cast<__int64>(id), card));
      ASSERT_EQ(made, plain.id) << std::hex << id << " and " << std::dec << card;
      ASSERT_EQ(logic.numcards, plain.cards);
      if (plain.id == 0) {
        ++impossible;
        break;
      }
      id = plain.id;
    }
  }
  EXPECT_GT(impossible, 10'000);
}

TEST(HandRanks, SavedIdsAreSortedWithoutRepeats) {
  Dealer dealer(6);
  SCOPED_TRACE(dealer.Trace());
  PokerLogic logic;
  std::set<std::uint64_t> saved = {0};
  for (int i = 0; i < 3000; ++i) {
    const __int64 id = dealer.Below(50) == 0 ? 0 : IdOf(dealer.Deal(1 + dealer.Below(2)));
    const auto place = saved.insert(static_cast<std::uint64_t>(id)).first;
    ASSERT_EQ(logic.SaveID(id), std::distance(saved.begin(), place));
    ASSERT_EQ(logic.numIDs, static_cast<int>(saved.size()));
    ASSERT_EQ(logic.maxID, *saved.rbegin());
  }
  EXPECT_TRUE(std::equal(saved.begin(), saved.end(), logic.IDs.begin()));
}

TEST(HandRanks, DoEvalIsTheBestFive) {
  Dealer dealer(7);
  SCOPED_TRACE(dealer.Trace());
  PokerLogic logic;
  for (int trial = 0; trial < 30'000; ++trial) {
    const std::vector<int> cards = dealer.Deal(5 + trial % 3);
    ASSERT_EQ(logic.DoEval(IdOf(cards)), oracle::HandRanks(cards)) << CardNames(cards);
  }
  EXPECT_EQ(logic.DoEval(0), 0);
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(logic.DoEval(logic.MakeID(0, 1)), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "    Problem with numcards = 1!!\n");
}

TEST(HandRanks, TheFileIsTheGoldenTable) {
  const ScratchFolder folder;
  const std::string path = folder / "ranks \xC3\xA4\xE2\x99\xA0.dat";
  PokerLogic logic;
  ASSERT_EQ(logic.generate_table(FromUtf8(path)), 0);
  EXPECT_EQ(logic.numIDs, 612977);
  EXPECT_EQ(logic.maxHR, 32487833);
  EXPECT_EQ(logic.maxID, 0xc0c0d0d0d0d0u);
  ASSERT_EQ(logic.IDs.size(), 612978u);
  EXPECT_EQ(logic.IDs.back(), 0u);
  EXPECT_TRUE(std::is_sorted(logic.IDs.begin(), logic.IDs.end() - 1, std::less_equal<>()));
  std::array<int, 9> states{};
  for (const std::uint64_t id : logic.IDs) {
    ++states[id == 0 ? 0 : 8 - static_cast<std::size_t>(std::countl_zero(id)) / 8];
  }
  EXPECT_EQ(states, (std::array<int, 9>{2, 52, 1326, 22100, 84448, 152607, 352443}));

  const std::string file = ContentOf(path);
  ASSERT_EQ(file.size(), 129951336u);
  EXPECT_EQ(crc32_z(0, reinterpret_cast<const Bytef*>(file.data()), file.size()), 0x7808da57u);
  ASSERT_EQ(logic.HR.size() * 4, file.size());
  EXPECT_EQ(std::memcmp(logic.HR.data(), file.data(), file.size()), 0);

  const auto written = std::filesystem::last_write_time(path);
  PokerLogic loaded;
  EXPECT_EQ(loaded.generate_table(FromUtf8(path)), 0);
  EXPECT_TRUE(loaded.HR == logic.HR);
  EXPECT_EQ(std::filesystem::last_write_time(path), written) << "a good file was written again";

  // A file that is no table is replaced; on the same object, and all is as after the first time.
  std::string damaged = file;  // a page that never reached the disk
  damaged.replace(100'000'000 / 4096 * 4096, 4096, 4096, '\0');
  for (const std::string& bad : {file.substr(0, file.size() - 1), file + '\0', damaged}) {
    SetContent(path, bad);
    EXPECT_EQ(logic.generate_table(FromUtf8(path)), 0);
    EXPECT_TRUE(logic.HR == loaded.HR);
    EXPECT_EQ(logic.numIDs, 612977);
    EXPECT_TRUE(ContentOf(path) == file);
  }
  EXPECT_EQ(folder.Names().size(), 1u) << "a temporary file is left";
}

TEST(HandRanks, WithoutAWritablePlaceTheTableIsInMemory) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder / "taken");
  SetContent(folder / "mine", "something else");
  const FullDisk full(1 << 20);
  for (const char* name : {"taken", "no such folder/table", "mine"}) {
    PokerLogic logic;
    EXPECT_EQ(logic.generate_table(FromUtf8(folder / name)), 1) << name;
    EXPECT_TRUE(logic.HR == TheTable().entries) << name;
  }
  EXPECT_TRUE(std::filesystem::is_directory(folder / "taken"));
  EXPECT_EQ(ContentOf(folder / "mine"), "something else");
  EXPECT_EQ(folder.Names().size(), 2u) << "a temporary file is left";
}

TEST(HandRanks, AnEntryOutOfPlaceIsNoticed) {
  LargeTable<std::uint32_t> entries = TheTable().entries;
  ASSERT_TRUE(HandRanksAreSound(entries.data()));
  const std::vector<std::uint64_t>& ids = TheTable().ids;
  std::size_t row[7] = {};  // of the first cards of a hand, by their number
  const std::vector<int> hand = ParseCards("2c3d4h5s7c8d").cards;
  for (std::size_t count = 0; count <= 6; ++count) {
    const auto id = static_cast<std::uint64_t>(IdOf(std::span(hand).first(count)));
    const auto slot = std::lower_bound(ids.begin(), ids.end() - 1, id) - ids.begin();
    row[count] = static_cast<std::size_t>(slot) * 53 + 53;
  }
  const struct {
    std::size_t place, entry;
    const char* fault;
  } damages[] = {{row[0] + 1, kHandRanksEntries, "a state beyond the table"},
                 {row[0] + 52, 0xFFFFFFFF, "a state beyond every table"},
                 {row[0] + 1, 4097, "a hand value where a state belongs"},
                 {row[0] + 9, row[1] + 1, "a state that is no row"},
                 {row[4] + 30, row[6], "a state that skips a card"},
                 {row[5] + 30, row[5], "a state that stays at its count"},
                 {row[6] + 30, row[6], "a state where a hand value belongs"},
                 {row[6] + 30, 4096 + 1278, "a place beyond the high cards"},
                 {row[6] + 30, 2 * 4096, "a place before the first pair"},
                 {kHandRanksEntries - 1, 9 * 4096 + 11, "better than a royal flush"},
                 {row[5], 4096 + 1278, "no value of five cards"},
                 {row[6], 10 * 4096 + 1, "no value of six cards"},
                 {row[5], 0, "nothing for five cards"},
                 {row[6], 0, "nothing for six cards"}};
  for (const auto& [place, entry, fault] : damages) {
    const std::uint32_t sound = std::exchange(entries[place], static_cast<std::uint32_t>(entry));
    EXPECT_FALSE(HandRanksAreSound(entries.data())) << fault;
    entries[place] = sound;
  }
  // A page that never reached the disk reads as zeros: at every level, the last one cut short.
  constexpr std::size_t kPage = 1024;
  constexpr std::size_t kPages = kHandRanksEntries / kPage;
  const std::size_t first_of_six = row[6] / kPage;  // rows of six cards are the last half
  for (std::size_t trial = 0; trial < 9; ++trial) {
    const std::size_t page = trial < 4   ? row[trial + 2] / kPage
                             : trial < 8 ? first_of_six + (kPages - first_of_six) * trial / 8
                                         : kPages;
    const auto start = entries.begin() + static_cast<std::ptrdiff_t>(page * kPage);
    const std::size_t size = std::min(kPage, kHandRanksEntries - page * kPage);
    const std::vector<std::uint32_t> lost(start, start + static_cast<std::ptrdiff_t>(size));
    std::fill_n(start, size, 0u);
    EXPECT_FALSE(HandRanksAreSound(entries.data())) << "page " << page;
    std::ranges::copy(lost, start);
  }
  EXPECT_TRUE(HandRanksAreSound(entries.data()));
}

// Else a vector of them copies 130 MB each when it grows.
static_assert(std::is_nothrow_move_constructible_v<PokerLogic>);
static_assert(std::is_nothrow_move_assignable_v<PokerLogic>);

TEST(HandRanks, AGrowingVectorMovesItsTables) {
  std::vector<PokerLogic> logics(1);
  logics[0].HR.resize(53);
  logics[0].PokerCombinations.insert(FiveCardMap::KeyOf(0, 1, 2, 3, 4), 5);
  const std::uint32_t* table = logics[0].HR.data();
  logics.reserve(logics.capacity() + 1);
  EXPECT_EQ(logics[0].HR.data(), table);
  FiveCardMap moved = std::move(logics[0].PokerCombinations);
  EXPECT_EQ(logics[0].PokerCombinations.size(), 0u);
  EXPECT_EQ(logics[0].PokerCombinations.find(FiveCardMap::KeyOf(0, 1, 2, 3, 4)), 0);
  EXPECT_EQ(moved.size(), 1u);
}

TEST(HandRanks, LookupsSurviveCopiesAndMoves) {
  PokerLogic logic;
  logic.HR = TheTable().entries;
  PokerLogic copy = logic;
  PokerLogic moved = std::move(copy);
  // What was moved from is as new.
  EXPECT_EQ(copy.LookupHand(std::vector<int>{1, 2, 3, 4, 5, 6, 7}.data()), 0);
  EXPECT_EQ(copy.SaveID(0), 0);
  EXPECT_EQ(copy.SaveID(copy.MakeID(0, 7)), 1);
  EXPECT_EQ(copy.numIDs, 2);
  PokerLogic& itself = moved;
  moved = std::move(itself);
  copy = moved;
  const PokerLogic unloaded;
  Dealer dealer(8);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 20'000; ++trial) {
    std::vector<int> cards = dealer.Deal(7);
    const int value = oracle::HandRanks(cards);
    ASSERT_EQ(logic.LookupSingleHands(cards.data()), value) << CardNames(cards);
    ASSERT_EQ(moved.LookupSingleHands(cards.data()), value);
    ASSERT_EQ(copy.LookupSingleHands(cards.data()), value);
    ASSERT_EQ(unloaded.LookupSingleHands(cards.data()), 0);
    for (int& card : cards) card = NumberOf(card);
    ASSERT_EQ(logic.LookupHand(cards.data()), value);
    ASSERT_EQ(unloaded.LookupHand(cards.data()), 0);
  }
  std::vector<int> royal = ParseCards("2cQhThAh3dKhJh").cards;
  EXPECT_EQ(logic.LookupSingleHands(royal.data()), 9 * 4096 + 10);
  std::vector<int> repeat = ParseCards("2h3h4h9hKcAd").cards;
  repeat.push_back(repeat[0]);
  for (int& card : repeat) card = NumberOf(card);
  EXPECT_EQ(logic.LookupHand(repeat.data()), 0);
}

// All hands of seven cards, one table step a card, beside the compact evaluator; on the way those
// of five and six cards.
struct AllHands {
  const std::uint32_t* entries;
  std::array<std::uint32_t, 7463> values;  // HandRanks scale by ascending scale
  std::array<std::int64_t, 16> categories{};
  std::int64_t sum = 0;
  std::int64_t differences = 0;
  int cards[7] = {};

  template <int depth>
  void Walk(std::uint32_t state, int first) {
    for (int card = first; card < 52; ++card) {
      cards[depth] = card;
      const std::uint32_t next = entries[state + static_cast<std::uint32_t>(NumberOf(card))];
      if constexpr (depth == 4 || depth == 5) {
        differences += entries[next] != ValueOf<depth + 1>() ? 1 : 0;
      }
      if constexpr (depth < 6) {
        Walk<depth + 1>(next, card + 1);
      } else {
        differences += next != ValueOf<7>() ? 1 : 0;
        ++categories[next >> 12 & 15];
        sum += next;
      }
    }
  }
  template <int count>
  std::uint32_t ValueOf() const {
    return values[static_cast<std::size_t>(EvaluateCards<count>(cards))];
  }
};

TEST(HandRanksSlow, EverySevenCardHand) {
  AllHands all{.entries = TheTable().entries.data(), .values = {}};
  for (int value = 1; value <= 7462; ++value) {
    all.values[static_cast<std::size_t>(value)] =
        static_cast<std::uint32_t>(HandRanksFromAscending(value));
  }
  all.Walk<0>(53, 0);
  EXPECT_EQ(all.differences, 0);
  EXPECT_EQ(all.categories,
            (std::array<std::int64_t, 16>{0, 23294460, 58627800, 31433400, 6461620, 6180020,
                                          4047644, 3473184, 224848, 41584}));
  EXPECT_EQ(all.sum, 1528972275512);
}

}  // namespace
}  // namespace pokermath
