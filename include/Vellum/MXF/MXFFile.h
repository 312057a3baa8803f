#ifndef VELLUM_MXF_MXFFILE_H
#define VELLUM_MXF_MXFFILE_H

#include "Vellum/Core/Export.h"
#include "Vellum/KLV/Triplet.h"
#include "Vellum/MXF/PartitionPack.h"
#include "Vellum/MXF/RandomIndexPack.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Vellum::DataIO {
class DataSource;
} // namespace Vellum::DataIO

namespace Vellum::MXF {

/// The header metadata of one partition as it lies in the file: the primer pack, the sets and
/// any fill between and after them (the partition's HeaderByteCount bytes).
struct HeaderMetadataBytes {
    std::uint64_t offset = 0; ///< absolute position of the primer pack's key
    std::vector<std::uint8_t> bytes;
};

/// The partition structure of an MXF file: run-in, partition packs and random index pack.
///
/// Opening reads only the packs, never the essence: partitions are found through the random
/// index pack when the file has a valid one, else by following the footer's chain of previous
/// partitions, else by walking the KLV triplets from the header partition.
class VELLUM_CORE_EXPORT MXFFile {
public:
    /// The longest run-in that may precede the header partition pack.
    static constexpr std::uint64_t maxRunIn = 65535;

    /// Reads the structure from `source` (borrowed; it must outlive the object). Throws
    /// InvalidFormat when no header partition pack starts within the run-in (the data is not
    /// MXF), and InvalidFormat/InvalidLength naming the offset for a malformed partition pack.
    explicit MXFFile(DataIO::DataSource& source);

    /// Bytes before the header partition pack.
    std::uint64_t runInLength() const noexcept { return m_runIn; }
    /// Every partition found, in file order.
    const std::vector<PartitionPack>& partitions() const noexcept { return m_partitions; }
    const std::optional<RandomIndexPack>& randomIndexPack() const noexcept { return m_rip; }
    /// How the partitions were found: "random index pack", "footer chain" or "KLV walk".
    const std::string& discovery() const noexcept { return m_discovery; }
    /// What could not be read while looking for partitions (the walk stops there); empty when
    /// the whole file was read.
    const std::vector<std::string>& problems() const noexcept { return m_problems; }

    /// The partition with header metadata that a user means by `which`: "header" (the header
    /// partition), "footer" (the footer partition), or a decimal index into `partitions()`.
    /// Throws InvalidFormat when there is no such partition or it carries no header metadata.
    const PartitionPack& choosePartition(const std::string& which) const;

    /// Reads the header metadata of `partition` (fill after the pack is skipped; the primer
    /// pack must follow). Throws InvalidFormat/InvalidLength naming the offset when the
    /// partition has none, the primer is missing, or the byte count runs past the file.
    HeaderMetadataBytes readHeaderMetadata(const PartitionPack& partition) const;

private:
    PartitionPack readPackAt(std::uint64_t offset) const;
    PartitionPack readPackValue(const KLV::Triplet& triplet) const;
    void locateRunIn();
    bool discoverFromRandomIndex();
    bool discoverFromFooterChain();
    void discoverByWalking();

    DataIO::DataSource& m_source;
    std::uint64_t m_runIn = 0;
    std::vector<PartitionPack> m_partitions;
    std::optional<RandomIndexPack> m_rip;
    std::string m_discovery;
    std::vector<std::string> m_problems;
};

} // namespace Vellum::MXF

#endif
