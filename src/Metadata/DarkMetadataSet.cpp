#include "Vellum/Metadata/DarkMetadataSet.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/KLV/BERLength.h"

namespace Vellum::Metadata {

DarkMetadataSet::DarkMetadataSet(const KLV::Key& key, std::uint8_t berOctets,
                                 const KLV::Value& value)
    : m_key(key)
    , m_berOctets(KLV::BERLength(value.size(), berOctets).octets())
    , m_value(value)
    , m_slice(m_value.slice()) {}

DarkMetadataSet::~DarkMetadataSet() = default;

std::uint64_t DarkMetadataSet::serializedSize() const noexcept {
    return KLV::Key::byteCount + m_berOctets + m_value.size();
}

void DarkMetadataSet::serialize(DataIO::DataSink& sink) const {
    m_key.serialize(sink);
    KLV::BERLength(m_value.size(), m_berOctets).write(sink);
    sink.write(m_value.begin(), m_value.size());
}

} // namespace Vellum::Metadata
