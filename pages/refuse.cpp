// Apart from the rest of this room, for programs without exceptions leave it out.

#include "pages/errors.h"

namespace pokermath {

void Refuse(const std::string& text, std::string_view field) {
  throw UsageError(text, std::string(field));
}

}  // namespace pokermath
