#include "Support/ExpectThrow.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Metadata/ArrayElement.h"
#include "Vellum/Metadata/BatchElement.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/UTF16String.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Vellum;
using VellumTest::elementOf;
using VellumTest::probeLabel;

std::string items(const std::string& property, const std::vector<std::string>& values) {
    std::string xml = "<probe:" + property + ">";
    for (const auto& value : values) {
        xml += value.empty() ? "<probe:Element/>" : "<probe:Element>" + value + "</probe:Element>";
    }
    return xml + "</probe:" + property + ">";
}

// Imports one ImportProbe set with `body` as its content; returns it.
const Metadata::MetadataSet& probe(Metadata::PartitionMetadata& partition, const std::string& body,
                                   const std::string& attributes = "") {
    const auto sets = VellumTest::importBody(
        "<probe:ImportProbe" + attributes + ">" + body + "</probe:ImportProbe>", partition);
    return *sets.front();
}

const std::string sizeMessage = "subElementSize == dataType -> serializedSize (): There is a "
                                "collection in the XML that contains an ARRAY or "
                                "COLLECTION that contain elements with different sizes.";

TEST(FromXMLElementVisitor, CollectionsWithoutItemsArePresentAndEmpty) {
    auto partition = VellumTest::probePartition();
    const auto& set = probe(*partition, "<probe:Counts/><probe:Titles/><probe:Children/>");
    const auto& counts = elementOf<Metadata::ArrayElement>(set, probeLabel("Counts"));
    ASSERT_FALSE(counts.isEmpty());
    EXPECT_EQ(counts.size(), 0U);
    EXPECT_EQ(counts.collection()->itemSize(), 2U) << "a fixed-size type is not measured";
    const auto& titles = elementOf<Metadata::ArrayElement>(set, probeLabel("Titles"));
    ASSERT_FALSE(titles.isEmpty());
    EXPECT_EQ(titles.collection()->itemSize(), 0U);
    const auto& children = elementOf<Metadata::ReferenceArrayElement>(set, probeLabel("Children"));
    EXPECT_FALSE(children.isEmpty());
    EXPECT_EQ(children.size(), 0U);
    EXPECT_TRUE(elementOf<Metadata::BatchElement>(set, probeLabel("Names")).isEmpty())
        << "not in the XML";
}

TEST(FromXMLElementVisitor, ItemsKeepTheirOrderAndValues) {
    auto partition = VellumTest::probePartition();
    const auto& set =
        probe(*partition,
              items("Names", {"abc", "def"}) + items("Counts", {"1", "70000"}) +
                  items("Blobs", {"0A0B", "0c0d"}) + items("Titles", {"x y", "abc"}) +
                  "<probe:Components><probe:Element><s422mTypes:J2KPictureComponent>"
                  "<s422mTypes:Ssizi>7</s422mTypes:Ssizi><s422mTypes:XRSizi>1</s422mTypes:XRSizi>"
                  "<s422mTypes:YRSizi>1</s422mTypes:YRSizi></s422mTypes:J2KPictureComponent>"
                  "</probe:Element></probe:Components>");
    const auto& names = elementOf<Metadata::BatchElement>(set, probeLabel("Names"));
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(names.collection()->itemSize(), 3U) << "items of one size";
    const auto& counts = elementOf<Metadata::ArrayElement>(set, probeLabel("Counts"));
    ASSERT_EQ(counts.size(), 2U);
    EXPECT_EQ(counts.at(1).rawBuffer(), (std::vector<std::uint8_t>{0x11, 0x70}));
    const auto& blobs = elementOf<Metadata::BatchElement>(set, probeLabel("Blobs"));
    ASSERT_EQ(blobs.size(), 2U);
    EXPECT_EQ(blobs.at(1).rawBuffer(), (std::vector<std::uint8_t>{0x0C, 0x0D}));
    const auto& titles = elementOf<Metadata::ArrayElement>(set, probeLabel("Titles"));
    ASSERT_EQ(titles.size(), 2U);
    EXPECT_EQ(static_cast<const Types::UTF16String&>(titles.at(0)).value(), u"x y");
    const auto& components = elementOf<Metadata::ArrayElement>(set, probeLabel("Components"));
    ASSERT_EQ(components.size(), 1U);
    EXPECT_EQ(components.at(0).rawBuffer(), (std::vector<std::uint8_t>{7, 1, 1}));
}

const Types::UUID& targetOf(const Metadata::MetadataSet& set, const char* name) {
    return elementOf<Metadata::ReferenceElement>(set, probeLabel(name)).value()->uuid();
}

TEST(FromXMLElementVisitor, ReferencesByNameShareIdentifiersByName) {
    auto partition = VellumTest::probePartition();
    const auto sets = VellumTest::importBody(
        R"(<probe:ImportProbe><probe:Friend><probe:ImportProbe_REF types:TargetInstance="a"/></probe:Friend>)"
        R"(<probe:Child><probe:ImportProbe_REF types:TargetInstance="b"/></probe:Child></probe:ImportProbe>)"
        R"(<probe:ImportProbe><probe:Friend><probe:ImportProbe_REF xmlns:zz="urn:z" zz:name="a"/></probe:Friend>)"
        "</probe:ImportProbe>",
        *partition);
    ASSERT_EQ(sets.size(), 2U);
    EXPECT_EQ(targetOf(*sets.front(), "Friend"), targetOf(*sets.back(), "Friend"))
        << "the name is the first attribute that is not a namespace declaration";
    EXPECT_NE(targetOf(*sets.front(), "Friend"), targetOf(*sets.front(), "Child"));
    EXPECT_EQ(elementOf<Metadata::ReferenceElement>(*sets.front(), probeLabel("Friend"))
                  .value()
                  ->identifier(),
              Types::Identifiers::WeakReference);
    EXPECT_EQ(partition->sets().size(), 2U) << "references by name make no sets";
}

TEST(FromXMLElementVisitor, SetsWrittenInlineAreMadeAndReferenced) {
    auto partition = VellumTest::probePartition();
    const auto& set = probe(
        *partition,
        "<probe:Child><probe:ImportProbe><probe:Note>inner</probe:Note></probe:ImportProbe></"
        "probe:Child>"
        R"(<probe:Children><probe:ImportProbe/><probe:ImportProbe_REF types:TargetInstance="n"/>)"
        "<probe:Unheard/></probe:Children>"
        "<probe:Friend><probe:Unheard/></probe:Friend>");
    EXPECT_EQ(partition->sets().size(), 3U);
    const auto& inner = *partition->findByInstanceUID(targetOf(set, "Child")).front();
    const auto* note = elementOf<Metadata::SimpleElement>(inner, probeLabel("Note")).value();
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(static_cast<const Types::UTF16String*>(note)->value(), u"inner");
    const auto& children = elementOf<Metadata::ReferenceArrayElement>(set, probeLabel("Children"));
    ASSERT_EQ(children.size(), 2U) << "the unknown child is skipped";
    EXPECT_EQ(partition->findByInstanceUID(children.referenceAt(0).uuid()).size(), 1U);
    EXPECT_TRUE(partition->findByInstanceUID(children.referenceAt(1).uuid()).empty());
    EXPECT_TRUE(elementOf<Metadata::ReferenceElement>(set, probeLabel("Friend")).isEmpty());
}

// Items and references the import cannot store: the exception and its whole message.
TEST(FromXMLElementVisitor, ItemsAndReferencesThatCannotBeStoredAreRefused) {
    const struct {
        std::string body;
        const char* kind;
        std::string message;
        unsigned line = 0; // in FromXMLElementVisitor, where it is fixed
    } cases[] = {
        // Items of a variable-size type must share one size where they are compared.
        {items("Names", {"abc", "abcd"}), "InvalidLength", sizeMessage, 957},
        {items("Names", {"abc", ""}), "InvalidLength", sizeMessage, 957},
        // An empty item before the first one with a value is not measured, but cannot be stored.
        {items("Names", {"", "abc"}), "InvalidLength",
         "a Batch of ISO7String has items of 3 bytes, not 0"},
        {items("Counts", {"1", ""}), "InvalidFormat", "item 2 of probe:Counts holds no value"},
        {"<probe:Friend><probe:ImportProbe_REF/></probe:Friend>", "ParseError",
         "the reference element probe:ImportProbe_REF has no attribute naming its target"},
    };
    for (const auto& c : cases) {
        auto partition = VellumTest::probePartition();
        EXPECT_TRUE(VellumTest::whenThrown<Exceptions::BaseException>(
            [&] { probe(*partition, c.body); },
            [&](const Exceptions::BaseException& e) {
                EXPECT_EQ(e.kindName(), std::string(c.kind));
                EXPECT_EQ(e.utf8Message(), c.message);
                if (c.line != 0) {
                    EXPECT_EQ(e.sourceName(), "Vellum/XMLBuilder/FromXMLElementVisitor");
                    EXPECT_EQ(e.line(), c.line);
                }
            }));
    }
}

} // namespace
