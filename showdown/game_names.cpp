// Games by their names in hand histories.

#include <string_view>

#include "pokermath/showdown.h"

int GetTypeGameHH(const CString& name) {
  struct Game {
    std::wstring_view name;
    int code;
  };
  static constexpr std::wstring_view kOmaha = L"Omaha Pot Limit";
  // "Omaha Hi/Lo Pot Limit", code 10, is not here: hosts get -1 for it.
  static constexpr Game kGames[] = {{L"5 Card Omaha Pot Limit", 13},
                                    {L"5 Card Omaha Hi/Lo Pot Limit", 14},
                                    {L"Hold'em No Limit", 2},
                                    {L"Courchevel Pot Limit", 16}};
  // Stakes and currency may follow this name.
  if (name.starts_with(kOmaha)) return 7;
  for (const Game& game : kGames) {
    if (name == game.name) return game.code;
  }
  return -1;
}
