#ifndef VELLUM_TESTS_METADATA_HEADERMETADATABYTES_H
#define VELLUM_TESTS_METADATA_HEADERMETADATABYTES_H

#include "MXF/SyntheticMXF.h"

#include <utility>
#include <vector>

namespace VellumTest {

/// A primer pack with the given (tag, 16-byte label) entries.
inline Bytes primer(const std::vector<std::pair<std::uint16_t, Bytes>>& entries) {
    Bytes v;
    put(v, entries.size(), 4);
    put(v, 18, 4);
    for (const auto& [tag, ul] : entries) {
        put(v, tag, 2);
        append(v, ul);
    }
    return klv(primerKey, v);
}

/// A local set item: 2-byte tag, 2-byte length, value.
inline Bytes item(std::uint16_t tag, const Bytes& value) {
    Bytes out;
    put(out, tag, 2);
    put(out, value.size(), 2);
    append(out, value);
    return out;
}

inline const Bytes prefaceKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                 0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2F, 0x00};
inline const Bytes identificationKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                        0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x30, 0x00};
inline const Bytes instanceUIDLabel = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                                       0x01, 0x01, 0x15, 0x02, 0x00, 0x00, 0x00, 0x00};

inline Bytes uuid(std::uint8_t fill) {
    return Bytes(16, fill);
}

} // namespace VellumTest

#endif
