// Telling the user something, from inside the library.

#ifndef POKERMATH_PLATFORM_MESSAGES_H_
#define POKERMATH_PLATFORM_MESSAGES_H_

#include "pokermath/messages.h"

namespace pokermath {

/// Shows a text through the host's handler or, without one, in a box or on standard error.
void ShowMessage(const CString& text);

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_MESSAGES_H_
