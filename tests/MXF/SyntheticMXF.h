#ifndef VELLUM_TESTS_MXF_SYNTHETICMXF_H
#define VELLUM_TESTS_MXF_SYNTHETICMXF_H

#include <cstdint>
#include <vector>

namespace VellumTest {

using Bytes = std::vector<std::uint8_t>;

inline void put(Bytes& out, std::uint64_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) {
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

inline void append(Bytes& out, const Bytes& more) {
    out.insert(out.end(), more.begin(), more.end());
}

/// A KLV triplet with a 4-octet BER length.
inline Bytes klv(const Bytes& key, const Bytes& value) {
    Bytes out = key;
    out.push_back(0x83);
    put(out, value.size(), 3);
    append(out, value);
    return out;
}

inline Bytes partitionKey(std::uint8_t kind, std::uint8_t status) {
    return {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01,   0x01,
            0x0D, 0x01, 0x02, 0x01, 0x01, kind, status, 0x00};
}

inline const Bytes primerKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01,
                                0x0D, 0x01, 0x02, 0x01, 0x01, 0x05, 0x01, 0x00};
inline const Bytes fillKey = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                              0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00};
inline const Bytes ripKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01,
                             0x0D, 0x01, 0x02, 0x01, 0x01, 0x11, 0x01, 0x00};

/// The value of a partition pack with no essence containers.
inline Bytes partitionValue(std::uint64_t thisPartition, std::uint64_t previous,
                            std::uint64_t footer, std::uint64_t headerByteCount) {
    Bytes v;
    put(v, 1, 2); // major
    put(v, 3, 2); // minor
    put(v, 1, 4); // KAG
    put(v, thisPartition, 8);
    put(v, previous, 8);
    put(v, footer, 8);
    put(v, headerByteCount, 8);
    put(v, 0, 8);                // index byte count
    put(v, 0, 4);                // index SID
    put(v, 0, 8);                // body offset
    put(v, 1, 4);                // body SID
    v.insert(v.end(), 16, 0x0F); // operational pattern
    put(v, 0, 4);                // essence container count
    put(v, 16, 4);               // item size
    return v;
}

/// An empty primer pack (no entries).
inline Bytes emptyPrimer() {
    Bytes v;
    put(v, 0, 4);
    put(v, 18, 4);
    return klv(primerKey, v);
}

/// A small but complete file: header (with a primer and a fill as header metadata), footer,
/// and optionally a random index pack.
inline Bytes smallFile(bool withRip) {
    const Bytes primer = emptyPrimer();
    const Bytes fill = klv(fillKey, Bytes(5, 0));
    const std::uint64_t headerMetadata = primer.size() + fill.size();
    const std::uint64_t headerSize = klv(partitionKey(2, 4), partitionValue(0, 0, 0, 0)).size();
    const std::uint64_t footerAt = headerSize + headerMetadata;
    Bytes file = klv(partitionKey(2, 4), partitionValue(0, 0, footerAt, headerMetadata));
    append(file, primer);
    append(file, fill);
    append(file, klv(partitionKey(4, 4), partitionValue(footerAt, 0, footerAt, 0)));
    if (withRip) {
        Bytes rip;
        put(rip, 0, 4);
        put(rip, 0, 8);
        put(rip, 0, 4);
        put(rip, footerAt, 8);
        const std::uint64_t overall = 16 + 4 + rip.size() + 4;
        put(rip, overall, 4);
        append(file, klv(ripKey, rip));
    }
    return file;
}

} // namespace VellumTest

#endif
