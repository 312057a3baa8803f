#include "Vellum/Types/ISO7String.h"

#include "Vellum/DataIO/DataSink.h"

#include <utility>

namespace Vellum::Types {

ISO7String::ISO7String(std::string text)
    : m_bytes(std::move(text)) {
    checkedSize(m_bytes.size(), Identifiers::ISO7String);
}

ISO7String::~ISO7String() = default;

ISO7String ISO7String::fromBytes(DataIO::Slice bytes) {
    checkedSize(bytes.size(), Identifiers::ISO7String);
    return ISO7String(std::string(bytes.begin(), bytes.end()));
}

std::string ISO7String::value() const {
    return m_bytes.substr(0, m_bytes.find('\0'));
}

void ISO7String::serialize(DataIO::DataSink& sink) const {
    sink.write(reinterpret_cast<const std::uint8_t*>(m_bytes.data()), m_bytes.size());
}

std::uint32_t ISO7String::serializedSize() const {
    return static_cast<std::uint32_t>(m_bytes.size());
}

} // namespace Vellum::Types
