#ifndef VELLUM_MXF_RANDOMINDEXPACK_H
#define VELLUM_MXF_RANDOMINDEXPACK_H

#include "Vellum/Core/Export.h"
#include "Vellum/DataIO/Slice.h"

#include <cstdint>
#include <vector>

namespace Vellum::MXF {

/// The random index pack at the end of a file: where every partition starts.
class VELLUM_CORE_EXPORT RandomIndexPack {
public:
    struct Entry {
        std::uint32_t bodySID;
        std::uint64_t byteOffset; ///< of the partition pack, from the end of the run-in
    };

    /// Parses the value of a random index pack (entries, then the 4-byte overall length).
    /// Throws InvalidLength when the value is not 4 bytes plus whole 12-byte entries.
    static RandomIndexPack parse(DataIO::Slice value, std::uint64_t offset);

    const std::vector<Entry>& entries() const noexcept { return m_entries; }
    /// The overall length the pack states for itself (key, length field and value).
    std::uint32_t overallLength() const noexcept { return m_overallLength; }
    std::uint64_t offset() const noexcept { return m_offset; }

private:
    std::vector<Entry> m_entries;
    std::uint32_t m_overallLength = 0;
    std::uint64_t m_offset = 0;
};

} // namespace Vellum::MXF

#endif
