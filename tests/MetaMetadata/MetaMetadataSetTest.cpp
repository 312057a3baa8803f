#include "Vellum/MetaMetadata/MetaMetadataSet.h"

#include "Support/PrintCase.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Types/StringRepresentation.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using namespace Vellum;
using namespace Vellum::MetaMetadata;

const Dictionary& dictionary() {
    static const auto builtIn = Dictionary::builtIn();
    return *builtIn;
}

const MetaMetadataSet& set(const char16_t* name) {
    const MetaMetadataSet* found = dictionary().findSetByName(name);
    if (found == nullptr) {
        throw std::runtime_error("no set " + Utils::wstringToString(WString(name)));
    }
    return *found;
}

Types::UniversalLabel label(const char16_t* text) {
    return Types::UniversalLabel(WString(text), Types::DottedHex);
}

const auto instanceUID = u"06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00";

struct SetMapping {
    const char16_t* set;
    const char16_t* key;
    const char16_t* parent; // empty: a root set
    const char16_t* prefix;
    const char16_t* uri;
    bool abstract;
    bool structural;
};
VELLUM_PRINT_CASE(SetMapping, Vellum::Utils::wstringToString(Vellum::WString(c.set)))

class SetDefinition : public ::testing::TestWithParam<SetMapping> {};

TEST_P(SetDefinition, HasItsKeyParentAndXmlName) {
    const SetMapping& c = GetParam();
    const MetaMetadataSet& s = set(c.set);
    EXPECT_EQ(s.key(), KLV::Key(WString(c.key), Types::DottedHex));
    EXPECT_EQ(dictionary().findSet(s.key()), &s);
    EXPECT_EQ(s.parent() == nullptr ? WString() : s.parent()->name(), c.parent);
    ASSERT_NE(s.property(u"XMLTagName"), nullptr);
    EXPECT_EQ(*s.property(u"XMLTagName"), c.set);
    EXPECT_EQ(*s.property(u"XMLDefaultPrefix"), c.prefix);
    EXPECT_EQ(*s.property(u"XMLNamespaceURI"), c.uri);
    EXPECT_EQ(s.isAbstract(), c.abstract);
    EXPECT_EQ(s.isStructural(), c.structural);
    EXPECT_EQ(s.property(u"SchemaIndex"), nullptr);
    EXPECT_EQ(s.property(u"xmltagname"), nullptr);
}

constexpr auto s377 = u"urn:SMPTE:S377M";

// The first rows are sets the reference tables list, whose usual MXF names and namespaces
// stay as they were (CDCIEssenceDescriptor, not the register's CDCIDescriptor); the others
// come from the registers alone.
INSTANTIATE_TEST_SUITE_P(
    BuiltIn, SetDefinition,
    ::testing::Values(
        SetMapping{u"Preface", u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00",
                   u"InterchangeObject", u"s377m", s377, false, true},
        SetMapping{u"InterchangeObject", u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.01.00", u"",
                   u"s377m", s377, true, true},
        SetMapping{u"CDCIEssenceDescriptor", u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.28.00",
                   u"GenericPictureEssenceDescriptor", u"s377m", s377, false, true},
        SetMapping{u"MPEG2VideoDescriptor", u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.51.00",
                   u"CDCIEssenceDescriptor", u"s381m", u"urn:SMPTE:S381M", false, true},
        SetMapping{u"DMFramework", u"06.0E.2B.34.02.53.01.01.0D.01.04.01.00.00.00.00",
                   u"InterchangeObject", u"s377m", s377, true, false},
        SetMapping{u"PHDRMetadataTrackSubDescriptor",
                   u"06.0E.2B.34.02.53.01.05.0E.09.06.07.01.01.01.03", u"SubDescriptor", u"rdd56",
                   u"urn:SMPTE:RDD56", false, true},
        SetMapping{u"AS11CoreFramework", u"06.0E.2B.34.02.53.01.01.0D.01.07.01.0B.01.01.00",
                   u"DMFramework", u"as11", u"urn:AMWA:AS-11", false, false},
        SetMapping{u"MetaDictionary", u"06.0E.2B.34.02.53.01.01.0D.01.01.01.02.25.00.00", u"",
                   u"aaf", u"urn:AAF:ObjectModel", false, false},
        SetMapping{u"TapeDescriptor", u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2E.00",
                   u"GenericDescriptor", u"aaf", u"urn:AAF:ObjectModel", false, true}),
    [](const auto& p) { return Utils::wstringToString(WString(p.param.set)); });

TEST(MetaMetadataSet, InheritsEveryParentElementParentFirst) {
    const MetaMetadataSet& cdci = set(u"CDCIEssenceDescriptor");
    ASSERT_EQ(cdci.parent(), &set(u"GenericPictureEssenceDescriptor"));
    EXPECT_EQ(cdci.depth(), 4U);
    EXPECT_TRUE(cdci.isKindOf(set(u"InterchangeObject")));
    EXPECT_FALSE(set(u"InterchangeObject").isKindOf(cdci));

    const MetaElement* uid = cdci.findElement(label(instanceUID));
    ASSERT_NE(uid, nullptr);
    EXPECT_EQ(&uid->definingSet(), &set(u"InterchangeObject"));
    EXPECT_EQ(cdci.findElementByTag(0x3C0A), uid);
    const auto& ordered = cdci.elementsBySchemaIndex();
    EXPECT_EQ(ordered.front(), uid);
    EXPECT_EQ(*ordered.front()->property(u"SchemaIndex"), u"1");
    EXPECT_EQ(ordered.back()->definingSet().name(), u"CDCIEssenceDescriptor");
}

// Every set has its parent's elements under the same definitions and attributes, its own at
// schema index 100 * depth + order, and lists them all in schema index order, each ancestor's
// before its descendant's.
TEST(MetaMetadataSet, EverySetHasItsParentsElementsAndSchemaIndexRule) {
    const Dictionary& d = dictionary();
    for (auto it = d.metaMetadataSetBegin(); it != d.metaMetadataSetEnd(); ++it) {
        const MetaMetadataSet& s = it->second;
        SCOPED_TRACE(Utils::wstringToString(s.name()));
        EXPECT_EQ(it->first, s.key());
        std::size_t expected = s.ownElements().size();
        if (s.parent() != nullptr) {
            expected += s.parent()->elements().size();
            for (const auto& [ul, element] : s.parent()->elements()) {
                EXPECT_EQ(s.findElement(ul), element);
                EXPECT_EQ(s.attribute(ul), element->attribute());
            }
        }
        for (const MetaElement* own : s.ownElements()) {
            EXPECT_EQ(&own->definingSet(), &s);
            EXPECT_EQ(own->schemaIndex(), own->order() + 100 * s.depth());
        }
        EXPECT_EQ(s.elements().size(), expected);
        const auto& ordered = s.elementsBySchemaIndex();
        ASSERT_EQ(ordered.size(), expected);
        for (std::size_t i = 0; i < ordered.size(); ++i) {
            EXPECT_EQ(s.findElement(ordered[i]->ul()), ordered[i]);
            if (i > 0) {
                EXPECT_LT(ordered[i - 1]->schemaIndex(), ordered[i]->schemaIndex());
                EXPECT_LE(ordered[i - 1]->definingSet().depth(), ordered[i]->definingSet().depth());
            }
        }
    }
}

TEST(MetaMetadataSet, KeylessAndPackDefinitions) {
    const MetaMetadataSet& generation = set(u"GenerationInterchangeObject");
    EXPECT_FALSE(generation.hasKey());
    EXPECT_EQ(generation.key(), KLV::Key());
    EXPECT_TRUE(generation.isAbstract());

    const MetaMetadataSet& primer = set(u"PrimerPack");
    EXPECT_EQ(primer.kind(), MetaMetadataSet::Kind::Pack);
    EXPECT_EQ(dictionary().findPack(primer.key()), &primer);
    EXPECT_EQ(dictionary().findSet(primer.key()), nullptr);
    const MetaMetadataSet& closed = set(u"HeaderPartitionClosedComplete");
    EXPECT_EQ(closed.elements().size(), set(u"PartitionPack").ownElements().size());
}

} // namespace
