#include "Vellum/MetaMetadata/MetaElement.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaCollectionElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using namespace Vellum;
using namespace Vellum::MetaMetadata;
namespace Id = Vellum::Types::Identifiers;
using Reference = MetaElement::ReferenceKind;

const Dictionary& dictionary() {
    static const auto builtIn = Dictionary::builtIn();
    return *builtIn;
}

const MetaElement& element(const char16_t* setName, const char16_t* elementName) {
    const MetaMetadataSet* set = dictionary().findSetByName(setName);
    if (set != nullptr) {
        for (const auto& [ul, candidate] : set->elements()) {
            if (candidate->name() == elementName) {
                return *candidate;
            }
        }
    }
    throw std::runtime_error("no element " + Utils::wstringToString(WString(elementName)));
}

struct ElementCase {
    const char* test;
    const char16_t* set;
    const char16_t* element;
    const char16_t* prefix;
    const char16_t* uri;
    const char16_t* schemaIndex;
    Id::Identifier dataType;
    Id::Identifier itemType;
    Reference reference;
    const char16_t* target;
    AttributeRequiredStatus::Status required;
    int staticTag; // -1: dynamic
};

class ElementDefinition : public ::testing::TestWithParam<ElementCase> {};

TEST_P(ElementDefinition, MatchesTheReferenceTables) {
    const ElementCase& c = GetParam();
    const MetaElement& e = element(c.set, c.element);
    EXPECT_EQ(*e.property(u"XMLTagName"), c.element);
    EXPECT_EQ(*e.property(u"XMLDefaultPrefix"), c.prefix);
    EXPECT_EQ(*e.property(u"XMLNamespaceURI"), c.uri);
    EXPECT_EQ(*e.property(u"SchemaIndex"), c.schemaIndex);
    EXPECT_EQ(e.property(u"Name"), nullptr);
    EXPECT_EQ(e.dataType(), c.dataType);
    EXPECT_EQ(e.valueType(), c.itemType);
    EXPECT_EQ(e.referenceKind(), c.reference);
    EXPECT_EQ(e.targetSetName(), c.target);
    if (c.reference == Reference::None) {
        EXPECT_EQ(e.targetSet(), nullptr);
    } else {
        ASSERT_NE(e.targetSet(), nullptr);
        EXPECT_EQ(e.targetSet()->name(), c.target);
    }
    EXPECT_EQ(e.requiredStatus(), c.required);
    const bool collection = c.dataType == Id::Batch || c.dataType == Id::Array;
    EXPECT_EQ(e.isCollection(), collection);
    const auto* asCollection = dynamic_cast<const MetaCollectionElement*>(&e);
    EXPECT_EQ(asCollection != nullptr, collection);
    if (asCollection != nullptr) {
        EXPECT_EQ(asCollection->dataSubType(), c.itemType);
    }
    if (c.staticTag < 0) {
        EXPECT_FALSE(e.staticLocalTag().has_value());
    } else {
        ASSERT_TRUE(e.staticLocalTag().has_value());
        EXPECT_EQ(e.staticLocalTag()->value(), c.staticTag);
        EXPECT_EQ(dictionary().findElementByStaticTag(static_cast<std::uint16_t>(c.staticTag)), &e);
    }
    EXPECT_EQ(dictionary().findElement(e.ul()), &e);
}

constexpr auto s377 = u"urn:SMPTE:S377M";
constexpr auto rp210 = u"http://www.smpte-ra.org/rp210";
using namespace AttributeRequiredStatus;

INSTANTIATE_TEST_SUITE_P(
    BuiltIn, ElementDefinition,
    ::testing::Values(
        ElementCase{"InstanceUID", u"InterchangeObject", u"InstanceUID", u"rp210", rp210, u"1",
                    Id::UUID, Id::UUID, Reference::None, u"", Required, 0x3C0A},
        ElementCase{"GenerationUID", u"InterchangeObject", u"GenerationUID", u"rp210", rp210, u"2",
                    Id::UniversalLabel, Id::UniversalLabel, Reference::None, u"", Optional, 0x0102},
        ElementCase{"StrongReference", u"Preface", u"ContentStorage", u"s377m", s377, u"106",
                    Id::StrongReference, Id::StrongReference, Reference::Strong, u"ContentStorage",
                    Required, 0x3B03},
        ElementCase{"WeakReference", u"Preface", u"PrimaryPackage", u"s377m", s377, u"104",
                    Id::WeakReference, Id::WeakReference, Reference::Weak, u"GenericPackage",
                    Optional, 0x3B08},
        ElementCase{"BatchOfLabels", u"Preface", u"EssenceContainers", u"s377m", s377, u"108",
                    Id::Batch, Id::UniversalLabel, Reference::None, u"", Required, 0x3B0A},
        ElementCase{"StrongArray", u"Sequence", u"StructuralComponents", u"s377m", s377, u"201",
                    Id::Array, Id::StrongReference, Reference::Strong, u"StructuralComponent",
                    Required, 0x1001},
        ElementCase{"BestEffort", u"CDCIEssenceDescriptor", u"ComponentDepth", u"s377m", s377,
                    u"401", Id::UInt32, Id::UInt32, Reference::None, u"", BestEffort, 0x3301},
        ElementCase{"St422Dynamic", u"JPEG2000PictureSubDescriptor", u"Rsiz", u"s422m",
                    u"urn:SMPTE:S422M", u"201", Id::UInt16, Id::UInt16, Reference::None, u"",
                    Required, -1},
        ElementCase{"St422Compound", u"JPEG2000PictureSubDescriptor", u"CodingStyleDefault",
                    u"s422m", u"urn:SMPTE:S422M", u"212", Id::J2KCodingStyleDefault,
                    Id::J2KCodingStyleDefault, Reference::None, u"", Optional, -1},
        ElementCase{"GlobalReference", u"Participant", u"Persons", u"dms1", u"urn:SMPTE:DMS1",
                    u"506", Id::Batch, Id::UUID, Reference::Global, u"Participant", Optional, -1}),
    [](const auto& p) { return std::string(p.param.test); });

TEST(MetaElement, SameLabelInSeveralSetsKeepsOneDefinitionPerSet) {
    // BodySID is defined by EssenceContainerData, TimedTextResourceSubDescriptor and the
    // partition pack; the label index prefers the local set that has the static tag first.
    const MetaElement& container = element(u"EssenceContainerData", u"BodySID");
    const MetaElement& timedText = element(u"TimedTextResourceSubDescriptor", u"EssenceStreamID");
    const MetaElement& pack = element(u"PartitionPack", u"BodySID");
    EXPECT_EQ(container.ul(), timedText.ul());
    EXPECT_EQ(container.ul(), pack.ul());
    EXPECT_NE(*container.property(u"SchemaIndex"), *timedText.property(u"SchemaIndex"));
    EXPECT_EQ(*timedText.property(u"XMLDefaultPrefix"), u"s429-5m");
    EXPECT_EQ(dictionary().findElement(pack.ul()), &container);
    EXPECT_EQ(dictionary().findElementByStaticTag(0x3F07), &container);

    // OperationalPattern: the Preface's definition wins over the partition pack's.
    const MetaElement& pattern = element(u"Preface", u"OperationalPattern");
    EXPECT_EQ(dictionary().findElement(element(u"PartitionPack", u"OperationalPattern").ul()),
              &pattern);
}

TEST(MetaElement, LabelIndexIgnoresTheVersionByte) {
    const MetaElement& uid = element(u"InterchangeObject", u"InstanceUID");
    Types::UniversalLabel::Bytes bytes = uid.ul().bytes();
    bytes[7] = 0x0D;
    EXPECT_EQ(dictionary().findElement(Types::UniversalLabel(bytes)), &uid);
    bytes[14] = 0x99;
    EXPECT_EQ(dictionary().findElement(Types::UniversalLabel(bytes)), nullptr);
    EXPECT_EQ(dictionary().findElementByStaticTag(0x7FFF), nullptr);
}

TEST(MetaElement, LabelIndexHasOneEntryPerLabelInOrder) {
    const Dictionary& d = dictionary();
    std::size_t count = 0;
    const Types::UniversalLabel* previous = nullptr;
    for (auto it = d.metaElementBegin(); it != d.metaElementEnd(); ++it, ++count) {
        EXPECT_EQ(it->first, it->second->ul());
        if (previous != nullptr) {
            EXPECT_LT(*previous, it->first);
        }
        previous = &it->first;
    }
    // 480 definitions, of which 7 repeat a label defined by another set.
    EXPECT_EQ(count, 473U);
}

} // namespace
