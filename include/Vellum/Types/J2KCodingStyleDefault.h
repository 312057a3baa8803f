#ifndef VELLUM_TYPES_J2KCODINGSTYLEDEFAULT_H
#define VELLUM_TYPES_J2KCODINGSTYLEDEFAULT_H

#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/TypedValue.h"

#include <cstdint>

namespace Vellum::Types {

/// The default coding style of a JPEG 2000 codestream: Scod (1 byte), SGcod (big-endian 32-bit)
/// and the SPcod bytes that fill the rest of the value.
class VELLUM_CORE_EXPORT J2KCodingStyleDefault final
    : public TypedValue<J2KCodingStyleDefault, Identifiers::J2KCodingStyleDefault> {
public:
    /// Bytes before SPcod.
    static constexpr std::uint32_t headerSize = 5;

    /// Zero Scod and SGcod, no SPcod bytes.
    J2KCodingStyleDefault() = default;
    /// Copies `spcodLength` SPcod bytes. Throws InvalidFormat for a null pointer with a
    /// non-zero length and InvalidLength for a value longer than a 32-bit size can count.
    J2KCodingStyleDefault(std::uint8_t scod, std::uint32_t sGcod, const std::uint8_t* spcod,
                          std::uint64_t spcodLength);
    J2KCodingStyleDefault(const J2KCodingStyleDefault&) = default;
    J2KCodingStyleDefault(J2KCodingStyleDefault&&) noexcept = default;
    J2KCodingStyleDefault& operator=(const J2KCodingStyleDefault&) = default;
    J2KCodingStyleDefault& operator=(J2KCodingStyleDefault&&) noexcept = default;
    ~J2KCodingStyleDefault() override;

    /// Reads the stored form; throws InvalidLength for fewer than `headerSize` bytes.
    static J2KCodingStyleDefault fromBytes(DataIO::Slice bytes);

    /// Coding style flags.
    std::uint8_t scod() const noexcept { return m_scod; }
    /// Progression order, layer count and multiple component transform.
    std::uint32_t sGcod() const noexcept { return m_sGcod; }
    /// The SPcod bytes.
    const DataStream& spcod() const noexcept { return m_spcod; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override;

private:
    std::uint8_t m_scod = 0;
    std::uint32_t m_sGcod = 0;
    DataStream m_spcod;
};

} // namespace Vellum::Types

#endif
