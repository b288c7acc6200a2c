// PokerLogic's state table: building one ID after the other for callers that want to, and the table
// as a whole.

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <utility>

#include "contracts/hand_ranks_builder.h"
#include "eval/scales.h"
#include "platform/text.h"
#include "pokermath/poker_logic.h"

PokerLogic& PokerLogic::operator=(PokerLogic&& other) noexcept {
  if (this == &other) return *this;
  deck = other.deck;
  IDs = std::exchange(other.IDs, {});
  HR = std::exchange(other.HR, {});
  numIDs = std::exchange(other.numIDs, 1);
  numcards = std::exchange(other.numcards, 0);
  maxHR = std::exchange(other.maxHR, 0);
  maxID = std::exchange(other.maxID, 0);
  equityTable = std::exchange(other.equityTable, {});
  equityTurnTable = std::exchange(other.equityTurnTable, {});
  PokerCombinations = std::move(other.PokerCombinations);
  random = other.random;
  trialCount = other.trialCount;
  return *this;
}

std::int64_t PokerLogic::MakeID(std::int64_t id, int card) {
  // Slot 0 takes the new card, slots 1 to 6 the cards of the ID.
  std::array<std::uint64_t, 8> cards{};
  std::array<int, 16> suit_counts{};
  std::array<int, 16> rank_counts{};
  const auto number = static_cast<std::uint64_t>(card - 1);
  cards[0] = ((number >> 2) + 1) << 4 | ((number & 3) + 1);
  for (std::size_t i = 1; i <= 6; ++i) {
    cards[i] = static_cast<std::uint64_t>(id) >> (8 * (i - 1)) & 0xFF;
  }
  bool repeated = false;
  numcards = 0;
  for (std::size_t i = 0; cards[i] != 0; ++i) {
    ++numcards;
    ++suit_counts[cards[i] & 15];
    ++rank_counts[cards[i] >> 4 & 15];
    repeated = repeated || (i > 0 && cards[i] == cards[0]);
  }
  if (repeated) return 0;
  if (numcards > 4 && *std::ranges::max_element(rank_counts) > 4) return 0;
  const int needed = numcards - 2;
  for (std::uint64_t& slot : cards) {
    if (needed > 1 && suit_counts[slot & 15] < needed) slot &= 0xF0;
  }
  std::ranges::sort(cards, std::greater<>());
  std::uint64_t made = 0;
  for (std::size_t i = 0; i < 7; ++i) made |= cards[i] << (8 * i);
  return static_cast<std::int64_t>(made);
}

int PokerLogic::SaveID(std::int64_t id) {
  if (IDs.empty()) IDs = {0};
  if (id == 0) return 0;
  const auto wanted = static_cast<std::uint64_t>(id);
  const auto used = IDs.begin() + numIDs;
  const auto place = std::lower_bound(IDs.begin(), used, wanted);
  const int slot = static_cast<int>(place - IDs.begin());
  if (place != used && *place == wanted) return slot;
  IDs.insert(place, wanted);
  // A zero slot ends the IDs; where there is one to spare, the insertion has used it up.
  if (IDs.size() > pokermath::kHandRanksSlots && IDs.back() == 0) IDs.pop_back();
  ++numIDs;
  maxID = std::max(maxID, wanted);
  return slot;
}

int PokerLogic::DoEval(std::int64_t id) {
  if (id == 0) return 0;
  std::array<unsigned, 8> cards{};
  int count = 0;
  unsigned main_suit = 20;  // the last suit that is known; 20 matches none
  for (auto rest = static_cast<std::uint64_t>(id); (rest & 0xFF) != 0 && count < 7; rest >>= 8) {
    const auto card = static_cast<unsigned>(rest & 0xFF);
    cards[static_cast<std::size_t>(count++)] = card;
    if ((card & 15) != 0) main_suit = card & 15;
  }
  // Cards without a suit take turns through the suits, past the main one, so that they cannot make
  // a flush.
  std::array<int, 7> words{};
  unsigned next_suit = 1;
  const auto draw_suit = [&next_suit] {
    const unsigned suit = next_suit;
    next_suit = suit == 4 ? 1 : suit + 1;
    return suit;
  };
  for (int i = 0; i < count; ++i) {
    const unsigned card = cards[static_cast<std::size_t>(i)];
    unsigned suit = card & 15;
    if (suit == 0) {
      suit = draw_suit();
      if (suit == main_suit) suit = draw_suit();
    }
    const unsigned rank = (card >> 4) - 1;
    // Suit 1 is clubs, the highest of the suit bits; which suit gets which bit changes no value.
    words[static_cast<std::size_t>(i)] = deck[static_cast<int>((suit - 1) * 13 + rank)];
  }
  int value = 0;
  switch (count) {
    case 5:
      value = eval_5hand_fast(words[0], words[1], words[2], words[3], words[4]);
      break;
    case 6:
      value = eval_6hand(words.data());
      break;
    case 7:
      value = eval_7hand(words.data());
      break;
    default:
      std::printf("    Problem with numcards = %d!!\n", count);
      return 0;
  }
  return pokermath::ToHandRanks(pokermath::OtherScale(value));
}

int PokerLogic::generate_table(CString fileName) {
  IDs = {0};
  numIDs = 1;
  numcards = 0;
  maxHR = 0;
  maxID = 0;
  const std::string path = pokermath::ToUtf8(fileName);
  if (pokermath::LoadHandRanks(path, HR)) return 0;

  pokermath::HandRanks table = pokermath::BuildHandRanks();
  IDs = std::move(table.ids);
  HR = std::move(table.entries);
  numIDs = static_cast<int>(pokermath::kHandRanksSlots) - 1;
  numcards = 7;
  maxHR = static_cast<int>(pokermath::kHandRanksEntries) - 1;
  maxID = IDs[static_cast<std::size_t>(numIDs) - 1];
  return pokermath::SaveHandRanks(path, HR) ? 0 : 1;
}

int PokerLogic::LookupSingleHands(int* codes) const {
  std::array<int, 7> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    numbers[i] = codes[i] % 13 * 4 + codes[i] / 13 + 1;
  }
  std::ranges::sort(numbers);
  return LookupHand(numbers.data());
}
