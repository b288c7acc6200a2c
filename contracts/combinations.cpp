// The table of all five-card hands with its file, and Omaha values from it.

#include <algorithm>
#include <array>
#include <vector>

#include "eval/rank_sets.h"
#include "platform/files.h"
#include "platform/messages.h"
#include "platform/text.h"
#include "pokermath/evaluators.h"
#include "pokermath/five_card_map.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// Hands that are left out when a card is the first, second .. fifth one of a hand: those with a
// higher card there, counted from the end.
constexpr auto kBehind = [] {
  std::array<std::array<std::uint32_t, 52>, 5> behind{};
  for (int i = 0; i < 5; ++i) {
    for (int card = 0; card < 52; ++card) {
      behind[static_cast<std::size_t>(i)][static_cast<std::size_t>(card)] =
          static_cast<std::uint32_t>(51 - card >= 5 - i ? Choose(51 - card, 5 - i) : 0);
    }
  }
  return behind;
}();

struct Record {
  std::int32_t key;
  std::int32_t value;
};
constexpr std::size_t kFileBytes = FiveCardMap::kHands * sizeof(Record);

// The records of a file; none unless it has the right length and every value belongs to a hand.
std::vector<Record> ReadRecords(const std::string& path) {
  if (FileLength(path) != kFileBytes) return {};
  std::vector<Record> records(FiveCardMap::kHands);
  const bool good =
      ReadFile(path, records.data(), kFileBytes) &&
      std::ranges::all_of(records, [](const Record& record) {
        return record.value < 1 || FiveCardMap::PlaceOf(record.key) < FiveCardMap::kHands;
      });
  return good ? records : std::vector<Record>();
}

// Two rising cards and three rising cards as a key.
int KeyOf(const std::array<int, 2>& two, const std::array<int, 3>& three) {
  std::array<int, 5> five;
  std::ranges::merge(two, three, five.begin());
  return FiveCardMap::KeyOf(five[0], five[1], five[2], five[3], five[4]);
}

}  // namespace

std::size_t FiveCardMap::PlaceOf(int key) {
  std::size_t place = kHands - 1;
  int before = -1;
  for (std::size_t i = 0; i < 5; ++i) {
    const int card = key >> (24 - 6 * static_cast<int>(i)) & 63;
    if (card <= before || card > 51) return kHands;
    place -= kBehind[i][static_cast<std::size_t>(card)];
    before = card;
  }
  return key < 0 || key >> 30 != 0 ? kHands : place;
}

void FiveCardMap::clear() {
  LargeTable<std::int32_t>().swap(numbers_);
  size_ = 0;
}

int FiveCardMap::find(int key) const {
  if (empty()) return 0;
  const std::size_t place = PlaceOf(key);
  return place < kHands ? numbers_[place] : 0;
}

bool FiveCardMap::insert(int key, int number) {
  const std::size_t place = PlaceOf(key);
  if (place == kHands || number < 1) return false;
  if (numbers_.empty()) numbers_.resize(kHands, 0);
  if (numbers_[place] > 0) return false;
  numbers_[place] = number;
  ++size_;
  return true;
}

}  // namespace pokermath

int PokerLogic::generate_PokerCombinations_table(CString path) {
  using namespace pokermath;
  PokerCombinations.clear();
  const std::vector<Record> records = ReadRecords(ToUtf8(path));
  for (const auto& [key, value] : records) {
    if (value < 1) {
      ShowMessage(L"load_PokerCombinations_table " + std::to_wstring(key) + L" " +
                  std::to_wstring(value));
    } else {
      PokerCombinations.insert(key, value);
    }
  }
  if (!records.empty()) return 1;
  FiveCardMap::ForEachHand([this](int(&c)[5]) {
    PokerCombinations.insert(FiveCardMap::KeyOf(c[0], c[1], c[2], c[3], c[4]), eval_5handHoldem(c));
  });
  save_PokerCombinations_table(path);
  return 0;
}

int PokerLogic::save_PokerCombinations_table(CString path) {
  using namespace pokermath;
  AtomicFile file(ToUtf8(path));
  PokerCombinations.ForEach([&file](int key, int value) {
    const Record record = {key, value};
    file.Write(&record, sizeof record);
  });
  file.Commit();
  return 1;
}

int PokerLogic::eval_7handOmaha(int* hand, int* board) const {
  std::array<int, 4> holes;
  std::array<int, 5> cards;
  std::copy(hand, hand + 4, holes.begin());
  std::copy(board, board + 5, cards.begin());
  std::ranges::sort(holes);
  std::ranges::sort(cards);
  int best = 999999;
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = i + 1; j < 4; ++j)
      for (std::size_t a = 0; a < 3; ++a)
        for (std::size_t b = a + 1; b < 4; ++b)
          for (std::size_t c = b + 1; c < 5; ++c) {
            const int key = pokermath::KeyOf({holes[i], holes[j]}, {cards[a], cards[b], cards[c]});
            const int value = PokerCombinations.find(key);
            // A hand that is missing counts as its key, which no value reaches.
            best = std::min(best, value > 0 ? value : key);
          }
  return best;
}
