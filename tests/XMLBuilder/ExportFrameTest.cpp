#include "Metadata/HeaderMetadataBytes.h"
#include "XMLUtils/XMLTestSupport.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/XMLBuilder/Partition2XML.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace {

using namespace Vellum;

// A Preface reaching one Identification and a dangling ContentStorage, one floating
// Identification and one dark metadata set, with fixed identifiers.
std::unique_ptr<Metadata::PartitionMetadata> example() {
    using namespace VellumTest;
    const Bytes darkKey = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0x01,
                           0x0D, 0x01, 0x03, 0x01, 0x15, 0x01, 0x05, 0x01};
    const Bytes bytes =
        header(concat({item(0x3B05, {0x01, 0x02}), item(0x3B06, batchOf({uuid(0x22)}, 16)),
                       item(0x3B03, uuid(0x00))}),
               concat({identification(0x22, item(0x3C01, utf16(u"Vellum"))),
                       identification(0x33, {}), klv(darkKey, {0x0A, 0xFF})}));
    return Metadata::PartitionMetadata::read({bytes.data(), bytes.size()}, 0,
                                             MetaMetadata::Dictionary::builtIn());
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
