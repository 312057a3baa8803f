#include "Support/PrintCase.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Vellum;
using VellumTest::elementOf;
using VellumTest::importBody;
using VellumTest::label;

const auto contentStorage = label(u"06.0E.2B.34.01.01.01.02.06.01.01.04.02.01.00.00");
const auto companyName = label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.02.01.00.00");
const auto generationUID = label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.08.00.00.00");
const std::string someLabel = "06.0E.2B.34.01.01.01.0E.7F.7F.7F.7F.01.00.00.00";

const Types::UUID& idOf(const Metadata::MetadataSet& set) {
    return *set.instanceUID();
}

const Types::UUID& targetOf(const Metadata::MetadataSet& set, const Types::UniversalLabel& ul) {
    return elementOf<Metadata::ReferenceElement>(set, ul).value()->uuid();
}

WString textOf(const Metadata::Element& element) {
    const auto* value = dynamic_cast<const Metadata::SimpleElement&>(element).value();
    return static_cast<const Types::UTF16String&>(*value).value();
}

TEST(FromXMLMetadataSetVisitor, ReferenceReadBeforeItsTargetGetsTheTargetsIdentifier) {
    for (const bool referenceFirst : {true, false}) {
        auto partition = VellumTest::emptyPartition();
        const std::string preface =
            R"(<s377m:Preface><s377m:ContentStorage><s377m:ContentStorage_REF types:TargetInstance="storage"/>)"
            "</s377m:ContentStorage></s377m:Preface>";
        const std::string storage = R"(<s377m:ContentStorage rp210:InstanceUID="storage"/>)";
        const auto sets =
            importBody(referenceFirst ? preface + storage : storage + preface, *partition);
        ASSERT_EQ(sets.size(), 2U);
        const Metadata::MetadataSet& prefaceSet = *(referenceFirst ? sets.front() : sets.back());
        const Metadata::MetadataSet& storageSet = *(referenceFirst ? sets.back() : sets.front());
        EXPECT_EQ(targetOf(prefaceSet, contentStorage), idOf(storageSet))
            << "reference first: " << referenceFirst;
        EXPECT_EQ(partition->findByInstanceUID(idOf(storageSet)).size(), 1U);
    }
}

TEST(FromXMLMetadataSetVisitor, SetsShareAnIdentifierOnlyThroughTheSameName) {
    auto partition = VellumTest::emptyPartition();
    const auto sets = importBody(R"(<s377m:Identification rp210:InstanceUID="a"/>)"
                                 R"(<s377m:Identification rp210:InstanceUID="a"/>)"
                                 R"(<s377m:Identification rp210:InstanceUID="b"/>)"
                                 "<s377m:Identification/><s377m:Identification/>",
                                 *partition);
    std::vector<Types::UUID> ids;
    for (const auto* set : sets) {
        ids.push_back(idOf(*set));
    }
    ASSERT_EQ(ids.size(), 5U);
    EXPECT_EQ(ids[0], ids[1]);
    EXPECT_NE(ids[0], ids[2]);
    EXPECT_NE(ids[3], ids[4])
        << "a set without rp210:InstanceUID keeps the identifier it was made with";
    EXPECT_NE(ids[3], ids[0]);
}

TEST(FromXMLMetadataSetVisitor, OnlyTheFirstOfTwoSameNamedChildrenIsRead) {
    auto partition = VellumTest::emptyPartition();
    const auto sets =
        importBody("<s377m:Identification><s377m:CompanyName>first</s377m:CompanyName>"
                   "<s377m:CompanyName>second</s377m:CompanyName></s377m:Identification>",
                   *partition);
    EXPECT_EQ(textOf(*sets.front()->findElement(companyName)), u"first");
}

TEST(FromXMLMetadataSetVisitor, GenerationUIDIsReadFromItsAttribute) {
    auto partition = VellumTest::emptyPartition();
    const auto sets = importBody(
        R"(<s377m:Identification rp210:GenerationUID=")" + someLabel + R"("/>)", *partition);
    const auto* value = elementOf<Metadata::SimpleElement>(*sets.front(), generationUID).value();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(Utils::wstringToString(static_cast<const Types::UniversalLabel*>(value)->toString()),
              someLabel);
}

// Children the set does not list are kept only from groups:ExtensionElements: as misplaced
// elements when the dictionary knows them elsewhere, as unknown ones when their namespace is
// declared on the set (extension namespaces come from the root only).
TEST(FromXMLMetadataSetVisitor, ChildrenTheSetDoesNotListAreKeptOnlyAsExtensionElements) {
    auto partition = VellumTest::emptyPartition();
    const auto sets = importBody(
        "<s377m:Identification><s377m:Version>258</s377m:Version></s377m:Identification>"
        "<s377m:Identification><groups:ExtensionElements><s377m:Version>258</s377m:Version>"
        "</groups:ExtensionElements></s377m:Identification>"
        R"(<s377m:Identification xmlns:x="urn:SMPTE:S377M"><groups:ExtensionElements>)"
        R"(<x:Version groups:StaticLocalTag="3B.05">0102</x:Version>)"
        "</groups:ExtensionElements></s377m:Identification>",
        *partition);
    const std::vector<const Metadata::MetadataSet*> list(sets.begin(), sets.end());
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[0]->invalidCount(), 0U);
    ASSERT_EQ(list[1]->invalidCount(), 1U);
    const Metadata::Element& misplaced = **list[1]->invalidBegin();
    EXPECT_NE(std::dynamic_pointer_cast<const MetaMetadata::MisplacedAttribute>(
                  misplaced.metaAttribute()),
              nullptr);
    EXPECT_EQ(misplaced.metaElement()->name(), u"Version");
    EXPECT_EQ(dynamic_cast<const Metadata::SimpleElement&>(misplaced).value()->rawBuffer(),
              (std::vector<std::uint8_t>{1, 2}));
    ASSERT_EQ(list[2]->invalidCount(), 1U);
    EXPECT_NE(std::dynamic_pointer_cast<const MetaMetadata::UnknownAttribute>(
                  (*list[2]->invalidBegin())->metaAttribute()),
              nullptr);
}

struct UnknownCase {
    const char* name;
    std::string attributes;
    std::uint16_t tag; // 0: a tag the primer generates
    bool labelInPrimer;
};
VELLUM_PRINT_CASE_NAME(UnknownCase)

const UnknownCase unknownCases[] = {
    {"TagAndLabel", R"(groups:StaticLocalTag="7F.01" groups:UniversalLabel=")" + someLabel + R"(")",
     0x7F01, true},
    {"LabelOnly", R"(groups:UniversalLabel=")" + someLabel + R"(")", 0, true},
    {"TagOnly", R"(groups:StaticLocalTag="7F.02")", 0x7F02, false},
};

class UnknownExtensionElement : public ::testing::TestWithParam<UnknownCase> {};

TEST_P(UnknownExtensionElement, KeepsItsTagAndLabelAndItsBytes) {
    const UnknownCase& c = GetParam();
    auto partition = VellumTest::emptyPartition();
    const auto sets = importBody("<s377m:Preface/><s377m:Identification><groups:ExtensionElements>"
                                 "<groups:DarkElement " +
                                     c.attributes +
                                     ">0102</groups:DarkElement></groups:ExtensionElements>"
                                     "</s377m:Identification>",
                                 *partition);
    ASSERT_EQ(sets.back()->invalidCount(), 1U);
    const Metadata::Element& unknown = **sets.back()->invalidBegin();
    const auto attribute =
        std::dynamic_pointer_cast<const MetaMetadata::UnknownAttribute>(unknown.metaAttribute());
    ASSERT_NE(attribute, nullptr);
    const auto& primer = partition->partitionDictionary();
    const Types::UniversalLabel ul(Utils::stringToWstring(someLabel.c_str()), Types::DottedHex);
    if (c.tag != 0) {
        EXPECT_EQ(attribute->localTag().value(), c.tag);
    } else {
        ASSERT_NE(primer.lookupTag(ul), nullptr);
        EXPECT_EQ(attribute->localTag(), *primer.lookupTag(ul));
    }
    const auto* entered = primer.lookup(attribute->localTag());
    EXPECT_EQ(entered != nullptr && *entered == ul, c.labelInPrimer);
    EXPECT_EQ(dynamic_cast<const Metadata::SimpleElement&>(unknown).value()->rawBuffer(),
              (std::vector<std::uint8_t>{1, 2}));
    // Written out again, the element carries the same identification.
    const std::string xml = VellumTest::exportText(*partition, false);
    const std::string start = xml.substr(xml.find("<groups:DarkElement"));
    const std::string element = start.substr(0, start.find('>'));
    EXPECT_EQ(element.find(someLabel) != std::string::npos, c.labelInPrimer) << element;
}

INSTANTIATE_TEST_SUITE_P(Cases, UnknownExtensionElement, ::testing::ValuesIn(unknownCases),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(FromXMLMetadataSetVisitor, ExtensionElementsNeedGroupsBoundAtTheSet) {
    auto partition = VellumTest::emptyPartition();
    const std::string xml =
        R"(<s377m:MetadataSets xmlns:s377m="urn:SMPTE:S377M"><s377m:Identification>)"
        R"(<g:ExtensionElements xmlns:g="urn:SMPTE:Groups:MXF"><s377m:Version>1</s377m:Version></g:ExtensionElements>)"
        R"(</s377m:Identification></s377m:MetadataSets>)";
    const auto sets = XML2Partition::getPartitionMetadataFromString(
        Utils::stringToWstring(xml.c_str()), partition.get());
    EXPECT_EQ(sets.front()->invalidCount(), 0U);
}

} // namespace
