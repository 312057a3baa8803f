#ifndef VELLUM_XMLBUILDER_DARKMETADATAREADER_H
#define VELLUM_XMLBUILDER_DARKMETADATAREADER_H

#include "XMLBuilder/ImportTables.h"

#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/XMLNode.h"

namespace Vellum::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

/// Reads the dark form of a KLV triplet the dictionary does not know (the counterpart of
/// DarkMetadataWriter): an element of any name with the attributes "groups:Key" (the key in
/// dotted hexadecimal) and "groups:BEROctetCount" (decimal, cut to 8 bits), whose text is
/// the value, two hexadecimal digits a byte. The attributes are found by these exact
/// qualified names.
class VELLUM_XMLBUILDER_EXPORT DarkMetadataReader {
public:
    DarkMetadataReader() = delete;

    /// Source name recorded in the exceptions about the value text.
    static constexpr const char* sourceName = "Vellum/XMLBuilder/XML2Partition";

    /// Makes the dark set `element` describes and hands it to `partition`, which owns it; a
    /// rejected element adds nothing. Throws InvalidFormat naming a missing attribute, the
    /// key's InvalidFormat for malformed key text, InvalidFormat "DarkMetadataSet with
    /// key='<key>' value has invalid Length" for an odd number of digits and "... value
    /// contains non Hexadecimal characters" for any other character, and InvalidLength
    /// when the value does not fit the BER octet count (0 octets included).
    static void read(const XMLNode& element, Metadata::PartitionMetadata& partition);

    /// Whether `element` is the form of a local set the dictionary does not describe: no
    /// value text, but an "rp210" identity attribute or child elements (its items).
    static bool isParsedGroup(const XMLNode& element);

    /// Makes the local set `element` describes (a DarkParsedGroup with its key and length
    /// octet count), its identity from the "rp210" attributes and its items from
    /// "groups:ExtensionElements". The partition owns the set. Throws as `read` for the
    /// attributes, InvalidFormat when the key is not a local set key, and as the set reader.
    static Metadata::MetadataSet* readParsedGroup(const XMLNode& element,
                                                  Metadata::PartitionMetadata& partition,
                                                  ImportTables& tables);
};

} // namespace Vellum::XMLBuilder

#endif
