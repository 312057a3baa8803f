#ifndef VELLUM_XMLBUILDER_PARTITION2XMLTEXT_H
#define VELLUM_XMLBUILDER_PARTITION2XMLTEXT_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLUtils/EncodingType.h"
#include "Vellum/XMLUtils/SerializeOptions.h"

#include <iosfwd>

namespace Vellum::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Vellum::Metadata

/// @file
/// Export of a partition's header metadata as XML text, written while the partition is
/// walked: no document tree is built and Xerces-C is not used.
///
///     auto partition = Vellum::Metadata::PartitionMetadata::readFile(
///         "clip.mxf", "header", Vellum::MetaMetadata::Dictionary::builtIn());
///     std::ofstream file("clip.xml", std::ios::binary);
///     Vellum::XMLBuilder::partition2XML(partition.get(), false, false,
///                                       Vellum::XMLUtils::EncodingType::UTF8, file);
///
/// The document is the one Vellum/XMLBuilder/Partition2XML.h describes, and its text is,
/// byte for byte, what serialising that function's DOM document with XMLUtils::domToBytes
/// (or domToBuffer) gives with the same options. The export walks the partition twice: first
/// to learn the namespaces that the document element declares, then to write.
///
/// Exports are serialised by one process-wide lock; the partition must not change meanwhile.
/// A name in the dictionary that is no XML name throws InvalidFormat before any text is
/// written.

namespace Vellum::XMLBuilder {

/// The document's text in `encoding`, pretty-printed with an XML declaration naming the
/// encoding, as UTF-16 code units in `out` (replaced; no byte order mark). `out` is left as
/// it was when `partition` is null or has no Preface, or on an exception.
VELLUM_XMLBUILDER_EXPORT void partition2XML(const Metadata::PartitionMetadata* partition,
                                            bool typedReferences, bool structuralTargetsOnly,
                                            XMLUtils::EncodingType encoding, WString& out);

/// The same, started from `startSet` (nothing when either pointer is null).
VELLUM_XMLBUILDER_EXPORT void partition2XML(const Metadata::PartitionMetadata* partition,
                                            const Metadata::MetadataSet* startSet,
                                            bool typedReferences, bool structuralTargetsOnly,
                                            XMLUtils::EncodingType encoding, WString& out);

/// Writes the document to `out` as the bytes of a file in `encoding` (UTF-8 without, or
/// UTF-16 little-endian with a byte order mark), laid out as `options` say, in blocks while
/// it is made. Returns false, writing nothing, when `partition` is null or has no Preface.
/// Throws IOError when the stream fails (what it took is then part of a document).
VELLUM_XMLBUILDER_EXPORT bool partition2XML(const Metadata::PartitionMetadata* partition,
                                            bool typedReferences, bool structuralTargetsOnly,
                                            XMLUtils::EncodingType encoding, std::ostream& out,
                                            const XMLUtils::SerializeOptions& options = {});

/// The same, started from `startSet`; false when either pointer is null.
VELLUM_XMLBUILDER_EXPORT bool partition2XML(const Metadata::PartitionMetadata* partition,
                                            const Metadata::MetadataSet* startSet,
                                            bool typedReferences, bool structuralTargetsOnly,
                                            XMLUtils::EncodingType encoding, std::ostream& out,
                                            const XMLUtils::SerializeOptions& options = {});

} // namespace Vellum::XMLBuilder

#endif
