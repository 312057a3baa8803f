#include "Vellum/XMLBuilder/Partition2XML.h"

#include "XMLBuilder/DOMMarkupSink.h"
#include "XMLBuilder/PartitionWriter.h"

#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/XMLUtils/Initializer.h"

namespace Vellum::XMLBuilder {

DocumentNodePtr partition2XML(const Metadata::PartitionMetadata* partition,
                              const Metadata::MetadataSet* startSet, bool typedReferences,
                              bool structuralTargetsOnly) {
    XMLUtils::Initializer::instance();
    if (partition == nullptr || startSet == nullptr) {
        return nullptr;
    }
    DOMMarkupSink sink;
    PartitionWriter::write(*partition, *startSet, typedReferences, structuralTargetsOnly, sink);
    return sink.release();
}

DocumentNodePtr partition2XML(const Metadata::PartitionMetadata* partition, bool typedReferences,
                              bool structuralTargetsOnly) {
    if (partition == nullptr) {
        return nullptr;
    }
    const Metadata::MetadataSet* preface = PartitionWriter::firstPreface(*partition);
    if (preface == nullptr) {
        return nullptr;
    }
    return partition2XML(partition, preface, typedReferences, structuralTargetsOnly);
}

} // namespace Vellum::XMLBuilder
