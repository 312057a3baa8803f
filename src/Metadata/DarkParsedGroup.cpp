#include "Vellum/Metadata/DarkParsedGroup.h"

namespace Vellum::Metadata {

DarkParsedGroup::DarkParsedGroup(PartitionMetadata& partition, const KLV::Key& key)
    : MetadataSet(partition, key, nullptr) {}

DarkParsedGroup::~DarkParsedGroup() = default;

} // namespace Vellum::Metadata
