#ifndef VELLUM_XMLBUILDER_XML2PARTITION_H
#define VELLUM_XMLBUILDER_XML2PARTITION_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"

#include <cstdint>

namespace Vellum::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Vellum::Metadata

/// @file
/// Import of an XML document of header metadata into a partition.
///
///     Vellum::Metadata::PartitionMetadata partition(Vellum::MetaMetadata::Dictionary::builtIn());
///     const auto sets =
///         Vellum::XML2Partition::getPartitionMetadataFromFile(u"clip.xml", &partition);
///
/// Every child of the document's root whose local name is a set's "XMLTagName" in the
/// partition's dictionary becomes a set of the partition, whatever its prefix or namespace;
/// so does every such child of a top-level "groups:FloatingDarkMetadata", whose other
/// children are read as dark metadata sets. Other top-level elements are skipped. Sets
/// written inline in a reference property are made too, recursively. References written by
/// name ("_REF" elements) get the identifier of the set whose "rp210:InstanceUID" text is
/// that name, whichever comes first; they are stored unverified.
///
/// Each call returns the sets made for top-level elements and for the children of
/// "groups:FloatingDarkMetadata", in document order; sets made inline and dark sets are only
/// in the partition. The partition owns every set; the list borrows them. Nothing already in
/// the partition is removed. When a call throws, the sets made so far stay in the partition.
///
/// Every failure reaches the caller as an Exceptions::BaseException: Xerces-C faults
/// (malformed or unsafe XML, unbound prefixes) as ParseError, content faults as InvalidFormat
/// or InvalidLength, anything else as ParseError "Unknown error in Xerces or XQilla". Imports
/// take no lock; the partition must not be used elsewhere while one runs.

namespace Vellum::XML2Partition {

/// What an import makes of the names of sets ("rp210:InstanceUID") and of reference targets.
enum class Identifiers {
    /// A name that is an identifier text (16 bytes as two hexadecimal digits each, joined by
    /// ".") is that identifier, so that an exported document imports to the same sets; any
    /// other name gets a fresh identifier, the same for every use of the name.
    Keep,
    /// Every name gets a fresh identifier, the same for every use of the name: for importing
    /// a document as a template of new sets.
    Renew,
};

/// Imports the XML file at `path` (UTF-16, zero-terminated) into `partition`. Throws
/// InvalidFormat for a null path or partition, and as described above.
VELLUM_XMLBUILDER_EXPORT Templates::list<Metadata::MetadataSet*>
getPartitionMetadataFromFile(const char16_t* path, Metadata::PartitionMetadata* partition,
                             Identifiers identifiers = Identifiers::Keep);

/// Imports `size` bytes of XML at `buffer` (any encoding the document declares or its byte
/// order mark shows) into `partition`. The bytes are not kept. Throws InvalidFormat for a
/// null partition or a null buffer with a non-zero size, and as described above.
VELLUM_XMLBUILDER_EXPORT Templates::list<Metadata::MetadataSet*>
getPartitionMetadataFromBuffer(const std::uint8_t* buffer, std::uint32_t size,
                               Metadata::PartitionMetadata* partition,
                               Identifiers identifiers = Identifiers::Keep);

/// Imports the XML document `text` into `partition`. The text is read as the UTF-16 it is,
/// whatever encoding its XML declaration names. It is handed to the buffer import as UTF-16
/// bytes (2 per code unit, after a byte order mark), their count cut to 32 bits, so a text of
/// 2 GiB or more is cut short and fails to parse. Throws as getPartitionMetadataFromBuffer.
VELLUM_XMLBUILDER_EXPORT Templates::list<Metadata::MetadataSet*>
getPartitionMetadataFromString(const WString& text, Metadata::PartitionMetadata* partition,
                               Identifiers identifiers = Identifiers::Keep);

} // namespace Vellum::XML2Partition

#endif
