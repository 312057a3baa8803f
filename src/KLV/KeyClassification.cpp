#include "Vellum/KLV/KeyClassification.h"

#include <algorithm>
#include <cstddef>

namespace Vellum::KLV {
namespace {

// Byte 6 of a local-set key: 2-byte local tags with 2-byte or with BER item lengths.
constexpr std::uint8_t twoByteItemLengths = 0x53;
constexpr std::uint8_t berItemLengths = 0x13;

// Compares key bytes [first, first + count) with `expected`.
bool matches(const Key& key, std::size_t first, std::initializer_list<std::uint8_t> expected) {
    return std::equal(expected.begin(), expected.end(), key.data() + first);
}

bool isSMPTEGroupLabel(const Key& key) noexcept {
    return key.isSMPTELabel() && key[4] == 0x02;
}

// Packs: 06.0E.2B.34.02.05.01.xx.0D.01.02.01.01.<kind>.<status>.00
bool isFixedPack(const Key& key, std::uint8_t kind) noexcept {
    return isSMPTEGroupLabel(key) && key[5] == 0x05 && key[6] == 0x01 &&
           matches(key, 8, {0x0D, 0x01, 0x02, 0x01, 0x01}) && key[13] == kind;
}

} // namespace

bool isStructuralMetadataSet(const Key& key) noexcept {
    return isLocalSet(key) && key[6] == 0x01 &&
           matches(key, 8, {0x0D, 0x01, 0x01, 0x01, 0x01, 0x01});
}

bool isLocalSet(const Key& key) noexcept {
    if (!isSMPTEGroupLabel(key)) {
        return false;
    }
    // The two codings MXF uses: 2-byte tags with 2-byte lengths, or with BER lengths.
    return key[5] == twoByteItemLengths || key[5] == berItemLengths;
}

bool hasBERItemLengths(const Key& key) noexcept {
    return key[5] == berItemLengths;
}

Key withTwoByteItemLengths(const Key& key) noexcept {
    if (!hasBERItemLengths(key)) {
        return key;
    }
    Key::Bytes bytes = key.bytes();
    bytes[5] = twoByteItemLengths;
    return Key(bytes);
}

Key setIdentityKey(const Key& key) noexcept {
    return withTwoByteItemLengths(key.withoutVersion());
}

bool isFill(const Key& key) noexcept {
    return key.isSMPTELabel() && matches(key, 4, {0x01, 0x01, 0x01}) &&
           matches(key, 8, {0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00});
}

bool isPartitionPack(const Key& key) noexcept {
    return isFixedPack(key, 0x02) || isFixedPack(key, 0x03) || isFixedPack(key, 0x04);
}

bool isPrimerPack(const Key& key) noexcept {
    return isFixedPack(key, 0x05) && key[14] == 0x01;
}

bool isRandomIndexPack(const Key& key) noexcept {
    return isFixedPack(key, 0x11) && key[14] == 0x01;
}

} // namespace Vellum::KLV
