#include "Vellum/MXF/PartitionPack.h"

#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/KeyClassification.h"

namespace Vellum::MXF {
namespace {

std::string at(std::uint64_t offset) {
    return " (partition pack at offset " + std::to_string(offset) + ")";
}

} // namespace

PartitionPack PartitionPack::parse(const KLV::Key& key, const KLV::BERLength& length,
                                   DataIO::Slice value, std::uint64_t offset) {
    if (!KLV::isPartitionPack(key)) {
        VELLUM_THROW(InvalidFormat,
                     "key " + key.toUtf8() + " is not a partition pack" + at(offset));
    }
    if (value.size() < fixedSize + 8) {
        VELLUM_THROW(InvalidLength, "a partition pack needs at least " +
                                        std::to_string(fixedSize + 8) + " bytes, this one has " +
                                        std::to_string(value.size()) + at(offset));
    }
    PartitionPack pack;
    pack.m_key = key;
    pack.m_kind = key[13] == 0x02   ? PartitionKind::Header
                  : key[13] == 0x03 ? PartitionKind::Body
                                    : PartitionKind::Footer;
    pack.m_offset = offset;
    pack.m_size = KLV::Key::byteCount + length.octets() + value.size();

    DataIO::Memory::MemoryDataSource source(value, offset + KLV::Key::byteCount + length.octets());
    pack.m_majorVersion = source.readUInt16();
    pack.m_minorVersion = source.readUInt16();
    pack.m_kagSize = source.readUInt32();
    pack.m_thisPartition = source.readUInt64();
    pack.m_previousPartition = source.readUInt64();
    pack.m_footerPartition = source.readUInt64();
    pack.m_headerByteCount = source.readUInt64();
    pack.m_indexByteCount = source.readUInt64();
    pack.m_indexSID = source.readUInt32();
    pack.m_bodyOffset = source.readUInt64();
    pack.m_bodySID = source.readUInt32();
    pack.m_operationalPattern = KLV::Key::read(source);

    const std::uint32_t count = source.readUInt32();
    const std::uint32_t itemSize = source.readUInt32();
    if (count != 0 && itemSize != KLV::Key::byteCount) {
        VELLUM_THROW(InvalidLength, "essence container labels have 16 bytes, not " +
                                        std::to_string(itemSize) + at(offset));
    }
    if (count > source.remaining() / KLV::Key::byteCount) {
        VELLUM_THROW(InvalidLength, "the essence container batch claims " + std::to_string(count) +
                                        " labels, but only " + std::to_string(source.remaining()) +
                                        " bytes remain" + at(offset));
    }
    pack.m_essenceContainers.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        pack.m_essenceContainers.push_back(KLV::Key::read(source));
    }
    return pack;
}

bool PartitionPack::isClosed() const noexcept {
    return m_key[14] == 0x02 || m_key[14] == 0x04;
}

bool PartitionPack::isComplete() const noexcept {
    return m_key[14] == 0x03 || m_key[14] == 0x04;
}

bool PartitionPack::isGenericStream() const noexcept {
    return m_kind == PartitionKind::Body && m_key[14] == 0x11;
}

const char* PartitionPack::kindName() const noexcept {
    switch (m_kind) {
    case PartitionKind::Header:
        return "header";
    case PartitionKind::Body:
        return "body";
    case PartitionKind::Footer:
        return "footer";
    }
    return "?";
}

std::string PartitionPack::statusName() const {
    if (isGenericStream()) {
        return "generic stream";
    }
    return std::string(isClosed() ? "closed" : "open") +
           (isComplete() ? " complete" : " incomplete");
}

std::uint64_t PartitionPack::endOffset() const noexcept {
    return m_offset + m_size;
}

} // namespace Vellum::MXF
