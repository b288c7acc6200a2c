// Messages to the user: the host's handler, else a modal box, else a line on standard error.
//
// The box comes from SDL2, which is looked up when the first message is shown: a server without a
// display needs no SDL2, and a desktop without it gets the line on standard error.

#include "platform/messages.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <utility>

#include "platform/text.h"

namespace pokermath {
namespace {

struct Handler {
  std::mutex mutex;
  std::function<void(const CString&)> function;
};

Handler& TheHandler() {
  // Never destroyed: static objects of the host may still have something to say at exit.
  static Handler& handler = *new Handler;
  return handler;
}

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

// A box with an OK button, shown until the user presses it. False if there is no way to show one.
bool ShowBox(const std::string& text) {
  if (!IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY")) return false;
  // Kept open: the library may own threads that outlive the box.
  static void* const sdl = dlopen("libSDL2-2.0.so.0", RTLD_NOW | RTLD_LOCAL);
  if (sdl == nullptr) return false;
  using ShowSimpleMessageBox =
      int (*)(std::uint32_t flags, const char* title, const char* message, void* window);
  const auto show = reinterpret_cast<ShowSimpleMessageBox>(dlsym(sdl, "SDL_ShowSimpleMessageBox"));
  constexpr std::uint32_t kInformation = 0x40;
  // SDL does not promise to show two boxes at once.
  static std::mutex one_box;
  const std::scoped_lock lock(one_box);
  return show != nullptr && show(kInformation, "pokermath", text.c_str(), nullptr) == 0;
}

void ShowDefault(const CString& text) {
  std::string bytes = ToUtf8(text);
  if (ShowBox(bytes)) return;
  std::replace(bytes.begin(), bytes.end(), '\n', ' ');
  std::fprintf(stderr, "%s\n", bytes.c_str());
}

}  // namespace

void SetMessageHandler(std::function<void(const CString& text)> handler) {
  const std::scoped_lock lock(TheHandler().mutex);
  TheHandler().function = std::move(handler);
}

void ShowMessage(const CString& text) {
  std::function<void(const CString&)> handler;
  {
    const std::scoped_lock lock(TheHandler().mutex);
    handler = TheHandler().function;
  }
  if (handler) {
    handler(text);
  } else {
    ShowDefault(text);
  }
}

}  // namespace pokermath
