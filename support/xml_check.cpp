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

class Checker {
 public:
  Checker(const pugi::xml_document& tree, std::string_view source)
      : tree_(tree), source_(source), root_(tree.document_element()) {
    if (!root_) throw XmlError("there is no element", source, source.size());
    start_ = root_.name() - root_.offset_debug();
  }

  void Run() {
    CheckTopLevel();
    for (pugi::xml_node node = tree_.first_child(); node; node = NextNode(node)) CheckNode(node);
  }

 private:
  // `place` points into what was parsed.
  [[noreturn]] void Fail(const std::string& what, const char* place) const {
    throw XmlError(what, source_, static_cast<std::size_t>(place - start_));
  }

  // Only declarations, comments and the like may stand beside the root element, each in its place.
  void CheckTopLevel() const {
    bool behind_root = false, doctype_seen = false;
    for (const pugi::xml_node node : tree_.children()) {
      switch (node.type()) {
        case pugi::node_element:
          if (behind_root) Fail("there is a second root element", node.name());
          behind_root = true;
          break;
        case pugi::node_pcdata:
        case pugi::node_cdata:
          if (node.type() == pugi::node_cdata || !IsBlank(node.value())) {
            Fail("there is text outside the root element", Place(node));
          }
          break;
        case pugi::node_doctype:
          if (behind_root || doctype_seen) Fail("a DOCTYPE is in the wrong place", Place(node));
          doctype_seen = true;
          break;
        default:
          break;
      }
    }
  }

  // An empty value is not in what was parsed; what stands before it is.
  const char* Place(pugi::xml_node node) const {
    const std::ptrdiff_t offset = node.offset_debug();
    return start_ + std::max<std::ptrdiff_t>(offset, 0);
  }

  void CheckNode(pugi::xml_node node) {
    const std::string_view value = node.value();
    switch (node.type()) {
      case pugi::node_element:
        CheckName(node.name());
        CheckAttributes(node);
        break;
      case pugi::node_declaration:
        if (node.previous_sibling() || node.parent() != tree_) {
          Fail("an XML declaration does not stand at the start", node.name());
        }
        CheckAttributes(node);
        break;
      case pugi::node_pi:
        CheckName(node.name());
        break;
      case pugi::node_pcdata:
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

  void FailAt(std::string_view value, std::size_t place, const char* what) const {
    if (place != value.npos) Fail(what, value.data() + place);
  }

  void CheckName(const char* name) const {
    if (!IsXmlName(name)) Fail("a name has a character that no name may have", name);
  }

  void CheckReferences(std::string_view value) const {
    FailAt(value, FindBadReference(value), "an & begins no reference: write &amp;");
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
  std::vector<std::string_view> names_;  // of one element; kept for its memory
};

}  // namespace

void CheckWellFormed(const pugi::xml_document& tree, std::string_view source) {
  Checker(tree, source).Run();
}

}  // namespace pokermath
