// The finite-state tables: every value against the rules, and files that are not what they should
// be.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/text.h"
#include "pokermath/evaluators.h"
#include "pokermath/messages.h"
#include "tests/cards/dealer.h"
#include "tests/contracts/write_states.h"
#include "tests/eval/oracle.h"
#include "tests/platform/scratch_folder.h"

namespace pokermath {
namespace {

using Cards = std::vector<int>;

// Tables are loaded once for a process; a test starts without any.
void Unload() {
  for (std::uint32_t** table : {&fsm5.five_cards, &fsm5.seven_cards, &ofsm_omaha7.table}) {
    delete[] * table;
    *table = nullptr;
  }
}

// Five short-deck cards by the rules: as oracle::Strength, with categories in short-deck order and
// the ace below the six.
int ShortDeckStrength(const int (&cards)[5]) {
  constexpr int kOrder[10] = {0, 1, 2, 3, 5, 4, 7, 6, 8, 9};
  const int strength = oracle::Strength(cards);
  int category = strength >> 20;
  int ties = strength & 0xFFFFF;
  if (ties == 0xC7654 && (category == 1 || category == 6)) {  // A-9-8-7-6
    category = category == 1 ? 5 : 9;
    ties = 0;  // below the six-high straight that 52 cards have
  }
  return kOrder[category] << 20 | ties;
}

int BestShortDeckStrength(const Cards& cards) {
  return oracle::BestStrength(cards, ShortDeckStrength);
}

const Cards& ShortDeck() {
  static const Cards deck = [] {
    Cards cards;
    for (int card = 0; card < 52; ++card) {
      if (card % 13 >= 4) cards.push_back(card);
    }
    return cards;
  }();
  return deck;
}

Cards DealShort(Dealer& dealer, std::size_t count) {
  Cards cards;
  while (cards.size() < count) {
    const int card = ShortDeck()[static_cast<std::size_t>(dealer.Below(36))];
    if (std::ranges::count(cards, card) == 0) cards.push_back(card);
  }
  return cards;
}

template <typename Visit>
void ForEachFive(const Cards& deck, Visit visit) {
  for (std::size_t a = 0; a < deck.size(); ++a)
    for (std::size_t b = a + 1; b < deck.size(); ++b)
      for (std::size_t c = b + 1; c < deck.size(); ++c)
        for (std::size_t d = c + 1; d < deck.size(); ++d)
          for (std::size_t e = d + 1; e < deck.size(); ++e) {
            const int five[5] = {deck[a], deck[b], deck[c], deck[d], deck[e]};
            visit(five);
          }
}

TEST(FiveCardStates, AreTheValuesOfTheRulesInAnyOrder) {
  Dealer dealer(51);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 20000; ++trial) {
    Cards cards = dealer.Deal(5);
    EXPECT_EQ(LookupFsm5(cards.data()), oracle::Ascending(cards)) << CardNames(cards);
  }
  const auto lookup = [](std::string_view text) {
    return LookupFsm5(ParseCards(text).cards.data());
  };
  EXPECT_EQ(lookup("AhKhQhJhTh"), 7462);
  EXPECT_EQ(lookup("7c5d4h3s2c"), 1);
  for (int value = 0; value <= 7462; ++value) {
    CString name;
    EXPECT_EQ(verify_rankFsm5(value, name), 1);
    const int rank = Get_rankFsm5(value);
    EXPECT_EQ(rank, value == 7462 ? 10 : value < 1 ? 0 : HandRanksFromAscending(value) / 4096);
    EXPECT_EQ(name == L"Error", rank == 0);
  }
  CString name;
  verify_rankFsm5(7141, name);
  EXPECT_EQ(name, L"full houses");
}

TEST(ShortDeckExhaustive, EveryFiveCardHandHasItsPlace) {
  Unload();
  ScratchFolder folder;
  WriteStates(folder, kSixPlus5File);
  ASSERT_EQ(load_fsm5(FromUtf8(folder / "")), 1);
  std::map<int, int> places;  // by strength
  ForEachFive(ShortDeck(), [&](const auto& five) { places[ShortDeckStrength(five)] = 0; });
  int place = 0;
  for (auto& [strength, number] : places) number = ++place;
  ASSERT_EQ(place, 1404);
  std::map<int, int> in_order;  // places by value in short-deck order of 52
  ForEachFive(ShortDeck(), [&](const auto& five) {
    const int strength = ShortDeckStrength(five);
    const int expected = places[strength];
    ASSERT_EQ(eval_rank5_via_fsm5(five), expected);
    ASSERT_EQ(EvaluateShortDeck(five, 5), expected);
    const int category = expected == 1404 ? 10 : strength >> 20;
    ASSERT_EQ(Get_rank36(expected), category);
    int cards[5];
    std::ranges::copy(five, cards);
    const int value = LookupHoldem6PlusFsm5(cards);
    ASSERT_EQ(Get_rankHoldem6PlusFsm5(value), category);
    const auto [same, is_new] = in_order.emplace(value, expected);
    ASSERT_EQ(same->second, expected);
  });
  EXPECT_TRUE(std::ranges::is_sorted(in_order, {}, [](const auto& entry) { return entry.second; }));
  EXPECT_EQ(in_order.size(), 1404u);
  const auto lookup = [](std::string_view text) {
    return LookupHoldem6PlusFsm5(ParseCards(text).cards.data());
  };
  EXPECT_EQ(lookup("Ac6d7h8s9c"), 4996);
  EXPECT_EQ(lookup("Ac6c7c8c9c"), 7453);
  EXPECT_EQ(lookup("Ac6c7c8c5c"), -1);
  const int deuce[5] = {0, 12, 11, 10, 9};
  EXPECT_EQ(eval_rank5_via_fsm5(deuce), 0);
}

TEST(ShortDeckTables, SixAndSevenCardsAreTheBestOfTheirSubsets) {
  Unload();
  ScratchFolder folder;
  WriteStates(folder, kSixPlus5File);
  WriteStates(folder, kSixPlus7File);
  Cards seven = Cards(ShortDeck().begin(), ShortDeck().begin() + 7);
  EXPECT_EQ(eval_rank7_via_fsm7(seven.data()), 0) << "nothing is loaded";
  ASSERT_EQ(load_fsm5(FromUtf8(folder / "")) + load_fsm7(FromUtf8(folder / "")), 2);
  std::map<int, int> values;  // by strength
  Dealer dealer(52);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 30000; ++trial) {
    Cards cards = DealShort(dealer, 7);
    const int value = eval_rank7_via_fsm7(cards.data());
    const auto [same, is_new] = values.emplace(BestShortDeckStrength(cards), value);
    ASSERT_EQ(same->second, value) << CardNames(cards);
    ASSERT_EQ(EvaluateShortDeck(cards.data(), 7), value);
    ASSERT_EQ(Get_rankHoldem6PlusFsm5(eval_7hand6PlusFsm5(cards.data())), Get_rank36(value));
    cards.pop_back();
    const int six = eval_rank6_via_fsm5(cards.data());
    ASSERT_EQ(EvaluateShortDeck(cards.data(), 6), six);
    ASSERT_EQ(values.emplace(BestShortDeckStrength(cards), six).first->second, six);
  }
  EXPECT_TRUE(std::ranges::is_sorted(values, {}, [](const auto& entry) { return entry.second; }));
  EXPECT_GT(values.size(), 700u);
  seven[3] = 0;
  EXPECT_EQ(eval_rank7_via_fsm7(seven.data()), 0);
  EXPECT_EQ(EvaluateShortDeck(seven.data(), 7), 0);
  EXPECT_EQ(EvaluateShortDeck(seven.data(), 4), 0);
}

// Two hole cards and three board cards.
int BestOmaha(const Cards& hole, const Cards& board) {
  int best = 0;
  for (std::size_t i = 0; i < hole.size(); ++i)
    for (std::size_t j = i + 1; j < hole.size(); ++j)
      for (std::size_t a = 0; a < 5; ++a)
        for (std::size_t b = a + 1; b < 5; ++b)
          for (std::size_t c = b + 1; c < 5; ++c) {
            best =
                std::max(best, oracle::Strength({hole[i], hole[j], board[a], board[b], board[c]}));
          }
  return oracle::Places(best) + 1;
}

TEST(OmahaTableSlow, IsTheBestOfAllCombinations) {
  Unload();
  ScratchFolder folder;
  WriteStates(folder, kOmaha7File);
  ASSERT_EQ(load_ofsm_omaha7(FromUtf8(folder / "")), 1);
  Dealer dealer(53);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 100000; ++trial) {
    const int holes = 4 + trial % 2;
    const Cards cards = dealer.Deal(holes + 5);
    Cards hole(cards.begin(), cards.begin() + holes);
    Cards board(cards.begin() + holes, cards.end());
    const int best = BestOmaha(hole, board);
    ASSERT_EQ(eval_rank7_via_ofsm7(hole.data(), holes, board.data()), best) << CardNames(cards);
    if (holes == 4) {
      ASSERT_EQ(get_rank7(hole.data(), board.data()), best) << CardNames(cards);
    }
  }
}

// The same table with its states elsewhere: all but the start behind a gap that no card leads to.
std::string WithStatesMoved(const StateFile& file, std::uint32_t gap, std::uint32_t filling) {
  const StateEntries old = BuildStates(file);
  const auto width = static_cast<std::uint32_t>(file.shape.width);
  const auto first = static_cast<std::uint32_t>(file.shape.first_index);
  const std::uint32_t end = 2 * width + first;  // of the start row
  StateEntries entries(old.begin(), old.end());
  entries.insert(entries.begin() + end, gap, filling);
  std::fill_n(entries.begin(), width + first, filling);
  // States come in the order of their levels: the row behind the last state of one starts the next.
  std::uint32_t last_state = width;
  std::uint32_t row = width;
  for (int cards = 1; cards < file.shape.cards; ++cards) {
    const std::uint32_t level_end = last_state;
    for (; row <= level_end; row += width) {
      for (std::uint32_t i = first; i < first + width; ++i) {
        const std::uint32_t next = old[row + i];
        entries[row + i + (row > width ? gap : 0)] = next == 0 ? 0 : next + gap;
        last_state = std::max(last_state, next);
      }
    }
  }
  const auto header = StateHeader(file, entries.size());
  std::string bytes(reinterpret_cast<const char*>(header.data()), header.size());
  bytes.append(reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof entries[0]);
  return bytes;
}

TEST(StateFiles, WhatTheFormatLeavesOpenIsTaken) {
  static_assert(std::has_virtual_destructor_v<class fsm5>);
  static_assert(std::has_virtual_destructor_v<class ofsm_omaha7>);
  Unload();
  ScratchFolder folder;
  // Row 0 that no hand leads to, states that are no multiples of the width, more behind the end.
  for (const std::uint32_t filling : {7u, 0xFFFFFFFFu}) {
    SetContent(folder / kSixPlus7File.name,
               WithStatesMoved(kSixPlus7File, 5, filling) + "and more behind the end");
    Unload();
    ASSERT_EQ(load_fsm7(FromUtf8(folder / "")), 1);
    ASSERT_EQ(fsm5.seven_cards[36] % 36, 5u);
    Dealer dealer(55);
    SCOPED_TRACE(dealer.Trace());
    for (int trial = 0; trial < 5000; ++trial) {
      Cards cards = DealShort(dealer, 7);
      ASSERT_EQ(eval_rank7_via_fsm7(cards.data()), EvaluateShortDeck(cards.data(), 7));
      cards[static_cast<std::size_t>(trial % 7)] = trial % 4;  // a card that is not in the deck
      ASSERT_EQ(eval_rank7_via_fsm7(cards.data()), 0);
    }
    const Cards six_of_clubs(7, 4);
    EXPECT_EQ(eval_rank7_via_fsm7(six_of_clubs.data()), 0);
  }
}

TEST(StateFiles, AreLoadedWholeAndSoundOrNotAtAll) {
  ScratchFolder folder;
  const std::string good = FileBytes(kSixPlus5File);
  const std::string path = folder / kSixPlus5File.name;
  const auto is_refused = [&](const std::string& bytes) {
    SetContent(path, bytes);
    bool missing = true;
    const std::unique_ptr<std::uint32_t[]> table(LoadStates(kSixPlus5File, path, missing));
    EXPECT_FALSE(missing);
    return table == nullptr;
  };
  const auto with = [&good](std::size_t place, auto number) {
    std::string bytes = good;
    std::memcpy(&bytes[place], &number, sizeof number);
    return bytes;
  };
  const auto entries = static_cast<std::uint32_t>((good.size() - kStateHeaderBytes) / 4);
  EXPECT_FALSE(is_refused(good));
  EXPECT_TRUE(is_refused(""));
  EXPECT_TRUE(is_refused(good.substr(0, 31)));
  EXPECT_TRUE(is_refused(good.substr(0, good.size() - 1)));
  EXPECT_TRUE(is_refused(with(0, 'o')));
  EXPECT_TRUE(is_refused(with(15, 'x'))) << "all 16 characters count";
  EXPECT_TRUE(is_refused(with(16, 52)));
  EXPECT_TRUE(is_refused(with(20, 7)));
  EXPECT_TRUE(is_refused(with(24, std::uint64_t{entries} - 1)));
  EXPECT_TRUE(is_refused(with(24, std::uint64_t{1} << 62)));
  EXPECT_TRUE(is_refused(with(24, std::uint64_t{0}).substr(0, 32)));
  EXPECT_TRUE(is_refused(with(24, std::uint64_t{36}).substr(0, 32 + 4 * 36)));
  // Entries that lead out of the table; a value beyond the scale.
  EXPECT_TRUE(is_refused(with(32 + 4 * 40, entries)));
  EXPECT_TRUE(is_refused(with(32 + 4 * 40, entries - 35)));
  EXPECT_TRUE(is_refused(with(good.size() - 4 * 36, 1405u)));
  // After all four sixes one of them again may have any value, another card may not.
  std::uint32_t sixes = 36;
  for (std::uint32_t six = 0; six < 4; ++six) {
    std::memcpy(&sixes, &good[32 + 4 * (sixes + six)], sizeof sixes);
  }
  EXPECT_FALSE(is_refused(with(32 + 4 * (sixes + 3), 0xFFFFFFFFu)));
  EXPECT_TRUE(is_refused(with(32 + 4 * (sixes + 4), 0xFFFFFFFFu)));
  EXPECT_TRUE(is_refused(with(32 + 4 * (sixes + 4), 0u)));
  // A copy that broke off, filled up with zeros.
  EXPECT_TRUE(is_refused(good.substr(0, good.size() / 2) + std::string(good.size() / 2, '\0')));
  EXPECT_TRUE(is_refused(good.substr(0, 32) + std::string(good.size() - 32, '\0')));
  // A sector that never reached the disk.
  for (std::size_t place = 512; place + 512 < good.size(); place += 4096) {
    std::string bytes = good;
    EXPECT_TRUE(is_refused(bytes.replace(place, 512, 512, '\0'))) << "at " << place;
  }

  // Whatever is accepted keeps every look-up inside.
  std::mt19937 random(54);
  int accepted = 0;
  for (int trial = 0; trial < 300; ++trial) {
    const std::size_t place = 32 + 4 * (random() % entries);
    SetContent(path, with(place, random() % 2 == 0 ? std::uint32_t(random() % 1405)
                                                   : std::uint32_t(random() % entries)));
    bool missing;
    const std::unique_ptr<std::uint32_t[]> table(LoadStates(kSixPlus5File, path, missing));
    if (!table) continue;
    ++accepted;
    for (int hand = 0; hand < 200; ++hand) {
      std::uint32_t state = 36;
      for (int card = 0; card < 5; ++card) {
        ASSERT_LT(state + 36, entries + 1);
        state = table[state + random() % 36];
      }
    }
  }
  EXPECT_GT(accepted, 50);

  Unload();
  // A failed load can be tried again; a missing file is said each time, a bad one never.
  static std::vector<CString> messages;
  SetMessageHandler([](const CString& text) { messages.push_back(text); });
  std::filesystem::remove(path);
  EXPECT_EQ(load_fsm5(FromUtf8(folder / "")) + load_fsm5(FromUtf8(folder / "")), 0);
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_EQ(messages[0], L"Error: Can not open file " + FromUtf8(folder / "" + "/six-plus-5.bin"));
  // What is no file is as one that is missing; nobody waits for the other end of a FIFO.
  std::filesystem::create_directory(path);
  EXPECT_EQ(load_fsm5(FromUtf8(folder / "")), 0);
  std::filesystem::remove(path);
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(load_fsm5(FromUtf8(folder / "")), 0);
  EXPECT_EQ(messages, std::vector<CString>(4, messages[0]));
  std::filesystem::remove(path);
  SetContent(path, good.substr(0, 99));
  EXPECT_EQ(load_fsm5(FromUtf8(folder / "")), 0);
  EXPECT_EQ(messages.size(), 4u);
  EXPECT_EQ(fsm5.five_cards, nullptr);
  SetContent(path, good);
  EXPECT_EQ(load_fsm5(FromUtf8(folder / "")), 1);
  EXPECT_NE(fsm5.five_cards, nullptr);
  std::filesystem::remove(path);
  EXPECT_EQ(::load_fsm5(), 1) << "it is loaded";
  const std::filesystem::path here = std::filesystem::current_path();
  std::filesystem::current_path(folder / "");
  EXPECT_EQ(::load_fsm7(), 0);
  EXPECT_EQ(messages.back(), L"Error: Can not open file six-plus-7.bin");
  WriteStates(folder, kSixPlus7File);
  EXPECT_EQ(::load_fsm7(), 1);
  std::filesystem::current_path(here);
  SetMessageHandler({});
}

}  // namespace
}  // namespace pokermath
