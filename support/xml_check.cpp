// Rules of XML that the parser does not enforce. They are checked on the tree; as its texts are
// still as they were written, they also tell where in the document they stand.

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "support/xml_text.h"
#include "support/xml_tree.h"

namespace pokermath {
namespace {

bool IsVersion(std::string_view value) {
  return value.starts_with("1.") && value.size() > 2 &&
         value.find_first_not_of("0123456789", 2) == value.npos;
}

// A name in ASCII that begins with a letter.
bool IsEncodingName(std::string_view value) {
  return IsXmlName(value) && !value.starts_with('_') &&
         std::none_of(value.begin(), value.end(),
                      [](char c) { return c == ':' || (c & 0x80) != 0; });
}

class Checker {
 public:
  Checker(const pugi::xml_document& tree, std::string_view source)
      : tree_(tree), source_(source), root_(tree.document_element()) {
    if (!root_) throw XmlError("there is no element", source, source.size());
    start_ = root_.name() - root_.offset_debug();
  }

  void Run() {
    for (pugi::xml_node node = tree_.first_child(); node; node = NextNode(node)) CheckNode(node);
  }

 private:
  // `place` points into what was parsed.
  [[noreturn]] void Fail(const std::string& what, const char* place) const {
    throw XmlError(what, source_, static_cast<std::size_t>(place - start_));
  }

  // An empty value is not in what was parsed; what stands before it is.
  const char* Place(pugi::xml_node node) const {
    const std::ptrdiff_t offset = node.offset_debug();
    return start_ + std::max<std::ptrdiff_t>(offset, 0);
  }

  void CheckNode(pugi::xml_node node) {
    const std::string_view value = node.value();
    const bool inside = IsElement(node.parent());
    switch (node.type()) {
      case pugi::node_element:
        if (!inside && node != root_) Fail("there is a second root element", node.name());
        root_seen_ = true;
        CheckName(node.name());
        CheckAttributes(node);
        break;
      case pugi::node_declaration:
        CheckDeclaration(node);
        break;
      case pugi::node_doctype:
        CheckDoctype(node);
        break;
      case pugi::node_pi:
        CheckName(node.name());
        break;
      case pugi::node_cdata:
        if (!inside) Fail("there is text outside the root element", Place(node));
        break;
      case pugi::node_pcdata:
        if (!inside && !IsBlank(value)) Fail("there is text outside the root element", Place(node));
        CheckReferences(value);
        FailAt(value, value.find("]]>"), "text has ]]>: write ]]&gt;");
        break;
      case pugi::node_comment:
        FailAt(value, value.find("--"), "a comment has --");
        if (value.ends_with('-')) Fail("a comment ends in -", value.data() + value.size() - 1);
        break;
      default:
        break;
    }
  }

  // A version, then perhaps an encoding, then perhaps whether it stands alone.
  void CheckDeclaration(pugi::xml_node node) const {
    if (node.previous_sibling()) {
      Fail("an XML declaration does not stand at the start", node.name());
    }
    pugi::xml_attribute next = node.first_attribute();
    const auto take = [&](std::string_view name, bool (*fits)(std::string_view)) {
      if (next.name() != name) return false;
      if (!fits(next.value())) Fail("a value of the XML declaration is not right", next.name());
      next = next.next_attribute();
      return true;
    };
    if (node.name() != std::string_view("xml") || !take("version", IsVersion)) {
      Fail("an XML declaration begins <?xml version=", node.name());
    }
    take("encoding", IsEncodingName);
    take("standalone", [](std::string_view value) { return value == "yes" || value == "no"; });
    if (next) Fail("an XML declaration has only version, encoding, standalone", next.name());
  }

  void CheckDoctype(pugi::xml_node node) {
    const char* const place = Place(node);
    if (doctype_seen_ || root_seen_) Fail("a DOCTYPE is in the wrong place", place);
    doctype_seen_ = true;
    const std::string_view value = node.value();
    const auto offset = static_cast<std::size_t>(place - start_);
    if (!IsBlank(source_.substr(offset - 1, 1)) ||
        !IsXmlName(value.substr(0, value.find_first_of(" \t\r\n[")))) {
      Fail("a DOCTYPE has no name", place);
    }
  }

  void FailAt(std::string_view value, std::size_t place, const char* what) const {
    if (place != value.npos) Fail(what, value.data() + place);
  }

  void CheckName(const char* name) const {
    if (!IsXmlName(name)) Fail("a name has a character that no name may have", name);
  }

  void CheckReferences(std::string_view value) const {
    FailAt(value, FindBadReference(value, doctype_seen_),
           "an & begins no reference, or one to an entity that is not declared: write &amp;");
  }

  void CheckAttributes(pugi::xml_node node) {
    names_.clear();
    for (const pugi::xml_attribute attribute : node.attributes()) {
      const std::string_view value = attribute.value();
      CheckName(attribute.name());
      CheckReferences(value);
      FailAt(value, value.find('<'), "the value of an attribute has <: write &lt;");
      names_.emplace_back(attribute.name());
    }
    // Sorted by name and place, so that a document with many attributes is no trap.
    std::sort(names_.begin(), names_.end(), [](std::string_view a, std::string_view b) {
      return a == b ? a.data() < b.data() : a < b;
    });
    const auto twice = std::adjacent_find(names_.begin(), names_.end());
    if (twice != names_.end()) Fail("an attribute is given twice", (twice + 1)->data());
  }

  const pugi::xml_document& tree_;
  std::string_view source_;
  pugi::xml_node root_;
  const char* start_;
  bool doctype_seen_ = false, root_seen_ = false;
  std::vector<std::string_view> names_;  // of one element; kept for its memory
};

}  // namespace

void CheckWellFormed(const pugi::xml_document& tree, std::string_view source) {
  Checker(tree, source).Run();
}

}  // namespace pokermath
