#ifndef VELLUM_SRC_XMLBUILDER_DARKMETADATAWRITER_H
#define VELLUM_SRC_XMLBUILDER_DARKMETADATAWRITER_H

#include "XMLBuilder/MarkupSink.h"
#include "XMLBuilder/XMLNames.h"

#include "Vellum/XMLBuilder/Export.h"

namespace Vellum::Metadata {
class DarkMetadataSet;
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

/// Writes header metadata the dictionary cannot describe in the dark form: one
/// "groups:DarkMetadata" element with the set's key ("groups:Key"), the octets of its BER
/// length ("groups:BEROctetCount") and its value in hexadecimal.
class VELLUM_XMLBUILDER_EXPORT DarkMetadataWriter {
public:
    DarkMetadataWriter() = delete;

    /// Writes the dark form of `dark` to `sink`.
    static void writeDarkMetadataSet(const Metadata::DarkMetadataSet& dark, MarkupSink& sink,
                                     XMLNames& names, bool writesValue);
    /// Starts, in `sink`, the element of a local set that the dictionary does not describe:
    /// "groups:DarkMetadata" with the set's key and length octet count; the set writer adds
    /// its items (each with its label or local tag) and ends it.
    static void startParsedGroup(const Metadata::MetadataSet& set, MarkupSink& sink,
                                 XMLNames& names);
};

} // namespace Vellum::XMLBuilder

#endif
