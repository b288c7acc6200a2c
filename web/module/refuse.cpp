// The way out of a question that was asked wrongly: a function of the host, which throws there.

#include <cstddef>

#include "pages/errors.h"

extern "C" [[noreturn, clang::import_module("pokermath"), clang::import_name("refuse")]] void
pokermath_refuse(const char* text, std::size_t text_length, const char* field,
                 std::size_t field_length);

namespace pokermath {

void Refuse(const std::string& text, std::string_view field) {
  pokermath_refuse(text.data(), text.size(), field.data(), field.size());
}

}  // namespace pokermath
