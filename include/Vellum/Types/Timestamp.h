#ifndef VELLUM_TYPES_TIMESTAMP_H
#define VELLUM_TYPES_TIMESTAMP_H

#include "Vellum/Types/TypedValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A date and time (8 bytes): year (big-endian 16-bit), month, day, hour, minute, second, and
/// the milliseconds divided by 4, one byte each.
///
/// No calendar check is made: files write all-zero time stamps for "unknown", and every
/// stored form must write back unchanged.
class VELLUM_CORE_EXPORT Timestamp final : public TypedValue<Timestamp, Identifiers::Timestamp> {
public:
    /// Milliseconds above this do not fit the stored count of 4-millisecond units.
    static constexpr std::uint16_t maxMilliseconds = 255 * 4 + 3;

    /// All fields zero.
    Timestamp() = default;
    /// From calendar fields and milliseconds. The milliseconds are stored divided by 4 (the
    /// remainder is dropped), so `milliSecond()` gives `milliseconds / 4`. Throws
    /// InvalidFormat if `milliseconds` exceeds `maxMilliseconds`.
    Timestamp(std::uint16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour,
              std::uint8_t minute, std::uint8_t second, std::uint16_t milliseconds);
    ~Timestamp() override;

    /// Reads the stored form, the 4-millisecond count as it is; throws InvalidLength unless
    /// `bytes` is 8 bytes.
    static Timestamp fromBytes(DataIO::Slice bytes);

    /// The calendar fields, as stored.
    std::uint16_t year() const noexcept { return m_year; }
    std::uint8_t month() const noexcept { return m_month; }
    std::uint8_t day() const noexcept { return m_day; }
    std::uint8_t hour() const noexcept { return m_hour; }
    std::uint8_t minute() const noexcept { return m_minute; }
    std::uint8_t second() const noexcept { return m_second; }
    /// The stored count of 4-millisecond units (milliseconds divided by 4), not milliseconds.
    std::uint16_t milliSecond() const noexcept { return m_milliSecondBy4; }

    void serialize(DataIO::DataSink& sink) const override;
    std::uint32_t serializedSize() const override { return 8; }

private:
    std::uint16_t m_year = 0;
    std::uint8_t m_month = 0;
    std::uint8_t m_day = 0;
    std::uint8_t m_hour = 0;
    std::uint8_t m_minute = 0;
    std::uint8_t m_second = 0;
    std::uint8_t m_milliSecondBy4 = 0;
};

} // namespace Vellum::Types

#endif
