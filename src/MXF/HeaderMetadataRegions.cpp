#include "Vellum/MXF/HeaderMetadataRegions.h"

#include "Vellum/DataIO/DataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/KLV/TripletReader.h"
#include "Vellum/MXF/MXFFile.h"

#include <algorithm>
#include <string>

namespace Vellum::MXF {
namespace {

std::string describe(const PartitionPack& pack, std::size_t index) {
    return "partition " + std::to_string(index) + " (" + pack.kindName() + ", pack at offset " +
           std::to_string(pack.offset()) + ")";
}

// Where the bytes that belong to partition `index` end: the next partition pack, the random
// index pack or the end of the source.
std::uint64_t partitionLimit(const MXFFile& file, std::size_t index, std::uint64_t sourceSize) {
    if (index + 1 < file.partitions().size()) {
        return file.partitions()[index + 1].offset();
    }
    if (file.randomIndexPack()) {
        return file.randomIndexPack()->offset();
    }
    return sourceSize;
}

// Walks the KLVs inside the region for the end of the last non-fill triplet, the first fill key
// and the length form of the fill after the last non-fill triplet. The walk stops quietly at a
// triplet that does not fit: the layout is informative only, the region's bounds come from the
// partition pack.
void walkRegion(DataIO::DataSource& source, HeaderMetadataRegion& region) {
    source.seek(region.offset);
    KLV::TripletReader reader(source);
    try {
        while (source.position() < region.end()) {
            const auto triplet = reader.next();
            if (!triplet || triplet->endOffset() > region.end()) {
                return;
            }
            if (!KLV::isFill(triplet->key)) {
                region.contentSize = triplet->endOffset() - region.offset;
                region.fillLengthOctets = 0;
                continue;
            }
            if (!region.fillKey) {
                region.fillKey = triplet->key;
            }
            if (region.fillLengthOctets == 0) {
                region.fillLengthOctets = triplet->length.octets();
            }
        }
    } catch (const Exceptions::BaseException&) {
        return;
    }
}

} // namespace

HeaderMetadataRegions::HeaderMetadataRegions(DataIO::DataSource& source, const MXFFile& file) {
    source.seek(0);
    const std::uint64_t sourceSize = source.remaining();
    bool haveFileFill = false;
    for (std::size_t i = 0; i < file.partitions().size(); ++i) {
        const PartitionPack& pack = file.partitions()[i];
        if (pack.headerByteCount() == 0) {
            continue;
        }
        HeaderMetadataRegion region;
        region.partitionIndex = i;
        region.packOffset = pack.offset();
        region.packSize = pack.endOffset() - pack.offset();
        region.kagSize = pack.kagSize();
        region.size = pack.headerByteCount();
        const std::uint64_t limit = partitionLimit(file, i, sourceSize);

        source.seek(pack.endOffset());
        KLV::TripletReader reader(source);
        auto triplet = reader.next();
        while (triplet && KLV::isFill(triplet->key) && triplet->endOffset() <= limit) {
            if (!region.fillKey) {
                region.fillKey = triplet->key;
            }
            triplet = reader.next();
        }
        if (!triplet || !KLV::isPrimerPack(triplet->key)) {
            VELLUM_THROW(InvalidFormat,
                         "expected the primer pack after the pack of " + describe(pack, i) +
                             (triplet ? ", found key " + triplet->key.toUtf8() + " at offset " +
                                            std::to_string(triplet->offset)
                                      : ", found the end of the file"));
        }
        region.offset = triplet->offset;
        region.fillBefore = region.offset - pack.endOffset();
        if (region.offset > limit || region.size > limit - region.offset) {
            VELLUM_THROW(InvalidLength, "the header metadata of " + describe(pack, i) + " claims " +
                                            std::to_string(region.size) + " bytes from offset " +
                                            std::to_string(region.offset) + ", but only " +
                                            std::to_string(limit - std::min(limit, region.offset)) +
                                            " lie before offset " + std::to_string(limit));
        }
        walkRegion(source, region);
        if (region.fillKey && !haveFileFill) {
            m_fillKey = *region.fillKey;
            haveFileFill = true;
        }
        m_regions.push_back(region);
    }
}

const HeaderMetadataRegion* HeaderMetadataRegions::find(std::size_t partitionIndex) const noexcept {
    for (const auto& region : m_regions) {
        if (region.partitionIndex == partitionIndex) {
            return &region;
        }
    }
    return nullptr;
}

const KLV::Key&
HeaderMetadataRegions::fillKeyFor(const HeaderMetadataRegion& region) const noexcept {
    return region.fillKey ? *region.fillKey : m_fillKey;
}

} // namespace Vellum::MXF
