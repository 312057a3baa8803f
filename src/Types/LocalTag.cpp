#include "Vellum/Types/LocalTag.h"

#include "Vellum/DataIO/BigEndian.h"

namespace Vellum::Types {

LocalTag::LocalTag(const WString& text, StringRepresentationEncodingType encoding) {
    std::uint8_t bytes[2] = {};
    StringRepresentation::parse(text, bytes, sizeof bytes, "local tag", encoding);
    setValue(DataIO::BigEndian::load16(bytes));
}

LocalTag::~LocalTag() = default;

WString LocalTag::toString(StringRepresentationEncodingType encoding) const {
    std::uint8_t bytes[2] = {};
    DataIO::BigEndian::store16(bytes, value());
    return StringRepresentation::format(bytes, sizeof bytes, encoding);
}

} // namespace Vellum::Types
