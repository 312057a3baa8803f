#include "Vellum/MXF/HeaderMetadataRegions.h"

#include "MXF/SyntheticMXF.h"
#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "Support/TempDir.h"

#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/MXF/HeaderMetadataUpdate.h"
#include "Vellum/MXF/MXFFile.h"

#include <gtest/gtest.h>

namespace {

using Vellum::DataIO::Memory::MemoryDataSource;
using Vellum::MXF::HeaderMetadataRegions;
using Vellum::MXF::MXFFile;
using namespace VellumTest;

constexpr std::uint64_t packSize = 108;    // key, 4-octet length, 88-byte value
constexpr std::uint64_t contentSize = 148; // headerMetadata(100, ...)

struct RegionCase {
    const char* name;
    FileShape shape;
    std::uint64_t fillBefore;
    std::uint64_t size;
    std::uint8_t fillVersion; // 0: the region has no fill
    std::uint8_t fillOctets;
};

VELLUM_PRINT_CASE_NAME(RegionCase)

// A shape with footer metadata and the given spare fill.
FileShape regionShape(std::uint32_t kag, std::uint64_t spare, int octets = 4,
                      std::uint8_t version = 2, std::size_t runIn = 0) {
    FileShape s = shape(kag, spare, true);
    s.spareOctets = octets;
    s.spareVersion = version;
    s.runIn = runIn;
    return s;
}

class Regions : public ::testing::TestWithParam<RegionCase> {};

TEST_P(Regions, AreFoundInEveryPartitionWithHeaderMetadata) {
    const auto& c = GetParam();
    const Bytes file = syntheticFile(c.shape);
    MemoryDataSource source(file.data(), file.size());
    const MXFFile mxf(source);
    const HeaderMetadataRegions regions(source, mxf);
    ASSERT_EQ(regions.regions().size(), 2U);
    EXPECT_EQ(regions.find(1), nullptr);
    for (const std::size_t index : {0U, 2U}) {
        const auto* region = regions.find(index);
        ASSERT_NE(region, nullptr);
        const auto& pack = mxf.partitions()[index];
        EXPECT_EQ(region->packOffset, pack.offset());
        EXPECT_EQ(region->packSize, packSize);
        EXPECT_EQ(region->fillBefore, c.fillBefore);
        EXPECT_EQ(region->offset, pack.offset() + packSize + c.fillBefore);
        EXPECT_EQ(region->size, c.size);
        EXPECT_EQ(region->contentSize, contentSize);
        EXPECT_EQ(region->kagSize, c.shape.kag);
        EXPECT_EQ(region->fillKey.has_value(), c.fillVersion != 0);
        if (region->fillKey) {
            EXPECT_EQ((*region->fillKey)[7], c.fillVersion);
        }
        EXPECT_EQ(region->fillLengthOctets, c.fillOctets);
    }
    EXPECT_EQ(regions.fillKey()[7], c.fillVersion == 0 ? 2 : c.fillVersion);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Regions,
    ::testing::Values(
        RegionCase{"NoFill", regionShape(1, 0), 0, contentSize, 0, 0},
        RegionCase{"NineOctetFillVersion1", regionShape(1, 100, 9, 1), 0, contentSize + 100, 1, 9},
        RegionCase{"Kag512RunIn", regionShape(512, 0, 4, 2, 40), 512 - packSize, 512, 2, 4}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(HeaderMetadataRegions, NewFillKeepsTheFilesKeyAndLengthForm) {
    const TempDir dir;
    const std::string path = dir.write("in.mxf", syntheticFile(regionShape(1, 100, 9, 1)));
    Vellum::MXF::HeaderMetadataUpdate::updateInPlace(path, {{0, headerMetadata(40, 3)}});
    const Bytes file = readFile(path);
    MemoryDataSource source(file.data(), file.size());
    const MXFFile mxf(source);
    const HeaderMetadataRegions regions(source, mxf);
    const auto* region = regions.find(0);
    EXPECT_EQ(region->size, contentSize + 100);
    EXPECT_EQ(region->contentSize, 88U);
    EXPECT_EQ((*region->fillKey)[7], 1);
    EXPECT_EQ(region->fillLengthOctets, 9);
}

TEST(HeaderMetadataRegions, MalformedRegionsAreNamed) {
    constexpr std::size_t headerByteCountAt = 20 + 32;
    constexpr std::size_t primerKindAt = packSize + 13;
    const Bytes good = syntheticFile(regionShape(1, 0));
    Bytes runsOn = good;
    runsOn[headerByteCountAt + 6] = 0x10; // 4096 + 148 bytes: past the body partition
    Bytes noPrimer = good;
    noPrimer[primerKindAt] = 0x7F;
    for (const auto& [bytes, message] :
         {std::pair{runsOn, "partition 0 (header, pack at offset 0) claims 4244 bytes"},
          std::pair{noPrimer, "expected the primer pack after the pack of partition 0"}}) {
        MemoryDataSource source(bytes.data(), bytes.size());
        const MXFFile mxf(source);
        EXPECT_THROW_MSG_HAS(HeaderMetadataRegions(source, mxf), BaseException, message);
    }
}

} // namespace
