#include "Vellum/XMLBuilder/FromXMLValueParser.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using namespace Vellum;
using Types::Identifiers::Identifier;
using XMLBuilder::FromXMLValueParser;

std::string wrapped(const std::string& inner, const std::string& name = "v") {
    return R"(<r xmlns:types="urn:SMPTE:Types:MXF" xmlns:s422mTypes="urn:SMPTE:S422MTypes:MXF"><)" +
           name + ">" + inner + "</" + name + "></r>";
}

// The stored bytes of the value parsed from <name>inner</name>, or "(none)".
std::string parsed(const std::string& inner, Identifier type, const std::string& name = "v") {
    const VellumTest::ParsedXML xml(wrapped(inner, name));
    const auto value = FromXMLValueParser::parse(xml.first(), type);
    return value ? VellumTest::hexOf(value->rawBuffer()) : "(none)";
}

struct ValueCase {
    const char* name;
    Identifier type;
    const char* inner;
    const char* expected;
};
VELLUM_PRINT_CASE_NAME(ValueCase)

const ValueCase valueCases[] = {
    {"BooleanWordFalse", Identifier::Boolean, "false", "01"},
    {"BooleanBlankZero", Identifier::Boolean, " 0", "01"},
    {"BooleanWithoutText", Identifier::Boolean, "", "(none)"},
    {"Int8Negative", Identifier::Int8, "-1", "FF"},
    {"Int8Cut", Identifier::Int8, "200", "C8"},
    {"Int16Cut", Identifier::Int16, "70000", "1170"},
    {"Int32Negative", Identifier::Int32, "-2", "FFFFFFFE"},
    {"UInt8Cut", Identifier::UInt8, "300", "2C"},
    {"UInt16BlanksAndTrailingText", Identifier::UInt16, " \t42xyz", "002A"},
    {"UInt32NoNumber", Identifier::UInt32, "abc", "00000000"},
    {"UInt32Cut", Identifier::UInt32, "4294967297", "00000001"},
    {"LengthWithPlus", Identifier::Length, "+5", "0000000000000005"},
    {"OrientationCut", Identifier::Orientation, "258", "02"},
    {"ISO7StringAsUTF8", Identifier::ISO7String, "h\xC3\xA9llo", "68C3A96C6C6F"},
    {"UTF16StringKeepsBlanks", Identifier::UTF16String, " a b ", "00200061002000620020"},
    {"UTF16FirstCharacterOfFirstWord", Identifier::UTF16, "  xy", "0078"},
    {"UUIDEitherCase", Identifier::UUID, "0a.0B.0c.0D.0e.0F.10.11.12.13.14.15.16.17.18.19",
     "0A0B0C0D0E0F10111213141516171819"},
    {"DataStreamMixedCase", Identifier::DataStream, "0A1b", "0A1B"},
    {"RationalSigned", Identifier::Rational,
     "<types:Numerator>-1</types:Numerator><types:Denominator>3</types:Denominator>",
     "FFFFFFFF00000003"},
    {"RationalPartsWithOtherPrefix", Identifier::Rational,
     R"(<t:Numerator xmlns:t="urn:SMPTE:Types:MXF">2</t:Numerator><types:Denominator>1</types:Denominator>)",
     "0000000200000001"},
    {"RationalWithoutDenominator", Identifier::Rational, "<types:Numerator>1</types:Numerator>",
     "(none)"},
    {"RationalPartInOtherNamespace", Identifier::Rational,
     R"(<types:Numerator>1</types:Numerator><x:Denominator xmlns:x="urn:other">1</x:Denominator>)",
     "(none)"},
    {"ProductVersionWithoutRelease", Identifier::ProductVersion,
     "<types:Major>1</types:Major><types:Minor>2</types:Minor><types:Patch>3</types:Patch>"
     "<types:Build>4</types:Build>",
     "(none)"},
    {"RGBALayoutInOrder", Identifier::RGBALayout,
     "<types:RGBAComponent><types:Code>82</types:Code><types:Depth>8</types:Depth></"
     "types:RGBAComponent>"
     "<types:RGBAComponent><types:Code>71</types:Code><types:Depth>10</types:Depth></"
     "types:RGBAComponent>",
     "5208470A000000000000000000000000"},
    {"RGBALayoutMissingDepthIsZero", Identifier::RGBALayout,
     "<types:RGBAComponent><types:Code>70</types:Code></types:RGBAComponent>",
     "46000000000000000000000000000000"},
    {"J2KCodingStyleDefault", Identifier::J2KCodingStyleDefault,
     "<s422mTypes:J2KCodingStyleDefault><s422mTypes:Scod>1</"
     "s422mTypes:Scod><s422mTypes:SGcod>16909060</s422mTypes:SGcod>"
     "<s422mTypes:Spcod>0A0b</s422mTypes:Spcod></s422mTypes:J2KCodingStyleDefault>",
     "01010203040A0B"},
    {"NoParserFloat", Identifier::Float, "1", "(none)"},
    {"NoParserIndirect", Identifier::Indirect, "01", "(none)"},
    {"NoParserPackageID", Identifier::PackageID, "01", "(none)"},
    {"NoParserReference", Identifier::StrongReference,
     "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00", "(none)"},
    {"NoParserVariableSize", Identifier::VariableSize, "01", "(none)"},
    {"NoParserBeyondTheTable", static_cast<Identifier>(40), "1", "(none)"},
};

class ValueParsing : public ::testing::TestWithParam<ValueCase> {};

TEST_P(ValueParsing, GivesTheStoredBytes) {
    const ValueCase& c = GetParam();
    EXPECT_EQ(parsed(c.inner, c.type), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ValueParsing, ::testing::ValuesIn(valueCases),
                         [](const auto& p) { return std::string(p.param.name); });

std::string timestampWithout(const std::set<std::string>& missing) {
    std::string inner;
    for (const char* part : {"Year", "Month", "Day", "Hour", "Minute", "Second", "mSec4"}) {
        if (missing.count(part) == 0) {
            inner += std::string("<types:") + part + ">1</types:" + part + ">";
        } else if (missing.count("empty") != 0) {
            inner += std::string("<types:") + part + "/>";
        }
    }
    return inner;
}

std::string j2k(const std::string& wrapper, const std::set<std::string>& fields) {
    std::string inner = "<s422mTypes:" + wrapper + ">";
    for (const auto& field : fields) {
        const bool bytes = field == "Spcod" || field == "SPgcd";
        inner +=
            "<s422mTypes:" + field + ">" + (bytes ? "0A" : "1") + "</s422mTypes:" + field + ">";
    }
    return inner + "</s422mTypes:" + wrapper + ">";
}

struct ErrorCase {
    const char* name;
    Identifier type;
    std::string inner;
    const char* message;
    unsigned line;
};
VELLUM_PRINT_CASE_NAME(ErrorCase)

const char* const pictureMissing = "domComponentElement != 0: No 'J2KPictureComponent' element "
                                   "from 'PictureComponentSizing' in XML metadata";
const char* const codingMissing = "domComponentElement != 0: No 'J2KCodingStyleDefault' element "
                                  "from 'CodingStyleDefault' in XML metadata";
const char* const quantisationMissing = "domComponentElement != 0: No 'J2KQuantisationDefault' "
                                        "element from 'QuantisationDefault' in XML metadata";

const ErrorCase errorCases[] = {
    {"HexOddLength", Identifier::DataStream, "ABC", "Value has invalid Length", 110},
    {"HexNonHexadecimal", Identifier::DataStream, "0G", "Value contains non Hexadecimal characters",
     117},
    {"HexBlankMakesOddLength", Identifier::DataStream, "0a 1b", "Value has invalid Length", 110},
    {"HexBlankIsNotADigit", Identifier::Unknown, "0a 1",
     "Value contains non Hexadecimal characters", 117},
    {"UnknownOddLength", Identifier::Unknown, "F", "Value has invalid Length", 110},
    {"TimestampSecondFirstAmongMissing", Identifier::Timestamp,
     timestampWithout({"Second", "Year", "Day"}),
     "!secondsValue.empty (): No 'Second' element in XML metadata", 374},
    {"TimestampEmptySecond", Identifier::Timestamp, timestampWithout({"Second", "empty"}),
     "!secondsValue.empty (): No 'Second' element in XML metadata", 374},
    {"TimestampMSec4", Identifier::Timestamp, timestampWithout({"mSec4"}),
     "!milliValue.empty (): No 'mSec4' element in XML metadata", 377},
    {"TimestampYear", Identifier::Timestamp, timestampWithout({"Year"}),
     "!yearValue.empty (): No 'Year' element in XML metadata", 380},
    {"TimestampMonth", Identifier::Timestamp, timestampWithout({"Month"}),
     "!monthValue.empty (): No 'Month' element in XML metadata", 383},
    {"TimestampDay", Identifier::Timestamp, timestampWithout({"Day"}),
     "!dayValue.empty (): No 'Day' element in XML metadata", 386},
    {"TimestampHour", Identifier::Timestamp, timestampWithout({"Hour"}),
     "!hourValue.empty (): No 'Hour' element in XML metadata", 389},
    {"TimestampMinute", Identifier::Timestamp, timestampWithout({"Minute"}),
     "!minutesValue.empty (): No 'Minute' element in XML metadata", 392},
    {"PictureComponentMissing", Identifier::J2KPictureComponent, "<s422mTypes:Other/>",
     pictureMissing, 255},
    {"PictureComponentOtherNamespace", Identifier::J2KPictureComponent,
     R"(<x:J2KPictureComponent xmlns:x="urn:other"/>)", pictureMissing, 255},
    {"Ssizi", Identifier::J2KPictureComponent, j2k("J2KPictureComponent", {"XRSizi", "YRSizi"}),
     "!sSiziValue.empty (): No 'Ssizi' element in XML metadata", 259},
    {"XRSizi", Identifier::J2KPictureComponent, j2k("J2KPictureComponent", {"Ssizi", "YRSizi"}),
     "!xRSiziValue.empty (): No 'XRSizi' element in XML metadata", 262},
    {"YRSizi", Identifier::J2KPictureComponent, j2k("J2KPictureComponent", {"Ssizi", "XRSizi"}),
     "!yRSiziValue.empty (): No 'YRSizi' element in XML metadata", 265},
    {"CodingStyleMissing", Identifier::J2KCodingStyleDefault, "<s422mTypes:Other/>", codingMissing,
     296},
    {"Scod", Identifier::J2KCodingStyleDefault, j2k("J2KCodingStyleDefault", {"SGcod", "Spcod"}),
     "!scodValue.empty (): No 'Scod' element in XML metadata", 300},
    {"SGcod", Identifier::J2KCodingStyleDefault, j2k("J2KCodingStyleDefault", {"Scod", "Spcod"}),
     "!sGcodValue.empty (): No 'SGcod' element in XML metadata", 303},
    {"Spcod", Identifier::J2KCodingStyleDefault, j2k("J2KCodingStyleDefault", {"Scod", "SGcod"}),
     "!spcodValue.empty (): No 'Spcod' element in XML metadata", 306},
    {"QuantisationMissing", Identifier::J2KQuantisationDefault, "<s422mTypes:Other/>",
     quantisationMissing, 337},
    {"Sqcd", Identifier::J2KQuantisationDefault, j2k("J2KQuantisationDefault", {"SPgcd"}),
     "!sqcdValue.empty (): No 'Sqcd' element in XML metadata", 341},
    {"SPgcd", Identifier::J2KQuantisationDefault, j2k("J2KQuantisationDefault", {"Sqcd"}),
     "!sPgcdValue.empty (): No 'SPgcd' element in XML metadata", 344},
    {"SpcodOddHex", Identifier::J2KCodingStyleDefault,
     "<s422mTypes:J2KCodingStyleDefault><s422mTypes:Scod>1</s422mTypes:Scod><s422mTypes:SGcod>1</"
     "s422mTypes:SGcod>"
     "<s422mTypes:Spcod>ABC</s422mTypes:Spcod></s422mTypes:J2KCodingStyleDefault>",
     "Value has invalid Length", 110},
};

class ValueErrors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(ValueErrors, ThrowInvalidFormatWithTheFixedMessageAndLine) {
    const ErrorCase& c = GetParam();
    const VellumTest::ParsedXML xml(wrapped(c.inner));
    EXPECT_TRUE(VellumTest::whenThrown<Exceptions::InvalidFormat>(
        [&] { FromXMLValueParser::parse(xml.first(), c.type); },
        [&](const Exceptions::InvalidFormat& e) {
            EXPECT_EQ(e.utf8Message(), c.message);
            EXPECT_EQ(e.sourceName(), "Vellum/XMLBuilder/FromXMLElementVisitor");
            EXPECT_EQ(e.line(), c.line);
        }));
}

INSTANTIATE_TEST_SUITE_P(Cases, ValueErrors, ::testing::ValuesIn(errorCases),
                         [](const auto& p) { return std::string(p.param.name); });

const std::string basicUMID = "06.0A.2B.34.01.01.01.05.01.01.0D.00.13.00.00.00.00.11.22.33.44.55."
                              "66.77.88.99.AA.BB.CC.DD.EE.FF";
const std::string zeros32 = std::string(64, '0');

// ExtendedClipID pads a basic UMID with a zero source pack and keeps an extended one; other
// elements are not padded.
TEST(ValueParser, ExtendedClipIDPadsABasicUMIDOnly) {
    const std::string bytes = parsed(basicUMID, Identifier::UMID64, "ExtendedClipID");
    ASSERT_EQ(bytes.size(), 128U);
    EXPECT_EQ(bytes.substr(64), zeros32);
    EXPECT_EQ(bytes.substr(0, 8), "060A2B34");
    const std::string extended = basicUMID + "." + basicUMID;
    EXPECT_EQ(parsed(extended, Identifier::UMID64, "ExtendedClipID").substr(64, 8), "060A2B34");
    EXPECT_EQ(parsed(basicUMID, Identifier::UMID32, "v").size(), 64U);
    EXPECT_THROW(parsed(basicUMID, Identifier::UMID64, "PackageUID"), Exceptions::InvalidFormat);
}

TEST(ValueParser, AttributeTextIsAValue) {
    const VellumTest::ParsedXML xml(
        R"(<r><v g="06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00"/></r>)");
    const auto value =
        FromXMLValueParser::parse(*xml.first().attribute(u"g"), Identifier::UniversalLabel);
    ASSERT_TRUE(value);
    EXPECT_EQ(VellumTest::hexOf(value->rawBuffer()), "060E2B34040101010D01020101010900");
    // A compound value written as an attribute has no parts.
    EXPECT_FALSE(FromXMLValueParser::parse(*xml.first().attribute(u"g"), Identifier::Rational));
}

TEST(ValueParser, MalformedIdentifiersAndCalendarFieldsFailInTheValueClasses) {
    EXPECT_THROW(parsed("06.0E.2B", Identifier::UUID), Exceptions::InvalidFormat);
    // 256 units of 4 ms are more than the stored count can hold.
    EXPECT_THROW(parsed(timestampWithout({"mSec4"}) + "<types:mSec4>256</types:mSec4>",
                        Identifier::Timestamp),
                 Exceptions::InvalidFormat);
}

TEST(ValueParser, UnboundPartPrefixRaisesTheNamespaceError) {
    const VellumTest::ParsedXML xml(
        R"(<r><v><t:Numerator xmlns:t="urn:SMPTE:Types:MXF">1</t:Numerator></v></r>)");
    EXPECT_THROW_MSG_HAS(FromXMLValueParser::parse(xml.first(), Identifier::Rational), ParseError,
                         "namespaces(14): the prefix 'types' is not bound at v");
}

TEST(ValueParser, HexAndDecimalReaders) {
    EXPECT_EQ(FromXMLValueParser::readHex(u"0A1b"), (std::vector<std::uint8_t>{0x0A, 0x1B}));
    EXPECT_TRUE(FromXMLValueParser::readHex(u"").empty());
    EXPECT_EQ(FromXMLValueParser::readDecimal(u"\n\v\f\r 12 34"), 12U);
    EXPECT_EQ(FromXMLValueParser::readDecimal(u"- 5"), 0U) << "the sign must touch the digits";
    EXPECT_EQ(FromXMLValueParser::readDecimal(u"18446744073709551616"), 0U) << "kept modulo 2^64";
    const VellumTest::ParsedXML xml(wrapped("<types:Code>5</types:Code>"));
    EXPECT_EQ(FromXMLValueParser::readChildText(xml.first(), u"types", u"Code"), u"5");
    EXPECT_EQ(FromXMLValueParser::readChildText(xml.first(), u"types", u"Depth"), u"");
}

} // namespace
