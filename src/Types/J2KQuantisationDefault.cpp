#include "Vellum/Types/J2KQuantisationDefault.h"

#include "Vellum/DataIO/DataSink.h"

namespace Vellum::Types {

J2KQuantisationDefault::J2KQuantisationDefault(std::uint8_t sqcd, const std::uint8_t* sPgcd,
                                               std::uint64_t sPgcdLength)
    : m_sqcd(sqcd)
    , m_sPgcd(sPgcd, sPgcdLength) {
    // The whole value, header included, must have a 32-bit size.
    checkedSize(sPgcdLength + headerSize, Identifiers::J2KQuantisationDefault);
}

J2KQuantisationDefault::~J2KQuantisationDefault() = default;

J2KQuantisationDefault J2KQuantisationDefault::fromBytes(DataIO::Slice bytes) {
    requireMinimumSize(bytes, headerSize, Identifiers::J2KQuantisationDefault);
    const DataIO::Slice sPgcd = bytes.sub(headerSize, bytes.size() - headerSize);
    return {bytes.begin()[0], sPgcd.begin(), sPgcd.size()};
}

void J2KQuantisationDefault::serialize(DataIO::DataSink& sink) const {
    sink.writeUInt8(m_sqcd);
    m_sPgcd.serialize(sink);
}

std::uint32_t J2KQuantisationDefault::serializedSize() const {
    return headerSize + m_sPgcd.serializedSize();
}

} // namespace Vellum::Types
