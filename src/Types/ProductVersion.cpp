#include "Vellum/Types/ProductVersion.h"

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/DataIO/DataSink.h"

namespace Vellum::Types {

ProductVersion::ProductVersion(std::uint16_t major, std::uint16_t minor, std::uint16_t patch,
                               std::uint16_t build, ReleaseVersion release) noexcept
    : m_major(major)
    , m_minor(minor)
    , m_patch(patch)
    , m_build(build)
    , m_release(release) {}

ProductVersion::~ProductVersion() = default;

ProductVersion ProductVersion::fromBytes(DataIO::Slice bytes) {
    requireSize(bytes, 10, Identifiers::ProductVersion);
    using DataIO::BigEndian::load16;
    const std::uint8_t* p = bytes.begin();
    return {load16(p), load16(p + 2), load16(p + 4), load16(p + 6),
            static_cast<ReleaseVersion>(load16(p + 8))};
}

void ProductVersion::serialize(DataIO::DataSink& sink) const {
    sink.writeUInt16(m_major);
    sink.writeUInt16(m_minor);
    sink.writeUInt16(m_patch);
    sink.writeUInt16(m_build);
    sink.writeUInt16(static_cast<std::uint16_t>(m_release));
}

} // namespace Vellum::Types
