// Loading the finite-state tables from files: nothing is used before every entry that cards can
// lead to has been looked at.
//
// That is done card by card, with the set of states that are reached. A file that lost a part of
// itself reads zeros there, which are states and values like others; so every state is remembered
// with the cards of one hand that leads to it, and at the end that hand must have a value with
// every other card.

#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "contracts/state_machines.h"
#include "platform/files.h"
#include "platform/large_pages.h"
#include "platform/messages.h"
#include "platform/text.h"
#include "pokermath/evaluators.h"

fsm5::~fsm5() {
  delete[] five_cards;
  delete[] seven_cards;
}

ofsm_omaha7::~ofsm_omaha7() { delete[] table; }

// Without a constructor to run: an evaluator reaches them in one load.
constinit class fsm5 fsm5;
constinit class ofsm_omaha7 ofsm_omaha7;

namespace pokermath {

std::array<std::byte, kStateHeaderBytes> StateHeader(const StateFile& file, std::uint64_t entries) {
  std::array<std::byte, kStateHeaderBytes> header{};
  std::memcpy(header.data(), file.magic.data(), file.magic.size());
  const std::int32_t shape[2] = {file.shape.width, file.shape.cards};
  std::memcpy(header.data() + 16, shape, sizeof shape);
  std::memcpy(header.data() + 24, &entries, sizeof entries);
  return header;
}

namespace {

// A state and the cards of a hand that leads to it; every card where no hand is known to.
struct Reached {
  std::uint64_t cards;
  std::uint32_t state;
};
// A state has 32 bits.
constexpr std::uint64_t kMostStates = std::uint64_t{1} << 32;
constexpr std::uint64_t kEveryCard = ~std::uint64_t{0};

// Whether the entries of the last card are values for cards that can come. Those of others are as
// the maker of the file likes: a value is compared with others, and nothing is looked up with it.
bool ValuesAreSound(const std::uint32_t* row, std::size_t width, std::uint32_t best,
                    std::uint64_t cards) {
  for (std::size_t i = 0; i < width; ++i) {
    const bool can_come = (cards >> i & 1) == 0;
    if (can_come && (row[i] == 0 || row[i] > best)) return false;
  }
  return true;
}

// The states that are reached with one card more, each once or, where a hand is found to lead to it
// later, twice.
class NextStates {
 public:
  explicit NextStates(std::size_t entries) : by_hands_(entries), by_others_(entries) {}

  void Add(std::uint64_t cards, std::uint32_t state) {
    if (by_hands_[state] || (cards == kEveryCard && by_others_[state])) return;
    (cards == kEveryCard ? by_others_ : by_hands_)[state] = true;
    states_.push_back({cards, state});
  }
  std::vector<Reached> Take() {
    for (const Reached& reached : states_) {
      by_hands_[reached.state] = by_others_[reached.state] = false;
    }
    return std::exchange(states_, {});
  }
  std::size_t size() const { return states_.size(); }

 private:
  std::vector<bool> by_hands_, by_others_;  // by state
  std::vector<Reached> states_;
};

}  // namespace

bool StatesAreSound(const StateFile& file, const std::uint32_t* entries, std::size_t count) {
  const auto width = static_cast<std::size_t>(file.shape.width);
  const auto first = static_cast<std::size_t>(file.shape.first_index);
  if (count < first + 2 * width) return false;
  const std::size_t last_state = count - first - width;
  // Rows that overlap more than any table's would take for ever.
  const std::size_t most_states = count / 4 + 1000;
  std::vector<Reached> states = {{0, static_cast<std::uint32_t>(width)}};
  NextStates next(count);
  for (int cards = 1; cards < file.shape.cards; ++cards) {
    for (const Reached& reached : states) {
      const std::uint32_t* row = entries + reached.state + first;
      for (std::size_t i = 0; i < width; ++i) {
        if (row[i] > last_state) return false;
        const bool can_come = (reached.cards >> i & 1) == 0;
        next.Add(can_come ? reached.cards | std::uint64_t{1} << i : kEveryCard, row[i]);
      }
      if (next.size() > most_states) return false;
    }
    states = next.Take();
  }
  return std::ranges::all_of(states, [&](const Reached& reached) {
    return ValuesAreSound(entries + reached.state + first, width, file.best, reached.cards);
  });
}

std::uint32_t* NewStates(std::size_t count) {
  auto* entries = new std::uint32_t[count];
  AskForLargePages(entries, count * sizeof *entries);
  return entries;
}

std::uint32_t* LoadStates(const StateFile& file, const std::string& path, bool& missing) {
  const InputFile in(path);
  missing = !in.ok();
  std::array<char, kStateHeaderBytes> header;
  if (missing || !in.ReadAll(0, header.data(), header.size())) return nullptr;
  std::uint64_t count;
  std::memcpy(&count, header.data() + 24, sizeof count);
  const auto expected = StateHeader(file, count);
  if (std::memcmp(header.data(), expected.data(), header.size()) != 0) return nullptr;
  const std::uint64_t row_0 = static_cast<std::uint64_t>(file.shape.width + file.shape.first_index);
  const std::uint64_t there = static_cast<std::uint64_t>(in.size()) / sizeof(std::uint32_t);
  if (count > there || count > kMostStates || count < row_0) return nullptr;
  std::unique_ptr<std::uint32_t[]> entries(NewStates(count));
  if (!in.ReadAll(kStateHeaderBytes, entries.get(), count * sizeof(std::uint32_t))) return nullptr;
  // Cards that come twice lead to row 0 where there is nothing for them; only where hands lead to
  // it as well, it has to stay as it is.
  const std::vector<std::uint32_t> in_file(entries.get(), entries.get() + row_0);
  std::fill_n(entries.get(), row_0, 0u);
  if (!StatesAreSound(file, entries.get(), count)) {
    std::ranges::copy(in_file, entries.get());
    if (!StatesAreSound(file, entries.get(), count)) return nullptr;
  }
  return entries.release();
}

namespace {

// Functions that may run in several threads load what they need, so the first one of them loads.
int LoadInto(const StateFile& file, const CString& folder, std::uint32_t*& table) {
  static std::mutex loading;
  const CString name = FromUtf8(std::string(file.name));
  const CString path = folder.empty() ? name : folder + L"/" + name;
  bool missing = false;
  {
    const std::lock_guard lock(loading);
    if (table == nullptr) table = LoadStates(file, ToUtf8(path), missing);
    if (table != nullptr) return 1;
  }
  if (missing) ShowMessage(L"Error: Can not open file " + path);
  return 0;
}

}  // namespace

int load_fsm5(const CString& folder) { return LoadInto(kSixPlus5File, folder, fsm5.five_cards); }

int load_fsm7(const CString& folder) { return LoadInto(kSixPlus7File, folder, fsm5.seven_cards); }

int load_ofsm_omaha7(const CString& folder) {
  return LoadInto(kOmaha7File, folder, ofsm_omaha7.table);
}

}  // namespace pokermath

int load_fsm5() { return pokermath::load_fsm5(CString()); }

int load_fsm7() { return pokermath::load_fsm7(CString()); }

int load_ofsm_omaha7() { return pokermath::load_ofsm_omaha7(CString()); }
