#include "Vellum/Types/VersionType.h"

#include "Vellum/DataIO/DataSink.h"

namespace Vellum::Types {

VersionType::~VersionType() = default;

VersionType VersionType::fromBytes(DataIO::Slice bytes) {
    requireSize(bytes, 2, Identifiers::VersionType);
    return {bytes.begin()[0], bytes.begin()[1]};
}

void VersionType::serialize(DataIO::DataSink& sink) const {
    sink.writeUInt8(m_major);
    sink.writeUInt8(m_minor);
}

} // namespace Vellum::Types
