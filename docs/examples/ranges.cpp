// Three players with weighted ranges on a flop: ranges 15% AA:0.5,KK QQ+,AK 2c7dTh

#include <pokermath/calculator.h>
#include <pokermath/cards.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace pokermath;

int main(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  if (words.empty()) words = {"15%", "AA:0.5,KK", "QQ+,AK", "2c7dTh"};
  const std::string board_text = words.back();
  words.pop_back();

  EquityQuestion question;
  for (const std::string& word : words) {
    const Result<RangeReading> read = ReadRange(Game::kHoldem, word);
    if (!read) return std::fprintf(stderr, "%s\n", read.error().text.c_str()), 1;
    // A text may read well and yet not say what was meant.
    for (const std::string& warning : read->warnings) {
      std::fprintf(stderr, "warning: %s\n", warning.c_str());
    }
    question.players.push_back(read->range);
  }
  const Result<CardSet> board = ReadCardSet(board_text);
  if (!board) return std::fprintf(stderr, "%s\n", board.error().text.c_str()), 1;
  question.board = *board;

  const Result<EquityAnswer> answer = Calculate(question);
  if (!answer) return std::fprintf(stderr, "%s\n", answer.error().text.c_str()), 1;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const PlayerAnswer& player = answer->players[i];
    std::printf("%-10s %4zu hands %8.3f %%\n", words[i].c_str(), player.hands_left,
                100 * player.total.equity);
  }
  // Weights make a case count less than one.
  std::printf("%.2f cases\n", answer->cases.Value());
}
