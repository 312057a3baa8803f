#include "Vellum/MXF/MXFFile.h"

#include "Vellum/DataIO/DataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/KLV/TripletReader.h"
#include "Vellum/KLV/Value.h"

#include <algorithm>
#include <cstring>

namespace Vellum::MXF {
namespace {

// No real partition pack comes near this; a larger claim is a damaged length field.
constexpr std::uint64_t maxPackSize = std::uint64_t{16} * 1024 * 1024;

// The first 13 bytes of every partition pack key (byte 8, the version, excepted).
bool startsPartitionKey(const std::uint8_t* p) {
    static const std::uint8_t prefix[] = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01};
    static const std::uint8_t tail[] = {0x0D, 0x01, 0x02, 0x01, 0x01, 0x02};
    return std::memcmp(p, prefix, sizeof prefix) == 0 && std::memcmp(p + 8, tail, sizeof tail) == 0;
}

std::string offsetText(std::uint64_t offset) {
    return "offset " + std::to_string(offset);
}

} // namespace

MXFFile::MXFFile(DataIO::DataSource& source)
    : m_source(source) {
    locateRunIn();
    if (!discoverFromRandomIndex() && !discoverFromFooterChain()) {
        discoverByWalking();
    }
}

void MXFFile::locateRunIn() {
    m_source.seek(0);
    const std::uint64_t size = m_source.remaining();
    if (size < KLV::Key::byteCount) {
        VELLUM_THROW(InvalidFormat, "not an MXF file: " + std::to_string(size) +
                                        " bytes are too few for a header partition pack");
    }
    // Most files have no run-in: look at the first key before reading the whole run-in range.
    std::uint8_t first[KLV::Key::byteCount];
    m_source.read(first, sizeof first);
    if (startsPartitionKey(first)) {
        m_runIn = 0;
        return;
    }
    m_source.seek(0);
    std::vector<std::uint8_t> head(static_cast<std::size_t>(std::min(size, maxRunIn + 16)));
    m_source.read(head.data(), head.size());
    for (std::size_t i = 0; i + 16 <= head.size(); ++i) {
        if (startsPartitionKey(head.data() + i)) {
            m_runIn = i;
            return;
        }
    }
    VELLUM_THROW(InvalidFormat, "not an MXF file: no header partition pack within the first " +
                                    std::to_string(head.size()) + " bytes");
}

PartitionPack MXFFile::readPackAt(std::uint64_t offset) const {
    m_source.seek(offset);
    KLV::TripletReader reader(m_source);
    const auto triplet = reader.next();
    if (!triplet || !KLV::isPartitionPack(triplet->key)) {
        VELLUM_THROW(InvalidFormat, "no partition pack at " + offsetText(offset));
    }
    return readPackValue(*triplet);
}

PartitionPack MXFFile::readPackValue(const KLV::Triplet& triplet) const {
    if (triplet.length.value() > maxPackSize) {
        VELLUM_THROW(InvalidLength, "the partition pack at " + offsetText(triplet.offset) +
                                        " claims " + std::to_string(triplet.length.value()) +
                                        " bytes");
    }
    const KLV::Value value(m_source, triplet.length.value());
    return PartitionPack::parse(triplet.key, triplet.length, value.slice(), triplet.offset);
}

bool MXFFile::discoverFromRandomIndex() {
    m_source.seek(0);
    const std::uint64_t size = m_source.remaining();
    if (size < m_runIn + 20 + 4) {
        return false;
    }
    m_source.seek(size - 4);
    const std::uint32_t overall = m_source.readUInt32();
    if (overall < 20 || overall > size - m_runIn) {
        return false;
    }
    const std::uint64_t at = size - overall;
    try {
        m_source.seek(at);
        KLV::TripletReader reader(m_source);
        const auto triplet = reader.next();
        if (!triplet || !KLV::isRandomIndexPack(triplet->key) || triplet->endOffset() != size) {
            return false;
        }
        const KLV::Value value(m_source, triplet->length.value());
        RandomIndexPack rip = RandomIndexPack::parse(value.slice(), at);
        std::vector<PartitionPack> found;
        for (const auto& entry : rip.entries()) {
            if (entry.byteOffset > size - m_runIn) {
                VELLUM_THROW(InvalidLength, "random index pack names a partition at " +
                                                offsetText(entry.byteOffset) +
                                                ", past the end of the file");
            }
            found.push_back(readPackAt(m_runIn + entry.byteOffset));
        }
        std::sort(found.begin(), found.end(),
                  [](const auto& a, const auto& b) { return a.offset() < b.offset(); });
        if (found.empty() || found.front().offset() != m_runIn) {
            return false;
        }
        m_rip = std::move(rip);
        m_partitions = std::move(found);
        m_discovery = "random index pack";
        return true;
    } catch (const Exceptions::BaseException& e) {
        m_problems.push_back("random index pack ignored: " + e.utf8Message());
        return false;
    }
}

bool MXFFile::discoverFromFooterChain() {
    const PartitionPack header = readPackAt(m_runIn);
    if (header.footerPartition() == 0) {
        return false;
    }
    try {
        std::vector<PartitionPack> chain;
        std::uint64_t next = header.footerPartition();
        while (next != 0) {
            if (!chain.empty() && next >= chain.back().thisPartition()) {
                VELLUM_THROW(InvalidFormat, "the previous partition of the partition at " +
                                                offsetText(chain.back().offset()) +
                                                " does not lie before it");
            }
            chain.push_back(readPackAt(m_runIn + next));
            next = chain.back().previousPartition();
        }
        chain.push_back(header);
        std::reverse(chain.begin(), chain.end());
        m_partitions = std::move(chain);
        m_discovery = "footer chain";
        return true;
    } catch (const Exceptions::BaseException& e) {
        m_problems.push_back("footer partition chain ignored: " + e.utf8Message());
        return false;
    }
}

void MXFFile::discoverByWalking() {
    m_partitions.clear();
    m_partitions.push_back(readPackAt(m_runIn));
    m_discovery = "KLV walk";
    m_source.seek(m_partitions.front().endOffset());
    KLV::TripletReader reader(m_source);
    try {
        while (const auto triplet = reader.next()) {
            if (KLV::isPartitionPack(triplet->key)) {
                m_partitions.push_back(readPackValue(*triplet));
            }
        }
    } catch (const Exceptions::BaseException& e) {
        m_problems.push_back("partition search stopped: " + e.utf8Message());
    }
}

const PartitionPack& MXFFile::choosePartition(const std::string& which) const {
    const PartitionPack* chosen = nullptr;
    if (which == "header" || which == "footer") {
        const auto kind = which == "header" ? PartitionKind::Header : PartitionKind::Footer;
        const auto it = std::find_if(m_partitions.begin(), m_partitions.end(),
                                     [kind](const auto& p) { return p.kind() == kind; });
        if (it == m_partitions.end()) {
            VELLUM_THROW(InvalidFormat, "the file has no " + which + " partition");
        }
        chosen = &*it;
    } else {
        const bool digits =
            !which.empty() && which.size() < 10 &&
            std::all_of(which.begin(), which.end(), [](char c) { return c >= '0' && c <= '9'; });
        const std::size_t index = digits ? std::stoul(which) : m_partitions.size();
        if (!digits || index >= m_partitions.size()) {
            VELLUM_THROW(InvalidFormat, "'" + which +
                                            "' names no partition: use header, footer or "
                                            "an index from 0 to " +
                                            std::to_string(m_partitions.size() - 1));
        }
        chosen = &m_partitions[index];
    }
    if (chosen->headerByteCount() == 0) {
        VELLUM_THROW(InvalidFormat, std::string("the ") + chosen->kindName() + " partition at " +
                                        offsetText(chosen->offset()) +
                                        " carries no header metadata");
    }
    return *chosen;
}

HeaderMetadataBytes MXFFile::readHeaderMetadata(const PartitionPack& partition) const {
    if (partition.headerByteCount() == 0) {
        VELLUM_THROW(InvalidFormat, "the partition at " + offsetText(partition.offset()) +
                                        " carries no header metadata");
    }
    m_source.seek(partition.endOffset());
    KLV::TripletReader reader(m_source);
    auto triplet = reader.next();
    while (triplet && KLV::isFill(triplet->key)) {
        triplet = reader.next();
    }
    if (!triplet || !KLV::isPrimerPack(triplet->key)) {
        VELLUM_THROW(InvalidFormat, "expected the primer pack after the partition pack at " +
                                        offsetText(partition.offset()) +
                                        (triplet ? ", found key " + triplet->key.toUtf8() + " at " +
                                                       offsetText(triplet->offset)
                                                 : ", found the end of the file"));
    }
    HeaderMetadataBytes result;
    result.offset = triplet->offset;
    m_source.seek(result.offset);
    if (partition.headerByteCount() > m_source.remaining()) {
        VELLUM_THROW(InvalidLength,
                     "the header metadata of the partition at " + offsetText(partition.offset()) +
                         " claims " + std::to_string(partition.headerByteCount()) + " bytes from " +
                         offsetText(result.offset) + ", but the file ends after " +
                         std::to_string(m_source.remaining()));
    }
    result.bytes.resize(static_cast<std::size_t>(partition.headerByteCount()));
    m_source.read(result.bytes.data(), result.bytes.size());
    return result;
}

} // namespace Vellum::MXF
