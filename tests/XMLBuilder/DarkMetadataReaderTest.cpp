#include "XMLBuilder/DarkMetadataReader.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Metadata/DarkMetadataSet.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Vellum;

const std::string keyText = "06.0e.2b.34.01.02.01.01.0D.01.03.01.15.01.05.01";

std::string darkElement(const std::string& attributes, const std::string& value) {
    return R"(<r xmlns:groups="urn:SMPTE:Groups:MXF"><x:Anything xmlns:x="urn:any" )" + attributes +
           ">" + value + "</x:Anything></r>";
}

std::string both(const std::string& octets) {
    return R"(groups:Key=")" + keyText + R"(" groups:BEROctetCount=")" + octets + R"(")";
}

// Reads the dark element into a fresh partition; returns it with its one dark set.
std::unique_ptr<Metadata::PartitionMetadata> read(const std::string& xml) {
    auto partition = VellumTest::emptyPartition();
    const VellumTest::ParsedXML parsed(xml);
    XMLBuilder::DarkMetadataReader::read(parsed.first(), *partition);
    return partition;
}

TEST(DarkMetadataReader, ReadsKeyOctetCountAndValue) {
    const struct {
        std::string octets;
        std::string value;
        int berLength; // the octet count is cut to eight bits
        std::vector<std::uint8_t> bytes;
    } cases[] = {{"4", "0A1b", 4, {0x0A, 0x1B}}, {"1", "", 1, {}}, {"260", "00", 4, {0x00}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.octets + " " + c.value);
        const auto partition = read(darkElement(both(c.octets), c.value));
        ASSERT_EQ(partition->darkCount(), 1U);
        const Metadata::DarkMetadataSet& dark = **partition->darkBegin();
        EXPECT_EQ(dark.key().toUtf8(), "06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.01");
        EXPECT_EQ(dark.berLength(), c.berLength);
        EXPECT_EQ(std::vector<std::uint8_t>(dark.value()->begin(),
                                            dark.value()->begin() + dark.value()->size()),
                  c.bytes);
    }
    // No number reads as 0 octets, which no BER length has.
    EXPECT_THROW(read(darkElement(both("x"), "00")), Exceptions::InvalidLength);
    // 128 bytes do not fit the 7 bits of a one-octet length.
    EXPECT_THROW(read(darkElement(both("1"), std::string(256, 'F'))), Exceptions::InvalidLength);
}

struct ErrorCase {
    const char* name;
    std::string xml;
    std::string message;
    const char* source; // nullptr: the source is not fixed
    unsigned line;
};
VELLUM_PRINT_CASE_NAME(ErrorCase)

const ErrorCase errorCases[] = {
    {"OddLength", darkElement(both("4"), "ABC"),
     "DarkMetadataSet with key='" + keyText + "' value has invalid Length",
     "Vellum/XMLBuilder/XML2Partition", 89},
    {"NonHexadecimal", darkElement(both("4"), "0G"),
     "DarkMetadataSet with key='" + keyText + "' value contains non Hexadecimal characters",
     "Vellum/XMLBuilder/XML2Partition", 99},
    {"BlankInside", darkElement(both("4"), "0a 1"),
     "DarkMetadataSet with key='" + keyText + "' value contains non Hexadecimal characters",
     "Vellum/XMLBuilder/XML2Partition", 99},
    {"MissingKey", darkElement(R"(groups:BEROctetCount="4")", "00"),
     "the dark metadata element x:Anything has no groups:Key attribute", nullptr, 0},
    {"MissingOctetCount", darkElement(R"(groups:Key=")" + keyText + R"(")", "00"),
     "the dark metadata element x:Anything has no groups:BEROctetCount attribute", nullptr, 0},
    {"KeyWithOtherPrefix",
     darkElement(R"(g:Key=")" + keyText +
                     R"(" groups:BEROctetCount="4" xmlns:g="urn:SMPTE:Groups:MXF")",
                 "00"),
     "the dark metadata element x:Anything has no groups:Key attribute", nullptr, 0},
    // The key is checked before the value (of odd length here).
    {"MalformedKey", darkElement(R"(groups:Key="06.0E" groups:BEROctetCount="4")", "ABC"),
     "'06.0E' is not a valid key: expected 47 characters (16 bytes as two hexadecimal digits "
     "joined by '.'), got 5",
     nullptr, 0},
};

class DarkMetadataErrors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(DarkMetadataErrors, ThrowInvalidFormatAndAddNothing) {
    const ErrorCase& c = GetParam();
    auto partition = VellumTest::emptyPartition();
    const VellumTest::ParsedXML parsed(c.xml);
    EXPECT_TRUE(VellumTest::whenThrown<Exceptions::InvalidFormat>(
        [&] { XMLBuilder::DarkMetadataReader::read(parsed.first(), *partition); },
        [&](const Exceptions::InvalidFormat& e) {
            EXPECT_EQ(e.utf8Message(), c.message);
            if (c.source != nullptr) {
                EXPECT_EQ(e.sourceName(), c.source);
                EXPECT_EQ(e.line(), c.line);
            }
        }));
    EXPECT_EQ(partition->darkCount(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Cases, DarkMetadataErrors, ::testing::ValuesIn(errorCases),
                         [](const auto& p) { return std::string(p.param.name); });

} // namespace
