#include "KeyDescription.h"

#include "Vellum/KLV/Key.h"
#include "Vellum/KLV/KeyClassification.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>

namespace Vellum::App {
namespace {

// Whether key bytes [first, first + expected.size()) equal `expected`.
bool hasBytes(const KLV::Key& key, std::size_t first,
              std::initializer_list<std::uint8_t> expected) {
    return std::equal(expected.begin(), expected.end(), key.data() + first);
}

std::string hexByte(std::uint8_t value) {
    static const char digits[] = "0123456789ABCDEF";
    return {'0', 'x', digits[value >> 4U], digits[value & 0x0FU]};
}

// Byte 13 is the kind of partition, byte 14 its status.
std::string partitionName(const KLV::Key& key) {
    std::string kind = "footer";
    if (key[13] == 0x02) {
        kind = "header";
    } else if (key[13] == 0x03) {
        kind = "body";
    }
    switch (key[14]) {
    case 0x01:
        return kind + " partition pack (open, incomplete)";
    case 0x02:
        return kind + " partition pack (closed, incomplete)";
    case 0x03:
        return kind + " partition pack (open, complete)";
    case 0x04:
        return kind + " partition pack (closed, complete)";
    default:
        return kind + " partition pack (unknown status " + hexByte(key[14]) + ")";
    }
}

// 06.0E.2B.34.02.53.01.xx.0D.01.02.01.01.10.01.00
bool isIndexTableSegment(const KLV::Key& key) {
    return key.isSMPTELabel() && hasBytes(key, 4, {0x02, 0x53, 0x01}) &&
           hasBytes(key, 8, {0x0D, 0x01, 0x02, 0x01, 0x01, 0x10, 0x01});
}

// Generic container items: 06.0E.2B.34.xx.xx.xx.xx.0D.01.03.01.<item type>...
bool isContainerItem(const KLV::Key& key) {
    return key.isSMPTELabel() && hasBytes(key, 8, {0x0D, 0x01, 0x03, 0x01});
}

std::string containerItemName(const KLV::Key& key) {
    switch (key[12]) {
    case 0x04:
    case 0x14:
        return "system item";
    case 0x05:
    case 0x15:
        return "essence element (picture)";
    case 0x06:
    case 0x16:
        return "essence element (sound)";
    case 0x07:
    case 0x17:
        return "essence element (data)";
    case 0x18:
        return "essence element (compound)";
    default:
        return key[4] == 0x01 ? "essence element" : "";
    }
}

} // namespace

std::string describeKey(const KLV::Key& key) {
    if (KLV::isPartitionPack(key)) {
        return partitionName(key);
    }
    if (KLV::isPrimerPack(key)) {
        return "primer pack";
    }
    if (KLV::isRandomIndexPack(key)) {
        return "random index pack";
    }
    if (KLV::isFill(key)) {
        return "fill";
    }
    if (isIndexTableSegment(key)) {
        return "index table segment";
    }
    if (isContainerItem(key)) {
        return containerItemName(key);
    }
    if (KLV::isLocalSet(key)) {
        return "local set";
    }
    if (!key.isSMPTELabel()) {
        return "non-SMPTE key";
    }
    return {};
}

} // namespace Vellum::App
