#include "Vellum/DataIO/Memory/MemoryDataSource.h"

#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <cstring>
#include <string>

namespace Vellum::DataIO::Memory {

MemoryDataSource::MemoryDataSource(const std::uint8_t* bytes, std::uint64_t count,
                                   std::uint64_t baseOffset)
    : m_bytes(bytes)
    , m_size(bytes == nullptr ? 0 : count)
    , m_base(baseOffset) {}

MemoryDataSource::MemoryDataSource(Slice bytes, std::uint64_t baseOffset)
    : MemoryDataSource(bytes.begin(), bytes.size(), baseOffset) {}

MemoryDataSource::~MemoryDataSource() = default;

void MemoryDataSource::seek(std::uint64_t absolutePosition) {
    if (absolutePosition < m_base || absolutePosition - m_base > m_size) {
        VELLUM_THROW(InvalidLength, "seek to offset " + std::to_string(absolutePosition) +
                                        " lies outside the data (offsets " +
                                        std::to_string(m_base) + " to " +
                                        std::to_string(m_base + m_size) + ")");
    }
    m_pos = absolutePosition - m_base;
}

Slice MemoryDataSource::take(std::uint64_t count, const char* what) {
    require(count, what);
    const Slice result(m_bytes + m_pos, count);
    m_pos += count;
    return result;
}

void MemoryDataSource::readUnchecked(std::uint8_t* out, std::uint64_t count) {
    if (count != 0) {
        std::memcpy(out, m_bytes + m_pos, count);
    }
    m_pos += count;
}

} // namespace Vellum::DataIO::Memory
