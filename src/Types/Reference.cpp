#include "Vellum/Types/Reference.h"

namespace Vellum::Types {

Reference::Reference(const WString& uuidText, StringRepresentationEncodingType encoding)
    : m_uuid(uuidText, encoding) {}

Reference::~Reference() = default;

WString Reference::toString() const {
    return m_uuid.toString(DottedHex);
}

void Reference::serialize(DataIO::DataSink& sink) const {
    m_uuid.serialize(sink);
}

std::uint32_t Reference::serializedSize() const {
    return m_uuid.serializedSize();
}

} // namespace Vellum::Types
