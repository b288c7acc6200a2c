// Eight threads that begin together, each with everything that may be called at the same time:
// what they get is alike, and the same as a thread gets alone. Built with the thread sanitizer
// (preset tsan), it finds races as well; so every case starts in a process where nothing was made.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <barrier>
#include <cmath>
#include <cstdint>
#include <exception>
#include <fstream>
#include <functional>
#include <set>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/text.h"
#include "pokermath/pokermath.h"
#include "tests/calculator/random_question.h"
#include "tests/calculator/signature.h"
#include "tests/cards/dealer.h"
#include "tests/contracts/write_states.h"

namespace pokermath {
namespace {

constexpr int kThreads = 8;

// What a thread got, in words that can be compared.
using Answers = std::vector<std::string>;

std::string Text(double number) { return std::to_string(number); }

// Numbers as one text; there are many of them.
class Digest {
 public:
  void Add(std::int64_t number) {
    value_ = (value_ ^ static_cast<std::uint64_t>(number)) * 0x9E3779B97F4A7C15;
    value_ ^= value_ >> 29;
  }
  std::string text() const { return std::to_string(value_); }

 private:
  std::uint64_t value_ = 1;
};

// Returns what they got.
Answers ExpectAlike(const std::function<Answers()>& act) {
  std::array<Answers, kThreads> answers;
  std::array<std::exception_ptr, kThreads> thrown;
  std::barrier start(kThreads);
  std::vector<std::jthread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      try {
        answers[i] = act();
      } catch (...) {
        thrown[i] = std::current_exception();
      }
    });
  }
  threads.clear();
  for (const std::exception_ptr& error : thrown) {
    if (error) std::rethrow_exception(error);
  }
  const Answers alone = act();
  EXPECT_FALSE(alone.empty());
  for (const Answers& got : answers) EXPECT_EQ(got, alone);
  return alone;
}

TEST(ThreadsSlow, Calculator) {
  std::ifstream file(std::string(POKERMATH_TEST_DATA) + "/signature.txt");
  std::string kept;
  std::getline(file, kept);
  EXPECT_EQ(ExpectAlike([] { return Answers{SignatureOfAnswers()}; }), Answers{kept});
}

// One plan whose steps are done by all: that is what hosts do.
TEST(ThreadsSlow, OnePlanForAll) {
  RandomQuestions questions(5);
  for (int i = 0; i < 40; ++i) {
    EquityQuestion question = questions.Next();
    question.sampling = {.standard_error = 0, .trials = 2000};
    const auto plan = Plan(question);
    if (!plan) continue;
    SCOPED_TRACE(Trace(question));
    ExpectAlike([&] {
      Sums sums = plan->NewSums();
      const std::int64_t steps = plan->steps();
      plan->Do(0, steps, sums);
      const auto answer = plan->Answer(sums);
      if (!answer) return Answers{answer.error().text};
      Answers words{answer->solver};
      for (const PlayerAnswer& player : answer->players) {
        words.push_back(Text(player.total.equity) + "/" +
                        std::to_string(player.total.cases.Value()));
      }
      return words;
    });
  }
}

TEST(ThreadsSlow, Ranges) {
  ExpectAlike([] {
    Answers words;
    for (const GameRules& rules : kGames) {
      std::vector<std::string> texts = {"15%", "QQ+,AJs+:0.5,76s", "no range"};
      if (rules.hand_size == 4) texts = {"AAKK", "JJTT@40,[A-Q]T98!9s", "10%"};
      if (rules.hand_size == 5) texts = {"AAKKQ@40", "5%"};
      if (rules.hand_size == 6) texts = {"AAKKQJ"};
      for (const std::string& text : texts) {
        const auto read = ReadRange(rules.game, text);
        if (!read) {
          words.push_back(read.error().text);
        } else if (const std::size_t hands = read->range.size(); hands > 3000) {
          words.push_back(std::to_string(hands));  // the text of so many takes long
        } else {
          words.push_back(RangeText(read->range));
        }
      }
    }
    for (const char* text : {"TT+,A9s+,KJo+", "15%", "5%-20%", "[25]AA[/25],22"}) {
      const RangeResult read = ParseRange(text);
      words.push_back(FormatRange(read.range));
    }
    CStatSpectr tables;
    tables.InitEquil();
    tables.InitCorvelle();
    Spec spec;
    CString text;
    for (const double percent : {3.0, 17.5, 60.0}) {
      tables.GetSpecByPercent(percent, spec, text, 0);
      words.push_back(std::to_string(spec.combinations().size()));
    }
    words.push_back(Text(OmahaPercentile(std::array{0, 14, 25, 38}).value()));
    words.push_back(OmahaHandName(std::array{0, 14, 25, 38}));
    return words;
  });
}

TEST(ThreadsSlow, Evaluators) {
  const ScratchFolder folder;
  WriteStates(folder, kSixPlus5File);
  WriteStates(folder, kSixPlus7File);
  const CString path = FromUtf8(folder / "");
  const CPokerDeck words;
  const PokerLogic logic;
  ExpectAlike([&] {
    // Some functions load what they need, in whichever thread is first.
    if (load_fsm5(path) != 1 || load_fsm7(path) != 1) return Answers{"nothing is loaded"};
    Dealer dealer(1);
    Digest digest;
    int record[16] = {};
    for (int i = 0; i < 2000; ++i) {
      std::vector<int> cards = dealer.Deal(10);
      std::vector<int> codes;
      for (const int card : cards) codes.push_back(words[card]);
      for (int count = 5; count <= 7; ++count) digest.Add(EvaluateCards(cards.data(), count));
      for (const int value :
           {eval_5hand(codes.data()), eval_6hand(codes.data()), eval_7hand(codes.data()),
            eval_5hand_fast(codes[0], codes[1], codes[2], codes[3], codes[4]),
            eval_5cards(codes[0], codes[1], codes[2], codes[3], codes[4]), LookupFsm5(cards.data()),
            get_rank7(cards.data(), cards.data() + 2), EvaluateOmaha<4>(cards.data(), &cards[4]),
            EvaluateOmaha<5>(&cards[5], cards.data()), EvaluateLow<7>(cards.data()),
            EvaluateOmahaLow<4>(&cards[5], cards.data()),
            getCombinationOmahaFsm5(&cards[5], cards.data(), record),
            getCombinationOmahaFsm5Common(&cards[5], 5, cards.data(), 5, record),
            logic.eval_7handOmaha(&cards[5], cards.data())}) {
        digest.Add(value);
      }
      std::array<std::uint8_t, 10> bytes;
      std::ranges::copy(cards, bytes.begin());
      std::array<std::uint16_t, 3> values{};
      EvaluateBatch(7, bytes.data(), 1, values.data());
      EvaluateOmahaBatch(4, bytes.data(), bytes.data() + 4, 1, values.data() + 1);
      std::array<std::uint8_t, 2> lows{};
      EvaluateLowBatch(7, bytes.data(), 1, lows.data());
      EvaluateOmahaLowBatch(4, bytes.data(), bytes.data() + 4, 1, lows.data() + 1);
      digest.Add(lows[0] * 256 + lows[1]);
      int best[5];
      FindBestFive(cards.data(), 7, best);
      for (const int card : best) digest.Add(card);
      digest.Add(values[0]);
      digest.Add(values[1]);
      const OmahaBoardValues board{std::span<const int>(cards).first(5)};
      digest.Add(board.Evaluate<4>(&cards[5]));
      board.EvaluateBatch(4, bytes.data() + 5, 1, values.data() + 2);
      digest.Add(values[2]);
      digest.Add(HandSum(CardSet(std::span<const int>(cards).first(7))).Evaluate());

      for (int& card : cards) card = card / 13 * 13 + 4 + card % 9;
      if (std::set(cards.begin(), cards.begin() + 7).size() < 7) continue;
      digest.Add(EvaluateShortDeck(cards.data(), 7));
      digest.Add(ShortDeckHandSum(CardSet(std::span<const int>(cards).first(7))).Evaluate());
      std::ranges::copy(cards, bytes.begin());
      EvaluateShortDeckBatch(7, bytes.data(), 1, values.data());
      digest.Add(values[0]);
      digest.Add(LookupHoldem6PlusFsm5(cards.data()));
      digest.Add(eval_rank5_via_fsm5(cards.data()));
      digest.Add(eval_rank6_via_fsm5(cards.data()));
      digest.Add(eval_rank7_via_fsm7(cards.data()));
      digest.Add(eval_7hand6PlusFsm5(cards.data()));
    }
    return Answers{digest.text(), HandInWords(std::array{51, 50, 49, 48, 47})};
  });
}

// Evaluators and estimates that need what was loaded. Estimates draw from rand(), which is the
// process's own; so they are only near what they estimate.
TEST(ThreadsSlow, LoadedTables) {
  const ScratchFolder folder;
  WriteStates(folder, kOmaha7File);
  WriteStates(folder, kSixPlus7File);
  const CString path = FromUtf8(folder / "");
  PokerLogic loaded;
  ASSERT_EQ(loaded.generate_table(path + L"hand ranks"), 0);
  const PokerLogic& logic = loaded;
  const Spec range = ParseRange("random", {.short_deck = true}).range;
  const Answers got = ExpectAlike([&] {
    if (load_ofsm_omaha7(path) != 1 || load_fsm7(path) != 1) return Answers{"nothing is loaded"};
    Dealer dealer(6);
    Digest digest;
    for (int i = 0; i < 2000; ++i) {
      std::vector<int> cards = dealer.Deal(10);
      digest.Add(eval_rank7_via_ofsm7(&cards[5], 5, cards.data()));
      digest.Add(logic.LookupSingleHands(cards.data()));
      digest.Add(logic.LookupHandsOmaha(cards.data()));
      digest.Add(logic.LookupHandsOmahaTurn(cards.data()));
      digest.Add(logic.LookupHandsOmahaFlop(cards.data()));
      for (int& card : cards) ++card;
      digest.Add(logic.LookupHand(cards.data()));
    }
    Answers answers{digest.text()};
    int aces[2] = {12, 25}, board[2] = {20, 34};
    PokerLogic own;
    own.trialCount = 3000;
    Spec specs[1] = {range};
    int trials = 3000;
    const double six_plus = getProbabilityOfWinHoldem6PlusCommon(aces, board, 0, specs, 1, trials);
    for (const auto& [estimate, exact] :
         {std::pair{six_plus, getProbabilityOfWinBySpectrWithNoBoard6Plus(aces, range)},
          std::pair{own.getProbabilityOfWinBySpectr(aces, board, 2, range),
                    HoldemHandVsRange(aces, range, board).Equity()}}) {
      answers.push_back(std::abs(estimate - exact) < 0.06 ? "near" : Text(estimate));
    }
    return answers;
  });
  EXPECT_EQ(std::vector(got.begin() + 1, got.end()), (Answers{"near", "near"}));
}

// Exact counts, whose tables the first calls build.
TEST(ThreadsSlow, Counts) {
  const Spec spec = ParseRange("TT+,AQs+").range;
  const auto omaha_range = ParseOmahaRange<4>("AA@20").range;
  ExpectAlike([&] {
    Answers answers;
    Dealer dealer(4);
    const auto add = [&](const auto& tally) { answers.push_back(Text(tally.Equity())); };
    for (int i = 0; i < 4; ++i) {
      const std::vector<int> cards = dealer.Deal(13);
      const std::span all(cards);
      const auto hand = all.first<2>(), other = all.subspan<2, 2>();
      const auto four = all.first(4), flop = all.subspan(8, 3), river = all.subspan(8, 5);
      for (const Street street : {Street::kFlop, Street::kTurn, Street::kRiver}) {
        add(HoldemHandVsHand(hand, other, {}, street));
        add(HoldemHandVsRange(hand, spec, {}, street));
      }
      add(HoldemHandVsHand(hand, other, flop));
      add(HoldemHandVsRange(hand, spec, flop));
      for (const HandTally& one : HoldemEveryHandVsRange(spec, flop)) add(one.tally);
      add(OmahaHands(all.first(8), 4));
      add(OmahaHands(all.first(8), 4, flop));
      add(OmahaHandVsRandom(four, flop));
      add(OmahaHandVsRandom(four, river));
      add(OmahaHandVsRange(four, omaha_range, flop));
      add(OmahaHandVsRange(four, omaha_range, {}, Street::kFlop));
      add(OmahaHighLowHands(all.first(8), 4));
      add(OmahaHighLowVsRandom(four, river));

      std::vector<int> high = cards;
      for (int& card : high) card = card / 13 * 13 + 4 + card % 9;
      if (std::set(high.begin(), high.end()).size() < high.size()) continue;
      const std::span deck(std::as_const(high));
      add(ShortDeckHandVsHand(deck.first<2>(), deck.subspan<2, 2>()));
      add(ShortDeckHandVsRange(deck.first<2>(), spec, deck.subspan(8, 3)));
    }
    return answers;
  });
}

// One PokerLogic for all of them, of which only what is const is called; and the free functions.
TEST(ThreadsSlow, FixedContracts) {
  const PokerLogic logic;
  const Spec spec = ParseRange("TT+,AQs+").range;
  const PokerLogic::OmahaRange omaha_range = {{8, 21, 34, 47}, {0, 1, 14, 15}, {9, 22, 11, 24}};
  ExpectAlike([&] {
    Answers answers;
    Dealer dealer(3);
    for (int i = 0; i < 6; ++i) {
      std::vector<int> cards = dealer.Deal(13);
      int* const hand = cards.data();
      int* const other = hand + 4;
      int* const board = hand + 8;
      int count = 0, time = 0;
      double wins = 0, boards = 0;
      logic.getProbabilityOfWinWithNoBoard(hand, other, wins, boards);
      int outs[16] = {}, nut_outs[16] = {};
      Spec nuts;
      for (const double number :
           {wins,
            boards,
            logic.getProbabilityOfWinBySpectrWithNoBoard(hand, spec),
            logic.getProbabilityOfWinBySpectrWithNoBoardToTurn(hand, spec),
            logic.getProbabilityOfWinBySpectrWithFlop(hand, board, spec),
            logic.getProbabilityOfWinBySpectrWithFlopAndTurn(hand, board, spec),
            logic.RiverEquityHandVsHandOnPreFlopCommon(hand, 4, other, count, time),
            logic.RiverEquityHandsOnFlopCommon(hand, 4, 2, 0, board, count, time),
            logic.RiverEquityHandVsRandomOnTurn(hand, board, count),
            logic.FlopEquityHandVsRangeOnFlop(hand, board, omaha_range, count),
            logic.RiverEquityHandVsRandomOnRiverHL(hand, board, count),
            logic.RiverEquityHandsOnTurnCommonHL(hand, 4, 2, 0, board, count, time),
            FlopEquityHandVsRandomOnFlopFsm5(hand, board, count),
            RiverEquityHandVsRandomOnTurnFsm5(hand, board, count),
            double(logic.IsMyHandNutsOmaha(hand, board, 5)),
            double(logic.getOutsOmahaCommon(hand, 4, board, 4, outs, nut_outs)),
            double(IsMyHandNutsOmahaFsm5Common(hand, 4, board, 5)),
            double(getOutsOmahaFsm5Common(hand, 4, board, 4, outs, nut_outs)),
            double(FindAllNuts(hand, 4, board, 5, nuts, outs)),
            double(logic.getNewCombination(hand, board, 5))}) {
        answers.push_back(Text(number));
      }
      for (int& card : cards) card = card / 13 * 13 + 4 + card % 9;
      if (std::set(cards.begin(), cards.end()).size() < cards.size()) continue;
      answers.push_back(Text(getProbabilityOfWinBySpectrWithNoBoard6Plus(hand, spec)));
      answers.push_back(Text(getProbabilityOfWinBySpectrWithFlop6Plus(hand, board, spec)));
    }
    return answers;
  });
}

}  // namespace
}  // namespace pokermath
