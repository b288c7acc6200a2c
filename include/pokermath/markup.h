/// @file
/// XML documents: loaded, walked through with a cursor, changed, saved.
///
///     CMarkup doc;
///     if (!doc.Load(L"players.xml")) return Complain(doc.ErrorText());
///     if (doc.Enter(L"player")) {
///       do {
///         Show(doc.Attribute(L"name"), doc.ChildData(L"stack"));
///       } while (doc.Next(L"player"));
///       doc.Leave();
///     }
///
/// What was not changed is saved as it was loaded: white space, line ends, comments, references.
/// Only inside of tags, and before the content of instructions and of the DOCTYPE, blanks and
/// quotes become alike; `<a></a>` becomes `<a/>`; a byte-order mark goes, and a declared encoding
/// other than UTF-8 becomes "UTF-8". No entity is ever expanded and no other file is ever read: a
/// reference to an entity of the document's own, which needs a DOCTYPE, is the text of that
/// reference. Any depth and any size up to 2 GB; a document takes up to twenty times its size in
/// memory. When memory runs out, std::bad_alloc is thrown and nothing is changed, but that Indent()
/// may have done a part of its work. An object belongs to one thread.

#ifndef POKERMATH_MARKUP_H_
#define POKERMATH_MARKUP_H_

#include <memory>
#include <string>

#include "pokermath/export.h"
#include "pokermath/text.h"

/// An XML document and a cursor, which stands on one of its elements.
class POKERMATH_EXPORT CMarkup {
 public:
  /// An empty document.
  CMarkup();
  ~CMarkup();
  /// A copy is a document of its own, its cursor at the same place.
  CMarkup(const CMarkup& other);
  /// What is moved from is an empty document.
  CMarkup(CMarkup&& other) noexcept;
  /// Takes the other document and its cursor over, by copy or move.
  CMarkup& operator=(CMarkup other) noexcept;

  /// @name The whole document
  /// What loads puts the cursor on the root element. What fails gives false and leaves the document
  /// as it was; it shows no message, ErrorText() tells why.
  /// @{

  /// Reads a file in UTF-8, UTF-16, ISO-8859-1 or windows-1252: what its mark or its declaration
  /// says.
  bool Load(const CString& path);
  /// Reads a text; an encoding in its declaration has no meaning.
  bool LoadText(const CString& text);
  /// The same from UTF-8.
  bool LoadUtf8(const std::string& text);

  /// Writes the file as UTF-8; it appears complete or not at all. False for a document without an
  /// element.
  bool Save(const CString& path);
  /// The document as text.
  CString Text() const;
  /// The document as UTF-8, as Save writes it.
  std::string Utf8() const;

  /// Makes it an empty document.
  void Clear();
  /// Puts every element on a line of its own, but none directly inside an element that has text,
  /// and none at any depth inside xml:space="preserve". Without it, what is added stands where it
  /// was put, without any space.
  void Indent();

  /// Why the last call that loads, saves or changes something gave false: "line 3, column 5: an
  /// attribute is given twice"; empty if it did not.
  const CString& ErrorText() const { return error_; }
  /// The line in the document that was to be loaded, counted from 1, and columns in characters; 0
  /// if the error has no place there.
  int ErrorLine() const { return error_line_; }
  /// The column, likewise.
  int ErrorColumn() const { return error_column_; }

  /// @}

  /// @name The cursor
  /// A move that finds nothing gives false and leaves it where it is. An empty name means any;
  /// names are compared letter for letter, with their prefix.
  /// @{

  /// To the root element; false in an empty document.
  bool ToRoot();
  /// To the first child of that name.
  bool Enter(const CString& name = {});
  /// To the parent; false on the root element.
  bool Leave();
  /// To the next of that name among the children of the same parent.
  bool Next(const CString& name = {});
  /// To the one before of that name among them.
  bool Previous(const CString& name = {});
  /// To the next of that name in the order of the text: inside the current element or behind it, at
  /// any depth.
  bool Find(const CString& name = {});

  /// @}

  /// @name The current element
  /// In an empty document all of it is empty.
  /// @{

  /// Its name, with its prefix.
  CString Name() const;
  /// The text in it, without that of the elements in it; white space alone counts only if there are
  /// none.
  CString Data() const;
  /// Data() of the first child of that name; empty if there is none.
  CString ChildData(const CString& name) const;
  /// Whether it has an attribute of that name.
  bool HasAttribute(const CString& name) const;
  /// The value of an attribute, references in it read; empty if there is none of that name.
  CString Attribute(const CString& name) const;
  /// The names of its attributes, in the order in which they are written.
  CStringArray AttributeNames() const;

  /// @}

  /// @name Changes
  /// False, and nothing is changed, for a name that XML does not allow, or a text with a character
  /// that it cannot hold (a control character, half a surrogate pair); also in an empty document,
  /// unless said otherwise.
  /// @{

  /// Replaces the text in it; elements in it stay.
  bool SetData(const CString& text);
  /// The same for the first child of that name, which is added if there is none.
  bool SetChildData(const CString& name, const CString& text);
  /// Sets the value of an attribute, which is added behind the others if there is none of that
  /// name.
  bool SetAttribute(const CString& name, const CString& value);
  /// Takes an attribute away; false if there is none of that name.
  bool RemoveAttribute(const CString& name);

  /// Adds an element behind the last child of the current one, and goes to it. In an empty document
  /// it is the root element.
  bool AddChild(const CString& name, const CString& data = {});
  /// Adds an element behind the current one, and goes to it; false on the root element, beside
  /// which there is no place. In an empty document it is the root element.
  bool Add(const CString& name, const CString& data = {});
  /// The same before the current one.
  bool Insert(const CString& name, const CString& data = {});
  /// Removes the current element and all in it; if there is only white space before and behind it,
  /// that before it as well. The cursor goes to the parent. False in an empty document.
  bool Remove();
  /// The same, but the cursor goes to the next of that name among the children of the same parent;
  /// if there is none, to the parent, with false and an empty ErrorText(). Removes many in linear
  /// time.
  bool RemoveAndNext(const CString& name = {});

  /// @}

 private:
  struct Document;

  template <typename Work>
  bool Attempt(const Work& work);
  void Adopt(const std::string& text);
  template <typename Put>
  bool AddElement(const CString& name, const CString& data, const Put& put);

  std::unique_ptr<Document> document_;  // null: empty
  CString error_;
  int error_line_ = 0;
  int error_column_ = 0;
};

#endif  // POKERMATH_MARKUP_H_
