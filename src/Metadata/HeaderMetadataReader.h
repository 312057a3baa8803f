#ifndef VELLUM_SRC_METADATA_HEADERMETADATAREADER_H
#define VELLUM_SRC_METADATA_HEADERMETADATAREADER_H

#include "Vellum/DataIO/Slice.h"
#include "Vellum/KLV/Triplet.h"

#include <cstdint>

namespace Vellum::Types {
class LocalTag;
} // namespace Vellum::Types

namespace Vellum::Metadata {

class Element;
class MetadataSet;
class PartitionMetadata;

/// Fills a partition from the bytes of its header metadata: the primer pack, then each local
/// set (known sets, and dark parsed groups for unknown keys), dark metadata sets for other
/// KLV triplets, and KLV fill kept as it lies.
class HeaderMetadataReader {
public:
    explicit HeaderMetadataReader(PartitionMetadata& partition) noexcept
        : m_partition(partition) {}

    /// Reads `bytes`, whose first byte lies at absolute position `offset`. Throws
    /// InvalidFormat/InvalidLength naming the offset of what is malformed.
    void read(DataIO::Slice bytes, std::uint64_t offset);

private:
    void readSet(const KLV::Triplet& triplet, DataIO::Slice value);
    Element& placeItem(MetadataSet& set, const Types::LocalTag& tag, DataIO::Slice bytes);
    Element& keepRaw(MetadataSet& set, const Types::LocalTag& tag, DataIO::Slice bytes);

    PartitionMetadata& m_partition;
};

} // namespace Vellum::Metadata

#endif
