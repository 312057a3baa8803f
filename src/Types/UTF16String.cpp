#include "Vellum/Types/UTF16String.h"

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/DataIO/DataSink.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <string>
#include <utility>
#include <vector>

namespace Vellum::Types {

UTF16String::UTF16String(WString text)
    : m_units(std::move(text)) {
    // Checked as a byte count: two bytes a unit, computed without overflow.
    checkedSize(static_cast<std::uint64_t>(m_units.size()) * 2U, Identifiers::UTF16String);
}

UTF16String::~UTF16String() = default;

UTF16String UTF16String::fromBytes(DataIO::Slice bytes) {
    if (bytes.size() % 2 != 0) {
        VELLUM_THROW(InvalidLength, "a UTF16String value has an even number of bytes, not " +
                                        std::to_string(bytes.size()));
    }
    checkedSize(bytes.size(), Identifiers::UTF16String);
    WString units(static_cast<std::size_t>(bytes.size() / 2), u'\0');
    for (std::size_t i = 0; i < units.size(); ++i) {
        units[i] = static_cast<char16_t>(DataIO::BigEndian::load16(bytes.begin() + 2 * i));
    }
    return UTF16String(std::move(units));
}

WString UTF16String::value() const {
    return m_units.substr(0, m_units.find(u'\0'));
}

void UTF16String::serialize(DataIO::DataSink& sink) const {
    std::vector<std::uint8_t> bytes(m_units.size() * 2);
    for (std::size_t i = 0; i < m_units.size(); ++i) {
        DataIO::BigEndian::store16(bytes.data() + 2 * i, static_cast<std::uint16_t>(m_units[i]));
    }
    sink.write(bytes.data(), bytes.size());
}

std::uint32_t UTF16String::serializedSize() const {
    return static_cast<std::uint32_t>(m_units.size() * 2);
}

} // namespace Vellum::Types
