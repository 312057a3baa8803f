#ifndef VELLUM_XMLBUILDER_NODESELECTOR_H
#define VELLUM_XMLBUILDER_NODESELECTOR_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/XMLNode.h"

#include <string_view>

namespace Vellum::XMLBuilder {

/// The child selections the import makes: the first child of an element with a
/// namespace-qualified name ("./prefix:name" in XPath), and the namespace a prefix selects.
///
/// Names are matched by namespace, not by prefix: the prefix given is resolved through the
/// namespace declarations in scope at the context element, and a child matches when its
/// namespace and local name are equal to the resolved ones, whatever prefix it is written
/// with. Only children are searched, never deeper descendants; the first match in document
/// order is selected. A prefix bound nowhere in scope is a ParseError "DOMException::
/// attempt is made to create or change an object in a way which is incorrect with respect to
/// namespaces(14)", followed by the prefix and the element, as XPath evaluation failed.
class VELLUM_XMLBUILDER_EXPORT NodeSelector {
public:
    NodeSelector() = delete;

    /// The first element child of `context` named `prefix`:`localName` (an empty prefix names
    /// a child without namespace), or nullptr. When `prefix` is not bound in scope of
    /// `context`, it is taken as bound to `fallbackNamespace` if one is given; without one,
    /// throws ParseError.
    static const XMLNode* firstChild(const XMLNode& context, std::u16string_view prefix,
                                     std::u16string_view localName,
                                     const WString* fallbackNamespace = nullptr);

    /// The namespace a name with `prefix` selects at `context`: the one bound to `prefix` in
    /// scope there, else `fallbackNamespace` if given; the empty namespace for an empty
    /// prefix. Throws ParseError for an unbound prefix without fallback.
    static const WString& selectedNamespace(const XMLNode& context, std::u16string_view prefix,
                                            const WString* fallbackNamespace = nullptr);

    /// The first of the children of `context` in namespace `namespaceURI` (empty for none)
    /// with local name `localName`, or nullptr.
    static const XMLNode* firstNamed(const XMLNode& context, std::u16string_view namespaceURI,
                                     std::u16string_view localName) noexcept;

    /// Whether `element` is in namespace `namespaceURI` (empty for none) and has the local
    /// name `localName`.
    static bool isNamed(const XMLNode& element, std::u16string_view namespaceURI,
                        std::u16string_view localName) noexcept {
        return element.localName() == localName && element.namespaceURI() == namespaceURI;
    }

    /// Whether `prefix` is bound to a namespace in scope of `context`.
    static bool isPrefixBound(const XMLNode& context, std::u16string_view prefix) noexcept {
        return !prefix.empty() && context.lookupNamespace(prefix) != nullptr;
    }
};

} // namespace Vellum::XMLBuilder

#endif
