#include "support/odbc/names.h"

#include <algorithm>
#include <clocale>
#include <cwctype>

#include "platform/text.h"

namespace pokermath {

CString UpperCase(CString text) {
  // Never freed: it is needed as long as the program runs.
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  for (wchar_t& c : text) {
    if (c >= L'a' && c <= L'z') {
      c = static_cast<wchar_t>(c - L'a' + L'A');
    } else if (c > 0x7F && locale != nullptr) {
      c = static_cast<wchar_t>(towupper_l(static_cast<wint_t>(c), locale));
    }
  }
  return text;
}

void AssignUtf8(std::string_view bytes, CString& text) {
  const auto is_ascii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  if (std::all_of(bytes.begin(), bytes.end(), is_ascii)) {
    text.assign(bytes.begin(), bytes.end());
  } else {
    text = FromUtf8(bytes);
  }
}

}  // namespace pokermath
