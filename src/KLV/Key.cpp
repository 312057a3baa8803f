#include "Vellum/KLV/Key.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/DataIO/DataSource.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Utils/StringConversion.h"

#include <algorithm>
#include <string>

namespace Vellum::KLV {

Key::Key(const std::uint8_t* bytes, std::size_t count) {
    if (count != byteCount || bytes == nullptr) {
        VELLUM_THROW(InvalidLength, "a key has 16 bytes, not " + std::to_string(count));
    }
    std::copy(bytes, bytes + byteCount, m_bytes.begin());
}

Key::Key(const WString& text, Types::StringRepresentationEncodingType encoding) {
    Types::StringRepresentation::parse(text, m_bytes.data(), byteCount, "key", encoding);
}

Key Key::read(DataIO::DataSource& source) {
    source.require(byteCount, "key");
    Key key;
    source.read(key.m_bytes.data(), byteCount);
    return key;
}

WString Key::toString(Types::StringRepresentationEncodingType encoding) const {
    return Types::StringRepresentation::format(m_bytes.data(), byteCount, encoding);
}

std::string Key::toUtf8() const {
    return Utils::wstringToString(toString());
}

void Key::serialize(DataIO::DataSink& sink) const {
    sink.write(m_bytes.data(), byteCount);
}

bool Key::isSMPTELabel() const noexcept {
    return m_bytes[0] == 0x06 && m_bytes[1] == 0x0E && m_bytes[2] == 0x2B && m_bytes[3] == 0x34;
}

bool Key::equalsIgnoringVersion(const Key& other) const noexcept {
    return std::equal(m_bytes.begin(), m_bytes.begin() + 7, other.m_bytes.begin()) &&
           std::equal(m_bytes.begin() + 8, m_bytes.end(), other.m_bytes.begin() + 8);
}

} // namespace Vellum::KLV
