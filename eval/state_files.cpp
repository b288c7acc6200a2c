// Loading the finite-state tables from files: nothing is used before every entry that cards can
// lead to has been looked at.

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <vector>

#include "eval/state_machines.h"
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

namespace pokermath {

constinit fsm5 short_deck_tables;
constinit ofsm_omaha7 omaha_table;

std::array<std::byte, kStateHeaderBytes> StateHeader(const StateFile& file, std::uint64_t entries) {
  std::array<std::byte, kStateHeaderBytes> header{};
  std::memcpy(header.data(), file.magic.data(), file.magic.size());
  const std::int32_t shape[2] = {file.shape.width, file.shape.cards};
  std::memcpy(header.data() + 16, shape, sizeof shape);
  std::memcpy(header.data() + 24, &entries, sizeof entries);
  return header;
}

bool StatesAreSound(const StateFile& file, const std::uint32_t* entries, std::size_t count) {
  const auto width = static_cast<std::size_t>(file.shape.width);
  const auto first = static_cast<std::size_t>(file.shape.first_index);
  if (count < first + 2 * width) return false;
  const std::size_t rows = (count - first) / width;
  // Row 0 stands for what cannot be.
  if (std::any_of(entries, entries + first + width,
                  [](std::uint32_t entry) { return entry != 0; })) {
    return false;
  }
  std::vector<std::uint8_t> reached(rows);
  std::vector<std::uint8_t> next(rows);
  reached[1] = 1;
  for (int cards = 0; cards < file.shape.cards; ++cards) {
    const bool last = cards + 1 == file.shape.cards;
    for (std::size_t row = 0; row < rows; ++row) {
      if (reached[row] == 0) continue;
      const std::uint32_t* from = entries + row * width + first;
      // Only cards that have been seen cannot come.
      if (std::count(from, from + width, 0u) > cards) return false;
      if (last) {
        std::uint32_t largest = 0;
        for (std::size_t i = 0; i < width; ++i) largest = std::max(largest, from[i]);
        if (largest > file.best) return false;
        continue;
      }
      for (std::size_t i = 0; i < width; ++i) {
        const std::size_t state = from[i];
        if (state % width != 0 || state / width >= rows) return false;
        next[state / width] = 1;
      }
    }
    next[0] = 0;
    reached.swap(next);
    std::ranges::fill(next, std::uint8_t{0});
  }
  return true;
}

std::uint32_t* NewStates(std::size_t count) {
  auto* entries = new std::uint32_t[count];
  AskForLargePages(entries, count * sizeof *entries);
  return entries;
}

std::uint32_t* LoadStates(const StateFile& file, const std::string& path, bool& missing) {
  std::ifstream in(path, std::ios::binary);
  missing = !in;
  const std::optional<std::uint64_t> length = FileLength(path);
  if (missing || !length) return nullptr;
  std::array<char, kStateHeaderBytes> header;
  if (!in.read(header.data(), header.size())) return nullptr;
  std::uint64_t count;
  std::memcpy(&count, header.data() + 24, sizeof count);
  const auto expected = StateHeader(file, count);
  if (std::memcmp(header.data(), expected.data(), header.size()) != 0) return nullptr;
  if (count > *length / sizeof(std::uint32_t) || count > file.most_entries ||
      *length != kStateHeaderBytes + count * sizeof(std::uint32_t)) {
    return nullptr;
  }
  std::unique_ptr<std::uint32_t[]> entries(NewStates(count));
  in.read(reinterpret_cast<char*>(entries.get()),
          static_cast<std::streamsize>(count * sizeof(std::uint32_t)));
  if (!in || !StatesAreSound(file, entries.get(), count)) return nullptr;
  return entries.release();
}

namespace {

int LoadInto(const StateFile& file, const CString& folder, std::uint32_t*& table) {
  if (table != nullptr) return 1;
  const CString name = FromUtf8(std::string(file.name));
  bool missing = false;
  table = LoadStates(file, ToUtf8(folder.empty() ? name : folder + L"/" + name), missing);
  if (missing)
    ShowMessage(L"Error: Can not open file " + (folder.empty() ? name : folder + L"/" + name));
  return table != nullptr ? 1 : 0;
}

}  // namespace

int load_fsm5(const CString& folder) {
  return LoadInto(kSixPlus5File, folder, short_deck_tables.five_cards);
}

int load_fsm7(const CString& folder) {
  return LoadInto(kSixPlus7File, folder, short_deck_tables.seven_cards);
}

int load_ofsm_omaha7(const CString& folder) {
  return LoadInto(kOmaha7File, folder, omaha_table.table);
}

}  // namespace pokermath

int load_fsm5() { return pokermath::load_fsm5(CString()); }

int load_fsm7() { return pokermath::load_fsm7(CString()); }

int load_ofsm_omaha7() { return pokermath::load_ofsm_omaha7(CString()); }
