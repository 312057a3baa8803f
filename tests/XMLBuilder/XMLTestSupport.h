#ifndef VELLUM_TESTS_XMLBUILDER_XMLTESTSUPPORT_H
#define VELLUM_TESTS_XMLBUILDER_XMLTESTSUPPORT_H

#include "Vellum/XMLUtils/XercesPtr.h"

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <string>

namespace VellumTest {

/// A new document whose root `test:Root` declares the types and s422mTypes namespaces.
Vellum::XMLUtils::DocumentPtr makeDocument();

/// The node serialised compactly, without XML declaration, as UTF-8.
std::string serialize(const xercesc::DOMNode* node);

/// The children of an element that are elements, with the given qualified name.
std::size_t countChildren(const xercesc::DOMElement& parent, const char* qualifiedName);

} // namespace VellumTest

#endif
