#ifndef VELLUM_DATAIO_MEMORY_MEMORYDATASINK_H
#define VELLUM_DATAIO_MEMORY_MEMORYDATASINK_H

#include "Vellum/DataIO/DataSink.h"

#include <optional>
#include <vector>

namespace Vellum::DataIO::Memory {

/// Collects written bytes in memory; owns them.
///
/// Built with a capacity it takes at most that many bytes (a longer write throws
/// InvalidLength and writes nothing); default-built it grows as needed.
class VELLUM_CORE_EXPORT MemoryDataSink : public DataSink {
public:
    MemoryDataSink() = default;
    explicit MemoryDataSink(std::uint64_t capacity);
    ~MemoryDataSink() override;

    void write(const std::uint8_t* bytes, std::uint64_t count) override;
    std::uint64_t position() const override { return m_bytes.size(); }

    /// The bytes written so far.
    const std::uint8_t* rawBuffer() const noexcept { return m_bytes.data(); }
    /// How many bytes were written.
    std::uint64_t serializedSize() const noexcept { return m_bytes.size(); }
    /// The written bytes, handed over; the sink is empty afterwards.
    std::vector<std::uint8_t> release() noexcept;

private:
    std::vector<std::uint8_t> m_bytes;
    std::optional<std::uint64_t> m_capacity;
};

} // namespace Vellum::DataIO::Memory

#endif
