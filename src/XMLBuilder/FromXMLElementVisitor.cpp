#include "Vellum/XMLBuilder/FromXMLElementVisitor.h"

#include "XMLBuilder/StoredBytes.h"

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
#include "Vellum/XMLBuilder/NodeSelector.h"
#include "Vellum/XMLBuilder/Vocabulary.h"
#include "Vellum/XMLUtils/Document.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include <string>

namespace Vellum::XMLBuilder {
namespace {

using Types::Identifiers::Identifier;
using ValuePtr = Templates::auto_ptr<Types::SimpleDataType>;

WString nameOf(const xercesc::DOMNode& node) {
    WString name;
    XMLUtils::utf16ToWstring(node.getNodeName(), name);
    return name;
}

WString localNameOf(const xercesc::DOMNode& node) {
    const XMLCh* local = node.getLocalName();
    return local != nullptr ? WString(local) : nameOf(node);
}

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

FromXMLElementVisitor::FromXMLElementVisitor(xercesc::DOMNode& node,
                                             const MetaMetadata::MetaElement* metaElement,
                                             Metadata::PartitionMetadata& partition,
                                             const SetTagTable& setTags, ReferenceNameTable& names,
                                             unsigned depth) noexcept
    : m_node(node)
    , m_dataType(metaElement != nullptr ? metaElement->dataType() : Identifier::Unknown)
    , m_partition(partition)
    , m_setTags(setTags)
    , m_names(names)
    , m_depth(depth) {}

FromXMLElementVisitor::~FromXMLElementVisitor() = default;

xercesc::DOMElement* FromXMLElementVisitor::element() const noexcept {
    return m_node.getNodeType() == xercesc::DOMNode::ELEMENT_NODE
               ? static_cast<xercesc::DOMElement*>(&m_node)
               : nullptr;
}

void FromXMLElementVisitor::visit(Metadata::SimpleElement& element) {
    ValuePtr value = StoredBytes::read(m_node, m_dataType);
    if (!value) {
        value = FromXMLValueParser::parse(m_node, m_dataType);
    }
    if (value) {
        element.set(std::move(value), false);
    }
}

Templates::vector<ValuePtr> FromXMLElementVisitor::readItems(xercesc::DOMElement& property,
                                                             Identifier itemType) const {
    Templates::vector<ValuePtr> items;
    for (xercesc::DOMElement* child : NodeSelector::elementChildren(property)) {
        ValuePtr item = StoredBytes::read(*child, itemType);
        if (!item) {
            item = FromXMLValueParser::parse(*child, itemType);
        }
        if (!item) {
            item = emptyValueOf(itemType);
        }
        if (!item) {
            VELLUM_THROW(InvalidFormat, "item " + decimal(items.size() + 1) + " of " +
                                            Utils::wstringToString(nameOf(property)) +
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
    xercesc::DOMElement* property = this->element();
    if (property == nullptr) {
        return;
    }
    if (const auto stored = StoredBytes::emptyCollection(*property); !stored.empty()) {
        element.readValue(DataIO::Slice(stored.data(), stored.size()));
        return;
    }
    const Identifier itemType = element.itemType();
    Templates::vector<ValuePtr> items = readItems(*property, itemType);
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

Templates::auto_ptr<Types::Reference>
FromXMLElementVisitor::referenceByName(const xercesc::DOMElement& child, Identifier kind) {
    // The target is named by the first attribute; namespace declarations are not attributes.
    const xercesc::DOMNamedNodeMap* attributes = child.getAttributes();
    const xercesc::DOMNode* nameAttribute = nullptr;
    for (XMLSize_t i = 0; attributes != nullptr && i < attributes->getLength(); ++i) {
        const xercesc::DOMNode* attribute = attributes->item(i);
        const XMLCh* space = attribute->getNamespaceURI();
        if (space == nullptr || WString(space) != Vocabulary::xmlnsNamespace) {
            nameAttribute = attribute;
            break;
        }
    }
    if (nameAttribute == nullptr) {
        VELLUM_THROW(ParseError, u"the reference element " + nameOf(child) +
                                     u" has no attribute naming its target");
    }
    const WString& identifier = m_names.identifierFor(NodeSelector::text(*nameAttribute));
    if (kind == Identifier::StrongReference) {
        return std::make_unique<Types::StrongReference>(identifier);
    }
    if (kind == Identifier::WeakReference) {
        return std::make_unique<Types::WeakReference>(identifier);
    }
    return nullptr;
}

Metadata::MetadataSet* FromXMLElementVisitor::readInlineSet(xercesc::DOMElement& child) {
    const auto definition = m_setTags.find(localNameOf(child));
    if (definition == m_setTags.end()) {
        return nullptr;
    }
    if (m_depth >= maximumInlineDepth) {
        VELLUM_THROW(ParseError, u"sets written inline nest more than " +
                                     Utils::stringToWstring(decimal(maximumInlineDepth)) +
                                     u" levels deep at " + nameOf(child));
    }
    Metadata::MetadataSet* set = m_partition.createMetadataSet(definition->second->key());
    FromXMLMetadataSetVisitor reader(child, m_setTags, m_partition, m_names, m_depth + 1);
    set->accept(reader);
    return set;
}

void FromXMLElementVisitor::visit(Metadata::ReferenceElement& element) {
    xercesc::DOMElement* property = this->element();
    xercesc::DOMElement* first =
        property != nullptr ? NodeSelector::firstElementChild(*property) : nullptr;
    if (first == nullptr) {
        return;
    }
    if (holdsRefSuffix(localNameOf(*first))) {
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
    xercesc::DOMElement* property = this->element();
    if (property == nullptr) {
        return;
    }
    const std::vector<xercesc::DOMElement*> children = NodeSelector::elementChildren(*property);
    if (children.empty()) {
        // Present and empty: the stored form of a collection without items.
        const auto stored = StoredBytes::emptyCollection(*property);
        element.readValue(stored.empty() ? DataIO::Slice(emptyReferenceCollection,
                                                         sizeof emptyReferenceCollection)
                                         : DataIO::Slice(stored.data(), stored.size()));
        return;
    }
    for (xercesc::DOMElement* child : children) {
        if (holdsRefSuffix(nameOf(*child))) {
            if (auto reference = referenceByName(*child, element.itemType())) {
                element.appendUnverified(std::move(reference));
            }
        } else if (const Metadata::MetadataSet* target = readInlineSet(*child)) {
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
