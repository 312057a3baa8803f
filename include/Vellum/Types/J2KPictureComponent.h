#ifndef VELLUM_TYPES_J2KPICTURECOMPONENT_H
#define VELLUM_TYPES_J2KPICTURECOMPONENT_H

#include "Vellum/Types/TypedValue.h"

#include <cstdint>

namespace Vellum::Types {

/// The sizing of one JPEG 2000 picture component: Ssiz, XRsiz and YRsiz, one byte each.
class VELLUM_CORE_EXPORT J2KPictureComponent final
    : public TypedValue<J2KPictureComponent, Identifiers::J2KPictureComponent> {
public:
    /// All zero.
    J2KPictureComponent() = default;
    J2KPictureComponent(std::uint8_t sSizi, std::uint8_t xRSizi, std::uint8_t yRSizi) noexcept
        : m_sSizi(sSizi)
        , m_xRSizi(xRSizi)
        , m_yRSizi(yRSizi) {}
    ~J2KPictureComponent() override;

    /// Reads the stored form; throws InvalidLength unless `bytes` is 3 bytes.
    static J2KPictureComponent fromBytes(DataIO::Slice bytes);

    /// Component precision and signedness.
    std::uint8_t sSizi() const noexcept { return m_sSizi; }
    /// Horizontal separation.
    std::uint8_t xRSizi() const noexcept { return m_xRSizi; }
    /// Vertical separation.
    std::uint8_t yRSizi() const noexcept { return m_yRSizi; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override { return 3; }

private:
    std::uint8_t m_sSizi = 0;
    std::uint8_t m_xRSizi = 0;
    std::uint8_t m_yRSizi = 0;
};

} // namespace Vellum::Types

#endif
