#include "XMLBuilder/ToXMLBaseTypeVisitor.h"

#include "Support/PrintCase.h"
#include "XMLBuilder/ImportTestSupport.h"
#include "XMLBuilder/NamespaceRecord.h"
#include "XMLBuilder/TextMarkupWriter.h"
#include "XMLBuilder/XMLNames.h"

#include "Vellum/DataIO/Slice.h"
#include "Vellum/Types/Batch.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/Factories/ValueFactory.h"
#include "Vellum/Types/RGBALayout.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/UInt16.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/XMLBuilder/FromXMLValueParser.h"

#include <gtest/gtest.h>

#include <regex>
#include <vector>

namespace {

using namespace Vellum;
using Bytes = std::vector<std::uint8_t>;
namespace Id = Types::Identifiers;

// Writes `value` into <test:V> and gives the element's XML.
std::string written(const Types::BaseType& value) {
    std::string xml;
    XMLBuilder::TextMarkupWriter sink(xml, XMLUtils::EncodingType::UTF8, {false, false});
    sink.startElement(u"urn:test", u"test:V");
    XMLBuilder::ToXMLBaseTypeVisitor writer(sink);
    value.accept(writer);
    sink.endElement();
    // The writer declares the namespaces on the element written alone; they are not the
    // value writer's output.
    static const std::regex declarations(R"( xmlns:[A-Za-z0-9]+="[^"]*")");
    return std::regex_replace(xml, declarations, "");
}

std::string written(Id::Identifier type, const Bytes& bytes) {
    return written(*Types::Factories::ValueFactory::create(type, {bytes.data(), bytes.size()}));
}

struct TextCase {
    const char* name;
    Id::Identifier type;
    Bytes bytes;
    std::string xml;
    /// Whether the import reads the text back to the same bytes (not for a Boolean byte other
    /// than 0 and 1, a string's terminator, an empty stream or a reference, which the import
    /// reads elsewhere).
    bool readsBack = true;
};
VELLUM_PRINT_CASE_NAME(TextCase)

class ValueText : public ::testing::TestWithParam<TextCase> {};

TEST_P(ValueText, IsWrittenExactlyAndReadBack) {
    const TextCase& c = GetParam();
    EXPECT_EQ(written(c.type, c.bytes), c.xml);
    if (c.readsBack) {
        const VellumTest::ParsedXML xml(
            R"(<r xmlns:test="urn:test" xmlns:types="urn:SMPTE:Types:MXF" )"
            R"(xmlns:s422mTypes="urn:SMPTE:S422MTypes:MXF">)" +
            c.xml + "</r>");
        const auto value = XMLBuilder::FromXMLValueParser::parse(xml.first(), c.type);
        ASSERT_TRUE(value);
        EXPECT_EQ(value->rawBuffer(), c.bytes);
    }
}

const Bytes uuidBytes = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77,
                         0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};
const std::string uuidText = "00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF";

Bytes umid(std::size_t size) {
    Bytes b(size);
    for (std::size_t i = 0; i < size; ++i) {
        b[i] = static_cast<std::uint8_t>(i);
    }
    return b;
}

std::string umidText(std::size_t size) {
    static const char digits[] = "0123456789ABCDEF";
    std::string out;
    for (std::size_t i = 0; i < size; ++i) {
        out += (i ? "." : "");
        out += digits[i >> 4];
        out += digits[i & 15];
    }
    return out;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(EveryKind, ValueText, ::testing::Values(
    TextCase{"BooleanTrue", Id::Boolean, {0x01}, "<test:V>1</test:V>"},
    TextCase{"BooleanFalse", Id::Boolean, {0x00}, "<test:V>0</test:V>"},
    TextCase{"BooleanOtherByte", Id::Boolean, {0x02}, "<test:V>1</test:V>", false},
    TextCase{"DataStream", Id::DataStream, {0x00, 0xAB}, "<test:V>00AB</test:V>"},
    TextCase{"DataStreamEmpty", Id::DataStream, {}, "<test:V></test:V>", false},
    TextCase{"Unknown", Id::Unknown, {0x0A, 0x1B}, "<test:V>0A1B</test:V>"},
    TextCase{"Int8Negative", Id::Int8, {0x80}, "<test:V>-128</test:V>"},
    TextCase{"Int8MinusOne", Id::Int8, {0xFF}, "<test:V>-1</test:V>"},
    TextCase{"UInt8", Id::UInt8, {0x80}, "<test:V>128</test:V>"},
    TextCase{"Int16", Id::Int16, {0xFF, 0xFE}, "<test:V>-2</test:V>"},
    TextCase{"UInt16", Id::UInt16, {0xFF, 0xFE}, "<test:V>65534</test:V>"},
    TextCase{"Int32", Id::Int32, {0x80, 0, 0, 0}, "<test:V>-2147483648</test:V>"},
    TextCase{"UInt32", Id::UInt32, {0xFF, 0xFF, 0xFF, 0xFF}, "<test:V>4294967295</test:V>"},
    TextCase{"Int64", Id::Int64, {0x80, 0, 0, 0, 0, 0, 0, 0}, "<test:V>-9223372036854775808</test:V>"},
    TextCase{"UInt64", Id::UInt64, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, "<test:V>18446744073709551615</test:V>"},
    TextCase{"Length", Id::Length, {0, 0, 0, 0, 0, 0, 0x01, 0x00}, "<test:V>256</test:V>"},
    TextCase{"Position", Id::Position, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, "<test:V>-1</test:V>"},
    TextCase{"Orientation", Id::Orientation, {0xC8}, "<test:V>200</test:V>"},
    TextCase{"SignalStandard", Id::SignalStandard, {0x04}, "<test:V>4</test:V>"},
    TextCase{"VersionType", Id::VersionType, {0x01, 0x02}, "<test:V>258</test:V>"},
    TextCase{"VersionTypeZero", Id::VersionType, {0x00, 0x00}, "<test:V>0</test:V>"},
    TextCase{"UTF16", Id::UTF16, {0x00, 0x41}, "<test:V>A</test:V>"},
    TextCase{"UTF16String", Id::UTF16String, {0x00, 0x4C, 0x00, 0xE9, 0x00, 0x00}, "<test:V>L\xC3\xA9</test:V>", false},
    TextCase{"ISO7String", Id::ISO7String, {'L', 'a', 'v', 'f'}, "<test:V>Lavf</test:V>"},
    TextCase{"UUID", Id::UUID, uuidBytes, "<test:V>" + uuidText + "</test:V>"},
    TextCase{"UniversalLabel", Id::UniversalLabel, uuidBytes, "<test:V>" + uuidText + "</test:V>"},
    TextCase{"StrongReference", Id::StrongReference, uuidBytes, "<test:V>" + uuidText + "</test:V>", false},
    TextCase{"WeakReference", Id::WeakReference, uuidBytes, "<test:V>" + uuidText + "</test:V>", false},
    TextCase{"UMID32", Id::UMID32, umid(32), "<test:V>" + umidText(32) + "</test:V>"},
    TextCase{"UMID64", Id::UMID64, umid(64), "<test:V>" + umidText(64) + "</test:V>"},
    TextCase{"Rational", Id::Rational, {0, 0, 0x75, 0x30, 0, 0, 0x03, 0xE9},
             "<test:V><types:Numerator>30000</types:Numerator><types:Denominator>1001</types:Denominator></test:V>"},
    TextCase{"ProductVersion", Id::ProductVersion, {0, 59, 0, 27, 0, 100, 0, 0, 0, 1},
             "<test:V><types:Major>59</types:Major><types:Minor>27</types:Minor><types:Patch>100</types:Patch>"
             "<types:Build>0</types:Build><types:Release>1</types:Release></test:V>"},
    TextCase{"Timestamp", Id::Timestamp, {0x07, 0xEA, 1, 5, 9, 30, 0, 250},
             "<test:V><types:Year>2026</types:Year><types:Month>1</types:Month><types:Day>5</types:Day>"
             "<types:Hour>9</types:Hour><types:Minute>30</types:Minute><types:Second>0</types:Second>"
             "<types:mSec4>250</types:mSec4></test:V>"},
    TextCase{"J2KPictureComponent", Id::J2KPictureComponent, {7, 1, 2},
             "<test:V><s422mTypes:J2KPictureComponent><s422mTypes:Ssizi>7</s422mTypes:Ssizi>"
             "<s422mTypes:XRSizi>1</s422mTypes:XRSizi><s422mTypes:YRSizi>2</s422mTypes:YRSizi>"
             "</s422mTypes:J2KPictureComponent></test:V>"},
    TextCase{"J2KCodingStyleDefault", Id::J2KCodingStyleDefault, {0x01, 0x00, 0x01, 0x00, 0x01, 0x05, 0x04},
             "<test:V><s422mTypes:J2KCodingStyleDefault><s422mTypes:Scod>1</s422mTypes:Scod>"
             "<s422mTypes:SGcod>65537</s422mTypes:SGcod><s422mTypes:Spcod>0504</s422mTypes:Spcod>"
             "</s422mTypes:J2KCodingStyleDefault></test:V>"},
    TextCase{"J2KQuantisationDefault", Id::J2KQuantisationDefault, {0x22, 0x90, 0x88},
             "<test:V><s422mTypes:J2KQuantisationDefault><s422mTypes:Sqcd>34</s422mTypes:Sqcd>"
             "<s422mTypes:SPgcd>9088</s422mTypes:SPgcd></s422mTypes:J2KQuantisationDefault></test:V>"}),
    [](const auto& p) { return p.param.name; });
// clang-format on

TEST(ToXMLBaseTypeVisitor, RGBALayoutWritesFiveComponentsWhateverItHolds) {
    Types::RGBALayout layout;
    layout.set(0, {'R', 8});
    layout.set(6, {'A', 8}); // beyond the five written
    const std::string xml = written(layout);
    std::size_t groups = 0;
    for (std::size_t at = xml.find("<types:RGBAComponent>"); at != std::string::npos;
         at = xml.find("<types:RGBAComponent>", at + 1)) {
        ++groups;
    }
    EXPECT_EQ(groups, 5U);
    EXPECT_EQ(
        xml.rfind(
            "<test:V><types:RGBAComponent><types:Code>82</types:Code><types:Depth>8</types:Depth>"
            "</types:RGBAComponent><types:RGBAComponent><types:Code>0</types:Code>",
            0),
        0U);
}

TEST(ToXMLBaseTypeVisitor, BatchItemsRunTogetherAndAnEmptyBatchWritesNothing) {
    Types::Batch batch(2, Id::UInt16);
    EXPECT_EQ(written(batch), "<test:V/>") << "no text node at all";
    batch.append(std::make_unique<Types::UInt16>(1));
    batch.append(std::make_unique<Types::UInt16>(23));
    EXPECT_EQ(written(batch), "<test:V>123</test:V>");
}

TEST(ToXMLBaseTypeVisitor, ValueNamespacesAreEnteredUnlessTheirPrefixIsBound) {
    XMLBuilder::NamespaceRecord namespaces;
    namespaces.enter(u"urn:other", u"types"); // "types" already bound: not entered again
    XMLBuilder::XMLNames names(namespaces);
    names.enterValueNamespaces();
    EXPECT_EQ(namespaces.prefixOf(u"urn:SMPTE:Types:MXF"), nullptr);
    ASSERT_NE(namespaces.prefixOf(u"urn:SMPTE:S422MTypes:MXF"), nullptr);
    EXPECT_EQ(*namespaces.prefixOf(u"urn:SMPTE:S422MTypes:MXF"), u"s422mTypes");
}

TEST(ToXMLBaseTypeVisitor, AttributeTextIsForIdentifiersOnly) {
    EXPECT_EQ(XMLBuilder::ToXMLBaseTypeVisitor::attributeText(Types::UInt16(7)), u"");
    EXPECT_EQ(XMLBuilder::ToXMLBaseTypeVisitor::attributeText(
                  Types::StrongReference(Types::UUID(uuidBytes.data(), 16))),
              u"00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF");
}

} // namespace
