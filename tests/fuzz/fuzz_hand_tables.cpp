// Files of the two big hand tables with any entries changed: what is taken keeps every walk inside
// the table and finds what the file says; what is refused is left out or made anew.
//
// The files are made once. An input changes some entries and they are put back afterwards.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "contracts/hand_ranks_builder.h"
#include "pokermath/messages.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// Nine bytes of the input: which entry, and what happens to it.
struct Change {
  std::uint32_t entry;
  std::uint8_t kind;
  std::int32_t number;

  std::int32_t Of(std::int32_t old) const {
    const auto bits = static_cast<std::uint32_t>(number);
    switch (kind % 4) {
      case 0:
        return number;
      case 1:
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(old) + bits % 256 - 128);
      case 2:
        return static_cast<std::int32_t>(bits % (kHandRanksSlots + 2) * 53);
      default:
        return static_cast<std::int32_t>(bits % 65536);
    }
  }
};

std::vector<Change> ChangesOf(const std::uint8_t* data, std::size_t size, std::size_t entries) {
  std::vector<Change> changes;
  for (; size >= 9; data += 9, size -= 9) {
    Change change;
    std::memcpy(&change.entry, data, 4);
    change.kind = data[4];
    std::memcpy(&change.number, data + 5, 4);
    change.entry %= static_cast<std::uint32_t>(entries);
    changes.push_back(change);
  }
  return changes;
}

// Writes the named entries of an image to a file that holds the others already.
template <typename Entry>
void WriteEntries(int fd, const std::set<std::size_t>& places, const Entry* image) {
  for (const std::size_t place : places) {
    Require(pwrite(fd, &image[place], sizeof(Entry), static_cast<off_t>(place * sizeof(Entry))) ==
            sizeof(Entry));
  }
}

// The HandRanks table as a file in memory.
class HandRanksFile {
 public:
  HandRanksFile() : fd_(memfd_create("hand_ranks", MFD_CLOEXEC)) {
    image_ = BuildHandRanks().entries;
    const auto* bytes = reinterpret_cast<const char*>(image_.data());
    for (std::size_t done = 0; done < kHandRanksBytes;) {
      const ssize_t written = write(fd_, bytes + done, kHandRanksBytes - done);
      Require(written > 0);
      done += static_cast<std::size_t>(written);
    }
    // The number of cards that lead to a row.
    cards_.assign(kHandRanksSlots, 0);
    for (std::size_t row = 1; row < kHandRanksSlots; ++row) {
      for (std::size_t card = 1; card <= 52 && cards_[row] < 6; ++card) {
        const std::size_t next = image_[row * 53 + card] / 53;
        if (next != 1) cards_[next] = cards_[row] + 1;
      }
    }
  }

  void Try(const std::vector<Change>& changes, std::minstd_rand& random) {
    std::set<std::size_t> places;
    std::map<std::size_t, std::uint32_t> before;
    for (const Change& change : changes) {
      std::uint32_t& entry = image_[change.entry];
      before.emplace(change.entry, entry);
      places.insert(change.entry);
      entry = static_cast<std::uint32_t>(change.Of(static_cast<std::int32_t>(entry)));
    }
    WriteEntries(fd_, places, image_.data());
    const bool good = LoadHandRanks("/proc/self/fd/" + std::to_string(fd_), loaded_);
    Require(good ? loaded_ == image_ : loaded_.empty() && !changes.empty());
    for (const auto& [place, entry] : before) image_[place] = entry;
    WriteEntries(fd_, places, image_.data());
    if (!good) return;
    for (int i = 0; i < 100; ++i) {
      Walk(53, 7, random);
      // Again from each entry that was changed.
      for (const std::size_t place : places) {
        if (place >= 53 && place % 53 != 0) Walk(loaded_[place], 6 - cards_[place / 53], random);
      }
    }
  }

 private:
  // Any cards from a state on, as a lookup goes.
  void Walk(std::uint32_t state, int cards, std::minstd_rand& random) const {
    for (; cards > 0; --cards) {
      Require(state + std::uint64_t{52} < kHandRanksEntries);
      state = loaded_[state + 1 + random() % 52];
    }
    Require(state < kHandRanksEntries);
  }

  int fd_;
  LargeTable<std::uint32_t> image_, loaded_;
  std::vector<int> cards_;
};

// The table of five-card hands as a file, which is written anew when it is refused.
class CombinationsFile {
 public:
  CombinationsFile() {
    SetMessageHandler([this](const CString&) { ++messages_; });
    Require(logic_.generate_PokerCombinations_table(name_) == 0);
    logic_.PokerCombinations.ForEach([this](int key, int value) {
      image_.push_back({key, value});
    });
    Require(image_.size() == FiveCardMap::kHands);
  }
  ~CombinationsFile() { unlink(path_.c_str()); }

  void Try(const std::vector<Change>& changes, std::minstd_rand& random) {
    std::vector<Record> changed = image_;
    std::set<std::size_t> places;
    for (const Change& change : changes) {
      std::int32_t& entry = changed[change.entry / 2][change.entry % 2];
      entry = change.Of(entry);
      places.insert(change.entry / 2);
    }
    Write(places, changed.data());
    messages_ = 0;
    const bool taken = logic_.generate_PokerCombinations_table(name_) == 1;
    if (taken) {
      Write(places, image_.data());
      CheckTaken(changed, places);
    } else {
      Require(messages_ == 0 && logic_.PokerCombinations.size() == image_.size());
      for (const std::size_t place : places) {
        Require(logic_.PokerCombinations.find(image_[place][0]) == image_[place][1]);
      }
    }
    std::array<int, 52> cards;
    for (int i = 0; i < 52; ++i) cards[static_cast<std::size_t>(i)] = i;
    for (int i = 0; i < 20; ++i) {
      std::shuffle(cards.begin(), cards.end(), random);
      Require(logic_.eval_7handOmaha(cards.data(), cards.data() + 4) > 0);
    }
  }

 private:
  using Record = std::array<std::int32_t, 2>;

  void Write(const std::set<std::size_t>& places, const Record* image) {
    const int fd = open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    WriteEntries(fd, places, image);
    close(fd);
  }

  // The first record of a hand counts, but for values below 1, each of which has a message.
  void CheckTaken(const std::vector<Record>& changed, const std::set<std::size_t>& places) const {
    int below_one = 0;
    for (const std::size_t place : places) {
      below_one += changed[place][1] < 1 ? 1 : 0;
      for (const std::int32_t key : {image_[place][0], changed[place][0]}) {
        std::set<std::size_t> may_hold = places;
        may_hold.insert(FiveCardMap::PlaceOf(key));
        int expected = 0;
        for (const std::size_t i : may_hold) {
          const bool holds = i < changed.size() && changed[i][0] == key && changed[i][1] > 0;
          if (expected == 0 && holds) expected = changed[i][1];
        }
        Require(logic_.PokerCombinations.find(key) == expected);
      }
    }
    Require(messages_ == below_one);
  }

  std::string path_ =
      std::filesystem::temp_directory_path() / ("pokermath-fuzz-" + std::to_string(getpid()));
  CString name_{path_.begin(), path_.end()};
  PokerLogic logic_;
  std::vector<Record> image_;
  int messages_ = 0;
};

}  // namespace
}  // namespace pokermath

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pokermath;
  static HandRanksFile hand_ranks;
  static CombinationsFile combinations;
  if (size == 0) return 0;
  std::minstd_rand random(data[0]);
  if (data[0] % 2 == 0) {
    hand_ranks.Try(ChangesOf(data + 1, size - 1, kHandRanksEntries), random);
  } else {
    combinations.Try(ChangesOf(data + 1, size - 1, 2 * FiveCardMap::kHands), random);
  }
  return 0;
}
