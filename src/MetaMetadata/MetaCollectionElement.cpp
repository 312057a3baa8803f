#include "Vellum/MetaMetadata/MetaCollectionElement.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Utils/StringConversion.h"

namespace Vellum::MetaMetadata {

MetaCollectionElement::MetaCollectionElement(Definition definition,
                                             const MetaMetadataSet& definingSet,
                                             Types::Identifiers::Identifier collectionKind)
    : MetaElement(std::move(definition), definingSet)
    , m_collectionKind(collectionKind) {
    if (collectionKind != Types::Identifiers::Batch &&
        collectionKind != Types::Identifiers::Array) {
        VELLUM_THROW(InvalidFormat, "element '" + Utils::wstringToString(name()) +
                                        "': a collection is a Batch or an Array, not type " +
                                        std::to_string(static_cast<unsigned>(collectionKind)));
    }
}

MetaCollectionElement::~MetaCollectionElement() = default;

Types::Identifiers::Identifier MetaCollectionElement::dataType() const noexcept {
    return m_collectionKind;
}

bool MetaCollectionElement::isCollection() const noexcept {
    return true;
}

} // namespace Vellum::MetaMetadata
