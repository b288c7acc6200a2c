// The program's folder and the system's error texts.

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>

#include "platform/text.h"
#include "pokermath/utilities.h"

CString GetExecDir(wchar_t* buffer) {
  constexpr std::size_t kMostCharacters = 259;
  std::error_code error;
  const std::string program = std::filesystem::read_symlink("/proc/self/exe", error).string();
  CString path = pokermath::FromUtf8(program).substr(0, kMostCharacters);
  if (path.ends_with(L'/')) path.pop_back();
  path.resize(std::min(path.rfind(L'/'), path.size()));
  buffer[path.copy(buffer, kMostCharacters)] = L'\0';
  return path;
}

void ErrorShow(unsigned long code, CString& text) {
  const char* known = code > 0x7FFFFFFF ? nullptr : strerrordesc_np(static_cast<int>(code));
  text = known == nullptr ? L"No text found for this error number"
                          : pokermath::FromUtf8(known) + L"\n";
}
