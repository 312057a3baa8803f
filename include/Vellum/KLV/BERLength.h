#ifndef VELLUM_KLV_BERLENGTH_H
#define VELLUM_KLV_BERLENGTH_H

#include "Vellum/Core/Export.h"

#include <cstddef>
#include <cstdint>

namespace Vellum::DataIO {
class DataSink;
class DataSource;
} // namespace Vellum::DataIO

namespace Vellum::KLV {

/// A BER-coded length as MXF uses it: short form (one octet, value below 128) or long form
/// (0x80 + n, then n big-endian octets, n from 1 to 8). The octet count is kept, because
/// writers choose it (0x83 and 0x87 forms are common) and a file must write back unchanged.
class VELLUM_CORE_EXPORT BERLength {
public:
    /// The largest number of octets a length field may have.
    static constexpr std::uint8_t maxOctets = 9;

    /// A length in the shortest form that holds it.
    explicit BERLength(std::uint64_t value) noexcept;
    /// A length with a chosen octet count (1 to 9); throws InvalidLength if `value` does not
    /// fit in that many octets or the count is out of range.
    BERLength(std::uint64_t value, std::uint8_t octets);

    /// Decodes a length field. Throws InvalidFormat for the indefinite form (0x80) or more than
    /// 8 length octets, InvalidLength if the field runs past the end; both name the offset.
    static BERLength read(DataIO::DataSource& source);

    /// The fewest octets that hold `value`.
    static std::uint8_t minimalOctets(std::uint64_t value) noexcept;

    void write(DataIO::DataSink& sink) const;

    constexpr std::uint64_t value() const noexcept { return m_value; }
    constexpr std::uint8_t octets() const noexcept { return m_octets; }

    friend bool operator==(const BERLength& a, const BERLength& b) noexcept {
        return a.m_value == b.m_value && a.m_octets == b.m_octets;
    }
    friend bool operator!=(const BERLength& a, const BERLength& b) noexcept { return !(a == b); }

private:
    std::uint64_t m_value;
    std::uint8_t m_octets;
};

} // namespace Vellum::KLV

#endif
