#ifndef VELLUM_TYPES_PRODUCTVERSION_H
#define VELLUM_TYPES_PRODUCTVERSION_H

#include "Vellum/Types/TypedValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A product version: major, minor, patch, build and release kind, five big-endian 16-bit
/// numbers (10 bytes).
class VELLUM_CORE_EXPORT ProductVersion final
    : public TypedValue<ProductVersion, Identifiers::ProductVersion> {
public:
    /// The kind of release. The named values are the known ones; any other 16-bit number read
    /// from a file is carried unchanged.
    enum class ReleaseVersion : std::uint16_t {
        Unknown = 0,
        Released = 1,
        Debug = 2,
        Patched = 3,
        Beta = 4,
        PrivateBuild = 5,
    };

    /// 0.0.0.0, release kind unknown.
    ProductVersion() = default;
    ProductVersion(std::uint16_t major, std::uint16_t minor, std::uint16_t patch,
                   std::uint16_t build, ReleaseVersion release) noexcept;
    ~ProductVersion() override;

    /// Reads the stored form; throws InvalidLength unless `bytes` is 10 bytes.
    static ProductVersion fromBytes(DataIO::Slice bytes);

    /// The version numbers and release kind, as stored.
    std::uint16_t major() const noexcept { return m_major; }
    std::uint16_t minor() const noexcept { return m_minor; }
    std::uint16_t patch() const noexcept { return m_patch; }
    std::uint16_t build() const noexcept { return m_build; }
    ReleaseVersion releaseVersion() const noexcept { return m_release; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override { return 10; }

private:
    std::uint16_t m_major = 0;
    std::uint16_t m_minor = 0;
    std::uint16_t m_patch = 0;
    std::uint16_t m_build = 0;
    ReleaseVersion m_release = ReleaseVersion::Unknown;
};

} // namespace Vellum::Types

#endif
