#include "Vellum/XMLBuilder/NodeSelector.h"

#include "Vellum/XMLUtils/Document.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Vellum::XMLBuilder {
namespace {

// The selections walk the children directly. They select exactly what Xerces-C's XPath
// evaluation of "./*" and "./prefix:name" selects (a prefix resolved as its namespace
// resolver resolves it, the first match in document order, NAMESPACE_ERR for an unbound
// prefix) at a fraction of its cost: the evaluator compiles every expression and visits
// the whole subtree below each child that does not match.

/// The namespace `prefix` is bound to in scope of `context` (the reserved "xml" prefix
/// included), or nullptr.
const XMLCh* namespaceOf(const xercesc::DOMElement& context, const WString& prefix) {
    if (prefix == xercesc::XMLUni::fgXMLString) {
        return xercesc::XMLUni::fgXMLURIName;
    }
    return context.lookupNamespaceURI(prefix.c_str());
}

} // namespace

const XMLCh* NodeSelector::selectedNamespace(xercesc::DOMElement& context, const WString& prefix,
                                             const XMLCh* fallbackNamespace) {
    if (prefix.empty()) {
        return nullptr;
    }
    const XMLCh* space = namespaceOf(context, prefix);
    if (space != nullptr) {
        return space;
    }
    if (fallbackNamespace == nullptr) {
        throw xercesc::DOMException(xercesc::DOMException::NAMESPACE_ERR, 0);
    }
    return fallbackNamespace;
}

bool NodeSelector::isNamed(const xercesc::DOMElement& element, const XMLCh* namespaceURI,
                           const WString& localName) {
    const XMLCh* local = element.getLocalName();
    return local != nullptr && localName == local &&
           xercesc::XMLString::equals(element.getNamespaceURI(), namespaceURI);
}

xercesc::DOMElement* NodeSelector::firstNamed(const std::vector<xercesc::DOMElement*>& elements,
                                              const XMLCh* namespaceURI, const WString& localName) {
    for (xercesc::DOMElement* element : elements) {
        if (isNamed(*element, namespaceURI, localName)) {
            return element;
        }
    }
    return nullptr;
}

std::vector<xercesc::DOMElement*> NodeSelector::elementChildren(xercesc::DOMElement& context) {
    std::vector<xercesc::DOMElement*> children;
    for (xercesc::DOMElement* child = context.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
        children.push_back(child);
    }
    return children;
}

xercesc::DOMElement* NodeSelector::firstElementChild(xercesc::DOMElement& context) {
    return context.getFirstElementChild();
}

xercesc::DOMElement* NodeSelector::firstChild(xercesc::DOMElement& context, const WString& prefix,
                                              const WString& localName,
                                              const XMLCh* fallbackNamespace) {
    const XMLCh* space = selectedNamespace(context, prefix, fallbackNamespace);
    for (xercesc::DOMElement* child = context.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
        if (isNamed(*child, space, localName)) {
            return child;
        }
    }
    return nullptr;
}

bool NodeSelector::isPrefixBound(xercesc::DOMElement& context, const WString& prefix) {
    return namespaceOf(context, prefix) != nullptr;
}

WString NodeSelector::text(const xercesc::DOMNode& node) {
    WString out;
    if (node.getNodeType() == xercesc::DOMNode::ATTRIBUTE_NODE) {
        XMLUtils::utf16ToWstring(node.getNodeValue(), out);
    } else if (const xercesc::DOMNode* first = node.getFirstChild()) {
        XMLUtils::utf16ToWstring(first->getNodeValue(), out);
    }
    return out;
}

} // namespace Vellum::XMLBuilder
