#include "Vellum/XMLBuilder/FromXMLMetadataSetVisitor.h"

#include "XMLBuilder/ImportTables.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionDictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Metadata/Structural/StructuralMetadataULs.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/XMLBuilder/FromXMLElementVisitor.h"
#include "Vellum/XMLBuilder/NodeSelector.h"

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace Vellum::XMLBuilder {
namespace {

struct Names {
    WString groups{Vocabulary::groupsPrefix};
    WString extensionElements{u"ExtensionElements"};
    WString rp210{u"rp210:"};
    WString rp210Namespace{Vocabulary::rp210Namespace};
};

const Names& names() {
    static const Names constants;
    return constants;
}

/// The value of the attribute `qualifiedName`; empty when there is none.
WString attributeText(const XMLNode& element, std::u16string_view qualifiedName) {
    const XMLAttribute* attribute = element.attribute(qualifiedName);
    return attribute != nullptr ? WString(attribute->value) : WString();
}

const XMLNode& rootOf(const XMLNode& element) {
    const XMLNode* node = &element;
    while (node->parent() != nullptr) {
        node = node->parent();
    }
    return *node;
}

/// The namespaces the prefixes of a set's elements select at its XML element, each looked up
/// once (a set's elements use few prefixes).
class PrefixNamespaces {
public:
    explicit PrefixNamespaces(const XMLNode& element) noexcept
        : m_element(element) {}

    const WString& of(const WString& prefix) {
        for (const auto& [known, space] : m_resolved) {
            if (*known == prefix) {
                return *space;
            }
        }
        // A prefix unbound at the set's element is taken as the rp210 namespace.
        const WString& space =
            NodeSelector::selectedNamespace(m_element, prefix, &names().rp210Namespace);
        m_resolved.emplace_back(&prefix, &space);
        return space;
    }

private:
    const XMLNode& m_element;
    std::vector<std::pair<const WString*, const WString*>> m_resolved;
};

} // namespace

FromXMLMetadataSetVisitor::~FromXMLMetadataSetVisitor() = default;

void FromXMLMetadataSetVisitor::readElement(const XMLNode& node,
                                            const MetaMetadata::MetaElement* meta,
                                            Metadata::Element& element) {
    FromXMLElementVisitor reader(node, meta, m_partition, m_tables, m_depth);
    element.accept(reader);
}

void FromXMLMetadataSetVisitor::visit(Metadata::MetadataSet& set) {
    PrefixNamespaces namespaces(m_element);
    const std::vector<ImportTables::ElementReading>& readings = m_tables.readingsOf(set);
    std::size_t position = 0;
    // The elements are read in label order (the order in which fresh identifiers are drawn
    // and sets written inline are made).
    for (const auto& [label, element] : set) {
        const ImportTables::ElementReading reading =
            position < readings.size() && readings[position].meta == element->metaElement()
                ? readings[position]
                : ImportTables::readingOf(*element);
        ++position;
        if (reading.meta == nullptr || reading.tagName == nullptr || reading.prefix == nullptr) {
            continue;
        }
        if (reading.identity) {
            readIdentity(set, *element, *reading.meta, *reading.tagName);
            continue;
        }
        const XMLNode* child =
            NodeSelector::firstNamed(m_element, namespaces.of(*reading.prefix), *reading.tagName);
        if (child != nullptr) {
            readElement(*child, reading.meta, *element);
        }
    }
    readMisplacedIdentity(set);
    readExtensionElements(set);
}

void FromXMLMetadataSetVisitor::readMisplacedIdentity(Metadata::MetadataSet& set) {
    // A set whose definition lacks the identity elements (or one the dictionary does not
    // describe) still carries them as "rp210" attributes when its stored form had them.
    const XMLAttribute* uid = m_element.attribute(Vocabulary::instanceUID);
    const MetaMetadata::MetaElement* uidMeta = m_tables.instanceUIDElement();
    if (uid != nullptr && !uid->value.empty() && uidMeta != nullptr &&
        set.findElement(Metadata::Structural::StructuralMetadataULs::instanceUID()) == nullptr) {
        auto* identity = static_cast<Metadata::SimpleElement*>(
            set.createInvalidElement(std::make_shared<MetaMetadata::MisplacedAttribute>(*uidMeta)));
        identity->set(std::make_unique<Types::UUID>(m_tables.names().identifierFor(uid->value)),
                      false);
    }
    const XMLAttribute* generation = m_element.attribute(Vocabulary::generationUID);
    const MetaMetadata::MetaElement* generationMeta = m_tables.generationUIDElement();
    if (generation != nullptr && generationMeta != nullptr &&
        set.findElement(ImportTables::generationUIDLabel()) == nullptr) {
        Metadata::Element* identity = set.createInvalidElement(
            std::make_shared<MetaMetadata::MisplacedAttribute>(*generationMeta));
        FromXMLElementVisitor reader(*generation, generationMeta, m_partition, m_tables, m_depth);
        identity->accept(reader);
    }
}

void FromXMLMetadataSetVisitor::readIdentity(Metadata::MetadataSet& set, Metadata::Element& element,
                                             const MetaMetadata::MetaElement& meta,
                                             const WString& tagName) {
    const bool generation = tagName == Vocabulary::generationUIDLocalName;
    const XMLAttribute* attribute =
        m_element.attribute(generation ? Vocabulary::generationUID : Vocabulary::instanceUID);
    if (attribute == nullptr) {
        return;
    }
    if (generation) {
        FromXMLElementVisitor reader(*attribute, &meta, m_partition, m_tables, m_depth);
        element.accept(reader);
        return;
    }
    auto* identity = dynamic_cast<Metadata::SimpleElement*>(&element);
    if (identity == nullptr) {
        return;
    }
    if (attribute->value.empty()) {
        // The export writes an empty identifier for a set stored without one.
        identity->set(nullptr, false);
        return;
    }
    identity->set(std::make_unique<Types::UUID>(
                      m_tables.names().identifierFor(attribute->value, set.instanceUID())),
                  false);
}

void FromXMLMetadataSetVisitor::readExtensionElements(Metadata::MetadataSet& set) {
    if (!NodeSelector::isPrefixBound(m_element, names().groups)) {
        return;
    }
    const XMLNode* container =
        NodeSelector::firstChild(m_element, names().groups, names().extensionElements);
    if (container == nullptr) {
        return;
    }
    for (const XMLNode& child : container->children()) {
        readExtensionElement(set, child);
    }
}

void FromXMLMetadataSetVisitor::readExtensionElement(Metadata::MetadataSet& set,
                                                     const XMLNode& node) {
    const WString& qualifiedName = node.qualifiedName();
    const std::size_t colon = qualifiedName.find(u':');
    // A name without prefix is looked up whole, as a prefix that no declaration binds.
    const std::u16string_view prefix = std::u16string_view(qualifiedName).substr(0, colon);
    const std::u16string_view localName =
        colon == WString::npos ? std::u16string_view(qualifiedName)
                               : std::u16string_view(qualifiedName).substr(colon + 1);
    // Only the declarations on the root element are consulted.
    const WString* declared = rootOf(m_element).declaredNamespace(prefix);
    const MetaMetadata::MetaElement* meta = m_tables.elementNamed(
        declared != nullptr ? std::u16string_view(*declared) : std::u16string_view(), localName);
    if (meta == nullptr) {
        readUnknownElement(set, node);
        return;
    }
    // The export gives the label of a misplaced element whose name the dictionary gives to
    // another element first.
    const WString labelText = attributeText(node, Vocabulary::universalLabel);
    if (!labelText.empty()) {
        const auto* labelled = m_partition.partitionDictionary().dictionary()->findElement(
            Types::UniversalLabel(labelText, Types::DottedHex));
        if (labelled != nullptr) {
            meta = labelled;
        }
    }
    Metadata::Element* element =
        set.createInvalidElement(std::make_shared<MetaMetadata::MisplacedAttribute>(*meta));
    readElement(node, meta, *element);
}

void FromXMLMetadataSetVisitor::readUnknownElement(Metadata::MetadataSet& set,
                                                   const XMLNode& node) {
    const WString tagText = attributeText(node, Vocabulary::staticLocalTag);
    const WString labelText = attributeText(node, Vocabulary::universalLabel);
    Metadata::PartitionDictionary& primer = m_partition.partitionDictionary();
    Types::LocalTag tag;
    if (!tagText.empty()) {
        tag = Types::LocalTag(tagText, Types::DottedHex);
        if (!labelText.empty()) {
            // Kept in the primer so that the element is written with its label again.
            primer.insert(tag, Types::UniversalLabel(labelText, Types::DottedHex));
        }
    } else if (!labelText.empty()) {
        const Types::UniversalLabel label(labelText, Types::DottedHex);
        tag = primer.findOrGenerate(label);
        Metadata::Element* element =
            set.createInvalidElement(std::make_shared<MetaMetadata::UnknownAttribute>(tag, label));
        readElement(node, nullptr, *element);
        return;
    } else {
        VELLUM_THROW(ParseError, u"the extension element " + node.qualifiedName() +
                                     u" has neither " + Vocabulary::staticLocalTag + u" nor " +
                                     Vocabulary::universalLabel + u" to identify it");
    }
    Metadata::Element* element =
        set.createInvalidElement(std::make_shared<MetaMetadata::UnknownAttribute>(
            tag, MetaMetadata::UnknownAttribute::LocalTagNotResolved));
    readElement(node, nullptr, *element);
}

} // namespace Vellum::XMLBuilder
