#ifndef VELLUM_SRC_XMLBUILDER_WRITERCONTEXT_H
#define VELLUM_SRC_XMLBUILDER_WRITERCONTEXT_H

#include "XMLBuilder/DocumentLayout.h"
#include "XMLBuilder/InstanceIndex.h"
#include "XMLBuilder/SetRecord.h"
#include "XMLBuilder/XMLNames.h"

#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Types/Reference.h"

namespace Vellum::Metadata {
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

/// What every writer of one export pass shares: the partition and its sets by identifier,
/// the two export flags, the pass's names and namespace record, its visited record and the
/// layout of the document element's children. Without `writesValues` the pass only learns the
/// namespaces the document uses: elements are walked and named, values are not written. Borrowed
/// throughout; owns nothing.
struct WriterContext {
    const Metadata::PartitionMetadata& partition;
    const InstanceIndex& instances;
    bool typedReferences;
    bool structuralTargetsOnly;
    bool writesValues;
    XMLNames& names;
    SetRecord& visited;
    DocumentLayout& layout;

    NamespaceRecord& namespaces() const noexcept { return names.namespaces(); }

    /// Whether writers follow `reference`, whose first target is `first`: a strong reference
    /// to a set the options follow (a structural one, with `structuralTargetsOnly`). A followed
    /// target is nested (typed references) or listed after its holder (flat).
    bool follows(const Types::Reference& reference, const Metadata::MetadataSet& first) const {
        return reference.identifier() == Types::Identifiers::StrongReference &&
               (!structuralTargetsOnly || KLV::isStructuralMetadataSet(first.key()));
    }

    /// The same context with another `typedReferences`.
    WriterContext withTypedReferences(bool typed) const noexcept {
        return {partition,    instances, typed,   structuralTargetsOnly,
                writesValues, names,     visited, layout};
    }
};

} // namespace Vellum::XMLBuilder

#endif
