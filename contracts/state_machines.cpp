// Evaluators that walk through a finite-state table.

#include "contracts/state_machines.h"

#include <algorithm>

#include "eval/five_card_states.h"
#include "eval/short_deck.h"
#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

// Places of the card codes in a row.
constexpr auto kFiveCardIndexes = [] {
  std::array<std::uint32_t, 52> indexes{};
  for (int card = 0; card < 52; ++card) {
    indexes[static_cast<std::size_t>(card)] = FiveCardStateIndex(card);
  }
  return indexes;
}();
constexpr auto kShortDeckIndexes = [] {
  std::array<std::uint32_t, 52> indexes{};
  for (int card = 0; card < 52; ++card) {
    const int rank = card % 13 - kLowestShortDeckCard;
    indexes[static_cast<std::size_t>(card)] =
        rank < 0 ? 64 : static_cast<std::uint32_t>(rank * 4 + card / 13);
  }
  return indexes;
}();
constexpr auto kOmahaIndexes = [] {
  std::array<std::uint32_t, 52> indexes{};
  for (int card = 0; card < 52; ++card) {
    indexes[static_cast<std::size_t>(card)] =
        static_cast<std::uint32_t>(card % 13 * 4 + card / 13 + 1);
  }
  return indexes;
}();

std::uint32_t Step(const std::uint32_t* table, std::uint32_t state,
                   const std::array<std::uint32_t, 52>& indexes, int card) {
  return table[state + indexes[static_cast<std::size_t>(card)]];
}

template <int count>
int WalkShortDeck(const std::uint32_t* table, const int* cards) {
  if (table == nullptr) return 0;
  std::uint32_t state = 36;
  std::uint32_t missing = 0;
  for (int i = 0; i < count; ++i) {
    const std::uint32_t index = kShortDeckIndexes[static_cast<std::size_t>(cards[i])];
    missing |= index;
    state = table[state + (index & 63)];
  }
  return missing > 63 ? 0 : static_cast<int>(state);
}

}  // namespace
}  // namespace pokermath

int LookupFsm5(int* cards) {
  using namespace pokermath;
  std::uint32_t state = 52;
  for (int i = 0; i < 5; ++i) state = Step(kFiveCardStates, state, kFiveCardIndexes, cards[i]);
  return static_cast<int>(state);
}

int get_rank7(int* hole, int* board) {
  using namespace pokermath;
  std::uint32_t best = 0;
  for (int a = 0; a < 3; ++a) {
    const std::uint32_t one = Step(kFiveCardStates, 52, kFiveCardIndexes, board[a]);
    for (int b = a + 1; b < 4; ++b) {
      const std::uint32_t two = Step(kFiveCardStates, one, kFiveCardIndexes, board[b]);
      for (int c = b + 1; c < 5; ++c) {
        const std::uint32_t three = Step(kFiveCardStates, two, kFiveCardIndexes, board[c]);
        for (int i = 0; i < 3; ++i) {
          const std::uint32_t four = Step(kFiveCardStates, three, kFiveCardIndexes, hole[i]);
          for (int j = i + 1; j < 4; ++j) {
            best = std::max(best, Step(kFiveCardStates, four, kFiveCardIndexes, hole[j]));
          }
        }
      }
    }
  }
  return static_cast<int>(best);
}

int LookupHoldem6PlusFsm5(int* cards) {
  for (int i = 0; i < 5; ++i) {
    if (cards[i] % 13 < pokermath::kLowestShortDeckCard) return -1;
  }
  return pokermath::ToShortDeckOrder(LookupFsm5(cards));
}

int eval_7hand6PlusFsm5(int* cards) {
  int best = 0;
  for (int out1 = 0; out1 < 6; ++out1) {
    for (int out2 = out1 + 1; out2 < 7; ++out2) {
      int five[5];
      int* place = five;
      for (int i = 0; i < 7; ++i) {
        if (i != out1 && i != out2) *place++ = cards[i];
      }
      best = std::max(best, LookupHoldem6PlusFsm5(five));
    }
  }
  return best;
}

int eval_rank5_via_fsm5(const int* cards) {
  return pokermath::WalkShortDeck<5>(fsm5.five_cards, cards);
}

int eval_rank6_via_fsm5(int* cards) {
  int best = 0;
  for (int out = 5; out >= 0; --out) {
    int five[5];
    int* place = five;
    for (int i = 0; i < 6; ++i) {
      if (i != out) *place++ = cards[i];
    }
    best = std::max(best, eval_rank5_via_fsm5(five));
  }
  return best;
}

int eval_rank7_via_fsm7(const int* cards) {
  return pokermath::WalkShortDeck<7>(fsm5.seven_cards, cards);
}

int eval_rank7_via_ofsm7(int* hole, int holeCount, int* board) {
  using namespace pokermath;
  const std::uint32_t* table = ofsm_omaha7.table;
  if (table == nullptr) return 0;
  std::uint32_t state = 52;
  for (int i = 0; i < 5; ++i) state = Step(table, state, kOmahaIndexes, board[i]);
  std::uint32_t best = 0;
  for (int i = 0; i + 1 < holeCount; ++i) {
    const std::uint32_t one = Step(table, state, kOmahaIndexes, hole[i]);
    for (int j = i + 1; j < holeCount; ++j)
      best = std::max(best, Step(table, one, kOmahaIndexes, hole[j]));
  }
  return static_cast<int>(best);
}
