/// @file
/// Where messages to the user go. A few loaders tell the user about a missing or damaged file; a
/// host that has its own way of doing that takes the messages over.

#ifndef POKERMATH_MESSAGES_H_
#define POKERMATH_MESSAGES_H_

#include <functional>

#include "pokermath/export.h"
#include "pokermath/text.h"

namespace pokermath {

/// Sends every message to `handler` instead of the default place.
///
/// The default is a modal box with an OK button when a display is there (DISPLAY or
/// WAYLAND_DISPLAY is set and SDL2 is installed), otherwise one line on standard error.
/// @param handler  called on the thread that has something to say, so by several at once if the
///                 host loads in several. An empty function restores the default.
///
/// May be called from any thread; a message that is on its way meanwhile goes to either.
POKERMATH_EXPORT void SetMessageHandler(std::function<void(const CString& text)> handler);

}  // namespace pokermath

#endif  // POKERMATH_MESSAGES_H_
