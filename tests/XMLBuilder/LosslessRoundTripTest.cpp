#include "Metadata/HeaderMetadataBytes.h"
#include "Support/PrintCase.h"
#include "XMLBuilder/ImportTestSupport.h"
#include "XMLBuilder/XMLStreamReader.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/HeaderMetadataComparison.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Header metadata built byte by byte to hold what is hard to write, or what real writers
// produce (or the fuzzer found) and once changed on export -> import: the streaming text
// export must be the DOM export serialised by Xerces-C, and every one must come back equal
// (same sets by identifier, same items by label with the same bytes, same dark metadata), in
// both layouts, and again through KLV.
namespace {

using namespace VellumTest;
using Vellum::Metadata::HeaderMetadataComparison;
using Vellum::Metadata::PartitionMetadata;

Bytes identifications(std::initializer_list<Bytes> ids) {
    return item(0x3B06, batchOf(ids, 16));
}

const Bytes contentStorageKey = [] {
    Bytes key = prefaceKey;
    key[14] = 0x18;
    return key;
}();

Bytes privateSet(std::uint8_t id, const Bytes& items) {
    return klv(privateSetKey, concat({item(0x3C0A, uuid(id)), items}));
}

struct Case {
    const char* name;
    Bytes bytes;
    bool fromLastSet = false; ///< streamed from the last set rather than the Preface
};

VELLUM_PRINT_CASE_NAME(Case)

const Case cases[] = {
    {"EscapedCharacters",
     header(identifications({uuid(0x22)}),
            identification(0x22, concat({item(0x3C01, utf16(u"a&b<c>d\"e'f\tg\rh\ni]]>j")),
                                         item(0x3C02, utf16(u"\U0001F600 \uFFFD \u0085"))})))},
    {"CharactersXMLCannotHold",
     header(identifications({uuid(0x22)}),
            identification(0x22, concat({item(0x3C01, utf16(std::u16string(u"A\x01\0B", 4))),
                                         item(0x3C02, utf16(u"x\xD800y\xDC00\uFFFE"))})))},
    {"EmptyAndWhiteSpaceOnlyStrings",
     header(identifications({uuid(0x22), uuid(0x33)}),
            concat({identification(0x22, concat({item(0x3C01, utf16(u" \n   ")), item(0x3C02, {}),
                                                 item(0x3C04, utf16(u"\r"))})),
                    identification(0x33, concat({item(0x3C01, utf16(u"\n")),
                                                 item(0x3C02, utf16(u"      \n          "))}))}))},
    {"ExtensionElementsAmongDefinedOnes",
     header(concat({item(0x3C01, utf16(u"misplaced")), item(0x8001, {1, 2}),
                    identifications({uuid(0x22)}), item(0x7E01, {3}), item(0x0102, uuid(0x77))}),
            identification(0x22, concat({item(0x8001, {}), item(0x3C01, utf16(u"defined"))})))},
    {"UnknownSetsReachedFromThePreface",
     header(identifications({uuid(0x22), uuid(0x33), uuid(0x44)}),
            concat({identification(0x22, {}), privateSet(0x33, item(0x8001, uuid(0x44))),
                    identification(0x44, {}), privateSet(0x55, item(0x8001, {9}))}))},
    {"FloatingSetsWithTargetsThenAnUnknownSet",
     header(identifications({uuid(0x22)}),
            concat({identification(0x22, {}),
                    klv(prefaceKey, concat({item(0x3C0A, uuid(0x66)),
                                            identifications({uuid(0x67), uuid(0x68)})})),
                    identification(0x67, {}), identification(0x68, {}), privateSet(0x69, {}),
                    klv(Bytes(16, 0x80), {1, 2, 3})}))},
    {"FloatingSetsInACycleThenAnUnknownSet",
     header(identifications({uuid(0x22)}),
            concat({identification(0x22, {}),
                    klv(prefaceKey, concat({item(0x3C0A, uuid(0x66)), item(0x3B03, uuid(0x77))})),
                    klv(contentStorageKey, concat({item(0x3C0A, uuid(0x77)),
                                                   item(0x1901, batchOf({uuid(0x66)}, 16))})),
                    privateSet(0x69, {})}))},
    {"DanglingWeakAndSharedReferences",
     header(concat({item(0x3B08, uuid(0x22)), item(0x3B03, uuid(0x99)),
                    identifications({uuid(0x00), uuid(0x22), uuid(0x33)})}),
            concat({identification(0x22, item(0x3C01, utf16(u"first"))),
                    identification(0x22, item(0x3C01, utf16(u"second"))),
                    identification(0x33, item(0x3C01, utf16(u"third")))}))},
    {"EmptyBatchesOddBooleanAndPaddedString",
     header(concat({item(0x3B0B, batchOf({}, 0)), item(0x3B01, {0x4D, 0x4D}),
                    identifications({uuid(0x22)})}),
            identification(0x22, item(0x3C04, utf16(std::u16string(u"1.0\0\0", 5)))))},
    {"StartedFromAFloatingSet",
     header(identifications({uuid(0x22)}),
            concat({identification(0x22, {}), identification(0x33, item(0x3C01, utf16(u"x")))})),
     true},
    {"ControlCharactersAndTerminatorInAString",
     header(identifications({uuid(0x22)}),
            identification(0x22, item(0x3C01, utf16(std::u16string(u"A\x01\x1F"
                                                                   u"B\uFFFE\0",
                                                                   6)))))},
    {"UnknownSetsReferringToOneAnother",
     header(
         item(0x3B03, uuid(0x22)),
         concat(
             {klv(privateSetKey, concat({item(0x3C0A, uuid(0x22)), item(0x8001, uuid(0x33))})),
              klv(privateSetKey, concat({item(0x3C0A, uuid(0x33)), item(0x8001, uuid(0x22))}))}))},
    {"DarkMetadataAndAnAUIDKey",
     header({}, concat({klv(Bytes(16, 0x80), {1, 2, 3}), klv(fillKey, Bytes(3, 0)),
                        klv(privateSetKey, {})}))},
    {"EmptyBatchesWithItemSizeZero",
     header(concat({item(0x3B0B, batchOf({}, 0)), item(0x3B06, batchOf({}, 0))}), {})},
    {"ItemWithADynamicTagThePrimerLacks", header(item(0x8002, {1, 2, 3}), {})},
    {"SetStoredWithoutItsIdentifier",
     header(identifications({uuid(0x22)}), klv(identificationKey, item(0x3C01, utf16(u"x"))))},
};

std::unique_ptr<PartitionMetadata> partitionOf(const Bytes& bytes) {
    return PartitionMetadata::read({bytes.data(), bytes.size()}, 0,
                                   Vellum::MetaMetadata::Dictionary::builtIn());
}

std::unique_ptr<PartitionMetadata> imported(
    const std::string& xml,
    Vellum::XML2Partition::Identifiers identifiers = Vellum::XML2Partition::Identifiers::Keep) {
    auto partition = emptyPartition();
    Vellum::XML2Partition::getPartitionMetadataFromString(Vellum::Utils::stringToWstring(xml),
                                                          partition.get(), identifiers);
    return partition;
}

// The bytes of the case `name`.
const Bytes& bytesOf(const std::string& name) {
    for (const Case& c : cases) {
        if (c.name == name) {
            return c.bytes;
        }
    }
    throw std::logic_error("no case " + name);
}

class LosslessRoundTrip : public ::testing::TestWithParam<Case> {};

TEST_P(LosslessRoundTrip, StreamsAsTheDOMAndComesBackEqualInBothLayouts) {
    const Case& c = GetParam();
    const auto original = partitionOf(c.bytes);
    expectStreamingEqualsDOM(*original, c.fromLastSet ? original->sets().back() : nullptr);
    for (const bool typed : {false, true}) {
        SCOPED_TRACE(typed ? "typed" : "flat");
        const std::string xml = exportText(*original, typed);
        ASSERT_FALSE(xml.empty());
        const auto again = imported(xml);
        EXPECT_EQ(differences(*original, *again), "") << xml;
        EXPECT_EQ(differences(*original, *serializedAndReadBack(*again)), "") << xml;
        EXPECT_EQ(exportText(*again, typed), xml) << "a second export is the first";
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, LosslessRoundTrip, ::testing::ValuesIn(cases),
                         [](const auto& p) { return std::string(p.param.name); });

/// Header metadata whose typed export is read on a second thread, with sets written inline
/// five levels deep: a ContentStorage holding `packages` MaterialPackages (long names), each
/// holding a Track holding a Sequence holding a SourceClip; stored in document order.
Bytes deepHeader(std::uint32_t packages) {
    const auto key = [](std::uint8_t kind) {
        Bytes bytes = prefaceKey;
        bytes[14] = kind;
        return bytes;
    };
    const auto id = [](std::uint8_t kind, std::uint32_t number) {
        Bytes bytes(12, kind);
        put(bytes, number, 4);
        return bytes;
    };
    const auto references = [](const std::vector<Bytes>& ids) {
        Bytes out;
        put(out, ids.size(), 4);
        put(out, 16, 4);
        for (const Bytes& one : ids) {
            append(out, one);
        }
        return out;
    };
    std::vector<Bytes> packageIds;
    Bytes sets;
    for (std::uint32_t i = 0; i < packages; ++i) {
        packageIds.push_back(id(0xA0, i));
        append(sets, concat({klv(key(0x36), concat({item(0x3C0A, id(0xA0, i)),
                                                    item(0x4402, utf16(std::u16string(900, u'p'))),
                                                    item(0x4403, references({id(0xB0, i)}))})),
                             klv(key(0x3B),
                                 concat({item(0x3C0A, id(0xB0, i)), item(0x4803, id(0xD0, i))})),
                             klv(key(0x0F), concat({item(0x3C0A, id(0xD0, i)),
                                                    item(0x1001, references({id(0xE0, i)}))})),
                             klv(key(0x11), item(0x3C0A, id(0xE0, i)))}));
    }
    return header(item(0x3B03, id(0xC5, 0)),
                  concat({klv(key(0x18), concat({item(0x3C0A, id(0xC5, 0)),
                                                 item(0x1901, references(packageIds))})),
                          sets}));
}

std::vector<std::string> identifiersInOrder(const PartitionMetadata& partition) {
    std::vector<std::string> out;
    for (const auto* set : partition.sets()) {
        out.push_back(set->instanceUID() != nullptr
                          ? Vellum::Utils::wstringToString(set->instanceUID()->toString())
                          : "none");
    }
    return out;
}

TEST(LosslessRoundTrip, ALargeTypedDocumentComesBackEqualWithItsSetsInDocumentOrder) {
    const Bytes bytes = deepHeader(2000);
    const auto original = PartitionMetadata::read({bytes.data(), bytes.size()}, 0,
                                                  Vellum::MetaMetadata::Dictionary::builtIn());
    const std::string xml = exportText(*original, true);
    ASSERT_GE(2 * xml.size(), Vellum::XMLBuilder::XMLStreamReader::pipelineThreshold);
    auto imported = emptyPartition();
    Vellum::XML2Partition::getPartitionMetadataFromString(Vellum::Utils::stringToWstring(xml),
                                                          imported.get());
    EXPECT_EQ(differences(*original, *imported), "");
    EXPECT_EQ(identifiersInOrder(*imported), identifiersInOrder(*original));
    EXPECT_EQ(exportText(*imported, true), xml) << "a second export is the first";
}

TEST(LosslessRoundTrip, CharactersXMLCannotHoldBecomeReplacementCharacters) {
    const auto original = partitionOf(bytesOf("ControlCharactersAndTerminatorInAString"));
    const std::string xml = exportText(*original, false);
    EXPECT_NE(xml.find("A\xEF\xBF\xBD\xEF\xBF\xBD"
                       "B\xEF\xBF\xBD</s377m:CompanyName>"),
              std::string::npos)
        << xml;
    EXPECT_NE(xml.find("groups:StoredBytes=\"00410001001F0042FFFE0000\""), std::string::npos);
}

TEST(LosslessRoundTrip, AnEditedValueWinsOverItsStoredBytes) {
    const auto original = partitionOf(bytesOf("EmptyBatchesOddBooleanAndPaddedString"));
    std::string xml = exportText(*original, false);
    const std::string before = ">1.0</s377m:VersionString>";
    ASSERT_NE(xml.find(before), std::string::npos) << xml;
    xml.replace(xml.find(before), before.size(), ">2.0</s377m:VersionString>");
    EXPECT_EQ(differences(*original, *imported(xml)),
              "item changed Identification VersionString: \"1.0\" -> \"2.0\"\n");
}

TEST(LosslessRoundTrip, RenewedIdentifiersMakeNewSets) {
    const auto original = partitionOf(bytesOf("ControlCharactersAndTerminatorInAString"));
    const std::string xml = exportText(*original, true);
    const auto renewed = imported(xml, Vellum::XML2Partition::Identifiers::Renew);
    const auto found = HeaderMetadataComparison::compare(*original, *renewed);
    EXPECT_EQ(found.size(), 2 * original->sets().size()) << "every set removed and added";
    EXPECT_EQ(exportText(*renewed, true).size(), xml.size()) << "only identifiers differ";
}

} // namespace
