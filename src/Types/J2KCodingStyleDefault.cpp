#include "Vellum/Types/J2KCodingStyleDefault.h"

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/DataIO/DataSink.h"

namespace Vellum::Types {

J2KCodingStyleDefault::J2KCodingStyleDefault(std::uint8_t scod, std::uint32_t sGcod,
                                             const std::uint8_t* spcod, std::uint64_t spcodLength)
    : m_scod(scod)
    , m_sGcod(sGcod)
    , m_spcod(spcod, spcodLength) {
    // The whole value, header included, must have a 32-bit size.
    checkedSize(spcodLength + headerSize, Identifiers::J2KCodingStyleDefault);
}

J2KCodingStyleDefault::~J2KCodingStyleDefault() = default;

J2KCodingStyleDefault J2KCodingStyleDefault::fromBytes(DataIO::Slice bytes) {
    requireMinimumSize(bytes, headerSize, Identifiers::J2KCodingStyleDefault);
    const DataIO::Slice spcod = bytes.sub(headerSize, bytes.size() - headerSize);
    return {bytes.begin()[0], DataIO::BigEndian::load32(bytes.begin() + 1), spcod.begin(),
            spcod.size()};
}

void J2KCodingStyleDefault::serialize(DataIO::DataSink& sink) const {
    sink.writeUInt8(m_scod);
    sink.writeUInt32(m_sGcod);
    m_spcod.serialize(sink);
}

std::uint32_t J2KCodingStyleDefault::serializedSize() const {
    return headerSize + m_spcod.serializedSize();
}

} // namespace Vellum::Types
