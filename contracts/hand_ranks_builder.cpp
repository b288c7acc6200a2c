// Generating the HandRanks state table without inserting one ID after the other.
//
// An ID with more cards is numerically larger, so the IDs of each card count are a sorted run of
// their own, a level. Level by level we make the successors of every ID, give each new one a
// temporary number through a hash table, write these numbers into the rows, then sort the level and
// replace the numbers by the places. Cards whose suit cannot matter any more lead to the same
// successor, so a row needs one per rank and one more per rank for each suit that still can flush.
//
// The rows of six cards hold hand values. Without suits a value follows from the sum of rank keys;
// with four or more cards of a suit known, a flush replaces it wherever the card makes one.

#include "contracts/hand_ranks_builder.h"

#include <algorithm>
#include <array>
#include <span>

#include "eval/compact_keys.h"
#include "eval/numbering.h"
#include "eval/scales.h"
#include "platform/files.h"

namespace pokermath {
namespace {

constexpr std::size_t kRow = 53;
constexpr int kMaxStateCards = 6;
// IDs of 0 to 6 cards.
constexpr std::array<std::size_t, 7> kLevelSizes = {1, 52, 1326, 22100, 84448, 152607, 352443};

// Base of the row of slot `slot`: its entries for card numbers 1..52 follow.
constexpr std::size_t RowOf(std::size_t slot) { return slot * kRow + kRow; }
constexpr std::uint32_t kStartState = kRow;

// A partial hand taken apart.
struct Hand {
  int size = 0;
  std::array<std::uint8_t, kMaxStateCards> cards{};  // ID bytes, descending
  std::array<int, 14> rank_counts{};                 // by rank + 1
  std::array<int, 5> suit_counts{};                  // by suit + 1; [0] counts the suitless
  std::array<std::uint32_t, 5> suit_ranks{};         // rank masks of the same
  std::uint32_t key = 0;                             // sum of rank keys
};

Hand Unpack(std::uint64_t id) {
  Hand hand;
  for (; id != 0; id >>= 8) {
    const auto card = static_cast<std::uint8_t>(id);
    const unsigned rank = card >> 4;
    const unsigned suit = card & 15;
    hand.cards[static_cast<std::size_t>(hand.size++)] = card;
    ++hand.rank_counts[rank];
    ++hand.suit_counts[suit];
    hand.suit_ranks[suit] |= 1u << (rank - 1);
    hand.key += kRankKeys[rank - 1];
  }
  return hand;
}

// The successors of one ID by rank, all for cards of one suit (or of every suit that cannot flush).
class Successors {
 public:
  // Cards keep their suit if `keeps[suit]`; `new_suit` is that of the card added, 0 if dropped.
  Successors(const Hand& hand, const std::array<bool, 5>& keeps, unsigned new_suit)
      : size_(hand.size), new_suit_(new_suit) {
    // Dropping suits disturbs the order among cards of one rank only: an insertion sort is best.
    for (int i = 0; i < size_; ++i) {
      std::uint8_t card = hand.cards[static_cast<std::size_t>(i)];
      if (!keeps[card & 15]) card &= 0xF0;
      auto place = static_cast<std::size_t>(i);
      for (; place > 0 && cards_[place - 1] < card; --place) cards_[place] = cards_[place - 1];
      cards_[place] = card;
    }
    for (int i = size_; i-- > 0;) id_ = id_ << 8 | cards_[static_cast<std::size_t>(i)];
  }

  // The ID with a card of rank `rank` added.
  std::uint64_t With(unsigned rank) const {
    const std::uint64_t card = (rank + 1) << 4 | new_suit_;
    int place = 0;
    while (place < size_ && cards_[static_cast<std::size_t>(place)] > card) ++place;
    const std::uint64_t above = (std::uint64_t{1} << (8 * place)) - 1;
    return (id_ & above) | card << (8 * place) | (id_ & ~above) << 8;
  }

 private:
  int size_;
  std::uint64_t new_suit_;
  std::array<std::uint8_t, kMaxStateCards> cards_{};
  std::uint64_t id_ = 0;
};

constexpr std::uint32_t kImpossible = 0xFFFFFFFF;

// Fills a row with the numbers of the successors, kImpossible for a card that cannot come.
void NumberRow(std::uint64_t id, Numbering& numbers, std::uint32_t* row) {
  const Hand hand = Unpack(id);
  const int needed = hand.size + 1 - 2;  // so many of a suit keep it alive with one card more
  std::array<bool, 5> keeps{};
  std::array<bool, 5> grows{};  // the suit is alive if the new card is of it
  for (std::size_t suit = 1; suit <= 4; ++suit) {
    keeps[suit] = needed <= 1 || hand.suit_counts[suit] >= needed;
    grows[suit] = needed <= 1 || hand.suit_counts[suit] + 1 >= needed;
  }
  std::array<std::uint32_t, 13> suitless;
  const Successors without_suit(hand, keeps, 0);
  const bool some_drop = !(grows[1] && grows[2] && grows[3] && grows[4]);
  for (unsigned rank = 0; rank < 13; ++rank) {
    const bool fifth = hand.size >= 4 && hand.rank_counts[rank + 1] == 4;
    suitless[rank] = fifth       ? kImpossible
                     : some_drop ? numbers.NumberOf(without_suit.With(rank))
                                 : 0;
  }
  for (unsigned suit = 1; suit <= 4; ++suit) {
    std::array<bool, 5> keeps_with_card = keeps;
    keeps_with_card[suit] = grows[suit];
    const Successors successors(hand, keeps_with_card, grows[suit] ? suit : 0);
    for (unsigned rank = 0; rank < 13; ++rank) {
      const bool there = (hand.suit_ranks[suit] >> rank & 1) != 0;
      std::uint32_t& entry = row[rank * 4 + suit];
      if (there || suitless[rank] == kImpossible) {
        entry = kImpossible;
      } else {
        entry = grows[suit] ? numbers.NumberOf(successors.With(rank)) : suitless[rank];
      }
    }
  }
}

// Appends the level after the one in slots [first, first + count) and completes the rows of that
// one.
void BuildLevel(HandRanks& table, std::size_t first, std::size_t count, std::size_t next_count) {
  Numbering numbers(next_count);
  for (std::size_t slot = first; slot < first + count; ++slot) {
    NumberRow(table.ids[slot], numbers, &table.entries[RowOf(slot)]);
  }
  std::vector<std::uint32_t> order(numbers.ids().size());
  for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
  std::ranges::sort(order, {}, [&](std::uint32_t i) { return numbers.ids()[i]; });
  std::vector<std::uint32_t> states(order.size());
  const std::size_t next_first = first + count;
  for (std::size_t i = 0; i < order.size(); ++i) {
    table.ids[next_first + i] = numbers.ids()[order[i]];
    states[order[i]] = static_cast<std::uint32_t>(RowOf(next_first + i));
  }
  for (std::size_t slot = first; slot < first + count; ++slot) {
    std::uint32_t* row = &table.entries[RowOf(slot)];
    for (std::size_t card = 1; card <= 52; ++card) {
      row[card] = row[card] == kImpossible ? kStartState : states[row[card]];
    }
  }
}

// HandRanks values by ascending value, so that the conversion is a look-up.
std::vector<std::uint16_t> HandRanksByAscending() {
  std::vector<std::uint16_t> values(7463);
  for (int i = 1; i <= 7462; ++i) {
    values[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(ToHandRanks(i));
  }
  return values;
}

// Fills the rows of six cards with the values of seven.
void FillValueRow(const Hand& hand, const std::vector<std::uint16_t>& values, std::uint32_t* row) {
  unsigned suit = 0;  // the one suit of which the hand may know cards
  for (unsigned i = 1; i <= 4; ++i) {
    if (hand.suit_counts[i] > 0) suit = i;
  }
  const std::uint32_t suit_ranks = suit != 0 ? hand.suit_ranks[suit] : 0;
  const std::uint16_t made_flush = kCompactTables.flush_values[suit_ranks];
  for (unsigned rank = 0; rank < 13; ++rank) {
    std::uint32_t* entries = row + rank * 4 + 1;
    if (hand.rank_counts[rank + 1] == 4) {
      std::fill_n(entries, 4, 0u);
      continue;
    }
    const int plain = made_flush != 0 ? made_flush : ValueOfRanks<7>(hand.key + kRankKeys[rank]);
    std::fill_n(entries, 4, std::uint32_t{values[static_cast<std::size_t>(plain)]});
    if (suit == 0) continue;
    const bool there = (suit_ranks >> rank & 1) != 0;
    const std::uint16_t flush = kCompactTables.flush_values[suit_ranks | 1u << rank];
    if (there) {
      entries[suit - 1] = 0;
    } else if (flush != 0) {
      entries[suit - 1] = values[flush];
    }
  }
}

// Ascending value of the five or six cards of a state.
template <int count>
std::size_t ValueOfState(const Hand& hand) {
  for (std::size_t suit = 1; suit <= 4; ++suit) {
    if (hand.suit_counts[suit] >= 5) return kCompactTables.flush_values[hand.suit_ranks[suit]];
  }
  return static_cast<std::size_t>(ValueOfRanks<count>(hand.key));
}

}  // namespace

HandRanks BuildHandRanks() {
  HandRanks table;
  table.ids.resize(kHandRanksSlots);
  table.entries.resize(kHandRanksEntries);
  std::fill_n(table.entries.begin(), kRow, 0u);
  const std::vector<std::uint16_t> values = HandRanksByAscending();

  std::size_t first = 0;
  for (std::size_t cards = 0; cards < kLevelSizes.size(); ++cards) {
    const std::size_t end = first + kLevelSizes[cards];
    for (std::size_t slot = first; slot < end; ++slot) table.entries[RowOf(slot)] = 0;
    if (cards < 6) BuildLevel(table, first, kLevelSizes[cards], kLevelSizes[cards + 1]);
    if (cards == 5) {
      for (std::size_t slot = first; slot < end; ++slot) {
        table.entries[RowOf(slot)] = values[ValueOfState<5>(Unpack(table.ids[slot]))];
      }
    }
    if (cards == 6) {
      for (std::size_t slot = first; slot < end; ++slot) {
        std::uint32_t* row = &table.entries[RowOf(slot)];
        const Hand hand = Unpack(table.ids[slot]);
        row[0] = values[ValueOfState<6>(hand)];
        FillValueRow(hand, values, row);
      }
    }
    first = end;
  }
  return table;
}

namespace {

// What an entry adds to the faults of its row, which may have one for each card that has been seen:
// only those cannot come. More of them are what a lost page leaves.
constexpr unsigned kCannotCome = 1;
constexpr unsigned kWrong = 64;

// By hand value; what is behind the last place stands for all larger numbers.
std::vector<std::uint8_t> FaultsOfValues() {
  std::vector<std::uint8_t> faults(40961, kWrong);
  faults[0] = kCannotCome;
  for (int i = 1; i <= 7462; ++i) faults[static_cast<std::size_t>(ToHandRanks(i))] = 0;
  return faults;
}

}  // namespace

bool HandRanksAreSound(const std::uint32_t* entries) {
  const std::vector<std::uint8_t> faults_of_values = FaultsOfValues();
  const auto largest = static_cast<std::uint32_t>(faults_of_values.size() - 1);
  const auto faults_of = [&](std::uint32_t entry) -> unsigned {
    return faults_of_values[std::min(entry, largest)];
  };

  bool sound = std::all_of(entries, entries + kRow, [](std::uint32_t entry) { return entry == 0; });
  std::size_t first = 0;
  for (std::size_t cards = 0; cards < kLevelSizes.size(); ++cards) {
    const std::size_t end = first + kLevelSizes[cards];
    const auto next_first = static_cast<std::uint32_t>(RowOf(end));
    const std::uint32_t next_last =
        cards < 6 ? static_cast<std::uint32_t>(RowOf(end + kLevelSizes[cards + 1] - 1)) : 0;
    for (std::size_t slot = first; slot < end; ++slot) {
      const std::uint32_t* row = entries + RowOf(slot);
      sound = sound && (cards >= 5 ? faults_of(row[0]) == 0 : row[0] == 0);
      unsigned faults = 0;
      if (cards == 6) {
        for (std::size_t card = 1; card <= 52; ++card) faults += faults_of(row[card]);
      } else {
        for (std::size_t card = 1; card <= 52; ++card) {
          const std::uint32_t state = row[card];
          const bool good = state >= next_first && state <= next_last && state % kRow == 0;
          faults += good ? 0 : state == kStartState ? kCannotCome : kWrong;
        }
      }
      sound = sound && faults <= cards;
    }
    first = end;
  }
  return sound;
}

bool LoadHandRanks(const std::string& path, LargeTable<std::uint32_t>& entries) {
  entries.clear();
  if (FileLength(path) == kHandRanksBytes) {
    entries.resize(kHandRanksEntries);
    if (ReadFile(path, entries.data(), kHandRanksBytes) && HandRanksAreSound(entries.data())) {
      return true;
    }
  }
  LargeTable<std::uint32_t>().swap(entries);
  return false;
}

bool SaveHandRanks(const std::string& path, const LargeTable<std::uint32_t>& entries) {
  AtomicFile file(path);
  file.Write(entries.data(), kHandRanksBytes);
  return file.Commit();
}

}  // namespace pokermath
