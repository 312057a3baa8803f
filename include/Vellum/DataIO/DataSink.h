#ifndef VELLUM_DATAIO_DATASINK_H
#define VELLUM_DATAIO_DATASINK_H

#include "Vellum/Core/Export.h"

#include <cstdint>

namespace Vellum::DataIO {

/// A byte sink. Multi-byte integers are written big-endian.
class VELLUM_CORE_EXPORT DataSink {
public:
    DataSink() = default;
    DataSink(const DataSink&) = delete;
    DataSink& operator=(const DataSink&) = delete;
    virtual ~DataSink();

    /// Appends `count` bytes; throws InvalidLength if the sink cannot take them.
    virtual void write(const std::uint8_t* bytes, std::uint64_t count) = 0;
    /// Bytes written so far.
    virtual std::uint64_t position() const = 0;

    void writeUInt8(std::uint8_t value);
    void writeUInt16(std::uint16_t value);
    void writeUInt32(std::uint32_t value);
    void writeUInt64(std::uint64_t value);
};

} // namespace Vellum::DataIO

#endif
