#include "XMLUtils/XMLTestSupport.h"

#include "Vellum/KLV/Value.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/VersionType.h"
#include "Vellum/XMLBuilder/Partition2XML.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace {

using namespace Vellum;

Types::UniversalLabel label(const char16_t* text) {
    return Types::UniversalLabel(text, Types::DottedHex);
}
KLV::Key key(const char16_t* text) {
    return KLV::Key(text, Types::DottedHex);
}

const auto instanceUID = label(u"06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00");
const auto identifications = label(u"06.0E.2B.34.01.01.01.02.06.01.01.04.06.04.00.00");
const auto contentStorage = label(u"06.0E.2B.34.01.01.01.02.06.01.01.04.02.01.00.00");
const auto version = label(u"06.0E.2B.34.01.01.01.02.03.01.02.01.05.00.00.00");
const auto companyName = label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.02.01.00.00");
const auto prefaceKey = key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00");
const auto identificationKey = key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00");

// A set with a fixed identifier, so the document is the same on every run.
Metadata::MetadataSet* makeSet(Metadata::PartitionMetadata& partition, const KLV::Key& k,
                               std::uint8_t id) {
    auto* set = partition.createMetadataSet(k);
    std::array<std::uint8_t, 16> bytes{};
    bytes.fill(id);
    set->findElementAs<Metadata::SimpleElement>(instanceUID)
        ->set(std::make_unique<Types::UUID>(Types::UUID::Bytes(bytes)));
    return set;
}

template <class T>
T& element(Metadata::MetadataSet* set, const Types::UniversalLabel& ul) {
    return *set->findElementAs<T>(ul);
}

// A preface reaching one identification and a dangling content storage, one floating
// identification and one dark metadata set.
std::unique_ptr<Metadata::PartitionMetadata> example() {
    auto partition =
        std::make_unique<Metadata::PartitionMetadata>(MetaMetadata::Dictionary::builtIn());
    auto* preface = makeSet(*partition, prefaceKey, 0x11);
    auto* identification = makeSet(*partition, identificationKey, 0x22);
    makeSet(*partition, identificationKey, 0x33);
    element<Metadata::SimpleElement>(preface, version)
        .set(std::make_unique<Types::VersionType>(1, 2));
    element<Metadata::ReferenceArrayElement>(preface, identifications).append(identification);
    element<Metadata::ReferenceElement>(preface, contentStorage)
        .setUnverifiedReference(Templates::auto_ptr<Types::Reference>(
            std::make_unique<Types::StrongReference>(Types::UUID(Types::UUID::Bytes{}))));
    element<Metadata::SimpleElement>(identification, companyName)
        .set(std::make_unique<Types::UTF16String>(u"Vellum"));
    partition->addDarkMetadataSet(std::make_unique<Metadata::DarkMetadataSet>(
        key(u"06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.01"), 4,
        KLV::Value(std::vector<std::uint8_t>{0x0A, 0xFF})));
    return partition;
}

// The document's root element serialised compactly, as UTF-8.
std::string rootText(xercesc::DOMNode* document) {
    return VellumTest::compactXml(
        static_cast<xercesc::DOMDocument*>(document)->getDocumentElement());
}

const std::string uid11 = "11.11.11.11.11.11.11.11.11.11.11.11.11.11.11.11";
const std::string uid22 = "22.22.22.22.22.22.22.22.22.22.22.22.22.22.22.22";
const std::string uid33 = "33.33.33.33.33.33.33.33.33.33.33.33.33.33.33.33";
const std::string zeroUid = "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00";

TEST(ExportFrame, FlatDocument) {
    auto partition = example();
    const auto document = XMLBuilder::partition2XML(partition.get(), false, false);
    const std::string expected =
        // Xerces-C keeps attributes in an order of its own, whatever order they were set in.
        R"(<s377m:MetadataSets xmlns:s377m="urn:SMPTE:S377M" xmlns:groups="urn:SMPTE:Groups:MXF" )"
        R"(xmlns:rp210="http://www.smpte-ra.org/rp210" xmlns:s422mTypes="urn:SMPTE:S422MTypes:MXF" xmlns:types="urn:SMPTE:Types:MXF">)"
        R"(<s377m:Preface rp210:InstanceUID=")" +
        uid11 +
        R"(">)"
        R"(<s377m:Version>258</s377m:Version>)"
        R"(<s377m:Identifications><s377m:Identification_REF types:TargetInstance=")" +
        uid22 +
        R"("/></s377m:Identifications>)"
        R"(<s377m:ContentStorage><s377m:Dangling_REF types:TargetInstance=")" +
        zeroUid +
        R"("/></s377m:ContentStorage>)"
        R"(</s377m:Preface>)"
        R"(<s377m:Identification rp210:InstanceUID=")" +
        uid22 +
        R"("><s377m:CompanyName>Vellum</s377m:CompanyName></s377m:Identification>)"
        R"(<groups:FloatingDarkMetadata>)"
        R"(<groups:DarkMetadata groups:BEROctetCount="4" groups:Key="06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.01">0AFF</groups:DarkMetadata>)"
        R"(<s377m:Identification rp210:InstanceUID=")" +
        uid33 +
        R"("/>)"
        R"(</groups:FloatingDarkMetadata>)"
        R"(</s377m:MetadataSets>)";
    EXPECT_EQ(rootText(document.get()), expected);
}

TEST(ExportFrame, TypedReferencesNestStrongTargets) {
    auto partition = example();
    const auto document = XMLBuilder::partition2XML(partition.get(), true, false);
    const std::string xml = rootText(document.get());
    const std::string nested =
        R"(<s377m:Identifications><s377m:Identification rp210:InstanceUID=")" + uid22 +
        R"("><s377m:CompanyName>Vellum</s377m:CompanyName></s377m:Identification></s377m:Identifications>)";
    EXPECT_NE(xml.find(nested), std::string::npos) << xml;
    EXPECT_NE(xml.find(R"(<s377m:ContentStorage><s377m:Dangling_REF)"), std::string::npos) << xml;
    const std::size_t floating = xml.find("<groups:FloatingDarkMetadata>");
    EXPECT_NE(floating, std::string::npos);
    EXPECT_EQ(floating, xml.rfind("<groups:FloatingDarkMetadata>")) << "one floating container";
}

TEST(ExportFrame, StartSetVariantStartsThereAndKeepsTheFloatingPass) {
    auto partition = example();
    const Metadata::MetadataSet* floating = partition->sets()[2];
    const auto document = XMLBuilder::partition2XML(partition.get(), floating, false, false);
    const std::string xml = rootText(document.get());
    EXPECT_EQ(xml.find(R"(<s377m:Identification rp210:InstanceUID=")" + uid33), xml.find("><") + 1)
        << "the start set is the root's first child: " << xml;
    // Nothing of the partition is left out: the floating pass writes the sets the start set
    // does not reach, the Preface among them, after the dark metadata.
    EXPECT_EQ(xml.find("<groups:FloatingDarkMetadata><groups:DarkMetadata"), xml.find("<groups:"));
    EXPECT_LT(xml.find("<groups:DarkMetadata"), xml.find(R"(<s377m:Preface)")) << xml;
}

} // namespace
