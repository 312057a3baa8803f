#ifndef VELLUM_MXF_HEADERMETADATAUPDATE_H
#define VELLUM_MXF_HEADERMETADATAUPDATE_H

#include "Vellum/Core/Export.h"
#include "Vellum/KLV/Key.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Vellum::MXF {

/// Writes new header metadata into an MXF file without re-wrapping its essence.
///
/// A replacement gives, for a partition index (into `MXFFile::partitions()`), the new header
/// metadata: the primer pack followed by the sets, without trailing fill.
///
/// - `updateInPlace` overwrites the regions of the file itself; each replacement must fit its
///   region (same size, or 17 bytes or more to spare for a KLV fill item). Nothing moves.
/// - `rewrite` writes a new file in which the regions may grow or shrink: partition packs,
///   HeaderByteCounts and the random index pack follow the moved offsets, and everything else is
///   copied unchanged, streamed. The output replaces its target only once written and checked.
///
/// Example:
///
///     HeaderMetadataUpdate::Replacements replacements;
///     replacements[0] = newHeaderMetadata; // the header partition
///     try {
///         HeaderMetadataUpdate::updateInPlace("clip.mxf", replacements);
///     } catch (const Exceptions::InvalidLength&) {
///         // No room: write a copy, leaving 64 KiB of fill for later in-place edits.
///         HeaderMetadataUpdate::rewrite("clip.mxf", "clip-new.mxf", replacements, 65536);
///     }
class VELLUM_CORE_EXPORT HeaderMetadataUpdate {
public:
    /// New header metadata by partition index.
    using Replacements = std::map<std::size_t, std::vector<std::uint8_t>>;

    /// The smallest KLV fill item (16-byte key, 1-byte length, no value).
    static constexpr std::uint64_t minFillSize = 17;

    /// Writes each replacement into its region of the file at `path`, followed by a fill item
    /// that fills the rest of the region (with the file's fill key and length form). All regions
    /// are prepared before the first byte is written; the file is then written in place (never
    /// truncated), flushed and synced. Only bytes inside the regions change.
    ///
    /// Throws InvalidLength, changing nothing, when a replacement does not fit, naming the
    /// partition, its space and the size needed; InvalidFormat for a partition index that does
    /// not exist, a partition without header metadata, or bytes that are not KLV triplets
    /// starting with a primer pack; IOError when the file cannot be read or written.
    static void updateInPlace(const std::string& path, const Replacements& replacements);

    /// Writes a copy of `inPath` to `outPath` with the replaced header metadata. Each replaced
    /// region gets the new bytes, then fill of at least `reserve` bytes that ends the region
    /// on a KAG boundary of its partition (measured from the partition pack's key), or, when
    /// the original region did not end on one, at the same distance from a boundary as the
    /// original (so what follows stays where its writer aligned it). Partition packs get their
    /// new ThisPartition, PreviousPartition, FooterPartition (and HeaderByteCount when
    /// replaced); the random index pack its new offsets. The run-in, essence, index tables,
    /// unreplaced header metadata and all other bytes are copied unchanged, in chunks.
    ///
    /// The copy is written beside `outPath`, synced, checked with `compareOutsideRegions` and
    /// only then renamed to `outPath` (to the file it links to, for a symbolic link), with the
    /// permissions of the file it replaces; any failure leaves `outPath` as it was. `outPath`
    /// may be `inPath`, but not a device or pipe (IOError). Throws as `updateInPlace` does
    /// (except for size) and InvalidFormat when the check fails.
    static void rewrite(const std::string& inPath, const std::string& outPath,
                        const Replacements& replacements, std::uint64_t reserve = 0);

    /// Checks that two files differ at most in header metadata: both have the same partitions
    /// with the same packs apart from their offset fields and HeaderByteCount, the same random
    /// index pack apart from its offsets, and, in order, the same bytes everywhere outside the
    /// partition packs, the header metadata regions and the random index pack. Streams both
    /// files. Throws InvalidFormat naming the first differing offset in each file.
    static void compareOutsideRegions(const std::string& pathA, const std::string& pathB);

    /// A KLV fill item of exactly `size` bytes (at least `minFillSize`) with key `key` and a zero
    /// value. Its BER length field has `lengthOctets` octets when that form can code the item
    /// (callers pass the form the file's own fill uses), else 4 octets (more when the value
    /// needs them), or fewer for items under 20 bytes. Throws InvalidLength when `size` is
    /// below `minFillSize`.
    static std::vector<std::uint8_t> fillItem(const KLV::Key& key, std::uint64_t size,
                                              std::uint8_t lengthOctets = 0);
};

} // namespace Vellum::MXF

#endif
