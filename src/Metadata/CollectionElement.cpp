#include "Vellum/Metadata/CollectionElement.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Types/Array.h"
#include "Vellum/Types/Batch.h"
#include "Vellum/Types/Factories/ValueFactory.h"
#include "Vellum/Utils/StringConversion.h"

#include <utility>

namespace Vellum::Metadata {
namespace {

std::string nameOf(const MetaMetadata::MetaElement* meta) {
    return meta != nullptr ? Utils::wstringToString(meta->name()) : std::string("(unknown)");
}

} // namespace

CollectionElement::CollectionElement(MetadataSet& owner, AttributePtr attribute,
                                     Types::Identifiers::Identifier kind,
                                     Types::Identifiers::Identifier itemType)
    : Element(owner, std::move(attribute))
    , m_kind(kind)
    , m_itemType(itemType) {}

CollectionElement::~CollectionElement() = default;

const Types::SimpleDataType& CollectionElement::at(std::uint32_t index) const {
    if (!m_items) {
        VELLUM_THROW(InvalidLength, "element " + nameOf(metaElement()) + " holds no items");
    }
    return m_items->at(index);
}

void CollectionElement::append(Templates::auto_ptr<Types::SimpleDataType> item) {
    if (!item) {
        VELLUM_THROW(InvalidFormat, "cannot append a null item to " + nameOf(metaElement()));
    }
    if (item->identifier() != m_itemType) {
        VELLUM_THROW(InvalidFormat, "element " + nameOf(metaElement()) + " holds " +
                                        Types::Identifiers::typeName(m_itemType) + " items, not " +
                                        Types::Identifiers::typeName(item->identifier()));
    }
    if (!m_items) {
        const std::uint32_t size = item->serializedSize();
        if (m_kind == Types::Identifiers::Batch) {
            m_items = std::make_unique<Types::Batch>(size, m_itemType);
        } else {
            m_items = std::make_unique<Types::Array>(size, m_itemType);
        }
    }
    m_items->append(std::move(item));
    valueChanged();
}

void CollectionElement::clear() noexcept {
    m_items.reset();
}

std::uint64_t CollectionElement::valueSize() const {
    return m_items ? m_items->serializedSize() : 0;
}

void CollectionElement::serializeValue(DataIO::DataSink& sink) const {
    if (m_items) {
        m_items->serialize(sink);
    }
}

void CollectionElement::readValue(DataIO::Slice bytes) {
    m_items = Types::Factories::ValueFactory::createCollection(m_kind, m_itemType, bytes);
    valueChanged();
}

void CollectionElement::setCollection(Templates::auto_ptr<Types::Collection> items) {
    if (!items) {
        VELLUM_THROW(InvalidFormat, "element " + nameOf(metaElement()) + " cannot take a null " +
                                        Types::Identifiers::typeName(m_kind));
    }
    if (items->identifier() != m_kind || items->itemType() != m_itemType) {
        VELLUM_THROW(InvalidFormat, "element " + nameOf(metaElement()) + " takes a " +
                                        Types::Identifiers::typeName(m_kind) + " of " +
                                        Types::Identifiers::typeName(m_itemType) + ", not a " +
                                        Types::Identifiers::typeName(items->identifier()) + " of " +
                                        Types::Identifiers::typeName(items->itemType()));
    }
    m_items = std::move(items);
    valueChanged();
}

} // namespace Vellum::Metadata
