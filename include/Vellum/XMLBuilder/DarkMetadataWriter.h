#ifndef VELLUM_XMLBUILDER_DARKMETADATAWRITER_H
#define VELLUM_XMLBUILDER_DARKMETADATAWRITER_H

#include "Vellum/XMLBuilder/Export.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace Vellum::Metadata {
class DarkMetadataSet;
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

class NamespaceRecord;

/// Writes header metadata the dictionary cannot describe in the dark form: one element with
/// the set's key ("groups:Key"), the octets of its BER length ("groups:BEROctetCount") and its
/// value in hexadecimal; and finds or makes the two container elements.
class VELLUM_XMLBUILDER_EXPORT DarkMetadataWriter {
public:
    DarkMetadataWriter() = delete;

    /// The first child of `parent` named "groups:FloatingDarkMetadata", made and appended when
    /// there is none.
    static xercesc::DOMElement* findOrCreateFloatingDarkMetadata(xercesc::DOMDocument& document,
                                                                 xercesc::DOMElement& parent);
    /// The first child of `setElement` named "groups:ExtensionElements", made and appended
    /// when there is none.
    static xercesc::DOMElement* findOrCreateExtensionElements(xercesc::DOMDocument& document,
                                                              xercesc::DOMElement& setElement);
    /// Appends the dark form of `dark` ("groups:DarkMetadata") to `parent`.
    static void writeDarkMetadataSet(const Metadata::DarkMetadataSet& dark,
                                     xercesc::DOMElement& parent, NamespaceRecord& namespaces);
    /// Appends to `parent` the element of a local set that the dictionary does not describe:
    /// "groups:DarkMetadata" with the set's key and length octet count, and no text; the set
    /// writer fills it with the set's items (each with its label or local tag) and identity.
    static xercesc::DOMElement& writeParsedGroupFrame(const Metadata::MetadataSet& set,
                                                      xercesc::DOMElement& parent,
                                                      NamespaceRecord& namespaces);
};

} // namespace Vellum::XMLBuilder

#endif
