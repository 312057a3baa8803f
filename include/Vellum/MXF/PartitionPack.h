#ifndef VELLUM_MXF_PARTITIONPACK_H
#define VELLUM_MXF_PARTITIONPACK_H

#include "Vellum/Core/Export.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/KLV/BERLength.h"
#include "Vellum/KLV/Key.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vellum::MXF {

/// Where a partition stands in the file.
enum class PartitionKind : std::uint8_t { Header, Body, Footer };

/// One partition pack: the fixed pack that opens every partition of an MXF file.
class VELLUM_CORE_EXPORT PartitionPack {
public:
    /// The fixed part of the value: everything up to the essence container batch.
    static constexpr std::uint64_t fixedSize = 80;

    /// Parses a partition pack whose key is `key` and value `value`; `offset` is the absolute
    /// file position of the key. Throws InvalidFormat for a key that is not a partition pack,
    /// InvalidLength for a value too short for its fields or its essence container batch; both
    /// name the offset.
    static PartitionPack parse(const KLV::Key& key, const KLV::BERLength& length,
                               DataIO::Slice value, std::uint64_t offset);

    const KLV::Key& key() const noexcept { return m_key; }
    PartitionKind kind() const noexcept { return m_kind; }
    /// Closed: the header metadata of the partition is final.
    bool isClosed() const noexcept;
    /// Complete: the header metadata holds every required value.
    bool isComplete() const noexcept;
    /// A body partition of a generic stream (key byte 15 is 0x11).
    bool isGenericStream() const noexcept;
    /// "header", "body" or "footer".
    const char* kindName() const noexcept;
    /// "closed complete", "open incomplete" ... or "generic stream".
    std::string statusName() const;

    /// Absolute position of the pack's key in the file.
    std::uint64_t offset() const noexcept { return m_offset; }
    /// Absolute position just past the pack (where fill or the primer pack follows).
    std::uint64_t endOffset() const noexcept;

    std::uint16_t majorVersion() const noexcept { return m_majorVersion; }
    std::uint16_t minorVersion() const noexcept { return m_minorVersion; }
    std::uint32_t kagSize() const noexcept { return m_kagSize; }
    std::uint64_t thisPartition() const noexcept { return m_thisPartition; }
    std::uint64_t previousPartition() const noexcept { return m_previousPartition; }
    std::uint64_t footerPartition() const noexcept { return m_footerPartition; }
    std::uint64_t headerByteCount() const noexcept { return m_headerByteCount; }
    std::uint64_t indexByteCount() const noexcept { return m_indexByteCount; }
    std::uint32_t indexSID() const noexcept { return m_indexSID; }
    std::uint64_t bodyOffset() const noexcept { return m_bodyOffset; }
    std::uint32_t bodySID() const noexcept { return m_bodySID; }
    const KLV::Key& operationalPattern() const noexcept { return m_operationalPattern; }
    const std::vector<KLV::Key>& essenceContainers() const noexcept { return m_essenceContainers; }

private:
    PartitionPack() = default;

    KLV::Key m_key;
    PartitionKind m_kind = PartitionKind::Header;
    std::uint64_t m_offset = 0;
    std::uint64_t m_size = 0; // key, length field and value
    std::uint16_t m_majorVersion = 0;
    std::uint16_t m_minorVersion = 0;
    std::uint32_t m_kagSize = 0;
    std::uint64_t m_thisPartition = 0;
    std::uint64_t m_previousPartition = 0;
    std::uint64_t m_footerPartition = 0;
    std::uint64_t m_headerByteCount = 0;
    std::uint64_t m_indexByteCount = 0;
    std::uint32_t m_indexSID = 0;
    std::uint64_t m_bodyOffset = 0;
    std::uint32_t m_bodySID = 0;
    KLV::Key m_operationalPattern;
    std::vector<KLV::Key> m_essenceContainers;
};

} // namespace Vellum::MXF

#endif
