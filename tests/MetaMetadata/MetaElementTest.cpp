#include "Vellum/MetaMetadata/MetaElement.h"

#include "Support/PrintCase.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaCollectionElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <set>
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
    const char16_t* ul;
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
VELLUM_PRINT_CASE(ElementCase, c.test)

class ElementDefinition : public ::testing::TestWithParam<ElementCase> {};

TEST_P(ElementDefinition, MatchesTheReferenceTables) {
    const ElementCase& c = GetParam();
    const MetaElement& e = element(c.set, c.element);
    EXPECT_EQ(e.ul(), Types::UniversalLabel(WString(c.ul), Types::DottedHex));
    EXPECT_EQ(&e.definingSet(), dictionary().findSetByName(c.set));
    EXPECT_EQ(*e.property(u"XMLTagName"), c.element);
    EXPECT_EQ(*e.property(u"XMLDefaultPrefix"), c.prefix);
    EXPECT_EQ(*e.property(u"XMLNamespaceURI"), c.uri);
    EXPECT_EQ(*e.property(u"SchemaIndex"), c.schemaIndex);
    EXPECT_EQ(e.property(u"Name"), nullptr);
    EXPECT_EQ(e.dataType(), c.dataType);
    EXPECT_EQ(e.valueType(), c.itemType);
    EXPECT_EQ(e.referenceKind(), c.reference);
    EXPECT_EQ(e.targetSetName(), c.target);
    // Resolved for references only (the target is empty for the others).
    EXPECT_EQ(e.targetSet() == nullptr ? WString() : e.targetSet()->name(), c.target);
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
        const MetaElement* byTag =
            dictionary().findElementByStaticTag(static_cast<std::uint16_t>(c.staticTag));
        ASSERT_NE(byTag, nullptr);
        EXPECT_EQ(byTag->ul(), e.ul());
    }
    // The label index has one definition per label, the same in every set that repeats it.
    const MetaElement* byLabel = dictionary().findElement(e.ul());
    ASSERT_NE(byLabel, nullptr);
    EXPECT_EQ(byLabel->ul(), e.ul());
    EXPECT_EQ(byLabel->dataType(), e.dataType());
    EXPECT_EQ(byLabel->valueType(), e.valueType());
}

constexpr auto s377 = u"urn:SMPTE:S377M";
constexpr auto rp210 = u"http://www.smpte-ra.org/rp210";
using namespace AttributeRequiredStatus;

// The first rows are elements the reference tables list, with their usual MXF names
// (InstanceUID, not the register's InstanceID); then register entries (AS-11 by its usual
// MXF name), the AAF meta-dictionary, Avid private elements, and values no value kind holds.
INSTANTIATE_TEST_SUITE_P(
    BuiltIn, ElementDefinition,
    ::testing::Values(
        ElementCase{"InstanceUID", u"InterchangeObject", u"InstanceUID",
                    u"06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00", u"rp210", rp210, u"1",
                    Id::UUID, Id::UUID, Reference::None, u"", Required, 0x3C0A},
        ElementCase{"StrongReference", u"Preface", u"ContentStorage",
                    u"06.0E.2B.34.01.01.01.02.06.01.01.04.02.01.00.00", u"s377m", s377, u"106",
                    Id::StrongReference, Id::StrongReference, Reference::Strong, u"ContentStorage",
                    Required, 0x3B03},
        ElementCase{"WeakReference", u"Preface", u"PrimaryPackage",
                    u"06.0E.2B.34.01.01.01.04.06.01.01.04.01.08.00.00", u"s377m", s377, u"104",
                    Id::WeakReference, Id::WeakReference, Reference::Weak, u"GenericPackage",
                    Optional, 0x3B08},
        ElementCase{"BatchOfLabels", u"Preface", u"EssenceContainers",
                    u"06.0E.2B.34.01.01.01.05.01.02.02.10.02.01.00.00", u"s377m", s377, u"108",
                    Id::Batch, Id::UniversalLabel, Reference::None, u"", Required, 0x3B0A},
        ElementCase{"StrongArray", u"Sequence", u"StructuralComponents",
                    u"06.0E.2B.34.01.01.01.02.06.01.01.04.06.09.00.00", u"s377m", s377, u"201",
                    Id::Array, Id::StrongReference, Reference::Strong, u"StructuralComponent",
                    Required, 0x1001},
        ElementCase{"BestEffort", u"CDCIEssenceDescriptor", u"ComponentDepth",
                    u"06.0E.2B.34.01.01.01.02.04.01.05.03.0A.00.00.00", u"s377m", s377, u"401",
                    Id::UInt32, Id::UInt32, Reference::None, u"", BestEffort, 0x3301},
        ElementCase{"St422Dynamic", u"JPEG2000PictureSubDescriptor", u"Rsiz",
                    u"06.0E.2B.34.01.01.01.0A.04.01.06.03.01.00.00.00", u"s422m",
                    u"urn:SMPTE:S422M", u"201", Id::UInt16, Id::UInt16, Reference::None, u"",
                    Required, -1},
        ElementCase{"GlobalReference", u"Participant", u"Persons",
                    u"06.0E.2B.34.01.01.01.05.06.01.01.04.03.40.14.00", u"dms1", u"urn:SMPTE:DMS1",
                    u"506", Id::Batch, Id::UUID, Reference::Global, u"Participant", Optional, -1},
        ElementCase{"As11ByMxfName", u"AS11CoreFramework", u"AS11ShimVersion",
                    u"06.0E.2B.34.01.01.01.01.0D.01.07.01.0B.01.01.0A", u"as11", u"urn:AMWA:AS-11",
                    u"205", Id::VersionType, Id::VersionType, Reference::None, u"", Required, -1},
        ElementCase{"RootGetsInstanceUID", u"MetaDictionary", u"InstanceUID",
                    u"06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00", u"rp210", rp210, u"3",
                    Id::UUID, Id::UUID, Reference::None, u"", Required, 0x3C0A},
        ElementCase{"AvidPrivate", u"GenericPictureEssenceDescriptor", u"ResolutionID",
                    u"A0.24.00.60.94.EB.75.CB.CE.2A.CA.4D.51.AB.11.D3", u"avid", u"urn:Avid:MXF",
                    u"336", Id::Int32, Id::Int32, Reference::None, u"", Optional, -1},
        ElementCase{"IndirectIsUnknown", u"ConstantValue", u"Value",
                    u"06.0E.2B.34.01.01.01.02.05.30.05.07.00.00.00.00", u"aaf",
                    u"urn:AAF:ObjectModel", u"201", Id::Unknown, Id::Unknown, Reference::None, u"",
                    Required, 0x4D01}),
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

    // InstanceUID is repeated by root classes outside the InterchangeObject tree.
    const MetaElement& uid = element(u"InterchangeObject", u"InstanceUID");
    EXPECT_EQ(dictionary().findElement(element(u"MetaDictionary", u"InstanceUID").ul()), &uid);
    EXPECT_EQ(dictionary().findElementByStaticTag(0x3C0A), &uid);

    // OperationalPattern: the Preface's definition wins over the partition pack's.
    const MetaElement& pattern = element(u"Preface", u"OperationalPattern");
    EXPECT_EQ(dictionary().findElement(element(u"PartitionPack", u"OperationalPattern").ul()),
              &pattern);
}

// The index is a map, ordered by label with one entry each; it must hold every defined label.
TEST(MetaElement, LabelIndexHoldsEveryDefinedLabel) {
    const Dictionary& d = dictionary();
    std::set<Types::UniversalLabel> labels;
    for (auto it = d.metaMetadataSetBegin(); it != d.metaMetadataSetEnd(); ++it) {
        for (const MetaElement* own : it->second.ownElements()) {
            labels.insert(own->ul());
        }
    }
    for (auto it = d.packBegin(); it != d.packEnd(); ++it) {
        for (const MetaElement* own : it->second.ownElements()) {
            labels.insert(own->ul());
        }
    }
    std::size_t count = 0;
    for (auto it = d.metaElementBegin(); it != d.metaElementEnd(); ++it, ++count) {
        EXPECT_EQ(it->first, it->second->ul());
        EXPECT_EQ(labels.count(it->first), 1U);
    }
    // Several sets may define one label (BodySID); the index has it once.
    EXPECT_EQ(count, labels.size());
    EXPECT_LT(count, d.elementDefinitionCount());
}

} // namespace
