#ifndef VELLUM_MXF_HEADERMETADATAREGIONS_H
#define VELLUM_MXF_HEADERMETADATAREGIONS_H

#include "Vellum/Core/Export.h"
#include "Vellum/KLV/Key.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Vellum::DataIO {
class DataSource;
} // namespace Vellum::DataIO

namespace Vellum::MXF {

class MXFFile;

/// Where the header metadata of one partition lies in the file. All offsets are absolute file
/// positions (run-in included).
///
///     pack (packSize) | fill (fillBefore) | primer pack, sets, fill (size = HeaderByteCount)
///     ^ packOffset                        ^ offset
struct HeaderMetadataRegion {
    std::size_t partitionIndex = 0; ///< index into `MXFFile::partitions()`
    std::uint64_t packOffset = 0;   ///< the partition pack's key
    std::uint64_t packSize = 0;     ///< key, length field and value of the pack
    std::uint64_t fillBefore = 0;   ///< fill between the end of the pack and the primer pack
    std::uint64_t offset = 0;       ///< the primer pack's key: the region starts here
    std::uint64_t size = 0;         ///< the partition's HeaderByteCount
    /// Bytes from `offset` to the end of the last KLV that is not fill: the region without its
    /// trailing fill. Equals `size` when the region ends with a set.
    std::uint64_t contentSize = 0;
    std::uint32_t kagSize = 0; ///< the partition's KAG (0 or 1: no alignment)
    /// The first fill key found before the primer or inside the region, if any.
    std::optional<KLV::Key> fillKey;
    /// The length-field octets of the fill item that follows the last set, 0 when there is
    /// none: new fill keeps the writer's form (some write 9-octet lengths).
    std::uint8_t fillLengthOctets = 0;

    /// Absolute position just past the region.
    std::uint64_t end() const noexcept { return offset + size; }
};

/// The header metadata regions of every partition of a file that carries header metadata.
///
/// Reads only keys and lengths: the pack's trailing fill, the primer's position and the KLV
/// layout inside each region, never the essence.
class VELLUM_CORE_EXPORT HeaderMetadataRegions {
public:
    /// The KLV fill key written when a file has no fill of its own.
    static constexpr KLV::Key defaultFillKey{KLV::Key::Bytes{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01,
                                                             0x01, 0x02, 0x03, 0x01, 0x02, 0x10,
                                                             0x01, 0x00, 0x00, 0x00}};

    /// Locates the regions of `file`, which was read from `source`. Throws InvalidFormat when a
    /// partition with a HeaderByteCount has no primer pack after its pack (and fill), and
    /// InvalidLength when a region runs into the next partition, the random index pack or past
    /// the end of the file; messages name the partition and the offsets.
    HeaderMetadataRegions(DataIO::DataSource& source, const MXFFile& file);

    /// The regions in file order.
    const std::vector<HeaderMetadataRegion>& regions() const noexcept { return m_regions; }
    /// The region of partition `partitionIndex`, or nullptr when it has none.
    const HeaderMetadataRegion* find(std::size_t partitionIndex) const noexcept;
    /// The fill key the file uses (the first found in any region), else `defaultFillKey`.
    const KLV::Key& fillKey() const noexcept { return m_fillKey; }
    /// The fill key for new fill in `region`: its own, else the file's.
    const KLV::Key& fillKeyFor(const HeaderMetadataRegion& region) const noexcept;

private:
    std::vector<HeaderMetadataRegion> m_regions;
    KLV::Key m_fillKey = defaultFillKey;
};

} // namespace Vellum::MXF

#endif
