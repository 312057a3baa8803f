#include "Vellum/XMLBuilder/Partition2XML.h"

#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/Structural/StructuralMetadataKeys.h"
#include "Vellum/XMLBuilder/DarkMetadataWriter.h"
#include "Vellum/XMLBuilder/Namespaces.h"
#include "Vellum/XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "Vellum/XMLBuilder/Vocabulary.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Initializer.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <mutex>
#include <vector>

namespace Vellum::XMLBuilder {
namespace {

std::mutex& exportLock() {
    static std::mutex lock;
    return lock;
}

// A document whose root is prefix:MetadataSets in `namespaceName`, declaring its namespace.
DocumentNodePtr createFrame(const XMLUtils::UnicodeString& prefix,
                            const XMLUtils::UnicodeString& namespaceName) {
    static const XMLUtils::UnicodeString core("Core");
    xercesc::DOMImplementation* implementation =
        xercesc::DOMImplementationRegistry::getDOMImplementation(core.utf16());
    const WString rootName = prefix.wstring() + Vocabulary::metadataSetsSuffix;
    xercesc::DOMDocument* document =
        implementation->createDocument(namespaceName.utf16(), rootName.c_str(), nullptr,
                                       xercesc::XMLPlatformUtils::fgMemoryManager);
    DocumentNodePtr owner(document);
    xercesc::DOMElement* root = document->getDocumentElement();
    root->setPrefix(prefix.utf16());
    const WString declaration = WString(u"xmlns:") + prefix.wstring();
    root->setAttributeNS(Vocabulary::xmlnsNamespace, declaration.c_str(), namespaceName.utf16());
    return owner;
}

void declareNamespaces(xercesc::DOMElement& root, const NamespaceRecord& namespaces) {
    for (const auto& [namespaceName, prefix] : namespaces.entries()) {
        if (namespaceName == getNamespaceURI().wstring()) {
            continue;
        }
        const WString declaration = WString(u"xmlns:") + prefix;
        root.setAttributeNS(Vocabulary::xmlnsNamespace, declaration.c_str(), namespaceName.c_str());
    }
}

void writeBody(Metadata::PartitionMetadata& partition, const Metadata::MetadataSet& start,
               xercesc::DOMDocument& document, bool typedReferences, bool structuralTargetsOnly) {
    xercesc::DOMElement& root = *document.getDocumentElement();
    NamespaceRecord namespaces;
    namespaces.enter(getNamespaceURI().wstring(), getPrefix().wstring());

    VisitedRecord mainPass;
    const WriterContext main{partition, typedReferences, structuralTargetsOnly, namespaces,
                             mainPass};
    ToXMLMetadataSetVisitor startWriter(root, main);
    start.accept(startWriter);

    if (partition.darkCount() != 0) {
        xercesc::DOMElement* container =
            DarkMetadataWriter::findOrCreateFloatingDarkMetadata(document, root);
        for (auto it = partition.darkBegin(); it != partition.darkEnd(); ++it) {
            DarkMetadataWriter::writeDarkMetadataSet(**it, *container, namespaces);
        }
    }

    std::vector<const Metadata::MetadataSet*> order;
    const unsigned floatingCount = partition.calculateSerializationOrder(order, true, false);
    // The floating pass knows what the main pass wrote, so that no set is written twice.
    VisitedRecord floatingPass = mainPass;
    const WriterContext floating{partition, typedReferences, structuralTargetsOnly, namespaces,
                                 floatingPass};
    const auto writeFloating = [&](const Metadata::MetadataSet& set) {
        if (floatingPass.count(&set) == 0) {
            xercesc::DOMElement* container =
                DarkMetadataWriter::findOrCreateFloatingDarkMetadata(document, root);
            ToXMLMetadataSetVisitor writer(*container, floating);
            set.accept(writer);
        }
    };
    // Each floating set not yet written starts a group of its own, in order.
    for (auto it = order.end() - floatingCount; it != order.end(); ++it) {
        writeFloating(**it);
    }
    // Then every set no pass reached: behind a reference the options do not follow, sharing
    // an identifier with a set already written, or without an identifier.
    for (const Metadata::MetadataSet* set : partition.sets()) {
        writeFloating(*set);
    }
    declareNamespaces(root, namespaces);
}

} // namespace

DocumentNodePtr partition2XML(Metadata::PartitionMetadata* partition,
                              const Metadata::MetadataSet* startSet, bool typedReferences,
                              bool structuralTargetsOnly) {
    const std::lock_guard<std::mutex> hold(exportLock());
    XMLUtils::Initializer::instance();
    if (partition == nullptr || startSet == nullptr) {
        return nullptr;
    }
    DocumentNodePtr document = createFrame(getPrefix(), getNamespaceURI());
    writeBody(*partition, *startSet, *static_cast<xercesc::DOMDocument*>(document.get()),
              typedReferences, structuralTargetsOnly);
    return document;
}

DocumentNodePtr partition2XML(Metadata::PartitionMetadata* partition, bool typedReferences,
                              bool structuralTargetsOnly) {
    if (partition == nullptr) {
        return nullptr;
    }
    const auto prefaces = partition->find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (prefaces.empty()) {
        return nullptr;
    }
    return partition2XML(partition, prefaces.front(), typedReferences, structuralTargetsOnly);
}

void partition2XML(Metadata::PartitionMetadata* partition, bool typedReferences,
                   bool structuralTargetsOnly, XMLUtils::EncodingType encoding, WString& out) {
    const DocumentNodePtr document =
        partition2XML(partition, typedReferences, structuralTargetsOnly);
    if (document) {
        XMLUtils::domToBuffer(document.get(), out, encoding);
    }
}

void partition2XML(Metadata::PartitionMetadata* partition, const Metadata::MetadataSet* startSet,
                   bool typedReferences, bool structuralTargetsOnly,
                   XMLUtils::EncodingType encoding, WString& out) {
    const DocumentNodePtr document =
        partition2XML(partition, startSet, typedReferences, structuralTargetsOnly);
    if (document) {
        XMLUtils::domToBuffer(document.get(), out, encoding);
    }
}

} // namespace Vellum::XMLBuilder
