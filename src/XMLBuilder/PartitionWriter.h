#ifndef VELLUM_SRC_XMLBUILDER_PARTITIONWRITER_H
#define VELLUM_SRC_XMLBUILDER_PARTITIONWRITER_H

#include "XMLBuilder/InstanceIndex.h"
#include "XMLBuilder/MarkupSink.h"
#include "XMLBuilder/NamespaceRecord.h"
#include "XMLBuilder/SetRecord.h"

#include "Vellum/XMLBuilder/Export.h"

namespace Vellum::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

/// Writes the document of a partition's header metadata to a sink, in document order: the
/// document element s377m:MetadataSets with the declarations of every namespace the document
/// uses, the start set and what it reaches, then "groups:FloatingDarkMetadata" with the dark
/// metadata sets and the sets no pass reached (see Partition2XML.h). The partition is walked
/// twice: once to learn the namespaces, without writing values, then to write.
class VELLUM_XMLBUILDER_EXPORT PartitionWriter {
public:
    PartitionWriter() = delete;

    /// The first Preface of `partition`, or nullptr.
    static const Metadata::MetadataSet* firstPreface(const Metadata::PartitionMetadata& partition);

    /// Writes the document started from `start` (a set of `partition`) to `sink`, under the
    /// process-wide export lock.
    static void write(const Metadata::PartitionMetadata& partition,
                      const Metadata::MetadataSet& start, bool typedReferences,
                      bool structuralTargetsOnly, MarkupSink& sink);

private:
    /// One walk over the partition, recording the sets written in `visited` (emptied first);
    /// writes the namespace declarations of `declared` (none when null) and returns the
    /// namespaces the document uses.
    static NamespaceRecord pass(const Metadata::PartitionMetadata& partition,
                                const InstanceIndex& instances, SetRecord& visited,
                                const Metadata::MetadataSet& start, bool typedReferences,
                                bool structuralTargetsOnly, MarkupSink& sink,
                                const NamespaceRecord* declared);
};

} // namespace Vellum::XMLBuilder

#endif
