// Short-deck equity: the calculations of Hold'em with 36 cards.

#include <array>
#include <optional>
#include <vector>

#include "contracts/cached_matchup.h"
#include "contracts/cached_opponents.h"
#include "contracts/state_machines.h"
#include "contracts/stopwatch.h"
#include "kernels/known_matchups.h"
#include "kernels/range_count.h"
#include "kernels/trials.h"
#include "kernels/weak_hand.h"
#include "pokermath/equity.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// The 36 card codes, rising.
constexpr auto kShortDeckCards = [] {
  std::array<int, 36> cards{};
  std::size_t size = 0;
  for (int card = 0; card < 52; ++card) {
    if (card % 13 >= kLowestShortDeckCard) cards[size++] = card;
  }
  return cards;
}();

int CardAt(int index) { return kShortDeckCards[static_cast<std::size_t>(index)]; }

bool HoldsAbsentCard(std::span<const int> cards) {
  return (Bits(cards) & AbsentCards(Deck::kShort)) != 0;
}

const EquityTable& LoadedTable() {
  static const EquityTable none;
  return fsm5.equity ? *fsm5.equity : none;
}

double CountShare(const int* hand, std::span<const int> board, Street street, const Spec& spec) {
  return ShareOf(CountAgainst(Deck::kShort, HandOf(hand), HoldingsOf(spec), board, street));
}

// A hand with a card that is not in the deck is worth nothing: it ties with its like and loses to
// any other on every board that can be dealt.
Tally CountAbsent(std::span<const int, 2> hand1, std::span<const int, 2> hand2) {
  const std::uint64_t dealt = (Bits(hand1) | Bits(hand2)) & ~AbsentCards(Deck::kShort);
  Tally tally{.cases = Choose(36 - __builtin_popcountll(dealt), 5)};
  if (HoldsAbsentCard(hand1) && HoldsAbsentCard(hand2)) {
    tally.ties = tally.cases;
  } else if (HoldsAbsentCard(hand2)) {
    tally.wins = tally.cases;
  }
  return tally;
}

Tally CountPair(std::span<const int, 2> hand1, std::span<const int, 2> hand2) {
  if (HoldsAbsentCard(hand1) || HoldsAbsentCard(hand2)) return CountAbsent(hand1, hand2);
  return CountBeforeFlop(Deck::kShort, hand1.data(), hand2.data(), Street::kRiver);
}

// A card below six is worth nothing here, the other one plays.
Tally CountAgainstRandom(std::span<const int, 2> hand) {
  if (HoldsAbsentCard(hand)) return CountWeakHand(hand);
  std::vector<Combination> holdings;
  for (std::size_t i = 0; i < kShortDeckCards.size(); ++i) {
    for (std::size_t j = i + 1; j < kShortDeckCards.size(); ++j) {
      holdings.emplace_back(kShortDeckCards[i], kShortDeckCards[j]);
    }
  }
  return CountAgainst(Deck::kShort, hand, holdings, {}, Street::kRiver);
}

// What GetWinHandVsHand6Plus says of every live holding of a range.
double SumOfMatchups(int* hand, const Spec& spec) {
  const std::uint64_t taken = Bits(HandOf(hand)) | AbsentCards(Deck::kShort);
  double all_wins = 0;
  double all_boards = 0;
  for (const Combination& cards : spec.combinations()) {
    if ((Bits(cards) & taken) != 0) continue;
    int opponent[2] = {cards.first, cards.second};
    double wins, boards;
    GetWinHandVsHand6Plus(hand, opponent, wins, boards);
    all_wins += wins;
    all_boards += boards;
  }
  return all_wins / all_boards;
}

struct Opponent;
bool HasFree(const Opponent& opponent, std::uint64_t used);

// The holdings of an opponent, one of which is drawn for each deal.
struct Opponent {
  std::vector<Combination> holdings;
  EasyRandom random{0, 1};

  // Draws a holding that is free, false if there is none.
  bool Draw(std::uint64_t used, Combination& drawn) {
    constexpr int kPatience = 100;
    for (int draws = 0;; ++draws) {
      drawn = holdings[static_cast<std::size_t>(random.DrawRandomNumber())];
      if ((Bits(drawn) & used) == 0) return true;
      if (draws == kPatience && !HasFree(*this, used)) return false;
    }
  }
};

// Leading run of the holdings that share no card with the known ones; holdings of other decks are
// passed over.
std::vector<Combination> LeadingRun(const Spec& spec, std::uint64_t known) {
  std::vector<Combination> run;
  for (const Combination& cards : spec.combinations()) {
    if ((Bits(cards) & AbsentCards(Deck::kShort)) != 0) continue;
    if ((Bits(cards) & known) != 0) break;
    run.push_back(cards);
  }
  return run;
}

bool HasFree(const Opponent& opponent, std::uint64_t used) {
  return std::ranges::any_of(
      opponent.holdings, [used](const Combination& cards) { return (Bits(cards) & used) == 0; });
}

// Searches for holdings that all opponents can have at the same time, the opponent with the fewest
// free ones first.
class DealSearch {
 public:
  enum class Result { kPossible, kImpossible, kUnknown };

  Result Search(std::span<const Opponent> opponents, std::uint64_t used) {
    std::vector<const Opponent*> waiting;
    for (const Opponent& opponent : opponents) waiting.push_back(&opponent);
    const bool found = Find(waiting, used);
    return found ? Result::kPossible : steps_ > kMostSteps ? Result::kUnknown : Result::kImpossible;
  }

 private:
  static constexpr int kMostSteps = 20000;

  bool Find(std::vector<const Opponent*> waiting, std::uint64_t used) {
    if (waiting.empty()) return true;
    if (++steps_ > kMostSteps) return false;
    const auto free_holdings = [used](const Opponent* opponent) {
      return std::ranges::count_if(opponent->holdings, [used](const Combination& cards) {
        return (Bits(cards) & used) == 0;
      });
    };
    const auto next = std::ranges::min_element(waiting, {}, free_holdings);
    const Opponent& opponent = **next;
    waiting.erase(next);
    return std::ranges::any_of(opponent.holdings, [&](const Combination& cards) {
      return (Bits(cards) & used) == 0 && Find(waiting, used | Bits(cards));
    });
  }

  int steps_ = 0;
};

// A deal to a hand, its board and its opponents: 0 when the hand loses, else how many share the
// pot; nothing when an opponent had no free holding.
std::optional<int> Deal(std::array<int, 7> hero, int known, std::uint64_t used,
                        EasyRandom& board_random, std::span<Opponent> opponents) {
  for (int i = known; i < 5; ++i) {
    int card;
    do {
      card = CardAt(board_random.DrawRandomNumber());
    } while ((used >> card & 1) != 0);
    hero[static_cast<std::size_t>(2 + i)] = card;
    used |= Bit(card);
  }
  // A board that leaves an opponent nothing counts for nobody, whoever would be dealt first.
  for (const Opponent& opponent : opponents) {
    if (!HasFree(opponent, used)) return std::nullopt;
  }
  const int value = eval_rank7_via_fsm7(hero.data());
  std::array<int, 7> other = hero;
  int sharers = 1;
  for (Opponent& opponent : opponents) {
    Combination cards;
    if (!opponent.Draw(used, cards)) return std::nullopt;
    used |= Bits(cards);
    other[0] = cards.first;
    other[1] = cards.second;
    const int other_value = eval_rank7_via_fsm7(other.data());
    if (other_value > value) return 0;
    sharers += other_value == value ? 1 : 0;
  }
  return sharers;
}

}  // namespace

Tally ShortDeckHandVsHand(std::span<const int, 2> hand1, std::span<const int, 2> hand2,
                          std::span<const int> board, Street street) {
  if (board.size() > static_cast<std::size_t>(street)) return {};
  const Combination opponent(hand2[0], hand2[1]);
  return CountAgainst(Deck::kShort, hand1, {&opponent, 1}, board, street);
}

Tally ShortDeckHandVsRange(std::span<const int, 2> hand, const Spec& range,
                           std::span<const int> board, Street street) {
  if (board.size() > static_cast<std::size_t>(street)) return {};
  return CountAgainst(Deck::kShort, hand, HoldingsOf(range), board, street);
}

}  // namespace pokermath

double PokerLogic::getProbabilityOfWinHoldem6Plus(int* hand, int* board, int boardCount,
                                                  int players) {
  if (boardCount < 0 || boardCount > 5 || players < 2 || players > 10) return 0.0;
  if (load_fsm7() == 0 || trialCount < 1) return 0.0;
  random.SetInterval(0, 35);
  pokermath::Trials<2, eval_rank7_via_fsm7> trials(
      pokermath::HandOf(hand), {board, static_cast<std::size_t>(boardCount)}, players);
  const auto draw = [this] { return pokermath::CardAt(random.DrawRandomNumber()); };
  double sum = 0.0;
  for (int i = 0; i < trialCount; ++i) {
    const int sharers = trials.Deal(draw);
    if (sharers > 0) sum += 1.0 / sharers;
  }
  return sum / trialCount;
}

double PokerLogic::RiverEquityHandVsRandomOnPreFlop6Plus(int* hand, int& count,
                                                         int& elapsed) const {
  using namespace pokermath;
  const Stopwatch stopwatch;
  const Tally tally = CountAgainstRandom(HandOf(hand));
  count = static_cast<int>(tally.cases);
  elapsed = stopwatch.Milliseconds();
  return ShareOf(tally);
}

double getProbabilityOfWinHoldem6PlusCommon(int* hand, int* board, int boardCount, Spec* specs,
                                            int opponents, int& trials) {
  using namespace pokermath;
  if (boardCount < 0 || boardCount > 5 || opponents < 1 || opponents > 9 || trials < 1) return 0.0;
  if (::load_fsm7() == 0) return 0.0;
  std::array<int, 7> hero = {hand[0], hand[1]};
  std::copy(board, board + boardCount, hero.begin() + 2);
  const std::uint64_t known = Bits(std::span(hero).first(static_cast<std::size_t>(2 + boardCount)));
  std::vector<Opponent> players(static_cast<std::size_t>(opponents));
  for (std::size_t i = 0; i < players.size(); ++i) {
    players[i].holdings = LeadingRun(specs[i], known);
    if (players[i].holdings.empty()) return 0.0;
    players[i].random.SetInterval(0, static_cast<int>(players[i].holdings.size()) - 1);
    players[i].random.SetTimerSeed();
  }
  const DealSearch::Result possible = DealSearch().Search(players, known);
  if (possible == DealSearch::Result::kImpossible) return 0.0;

  // Where the search gave up, so many deals in vain say that there is none.
  constexpr int kMostInVain = 100000;
  int in_vain = 0;
  EasyRandom board_random(0, 35);
  double sum = 0.0;
  for (int trial = 0; trial < trials;) {
    const std::optional<int> sharers = Deal(hero, boardCount, known, board_random, players);
    if (!sharers) {
      if (++in_vain == kMostInVain && possible == DealSearch::Result::kUnknown) return 0.0;
      continue;
    }
    in_vain = 0;
    if (*sharers > 0) sum += 1.0 / *sharers;
    ++trial;
  }
  return sum / trials;
}

void getProbabilityOfWinWithNoBoard6Plus(int* hand1, int* hand2, double& wins, double& boards) {
  using namespace pokermath;
  Answer(CountPair(HandOf(hand1), HandOf(hand2)), wins, boards);
}

int GetWinHandVsHand6Plus(int* hand1, int* hand2, double& wins, double& boards) {
  using namespace pokermath;
  AnswerMatchup(LoadedTable(), hand1, hand2, kShortDeckBoards, wins, boards,
                [&] { return CountPair(HandOf(hand1), HandOf(hand2)); });
  return 1;
}

int load_equity_table_6Plus(CString path) {
  auto& table = fsm5.equity;
  if (!table) table = std::make_unique<pokermath::EquityTable>();
  return pokermath::LoadEquityTable(path, *table);
}

double getProbabilityOfWinBySpectr6Plus(int* hand, int* board, int boardCount, const Spec& spec) {
  switch (boardCount) {
    case 0:
      return getProbabilityOfWinBySpectrWithNoBoard6Plus(hand, spec);
    case 3:
      return getProbabilityOfWinBySpectrWithFlop6Plus(hand, board, spec);
    case 4:
      return getProbabilityOfWinBySpectrWithFlopAndTurn6Plus(hand, board, spec);
    case 5:
      return pokermath::CountShare(hand, {board, 5}, pokermath::Street::kRiver, spec);
    default:
      return 0.0;
  }
}

double getProbabilityOfWinBySpectrWithNoBoard6Plus(int* hand, const Spec& spec) {
  using namespace pokermath;
  if (HoldsAbsentCard(HandOf(hand))) return SumOfMatchups(hand, spec);
  return ShareOf(CountWithTable(Deck::kShort, HandOf(hand), HoldingsOf(spec), LoadedTable()));
}

double getProbabilityOfWinBySpectrWithFlop6Plus(int* hand, int* board, const Spec& spec) {
  return pokermath::CountShare(hand, {board, 3}, pokermath::Street::kRiver, spec);
}

double getProbabilityOfWinBySpectrWithFlopAndTurn6Plus(int* hand, int* board, const Spec& spec) {
  return pokermath::CountShare(hand, {board, 4}, pokermath::Street::kRiver, spec);
}

double getProbabilityOfWinBySpectrToFlop6Plus(int* hand, int* board, int boardCount,
                                              const Spec& spec) {
  if (boardCount == 0) return getProbabilityOfWinBySpectrWithNoBoardToFlop6Plus(hand, spec);
  if (boardCount < 3 || boardCount > 5) return 0.0;
  return getProbabilityOfWinBySpectrWithFlopToFlop6Plus(hand, board, spec);
}

double getProbabilityOfWinBySpectrWithNoBoardToFlop6Plus(int* hand, const Spec& spec) {
  return pokermath::CountShare(hand, {}, pokermath::Street::kFlop, spec);
}

double getProbabilityOfWinBySpectrWithFlopToFlop6Plus(int* hand, int* board, const Spec& spec) {
  return pokermath::CountShare(hand, {board, 3}, pokermath::Street::kFlop, spec);
}

double getProbabilityOfWinBySpectrToTurn6Plus(int* hand, int* board, int boardCount,
                                              const Spec& spec) {
  switch (boardCount) {
    case 0:
      return getProbabilityOfWinBySpectrWithNoBoardToTurn6Plus(hand, spec);
    case 3:
      return getProbabilityOfWinBySpectrWithFlopToTurn6Plus(hand, board, spec);
    case 4:
    case 5:
      return getProbabilityOfWinBySpectrWithTurnToTurn6Plus(hand, board, spec);
    default:
      return 0.0;
  }
}

double getProbabilityOfWinBySpectrWithNoBoardToTurn6Plus(int* hand, const Spec& spec) {
  return pokermath::CountShare(hand, {}, pokermath::Street::kTurn, spec);
}

double getProbabilityOfWinBySpectrWithFlopToTurn6Plus(int* hand, int* board, const Spec& spec) {
  return pokermath::CountShare(hand, {board, 3}, pokermath::Street::kTurn, spec);
}

double getProbabilityOfWinBySpectrWithTurnToTurn6Plus(int* hand, int* board, const Spec& spec) {
  return pokermath::CountShare(hand, {board, 4}, pokermath::Street::kTurn, spec);
}
