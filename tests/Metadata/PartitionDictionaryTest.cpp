#include "Vellum/Metadata/PartitionDictionary.h"

#include "Metadata/HeaderMetadataBytes.h"
#include "Support/ExpectThrow.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/NotFoundInPrimer.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/Structural/StructuralMetadataULs.h"

#include <gtest/gtest.h>

namespace {

using namespace Vellum;
using Metadata::PartitionDictionary;
using Types::LocalTag;
using Types::UniversalLabel;

UniversalLabel privateLabel(std::uint8_t last) {
    UniversalLabel ul(u"06.0E.2B.34.01.01.01.0E.0E.99.01.02.03.04.05.00", Types::DottedHex);
    ul[15] = last;
    return ul;
}

TEST(PartitionDictionary, DynamicTagsCountDownFromFFFF) {
    PartitionDictionary primer(MetaMetadata::Dictionary::builtIn());
    EXPECT_EQ(primer.findOrGenerate(privateLabel(1)).value(), 0xFFFF);
    EXPECT_EQ(primer.findOrGenerate(privateLabel(2)).value(), 0xFFFE);
    EXPECT_EQ(primer.findOrGenerate(privateLabel(1)).value(), 0xFFFF) << "asked again: same tag";
    EXPECT_EQ(primer.size(), 2U);
    EXPECT_EQ(primer.find(LocalTag(0xFFFE), false), privateLabel(2));
}

TEST(PartitionDictionary, KnownLabelsGetTheirStaticTag) {
    PartitionDictionary primer(MetaMetadata::Dictionary::builtIn());
    const auto& instanceUID = Metadata::Structural::StructuralMetadataULs::instanceUID();
    EXPECT_EQ(primer.findOrGenerate(instanceUID).value(), 0x3C0A);
    // Another version byte names the same element.
    UniversalLabel otherVersion = instanceUID;
    otherVersion[7] = 0x05;
    EXPECT_EQ(primer.findOrGenerate(otherVersion).value(), 0x3C0A);
    EXPECT_EQ(primer.size(), 1U);
}

TEST(PartitionDictionary, AStaticTagTakenByAnotherLabelFallsBackToADynamicTag) {
    PartitionDictionary primer(MetaMetadata::Dictionary::builtIn());
    primer.insert(LocalTag(0x3C0A), privateLabel(9));
    EXPECT_EQ(
        primer.findOrGenerate(Metadata::Structural::StructuralMetadataULs::instanceUID()).value(),
        0xFFFF);
}

TEST(PartitionDictionary, UnknownTagsThrowNotFoundInPrimer) {
    PartitionDictionary primer(MetaMetadata::Dictionary::builtIn());
    EXPECT_THROW_MSG(primer.find(LocalTag(0x3C0A), false), NotFoundInPrimer,
                     "local tag 3C.0A is not in the primer");
    EXPECT_EQ(primer.find(LocalTag(0x3C0A), true),
              Metadata::Structural::StructuralMetadataULs::instanceUID())
        << "the dictionary knows the static tag";
    EXPECT_THROW(primer.find(LocalTag(0x9000), true), Exceptions::NotFoundInPrimer);
}

TEST(PartitionDictionary, RunsOutOfDynamicTagsWithAnError) {
    PartitionDictionary primer(MetaMetadata::Dictionary::builtIn());
    for (unsigned tag = 0x8000; tag <= 0xFFFF; ++tag) {
        primer.insert(LocalTag(static_cast<std::uint16_t>(tag)), privateLabel(0));
    }
    EXPECT_THROW(primer.findOrGenerate(privateLabel(7)), Exceptions::InvalidFormat);
}

TEST(PartitionDictionary, WritesAPrimerPack) {
    PartitionDictionary primer(MetaMetadata::Dictionary::builtIn());
    const UniversalLabel::Bytes ul = privateLabel(3).bytes();
    primer.findOrGenerate(privateLabel(3));
    DataIO::Memory::MemoryDataSink sink;
    primer.serialize(sink);
    EXPECT_EQ(sink.serializedSize(), primer.serializedSize());
    EXPECT_EQ(sink.release(),
              VellumTest::primer({{0xFFFF, VellumTest::Bytes(ul.begin(), ul.end())}}));
}

} // namespace
