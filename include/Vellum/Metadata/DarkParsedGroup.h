#ifndef VELLUM_METADATA_DARKPARSEDGROUP_H
#define VELLUM_METADATA_DARKPARSEDGROUP_H

#include "Vellum/Metadata/MetadataSet.h"

namespace Vellum::Metadata {

/// A local set whose key the dictionary does not know, kept with all its items (each an
/// invalid element) so that it is written back unchanged.
class VELLUM_CORE_EXPORT DarkParsedGroup : public MetadataSet {
public:
    ~DarkParsedGroup() override;

private:
    friend class PartitionMetadata;
    friend class HeaderMetadataReader;
    DarkParsedGroup(PartitionMetadata& partition, const KLV::Key& key);
};

} // namespace Vellum::Metadata

#endif
