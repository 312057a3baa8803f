#include "Vellum/MetaMetadata/MetaMetadataSet.h"

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
    const char16_t* prefix;
    const char16_t* uri;
    bool abstract;
    bool structural;
};

class SetXmlMapping : public ::testing::TestWithParam<SetMapping> {};

TEST_P(SetXmlMapping, FollowsTheDefiningStandard) {
    const SetMapping& c = GetParam();
    const MetaMetadataSet& s = set(c.set);
    ASSERT_NE(s.property(u"XMLTagName"), nullptr);
    EXPECT_EQ(*s.property(u"XMLTagName"), c.set);
    EXPECT_EQ(*s.property(u"XMLDefaultPrefix"), c.prefix);
    EXPECT_EQ(*s.property(u"XMLNamespaceURI"), c.uri);
    EXPECT_EQ(s.isAbstract(), c.abstract);
    EXPECT_EQ(s.isStructural(), c.structural);
    EXPECT_EQ(s.property(u"SchemaIndex"), nullptr);
    EXPECT_EQ(s.property(u"xmltagname"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    BuiltIn, SetXmlMapping,
    ::testing::Values(
        SetMapping{u"Preface", u"s377m", u"urn:SMPTE:S377M", false, true},
        SetMapping{u"InterchangeObject", u"s377m", u"urn:SMPTE:S377M", true, true},
        SetMapping{u"CDCIEssenceDescriptor", u"s377m", u"urn:SMPTE:S377M", false, true},
        SetMapping{u"MPEG2VideoDescriptor", u"s381m", u"urn:SMPTE:S381M", false, true},
        SetMapping{u"WAVEPCMDescriptor", u"s382m", u"urn:SMPTE:S382M", false, true},
        SetMapping{u"JPEG2000PictureSubDescriptor", u"s422m", u"urn:SMPTE:S422M", false, true},
        SetMapping{u"ANCDataDescriptor", u"s436m", u"urn:SMPTE:S436M", false, true},
        SetMapping{u"AudioChannelLabelSubDescriptor", u"s377-4m", u"urn:SMPTE:S377-4M", false,
                   true},
        SetMapping{u"DMSegment", u"s377m", u"urn:SMPTE:S377M", false, true},
        SetMapping{u"DMFramework", u"s377m", u"urn:SMPTE:S377M", true, false},
        SetMapping{u"ProductionFramework", u"dms1", u"urn:SMPTE:DMS1", false, false}),
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

    // Sizes add up along the chain, and the schema index order puts each ancestor's
    // elements before its descendant's.
    std::size_t expected = 0;
    for (const MetaMetadataSet* s = &cdci; s != nullptr; s = s->parent()) {
        expected += s->ownElements().size();
    }
    EXPECT_EQ(cdci.elements().size(), expected);
    const auto& ordered = cdci.elementsBySchemaIndex();
    ASSERT_EQ(ordered.size(), expected);
    EXPECT_EQ(ordered.front(), uid);
    EXPECT_EQ(*ordered.front()->property(u"SchemaIndex"), u"1");
    for (std::size_t i = 1; i < ordered.size(); ++i) {
        EXPECT_LT(ordered[i - 1]->schemaIndex(), ordered[i]->schemaIndex());
        EXPECT_LE(ordered[i - 1]->definingSet().depth(), ordered[i]->definingSet().depth());
    }
    EXPECT_EQ(ordered.back()->definingSet().name(), u"CDCIEssenceDescriptor");
    EXPECT_EQ(ordered.back()->schemaIndex(), 400 + ordered.back()->order());
}

TEST(MetaMetadataSet, EverySetHasItsParentsElementsAndSchemaIndexRule) {
    const Dictionary& d = dictionary();
    for (auto it = d.metaMetadataSetBegin(); it != d.metaMetadataSetEnd(); ++it) {
        const MetaMetadataSet& s = it->second;
        EXPECT_EQ(it->first, s.key());
        if (s.parent() != nullptr) {
            for (const auto& [ul, element] : s.parent()->elements()) {
                EXPECT_EQ(s.findElement(ul), element) << "inherited by set";
            }
        }
        for (const MetaElement* own : s.ownElements()) {
            EXPECT_EQ(&own->definingSet(), &s);
            EXPECT_EQ(own->schemaIndex(), own->order() + 100 * s.depth());
        }
    }
}

TEST(MetaMetadataSet, LooksUpLabelsIgnoringTheVersionByte) {
    const MetaMetadataSet& preface = set(u"Preface");
    Types::UniversalLabel::Bytes bytes = label(instanceUID).bytes();
    for (const std::uint8_t version : {0x00, 0x05, 0x7F, 0xFF}) {
        bytes[7] = version;
        EXPECT_EQ(preface.findElement(Types::UniversalLabel(bytes)),
                  preface.findElement(label(instanceUID)));
    }
    bytes[7] = 0x01;
    bytes[15] = 0x01;
    EXPECT_EQ(preface.findElement(Types::UniversalLabel(bytes)), nullptr);
    EXPECT_EQ(preface.findElementByTag(0x3301), nullptr) << "a CDCI tag is not in a Preface";
    EXPECT_EQ(preface.attribute(Types::UniversalLabel(bytes)), nullptr);
}

TEST(MetaMetadataSet, SharesOneAttributePerElementDefinition) {
    const auto fromPreface = set(u"Preface").attribute(label(instanceUID));
    const auto fromTrack = set(u"Track").attribute(label(instanceUID));
    ASSERT_NE(fromPreface, nullptr);
    EXPECT_EQ(fromPreface, fromTrack);
    EXPECT_EQ(&fromPreface->metaElement(), set(u"Preface").findElement(label(instanceUID)));
    EXPECT_EQ(fromPreface->requiredStatus(), AttributeRequiredStatus::Required);
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
