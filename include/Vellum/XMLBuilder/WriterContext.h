#ifndef VELLUM_XMLBUILDER_WRITERCONTEXT_H
#define VELLUM_XMLBUILDER_WRITERCONTEXT_H

#include "Vellum/XMLBuilder/NamespaceRecord.h"
#include "Vellum/XMLBuilder/VisitedRecord.h"

namespace Vellum::Metadata {
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

/// What every writer of one export pass shares: the partition, the two export flags, the
/// namespace record and the pass's visited record. Borrowed throughout; owns nothing.
struct WriterContext {
    const Metadata::PartitionMetadata& partition;
    bool typedReferences;
    bool structuralTargetsOnly;
    NamespaceRecord& namespaces;
    VisitedRecord& visited;

    /// The same context with another `typedReferences`.
    WriterContext withTypedReferences(bool typed) const noexcept {
        return {partition, typed, structuralTargetsOnly, namespaces, visited};
    }
};

} // namespace Vellum::XMLBuilder

#endif
