#ifndef VELLUM_KLV_TRIPLET_H
#define VELLUM_KLV_TRIPLET_H

#include "Vellum/KLV/BERLength.h"
#include "Vellum/KLV/Key.h"

#include <cstdint>

namespace Vellum::KLV {

/// Where one KLV triplet lies: its key, its length field and the position of its value.
/// Holds no value bytes.
struct Triplet {
    std::uint64_t offset = 0; ///< absolute position of the key
    Key key;
    BERLength length{0};

    /// Absolute position of the first value byte.
    std::uint64_t valueOffset() const noexcept { return offset + Key::byteCount + length.octets(); }
    /// Absolute position just past the value.
    std::uint64_t endOffset() const noexcept { return valueOffset() + length.value(); }
};

} // namespace Vellum::KLV

#endif
