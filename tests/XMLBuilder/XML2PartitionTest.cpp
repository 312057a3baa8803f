#include "Vellum/XMLBuilder/XML2Partition.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "Support/TempDir.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace Vellum;
using VellumTest::importBody;

const auto prefaceKey =
    KLV::Key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00", Types::DottedHex);
const auto identificationKey =
    KLV::Key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00", Types::DottedHex);
const auto companyName = VellumTest::label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.02.01.00.00");
const std::string darkKey = "06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.01";

std::string darkSet(const std::string& name = "groups:DarkMetadata") {
    return "<" + name + R"( groups:Key=")" + darkKey + R"(" groups:BEROctetCount="4">0A</)" + name +
           ">";
}

WString companyNameOf(const Metadata::MetadataSet& set) {
    const auto* value = VellumTest::elementOf<Metadata::SimpleElement>(set, companyName).value();
    return value != nullptr ? static_cast<const Types::UTF16String*>(value)->value() : u"(none)";
}

TEST(XML2Partition, NullPartitionIsInvalidFormatInEveryEntry) {
    const std::string xml = VellumTest::document("");
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(xml.data());
    const auto size = static_cast<std::uint32_t>(xml.size());
    EXPECT_THROW(XML2Partition::getPartitionMetadataFromBuffer(bytes, size, nullptr),
                 Exceptions::InvalidFormat);
    EXPECT_THROW(XML2Partition::getPartitionMetadataFromString(u"<a/>", nullptr),
                 Exceptions::InvalidFormat);
    EXPECT_THROW(XML2Partition::getPartitionMetadataFromFile(u"/nonexistent.xml", nullptr),
                 Exceptions::InvalidFormat);
    auto partition = VellumTest::emptyPartition();
    EXPECT_THROW(XML2Partition::getPartitionMetadataFromBuffer(nullptr, 5, partition.get()),
                 Exceptions::InvalidFormat);
}

// What the root's children give: sets known by local name (unknown elements skipped with
// what they hold), and dark sets from a floating container only when it has the prefix groups.
TEST(XML2Partition, TopLevelElementsGiveTheSetsAndDarkSetsTheyHold) {
    const struct {
        std::string body;
        std::vector<KLV::Key> keys; // of the sets returned, which are all the partition's
        std::size_t dark;
    } cases[] = {
        {"text only<!-- and a comment -->", {}, 0},
        {R"(<s377m:Preface/><x:Unheard xmlns:x="urn:x"><s377m:Identification/></x:Unheard>)"
         R"(<x:Identification xmlns:x="urn:elsewhere"/><Identification/>)",
         {prefaceKey, identificationKey, identificationKey},
         0},
        // A nested container is read as a dark set.
        {"<s377m:Preface/><groups:FloatingDarkMetadata>" + darkSet() + "<s377m:Identification/>" +
             darkSet("groups:FloatingDarkMetadata") + "</groups:FloatingDarkMetadata>",
         {prefaceKey, identificationKey},
         2},
        {R"(<g:FloatingDarkMetadata xmlns:g="urn:SMPTE:Groups:MXF">)" + darkSet() +
             "</g:FloatingDarkMetadata>",
         {},
         0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body);
        auto partition = VellumTest::emptyPartition();
        std::vector<KLV::Key> keys;
        for (const auto* set : importBody(c.body, *partition)) {
            keys.push_back(set->key());
        }
        EXPECT_EQ(keys, c.keys);
        EXPECT_EQ(partition->sets().size(), c.keys.size());
        EXPECT_EQ(partition->darkCount(), c.dark);
    }
}

TEST(XML2Partition, SetsMadeBeforeAFailureStayInThePartition) {
    auto partition = VellumTest::probePartition();
    EXPECT_THROW_MSG(importBody("<s377m:Preface/><s377m:Identification/><probe:ImportProbe>"
                                "<probe:Blobs><probe:Element>ABC</probe:Element></probe:Blobs>"
                                "</probe:ImportProbe><s377m:Identification/>",
                                *partition),
                     InvalidFormat, "Value has invalid Length");
    EXPECT_EQ(partition->sets().size(), 3U);
}

TEST(XML2Partition, MalformedDocumentIsAParseErrorAfterTheSetsBeforeTheFault) {
    auto partition = VellumTest::emptyPartition();
    const std::string body = "<s377m:Identification/><s377m:Preface><s377m:Identification>"
                             "</s377m:Preface><s377m:Identification/>";
    const std::size_t column = VellumTest::document(body).find("</s377m:Preface>") + 3;
    EXPECT_TRUE(VellumTest::whenThrown<Exceptions::ParseError>(
        [&] { importBody(body, *partition); },
        [&](const Exceptions::ParseError& e) {
            EXPECT_EQ(e.utf8Message(),
                      "XML buffer, line 1, column " + std::to_string(column) +
                          ": mismatched tag: the end tag of 's377m:Identification' was expected");
            EXPECT_EQ(e.sourceName(), "Vellum/XMLBuilder/XMLStreamReader");
        }));
    EXPECT_EQ(partition->sets().size(), 1U) << "the set read before the fault stays";
}

std::string nested(std::size_t levels) {
    std::string xml;
    for (std::size_t i = 0; i < levels; ++i) {
        xml += i % 2 == 0 ? "<probe:ImportProbe>" : "<probe:Child>";
    }
    for (std::size_t i = levels; i-- > 0;) {
        xml += i % 2 == 0 ? "</probe:ImportProbe>" : "</probe:Child>";
    }
    return xml;
}

struct FailureCase {
    const char* name;
    std::string xml; // a whole document
    const char* kind;
    std::string fragment;
};
VELLUM_PRINT_CASE_NAME(FailureCase)

const std::string withoutTypes =
    R"(<s377m:MetadataSets xmlns:s377m="urn:SMPTE:S377M"><s377m:Identification><s377m:ModificationDate>)"
    R"(<t:Second xmlns:t="urn:SMPTE:Types:MXF">1</t:Second></s377m:ModificationDate></s377m:Identification>)"
    R"(</s377m:MetadataSets>)";

const FailureCase failureCases[] = {
    {"UnboundValuePrefix", withoutTypes, "ParseError",
     "DOMException:: attempt is made to create or change an object in a way which is incorrect "
     "with respect to "
     "namespaces(14): the prefix 'types' is not bound at s377m:ModificationDate, line 1, column "
     "73"},
    {"InlineSetsTooDeep", VellumTest::document(nested(2 * 1002 - 1)), "ParseError",
     "sets written inline nest more than 1000 levels deep at probe:ImportProbe"},
    {"UnidentifiedExtensionElement",
     VellumTest::document(
         "<s377m:Preface><groups:ExtensionElements><groups:DarkElement>00</groups:DarkElement>"
         "</groups:ExtensionElements></s377m:Preface>"),
     "ParseError", "the extension element groups:DarkElement has neither"},
    {"SetKeyOfAnotherSet",
     VellumTest::document(
         R"(<s377m:Preface groups:Key="06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00"/>)"),
     "ParseError",
     "the groups:Key 06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00 of s377m:Preface is not a "
     "key of that set"},
    {"SetKeyNotAKey", VellumTest::document(R"(<s377m:Preface groups:Key="06.0E"/>)"), "ParseError",
     "the groups:Key of s377m:Preface is not a key: "},
    {"DarkSetWithoutKey",
     VellumTest::document(
         R"(<groups:FloatingDarkMetadata><groups:DarkMetadata groups:BEROctetCount="4"/>)"
         "</groups:FloatingDarkMetadata>"),
     "InvalidFormat", "has no groups:Key attribute"},
};

class ImportFailures : public ::testing::TestWithParam<FailureCase> {};

TEST_P(ImportFailures, ReachTheCallerAsToolkitExceptions) {
    const FailureCase& c = GetParam();
    auto partition = VellumTest::probePartition();
    EXPECT_TRUE(VellumTest::throwsNamed(
        [&] {
            XML2Partition::getPartitionMetadataFromBuffer(
                reinterpret_cast<const std::uint8_t*>(c.xml.data()),
                static_cast<std::uint32_t>(c.xml.size()), partition.get());
        },
        c.kind, c.fragment));
}

INSTANTIATE_TEST_SUITE_P(Cases, ImportFailures, ::testing::ValuesIn(failureCases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(XML2Partition, InlineSetsMayNestAThousandLevels) {
    auto partition = VellumTest::probePartition();
    const auto sets = importBody(nested(2 * 1001 - 1), *partition);
    EXPECT_EQ(sets.size(), 1U);
    EXPECT_EQ(partition->sets().size(), 1001U);
}

struct InlineCase {
    const char* name;
    std::string body;
    std::size_t sets; // in the partition, each read once
};
VELLUM_PRINT_CASE_NAME(InlineCase)

// Sets written inline are read ahead of the set holding them; exactly those its reading
// reads are made, each once.
const InlineCase inlineCases[] = {
    {"FirstChildOfASingleReference",
     "<probe:ImportProbe><probe:Child><probe:ImportProbe/><probe:ImportProbe/></probe:Child>"
     "</probe:ImportProbe>",
     2},
    {"FirstPropertyOfAName",
     "<probe:ImportProbe><probe:Children><probe:ImportProbe/></probe:Children><probe:Children>"
     "<probe:ImportProbe/><probe:ImportProbe/></probe:Children></probe:ImportProbe>",
     2},
    {"EveryChildOfACollectionButNamedTargets",
     "<probe:ImportProbe><probe:Children><probe:ImportProbe/><probe:ImportProbe_REF a=\"x\"/>"
     "<probe:ImportProbe><probe:Child><probe:ImportProbe/></probe:Child></probe:ImportProbe>"
     "</probe:Children></probe:ImportProbe>",
     4},
    {"NothingAfterANamedTarget",
     "<probe:ImportProbe><probe:Child><probe:ImportProbe_REF a=\"x\"/><probe:ImportProbe/>"
     "</probe:Child></probe:ImportProbe>",
     1},
    {"WeakReferenceToo",
     "<probe:ImportProbe><probe:Friend><probe:ImportProbe/></probe:Friend></probe:ImportProbe>", 2},
};

class InlineSets : public ::testing::TestWithParam<InlineCase> {};

TEST_P(InlineSets, AreMadeWhereTheHoldersReadingReadsThem) {
    auto partition = VellumTest::probePartition();
    EXPECT_EQ(importBody(GetParam().body, *partition).size(), 1U);
    EXPECT_EQ(partition->sets().size(), GetParam().sets);
}

INSTANTIATE_TEST_SUITE_P(Cases, InlineSets, ::testing::ValuesIn(inlineCases),
                         [](const auto& p) { return std::string(p.param.name); });

struct TextCase {
    const char* name;
    std::u16string prologue;
};
VELLUM_PRINT_CASE_NAME(TextCase)

const TextCase textCases[] = {
    {"DeclaresUTF8", u"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>\n"},
    {"DeclaresLatin1InSingleQuotes", u"<?xml version='1.0' encoding = 'ISO-8859-1'?>"},
    {"DeclaresUTF16", u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>"},
    {"DeclaresNoEncoding", u"<?xml version=\"1.0\"?>"},
    {"DeclaresAnEmptyEncoding", u"<?xml version=\"1.0\" encoding=\"\"?>"},
    {"StylesheetIsNoDeclaration", u"<?xml-stylesheet type=\"text/xsl\" href=\"encoding='x'\"?>"},
    {"NoDeclaration", u""},
    {"NoDeclarationLeadingBlanks", u"\n  "},
    {"ByteOrderMark", u"\uFEFF<?xml version=\"1.0\" encoding=\"UTF-8\"?>"},
};

class StringEntry : public ::testing::TestWithParam<TextCase> {};

TEST_P(StringEntry, ReadsTheTextAsTheUTF16ItIs) {
    const std::u16string name = u"\u00DCn\u00EFc\u00F8d\u00E9 \u2713 \U0001D11E \u4E2D";
    const std::u16string text =
        GetParam().prologue +
        u"<s377m:MetadataSets xmlns:s377m=\"urn:SMPTE:S377M\"><s377m:Identification>"
        u"<s377m:CompanyName>" +
        name +
        u"</s377m:CompanyName></s377m:Identification>"
        u"</s377m:MetadataSets>";
    auto partition = VellumTest::emptyPartition();
    const auto sets = XML2Partition::getPartitionMetadataFromString(text, partition.get());
    ASSERT_EQ(sets.size(), 1U);
    EXPECT_EQ(companyNameOf(*sets.front()), name);
}

INSTANTIATE_TEST_SUITE_P(Cases, StringEntry, ::testing::ValuesIn(textCases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(XML2Partition, FileEntryReadsTheFile) {
    const VellumTest::TempDir directory;
    const std::string xml =
        VellumTest::document("<s377m:Identification><s377m:CompanyName>Vellum</s377m:CompanyName>"
                             "</s377m:Identification>");
    const std::string path =
        directory.write("doc.xml", std::vector<std::uint8_t>(xml.begin(), xml.end()));
    auto partition = VellumTest::emptyPartition();
    const auto sets = XML2Partition::getPartitionMetadataFromFile(
        Utils::stringToWstring(path.c_str()).c_str(), partition.get());
    ASSERT_EQ(sets.size(), 1U);
    EXPECT_EQ(companyNameOf(*sets.front()), u"Vellum");
}

} // namespace
