#include "Vellum/DataIO/Memory/MemoryDataSink.h"

#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <string>

namespace Vellum::DataIO::Memory {

MemoryDataSink::MemoryDataSink(std::uint64_t capacity)
    : m_capacity(capacity) {
    m_bytes.reserve(capacity);
}

MemoryDataSink::~MemoryDataSink() = default;

void MemoryDataSink::write(const std::uint8_t* bytes, std::uint64_t count) {
    if (m_capacity && count > *m_capacity - m_bytes.size()) {
        VELLUM_THROW(InvalidLength, "writing " + std::to_string(count) + " bytes at " +
                                        std::to_string(m_bytes.size()) +
                                        " overflows a sink of capacity " +
                                        std::to_string(*m_capacity));
    }
    if (count != 0) {
        m_bytes.insert(m_bytes.end(), bytes, bytes + count);
    }
}

std::vector<std::uint8_t> MemoryDataSink::release() noexcept {
    std::vector<std::uint8_t> out;
    out.swap(m_bytes);
    return out;
}

} // namespace Vellum::DataIO::Memory
