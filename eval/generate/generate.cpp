// Writes the constant tables of the evaluators as C++ sources into the folder given.

#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "eval/generate/compact_tables.h"
#include "eval/generate/five_card_states.h"
#include "eval/generate/five_card_tables.h"
#include "eval/generate/low_tables.h"
#include "eval/generate/reference.h"

namespace pokermath {
namespace {

template <typename Writer>
void WriteSource(const std::string& path, const ReferenceValues& values, Writer writer) {
  std::ofstream out(path);
  writer(out, values);
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path);
}

}  // namespace
}  // namespace pokermath

int main(int argc, char** argv) {
  try {
    if (argc != 2) throw std::runtime_error("usage: pokermath_generate FOLDER");
    const std::string folder = argv[1];
    const pokermath::ReferenceValues values(pokermath::kFullDeck);
    pokermath::WriteSource(folder + "/five_card_tables_data.cpp", values,
                           pokermath::WriteFiveCardTables);
    pokermath::WriteSource(folder + "/compact_tables_data.cpp", values,
                           pokermath::WriteCompactTables);
    pokermath::WriteSource(folder + "/five_card_states_data.cpp", values,
                           pokermath::WriteFiveCardStates);
    pokermath::WriteSource(folder + "/low_tables_data.cpp", values,
                           [](std::ostream& out, const auto&) { pokermath::WriteLowTables(out); });
  } catch (const std::exception& error) {
    std::cerr << "pokermath_generate: " << error.what() << "\n";
    return 1;
  }
}
