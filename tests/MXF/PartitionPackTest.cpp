#include "Vellum/MXF/PartitionPack.h"

#include "MXF/SyntheticMXF.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/MXF/RandomIndexPack.h"

#include <gtest/gtest.h>

namespace {

using namespace VellumTest;
using Vellum::KLV::BERLength;
using Vellum::KLV::Key;
using Vellum::MXF::PartitionPack;

PartitionPack parse(const Bytes& key, const Bytes& value) {
    return PartitionPack::parse(Key(key.data(), 16), BERLength(value.size(), 4),
                                {value.data(), value.size()}, 1000);
}

TEST(PartitionPack, ReadsEveryField) {
    Bytes value = partitionValue(0x1111, 0x2222, 0x3333, 0x4444);
    // two essence container labels
    value.resize(value.size() - 8);
    put(value, 2, 4);
    put(value, 16, 4);
    value.insert(value.end(), 16, 0xA1);
    value.insert(value.end(), 16, 0xA2);
    const auto pack = parse(partitionKey(3, 2), value);
    EXPECT_EQ(pack.kind(), Vellum::MXF::PartitionKind::Body);
    EXPECT_EQ(pack.statusName(), "closed incomplete");
    EXPECT_EQ(pack.majorVersion(), 1);
    EXPECT_EQ(pack.minorVersion(), 3);
    EXPECT_EQ(pack.thisPartition(), 0x1111U);
    EXPECT_EQ(pack.previousPartition(), 0x2222U);
    EXPECT_EQ(pack.footerPartition(), 0x3333U);
    EXPECT_EQ(pack.headerByteCount(), 0x4444U);
    EXPECT_EQ(pack.bodySID(), 1U);
    ASSERT_EQ(pack.essenceContainers().size(), 2U);
    EXPECT_EQ(pack.essenceContainers()[1][0], 0xA2);
    EXPECT_EQ(pack.endOffset(), 1000U + 16 + 4 + value.size());
}

TEST(PartitionPack, StatusNames) {
    const Bytes value = partitionValue(0, 0, 0, 0);
    EXPECT_EQ(parse(partitionKey(2, 1), value).statusName(), "open incomplete");
    EXPECT_EQ(parse(partitionKey(2, 3), value).statusName(), "open complete");
    EXPECT_EQ(parse(partitionKey(4, 4), value).statusName(), "closed complete");
    EXPECT_EQ(parse(partitionKey(3, 0x11), value).statusName(), "generic stream");
}

TEST(PartitionPack, RefusesBadBatchesAndKeys) {
    Bytes lying = partitionValue(0, 0, 0, 0);
    lying[lying.size() - 5] = 3; // claims 3 labels, holds none
    EXPECT_THROW(parse(partitionKey(2, 4), lying), Vellum::Exceptions::InvalidLength);
    Bytes badItemSize = partitionValue(0, 0, 0, 0);
    badItemSize[badItemSize.size() - 5] = 1;
    badItemSize[badItemSize.size() - 1] = 15;
    EXPECT_THROW(parse(partitionKey(2, 4), badItemSize), Vellum::Exceptions::InvalidLength);
    EXPECT_THROW(parse(primerKey, partitionValue(0, 0, 0, 0)), Vellum::Exceptions::InvalidFormat);
}

TEST(RandomIndexPack, ReadsEntriesAndRefusesRaggedValues) {
    Bytes value;
    put(value, 0, 4);
    put(value, 0, 8);
    put(value, 1, 4);
    put(value, 0x10000, 8);
    put(value, 48, 4);
    const auto rip = Vellum::MXF::RandomIndexPack::parse({value.data(), value.size()}, 7);
    ASSERT_EQ(rip.entries().size(), 2U);
    EXPECT_EQ(rip.entries()[1].bodySID, 1U);
    EXPECT_EQ(rip.entries()[1].byteOffset, 0x10000U);
    EXPECT_EQ(rip.overallLength(), 48U);
    value.pop_back();
    EXPECT_THROW(Vellum::MXF::RandomIndexPack::parse({value.data(), value.size()}, 7),
                 Vellum::Exceptions::InvalidLength);
}

} // namespace
