// The text of XML documents: which characters it may have, names, references, encodings.

#ifndef POKERMATH_SUPPORT_XML_TEXT_H_
#define POKERMATH_SUPPORT_XML_TEXT_H_

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace pokermath {

/// A place in a text, counted from 1; 0 is none. Columns are characters, without a byte-order mark.
struct TextPlace {
  int line = 0;
  int column = 0;
};

/// Why XML cannot be read or changed. Never leaves the library.
class XmlError : public std::runtime_error {
 public:
  /// @param text  UTF-8
  explicit XmlError(const std::string& text) : std::runtime_error(text) {}
  /// The same, with the place of byte `offset` of the document.
  XmlError(const std::string& text, std::string_view document, std::size_t offset);

  TextPlace place() const { return place_; }

 private:
  TextPlace place_;
};

inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

/// The bytes of a file as UTF-8; a byte-order mark stays. The encoding is found by the mark, by how
/// the first character looks, or by the name in the declaration. Throws XmlError.
std::string DecodeDocument(std::string bytes);

/// Whether XML can hold it; most control characters and half surrogate pairs it cannot.
bool IsXmlCharacter(char32_t c);

/// What is said of a character that it cannot hold.
std::string UnfitCharacter(char32_t c);

/// Throws XmlError if the text is not UTF-8 or has a character that XML cannot hold.
void CheckCharacters(std::string_view text);

/// Whether it may be the name of an element or an attribute.
bool IsXmlName(std::string_view name);

/// Text fit to stand between tags, and between the double quotes of an attribute.
std::string EscapeText(std::string_view text);
std::string EscapeAttribute(std::string_view text);

/// What text between tags and the value of an attribute say: line ends made one, references
/// replaced. A reference to an entity of the document's own stays as it is written.
std::string DecodeText(std::string_view raw);
std::string DecodeAttribute(std::string_view raw);

/// Line ends made one, as in a CDATA section, where references have no meaning.
std::string WithPlainLineEnds(std::string_view raw);

/// Offset of the first & that begins no reference to a character or an entity; npos if there is
/// none.
///
/// @param own_entities  whether a document may have others than the five of XML
std::size_t FindBadReference(std::string_view raw, bool own_entities);

/// Whether nothing but white space is in it.
bool IsBlank(std::string_view text);

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_XML_TEXT_H_
