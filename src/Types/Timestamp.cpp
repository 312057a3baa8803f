#include "Vellum/Types/Timestamp.h"

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/DataIO/DataSink.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"

#include <string>

namespace Vellum::Types {

Timestamp::Timestamp(std::uint16_t year, std::uint8_t month, std::uint8_t day, std::uint8_t hour,
                     std::uint8_t minute, std::uint8_t second, std::uint16_t milliseconds)
    : m_year(year)
    , m_month(month)
    , m_day(day)
    , m_hour(hour)
    , m_minute(minute)
    , m_second(second) {
    if (milliseconds > maxMilliseconds) {
        VELLUM_THROW(InvalidFormat, "time stamp milliseconds " + std::to_string(milliseconds) +
                                        " exceed " + std::to_string(maxMilliseconds) +
                                        ", the most a count of 4-millisecond units in one byte "
                                        "holds");
    }
    m_milliSecondBy4 = static_cast<std::uint8_t>(milliseconds / 4);
}

Timestamp::~Timestamp() = default;

Timestamp Timestamp::fromBytes(DataIO::Slice bytes) {
    requireSize(bytes, 8, Identifiers::Timestamp);
    const std::uint8_t* p = bytes.begin();
    Timestamp value;
    value.m_year = DataIO::BigEndian::load16(p);
    value.m_month = p[2];
    value.m_day = p[3];
    value.m_hour = p[4];
    value.m_minute = p[5];
    value.m_second = p[6];
    value.m_milliSecondBy4 = p[7];
    return value;
}

void Timestamp::serialize(DataIO::DataSink& sink) const {
    sink.writeUInt16(m_year);
    const std::uint8_t rest[] = {m_month, m_day, m_hour, m_minute, m_second, m_milliSecondBy4};
    sink.write(rest, sizeof rest);
}

} // namespace Vellum::Types
