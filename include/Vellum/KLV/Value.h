#ifndef VELLUM_KLV_VALUE_H
#define VELLUM_KLV_VALUE_H

#include "Vellum/Core/Export.h"
#include "Vellum/DataIO/Slice.h"

#include <cstdint>
#include <vector>

namespace Vellum::DataIO {
class DataSource;
} // namespace Vellum::DataIO

namespace Vellum::KLV {

/// The value of a KLV triplet, owning its bytes.
class VELLUM_CORE_EXPORT Value {
public:
    Value() = default;
    /// Reads `count` bytes from `source`. The count is checked against what the source has
    /// left before anything is allocated, so a hostile length cannot exhaust memory.
    Value(DataIO::DataSource& source, std::uint64_t count);
    explicit Value(std::vector<std::uint8_t> bytes) noexcept;
    Value(const std::uint8_t* bytes, std::uint64_t count);

    const std::uint8_t* begin() const noexcept { return m_bytes.data(); }
    std::uint64_t size() const noexcept { return m_bytes.size(); }
    DataIO::Slice slice() const noexcept { return {m_bytes.data(), m_bytes.size()}; }
    const std::vector<std::uint8_t>& bytes() const noexcept { return m_bytes; }

    friend bool operator==(const Value& a, const Value& b) { return a.m_bytes == b.m_bytes; }
    friend bool operator!=(const Value& a, const Value& b) { return a.m_bytes != b.m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
};

} // namespace Vellum::KLV

#endif
