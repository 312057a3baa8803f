#include "XMLBuilder/DOMMarkupSink.h"

#include "Vellum/Exceptions/Throw.h"

#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/dom/DOMText.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace Vellum::XMLBuilder {

DOMMarkupSink::~DOMMarkupSink() = default;

const XMLCh* DOMMarkupSink::terminated(WString& scratch, std::u16string_view text) {
    scratch.assign(text);
    return scratch.c_str();
}

void DOMMarkupSink::startElement(std::u16string_view namespaceURI,
                                 std::u16string_view qualifiedName) {
    const XMLCh* space = namespaceURI.empty() ? nullptr : terminated(m_scratch[0], namespaceURI);
    const XMLCh* name = terminated(m_scratch[1], qualifiedName);
    if (!m_document) {
        static const XMLCh core[] = u"Core";
        xercesc::DOMImplementation* implementation =
            xercesc::DOMImplementationRegistry::getDOMImplementation(core);
        m_document.reset(implementation->createDocument(
            space, name, nullptr, xercesc::XMLPlatformUtils::fgMemoryManager));
        m_current = static_cast<xercesc::DOMDocument*>(m_document.get())->getDocumentElement();
        return;
    }
    VELLUM_CHECK(m_current != nullptr, "the document has one document element only");
    xercesc::DOMElement* element = m_current->getOwnerDocument()->createElementNS(space, name);
    m_current->appendChild(element);
    m_current = element;
}

void DOMMarkupSink::attribute(std::u16string_view namespaceURI, std::u16string_view qualifiedName,
                              std::u16string_view value) {
    VELLUM_CHECK(m_current != nullptr, "an attribute belongs to an element");
    m_current->setAttributeNS(
        namespaceURI.empty() ? nullptr : terminated(m_scratch[0], namespaceURI),
        terminated(m_scratch[1], qualifiedName), terminated(m_scratch[2], value));
}

void DOMMarkupSink::text(std::u16string_view value) {
    VELLUM_CHECK(m_current != nullptr, "text belongs inside the document element");
    m_current->appendChild(
        m_current->getOwnerDocument()->createTextNode(terminated(m_scratch[0], value)));
}

void DOMMarkupSink::endElement() {
    VELLUM_CHECK(m_current != nullptr, "an element ends that has not started");
    xercesc::DOMNode* parent = m_current->getParentNode();
    m_current = parent != nullptr && parent->getNodeType() == xercesc::DOMNode::ELEMENT_NODE
                    ? static_cast<xercesc::DOMElement*>(parent)
                    : nullptr;
}

DocumentNodePtr DOMMarkupSink::release() noexcept {
    m_current = nullptr;
    return std::move(m_document);
}

} // namespace Vellum::XMLBuilder
