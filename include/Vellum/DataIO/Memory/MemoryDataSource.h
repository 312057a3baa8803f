#ifndef VELLUM_DATAIO_MEMORY_MEMORYDATASOURCE_H
#define VELLUM_DATAIO_MEMORY_MEMORYDATASOURCE_H

#include "Vellum/DataIO/DataSource.h"
#include "Vellum/DataIO/Slice.h"

namespace Vellum::DataIO::Memory {

/// Reads from bytes in memory, which the caller owns and keeps alive.
///
/// `baseOffset` is the absolute position of the first byte, so that positions and error
/// messages name file offsets when the bytes came from a file.
class VELLUM_CORE_EXPORT MemoryDataSource : public DataSource {
public:
    MemoryDataSource(const std::uint8_t* bytes, std::uint64_t count, std::uint64_t baseOffset = 0);
    explicit MemoryDataSource(Slice bytes, std::uint64_t baseOffset = 0);
    ~MemoryDataSource() override;

    std::uint64_t remaining() const override { return m_size - m_pos; }
    std::uint64_t position() const override { return m_base + m_pos; }
    void seek(std::uint64_t absolutePosition) override;

    /// A view of the next `count` bytes, consumed; throws InvalidLength past the end.
    Slice take(std::uint64_t count, const char* what = "data");
    /// A view of what is left, not consumed.
    Slice rest() const noexcept { return {m_bytes + m_pos, m_size - m_pos}; }

protected:
    void readUnchecked(std::uint8_t* out, std::uint64_t count) override;

private:
    const std::uint8_t* m_bytes;
    std::uint64_t m_size;
    std::uint64_t m_base;
    std::uint64_t m_pos = 0;
};

} // namespace Vellum::DataIO::Memory

#endif
