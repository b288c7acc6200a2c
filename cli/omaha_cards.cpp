#include "cli/omaha_cards.h"

#include "pages/game.h"

namespace pokermath::cli {

void AddOmahaWords(Command command, OmahaWords& words) {
  command.AddOption("HAND", words.hand, "Four to six hole cards").Required().ValueName("");
  command.AddOption("BOARD", words.board, "The cards on the table").Required().ValueName("");
  command
      .AddOption("--game", words.game,
                 NamesOf(OmahaGames(words.low)) +
                     ": refuse another number of hole cards [as many as there are]")
      .ValueName("GAME")
      .OneOf(ListOf(OmahaGames(words.low)));
  command.AddFlag("--json", words.json, "Print a JSON object");
}

}  // namespace pokermath::cli
