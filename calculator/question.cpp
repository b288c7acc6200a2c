// The gate in front of all kernels.
//
// Cards that are certain, on the board, dead or in a hand that is the only one of its range, are
// taken out of all other ranges, again and again until nothing changes: such hands have no cases.
// Then some deal of all ranges is looked for, so that "nobody can hold this" is an error and never
// an empty count.

#include "calculator/question.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string>
#include <utility>

#include "pokermath/cards.h"

namespace pokermath {
namespace {

std::string NamesOf(CardSet cards) {
  // As people write hands: the highest rank first.
  std::vector<int> codes(cards.begin(), cards.end());
  std::ranges::sort(codes, comparefun);
  std::string names;
  for (const int card : codes) names += CardName(card);
  return names;
}

// A player as errors name him.
struct Seat {
  std::size_t number;  // from 0, folded ones by themselves
  bool folded;

  std::string Name() const {
    return (folded ? "folded player " : "player ") + std::to_string(number + 1);
  }
};

class Gate {
 public:
  explicit Gate(const EquityQuestion& question)
      : question_(question), rules_(RulesOf(question.game)) {
    for (std::size_t i = 0; i < question.players.size(); ++i) {
      Add(question.players[i], {i, false});
    }
    for (std::size_t i = 0; i < question.folded.size(); ++i) {
      Add(question.folded[i], {i, true});
    }
  }

  std::optional<Error> Check() {
    for (const auto check :
         {&Gate::CheckNumbers, &Gate::CheckBoard, &Gate::CheckRanges, &Gate::CheckRoom,
          &Gate::RemoveCertainCards, &Gate::CheckDetail, &Gate::FindDeal}) {
      if (std::optional<Error> error = (this->*check)()) return error;
    }
    return std::nullopt;
  }

  const std::vector<HandRange>& ranges() const { return ranges_; }

 private:
  using Found = std::optional<Error>;

  // Hands of some cards only are not dealt from all that are left: they are listed.
  void Add(const HandRange& range, Seat seat) {
    const CardSet known = question_.board | question_.dead;
    const bool is_list = RulesOf(range.game()).hand_size == rules_.hand_size && range.IsEvery() &&
                         !(rules_.Deck() - range.EveryOf() - known).empty();
    ranges_.push_back(
        is_list ? HandRange(question_.game, {range.hands().begin(), range.hands().end()}) : range);
    seats_.push_back(seat);
  }

  static Error Wrong(ErrorCode code, std::string text) { return {code, std::move(text)}; }
  Error Wrong(ErrorCode code, std::size_t seat, const std::string& text, int card = -1) const {
    Error error{code, seats_[seat].Name() + ": " + text, -1, card};
    (seats_[seat].folded ? error.folded : error.player) = static_cast<int>(seats_[seat].number);
    return error;
  }

  Found CheckNumbers() {
    const std::size_t players = question_.players.size();
    if (players < 2 || players > kMostPlayers) {
      return Wrong(ErrorCode::kPlayers, std::to_string(players) + " player" +
                                            (players == 1 ? "" : "s") + ": expected 2 to " +
                                            std::to_string(kMostPlayers));
    }
    if (!(question_.exact_budget >= 0)) {
      return Wrong(ErrorCode::kLimit, "the budget of operations is 0 or more");
    }
    if (question_.method == Method::kExact) return std::nullopt;
    const SamplingLimits& limits = question_.sampling;
    if (!(limits.standard_error >= 0 && limits.standard_error <= 1)) {
      return Wrong(ErrorCode::kLimit, "a standard error of " +
                                          std::to_string(limits.standard_error) +
                                          ": expected a share of the pot, 0 to 1");
    }
    if (limits.trials < 0) {
      return Wrong(ErrorCode::kLimit,
                   std::to_string(limits.trials) + " trials: expected 1 or more, 0 for no limit");
    }
    if (limits.trials == 0 && limits.standard_error == 0) {
      return Wrong(ErrorCode::kLimit, "sampling has no end: expected a standard error or trials");
    }
    return std::nullopt;
  }

  Found CheckBoard() {
    const CardSet deck = rules_.Deck();
    for (const int card : (question_.board | question_.dead) - deck) {
      return Error{ErrorCode::kCard, NotInDeck(card), -1, card};
    }
    for (const int card : question_.board& question_.dead) {
      return Error{ErrorCode::kCard, CardName(card) + " is on the board and dead", -1, card};
    }
    const int street = static_cast<int>(question_.street);
    if (street < 3 || street > 5) {
      return Wrong(ErrorCode::kBoard, "the street is the flop, the turn or the river");
    }
    if (question_.board.size() > street) {
      return Wrong(ErrorCode::kBoard, "a board of " + std::to_string(question_.board.size()) +
                                          " cards: expected " + std::to_string(street) +
                                          " at the most, as the street has");
    }
    if (question_.detail.next && question_.board.size() == street) {
      return Wrong(ErrorCode::kBoard,
                   "nothing comes next on a board of " + std::to_string(street) + " cards");
    }
    return std::nullopt;
  }

  std::string NotInDeck(int card) const {
    if (card >= 52) return "card code " + std::to_string(card) + ": expected 0 to 51";
    return CardName(card) + " is not in the short deck, which has six to ace";
  }

  Found CheckRanges() {
    for (std::size_t seat = 0; seat < ranges_.size(); ++seat) {
      const HandRange& range = ranges_[seat];
      const GameRules& of_range = RulesOf(range.game());
      if (of_range.hand_size != rules_.hand_size || of_range.lowest_rank != rules_.lowest_rank) {
        return Wrong(ErrorCode::kGame, seat,
                     std::string("a range of ") + of_range.title + ": expected " + rules_.title);
      }
      if (range.empty()) return Wrong(ErrorCode::kHand, seat, "an empty range: expected hands");
      if (range.IsEvery()) continue;
      for (const WeightedHand& hand : range.hands()) {
        if (Found error = CheckHand(seat, hand)) return error;
      }
    }
    return std::nullopt;
  }

  Found CheckHand(std::size_t seat, const WeightedHand& hand) const {
    for (const int card : hand.cards - rules_.Deck()) {
      return Wrong(ErrorCode::kCard, seat, NotInDeck(card), card);
    }
    if (hand.cards.size() != rules_.hand_size) {
      return Wrong(ErrorCode::kHand, seat,
                   "a hand of " + std::to_string(hand.cards.size()) + " different cards (" +
                       NamesOf(hand.cards) + "): expected " + std::to_string(rules_.hand_size));
    }
    if (hand.weight < 1 || hand.weight > kWholeWeight) {
      return Wrong(ErrorCode::kHand, seat,
                   NamesOf(hand.cards) + " weighs " + std::to_string(hand.weight) +
                       " ten-thousandths: expected 1 to " + std::to_string(kWholeWeight));
    }
    return std::nullopt;
  }

  Found CheckRoom() {
    const int left = (rules_.Deck() - question_.board - question_.dead).size();
    const int needed = static_cast<int>(ranges_.size()) * rules_.hand_size +
                       static_cast<int>(question_.street) - question_.board.size();
    if (needed <= left) return std::nullopt;
    return Wrong(ErrorCode::kBlocked, std::to_string(needed) + " cards are needed for " +
                                          std::to_string(ranges_.size()) +
                                          " players and the board, but the deck has " +
                                          std::to_string(left) + " left");
  }

  Found RemoveCertainCards() {
    const CardSet known = question_.board | question_.dead;
    for (std::size_t seat = 0; seat < ranges_.size(); ++seat) {
      if (Found error = Remove(seat, known, nullptr)) return error;
    }
    std::vector<bool> certain(ranges_.size(), false);
    for (bool changed = true; changed;) {
      changed = false;
      for (std::size_t holder = 0; holder < ranges_.size(); ++holder) {
        if (certain[holder] || ranges_[holder].size() != 1) continue;
        certain[holder] = changed = true;
        const CardSet hand = ranges_[holder].hands()[0].cards;
        for (std::size_t seat = 0; seat < ranges_.size(); ++seat) {
          if (seat == holder) continue;
          if (Found error = Remove(seat, hand, &seats_[holder])) return error;
        }
      }
    }
    return std::nullopt;
  }

  // Takes cards out of a range, or says that this leaves nothing of it. They are those of the board
  // and the dead ones, or somebody's only hand.
  Found Remove(std::size_t seat, CardSet cards, const Seat* holder) {
    const HandRange left = ranges_[seat].Without(cards);
    if (!left.empty()) {
      ranges_[seat] = left;
      return std::nullopt;
    }
    if (ranges_[seat].size() == 1) {
      const int card = *(ranges_[seat].hands()[0].cards & cards).begin();
      return Wrong(ErrorCode::kCard, seat, CardName(card) + " is " + PlaceOf(card, holder), card);
    }
    return Wrong(ErrorCode::kBlocked, seat,
                 "no combination of the range is left beside " +
                     (holder == nullptr ? "the board and the dead cards"
                                        : NamesOf(cards) + " of " + holder->Name()));
  }

  std::string PlaceOf(int card, const Seat* holder) const {
    if (holder != nullptr) return "in the hand of " + holder->Name() + " already";
    return question_.board.Contains(card) ? "on the board already" : "a dead card";
  }

  // Three players of any five cards, but not four.
  Found CheckDetail() {
    if (!question_.detail.hands) return std::nullopt;
    constexpr std::size_t kMostHands = 10'000'000;
    std::size_t hands = 0;
    for (std::size_t i = 0; i < question_.players.size(); ++i) hands += ranges_[i].size();
    if (hands <= kMostHands) return std::nullopt;
    return Wrong(ErrorCode::kLimit, "details of " + std::to_string(hands) + " hands: expected " +
                                        std::to_string(kMostHands) + " at the most");
  }

  // Looks for one deal of the listed ranges, the smallest ones first.
  Found FindDeal() {
    std::vector<std::span<const WeightedHand>> listed;
    for (const HandRange& range : ranges_) {
      if (!range.IsEvery()) listed.push_back(range.hands());
    }
    if (!HaveRoom(listed)) return NoDeal();
    std::ranges::sort(listed, {}, [](const auto& hands) { return hands.size(); });
    std::int64_t tries = 10'000'000;
    if (Fits(listed, {}, tries) || tries <= 0) return std::nullopt;
    return NoDeal();
  }

  static Error NoDeal() {
    return Wrong(ErrorCode::kBlocked,
                 "the ranges leave no deal: every choice of hands has a card twice");
  }

  // Whether all cards of some ranges together are as many as their players hold.
  bool HaveRoom(std::span<const std::span<const WeightedHand>> ranges) const {
    CardSet all;
    for (const auto& range : ranges) {
      for (const WeightedHand& hand : range) all |= hand.cards;
    }
    return static_cast<std::size_t>(all.size()) >=
           ranges.size() * static_cast<std::size_t>(rules_.hand_size);
  }

  // Ranges so entangled that a deal is not found soon are believed to have one.
  static bool Fits(std::span<const std::span<const WeightedHand>> ranges, CardSet taken,
                   std::int64_t& tries) {
    if (ranges.empty()) return true;
    for (const WeightedHand& hand : ranges[0]) {
      if (--tries <= 0) return false;
      if (!hand.cards.Meets(taken) && Fits(ranges.subspan(1), taken | hand.cards, tries)) {
        return true;
      }
    }
    return false;
  }

  const EquityQuestion& question_;
  const GameRules& rules_;
  std::vector<HandRange> ranges_;  // the players', then the folded ones'
  std::vector<Seat> seats_;
};

Side SideOf(const HandRange& range) {
  if (range.IsEvery()) return {range, kWholeWeight};
  std::int32_t unit = 0;
  for (const WeightedHand& hand : range.hands()) {
    if (unit == 1) break;
    // Most weigh the same as the one before.
    if (hand.weight != unit) unit = std::gcd(unit, hand.weight);
  }
  return {range, unit};
}

}  // namespace

CheckedQuestion::CheckedQuestion(EquityQuestion question)
    : question_(std::move(question)), dead_(question_.dead) {}

CardSet CheckedQuestion::certain() const {
  CardSet cards;
  for (const Side& side : players_) {
    if (side.IsOneHand()) cards |= side.range.hands()[0].cards;
  }
  return cards;
}

int CheckedQuestion::next_cards() const {
  return board().size() < 3 ? 3 - board().size() : to_come() > 0 ? 1 : 0;
}

Result<CheckedQuestion> Check(const EquityQuestion& question) {
  if (static_cast<std::size_t>(question.game) >= kGames.size()) {
    return Error{ErrorCode::kGame,
                 "a game of an unknown number: expected " + std::string(GameNames())};
  }
  Gate gate(question);
  if (std::optional<Error> error = gate.Check()) return *std::move(error);
  CheckedQuestion checked(question);
  const std::vector<HandRange>& ranges = gate.ranges();
  const std::size_t players = question.players.size();
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    if (i < players) {
      checked.players_.push_back(SideOf(ranges[i]));
    } else if (ranges[i].size() == 1) {
      checked.dead_ |= ranges[i].hands()[0].cards;
    } else if (!ranges[i].IsEvery()) {
      checked.folded_.push_back(SideOf(ranges[i]));
    }
  }
  return checked;
}

}  // namespace pokermath
