#include "support/xml_text.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <initializer_list>
#include <iterator>
#include <new>
#include <pugixml.hpp>
#include <utility>

#include "platform/text.h"

namespace pokermath {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

struct Range {
  char32_t first, last;
};

// Characters of names, by "Extensible Markup Language 1.0, fifth edition" (W3C, 2008), 2.3.
constexpr Range kNameStart[] = {
    {':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr Range kNameInside[] = {
    {'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t size>
bool IsIn(const Range (&ranges)[size], char32_t c) {
  return std::any_of(std::begin(ranges), std::end(ranges),
                     [c](Range range) { return c >= range.first && c <= range.last; });
}

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// What stands at an &: how long it is, 0 if it is no reference, and the character that it means, 0
// for an entity of the document's own.
struct Reference {
  std::size_t length = 0;
  char32_t character = 0;
};

Reference ReadNumber(std::string_view digits, unsigned base, std::size_t length) {
  char32_t character = 0;
  if (digits.empty()) return {};
  for (const char c : digits) {
    const auto byte = static_cast<unsigned char>(c);
    const bool digit = base == 16 ? std::isxdigit(byte) != 0 : c >= '0' && c <= '9';
    if (!digit || character > 0x10FFFF) return {};
    const int value = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
    character = character * base + static_cast<char32_t>(value);
  }
  return IsXmlCharacter(character) ? Reference{length, character} : Reference{};
}

Reference ReadReference(std::string_view text) {
  constexpr std::pair<std::string_view, char> kKnown[] = {
      {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  const std::size_t end = text.find(';');
  if (end == text.npos) return {};
  const std::string_view name = text.substr(1, end - 1);
  if (name.starts_with("#x")) return ReadNumber(name.substr(2), 16, end + 1);
  if (name.starts_with("#")) return ReadNumber(name.substr(1), 10, end + 1);
  if (!IsXmlName(name)) return {};
  for (const auto& [known, character] : kKnown) {
    if (name == known) return {end + 1, static_cast<char32_t>(character)};
  }
  return {end + 1, 0};
}

// Copies the text with line ends made one, or each made a blank, and references replaced.
std::string Decode(std::string_view raw, bool attribute) {
  std::string text;
  text.reserve(raw.size());
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] == '\r') {
      if (raw.substr(i + 1).starts_with('\n')) continue;
      text += attribute ? ' ' : '\n';
    } else if (attribute && (raw[i] == '\n' || raw[i] == '\t')) {
      text += ' ';
    } else if (raw[i] == '&') {
      const Reference reference = ReadReference(raw.substr(i));
      const std::size_t length = std::max<std::size_t>(reference.length, 1);
      if (reference.character != 0) {
        utf8::unchecked::append(reference.character, std::back_inserter(text));
      } else {
        text += raw.substr(i, length);
      }
      i += length - 1;
    } else {
      text += raw[i];
    }
  }
  return text;
}

using namespace std::string_view_literals;

// UTF-16 shows in the first bytes: by its mark, or by a < of two bytes.
constexpr std::string_view kBigStarts[] = {"\xFE\xFF"sv, "\x00<"sv};
constexpr std::string_view kLittleStarts[] = {"\xFF\xFE"sv, "<\x00"sv};

std::string FromUtf16(std::string_view bytes, bool big) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto first = static_cast<unsigned char>(bytes[2 * i]);
    const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<char16_t>(big ? first << 8 | second : second << 8 | first);
  }
  std::string text;
  text.reserve(bytes.size());
  bool right = bytes.size() % 2 == 0;
  try {
    utf8::utf16to8(units.begin(), units.end(), std::back_inserter(text));
  } catch (const utf8::exception&) {
    right = false;
  }
  if (!right) throw XmlError("the text is not UTF-16", text, text.size());
  return text;
}

// The encoding that the declaration names, in lower case; empty if it names none.
std::string NamedEncoding(std::string_view bytes) {
  const std::size_t end = bytes.find("?>");
  if (!bytes.starts_with("<?xml") || end == bytes.npos) return "";
  pugi::xml_document tree;
  const pugi::xml_parse_result result = tree.load_buffer(
      bytes.data(), end + 2, pugi::parse_declaration | pugi::parse_fragment, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  std::string name = tree.first_child().attribute("encoding").value();
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return IsAsciiLetter(c) ? static_cast<char>(c | 0x20) : c; });
  return name;
}

std::string FromLatin1(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) {
    utf8::unchecked::append(static_cast<unsigned char>(c), std::back_inserter(text));
  }
  return text;
}

std::string FromNamedEncoding(std::string bytes) {
  const std::string name = NamedEncoding(bytes);
  const auto is = [&name](std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  if (is({"", "utf-8", "utf8", "us-ascii", "ascii"})) return bytes;
  if (is({"iso-8859-1", "iso_8859-1", "latin1", "latin-1"})) return FromLatin1(bytes);
  if (is({"windows-1252", "cp1252"})) return ToUtf8(FromWindows1252(bytes));
  const std::string shown = ToUtf8(OnOneLine(FromUtf8(name.substr(0, 40))));
  if (name.starts_with("utf-16")) {
    throw XmlError("its declaration says " + shown + ", but it is not written so");
  }
  throw XmlError("'" + shown +
                 "' cannot be its encoding: UTF-8, UTF-16, ISO-8859-1 or windows-1252");
}

TextPlace PlaceOf(std::string_view text, std::size_t offset) {
  TextPlace place{1, 1};
  for (std::size_t i = text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
       i < std::min(offset, text.size()); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte == '\n' || (byte == '\r' && !text.substr(i + 1).starts_with('\n'))) {
      ++place.line;
      place.column = 1;
    } else if ((byte & 0xC0) != 0x80) {
      ++place.column;
    }
  }
  return place;
}

}  // namespace

XmlError::XmlError(const std::string& text, std::string_view document, std::size_t offset)
    : std::runtime_error(text), place_(PlaceOf(document, offset)) {}

std::string DecodeDocument(std::string bytes) {
  if (bytes.starts_with(kUtf8Mark)) return bytes;
  for (const std::string_view start : kBigStarts) {
    if (bytes.starts_with(start)) return FromUtf16(bytes, true);
  }
  for (const std::string_view start : kLittleStarts) {
    if (bytes.starts_with(start)) return FromUtf16(bytes, false);
  }
  return FromNamedEncoding(std::move(bytes));
}

bool IsXmlCharacter(char32_t c) {
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  return c < 0xD800 || (c > 0xDFFF && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF);
}

std::string UnfitCharacter(char32_t c) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "XML cannot hold the character U+%04X",
                static_cast<unsigned>(c));
  return text.data();
}

void CheckCharacters(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    // Most of a document is ASCII.
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte >= 0x20 && byte < 0x80) {
      ++i;
      continue;
    }
    char32_t character = byte;
    const char* next = text.data() + i;
    try {
      character = utf8::next(next, text.data() + text.size());
    } catch (const utf8::exception&) {
      throw XmlError("the text is not UTF-8", text, i);
    }
    if (!IsXmlCharacter(character)) throw XmlError(UnfitCharacter(character), text, i);
    i = static_cast<std::size_t>(next - text.data());
  }
}

bool IsXmlName(std::string_view name) {
  if (!utf8::is_valid(name.begin(), name.end())) return false;
  const char* at = name.data();
  const char* const end = at + name.size();
  if (at == end || !IsIn(kNameStart, utf8::unchecked::next(at))) return false;
  while (at != end) {
    const char32_t character = utf8::unchecked::next(at);
    if (!IsIn(kNameStart, character) && !IsIn(kNameInside, character)) return false;
  }
  return true;
}

std::string EscapeText(std::string_view text) {
  std::string raw;
  for (const char c : text) {
    switch (c) {
      case '&':
        raw += "&amp;";
        break;
      case '<':
        raw += "&lt;";
        break;
      case '>':
        raw += "&gt;";
        break;
      case '\r':  // else it would be read as a line end
        raw += "&#13;";
        break;
      default:
        raw += c;
    }
  }
  return raw;
}

std::string EscapeAttribute(std::string_view text) {
  std::string raw;
  for (const char c : EscapeText(text)) {
    if (c == '"') {
      raw += "&quot;";
    } else if (c == '\t' || c == '\n') {  // else they would be read as blanks
      raw += c == '\t' ? "&#9;" : "&#10;";
    } else {
      raw += c;
    }
  }
  return raw;
}

std::string DecodeText(std::string_view raw) { return Decode(raw, false); }

std::string DecodeAttribute(std::string_view raw) { return Decode(raw, true); }

std::string WithPlainLineEnds(std::string_view raw) {
  std::string text;
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\r') {
      text += raw[i];
    } else if (!raw.substr(i + 1).starts_with('\n')) {
      text += '\n';
    }
  }
  return text;
}

std::size_t FindBadReference(std::string_view raw, bool own_entities) {
  std::size_t at = raw.find('&');
  while (at != raw.npos) {
    const Reference reference = ReadReference(raw.substr(at));
    if (reference.length == 0 || (reference.character == 0 && !own_entities)) return at;
    at = raw.find('&', at + reference.length);
  }
  return raw.npos;
}

bool IsBlank(std::string_view text) { return text.find_first_not_of(kBlanks) == text.npos; }

}  // namespace pokermath
