#ifndef VELLUM_TESTS_METADATA_HEADERMETADATABYTES_H
#define VELLUM_TESTS_METADATA_HEADERMETADATABYTES_H

#include "MXF/SyntheticMXF.h"

#include <initializer_list>
#include <string>
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

/// A key and a label of a private set and element no dictionary knows.
inline const Bytes privateSetKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                    0x0E, 0x77, 0x01, 0x01, 0x01, 0x01, 0x01, 0x00};
inline const Bytes privateLabel = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                                   0x0E, 0x77, 0x01, 0x01, 0x01, 0x01, 0x02, 0x00};

/// `text` as big-endian UTF-16 units.
inline Bytes utf16(const std::u16string& text) {
    Bytes out;
    for (const char16_t c : text) {
        put(out, c, 2);
    }
    return out;
}

inline Bytes concat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const auto& part : parts) {
        append(out, part);
    }
    return out;
}

/// A batch (count, item size, items).
inline Bytes batchOf(std::initializer_list<Bytes> items, std::uint32_t itemSize) {
    Bytes out;
    put(out, items.size(), 4);
    put(out, itemSize, 4);
    for (const auto& item : items) {
        append(out, item);
    }
    return out;
}

/// A primer (InstanceUID and the private label at 80.01), a Preface (identifier 11) with
/// `prefaceItems`, then `rest`.
inline Bytes header(const Bytes& prefaceItems, const Bytes& rest) {
    Bytes out = primer({{0x3C0A, instanceUIDLabel}, {0x8001, privateLabel}});
    append(out, klv(prefaceKey, concat({item(0x3C0A, uuid(0x11)), prefaceItems})));
    append(out, rest);
    return out;
}

/// An Identification with identifier `id` and `items`.
inline Bytes identification(std::uint8_t id, const Bytes& items) {
    return klv(identificationKey, concat({item(0x3C0A, uuid(id)), items}));
}

} // namespace VellumTest

#endif
