#ifndef VELLUM_TYPES_VERSIONTYPE_H
#define VELLUM_TYPES_VERSIONTYPE_H

#include "Vellum/Types/TypedValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A two-part version number, major then minor, one byte each.
class VELLUM_CORE_EXPORT VersionType final
    : public TypedValue<VersionType, Identifiers::VersionType> {
public:
    /// 0.0.
    VersionType() = default;
    VersionType(std::uint8_t major, std::uint8_t minor) noexcept
        : m_major(major)
        , m_minor(minor) {}
    ~VersionType() override;

    /// Reads the stored form; throws InvalidLength unless `bytes` is 2 bytes.
    static VersionType fromBytes(DataIO::Slice bytes);

    /// The two parts, as stored.
    std::uint8_t major() const noexcept { return m_major; }
    std::uint8_t minor() const noexcept { return m_minor; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override { return 2; }

private:
    std::uint8_t m_major = 0;
    std::uint8_t m_minor = 0;
};

} // namespace Vellum::Types

#endif
