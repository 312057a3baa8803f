#ifndef VELLUM_XMLBUILDER_PARTITION2XML_H
#define VELLUM_XMLBUILDER_PARTITION2XML_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/Partition2XMLText.h"
#include "Vellum/XMLUtils/XercesPtr.h"

#include <xercesc/dom/DOMNode.hpp>

#include <memory>

namespace Vellum::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Vellum::Metadata

/// @file
/// Export of a partition's header metadata to an XML document (a Xerces-C DOM); the text
/// overloads, which build no DOM, are in Vellum/XMLBuilder/Partition2XMLText.h.
///
///     auto partition = Vellum::Metadata::PartitionMetadata::readFile(
///         "clip.mxf", "header", Vellum::MetaMetadata::Dictionary::builtIn());
///     auto document = Vellum::XMLBuilder::partition2XML(partition.get(), false, false);
///
/// The document's root is s377m:MetadataSets, declaring every namespace the document uses.
/// Its first child is the start set (the Preface unless the caller names another) with
/// everything it reaches through references; then "groups:FloatingDarkMetadata" holds the
/// partition's dark metadata sets and the sets not reached from the start set. With
/// `typedReferences`, strong references nest their target inside the property and weak
/// references name their target with a "<set>_REF" element; without it, every reference is
/// written as a "_REF" element and strong targets follow as siblings under the root. With
/// `structuralTargetsOnly`, references to sets that are not structural metadata are not
/// followed.
///
/// A set element holds its identity ("rp210:InstanceUID", "rp210:GenerationUID") as
/// attributes, then "groups:ExtensionElements" with the elements its definition does not
/// place there, then its own elements.
///
/// Exports are serialised by one process-wide lock; the partition must not change meanwhile.
/// Exceptions of the toolkit and of Xerces-C pass through unchanged.

namespace Vellum::XMLBuilder {

/// Owner of an exported document (released, not deleted).
using DocumentNodePtr = std::unique_ptr<xercesc::DOMNode, XMLUtils::ReleaseDeleter>;

/// The document of `partition`'s header metadata, started from its first Preface; empty when
/// `partition` is null or has no Preface. The caller owns the document.
VELLUM_XMLBUILDER_EXPORT DocumentNodePtr partition2XML(const Metadata::PartitionMetadata* partition,
                                                       bool typedReferences,
                                                       bool structuralTargetsOnly);

/// The same, started from `startSet`; empty when either pointer is null.
VELLUM_XMLBUILDER_EXPORT DocumentNodePtr partition2XML(const Metadata::PartitionMetadata* partition,
                                                       const Metadata::MetadataSet* startSet,
                                                       bool typedReferences,
                                                       bool structuralTargetsOnly);

} // namespace Vellum::XMLBuilder

#endif
