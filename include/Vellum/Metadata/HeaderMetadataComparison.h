#ifndef VELLUM_METADATA_HEADERMETADATACOMPARISON_H
#define VELLUM_METADATA_HEADERMETADATACOMPARISON_H

#include "Vellum/Core/Export.h"
#include "Vellum/Metadata/MetadataDifference.h"

#include <vector>

namespace Vellum::Metadata {

class PartitionMetadata;

/// Compares the header metadata of two partitions, the measure of every round trip.
///
/// Two partitions hold equal header metadata when they have the same sets by instance UID,
/// each stored under the same key, with the same items holding the same stored bytes, and
/// the same dark metadata sets. Set order, local tags, BER length forms, the primer and KLV
/// fill do not count.
///
/// - Sets are matched by instance UID. Sets without one (or whose InstanceUID item is not a
///   UUID) are matched by key and by their place among such sets with that key, in stored
///   order; for this matching only, the registry version byte and the item-length coding of
///   the key (0x13 or 0x53 in byte 6) are not compared. Sets that share an instance UID are
///   matched in stored order.
/// - The keys of matched sets are compared byte for byte, as stored: a set written with BER
///   item lengths (0x13) on one side and 2-byte lengths (0x53) on the other is a key change,
///   since the stored bytes differ.
/// - Items are the elements that hold a value. They are matched by label, the registry
///   version byte (byte 8) not compared, as the sets' own element lookup does. An item kept
///   without a label gets the one its local tag has in its partition's primer (or, for a
///   static tag, in the dictionary); items still without one are matched by local tag. Items
///   with the same label in one set are matched in stored order. Their values are compared
///   by stored (serialised) bytes.
/// - Dark metadata sets are compared as a multiset of (key, value bytes).
///
/// The work is O(n log n) in the number of sets and items.
class VELLUM_CORE_EXPORT HeaderMetadataComparison {
public:
    /// The differences from `before` to `after`; empty when the two hold equal header
    /// metadata. Ordered by set: sets with an instance UID by its bytes, then sets without
    /// one by key and place; within a set, the set-level difference first, then items by
    /// label (items known only by local tag last, by tag). Dark metadata set differences
    /// come last, by key and value bytes. Both partitions must stay unchanged during the
    /// call.
    static std::vector<MetadataDifference> compare(const PartitionMetadata& before,
                                                   const PartitionMetadata& after);
};

} // namespace Vellum::Metadata

#endif
