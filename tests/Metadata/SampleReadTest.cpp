#include "Support/Samples.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/MXF/MXFFile.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/Structural/StructuralMetadataKeys.h"

#include <gtest/gtest.h>

namespace {

using namespace Vellum;
using VellumTest::sampleDir;

// An independent count of the header metadata's contents, by plain byte reading: local sets
// (key byte 6 is 0x53 or 0x13) with their items, other non-fill triplets, and fill.
struct Census {
    std::size_t sets = 0;
    std::size_t items = 0;
    std::size_t other = 0;
};

std::uint64_t berAt(const std::vector<std::uint8_t>& b, std::size_t& p) {
    const std::uint8_t first = b.at(p++);
    if (first < 0x80) {
        return first;
    }
    std::uint64_t v = 0;
    for (int i = 0; i < (first & 0x7F); ++i) {
        v = (v << 8) | b.at(p++);
    }
    return v;
}

Census census(const std::vector<std::uint8_t>& b) {
    Census c;
    std::size_t p = 0;
    bool primer = true;
    while (p < b.size()) {
        const std::size_t key = p;
        p += 16;
        const std::uint64_t length = berAt(b, p);
        const bool fill =
            b[key + 8] == 0x03 && b[key + 9] == 0x01 && b[key + 10] == 0x02 && b[key + 11] == 0x10;
        if (primer || fill) {
            primer = false;
        } else if (b[key + 5] == 0x53 || b[key + 5] == 0x13) {
            ++c.sets;
            for (std::size_t q = p; q < p + length;) {
                q += 2;
                std::uint64_t itemLength = 0;
                if (b[key + 5] == 0x53) {
                    itemLength = (std::uint64_t{b.at(q)} << 8) | b.at(q + 1);
                    q += 2;
                } else {
                    itemLength = berAt(b, q);
                }
                q += itemLength;
                ++c.items;
            }
        } else {
            ++c.other;
        }
        p += length;
    }
    return c;
}

class SampleRead : public ::testing::TestWithParam<std::string> {};

TEST_P(SampleRead, AgreesWithAnIndependentCountAndWritesBackByteForByte) {
    const std::string path = sampleDir() + "/" + GetParam();
    DataIO::File::FileDataSource source(path);
    const MXF::MXFFile file(source);
    const auto bytes = file.readHeaderMetadata(file.choosePartition("header")).bytes;
    const auto partition =
        Metadata::PartitionMetadata::readFile(path, "header", MetaMetadata::Dictionary::builtIn());
    const Census expected = census(bytes);
    std::size_t items = 0;
    for (const Metadata::MetadataSet* set : partition->sets()) {
        for (const Metadata::Element* element : set->serializationOrder()) {
            items += element->isEmpty() ? 0 : 1;
        }
    }
    EXPECT_EQ(partition->sets().size(), expected.sets);
    EXPECT_EQ(items, expected.items);
    EXPECT_EQ(partition->darkCount(), expected.other);
    EXPECT_EQ(partition->find(Metadata::Structural::StructuralMetadataKeys::preface()).size(), 1U);

    DataIO::Memory::MemoryDataSink sink;
    partition->serialize(sink);
    EXPECT_EQ(sink.release(), bytes);
    EXPECT_EQ(partition->serializedSize(), bytes.size());
}

TEST_P(SampleRead, EveryStrongReferenceResolvesAndEverySetIsReached) {
    const auto partition = Metadata::PartitionMetadata::readFile(
        sampleDir() + "/" + GetParam(), "header", MetaMetadata::Dictionary::builtIn());
    std::vector<const Metadata::MetadataSet*> order;
    const unsigned floating = partition->calculateSerializationOrder(order, true, false);
    EXPECT_EQ(order.size(), partition->sets().size());
    EXPECT_EQ(order.front()->key(), Metadata::Structural::StructuralMetadataKeys::preface());
    // Files from these writers hang every set from the preface; none floats.
    EXPECT_EQ(floating, 0U);
    for (const auto* set : partition->sets()) {
        ASSERT_NE(set->instanceUID(), nullptr);
        EXPECT_EQ(partition->findByInstanceUID(*set->instanceUID()).size(), 1U);
        EXPECT_NE(set->definition(), nullptr) << set->key().toUtf8();
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleRead, ::testing::ValuesIn(VellumTest::sampleNames()),
                         VellumTest::sampleTestName);

} // namespace
