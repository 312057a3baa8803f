#include "Vellum/XMLBuilder/Partition2XMLText.h"

#include "XMLBuilder/PartitionWriter.h"
#include "XMLBuilder/TextMarkupWriter.h"

#include "Vellum/Metadata/PartitionMetadata.h"

#include <ostream>

namespace Vellum::XMLBuilder {

void partition2XML(const Metadata::PartitionMetadata* partition,
                   const Metadata::MetadataSet* startSet, bool typedReferences,
                   bool structuralTargetsOnly, XMLUtils::EncodingType encoding, WString& out) {
    if (partition == nullptr || startSet == nullptr) {
        return;
    }
    WString text;
    TextMarkupWriter writer(text, encoding, XMLUtils::SerializeOptions{});
    PartitionWriter::write(*partition, *startSet, typedReferences, structuralTargetsOnly, writer);
    out.swap(text);
}

void partition2XML(const Metadata::PartitionMetadata* partition, bool typedReferences,
                   bool structuralTargetsOnly, XMLUtils::EncodingType encoding, WString& out) {
    if (partition != nullptr) {
        partition2XML(partition, PartitionWriter::firstPreface(*partition), typedReferences,
                      structuralTargetsOnly, encoding, out);
    }
}

bool partition2XML(const Metadata::PartitionMetadata* partition,
                   const Metadata::MetadataSet* startSet, bool typedReferences,
                   bool structuralTargetsOnly, XMLUtils::EncodingType encoding, std::ostream& out,
                   const XMLUtils::SerializeOptions& options) {
    if (partition == nullptr || startSet == nullptr) {
        return false;
    }
    TextMarkupWriter writer(out, encoding, options);
    PartitionWriter::write(*partition, *startSet, typedReferences, structuralTargetsOnly, writer);
    return true;
}

bool partition2XML(const Metadata::PartitionMetadata* partition, bool typedReferences,
                   bool structuralTargetsOnly, XMLUtils::EncodingType encoding, std::ostream& out,
                   const XMLUtils::SerializeOptions& options) {
    return partition != nullptr &&
           partition2XML(partition, PartitionWriter::firstPreface(*partition), typedReferences,
                         structuralTargetsOnly, encoding, out, options);
}

} // namespace Vellum::XMLBuilder
