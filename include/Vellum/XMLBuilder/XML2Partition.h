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
/// the partition is removed.
///
/// The document is read in one pass (by XMLBuilder::XMLStreamReader, with expat): each
/// top-level element is read into the partition as soon as it ends, and then freed, so that
/// memory grows with the largest top-level element rather than with the document. A large
/// document is parsed on a second thread meanwhile. When a call throws, the sets made so far
/// (those of the elements before the fault) stay in the partition.
///
/// Every failure reaches the caller as an Exceptions::BaseException: malformed or unsafe XML
/// (a DOCTYPE declaring entities, elements nested too deep, an unsupported encoding) as
/// ParseError "<document>, line L, column C: <problem>", where <document> is the file's path
/// or "XML buffer"; a prefix of a value's parts that is bound nowhere as ParseError
/// "DOMException:: ...(14): ..."; content faults as InvalidFormat or InvalidLength; anything
/// else as ParseError "Unknown error in Xerces or XQilla" (the name the error has always had).
/// Imports take no lock; the partition must not be used elsewhere while one runs.

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

/// Imports `size` bytes of XML at `buffer` (in the encoding the document declares or its
/// byte order mark shows: UTF-8, UTF-16, ISO-8859-1 or US-ASCII) into `partition`. The bytes are
/// not kept. Throws InvalidFormat for a null partition or a null buffer with a non-zero size, and
/// as described above.
VELLUM_XMLBUILDER_EXPORT Templates::list<Metadata::MetadataSet*>
getPartitionMetadataFromBuffer(const std::uint8_t* buffer, std::uint32_t size,
                               Metadata::PartitionMetadata* partition,
                               Identifiers identifiers = Identifiers::Keep);

/// Imports the XML document `text` into `partition`. The text is read as the UTF-16 it is,
/// whatever encoding its XML declaration names (a leading U+FEFF is a byte order mark). Parse
/// errors name the document "XML buffer". Throws as getPartitionMetadataFromBuffer.
VELLUM_XMLBUILDER_EXPORT Templates::list<Metadata::MetadataSet*>
getPartitionMetadataFromString(const WString& text, Metadata::PartitionMetadata* partition,
                               Identifiers identifiers = Identifiers::Keep);

} // namespace Vellum::XML2Partition

#endif
