// Walks through a tree of XML that need no stack: a document may be nested a million deep.

#ifndef POKERMATH_SUPPORT_XML_TREE_H_
#define POKERMATH_SUPPORT_XML_TREE_H_

#include <pugixml.hpp>
#include <string_view>

namespace pokermath {

/// How every document is parsed: all that it has is kept, as it was written. References and line
/// ends are left alone, so that a document is saved as it was loaded and no entity is ever
/// expanded.
inline constexpr unsigned kParseAsWritten =
    pugi::parse_cdata | pugi::parse_comments | pugi::parse_pi | pugi::parse_declaration |
    pugi::parse_doctype | pugi::parse_ws_pcdata | pugi::parse_fragment;

/// The node behind this one and all that is in it, in the order of the text; null at the end.
inline pugi::xml_node NextBehind(pugi::xml_node node) {
  while (node && !node.next_sibling()) node = node.parent();
  return node.next_sibling();
}

/// The next node in the order of the text, children before siblings; null at the end.
inline pugi::xml_node NextNode(pugi::xml_node node) {
  return node.first_child() ? node.first_child() : NextBehind(node);
}

inline bool IsElement(pugi::xml_node node) { return node.type() == pugi::node_element; }

inline bool IsText(pugi::xml_node node) { return node.type() == pugi::node_pcdata; }

/// Throws XmlError at the first thing that the parser lets pass and the rules of XML do not: more
/// than one root element, text outside of it, names, attributes that are there twice, references.
///
/// @param tree    what was parsed from `source` with kParseAsWritten
void CheckWellFormed(const pugi::xml_document& tree, std::string_view source);

}  // namespace pokermath

#endif  // POKERMATH_SUPPORT_XML_TREE_H_
