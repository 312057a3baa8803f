#include "Vellum/KLV/Value.h"

#include "Vellum/DataIO/DataSource.h"

#include <utility>

namespace Vellum::KLV {

Value::Value(DataIO::DataSource& source, std::uint64_t count) {
    source.require(count, "KLV value");
    m_bytes.resize(static_cast<std::size_t>(count));
    source.read(m_bytes.data(), count);
}

Value::Value(std::vector<std::uint8_t> bytes) noexcept
    : m_bytes(std::move(bytes)) {}

Value::Value(const std::uint8_t* bytes, std::uint64_t count)
    : m_bytes(bytes, bytes + count) {}

} // namespace Vellum::KLV
