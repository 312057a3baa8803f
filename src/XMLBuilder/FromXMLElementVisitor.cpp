#include "Vellum/XMLBuilder/FromXMLElementVisitor.h"

#include "XMLBuilder/ImportTables.h"
#include "XMLBuilder/StoredBytesReader.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/DataIO/Slice.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/ArrayElement.h"
#include "Vellum/Metadata/BatchElement.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/Array.h"
#include "Vellum/Types/Batch.h"
#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/Factories/UID.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/Unknown.h"
#include "Vellum/Types/WeakReference.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "Vellum/XMLBuilder/FromXMLValueParser.h"

#include <string>

namespace Vellum::XMLBuilder {
namespace {

using Types::Identifiers::Identifier;
using ValuePtr = Templates::auto_ptr<Types::SimpleDataType>;

bool holdsRefSuffix(const WString& name) {
    return name.find(Vocabulary::refSuffix) != WString::npos;
}

std::string decimal(std::size_t value) {
    return std::to_string(value);
}

/// The empty value of a type whose stored form may be empty, for a collection item written
/// as an element without text; nullptr for the other types.
ValuePtr emptyValueOf(Identifier type) {
    switch (type) {
    case Identifier::DataStream:
        return std::make_unique<Types::DataStream>();
    case Identifier::ISO7String:
        return std::make_unique<Types::ISO7String>();
    case Identifier::Unknown:
        return std::make_unique<Types::Unknown>();
    case Identifier::UTF16String:
        return std::make_unique<Types::UTF16String>();
    default:
        return nullptr;
    }
}

/// An empty collection in its stored form: no items of the size of one reference.
constexpr std::uint8_t emptyReferenceCollection[8] = {0, 0, 0, 0, 0, 0, 0, 16};

} // namespace

FromXMLElementVisitor::FromXMLElementVisitor(const XMLNode& element,
                                             const MetaMetadata::MetaElement* metaElement,
                                             Metadata::PartitionMetadata& partition,
                                             ImportTables& tables, unsigned depth) noexcept
    : m_element(&element)
    , m_attribute(nullptr)
    , m_dataType(metaElement != nullptr ? metaElement->dataType() : Identifier::Unknown)
    , m_partition(partition)
    , m_tables(tables)
    , m_depth(depth) {}

FromXMLElementVisitor::FromXMLElementVisitor(const XMLAttribute& attribute,
                                             const MetaMetadata::MetaElement* metaElement,
                                             Metadata::PartitionMetadata& partition,
                                             ImportTables& tables, unsigned depth) noexcept
    : m_element(nullptr)
    , m_attribute(&attribute)
    , m_dataType(metaElement != nullptr ? metaElement->dataType() : Identifier::Unknown)
    , m_partition(partition)
    , m_tables(tables)
    , m_depth(depth) {}

FromXMLElementVisitor::~FromXMLElementVisitor() = default;

void FromXMLElementVisitor::visit(Metadata::SimpleElement& element) {
    ValuePtr value;
    if (m_element == nullptr) {
        value = FromXMLValueParser::parse(*m_attribute, m_dataType);
    } else {
        value = StoredBytesReader::read(*m_element, m_dataType);
        if (!value) {
            value = FromXMLValueParser::parse(*m_element, m_dataType);
        }
    }
    if (value) {
        element.set(std::move(value), false);
    }
}

Templates::vector<ValuePtr> FromXMLElementVisitor::readItems(const XMLNode& property,
                                                             Identifier itemType) const {
    Templates::vector<ValuePtr> items;
    items.reserve(property.childCount());
    for (const XMLNode& child : property.children()) {
        ValuePtr item = StoredBytesReader::read(child, itemType);
        if (!item) {
            item = FromXMLValueParser::parse(child, itemType);
        }
        if (!item) {
            item = emptyValueOf(itemType);
        }
        if (!item) {
            VELLUM_THROW(InvalidFormat, "item " + decimal(items.size() + 1) + " of " +
                                            Utils::wstringToString(property.qualifiedName()) +
                                            " holds no value");
        }
        items.push_back(std::move(item));
    }
    return items;
}

std::uint32_t FromXMLElementVisitor::itemSize(const Templates::vector<ValuePtr>& items,
                                              Identifier itemType) const {
    if (const auto fixed = Types::Identifiers::typeSize(itemType)) {
        return *fixed;
    }
    // Items of a variable-size type are stored at one size: the first non-empty item's.
    std::uint32_t size = 0;
    for (const ValuePtr& item : items) {
        const std::uint32_t itemBytes = item->serializedSize();
        if (size == 0) {
            size = itemBytes;
        } else if (itemBytes != size) {
            throw Exceptions::InvalidLength(
                std::string("subElementSize == dataType -> serializedSize (): There is a "
                            "collection in the XML that contains an ARRAY or COLLECTION that "
                            "contain elements with different sizes."),
                sourceName, 957);
        }
    }
    return size;
}

template <class CollectionType, class ElementType>
void FromXMLElementVisitor::readCollection(ElementType& element) {
    if (m_element == nullptr) {
        return;
    }
    if (const auto stored = StoredBytesReader::emptyCollection(*m_element); !stored.empty()) {
        element.readValue(DataIO::Slice(stored.data(), stored.size()));
        return;
    }
    const Identifier itemType = element.itemType();
    Templates::vector<ValuePtr> items = readItems(*m_element, itemType);
    auto collection = std::make_unique<CollectionType>(itemSize(items, itemType), itemType);
    for (ValuePtr& item : items) {
        collection->append(std::move(item));
    }
    element.set(std::move(collection));
}

void FromXMLElementVisitor::visit(Metadata::BatchElement& element) {
    readCollection<Types::Batch>(element);
}

void FromXMLElementVisitor::visit(Metadata::ArrayElement& element) {
    readCollection<Types::Array>(element);
}

Templates::auto_ptr<Types::Reference> FromXMLElementVisitor::referenceByName(const XMLNode& child,
                                                                             Identifier kind) {
    // The target is named by the attribute whose qualified name sorts first (the order in
    // which a DOM keeps attributes); namespace declarations are not attributes.
    const XMLAttribute* nameAttribute = nullptr;
    for (const XMLAttribute& attribute : child.attributes()) {
        if (nameAttribute == nullptr ||
            attribute.name->qualifiedName < nameAttribute->name->qualifiedName) {
            nameAttribute = &attribute;
        }
    }
    if (nameAttribute == nullptr) {
        VELLUM_THROW(ParseError, u"the reference element " + child.qualifiedName() +
                                     u" has no attribute naming its target");
    }
    const Types::UUID identifier = m_tables.names().identifierFor(nameAttribute->value);
    if (kind == Identifier::StrongReference) {
        return std::make_unique<Types::StrongReference>(identifier);
    }
    if (kind == Identifier::WeakReference) {
        return std::make_unique<Types::WeakReference>(identifier);
    }
    return nullptr;
}

Metadata::MetadataSet* FromXMLElementVisitor::readInlineSet(const XMLNode& child) {
    if (Metadata::MetadataSet* made = m_tables.takeMadeSet(child)) {
        return made; // read already, as a unit of its own
    }
    const MetaMetadata::MetaMetadataSet* definition = m_tables.setNamed(child.name());
    if (definition == nullptr) {
        return nullptr;
    }
    if (m_depth >= maximumInlineDepth) {
        VELLUM_THROW(ParseError, u"sets written inline nest more than " +
                                     Utils::stringToWstring(decimal(maximumInlineDepth)) +
                                     u" levels deep at " + child.qualifiedName());
    }
    Metadata::MetadataSet* set =
        m_partition.createMetadataSet(m_tables.setKeyOf(child, *definition));
    FromXMLMetadataSetVisitor reader(child, m_partition, m_tables, m_depth + 1);
    set->accept(reader);
    return set;
}

void FromXMLElementVisitor::visit(Metadata::ReferenceElement& element) {
    const XMLNode* first = m_element != nullptr ? m_element->firstChild() : nullptr;
    if (first == nullptr) {
        return;
    }
    if (holdsRefSuffix(first->localName())) {
        if (auto reference = referenceByName(*first, m_dataType)) {
            element.setUnverifiedReference(std::move(reference));
        }
        return;
    }
    if (const Metadata::MetadataSet* target = readInlineSet(*first)) {
        element.set(target);
    }
}

void FromXMLElementVisitor::readReferenceCollection(Metadata::ReferenceCollectionElement& element) {
    if (m_element == nullptr) {
        return;
    }
    if (m_element->children().empty()) {
        // Present and empty: the stored form of a collection without items.
        const auto stored = StoredBytesReader::emptyCollection(*m_element);
        element.readValue(stored.empty() ? DataIO::Slice(emptyReferenceCollection,
                                                         sizeof emptyReferenceCollection)
                                         : DataIO::Slice(stored.data(), stored.size()));
        return;
    }
    for (const XMLNode& child : m_element->children()) {
        if (holdsRefSuffix(child.qualifiedName())) {
            if (auto reference = referenceByName(child, element.itemType())) {
                element.appendUnverified(std::move(reference));
            }
        } else if (const Metadata::MetadataSet* target = readInlineSet(child)) {
            element.append(target);
        }
    }
}

void FromXMLElementVisitor::visit(Metadata::ReferenceBatchElement& element) {
    readReferenceCollection(element);
}

void FromXMLElementVisitor::visit(Metadata::ReferenceArrayElement& element) {
    readReferenceCollection(element);
}

} // namespace Vellum::XMLBuilder
