#include "Vellum/KLV/TripletReader.h"

#include "Vellum/DataIO/DataSource.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <string>

namespace Vellum::KLV {

TripletReader::TripletReader(DataIO::DataSource& source) noexcept
    : m_source(source) {}

void TripletReader::skipValue() {
    if (m_pendingEnd) {
        m_source.seek(*m_pendingEnd);
        m_pendingEnd.reset();
    }
}

std::optional<Triplet> TripletReader::next() {
    skipValue();
    if (m_source.remaining() == 0) {
        return std::nullopt;
    }
    Triplet triplet;
    triplet.offset = m_source.position();
    // Any 16 bytes are a key: some writers use AUID-style keys (first byte 0x80) inside
    // header metadata. Only a broken length stops the walk.
    triplet.key = Key::read(m_source);
    triplet.length = BERLength::read(m_source);
    const std::uint64_t left = m_source.remaining();
    if (triplet.length.value() > left) {
        VELLUM_THROW(InvalidLength, "the value of the KLV triplet at offset " +
                                        std::to_string(triplet.offset) + " claims " +
                                        std::to_string(triplet.length.value()) +
                                        " bytes, but only " + std::to_string(left) + " remain");
    }
    m_pendingEnd = triplet.endOffset();
    return triplet;
}

} // namespace Vellum::KLV
