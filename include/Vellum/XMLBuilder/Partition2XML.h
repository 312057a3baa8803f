#ifndef VELLUM_XMLBUILDER_PARTITION2XML_H
#define VELLUM_XMLBUILDER_PARTITION2XML_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLUtils/EncodingType.h"
#include "Vellum/XMLUtils/XercesPtr.h"

#include <xercesc/dom/DOMNode.hpp>

#include <memory>

namespace Vellum::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Vellum::Metadata

/// @file
/// Export of a partition's header metadata to an XML document.
///
///     auto partition = Vellum::Metadata::PartitionMetadata::readFile(
///         "clip.mxf", "header", Vellum::MetaMetadata::Dictionary::builtIn());
///     Vellum::WString xml;
///     Vellum::XMLBuilder::partition2XML(partition.get(), false, false,
///                                       Vellum::XMLUtils::EncodingType::UTF8, xml);
///
/// The document's root is s377m:MetadataSets. Its first child is the start set (the Preface
/// unless the caller names another) with everything it reaches through references; then
/// "groups:FloatingDarkMetadata" holds the partition's dark metadata sets and the sets not
/// reached from the start set. With `typedReferences`, strong references nest their target
/// inside the property and weak references name their target with a "<set>_REF" element;
/// without it, every reference is written as a "_REF" element and strong targets follow as
/// siblings under the root. With `structuralTargetsOnly`, references to sets that are not
/// structural metadata are not followed.
///
/// Exports are serialised by one process-wide lock; the partition must not change meanwhile.
/// Exceptions of the toolkit and of Xerces-C pass through unchanged.

namespace Vellum::XMLBuilder {

/// Owner of an exported document (released, not deleted).
using DocumentNodePtr = std::unique_ptr<xercesc::DOMNode, XMLUtils::ReleaseDeleter>;

/// The document of `partition`'s header metadata, started from its first Preface; empty when
/// `partition` is null or has no Preface. The caller owns the document.
VELLUM_XMLBUILDER_EXPORT DocumentNodePtr partition2XML(Metadata::PartitionMetadata* partition,
                                                       bool typedReferences,
                                                       bool structuralTargetsOnly);

/// The same, started from `startSet`; empty when either pointer is null.
VELLUM_XMLBUILDER_EXPORT DocumentNodePtr partition2XML(Metadata::PartitionMetadata* partition,
                                                       const Metadata::MetadataSet* startSet,
                                                       bool typedReferences,
                                                       bool structuralTargetsOnly);

/// The document's text in `encoding` (its XML declaration names it), in `out`. `out` is left
/// as it was when there is no document.
VELLUM_XMLBUILDER_EXPORT void partition2XML(Metadata::PartitionMetadata* partition,
                                            bool typedReferences, bool structuralTargetsOnly,
                                            XMLUtils::EncodingType encoding, WString& out);

/// The same, started from `startSet`.
VELLUM_XMLBUILDER_EXPORT void partition2XML(Metadata::PartitionMetadata* partition,
                                            const Metadata::MetadataSet* startSet,
                                            bool typedReferences, bool structuralTargetsOnly,
                                            XMLUtils::EncodingType encoding, WString& out);

} // namespace Vellum::XMLBuilder

#endif
