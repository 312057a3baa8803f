#ifndef VELLUM_XMLBUILDER_NODESELECTOR_H
#define VELLUM_XMLBUILDER_NODESELECTOR_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include <vector>

namespace Vellum::XMLBuilder {

/// The node selections the import makes: the element children of an element ("./*") and its
/// first child of a namespace-qualified name ("./prefix:name"), plus the text of a node.
///
/// Names are matched by namespace, not by prefix: the prefix given is resolved through the
/// namespace declarations in scope at the context element, and a child matches when its
/// namespace and local name are equal to the resolved ones, whatever prefix it is written
/// with. Only children are searched, never deeper descendants. The selections are those
/// Xerces-C's XPath evaluation makes for the same expressions, unbound prefixes included.
class VELLUM_XMLBUILDER_EXPORT NodeSelector {
public:
    NodeSelector() = delete;

    /// The element children of `context`, in document order.
    static std::vector<xercesc::DOMElement*> elementChildren(xercesc::DOMElement& context);

    /// The first element child of `context`, or nullptr.
    static xercesc::DOMElement* firstElementChild(xercesc::DOMElement& context);

    /// The first element child of `context` named `prefix`:`localName` (an empty prefix names
    /// a child without namespace), or nullptr. When `prefix` is not bound in scope of
    /// `context`, it is taken as bound to `fallbackNamespace` if one is given; without one,
    /// throws xercesc::DOMException NAMESPACE_ERR (code 14). The result is owned by the
    /// document.
    static xercesc::DOMElement* firstChild(xercesc::DOMElement& context, const WString& prefix,
                                           const WString& localName,
                                           const XMLCh* fallbackNamespace = nullptr);

    /// The namespace a name with `prefix` selects at `context`: the one bound to `prefix` in
    /// scope there, else `fallbackNamespace` if given; nullptr for an empty prefix (no
    /// namespace). Throws xercesc::DOMException NAMESPACE_ERR for an unbound prefix without
    /// fallback. The text is owned by the document (or the caller, for the fallback).
    static const XMLCh* selectedNamespace(xercesc::DOMElement& context, const WString& prefix,
                                          const XMLCh* fallbackNamespace = nullptr);

    /// Whether `element` is in namespace `namespaceURI` (nullptr or empty for none) and has
    /// the local name `localName`.
    static bool isNamed(const xercesc::DOMElement& element, const XMLCh* namespaceURI,
                        const WString& localName);

    /// The first of `elements` in namespace `namespaceURI` with local name `localName`, or
    /// nullptr: `firstChild` over children collected once.
    static xercesc::DOMElement* firstNamed(const std::vector<xercesc::DOMElement*>& elements,
                                           const XMLCh* namespaceURI, const WString& localName);

    /// Whether `prefix` is bound to a namespace in scope of `context`.
    static bool isPrefixBound(xercesc::DOMElement& context, const WString& prefix);

    /// The text of `node`: an attribute's value; for any other node the value of its first
    /// child node, empty when it has none (text split over several nodes is not joined).
    static WString text(const xercesc::DOMNode& node);
};

} // namespace Vellum::XMLBuilder

#endif
