#include "Vellum/Types/Boolean.h"

#include "Vellum/DataIO/DataSink.h"

namespace Vellum::Types {

Boolean::~Boolean() = default;

Boolean Boolean::fromBytes(DataIO::Slice bytes) {
    requireSize(bytes, 1, Identifiers::Boolean);
    Boolean value;
    value.m_byte = bytes.begin()[0];
    return value;
}

void Boolean::serialize(DataIO::DataSink& sink) const {
    sink.writeUInt8(m_byte);
}

} // namespace Vellum::Types
