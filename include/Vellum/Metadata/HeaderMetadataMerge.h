#ifndef VELLUM_METADATA_HEADERMETADATAMERGE_H
#define VELLUM_METADATA_HEADERMETADATAMERGE_H

#include "Vellum/Core/Export.h"

#include <cstddef>

namespace Vellum::Metadata {

class PartitionMetadata;

/// Applies an edit of header metadata to header metadata: the changes that turn `base` into
/// `edited`, made on `target`, and nothing else.
///
/// Sets are matched by instance UID, items by label (or local tag when they have none), dark
/// metadata sets by key and value. A set of `edited` that `base` lacks is copied into
/// `target`; a set of `base` that `edited` lacks is removed from `target`; a set stored under
/// another key is replaced; an item whose bytes differ gets the edited bytes, an added item is
/// appended, a removed one taken out. Sets and items of `target` that the edit does not touch
/// keep their stored form, order and local tags, so they are written back byte for byte. Sets
/// without an instance UID are left as they are.
///
///     auto file = PartitionMetadata::readFile("clip.mxf", "header", dictionary);
///     PartitionMetadata edited(dictionary);
///     XML2Partition::getPartitionMetadataFromFile(u"clip.xml", &edited);
///     HeaderMetadataMerge::apply(*file, *file, edited); // file now holds the edit
class VELLUM_CORE_EXPORT HeaderMetadataMerge {
public:
    HeaderMetadataMerge() = delete;

    /// Makes on `target` the changes between `base` and `edited` (all over one dictionary;
    /// `target` may be `base` itself). Returns the number of changes made on `target`. Throws
    /// what reading an edited value into its element throws.
    static std::size_t apply(PartitionMetadata& target, const PartitionMetadata& base,
                             const PartitionMetadata& edited);
};

} // namespace Vellum::Metadata

#endif
