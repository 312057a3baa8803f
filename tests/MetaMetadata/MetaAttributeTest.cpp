#include "Vellum/MetaMetadata/MetaAttribute.h"

#include "Support/ExpectThrow.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/MetaMetadata/AbstractMetaAttributeVisitor.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaCollectionElement.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace Vellum;
using namespace Vellum::MetaMetadata;

// Records which visit ran and what it saw.
class Recorder : public AbstractMetaAttributeVisitor {
public:
    void visit(const UnknownAttribute& attribute) override {
        kind = "unknown";
        tag = attribute.localTag().value();
    }
    void visit(const MisplacedAttribute& attribute) override {
        kind = "misplaced";
        element = &attribute.metaElement();
    }
    void visit(const MetaAttribute& attribute) override {
        kind = "placed";
        element = &attribute.metaElement();
    }

    std::string kind;
    const MetaElement* element = nullptr;
    std::uint16_t tag = 0;
};

TEST(MetaAttribute, EachKindReachesItsOwnVisit) {
    const auto dictionary = Dictionary::builtIn();
    const MetaElement* depth = dictionary->findElementByStaticTag(0x3301);
    ASSERT_NE(depth, nullptr);

    struct Case {
        std::shared_ptr<const AbstractMetaAttribute> attribute;
        const char* kind;
        const MetaElement* element;
        std::uint16_t tag;
    };
    const Case cases[] = {
        {depth->attribute(), "placed", depth, 0},
        {std::make_shared<const MisplacedAttribute>(*depth), "misplaced", depth, 0},
        {std::make_shared<const UnknownAttribute>(Types::LocalTag(0x8012),
                                                  UnknownAttribute::LocalTagNotResolved),
         "unknown", nullptr, 0x8012},
    };
    for (const Case& c : cases) {
        Recorder recorder;
        c.attribute->accept(recorder);
        EXPECT_EQ(recorder.kind, c.kind);
        EXPECT_EQ(recorder.element, c.element);
        EXPECT_EQ(recorder.tag, c.tag);
    }
}

TEST(MetaAttribute, PlacedAttributeCarriesTheRequiredStatus) {
    const auto dictionary = Dictionary::builtIn();
    const MetaElement* depth = dictionary->findElementByStaticTag(0x3301);
    const MetaElement* colorSiting = dictionary->findElementByStaticTag(0x3303);
    const MetaElement* objectClass = dictionary->findElementByStaticTag(0x0101);
    EXPECT_EQ(depth->attribute()->requiredStatus(), AttributeRequiredStatus::BestEffort);
    EXPECT_EQ(colorSiting->attribute()->requiredStatus(), AttributeRequiredStatus::Optional);
    EXPECT_EQ(objectClass->attribute()->requiredStatus(), AttributeRequiredStatus::DecoderRequired);
    EXPECT_EQ(&depth->attribute()->metaElement(), depth);
}

TEST(AttributeRequiredStatus, NamesMatchTheDictionaryFile) {
    using namespace AttributeRequiredStatus;
    EXPECT_STREQ(name(Required), "required");
    EXPECT_STREQ(name(Optional), "optional");
    EXPECT_STREQ(name(BestEffort), "best-effort");
    EXPECT_STREQ(name(DecoderRequired), "decoder-required");
    EXPECT_STREQ(name(EncoderRequired), "encoder-required");
    EXPECT_EQ(name(static_cast<Status>(5)), nullptr);
}

TEST(MetaCollectionElement, RejectsAKindThatIsNoCollection) {
    const auto dictionary = Dictionary::builtIn();
    const MetaMetadataSet* preface = dictionary->findSetByName(u"Preface");
    MetaElement::Definition definition;
    definition.name = u"Odd";
    definition.valueType = Types::Identifiers::UInt8;
    EXPECT_THROW_MSG_HAS(MetaCollectionElement(definition, *preface, Types::Identifiers::UInt8),
                         InvalidFormat, "'Odd': a collection is a Batch or an Array");
    const MetaCollectionElement array(definition, *preface, Types::Identifiers::Array);
    EXPECT_EQ(array.dataType(), Types::Identifiers::Array);
    EXPECT_EQ(array.dataSubType(), Types::Identifiers::UInt8);
    EXPECT_EQ(array.attribute()->requiredStatus(), AttributeRequiredStatus::Optional);
}

} // namespace
