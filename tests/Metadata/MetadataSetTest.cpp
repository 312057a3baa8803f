#include "Metadata/HeaderMetadataBytes.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/ArrayElement.h"
#include "Vellum/Metadata/BatchElement.h"
#include "Vellum/Metadata/DarkParsedGroup.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Metadata/Structural/StructuralMetadataKeys.h"
#include "Vellum/Types/UInt8.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/VersionType.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

namespace {

using namespace Vellum;
using namespace VellumTest;
using Metadata::PartitionMetadata;

KLV::Key key(const Bytes& b) {
    return KLV::Key(b.data(), b.size());
}
Types::UniversalLabel label(const char16_t* text) {
    return Types::UniversalLabel(text, Types::DottedHex);
}

const char16_t* const companyNameUL = u"06.0E.2B.34.01.01.01.02.05.20.07.01.02.01.00.00";
const char16_t* const identificationsUL = u"06.0E.2B.34.01.01.01.02.06.01.01.04.06.04.00.00";
const char16_t* const versionUL = u"06.0E.2B.34.01.01.01.02.03.01.02.01.05.00.00.00";

std::vector<std::uint8_t> write(PartitionMetadata& partition) {
    DataIO::Memory::MemoryDataSink sink;
    partition.serialize(sink);
    return sink.release();
}

std::unique_ptr<PartitionMetadata> read(const Bytes& bytes) {
    return PartitionMetadata::read({bytes.data(), bytes.size()}, 0,
                                   MetaMetadata::Dictionary::builtIn());
}

// Reads `bytes` and checks that the partition writes them back unchanged.
std::unique_ptr<PartitionMetadata> readBack(const Bytes& bytes) {
    auto partition = read(bytes);
    EXPECT_EQ(write(*partition), bytes) << "written back";
    return partition;
}

TEST(MetadataSet, CreatedSetsHaveEveryDefinedElementAndANewIdentifier) {
    PartitionMetadata partition(MetaMetadata::Dictionary::builtIn());
    auto* preface = partition.createMetadataSet(key(prefaceKey));
    ASSERT_NE(preface->definition(), nullptr);
    EXPECT_EQ(preface->validCount(), preface->definition()->elements().size());
    EXPECT_EQ(preface->invalidCount(), 0U);
    ASSERT_NE(preface->instanceUID(), nullptr);
    EXPECT_EQ((*preface->instanceUID())[6] >> 4, 1) << "a version 1 UUID";
    EXPECT_EQ(preface->valueCount(), 1U) << "only the identifier holds a value";
    auto* other = partition.createMetadataSet(key(prefaceKey));
    EXPECT_NE(*other->instanceUID(), *preface->instanceUID());
    EXPECT_EQ(partition.find(Metadata::Structural::StructuralMetadataKeys::preface()).size(), 2U);
    EXPECT_THROW(partition.createMetadataSet(key(Bytes(16, 0x06))), Exceptions::InvalidFormat);
}

TEST(MetadataSet, ValuesAndReferencesSurviveWritingAndReading) {
    PartitionMetadata partition(MetaMetadata::Dictionary::builtIn());
    auto* preface = partition.createMetadataSet(key(prefaceKey));
    auto* identification = partition.createMetadataSet(key(identificationKey));
    identification->findElementAs<Metadata::SimpleElement>(label(companyNameUL))
        ->set(std::make_unique<Types::UTF16String>(u"Vellum \u00E9"));
    preface->findElementAs<Metadata::SimpleElement>(label(versionUL))
        ->set(std::make_unique<Types::VersionType>(1, 3));
    preface->findElementAs<Metadata::ReferenceArrayElement>(label(identificationsUL))
        ->append(identification);

    const auto copy = read(write(partition));
    ASSERT_EQ(copy->sets().size(), 2U);
    const auto* readPreface = copy->sets()[0];
    const auto* readIdentification = copy->sets()[1];
    EXPECT_EQ(*readPreface->instanceUID(), *preface->instanceUID());
    const auto* readRefs =
        readPreface->findElementAs<Metadata::ReferenceArrayElement>(label(identificationsUL));
    ASSERT_NE(readRefs, nullptr);
    ASSERT_EQ(readRefs->size(), 1U);
    EXPECT_EQ(readRefs->referenceAt(0).uuid(), *identification->instanceUID());
    EXPECT_EQ(copy->findByInstanceUID(readRefs->referenceAt(0).uuid()).front(), readIdentification);
    const auto* readCompany = dynamic_cast<const Types::UTF16String*>(
        readIdentification->findElementAs<Metadata::SimpleElement>(label(companyNameUL))->value());
    ASSERT_NE(readCompany, nullptr);
    EXPECT_EQ(readCompany->value(), u"Vellum \u00E9");
    EXPECT_EQ(write(*copy), write(partition)) << "the copy writes the same bytes";
}

TEST(MetadataSet, SetRefusesAValueOfTheWrongType) {
    PartitionMetadata partition(MetaMetadata::Dictionary::builtIn());
    auto* preface = partition.createMetadataSet(key(prefaceKey));
    auto* version = preface->findElementAs<Metadata::SimpleElement>(label(versionUL));
    EXPECT_THROW(version->set(std::make_unique<Types::UInt8>(1)), Exceptions::InvalidFormat);
    EXPECT_TRUE(version->isEmpty());
}

// A preface holding an unknown static tag, a dynamic tag whose label the dictionary does not
// know, an element that belongs to Identification, and an InstanceUID of the wrong size.
Bytes oddPreface() {
    const Bytes privateLabel = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x0E,
                                0x0E, 0x99, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06};
    const Bytes companyName = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                               0x05, 0x20, 0x07, 0x01, 0x02, 0x01, 0x00, 0x00};
    Bytes items = item(0x3C0A, uuid(0x11));
    append(items, item(0x7FF0, {1, 2, 3}));
    append(items, item(0xFF01, {4, 5}));
    append(items, item(0x3C01, {0x00, 0x41}));
    append(items, item(0x3C0A, {9, 9, 9}));
    Bytes out = primer({{0x3C0A, instanceUIDLabel}, {0xFF01, privateLabel}, {0x3C01, companyName}});
    append(out, klv(prefaceKey, items));
    return out;
}

TEST(MetadataSet, KeepsWhatTheDictionaryDoesNotPlaceAndWritesItBack) {
    const auto partition = readBack(oddPreface());
    ASSERT_EQ(partition->sets().size(), 1U);
    const auto* preface = partition->sets()[0];
    ASSERT_EQ(preface->invalidCount(), 4U);
    std::vector<const Metadata::Element*> invalid(preface->invalidBegin(), preface->invalidEnd());
    const auto* unresolved =
        dynamic_cast<const MetaMetadata::UnknownAttribute*>(invalid[0]->metaAttribute().get());
    ASSERT_NE(unresolved, nullptr);
    EXPECT_EQ(unresolved->localTag().value(), 0x7FF0);
    EXPECT_EQ(unresolved->reason(), MetaMetadata::UnknownAttribute::LocalTagNotResolved);
    EXPECT_EQ(unresolved->universalLabel(), nullptr);
    const auto* unknownLabel =
        dynamic_cast<const MetaMetadata::UnknownAttribute*>(invalid[1]->metaAttribute().get());
    ASSERT_NE(unknownLabel, nullptr);
    EXPECT_EQ(unknownLabel->reason(), MetaMetadata::UnknownAttribute::LabelNotInDictionary);
    EXPECT_EQ(unknownLabel->localTag().value(), 0xFF01);
    ASSERT_NE(unknownLabel->universalLabel(), nullptr);
    EXPECT_EQ((*unknownLabel->universalLabel())[9], 0x99);
    EXPECT_NE(
        dynamic_cast<const MetaMetadata::MisplacedAttribute*>(invalid[2]->metaAttribute().get()),
        nullptr);
    EXPECT_NE(
        dynamic_cast<const MetaMetadata::UnknownAttribute*>(invalid[3]->metaAttribute().get()),
        nullptr)
        << "a second InstanceUID of the wrong size is kept raw";
}

// Misplaced items whose value does not fit their type (an odd-sized CompanyName) are tried as
// the element, dropped and kept raw: each in its place among the others, however many.
TEST(MetadataSet, MisplacedValuesThatDoNotFitAreKeptRawInOrder) {
    Bytes items = item(0x3C0A, uuid(0x11));
    for (std::uint8_t i = 0; i < 200; ++i) {
        append(items, item(i % 3 == 0 ? 0x7FF0 : 0x3C01, {i, i, i}));
    }
    Bytes bytes = primer({{0x3C0A, instanceUIDLabel}});
    append(bytes, klv(prefaceKey, items));
    const auto partition = readBack(bytes);
    const auto* preface = partition->sets().at(0);
    ASSERT_EQ(preface->invalidCount(), 200U);
    std::uint8_t i = 0;
    for (auto it = preface->invalidBegin(); it != preface->invalidEnd(); ++it, ++i) {
        const auto* raw =
            dynamic_cast<const MetaMetadata::UnknownAttribute*>((*it)->metaAttribute().get());
        ASSERT_NE(raw, nullptr) << "item " << int{i};
        EXPECT_EQ(raw->localTag().value(), i % 3 == 0 ? 0x7FF0 : 0x3C01) << "item " << int{i};
    }
}

TEST(MetadataSet, UnknownSetsAndOtherTripletsAreKeptDark) {
    Bytes bytes = primer({{0x3C0A, instanceUIDLabel}});
    append(bytes, klv(privateSetKey, item(0x3C0A, uuid(0x22))));
    append(bytes, klv(fillKey, Bytes(7, 0)));
    append(bytes, klv(essenceKey, {1, 2, 3, 4}));
    append(bytes, klv(Bytes(16, 0x80), {5, 6})); // an AUID-style key, as editing systems write
    const auto partition = readBack(bytes);
    ASSERT_EQ(partition->sets().size(), 1U);
    EXPECT_NE(dynamic_cast<const Metadata::DarkParsedGroup*>(partition->sets()[0]), nullptr);
    ASSERT_NE(partition->sets()[0]->instanceUID(), nullptr)
        << "known items of a dark group stay typed";
    EXPECT_EQ(partition->darkCount(), 2U);
    EXPECT_EQ((*partition->darkBegin())->value()->size(), 4U);
}

TEST(MetadataSet, BERCodedItemLengthsWriteBack) {
    Bytes berPreface = prefaceKey;
    berPreface[5] = 0x13;
    Bytes items = {0x3C, 0x0A, 0x83, 0x00, 0x00, 0x10};
    append(items, uuid(0x33));
    append(items, {0x3B, 0x05, 0x02, 0x01, 0x02});
    Bytes bytes = primer({{0x3C0A, instanceUIDLabel}});
    append(bytes, klv(berPreface, items));
    const auto partition = readBack(bytes);
    const auto* version = dynamic_cast<const Types::VersionType*>(
        partition->sets()[0]->findElementAs<Metadata::SimpleElement>(label(versionUL))->value());
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version->minor(), 2);
    // A copy into another partition is the same set, with its coding and definition.
    PartitionMetadata other(MetaMetadata::Dictionary::builtIn());
    const Metadata::MetadataSet* copy = other.copySet(*partition->sets()[0]);
    EXPECT_NE(copy->definition(), nullptr);
    other.assignLocalTags();
    DataIO::Memory::MemoryDataSink original;
    DataIO::Memory::MemoryDataSink copied;
    partition->sets()[0]->serialize(original);
    copy->serialize(copied);
    EXPECT_EQ(copied.release(), original.release());
}

// A set whose length field has `octets` octets (1 = short form).
Bytes setWithLengthOctets(const Bytes& key, const Bytes& items, int octets) {
    Bytes out = key;
    if (octets == 1) {
        out.push_back(static_cast<std::uint8_t>(items.size()));
    } else {
        out.push_back(static_cast<std::uint8_t>(0x80 + octets - 1));
        put(out, items.size(), octets - 1);
    }
    append(out, items);
    return out;
}

TEST(MetadataSet, StoredLengthFormsWriteBackExactly) {
    // Item lengths of 2 bytes hold any count up to 65535 (an item of 600 bytes once failed as
    // a "2-octet BER length"); set lengths keep their short, minimal or padded form.
    Bytes longName = item(0x3C01, Bytes(600, 0x41));
    Bytes shortItems = item(0x3C0A, uuid(0x44));
    for (const int octets : {1, 2, 4, 9}) {
        const Bytes& items = octets <= 2 ? shortItems : longName;
        Bytes bytes = primer({{0x3C0A, instanceUIDLabel}});
        append(bytes, setWithLengthOctets(identificationKey, items, octets));
        SCOPED_TRACE(octets);
        const auto partition = readBack(bytes);
        ASSERT_EQ(partition->sets().size(), 1U);
        EXPECT_EQ(partition->sets()[0]->invalidCount(), 0U);
    }
}

TEST(MetadataSet, SerializationOrderPutsUnreachedSetsLast) {
    PartitionMetadata partition(MetaMetadata::Dictionary::builtIn());
    auto* floating = partition.createMetadataSet(key(identificationKey));
    auto* preface = partition.createMetadataSet(key(prefaceKey));
    auto* reached = partition.createMetadataSet(key(identificationKey));
    preface->findElementAs<Metadata::ReferenceArrayElement>(label(identificationsUL))
        ->append(reached);
    std::vector<const Metadata::MetadataSet*> order;
    EXPECT_EQ(partition.calculateSerializationOrder(order, true, false), 1U);
    EXPECT_EQ(order, (std::vector<const Metadata::MetadataSet*>{preface, reached, floating}));
    EXPECT_EQ(partition.calculateSerializationOrder(order, false, false), 3U);
    EXPECT_EQ(order.front(), floating);
}

TEST(MetadataSet, ReferenceCyclesEndTheWalk) {
    PartitionMetadata partition(MetaMetadata::Dictionary::builtIn());
    auto* preface = partition.createMetadataSet(key(prefaceKey));
    auto* other = partition.createMetadataSet(key(prefaceKey));
    const Types::UniversalLabel contentStorage =
        label(u"06.0E.2B.34.01.01.01.02.06.01.01.04.02.01.00.00");
    preface->findElementAs<Metadata::ReferenceElement>(contentStorage)->set(other);
    other->findElementAs<Metadata::ReferenceElement>(contentStorage)->set(preface);
    std::vector<const Metadata::MetadataSet*> order;
    EXPECT_EQ(partition.calculateSerializationOrder(order, true, false), 0U);
    EXPECT_EQ(order.size(), 2U);
}

/// Whether `element` is of the class its definition asks for.
bool hasDefinedClass(const Metadata::Element& element) {
    const MetaMetadata::MetaElement& meta = *element.metaElement();
    const bool reference = meta.valueType() == Types::Identifiers::StrongReference ||
                           meta.valueType() == Types::Identifiers::WeakReference;
    const bool batch = meta.dataType() == Types::Identifiers::Batch;
    if (!meta.isCollection()) {
        return reference ? dynamic_cast<const Metadata::ReferenceElement*>(&element) != nullptr
                         : dynamic_cast<const Metadata::SimpleElement*>(&element) != nullptr;
    }
    if (reference) {
        return batch ? dynamic_cast<const Metadata::ReferenceBatchElement*>(&element) != nullptr
                     : dynamic_cast<const Metadata::ReferenceArrayElement*>(&element) != nullptr;
    }
    return batch ? dynamic_cast<const Metadata::BatchElement*>(&element) != nullptr
                 : dynamic_cast<const Metadata::ArrayElement*>(&element) != nullptr;
}

TEST(MetadataSet, EveryDefinedElementIsFoundByLabelInLabelOrder) {
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    PartitionMetadata partition(dictionary);
    std::size_t sets = 0;
    for (auto it = dictionary->metaMetadataSetBegin(); it != dictionary->metaMetadataSetEnd();
         ++it) {
        const MetaMetadata::MetaMetadataSet& definition = it->second;
        if (!definition.hasKey() || dictionary->findSet(definition.key()) != &definition) {
            continue;
        }
        const auto* set = partition.createMetadataSet(definition.key());
        const std::string name = Utils::wstringToString(definition.name());
        ++sets;
        ASSERT_EQ(set->validCount(), definition.elements().size()) << name;
        std::size_t visited = 0;
        const Types::UniversalLabel* previous = nullptr;
        for (const auto& [ul, element] : *set) {
            ++visited;
            ASSERT_EQ(&element->owner(), set) << name;
            EXPECT_EQ(ul, element->metaElement()->ul()) << name;
            EXPECT_TRUE(previous == nullptr || *previous < ul) << name << ": not in label order";
            previous = &ul;
            EXPECT_EQ(set->findElement(ul), element) << name;
            auto otherVersion = ul.bytes();
            otherVersion[7] ^= 0x7F;
            EXPECT_EQ(set->findElement(Types::UniversalLabel(otherVersion)), element) << name;
            EXPECT_TRUE(hasDefinedClass(*element)) << name;
        }
        EXPECT_EQ(visited, set->validCount()) << name;
        const auto& bySchema = definition.elementsBySchemaIndex();
        ASSERT_EQ(set->serializationOrder().size(), bySchema.size()) << name;
        for (std::size_t i = 0; i < bySchema.size(); ++i) {
            EXPECT_EQ(set->serializationOrder()[i]->metaElement(), bySchema[i]) << name << " " << i;
        }
        EXPECT_EQ(set->findElement(label(u"06.0E.2B.34.01.01.01.02.0F.0F.0F.0F.0F.0F.0F.00")),
                  nullptr);
    }
    EXPECT_GT(sets, 100U);
}

TEST(MetadataSet, FindGivesTheSetsOfAKeyInCreationOrderAcrossRemovals) {
    PartitionMetadata partition(MetaMetadata::Dictionary::builtIn());
    auto* first = partition.createMetadataSet(key(identificationKey));
    auto* preface = partition.createMetadataSet(key(prefaceKey));
    auto* second = partition.createMetadataSet(key(identificationKey));
    auto* third = partition.createMetadataSet(key(identificationKey));
    using Sets = PartitionMetadata::SetList;
    Bytes otherCoding = identificationKey;
    otherCoding[5] = 0x13;
    otherCoding[7] = 0x7F;
    EXPECT_EQ(partition.find(key(otherCoding)), (Sets{first, second, third}));
    partition.removeSet(*second);
    EXPECT_EQ(partition.find(key(identificationKey)), (Sets{first, third}));
    partition.removeSet(*first);
    partition.removeSet(*third);
    EXPECT_TRUE(partition.find(key(identificationKey)).empty());
    EXPECT_EQ(partition.find(key(prefaceKey)), (Sets{preface}));
    auto* again = partition.createMetadataSet(key(identificationKey));
    EXPECT_EQ(partition.find(key(identificationKey)), (Sets{again}));
}

} // namespace
