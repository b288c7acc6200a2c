// XML documents over pugixml: what the parser lets pass and XML does not is refused, and nothing
// that is nested deeply is walked with a stack.
//
// The tree holds texts as they were written (see kParseAsWritten); they are decoded when they are
// asked for, and what is put in is escaped. So a document is saved as it was loaded.

#include "pokermath/markup.h"

#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <optional>
#include <pugixml.hpp>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/files.h"
#include "platform/text.h"
#include "support/xml_text.h"
#include "support/xml_tree.h"

struct CMarkup::Document {
  // The element to be changed.
  static pugi::xml_node Current(const std::unique_ptr<Document>& document) {
    if (!document || !document->cursor) throw pokermath::XmlError("there is no element");
    return document->cursor;
  }

  pugi::xml_document tree;
  pugi::xml_node cursor;  // an element, or null when there is no root element
};

namespace {

using namespace pokermath;

constexpr unsigned kWriteAsKept =
    pugi::format_raw | pugi::format_no_escapes | pugi::format_no_declaration;
constexpr std::size_t kDeepestIndent = 50;

struct StringWriter : pugi::xml_writer {
  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
  std::string text;
};

struct AtomicFileWriter : pugi::xml_writer {
  explicit AtomicFileWriter(AtomicFile& to) : file(to) {}
  void write(const void* data, std::size_t size) override { file.Write(data, size); }
  AtomicFile& file;
};

// The parser signals what it has no memory for with a null node.
template <typename Handle>
Handle NotNull(Handle handle) {
  if (!handle) throw std::bad_alloc();
  return handle;
}

void Must(bool done) {
  if (!done) throw std::bad_alloc();
}

const char* TextOf(pugi::xml_parse_status status) {
  switch (status) {
    case pugi::status_bad_pi:
      return "a declaration or processing instruction is not right";
    case pugi::status_bad_comment:
      return "a comment is not right or does not end";
    case pugi::status_bad_cdata:
      return "a CDATA section is not right or does not end";
    case pugi::status_bad_doctype:
      return "the DOCTYPE is not right or does not end";
    case pugi::status_bad_start_element:
      return "a start tag is not right";
    case pugi::status_bad_attribute:
      return "an attribute is not right";
    case pugi::status_bad_end_element:
      return "an end tag is not right";
    case pugi::status_end_element_mismatch:
      return "an end tag is not that of the open element, or an element is not closed";
    default:
      return "there is something that is no tag";
  }
}

// Values are written between double quotes, whatever stood around them.
void EscapeQuotes(pugi::xml_node element) {
  for (pugi::xml_attribute attribute : element.attributes()) {
    const std::string_view value = attribute.value();
    if (value.find('"') == value.npos) continue;
    std::string escaped;
    for (const char c : value) escaped += c == '"' ? std::string("&quot;") : std::string(1, c);
    Must(attribute.set_value(escaped.c_str()));
  }
}

void Parse(pugi::xml_document& tree, std::string_view source) {
  CheckCharacters(source);
  const pugi::xml_parse_result result =
      tree.load_buffer(source.data(), source.size(), kParseAsWritten, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  if (!result) {
    throw XmlError(TextOf(result.status), source, static_cast<std::size_t>(result.offset));
  }
  CheckWellFormed(tree, source);
  for (pugi::xml_node node = tree.first_child(); node; node = NextNode(node)) EscapeQuotes(node);
  const pugi::xml_node declaration = tree.first_child();
  if (declaration.type() != pugi::node_declaration) return;
  pugi::xml_attribute encoding = declaration.attribute("encoding");
  // What the document was written in before: it will be written in UTF-8.
  if (encoding && strcasecmp(encoding.value(), "UTF-8") != 0) Must(encoding.set_value("UTF-8"));
}

std::string Shown(const CString& text) { return "'" + ToUtf8(OnOneLine(text)) + "'"; }

const wchar_t* FindUnfit(const CString& text) {
  const wchar_t* const end = text.data() + text.size();
  const wchar_t* const unfit = std::find_if_not(
      text.data(), end, [](wchar_t c) { return IsXmlCharacter(static_cast<char32_t>(c)); });
  return unfit == end ? nullptr : unfit;
}

std::string CheckedText(const CString& text) {
  if (const wchar_t* unfit = FindUnfit(text)) {
    throw XmlError(UnfitCharacter(static_cast<char32_t>(*unfit)));
  }
  return ToUtf8(text);
}

std::string CheckedName(const CString& name) {
  std::string bytes = ToUtf8(name);
  if (!IsXmlName(bytes)) throw XmlError(Shown(name) + " is not a name");
  return bytes;
}

bool Fits(pugi::xml_node node, const std::string& name) {
  return IsElement(node) && (name.empty() || name == node.name());
}

// The first of a row of nodes that is an element of that name.
template <typename Step>
pugi::xml_node FirstFit(pugi::xml_node node, const CString& name, const Step& step) {
  const std::string bytes = ToUtf8(name);
  while (node && !Fits(node, bytes)) node = step(node);
  return node;
}

pugi::xml_node NextSibling(pugi::xml_node node) { return node.next_sibling(); }

pugi::xml_node PreviousSibling(pugi::xml_node node) { return node.previous_sibling(); }

pugi::xml_node Child(pugi::xml_node parent, const CString& name) {
  return FirstFit(parent.first_child(), name, NextSibling);
}

bool MoveTo(pugi::xml_node& cursor, pugi::xml_node place) {
  if (!place) return false;
  cursor = place;
  return true;
}

bool IsData(pugi::xml_node node) { return IsText(node) || node.type() == pugi::node_cdata; }

std::string DataOf(pugi::xml_node element) {
  std::string text;
  bool elements = false;
  for (const pugi::xml_node node : element.children()) {
    elements = elements || IsElement(node);
    if (IsText(node)) text += DecodeText(node.value());
    if (node.type() == pugi::node_cdata) text += WithPlainLineEnds(node.value());
  }
  return elements && IsBlank(text) ? "" : text;
}

// Without memory for the new text the old one stays.
void PutData(pugi::xml_node element, const std::string& text) {
  const std::string raw = EscapeText(text);
  pugi::xml_node kept;
  if (!raw.empty()) {
    kept = NotNull(element.prepend_child(pugi::node_pcdata));
    if (!kept.set_value(raw.c_str())) {
      element.remove_child(kept);
      throw std::bad_alloc();
    }
  }
  for (pugi::xml_node node = element.first_child(); node;) {
    const pugi::xml_node next = node.next_sibling();
    if (node != kept && IsData(node)) element.remove_child(node);
    node = next;
  }
}

// Makes a new node an element of that name and text; without memory for it, it is gone again.
pugi::xml_node Fill(pugi::xml_node element, const std::string& name, const std::string& text) {
  NotNull(element);
  try {
    Must(element.set_name(name.c_str()));
    PutData(element, text);
    return element;
  } catch (const std::bad_alloc&) {
    element.parent().remove_child(element);
    throw;
  }
}

// Leaf by leaf: the parser's own removal goes as deep as the element does.
void RemoveWithAllInIt(const pugi::xml_node& element) {
  pugi::xml_node node = element;
  for (;;) {
    while (node.first_child()) node = node.first_child();
    pugi::xml_node parent = node.parent();
    const bool last = node == element;
    parent.remove_child(node);
    if (last) return;
    node = parent;
  }
}

// Two texts that become neighbours are one when they are read again, and must say the same. Of two
// that are only white space one is enough: a line goes with what stood on it.
void MeetTexts(pugi::xml_node first, pugi::xml_node second) {
  if (!IsText(first) || !IsText(second)) return;
  const std::string_view before = first.value(), behind = second.value();
  if (IsBlank(before) && IsBlank(behind)) {
    MeetTexts(first.previous_sibling(), second);
    first.parent().remove_child(first);
  } else if (before.ends_with('\r') && behind.starts_with('\n')) {
    const std::string_view line = before.substr(0, before.size() - 1);
    Must(first.set_value((std::string(line) + "\n").c_str()));
    MeetTexts(first.previous_sibling(), first);
  } else if (before.ends_with(']') && (behind.starts_with('>') || behind.starts_with("]>"))) {
    std::string raw(behind);
    Must(second.set_value(raw.replace(raw.find('>'), 1, "&gt;").c_str()));
  }
}

// An empty document gets a declaration as well.
void AddDeclaration(pugi::xml_document& tree) {
  pugi::xml_node declaration = NotNull(tree.append_child(pugi::node_declaration));
  Must(declaration.append_attribute("version").set_value("1.0"));
  Must(declaration.append_attribute("encoding").set_value("UTF-8"));
  Must(NotNull(tree.append_child(pugi::node_pcdata)).set_value("\n"));
}

// Copying is silent about what there was no memory for.
bool Alike(pugi::xml_node a, pugi::xml_node b) {
  const auto same = [](const char* x, const char* y) { return std::strcmp(x, y) == 0; };
  if (a.type() != b.type() || !same(a.name(), b.name()) || !same(a.value(), b.value())) {
    return false;
  }
  pugi::xml_attribute x = a.first_attribute(), y = b.first_attribute();
  while (x && same(x.name(), y.name()) && same(x.value(), y.value())) {
    x = x.next_attribute();
    y = y.next_attribute();
  }
  return !x && !y;
}

pugi::xml_node ParentOf(pugi::xml_node element) {
  if (!IsElement(element.parent())) throw XmlError("there is no place beside a root element");
  return element.parent();
}

bool KeepsSpace(pugi::xml_node node) {
  return std::strcmp(node.attribute("xml:space").value(), "preserve") == 0;
}

// Whether only white space stands between the things in it.
bool IsList(pugi::xml_node parent) {
  bool things = false;
  for (const pugi::xml_node node : parent.children()) {
    if (node.type() == pugi::node_cdata || (IsText(node) && !IsBlank(node.value()))) return false;
    things = things || !IsText(node);
  }
  return things;
}

// A new line and the indent of what is in `parent`. Deeper than anybody reads it grows no more.
std::string LineBreak(pugi::xml_node parent) {
  std::size_t depth = 0;
  for (; depth < kDeepestIndent && IsElement(parent); parent = parent.parent()) ++depth;
  return "\n" + std::string(2 * depth, ' ');
}

void IndentChildren(pugi::xml_node parent) {
  for (pugi::xml_node node = parent.first_child(); node;) {
    const pugi::xml_node next = node.next_sibling();
    if (IsText(node)) parent.remove_child(node);
    node = next;
  }
  const bool document = !IsElement(parent);
  const std::string before = LineBreak(parent);
  const std::string after = LineBreak(parent.parent());
  for (const pugi::xml_node node : parent.children()) {
    if (document && !node.previous_sibling()) continue;
    Must(NotNull(parent.insert_child_before(pugi::node_pcdata, node)).set_value(before.c_str()));
  }
  Must(NotNull(parent.append_child(pugi::node_pcdata)).set_value(after.c_str()));
}

}  // namespace

CMarkup::CMarkup() = default;

CMarkup::~CMarkup() = default;

CMarkup::CMarkup(CMarkup&& other) noexcept = default;

CMarkup::CMarkup(const CMarkup& other)
    : error_(other.error_), error_line_(other.error_line_), error_column_(other.error_column_) {
  if (!other.document_) return;
  document_ = std::make_unique<Document>();
  document_->tree.reset(other.document_->tree);
  pugi::xml_node to = document_->tree.first_child();
  for (pugi::xml_node from = other.document_->tree.first_child(); from; from = NextNode(from)) {
    Must(Alike(from, to));
    if (from == other.document_->cursor) document_->cursor = to;
    to = NextNode(to);
  }
}

CMarkup& CMarkup::operator=(CMarkup other) noexcept {
  std::swap(document_, other.document_);
  std::swap(error_, other.error_);
  std::swap(error_line_, other.error_line_);
  std::swap(error_column_, other.error_column_);
  return *this;
}

// Runs `work`; what is wrong becomes the error text.
template <typename Work>
bool CMarkup::Attempt(const Work& work) {
  error_.clear();
  error_line_ = error_column_ = 0;
  try {
    work();
    return true;
  } catch (const XmlError& error) {
    error_line_ = error.place().line;
    error_column_ = error.place().column;
    if (error_line_ > 0) {
      error_ = L"line " + std::to_wstring(error_line_) + L", column " +
               std::to_wstring(error_column_) + L": ";
    }
    error_ += FromUtf8(error.what());
    return false;
  }
}

// Takes the document's place only when all is well with the new one.
void CMarkup::Adopt(const std::string& text) {
  auto document = std::make_unique<Document>();
  Parse(document->tree, text);
  document->cursor = document->tree.document_element();
  document_ = std::move(document);
}

bool CMarkup::Load(const CString& path) {
  return Attempt([&] {
    std::optional<std::string> bytes = ReadWholeFile(ToUtf8(path));
    if (!bytes) {
      throw XmlError("cannot read " + Shown(path) + ": " + std::generic_category().message(errno));
    }
    Adopt(DecodeDocument(*std::move(bytes)));
  });
}

bool CMarkup::LoadText(const CString& text) {
  return Attempt([&] {
    if (const wchar_t* unfit = FindUnfit(text)) {
      const auto length = static_cast<std::size_t>(unfit - text.data());
      const std::string before = ToUtf8(std::wstring_view(text).substr(0, length));
      throw XmlError(UnfitCharacter(static_cast<char32_t>(*unfit)), before, before.size());
    }
    Adopt(ToUtf8(text));
  });
}

bool CMarkup::LoadUtf8(const std::string& text) {
  return Attempt([&] { Adopt(text); });
}

bool CMarkup::Save(const CString& path) {
  return Attempt([&] {
    Document::Current(document_);
    AtomicFile file(ToUtf8(path));
    AtomicFileWriter writer(file);
    if (file.ok()) document_->tree.save(writer, "", kWriteAsKept, pugi::encoding_utf8);
    if (!file.Commit()) {
      throw XmlError("cannot write " + Shown(path) + ": " + std::generic_category().message(errno));
    }
  });
}

CString CMarkup::Text() const { return FromUtf8(Utf8()); }

std::string CMarkup::Utf8() const {
  StringWriter writer;
  if (document_) document_->tree.save(writer, "", kWriteAsKept, pugi::encoding_utf8);
  return std::move(writer.text);
}

void CMarkup::Clear() { *this = CMarkup(); }

void CMarkup::Indent() {
  if (!document_ || !document_->cursor) return;
  IndentChildren(document_->tree);
  for (pugi::xml_node node = document_->tree.first_child(); node;) {
    const bool kept = KeepsSpace(node);
    if (!kept && IsElement(node) && IsList(node)) IndentChildren(node);
    node = kept ? NextBehind(node) : NextNode(node);
  }
}

bool CMarkup::ToRoot() {
  return document_ && MoveTo(document_->cursor, document_->tree.document_element());
}

bool CMarkup::Enter(const CString& name) {
  return document_ && MoveTo(document_->cursor, Child(document_->cursor, name));
}

bool CMarkup::Leave() {
  if (!document_ || !IsElement(document_->cursor.parent())) return false;
  return MoveTo(document_->cursor, document_->cursor.parent());
}

bool CMarkup::Next(const CString& name) {
  if (!document_) return false;
  return MoveTo(document_->cursor, FirstFit(NextSibling(document_->cursor), name, NextSibling));
}

bool CMarkup::Previous(const CString& name) {
  if (!document_) return false;
  return MoveTo(document_->cursor,
                FirstFit(PreviousSibling(document_->cursor), name, PreviousSibling));
}

bool CMarkup::Find(const CString& name) {
  if (!document_) return false;
  return MoveTo(document_->cursor, FirstFit(NextNode(document_->cursor), name, NextNode));
}

CString CMarkup::Name() const { return document_ ? FromUtf8(document_->cursor.name()) : CString(); }

CString CMarkup::Data() const {
  return document_ ? FromUtf8(DataOf(document_->cursor)) : CString();
}

CString CMarkup::ChildData(const CString& name) const {
  return document_ ? FromUtf8(DataOf(Child(document_->cursor, name))) : CString();
}

bool CMarkup::HasAttribute(const CString& name) const {
  return document_ && document_->cursor.attribute(ToUtf8(name).c_str());
}

CString CMarkup::Attribute(const CString& name) const {
  if (!document_) return {};
  return FromUtf8(DecodeAttribute(document_->cursor.attribute(ToUtf8(name).c_str()).value()));
}

CStringArray CMarkup::AttributeNames() const {
  CStringArray names;
  if (!document_) return names;
  for (const pugi::xml_attribute attribute : document_->cursor.attributes()) {
    names.push_back(FromUtf8(attribute.name()));
  }
  return names;
}

bool CMarkup::SetData(const CString& text) {
  return Attempt([&] { PutData(Document::Current(document_), CheckedText(text)); });
}

bool CMarkup::SetChildData(const CString& name, const CString& text) {
  return Attempt([&] {
    pugi::xml_node parent = Document::Current(document_);
    const std::string child_name = CheckedName(name);
    const std::string data = CheckedText(text);
    pugi::xml_node child = Child(parent, name);
    if (child) {
      PutData(child, data);
    } else {
      Fill(parent.append_child(pugi::node_element), child_name, data);
    }
  });
}

bool CMarkup::SetAttribute(const CString& name, const CString& value) {
  return Attempt([&] {
    const std::string attribute_name = CheckedName(name);
    const std::string raw = EscapeAttribute(CheckedText(value));
    pugi::xml_node element = Document::Current(document_);
    pugi::xml_attribute attribute = element.attribute(attribute_name.c_str());
    if (attribute) return Must(attribute.set_value(raw.c_str()));
    attribute = NotNull(element.append_attribute(""));
    if (attribute.set_name(attribute_name.c_str()) && attribute.set_value(raw.c_str())) return;
    element.remove_attribute(attribute);
    throw std::bad_alloc();
  });
}

bool CMarkup::RemoveAttribute(const CString& name) {
  return Attempt([&] {
    if (!Document::Current(document_).remove_attribute(ToUtf8(name).c_str())) {
      throw XmlError("there is no attribute " + Shown(name));
    }
  });
}

// Fills a new node where `put` puts one, or makes it the root of an empty document.
template <typename Put>
bool CMarkup::AddElement(const CString& name, const CString& data, const Put& put) {
  return Attempt([&] {
    const std::string bytes = CheckedName(name);
    const std::string text = CheckedText(data);
    std::unique_ptr<Document> fresh;
    if (!document_ || !document_->tree.first_child()) {
      fresh = std::make_unique<Document>();
      AddDeclaration(fresh->tree);
    }
    Document& document = fresh ? *fresh : *document_;
    pugi::xml_node& cursor = document.cursor;
    cursor =
        Fill(cursor ? put(cursor) : document.tree.append_child(pugi::node_element), bytes, text);
    if (fresh) document_ = std::move(fresh);
  });
}

bool CMarkup::AddChild(const CString& name, const CString& data) {
  return AddElement(name, data,
                    [](pugi::xml_node cursor) { return cursor.append_child(pugi::node_element); });
}

bool CMarkup::Add(const CString& name, const CString& data) {
  return AddElement(name, data, [](pugi::xml_node cursor) {
    return ParentOf(cursor).insert_child_after(pugi::node_element, cursor);
  });
}

bool CMarkup::Insert(const CString& name, const CString& data) {
  return AddElement(name, data, [](pugi::xml_node cursor) {
    return ParentOf(cursor).insert_child_before(pugi::node_element, cursor);
  });
}

bool CMarkup::Remove() {
  return Attempt([&] {
    const pugi::xml_node element = Document::Current(document_);
    const pugi::xml_node parent = element.parent();
    // What needs memory comes first.
    MeetTexts(element.previous_sibling(), element.next_sibling());
    RemoveWithAllInIt(element);
    document_->cursor = IsElement(parent) ? parent : pugi::xml_node();
  });
}

bool CMarkup::RemoveAndNext(const CString& name) {
  pugi::xml_node next;
  if (document_) next = FirstFit(NextSibling(document_->cursor), name, NextSibling);
  return Remove() && MoveTo(document_->cursor, next);
}
