#include "Vellum/XMLBuilder/ToXMLMetadataSetVisitor.h"

#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/DarkParsedGroup.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/XMLBuilder/DarkMetadataWriter.h"
#include "Vellum/XMLBuilder/ToXMLElementVisitor.h"
#include "Vellum/XMLBuilder/ToXMLMetaAttributeVisitor.h"
#include "Vellum/XMLBuilder/Vocabulary.h"

#include <xercesc/dom/DOMDocument.hpp>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace Vellum::XMLBuilder {
namespace {

struct OrderEntry {
    const Metadata::Element* element;
    std::uint32_t key;
};

// The decimal "SchemaIndex" text as an unsigned order key; a negative index wraps round, so
// it sorts after every non-negative one.
std::uint32_t orderKey(const WString& text) {
    const std::string narrow(text.begin(), text.end());
    return static_cast<std::uint32_t>(std::strtol(narrow.c_str(), nullptr, 10));
}

} // namespace

ToXMLMetadataSetVisitor::~ToXMLMetadataSetVisitor() = default;

void ToXMLMetadataSetVisitor::visit(const Metadata::MetadataSet& set) {
    if (!m_context.visited.insert(&set).second) {
        return;
    }
    xercesc::DOMDocument& document = *m_parent.getOwnerDocument();
    if (const MetaMetadata::MetaMetadataSet* definition = set.definition()) {
        const WString* prefix = definition->property(Vocabulary::xmlDefaultPrefix);
        const WString* tagName = definition->property(Vocabulary::xmlTagName);
        const WString* namespaceName = definition->property(Vocabulary::xmlNamespaceURI);
        if (prefix == nullptr || tagName == nullptr || namespaceName == nullptr) {
            return; // a definition without an XML name cannot be written
        }
        m_context.namespaces.enter(*namespaceName, *prefix);
        const WString qualifiedName = *prefix + u':' + *tagName;
        xercesc::DOMElement* element =
            document.createElementNS(namespaceName->c_str(), qualifiedName.c_str());
        m_parent.appendChild(element);
        writeElements(set, *element);
    } else if (dynamic_cast<const Metadata::DarkParsedGroup*>(&set) != nullptr) {
        m_context.namespaces.enter(Vocabulary::typesNamespace, Vocabulary::typesPrefix);
        m_context.namespaces.enter(Vocabulary::groupsNamespace, Vocabulary::groupsPrefix);
        xercesc::DOMElement& root = *document.getDocumentElement();
        xercesc::DOMElement* container =
            DarkMetadataWriter::findOrCreateFloatingDarkMetadata(document, root);
        root.appendChild(container); // the container follows the last set under the root
        // Its items, each with its label or local tag, so that it imports as the same set.
        xercesc::DOMElement& element =
            DarkMetadataWriter::writeParsedGroupFrame(set, *container, m_context.namespaces);
        writeElements(set, element);
    }
}

void ToXMLMetadataSetVisitor::writeElements(const Metadata::MetadataSet& set,
                                            xercesc::DOMElement& setElement) const {
    std::vector<OrderEntry> invalid;
    std::uint32_t position = 0;
    for (auto it = set.invalidBegin(); it != set.invalidEnd(); ++it) {
        invalid.push_back({*it, position++});
    }
    std::vector<OrderEntry> valid;
    for (const auto& [label, element] : set) {
        ToXMLMetaAttributeVisitor attribute;
        element->metaAttribute()->accept(attribute);
        if (const WString* index = attribute.schemaIndexText()) {
            valid.push_back({element, orderKey(*index)});
        }
    }
    const auto byKey = [](const OrderEntry& a, const OrderEntry& b) {
        return a.key < b.key;
    };
    std::stable_sort(valid.begin(), valid.end(), byKey);

    ToXMLElementVisitor writer(setElement, m_context);
    for (const auto* range : {&invalid, &valid}) {
        for (const OrderEntry& entry : *range) {
            entry.element->accept(writer);
        }
    }
}

} // namespace Vellum::XMLBuilder
