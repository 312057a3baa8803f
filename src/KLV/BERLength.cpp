#include "Vellum/KLV/BERLength.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/DataIO/DataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <string>

namespace Vellum::KLV {
namespace {

// Whether `value` fits the given total octet count of a length field.
bool fits(std::uint64_t value, std::uint8_t octets) noexcept {
    if (octets == 1) {
        return value < 0x80;
    }
    const unsigned payloadBits = 8U * (octets - 1U);
    return payloadBits >= 64 || value < (std::uint64_t{1} << payloadBits);
}

} // namespace

BERLength::BERLength(std::uint64_t value) noexcept
    : m_value(value)
    , m_octets(minimalOctets(value)) {}

BERLength::BERLength(std::uint64_t value, std::uint8_t octets)
    : m_value(value)
    , m_octets(octets) {
    if (octets < 1 || octets > maxOctets) {
        VELLUM_THROW(InvalidLength, "a BER length has 1 to 9 octets, not " +
                                        std::to_string(static_cast<unsigned>(octets)));
    }
    if (!fits(value, octets)) {
        VELLUM_THROW(InvalidLength, "the length " + std::to_string(value) + " does not fit in " +
                                        std::to_string(static_cast<unsigned>(octets)) +
                                        " BER octets");
    }
}

std::uint8_t BERLength::minimalOctets(std::uint64_t value) noexcept {
    if (value < 0x80) {
        return 1;
    }
    std::uint8_t payload = 1;
    while (payload < 8 && (value >> (8U * payload)) != 0) {
        ++payload;
    }
    return static_cast<std::uint8_t>(payload + 1);
}

BERLength BERLength::read(DataIO::DataSource& source) {
    const std::uint64_t offset = source.position();
    source.require(1, "BER length");
    const std::uint8_t first = source.readUInt8();
    if (first < 0x80) {
        return BERLength(first, 1);
    }
    const unsigned payload = first & 0x7FU;
    if (payload == 0) {
        VELLUM_THROW(InvalidFormat, "indefinite BER length (0x80) at offset " +
                                        std::to_string(offset) + " is not allowed in MXF");
    }
    if (payload > 8) {
        VELLUM_THROW(InvalidFormat, "BER length at offset " + std::to_string(offset) + " has " +
                                        std::to_string(payload + 1) +
                                        " octets; at most 9 are allowed");
    }
    source.require(payload, "BER length");
    std::uint64_t value = 0;
    for (unsigned i = 0; i < payload; ++i) {
        value = (value << 8U) | source.readUInt8();
    }
    return BERLength(value, static_cast<std::uint8_t>(payload + 1));
}

void BERLength::write(DataIO::DataSink& sink) const {
    std::uint8_t bytes[maxOctets] = {};
    if (m_octets == 1) {
        bytes[0] = static_cast<std::uint8_t>(m_value);
    } else {
        const unsigned payload = m_octets - 1U;
        bytes[0] = static_cast<std::uint8_t>(0x80U | payload);
        for (unsigned i = 0; i < payload; ++i) {
            const unsigned shift = 8U * (payload - 1U - i);
            bytes[1 + i] = shift >= 64 ? 0 : static_cast<std::uint8_t>(m_value >> shift);
        }
    }
    sink.write(bytes, m_octets);
}

} // namespace Vellum::KLV
