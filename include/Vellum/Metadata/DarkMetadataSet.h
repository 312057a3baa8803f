#ifndef VELLUM_METADATA_DARKMETADATASET_H
#define VELLUM_METADATA_DARKMETADATASET_H

#include "Vellum/Core/Export.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/KLV/Value.h"

#include <cstdint>

namespace Vellum::DataIO {
class DataSink;
} // namespace Vellum::DataIO

namespace Vellum::Metadata {

/// A KLV triplet inside header metadata that is not a local set: kept uninterpreted and
/// written back as it was.
class VELLUM_CORE_EXPORT DarkMetadataSet {
public:
    /// Copies `value`. Throws InvalidLength if `value` does not fit `berOctets` length octets
    /// (1 to 9).
    DarkMetadataSet(const KLV::Key& key, std::uint8_t berOctets, const KLV::Value& value);
    DarkMetadataSet(const DarkMetadataSet&) = delete;
    DarkMetadataSet& operator=(const DarkMetadataSet&) = delete;
    ~DarkMetadataSet();

    const KLV::Key& key() const noexcept { return m_key; }
    /// Octets of the BER length field.
    std::uint8_t berLength() const noexcept { return m_berOctets; }
    /// The value bytes (never null; empty for a zero-length value).
    const DataIO::Slice* value() const noexcept { return &m_slice; }

    std::uint64_t serializedSize() const noexcept;
    void serialize(DataIO::DataSink& sink) const;

private:
    KLV::Key m_key;
    std::uint8_t m_berOctets;
    KLV::Value m_value;
    DataIO::Slice m_slice;
};

} // namespace Vellum::Metadata

#endif
