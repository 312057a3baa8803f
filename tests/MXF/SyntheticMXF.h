#ifndef VELLUM_TESTS_MXF_SYNTHETICMXF_H
#define VELLUM_TESTS_MXF_SYNTHETICMXF_H

#include <algorithm>
#include <cstddef>
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
                            std::uint64_t footer, std::uint64_t headerByteCount,
                            std::uint32_t kag = 1) {
    Bytes v;
    put(v, 1, 2);   // major
    put(v, 3, 2);   // minor
    put(v, kag, 4); // KAG
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

/// Header metadata without fill: an empty primer and one preface-keyed local set of `payload`
/// bytes derived from `seed`.
inline Bytes headerMetadata(std::size_t payload, std::uint8_t seed) {
    Bytes set(payload);
    for (std::size_t i = 0; i < payload; ++i) {
        set[i] = static_cast<std::uint8_t>(seed + i * 7);
    }
    const Bytes prefaceKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                              0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2F, 0x00};
    Bytes out = emptyPrimer();
    append(out, klv(prefaceKey, set));
    return out;
}

inline const Bytes essenceKey = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0x01,
                                 0x0D, 0x01, 0x03, 0x01, 0x15, 0x01, 0x05, 0x00};

/// A fill item of exactly `size` bytes (at least 16 + `octets`) with an `octets`-octet long-form
/// length (2 to 9) and the given key version byte.
inline Bytes fillOf(std::size_t size, int octets = 4, std::uint8_t version = 0x02) {
    Bytes out = fillKey;
    out[7] = version;
    out.push_back(static_cast<std::uint8_t>(0x80 + octets - 1));
    put(out, size - 16 - octets, octets - 1);
    out.resize(size, 0);
    return out;
}

/// Fill that takes `used` bytes (counted from a partition pack's key) to a multiple of `kag`
/// (nothing for KAG 1, else at least 20 bytes).
inline Bytes kagFill(std::uint64_t used, std::uint32_t kag) {
    if (kag <= 1 || used % kag == 0) {
        return {};
    }
    std::uint64_t size = kag - used % kag;
    while (size < 20) {
        size += kag;
    }
    return fillOf(size);
}

/// How `syntheticFile` lays out a file.
struct FileShape {
    std::uint32_t kag = 1;
    bool withRip = true;
    bool footerMetadata = false; ///< the footer repeats the header metadata
    std::size_t runIn = 0;
    std::uint64_t spare = 0;       ///< at least this much fill after the header metadata
    std::size_t payload = 100;     ///< bytes of the set in the header metadata
    std::uint8_t headerStatus = 4; ///< partition status byte of the header (1 = open incomplete)
    std::size_t essenceItems = 3;
    /// Regions end this many bytes past a KAG boundary (as some writers leave them).
    std::uint32_t regionPhase = 0;
    int spareOctets = 4;           ///< length octets of the spare fill
    std::uint8_t spareVersion = 2; ///< version byte of the spare fill's key
};

/// A shape with the given KAG, spare fill and footer metadata; the rest as FileShape's defaults.
inline FileShape shape(std::uint32_t kag, std::uint64_t spare = 0, bool footerMetadata = false) {
    FileShape s;
    s.kag = kag;
    s.spare = spare;
    s.footerMetadata = footerMetadata;
    return s;
}

/// A file with a header partition carrying header metadata, a body partition of essence
/// (items of 1000 + 100 * i bytes), a footer partition and optionally a random index pack.
/// Every region and the essence start on the partition's KAG; regions end `regionPhase` bytes
/// past it.
inline Bytes syntheticFile(const FileShape& shape) {
    const std::uint64_t packSize = klv(partitionKey(2, 4), partitionValue(0, 0, 0, 0)).size();
    const auto region = [&](std::uint64_t used) {
        Bytes r = headerMetadata(shape.payload, 0x21);
        if (shape.spare > 0) {
            append(r, fillOf(std::max<std::uint64_t>(shape.spare, 20), shape.spareOctets,
                             shape.spareVersion));
        }
        append(r, kagFill(used + r.size(), shape.kag));
        if (shape.regionPhase > 0) {
            append(r, fillOf(shape.kag + shape.regionPhase));
        }
        return r;
    };
    Bytes headerTail = kagFill(packSize, shape.kag);
    const Bytes headerRegion = region(packSize + headerTail.size());
    append(headerTail, headerRegion);

    Bytes bodyTail = kagFill(packSize, shape.kag);
    for (std::size_t i = 0; i < shape.essenceItems; ++i) {
        Bytes value(1000 + 100 * i);
        for (std::size_t k = 0; k < value.size(); ++k) {
            value[k] = static_cast<std::uint8_t>(k * 31 + i);
        }
        append(bodyTail, klv(essenceKey, value));
    }
    Bytes footerTail;
    Bytes footerRegion;
    if (shape.footerMetadata) {
        footerTail = kagFill(packSize, shape.kag);
        footerRegion = region(packSize + footerTail.size());
        append(footerTail, footerRegion);
    }

    const std::uint64_t body = packSize + headerTail.size();
    const std::uint64_t footer = body + packSize + bodyTail.size();
    Bytes file(shape.runIn, 0x55);
    append(file, klv(partitionKey(2, shape.headerStatus),
                     partitionValue(0, 0, footer, headerRegion.size(), shape.kag)));
    append(file, headerTail);
    append(file, klv(partitionKey(3, 4), partitionValue(body, 0, footer, 0, shape.kag)));
    append(file, bodyTail);
    append(file, klv(partitionKey(4, 4),
                     partitionValue(footer, body, footer, footerRegion.size(), shape.kag)));
    append(file, footerTail);
    if (shape.withRip) {
        Bytes rip;
        for (const std::uint64_t at : {std::uint64_t{0}, body, footer}) {
            put(rip, at == body ? 1 : 0, 4);
            put(rip, at, 8);
        }
        put(rip, 16 + 4 + rip.size() + 4, 4);
        append(file, klv(ripKey, rip));
    }
    return file;
}

} // namespace VellumTest

#endif
