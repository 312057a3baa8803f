#include "Vellum/Types/Rational.h"

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/DataIO/DataSink.h"

namespace Vellum::Types {

Rational::~Rational() = default;

Rational Rational::fromBytes(DataIO::Slice bytes) {
    requireSize(bytes, 8, Identifiers::Rational);
    using DataIO::BigEndian::load32;
    return {static_cast<std::int32_t>(load32(bytes.begin())),
            static_cast<std::int32_t>(load32(bytes.begin() + 4))};
}

void Rational::serialize(DataIO::DataSink& sink) const {
    sink.writeUInt32(static_cast<std::uint32_t>(m_numerator));
    sink.writeUInt32(static_cast<std::uint32_t>(m_denominator));
}

} // namespace Vellum::Types
