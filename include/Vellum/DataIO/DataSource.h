#ifndef VELLUM_DATAIO_DATASOURCE_H
#define VELLUM_DATAIO_DATASOURCE_H

#include "Vellum/Core/Export.h"

#include <cstddef>
#include <cstdint>

namespace Vellum::DataIO {

/// A bounded, forward-reading byte source with absolute positions.
///
/// Every read checks what is left before it touches a byte: asking for more than
/// `remaining()` throws `Exceptions::InvalidLength` naming the offset, and reads nothing.
/// Multi-byte integers are big-endian, as everywhere in MXF.
class VELLUM_CORE_EXPORT DataSource {
public:
    DataSource() = default;
    DataSource(const DataSource&) = delete;
    DataSource& operator=(const DataSource&) = delete;
    virtual ~DataSource();

    /// Bytes left between the current position and the end.
    virtual std::uint64_t remaining() const = 0;
    /// Absolute position of the next byte (file offset for a file source).
    virtual std::uint64_t position() const = 0;
    /// Moves to an absolute position; throws InvalidLength if it lies past the end.
    virtual void seek(std::uint64_t absolutePosition) = 0;

    /// Copies exactly `count` bytes into `out`.
    void read(std::uint8_t* out, std::uint64_t count);
    /// Moves forward by `count` bytes.
    void skip(std::uint64_t count);

    std::uint8_t readUInt8();
    std::uint16_t readUInt16();
    std::uint32_t readUInt32();
    std::uint64_t readUInt64();

    /// Throws InvalidLength ("what" needs N bytes at offset P, only R left) unless
    /// `count` bytes remain.
    void require(std::uint64_t count, const char* what) const;

protected:
    /// Copies `count` bytes, already checked against `remaining()`.
    virtual void readUnchecked(std::uint8_t* out, std::uint64_t count) = 0;
};

} // namespace Vellum::DataIO

#endif
