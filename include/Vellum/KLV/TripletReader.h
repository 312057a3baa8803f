#ifndef VELLUM_KLV_TRIPLETREADER_H
#define VELLUM_KLV_TRIPLETREADER_H

#include "Vellum/Core/Export.h"
#include "Vellum/KLV/Triplet.h"

#include <optional>

namespace Vellum::DataIO {
class DataSource;
} // namespace Vellum::DataIO

namespace Vellum::KLV {

/// Walks consecutive KLV triplets of a source, from its current position to its end.
///
/// `next()` reads a key and a length and leaves the source at the value; `skipValue()` (or the
/// next call to `next()`) moves past it, without reading it.
class VELLUM_CORE_EXPORT TripletReader {
public:
    /// Borrows `source`, which must outlive the reader.
    explicit TripletReader(DataIO::DataSource& source) noexcept;

    /// The next triplet, or nothing at the end of the source. Any 16 bytes are taken as a key
    /// (callers classify it). Throws InvalidFormat for a BER length MXF does not allow, and
    /// InvalidLength if the key, the length or the value runs past the end; messages name the
    /// offset.
    std::optional<Triplet> next();

    /// Moves the source past the value of the triplet `next()` last returned.
    void skipValue();

private:
    DataIO::DataSource& m_source;
    std::optional<std::uint64_t> m_pendingEnd;
};

} // namespace Vellum::KLV

#endif
