#include "Metadata/MetaElementOf.h"

#include "Vellum/MetaMetadata/AbstractMetaAttributeVisitor.h"
#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"

namespace Vellum::Metadata::detail {
namespace {

class MetaElementFinder final : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    void visit(const MetaMetadata::UnknownAttribute& /*attribute*/) override { found = nullptr; }
    void visit(const MetaMetadata::MisplacedAttribute& attribute) override {
        found = &attribute.metaElement();
    }
    void visit(const MetaMetadata::MetaAttribute& attribute) override {
        found = &attribute.metaElement();
    }

    const MetaMetadata::MetaElement* found = nullptr;
};

} // namespace

const MetaMetadata::MetaElement*
metaElementOf(const MetaMetadata::AbstractMetaAttribute& attribute) {
    MetaElementFinder finder;
    attribute.accept(finder);
    return finder.found;
}

} // namespace Vellum::Metadata::detail
