#ifndef VELLUM_SRC_XMLBUILDER_STOREDBYTES_H
#define VELLUM_SRC_XMLBUILDER_STOREDBYTES_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Identifiers.h"

#include <xercesc/util/XercesDefs.hpp>

#include <cstdint>
#include <vector>

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace Vellum::Metadata {
class Element;
} // namespace Vellum::Metadata

namespace Vellum::Types {
class SimpleDataType;
} // namespace Vellum::Types

namespace Vellum::XMLBuilder {

class NamespaceRecord;

/// "groups:StoredBytes": the stored bytes of a value whose text does not give them back
/// (strings with terminators or padding, characters XML cannot hold, whitespace-only or empty
/// strings, odd booleans, RGBA layouts beyond five components, raw values), so that an
/// unedited value imports to exactly the bytes it was read from.
class StoredBytes {
public:
    /// Adds "groups:StoredBytes" to `element`, which holds the text the export wrote for
    /// `value`, when reading that text as `type` would not give the value's stored bytes.
    static void markIfInexact(xercesc::DOMElement& element, const Types::SimpleDataType& value,
                              Types::Identifiers::Identifier type, NamespaceRecord& namespaces);

    /// Adds "groups:StoredBytes" to the element of an empty collection when its stored form
    /// (count and item size) is not the one the import makes for no items: a count of 0 and
    /// `importedItemSize`.
    static void markEmptyCollection(xercesc::DOMElement& element,
                                    const Metadata::Element& collection,
                                    std::uint32_t importedItemSize, NamespaceRecord& namespaces);

    /// The stored form of an empty collection: the "groups:StoredBytes" of `element` when it
    /// has them and no items; empty otherwise.
    static std::vector<std::uint8_t> emptyCollection(const xercesc::DOMElement& element);

    /// The value of `node` read from its "groups:StoredBytes" as `type`, when it has them and
    /// its text is what the export writes for them (the value was not edited); otherwise
    /// nothing, and the text is to be read.
    static Templates::auto_ptr<Types::SimpleDataType> read(xercesc::DOMNode& node,
                                                           Types::Identifiers::Identifier type);
};

} // namespace Vellum::XMLBuilder

#endif
