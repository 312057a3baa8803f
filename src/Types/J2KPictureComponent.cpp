#include "Vellum/Types/J2KPictureComponent.h"

#include "Vellum/DataIO/DataSink.h"

namespace Vellum::Types {

J2KPictureComponent::~J2KPictureComponent() = default;

J2KPictureComponent J2KPictureComponent::fromBytes(DataIO::Slice bytes) {
    requireSize(bytes, 3, Identifiers::J2KPictureComponent);
    const std::uint8_t* p = bytes.begin();
    return {p[0], p[1], p[2]};
}

void J2KPictureComponent::serialize(DataIO::DataSink& sink) const {
    sink.writeUInt8(m_sSizi);
    sink.writeUInt8(m_xRSizi);
    sink.writeUInt8(m_yRSizi);
}

} // namespace Vellum::Types
