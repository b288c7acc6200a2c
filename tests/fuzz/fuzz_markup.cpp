// Any bytes as an XML document: what loads is saved and loads again as the same, and so does what
// was changed in it, whatever the changes are.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "pokermath/markup.h"
#include "support/xml_text.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

CString Walk(CMarkup doc) {
  CString said;
  if (!doc.ToRoot()) return said;
  do {
    said += doc.Name() + L"|" + doc.Data();
    for (const CString& name : doc.AttributeNames()) said += L"|" + name + doc.Attribute(name);
    said += L"\n";
  } while (doc.Find());
  return said;
}

// A byte is a step of the cursor or a change.
void Do(CMarkup& doc, std::uint8_t what, const CString& text) {
  const CString before = doc.Text();
  bool done = true;
  switch (what % 14) {
    case 0:
      doc.Enter();
      break;
    case 1:
      doc.Leave();
      break;
    case 2:
      doc.Next();
      break;
    case 3:
      doc.Previous();
      break;
    case 4:
      doc.Find();
      break;
    case 5:
      done = doc.SetData(text);
      break;
    case 6:
      done = doc.SetAttribute(text.substr(0, 1), text);
      break;
    case 7:
      done = doc.AddChild(text.substr(0, 2), text);
      break;
    case 8:
      done = doc.Add(L"b", text);
      break;
    case 9:
      done = doc.Insert(L"c", text);
      break;
    case 10:
      done = doc.SetChildData(L"d", text);
      break;
    case 11:
      doc.Indent();
      break;
    case 12:
      doc.RemoveAndNext();
      break;
    default:
      done = doc.Remove();
  }
  Require(done || (!doc.ErrorText().empty() && doc.Text() == before));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  // The first byte says how many of the next are changes; the rest is the document.
  const std::size_t changes = (data[0] % 32u) < size ? data[0] % 32u : size - 1;
  const std::string bytes(reinterpret_cast<const char*>(data) + 1 + changes, size - 1 - changes);
  std::string text;
  try {
    text = pokermath::DecodeDocument(bytes);
  } catch (const pokermath::XmlError&) {
    return 0;
  }
  CMarkup doc;
  if (!doc.LoadUtf8(text)) {
    Require(doc.ErrorLine() > 0 && doc.ErrorColumn() > 0 && doc.Text().empty());
    return 0;
  }
  for (std::size_t i = 0; i < changes; ++i) {
    Do(doc, data[1 + i], CString(data + 1 + i, data + 1 + changes));
    CMarkup again;
    if (!doc.Name().empty()) Require(again.LoadUtf8(doc.Utf8()));
    Require(Walk(again) == Walk(doc) && Walk(CMarkup(doc)) == Walk(doc));
    if (!doc.Name().empty()) Require(again.Text() == doc.Text());
  }
  return 0;
}
