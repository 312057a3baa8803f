#ifndef VELLUM_XMLBUILDER_ELEMENTNAMEINDEX_H
#define VELLUM_XMLBUILDER_ELEMENTNAMEINDEX_H

#include "Vellum/Templates/Templates.h"

#include <string_view>
#include <unordered_map>

namespace Vellum::MetaMetadata {
class Dictionary;
class MetaElement;
} // namespace Vellum::MetaMetadata

namespace Vellum::XMLBuilder {

/// The element definitions of a dictionary by the XML name they are written with
/// ("XMLNamespaceURI" and "XMLTagName"); where two share a name, the first in the dictionary's
/// label order. The import finds an element written outside its set by this name, so the
/// export asks the same index whether a name would find another element.
class ElementNameIndex {
public:
    explicit ElementNameIndex(const MetaMetadata::Dictionary& dictionary);

    /// The element written as `tagName` in `namespaceURI`, or nullptr.
    const MetaMetadata::MetaElement* find(std::u16string_view namespaceURI,
                                          std::u16string_view tagName) const;

private:
    /// "namespace:tag" to definition.
    std::unordered_map<WString, const MetaMetadata::MetaElement*> m_elements;
};

} // namespace Vellum::XMLBuilder

#endif
